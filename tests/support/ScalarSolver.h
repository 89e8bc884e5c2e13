#pragma once

#include <QVector>

/// The library's solver as it is built where a machine has no vector instructions.
namespace ScalarSolver {

/// Writes to \a levels those of the brightest mixture of the first \a count emitters with chromaticity (\a x, \a y).
void mix(const QVector<double> &X, const QVector<double> &Y, const QVector<double> &Z, int count, double x, double y,
         double *levels);

} // namespace ScalarSolver
