#include "Commands.h"

#include "ColorFile.h"
#include "Console.h"
#include "Fixture.h"
#include "Progress.h"
#include "Table.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLockFile>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace {

constexpr char SUFFIX[] = ".trelcolors";
constexpr int LOCK_TIMEOUT_MS = 30'000;

/// A colour of the library, as it is shown.
struct Entry
{
    QString list;
    QString name;
    TrelColor color;
    QString uid;
    QString vendorId;
};

/// A list of the library, as it is shown.
struct ListEntry
{
    QString name;
    bool isUserList;
    int colors;
};

TrelColorLibrary *library()
{
    return TrelColorLibrary::Instance();
}

QString userFilePath()
{
    return TrelColorLibrary::applicationSupportDir() + QStringLiteral("\\userColors.xml");
}

/// \a text for one line of a terminal.
QString oneLine(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

/// Whether something else than a file is at \a path: opening a pipe would wait, and a device must not be replaced.
bool isOther(const QString &path)
{
    return QFileInfo::exists(path) && !QFileInfo(path).isFile();
}

/// What is in the file at \a path; nothing when it cannot be read: \a error says why.
std::optional<QByteArray> contentOf(const QString &path, QString &error)
{
    QFile file(path);
    if (!isOther(path) && file.open(QIODevice::ReadOnly))
        return file.read(qMin(file.size(), ColorFile::MAX_BYTES) + 1);
    error = QStringLiteral("cannot open '%1': %2").arg(path, isOther(path) ? "It is no file" : file.errorString());
    return std::nullopt;
}

ColorFile parseSilently(const QByteArray &bytes)
{
    return ColorFile::parse(bytes, [](qint64) {});
}

QString located(const QString &path, const ColorFile::Fault &fault)
{
    return QStringLiteral("%1:%2: %3").arg(path, QString::number(fault.line), fault.reason);
}

/// The first fault in \a file by which something would get lost, with its place; empty when there is none.
QString lossIn(const ColorFile &file, const QString &path)
{
    for (const ColorFile::Fault &fault : file.faults) {
        if (fault.isLoss)
            return located(path, fault);
    }
    return QString();
}

QString nameOf(const QModelIndex &index)
{
    return library()->data(index, Qt::EditRole).toString();
}

QVector<QModelIndex> childrenOf(const QModelIndex &parent)
{
    QVector<QModelIndex> children;
    for (int row = 0; row < library()->rowCount(parent); ++row)
        children.append(library()->index(row, 0, parent));
    return children;
}

/// Whether \a list is one of the two that the library keeps for its host.
bool isHostList(const QString &list)
{
    return list == QLatin1String("Explicit Colors") || list == QLatin1String("Project Swatches");
}

/// Presets and the user's lists.
QVector<QModelIndex> shownLists()
{
    QVector<QModelIndex> lists;
    for (const QModelIndex &list : childrenOf(library()->rootIndex())) {
        if (!isHostList(nameOf(list)))
            lists.append(list);
    }
    return lists;
}

/// Invalid, after a complaint, when there is no such list.
QModelIndex findList(const QString &name)
{
    for (const QModelIndex &list : shownLists()) {
        if (nameOf(list) == name)
            return list;
    }
    Console::complain(QStringLiteral("no list '%1' (see 'trelcolor library list')").arg(name));
    return QModelIndex();
}

Entry entryOf(const QModelIndex &index)
{
    const auto text = [&](int role) { return library()->data(index, role).toString(); };
    void *color = library()->data(index, TrelColorLibraryItem::ColorRole).value<void *>();
    return {nameOf(library()->parent(index)), nameOf(index), *static_cast<const TrelColor *>(color),
            text(TrelColorLibraryItem::UidRole), text(TrelColorLibraryItem::VendorIdRole)};
}

QVector<Entry> entriesOf(const QModelIndex &list)
{
    QVector<Entry> entries;
    for (const QModelIndex &color : childrenOf(list))
        entries.append(entryOf(color));
    return entries;
}

ListEntry listEntryOf(const QModelIndex &list)
{
    return {nameOf(list), library()->isUserListIndex(list), library()->rowCount(list)};
}

void print(const QVector<Entry> &entries, const QString &format)
{
    if (format == QLatin1String("json")) {
        QJsonArray array;
        for (const Entry &entry : entries)
            array.append(QJsonObject{{"list", entry.list},
                                     {"name", entry.name},
                                     {"hex", entry.color.name8()},
                                     {"value", entry.color.aName()},
                                     {"uid", entry.uid},
                                     {"colorId", entry.vendorId}});
        Console::print(QJsonValue(array));
        return;
    }
    Table table({"List", "Name", "Hex", "Value string", "Uid"});
    for (const Entry &entry : entries)
        table.addRow(
            {oneLine(entry.list), oneLine(entry.name), entry.color.name8(), entry.color.aName(), oneLine(entry.uid)});
    Console::print(table.aligned());
}

void print(const QVector<ListEntry> &lists, const QString &format)
{
    const auto kindOf = [](const ListEntry &list) { return list.isUserList ? "user" : "preset"; };
    if (format == QLatin1String("json")) {
        QJsonArray array;
        for (const ListEntry &list : lists)
            array.append(QJsonObject{{"name", list.name}, {"kind", kindOf(list)}, {"colors", list.colors}});
        Console::print(QJsonValue(array));
        return;
    }
    Table table({"List", "Kind", "Colours"});
    for (const ListEntry &list : lists)
        table.addRow({oneLine(list.name), kindOf(list), QString::number(list.colors)});
    Console::print(table.aligned());
}

/// Whether the previews of colours can be made; complains when they cannot.
bool canShowColors()
{
    const auto lack = lackOfData(ColorUtils::GENERIC_RGB);
    if (lack)
        Console::complain(*lack);
    return !lack;
}

/// Why the library would not show or keep everything that is in the user's file; empty when it does.
/// \pre presets are loaded, and the user's lists are not
QString userFileFault()
{
    QString error;
    const auto bytes = contentOf(userFilePath(), error);
    if (!bytes)
        return error;
    const ColorFile file = parseSilently(*bytes);
    const QString loss = lossIn(file, userFilePath());
    if (!loss.isEmpty())
        return loss;
    for (const ColorFile::List &list : file.lists) {
        if (!list.isUserList)
            return QStringLiteral("%1: the list '%2' is no user list").arg(userFilePath(), list.name);
        for (const ColorFile::Color &color : list.colors) {
            if (!color.uid.isEmpty() && library()->containsUid(color.uid))
                return QStringLiteral("%1: a preset has the uid %2, too").arg(userFilePath(), color.uid);
        }
    }
    return QString();
}

/// Presets and the user's lists, to look at: under its own path the user's file is never written.
void loadToRead()
{
    library()->loadPresetFiles();
    if (!QFileInfo::exists(userFilePath()))
        return;
    const QString fault = userFileFault();
    if (!fault.isEmpty())
        Console::complain(fault);
    library()->loadUserColors(userFilePath());
}

/// The user's own file while it is edited.
class UserFileEdit
{
public:
    UserFileEdit()
        : m_lock(userFilePath() + ".edit.lock")
    {
        m_lock.setStaleLockTime(0); // an import may take its time
    }

    /// Loads presets and the user's lists; false, after a complaint, when the file is better left alone.
    bool begin()
    {
        if (!m_lock.tryLock(LOCK_TIMEOUT_MS)) {
            Console::complain(QStringLiteral("cannot lock '%1'").arg(userFilePath()));
            return false;
        }
        library()->loadPresetFiles();
        const QString fault = QFileInfo::exists(userFilePath()) ? userFileFault() : QString();
        if (!fault.isEmpty()) {
            Console::complain(fault + "; mend the file first");
            return false;
        }
        library()->loadUserColors(QString());
        library()->setEditingMultipleColors(true);
        return true;
    }

    /// Saves; false, after a complaint, when the file does not hold what it should.
    bool finish()
    {
        library()->setEditingMultipleColors(false);
        QFile file(userFilePath());
        const bool isRead = file.open(QIODevice::ReadOnly);
        if (isRead && parseSilently(file.readAll()).lists == userLists())
            return true;
        Console::complain(QStringLiteral("cannot save '%1'").arg(userFilePath()));
        return false;
    }

private:
    static QVector<ColorFile::List> userLists()
    {
        QVector<ColorFile::List> lists;
        for (const QModelIndex &index : shownLists()) {
            if (!library()->isUserListIndex(index))
                continue;
            ColorFile::List list{nameOf(index), true, {}};
            for (const Entry &entry : entriesOf(index))
                list.colors.append({entry.name, entry.uid, entry.color.aName(), entry.vendorId});
            lists.append(list);
        }
        return lists;
    }

    QLockFile m_lock;
};

/// The user list \a name, made if there is none; invalid, after a complaint, when another list has the name.
QModelIndex userList(const QString &name)
{
    if (!library()->nameExists(name))
        library()->createColorList(name, true);
    const QModelIndex list = library()->getIndexOfListId(name);
    if (library()->isUserListIndex(list))
        return list;
    const QString kind = isHostList(name) ? QStringLiteral("a list of a project") : QStringLiteral("a preset");
    Console::complain(QStringLiteral("'%1' is %2, which cannot be changed").arg(name, kind));
    return QModelIndex();
}

/// The user's colour that \a reference, its uid or list and name joined by "/", stands for; invalid, after a
/// complaint, unless there is exactly one.
QModelIndex findUserColor(const QString &reference)
{
    QVector<QModelIndex> found;
    bool isPreset = false;
    for (const QModelIndex &list : shownLists()) {
        const QString prefix = nameOf(list) + '/';
        for (const QModelIndex &color : childrenOf(list)) {
            if (library()->data(color, TrelColorLibraryItem::UidRole).toString() != reference
                && prefix + nameOf(color) != reference)
                continue;
            if (library()->isUserListIndex(list))
                found.append(color);
            else
                isPreset = true;
        }
    }
    if (found.size() == 1)
        return found.first();
    if (found.size() > 1)
        Console::complain(QStringLiteral("'%1' stands for %2 colours").arg(reference).arg(found.size()));
    else if (isPreset)
        Console::complain(QStringLiteral("'%1' is of a preset, which cannot be changed").arg(reference));
    else
        Console::complain(QStringLiteral("no colour '%1' (see 'trelcolor library find')").arg(reference));
    return QModelIndex();
}

/// Whether \a name can be given to a list or a colour; complains when it cannot.
bool isName(const QString &name)
{
    if (name.isEmpty())
        Console::complain(QStringLiteral("a name cannot be empty"));
    else if (KestraProjectHelper::writableText(name) != name)
        Console::complain(QStringLiteral("'%1' holds characters that a file cannot").arg(name));
    else
        return true;
    return false;
}

/// The lists to export; nothing, after a complaint, when one is missing or empty.
QVector<QModelIndex> listsToExport(const QStringList &names)
{
    QVector<QModelIndex> lists;
    for (const QString &name : names) {
        const QModelIndex list = findList(name);
        if (!list.isValid())
            return {};
        if (!library()->hasChildren(list)) {
            Console::complain(QStringLiteral("the list '%1' holds no colours").arg(name));
            return {};
        }
        if (!lists.contains(list))
            lists.append(list);
    }
    if (!names.isEmpty())
        return lists;
    for (const QModelIndex &list : shownLists()) {
        if (library()->isUserListIndex(list) && library()->hasChildren(list))
            lists.append(list);
    }
    if (lists.isEmpty())
        Console::complain(QStringLiteral("there are no colours of the user's to export"));
    return lists;
}

QByteArray documentOf(const QVector<QModelIndex> &lists)
{
    QDomDocument document;
    for (const QModelIndex &list : lists) {
        const QDomDocument alone = library()->createColorDoc(childrenOf(list).toList(), nameOf(list));
        if (document.isNull())
            document = alone;
        else
            document.documentElement().appendChild(
                document.importNode(alone.documentElement().firstChildElement(), true));
    }
    return KestraProjectHelper::toByteArray(document);
}

/// Replaces the file at \a path; complains when that fails and leaves the old one.
bool write(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    const bool isWritten = !isOther(path) && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size()
                           && file.flush() && file.commit();
    if (!isWritten)
        Console::complain(
            QStringLiteral("cannot write '%1': %2").arg(path, isOther(path) ? "It is no file" : file.errorString()));
    return isWritten;
}

/// Adds the colours of \a lists as user lists, under names and with uids that are free. \return the new lists.
QVector<ListEntry> addLists(const QVector<ColorFile::List> &lists, const QString &defaultName)
{
    qint64 total = 0;
    for (const ColorFile::List &list : lists)
        total += list.colors.size();
    Progress progress(QStringLiteral("Importing"), total);
    qint64 done = 0;
    QVector<ListEntry> added;
    for (const ColorFile::List &list : lists) {
        if (list.colors.isEmpty())
            continue;
        const QString name = library()->getNewColorListName(list.name.isEmpty() ? defaultName : list.name);
        library()->createColorList(name, true);
        for (const ColorFile::Color &color : list.colors) {
            const bool isUidFree = ColorFile::isUid(color.uid) && !library()->containsUid(color.uid);
            library()->createColorWithName(TrelColor(color.value), color.name, isUidFree ? color.uid : QString(), name,
                                           color.vendorId);
            progress.show(++done);
        }
        added.append(listEntryOf(library()->getIndexOfListId(name)));
    }
    return added;
}

/// A file that was checked.
struct Checked
{
    QString path;
    ColorFile file;
};

void print(const QVector<Checked> &files, const QString &format)
{
    QJsonArray array;
    QString text;
    for (const Checked &checked : files) {
        for (const ColorFile::Fault &fault : checked.file.faults) {
            array.append(QJsonObject{{"file", checked.path}, {"line", fault.line}, {"reason", fault.reason}});
            text += oneLine(located(checked.path, fault)) + '\n';
        }
    }
    if (format == QLatin1String("json"))
        Console::print(QJsonValue(array));
    else
        Console::print(text);
}

} // namespace

