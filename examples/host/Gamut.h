#pragma once

#include <TrelColor.h>

#include <QPointF>
#include <QPolygonF>

/// What a fixture profile makes of chromaticities (CIE 1931 x, y).
class Gamut
{
public:
    /// An identifier without a profile stands for generic RGB.
    explicit Gamut(ColorUtils::HuelockProfileID profile);

    /// What is wanted, and what the profile gives.
    struct Clamped
    {
        bool isVisible = false; ///< whether there is light, and with it a chromaticity
        bool isOutside = false; ///< whether wanted and given differ by more than people can read, 0.0001
        QPointF wanted;
        QPointF given;
    };

    /// The chromaticity of \a color. One that is already in the profile's channel levels is given as it is.
    Clamped clamp(const TrelColor &color) const;

    /// \a color as the profile gives it: itself where it can.
    TrelColor given(const TrelColor &color) const;

    /// The corners: red, green, blue.
    QPolygonF corners() const;

    /// Whether the profile's data are enough to solve for levels; those of a fixture profile database may not be.
    bool canSolve() const;

private:
    ColorUtils::HuelockProfileID m_profile;
};
