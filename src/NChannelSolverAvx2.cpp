#include "EmitterPairs_p.h"

#include <algorithm>
#include <utility>

#include <immintrin.h>

// The solver's kernel for five emitters and processors with AVX2: eliminations of four pairs at a time, then four
// settings of a pair at a time. Each lane does the operations of the scalar kernel in their order, so that its bits are
// the same.

#define TREL_AVX2_INLINE __attribute__((target("avx2"), always_inline)) inline

using namespace EmitterPairs;

namespace {

constexpr int N = 5;
constexpr std::size_t LANES = 4;

/// Candidates, and where each stands in the order in which they are met: pair by pair, setting by setting.
struct FourCandidates
{
    __m256d luminance;
    __m256d rank;
};

/// The pair \a p; the last one again where a group of four goes beyond it.
constexpr Pair<N> pairAt(std::size_t p)
{
    return PAIRS<N>[std::min(p, PAIRS<N>.size() - 1)];
}

template <std::size_t P>
TREL_AVX2_INLINE __m256d ofFirsts(const double *weights)
{
    return _mm256_setr_pd(weights[pairAt(P).i], weights[pairAt(P + 1).i], weights[pairAt(P + 2).i],
                          weights[pairAt(P + 3).i]);
}

template <std::size_t P>
TREL_AVX2_INLINE __m256d ofSeconds(const double *weights)
{
    return _mm256_setr_pd(weights[pairAt(P).j], weights[pairAt(P + 1).j], weights[pairAt(P + 2).j],
                          weights[pairAt(P + 3).j]);
}

TREL_AVX2_INLINE __m256d singlePrecision(__m256d values)
{
    return _mm256_cvtps_pd(_mm256_cvtpd_ps(values));
}

/// The eliminations of the four pairs from \a P on.
template <std::size_t P>
TREL_AVX2_INLINE void eliminateFour(const Problem &problem, Eliminations<N> &eliminations)
{
    const __m256d ai = ofFirsts<P>(problem.a);
    const __m256d aj = ofSeconds<P>(problem.a);
    const __m256d bi = ofFirsts<P>(problem.b);
    const __m256d bj = ofSeconds<P>(problem.b);
    const __m256d one = _mm256_set1_pd(1);
    // ODD-36: multipliers have single precision.
    const __m256d f = singlePrecision(_mm256_div_pd(bi, ai));
    const __m256d m10 = _mm256_sub_pd(bi, _mm256_mul_pd(f, ai));
    const __m256d m11 = _mm256_sub_pd(bj, _mm256_mul_pd(f, aj));
    const __m256d g = singlePrecision(_mm256_div_pd(aj, m11));
    const __m256d m00 = _mm256_sub_pd(ai, _mm256_mul_pd(g, m10));
    _mm256_storeu_pd(eliminations.f + P, f);
    _mm256_storeu_pd(eliminations.g + P, g);
    _mm256_storeu_pd(eliminations.reciprocal0 + P, singlePrecision(_mm256_div_pd(one, m00)));
    _mm256_storeu_pd(eliminations.reciprocal1 + P, singlePrecision(_mm256_div_pd(one, m11)));
}

template <std::size_t... GROUP>
TREL_AVX2_INLINE void eliminate(const Problem &problem, Eliminations<N> &eliminations, std::index_sequence<GROUP...>)
{
    (eliminateFour<LANES * GROUP>(problem, eliminations), ...);
}

/// Weights of the emitters in the lanes whose setting switches them on, as the first or the second other of a pair. A
/// third other is off in the first block and on in the second.
struct Switched
{
    __m256d asFirst[N];
    __m256d asSecond[N];
};

TREL_AVX2_INLINE Switched switched(const double *weights)
{
    constexpr long long ON = -1;
    const __m256d haveFirst = _mm256_castsi256_pd(_mm256_setr_epi64x(0, ON, 0, ON));
    const __m256d haveSecond = _mm256_castsi256_pd(_mm256_setr_epi64x(0, 0, ON, ON));
    Switched result;
    for (int c = 0; c < N; ++c) {
        const __m256d weight = _mm256_set1_pd(weights[c]);
        // A sum begins with +0, so that it never is −0.
        result.asFirst[c] = _mm256_and_pd(haveFirst, _mm256_add_pd(_mm256_setzero_pd(), weight));
        result.asSecond[c] = _mm256_and_pd(haveSecond, weight);
    }
    return result;
}

/// The problem, ready for four settings at a time.
struct FourSettings
{
    const Problem &problem;
    Switched a;
    Switched b;
    Switched Y;
};

/// Σ weights of the emitters that are on, for each setting of \a BLOCK.
template <std::size_t P, std::size_t BLOCK>
TREL_AVX2_INLINE __m256d sumsOf(const double *weights, const Switched &lanes)
{
    constexpr auto OTHERS = PAIRS<N>[P].others;
    const __m256d sums = _mm256_add_pd(lanes.asFirst[OTHERS[0]], lanes.asSecond[OTHERS[1]]);
    return BLOCK == 0 ? sums : _mm256_add_pd(sums, _mm256_set1_pd(weights[OTHERS.back()]));
}

/// Minimum and maximum answer their second operand when either is NaN: in these orders no NaN goes unseen.
TREL_AVX2_INLINE __m256d areLevels(__m256d first, __m256d second)
{
    const __m256d lowest = _mm256_min_pd(first, second);
    const __m256d highest = _mm256_max_pd(second, first);
    return _mm256_and_pd(_mm256_cmp_pd(lowest, _mm256_set1_pd(LOWEST_LEVEL), _CMP_GT_OQ),
                         _mm256_cmp_pd(highest, _mm256_set1_pd(HIGHEST_LEVEL), _CMP_LT_OQ));
}

/// In this order of operands a level of −0 stays what it is.
TREL_AVX2_INLINE __m256d snapped(__m256d levels)
{
    return _mm256_min_pd(_mm256_set1_pd(1), _mm256_max_pd(_mm256_setzero_pd(), levels));
}

/// The light of emitter \a c.
template <std::size_t P>
TREL_AVX2_INLINE __m256d lightOf(int c, const FourSettings &settings, __m256d first, __m256d second)
{
    constexpr Pair<N> PAIR = PAIRS<N>[P];
    const __m256d Y = _mm256_set1_pd(settings.problem.Y[c]);
    if (c == PAIR.i)
        return _mm256_mul_pd(first, Y);
    if (c == PAIR.j)
        return _mm256_mul_pd(second, Y);
    if (c == PAIR.others[0])
        return settings.Y.asFirst[c];
    return c == PAIR.others[1] ? settings.Y.asSecond[c] : Y;
}

/// The light of the mixtures; 0 for those that are none. Zeros are not added, since no comparison tells −0 from +0.
template <std::size_t P, std::size_t BLOCK>
TREL_AVX2_INLINE __m256d luminancesOf(const FourSettings &settings, __m256d first, __m256d second)
{
    constexpr Pair<N> PAIR = PAIRS<N>[P];
    const __m256d areMixtures = areLevels(first, second);
    first = snapped(first);
    second = snapped(second);
    __m256d sums = lightOf<P>(0, settings, first, second);
    for (int c = 1; c < N; ++c) {
        if (BLOCK == 1 || c != PAIR.others.back())
            sums = _mm256_add_pd(sums, lightOf<P>(c, settings, first, second));
    }
    return _mm256_and_pd(areMixtures, sums);
}

template <std::size_t P, std::size_t BLOCK>
TREL_AVX2_INLINE FourCandidates candidatesOf(const FourSettings &settings, const Eliminations<N> &eliminations)
{
    constexpr double RANK = double(P * SETTINGS<N> + BLOCK * LANES);
    const __m256d a = sumsOf<P, BLOCK>(settings.problem.a, settings.a);
    const __m256d b = sumsOf<P, BLOCK>(settings.problem.b, settings.b);
    const __m256d minusA = _mm256_xor_pd(a, _mm256_set1_pd(-0.0));
    // The same bits as −b − f · −a.
    const __m256d m12 = _mm256_sub_pd(_mm256_mul_pd(_mm256_set1_pd(eliminations.f[P]), a), b);
    const __m256d m02 = _mm256_sub_pd(minusA, _mm256_mul_pd(_mm256_set1_pd(eliminations.g[P]), m12));
    const __m256d first = _mm256_mul_pd(m02, _mm256_set1_pd(eliminations.reciprocal0[P]));
    const __m256d second = _mm256_mul_pd(m12, _mm256_set1_pd(eliminations.reciprocal1[P]));
    return {luminancesOf<P, BLOCK>(settings, first, second), _mm256_setr_pd(RANK, RANK + 1, RANK + 2, RANK + 3)};
}

/// Lane by lane the brighter of \a best and of those of a later pair; of equally bright ones the first.
template <std::size_t P, std::size_t BLOCK>
TREL_AVX2_INLINE void tryBlock(const FourSettings &settings, const Eliminations<N> &eliminations, FourCandidates &best)
{
    const FourCandidates candidates = candidatesOf<P, BLOCK>(settings, eliminations);
    const __m256d areBrighter = _mm256_cmp_pd(candidates.luminance, best.luminance, _CMP_GT_OQ);
    best.luminance = _mm256_max_pd(candidates.luminance, best.luminance);
    best.rank = _mm256_max_pd(best.rank, _mm256_and_pd(areBrighter, candidates.rank)); // ranks only rise
}

/// The same for candidates in any order.
TREL_AVX2_INLINE FourCandidates bestOf(const FourCandidates &a, const FourCandidates &b)
{
    const __m256d isBrighter = _mm256_cmp_pd(b.luminance, a.luminance, _CMP_GT_OQ);
    const __m256d isEqual = _mm256_cmp_pd(b.luminance, a.luminance, _CMP_EQ_OQ);
    const __m256d isEarlier = _mm256_cmp_pd(b.rank, a.rank, _CMP_LT_OQ);
    const __m256d isB = _mm256_or_pd(isBrighter, _mm256_and_pd(isEqual, isEarlier));
    return {_mm256_blendv_pd(a.luminance, b.luminance, isB), _mm256_blendv_pd(a.rank, b.rank, isB)};
}

template <std::size_t... P>
TREL_AVX2_INLINE FourCandidates bestOfPairs(const FourSettings &settings, const Eliminations<N> &eliminations,
                                            std::index_sequence<P...>)
{
    const FourCandidates none = {_mm256_setzero_pd(), _mm256_setzero_pd()};
    FourCandidates best[] = {none, none};
    ((tryBlock<P, 0>(settings, eliminations, best[0]), tryBlock<P, 1>(settings, eliminations, best[1])), ...);
    return bestOf(best[0], best[1]);
}

/// The best of the four lanes.
TREL_AVX2_INLINE Candidate bestLane(FourCandidates four)
{
    four = bestOf(four, {_mm256_permute2f128_pd(four.luminance, four.luminance, 1),
                         _mm256_permute2f128_pd(four.rank, four.rank, 1)});
    four = bestOf(four, {_mm256_permute_pd(four.luminance, 5), _mm256_permute_pd(four.rank, 5)});
    const auto rank = std::size_t(_mm256_cvtsd_f64(four.rank));
    return {rank / SETTINGS<N>, rank % SETTINGS<N>, _mm256_cvtsd_f64(four.luminance)};
}

} // namespace

bool EmitterPairs::hasAvx2()
{
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

TREL_AVX2 Candidate EmitterPairs::brightestByAvx2(const Problem &problem, Eliminations<N> &eliminations)
{
    eliminate(problem, eliminations, std::make_index_sequence<Eliminations<N>::ROOM / LANES>());
    const FourSettings settings = {problem, switched(problem.a), switched(problem.b), switched(problem.Y)};
    const auto pairs = std::make_index_sequence<PAIRS<N>.size()>();
    return bestLane(bestOfPairs(settings, eliminations, pairs));
}
