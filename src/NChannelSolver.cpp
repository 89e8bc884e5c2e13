#include "NChannelSolver_p.h"

#include <QtGlobal>

#include <algorithm>
#include <array>

// Two emitters mix, each of the others is on or off: every such setting of every pair is tried. What depends on the
// pair alone is worked out once for all its settings. Each operation is the one of the plain elimination, in its
// order, so that results are the same bits.

namespace {

constexpr int MAX_CHANNELS = 5;

// A level just outside 0..1 is rounding of the elimination, not a violated bound.
constexpr double LOWEST_LEVEL = -0.00005;
constexpr double HIGHEST_LEVEL = 1.00005;

/// Two emitters that mix, and the others.
template <int N>
struct Pair
{
    int i = 0;
    int j = 0;
    std::array<int, N - 2> others = {};
};

template <int N>
constexpr std::array<Pair<N>, N *(N - 1) / 2> allPairs()
{
    std::array<Pair<N>, N *(N - 1) / 2> pairs = {};
    std::size_t count = 0;
    for (int i = 0; i < N; ++i) {
        for (int j = i + 1; j < N; ++j) {
            Pair<N> &pair = pairs[count++];
            pair.i = i;
            pair.j = j;
            std::size_t t = 0;
            for (int c = 0; c < N; ++c) {
                if (c != i && c != j)
                    pair.others[t++] = c;
            }
        }
    }
    return pairs;
}

template <int N>
constexpr auto PAIRS = allPairs<N>();

/// Bit t of a setting says that the t-th of a pair's others is on. The one with all off is not tried.
template <int N>
constexpr int SETTINGS = 1 << (N - 2);

/// Levels L mix to the wanted chromaticity exactly when Σ a·L = Σ b·L = 0; Σ Y·L is their luminance.
struct Problem
{
    double a[MAX_CHANNELS];
    double b[MAX_CHANNELS];
    double Y[MAX_CHANNELS];
};

/// ColorUtils::gaussianEliminationTwoByThree() for the columns of a pair, ready for any right-hand side.
struct Elimination
{
    double f;
    double g;
    double reciprocal0;
    double reciprocal1;
};

template <int N>
using Eliminations = std::array<Elimination, PAIRS<N>.size()>;

/// Those of all pairs, before anything else: each is a long chain of divisions, and they overlap here.
template <int N>
inline Eliminations<N> eliminationsOf(const Problem &problem)
{
    Eliminations<N> eliminations;
    for (std::size_t p = 0; p < eliminations.size(); ++p) {
        const int i = PAIRS<N>[p].i;
        const int j = PAIRS<N>[p].j;
        // ODD-36: multipliers have single precision.
        const double f = double(float(problem.b[i] / problem.a[i]));
        const double m10 = problem.b[i] - f * problem.a[i];
        const double m11 = problem.b[j] - f * problem.a[j];
        const double g = double(float(problem.a[j] / m11));
        eliminations[p] = {f, g, double(float(1 / (problem.a[i] - g * m10))), double(float(1 / m11))};
    }
    return eliminations;
}

/// A setting and what it gives.
struct Candidate
{
    int pair = 0;
    int setting = 0;
    double first = 0;  ///< level of the pair's one
    double second = 0; ///< and the other
    double luminance = 0;
};

bool isLevel(double level)
{
    return level > LOWEST_LEVEL && level < HIGHEST_LEVEL;
}

double snapped(double level)
{
    return level < 0 ? 0 : level > 1 ? 1 : level;
}

template <int N>
void spread(const Candidate &candidate, double *levels)
{
    const Pair<N> &pair = PAIRS<N>[std::size_t(candidate.pair)];
    for (std::size_t t = 0; t < pair.others.size(); ++t)
        levels[pair.others[t]] = (candidate.setting >> t) & 1;
    levels[pair.i] = candidate.first;
    levels[pair.j] = candidate.second;
}

template <int N>
double luminanceOf(const Problem &problem, const Candidate &candidate)
{
    double levels[N];
    spread<N>(candidate, levels);
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
Candidate brightest(const Problem &problem)
{
    const Eliminations<N> eliminations = eliminationsOf<N>(problem);
    Candidate best;
    for (std::size_t p = 0; p < PAIRS<N>.size(); ++p) {
        const Pair<N> &pair = PAIRS<N>[p];
        const Elimination &elimination = eliminations[p];
        const auto a = sumsOf<N>(problem.a, pair);
        const auto b = sumsOf<N>(problem.b, pair);
        for (std::size_t setting = 1; setting < a.size(); ++setting) {
            const double m12 = -b[setting] - elimination.f * -a[setting];
            const double m02 = -a[setting] - elimination.g * m12;
            const double first = m02 * elimination.reciprocal0;
            const double second = m12 * elimination.reciprocal1;
            if (!isLevel(first) || !isLevel(second))
                continue;
            Candidate candidate{int(p), int(setting), snapped(first), snapped(second), 0};
            candidate.luminance = luminanceOf<N>(problem, candidate);
            // Of equally bright mixtures the one met first stays.
            if (candidate.luminance > best.luminance)
                best = candidate;
        }
    }
    return best;
}

template <int N>
void solve(const Problem &problem, double *levels)
{
    const Candidate best = brightest<N>(problem);
    if (best.setting != 0)
        spread<N>(best, levels);
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
