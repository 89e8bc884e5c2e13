#pragma once

#include <QPoint>

class QDropEvent;

/// What widgets do with drags in the same way, with either Qt.
namespace Drops {

/// Where the pointer is, in the widget.
QPoint positionOf(const QDropEvent *event);

/// Takes the event as a copy, whatever the source proposes: what is dragged stays where it comes from.
void acceptCopy(QDropEvent *event);

} // namespace Drops
