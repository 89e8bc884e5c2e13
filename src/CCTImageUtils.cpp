#include "CCTImageUtils.h"

#include "CCTUtils.h"
#include "SaturatedInt_p.h"

#include <QLineF>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>

#include <cmath>

namespace {

/// In double, since the size of a rectangle across the whole range of an int is none.
double widthOf(QRect rect)
{
    return double(rect.right()) - rect.left() + 1;
}

double heightOf(QRect rect)
{
    return double(rect.bottom()) - rect.top() + 1;
}

} // namespace

QPoint CCTImageUtils::roundPoint(QPointF point)
{
    return QPoint(saturatedInt(std::floor(point.x() + 0.5)), saturatedInt(std::floor(point.y() + 0.5)));
}

double CCTImageUtils::getxyRectWidth(QRectF range)
{
    return std::abs(range.width());
}

double CCTImageUtils::getxyRectHeight(QRectF range)
{
    return std::abs(range.height());
}

void CCTImageUtils::getxyFromPoint(double &x, double &y, QRectF range, QPoint point, QRect widget)
{
    const double width = getxyRectWidth(range);
    const double height = getxyRectHeight(range);
    x = range.x() + point.x() / widthOf(widget) * width;
    // ODD-53: range.height() and height cancel out only where the former is negative.
    y = range.y() + range.height() + height - point.y() / heightOf(widget) * height;
}

QPoint CCTImageUtils::getPointFromxy(double x, double y, QRectF range, QRect widget)
{
    return roundPoint(QPointF(widthOf(widget) * (x - range.x()) / getxyRectWidth(range),
                              heightOf(widget) * (range.y() - y) / getxyRectHeight(range)));
}

QPoint CCTImageUtils::getPointFromCCTAndUnboundedTint(int cct, int tint, QRectF range, QRect widget)
{
    double x = 0;
    double y = 0;
    CCTUtils::getxyFromCCTAndTint(qBound(CCTUtils::getMinCCT(), cct, CCTUtils::getMaxCCT()), tint, x, y);
    return getPointFromxy(x, y, range, widget);
}

QPoint CCTImageUtils::getPointFromCCTAndTint(int cct, int tint, QRectF range, QRect widget)
{
    return getPointFromCCTAndUnboundedTint(cct, qBound(CCTUtils::getMinTint(), tint, CCTUtils::getMaxTint()), range,
                                           widget);
}

QPoint CCTImageUtils::getPointFromCCT(int cct, QRectF range, QRect widget)
{
    return getPointFromCCTAndTint(cct, 0, range, widget);
}

bool CCTImageUtils::linesIntersect(const QLineF &a, const QLineF &b, QPointF *point)
{
    return a.intersects(b, point) == QLineF::BoundedIntersection;
}
