#include "TrelColorLibrary.h"

#include "ColorDocument_p.h"
#include "KestraProjectHelper.h"
#include "UserColorFile_p.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDebug>
#include <QDir>
#include <QDomDocument>
#include <QGuiApplication>
#include <QMimeData>
#include <QStandardPaths>

#ifdef Q_OS_MACOS
#include <CoreServices/CoreServices.h>
#endif

namespace {

constexpr char EXPLICIT_COLORS[] = "Explicit Colors";
constexpr char PROJECT_SWATCHES[] = "Project Swatches";
constexpr char COLOR_LIBRARY_LIST[] = "ColorLibraryList";
constexpr char ORIGINATING_PRESET_MIME_TYPE[] = "data/x-trelcolor-originatingPreset";
constexpr char HOST_COLOR_MIME_TYPE[] = "x-kestra/color";
constexpr QChar UID_END = QChar('}');

QString explicitColors()
{
    return QLatin1String(EXPLICIT_COLORS);
}

QString projectSwatches()
{
    return QLatin1String(PROJECT_SWATCHES);
}

/// The user's folder for the data of all applications, made if missing.
QString supportFolder()
{
#ifdef Q_OS_MACOS
    FSRef folder;
    if (FSFindFolder(kUserDomain, kApplicationSupportFolderType, kCreateFolder, &folder) != noErr)
        return QString();
    CFURLRef url = CFURLCreateFromFSRef(kCFAllocatorDefault, &folder);
    CFStringRef path = CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle);
    const QString result = QString::fromCFString(path);
    CFRelease(path);
    CFRelease(url);
    return result;
#else
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    QDir().mkpath(folder);
    return folder;
#endif
}

QString userColorPath()
{
    return TrelColorLibrary::applicationSupportDir() + QStringLiteral("\\userColors.xml");
}

/// The wait cursor for as long as it lives, where there is a screen to show it on.
class WaitCursor
{
public:
    WaitCursor()
        : m_isShown(qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr)
    {
        if (m_isShown)
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
    ~WaitCursor()
    {
        if (m_isShown)
            QGuiApplication::restoreOverrideCursor();
    }

private:
    bool m_isShown;
};

/// Whether a save writes everything of \a list again: a user list that holds colours only, or nothing.
bool wouldBeSaved(const QDomElement &list)
{
    if (list.attribute(QLatin1String(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE)).toInt() == 0)
        return false;
    for (QDomNode child = list.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.toElement().tagName() != QLatin1String(COLOR_ROOT_ELEMENT))
            return false;
    }
    return true;
}

} // namespace

/// An operation that sets several values: it saves once, at its end, and leaves the host's own batch as it is.
class TrelColorLibrary::Edit
{
public:
    explicit Edit(TrelColorLibrary *library)
        : m_library(library)
    {
        ++m_library->m_openEdits;
    }
    Edit(const Edit &) = delete;
    Edit &operator=(const Edit &) = delete;
    ~Edit()
    {
        --m_library->m_openEdits;
        if (m_library->m_openEdits > 0 || m_library->editingMultipleColors || !m_library->saveUserColorsPending)
            return;
        m_library->saveUserColorsPending = false;
        m_library->saveUserColors();
    }

private:
    TrelColorLibrary *m_library;
};

TrelColorLibrary *TrelColorLibrary::m_instance = nullptr;

TrelColorLibrary *TrelColorLibrary::Instance()
{
    if (!m_instance) {
        m_instance = new TrelColorLibrary;
        qAddPostRoutine(cleanup);
    }
    return m_instance;
}

void TrelColorLibrary::cleanup()
{
    qRemovePostRoutine(cleanup);
    delete m_instance;
    m_instance = nullptr;
}

TrelColorLibrary::TrelColorLibrary()
    : rootItem(new TrelColorLibraryItem(nullptr, false))
    , defaultColor(Qt::magenta)
{
    createNewLibraryIfNecessary(explicitColors(), true);
    setData(createNewLibraryIfNecessary(projectSwatches(), false), true, TrelColorLibraryItem::CanBeModifiedRole);
}

