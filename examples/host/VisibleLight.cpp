#include "VisibleLight.h"

#include <ColorUtils.h>

#include <limits>

namespace {

struct Wavelength
{
    int nm;
    double x;
    double y;
};

// The CIE 1931 2° standard observer (ISO/CIE 11664-1): of every 5 nm those between which straight lines stay within
// 0.0012 of the others.
constexpr Wavelength SPECTRAL_LOCUS[] = {
    {380, 0.1741, 0.0050}, {430, 0.1689, 0.0069}, {460, 0.1440, 0.0297}, {470, 0.1241, 0.0578}, {475, 0.1096, 0.0868},
    {480, 0.0913, 0.1327}, {485, 0.0687, 0.2007}, {490, 0.0454, 0.2950}, {495, 0.0235, 0.4127}, {500, 0.0082, 0.5384},
    {505, 0.0039, 0.6548}, {510, 0.0139, 0.7502}, {515, 0.0389, 0.8120}, {520, 0.0743, 0.8338}, {525, 0.1142, 0.8262},
    {530, 0.1547, 0.8059}, {535, 0.1929, 0.7816}, {540, 0.2296, 0.7543}, {545, 0.2658, 0.7243}, {555, 0.3374, 0.6588},
    {565, 0.4087, 0.5896}, {700, 0.7347, 0.2653},
};

} // namespace

QPolygonF VisibleLight::outline()
{
    QPolygonF polygon;
    for (const Wavelength &wavelength : SPECTRAL_LOCUS)
        polygon.append(QPointF(wavelength.x, wavelength.y));
    return polygon;
}

QPointF VisibleLight::nearest(QPointF xy)
{
    static const QPolygonF border = outline();
    if (border.containsPoint(xy, Qt::OddEvenFill))
        return xy;
    QPointF result = border.first();
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < border.size(); ++i) {
        QPointF closest;
        const double there = ColorUtils::minDistance(border.at(i), border.at((i + 1) % border.size()), xy, closest);
        if (there >= least)
            continue;
        least = there;
        result = closest;
    }
    return result;
}
