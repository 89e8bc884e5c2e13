#include "TestSupport.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>
#include <TrelColorLibraryItem.h>

#include <QDataStream>
#include <QDomDocument>
#include <QGuiApplication>
#include <QPointer>
#include <QScopedPointer>
#include <QSignalSpy>
#include <QUuid>
#include <QXmlStreamReader>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>

using Item = TrelColorLibraryItem;
using Setter = void (*)(Item &);
Q_DECLARE_METATYPE(Setter)

namespace {

constexpr char RED[] = "aRgb;1;0;#ffffffff00000000";
constexpr char GREEN[] = "aRgb;1;0;#ffff0000ffff0000";
constexpr char MIME_TYPE[] = "data/x-trelcolor";
constexpr char UNKNOWN_VALUE[] = "TrelColor::setNamedColor: Unknown color name 'empty attribute'";

QString character(int unicode)
{
    return QString(QChar(unicode));
}

// A text with what a message could not show spelt out.
QString visible(QString text)
{
    return text.replace(QChar(0), "\\0").replace(QChar(1), "\\1");
}

// The fields in which an item differs from a fresh one under no parent, "field=value" in a fixed order.
QString describe(const Item &item)
{
    QStringList parts;
    const auto add = [&parts](const char *field, const QString &value, const QString &fresh) {
        if (value != fresh)
            parts << QStringLiteral("%1=%2").arg(QString(field), visible(value));
    };
    add("type", item.data(Item::ItemTypeRole, 0).toString(), "0");
    add("name", item.displayName(), "");
    add("uid", item.getUid(), "");
    add("value", item.getExplicitColorString(), "");
    add("old", item.getOldPreset(), "");
    add("preset", item.orignatingPreset(), character(0));
    add("vendor", item.vendorID(), "");
    add("color", item.getTrelColor().aName(), "");
    add("modifiable", QString::number(item.canBeModified()), "0");
    add("state", item.data(Item::ListStateRole, 0).toString(), "1");
    add("icon", QString::number(item.getIcon().width()), "0");
    return parts.join(' ');
}

QStringList describeChildren(const Item &list)
{
    QStringList rows;
    for (int i = 0; i < list.childCount(); ++i)
        rows << describe(*list.child(i));
    return rows;
}

QStringList childNames(const Item &list)
{
    QStringList names;
    for (int i = 0; i < list.childCount(); ++i)
        names << list.child(i)->displayName();
    return names;
}

// What deleteLater() left for later.
void deleteNow()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QDomDocument parsed(const QString &xml)
{
    QDomDocument document;
    if (!document.setContent(xml, true))
        qFatal("test data are not well-formed: %s", qPrintable(xml));
    return document;
}

// "name='n' uid='{u}' value='red'", written as an element.
QString colorElement(const QString &uid, const QString &name, const QString &value)
{
    return QStringLiteral("<Color uid='%1' name='%2' value='%3'/>").arg(uid, name, value);
}

// The library stays as it was before the test, without a thumbnail generator.
class FreshLibrary
{
public:
    FreshLibrary()
    {
        TrelColorLibrary::cleanup();
    }
    ~FreshLibrary()
    {
        TrelColorLibrary::cleanup();
    }
    FreshLibrary(const FreshLibrary &) = delete;
    FreshLibrary &operator=(const FreshLibrary &) = delete;
};

QStringList s_thumbnails; // the colours that a thumbnail was asked for
const Item *s_watched = nullptr;
bool s_watchedWasBlocked = false;

QPixmap makeThumbnail(const TrelColor &color)
{
    s_thumbnails << color.aName();
    if (s_watched)
        s_watchedWasBlocked = s_watched->signalsBlocked();
    return QPixmap(int(s_thumbnails.size()), 1);
}

void installThumbnails()
{
    s_thumbnails.clear();
    TrelColorLibrary::Instance()->setThumbnailGenerator(makeThumbnail);
}

// The list as a plain walk over its children sees it: the same operations without any derived index.
class PlainList
{
public:
    struct Row
    {
        Item *item = nullptr;
        int type = Item::LIST_ITEM;
        QString name;
        QString uid;
        QString value;
        QString oldPreset;
        QString preset = character(0);
        QString vendor;
    };

    QVector<Row> rows;
    QHash<QString, Item *> index;

    const Row *firstWithUid(const QString &uid) const
    {
        const auto hit = std::find_if(rows.begin(), rows.end(), [&uid](const Row &row) { return row.uid == uid; });
        return hit == rows.end() ? nullptr : &*hit;
    }

    QStringList names() const
    {
        QStringList all;
        for (const Row &row : rows)
            all << row.name;
        return all;
    }

    static QString freeName(const QString &name, const QStringList &names)
    {
        if (!names.contains(name))
            return name;
        int number = 2;
        while (names.contains(name + " " + QString::number(number)))
            ++number;
        return name + " " + QString::number(number);
    }

    static void rename(Row &row, const QString &name)
    {
        if (name.isEmpty())
            return;
        row.name = name;
        row.preset.clear();
        row.vendor.clear();
    }

    void appendColor(Item *item, const QString &uid, const QString &name, const QString &preset, const QString &vendor)
    {
        Row row;
        row.item = item;
        row.type = Item::UID_COLOR_ITEM;
        row.uid = uid;
        row.name = name;
        row.preset = preset;
        row.vendor = vendor;
        rows.append(row);
        index[uid] = item;
    }

    void set(Item *item, const QString &uid)
    {
        appendColor(item, uid, QString(), character(0), QString());
    }

    void appendExplicit(Item *item, const QString &value)
    {
        Row row;
        row.item = item;
        row.type = Item::EXPLICIT_COLOR_ITEM;
        row.value = value;
        rows.append(row);
        index[value] = item;
    }

    void handleInsert(const QString &uid, const QString &name, const QString &preset, const QString &vendor)
    {
        for (Row &row : rows) {
            if (row.uid != uid)
                continue;
            rename(row, name);
            row.preset = preset;
            row.vendor = vendor;
            return;
        }
    }

    void setData(int position, int role, const QString &value)
    {
        Row &row = rows[position];
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
        case Qt::ToolTipRole:
            return rename(row, value);
        case Item::UidRole:
            row.uid = value;
            row.type = Item::UID_COLOR_ITEM;
            return;
        case Item::ExplicitColorRole:
            row.value = value;
            row.type = Item::EXPLICIT_COLOR_ITEM;
            return;
        case Item::OldPresetRole:
            row.oldPreset = value;
            row.type = Item::OLD_PRESET_ITEM;
            return;
        case Item::OriginatingPresetRole:
            row.preset = value;
            return;
        case Item::VendorIdRole:
            row.vendor = value;
            return;
        default:
            qFatal("role %d plays no part here", role);
        }
    }

    void insert(int position, const QVector<Item *> &items)
    {
        for (Item *item : items) {
            Row row;
            row.item = item;
            rows.insert(position++, row);
        }
    }

    void remove(int position, int count)
    {
        while (count-- > 0) {
            const Item *item = rows[position].item;
            rows.remove(position);
            for (auto entry = index.begin(); entry != index.end();)
                entry = entry.value() == item ? index.erase(entry) : std::next(entry);
        }
    }

    // The first difference that shows in the list; empty when there is none.
    QString difference(const Item &list, const QStringList &uids, const QStringList &someNames) const
    {
        if (list.childCount() != int(rows.size()))
            return QStringLiteral("%1 children instead of %2").arg(list.childCount()).arg(rows.size());
        for (int i = 0; i < int(rows.size()); ++i) {
            if (const QString text = difference(list, i); !text.isEmpty())
                return QStringLiteral("row %1: %2").arg(i).arg(text);
        }
        for (const QString &uid : uids) {
            const Row *first = firstWithUid(uid);
            if (list.firstChildWithUid(uid) != (first ? first->item : nullptr))
                return QStringLiteral("firstChildWithUid(%1)").arg(uid);
            if (list.childWithUid(uid) != index.value(uid) || list.childWithExplicitColor(uid) != index.value(uid))
                return QStringLiteral("childWithUid(%1)").arg(uid);
        }
        const QStringList all = names();
        for (const QString &name : someNames) {
            if (list.hasChildNamed(name) != all.contains(name))
                return QStringLiteral("hasChildNamed(%1)").arg(name);
            if (list.freeChildName(name) != freeName(name, all))
                return QStringLiteral("freeChildName(%1) is %2, not %3 among %4")
                    .arg(name, list.freeChildName(name), freeName(name, all), all.join(','));
        }
        return QString();
    }

private:
    QString difference(const Item &list, int position) const
    {
        const Row &row = rows[position];
        const Item *item = list.child(position);
        if (item != row.item)
            return "another item";
        if (item->parent() != &list)
            return "another parent";
        if (item->row() != position)
            return QStringLiteral("row() is %1").arg(item->row());
        const bool same = item->data(Item::ItemTypeRole, 0) == row.type && item->displayName() == row.name
                          && item->getUid() == row.uid && item->getExplicitColorString() == row.value
                          && item->getOldPreset() == row.oldPreset && item->orignatingPreset() == row.preset
                          && item->vendorID() == row.vendor;
        if (same)
            return QString();
        const QStringList fields{
            QString::number(row.type), row.name, row.uid, row.value, row.oldPreset, row.preset, row.vendor};
        return describe(*item) + " instead of " + visible(fields.join('|'));
    }
};

// Random operations, done to a list and to its plain twin.
class RandomEdits
{
public:
    explicit RandomEdits(unsigned int seed)
        : m_random(seed)
    {
    }
    ~RandomEdits()
    {
        deleteNow();
    }
    RandomEdits(const RandomEdits &) = delete;
    RandomEdits &operator=(const RandomEdits &) = delete;