TrelColorLibrary::~TrelColorLibrary()
{
    destroying = true;
    removeRows(0, rowCount(rootIndex()), rootIndex());
    Q_EMIT dataChanged(rootIndex(), rootIndex());
    beginResetModel();
    delete rootItem;
    rootItem = nullptr;
    endResetModel();
    m_instance = nullptr; // whoever destroys it
}

QModelIndex TrelColorLibrary::index(int row, int column, const QModelIndex &parent) const
{
    if (!parent.isValid() || !rootItem)
        return QModelIndex();
    TrelColorLibraryItem *child = itemOf(parent)->child(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex TrelColorLibrary::parent(const QModelIndex &index) const
{
    if (!index.isValid() || !rootItem)
        return QModelIndex();
    const TrelColorLibraryItem *parentItem = itemOf(index)->parent();
    if (!parentItem)
        return QModelIndex();
    return parentItem == rootItem ? rootIndex() : getIndexOfListId(parentItem->displayName());
}

int TrelColorLibrary::rowCount(const QModelIndex &index) const
{
    return index.isValid() && rootItem ? itemOf(index)->childCount() : 0;
}

int TrelColorLibrary::columnCount(const QModelIndex &index) const
{
    return index.isValid() && rootItem ? itemOf(index)->columnCount() : 0;
}

bool TrelColorLibrary::hasChildren(const QModelIndex &index) const
{
    return rowCount(index) != 0;
}

QVariant TrelColorLibrary::data(const QModelIndex &index, int role) const
{
    return index.isValid() && rootItem ? itemOf(index)->data(role, index.column()) : QVariant();
}

bool TrelColorLibrary::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid())
        return false;
    const QModelIndex parentIndex = parent(index);
    const bool isRename = role == Qt::DisplayRole || role == Qt::EditRole;
    if (isRename && parentIndex.isValid() && itemOf(parentIndex)->hasChildNamed(value.toString()))
        return false;
    // ODD-62: an edit of the vendor's column renames as well.
    const bool result = itemOf(index)->setData(value, role, 0);
    Q_EMIT dataChanged(index, index);
    if (!destroying && userColorsLoaded && (isUserListIndex(parentIndex) || isUserListIndex(index)))
        triggerSave();
    return result;
}

QVariant TrelColorLibrary::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return section == 0 ? tr("Swatches") : tr("Color ID");
}

QStringList TrelColorLibrary::mimeTypes() const
{
    return rootItem ? rootItem->mimeTypes() : QStringList();
}

QMimeData *TrelColorLibrary::mimeData(const QModelIndexList &indexes) const
{
    QString values;
    QString names;
    QString presets;
    QString vendorIds;
    for (const QModelIndex &index : indexes) {
        if (!index.isValid())
            continue;
        const TrelColorLibraryItem *item = itemOf(index);
        values += item->getUid() + item->getTrelColor().aName();
        names += item->displayName();
        presets += item->orignatingPreset();
        vendorIds += item->vendorID();
        if (index == indexes.last())
            continue;
        for (QString *text : {&values, &names, &presets, &vendorIds})
            *text += ',';
    }
    auto *data = new QMimeData;
    const std::pair<const char *, const QString &> formats[] = {{TRELCOLOR_MIME_TYPE, values},
                                                                {kTRELCOLOR_NAME_MIME_TYPE, names},
                                                                {ORIGINATING_PRESET_MIME_TYPE, presets},
                                                                {kTRELCOLOR_VENDOR_ID_MIME_TYPE, vendorIds}};
    for (const auto &[format, text] : formats) {
        if (!text.isEmpty())
            data->setData(QLatin1String(format), text.toLatin1());
    }
    return data;
}

