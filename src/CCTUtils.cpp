#include "CCTUtils.h"

#include "SaturatedInt_p.h"

#include <QLineF>
#include <QPointF>
#include <QtGlobal>

#include <cmath>
#include <iterator>

namespace {

constexpr int MIN_CCT = 1950;
constexpr int MAX_CCT = 11000;
constexpr int CCT_STEP_SIZE = 10;
constexpr int MAX_TINT = 32767;

/// A point of the CIE 1976 plane.
struct UvPrime
{
    double u;
    double v;
};

struct CCTRegion
{
    int startCCT; ///< kelvin, inclusive
    int endCCT;   ///< kelvin, exclusive
    int step;     ///< kelvin
    UvPrime locusStart;
    UvPrime locusEnd;
    UvPrime isoStart; ///< the point at full positive tint on the line of the start CCT
    UvPrime isoEnd;   ///< the same of the end CCT
    UvPrime pivot;    ///< where all lines of equal CCT of the region meet
};

// clang-format off
// Defining data. The locus points follow Planck's law with the CIE 1931 observer, the iso points lie near Duv 0.02
// above them, and the pivots are where neighbouring iso-temperature lines about meet.
constexpr CCTRegion m_cctRegionTable[] = {
    {1900, 2000, 10, {0.31362707, 0.539567105}, {0.305048412, 0.538598729}, {0.312373253, 0.569508095}, {0.303288784, 0.568482393}, {0.331266037, 0.093346279}},
    {2000, 2100, 10, {0.305048412, 0.538598729}, {0.297242594, 0.537412382}, {0.303288784, 0.568482393}, {0.294959086, 0.5672162}, {0.331266037, 0.093346279}},
    {2100, 2200, 10, {0.297242594, 0.537412382}, {0.290123069, 0.536041171}, {0.294959086, 0.5672162}, {0.287302405, 0.565741317}, {0.297918651, 0.352913017}},
    {2200, 2300, 10, {0.290123069, 0.536041171}, {0.283614619, 0.534514984}, {0.287302405, 0.565741317}, {0.280248054, 0.564086914}, {0.297918651, 0.352913017}},
    {2300, 2400, 10, {0.283614619, 0.534514984}, {0.277651715, 0.53286055}, {0.280248054, 0.564086914}, {0.273734713, 0.562279565}, {0.297918651, 0.352913017}},
    {2400, 2500, 10, {0.277651715, 0.53286055}, {0.272177115, 0.531101586}, {0.273734713, 0.562279565}, {0.267707014, 0.560342429}, {0.297918651, 0.352913017}},
    {2500, 2700, 10, {0.272177115, 0.531101586}, {0.262498385, 0.5273511}, {0.267707014, 0.560342429}, {0.256939359, 0.556168955}, {0.297918651, 0.352913017}},
    {2700, 2850, 10, {0.262498385, 0.5273511}, {0.256190363, 0.524401136}, {0.256939359, 0.556168955}, {0.249834128, 0.552845751}, {0.295405357, 0.352913017}},
    {2850, 3000, 10, {0.256190363, 0.524401136}, {0.250570564, 0.521384833}, {0.249834128, 0.552845751}, {0.243441836, 0.549413882}, {0.293405357, 0.352913017}},
    {3000, 3250, 10, {0.250570564, 0.521384833}, {0.242485875, 0.51630497}, {0.243441836, 0.549413882}, {0.234146033, 0.543572273}, {0.293405357, 0.352913017}},
    {3250, 3500, 10, {0.242485875, 0.51630497}, {0.235712158, 0.511261775}, {0.234146033, 0.543572273}, {0.226262174, 0.537701708}, {0.293405357, 0.352913017}},
    {3500, 3750, 10, {0.235712158, 0.511261775}, {0.229987332, 0.50633665}, {0.226262174, 0.537701708}, {0.219535069, 0.531913747}, {0.292905357, 0.352913017}},
    {3750, 4000, 10, {0.229987332, 0.50633665}, {0.225110551, 0.501581061}, {0.219535069, 0.531913747}, {0.213761074, 0.526282805}, {0.292905357, 0.352913017}},
    {4000, 4500, 10, {0.225110551, 0.501581061}, {0.217311492, 0.492686146}, {0.213761074, 0.526282805}, {0.204464398, 0.515678371}, {0.283317852, 0.374871514}},
    {4500, 5000, 10, {0.217311492, 0.492686146}, {0.211424442, 0.484673716}, {0.204464398, 0.515678371}, {0.197409438, 0.506075251}, {0.283317852, 0.374871514}},
    {5000, 5500, 10, {0.211424442, 0.484673716}, {0.206881516, 0.477526065}, {0.197409438, 0.506075251}, {0.191960194, 0.497502222}, {0.281822301, 0.377155595}},
    {5500, 5700, 10, {0.206881516, 0.477526065}, {0.205352151, 0.474895038}, {0.191960194, 0.497502222}, {0.190126503, 0.494347652}, {0.281822301, 0.377155595}},
    {5700, 6000, 10, {0.205352151, 0.474895038}, {0.203307932, 0.471176748}, {0.190126503, 0.494347652}, {0.187676864, 0.489892392}, {0.281822301, 0.377155595}},
    {6000, 6500, 10, {0.203307932, 0.471176748}, {0.200449021, 0.465542606}, {0.187676864, 0.489892392}, {0.184260108, 0.48315845}, {0.281822301, 0.377155595}},
    {6500, 8000, 10, {0.200449021, 0.465542606}, {0.194624637, 0.452114608}, {0.184260108, 0.48315845}, {0.177339282, 0.46720557}, {0.283985539, 0.374565172}},
    {8000, 10000, 10, {0.194624637, 0.452114608}, {0.190318787, 0.439897086}, {0.177339282, 0.46720557}, {0.172280415, 0.452854268}, {0.293569827, 0.3657}},
    {10000, 12500, 10, {0.190318787, 0.439897086}, {0.187398002, 0.430013571}, {0.172280415, 0.452854268}, {0.168890008, 0.44138335}, {0.299183841, 0.361697993}},
};
// clang-format on

constexpr int REGION_COUNT = int(std::size(m_cctRegionTable));
constexpr int MAX_REGION = REGION_COUNT - 1;

constexpr bool isSame(UvPrime a, UvPrime b)
{
    return a.u == b.u && a.v == b.v;
}

/// Each region begins where the one before ends, in kelvin and on both lines, and spans whole steps.
constexpr bool areContiguous()
{
    for (int r = 0; r < REGION_COUNT; ++r) {
        const CCTRegion &region = m_cctRegionTable[r];
        if (region.step != CCT_STEP_SIZE || region.endCCT - region.startCCT < 100
            || (region.endCCT - region.startCCT) % region.step != 0)
            return false;
        if (r == MAX_REGION)
            continue;
        const CCTRegion &next = m_cctRegionTable[r + 1];
        if (next.startCCT != region.endCCT || !isSame(next.locusStart, region.locusEnd)
            || !isSame(next.isoStart, region.isoEnd))
            return false;
    }
    return true;
}

static_assert(REGION_COUNT == 22, "the scans end at region 21");
static_assert(areContiguous(), "a white point moves through the regions without a jump");
static_assert(m_cctRegionTable[0].startCCT <= MIN_CCT && m_cctRegionTable[MAX_REGION].endCCT > MAX_CCT,
              "every valid CCT has a region");

const CCTRegion &regionAt(int region)
{
    return m_cctRegionTable[qBound(0, region, MAX_REGION)];
}

int numSteps(const CCTRegion &region)
{
    return (region.endCCT - region.startCCT) / region.step;
}

QPointF toPoint(UvPrime point)
{
    return QPointF(point.u, point.v);
}

double interpolated(double start, double end, double position)
{
    return start + position * (end - start);
}

/// \a line with another length from its first point; as it is when it has none. The arithmetic of Qt 5's
/// QLineF::setLength, which Qt 6 changed.
QLineF withLength(const QLineF &line, double length)
{
    if (qFuzzyCompare(line.x1(), line.x2()) && qFuzzyCompare(line.y1(), line.y2()))
        return line;
    const double oldLength = std::sqrt(line.dx() * line.dx() + line.dy() * line.dy());
    const QLineF unit(line.p1(), QPointF(line.x1() + line.dx() / oldLength, line.y1() + line.dy() / oldLength));
    return QLineF(line.p1(), QPointF(line.x1() + unit.dx() * length, line.y1() + unit.dy() * length));
}

} // namespace