    // Does one operation. Returns its name where the list then differs from its twin, otherwise nothing.
    QString step()
    {
        using Operation = void (RandomEdits::*)();
        static const QVector<QPair<QString, Operation>> OPERATIONS{
            {"createColor with names", &RandomEdits::createColorWithNames},
            {"createColor", &RandomEdits::createColor},
            {"set", &RandomEdits::set},
            {"createExplicitColor", &RandomEdits::createExplicitColor},
            {"handleInsertColor", &RandomEdits::handleInsertColor},
            {"setData", &RandomEdits::setData},
            {"setDisplayName", &RandomEdits::setDisplayName},
            {"setUid", &RandomEdits::setUid},
            {"insertChildren", &RandomEdits::insertChildren},
            {"appendChild", &RandomEdits::appendChild},
            {"adoptChildren", &RandomEdits::adoptChildren},
            {"removeChildren", &RandomEdits::removeChildren},
            {"rename a removed child", &RandomEdits::renameRemoved},
        };
        if (m_list.childCount() > MAX_CHILDREN)
            removeChildren();
        const auto &operation = OPERATIONS[number(int(OPERATIONS.size()))];
        (this->*operation.second)();
        ++m_done[operation.first];
        const QString difference = m_failure + m_plain.difference(m_list, UIDS, NAMES);
        return difference.isEmpty() ? QString() : operation.first + ": " + difference;
    }

    int timesDone(const QString &operation) const
    {
        return m_done.value(operation);
    }
    QStringList operationsDone() const
    {
        return m_done.keys();
    }

private:
    static constexpr int MAX_CHILDREN = 40;
    const QStringList UIDS{"", "{a}", "{b}", "{c}", "{d}", "{adopted}", "{adopted}{a}"};
    const QStringList NAMES{"",          "Color", "Color 2",  "Color 3", "Color 4",
                            "Color 2 2", "color", "Color 02", "%1",      "%1 2"};

    int number(int below)
    {
        return int(m_random() % unsigned(below));
    }
    QString anyOf(const QStringList &texts)
    {
        return texts[number(int(texts.size()))];
    }
    QString anyName()
    {
        return anyOf(NAMES);
    }
    QString anyUid()
    {
        return anyOf(UIDS);
    }
    TrelColor anyColor()
    {
        return number(4) ? TrelColor(RED) : TrelColor();
    }
    Item *last() const
    {
        return m_list.child(m_list.childCount() - 1);
    }

    void expectUid(const QString &given, const QString &returned)
    {
        const bool good = given.isEmpty() ? returned.size() == 38 && !QUuid(returned).isNull() : returned == given;
        if (!good)
            m_failure = QStringLiteral("uid %1 became %2; ").arg(given, returned);
    }

    void createColorWithNames()
    {
        QStringList names;
        for (int i = number(6); i > 0; --i)
            names << anyName();
        const QString uid = anyUid();
        const QString preset = anyName();
        const QString vendor = anyName();
        const QString made = m_list.createColor(anyColor(), uid, names, preset, vendor);
        expectUid(uid, made);
        m_plain.appendColor(last(), made, PlainList::freeName("Color", names), preset, vendor);
    }

    void createColor()
    {
        const QString uid = anyUid();
        const QString name = PlainList::freeName("Color", m_plain.names());
        const QString made = m_list.createColor(anyColor(), uid, "preset", "vendor");
        expectUid(uid, made);
        m_plain.appendColor(last(), made, name, "preset", "vendor");
    }

    void set()
    {
        const QString uid = anyUid();
        if (m_list.set(uid, anyColor()))
            m_plain.set(last(), uid);
    }

    void createExplicitColor()
    {
        const QString value = anyUid();
        m_list.createExplicitColor(anyColor(), value);
        m_plain.appendExplicit(last(), value);
    }

    void handleInsertColor()
    {
        const QString uid = anyUid();
        const QString name = anyName();
        const bool valid = number(4);
        m_list.handleInsertColor(uid, name, valid ? RED : "", "p", "list", "v");
        if (valid)
            m_plain.set(last(), uid);
        m_plain.handleInsert(uid, name, "p", "v");
    }

    void setData()
    {
        if (m_list.childCount() == 0)
            return;
        static const QVector<int> ROLES{Qt::DisplayRole,     Qt::EditRole,
                                        Qt::ToolTipRole,     Item::UidRole,
                                        Item::UidRole,       Item::ExplicitColorRole,
                                        Item::OldPresetRole, Item::OriginatingPresetRole,
                                        Item::VendorIdRole};
        const int position = number(m_list.childCount());
        const int role = ROLES[number(int(ROLES.size()))];
        const QString value = role == Item::UidRole ? anyUid() : anyName();
        m_list.child(position)->setData(value, role, number(3));
        m_plain.setData(position, role, value);
    }

    void setDisplayName()
    {
        if (m_list.childCount() == 0)
            return;
        const int position = number(m_list.childCount());
        const QString name = anyName();
        m_list.child(position)->setDisplayName(name);
        PlainList::rename(m_plain.rows[position], name);
    }

    void setUid()
    {
        if (m_list.childCount() == 0)
            return;
        const int position = number(m_list.childCount());
        m_plain.rows[position].uid = anyUid();
        m_list.child(position)->setUid(m_plain.rows[position].uid);
    }

    void insertChildren()
    {
        const int position = number(m_list.childCount() + 1);
        const int count = 1 + number(3);
        m_list.insertChildren(position, count);
        QVector<Item *> items;
        for (int i = 0; i < count; ++i)
            items << m_list.child(position + i);
        m_plain.insert(position, items);
    }

    // An item that is named before it becomes a child.
    void appendChild()
    {
        auto *item = new Item(&m_list, false);
        PlainList::Row row;
        row.item = item;
        row.uid = anyUid();
        item->setUid(row.uid);
        const QString name = anyName();
        item->setDisplayName(name);
        PlainList::rename(row, name);
        if (const QString early = m_plain.difference(m_list, UIDS, NAMES); !early.isEmpty())
            m_failure = "before it was appended: " + early + "; ";
        m_list.appendChild(item);
        m_plain.rows.append(row);
    }

    void adoptChildren()
    {
        Item other(nullptr, false);
        PlainList otherPlain;
        for (int i = number(4); i > 0; --i) {
            const QString uid = number(2) ? "{adopted}" : "{adopted}{a}";
            other.createColor(TrelColor(RED), uid, "p", "v");
            const int position = other.childCount() - 1;
            otherPlain.appendColor(other.child(position), uid, other.child(position)->displayName(), "p", "v");
        }
        m_list.adoptChildren(&other);
        m_plain.rows += otherPlain.rows;
        for (auto entry = otherPlain.index.cbegin(); entry != otherPlain.index.cend(); ++entry)
            m_plain.index[entry.key()] = entry.value();
        if (other.childCount() != 0)
            m_failure = "the other item keeps children; ";
    }

    void removeChildren()
    {
        if (m_list.childCount() == 0)
            return;
        const int position = number(m_list.childCount());
        const int rest = m_list.childCount() - position;
        const int count = number(8) ? 1 + number(std::min(4, rest)) : rest;
        for (int i = 0; i < count; ++i)
            m_removed << m_list.child(position + i);
        m_list.removeChildren(position, count);
        m_plain.remove(position, count);
    }

    void renameRemoved()
    {
        for (const QPointer<Item> &item : qAsConst(m_removed)) {
            item->setDisplayName(anyName());
            item->setData(anyUid(), Item::UidRole, 0);
        }
        m_removed.clear();
        deleteNow();
    }

    std::mt19937 m_random;
    Item m_list{nullptr, false};
    PlainList m_plain;
    QVector<QPointer<Item>> m_removed;
    QMap<QString, int> m_done;
    QString m_failure;
};

// A list with three colours, in a process of its own.
template <typename Function>
void withThreeColors(Function function)
{
    int argc = 1;
    char name[] = "child";
    char *argv[]{name, nullptr};
    const QGuiApplication application(argc, argv);
    Item list(nullptr, false);
    for (const char *uid : {"{a}", "{b}", "{c}"})
        list.set(uid, TrelColor(RED));
    function(list);
}

const ChildCases childCases{
    {"remove before the first", [] { withThreeColors([](Item &list) { list.removeChildren(-1, 1); }); }},
    {"remove behind the last", [] { withThreeColors([](Item &list) { list.removeChildren(3, 1); }); }},
    {"remove one too many", [] { withThreeColors([](Item &list) { list.removeChildren(1, 3); }); }},
    {"insert before the first", [] { withThreeColors([](Item &list) { list.insertChildren(-1, 1); }); }},
    {"insert beyond the end", [] { withThreeColors([](Item &list) { list.insertChildren(4, 1); }); }},
    {"insert nothing into nothing", [] { withThreeColors([](Item &list) { list.child(0)->insertChildren(0, 0); }); }},
};

} // namespace