bool TrelColorLibrary::insertRows(int row, int count, const QModelIndex &parent)
{
    if (!parent.isValid() || count < 1)
        return false;
    TrelColorLibraryItem *item = itemOf(parent);
    Q_ASSERT_X(row >= 0 && row <= item->childCount(), "TrelColorLibrary::insertRows", "index out of range");
    // ODD-63: one row too many, and false.
    beginInsertRows(parent, row, row + count);
    item->insertChildren(row, count);
    endInsertRows();
    Q_EMIT dataChanged(parent, parent);
    return false;
}

bool TrelColorLibrary::removeRows(int row, int count, const QModelIndex &parent)
{
    if (!parent.isValid() || !hasChildren(parent) || count < 1)
        return false;
    TrelColorLibraryItem *item = itemOf(parent);
    Q_ASSERT_X(row >= 0 && count <= item->childCount() - row, "TrelColorLibrary::removeRows", "index out of range");
    const bool isUsers = isUserListIndex(parent) || isUserListIndex(index(row, 0, parent));
    beginRemoveRows(parent, row, row + count - 1);
    for (int i = row; i < row + count; ++i)
        static_cast<QObject *>(item->child(i))->setParent(this); // takes along what no event loop comes to delete
    item->removeChildren(row, count);
    endRemoveRows();
    Q_EMIT dataChanged(parent, parent);
    if (!destroying && isUsers)
        triggerSave();
    return false;
}

Qt::ItemFlags TrelColorLibrary::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsEnabled;
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled;
    // ODD-64: a list can be dragged as long as it is empty.
    if (!hasChildren(index))
        flags |= Qt::ItemIsDragEnabled;
    if (index.column() == 0 && data(index, TrelColorLibraryItem::CanBeModifiedRole).toBool()
        && data(index, Qt::EditRole).toString() != projectSwatches())
        flags |= Qt::ItemIsEditable;
    return flags;
}

QModelIndex TrelColorLibrary::rootIndex() const
{
    return rootItem ? createIndex(0, 0, rootItem) : QModelIndex();
}

bool TrelColorLibrary::isListIndex(const QModelIndex &index) const
{
    return index.isValid() && rootItem && parent(index) == rootIndex();
}

bool TrelColorLibrary::isUserListIndex(const QModelIndex &index) const
{
    return isListIndex(index) && flags(index).testFlag(Qt::ItemIsEditable);
}

QString TrelColorLibrary::UidAndValueToUid(const QString &uidAndValue)
{
    return uidAndValue.left(uidAndValue.indexOf(UID_END) + 1);
}

QString TrelColorLibrary::UidAndValueToValue(const QString &uidAndValue)
{
    // ODD-65: a text that begins with "}" is all value, although "}" is its uid.
    const auto end = uidAndValue.indexOf(UID_END);
    return end < 1 ? uidAndValue : uidAndValue.mid(end + 1);
}

QModelIndex TrelColorLibrary::getIndexOfListId(const QString &listId) const
{
    TrelColorLibraryItem *list = listItem(listId);
    return list ? createIndex(list->row(), 0, list) : QModelIndex();
}

QModelIndex TrelColorLibrary::getIndexOfUid(const QString &uid) const
{
    for (int row = 0; rootItem && row < rootItem->childCount(); ++row) {
        if (TrelColorLibraryItem *color = rootItem->child(row)->firstChildWithUid(uid))
            return indexOf(color);
    }
    return QModelIndex();
}

QModelIndex TrelColorLibrary::getIndexOfExplicitColor(const QString &value) const
{
    return findColor([&](const TrelColorLibraryItem *color) { return color->getExplicitColorString() == value; });
}

QModelIndex TrelColorLibrary::getIndexOfOriginatingPreset(const QString &path) const
{
    return findColor([&](const TrelColorLibraryItem *color) { return color->orignatingPreset() == path; });
}

QModelIndex TrelColorLibrary::getIndexOfOldPreset(const QString &name) const
{
    return findColor([&](const TrelColorLibraryItem *color) { return color->getOldPreset() == name; });
}

