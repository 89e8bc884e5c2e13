#include "TrelColorLibraryItem.h"

#include "KestraProjectHelper.h"
#include "TrelColorLibrary.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDomDocument>
#include <QSet>
#include <QUuid>

#include <algorithm>

namespace {

constexpr int NAME_COLUMN = 0;
constexpr int VENDOR_COLUMN = 1;
constexpr int FIRST_NUMBER = 2;

QString numbered(const QString &name, int number)
{
    // One call with both, since a name may hold "%1".
    return QStringLiteral("%1 %2").arg(name, QString::number(number));
}

/// The first of \a name, "name 2", … that \a isTaken does not know.
template <typename IsTaken>
QString firstFree(const QString &name, IsTaken isTaken)
{
    if (!isTaken(name))
        return name;
    int number = FIRST_NUMBER;
    while (isTaken(numbered(name, number)))
        ++number;
    return numbered(name, number);
}

bool isAbove(const TrelColorLibraryItem *a, const TrelColorLibraryItem *b)
{
    return a->row() < b->row();
}

QString newColorName()
{
    return QStringLiteral("Color");
}

} // namespace

TrelColorLibraryItem *TrelColorLibraryItem::ChildrenByText::first(const QString &text) const
{
    const auto children = m_children.constFind(text);
    return children == m_children.constEnd() ? nullptr : children->first();
}

bool TrelColorLibraryItem::ChildrenByText::contains(const QString &text) const
{
    return m_children.contains(text);
}

void TrelColorLibraryItem::ChildrenByText::add(const QString &text, TrelColorLibraryItem *child)
{
    auto &children = m_children[text];
    if (children.isEmpty() || children.last()->m_row < child->m_row)
        children.append(child); // unlike insert(), with room for more
    else
        children.insert(std::upper_bound(children.begin(), children.end(), child, isAbove), child);
}

void TrelColorLibraryItem::ChildrenByText::remove(const QString &text, TrelColorLibraryItem *child)
{
    const auto children = m_children.find(text);
    if (children == m_children.end())
        return;
    const auto place = std::lower_bound(children->begin(), children->end(), child, isAbove);
    if (place == children->end() || *place != child)
        return;
    children->erase(place);
    if (children->isEmpty())
        m_children.erase(children);
}

void TrelColorLibraryItem::ChildrenByText::clear()
{
    m_children.clear();
}

TrelColorLibraryItem::TrelColorLibraryItem(TrelColorLibraryItem *parent, bool flag)
    : m_parent(parent)
    , m_canBeModified(parent && parent->m_canBeModified)
    , m_originatingPreset(QChar(ushort(flag ? 1 : 0))) // ODD-57: a character made of the flag, never empty
{
}

TrelColorLibraryItem::~TrelColorLibraryItem()
{
    qDeleteAll(childItems);
}

QVariant TrelColorLibraryItem::data(int role, int column) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        if (column == NAME_COLUMN)
            return m_displayName;
        return column == VENDOR_COLUMN ? QVariant(m_vendorID) : QVariant();
    case Qt::DecorationRole:
        if (column != NAME_COLUMN || !QCoreApplication::instance()) // without one, a pixmap stops the program
            return QVariant();
        return getIcon();
    case Qt::EditRole:
        return m_displayName;
    case ColorRole:
        return QVariant::fromValue<void *>(const_cast<TrelColor *>(&m_color));
    case UidRole:
        return m_uid;
    case ExplicitColorRole:
        return m_explicitColorString;
    case OldPresetRole:
        return m_oldPreset;
    case CanBeModifiedRole:
        return m_canBeModified;
    case ItemTypeRole:
        return int(m_type);
    case ListStateRole:
        return m_listState;
    case OriginatingPresetRole:
        return m_originatingPreset;
    case VendorIdRole:
        return m_vendorID;
    default:
        return QVariant();
    }
}

bool TrelColorLibraryItem::setData(const QVariant &value, int role, int)
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
    case Qt::ToolTipRole:
        setDisplayName(value.toString());
        return true;
    case ColorRole:
        if (const auto *color = static_cast<const TrelColor *>(value.value<void *>()))
            setTrelColor(TrelColor(*color));
        return true;
    case UidRole:
        setUid(value.toString());
        m_type = UID_COLOR_ITEM;
        return true;
    case ExplicitColorRole:
        setExplicitColorString(value.toString());
        m_type = EXPLICIT_COLOR_ITEM;
        return true;
    case OldPresetRole:
        setOldPreset(value.toString());
        m_type = OLD_PRESET_ITEM;
        return true;
    case CanBeModifiedRole:
        setCanBeModified(value.toBool());
        return true;
    case ListStateRole:
        m_listState = value.toBool() ? 1 : 0;
        return true;
    case OriginatingPresetRole:
        setOriginatingPreset(value.toString());
        return true;
    case VendorIdRole:
        setVendorID(value.toString());
        return true;
    default:
        return false;
    }
}

