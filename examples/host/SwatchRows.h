#pragma once

#include <QAbstractProxyModel>

#include <memory>
#include <vector>

class TrelColorLibrary;

/// The library's lists as top rows, and their colours below, each in two columns: what Qt's views and proxies expect.
///
/// The library keeps its lists under rootIndex(), which a proxy cannot map, and announces insertions by insertRows()
/// one row too long. This model counts the rows itself and announces what really came.
class SwatchRows : public QAbstractProxyModel
{
    Q_OBJECT

public:
    /// On TrelColorLibrary::Instance(). Empty once the library is gone.
    explicit SwatchRows(QObject *parent = nullptr);
    ~SwatchRows() override;

    /// The invalid index stands for the library's rootIndex().
    QModelIndex mapToSource(const QModelIndex &index) const override;
    QModelIndex mapFromSource(const QModelIndex &source) const override;
    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    using QObject::parent;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

private:
    /// A list, at whose address its colours' indexes point.
    struct List
    {
        int row;
        int count; ///< colours that have been announced
    };

    /// Rows that the library has already, but this model has not announced yet.
    struct Coming
    {
        const List *list = nullptr; ///< null for lists
        int first = 0;
        int count = 0;
    };

    TrelColorLibrary *library() const;
    int sourceRow(const List *list, int row) const;
    QModelIndex indexOf(const List *list) const;
    void readAll();
    void renumber();
    void onInserted(const QModelIndex &sourceParent, int first);
    void insertLists(int first);
    void onAboutToBeRemoved(const QModelIndex &sourceParent, int first, int last);
    void onRemoved(const QModelIndex &sourceParent, int first, int last);
    void onDataChanged(const QModelIndex &from, const QModelIndex &to);

    std::vector<std::unique_ptr<List>> m_lists;
    Coming m_coming;
};
