#include "ProjectSwatches.h"

#include <TrelColorLibrary.h>

#include <QCoreApplication>
#include <QUndoCommand>
#include <QUndoStack>

namespace {

TrelColorLibrary *library()
{
    return TrelColorLibrary::Instance();
}

/// A copy that came into the list, already there when the step is made.
class ExposeStep : public QUndoCommand
{
public:
    explicit ExposeStep(const QString &uid)
        : QUndoCommand(QCoreApplication::translate("ProjectSwatches", "Add Swatch"))
        , m_uid(uid)
        , m_color(library()->get(uid))
    {
        const QModelIndex swatch = library()->getIndexOfUid(uid);
        m_name = library()->data(swatch, Qt::EditRole).toString();
        m_preset = library()->data(swatch, TrelColorLibraryItem::OriginatingPresetRole).toString();
        m_vendorId = library()->data(swatch, TrelColorLibraryItem::VendorIdRole).toString();
    }

    void redo() override
    {
        if (library()->containsUid(m_uid))
            return;
        library()->createColor(m_color, m_uid, ProjectSwatches::listId(), m_preset, m_vendorId);
        library()->rename(m_uid, m_name, true);
    }

    void undo() override
    {
        library()->remove(m_uid);
    }

private:
    QString m_uid;
    TrelColor m_color;
    QString m_name;
    QString m_preset;
    QString m_vendorId;
};

} // namespace

QString ProjectSwatches::listId()
{
    return QStringLiteral("Project Swatches");
}

QString ProjectSwatches::expose(const QString &uid, QUndoStack *undo)
{
    const int before = int(library()->getColorUids(listId()).size());
    const QString exposed = library()->getExposableUidFromUid(uid);
    if (library()->getColorUids(listId()).size() > before)
        undo->push(new ExposeStep(exposed));
    return exposed;
}
