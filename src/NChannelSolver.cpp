#include "NChannelSolver_p.h"

#include "ColorUtils.h"

namespace {

/// The two chromaticity constraints: levels L mix to the wanted chromaticity exactly when Σ a·L = Σ b·L = 0.
struct Constraints
{
    QVector<double> a;
    QVector<double> b;
};

/// The best mixture found so far.
struct Best
{
    QVector<double> levels;
    double luminance = 0;
};

Constraints constraintsFor(const Emitters &emitters, int numChannels, double x, double y)
{
    const double kx = y / x;
    const double kz = y / (1 - x - y);
    Constraints constraints;
    for (int c = 0; c < numChannels; ++c) {
        constraints.a.append(emitters.X.at(c) * kx - emitters.Y.at(c));
        constraints.b.append(emitters.Z.at(c) * kz - emitters.Y.at(c));
    }
    return constraints;
}

/// A level just outside 0..1 is rounding of the elimination, not a violated bound.
double snapped(double level)
{
    if (level > -0.00005 && level < 0)
        return 0;
    if (level < 1.00005 && level > 1)
        return 1;
    return level;
}

QVector<int> othersThan(int i, int j, int numChannels)
{
    QVector<int> others;
    for (int c = 0; c < numChannels; ++c) {
        if (c != i && c != j)
            others.append(c);
    }
    return others;
}

/// Σ weights · levels over those of \a channels that are on: off ones must not add 0 · ∞.
double weightedSum(const QVector<double> &weights, const QVector<double> &levels, const QVector<int> &channels)
{
    double sum = 0;
    for (const int c : channels) {
        if (levels.at(c) != 0)
            sum += weights.at(c) * levels.at(c);
    }
    return sum;
}

double luminance(const Emitters &emitters, const QVector<double> &levels)
{
    double sum = 0;
    for (int c = 0; c < int(levels.size()); ++c)
        sum += levels.at(c) * emitters.Y.at(c);
    return sum;
}

/// Tries every on/off setting of the other emitters, but for all off, with \a i and \a j mixing.
void tryPair(int i, int j, const Emitters &emitters, const Constraints &constraints, Best &best)
{
    const int numChannels = int(best.levels.size());
    const QVector<int> others = othersThan(i, j, numChannels);
    for (unsigned int setting = 1; setting < 1u << others.size(); ++setting) {
        QVector<double> levels(numChannels, 0.0);
        for (int t = 0; t < int(others.size()); ++t)
            levels[others.at(t)] = (setting >> t) & 1u;

        const double rows[2][3] = {
            {constraints.a.at(i), constraints.a.at(j), -weightedSum(constraints.a, levels, others)},
            {constraints.b.at(i), constraints.b.at(j), -weightedSum(constraints.b, levels, others)}};
        ColorUtils::gaussianEliminationTwoByThree(rows, levels[i], levels[j]);
        levels[i] = snapped(levels.at(i));
        levels[j] = snapped(levels.at(j));
        if (!ColorUtils::validateDimmingRatio(levels))
            continue;

        // Of equally bright mixtures the one met first stays.
        const double candidate = luminance(emitters, levels);
        if (candidate > best.luminance) {
            best.levels = levels;
            best.luminance = candidate;
        }
    }
}

} // namespace

QVector<double> brightestMixture(const Emitters &emitters, int numChannels, double x, double y)
{
    // ODD-37: on x + y = 1 the ratio is infinite, no candidate is valid and the mixture stays dark.
    const Constraints constraints = constraintsFor(emitters, numChannels, x, y);
    Best best;
    best.levels.fill(0.0, numChannels);
    for (int i = 0; i < numChannels; ++i) {
        for (int j = i + 1; j < numChannels; ++j)
            tryPair(i, j, emitters, constraints, best);
    }
    return best.levels;
}
