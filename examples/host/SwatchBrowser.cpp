#include "SwatchBrowser.h"

#include <TrelColorLibrary.h>

#include <QGuiApplication>
#include <QPainter>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int THUMBNAIL_SIZE = 18; ///< pixels at a device pixel ratio of 1

} // namespace

SwatchBrowser::SwatchBrowser(QUndoStack *undo, QWidget *parent)
    : QWidget(parent)
    , m_undo(undo)
    , m_tree(new QTreeView)
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_tree);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    m_tree->setModel(library);
    m_tree->setRootIndex(library->rootIndex());
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    connect(m_tree, &QTreeView::activated, this, [this](const QModelIndex &index) {
        const QString uid = index.data(TrelColorLibraryItem::UidRole).toString();
        if (!uid.isEmpty())
            Q_EMIT colorActivated(TrelColorLibrary::Instance()->get(uid), uid);
    });
}

QStringList SwatchBrowser::selectedUids() const
{
    QStringList uids;
    const QModelIndexList rows = m_tree->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows) {
        const QString uid = row.data(TrelColorLibraryItem::UidRole).toString();
        if (!uid.isEmpty())
            uids.append(uid);
    }
    return uids;
}

QPixmap SwatchBrowser::thumbnail(const TrelColor &color)
{
    const double ratio = qApp->devicePixelRatio();
    QPixmap pixmap(QSize(THUMBNAIL_SIZE, THUMBNAIL_SIZE) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(128, 128, 128, 160), 1)); // seen on light and on dark
    painter.setBrush(color.getQColor(true));
    painter.drawRoundedRect(QRectF(0.5, 0.5, THUMBNAIL_SIZE - 1, THUMBNAIL_SIZE - 1), 3, 3);
    return pixmap;
}
