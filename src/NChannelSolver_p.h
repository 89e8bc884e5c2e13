#pragma once

#include <QVector>

/// The emitters of one fixture: tristimulus values, one a channel.
struct Emitters
{
    const QVector<double> &X;
    const QVector<double> &Y;
    const QVector<double> &Z;
};

/// Writes to \a levels the levels (0..1) of the first \a numChannels emitters that give chromaticity (\a x, \a y) at
/// the highest luminance; all zeros when no mixture gives it. Fatal: fewer emitters than channels ("index out of
/// range").
void brightestMixture(const Emitters &emitters, int numChannels, double x, double y, double *levels);
