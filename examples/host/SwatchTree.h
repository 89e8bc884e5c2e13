#pragma once

#include <QModelIndex>
#include <QTreeView>

class QMimeData;
class SwatchFilter;

/// The tree of lists and colours. Colours can be dragged from it and dropped on it; what a drop or a new name means is
/// decided by who listens.
class SwatchTree : public QTreeView
{
    Q_OBJECT

public:
    explicit SwatchTree(SwatchFilter *filter, QWidget *parent = nullptr);

    /// Selected colours in the order of the view, as the filter's indexes of column 0.
    QModelIndexList selectedColors() const;
    /// The same for lists.
    QModelIndexList selectedLists() const;

Q_SIGNALS:
    /// The user entered \a name for the filter's \a index.
    void renameWanted(const QModelIndex &index, const QString &name);
    /// Colours were dropped. \param list the library's index. \param row of the list, −1 for its end.
    /// \param isMove whether colours of the library leave their places.
    void dropped(const QMimeData *data, const QModelIndex &list, int row, bool isMove);

protected:
    void rowsInserted(const QModelIndex &parent, int first, int last) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Where a drop goes.
    struct Target
    {
        QModelIndex list; ///< of the library; invalid for nowhere
        int row = -1;
        QRect mark; ///< in the viewport: a line between colours, or a list's row
    };

    void spanLists(int first, int last);
    Target targetAt(QPoint position) const;
    Target besideColor(const QModelIndex &color, QPoint position) const;
    QModelIndexList selectedRowsThatAreLists(bool areLists) const;
    static void take(QDropEvent *event);

    SwatchFilter *m_filter;
    QRect m_mark;
};
