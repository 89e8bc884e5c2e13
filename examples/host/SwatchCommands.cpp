#include "SwatchCommands.h"

#include "LibraryBatch.h"

#include <TrelColorLibrary.h>

#include <QCoreApplication>
#include <QMap>
#include <QSet>
#include <QUuid>

#include <algorithm>
#include <functional>
#include <iterator>
#include <tuple>

using Item = TrelColorLibraryItem;

namespace {

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

/// What a command is called in menus.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(SwatchCommands)

public:
    static QString deleteLists(int count)
    {
        return count == 1 ? tr("Delete List") : tr("Delete %n Lists", nullptr, count);
    }
    static QString createColors(int count)
    {
        return count == 1 ? tr("Create Colour") : tr("Create %n Colours", nullptr, count);
    }
    static QString deleteColors(int count)
    {
        return count == 1 ? tr("Delete Colour") : tr("Delete %n Colours", nullptr, count);
    }
    static QString moveColors(int count)
    {
        return count == 1 ? tr("Move Colour") : tr("Move %n Colours", nullptr, count);
    }
    static QString changeColors(int count)
    {
        return count == 1 ? tr("Change Colour") : tr("Change %n Colours", nullptr, count);
    }
};

void writeText(const QModelIndex &index, int role, const QString &text)
{
    if (index.data(role).toString() != text)
        library().setData(index, text, role);
}

/// The row of the colour with \a uid, the one at \a guess if it has it; −1 for none.
int rowOf(const QModelIndex &list, const QString &uid, int guess = 0)
{
    const auto hasUid = [&](int row) { return library().index(row, 0, list).data(Item::UidRole).toString() == uid; };
    const int count = library().rowCount(list);
    if (guess >= 0 && guess < count && hasUid(guess))
        return guess;
    for (int row = 0; row < count; ++row) {
        if (hasUid(row))
            return row;
    }
    return -1;
}

QVector<SwatchRecord> recordsFrom(const QModelIndex &list, int first)
{
    QVector<SwatchRecord> records;
    for (int row = first; row < library().rowCount(list); ++row)
        records.append(SwatchRecord::at(library().index(row, 0, list)));
    return records;
}

/// A reference to an old preset, or a colour that nobody has named; createColor() would name it.
void appendUnnamed(const QModelIndex &list, const SwatchRecord &record)
{
    const int row = library().rowCount(list);
    library().insertRows(row, 1, list);
    const QModelIndex index = library().index(row, 0, list);
    if (!record.uid.isEmpty())
        library().setData(index, record.uid, Item::UidRole);
    TrelColor color = record.color;
    library().setData(index, QVariant::fromValue<void *>(&color), Item::ColorRole);
    library().setData(index, record.originatingPreset, Item::OriginatingPresetRole);
    library().setData(index, record.vendorId, Item::VendorIdRole);
    if (record.oldPreset.isEmpty())
        return;
    library().setData(index, record.oldPreset, Item::OldPresetRole);
    library().setData(index, false, Item::CanBeModifiedRole);
}

void append(const QString &listId, const SwatchRecord &record)
{
    if (record.name.isEmpty()) {
        appendUnnamed(library().getIndexOfListId(listId), record);
        return;
    }
    library().createColor(record.color, record.uid, listId, record.originatingPreset, record.vendorId);
    const QModelIndex list = library().getIndexOfListId(listId);
    const QModelIndex index = library().index(library().rowCount(list) - 1, 0, list);
    // Under the tool tip's role a name is not compared with the siblings': a document's list may hold a name twice.
    writeText(index, Qt::ToolTipRole, record.name);
    writeText(index, Item::OriginatingPresetRole, record.originatingPreset);
    writeText(index, Item::VendorIdRole, record.vendorId);
}

/// Puts colours at \a row of a list. The library finds by uid only what it has made at the end of a list, so that
/// the colours behind \a row are made anew, too.
void insert(const QString &listId, int row, const QVector<SwatchRecord> &records)
{
    const QModelIndex list = library().getIndexOfListId(listId);
    if (!list.isValid())
        return;
    const int count = library().rowCount(list);
    const int first = row < 0 || row > count ? count : row;
    const QVector<SwatchRecord> behind = recordsFrom(list, first);
    if (!behind.isEmpty())
        library().removeRows(first, int(behind.size()), list);
    for (const SwatchRecord &record : records)
        append(listId, record);
    for (const SwatchRecord &record : behind)
        append(listId, record);
}