class tst_TrelColorLibraryItem : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void numbersOfTypesAndRoles();
    void freshItem();
    void odd57_freshPresetIsOneCharacter();
    void data_data();
    void data();
    void dataTypes();
    void setData_data();
    void setData();
    void setDataOfEachColumn();
    void otherRoles();
    void colorRoleIsTheItemsOwnColor();
    void colorRoleWithoutAColor_data();
    void colorRoleWithoutAColor();
    void setDataLeavesTheIndex();
    void plainSetters_data();
    void plainSetters();
    void odd59_renamingCutsTheTieToPresetAndVendor();
    void odd58_explicitColorsAndOldPresetsHaveNoColumns();
    void canBeModifiedIsCopiedAtConstruction();

    void childOutsideIsNull();
    void rows();
    void appendedChildHasNoIndexEntry();
    void appendedChildOfAnotherParent_data();
    void appendedChildOfAnotherParent();
    void insertChildren_data();
    void insertChildren();
    void insertNothing();
    void removeChildren_data();
    void removeChildren();
    void removeFromNothing();
    void removeNothing();
    void removedChildGoesLater();
    void removedChildIsForgotten();
    void removingAChildWithoutAnEntryKeepsTheEntryOfNothing();
    void removingTheLaterOfTwoLeavesNoEntry();
    void removedChildMayOutliveItsList();
    void destroysItsChildren();
    void adoptChildren();
    void fatal_data();
    void fatal();

    void createColorName_data();
    void createColorName();
    void createColorFields();
    void createColorUid();
    void createColorOfNoColor();
    void createColorCopiesCanBeModified();
    void freeChildName_data();
    void freeChildName();
    void createExplicitColor();
    void odd60_setAlwaysAppends();
    void setKeepsTheWholeArgument();
    void setOfAnInvalidColor();
    void odd61_insertedColorNamesTheFirstWithItsUid();
    void handleInsertColor();
    void handleInsertColorOfNoColorRenamesAllTheSame();
    void handleInsertColorWithoutAName();
    void handleInsertColorIsASlot();
    void thumbnails();
    void noThumbnailWithoutAGenerator();
    void indexesAgreeWithAWalkOverTheChildren();

    void loadDocument();
    void loadDocumentTwice();
    void loadDocumentOfAnotherApplication();
    void loadDocumentWithOldPresets();
    void loadDocumentThatFails();
    void loadDocumentWithSignalsBlocked();
    void loadedValueThatIsNone();
    void createElement_data();
    void createElement();
    void createElementOfAnotherApplication();
    void createElementTakesColorsWithAUidOnly();
    void createdElementLoadsAgain();
    void freshPresetDoesNotPoisonTheDocument();

    void mimeTypes_data();
    void mimeTypes();
    void mimeData();
    void mimeDataOfAnEmptyUid();
    void mimeDataOfAnotherType_data();
    void mimeDataOfAnotherType();
};

void tst_TrelColorLibraryItem::numbersOfTypesAndRoles()
{
    const QVector<int> types{Item::LIST_ITEM, Item::UID_COLOR_ITEM, Item::EXPLICIT_COLOR_ITEM, Item::OLD_PRESET_ITEM};
    QCOMPARE(types, QVector<int>({0, 1, 2, 3}));
    const QVector<int> roles{
        Item::ColorRole,         Item::UidRole,      Item::ExplicitColorRole, Item::OldPresetRole,
        Item::CanBeModifiedRole, Item::ItemTypeRole, Item::ListStateRole,     Item::OriginatingPresetRole,
        Item::VendorIdRole};
    QCOMPARE(roles, QVector<int>({33, 34, 35, 36, 37, 38, 39, 40, 41}));
}

void tst_TrelColorLibraryItem::freshItem()
{
    const Item item(nullptr, false);
    QVERIFY(!item.parent());
    QCOMPARE(item.childCount(), 0);
    QCOMPARE(item.row(), 0);
    QCOMPARE(item.columnCount(), 2);
    QCOMPARE(item.displayName(), QString());
    QCOMPARE(item.getUid(), QString());
    QCOMPARE(item.getExplicitColorString(), QString());
    QCOMPARE(item.getOldPreset(), QString());
    QCOMPARE(item.vendorID(), QString());
    QVERIFY(!item.getTrelColor().isValid());
    QVERIFY(item.getIcon().isNull());
    QVERIFY(!item.canBeModified());
    QCOMPARE(item.data(Item::ItemTypeRole, 0), QVariant(0));
    QCOMPARE(item.data(Item::ListStateRole, 0), QVariant(1));
    QVERIFY(!item.childWithUid(QString()));
    QVERIFY(!item.firstChildWithUid(QString()));
    QVERIFY(!item.hasChildNamed(QString()));
}

void tst_TrelColorLibraryItem::odd57_freshPresetIsOneCharacter()
{
    const Item off(nullptr, false);
    const Item on(nullptr, true);
    QCOMPARE(off.orignatingPreset(), character(0));
    QCOMPARE(off.data(Item::OriginatingPresetRole, 0).toString(), character(0));
    QCOMPARE(on.orignatingPreset(), character(1));

    Item list(nullptr, true);
    list.insertChildren(0, 1);
    QCOMPARE(list.child(0)->orignatingPreset(), character(0));
    list.child(0)->setOriginatingPreset("");
    QCOMPARE(list.child(0)->orignatingPreset(), QString(""));
}

void tst_TrelColorLibraryItem::data_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<int>("column");
    QTest::addColumn<QVariant>("expected");

    const struct
    {
        const char *name;
        int role;
        QVector<QVariant> byColumn; // columns 0, 1, 2
    } rows[]{
        {"display", Qt::DisplayRole, {"Name", "Vendor", QVariant()}},
        {"edit", Qt::EditRole, {"Name", "Name", "Name"}},
        {"tool tip", Qt::ToolTipRole, {"Name", "Vendor", QVariant()}},
        {"uid", Item::UidRole, {"{u}", "{u}", "{u}"}},
        {"explicit color", Item::ExplicitColorRole, {"value", "value", "value"}},
        {"old preset", Item::OldPresetRole, {"old", "old", "old"}},
        {"can be modified", Item::CanBeModifiedRole, {true, true, true}},
        {"item type", Item::ItemTypeRole, {3, 3, 3}},
        {"list state", Item::ListStateRole, {0, 0, 0}},
        {"originating preset", Item::OriginatingPresetRole, {"preset", "preset", "preset"}},
        {"vendor id", Item::VendorIdRole, {"Vendor", "Vendor", "Vendor"}},
    };
    for (const auto &row : rows) {
        for (int column = 0; column < 3; ++column)
            QTest::addRow("%s, column %d", row.name, column) << row.role << column << row.byColumn[column];
        QTest::addRow("%s, column -1", row.name) << row.role << -1 << row.byColumn[2];
    }
}

void tst_TrelColorLibraryItem::data()
{
    Item item(nullptr, false);
    item.setData("{u}", Item::UidRole, 0);
    item.setData("value", Item::ExplicitColorRole, 0);
    item.setData("old", Item::OldPresetRole, 0);
    item.setData(false, Item::ListStateRole, 0);
    item.setDisplayName("Name");
    item.setOriginatingPreset("preset");
    item.setVendorID("Vendor");
    item.setCanBeModified(true);

    QFETCH(int, role);
    QFETCH(int, column);
    QTEST(item.data(role, column), "expected");
}

void tst_TrelColorLibraryItem::dataTypes()
{
    Item item(nullptr, false);
    item.setIcon(QPixmap(3, 5));
    QCOMPARE(item.data(Qt::DecorationRole, 0).userType(), int(QMetaType::QPixmap));
    QCOMPARE(item.data(Qt::DecorationRole, 0).value<QPixmap>().size(), QSize(3, 5));
    for (int column : {-1, 1, 2})
        QVERIFY(!item.data(Qt::DecorationRole, column).isValid());

    for (int column : {-1, 0, 1, 2}) {
        QCOMPARE(item.data(Item::ColorRole, column).userType(), int(QMetaType::VoidStar));
        QCOMPARE(item.data(Item::CanBeModifiedRole, column).userType(), int(QMetaType::Bool));
        QCOMPARE(item.data(Item::ItemTypeRole, column).userType(), int(QMetaType::Int));
        QCOMPARE(item.data(Item::ListStateRole, column).userType(), int(QMetaType::Int));
    }
}

void tst_TrelColorLibraryItem::setData_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("handled");
    QTest::addColumn<QString>("after");

    const auto row = [](const char *name, int role, const QVariant &value, bool handled, const char *after) {
        QTest::newRow(name) << role << value << handled << QString(after);
    };
    const char *before = "name=N preset=P vendor=V";
    row("display", Qt::DisplayRole, "New", true, "name=New preset=");
    row("edit", Qt::EditRole, "New", true, "name=New preset=");
    row("tool tip", Qt::ToolTipRole, "New", true, "name=New preset=");
    row("display, a number", Qt::DisplayRole, 7, true, "name=7 preset=");
    row("display, empty", Qt::DisplayRole, "", true, before);
    row("edit, no value", Qt::EditRole, QVariant(), true, before);
    row("decoration", Qt::DecorationRole, QPixmap(2, 2), false, before);
    row("uid", Item::UidRole, "{u}", true, "type=1 name=N uid={u} preset=P vendor=V");
    row("uid, empty", Item::UidRole, "", true, "type=1 name=N preset=P vendor=V");
    row("explicit color", Item::ExplicitColorRole, "v", true, "type=2 name=N value=v preset=P vendor=V");
    row("old preset", Item::OldPresetRole, "o", true, "type=3 name=N old=o preset=P vendor=V");
    row("can be modified", Item::CanBeModifiedRole, true, true, "name=N preset=P vendor=V modifiable=1");
    row("can be modified, text", Item::CanBeModifiedRole, "true", true, "name=N preset=P vendor=V modifiable=1");
    row("cannot be modified", Item::CanBeModifiedRole, false, true, before);
    row("item type", Item::ItemTypeRole, 2, false, before);
    row("list state off", Item::ListStateRole, false, true, "name=N preset=P vendor=V state=0");
    row("list state on", Item::ListStateRole, true, true, before);
    row("list state 5 is on", Item::ListStateRole, 5, true, before);
    row("originating preset", Item::OriginatingPresetRole, "p", true, "name=N preset=p vendor=V");
    row("originating preset, empty", Item::OriginatingPresetRole, "", true, "name=N preset= vendor=V");
    row("vendor id", Item::VendorIdRole, "v", true, "name=N preset=P vendor=v");
    row("vendor id, empty", Item::VendorIdRole, "", true, "name=N preset=P");
}

