#include "SwatchRows.h"

#include "ColorMime.h"

#include <TrelColorLibrary.h>

namespace {

constexpr int COLUMNS = 2;

} // namespace

SwatchRows::SwatchRows(QObject *parent)
    : QAbstractProxyModel(parent)
{
    TrelColorLibrary *source = TrelColorLibrary::Instance();
    setSourceModel(source);
    readAll();
    connect(source, &QAbstractItemModel::rowsInserted, this, &SwatchRows::onInserted);
    connect(source, &QAbstractItemModel::rowsAboutToBeRemoved, this, &SwatchRows::onAboutToBeRemoved);
    connect(source, &QAbstractItemModel::rowsRemoved, this, &SwatchRows::onRemoved);
    connect(source, &QAbstractItemModel::dataChanged, this, &SwatchRows::onDataChanged);
    connect(source, &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        beginResetModel();
        m_lists.clear();
    });
    connect(source, &QAbstractItemModel::modelReset, this, [this] {
        readAll();
        endResetModel();
    });
}

SwatchRows::~SwatchRows() = default;

/// Null once it is gone, when the base class has put an empty model in its place.
TrelColorLibrary *SwatchRows::library() const
{
    return qobject_cast<TrelColorLibrary *>(sourceModel());
}

QModelIndex SwatchRows::indexOf(const List *list) const
{
    return createIndex(list->row, 0);
}

void SwatchRows::readAll()
{
    m_lists.clear();
    const TrelColorLibrary *source = library();
    const QModelIndex root = source ? source->rootIndex() : QModelIndex();
    for (int row = 0; source && row < source->rowCount(root); ++row)
        m_lists.push_back(std::make_unique<List>(List{row, source->rowCount(source->index(row, 0, root))}));
}

void SwatchRows::renumber()
{
    int row = 0;
    for (const auto &list : m_lists)
        list->row = row++;
}

QModelIndex SwatchRows::mapToSource(const QModelIndex &index) const
{
    const TrelColorLibrary *source = library();
    if (!source)
        return QModelIndex();
    if (!index.isValid())
        return source->rootIndex();
    const auto *list = static_cast<const List *>(index.internalPointer());
    const QModelIndex sourceParent =
        list ? source->index(sourceRow(nullptr, list->row), 0, source->rootIndex()) : source->rootIndex();
    return source->index(sourceRow(list, index.row()), index.column(), sourceParent);
}

/// Who listens to rowsAboutToBeInserted() still finds each row where it was.
int SwatchRows::sourceRow(const List *list, int row) const
{
    const bool isShifted = m_coming.list == list && row >= m_coming.first;
    return isShifted ? row + m_coming.count : row;
}

QModelIndex SwatchRows::mapFromSource(const QModelIndex &sourceIndex) const
{
    const TrelColorLibrary *source = library();
    if (!source || !sourceIndex.isValid() || sourceIndex == source->rootIndex())
        return QModelIndex();
    if (source->isListIndex(sourceIndex))
        return index(sourceIndex.row(), sourceIndex.column());
    return index(sourceIndex.row(), sourceIndex.column(), index(sourceIndex.parent().row(), 0));
}

QModelIndex SwatchRows::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || row >= rowCount(parent) || column >= COLUMNS)
        return QModelIndex();
    return parent.isValid() ? createIndex(row, column, m_lists.at(std::size_t(parent.row())).get())
                            : createIndex(row, column);
}

QModelIndex SwatchRows::parent(const QModelIndex &index) const
{
    const auto *list = static_cast<const List *>(index.internalPointer());
    return list ? indexOf(list) : QModelIndex();
}

int SwatchRows::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return int(m_lists.size());
    if (parent.internalPointer() || parent.column() > 0)
        return 0;
    return m_lists.at(std::size_t(parent.row()))->count;
}

int SwatchRows::columnCount(const QModelIndex &) const
{
    return COLUMNS;
}

bool SwatchRows::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

Qt::ItemFlags SwatchRows::flags(const QModelIndex &index) const
{
    return index.isValid() ? QAbstractProxyModel::flags(index) : Qt::NoItemFlags;
}

QVariant SwatchRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    return sourceModel()->headerData(section, orientation, role); // by section, also while there are no rows
}

QMimeData *SwatchRows::mimeData(const QModelIndexList &indexes) const
{
    QModelIndexList sources;
    for (const QModelIndex &index : indexes)
        sources.append(mapToSource(index));
    return ColorMime::fromLibrary(sources);
}

void SwatchRows::onInserted(const QModelIndex &sourceParent, int first)
{
    if (sourceParent == library()->rootIndex()) {
        insertLists(first);
        return;
    }
    List &list = *m_lists.at(std::size_t(sourceParent.row()));
    const int count = library()->rowCount(sourceParent);
    if (count <= list.count)
        return;
    m_coming = {&list, first, count - list.count};
    beginInsertRows(indexOf(&list), first, first + count - list.count - 1);
    m_coming = {};
    list.count = count;
    endInsertRows();
}

void SwatchRows::insertLists(int first)
{
    const QModelIndex root = library()->rootIndex();
    const int count = library()->rowCount(root) - int(m_lists.size());
    if (count < 1)
        return;
    m_coming = {nullptr, first, count};
    beginInsertRows(QModelIndex(), first, first + count - 1);
    m_coming = {};
    for (int row = first; row < first + count; ++row) {
        const int colors = library()->rowCount(library()->index(row, 0, root));
        m_lists.insert(m_lists.begin() + row, std::make_unique<List>(List{row, colors}));
    }
    renumber();
    endInsertRows();
}

void SwatchRows::onAboutToBeRemoved(const QModelIndex &sourceParent, int first, int last)
{
    beginRemoveRows(mapFromSource(sourceParent), first, last);
}

void SwatchRows::onRemoved(const QModelIndex &sourceParent, int first, int last)
{
    if (sourceParent == library()->rootIndex()) {
        m_lists.erase(m_lists.begin() + first, m_lists.begin() + last + 1);
        renumber();
    } else {
        m_lists.at(std::size_t(sourceParent.row()))->count -= last - first + 1;
    }
    endRemoveRows();
}

/// The library names column 0 only, and its root, which has no place here.
void SwatchRows::onDataChanged(const QModelIndex &from, const QModelIndex &to)
{
    const QModelIndex first = mapFromSource(from);
    const QModelIndex last = mapFromSource(to);
    if (first.isValid() && last.isValid())
        Q_EMIT dataChanged(first.sibling(first.row(), 0), last.sibling(last.row(), COLUMNS - 1));
}
