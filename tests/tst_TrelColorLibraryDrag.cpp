#include "TestSupport.h"

#include <TrelColorLibrary.h>

#include <QDataStream>
#include <QGuiApplication>
#include <QMimeData>

#include <memory>

using Item = TrelColorLibraryItem;

/// What a drag out of the library's views carries, and how a drop target reads it back.
class tst_TrelColorLibraryDrag : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void formatNames();
    void payloads_data();
    void payloads();
    void emptyIndexList();
    void freshEntryHoldsAZeroByte();
    void theCallerOwnsTheData();
    void dragAndDrop();
    void dropAfterTheColorIsGone();
    void nameWithCommaSplits();
    void itemsStreamForm();
    void originatingPreset_data();
    void originatingPreset();
    void originatingPresetOfNoData();
    void originatingPresetOfALibraryDrag();
};

namespace {

const char VALUES[] = "data/x-trelcolor";
const char NAMES[] = "data/x-trelcolor-name";
const char PRESETS[] = "data/x-trelcolor-originatingPreset";
const char VENDORS[] = "data/x-trelcolor-vendorid";
const char HOSTS[] = "x-kestra/color";

const char RED[] = "aRgb;1;0;#ffffffff00000000";
const char BLUE[] = "aRgb;1;0;#ffff00000000ffff";
const char WHITE[] = "aYxy;1;0;65535;1.000000;0.312700;0.329000";

TrelColorLibrary &freshLibrary()
{
    TrelColorLibrary::cleanup();
    return *TrelColorLibrary::Instance();
}

struct Entry
{
    const char *list;
    const char *uid;
    const char *name;
    const char *value;
    const char *preset;
    const char *vendorId;
};

const Entry ENTRIES[] = {
    {"Mine", "{red}", "Red", RED, "Basics/Red", "R-1"},
    {"Mine", "{blue}", "Blue", BLUE, "Basics/Blue", "B-2"},
    {"Mine", "{plain}", "Plain", RED, "", ""},
    {"Mine", "{bare}", "Bare", BLUE, "", ""},
    {"Other", "{white}", "White", WHITE, "", "W-3"},
    {"Other", "{cafe}", "Caf\xC3\xA9 \xCE\xA9", RED, "Men\xC3\xBC/\xE2\x82\xAC", "\xC3\x9F"},
    {"Other", "{comma}", "Red, light", RED, "A,B/C", "1,2"},
    {"Other", "no braces", "Unbraced", BLUE, "", ""},
};

TrelColorLibrary &filledLibrary()
{
    TrelColorLibrary &library = freshLibrary();
    for (const Entry &entry : ENTRIES) {
        library.createColorWithName(TrelColor(entry.value), entry.name, entry.uid, entry.list, entry.vendorId);
        library.setData(library.getIndexOfUid(entry.uid), QString(entry.preset), Item::OriginatingPresetRole);
    }
    library.createNewLibraryIfNecessary("Empty", false);
    library.createExplicitColor(TrelColor(WHITE), WHITE);
    return library;
}

/// Indexes of uids; "-" is the invalid index, "=LIST" a list, and "uid|1" a colour's column 1.
QModelIndexList indexesOf(const TrelColorLibrary &library, const QStringList &keys)
{
    QModelIndexList indexes;
    for (const QString &key : keys) {
        if (key.startsWith('=')) {
            indexes.append(library.getIndexOfListId(key.mid(1)));
            continue;
        }
        const QModelIndex color = library.getIndexOfUid(key.section('|', 0, 0));
        indexes.append(key.endsWith("|1") ? library.index(color.row(), 1, color.parent()) : color);
    }
    return indexes;
}

std::unique_ptr<QMimeData> drag(const TrelColorLibrary &library, const QStringList &keys)
{
    return std::unique_ptr<QMimeData>(library.mimeData(indexesOf(library, keys)));
}

/// \a data as another program would get it: every format by its name and bytes.
std::unique_ptr<QMimeData> received(const QMimeData &data)
{
    auto copy = std::make_unique<QMimeData>();
    const QStringList formats = data.formats();
    for (const QString &format : formats)
        copy->setData(format, QByteArray(data.data(format)));
    return copy;
}

using Formats = QMap<QString, QByteArray>;

Formats formatsOf(const QMimeData &data)
{
    Formats formats;
    const QStringList names = data.formats();
    for (const QString &name : names)
        formats.insert(name, data.data(name));
    return formats;
}

} // namespace