int Commands::Library::list(const QString &format)
{
    loadToRead();
    QVector<ListEntry> lists;
    for (const QModelIndex &list : shownLists())
        lists.append(listEntryOf(list));
    print(lists, format);
    return Console::Success;
}

int Commands::Library::show(const QString &list, const QString &format)
{
    if (!canShowColors())
        return Console::BadInput;
    loadToRead();
    const QModelIndex index = findList(list);
    if (!index.isValid())
        return Console::BadInput;
    print(entriesOf(index), format);
    return Console::Success;
}

int Commands::Library::find(const QString &text, const QString &format)
{
    if (!canShowColors())
        return Console::BadInput;
    loadToRead();
    QVector<Entry> found;
    for (const QModelIndex &list : shownLists()) {
        for (const QModelIndex &color : childrenOf(list)) {
            const Entry entry = entryOf(color);
            const QString texts[] = {entry.name, entry.uid, entry.vendorId, entry.color.name8()};
            if (std::any_of(std::begin(texts), std::end(texts),
                            [&](const QString &each) { return each.contains(text, Qt::CaseInsensitive); }))
                found.append(entry);
        }
    }
    print(found, format);
    if (!found.isEmpty())
        return Console::Success;
    Console::complain(QStringLiteral("no colour with '%1' in it").arg(text));
    return Console::BadInput;
}

