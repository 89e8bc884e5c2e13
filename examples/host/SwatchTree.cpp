#include "SwatchTree.h"

#include "ColorMime.h"
#include "Drops.h"
#include "SwatchFilter.h"

#include <TrelColorLibrary.h>

#include <QDrag>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>
#include <memory>

namespace {

constexpr int SWATCH_SIZE = 18;
constexpr int ROW_SPACE = 3;
constexpr int MARK_WIDTH = 2;
constexpr int ID_SHARE = 4;          ///< the identifiers' column gets one part in so many
constexpr int ID_NEEDS_WIDTH = 260;  ///< of the tree; below, names get all
constexpr int EXPAND_DELAY_MS = 600; ///< while a drag hovers over a closed list

/// Lists in bold; new names go to the tree's signal instead of the model.
class NameDelegate : public QStyledItemDelegate
{
public:
    explicit NameDelegate(SwatchTree *tree)
        : QStyledItemDelegate(tree)
        , m_tree(tree)
    {
    }

    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        QWidget *editor = QStyledItemDelegate::createEditor(parent, option, index);
        if (editor)
            editor->setAccessibleName(SwatchTree::tr("Name"));
        return editor;
    }

    void setModelData(QWidget *editor, QAbstractItemModel *, const QModelIndex &index) const override
    {
        if (const auto *line = qobject_cast<QLineEdit *>(editor))
            Q_EMIT m_tree->renameWanted(index, line->text());
    }

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        const QSize size = QStyledItemDelegate::sizeHint(option, index);
        return QSize(size.width(), std::max(size.height(), SWATCH_SIZE + 2 * ROW_SPACE));
    }

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font.setBold(!index.parent().isValid());
        if (option->icon.isNull())
            return;
        // The same when selected, where styles would tint it: a swatch shows its colour.
        const QPixmap swatch = qvariant_cast<QPixmap>(index.data(Qt::DecorationRole));
        option->icon = QIcon();
        for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected})
            option->icon.addPixmap(swatch, mode);
    }

private:
    SwatchTree *m_tree;
};

Qt::KeyboardModifiers modifiersOf(const QDropEvent &event)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return event.modifiers();
#else
    return event.keyboardModifiers();
#endif
}

/// Colours of the library move, unless Ctrl is held; those of others are copied.
bool isMove(const QDropEvent &event)
{
    return !ColorMime::uidsOf(event.mimeData()).isEmpty() && !modifiersOf(event).testFlag(Qt::ControlModifier)
           && event.possibleActions().testFlag(Qt::MoveAction);
}

} // namespace

SwatchTree::SwatchTree(SwatchFilter *filter, QWidget *parent)
    : QTreeView(parent)
    , m_filter(filter)
{
    setModel(filter);
    setRootIndex(filter->fromLibrary(TrelColorLibrary::Instance()->rootIndex())); // below it are the lists
    spanLists(0, filter->rowCount() - 1);
    setItemDelegate(new NameDelegate(this));
    setSelectionMode(ExtendedSelection);
    setEditTriggers(EditKeyPressed | SelectedClicked);
    setUniformRowHeights(true);
    setIconSize(QSize(SWATCH_SIZE, SWATCH_SIZE));
    setDragEnabled(true);
    setAcceptDrops(true);
    setAutoExpandDelay(EXPAND_DELAY_MS);
    setTextElideMode(Qt::ElideRight);
    setAccessibleName(tr("Colour lists"));
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::Fixed);
}

void SwatchTree::rowsInserted(const QModelIndex &parent, int first, int last)
{
    QTreeView::rowsInserted(parent, first, last);
    if (!parent.isValid())
        spanLists(first, last);
}

/// Lists have no identifiers, so that their names get all the width.
void SwatchTree::spanLists(int first, int last)
{
    for (int row = first; row <= last; ++row)
        setFirstColumnSpanned(row, QModelIndex(), true);
}

QModelIndexList SwatchTree::selectedRowsThatAreLists(bool areLists) const
{
    QModelIndexList rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex &index : selected) {
        if (index.parent().isValid() != areLists)
            rows.append(index);
    }
    std::sort(rows.begin(), rows.end(), [](const QModelIndex &a, const QModelIndex &b) {
        return std::make_pair(a.parent().row(), a.row()) < std::make_pair(b.parent().row(), b.row());
    });
    return rows;
}