Q_DECLARE_METATYPE(Formats)

void tst_TrelColorLibraryDrag::formatNames()
{
    QCOMPARE(QByteArray(TRELCOLOR_MIME_TYPE), QByteArray("data/x-trelcolor"));
    QCOMPARE(QByteArray(kTRELCOLOR_NAME_MIME_TYPE), QByteArray("data/x-trelcolor-name"));
    QCOMPARE(QByteArray(kTRELCOLOR_VENDOR_ID_MIME_TYPE), QByteArray("data/x-trelcolor-vendorid"));
}

void tst_TrelColorLibraryDrag::payloads_data()
{
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<Formats>("expected");
    const auto row = [](const char *name, const QStringList &keys, const Formats &expected) {
        QTest::newRow(name) << keys << expected;
    };
    const QByteArray red = QByteArray("{red}") + RED;
    const QByteArray blue = QByteArray("{blue}") + BLUE;
    const QByteArray plain = QByteArray("{plain}") + RED;
    const QByteArray bare = QByteArray("{bare}") + BLUE;
    const QByteArray white = QByteArray("{white}") + WHITE;

    row("one colour", {"{red}"}, {{VALUES, red}, {NAMES, "Red"}, {PRESETS, "Basics/Red"}, {VENDORS, "R-1"}});
    row("two colours", {"{red}", "{blue}"},
        {{VALUES, red + ',' + blue}, {NAMES, "Red,Blue"}, {PRESETS, "Basics/Red,Basics/Blue"}, {VENDORS, "R-1,B-2"}});
    row("the order of the indexes, not of the rows", {"{blue}", "{red}"},
        {{VALUES, blue + ',' + red}, {NAMES, "Blue,Red"}, {PRESETS, "Basics/Blue,Basics/Red"}, {VENDORS, "B-2,R-1"}});
    row("two lists", {"{white}", "{red}"},
        {{VALUES, white + ',' + red}, {NAMES, "White,Red"}, {PRESETS, ",Basics/Red"}, {VENDORS, "W-3,R-1"}});
    row("no vendor, one colour", {"{plain}"}, {{VALUES, plain}, {NAMES, "Plain"}});
    row("no vendors, two colours", {"{plain}", "{bare}"},
        {{VALUES, plain + ',' + bare}, {NAMES, "Plain,Bare"}, {PRESETS, ","}, {VENDORS, ","}});
    row("no vendors, three colours", {"{bare}", "{plain}", "no braces"},
        {{VALUES, bare + ',' + plain + ",no braces" + BLUE},
         {NAMES, "Bare,Plain,Unbraced"},
         {PRESETS, ",,"},
         {VENDORS, ",,"}});
    row("a vendor last", {"{plain}", "{red}"},
        {{VALUES, plain + ',' + red}, {NAMES, "Plain,Red"}, {PRESETS, ",Basics/Red"}, {VENDORS, ",R-1"}});
    row("invalid index in front", {"-", "{red}"},
        {{VALUES, red}, {NAMES, "Red"}, {PRESETS, "Basics/Red"}, {VENDORS, "R-1"}});
    row("invalid index between", {"{red}", "-", "{plain}"},
        {{VALUES, red + ',' + plain}, {NAMES, "Red,Plain"}, {PRESETS, "Basics/Red,"}, {VENDORS, "R-1,"}});
    row("invalid index last", {"{red}", "-"},
        {{VALUES, red + ','}, {NAMES, "Red,"}, {PRESETS, "Basics/Red,"}, {VENDORS, "R-1,"}});
    row("two invalid indexes last", {"{plain}", "-", "-"},
        {{VALUES, plain + ','}, {NAMES, "Plain,"}, {PRESETS, ","}, {VENDORS, ","}});
    row("invalid index alone", {"-"}, {});
    row("the last index twice", {"{plain}", "{red}", "{plain}"},
        {{VALUES, plain + red + ',' + plain}, {NAMES, "PlainRed,Plain"}, {PRESETS, "Basics/Red,"}, {VENDORS, "R-1,"}});
    row("both columns of a row", {"{red}", "{red}|1"},
        {{VALUES, red + ',' + red}, {NAMES, "Red,Red"}, {PRESETS, "Basics/Red,Basics/Red"}, {VENDORS, "R-1,R-1"}});
    row("empty list", {"=Empty"}, {{NAMES, "Empty"}});
    row("list and colour", {"=Mine", "{plain}"},
        {{VALUES, ',' + plain}, {NAMES, "Mine,Plain"}, {PRESETS, ","}, {VENDORS, ","}});
    row("Latin-1", {"{cafe}"},
        {{VALUES, QByteArray("{cafe}") + RED}, {NAMES, "Caf\xE9 ?"}, {PRESETS, "Men\xFC/?"}, {VENDORS, "\xDF"}});
    row("commas are not escaped", {"{comma}", "{plain}"},
        {{VALUES, QByteArray("{comma}") + RED + ',' + plain},
         {NAMES, "Red, light,Plain"},
         {PRESETS, "A,B/C,"},
         {VENDORS, "1,2,"}});
}

