#include "Gamut.h"

#include "Fixture.h"

#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>
#include <Tristimulus.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double LEAST_SHOWN = 0.0001; ///< chromaticities are shown with four decimals

Tristimulus *emittersOf(ColorUtils::HuelockProfileID profile)
{
    return HuelockProfileFactory::instance()->getProfile(profile)->getTristimulus();
}

} // namespace

Gamut::Gamut(ColorUtils::HuelockProfileID profile)
    : m_profile(profile)
{
}

Gamut::Clamped Gamut::clamp(const TrelColor &color) const
{
    Clamped result;
    const TrelColor seen = color.toYxy();
    if (!seen.isValid() || !std::isfinite(seen.getx()) || !std::isfinite(seen.gety()) || seen.gety() <= 0.0)
        return result;
    result.isVisible = true;
    result.wanted = QPointF(seen.getx(), seen.gety());
    result.given = result.wanted;
    Tristimulus *emitters = emittersOf(m_profile);
    const bool isOwn = color.spec() == TrelColor::Nchannel && color.getHuelockProfileID() == m_profile;
    if (isOwn || !emitters)
        return result;
    double x = seen.getx();
    double y = seen.gety();
    if (!emitters->closestPtOnGamut(seen.getx(), seen.gety(), x, y))
        result.given = QPointF(x, y);
    result.isOutside = distance(result.wanted, result.given) > LEAST_SHOWN;
    return result;
}

TrelColor Gamut::given(const TrelColor &color) const
{
    const Clamped clamped = clamp(color);
    if (!clamped.isOutside)
        return color;
    TrelColor result;
    result.setYxy16(color.toYxy().getY(), clamped.given.x(), clamped.given.y(), color.alpha16());
    return result;
}

QPolygonF Gamut::corners() const
{
    QPolygonF polygon;
    for (const unsigned int rgb : {0xFF0000u, 0x00FF00u, 0x0000FFu}) {
        TrelColor primary(rgb);
        primary.setHuelockProfileID(m_profile);
        const TrelColor seen = primary.toYxy();
        polygon.append(QPointF(seen.getx(), seen.gety()));
    }
    return polygon;
}

bool Gamut::canSolve() const
{
    return lackOf(m_profile).isEmpty();
}
