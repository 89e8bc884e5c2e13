#pragma once

#include "TrelExport.h"

#include <array>

class Curve;
class QString;

/// The registry of the dimming curves, by curve type:
/// 0 "Linear (Default)", 1 "Normal (Trel Gamma)", 2 "Tungsten/Incandescent".
class TREL_EXPORT CurveFactory
{
public:
    /// The registry, created on first call and kept until the process ends.
    static CurveFactory *Instance();

    CurveFactory(const CurveFactory &) = delete;
    CurveFactory &operator=(const CurveFactory &) = delete;
    ~CurveFactory();

    /// The curve of \a type, owned by the registry; the linear curve for an unknown type. Never null.
    Curve *getCurve(int type) const;

    /// Translated name of curve \a type; empty for an unknown type.
    QString nameForCurveType(int type) const;

    /// The curve type whose translated name is \a name; −1 when there is none.
    int curveTypeFromName(QString name) const;

private:
    CurveFactory();
    void createCurves();

    static CurveFactory *m_instance;

    std::array<Curve *, 3> m_curves = {};
};
