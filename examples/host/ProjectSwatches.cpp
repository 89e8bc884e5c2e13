#include "ProjectSwatches.h"

#include "Fixture.h"
#include "SwatchCommands.h"

#include <TrelColorLibrary.h>

#include <QUndoStack>

namespace {

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

QModelIndex listIndex()
{
    return library().getIndexOfListId(ProjectSwatches::listId());
}

} // namespace

QString ProjectSwatches::listId()
{
    return QStringLiteral("Project Swatches");
}

// The library's own getExposableUidFromUid() takes a copy in any list for the project's, whatever became of it: one in a
// list of the user's is not carried by the project, and one that was edited is another colour than the one on the screen.
QString ProjectSwatches::exposed(const QString &uid)
{
    const QModelIndex list = listIndex();
    const QModelIndex source = uid.isEmpty() ? QModelIndex() : library().getIndexOfUid(uid);
    if (source.isValid() && source.parent() == list)
        return uid;
    const QString path = source.isValid() ? library().pathOfUid(uid) : QString();
    for (int row = 0; !path.isEmpty() && row < library().rowCount(list); ++row) {
        const SwatchRecord known = SwatchRecord::at(library().index(row, 0, list));
        if (known.originatingPreset == path && isSameColor(known.color, library().get(uid)))
            return known.uid;
    }
    return QString();
}

QString ProjectSwatches::expose(const QString &uid, QUndoStack *undo)
{
    const QString known = exposed(uid);
    if (!known.isEmpty() || uid.isEmpty() || !library().getIndexOfUid(uid).isValid())
        return known;
    SwatchRecord copy = SwatchRecord::copyOf(uid);
    copy.name = FreeSwatchNames(listId()).take(copy.name);
    undo->push(new CreateColorsCommand(listId(), library().rowCount(listIndex()), {copy}));
    return copy.uid;
}