void tst_TrelColorLibraryDrag::payloads()
{
    QFETCH(QStringList, keys);
    QFETCH(Formats, expected);
    QCOMPARE(formatsOf(*drag(filledLibrary(), keys)), expected);
}

void tst_TrelColorLibraryDrag::emptyIndexList()
{
    const std::unique_ptr<QMimeData> data(filledLibrary().mimeData(QModelIndexList()));
    QVERIFY(data != nullptr);
    QCOMPARE(data->formats(), QStringList());
}

// Nothing has assigned the originating preset, which is then U+0000 and not empty.
void tst_TrelColorLibraryDrag::freshEntryHoldsAZeroByte()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex list = library.getIndexOfListId("Empty");
    library.insertRows(0, 1, list);
    const std::unique_ptr<QMimeData> data(library.mimeData({library.index(0, 0, list)}));
    QCOMPARE(formatsOf(*data), (Formats{{PRESETS, QByteArray(1, '\0')}}));
    data->setData(HOSTS, "1");
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(data.get()), QString());
}

void tst_TrelColorLibraryDrag::theCallerOwnsTheData()
{
    const TrelColorLibrary &library = filledLibrary();
    const std::unique_ptr<QMimeData> first = drag(library, {"{red}"});
    const std::unique_ptr<QMimeData> second = drag(library, {"{red}"});
    QVERIFY(first != second);
    QVERIFY(first->parent() == nullptr);
    TrelColorLibrary::cleanup();
    QCOMPARE(first->data(NAMES), QByteArray("Red"));
}

void tst_TrelColorLibraryDrag::dragAndDrop()
{
    TrelColorLibrary &library = filledLibrary();
    const QStringList uids{"{white}", "{blue}", "{red}"};
    const QStringList colors{WHITE, BLUE, RED};
    const QStringList names{"White", "Blue", "Red"};
    const std::unique_ptr<QMimeData> data = received(*drag(library, uids));

    const QStringList entries = QString::fromLatin1(data->data(VALUES)).split(',');
    QCOMPARE(entries.size(), uids.size());
    QCOMPARE(QString::fromLatin1(data->data(NAMES)).split(','), names);
    QCOMPARE(QString::fromLatin1(data->data(VENDORS)), QString("W-3,B-2,R-1"));
    const int lists = library.rowCount(library.rootIndex());
    const int explicitColors = library.rowCount(library.getIndexOfListId("Explicit Colors"));
    for (int i = 0; i < int(uids.size()); ++i) {
        QCOMPARE(TrelColorLibrary::UidAndValueToUid(entries[i]), uids[i]);
        QCOMPARE(TrelColorLibrary::UidAndValueToValue(entries[i]), colors[i]);
        QVERIFY(library.containsUid(TrelColorLibrary::UidAndValueToUid(entries[i])));
        QCOMPARE(library.get(entries[i]).aName(), colors[i]);
    }
    QCOMPARE(library.rowCount(library.rootIndex()), lists);
    QCOMPARE(library.rowCount(library.getIndexOfListId("Explicit Colors")), explicitColors);

    // The drop makes copies of its own.
    for (const QString &entry : entries)
        library.createColor(library.get(entry), QString(), "Dropped", QString(), QString());
    QStringList dropped;
    const QList<TrelColor> copies = library.getColors("Dropped");
    for (const TrelColor &color : copies)
        dropped.append(color.aName());
    QCOMPARE(dropped, colors);
    for (const QString &uid : library.getColorUids("Dropped"))
        QVERIFY(!uids.contains(uid));
}

