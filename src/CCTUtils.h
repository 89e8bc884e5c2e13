#pragma once

#include "TrelExport.h"

class QLineF;
class QPointF;

/// Correlated colour temperature (CCT, in kelvin) and tint of white light, to and from CIE 1976 (u', v') and
/// CIE 1931 (x, y).
///
/// A table cuts the Planckian locus from 1900 K to 12500 K into 22 regions. Within a region the locus is the
/// straight chord between its ends, and lines of equal CCT are straight lines through the region's pivot. Tint is
/// the distance from the locus along such a line, positive away from the pivot (greenish), negative towards it
/// (pinkish), in steps of 1/32767 of the region's iso-temperature line at that place.
///
/// A region outside 0..21 counts as the nearest one. Doubles may have any value: NaN and infinities come out as
/// NaN or as an unsuccessful conversion, integers computed from them are defined, though without meaning.
class TREL_EXPORT CCTUtils
{
public:
    /// \name Limits
    /// @{

    /// 1950 K.
    static int getMinCCT();
    /// 11000 K.
    static int getMaxCCT();
    /// 10 K.
    static int getCCTStepSize();
    /// −32767.
    static int getMinTint();
    /// 32767.
    static int getMaxTint();
    /// Whether \a cct is in 1950..11000 K.
    static bool isValidCCT(int cct);
    /// Whether 0 <= x <= 0.8 and 0 <= y <= 0.9; NaN is not.
    static bool xyAreValid(double x, double y);
    /// Whether both are in 0..0.6; NaN is not.
    static bool uvPrimeAreValid(double uPrime, double vPrime);
    /// Whether \a region is the last one, 21.
    static bool isMaxCCTRegionIndex(int region);
    /// @}

    /// \name CIE 1976 UCS
    /// u' = 4x / (−2x + 12y + 3), v' = 9y / (−2x + 12y + 3) and back (CIE 15:2018). Divisors are not checked.
    /// @{

    /// u' of (x, y).
    static double getuPrimeFromxy(double x, double y);
    /// v' of (x, y).
    static double getvPrimeFromxy(double x, double y);
    /// x of (u', v').
    static double getxFromuvPrime(double uPrime, double vPrime);
    /// y of (u', v').
    static double getyFromuvPrime(double uPrime, double vPrime);
    /// @}

    /// \name Distances
    /// @{

    /// Euclidean distance of two points.
    static double getDistanceBetweenPoints(QPointF a, QPointF b);
    /// Duv: the distance of two points of the CIE 1976 plane, measured in the CIE 1960 (u, v) plane (v = v' / 1.5).
    static double getDuvFromuvPrime(double uPrimeA, double vPrimeA, double uPrimeB, double vPrimeB);
    /// The same as getDuvFromuvPrime().
    static double getDuvPrimeFromuvPrime(double uPrimeA, double vPrimeA, double uPrimeB, double vPrimeB);
    /// Duv of two points of the CIE 1931 plane.
    static double getDuvFromxy(double x1, double y1, double x2, double y2);
    /// @}

    /// \name Geometry of a region, in (u', v')
    /// @{

    /// Whether \a cct lies in the region, its end excluded.
    static bool cctIsInRegion(int cct, int region);
    /// The line from the region's pivot to (u', v').
    static QLineF getPivotLine(int region, double uPrime, double vPrime);
    /// The same line, 0.7 long from the pivot; as it is where the point is the pivot.
    static QLineF getStandardLengthPivotLine(int region, double uPrime, double vPrime);
    /// The line from the region's end towards its start, 1.5 chords long.
    static QLineF getCCTRegionLine(int region);
    /// Whether \a line crosses the region's line, both as segments; \a point receives the crossing of the lines
    /// as far as there is one.
    static bool lineIntersectsRegion(const QLineF &line, int region, QPointF *point);
    /// Whether the lines cross anywhere, also beyond their ends: CCTImageUtils' test is stricter (ODD-50).
    static bool linesIntersect(const QLineF &a, const QLineF &b, QPointF *point);
    /// @}

