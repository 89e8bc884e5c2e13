#include "NChannelSolver_p.h"

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <cmath>

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

    Elimination(const Problem &problem, int i, int j)
    {
        // ODD-36: multipliers have single precision.
        f = double(float(problem.b[i] / problem.a[i]));
        const double m10 = problem.b[i] - f * problem.a[i];
        const double m11 = problem.b[j] - f * problem.a[j];
        g = double(float(problem.a[j] / m11));
        reciprocal0 = double(float(1 / (problem.a[i] - g * m10)));
        reciprocal1 = double(float(1 / m11));
    }
};

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
    Candidate best;
    for (std::size_t p = 0; p < PAIRS<N>.size(); ++p) {
        const Pair<N> &pair = PAIRS<N>[p];
        const Elimination elimination(problem, pair.i, pair.j);
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

/// brightest() with four settings at a time.
/// \pre the luminances are finite: an emitter that is off is left out here, where the other adds 0 · Y.
template <int N>
__attribute__((target("avx2"))) Candidate brightestByAvx2(const Problem &problem)
{
    constexpr int BLOCKS = SETTINGS<N> / LANES;
    const __m256d zero = _mm256_setzero_pd();
    const __m256d one = _mm256_set1_pd(1);
    const __m256d sign = _mm256_set1_pd(-0.0);
    const __m256d lowest = _mm256_set1_pd(LOWEST_LEVEL);
    const __m256d highest = _mm256_set1_pd(HIGHEST_LEVEL);
    const __m256d bits[] = {_mm256_castsi256_pd(_mm256_setr_epi64x(0, -1, 0, -1)),
                            _mm256_castsi256_pd(_mm256_setr_epi64x(0, 0, -1, -1))};
    const __m256d allBits = _mm256_castsi256_pd(_mm256_set1_epi64x(-1));
    // All off is no setting.
    const __m256d tried = _mm256_castsi256_pd(_mm256_setr_epi64x(0, -1, -1, -1));

    __m256d bestLuminance[BLOCKS];
    __m256d bestFirst[BLOCKS];
    __m256d bestSecond[BLOCKS];
    __m256d bestPair[BLOCKS];
    for (int block = 0; block < BLOCKS; ++block)
        bestLuminance[block] = bestFirst[block] = bestSecond[block] = bestPair[block] = zero;

    for (std::size_t p = 0; p < PAIRS<N>.size(); ++p) {
        const Pair<N> &pair = PAIRS<N>[p];
        const Elimination elimination(problem, pair.i, pair.j);
        const __m256d f = _mm256_set1_pd(elimination.f);
        const __m256d g = _mm256_set1_pd(elimination.g);
        const __m256d reciprocal0 = _mm256_set1_pd(elimination.reciprocal0);
        const __m256d reciprocal1 = _mm256_set1_pd(elimination.reciprocal1);
        for (int block = 0; block < BLOCKS; ++block) {
            __m256d isOn[N] = {};
            __m256d a = zero;
            __m256d b = zero;
            for (std::size_t t = 0; t < pair.others.size(); ++t) {
                const int c = pair.others[t];
                isOn[c] = t < 2 ? bits[t] : block == 1 ? allBits : zero;
                a = _mm256_add_pd(a, _mm256_and_pd(isOn[c], _mm256_set1_pd(problem.a[c])));
                b = _mm256_add_pd(b, _mm256_and_pd(isOn[c], _mm256_set1_pd(problem.b[c])));
            }
            const __m256d minusA = _mm256_xor_pd(a, sign);
            const __m256d minusB = _mm256_xor_pd(b, sign);
            const __m256d m12 = _mm256_sub_pd(minusB, _mm256_mul_pd(f, minusA));
            const __m256d m02 = _mm256_sub_pd(minusA, _mm256_mul_pd(g, m12));
            __m256d first = _mm256_mul_pd(m02, reciprocal0);
            __m256d second = _mm256_mul_pd(m12, reciprocal1);
            __m256d isValid =
                _mm256_and_pd(_mm256_cmp_pd(first, lowest, _CMP_GT_OQ), _mm256_cmp_pd(first, highest, _CMP_LT_OQ));
            isValid = _mm256_and_pd(isValid, _mm256_cmp_pd(second, lowest, _CMP_GT_OQ));
            isValid = _mm256_and_pd(isValid, _mm256_cmp_pd(second, highest, _CMP_LT_OQ));
            if (block == 0)
                isValid = _mm256_and_pd(isValid, tried);
            if (_mm256_movemask_pd(isValid) == 0)
                continue;

            // In this order of operands a level of −0 stays what it is, as in snapped().
            first = _mm256_min_pd(one, _mm256_max_pd(zero, first));
            second = _mm256_min_pd(one, _mm256_max_pd(zero, second));
            __m256d luminance = zero;
            for (int c = 0; c < N; ++c) {
                const __m256d Y = _mm256_set1_pd(problem.Y[c]);
                const __m256d light = c == pair.i   ? _mm256_mul_pd(first, Y)
                                      : c == pair.j ? _mm256_mul_pd(second, Y)
                                                    : _mm256_and_pd(isOn[c], Y);
                luminance = _mm256_add_pd(luminance, light);
            }
            const __m256d isBetter = _mm256_and_pd(isValid, _mm256_cmp_pd(luminance, bestLuminance[block], _CMP_GT_OQ));
            bestLuminance[block] = _mm256_blendv_pd(bestLuminance[block], luminance, isBetter);
            bestFirst[block] = _mm256_blendv_pd(bestFirst[block], first, isBetter);
            bestSecond[block] = _mm256_blendv_pd(bestSecond[block], second, isBetter);
            bestPair[block] = _mm256_blendv_pd(bestPair[block], _mm256_set1_pd(double(p)), isBetter);
        }
    }

    // Each lane has the best of its setting. Of equally bright ones, the lowest pair's and then setting's came first.
    alignas(32) double luminances[SETTINGS<N>];
    alignas(32) double firsts[SETTINGS<N>];
    alignas(32) double seconds[SETTINGS<N>];
    alignas(32) double pairs[SETTINGS<N>];
    for (int block = 0; block < BLOCKS; ++block) {
        _mm256_store_pd(luminances + block * LANES, bestLuminance[block]);
        _mm256_store_pd(firsts + block * LANES, bestFirst[block]);
        _mm256_store_pd(seconds + block * LANES, bestSecond[block]);
        _mm256_store_pd(pairs + block * LANES, bestPair[block]);
    }
    Candidate best;
    for (int setting = 1; setting < SETTINGS<N>; ++setting) {
        const bool isBrighter = luminances[setting] > best.luminance;
        const bool isEarlier = luminances[setting] == best.luminance && int(pairs[setting]) < best.pair;
        if (isBrighter || (isEarlier && best.setting != 0))
            best = {int(pairs[setting]), setting, firsts[setting], seconds[setting], luminances[setting]};
    }
    return best;
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
    const bool isByAvx2 = N > 3 && hasAvx2() && std::all_of(problem.Y, problem.Y + N, isFinite);
    const Candidate best = isByAvx2 ? brightestByAvx2<(N > 3 ? N : 4)>(problem) : brightest<N>(problem);
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
