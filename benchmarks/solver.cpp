// The solver, beside what one would use in its place. Each benchmark proves its answer first.

#include "Chromaticities.h"
#include "PlainSolver.h"
#include "ScalarSolver.h"

#include <ColorUtils.h>
#include <Tristimulus.h>
#include <TristimulusFactory.h>

#include <benchmark/benchmark.h>
#include <glpk.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace {

using Levels = std::array<double, 5>;
using Solve = void (*)(const double *Yxy, double *out, ColorUtils::ChannelConfiguration configuration,
                       ColorUtils::HuelockProfileID profile, bool clampToGamut);

/// The library's solver where a machine has no vector instructions.
void solveByScalars(const double *Yxy, double *out, ColorUtils::ChannelConfiguration configuration,
                    ColorUtils::HuelockProfileID profile, bool clampToGamut)
{
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
    double x = Yxy[1];
    double y = Yxy[2];
    if (clampToGamut)
        data->closestPtOnGamut(Yxy[1], Yxy[2], x, y);
    const int count = ColorUtils::configChannelCount(configuration);
    ScalarSolver::mix(data->getX(), data->getY(), data->getZ(), count, x, y, out);
    for (int c = 0; c < count; ++c)
        out[c] *= Yxy[0];
}

/// The same linear programme by GLPK, which keeps its problem and its basis from colour to colour.
void solveWithGlpk(const double *Yxy, double *out, ColorUtils::ChannelConfiguration configuration,
                   ColorUtils::HuelockProfileID profile, bool clampToGamut)
{
    static glp_prob *problem = nullptr;
    static ColorUtils::HuelockProfileID solved = ColorUtils::GENERIC_RGB;
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
    const int count = ColorUtils::configChannelCount(configuration);
    if (!problem || solved != profile) {
        if (problem)
            glp_delete_prob(problem);
        problem = glp_create_prob();
        solved = profile;
        glp_term_out(GLP_OFF);
        glp_set_obj_dir(problem, GLP_MAX);
        glp_add_rows(problem, 2);
        glp_set_row_bnds(problem, 1, GLP_FX, 0, 0);
        glp_set_row_bnds(problem, 2, GLP_FX, 0, 0);
        glp_add_cols(problem, count);
        for (int c = 0; c < count; ++c) {
            glp_set_col_bnds(problem, c + 1, GLP_DB, 0, 1);
            glp_set_obj_coef(problem, c + 1, data->getY().at(c));
        }
    }
    double x = Yxy[1];
    double y = Yxy[2];
    if (clampToGamut)
        data->closestPtOnGamut(Yxy[1], Yxy[2], x, y);
    for (int c = 0; c < count; ++c) {
        const double X = data->getX().at(c);
        const double Y = data->getY().at(c);
        const double Z = data->getZ().at(c);
        const double sum = X + Y + Z;
        const int rows[] = {0, 1, 2};
        const double coefficients[] = {0, X - x * sum, Y - y * sum};
        glp_set_mat_col(problem, c + 1, 2, rows, coefficients);
    }
    glp_smcp parameters;
    glp_init_smcp(&parameters);
    parameters.msg_lev = GLP_MSG_OFF;
    glp_simplex(problem, &parameters);
    for (int c = 0; c < count; ++c)
        out[c] = glp_get_col_prim(problem, c + 1) * Yxy[0];
}

/// Whether \a solve gives the plain solver's levels: to the bit, or, for another method, in luminance. On the border
/// of the gamut, where rounding decides, another method may find the colour out of reach.
bool isRight(Solve solve, ColorUtils::HuelockProfileID profile, const Chromaticity &color)
{
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
    Levels levels = {};
    Levels expected = {};
    solve(color.Yxy, levels.data(), configuration, profile, true);
    PlainSolver::convertYxyToNChannel(color.Yxy, expected.data(), configuration, profile, true);
    if (solve != solveWithGlpk)
        return std::equal(levels.begin(), levels.end(), expected.begin(), PlainSolver::sameBits);
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
    if (!data->inside(color.Yxy[1], color.Yxy[2]))
        return true;
    double difference = 0;
    for (int c = 0; c < ColorUtils::configChannelCount(configuration); ++c)
        difference += data->getY().at(c) * (levels[std::size_t(c)] - expected[std::size_t(c)]);
    return std::abs(difference) < 1e-3 * data->getY().at(1);
}

void solve(benchmark::State &state, Solve solve)
{
    const auto profile = ColorUtils::HuelockProfileID(state.range(0));
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
    const std::vector<Chromaticity> inputs = chromaticities();
    if (!std::all_of(inputs.begin(), inputs.end(),
                     [&](const Chromaticity &color) { return isRight(solve, profile, color); })) {
        state.SkipWithError("wrong levels");
        return;
    }
    std::size_t i = 0;
    Levels levels = {};
    for (auto _ : state) {
        solve(inputs[i++ % COLORS].Yxy, levels.data(), configuration, profile, true);
        benchmark::DoNotOptimize(levels);
    }
    state.SetLabel(ColorUtils::huelockProfileIDName(profile).toStdString());
}

void forThreeToFiveEmitters(benchmark::internal::Benchmark *benchmark)
{
    benchmark->Arg(ColorUtils::PIXELNODE_RGB_CLASS)
        ->Arg(ColorUtils::WASHLINE_PZ6_RGBW)
        ->Arg(ColorUtils::STRAND_BEAM_KVX);
}

BENCHMARK_CAPTURE(solve, library, ColorUtils::convertYxyToNChannel)->Apply(forThreeToFiveEmitters);
BENCHMARK_CAPTURE(solve, scalar, solveByScalars)->Apply(forThreeToFiveEmitters);
BENCHMARK_CAPTURE(solve, plain, PlainSolver::convertYxyToNChannel)->Apply(forThreeToFiveEmitters);
BENCHMARK_CAPTURE(solve, glpk, solveWithGlpk)->Apply(forThreeToFiveEmitters);

} // namespace