int CCTUtils::getMinCCT()
{
    return MIN_CCT;
}

int CCTUtils::getMaxCCT()
{
    return MAX_CCT;
}

int CCTUtils::getCCTStepSize()
{
    return CCT_STEP_SIZE;
}

int CCTUtils::getMinTint()
{
    return -MAX_TINT;
}

int CCTUtils::getMaxTint()
{
    return MAX_TINT;
}

bool CCTUtils::isValidCCT(int cct)
{
    return cct >= MIN_CCT && cct <= MAX_CCT;
}

bool CCTUtils::xyAreValid(double x, double y)
{
    return x >= 0 && x <= 0.8 && y >= 0 && y <= 0.9;
}

bool CCTUtils::uvPrimeAreValid(double uPrime, double vPrime)
{
    return uPrime >= 0 && uPrime <= 0.6 && vPrime >= 0 && vPrime <= 0.6;
}

bool CCTUtils::isMaxCCTRegionIndex(int region)
{
    return region == MAX_REGION;
}

double CCTUtils::getuPrimeFromxy(double x, double y)
{
    return 4 * x / (-2 * x + 12 * y + 3);
}

double CCTUtils::getvPrimeFromxy(double x, double y)
{
    return 9 * y / (-2 * x + 12 * y + 3);
}

