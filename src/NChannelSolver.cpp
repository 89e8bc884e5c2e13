#include "NChannelSolver_p.h"

#include "EmitterPairs_p.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cmath>

// What depends on a pair alone is worked out once for all its settings. Each operation is the one of the plain
// elimination, in its order, so that results are the same bits, whether one setting is tried at a time or four.

using namespace EmitterPairs;

namespace {

template <int N>
void eliminate(const Problem &problem, Eliminations<N> &eliminations)
{
    for (std::size_t p = 0; p < PAIRS<N>.size(); ++p) {
        const int i = PAIRS<N>[p].i;
        const int j = PAIRS<N>[p].j;
        // ODD-36: multipliers have single precision.
        const double f = double(float(problem.b[i] / problem.a[i]));
        const double m10 = problem.b[i] - f * problem.a[i];
        const double m11 = problem.b[j] - f * problem.a[j];
        const double g = double(float(problem.a[j] / m11));
        eliminations.f[p] = f;
        eliminations.g[p] = g;
        eliminations.reciprocal0[p] = double(float(1 / (problem.a[i] - g * m10)));
        eliminations.reciprocal1[p] = double(float(1 / m11));
    }
}

/// The levels of a pair's two.
struct Mixture
{
    double first;
    double second;
};

/// The mixture that makes up for \a a and \a b, the sums of the others.
template <int N>
Mixture mixtureFor(double a, double b, const Eliminations<N> &eliminations, std::size_t pair)
{
    // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult): the AVX2 kernel fills them
    const double m12 = -b - eliminations.f[pair] * -a;
    const double m02 = -a - eliminations.g[pair] * m12;
    return {m02 * eliminations.reciprocal0[pair], m12 * eliminations.reciprocal1[pair]};
}

bool isLevel(double level)
{
    return (level > LOWEST_LEVEL) & (level < HIGHEST_LEVEL);
}

double snapped(double level)
{
    return level < 0 ? 0 : level > 1 ? 1 : level;
}

template <int N>
void spread(const Pair<N> &pair, std::size_t setting, const Mixture &mixture, double *levels)
{
    for (std::size_t t = 0; t < pair.others.size(); ++t)
        levels[pair.others[t]] = double((setting >> t) & 1);
    levels[pair.i] = snapped(mixture.first);
    levels[pair.j] = snapped(mixture.second);
}

/// The light of a mixture; 0 when it is none.
template <int N>
double luminanceOf(const Problem &problem, const Pair<N> &pair, std::size_t setting, const Mixture &mixture)
{
    const bool isFirst = isLevel(mixture.first);
    const bool isSecond = isLevel(mixture.second);
    if (!(isFirst & isSecond)) // one branch, since nothing foretells either
        return 0;
    double levels[N];
    spread<N>(pair, setting, mixture, levels);
    double sum = 0;
    for (int c = 0; c < N; ++c)
        sum += levels[c] * problem.Y[c];
    return sum;
}

/// Σ weights of the emitters that are on, for each setting.
template <int N>
std::array<double, SETTINGS<N>> sumsOf(const double *weights, const Pair<N> &pair)
{
    std::array<double, SETTINGS<N>> sums = {};
    for (std::size_t t = 0; t < pair.others.size(); ++t) {
        const std::size_t bit = std::size_t(1) << t;
        for (std::size_t setting = 0; setting < bit; ++setting)
            sums[setting + bit] = sums[setting] + weights[pair.others[t]];
    }
    return sums;
}

template <int N>
Candidate brightest(const Problem &problem, Eliminations<N> &eliminations)
{
    eliminate<N>(problem, eliminations);
    Candidate best;
    for (std::size_t p = 0; p < PAIRS<N>.size(); ++p) {
        const Pair<N> &pair = PAIRS<N>[p];
        const auto a = sumsOf<N>(problem.a, pair);
        const auto b = sumsOf<N>(problem.b, pair);
        for (std::size_t setting = 1; setting < SETTINGS<N>; ++setting) {
            const Mixture mixture = mixtureFor<N>(a[setting], b[setting], eliminations, p);
            const double luminance = luminanceOf<N>(problem, pair, setting, mixture);
            // Of equally bright candidates the one met first stays.
            if (luminance > best.luminance)
                best = {p, setting, luminance};
        }
    }
    return best;
}

template <int N>
Candidate search(const Problem &problem, Eliminations<N> &eliminations)
{
#ifdef TREL_HAS_AVX2_KERNEL
    const auto isFinite = [](double Y) { return std::isfinite(Y); };
    if constexpr (N == 5) {
        if (hasAvx2() && std::all_of(problem.Y, problem.Y + N, isFinite))
            return brightestByAvx2(problem, eliminations);
    }
#endif
    return brightest<N>(problem, eliminations);
}

template <int N>
void solve(const Problem &problem, double *levels)
{
    Eliminations<N> eliminations;
    const Candidate best = search<N>(problem, eliminations);
    if (best.setting == 0)
        return;
    const Pair<N> &pair = PAIRS<N>[best.pair];
    const double a = sumsOf<N>(problem.a, pair)[best.setting];
    const double b = sumsOf<N>(problem.b, pair)[best.setting];
    spread<N>(pair, best.setting, mixtureFor<N>(a, b, eliminations, best.pair), levels);
}

} // namespace

void brightestMixture(const Emitters &emitters, int numChannels, double x, double y, double *levels)
{
    const auto emitterCount = std::min({emitters.X.size(), emitters.Y.size(), emitters.Z.size()});
    Q_ASSERT_X(emitterCount >= numChannels, "QVector<T>::at", "index out of range");
    Q_ASSERT_X(numChannels <= MAX_CHANNELS, "brightestMixture", "Am.count() == numChannels");
    std::fill_n(levels, numChannels, 0.0);
    // ODD-37: on x + y = 1 the ratio is infinite, no candidate is valid and the mixture stays dark.
    const double kx = y / x;
    const double kz = y / (1 - x - y);
    Problem problem;
    for (int c = 0; c < numChannels; ++c) {
        problem.Y[c] = emitters.Y[c];
        problem.a[c] = emitters.X[c] * kx - emitters.Y[c];
        problem.b[c] = emitters.Z[c] * kz - emitters.Y[c];
    }
    switch (numChannels) {
    case 3:
        return solve<3>(problem, levels);
    case 4:
        return solve<4>(problem, levels);
    case 5:
        return solve<5>(problem, levels);
    default:
        return; // one emitter alone has no pair
    }
}