QModelIndex TrelColorLibrary::getIndexOfName(const QString &name, const QModelIndex &listIndex) const
{
    for (int row = 0; row < rowCount(listIndex); ++row) {
        const QModelIndex color = index(row, 0, listIndex);
        if (data(color, Qt::EditRole).toString() == name)
            return color;
    }
    return QModelIndex();
}

bool TrelColorLibrary::containsUid(const QString &uid) const
{
    return getIndexOfUid(uid).isValid();
}

bool TrelColorLibrary::nameExists(const QString &name) const
{
    return rootItem && rootItem->hasChildNamed(name);
}

bool TrelColorLibrary::nameExists(const QString &name, const QString &listId) const
{
    const TrelColorLibraryItem *list = listItem(listId);
    return list && list->hasChildNamed(name);
}

TrelColor TrelColorLibrary::get(const QString &uidAndValue)
{
    const QString uid = UidAndValueToUid(uidAndValue);
    const QString value = UidAndValueToValue(uidAndValue);
    if (uid.isEmpty() && !value.isEmpty()) {
        createNewLibraryIfNecessary(explicitColors(), true);
        if (const TrelColorLibraryItem *known = listItem(explicitColors())->childWithExplicitColor(value))
            return known->getTrelColor();
        const TrelColor color(value);
        createExplicitColor(color, value);
        return color;
    }
    for (int row = 0; row < rootItem->childCount(); ++row) {
        if (const TrelColorLibraryItem *color = rootItem->child(row)->childWithUid(uid))
            return color->getTrelColor();
    }
    return value.isEmpty() ? defaultColor : TrelColor(value);
}

QColor TrelColorLibrary::getQColor(const QString &uidAndValue)
{
    return get(uidAndValue).getQColor(true);
}

bool TrelColorLibrary::set(const QString &uidAndValue, const TrelColor &color)
{
    const QString uid = UidAndValueToUid(uidAndValue);
    const QModelIndex known = uid.isEmpty() ? QModelIndex() : getIndexOfUid(uid);
    if (!known.isValid() || !color.isValid())
        return false;
    TrelColor copy = color;
    return setData(known, QVariant::fromValue<void *>(&copy), TrelColorLibraryItem::ColorRole);
}

QList<TrelColor> TrelColorLibrary::getColors(const QString &listId) const
{
    QList<TrelColor> colors;
    const TrelColorLibraryItem *list = listItem(listId);
    for (int row = 0; list && row < list->childCount(); ++row)
        colors.append(list->child(row)->getTrelColor());
    return colors;
}

QStringList TrelColorLibrary::getColorUids(const QString &listId) const
{
    QStringList uids;
    const TrelColorLibraryItem *list = listItem(listId);
    for (int row = 0; list && row < list->childCount(); ++row)
        uids.append(list->child(row)->getUid());
    return uids;
}

QString TrelColorLibrary::createColor(const TrelColor &color, QString uid, const QString &listId,
                                      const QString &originatingPreset, const QString &vendorID)
{
    QModelIndex list = createNewLibraryIfNecessary(listId, false);
    const int row = rowCount(list);
    beginInsertRows(list, row, row);
    const QString newUid = itemOf(list)->createColor(color, uid, originatingPreset, vendorID);
    endInsertRows();
    if (isUserListIndex(list))
        triggerSave();
    Q_EMIT dataChanged(list, list);
    Q_EMIT addedColorToList(list);
    return newUid;
}

QString TrelColorLibrary::createColorWithName(const TrelColor &color, const QString &name, QString uid,
                                              const QString &listId, const QString &vendorID)
{
    const Edit edit(this);
    const QString newUid = createColor(color, uid, listId, QString(), vendorID);
    // ODD-66: the colour's provisional name is among those that are taken.
    rename(newUid, listItem(listId)->freeChildName(name), true);
    return newUid;
}

