#pragma once

#include "Patch.h"

#include <QTableView>

/// The patch as a table: cells to edit, live bars of the channels, colours to drop onto rows and to drag from them.
///
/// One colour dropped onto a selected row goes to all selected rows; several go to the row and those below it, one
/// each. Dropped beside the rows they go to the selected ones.
class FixtureTable : public QTableView
{
    Q_OBJECT

public:
    /// \a patch outlives the table.
    explicit FixtureTable(Patch *patch, QWidget *parent = nullptr);

    /// The selected rows, ascending.
    QVector<int> selectedRows() const;
    /// Selects exactly \a rows.
    void selectRows(const QVector<int> &rows);

    /// Keeps the columns in view at their contents' width, up to a limit.
    void fitColumns();

Q_SIGNALS:
    /// Other rows are selected.
    void selectedRowsChanged();
    /// The user wants the selected rows gone.
    void removalRequested();
    /// Colours were dropped or pasted for \a rows: the library's where \a uids has some, otherwise \a colors.
    void colorsDropped(const QVector<int> &rows, const QVector<TrelColor> &colors, const QStringList &uids);

protected:
    void selectionChanged(const QItemSelection &selected, const QItemSelection &deselected) override;
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QVector<int> targetsOf(int row, int colorCount) const;
    void setDropRow(int row);
    QMimeData *selectedColors() const;
    bool take(const QMimeData *colorData, int row);

    Patch *m_patch;
    int m_dropRow = -1; ///< under a drag that hovers
};