double CCTUtils::getxFromuvPrime(double uPrime, double vPrime)
{
    return 9 * uPrime / (6 * uPrime - 16 * vPrime + 12);
}

double CCTUtils::getyFromuvPrime(double uPrime, double vPrime)
{
    return 4 * vPrime / (6 * uPrime - 16 * vPrime + 12);
}

double CCTUtils::getDistanceBetweenPoints(QPointF a, QPointF b)
{
    const QPointF difference = b - a;
    return std::sqrt(difference.x() * difference.x() + difference.y() * difference.y());
}

double CCTUtils::getDuvFromuvPrime(double uPrimeA, double vPrimeA, double uPrimeB, double vPrimeB)
{
    return getDistanceBetweenPoints(QPointF(uPrimeA, vPrimeA / 1.5), QPointF(uPrimeB, vPrimeB / 1.5));
}

double CCTUtils::getDuvPrimeFromuvPrime(double uPrimeA, double vPrimeA, double uPrimeB, double vPrimeB)
{
    return getDuvFromuvPrime(uPrimeA, vPrimeA, uPrimeB, vPrimeB);
}

double CCTUtils::getDuvFromxy(double x1, double y1, double x2, double y2)
{
    return getDuvFromuvPrime(getuPrimeFromxy(x1, y1), getvPrimeFromxy(x1, y1), getuPrimeFromxy(x2, y2),
                             getvPrimeFromxy(x2, y2));
}

bool CCTUtils::cctIsInRegion(int cct, int region)
{
    return cct >= regionAt(region).startCCT && cct < regionAt(region).endCCT;
}

QLineF CCTUtils::getPivotLine(int region, double uPrime, double vPrime)
{
    return QLineF(toPoint(regionAt(region).pivot), QPointF(uPrime, vPrime));
}

QLineF CCTUtils::getStandardLengthPivotLine(int region, double uPrime, double vPrime)
{
    constexpr double STANDARD_LENGTH = 0.7; // reaches across the diagram from any pivot
    return withLength(getPivotLine(region, uPrime, vPrime), STANDARD_LENGTH);
}

QLineF CCTUtils::getCCTRegionLine(int region)
{
    // Lengthened beyond the start, so that neighbouring regions overlap and no point falls between them.
    constexpr double LENGTHENING = 1.5;
    const QLineF chord(toPoint(regionAt(region).locusEnd), toPoint(regionAt(region).locusStart));
    return withLength(chord, LENGTHENING * getDistanceBetweenPoints(chord.p1(), chord.p2()));
}

bool CCTUtils::lineIntersectsRegion(const QLineF &line, int region, QPointF *point)
{
    return line.intersects(getCCTRegionLine(region), point) == QLineF::BoundedIntersection;
}

