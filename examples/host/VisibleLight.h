#pragma once

#include <QPointF>
#include <QPolygonF>

/// The chromaticities that light can have (CIE 1931 x, y).
namespace VisibleLight {

/// Their border: the spectral locus from 380 to 700 nm and the line of purples, which closes it.
QPolygonF outline();

/// \a xy where light can have it, otherwise the nearest point of the border.
QPointF nearest(QPointF xy);

} // namespace VisibleLight
