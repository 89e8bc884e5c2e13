#pragma once

#include <QVector>

/// The library's solver as it is built where a machine has no vector instructions.
namespace ScalarSolver {

/// Levels of the brightest mixture of the first \a count emitters with chromaticity (\a x, \a y).
QVector<double> brightestMixture(const QVector<double> &X, const QVector<double> &Y, const QVector<double> &Z,
                                 int count, double x, double y);

} // namespace ScalarSolver
