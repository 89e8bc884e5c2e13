#include "NChannelSolver_p.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

#if defined(__GNUC__) && defined(__x86_64__) && !defined(TREL_SCALAR_SOLVER)
#define TREL_HAS_AVX2_KERNEL
#include <immintrin.h>
#endif

// Two emitters mix, each of the others is on or off: every such setting of every pair is tried. What depends on the
// pair alone is worked out once for all its settings. Each operation is the one of the plain elimination, in its
// order: results are the same bits, by whichever kernel.

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

#ifdef TREL_HAS_AVX2_KERNEL

constexpr int LANES = 4;

/// For each setting, the best pair so far, four settings to a block.
template <int N>
struct Lanes
{
    static constexpr int BLOCKS = SETTINGS<N> / LANES;

    __m256d luminance[BLOCKS] = {};
    __m256d first[BLOCKS] = {};
    __m256d second[BLOCKS] = {};
    __m256d pair[BLOCKS] = {};
};

/// Of equally bright ones, the lowest pair's and then the lowest setting's was met first.
template <int N>
Candidate bestOf(const Lanes<N> &lanes)
{
    double luminance[SETTINGS<N>];
    double pair[SETTINGS<N>];
    std::memcpy(luminance, lanes.luminance, sizeof luminance);
    std::memcpy(pair, lanes.pair, sizeof pair);
    Candidate best;
    for (int setting = 1; setting < SETTINGS<N>; ++setting) {
        const bool isEarlier = luminance[setting] == best.luminance && int(pair[setting]) < best.pair;
        if (luminance[setting] > best.luminance || isEarlier) {
            best.luminance = luminance[setting];
            best.pair = int(pair[setting]);
            best.setting = setting;
        }
    }
    best.first = lanes.first[best.setting / LANES][best.setting % LANES];
    best.second = lanes.second[best.setting / LANES][best.setting % LANES];
    return best;
}

/// All bits of the lanes whose setting, in \a block, has the bit \a t.
template <int BLOCK>
__attribute__((target("avx2"), always_inline)) inline __m256d lanesWithBit(std::size_t t)
{
    constexpr long long ON = -1;
    switch (t) {
    case 0:
        return _mm256_castsi256_pd(_mm256_setr_epi64x(0, ON, 0, ON));
    case 1:
        return _mm256_castsi256_pd(_mm256_setr_epi64x(0, 0, ON, ON));
    default:
        return _mm256_castsi256_pd(_mm256_set1_epi64x(BLOCK == 1 ? ON : 0));
    }
}

__attribute__((target("avx2"), always_inline)) inline __m256d areLevels(__m256d levels)
{
    return _mm256_and_pd(_mm256_cmp_pd(levels, _mm256_set1_pd(LOWEST_LEVEL), _CMP_GT_OQ),
                         _mm256_cmp_pd(levels, _mm256_set1_pd(HIGHEST_LEVEL), _CMP_LT_OQ));
}

/// snapped(); in this order of operands a level of −0 stays what it is.
__attribute__((target("avx2"), always_inline)) inline __m256d snapped(__m256d levels)
{
    return _mm256_min_pd(_mm256_set1_pd(1), _mm256_max_pd(_mm256_setzero_pd(), levels));
}