QStringList TrelColorLibraryItem::mimeTypes() const
{
    if (m_uid.isEmpty() && m_explicitColorString.isEmpty() && m_oldPreset.isEmpty())
        return {};
    return {QLatin1String(TRELCOLOR_MIME_TYPE)};
}

bool TrelColorLibraryItem::mimeData(const QString &mimeType, QDataStream &out) const
{
    if (mimeType != QLatin1String(TRELCOLOR_MIME_TYPE))
        return false;
    out << m_uid.toLatin1() << m_color.aName().toLatin1();
    return true;
}

TrelColorLibraryItem *TrelColorLibraryItem::parent() const
{
    return m_parent;
}

TrelColorLibraryItem *TrelColorLibraryItem::child(int row) const
{
    return row >= 0 && row < childCount() ? childItems.at(row) : nullptr;
}

int TrelColorLibraryItem::childCount() const
{
    return int(childItems.size());
}

int TrelColorLibraryItem::row() const
{
    return m_row;
}

int TrelColorLibraryItem::columnCount() const
{
    // ODD-58: explicit colours and old presets show nothing.
    return m_type == LIST_ITEM || m_type == UID_COLOR_ITEM ? 2 : 0;
}

void TrelColorLibraryItem::appendChild(TrelColorLibraryItem *item)
{
    item->m_parent = this;
    item->m_row = childCount();
    childItems.append(item);
    addToIndexes(item);
}

void TrelColorLibraryItem::insertChildren(int position, int count)
{
    Q_ASSERT_X(position >= 0 && position <= childCount(), "QList<T>::insert", "index out of range");
    for (int i = 0; i < count; ++i)
        childItems.insert(position, new TrelColorLibraryItem(this, false));
    numberRows(position);
    for (int i = position; i < position + count; ++i)
        addToIndexes(childItems.at(i));
    Q_ASSERT(childItems.size() > 0); // NOLINT(readability-container-size-empty): the text is what a host reads
}

void TrelColorLibraryItem::removeChildren(int position, int count)
{
    if (childItems.isEmpty() || count < 1)
        return;
    Q_ASSERT_X(position >= 0 && count <= childCount() - position, "QList<T>::at", "index out of range");
    const QList<TrelColorLibraryItem *> removed = childItems.mid(position, count);
    // From the end, so that among many of the same name or uid each is the last.
    std::for_each(removed.crbegin(), removed.crend(),
                  [this](TrelColorLibraryItem *child) { removeFromIndexes(child); });
    for (TrelColorLibraryItem *child : removed) {
        child->m_parent = nullptr; // it may outlive this item until the event loop deletes it
        child->deleteLater();
    }
    childItems.erase(childItems.begin() + position, childItems.begin() + position + count);
    numberRows(position);
}

TrelColorLibraryItem *TrelColorLibraryItem::childWithUid(const QString &uid) const
{
    return childIndex.value(uid, nullptr);
}

TrelColorLibraryItem *TrelColorLibraryItem::childWithExplicitColor(const QString &value) const
{
    return childIndex.value(value, nullptr);
}

TrelColorLibraryItem *TrelColorLibraryItem::firstChildWithUid(const QString &uid) const
{
    return m_childrenByUid.first(uid);
}

TrelColorLibraryItem *TrelColorLibraryItem::firstChildNamed(const QString &name) const
{
    return m_childrenByName.first(name);
}

bool TrelColorLibraryItem::hasChildNamed(const QString &name) const
{
    return m_childrenByName.contains(name);
}

QString TrelColorLibraryItem::freeChildName(const QString &name) const
{
    if (!hasChildNamed(name))
        return name;
    FreeNumbers &numbers = m_freeNumbers[name];
    std::set<int> &givenBack = numbers.givenBack;
    while (!givenBack.empty() && hasChildNamed(numbered(name, *givenBack.begin())))
        givenBack.erase(givenBack.begin());
    if (!givenBack.empty())
        return numbered(name, *givenBack.begin());
    while (hasChildNamed(numbered(name, numbers.mark)))
        ++numbers.mark;
    return numbered(name, numbers.mark);
}

QString TrelColorLibraryItem::displayName() const
{
    return m_displayName;
}

void TrelColorLibraryItem::setDisplayName(const QString &name)
{
    if (name.isEmpty())
        return;
    if (isChild()) {
        m_parent->m_childrenByName.remove(m_displayName, this);
        m_parent->giveBackNumber(m_displayName);
        m_parent->m_childrenByName.add(name, this);
    }
    m_displayName = name;
    // ODD-59: under another name it is another colour, of no preset and no vendor.
    m_originatingPreset.clear();
    m_vendorID.clear();
}