int Commands::Library::add(const QString &list, const QString &name, const QString &color, const QString &format)
{
    if (!isName(list) || !isName(name))
        return Console::BadArguments;
    const TrelColor value(color);
    if (!value.isValid()) {
        Console::complain(QStringLiteral("'%1' is no colour").arg(color));
        return Console::BadInput;
    }
    UserFileEdit edit;
    if (!canShowColors() || !edit.begin() || !userList(list).isValid())
        return Console::BadInput;
    if (library()->nameExists(name, list)) {
        Console::complain(QStringLiteral("the list '%1' has a colour '%2' already").arg(list, name));
        return Console::BadInput;
    }
    const QString uid = library()->createColorWithName(value, name, QString(), list, QString());
    if (!edit.finish())
        return Console::BadInput;
    print(QVector<Entry>{entryOf(library()->getIndexOfUid(uid))}, format);
    return Console::Success;
}

int Commands::Library::rename(const QString &color, const QString &newName, const QString &format)
{
    if (!isName(newName))
        return Console::BadArguments;
    UserFileEdit edit;
    if (!canShowColors() || !edit.begin())
        return Console::BadInput;
    const QModelIndex index = findUserColor(color);
    if (!index.isValid())
        return Console::BadInput;
    if (!library()->setData(index, newName, Qt::EditRole)) {
        Console::complain(QStringLiteral("the list '%1' has a colour '%2' already").arg(entryOf(index).list, newName));
        return Console::BadInput;
    }
    if (!edit.finish())
        return Console::BadInput;
    print(QVector<Entry>{entryOf(index)}, format);
    return Console::Success;
}