void tst_TrelColorLibraryItem::setData()
{
    Item item(nullptr, false);
    item.setDisplayName("N");
    item.setOriginatingPreset("P");
    item.setVendorID("V");

    QFETCH(int, role);
    QFETCH(QVariant, value);
    QTEST(item.setData(value, role, 0), "handled");
    QTEST(describe(item), "after");
}

void tst_TrelColorLibraryItem::setDataOfEachColumn()
{
    for (int column : {-1, 0, 1, 2, 99}) {
        Item item(nullptr, false);
        QVERIFY(item.setData("New", Qt::DisplayRole, column));
        QVERIFY(item.setData("v", Item::VendorIdRole, column));
        QCOMPARE(describe(item), QString("name=New preset= vendor=v"));
    }
}

void tst_TrelColorLibraryItem::otherRoles()
{
    Item item(nullptr, false);
    item.createColor(TrelColor(RED), "{u}", "p", "v");
    Item &color = *item.child(0);
    const QString before = describe(color);
    const auto isHandled = [](int role) { return (role >= 0 && role <= 3) || (role >= 33 && role <= 41); };
    for (int role = -5; role < 400; ++role) {
        if (isHandled(role))
            continue;
        QVERIFY2(!color.data(role, 0).isValid(), qPrintable(QString::number(role)));
        QVERIFY2(!color.setData("x", role, 0), qPrintable(QString::number(role)));
    }
    QCOMPARE(describe(color), before);
}

void tst_TrelColorLibraryItem::colorRoleIsTheItemsOwnColor()
{
    Item list(nullptr, false);
    list.createExplicitColor(TrelColor(RED), "a");
    list.createExplicitColor(TrelColor(GREEN), "b");
    const auto *own = static_cast<const TrelColor *>(list.child(0)->data(Item::ColorRole, 0).value<void *>());
    QVERIFY(own);
    QCOMPARE(own->aName(), QString(RED));

    TrelColor green(GREEN);
    QVERIFY(list.child(0)->setData(QVariant::fromValue(static_cast<void *>(&green)), Item::ColorRole, 0));
    QCOMPARE(own->aName(), QString(GREEN));
    QCOMPARE(list.child(0)->getTrelColor().aName(), QString(GREEN));

    green.setNamedColor("blue");
    QCOMPARE(own->aName(), QString(GREEN));
    list.child(0)->setTrelColor(TrelColor(RED));
    QCOMPARE(own->aName(), QString(RED));
    QCOMPARE(static_cast<const TrelColor *>(list.child(0)->data(Item::ColorRole, 1).value<void *>()), own);

    QVERIFY(list.child(0)->setData(list.child(0)->data(Item::ColorRole, 0), Item::ColorRole, 0));
    QVERIFY(list.child(0)->setData(list.child(1)->data(Item::ColorRole, 0), Item::ColorRole, 0));
    QCOMPARE(own->aName(), QString(GREEN));
}

void tst_TrelColorLibraryItem::colorRoleWithoutAColor_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("null") << QVariant::fromValue(static_cast<void *>(nullptr));
    QTest::newRow("no value") << QVariant();
    QTest::newRow("not convertible, text") << QVariant("red");
    QTest::newRow("not convertible, a number") << QVariant(1);
}

void tst_TrelColorLibraryItem::colorRoleWithoutAColor()
{
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{u}", "p", "v");
    QFETCH(QVariant, value);
    QVERIFY(list.child(0)->setData(value, Item::ColorRole, 0));
    QCOMPARE(describe(*list.child(0)), QString("type=1 name=Color uid={u} preset=p vendor=v color=%1").arg(RED));
}

void tst_TrelColorLibraryItem::setDataLeavesTheIndex()
{
    for (int role : {Item::UidRole, Item::ExplicitColorRole, Item::OldPresetRole}) {
        Item list(nullptr, false);
        list.set("{old}", TrelColor(RED));
        Item *child = list.child(0);
        QVERIFY(child->setData("{new}", role, 0));
        QCOMPARE(list.childWithUid("{old}"), child);
        QVERIFY(!list.childWithUid("{new}"));
        QVERIFY(!list.childWithExplicitColor("{new}"));
        QCOMPARE(list.firstChildWithUid("{new}"), role == Item::UidRole ? child : nullptr);
        QCOMPARE(list.firstChildWithUid("{old}"), role == Item::UidRole ? nullptr : child);
    }
}

void tst_TrelColorLibraryItem::plainSetters_data()
{
    QTest::addColumn<Setter>("setter");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, Setter setter, const char *after) {
        QTest::newRow(name) << setter << QString(after);
    };
    row(
        "uid", [](Item &item) { item.setUid("u"); }, "name=N uid=u preset=P vendor=V");
    row(
        "explicit color", [](Item &item) { item.setExplicitColorString("v"); }, "name=N value=v preset=P vendor=V");
    row(
        "old preset", [](Item &item) { item.setOldPreset("o"); }, "name=N old=o preset=P vendor=V");
    row(
        "originating preset", [](Item &item) { item.setOriginatingPreset("p"); }, "name=N preset=p vendor=V");
    row(
        "vendor id", [](Item &item) { item.setVendorID("v"); }, "name=N preset=P vendor=v");
    row(
        "icon", [](Item &item) { item.setIcon(QPixmap(7, 1)); }, "name=N preset=P vendor=V icon=7");
    row(
        "color", [](Item &item) { item.setTrelColor(TrelColor(RED)); },
        "name=N preset=P vendor=V color=aRgb;1;0;#ffffffff00000000");
    row(
        "can be modified", [](Item &item) { item.setCanBeModified(true); }, "name=N preset=P vendor=V modifiable=1");
}

void tst_TrelColorLibraryItem::plainSetters()
{
    Item item(nullptr, false);
    item.setDisplayName("N");
    item.setOriginatingPreset("P");
    item.setVendorID("V");
    QFETCH(Setter, setter);
    setter(item);
    QTEST(describe(item), "after");
}

void tst_TrelColorLibraryItem::odd59_renamingCutsTheTieToPresetAndVendor()
{
    Item item(nullptr, false);
    item.setOriginatingPreset("P");
    item.setVendorID("V");
    item.setDisplayName("");
    QCOMPARE(describe(item), QString("preset=P vendor=V"));
    item.setDisplayName("x");
    QCOMPARE(describe(item), QString("name=x preset="));

    item.setOriginatingPreset("P");
    item.setVendorID("V");
    item.setDisplayName("x");
    QCOMPARE(describe(item), QString("name=x preset="));
    item.setVendorID("V");
    item.setDisplayName("");
    QCOMPARE(describe(item), QString("name=x preset= vendor=V"));
}

void tst_TrelColorLibraryItem::odd58_explicitColorsAndOldPresetsHaveNoColumns()
{
    Item list(nullptr, false);
    QCOMPARE(list.columnCount(), 2);
    list.createColor(TrelColor(RED), "{u}", QString(), QString());
    list.createExplicitColor(TrelColor(RED), RED);
    QCOMPARE(list.child(0)->columnCount(), 2);
    QCOMPARE(list.child(1)->columnCount(), 0);
    QVERIFY(list.child(1)->setData("name", Item::OldPresetRole, 0));
    QCOMPARE(list.child(1)->columnCount(), 0);
    QVERIFY(list.child(1)->setData("{v}", Item::UidRole, 0));
    QCOMPARE(list.child(1)->columnCount(), 2);
}

void tst_TrelColorLibraryItem::canBeModifiedIsCopiedAtConstruction()
{
    Item parent(nullptr, true);
    QVERIFY(!parent.canBeModified());
    const Item before(&parent, true);
    parent.setCanBeModified(true);
    const Item after(&parent, false);
    QVERIFY(!before.canBeModified());
    QVERIFY(after.canBeModified());
    QCOMPARE(after.parent(), &parent);
    QCOMPARE(parent.childCount(), 0);

    parent.insertChildren(0, 1);
    QVERIFY(parent.child(0)->canBeModified());
    parent.setCanBeModified(false);
    QVERIFY(parent.child(0)->canBeModified());
}

