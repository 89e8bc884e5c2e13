#pragma once

#include <array>
#include <cstddef>

// Two emitters mix, each of the others is on or off: the solver tries every such setting of every pair. This is what
// its kernels share.

namespace EmitterPairs {

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
constexpr std::size_t SETTINGS = std::size_t(1) << (N - 2);

/// Levels L mix to the wanted chromaticity exactly when Σ a·L = Σ b·L = 0; Σ Y·L is their luminance.
struct Problem
{
    double a[MAX_CHANNELS];
    double b[MAX_CHANNELS];
    double Y[MAX_CHANNELS];
};

/// ColorUtils::gaussianEliminationTwoByThree() for the columns of each pair, ready for any right-hand side. There is
/// room for whole groups of four.
template <int N>
struct Eliminations
{
    static constexpr std::size_t ROOM = (PAIRS<N>.size() + 3) / 4 * 4;

    double f[ROOM];
    double g[ROOM];
    double reciprocal0[ROOM];
    double reciprocal1[ROOM];
};

/// A pair and a setting of its others, with the light that they give. Without a setting: nothing gives light.
struct Candidate
{
    std::size_t pair = 0;
    std::size_t setting = 0;
    double luminance = 0;
};

#ifdef TREL_HAS_AVX2_KERNEL
#define TREL_AVX2 __attribute__((target("avx2")))

/// Whether this machine has the instructions of brightestByAvx2().
bool hasAvx2();

/// The brightest candidate, of equally bright ones the one of the lowest pair and then the lowest setting, found
/// with four settings at a time; fills \a eliminations. Only where hasAvx2(). Fewer than five emitters have too few
/// settings to gain by it.
/// \pre the luminances are finite: an emitter that is off is left out here, where others add 0 · Y.
TREL_AVX2 Candidate brightestByAvx2(const Problem &problem, Eliminations<5> &eliminations);

#endif

} // namespace EmitterPairs