QString TrelColorLibraryItem::getUid() const
{
    return m_uid;
}

void TrelColorLibraryItem::setUid(const QString &uid)
{
    if (isChild()) {
        m_parent->m_childrenByUid.remove(m_uid, this);
        m_parent->m_childrenByUid.add(uid, this);
    }
    m_uid = uid;
}

QString TrelColorLibraryItem::getExplicitColorString() const
{
    return m_explicitColorString;
}

void TrelColorLibraryItem::setExplicitColorString(const QString &value)
{
    m_explicitColorString = value;
}

QString TrelColorLibraryItem::getOldPreset() const
{
    return m_oldPreset;
}

void TrelColorLibraryItem::setOldPreset(const QString &name)
{
    m_oldPreset = name;
}

QString TrelColorLibraryItem::orignatingPreset() const
{
    return m_originatingPreset;
}

void TrelColorLibraryItem::setOriginatingPreset(const QString &preset)
{
    m_originatingPreset = preset;
}

QString TrelColorLibraryItem::vendorID() const
{
    return m_vendorID;
}

void TrelColorLibraryItem::setVendorID(const QString &id)
{
    m_vendorID = id;
}

QPixmap TrelColorLibraryItem::getIcon() const
{
    return m_icon ? *m_icon : QPixmap();
}

void TrelColorLibraryItem::setIcon(const QPixmap &icon)
{
    m_icon = icon;
}

TrelColor TrelColorLibraryItem::getTrelColor() const
{
    return m_color;
}

void TrelColorLibraryItem::setTrelColor(const TrelColor &color)
{
    m_color = color;
    if (m_type != UID_COLOR_ITEM)
        return;
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    if (library->canGeneratePixmap())
        m_icon = library->generatePixmap(color);
}

bool TrelColorLibraryItem::canBeModified() const
{
    return m_canBeModified;
}

void TrelColorLibraryItem::setCanBeModified(bool canBeModified)
{
    m_canBeModified = canBeModified;
}

QString TrelColorLibraryItem::createColor(const TrelColor &color, QString uid, QStringList names,
                                          const QString &originatingPreset, const QString &vendorID)
{
    const QSet<QString> taken(names.cbegin(), names.cend());
    const QString name = firstFree(newColorName(), [&](const QString &candidate) { return taken.contains(candidate); });
    return appendColor(color, uid, name, originatingPreset, vendorID);
}

QString TrelColorLibraryItem::createColor(const TrelColor &color, const QString &uid, const QString &originatingPreset,
                                          const QString &vendorID)
{
    return appendColor(color, uid, freeChildName(newColorName()), originatingPreset, vendorID);
}

QString TrelColorLibraryItem::createExplicitColor(const TrelColor &color, QString value)
{
    TrelColorLibraryItem *child = appendNewChild(value, EXPLICIT_COLOR_ITEM, QString());
    child->setExplicitColorString(value);
    child->setTrelColor(color);
    return value;
}

bool TrelColorLibraryItem::set(const QString &uidAndValue, const TrelColor &color)
{
    if (!color.isValid())
        return false;
    // ODD-60: a child that has the uid already stays beside the new one.
    TrelColorLibraryItem *child = appendNewChild(uidAndValue, UID_COLOR_ITEM, QString());
    child->setTrelColor(color);
    return true;
}

bool TrelColorLibraryItem::loadDocument(QDomDocument &doc, QString &error, double version, QString applicationId)
{
    if (applicationId != QLatin1String(KESTRA_APPLICATION_ID))
        return true;
    clearChildren();
    const bool wasBlocked = blockSignals(true);
    KestraProjectHelper helper;
    connect(&helper, &KestraProjectHelper::insertColor, this, &TrelColorLibraryItem::handleInsertColor);
    QStringList oldPresets;
    if (helper.loadDocument(doc, error, version, oldPresets)) {
        for (const QString &oldPreset : qAsConst(oldPresets)) {
            auto *child = new TrelColorLibraryItem(this, false);
            child->m_oldPreset = oldPreset;
            child->m_type = OLD_PRESET_ITEM;
            child->m_canBeModified = false;
            appendChild(child);
        }
    }
    blockSignals(wasBlocked);
    return true;
}