/// Removes rows of a list, neighbouring ones in one go.
void removeRows(const QString &listId, const QSet<int> &distinct)
{
    QVector<int> rows(distinct.cbegin(), distinct.cend());
    std::sort(rows.begin(), rows.end(), std::greater<int>()); // so that the rows of the others stay
    for (int i = 0; i < rows.size();) {
        const int last = rows.at(i);
        int count = 0;
        while (i < rows.size() && rows.at(i) == last - count) {
            ++count;
            ++i;
        }
        library().removeRows(last - count + 1, count, library().getIndexOfListId(listId));
    }
}

bool isBefore(const SwatchPlace &a, const SwatchPlace &b)
{
    return std::tie(a.list, a.row) < std::tie(b.list, b.row);
}

/// \return those that were there, sorted as before.
QVector<SwatchPlace> removeAll(const QVector<SwatchPlace> &sorted)
{
    QMap<QString, QSet<int>> rows;
    QVector<SwatchPlace> removed;
    for (const SwatchPlace &place : sorted) {
        const int row = rowOf(library().getIndexOfListId(place.list), place.record.uid, place.row);
        if (row < 0 || rows[place.list].contains(row))
            continue;
        rows[place.list].insert(row);
        removed.append(place);
    }
    for (auto entry = rows.cbegin(); entry != rows.cend(); ++entry)
        removeRows(entry.key(), entry.value());
    return removed;
}

/// Removes colours that stand one behind the other. \return the uids of those that were there.
QSet<QString> removeRun(const QString &list, int first, const QVector<SwatchRecord> &records)
{
    QVector<SwatchPlace> places;
    for (const SwatchRecord &record : records)
        places.append({list, first + int(places.size()), record});
    QSet<QString> removed;
    for (const SwatchPlace &place : removeAll(places))
        removed.insert(place.record.uid);
    return removed;
}

/// Puts back colours that were removed with removeAll(), those of neighbouring rows in one go.
void putBack(const QVector<SwatchPlace> &sorted)
{
    for (int i = 0; i < sorted.size();) {
        const SwatchPlace &first = sorted.at(i);
        QVector<SwatchRecord> run;
        while (i < sorted.size() && sorted.at(i).list == first.list && sorted.at(i).row == first.row + run.size())
            run.append(sorted.at(i++).record);
        insert(first.list, first.row, run);
    }
}

QVector<SwatchPlace> sortedPlaces(QVector<SwatchPlace> places)
{
    std::sort(places.begin(), places.end(), isBefore);
    return places;
}

void insertList(const QString &name, int row, const QVector<SwatchRecord> &colors)
{
    const QModelIndex root = library().rootIndex();
    const int place = qBound(0, row, library().rowCount(root));
    library().insertRows(place, 1, root);
    const QModelIndex list = library().index(place, 0, root);
    library().setData(list, name, Qt::EditRole);
    library().setData(list, true, Item::CanBeModifiedRole);
    for (const SwatchRecord &record : colors)
        append(name, record);
}

void removeList(const QString &name)
{
    const QModelIndex list = library().getIndexOfListId(name);
    if (list.isValid())
        library().removeRows(list.row(), 1, library().rootIndex());
}

void moveList(const QString &name, int row)
{
    const QModelIndex list = library().getIndexOfListId(name);
    if (!list.isValid())
        return;
    const QVector<SwatchRecord> colors = recordsFrom(list, 0);
    removeList(name);
    insertList(name, row, colors);
}

void writeColor(const SwatchPlace &place, const TrelColor &color)
{
    const QModelIndex list = library().getIndexOfListId(place.list);
    const int row = rowOf(list, place.record.uid, place.row);
    TrelColor copy = color;
    if (row >= 0)
        library().setData(library().index(row, 0, list), QVariant::fromValue<void *>(&copy), Item::ColorRole);
}

} // namespace

