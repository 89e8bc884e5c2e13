#pragma once

#include <QPointF>

/// The colour of a black body from first principles: Planck's law, summed over the CIE 1931 standard observer.
namespace PlanckianLocus {

/// Second radiation constant in m K, as CODATA has it since 2018 and as the temperature scale of 1968 had it.
constexpr double C2_CODATA = 1.438776877e-2;
constexpr double C2_IPTS68 = 1.4388e-2;

/// CIE 1931 (x, y) at \a kelvin.
QPointF xy(double kelvin, double c2);
/// CIE 1976 (u', v') at \a kelvin.
QPointF uvPrime(double kelvin, double c2);
/// The point of the CIE 1976 plane that lies \a duv above the locus, at right angles to it in the CIE 1960 plane.
QPointF isoEnd(double kelvin, double duv, double c2);

} // namespace PlanckianLocus