    /// \name Positions along a region
    /// @{

    /// Steps of 10 K from the region's start to \a cct, rounded down. The share of the region is rounded to a
    /// double first, so that a few CCTs on the grid land one step low (ODD-51).
    static int getNumCCTStepsFromCCT(int region, int cct);
    /// The locus point \a steps steps from the region's start.
    static void getuvPrimeFromCCTRegionWithNumSteps(int region, int steps, double &uPrime, double &vPrime);
    /// The locus point of \a cct, taken down to the grid.
    static void getuvPrimeFromCCTRegion(int region, int cct, double &uPrime, double &vPrime);
    /// Position 0..1 of a point between the region's ends: its distance from the start as a share of its distances
    /// from both.
    static double getRegionPositionFromuvPrimeAndRegion(double uPrime, double vPrime, int region);
    /// CCT of a position, rounded to the region's grid.
    static int getCCTFromCCTRegionAndRegionPosition(int region, double position);
    /// CCT of a point of the locus.
    static int getCCTFromuvAndCCTRegion(double uPrime, double vPrime, int region);
    /// @}

    /// \name Tint
    /// @{

    /// Full-scale tint at a position of the region: the length of its iso-temperature line in (u', v').
    static double getIsoDuvPrimeFromCCTRegionAndRegionPosition(int region, double position);
    /// The same at the position of (u', v').
    static double getIsoLineDuvPrime(int region, double uPrime, double vPrime);
    /// Moves a point of the locus by \a tint along the line through the pivot. Any tint, not clamped.
    static void tintuvPrime(int region, int tint, double &uPrime, double &vPrime);
    /// 32767 for a point farther from the pivot than \a locusPoint, otherwise −32767.
    static int getTintEnd(double uPrime, double vPrime, int region, QPointF locusPoint);
    /// Tint of a point whose iso-temperature line meets the locus at \a locusPoint, truncated toward zero; beyond
    /// ±32767 for a point beyond the iso-temperature line.
    static int getTintFromuvAndIntersectionPoint(double uPrime, double vPrime, int region, QPointF locusPoint);
    /// @}

    /// \name White point to chromaticity
    /// CCT 1950..11000 K, taken down to 10 K; outside: false, outputs 0. Tint −32767..32767, not range-checked.
    /// @{

    /// u' and v', in spite of the name (ODD-52), of \a cct and \a tint in the given region.
    static void getxyFromCCTRegion(int region, int cct, int tint, double &uPrime, double &vPrime);
    /// u' and v' of a CCT that is known to be valid.
    static void getuvPrimeFromValidCCTAndTint(int cct, int tint, double &uPrime, double &vPrime);
    /// u' and v'.
    static bool getuvPrimeFromCCTAndTint(int cct, int tint, double &uPrime, double &vPrime);
    /// u' and v' on the locus.
    static bool getuvPrimeFromCCT(int cct, double &uPrime, double &vPrime);
    /// x and y.
    static bool getxyFromCCTAndTint(int cct, int tint, double &x, double &y);
    /// x and y on the locus.
    static bool getxyFromCCT(int cct, double &x, double &y);
    /// @}

    /// \name Chromaticity to white point
    /// @{

    /// CCT and tint of a point whose line through the region's pivot meets the locus at \a locusPoint.
    static void getCCTAndTintFromuvAndCCTRegion(double uPrime, double vPrime, int region, QPointF locusPoint, int &cct,
                                                int &tint);
    /// CCT and tint of a point that is known to be valid, in the first region whose line it meets; in the last
    /// region when it meets none.
    static void getCCTAndTintFromValiduvPrime(double uPrime, double vPrime, int &cct, int &tint);
    /// False, outputs untouched, unless uvPrimeAreValid().
    static bool getCCTAndTintFromuvPrime(double uPrime, double vPrime, int &cct, int &tint);
    /// False, outputs untouched, unless xyAreValid() and the point's u' and v' are valid.
    static bool getCCTAndTintFromxy(double x, double y, int &cct, int &tint);
    /// @}
};