void tst_TrelColorLibraryItem::childOutsideIsNull()
{
    Item list(nullptr, false);
    QVERIFY(!list.child(0));
    list.insertChildren(0, 2);
    QVERIFY(list.child(0) && list.child(1) && list.child(0) != list.child(1));
    for (int row : {-1, 2, 3, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QVERIFY(!list.child(row));
}

void tst_TrelColorLibraryItem::rows()
{
    Item root(nullptr, false);
    root.insertChildren(0, 3);
    for (int i = 0; i < 3; ++i) {
        root.child(i)->insertChildren(0, i + 1);
        QCOMPARE(root.child(i)->row(), i);
        QCOMPARE(root.child(i)->child(i)->row(), i);
        QCOMPARE(root.child(i)->child(i)->parent(), root.child(i));
    }
    QCOMPARE(root.row(), 0);

    Item *last = root.child(2);
    root.insertChildren(1, 2);
    QCOMPARE(last->row(), 4);
    root.removeChildren(0, 2);
    QCOMPARE(last->row(), 2);
}

void tst_TrelColorLibraryItem::appendedChildHasNoIndexEntry()
{
    Item list(nullptr, false);
    auto *item = new Item(&list, false);
    item->setData("{u}", Item::UidRole, 0);
    list.insertChildren(0, 1);
    list.appendChild(item);
    QCOMPARE(list.childCount(), 2);
    QCOMPARE(list.child(1), item);
    QCOMPARE(item->row(), 1);
    QVERIFY(!list.childWithUid("{u}"));
    QVERIFY(!list.childWithExplicitColor("{u}"));
    QCOMPARE(list.firstChildWithUid("{u}"), item);
}

void tst_TrelColorLibraryItem::appendedChildOfAnotherParent_data()
{
    QTest::addColumn<bool>("hasParent");
    QTest::newRow("no parent") << false;
    QTest::newRow("another list") << true;
}

void tst_TrelColorLibraryItem::appendedChildOfAnotherParent()
{
    QFETCH(bool, hasParent);
    Item other(nullptr, false);
    Item list(nullptr, false);
    auto *item = new Item(hasParent ? &other : nullptr, false);
    list.appendChild(item);
    item->setDisplayName("Color");
    item->setUid("{u}");
    QVERIFY(list.hasChildNamed("Color") && !list.hasChildNamed(""));
    QCOMPARE(list.freeChildName("Color"), QString("Color 2"));
    QCOMPARE(list.firstChildWithUid("{u}"), item);
    QVERIFY(!list.firstChildWithUid("") && !other.hasChildNamed("Color") && !other.firstChildWithUid("{u}"));
    list.removeChildren(0, 1);
    QVERIFY(!list.hasChildNamed("Color") && !list.firstChildWithUid("{u}"));
    deleteNow();
}

void tst_TrelColorLibraryItem::insertChildren_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("after"); // an inserted one is ""
    QTest::newRow("first") << 0 << 1 << QStringList{"", "a", "b"};
    QTest::newRow("two first") << 0 << 2 << QStringList{"", "", "a", "b"};
    QTest::newRow("middle") << 1 << 3 << QStringList{"a", "", "", "", "b"};
    QTest::newRow("last") << 2 << 1 << QStringList{"a", "b", ""};
}

void tst_TrelColorLibraryItem::insertChildren()
{
    Item list(nullptr, false);
    list.setCanBeModified(true);
    list.insertChildren(0, 2);
    list.child(0)->setDisplayName("a");
    list.child(1)->setDisplayName("b");

    QFETCH(int, position);
    QFETCH(int, count);
    list.insertChildren(position, count);
    QTEST(childNames(list), "after");
    for (int i = position; i < position + count; ++i) {
        QCOMPARE(describe(*list.child(i)), QString("modifiable=1"));
        QCOMPARE(list.child(i)->parent(), &list);
        QCOMPARE(list.child(i)->row(), i);
        QCOMPARE(list.child(i)->childCount(), 0);
    }
}

void tst_TrelColorLibraryItem::insertNothing()
{
    Item list(nullptr, false);
    list.insertChildren(0, 1);
    list.insertChildren(1, 0);
    QCOMPARE(list.childCount(), 1);
}

void tst_TrelColorLibraryItem::removeChildren_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("after");
    QTest::newRow("first") << 0 << 1 << QStringList{"Color 2", "Color 3", "Color 4"};
    QTest::newRow("middle") << 1 << 2 << QStringList{"Color", "Color 4"};
    QTest::newRow("last") << 3 << 1 << QStringList{"Color", "Color 2", "Color 3"};
    QTest::newRow("all") << 0 << 4 << QStringList{};
}

void tst_TrelColorLibraryItem::removeChildren()
{
    const QStringList uids{"{a}", "{b}", "{c}", "{d}"};
    Item list(nullptr, false);
    for (const QString &uid : uids)
        list.createColor(TrelColor(RED), uid, QString(), QString());

    QFETCH(int, position);
    QFETCH(int, count);
    list.removeChildren(position, count);
    QTEST(childNames(list), "after");
    for (int i = 0; i < 4; ++i)
        QCOMPARE(bool(list.childWithUid(uids[i])), i < position || i >= position + count);
    for (int i = 0; i < list.childCount(); ++i) {
        QCOMPARE(list.child(i)->row(), i);
        QCOMPARE(list.childWithUid(list.child(i)->getUid()), list.child(i));
    }
    deleteNow();
}

void tst_TrelColorLibraryItem::removeFromNothing()
{
    Item list(nullptr, false);
    for (int position : {-1, 0, 7})
        list.removeChildren(position, 3);
    QCOMPARE(list.childCount(), 0);
}

void tst_TrelColorLibraryItem::removeNothing()
{
    Item list(nullptr, false);
    list.insertChildren(0, 2);
    for (int position : {0, 2, 9})
        list.removeChildren(position, 0);
    QCOMPARE(list.childCount(), 2);
}

void tst_TrelColorLibraryItem::removedChildGoesLater()
{
    Item list(nullptr, false);
    list.set("{u}", TrelColor(RED));
    const QPointer<Item> child = list.child(0);
    QSignalSpy destroyed(child, &QObject::destroyed);
    list.removeChildren(0, 1);
    QCOMPARE(list.childCount(), 0);
    QCOMPARE(int(destroyed.count()), 0);
    QVERIFY(child);
    QCOMPARE(child->getUid(), QString("{u}"));
    deleteNow();
    QCOMPARE(int(destroyed.count()), 1);
    QVERIFY(!child);
}

void tst_TrelColorLibraryItem::removedChildIsForgotten()
{
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{u}", QString(), QString());
    Item *child = list.child(0);
    list.removeChildren(0, 1);
    child->setDisplayName("late");
    child->setData("{late}", Item::UidRole, 0);
    for (const QString &name : {QString("Color"), QString("late")})
        QVERIFY(!list.hasChildNamed(name));
    for (const QString &uid : {QString("{u}"), QString("{late}")})
        QVERIFY(!list.firstChildWithUid(uid) && !list.childWithUid(uid));
    list.createColor(TrelColor(RED), "{v}", QString(), QString());
    QCOMPARE(list.child(0)->displayName(), QString("Color"));
    deleteNow();
    QCOMPARE(list.firstChildWithUid("{v}"), list.child(0));
}

void tst_TrelColorLibraryItem::removingAChildWithoutAnEntryKeepsTheEntryOfNothing()
{
    Item list(nullptr, false);
    QVERIFY(list.set("", TrelColor(RED)));
    list.insertChildren(0, 1);
    Item *named = list.childWithUid("");
    QCOMPARE(named, list.child(1));
    list.removeChildren(0, 1);
    QCOMPARE(list.childWithUid(""), named);
    deleteNow();
}

void tst_TrelColorLibraryItem::removingTheLaterOfTwoLeavesNoEntry()
{
    Item list(nullptr, false);
    list.set("{u}", TrelColor(RED));
    list.set("{u}", TrelColor(GREEN));
    list.removeChildren(1, 1);
    QVERIFY(!list.childWithUid("{u}"));
    QCOMPARE(list.firstChildWithUid("{u}"), list.child(0));

    list.set("{u}", TrelColor(GREEN));
    list.removeChildren(0, 1);
    QCOMPARE(list.childWithUid("{u}"), list.child(0));
    deleteNow();
}

void tst_TrelColorLibraryItem::removedChildMayOutliveItsList()
{
    QScopedPointer<Item> list(new Item(nullptr, false));
    list->set("{u}", TrelColor(RED));
    const QPointer<Item> child = list->child(0);
    list->removeChildren(0, 1);
    list.reset();
    QVERIFY(child);
    child->setDisplayName("late");
    child->setUid("{late}");
    QCOMPARE(child->displayName(), QString("late"));
    deleteNow();
    QVERIFY(!child);
}

void tst_TrelColorLibraryItem::destroysItsChildren()
{
    QVector<QPointer<Item>> items;
    {
        Item root(nullptr, false);
        root.insertChildren(0, 2);
        root.child(0)->set("{u}", TrelColor(RED));
        root.child(0)->createExplicitColor(TrelColor(RED), RED);
        root.appendChild(new Item(&root, false));
        items << root.child(0) << root.child(0)->child(0) << root.child(0)->child(1) << root.child(1) << root.child(2);
    }
    for (const QPointer<Item> &item : qAsConst(items))
        QVERIFY(!item);
}

void tst_TrelColorLibraryItem::adoptChildren()
{
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{a}", QString(), QString());
    list.createColor(TrelColor(RED), "{b}", QString(), QString());
    Item other(nullptr, false);
    other.createColor(TrelColor(GREEN), "{b}", QString(), QString());
    other.createColor(TrelColor(GREEN), "{c}", QString(), QString());
    const QVector<Item *> all{list.child(0), list.child(1), other.child(0), other.child(1)};

    list.adoptChildren(&other);
    QCOMPARE(other.childCount(), 0);
    QVERIFY(!other.childWithUid("{c}") && !other.firstChildWithUid("{c}") && !other.hasChildNamed("Color"));
    QCOMPARE(list.childCount(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(list.child(i), all[i]);
        QCOMPARE(all[i]->parent(), &list);
        QCOMPARE(all[i]->row(), i);
    }
    QCOMPARE(list.childWithUid("{b}"), all[2]);
    QCOMPARE(list.firstChildWithUid("{b}"), all[1]);
    QCOMPARE(list.childWithUid("{c}"), all[3]);

    all[3]->setDisplayName("renamed");
    QVERIFY(list.hasChildNamed("renamed") && !other.hasChildNamed("renamed"));
}

void tst_TrelColorLibraryItem::fatal_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *name : {"remove before the first", "remove behind the last", "remove one too many",
                             "insert before the first", "insert beyond the end"})
        QTest::newRow(name) << QByteArray("index out of range");
    QTest::newRow("insert nothing into nothing") << QByteArray("childItems.size() > 0");
}

void tst_TrelColorLibraryItem::fatal()
{
    QFETCH(QByteArray, text);
    QVERIFY(diesWith(QTest::currentDataTag(), text));
}