// The uid is unknown by the time of the drop; the colour still arrives by its value.
void tst_TrelColorLibraryDrag::dropAfterTheColorIsGone()
{
    TrelColorLibrary &library = filledLibrary();
    const std::unique_ptr<QMimeData> data = received(*drag(library, {"{white}"}));
    library.remove("{white}");
    const QString entry = QString::fromLatin1(data->data(VALUES));
    QVERIFY(!library.containsUid(TrelColorLibrary::UidAndValueToUid(entry)));
    QCOMPARE(library.get(entry).aName(), QString(WHITE));
    QCOMPARE(library.get(TrelColorLibrary::UidAndValueToUid(entry)).getQColor(true), QColor(Qt::magenta));
}

void tst_TrelColorLibraryDrag::nameWithCommaSplits()
{
    const std::unique_ptr<QMimeData> data = drag(filledLibrary(), {"{comma}", "{red}"});
    QCOMPARE(data->data(NAMES).split(','), QList<QByteArray>({"Red", " light", "Red"}));
    QCOMPARE(data->data(VALUES).split(',').size(), 2);
}

void tst_TrelColorLibraryDrag::itemsStreamForm()
{
    const TrelColorLibrary &library = filledLibrary();
    const auto *item = static_cast<const Item *>(library.getIndexOfUid("{blue}").internalPointer());
    QCOMPARE(item->mimeTypes(), QStringList(VALUES));
    QByteArray bytes;
    {
        QDataStream out(&bytes, QIODevice::WriteOnly);
        QVERIFY(!item->mimeData(NAMES, out));
        QVERIFY(bytes.isEmpty());
        QVERIFY(item->mimeData(VALUES, out));
    }
    QCOMPARE(bytes, QByteArray("\0\0\0\x06{blue}\0\0\0\x1A", 14) + BLUE);
    QDataStream in(bytes);
    QByteArray uid;
    QByteArray value;
    in >> uid >> value;
    QVERIFY(in.atEnd());
    QCOMPARE(uid, QByteArray("{blue}"));
    QCOMPARE(TrelColor(QString::fromLatin1(value)).getQColor(true), QColor(Qt::blue));
}

void tst_TrelColorLibraryDrag::originatingPreset_data()
{
    QTest::addColumn<bool>("isHosts");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, bool isHosts, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << isHosts << bytes << expected;
    };
    row("one preset", true, "Basics/Red", "Basics/Red");
    row("the host's format is missing", false, "Basics/Red", "");
    row("two presets", true, "Basics/Red,Basics/Blue", "Basics/Red");
    row("the first preset is empty", true, ",Basics/Blue", "");
    row("only commas", true, ",,", "");
    row("comma last", true, "Basics/Red,", "Basics/Red");
    row("up to the first zero byte", true, QByteArray("Basics/Red\0 dark,x", 18), "Basics/Red");
    row("zero byte first", true, QByteArray("\0Basics", 7), "");
    row("spaces are kept", true, " Basics / Red ,x", " Basics / Red ");
    row("the format is empty", true, "", "");
}

void tst_TrelColorLibraryDrag::originatingPreset()
{
    QFETCH(bool, isHosts);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    QMimeData data;
    data.setData(PRESETS, bytes);
    if (isHosts)
        data.setData(HOSTS, "anything");
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(&data), expected);
}

void tst_TrelColorLibraryDrag::originatingPresetOfNoData()
{
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(nullptr), QString());
    QMimeData data;
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(&data), QString());
    data.setData(HOSTS, "1");
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(&data), QString());
}

void tst_TrelColorLibraryDrag::originatingPresetOfALibraryDrag()
{
    const TrelColorLibrary &library = filledLibrary();
    const std::unique_ptr<QMimeData> data = drag(library, {"{blue}", "{red}"});
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(data.get()), QString());
    data->setData(HOSTS, "1");
    QCOMPARE(TrelColorLibrary::getOriginatingPresetFromMimeData(data.get()), QString("Basics/Blue"));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibraryDrag, {})
#include "tst_TrelColorLibraryDrag.moc"
