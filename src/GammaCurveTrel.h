#pragma once

#include "Curve.h"

/// The "Normal (Trel Gamma)" dimming curve, close to a square law. It ends at 65520, so that 16-bit output never
/// reaches full scale (ODD-30).
class TREL_EXPORT GammaCurveTrelNormal : public Curve
{
public:
    /// Builds the lookup tables.
    GammaCurveTrelNormal();

    /// Builds the lookup tables from the curve's 256 control points, unless they exist.
    void createLut() override;
};
