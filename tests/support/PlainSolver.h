#pragma once

#include "ColorUtils.h"

/// The Yxy solver once more, written to be read next to its description and not to be fast: every step makes
/// its own vectors, nothing is shared between candidates. Whatever replaces the library's solver must give the
/// same bits.
namespace PlainSolver {

/// As ColorUtils::gaussianEliminationTwoByThree().
void gaussianEliminationTwoByThree(const double m[2][3], double &a, double &b);

/// As ColorUtils::convertYxyToNChannel().
void convertYxyToNChannel(const double *Yxy, double *out, ColorUtils::ChannelConfiguration configuration,
                          ColorUtils::HuelockProfileID profile, bool clampToGamut);

/// The same level to the last bit, the sign of zero included. NaNs are alike whatever their bits.
bool sameBits(double a, double b);

} // namespace PlainSolver
