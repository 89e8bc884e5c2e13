#include "Drops.h"

#include <QDropEvent>

QPoint Drops::positionOf(const QDropEvent *event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event->position().toPoint();
#else
    return event->pos();
#endif
}

void Drops::acceptCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}
