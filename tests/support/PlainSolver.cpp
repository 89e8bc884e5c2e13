#include "PlainSolver.h"

#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QVector>

#include <cmath>
#include <cstring>

namespace PlainSolver {

namespace {

/// What a solve works on: the two equations' coefficients and the emitters' light.
struct Problem
{
    QVector<double> a;
    QVector<double> b;
    QVector<double> light;
};

/// One setting of the emitters: \c i and \c j mix, the others are on or off.
struct Candidate
{
    int i = 0;
    int j = 0;
    QVector<int> others;
    unsigned char switches = 0; ///< bit t: others[t] is on
};

Problem makeProblem(Tristimulus *data, int count, double x, double y)
{
    const double kx = y / x;
    const double kz = y / (1 - x - y);
    Problem problem;
    for (int c = 0; c < count; ++c) {
        const double Y = data->getY().at(c);
        problem.a.append(data->getX().at(c) * kx - Y);
        problem.b.append(data->getZ().at(c) * kz - Y);
        problem.light.append(Y);
    }
    return problem;
}

QVector<int> othersThan(int i, int j, int count)
{
    QVector<int> others;
    for (int c = 0; c < count; ++c) {
        if (c != i && c != j)
            others.append(c);
    }
    return others;
}

double snapped(double level)
{
    if (level > -0.00005 && level < 0)
        return 0;
    if (level < 1.00005 && level > 1)
        return 1;
    return level;
}

QVector<double> mixedLevels(const Problem &problem, const Candidate &candidate)
{
    QVector<double> levels(problem.a.size(), 0.0);
    double sumA = 0;
    double sumB = 0;
    for (int t = 0; t < int(candidate.others.size()); ++t) {
        if (!(candidate.switches >> t & 1))
            continue;
        const int c = candidate.others.at(t);
        levels[c] = 1;
        sumA += problem.a.at(c) * levels.at(c);
        sumB += problem.b.at(c) * levels.at(c);
    }
    const int i = candidate.i;
    const int j = candidate.j;
    const double m[2][3] = {{problem.a.at(i), problem.a.at(j), -sumA}, {problem.b.at(i), problem.b.at(j), -sumB}};
    double first = 0;
    double second = 0;
    gaussianEliminationTwoByThree(m, first, second);
    levels[i] = snapped(first);
    levels[j] = snapped(second);
    return levels;
}

bool isReachable(const QVector<double> &levels)
{
    for (const double level : levels) {
        if (!(level >= 0 && level <= 1))
            return false;
    }
    return true;
}

double luminance(const Problem &problem, const QVector<double> &levels)
{
    double sum = 0;
    for (int c = 0; c < int(levels.size()); ++c)
        sum += levels.at(c) * problem.light.at(c);
    return sum;
}

QVector<double> brightestLevels(const Problem &problem)
{
    const int count = int(problem.a.size());
    QVector<double> best(count, 0.0);
    double bestLuminance = 0;
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j) {
            for (int k = 1; k < 1 << (count - 2); ++k) {
                const Candidate candidate{i, j, othersThan(i, j, count), static_cast<unsigned char>(k)};
                const QVector<double> levels = mixedLevels(problem, candidate);
                if (!isReachable(levels) || !(luminance(problem, levels) > bestLuminance))
                    continue;
                best = levels;
                bestLuminance = luminance(problem, levels);
            }
        }
    }
    return best;
}

} // namespace

void gaussianEliminationTwoByThree(const double m[2][3], double &a, double &b)
{
    double rows[2][3];
    std::memcpy(rows, m, sizeof rows);
    const float f = static_cast<float>(rows[1][0] / rows[0][0]);
    for (int k = 0; k < 3; ++k)
        rows[1][k] = rows[1][k] - double(f) * rows[0][k];
    const float g = static_cast<float>(rows[0][1] / rows[1][1]);
    for (int k = 0; k < 3; ++k)
        rows[0][k] = rows[0][k] - double(g) * rows[1][k];
    const float first = static_cast<float>(1 / rows[0][0]);
    const float second = static_cast<float>(1 / rows[1][1]);
    a = rows[0][2] * double(first);
    b = rows[1][2] * double(second);
}

void convertYxyToNChannel(const double *Yxy, double *out, ColorUtils::ChannelConfiguration configuration,
                          ColorUtils::HuelockProfileID profile, bool clampToGamut)
{
    const int count = ColorUtils::configChannelCount(configuration);
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
    double x = Yxy[1];
    double y = Yxy[2];
    if (clampToGamut)
        data->closestPtOnGamut(Yxy[1], Yxy[2], x, y);
    const QVector<double> best = brightestLevels(makeProblem(data, count, x, y));
    for (int c = 0; c < count; ++c)
        out[c] = best.at(c) * Yxy[0];
}

bool sameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

} // namespace PlainSolver
