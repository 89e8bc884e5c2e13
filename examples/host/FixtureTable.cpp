#include "FixtureTable.h"

#include "ColorMime.h"
#include "Drops.h"
#include "FixtureDelegate.h"

#include <QClipboard>
#include <QDrag>
#include <QDropEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <numeric>

namespace {

constexpr int MAX_COLUMN_WIDTH = 190;
constexpr int COLUMN_GAP = 8;
constexpr int ROW_PADDING = 12;

} // namespace

FixtureTable::FixtureTable(Patch *patch, QWidget *parent)
    : QTableView(parent)
    , m_patch(patch)
{
    setModel(patch);
    setItemDelegate(new FixtureDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed
                    | QAbstractItemView::AnyKeyPressed);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setAcceptDrops(true);
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragDrop);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    setTabKeyNavigation(false); // Tab leads on to the next pane; the arrow keys move among the cells
    setAccessibleName(tr("Fixtures"));
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + ROW_PADDING);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setSectionsMovable(true);
    fitColumns();
}

QVector<int> FixtureTable::selectedRows() const
{
    QVector<int> rows;
    const QModelIndexList selected = selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void FixtureTable::selectRows(const QVector<int> &rows)
{
    QItemSelection selection;
    for (const int row : rows)
        selection.select(m_patch->index(row, 0), m_patch->index(row, Patch::ColumnCount - 1));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (!rows.isEmpty())
        selectionModel()->setCurrentIndex(m_patch->index(rows.first(), 0), QItemSelectionModel::NoUpdate);
}

void FixtureTable::fitColumns()
{
    resizeColumnsToContents();
    for (int column = 0; column < Patch::ColumnCount; ++column)
        setColumnWidth(column, qMin(columnWidth(column) + COLUMN_GAP, MAX_COLUMN_WIDTH));
}

void FixtureTable::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT selectedRowsChanged();
}

void FixtureTable::keyPressEvent(QKeyEvent *event)
{
    const bool isAnySelected = selectionModel()->hasSelection();
    if (isAnySelected && event->matches(QKeySequence::Delete))
        Q_EMIT removalRequested();
    else if (isAnySelected && event->matches(QKeySequence::Copy))
        QGuiApplication::clipboard()->setMimeData(selectedColors());
    else if (isAnySelected && event->matches(QKeySequence::Paste))
        take(QGuiApplication::clipboard()->mimeData(), selectedRows().first());
    else
        QTableView::keyPressEvent(event);
}

QMimeData *FixtureTable::selectedColors() const
{
    QVector<NamedColor> colors;
    const QVector<int> rows = selectedRows();
    for (const int row : rows)
        colors.append({m_patch->shownColor(row), m_patch->fixtures().at(row).name});
    return ColorMime::fromColors(colors);
}

void FixtureTable::startDrag(Qt::DropActions)
{
    if (!selectionModel()->hasSelection())
        return;
    auto *drag = new QDrag(this);
    drag->setMimeData(selectedColors());
    drag->exec(Qt::CopyAction);
}

void FixtureTable::dragEnterEvent(QDragEnterEvent *event)
{
    if (ColorMime::canRead(event->mimeData()) && m_patch->rowCount() > 0)
        Drops::acceptCopy(event);
    else
        event->ignore();
}

void FixtureTable::dragMoveEvent(QDragMoveEvent *event)
{
    QTableView::dragMoveEvent(event); // scrolls at the borders
    const int row = rowAt(Drops::positionOf(event).y());
    const bool hasTarget = !targetsOf(row, 1).isEmpty();
    setDropRow(row);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(hasTarget && ColorMime::canRead(event->mimeData()));
}

void FixtureTable::dragLeaveEvent(QDragLeaveEvent *event)
{
    QTableView::dragLeaveEvent(event);
    setDropRow(-1);
}

void FixtureTable::dropEvent(QDropEvent *event)
{
    stopAutoScroll();
    setState(NoState);
    setDropRow(-1);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(take(event->mimeData(), rowAt(Drops::positionOf(event).y())));
}

/// Whether there were colours in \a colorData for fixtures at \a row.
bool FixtureTable::take(const QMimeData *colorData, int row)
{
    const QStringList uids = ColorMime::uidsOf(colorData);
    QVector<TrelColor> colors;
    const QVector<NamedColor> named = ColorMime::colorsOf(colorData);
    for (const NamedColor &color : named)
        colors.append(color.color);
    const QVector<int> rows = targetsOf(row, int(colors.size()));
    if (rows.isEmpty() || colors.isEmpty())
        return false;
    Q_EMIT colorsDropped(rows, colors, uids.size() == colors.size() ? uids : QStringList());
    return true;
}

QVector<int> FixtureTable::targetsOf(int row, int colorCount) const
{
    const QVector<int> selected = selectedRows();
    if (row < 0 || (colorCount == 1 && selected.contains(row)))
        return selected;
    QVector<int> rows(qMin(colorCount, m_patch->rowCount() - row));
    std::iota(rows.begin(), rows.end(), row);
    return rows;
}

void FixtureTable::setDropRow(int row)
{
    if (row == m_dropRow)
        return;
    m_dropRow = row;
    viewport()->update();
}

void FixtureTable::paintEvent(QPaintEvent *event)
{
    QTableView::paintEvent(event);
    QPainter painter(viewport());
    if (m_patch->rowCount() == 0) {
        painter.setPen(palette().color(QPalette::Disabled, QPalette::Text));
        painter.drawText(viewport()->rect().adjusted(24, 8, -24, -8), Qt::AlignCenter | Qt::TextWordWrap,
                         tr("No fixtures yet. Add some with the button above, then drop colours onto them."));
    }
    if (m_dropRow >= 0) {
        const QRect row(0, rowViewportPosition(m_dropRow), viewport()->width(), rowHeight(m_dropRow));
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(row.adjusted(1, 1, -1, -1));
    }
}