int Commands::Library::remove(const QString &color, const QString &format)
{
    UserFileEdit edit;
    if (!canShowColors() || !edit.begin())
        return Console::BadInput;
    const QModelIndex index = findUserColor(color);
    if (!index.isValid())
        return Console::BadInput;
    const Entry removed = entryOf(index);
    library()->removeRows(index.row(), 1, library()->parent(index));
    if (!edit.finish())
        return Console::BadInput;
    print(QVector<Entry>{removed}, format);
    return Console::Success;
}

int Commands::Library::exportLists(const QString &path, const QStringList &lists, const QString &format)
{
    if (!path.endsWith(QLatin1String(SUFFIX))) {
        Console::complain(QStringLiteral("'%1' does not end in %2").arg(path, QLatin1String(SUFFIX)));
        return Console::BadArguments;
    }
    loadToRead();
    const QVector<QModelIndex> chosen = listsToExport(lists);
    if (chosen.isEmpty() || !write(path, documentOf(chosen)))
        return Console::BadInput;
    QVector<ListEntry> entries;
    for (const QModelIndex &list : chosen)
        entries.append(listEntryOf(list));
    print(entries, format);
    return Console::Success;
}

int Commands::Library::importFile(const QString &path, const QString &format)
{
    QString error;
    const auto bytes = contentOf(path, error);
    if (!bytes) {
        Console::complain(error);
        return Console::BadInput;
    }
    ColorFile file;
    {
        Progress progress(QStringLiteral("Reading"), bytes->size());
        file = ColorFile::parse(*bytes, [&](qint64 done) { progress.show(done); });
    }
    const QString loss = lossIn(file, path);
    if (!loss.isEmpty()) {
        Console::complain(loss);
        return Console::BadInput;
    }
    UserFileEdit edit;
    if (!edit.begin())
        return Console::BadInput;
    const QVector<ListEntry> added = addLists(file.lists, QFileInfo(path).completeBaseName());
    if (added.isEmpty()) {
        Console::complain(QStringLiteral("'%1' holds no colours").arg(path));
        return Console::BadInput;
    }
    if (!edit.finish())
        return Console::BadInput;
    print(added, format);
    return Console::Success;
}

int Commands::Library::check(const QStringList &paths, const QString &format)
{
    qint64 total = 0;
    for (const QString &path : paths)
        total += QFileInfo(path).size();
    int code = Console::Success;
    QVector<Checked> files;
    {
        Progress progress(QStringLiteral("Checking"), total);
        qint64 before = 0;
        for (const QString &path : paths) {
            QString error;
            const auto bytes = contentOf(path, error);
            if (!bytes) {
                Console::complain(error);
                code = Console::BadInput;
                continue;
            }
            ColorFile file = ColorFile::parse(*bytes, [&](qint64 done) { progress.show(before + done); });
            before += bytes->size();
            if (file.faults.isEmpty())
                continue;
            file.lists.clear();
            files.append({path, file});
            code = Console::BadInput;
        }
    }
    print(files, format);
    return code;
}
