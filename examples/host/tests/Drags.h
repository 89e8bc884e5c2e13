#pragma once

#include <QApplication>
#include <QDragEnterEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QWidget>

/// Drags and movements of the mouse as a window system would report them.
namespace Drags {

/// Drags \a data onto \a target at \a place and lets go. \return whether it was taken; a drag that is refused on its
/// way is not dropped.
inline bool drop(QWidget *target, const QPoint &place, const QMimeData *data)
{
    constexpr Qt::DropActions ACTIONS = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(place, ACTIONS, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move(place, ACTIONS, data, Qt::LeftButton, Qt::NoModifier);
    move.setAccepted(true); // as the window does it after an enter that was accepted
    QApplication::sendEvent(target, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QApplication::sendEvent(target, &leave);
        return false;
    }
    QDropEvent event(place, ACTIONS, data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
    return event.isAccepted();
}

/// Moves the mouse over \a target to \a place with the left button down.
inline void move(QWidget *target, const QPoint &place)
{
    QMouseEvent event(QEvent::MouseMove, place, target->mapToGlobal(place), Qt::NoButton, Qt::LeftButton,
                      Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

} // namespace Drags