bool CCTUtils::linesIntersect(const QLineF &a, const QLineF &b, QPointF *point)
{
    // ODD-50: beyond the ends counts here; the chart's test wants the segments to cross.
    return a.intersects(b, point) != QLineF::NoIntersection;
}

int CCTUtils::getNumCCTStepsFromCCT(int region, int cct)
{
    // ODD-51: the quotient is rounded before it is multiplied.
    const CCTRegion &row = regionAt(region);
    const double share = (double(cct) - row.startCCT) / double(row.endCCT - row.startCCT);
    return saturatedInt(std::floor(numSteps(row) * share));
}

void CCTUtils::getuvPrimeFromCCTRegionWithNumSteps(int region, int steps, double &uPrime, double &vPrime)
{
    const CCTRegion &row = regionAt(region);
    uPrime = row.locusStart.u + (row.locusEnd.u - row.locusStart.u) / numSteps(row) * steps;
    vPrime = row.locusStart.v + (row.locusEnd.v - row.locusStart.v) / numSteps(row) * steps;
}

void CCTUtils::getuvPrimeFromCCTRegion(int region, int cct, double &uPrime, double &vPrime)
{
    getuvPrimeFromCCTRegionWithNumSteps(region, getNumCCTStepsFromCCT(region, cct), uPrime, vPrime);
}

double CCTUtils::getRegionPositionFromuvPrimeAndRegion(double uPrime, double vPrime, int region)
{
    const QPointF point(uPrime, vPrime);
    const double fromStart = getDistanceBetweenPoints(toPoint(regionAt(region).locusStart), point);
    const double fromEnd = getDistanceBetweenPoints(toPoint(regionAt(region).locusEnd), point);
    return fromStart / (fromStart + fromEnd);
}

int CCTUtils::getCCTFromCCTRegionAndRegionPosition(int region, double position)
{
    const CCTRegion &row = regionAt(region);
    return saturatedInt(std::floor(numSteps(row) * position + 0.5) * row.step + row.startCCT);
}

int CCTUtils::getCCTFromuvAndCCTRegion(double uPrime, double vPrime, int region)
{
    return getCCTFromCCTRegionAndRegionPosition(region, getRegionPositionFromuvPrimeAndRegion(uPrime, vPrime, region));
}

double CCTUtils::getIsoDuvPrimeFromCCTRegionAndRegionPosition(int region, double position)
{
    const CCTRegion &row = regionAt(region);
    const QPointF locus(interpolated(row.locusStart.u, row.locusEnd.u, position),
                        interpolated(row.locusStart.v, row.locusEnd.v, position));
    const QPointF iso(interpolated(row.isoStart.u, row.isoEnd.u, position),
                      interpolated(row.isoStart.v, row.isoEnd.v, position));
    return getDistanceBetweenPoints(locus, iso);
}

double CCTUtils::getIsoLineDuvPrime(int region, double uPrime, double vPrime)
{
    return getIsoDuvPrimeFromCCTRegionAndRegionPosition(region,
                                                        getRegionPositionFromuvPrimeAndRegion(uPrime, vPrime, region));
}

void CCTUtils::tintuvPrime(int region, int tint, double &uPrime, double &vPrime)
{
    if (tint == 0)
        return;
    // The slope's plain arctangent: every pivot lies to the right of its locus points, so that the direction
    // towards it has a positive cosine, and a positive tint, which goes the other way, a negative offset.
    const UvPrime pivot = regionAt(region).pivot;
    const double angle = std::atan((pivot.v - vPrime) / (pivot.u - uPrime));
    const double offset = tint / -double(MAX_TINT) * getIsoLineDuvPrime(region, uPrime, vPrime);
    uPrime += std::cos(angle) * offset;
    vPrime += std::sin(angle) * offset;
}

int CCTUtils::getTintEnd(double uPrime, double vPrime, int region, QPointF locusPoint)
{
    // ODD-54: not the side of the chord.
    const QPointF pivot = toPoint(regionAt(region).pivot);
    const bool isBeyond =
        getDistanceBetweenPoints(pivot, QPointF(uPrime, vPrime)) > getDistanceBetweenPoints(pivot, locusPoint);
    return isBeyond ? MAX_TINT : -MAX_TINT;
}

