#pragma once

#include "TrelExport.h"

class QLineF;
class QPoint;
class QPointF;
class QRect;
class QRectF;

/// The geometry of a chart of CIE 1931 chromaticities: its pixels to and from (x, y), and the places of white points.
///
/// Of the widget's rectangle only the size counts; pixels are relative to its top-left one. A range's y is the
/// chromaticity at the top edge and its height is negative, since y decreases downwards. An empty widget or
/// range gives infinities or NaN, and pixels that are defined but have no meaning.
class TREL_EXPORT CCTImageUtils
{
public:
    /// Each coordinate rounded half up; beyond the range of an int, its end.
    static QPoint roundPoint(QPointF point);

    /// Absolute width of \a range.
    static double getxyRectWidth(QRectF range);
    /// Absolute height of \a range.
    static double getxyRectHeight(QRectF range);

    /// Chromaticity of pixel \a point. A positive height shifts y by two heights (ODD-53).
    static void getxyFromPoint(double &x, double &y, QRectF range, QPoint point, QRect widget);

    /// Pixel of chromaticity (x, y), rounded half up.
    static QPoint getPointFromxy(double x, double y, QRectF range, QRect widget);

    /// Pixel of a white point: the CCT clamped to CCTUtils::getMinCCT()..getMaxCCT(), the tint as it is.
    static QPoint getPointFromCCTAndUnboundedTint(int cct, int tint, QRectF range, QRect widget);

    /// The same with the tint clamped to CCTUtils::getMinTint()..getMaxTint().
    static QPoint getPointFromCCTAndTint(int cct, int tint, QRectF range, QRect widget);

    /// The same on the locus.
    static QPoint getPointFromCCT(int cct, QRectF range, QRect widget);

    /// Whether the lines cross as segments: stricter than CCTUtils::linesIntersect() (ODD-50). \a point receives
    /// the crossing of the lines as far as there is one.
    static bool linesIntersect(const QLineF &a, const QLineF &b, QPointF *point);
};
