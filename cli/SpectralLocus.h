#pragma once

#include <QPointF>
#include <QVector>

/// Light of one wavelength.
struct SpectralColor
{
    int wavelength; ///< nm
    QPointF xy;     ///< CIE 1931 chromaticity
};

/// The spectral locus from 380 to 700 nm, every 5 nm.
QVector<SpectralColor> spectralLocus();