template <int N, std::size_t P, int BLOCK>
__attribute__((target("avx2"), always_inline)) inline void trySettings(const Problem &problem,
                                                                       const Elimination &elimination, Lanes<N> &lanes)
{
    constexpr Pair<N> PAIR = PAIRS<N>[P];
    const __m256d sign = _mm256_set1_pd(-0.0);
    __m256d a = _mm256_setzero_pd();
    __m256d b = _mm256_setzero_pd();
    for (std::size_t t = 0; t < PAIR.others.size(); ++t) {
        const __m256d isOn = lanesWithBit<BLOCK>(t);
        a = _mm256_add_pd(a, _mm256_and_pd(isOn, _mm256_set1_pd(problem.a[PAIR.others[t]])));
        b = _mm256_add_pd(b, _mm256_and_pd(isOn, _mm256_set1_pd(problem.b[PAIR.others[t]])));
    }
    const __m256d minusA = _mm256_xor_pd(a, sign);
    const __m256d minusB = _mm256_xor_pd(b, sign);
    const __m256d m12 = _mm256_sub_pd(minusB, _mm256_mul_pd(_mm256_set1_pd(elimination.f), minusA));
    const __m256d m02 = _mm256_sub_pd(minusA, _mm256_mul_pd(_mm256_set1_pd(elimination.g), m12));
    __m256d first = _mm256_mul_pd(m02, _mm256_set1_pd(elimination.reciprocal0));
    __m256d second = _mm256_mul_pd(m12, _mm256_set1_pd(elimination.reciprocal1));
    const __m256d isValid = _mm256_and_pd(areLevels(first), areLevels(second));
    if (_mm256_movemask_pd(isValid) == 0)
        return;
    first = snapped(first);
    second = snapped(second);
    __m256d luminance = _mm256_setzero_pd();
    std::size_t t = 0;
    for (int c = 0; c < N; ++c) {
        const __m256d Y = _mm256_set1_pd(problem.Y[c]);
        const __m256d light = c == PAIR.i   ? _mm256_mul_pd(first, Y)
                              : c == PAIR.j ? _mm256_mul_pd(second, Y)
                                            : _mm256_and_pd(lanesWithBit<BLOCK>(t++), Y);
        luminance = _mm256_add_pd(luminance, light);
    }
    const __m256d isBetter = _mm256_and_pd(isValid, _mm256_cmp_pd(luminance, lanes.luminance[BLOCK], _CMP_GT_OQ));
    lanes.luminance[BLOCK] = _mm256_blendv_pd(lanes.luminance[BLOCK], luminance, isBetter);
    lanes.first[BLOCK] = _mm256_blendv_pd(lanes.first[BLOCK], first, isBetter);
    lanes.second[BLOCK] = _mm256_blendv_pd(lanes.second[BLOCK], second, isBetter);
    lanes.pair[BLOCK] = _mm256_blendv_pd(lanes.pair[BLOCK], _mm256_set1_pd(double(P)), isBetter);
}

template <int N, std::size_t P>
__attribute__((target("avx2"), always_inline)) inline void tryPair(const Problem &problem,
                                                                   const Elimination &elimination, Lanes<N> &lanes)
{
    trySettings<N, P, 0>(problem, elimination, lanes);
    if constexpr (Lanes<N>::BLOCKS == 2)
        trySettings<N, P, 1>(problem, elimination, lanes);
}

/// brightest() with four settings at a time.
/// \pre the luminances are finite: an emitter that is off is left out here, where the other adds 0 · Y.
template <int N, std::size_t... P>
__attribute__((target("avx2"))) Candidate brightestByAvx2(const Problem &problem, std::index_sequence<P...>)
{
    const Eliminations<N> eliminations = eliminationsOf<N>(problem);
    Lanes<N> lanes;
    (tryPair<N, P>(problem, eliminations[P], lanes), ...);
    return bestOf(lanes);
}

bool hasAvx2()
{
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

#endif

template <int N>
void solve(const Problem &problem, double *levels)
{
#ifdef TREL_HAS_AVX2_KERNEL
    const auto isFinite = [](double value) { return std::isfinite(value); };
    constexpr int WIDE = std::max(N, 4); // three emitters have no four settings
    const bool isByAvx2 = N == WIDE && hasAvx2() && std::all_of(problem.Y, problem.Y + N, isFinite);
    const Candidate best = isByAvx2 ? brightestByAvx2<WIDE>(problem, std::make_index_sequence<PAIRS<WIDE>.size()>())
                                    : brightest<N>(problem);
#else
    const Candidate best = brightest<N>(problem);
#endif
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