QModelIndexList SwatchTree::selectedColors() const
{
    return selectedRowsThatAreLists(false);
}

QModelIndexList SwatchTree::selectedLists() const
{
    return selectedRowsThatAreLists(true);
}

void SwatchTree::startDrag(Qt::DropActions)
{
    const QModelIndexList colors = selectedColors();
    if (colors.isEmpty())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(m_filter->mimeData(colors));
    drag->setPixmap(qvariant_cast<QPixmap>(colors.first().data(Qt::DecorationRole)));
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
}

void SwatchTree::dragEnterEvent(QDragEnterEvent *event)
{
    if (ColorMime::canRead(event->mimeData()))
        event->accept();
}

void SwatchTree::dragMoveEvent(QDragMoveEvent *event)
{
    QTreeView::dragMoveEvent(event); // scrolls and opens lists; it refuses, since the library names no formats
    const Target target = targetAt(Drops::positionOf(event));
    m_mark = target.mark;
    viewport()->update();
    if (target.list.isValid() && ColorMime::canRead(event->mimeData()))
        take(event);
    else
        event->ignore();
}

void SwatchTree::dragLeaveEvent(QDragLeaveEvent *event)
{
    QTreeView::dragLeaveEvent(event);
    m_mark = QRect();
    viewport()->update();
}

void SwatchTree::dropEvent(QDropEvent *event)
{
    stopAutoScroll();
    setState(NoState);
    m_mark = QRect();
    viewport()->update();
    const Target target = targetAt(Drops::positionOf(event));
    if (!target.list.isValid() || !ColorMime::canRead(event->mimeData())) {
        event->ignore();
        return;
    }
    take(event);
    Q_EMIT dropped(event->mimeData(), target.list, target.row, event->dropAction() == Qt::MoveAction);
}

void SwatchTree::take(QDropEvent *event)
{
    event->setDropAction(isMove(*event) ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
}

/// On a list, its end; on a colour, before or behind it, or the list's end where the view has an order of its own.
SwatchTree::Target SwatchTree::targetAt(QPoint position) const
{
    const QModelIndex index = indexAt(position).siblingAtColumn(0);
    const QModelIndex listRow = index.parent().isValid() ? index.parent() : index;
    const QModelIndex list = m_filter->toLibrary(listRow);
    Target target;
    if (!index.isValid() || !list.data(TrelColorLibraryItem::CanBeModifiedRole).toBool())
        return target;
    if (index.parent().isValid() && m_filter->order() == SwatchFilter::Arranged)
        return besideColor(index, position);
    target.list = list;
    target.mark = visualRect(listRow);
    return target;
}

SwatchTree::Target SwatchTree::besideColor(const QModelIndex &color, QPoint position) const
{
    const QRect rect = visualRect(color);
    const bool isBehind = position.y() > rect.center().y();
    const QModelIndex libraryIndex = m_filter->toLibrary(color);
    Target target;
    target.list = libraryIndex.parent();
    target.row = libraryIndex.row() + (isBehind ? 1 : 0);
    const int y = isBehind ? rect.bottom() + 1 : rect.top();
    target.mark = QRect(rect.left(), y - MARK_WIDTH / 2, viewport()->width() - rect.left(), MARK_WIDTH);
    return target;
}

void SwatchTree::resizeEvent(QResizeEvent *event)
{
    QTreeView::resizeEvent(event);
    header()->setSectionHidden(1, width() < ID_NEEDS_WIDTH);
    header()->resizeSection(1, width() / ID_SHARE);
}

void SwatchTree::paintEvent(QPaintEvent *event)
{
    QTreeView::paintEvent(event);
    if (m_mark.isNull())
        return;
    QPainter painter(viewport());
    const QColor color = palette().color(QPalette::Highlight);
    if (m_mark.height() <= MARK_WIDTH) {
        painter.fillRect(m_mark, color);
        return;
    }
    painter.setPen(QPen(color, MARK_WIDTH));
    painter.drawRect(m_mark.adjusted(1, 1, -1, -1));
}