QDomElement TrelColorLibraryItem::createElement(QDomDocument &doc, bool &ok, QString applicationId,
                                                bool isUserLibrary) const
{
    if (applicationId != QLatin1String(KESTRA_APPLICATION_ID)) {
        ok = false;
        return QDomElement();
    }
    QStringList uids;
    QStringList names;
    QStringList values;
    QStringList originatingPresets;
    QStringList vendorIDs;
    for (const TrelColorLibraryItem *child : childItems) {
        if (child->m_uid.isEmpty())
            continue;
        uids.append(child->m_uid);
        names.append(child->m_displayName);
        values.append(child->m_color.aName());
        originatingPresets.append(child->m_originatingPreset);
        vendorIDs.append(child->m_vendorID);
    }
    QDomElement element =
        KestraProjectHelper().createElement(doc, ok, uids, names, values, originatingPresets, vendorIDs);
    element.setAttribute(QLatin1String(COLOR_NAME_ATTRIBUTE), KestraProjectHelper::writableText(m_displayName));
    element.setAttribute(QLatin1String(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE), isUserLibrary ? 1 : 0);
    return element;
}

void TrelColorLibraryItem::adoptChildren(TrelColorLibraryItem *other)
{
    const QList<TrelColorLibraryItem *> adopted = other->childItems;
    const QHash<QString, TrelColorLibraryItem *> index = other->childIndex;
    other->childItems.clear();
    other->clearChildren();
    for (TrelColorLibraryItem *child : adopted) {
        appendChild(child);
    }
    for (auto entry = index.cbegin(); entry != index.cend(); ++entry)
        childIndex.insert(entry.key(), entry.value());
}

void TrelColorLibraryItem::handleInsertColor(QString uid, QString name, QString valueString, QString originatingPreset,
                                             const QString &, const QString &vendorID)
{
    set(uid, TrelColor(valueString));
    // ODD-61: not the child just made, if an older one has the uid.
    TrelColorLibraryItem *child = firstChildWithUid(uid);
    if (!child)
        return;
    child->setDisplayName(name);
    child->setOriginatingPreset(originatingPreset);
    child->setVendorID(vendorID);
}

/// A new last child of \a type, entered in the index under \a indexKey, which is a #UID_COLOR_ITEM's uid.
TrelColorLibraryItem *TrelColorLibraryItem::appendNewChild(const QString &indexKey, ItemType type, const QString &name)
{
    auto *child = new TrelColorLibraryItem(this, false);
    child->m_type = type;
    child->m_indexKey = indexKey;
    // Before it is a child, so that it enters each index once.
    child->m_displayName = name;
    if (type == UID_COLOR_ITEM)
        child->m_uid = indexKey;
    appendChild(child);
    childIndex.insert(indexKey, child);
    return child;
}

QString TrelColorLibraryItem::appendColor(const TrelColor &color, const QString &uid, const QString &name,
                                          const QString &originatingPreset, const QString &vendorID)
{
    const QString identifier = uid.isEmpty() ? QUuid::createUuid().toString() : uid;
    TrelColorLibraryItem *child = appendNewChild(identifier, UID_COLOR_ITEM, name);
    child->setTrelColor(color);
    child->setOriginatingPreset(originatingPreset);
    child->setVendorID(vendorID);
    return identifier;
}

/// Whether it stands among its parent's children, which not every item with a parent does.
bool TrelColorLibraryItem::isChild() const
{
    return m_parent && m_parent->child(m_row) == this;
}

/// \pre \a child stands among the children, with its row.
void TrelColorLibraryItem::addToIndexes(TrelColorLibraryItem *child)
{
    m_childrenByName.add(child->m_displayName, child);
    m_childrenByUid.add(child->m_uid, child);
}

void TrelColorLibraryItem::removeFromIndexes(TrelColorLibraryItem *child)
{
    m_childrenByName.remove(child->m_displayName, child);
    giveBackNumber(child->m_displayName);
    m_childrenByUid.remove(child->m_uid, child);
    // A later child may have taken the key over.
    const auto entry = childIndex.find(child->m_indexKey);
    if (entry != childIndex.end() && entry.value() == child)
        childIndex.erase(entry);
}

/// Lets freeChildName() know that the last child of this name may just have gone.
void TrelColorLibraryItem::giveBackNumber(const QString &name)
{
    if (m_freeNumbers.isEmpty() || hasChildNamed(name))
        return;
    const int space = int(name.lastIndexOf(' '));
    if (space < 0)
        return;
    bool isNumber = false;
    const int number = name.mid(space + 1).toInt(&isNumber);
    const auto numbers = isNumber ? m_freeNumbers.find(name.left(space)) : m_freeNumbers.end();
    if (numbers != m_freeNumbers.end() && number >= FIRST_NUMBER && number < numbers->mark)
        numbers->givenBack.insert(number);
}

void TrelColorLibraryItem::clearChildren()
{
    qDeleteAll(childItems);
    childItems.clear();
    childIndex.clear();
    m_childrenByName.clear();
    m_childrenByUid.clear();
    m_freeNumbers.clear();
}

/// Renews the rows of the children from \a first on.
void TrelColorLibraryItem::numberRows(int first)
{
    for (int i = first; i < childCount(); ++i)
        childItems.at(i)->m_row = i;
}
