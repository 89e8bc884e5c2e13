#pragma once

#include "Curve.h"

/// The "Tungsten/Incandescent" dimming curve, which dims as a glowing filament does. It ends at 65535.
class TREL_EXPORT GammaCurveTungsten : public Curve
{
public:
    /// Builds the lookup tables.
    GammaCurveTungsten();

    /// Builds the lookup tables from the curve's 256 control points, unless they exist.
    void createLut() override;
};