void tst_TrelColorLibraryItem::createColorName_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << QStringList{} << "Color";
    QTest::newRow("others") << QStringList{"color", "COLOR", "Color 2", "Color "} << "Color";
    QTest::newRow("taken") << QStringList{"Color"} << "Color 2";
    QTest::newRow("color and color 2") << QStringList{"Color", "Color 2"} << "Color 3";
    QTest::newRow("in any order, more than once") << QStringList{"Color 3", "Color", "Color 2", "Color"} << "Color 4";
    QTest::newRow("a gap") << QStringList{"Color", "Color 2", "Color 4"} << "Color 3";
    QTest::newRow("never 1") << QStringList{"Color", "Color 1"} << "Color 2";
    QTest::newRow("lower-case") << QStringList{"Color", "color 2"} << "Color 2";
    QTest::newRow("no fill characters") << QStringList{"Color", "Color 02", "Color  2"} << "Color 2";
    QStringList many{"Color"};
    for (int i = 2; i < 12; ++i)
        many << QStringLiteral("Color %1").arg(i);
    QTest::newRow("two digits") << many << "Color 12";
    QTest::newRow("a thousand and more") << QStringList{"Color"} + [] {
        QStringList names;
        for (int i = 2; i < 1234; ++i)
            names << "Color " + QString::number(i);
        return names;
    }() << "Color 1234";
}

void tst_TrelColorLibraryItem::createColorName()
{
    QFETCH(QStringList, names);
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{a}", names, QString(), QString());
    QTEST(list.child(0)->displayName(), "expected");

    Item filled(nullptr, false);
    filled.insertChildren(0, 1 + int(names.size()));
    for (int i = 0; i < int(names.size()); ++i)
        filled.child(i)->setDisplayName(names[i]);
    filled.createColor(TrelColor(RED), "{a}", QString(), QString());
    QTEST(filled.child(filled.childCount() - 1)->displayName(), "expected");
}

void tst_TrelColorLibraryItem::createColorFields()
{
    const QString color = QStringLiteral(" color=") + RED;
    Item list(nullptr, false);
    QCOMPARE(list.createColor(TrelColor(RED), "{a}", QStringList{}, "list/color", "V 1"), QString("{a}"));
    QCOMPARE(list.createColor(TrelColor(RED), "{b}", QStringList{}, "", ""), QString("{b}"));
    QCOMPARE(list.createColor(TrelColor(RED), "{c}", "list/color", "V 1"), QString("{c}"));
    QCOMPARE(describeChildren(list), QStringList({"type=1 name=Color uid={a} preset=list/color vendor=V 1" + color,
                                                  "type=1 name=Color uid={b} preset=" + color,
                                                  "type=1 name=Color 2 uid={c} preset=list/color vendor=V 1" + color}));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(list.child(i)->parent(), &list);
        QCOMPARE(list.childWithUid(list.child(i)->getUid()), list.child(i));
    }
}

void tst_TrelColorLibraryItem::createColorUid()
{
    Item list(nullptr, false);
    QCOMPARE(list.createColor(TrelColor(RED), "any text", QStringList{}, "", ""), QString("any text"));
    const QString first = list.createColor(TrelColor(RED), "", QStringList{}, "", "");
    const QString second = list.createColor(TrelColor(RED), QString(), "", "");
    for (const QString &uid : {first, second}) {
        QCOMPARE(int(uid.size()), 38);
        QVERIFY(!QUuid(uid).isNull());
        QCOMPARE(QUuid(uid).toString(), uid);
        QVERIFY(list.childWithUid(uid));
        QCOMPARE(list.childWithUid(uid)->getUid(), uid);
    }
    QVERIFY(first != second);

    list.createColor(TrelColor(GREEN), first, QStringList{}, "", "");
    QCOMPARE(list.childCount(), 4);
    QCOMPARE(list.childWithUid(first), list.child(3));
    QCOMPARE(list.firstChildWithUid(first), list.child(1));
}

void tst_TrelColorLibraryItem::createColorOfNoColor()
{
    Item list(nullptr, false);
    QCOMPARE(list.createColor(TrelColor(), "{a}", QStringList{}, "", ""), QString("{a}"));
    QCOMPARE(describeChildren(list), QStringList{"type=1 name=Color uid={a} preset="});
}

void tst_TrelColorLibraryItem::createColorCopiesCanBeModified()
{
    Item list(nullptr, false);
    list.setCanBeModified(true);
    list.createColor(TrelColor(RED), "{a}", QStringList{}, "", "");
    list.createColor(TrelColor(RED), "{b}", "", "");
    list.createExplicitColor(TrelColor(RED), RED);
    list.set("{c}", TrelColor(RED));
    for (int i = 0; i < 4; ++i)
        QVERIFY(list.child(i)->canBeModified());
}

void tst_TrelColorLibraryItem::freeChildName_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("expected");
    QTest::newRow("free") << QStringList{"a"} << "b"
                          << "b";
    QTest::newRow("taken") << QStringList{"a"} << "a"
                           << "a 2";
    QTest::newRow("case") << QStringList{"a"} << "A"
                          << "A";
    QTest::newRow("numbered one taken") << QStringList{"a", "a 2"} << "a 2"
                                        << "a 2 2";
    QTest::newRow("empty, free") << QStringList{"a"} << ""
                                 << "";
    QTest::newRow("empty, taken") << QStringList{""} << ""
                                  << " 2";
    QTest::newRow("a place marker") << QStringList{"%1"} << "%1"
                                    << "%1 2";
    QTest::newRow("two place markers") << QStringList{"%2 %1", "%2 %1 2"} << "%2 %1"
                                       << "%2 %1 3";
}

void tst_TrelColorLibraryItem::freeChildName()
{
    QFETCH(QStringList, names);
    QFETCH(QString, wanted);
    Item list(nullptr, false);
    list.insertChildren(0, int(names.size()));
    for (int i = 0; i < int(names.size()); ++i)
        list.child(i)->setDisplayName(names[i]);
    QTEST(list.freeChildName(wanted), "expected");
    QCOMPARE(list.hasChildNamed(wanted), names.contains(wanted));

    // What was taken comes free again.
    list.removeChildren(0, 1);
    QCOMPARE(list.freeChildName(names[0]), names[0]);
    deleteNow();
}

void tst_TrelColorLibraryItem::createExplicitColor()
{
    Item list(nullptr, false);
    QCOMPARE(list.createExplicitColor(TrelColor(RED), "some value"), QString("some value"));
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=2 value=some value color=") + RED});
    QCOMPARE(list.child(0)->parent(), &list);
    QCOMPARE(list.childWithExplicitColor("some value"), list.child(0));
    QCOMPARE(list.childWithUid("some value"), list.child(0));

    list.createExplicitColor(TrelColor(GREEN), "some value");
    QCOMPARE(list.childCount(), 2);
    QCOMPARE(list.childWithExplicitColor("some value"), list.child(1));
}

void tst_TrelColorLibraryItem::odd60_setAlwaysAppends()
{
    Item list(nullptr, false);
    QVERIFY(list.set("{u}", TrelColor(RED)));
    QVERIFY(list.set("{u}", TrelColor(GREEN)));
    QCOMPARE(describeChildren(list), QStringList({QStringLiteral("type=1 uid={u} color=") + RED,
                                                  QStringLiteral("type=1 uid={u} color=") + GREEN}));
    QCOMPARE(list.childWithUid("{u}"), list.child(1));
    list.handleInsertColor("{u}", "renamed", "", "p", "", "v");
    QCOMPARE(childNames(list), QStringList({"renamed", ""}));
}

void tst_TrelColorLibraryItem::setKeepsTheWholeArgument()
{
    const QString uidAndValue = QStringLiteral("{u}") + GREEN;
    Item list(nullptr, false);
    QVERIFY(list.set(uidAndValue, TrelColor(RED)));
    QCOMPARE(list.child(0)->getUid(), uidAndValue);
    QCOMPARE(list.childWithUid(uidAndValue), list.child(0));
    QVERIFY(!list.childWithUid("{u}"));
    QCOMPARE(list.child(0)->getTrelColor().aName(), QString(RED));
}

void tst_TrelColorLibraryItem::setOfAnInvalidColor()
{
    Item list(nullptr, false);
    list.set("{u}", TrelColor(RED));
    QVERIFY(!list.set("{u}", TrelColor()));
    QVERIFY(!list.set("{v}", TrelColor()));
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=1 uid={u} color=") + RED});
    QVERIFY(!list.childWithUid("{v}"));
}

void tst_TrelColorLibraryItem::odd61_insertedColorNamesTheFirstWithItsUid()
{
    Item list(nullptr, false);
    list.handleInsertColor("{u}", "first", RED, "p1", "list", "v1");
    list.handleInsertColor("{u}", "second", GREEN, "p2", "list", "v2");
    QCOMPARE(describeChildren(list),
             QStringList({QStringLiteral("type=1 name=second uid={u} preset=p2 vendor=v2 color=") + RED,
                          QStringLiteral("type=1 uid={u} color=") + GREEN}));
    QCOMPARE(list.childWithUid("{u}"), list.child(1));
}

void tst_TrelColorLibraryItem::handleInsertColor()
{
    Item list(nullptr, false);
    list.setCanBeModified(true);
    list.handleInsertColor("{u}", "a", "aYxy;1;0;65535;0.5;0.3;0.25", "p", "whichever list", "v");
    list.handleInsertColor("{v}", "a", "red", "", "", "");
    QCOMPARE(describeChildren(list),
             QStringList({"type=1 name=a uid={u} preset=p vendor=v color=aYxy;1;0;65535;0.500000;0.300000;0.250000 "
                          "modifiable=1",
                          QStringLiteral("type=1 name=a uid={v} preset= color=%1 modifiable=1").arg(RED)}));
}