int CCTUtils::getTintFromuvAndIntersectionPoint(double uPrime, double vPrime, int region, QPointF locusPoint)
{
    const int tintEnd = getTintEnd(uPrime, vPrime, region, locusPoint);
    double endU = locusPoint.x();
    double endV = locusPoint.y();
    tintuvPrime(region, tintEnd, endU, endV);
    return saturatedInt(tintEnd * getDistanceBetweenPoints(QPointF(uPrime, vPrime), locusPoint)
                        / getDistanceBetweenPoints(QPointF(endU, endV), locusPoint));
}

void CCTUtils::getxyFromCCTRegion(int region, int cct, int tint, double &uPrime, double &vPrime)
{
    // ODD-52: u' and v', whatever the name says.
    getuvPrimeFromCCTRegion(region, cct, uPrime, vPrime);
    tintuvPrime(region, tint, uPrime, vPrime);
}

void CCTUtils::getuvPrimeFromValidCCTAndTint(int cct, int tint, double &uPrime, double &vPrime)
{
    int region = 0;
    while (!cctIsInRegion(cct, region) && !isMaxCCTRegionIndex(region))
        ++region;
    getxyFromCCTRegion(region, cct, tint, uPrime, vPrime);
}

bool CCTUtils::getuvPrimeFromCCTAndTint(int cct, int tint, double &uPrime, double &vPrime)
{
    if (!isValidCCT(cct)) {
        uPrime = 0.0;
        vPrime = 0.0;
        return false;
    }
    getuvPrimeFromValidCCTAndTint(cct, tint, uPrime, vPrime);
    return true;
}

bool CCTUtils::getuvPrimeFromCCT(int cct, double &uPrime, double &vPrime)
{
    return getuvPrimeFromCCTAndTint(cct, 0, uPrime, vPrime);
}

bool CCTUtils::getxyFromCCTAndTint(int cct, int tint, double &x, double &y)
{
    double uPrime = 0.0;
    double vPrime = 0.0;
    if (!getuvPrimeFromCCTAndTint(cct, tint, uPrime, vPrime)) {
        x = 0.0;
        y = 0.0;
        return false;
    }
    x = getxFromuvPrime(uPrime, vPrime);
    y = getyFromuvPrime(uPrime, vPrime);
    return true;
}

bool CCTUtils::getxyFromCCT(int cct, double &x, double &y)
{
    return getxyFromCCTAndTint(cct, 0, x, y);
}

void CCTUtils::getCCTAndTintFromuvAndCCTRegion(double uPrime, double vPrime, int region, QPointF locusPoint, int &cct,
                                               int &tint)
{
    cct = getCCTFromuvAndCCTRegion(locusPoint.x(), locusPoint.y(), region);
    tint = getTintFromuvAndIntersectionPoint(uPrime, vPrime, region, locusPoint);
}

void CCTUtils::getCCTAndTintFromValiduvPrime(double uPrime, double vPrime, int &cct, int &tint)
{
    for (int region = 0;; ++region) {
        // ODD-55: in the last region any crossing will do, and (0, 0) where the lines are parallel.
        QPointF locusPoint;
        const QLineF pivotLine = getStandardLengthPivotLine(region, uPrime, vPrime);
        if (lineIntersectsRegion(pivotLine, region, &locusPoint) || isMaxCCTRegionIndex(region)) {
            getCCTAndTintFromuvAndCCTRegion(uPrime, vPrime, region, locusPoint, cct, tint);
            return;
        }
    }
}

bool CCTUtils::getCCTAndTintFromuvPrime(double uPrime, double vPrime, int &cct, int &tint)
{
    if (!uvPrimeAreValid(uPrime, vPrime))
        return false;
    getCCTAndTintFromValiduvPrime(uPrime, vPrime, cct, tint);
    return true;
}

bool CCTUtils::getCCTAndTintFromxy(double x, double y, int &cct, int &tint)
{
    if (!xyAreValid(x, y))
        return false;
    return getCCTAndTintFromuvPrime(getuPrimeFromxy(x, y), getvPrimeFromxy(x, y), cct, tint);
}