SwatchRecord SwatchRecord::at(const QModelIndex &index)
{
    SwatchRecord record;
    record.uid = index.data(Item::UidRole).toString();
    record.name = index.data(Qt::EditRole).toString();
    record.originatingPreset = index.data(Item::OriginatingPresetRole).toString();
    record.vendorId = index.data(Item::VendorIdRole).toString();
    if (index.data(Item::ItemTypeRole).toInt() == Item::OLD_PRESET_ITEM)
        record.oldPreset = index.data(Item::OldPresetRole).toString();
    if (const auto *color = static_cast<const TrelColor *>(index.data(Item::ColorRole).value<void *>()))
        record.color = *color;
    return record;
}

SwatchRecord SwatchRecord::copyOf(const QString &uid)
{
    SwatchRecord copy = at(library().getIndexOfUid(uid));
    copy.originatingPreset = library().pathOfUid(uid);
    copy.uid = QUuid::createUuid().toString();
    return copy;
}

SwatchCommand::SwatchCommand(const QString &text)
    : QUndoCommand(text)
{
}

void SwatchCommand::redo()
{
    const LibraryBatch batch;
    apply();
}

void SwatchCommand::undo()
{
    const LibraryBatch batch;
    revert();
}

SwatchCommandGroup::SwatchCommandGroup(const QString &text)
    : SwatchCommand(text)
{
}

SwatchCommandGroup::~SwatchCommandGroup()
{
    qDeleteAll(m_commands);
}

void SwatchCommandGroup::add(SwatchCommand *command)
{
    m_commands.append(command);
}

void SwatchCommandGroup::apply()
{
    for (SwatchCommand *command : qAsConst(m_commands))
        command->redo();
}

void SwatchCommandGroup::revert()
{
    std::for_each(m_commands.crbegin(), m_commands.crend(), [](SwatchCommand *command) { command->undo(); });
}

CreateListCommand::CreateListCommand(const QString &name)
    : SwatchCommand(Text::tr("Create List"))
    , m_name(name)
{
}

void CreateListCommand::apply()
{
    library().createColorList(m_name, true);
}

void CreateListCommand::revert()
{
    removeList(m_name);
}

DeleteListsCommand::DeleteListsCommand(const QStringList &names)
    : SwatchCommand(Text::deleteLists(int(names.size())))
{
    for (const QString &name : names) {
        const QModelIndex list = library().getIndexOfListId(name);
        if (list.isValid())
            m_lists.append({name, list.row(), recordsFrom(list, 0)});
    }
    std::sort(m_lists.begin(), m_lists.end(), [](const Deleted &a, const Deleted &b) { return a.row < b.row; });
}

void DeleteListsCommand::apply()
{
    std::for_each(m_lists.crbegin(), m_lists.crend(), [](const Deleted &list) { removeList(list.name); });
}

void DeleteListsCommand::revert()
{
    for (const Deleted &list : qAsConst(m_lists))
        insertList(list.name, list.row, list.colors);
}

RenameListCommand::RenameListCommand(const QString &oldName, const QString &newName)
    : SwatchCommand(Text::tr("Rename List"))
    , m_oldName(oldName)
    , m_newName(newName)
{
}

void RenameListCommand::apply()
{
    library().setData(library().getIndexOfListId(m_oldName), m_newName, Qt::EditRole);
}

void RenameListCommand::revert()
{
    library().setData(library().getIndexOfListId(m_newName), m_oldName, Qt::EditRole);
}

MoveListCommand::MoveListCommand(const QString &name, int row)
    : SwatchCommand(Text::tr("Move List"))
    , m_name(name)
    , m_oldRow(library().getIndexOfListId(name).row())
    , m_newRow(row)
{
}

void MoveListCommand::apply()
{
    moveList(m_name, m_newRow);
}

void MoveListCommand::revert()
{
    moveList(m_name, m_oldRow);
}

CreateColorsCommand::CreateColorsCommand(const QString &list, int row, const QVector<SwatchRecord> &records)
    : SwatchCommand(Text::createColors(int(records.size())))
    , m_list(list)
    , m_row(row)
    , m_records(records)
{
}

void CreateColorsCommand::apply()
{
    insert(m_list, m_row, m_records);
}

void CreateColorsCommand::revert()
{
    removeRun(m_list, m_row, m_records);
}