QString TrelColorLibrary::createExplicitColor(const TrelColor &color, QString value)
{
    const QModelIndex list = createNewLibraryIfNecessary(explicitColors(), true);
    const int row = rowCount(list);
    beginInsertRows(list, row, row);
    itemOf(list)->createExplicitColor(color, value);
    endInsertRows();
    return value;
}

QString TrelColorLibrary::rename(const QString &uid, const QString &newName, bool keepOrigin)
{
    const QModelIndex color = uid.isEmpty() ? QModelIndex() : getIndexOfUid(uid);
    if (!color.isValid())
        return QString();
    const Edit edit(this);
    const bool isUsers = !destroying && userColorsLoaded && isUserListIndex(parent(color));
    const QVariant preset = data(color, TrelColorLibraryItem::OriginatingPresetRole);
    const QVariant vendorId = data(color, TrelColorLibraryItem::VendorIdRole);
    // ODD-67: a name that a sibling has is refused, and still returned.
    setData(color, newName, Qt::EditRole);
    if (keepOrigin) {
        setData(color, preset, TrelColorLibraryItem::OriginatingPresetRole);
        setData(color, vendorId, TrelColorLibraryItem::VendorIdRole);
    }
    Q_EMIT dataChanged(color, color);
    if (isUsers)
        triggerSave();
    return newName;
}

bool TrelColorLibrary::remove(const QString &uid)
{
    const TrelColorLibraryItem *color = itemOfUid(uid);
    if (!color)
        return false;
    // By the list itself: parent() goes by name and would find another list of the same name.
    removeRows(color->row(), 1, indexOf(color->parent()));
    return true;
}

bool TrelColorLibrary::clear(const QString &listId)
{
    const QModelIndex list = getIndexOfListId(listId);
    if (!list.isValid())
        return false;
    removeRows(0, rowCount(list), list);
    return true;
}

QString TrelColorLibrary::getName(const QString &uid, int descriptor) const
{
    const TrelColorLibraryItem *color = itemOfUid(uid);
    if (!color)
        return QString();
    switch (descriptor) {
    case NameDescriptor:
        return color->displayName();
    case ValueStringDescriptor:
        return color->getTrelColor().aName();
    case HexDescriptor:
        return color->getTrelColor().name8();
    case VendorIdDescriptor:
        return color->vendorID();
    default:
        return QString();
    }
}

QString TrelColorLibrary::getAlternativeColorDescriptor(QString uid, ColorDescriptor descriptor) const
{
    const QString text = getName(uid, descriptor);
    return text.isEmpty() ? getName(uid, NameDescriptor) : text;
}

QModelIndex TrelColorLibrary::createNewLibraryIfNecessary(const QString &listId, bool flag)
{
    const QModelIndex known = getIndexOfListId(listId);
    if (known.isValid())
        return known;
    insertRows(rowCount(rootIndex()), 1, rootIndex());
    const QModelIndex list = index(rowCount(rootIndex()) - 1, 0, rootIndex());
    setData(list, listId, Qt::EditRole);
    if (flag)
        setData(list, false, TrelColorLibraryItem::ListStateRole);
    return list;
}

QString TrelColorLibrary::getNewColorListName(const QString &name) const
{
    return rootItem ? rootItem->freeChildName(name) : name;
}

QString TrelColorLibrary::pathOfUid(QString uid) const
{
    const QString name = getName(uid, NameDescriptor);
    if (name.isEmpty())
        return QString();
    return itemOfUid(uid)->parent()->displayName() + '/' + name;
}

QString TrelColorLibrary::createNewSwatchUidFromUid(const QString &uid, const QString &listId)
{
    const TrelColorLibraryItem *source = itemOfUid(uid);
    if (!source)
        return QString();
    const Edit edit(this);
    const QString newUid = createColor(source->getTrelColor(), QString(), listId, pathOfUid(uid), source->vendorID());
    rename(newUid, listItem(listId)->freeChildName(source->displayName()), true);
    return newUid;
}

