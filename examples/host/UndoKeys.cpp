#include "UndoKeys.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace {

class Filter : public QObject
{
public:
    explicit Filter(QWidget *field)
        : QObject(field)
    {
        field->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::ShortcutOverride)
            return false;
        const auto *own = qobject_cast<QLineEdit *>(watched);
        const auto *line = own ? own : watched->findChild<QLineEdit *>();
        const auto *keys = static_cast<QKeyEvent *>(event);
        const bool isForWindow = (keys->matches(QKeySequence::Undo) && !line->isUndoAvailable())
                                 || (keys->matches(QKeySequence::Redo) && !line->isRedoAvailable());
        if (isForWindow)
            event->ignore();
        return isForWindow;
    }
};

} // namespace

void UndoKeys::leaveToWindow(QWidget *field)
{
    new Filter(field);
}
