#include "ScalarSolver.h"

// Without TREL_HAS_AVX2_KERNEL, and under another name, since a program may link both.
#define brightestMixture scalarBrightestMixture
#include "NChannelSolver.cpp"
#undef brightestMixture

void ScalarSolver::mix(const QVector<double> &X, const QVector<double> &Y, const QVector<double> &Z, int count,
                       double x, double y, double *levels)
{
    scalarBrightestMixture({X, Y, Z}, count, x, y, levels);
}