DeleteColorsCommand::DeleteColorsCommand(const QVector<SwatchPlace> &colors)
    : SwatchCommand(Text::deleteColors(int(colors.size())))
    , m_colors(sortedPlaces(colors))
{
}

void DeleteColorsCommand::apply()
{
    m_removed = removeAll(m_colors);
}

void DeleteColorsCommand::revert()
{
    putBack(m_removed);
}

RenameColorCommand::RenameColorCommand(const SwatchPlace &color, const QString &newName)
    : SwatchCommand(Text::tr("Rename Colour"))
    , m_color(color)
    , m_newName(newName)
{
}

void RenameColorCommand::apply()
{
    const QModelIndex list = library().getIndexOfListId(m_color.list);
    const int row = rowOf(list, m_color.record.uid, m_color.row);
    if (row >= 0)
        library().setData(library().index(row, 0, list), m_newName, Qt::EditRole);
}

void RenameColorCommand::revert()
{
    const QModelIndex list = library().getIndexOfListId(m_color.list);
    const int row = rowOf(list, m_color.record.uid, m_color.row);
    if (row < 0)
        return;
    const QModelIndex index = library().index(row, 0, list);
    writeText(index, Qt::ToolTipRole, m_color.record.name); // which siblings may have, see append()
    writeText(index, Item::OriginatingPresetRole, m_color.record.originatingPreset);
    writeText(index, Item::VendorIdRole, m_color.record.vendorId);
}

MoveColorsCommand::MoveColorsCommand(const QVector<SwatchPlace> &colors, const QString &list, int row)
    : SwatchCommand(Text::moveColors(int(colors.size())))
    , m_colors(sortedPlaces(colors))
    , m_list(list)
    , m_row(row)
{
    FreeSwatchNames names(list);
    QSet<QString> fromHere;
    for (const SwatchPlace &place : qAsConst(m_colors)) {
        if (place.list == list && place.row < row)
            --m_row;
        if (place.list == list)
            fromHere.insert(place.record.uid);
    }
    for (const SwatchPlace &place : colors) { // in the order in which they were chosen
        SwatchRecord record = place.record;
        if (!fromHere.contains(record.uid))
            record.name = names.take(record.name);
        m_moved.append(record);
    }
}

void MoveColorsCommand::apply()
{
    const QVector<SwatchPlace> removed = removeAll(m_colors);
    QSet<QString> uids;
    for (const SwatchPlace &place : removed)
        uids.insert(place.record.uid);
    QVector<SwatchRecord> arriving;
    std::copy_if(m_moved.cbegin(), m_moved.cend(), std::back_inserter(arriving),
                 [&](const SwatchRecord &record) { return uids.contains(record.uid); });
    insert(m_list, m_row, arriving);
}

void MoveColorsCommand::revert()
{
    const QSet<QString> uids = removeRun(m_list, m_row, m_moved);
    QVector<SwatchPlace> returning;
    std::copy_if(m_colors.cbegin(), m_colors.cend(), std::back_inserter(returning),
                 [&](const SwatchPlace &place) { return uids.contains(place.record.uid); });
    putBack(returning);
}

RecolorCommand::RecolorCommand(const QVector<SwatchPlace> &colors, const TrelColor &color)
    : SwatchCommand(Text::changeColors(int(colors.size())))
    , m_colors(colors)
    , m_color(color)
{
}

void RecolorCommand::apply()
{
    for (const SwatchPlace &place : qAsConst(m_colors))
        writeColor(place, m_color);
}

void RecolorCommand::revert()
{
    for (const SwatchPlace &place : qAsConst(m_colors))
        writeColor(place, place.record.color);
}

FreeSwatchNames::FreeSwatchNames(const QString &list)
{
    const QModelIndex index = library().getIndexOfListId(list);
    for (int row = 0; index.isValid() && row < library().rowCount(index); ++row)
        m_taken.insert(library().index(row, 0, index).data(Qt::EditRole).toString());
}

QString FreeSwatchNames::take(const QString &name)
{
    const QString base = name.isEmpty() ? Text::tr("Colour") : name;
    QString candidate = base;
    int &number = m_numbers[base];
    number = qMax(number, 1);
    while (m_taken.contains(candidate))
        candidate = QStringLiteral("%1 %2").arg(base, QString::number(++number));
    m_taken.insert(candidate);
    return candidate;
}