void tst_TrelColorLibraryItem::handleInsertColorOfNoColorRenamesAllTheSame()
{
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{u}", QStringList{}, "p", "v");
    list.handleInsertColor("{u}", "renamed", "", "", "", "");
    list.handleInsertColor("{unknown}", "none", "", "", "", "");
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=1 name=renamed uid={u} preset= color=") + RED});
}

void tst_TrelColorLibraryItem::handleInsertColorWithoutAName()
{
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{u}", QStringList{}, "p", "v");
    list.handleInsertColor("{u}", "", "", "p2", "", "");
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=1 name=Color uid={u} preset=p2 color=") + RED});
}

void tst_TrelColorLibraryItem::handleInsertColorIsASlot()
{
    KestraProjectHelper helper;
    Item list(nullptr, false);
    QVERIFY(connect(&helper, SIGNAL(insertColor(QString, QString, QString, QString, const QString &, const QString &)),
                    &list,
                    SLOT(handleInsertColor(QString, QString, QString, QString, const QString &, const QString &))));
    emit helper.insertColor("{u}", "a", RED, "p", "list", "v");
    QCOMPARE(describeChildren(list),
             QStringList{QStringLiteral("type=1 name=a uid={u} preset=p vendor=v color=") + RED});
}

void tst_TrelColorLibraryItem::thumbnails()
{
    const FreshLibrary library;
    installThumbnails();
    Item list(nullptr, false);
    list.setTrelColor(TrelColor(RED));
    list.createExplicitColor(TrelColor(RED), RED);
    list.insertChildren(0, 1);
    list.child(0)->setData("old", Item::OldPresetRole, 0);
    list.child(0)->setTrelColor(TrelColor(RED));
    QCOMPARE(s_thumbnails, QStringList{});
    QVERIFY(list.getIcon().isNull() && list.child(0)->getIcon().isNull() && list.child(1)->getIcon().isNull());

    list.createColor(TrelColor(RED), "{a}", QStringList{}, "", "");
    list.set("{b}", TrelColor(GREEN));
    list.child(1)->setData("{c}", Item::UidRole, 0);
    QVERIFY(list.child(1)->getIcon().isNull());
    TrelColor green(GREEN);
    list.child(1)->setData(QVariant::fromValue(static_cast<void *>(&green)), Item::ColorRole, 0);
    list.child(2)->setTrelColor(TrelColor());
    QCOMPARE(s_thumbnails, QStringList({RED, GREEN, GREEN, ""}));
    QCOMPARE(list.child(3)->getIcon().width(), 2);
    QCOMPARE(list.child(1)->getIcon().width(), 3);
    QCOMPARE(list.child(2)->data(Qt::DecorationRole, 0).value<QPixmap>().width(), 4);
}

void tst_TrelColorLibraryItem::noThumbnailWithoutAGenerator()
{
    const FreshLibrary library;
    Item list(nullptr, false);
    list.createColor(TrelColor(RED), "{a}", QStringList{}, "", "");
    QVERIFY(list.child(0)->getIcon().isNull());
    list.child(0)->setIcon(QPixmap(9, 9));
    list.child(0)->setTrelColor(TrelColor(GREEN));
    QCOMPARE(list.child(0)->getIcon().width(), 9);
}

void tst_TrelColorLibraryItem::indexesAgreeWithAWalkOverTheChildren()
{
    constexpr int STEPS = 2500;
    constexpr int ALL_OPERATIONS = 13;
    for (unsigned int seed : {1u, 2u, 3u}) {
        RandomEdits edits(seed);
        for (int i = 0; i < STEPS; ++i) {
            const QString difference = edits.step();
            QVERIFY2(difference.isEmpty(),
                     qPrintable(QStringLiteral("seed %1, step %2: %3").arg(seed).arg(i).arg(visible(difference))));
        }
        const QStringList done = edits.operationsDone();
        QCOMPARE(int(done.size()), ALL_OPERATIONS);
        for (const QString &operation : done)
            QVERIFY2(edits.timesDone(operation) > STEPS / ALL_OPERATIONS / 2, qPrintable(operation));
    }
}

void tst_TrelColorLibraryItem::loadDocument()
{
    const FreshLibrary library;
    QDomDocument document = parsed("<host>"
                                   "<ColorLibrary name='one'>"
                                   "<Color uid='{a}' name='A' value='red' originatingPreset='P' colorId='V'/>"
                                   "<Color uid='{b}' name='B' value='lime'/>"
                                   "</ColorLibrary>"
                                   "<deep><ColorLibrary name='two'><Color uid='{c}' name='A' value='red'/>"
                                   "</ColorLibrary></deep>"
                                   "</host>");
    Item list(nullptr, false);
    list.setCanBeModified(true);
    QString error;
    QVERIFY(list.loadDocument(document, error, 1.0, "Kestra"));
    QCOMPARE(error, QString());
    QCOMPARE(describeChildren(list),
             QStringList({QStringLiteral("type=1 name=A uid={a} preset=P vendor=V color=%1 modifiable=1").arg(RED),
                          QStringLiteral("type=1 name=B uid={b} preset= color=%1 modifiable=1").arg(GREEN),
                          QStringLiteral("type=1 name=A uid={c} preset= color=%1 modifiable=1").arg(RED)}));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(list.childWithUid(list.child(i)->getUid()), list.child(i));
    QVERIFY(!list.signalsBlocked());
    deleteNow();
}

void tst_TrelColorLibraryItem::loadDocumentTwice()
{
    const FreshLibrary library;
    QDomDocument first = parsed("<ColorLibrary>" + colorElement("{a}", "A", "red") + "</ColorLibrary>");
    QDomDocument second = parsed("<ColorLibrary>" + colorElement("{b}", "B", "lime") + "</ColorLibrary>");
    Item list(nullptr, false);
    QString error;
    QVERIFY(list.loadDocument(first, error, 1.0, "Kestra"));
    const QPointer<Item> old = list.child(0);
    QVERIFY(list.loadDocument(second, error, 1.0, "Kestra"));
    QVERIFY(!old);
    QCOMPARE(childNames(list), QStringList{"B"});
    QVERIFY(!list.childWithUid("{a}") && !list.firstChildWithUid("{a}") && !list.hasChildNamed("A"));
    QCOMPARE(list.childWithUid("{b}"), list.child(0));
    QCOMPARE(list.child(0)->row(), 0);
    deleteNow();
}

void tst_TrelColorLibraryItem::loadDocumentOfAnotherApplication()
{
    const FreshLibrary library;
    QDomDocument document = parsed("<ColorLibrary>" + colorElement("{b}", "B", "red") + "</ColorLibrary>");
    QDomDocument broken = parsed("<ColorLibrary/>");
    for (const QString &application : {QString("kestra"), QString(), QString("Kestra "), QString("Other")}) {
        Item list(nullptr, false);
        list.set("{a}", TrelColor(RED));
        const Item *child = list.child(0);
        QString error = "untouched";
        QVERIFY(list.loadDocument(document, error, 0.0, application));
        QVERIFY(list.loadDocument(broken, error, 0.0, application));
        QCOMPARE(error, QString("untouched"));
        QCOMPARE(list.childCount(), 1);
        QCOMPARE(list.child(0), child);
        QCOMPARE(list.childWithUid("{a}"), child);
    }
}

void tst_TrelColorLibraryItem::loadDocumentWithOldPresets()
{
    const FreshLibrary library;
    QDomDocument document = parsed("<ColorLibrary>" + colorElement("{a}", "A", "red") + colorElement("{b}", "B", "lime")
                                   + "</ColorLibrary>");
    Item list(nullptr, false);
    list.setCanBeModified(true);
    QString error;
    QVERIFY(list.loadDocument(document, error, 0.95, "Kestra"));
    QCOMPARE(describeChildren(list),
             QStringList({QStringLiteral("type=1 name=A uid={a} preset= color=%1 modifiable=1").arg(RED),
                          QStringLiteral("type=1 name=B uid={b} preset= color=%1 modifiable=1").arg(GREEN),
                          "type=3 old={a}", "type=3 old={b}"}));
    QCOMPARE(list.childWithUid("{a}"), list.child(0));
    QCOMPARE(list.childWithUid("{b}"), list.child(1));
    QCOMPARE(list.child(2)->parent(), &list);
    QCOMPARE(list.child(3)->row(), 3);

    QVERIFY(list.loadDocument(document, error, 0.96, "Kestra"));
    QCOMPARE(childNames(list), QStringList({"A", "B"}));
    deleteNow();
}

void tst_TrelColorLibraryItem::loadDocumentThatFails()
{
    const FreshLibrary library;
    QDomDocument document =
        parsed("<host><ColorLibrary>" + colorElement("{a}", "A", "red") + "</ColorLibrary><ColorLibrary/><ColorLibrary>"
               + colorElement("{b}", "B", "red") + "</ColorLibrary></host>");
    Item list(nullptr, false);
    QString error;
    QVERIFY(list.loadDocument(document, error, 0.0, "Kestra"));
    QCOMPARE(error, QString("Found NULL TrelColorLibrary element"));
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=1 name=A uid={a} preset= color=") + RED});
    QVERIFY(!list.signalsBlocked());
    deleteNow();
}

void tst_TrelColorLibraryItem::loadDocumentWithSignalsBlocked()
{
    const FreshLibrary library;
    installThumbnails();
    QDomDocument document = parsed("<ColorLibrary>" + colorElement("{a}", "A", "red") + "</ColorLibrary>");
    Item list(nullptr, false);
    s_watched = &list;
    s_watchedWasBlocked = false;
    QString error;
    const bool loaded = list.loadDocument(document, error, 1.0, "Kestra");
    s_watched = nullptr;
    QVERIFY(loaded);
    QCOMPARE(s_thumbnails, QStringList{RED});
    QVERIFY(s_watchedWasBlocked);
    QVERIFY(!list.signalsBlocked());
    QCOMPARE(list.child(0)->getIcon().width(), 1);
    deleteNow();
}