QString TrelColorLibrary::getExposableUidFromUid(QString uid)
{
    const TrelColorLibraryItem *color = itemOfUid(uid);
    if (!color)
        return QString();
    if (color->parent()->displayName() == projectSwatches())
        return uid;
    const QString preset = color->orignatingPreset();
    const QModelIndex copy = getIndexOfOriginatingPreset(preset.isEmpty() ? pathOfUid(uid) : preset);
    if (copy.isValid())
        return data(copy, TrelColorLibraryItem::UidRole).toString();
    return createNewSwatchUidFromUid(uid, projectSwatches());
}

void TrelColorLibrary::loadPresetFiles()
{
    const QDir folder(QCoreApplication::applicationDirPath() + "/../Resources/Presets");
    KestraProjectHelper helper;
    connect(&helper, &KestraProjectHelper::insertList, this, &TrelColorLibrary::createColorList);
    connect(&helper, &KestraProjectHelper::insertColor, this, &TrelColorLibrary::handleInsertColor);
    const QStringList names = folder.entryList({QStringLiteral("*.trelcolors")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        QDomDocument document;
        QByteArray bytes;
        if (!ColorDocument::read(folder.filePath(name), document, bytes).isEmpty())
            continue;
        QString error;
        QStringList oldUids;
        helper.loadDocument(document, error, 0.0, oldUids);
    }
}

void TrelColorLibrary::loadUserColors(const QString &path)
{
    const WaitCursor cursor;
    setEditingMultipleColors(true);
    const QString file = path.isEmpty() ? userColorPath() : path;
    QDomDocument document;
    QByteArray bytes;
    const bool isRead = ColorDocument::read(file, document, bytes).isEmpty();
    const bool isWhole = isRead && loadLists(document, 0.0) && ColorDocument::isDeclaredAsUtf8(document);
    if (path.isEmpty()) {
        if (!m_userFile)
            m_userFile = std::make_unique<UserColorFile>(file);
        m_userFile->noteLoad(bytes, isWhole || m_userFile->isMissing());
        userColorsLoaded = true;
    }
    setEditingMultipleColors(false);
}

void TrelColorLibrary::saveUserColors()
{
    if (!userColorsLoaded)
        return;
    const QByteArray text = userDocument();
    QDir().mkpath(applicationSupportDir());
    m_userFile->save(text);
    qDebug().noquote() << QString::fromUtf8(text);
}

QString TrelColorLibrary::applicationSupportDir()
{
    // The backslash is part of the folder's name where it separates nothing (ODD-69).
    static const QString folder = supportFolder() + QStringLiteral("\\Orvane");
    return folder;
}

bool TrelColorLibrary::containsDefaults() const
{
    return m_containsDefaults;
}

void TrelColorLibrary::setContainsDefaults()
{
    m_containsDefaults = true;
}

QStringList TrelColorLibrary::oldPresets() const
{
    QStringList names;
    findColor([&](const TrelColorLibraryItem *color) {
        if (color->data(TrelColorLibraryItem::ItemTypeRole, 0).toInt() == TrelColorLibraryItem::OLD_PRESET_ITEM)
            names.append(color->getOldPreset());
        return false;
    });
    return names;
}

void TrelColorLibrary::clearOldPresets()
{
    for (int listRow = 0; listRow < rowCount(rootIndex()); ++listRow) {
        const QModelIndex list = index(listRow, 0, rootIndex());
        for (int row = rowCount(list) - 1; row >= 0; --row) {
            if (data(index(row, 0, list), TrelColorLibraryItem::ItemTypeRole).toInt()
                == TrelColorLibraryItem::OLD_PRESET_ITEM)
                removeRows(row, 1, list);
        }
    }
}

bool TrelColorLibrary::loadDocument(QDomDocument &doc, QString &error, double version, QString applicationId)
{
    const QModelIndex listIndex = getIndexOfListId(projectSwatches());
    Q_ASSERT(listIndex.isValid());
    if (applicationId != QLatin1String(KESTRA_APPLICATION_ID))
        return true;
    // The item itself announces nothing, so it loads aside and the rows go over under the model's eyes.
    TrelColorLibraryItem loaded(nullptr, false);
    loaded.setCanBeModified(itemOf(listIndex)->canBeModified());
    const bool result = loaded.loadDocument(doc, error, version, applicationId);
    removeRows(0, rowCount(listIndex), listIndex);
    if (loaded.childCount() > 0) {
        beginInsertRows(listIndex, 0, loaded.childCount() - 1);
        itemOf(listIndex)->adoptChildren(&loaded);
        endInsertRows();
        Q_EMIT dataChanged(listIndex, listIndex);
    }
    return result;
}

QDomElement TrelColorLibrary::createElement(QDomDocument &doc, bool &ok, QString applicationId) const
{
    const TrelColorLibraryItem *list = listItem(projectSwatches());
    ok = list != nullptr;
    return ok ? list->createElement(doc, ok, applicationId, false) : QDomElement();
}

QDomDocument TrelColorLibrary::createColorDoc(const QModelIndexList &indexes, const QString &listName) const
{
    QStringList uids;
    QStringList names;
    QStringList values;
    QStringList presets;
    QStringList vendorIds;
    for (const QModelIndex &index : indexes) {
        if (!index.isValid() || index.column() != 0 || isListIndex(index))
            continue;
        const TrelColorLibraryItem *color = itemOf(index);
        uids.append(color->getUid());
        names.append(color->displayName());
        values.append(color->getTrelColor().aName());
        presets.append(color->orignatingPreset());
        vendorIds.append(color->vendorID());
    }
    QDomDocument document;
    QDomNode root = document.appendChild(document.createElement(QLatin1String(COLOR_LIBRARY_LIST)));
    bool ok = false;
    QDomElement list = KestraProjectHelper().createElement(document, ok, uids, names, values, presets, vendorIds);
    list.setAttribute(QLatin1String(COLOR_NAME_ATTRIBUTE), KestraProjectHelper::writableText(listName));
    list.setAttribute(QLatin1String(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE), 1);
    root.appendChild(list);
    return document;
}

void TrelColorLibrary::setEditingMultipleColors(bool on)
{
    editingMultipleColors = on;
    // A batch that is open while the user's file is loaded keeps its save for the end of the load.
    if (!saveUserColorsPending || (on && !userColorsLoaded))
        return;
    saveUserColors();
    saveUserColorsPending = false;
}

QString TrelColorLibrary::getOriginatingPresetFromMimeData(const QMimeData *data)
{
    if (!data || !data->hasFormat(QLatin1String(HOST_COLOR_MIME_TYPE)))
        return QString();
    const QByteArray bytes = data->data(QLatin1String(ORIGINATING_PRESET_MIME_TYPE));
    return QString::fromLatin1(bytes.constData()).section(',', 0, 0);
}

void TrelColorLibrary::setThumbnailGenerator(ThumbnailGenerator generator)
{
    thumbnailGenerator = generator;
}

bool TrelColorLibrary::canGeneratePixmap() const
{
    return thumbnailGenerator != nullptr;
}

QPixmap TrelColorLibrary::generatePixmap(const TrelColor &color) const
{
    return thumbnailGenerator ? thumbnailGenerator(color) : QPixmap();
}

void TrelColorLibrary::eventLibraryChanged(const QString &listId)
{
    if (getIndexOfListId(listId).isValid())
        Q_EMIT changed(listId);
}

void TrelColorLibrary::onColorLibraryListChanged(QString listId)
{
    Q_EMIT changed(listId);
}

void TrelColorLibrary::createColorList(QString colorListName, bool isUserList)
{
    const QModelIndex list = createNewLibraryIfNecessary(getNewColorListName(colorListName), false);
    itemOf(list)->setData(isUserList, TrelColorLibraryItem::CanBeModifiedRole, 0);
    if (isUserList && userColorsLoaded)
        triggerSave();
}

void TrelColorLibrary::handleInsertColor(QString uid, QString name, QString valueString, QString, QString listId,
                                         QString vendorID)
{
    // ODD-68: files do not say where their colours came from.
    const TrelColor color(valueString);
    const bool isUnreadable = !color.isValid() && !valueString.isEmpty();
    // The second colour of a uid gives its name to the first.
    const bool isDuplicate = !uid.isEmpty() && containsUid(uid);
    m_metLoss = m_metLoss || isUnreadable || isDuplicate;
    createColorWithName(color, name, uid, listId, vendorID);
}

TrelColorLibraryItem *TrelColorLibrary::itemOf(const QModelIndex &index) const
{
    return static_cast<TrelColorLibraryItem *>(index.internalPointer());
}

/// Index of a list or a colour in column 0.
QModelIndex TrelColorLibrary::indexOf(TrelColorLibraryItem *item) const
{
    return createIndex(item->row(), 0, item);
}

TrelColorLibraryItem *TrelColorLibrary::listItem(const QString &listId) const
{
    return rootItem ? rootItem->firstChildNamed(listId) : nullptr;
}

/// The colour with \a uid; null for none and for an empty uid.
TrelColorLibraryItem *TrelColorLibrary::itemOfUid(const QString &uid) const
{
    const QModelIndex color = uid.isEmpty() ? QModelIndex() : getIndexOfUid(uid);
    return color.isValid() ? itemOf(color) : nullptr;
}

template <typename Matches>
QModelIndex TrelColorLibrary::findColor(Matches matches) const
{
    for (int listRow = 0; rootItem && listRow < rootItem->childCount(); ++listRow) {
        const TrelColorLibraryItem *list = rootItem->child(listRow);
        for (int row = 0; row < list->childCount(); ++row) {
            if (matches(list->child(row)))
                return indexOf(list->child(row));
        }
    }
    return QModelIndex();
}

/// Saves now, or at the end of the batch or operation under way.
void TrelColorLibrary::triggerSave()
{
    if (editingMultipleColors || m_openEdits > 0)
        saveUserColorsPending = true;
    else
        saveUserColors();
}

/// Adds the lists of a user file, each for itself, so that one that cannot be read does not hide those behind it.
/// \return whether everything in them arrived.
bool TrelColorLibrary::loadLists(const QDomDocument &document, double version)
{
    KestraProjectHelper helper;
    bool isWhole = true;
    connect(&helper, &KestraProjectHelper::insertList, this, &TrelColorLibrary::createColorList);
    connect(&helper, &KestraProjectHelper::insertColor, this, &TrelColorLibrary::handleInsertColor);
    m_metLoss = false;

    const QDomNodeList lists = document.elementsByTagName(QLatin1String(COLOR_LIBRARY_ROOT));
    for (int i = 0; i < lists.count(); ++i) {
        const QDomElement list = lists.at(i).toElement();
        QString error;
        QStringList oldUids;
        helper.loadList(list, error, version, oldUids);
        isWhole = isWhole && wouldBeSaved(list);
    }
    return isWhole && !m_metLoss;
}

/// The user lists as the bytes of the user's file.
QByteArray TrelColorLibrary::userDocument() const
{
    QDomDocument document;
    QDomNode root = document.appendChild(document.createElement(QLatin1String(COLOR_LIBRARY_LIST)));
    for (int row = 0; row < rowCount(rootIndex()); ++row) {
        const QModelIndex list = index(row, 0, rootIndex());
        if (!isUserListIndex(list))
            continue;
        bool ok = false;
        root.appendChild(itemOf(list)->createElement(document, ok, QLatin1String(KESTRA_APPLICATION_ID), true));
    }
    return KestraProjectHelper::toByteArray(document);
}