void tst_TrelColorLibraryItem::loadedValueThatIsNone()
{
    const FreshLibrary library;
    QDomDocument document =
        parsed("<ColorLibrary><Color uid='{a}' name='A'/>" + colorElement("{b}", "B", "red") + "</ColorLibrary>");
    Item list(nullptr, false);
    QString error;
    expectWarning(UNKNOWN_VALUE);
    QVERIFY(list.loadDocument(document, error, 1.0, "Kestra"));
    QCOMPARE(describeChildren(list), QStringList{QStringLiteral("type=1 name=B uid={b} preset= color=") + RED});
    deleteNow();
}

void tst_TrelColorLibraryItem::createElement_data()
{
    QTest::addColumn<bool>("isUserLibrary");
    QTest::addColumn<QString>("attribute");
    QTest::newRow("user list") << true << "1";
    QTest::newRow("other list") << false << "0";
}

void tst_TrelColorLibraryItem::createElement()
{
    Item list(nullptr, false);
    list.setDisplayName("My list");
    list.createColor(TrelColor(RED), "{a}", QStringList{}, "P", "V");
    list.createColor(TrelColor("aYxy;3;0;65535;0.5;0.3;0.25"), "{b}", QStringList{"Color"}, "", "");

    QFETCH(bool, isUserLibrary);
    QDomDocument document;
    bool ok = false;
    const QDomElement element = list.createElement(document, ok, "Kestra", isUserLibrary);
    QVERIFY(ok);
    QCOMPARE(element.tagName(), QString("ColorLibrary"));
    QCOMPARE(element.attributes().count(), 2);
    QCOMPARE(element.attribute("name"), QString("My list"));
    QTEST(element.attribute("isUserLibrary"), "attribute");
    QCOMPARE(element.childNodes().count(), 2);

    const QVector<QStringList> expected{{"Color", "{a}", RED, "P", "V"},
                                        {"Color 2", "{b}", "aYxy;3;0;65535;0.500000;0.300000;0.250000", "", ""}};
    for (int i = 0; i < 2; ++i) {
        const QDomElement color = element.childNodes().at(i).toElement();
        QCOMPARE(color.tagName(), QString("Color"));
        QCOMPARE(color.attributes().count(), 5);
        QCOMPARE(QStringList({color.attribute("name"), color.attribute("uid"), color.attribute("value"),
                              color.attribute("originatingPreset"), color.attribute("colorId")}),
                 expected[i]);
    }
    QVERIFY(document.isNull() || document.documentElement().isNull());
    deleteNow();
}

void tst_TrelColorLibraryItem::createElementOfAnotherApplication()
{
    Item list(nullptr, false);
    list.set("{a}", TrelColor(RED));
    for (const QString &application : {QString("kestra"), QString(), QString("Other")}) {
        QDomDocument document;
        bool ok = true;
        QVERIFY(list.createElement(document, ok, application, true).isNull());
        QVERIFY(!ok);
    }
}

void tst_TrelColorLibraryItem::createElementTakesColorsWithAUidOnly()
{
    Item list(nullptr, false);
    list.createExplicitColor(TrelColor(RED), RED);
    list.set("", TrelColor(RED));
    list.set("{a}", TrelColor(RED));
    list.insertChildren(0, 2);
    list.child(0)->setData("old", Item::OldPresetRole, 0);
    list.child(1)->setUid("{of a list}"); // whatever the type says

    QDomDocument document;
    bool ok = false;
    const QDomElement element = list.createElement(document, ok, "Kestra", false);
    QVERIFY(ok);
    QStringList uids;
    for (QDomElement color = element.firstChildElement(); !color.isNull(); color = color.nextSiblingElement())
        uids << color.attribute("uid");
    QCOMPARE(uids, QStringList({"{of a list}", "{a}"}));

    const Item empty(nullptr, false);
    const QDomElement nothing = empty.createElement(document, ok, "Kestra", false);
    QVERIFY(ok && !nothing.isNull() && !nothing.hasChildNodes());
    QCOMPARE(nothing.attribute("name", "missing"), QString(""));
    deleteNow();
}

void tst_TrelColorLibraryItem::createdElementLoadsAgain()
{
    const FreshLibrary library;
    Item list(nullptr, false);
    list.setDisplayName("<List> & \"co\"");
    list.createColor(TrelColor(RED), "{a}", QStringList{}, "a/\"b\" & 'c'", "<V>");
    list.createColor(TrelColor("aNchannel;6;5;65535;100;200;300;400;1"), "{b}", QStringList{"Color"}, "\t\n\r", " ");

    QDomDocument document;
    bool ok = false;
    document.appendChild(list.createElement(document, ok, "Kestra", true));
    QDomDocument again = parsed(QString::fromUtf8(KestraProjectHelper::toByteArray(document)));
    QCOMPARE(again.documentElement().attribute("name"), list.displayName());
    Item copy(nullptr, false);
    QString error;
    QVERIFY(copy.loadDocument(again, error, 1.0, "Kestra"));
    QCOMPARE(describeChildren(copy), describeChildren(list));
    deleteNow();
}

void tst_TrelColorLibraryItem::freshPresetDoesNotPoisonTheDocument()
{
    Item list(nullptr, false);
    list.setDisplayName("a" + character(0xFFFE) + "b" + character(0xD800) + character(8));
    list.set("{a}", TrelColor(RED));
    QCOMPARE(list.child(0)->orignatingPreset(), character(0));
    list.set("{b}" + character(0xFFFF), TrelColor(RED));
    list.child(1)->setOriginatingPreset(character(1));
    list.child(1)->setVendorID("v" + character(0xDFFF));
    list.insertChildren(2, 1);
    list.child(2)->setUid("{c}");
    list.child(2)->setDisplayName("n" + character(0x1F));

    QDomDocument document;
    bool ok = false;
    document.appendChild(list.createElement(document, ok, "Kestra", false));
    const QByteArray bytes = KestraProjectHelper::toByteArray(document);
    const QString red = RED;
    QCOMPARE(QString::fromUtf8(bytes),
             "<ColorLibrary name=\"ab\" isUserLibrary=\"0\">\n"
             " <Color name=\"\" uid=\"{a}\" value=\""
                 + red
                 + "\" originatingPreset=\"\" colorId=\"\"/>\n"
                   " <Color name=\"\" uid=\"{b}\" value=\""
                 + red
                 + "\" originatingPreset=\"\" colorId=\"v\"/>\n"
                   " <Color name=\"n\" uid=\"{c}\" value=\"\" originatingPreset=\"\" colorId=\"\"/>\n"
                   "</ColorLibrary>\n");

    QDomDocument again;
    QVERIFY(again.setContent(bytes, true));
    QXmlStreamReader reader(bytes);
    while (!reader.atEnd())
        reader.readNext();
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    deleteNow();
}

void tst_TrelColorLibraryItem::mimeTypes_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("oldPreset");
    QTest::addColumn<QStringList>("expected");
    const QStringList some{"data/x-trelcolor"};
    QTest::newRow("none") << ""
                          << ""
                          << "" << QStringList{};
    QTest::newRow("uid") << "{u}"
                         << ""
                         << "" << some;
    QTest::newRow("explicit color") << ""
                                    << "v"
                                    << "" << some;
    QTest::newRow("old preset") << ""
                                << ""
                                << "o" << some;
    QTest::newRow("all") << "{u}"
                         << "v"
                         << "o" << some;
}

void tst_TrelColorLibraryItem::mimeTypes()
{
    QFETCH(QString, uid);
    QFETCH(QString, value);
    QFETCH(QString, oldPreset);
    Item item(nullptr, false);
    item.setDisplayName("a name says nothing");
    item.setUid(uid);
    item.setExplicitColorString(value);
    item.setOldPreset(oldPreset);
    QTEST(item.mimeTypes(), "expected");
}

void tst_TrelColorLibraryItem::mimeData()
{
    Item list(nullptr, false);
    list.set("{u}", TrelColor(RED));
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY(list.child(0)->mimeData(MIME_TYPE, out));
    QCOMPARE(bytes, QByteArray("\0\0\0\3{u}\0\0\0\x1a"
                               "aRgb;1;0;#ffffffff00000000",
                               37));
}

void tst_TrelColorLibraryItem::mimeDataOfAnEmptyUid()
{
    Item list(nullptr, false);
    list.createExplicitColor(TrelColor(GREEN), RED);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY(list.child(0)->mimeData(MIME_TYPE, out));
    QVERIFY(list.mimeData(MIME_TYPE, out));

    QDataStream in(bytes);
    QVector<QByteArray> read(4, "unread");
    for (QByteArray &part : read)
        in >> part;
    QCOMPARE(read, QVector<QByteArray>({"", GREEN, "", ""}));
    QVERIFY(in.atEnd() && in.status() == QDataStream::Ok);
}

void tst_TrelColorLibraryItem::mimeDataOfAnotherType_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"", "data/x-trelcolor-name", "data/x-trelcolor-vendorid", "Data/x-trelcolor", "text/plain",
                             "data/x-trelcolor "})
        QTest::newRow(type) << QString(type);
}

void tst_TrelColorLibraryItem::mimeDataOfAnotherType()
{
    QFETCH(QString, type);
    Item list(nullptr, false);
    list.set("{u}", TrelColor(RED));
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    QVERIFY(!list.child(0)->mimeData(type, out));
    QVERIFY(bytes.isEmpty());
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibraryItem, childCases)
#include "tst_TrelColorLibraryItem.moc"
