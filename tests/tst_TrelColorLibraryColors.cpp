#include "TestSupport.h"

#include <TrelColorLibrary.h>

#include <QFile>
#include <QGuiApplication>
#include <QUuid>
#include <QVector>

#include <functional>
#include <iterator>
#include <utility>

using Item = TrelColorLibraryItem;

namespace {

constexpr char EXPLICIT_COLORS[] = "Explicit Colors";
constexpr char PROJECT_SWATCHES[] = "Project Swatches";
constexpr char RED[] = "#ff0000";
constexpr char GREEN[] = "#00ff00";
constexpr char BLUE[] = "#0000ff";
constexpr char MAGENTA[] = "#ff00ff";
constexpr char UNKNOWN[] = "{7b0ff7f2-0000-4000-8000-0123456789ab}";
constexpr char VALUE[] = "aRgb;1;0;#ffff123456789abc";
constexpr char NAME_WARNING[] = "TrelColor::setNamedColor: Unknown color name '";

QString userFile()
{
    return TrelColorLibrary::applicationSupportDir() + "\\userColors.xml";
}

QString hexOf(const TrelColor &color)
{
    return color.isValid() ? color.name8() : "invalid";
}

// A library of its own for each test.
class Library
{
public:
    Library()
    {
        TrelColorLibrary::cleanup();
        QFile::remove(userFile());
    }
    ~Library()
    {
        TrelColorLibrary::cleanup();
    }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    TrelColorLibrary *operator->() const
    {
        return TrelColorLibrary::Instance();
    }

    TrelColorLibrary *get() const
    {
        return TrelColorLibrary::Instance();
    }

    QModelIndex list(const QString &name) const
    {
        return get()->getIndexOfListId(name);
    }

    QModelIndex row(const QString &listName, int number) const
    {
        return get()->index(number, 0, list(listName));
    }

    Item *item(const QString &listName) const
    {
        return static_cast<Item *>(list(listName).internalPointer());
    }

    int count(const QString &listName) const
    {
        return get()->rowCount(list(listName));
    }

    // The texts of a list's rows, or of all lists where the name is null.
    QStringList texts(const QString &listName = QString(), int role = Qt::EditRole) const
    {
        const QModelIndex parent = listName.isNull() ? get()->rootIndex() : list(listName);
        QStringList result;
        for (int i = 0; i < get()->rowCount(parent); ++i)
            result << get()->index(i, 0, parent).data(role).toString();
        return result;
    }

    QString text(const QString &uid, int role = Qt::EditRole) const
    {
        return get()->getIndexOfUid(uid).data(role).toString();
    }

    QString add(const QString &uid, const QString &listName, const QString &name, const QString &value = RED) const
    {
        return get()->createColorWithName(TrelColor(value), name, uid, listName, QString());
    }
};

QString describe(const QModelIndex &index)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    if (!index.isValid())
        return "none";
    if (index == library->rootIndex())
        return "root";
    const QString text = index.data(Qt::EditRole).toString();
    return library->isListIndex(index) ? text : library->parent(index).data(Qt::EditRole).toString() + '/' + text;
}

// What the library tells its views, in order.
class Events : public QObject
{
    Q_OBJECT

public:
    Events()
    {
        TrelColorLibrary *library = TrelColorLibrary::Instance();
        connect(library, &QAbstractItemModel::rowsAboutToBeInserted, this, rows("inserting"));
        connect(library, &QAbstractItemModel::rowsInserted, this, rows("inserted"));
        connect(library, &QAbstractItemModel::rowsAboutToBeRemoved, this, rows("removing"));
        connect(library, &QAbstractItemModel::rowsRemoved, this, rows("removed"));
        connect(library, &QAbstractItemModel::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last) {
                    m_log << "changed " + describe(first) + (first == last ? "" : " to " + describe(last));
                });
        connect(library, &QAbstractItemModel::modelReset, this, [this] { m_log << "reset"; });
        connect(library, &TrelColorLibrary::addedColorToList, this,
                [this](QModelIndex &index) { m_log << "added to " + describe(index); });
    }

    QStringList take()
    {
        return std::exchange(m_log, {});
    }

private:
    std::function<void(const QModelIndex &, int, int)> rows(const QString &what)
    {
        return [this, what](const QModelIndex &parent, int first, int last) {
            m_log << QStringLiteral("%1 %2 %3-%4").arg(what, describe(parent)).arg(first).arg(last);
        };
    }

    QStringList m_log;
};

// Counts how often the user's file is written: each time, its text goes to the debug output too.
class Writes
{
public:
    Writes()
    {
        s_count = 0;
        s_next = qInstallMessageHandler(count);
    }
    ~Writes()
    {
        qInstallMessageHandler(s_next);
    }
    Writes(const Writes &) = delete;
    Writes &operator=(const Writes &) = delete;

    static int take()
    {
        return std::exchange(s_count, 0);
    }

private:
    static void count(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtDebugMsg && text.contains("ColorLibraryList"))
            ++s_count;
        else
            s_next(type, context, text);
    }

    static int s_count;
    static QtMessageHandler s_next;
};

int Writes::s_count = 0;
QtMessageHandler Writes::s_next = nullptr;

using Edit = void (*)(TrelColorLibrary *);

struct NamedEdit
{
    const char *name;
    Edit edit;
    int writes;
};

// Beside the library's own lists: "Mine" and "Other" are the user's, "Presets" is not.
const NamedEdit EDITS[] = {
    {"createColor", [](TrelColorLibrary *l) { l->createColor(TrelColor(RED), "", "Mine", "", ""); }, 1},
    {"createColor, with preset and vendor",
     [](TrelColorLibrary *l) { l->createColor(TrelColor(RED), "", "Mine", "Presets/P", "V 1"); }, 1},
    {"createColor in a preset list", [](TrelColorLibrary *l) { l->createColor(TrelColor(RED), "", "Presets", "", ""); },
     0},
    {"createColor in a new list", [](TrelColorLibrary *l) { l->createColor(TrelColor(RED), "", "New", "", ""); }, 0},
    {"createColorWithName", [](TrelColorLibrary *l) { l->createColorWithName(TrelColor(RED), "N", "", "Mine", "V"); },
     1},
    {"createColorWithName, name taken",
     [](TrelColorLibrary *l) { l->createColorWithName(TrelColor(RED), "A", "", "Mine", ""); }, 1},
    {"createColorWithName in a preset list",
     [](TrelColorLibrary *l) { l->createColorWithName(TrelColor(RED), "N", "", "Presets", ""); }, 0},
    {"handleInsertColor", [](TrelColorLibrary *l) { l->handleInsertColor("", "N", RED, "", "Mine", "V"); }, 1},
    {"rename", [](TrelColorLibrary *l) { l->rename("{a}", "N", false); }, 1},
    {"rename, origin kept", [](TrelColorLibrary *l) { l->rename("{a}", "N", true); }, 1},
    {"rename in a preset list", [](TrelColorLibrary *l) { l->rename("{p}", "N", true); }, 0},
    {"rename of an unknown colour", [](TrelColorLibrary *l) { l->rename(UNKNOWN, "N", true); }, 0},
    {"set", [](TrelColorLibrary *l) { l->set("{a}", TrelColor(BLUE)); }, 1},
    {"set to an invalid colour", [](TrelColorLibrary *l) { l->set("{a}", TrelColor()); }, 0},
    {"set in a preset list", [](TrelColorLibrary *l) { l->set("{p}", TrelColor(BLUE)); }, 0},
    {"swatch into a user list", [](TrelColorLibrary *l) { l->createNewSwatchUidFromUid("{p}", "Mine"); }, 1},
    {"swatch between user lists", [](TrelColorLibrary *l) { l->createNewSwatchUidFromUid("{a}", "Other"); }, 1},
    {"swatch into the project", [](TrelColorLibrary *l) { l->getExposableUidFromUid("{a}"); }, 0},
    {"remove", [](TrelColorLibrary *l) { l->remove("{a}"); }, 1},
    {"remove from a preset list", [](TrelColorLibrary *l) { l->remove("{p}"); }, 0},
    {"remove of an unknown colour", [](TrelColorLibrary *l) { l->remove(UNKNOWN); }, 0},
    {"clear", [](TrelColorLibrary *l) { l->clear("Mine"); }, 1},
    {"clear of a preset list", [](TrelColorLibrary *l) { l->clear("Presets"); }, 0},
    {"clear of an unknown list", [](TrelColorLibrary *l) { l->clear("Nowhere"); }, 0},
    {"createColorList", [](TrelColorLibrary *l) { l->createColorList("New", true); }, 1},
    {"createColorList, name taken", [](TrelColorLibrary *l) { l->createColorList("Mine", true); }, 1},
    {"createColorList of a preset list", [](TrelColorLibrary *l) { l->createColorList("New", false); }, 0},
    {"explicit colour", [](TrelColorLibrary *l) { l->get(GREEN); }, 0},
};

void fillForEdits(const Library &library)
{
    library->createColorList("Mine", true);
    library->createColorList("Other", true);
    library->createColorList("Presets", false);
    library.add("{a}", "Mine", "A");
    library.add("{b}", "Mine", "B");
    library.add("{p}", "Presets", "P");
}

} // namespace

class tst_TrelColorLibraryColors : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void splitting_data();
    void splitting();
    void odd65_textThatBeginsWithABraceIsItsOwnValue();

    void lookUpFindsTheFirstInRowOrder();
    void lookUpOfListIsExact_data();
    void lookUpOfListIsExact();
    void lookUpFindsNothing_data();
    void lookUpFindsNothing();
    void lookUpByName();
    void lookUpByOtherTexts();

    void getKnownAndUnknown_data();
    void getKnownAndUnknown();
    void getUnknownIsMagenta();
    void getOfAValueTwiceKeepsOneExplicitColor();
    void getReturnsTheStoredExplicitColor();
    void getOfAnUnreadableValue();
    void getBringsExplicitColorsBack();
    void getOfAUidWithoutBracesReadsAValue();
    void getOfASharedUid();
    void getQColor();
    void setWritesOneColor();
    void setRefuses_data();
    void setRefuses();
    void colorsAndUidsInRowOrder();

    void createColorNames();
    void createColorFields();
    void createColorUid();
    void createColorEvents();
    void createColorInAMissingListEvents();
    void createColorSavesBeforeItAnnounces();
    void createExplicitColor();
    void createColorWithNameMakesItUnique_data();
    void createColorWithNameMakesItUnique();
    void createColorWithNameEmpty();
    void odd66_provisionalNameCounts();
    void createColorWithNameUnderAUsedUid();
    void handleInsertColor();
    void odd68_handleInsertColorIgnoresOriginatingPreset();

    void rename_data();
    void rename();
    void renameEvents();
    void odd67_refusedRenameReturnsTheName_data();
    void odd67_refusedRenameReturnsTheName();
    void remove();
    void clear();

    void getName_data();
    void getName();
    void alternativeDescriptor();

    void createNewLibraryIfNecessary();
    void createNewLibraryIfNecessaryFindsTheOldOne();
    void newColorListName_data();
    void newColorListName();
    void createColorList_data();
    void createColorList();

    void pathOfUid();
    void swatchIsACopy();
    void swatchNames_data();
    void swatchNames();
    void swatchOfANamelessColor();
    void exposedTwiceIsCopiedOnce();
    void exposedFromTheProject();
    void exposedCopyOfACopy();
    void exposedWithOriginatingPreset();

    void emptyAndUnknownUids_data();
    void emptyAndUnknownUids();
    void listsOfTheSameName();
    void removalUnderListsOfTheSameName();
    void uidChangedBehindTheIndex();
    void nameChangedBehindTheIndex();
    void valueChangedBehindTheIndex();
    void colorWithoutIndexEntry();
    void removalOfOneWithoutIndexEntryKeepsTheEmptyKey();
    void removalOfTheIndexedOfTwo();

    void oneEditOneWrite_data();
    void oneEditOneWrite();
    void editInTheHostsBatch_data();
    void editInTheHostsBatch();
    void noWriteBeforeLoading_data();
    void noWriteBeforeLoading();
};

void tst_TrelColorLibraryColors::splitting_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("value");

    const QString uid = UNKNOWN;
    QTest::newRow("uid and value") << uid + VALUE << uid << VALUE;
    QTest::newRow("bare value") << VALUE << "" << VALUE;
    QTest::newRow("bare uid") << uid << uid << "";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("two closing braces") << "{a}b}c"
                                        << "{a}"
                                        << "b}c";
    QTest::newRow("no opening brace") << "a}b"
                                      << "a}"
                                      << "b";
    QTest::newRow("opening brace only") << "{ab"
                                        << ""
                                        << "{ab";
    QTest::newRow("text before the uid") << "x{a}b"
                                         << "x{a}"
                                         << "b";
    QTest::newRow("one character before the brace") << "a}"
                                                    << "a}"
                                                    << "";
}

void tst_TrelColorLibraryColors::splitting()
{
    QFETCH(QString, text);
    QTEST(TrelColorLibrary::UidAndValueToUid(text), "uid");
    QTEST(TrelColorLibrary::UidAndValueToValue(text), "value");
}

void tst_TrelColorLibraryColors::odd65_textThatBeginsWithABraceIsItsOwnValue()
{
    for (const QString text : {"}", "}red", "}a}b"}) {
        QCOMPARE(TrelColorLibrary::UidAndValueToUid(text), QString("}"));
        QCOMPARE(TrelColorLibrary::UidAndValueToValue(text), text);
    }
}

void tst_TrelColorLibraryColors::lookUpFindsTheFirstInRowOrder()
{
    const Library library;
    library.add("{x}", "B", "in B");
    library.add("{other}", "A", "other");
    library.add("{x}", "A", "in A");
    library.add("{y}", "A", "first y");
    library.item("A")->set("{y}", TrelColor(BLUE));

    QCOMPARE(library->getIndexOfUid("{x}"), library.row("B", 0));
    QCOMPARE(library->getIndexOfUid("{y}"), library.row("A", 2));
    QCOMPARE(library->getIndexOfUid("{y}").column(), 0);
    library->removeRows(0, 1, library.list("B"));
    QCOMPARE(library->getIndexOfUid("{x}"), library.row("A", 1));
}

void tst_TrelColorLibraryColors::lookUpOfListIsExact_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");

    QTest::newRow("first") << EXPLICIT_COLORS << 0;
    QTest::newRow("second") << PROJECT_SWATCHES << 1;
    QTest::newRow("own") << "Reds" << 2;
    QTest::newRow("other case") << "reds" << 3;
    QTest::newRow("upper case, none") << "REDS" << -1;
    QTest::newRow("part, none") << "Red" << -1;
    QTest::newRow("empty, none") << "" << -1;
    QTest::newRow("with a space, none") << "Reds " << -1;
}

void tst_TrelColorLibraryColors::lookUpOfListIsExact()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    const Library library;
    library->createColorList("Reds", false);
    library->createColorList("reds", true);

    const QModelIndex index = library->getIndexOfListId(name);
    QCOMPARE(index.row(), row);
    QCOMPARE(library->nameExists(name), row >= 0);
    if (row >= 0)
        QVERIFY(library->isListIndex(index));
}

void tst_TrelColorLibraryColors::lookUpFindsNothing_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("unknown") << "nothing";
    QTest::newRow("other case") << "{X}";
    QTest::newRow("unbraced") << "x";
    QTest::newRow("uid and value") << QString("{x}") + RED;
    QTest::newRow("the list's name") << "A";
}

void tst_TrelColorLibraryColors::lookUpFindsNothing()
{
    QFETCH(QString, text);
    const Library library;
    library->createColor(TrelColor(RED), "{x}", "A", "origin", "vendor");

    QVERIFY(!library->getIndexOfUid(text).isValid());
    QVERIFY(!library->containsUid(text));
    QVERIFY(!library->getIndexOfExplicitColor(text).isValid());
    QVERIFY(!library->getIndexOfOriginatingPreset(text).isValid());
    QVERIFY(!library->getIndexOfOldPreset(text).isValid());
    QVERIFY(!library->getIndexOfName(text, library.list("A")).isValid());
    QVERIFY(!library->nameExists(text, "A"));
}

void tst_TrelColorLibraryColors::lookUpByName()
{
    const Library library;
    library.add("{1}", "A", "One");
    library.add("{2}", "A", "Two");
    library.add("{3}", "B", "Three");
    const QModelIndex list = library.list("A");

    QCOMPARE(library->getIndexOfName("Two", list), library.row("A", 1));
    QVERIFY(!library->getIndexOfName("two", list).isValid());
    QVERIFY(!library->getIndexOfName("Three", list).isValid());
    QVERIFY(!library->getIndexOfName("One", QModelIndex()).isValid());
    QVERIFY(library->nameExists("Two", "A"));
    QVERIFY(!library->nameExists("TWO", "A"));
    QVERIFY(!library->nameExists("Three", "A"));
    QVERIFY(!library->nameExists("One", "Nowhere"));

    QVERIFY(library->setData(library.row("A", 1), "One", Qt::ToolTipRole));
    QCOMPARE(library->getIndexOfName("One", list), library.row("A", 0));
}

void tst_TrelColorLibraryColors::lookUpByOtherTexts()
{
    const Library library;
    library->createExplicitColor(TrelColor(GREEN), "green");
    for (const char *list : {"A", "B"}) {
        library->createColor(TrelColor(RED), QString(), list, "Presets/Red", QString());
        library.add(QString(), list, "Old");
        library->setData(library.row(list, 1), "preset 7", Item::OldPresetRole);
    }

    QCOMPARE(library->getIndexOfExplicitColor("green"), library.row(EXPLICIT_COLORS, 0));
    QCOMPARE(library->getIndexOfOriginatingPreset("Presets/Red"), library.row("A", 0));
    QCOMPARE(library->getIndexOfOldPreset("preset 7"), library.row("A", 1));
    library->clear("A");
    QCOMPARE(library->getIndexOfOriginatingPreset("Presets/Red"), library.row("B", 0));
    QCOMPARE(library->getIndexOfOldPreset("preset 7"), library.row("B", 1));
}

void tst_TrelColorLibraryColors::getKnownAndUnknown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("hex");
    QTest::addColumn<int>("explicitColors");

    QTest::newRow("known uid") << "{x}" << RED << 0;
    QTest::newRow("known uid, other value") << QString("{x}") + GREEN << RED << 0;
    QTest::newRow("unknown uid, value") << QString(UNKNOWN) + GREEN << GREEN << 0;
    QTest::newRow("unknown uid, value string") << QString(UNKNOWN) + VALUE << "#12569a" << 0;
    QTest::newRow("unknown uid, no value") << UNKNOWN << MAGENTA << 0;
    QTest::newRow("nothing") << "" << MAGENTA << 0;
    QTest::newRow("value") << GREEN << GREEN << 1;
    QTest::newRow("value string") << VALUE << "#12569a" << 1;
    QTest::newRow("name") << "blue" << BLUE << 1;
    QTest::newRow("uid that is a brace") << "}" << BLUE << 0;
}

void tst_TrelColorLibraryColors::getKnownAndUnknown()
{
    QFETCH(QString, text);
    const Library library;
    library.add("{x}", "A", "One");
    library.add("}", "A", "Brace", BLUE);

    QTEST(hexOf(library->get(text)), "hex");
    QTEST(library.count(EXPLICIT_COLORS), "explicitColors");
    QCOMPARE(library.texts("A"), QStringList({"One", "Brace"}));
}

void tst_TrelColorLibraryColors::getUnknownIsMagenta()
{
    const Library library;
    QVERIFY(library->get(UNKNOWN) == TrelColor(Qt::magenta));
    QVERIFY(library->get("") == TrelColor(Qt::magenta));
    QCOMPARE(library.count(EXPLICIT_COLORS), 0);
}

void tst_TrelColorLibraryColors::getOfAValueTwiceKeepsOneExplicitColor()
{
    const Library library;
    const TrelColor first = library->get(VALUE);
    QVERIFY(first == library->get(VALUE));
    QCOMPARE(first.aName(), QString(VALUE));
    QCOMPARE(library.texts(EXPLICIT_COLORS, Item::ExplicitColorRole), QStringList(VALUE));
    QCOMPARE(library.row(EXPLICIT_COLORS, 0).data(Item::ItemTypeRole).toInt(), int(Item::EXPLICIT_COLOR_ITEM));

    QVERIFY(first == library->get(QString(UNKNOWN) + VALUE));
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
}

void tst_TrelColorLibraryColors::getReturnsTheStoredExplicitColor()
{
    const Library library;
    library->createExplicitColor(TrelColor(BLUE), RED);
    QCOMPARE(hexOf(library->get(RED)), QString(BLUE));
    QCOMPARE(hexOf(library->get(QString(UNKNOWN) + RED)), QString(RED));
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
}

void tst_TrelColorLibraryColors::getOfAnUnreadableValue()
{
    const Library library;
    expectWarning(QString(NAME_WARNING) + "no colour'");
    QVERIFY(!library->get("no colour").isValid());
    QVERIFY(!library->get("no colour").isValid());
    QCOMPARE(library.texts(EXPLICIT_COLORS, Item::ExplicitColorRole), QStringList("no colour"));
}

void tst_TrelColorLibraryColors::getBringsExplicitColorsBack()
{
    const Library library;
    library->removeRows(0, 1, library->rootIndex());
    QCOMPARE(library.texts(), QStringList(PROJECT_SWATCHES));

    QCOMPARE(hexOf(library->get(RED)), QString(RED));
    QCOMPARE(library.texts(), QStringList({PROJECT_SWATCHES, EXPLICIT_COLORS}));
    QCOMPARE(library.list(EXPLICIT_COLORS).data(Item::ListStateRole).toInt(), 0);
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
}

void tst_TrelColorLibraryColors::getOfAUidWithoutBracesReadsAValue()
{
    const Library library;
    library.add("red", "A", "One", BLUE);
    QCOMPARE(hexOf(library->get("red")), QString(RED));
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
    QVERIFY(library->containsUid("red"));
}

void tst_TrelColorLibraryColors::getOfASharedUid()
{
    const Library library;
    library.add("{x}", "A", "first", RED);
    library.add("{x}", "A", "second", GREEN);
    library.add("{x}", "B", "third", BLUE);
    QCOMPARE(hexOf(library->get("{x}")), QString(GREEN));
    library->clear("A");
    QCOMPARE(hexOf(library->get("{x}")), QString(BLUE));
}

void tst_TrelColorLibraryColors::getQColor()
{
    const Library library;
    library.add("{x}", "A", "One", "#80102030");
    library->createColor(TrelColor::fromxyY(0.08, 0.83, 1.0), "{wide}", "A", "", "");

    QCOMPARE(library->getQColor("{x}"), QColor(0x10, 0x20, 0x30, 0x80));
    QCOMPARE(library->getQColor(UNKNOWN), QColor(255, 0, 255));
    QCOMPARE(library->getQColor("{wide}"), TrelColor::fromxyY(0.08, 0.83, 1.0).getQColor(true));
    QCOMPARE(library->getQColor(BLUE), QColor(0, 0, 255));
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
}

void tst_TrelColorLibraryColors::setWritesOneColor()
{
    const Library library;
    library->createColor(TrelColor(RED), "{x}", "A", "origin", "vendor");
    library.add("{y}", "A", "Two", GREEN);
    Events events;

    QVERIFY(library->set("{x}", TrelColor(BLUE)));
    QVERIFY(events.take().contains("changed A/Color"));
    QCOMPARE(hexOf(library->get("{x}")), QString(BLUE));
    QCOMPARE(hexOf(library->get("{y}")), QString(GREEN));
    QCOMPARE(library.texts("A"), QStringList({"Color", "Two"}));
    QCOMPARE(library.text("{x}", Item::OriginatingPresetRole), QString("origin"));
    QCOMPARE(library.text("{x}", Item::VendorIdRole), QString("vendor"));

    QVERIFY(library->set(QString("{y}") + VALUE, TrelColor(MAGENTA)));
    QCOMPARE(hexOf(library->get("{y}")), QString(MAGENTA));
    QCOMPARE(library.count("A"), 2);
}

void tst_TrelColorLibraryColors::setRefuses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");

    QTest::newRow("unknown uid") << UNKNOWN << BLUE;
    QTest::newRow("unknown uid with a value") << QString(UNKNOWN) + RED << BLUE;
    QTest::newRow("empty") << "" << BLUE;
    QTest::newRow("invalid colour") << "{x}"
                                    << "";
}

void tst_TrelColorLibraryColors::setRefuses()
{
    QFETCH(QString, text);
    QFETCH(QString, value);
    const Library library;
    library.add("{x}", "A", "One");
    library->createExplicitColor(TrelColor(RED), RED);

    QVERIFY(!library->set(text, value.isEmpty() ? TrelColor() : TrelColor(value)));
    QCOMPARE(hexOf(library->get("{x}")), QString(RED));
    QCOMPARE(hexOf(library->get(RED)), QString(RED));
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "A"}));
    QCOMPARE(library.count("A") + library.count(EXPLICIT_COLORS), 2);
}

void tst_TrelColorLibraryColors::colorsAndUidsInRowOrder()
{
    const Library library;
    QVERIFY(library->getColors("A").isEmpty());
    QVERIFY(library->getColorUids("A").isEmpty());
    QVERIFY(!library->nameExists("A"));

    library.add("{2}", "A", "Two", GREEN);
    library.add("{1}", "A", "One", RED);
    library.add("{2}", "A", "Again", BLUE);
    library.add("{3}", "B", "Three", MAGENTA);
    QStringList colors;
    const QList<TrelColor> list = library->getColors("A");
    for (const TrelColor &color : list)
        colors << hexOf(color);
    QCOMPARE(colors, QStringList({GREEN, RED, BLUE}));
    QCOMPARE(library->getColorUids("A"), QStringList({"{2}", "{1}", "{2}"}));
    QVERIFY(library->getColors(PROJECT_SWATCHES).isEmpty());

    library->createExplicitColor(TrelColor(RED), "one");
    library->createExplicitColor(TrelColor(BLUE), "two");
    QCOMPARE(int(library->getColors(EXPLICIT_COLORS).size()), 2);
    QCOMPARE(hexOf(library->getColors(EXPLICIT_COLORS).last()), QString(BLUE));
}

void tst_TrelColorLibraryColors::createColorNames()
{
    const Library library;
    const auto create = [&library] { library->createColor(TrelColor(RED), "", "A", "", ""); };
    for (int i = 0; i < 3; ++i)
        create();
    QCOMPARE(library.texts("A"), QStringList({"Color", "Color 2", "Color 3"}));

    library->removeRows(1, 1, library.list("A"));
    create();
    QCOMPARE(library.texts("A"), QStringList({"Color", "Color 3", "Color 2"}));
    library->removeRows(0, 1, library.list("A"));
    create();
    create();
    QCOMPARE(library.texts("A"), QStringList({"Color 3", "Color 2", "Color", "Color 4"}));

    library.add("{c}", "B", "color");
    library->createColor(TrelColor(RED), "", "B", "", "");
    QCOMPARE(library.texts("B"), QStringList({"color", "Color"}));
}

void tst_TrelColorLibraryColors::createColorFields()
{
    const Library library;
    library->createColorList("Mine", true);
    library->createColor(TrelColor(VALUE), "{x}", "Mine", "Presets/Red", "V 12");
    library->createColor(TrelColor(VALUE), "{y}", "A", "", "");

    QCOMPARE(library.text("{x}", Item::OriginatingPresetRole), QString("Presets/Red"));
    QCOMPARE(library.text("{x}", Item::VendorIdRole), QString("V 12"));
    QCOMPARE(library.text("{x}", Item::ItemTypeRole), QString::number(Item::UID_COLOR_ITEM));
    QVERIFY(library->getIndexOfUid("{x}").data(Item::CanBeModifiedRole).toBool());
    QCOMPARE(library->get("{x}").aName(), QString(VALUE));
    QCOMPARE(library.text("{y}", Item::OriginatingPresetRole), QString());
    QCOMPARE(library.text("{y}", Item::VendorIdRole), QString());
    QVERIFY(!library->getIndexOfUid("{y}").data(Item::CanBeModifiedRole).toBool());
}

void tst_TrelColorLibraryColors::createColorUid()
{
    const Library library;
    QCOMPARE(library->createColor(TrelColor(RED), "any text", "A", "", ""), QString("any text"));
    const QString first = library->createColor(TrelColor(RED), "", "A", "", "");
    const QString second = library.add("", "A", "One");
    for (const QString &uid : {first, second}) {
        QCOMPARE(int(uid.size()), 38);
        QVERIFY(!QUuid(uid).isNull());
        QCOMPARE(QUuid(uid).toString(), uid);
    }
    QVERIFY(first != second);
    QCOMPARE(library->getColorUids("A"), QStringList({"any text", first, second}));
}

void tst_TrelColorLibraryColors::createColorEvents()
{
    const Library library;
    library.add("{1}", "A", "One");
    Events events;
    library->createColor(TrelColor(RED), "{2}", "A", "", "");
    QCOMPARE(events.take(), QStringList({"inserting A 1-1", "inserted A 1-1", "changed A", "added to A"}));
}

void tst_TrelColorLibraryColors::createColorInAMissingListEvents()
{
    const Library library;
    Events events;
    library->createColor(TrelColor(RED), "{1}", "A", "", "");
    QCOMPARE(events.take(), QStringList({"inserting root 2-3", "inserted root 2-3", "changed root", "changed A",
                                         "inserting A 0-0", "inserted A 0-0", "changed A", "added to A"}));
}

void tst_TrelColorLibraryColors::createColorSavesBeforeItAnnounces()
{
    const Writes writes;
    QVector<int> writesSince; // outlives the library, which announces its end
    const Library library;
    library->loadUserColors(QString());
    library->createColorList("Mine", true);
    Writes::take();
    const auto note = [&writesSince] { writesSince << Writes::take(); };
    connect(library.get(), &QAbstractItemModel::rowsInserted, this, note);
    connect(library.get(), &QAbstractItemModel::dataChanged, this, note);
    connect(library.get(), &TrelColorLibrary::addedColorToList, this, note);

    library->createColor(TrelColor(RED), "{x}", "Mine", "", "");
    QCOMPARE(writesSince, QVector<int>({0, 1, 0}));
}

void tst_TrelColorLibraryColors::createExplicitColor()
{
    const Library library;
    library->createExplicitColor(TrelColor(RED), "one");
    Events events;
    QCOMPARE(library->createExplicitColor(TrelColor(BLUE), "two"), QString("two"));
    const QStringList log = events.take();
    QCOMPARE(log.mid(0, 2), QStringList({"inserting Explicit Colors 1-1", "inserted Explicit Colors 1-1"}));

    const QModelIndex index = library->getIndexOfExplicitColor("two");
    QCOMPARE(index, library.row(EXPLICIT_COLORS, 1));
    QCOMPARE(index.data(Item::ItemTypeRole).toInt(), int(Item::EXPLICIT_COLOR_ITEM));
    QCOMPARE(index.data(Item::UidRole).toString(), QString());
    QCOMPARE(index.data(Qt::EditRole).toString(), QString());
    QCOMPARE(hexOf(library->get("two")), QString(BLUE));

    library->createExplicitColor(TrelColor(GREEN), "two");
    QCOMPARE(library.count(EXPLICIT_COLORS), 3);
    QCOMPARE(hexOf(library->get("two")), QString(GREEN));
}

void tst_TrelColorLibraryColors::createColorWithNameMakesItUnique_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("result");

    QTest::newRow("free") << QStringList{} << "Red"
                          << "Red";
    QTest::newRow("taken") << QStringList{"Red"} << "Red"
                           << "Red 2";
    QTest::newRow("taken twice") << QStringList{"Red", "Red 2"} << "Red"
                                 << "Red 3";
    QTest::newRow("gap") << QStringList{"Red", "Red 3"} << "Red"
                         << "Red 2";
    QTest::newRow("ten") << QStringList{"Red", "Red 2", "Red 3", "Red 4", "Red 5", "Red 6", "Red 7", "Red 8", "Red 9"}
                         << "Red"
                         << "Red 10";
    QTest::newRow("numbered, free") << QStringList{"Red"} << "Red 2"
                                    << "Red 2";
    QTest::newRow("numbered, taken") << QStringList{"Red", "Red 2"} << "Red 2"
                                     << "Red 2 2";
    QTest::newRow("other case") << QStringList{"red"} << "Red"
                                << "Red";
    QTest::newRow("padded number does not count") << QStringList{"Red", "Red 02"} << "Red"
                                                  << "Red 2";
    QTest::newRow("%1, free") << QStringList{} << "%1"
                              << "%1";
    QTest::newRow("%1, taken") << QStringList{"%1"} << "%1"
                               << "%1 2";
    QTest::newRow("%1 and %2") << QStringList{"50 %1 of %2"} << "50 %1 of %2"
                               << "50 %1 of %2 2";
    QTest::newRow("%2, taken twice") << QStringList{"%2", "%2 2"} << "%2"
                                     << "%2 3";
    QTest::newRow("spaces") << QStringList{" "} << " "
                            << "  2";
    QTest::newRow("slash and comma") << QStringList{"a/b,c"} << "a/b,c"
                                     << "a/b,c 2";
    QTest::newRow("beyond Latin-1") << QStringList{u8"Žluť"} << u8"Žluť" << u8"Žluť 2";
}

void tst_TrelColorLibraryColors::createColorWithNameMakesItUnique()
{
    QFETCH(QStringList, there);
    QFETCH(QString, name);
    QFETCH(QString, result);
    const Library library;
    for (const QString &old : qAsConst(there))
        library.add("", "A", old);
    library.add("", "B", name);
    QCOMPARE(library.texts("A"), there);

    QCOMPARE(library->createColorWithName(TrelColor(BLUE), name, "{new}", "A", "V 7"), QString("{new}"));
    QCOMPARE(library.texts("A"), there + QStringList(result));
    QCOMPARE(library.text("{new}", Item::VendorIdRole), QString("V 7"));
    QCOMPARE(library.text("{new}", Item::OriginatingPresetRole), QString());
    QCOMPARE(hexOf(library->get("{new}")), QString(BLUE));
}

void tst_TrelColorLibraryColors::createColorWithNameEmpty()
{
    const Library library;
    library.add("{1}", "A", "");
    library.add("{2}", "A", "");
    QCOMPARE(library.texts("A"), QStringList({"Color", "Color 2"}));
}

void tst_TrelColorLibraryColors::odd66_provisionalNameCounts()
{
    const Library library;
    library.add("{1}", "A", "Color");
    QCOMPARE(library.text("{1}"), QString("Color 2"));
    // Now "Color" is free again for the provisional name, and "Color 2" is taken.
    library.add("{2}", "A", "Color");
    QCOMPARE(library.text("{2}"), QString("Color 3"));

    library->createColor(TrelColor(RED), "{3}", "B", "", "");
    library.add("{4}", "B", "Color 2");
    QCOMPARE(library.text("{4}"), QString("Color 2 2"));
}

void tst_TrelColorLibraryColors::createColorWithNameUnderAUsedUid()
{
    const Library library;
    library.add("{x}", "A", "One");
    library.add("{x}", "A", "One");
    QCOMPARE(library.texts("A"), QStringList({"One 2", "Color"}));
}

void tst_TrelColorLibraryColors::handleInsertColor()
{
    const Library library;
    library->handleInsertColor("{x}", "One", VALUE, "", "A", "V 1");
    library->handleInsertColor("", "One", RED, "", "A", "");
    QCOMPARE(library.texts("A"), QStringList({"One", "One 2"}));
    QCOMPARE(library->get("{x}").aName(), QString(VALUE));
    QCOMPARE(library.text("{x}", Item::VendorIdRole), QString("V 1"));
    QCOMPARE(library.texts("A", Item::UidRole).last().size(), 38);

    QVERIFY(QMetaObject::invokeMethod(library.get(), "handleInsertColor", Q_ARG(QString, "{y}"), Q_ARG(QString, "Two"),
                                      Q_ARG(QString, BLUE), Q_ARG(QString, ""), Q_ARG(QString, "A"),
                                      Q_ARG(QString, "")));
    QCOMPARE(library.text("{y}"), QString("Two"));
    QCOMPARE(hexOf(library->get("{y}")), QString(BLUE));
}

void tst_TrelColorLibraryColors::odd68_handleInsertColorIgnoresOriginatingPreset()
{
    const Library library;
    library->handleInsertColor("{x}", "One", RED, "Presets/Red", "A", "V 1");
    QCOMPARE(library.text("{x}", Item::OriginatingPresetRole), QString());
    QCOMPARE(library.text("{x}", Item::VendorIdRole), QString("V 1"));
    QVERIFY(!library->getIndexOfOriginatingPreset("Presets/Red").isValid());
}

void tst_TrelColorLibraryColors::rename_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("keepOrigin");
    QTest::addColumn<QString>("returned");
    QTest::addColumn<QString>("row"); // name, originating preset and vendor afterwards

    QTest::newRow("new name") << "{x}"
                              << "New" << false << "New"
                              << "New,,";
    QTest::newRow("new name, origin kept") << "{x}"
                                           << "New" << true << "New"
                                           << "New,Presets/Red,V 1";
    QTest::newRow("other case") << "{x}"
                                << "SIBLING" << false << "SIBLING"
                                << "SIBLING,,";
    QTest::newRow("name in another list") << "{x}"
                                          << "Elsewhere" << false << "Elsewhere"
                                          << "Elsewhere,,";
    QTest::newRow("empty name") << "{x}"
                                << "" << false << ""
                                << "Color,Presets/Red,V 1";
    QTest::newRow("empty name, origin kept") << "{x}"
                                             << "" << true << ""
                                             << "Color,Presets/Red,V 1";
    QTest::newRow("unknown uid") << UNKNOWN << "New" << false << ""
                                 << "Color,Presets/Red,V 1";
    QTest::newRow("unknown uid, origin kept") << UNKNOWN << "New" << true << ""
                                              << "Color,Presets/Red,V 1";
    QTest::newRow("uid and value is no uid") << "{x}#ff0000"
                                             << "New" << false << ""
                                             << "Color,Presets/Red,V 1";
}

void tst_TrelColorLibraryColors::rename()
{
    QFETCH(QString, uid);
    QFETCH(QString, name);
    QFETCH(bool, keepOrigin);
    const Library library;
    library->createColor(TrelColor(RED), "{x}", "A", "Presets/Red", "V 1");
    library.add("{y}", "A", "sibling");
    library.add("{z}", "B", "Elsewhere");

    QTEST(library->rename(uid, name, keepOrigin), "returned");
    QTEST(QStringList({library.text("{x}"), library.text("{x}", Item::OriginatingPresetRole),
                       library.text("{x}", Item::VendorIdRole)})
              .join(','),
          "row");
    QCOMPARE(library.text("{y}"), QString("sibling"));
    QCOMPARE(library->getColorUids("A"), QStringList({"{x}", "{y}"}));
}

void tst_TrelColorLibraryColors::renameEvents()
{
    const Library library;
    library.add("{x}", "A", "One");
    Events events;
    library->rename("{x}", "Two", false);
    QCOMPARE(events.take(), QStringList({"changed A/Two", "changed A/Two"}));
    library->rename("{x}", "Three", true);
    QCOMPARE(events.take(), QStringList({"changed A/Three", "changed A/Three", "changed A/Three", "changed A/Three"}));
    library->rename(UNKNOWN, "Four", true);
    QCOMPARE(events.take(), QStringList());
}

void tst_TrelColorLibraryColors::odd67_refusedRenameReturnsTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("keepOrigin");

    QTest::newRow("sibling's name") << "Sibling" << false;
    QTest::newRow("sibling's name, origin kept") << "Sibling" << true;
    QTest::newRow("own name") << "Color" << false;
    QTest::newRow("own name, origin kept") << "Color" << true;
}

void tst_TrelColorLibraryColors::odd67_refusedRenameReturnsTheName()
{
    QFETCH(QString, name);
    QFETCH(bool, keepOrigin);
    const Library library;
    library->createColor(TrelColor(RED), "{x}", "A", "Presets/Red", "V 1");
    library.add("{y}", "A", "Sibling");

    QCOMPARE(library->rename("{x}", name, keepOrigin), name);
    QCOMPARE(library.texts("A"), QStringList({"Color", "Sibling"}));
    QCOMPARE(library.text("{x}", Item::OriginatingPresetRole), QString("Presets/Red"));
    QCOMPARE(library.text("{x}", Item::VendorIdRole), QString("V 1"));
}

void tst_TrelColorLibraryColors::remove()
{
    const Library library;
    library.add("{1}", "A", "One");
    library.add("{2}", "A", "Two", GREEN);
    library.add("{2}", "B", "Zwei", BLUE);
    Events events;

    QVERIFY(library->remove("{2}"));
    QCOMPARE(events.take(), QStringList({"removing A 1-1", "removed A 1-1", "changed A"}));
    QCOMPARE(library.texts("A"), QStringList("One"));
    QCOMPARE(hexOf(library->get("{2}")), QString(BLUE));
    QVERIFY(library->remove("{2}"));
    QVERIFY(!library->containsUid("{2}"));
    QCOMPARE(hexOf(library->get("{2}")), QString(MAGENTA));
    events.take();

    for (const char *uid : {"{2}", UNKNOWN, "", "One", "{1}#ff0000"})
        QVERIFY2(!library->remove(uid), uid);
    QCOMPARE(events.take(), QStringList());
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "A", "B"}));
}

void tst_TrelColorLibraryColors::clear()
{
    const Library library;
    for (const char *name : {"One", "Two", "Three"})
        library.add(QString("{%1}").arg(name), "A", name);
    library.add("{b}", "B", "Uno");
    library->get(RED);

    QVERIFY(library->clear("A"));
    QCOMPARE(library.count("A"), 0);
    QVERIFY(!library->containsUid("{Two}"));
    QCOMPARE(hexOf(library->get("{Two}")), QString(MAGENTA));
    QCOMPARE(library.texts("B"), QStringList("Uno"));
    QVERIFY(library->clear(EXPLICIT_COLORS));
    QCOMPARE(library.count(EXPLICIT_COLORS), 0);
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "A", "B"}));

    QVERIFY(!library->clear("Nowhere"));
    QCOMPARE(library.texts("B"), QStringList("Uno"));
    library.add("{1}", "A", "One");
    QCOMPARE(library.texts("A"), QStringList("One"));
}

void tst_TrelColorLibraryColors::getName_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<int>("descriptor");
    QTest::addColumn<QString>("text");

    QTest::newRow("name") << "{x}" << 1 << "Color";
    QTest::newRow("value string") << "{x}" << 2 << VALUE;
    QTest::newRow("hexadecimal") << "{x}" << 3 << "#12569a";
    QTest::newRow("vendor") << "{x}" << 4 << "V 1";
    QTest::newRow("no vendor") << "{y}" << 4 << "";
    QTest::newRow("descriptor 0") << "{x}" << 0 << "";
    QTest::newRow("descriptor 5") << "{x}" << 5 << "";
    QTest::newRow("descriptor -1") << "{x}" << -1 << "";
    for (const int descriptor : {1, 2, 3, 4})
        QTest::newRow(qPrintable(QString("unknown uid, %1").arg(descriptor))) << UNKNOWN << descriptor << "";
    QTest::newRow("empty uid") << "" << 1 << "";
}

void tst_TrelColorLibraryColors::getName()
{
    QFETCH(QString, uid);
    QFETCH(int, descriptor);
    const Library library;
    library->createColor(TrelColor(VALUE), "{x}", "A", "", "V 1");
    library.add("{y}", "A", "One");
    library->get(RED);
    QTEST(library->getName(uid, descriptor), "text");
}

void tst_TrelColorLibraryColors::alternativeDescriptor()
{
    const Library library;
    library->createColor(TrelColor(VALUE), "{x}", "A", "", "V 1");
    library.add("{y}", "A", "One");
    const auto text = [&library](const char *uid, int descriptor) {
        return library->getAlternativeColorDescriptor(uid, TrelColorLibrary::ColorDescriptor(descriptor));
    };
    QCOMPARE(text("{x}", 1), QString("Color"));
    QCOMPARE(text("{x}", 2), QString(VALUE));
    QCOMPARE(text("{x}", 3), QString("#12569a"));
    QCOMPARE(text("{x}", 4), QString("V 1"));
    QCOMPARE(text("{y}", 4), QString("One"));
    QCOMPARE(text("{y}", 99), QString("One"));
    QCOMPARE(text(UNKNOWN, 1), QString());
    QCOMPARE(text(UNKNOWN, 4), QString());
}

void tst_TrelColorLibraryColors::createNewLibraryIfNecessary()
{
    const Library library;
    QCOMPARE(library.list(EXPLICIT_COLORS).data(Item::ListStateRole).toInt(), 0);
    QCOMPARE(library.list(PROJECT_SWATCHES).data(Item::ListStateRole).toInt(), 1);
    Events events;

    const QModelIndex plain = library->createNewLibraryIfNecessary("Plain", false);
    QCOMPARE(events.take(), QStringList({"inserting root 2-3", "inserted root 2-3", "changed root", "changed Plain"}));
    QCOMPARE(plain, library->index(2, 0, library->rootIndex()));
    QCOMPARE(plain.data(Item::ListStateRole).toInt(), 1);
    QVERIFY(!plain.data(Item::CanBeModifiedRole).toBool());

    const QModelIndex flagged = library->createNewLibraryIfNecessary("Flagged", true);
    QCOMPARE(events.take(), QStringList({"inserting root 3-4", "inserted root 3-4", "changed root", "changed Flagged",
                                         "changed Flagged"}));
    QCOMPARE(flagged.row(), 3);
    QCOMPARE(flagged.data(Item::ListStateRole).toInt(), 0);
    QCOMPARE(flagged.data(Item::ItemTypeRole).toInt(), int(Item::LIST_ITEM));
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "Plain", "Flagged"}));
}

void tst_TrelColorLibraryColors::createNewLibraryIfNecessaryFindsTheOldOne()
{
    const Library library;
    library.add("{1}", "A", "One");
    Events events;
    QCOMPARE(library->createNewLibraryIfNecessary("A", true), library.list("A"));
    QCOMPARE(library->createNewLibraryIfNecessary(EXPLICIT_COLORS, false).row(), 0);
    QCOMPARE(events.take(), QStringList());
    QCOMPARE(library.list("A").data(Item::ListStateRole).toInt(), 1);
    QCOMPARE(library.list(EXPLICIT_COLORS).data(Item::ListStateRole).toInt(), 0);
    QCOMPARE(library.count("A"), 1);
}

void tst_TrelColorLibraryColors::newColorListName_data()
{
    QTest::addColumn<QStringList>("there");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("result");

    QTest::newRow("free") << QStringList{} << "Reds"
                          << "Reds";
    QTest::newRow("taken") << QStringList{"Reds"} << "Reds"
                           << "Reds 2";
    QTest::newRow("taken twice") << QStringList{"Reds", "Reds 2"} << "Reds"
                                 << "Reds 3";
    QTest::newRow("gap") << QStringList{"Reds", "Reds 3"} << "Reds"
                         << "Reds 2";
    QTest::newRow("fixed list") << QStringList{} << PROJECT_SWATCHES << "Project Swatches 2";
    QTest::newRow("other case") << QStringList{"reds"} << "Reds"
                                << "Reds";
    QTest::newRow("%1, taken") << QStringList{"%1"} << "%1"
                               << "%1 2";
    QTest::newRow("%2 %1, taken twice") << QStringList{"%2 %1", "%2 %1 2"} << "%2 %1"
                                        << "%2 %1 3";
    QTest::newRow("empty, free") << QStringList{} << ""
                                 << "";
    QTest::newRow("empty, taken") << QStringList{""} << ""
                                  << " 2";
}

void tst_TrelColorLibraryColors::newColorListName()
{
    QFETCH(QStringList, there);
    QFETCH(QString, name);
    const Library library;
    for (const QString &list : qAsConst(there))
        library->createNewLibraryIfNecessary(list, false);
    library.add("{1}", "Colours", "Reds");
    const QStringList before = library.texts();

    QTEST(library->getNewColorListName(name), "result");
    QCOMPARE(library.texts(), before);
}

void tst_TrelColorLibraryColors::createColorList_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isUserList");
    QTest::addColumn<QString>("result");

    QTest::newRow("user list") << "New" << true << "New";
    QTest::newRow("preset list") << "New" << false << "New";
    QTest::newRow("user list, name taken") << "A" << true << "A 2";
    QTest::newRow("preset list, name taken") << "A" << false << "A 2";
    QTest::newRow("fixed name") << EXPLICIT_COLORS << true << "Explicit Colors 2";
    QTest::newRow("%1") << "%1" << true << "%1";
}

void tst_TrelColorLibraryColors::createColorList()
{
    QFETCH(QString, name);
    QFETCH(bool, isUserList);
    QFETCH(QString, result);
    const Library library;
    library.add("{1}", "A", "One");

    library->createColorList(name, isUserList);
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "A", result}));
    const QModelIndex index = library.list(result);
    QCOMPARE(index.data(Item::CanBeModifiedRole).toBool(), isUserList);
    QCOMPARE(library->isUserListIndex(index), isUserList);
    QCOMPARE(index.data(Item::ListStateRole).toInt(), 1);
    QCOMPARE(library.count(result), 0);
    QCOMPARE(library.count("A"), 1);
}

void tst_TrelColorLibraryColors::pathOfUid()
{
    const Library library;
    library.add("{x}", "My list", "One");
    library.add("{y}", "a/b", "c/d");
    library->insertRows(0, 1, library.list("My list"));
    library->setData(library.row("My list", 0), "{nameless}", Item::UidRole);

    QCOMPARE(library->pathOfUid("{x}"), QString("My list/One"));
    QCOMPARE(library->pathOfUid("{y}"), QString("a/b/c/d"));
    QCOMPARE(library->pathOfUid("{nameless}"), QString());
    QCOMPARE(library->pathOfUid(UNKNOWN), QString());
}

void tst_TrelColorLibraryColors::swatchIsACopy()
{
    const Library library;
    library->createColor(TrelColor(VALUE), "{x}", "Presets", "older/origin", "V 1");
    library->rename("{x}", "Deep", true);

    const QString uid = library->createNewSwatchUidFromUid("{x}", "Target");
    QCOMPARE(int(uid.size()), 38);
    QCOMPARE(library->getColorUids("Target"), QStringList(uid));
    QCOMPARE(library.text(uid), QString("Deep"));
    QCOMPARE(library.text(uid, Item::OriginatingPresetRole), QString("Presets/Deep"));
    QCOMPARE(library.text(uid, Item::VendorIdRole), QString("V 1"));
    QCOMPARE(library->get(uid).aName(), QString(VALUE));

    QCOMPARE(library.text("{x}"), QString("Deep"));
    QCOMPARE(library.text("{x}", Item::OriginatingPresetRole), QString("older/origin"));
    QVERIFY(library->set("{x}", TrelColor(BLUE)));
    QCOMPARE(library->get(uid).aName(), QString(VALUE));
    QVERIFY(library->createNewSwatchUidFromUid("{x}", "Target") != uid);
    QCOMPARE(library.texts("Target"), QStringList({"Deep", "Deep 2"}));
}

void tst_TrelColorLibraryColors::swatchNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("result");

    QTest::newRow("free") << "Red"
                          << "New"
                          << "Red";
    QTest::newRow("taken") << "Taken"
                           << "Target"
                           << "Taken 2";
    QTest::newRow("taken twice") << "Often"
                                 << "Target"
                                 << "Often 3";
    QTest::newRow("own list") << "Red"
                              << "Presets"
                              << "Red 2";
    QTest::newRow("%1, taken") << "%1"
                               << "Target"
                               << "%1 2";
    QTest::newRow("Color 2, free") << "Color 2"
                                   << "New"
                                   << "Color 2";
    QTest::newRow("the copy's own provisional name") << "Color"
                                                     << "New"
                                                     << "Color 2";
}

void tst_TrelColorLibraryColors::swatchNames()
{
    QFETCH(QString, name);
    QFETCH(QString, target);
    const Library library;
    library->createColor(TrelColor(RED), "{x}", "Presets", "", "");
    library->rename("{x}", name, false);
    for (const char *taken : {"Taken", "Often", "Often 2", "%1"})
        library.add("", "Target", taken);

    const QString uid = library->createNewSwatchUidFromUid("{x}", target);
    QTEST(library.text(uid), "result");
    QCOMPARE(library.text(uid, Item::OriginatingPresetRole), "Presets/" + name);
    QCOMPARE(library.text("{x}"), name);
}

void tst_TrelColorLibraryColors::swatchOfANamelessColor()
{
    const Library library;
    library.item(PROJECT_SWATCHES)->set("{x}", TrelColor(BLUE));
    const QString uid = library->createNewSwatchUidFromUid("{x}", "A");
    QCOMPARE(library.text(uid), QString("Color"));
    QCOMPARE(library.text(uid, Item::OriginatingPresetRole), QString());
    QCOMPARE(hexOf(library->get(uid)), QString(BLUE));
}

void tst_TrelColorLibraryColors::exposedTwiceIsCopiedOnce()
{
    const Library library;
    library->createColor(TrelColor(VALUE), "{x}", "Presets", "", "V 1");
    library->rename("{x}", "Deep", true);
    library.add("{y}", "Presets", "Other");

    const QString uid = library->getExposableUidFromUid("{x}");
    QCOMPARE(int(uid.size()), 38);
    QCOMPARE(library->getExposableUidFromUid("{x}"), uid);
    QCOMPARE(library->getColorUids(PROJECT_SWATCHES), QStringList(uid));
    QCOMPARE(library.text(uid), QString("Deep"));
    QCOMPARE(library.text(uid, Item::OriginatingPresetRole), QString("Presets/Deep"));
    QCOMPARE(library.text(uid, Item::VendorIdRole), QString("V 1"));
    QCOMPARE(library->get(uid).aName(), QString(VALUE));

    const QString other = library->getExposableUidFromUid("{y}");
    QCOMPARE(library->getColorUids(PROJECT_SWATCHES), QStringList({uid, other}));
    QCOMPARE(library.texts("Presets"), QStringList({"Deep", "Other"}));
}

void tst_TrelColorLibraryColors::exposedFromTheProject()
{
    const Library library;
    library.add("{x}", PROJECT_SWATCHES, "One");
    QCOMPARE(library->getExposableUidFromUid("{x}"), QString("{x}"));
    QCOMPARE(library.count(PROJECT_SWATCHES), 1);
}

void tst_TrelColorLibraryColors::exposedCopyOfACopy()
{
    const Library library;
    library.add("{x}", "Presets", "Red");
    const QString copy = library->createNewSwatchUidFromUid("{x}", "Mine");
    // Both have the path "Presets/Red", and the copy is the first colour from there.
    QCOMPARE(library->getExposableUidFromUid(copy), copy);
    QCOMPARE(library->getExposableUidFromUid("{x}"), copy);
    QCOMPARE(library.count(PROJECT_SWATCHES), 0);
}

void tst_TrelColorLibraryColors::exposedWithOriginatingPreset()
{
    const Library library;
    library->createColor(TrelColor(RED), "{swatch}", PROJECT_SWATCHES, "Vendor/Red", "");
    library->createColor(TrelColor(RED), "{x}", "Mine", "Vendor/Red", "");
    QCOMPARE(library->getExposableUidFromUid("{x}"), QString("{swatch}"));
    QCOMPARE(library.count(PROJECT_SWATCHES), 1);

    // Without a preset of its own, a colour goes by its path.
    library.add("{y}", "Vendor", "Red");
    QCOMPARE(library->getExposableUidFromUid("{y}"), QString("{swatch}"));
}

void tst_TrelColorLibraryColors::emptyAndUnknownUids_data()
{
    QTest::addColumn<QString>("uid");
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("unknown") << UNKNOWN;
}

void tst_TrelColorLibraryColors::emptyAndUnknownUids()
{
    QFETCH(QString, uid);
    const Library library;
    library->createExplicitColor(TrelColor(RED), RED); // without a uid
    library->insertRows(0, 1, library.list(PROJECT_SWATCHES));
    library->setData(library.row(PROJECT_SWATCHES, 0), "Uidless", Qt::EditRole);
    library.add("{x}", "A", "One");
    Events events;

    QCOMPARE(library->rename(uid, "New", false), QString());
    QCOMPARE(library->rename(uid, "New", true), QString());
    QVERIFY(!library->remove(uid));
    QVERIFY(!library->set(uid, TrelColor(BLUE)));
    QCOMPARE(library->pathOfUid(uid), QString());
    QCOMPARE(library->createNewSwatchUidFromUid(uid, "A"), QString());
    QCOMPARE(library->createNewSwatchUidFromUid(uid, "New list"), QString());
    QCOMPARE(library->getExposableUidFromUid(uid), QString());
    QCOMPARE(library->getName(uid, 1), QString());
    QCOMPARE(hexOf(library->get(uid)), QString(MAGENTA));

    QCOMPARE(events.take(), QStringList());
    QCOMPARE(library.texts(), QStringList({EXPLICIT_COLORS, PROJECT_SWATCHES, "A"}));
    QCOMPARE(library.texts(PROJECT_SWATCHES), QStringList("Uidless"));
}

void tst_TrelColorLibraryColors::listsOfTheSameName()
{
    const Library library;
    library.add("{a}", "A", "One");
    library.add("{b}", "B", "Uno", BLUE);
    const QModelIndex second = library.list("B");
    QVERIFY(library->setData(second, "A", Qt::ToolTipRole));

    QCOMPARE(library->getIndexOfListId("A").row(), 2);
    QVERIFY(!library->nameExists("B"));
    QCOMPARE(library->createNewLibraryIfNecessary("A", false).row(), 2);
    QCOMPARE(library->getNewColorListName("A"), QString("A 2"));
    QCOMPARE(library->getColorUids("A"), QStringList("{a}"));
    QCOMPARE(hexOf(library->get("{b}")), QString(BLUE));
    QCOMPARE(library->pathOfUid("{b}"), QString("A/Uno"));
    QCOMPARE(library->getIndexOfUid("{b}").internalPointer(), library->index(0, 0, second).internalPointer());
    QCOMPARE(library->parent(library->getIndexOfUid("{b}")).row(), 2);

    library.add("{c}", "A", "Three");
    QCOMPARE(library->getColorUids("A"), QStringList({"{a}", "{c}"}));
    QCOMPARE(library->rename("{b}", "Due", false), QString("Due"));
    QCOMPARE(library->index(0, 0, second).data(Qt::EditRole).toString(), QString("Due"));
    QCOMPARE(library.texts("A"), QStringList({"One", "Three"}));
    QVERIFY(library->clear("A"));
    QCOMPARE(library->rowCount(second), 1);
}

void tst_TrelColorLibraryColors::removalUnderListsOfTheSameName()
{
    const Library library;
    library.add("{a}", "A", "One");
    library.add("{b}", "B", "Uno");
    library.add("{c}", "B", "Due");
    library.add("{d}", "B", "Tre");
    const QModelIndex second = library.list("B");
    QVERIFY(library->setData(second, "A", Qt::ToolTipRole));

    QVERIFY(library->remove("{b}"));
    QCOMPARE(library->getColorUids("A"), QStringList("{a}"));
    QVERIFY(!library->containsUid("{b}"));
    QVERIFY(library->remove("{d}")); // in a row that the first list does not have
    QVERIFY(!library->containsUid("{d}"));
    QVERIFY(library->containsUid("{a}"));
    QCOMPARE(library->index(0, 0, second).data(Item::UidRole).toString(), QString("{c}"));
    QCOMPARE(library->rowCount(second), 1);
}

void tst_TrelColorLibraryColors::uidChangedBehindTheIndex()
{
    const Library library;
    library.add("{old}", "A", "One", BLUE);
    QVERIFY(library->setData(library.row("A", 0), "{new}", Item::UidRole));

    QVERIFY(library->containsUid("{new}"));
    QVERIFY(!library->containsUid("{old}"));
    QCOMPARE(library->getColorUids("A"), QStringList("{new}"));
    QCOMPARE(hexOf(library->get("{old}")), QString(BLUE));
    QCOMPARE(hexOf(library->get("{new}")), QString(MAGENTA));
    QCOMPARE(library->rename("{old}", "Two", false), QString());
    QCOMPARE(library->rename("{new}", "Two", false), QString("Two"));
    QCOMPARE(library->pathOfUid("{new}"), QString("A/Two"));

    library.add("{old}", "A", "Later", GREEN);
    QCOMPARE(hexOf(library->get("{old}")), QString(GREEN));
    QVERIFY(library->remove("{new}"));
    QCOMPARE(hexOf(library->get("{old}")), QString(GREEN));
    QVERIFY(library->setData(library.row("A", 0), "{newer}", Item::UidRole));
    QVERIFY(library->remove("{newer}"));
    QCOMPARE(hexOf(library->get("{old}")), QString(MAGENTA));
}

void tst_TrelColorLibraryColors::nameChangedBehindTheIndex()
{
    const Library library;
    library.add("{1}", "A", "One");
    library.add("{2}", "A", "Two");
    QVERIFY(library->setData(library.row("A", 1), "One", Qt::ToolTipRole));
    library.add("{3}", "A", "Two");
    library.add("{4}", "A", "One");
    QCOMPARE(library.texts("A"), QStringList({"One", "One", "Two", "One 2"}));

    // One of two is still a name in use.
    library->remove("{1}");
    library.add("{5}", "A", "One");
    static_cast<Item *>(library.row("A", 0).internalPointer())->setDisplayName("Free");
    library.add("{6}", "A", "One");
    QCOMPARE(library.texts("A"), QStringList({"Free", "Two", "One 2", "One 3", "One"}));
    QVERIFY(library->nameExists("Free", "A"));

    library->rename("{4}", "Moved", false);
    library.add("{7}", "A", "One");
    QCOMPARE(library.text("{7}"), QString("One 2"));
}

void tst_TrelColorLibraryColors::valueChangedBehindTheIndex()
{
    const Library library;
    library->get(RED);
    QVERIFY(library->setData(library.row(EXPLICIT_COLORS, 0), BLUE, Item::ExplicitColorRole));

    QVERIFY(!library->getIndexOfExplicitColor(RED).isValid());
    QCOMPARE(library->getIndexOfExplicitColor(BLUE), library.row(EXPLICIT_COLORS, 0));
    QCOMPARE(hexOf(library->get(RED)), QString(RED));
    QCOMPARE(library.count(EXPLICIT_COLORS), 1);
    QCOMPARE(hexOf(library->get(BLUE)), QString(BLUE));
    QCOMPARE(library.count(EXPLICIT_COLORS), 2);

    // Under a uid of its own, the colour stays behind its value.
    QVERIFY(library->setData(library.row(EXPLICIT_COLORS, 0), "{x}", Item::UidRole));
    QVERIFY(library->containsUid("{x}"));
    QCOMPARE(hexOf(library->get("{x}")), QString(MAGENTA));
    QCOMPARE(hexOf(library->get(RED)), QString(RED));
    QCOMPARE(library.count(EXPLICIT_COLORS), 2);
}

void tst_TrelColorLibraryColors::colorWithoutIndexEntry()
{
    const Library library;
    library.add("{1}", "A", "One", BLUE);
    library->insertRows(0, 1, library.list("A"));
    const QModelIndex index = library.row("A", 0);
    TrelColor green(GREEN);
    QVERIFY(library->setData(index, "{new}", Item::UidRole));
    QVERIFY(library->setData(index, "New", Qt::EditRole));
    QVERIFY(library->setData(index, QVariant::fromValue<void *>(&green), Item::ColorRole));

    QCOMPARE(library->getIndexOfUid("{new}"), index);
    QCOMPARE(hexOf(library->get("{new}")), QString(MAGENTA));
    const QString copy = library->createNewSwatchUidFromUid("{new}", "B");
    QCOMPARE(hexOf(library->get(copy)), QString(GREEN));
    QVERIFY(library->remove("{new}"));
    QCOMPARE(hexOf(library->get("{1}")), QString(BLUE));
    QCOMPARE(library->getColorUids("A"), QStringList("{1}"));
}

void tst_TrelColorLibraryColors::removalOfOneWithoutIndexEntryKeepsTheEmptyKey()
{
    const Library library;
    library->createExplicitColor(TrelColor(GREEN), QString());
    library->insertRows(1, 1, library.list(EXPLICIT_COLORS));
    library->removeRows(1, 1, library.list(EXPLICIT_COLORS));
    QCOMPARE(library.item(EXPLICIT_COLORS)->childWithExplicitColor(""), library.item(EXPLICIT_COLORS)->child(0));
}

void tst_TrelColorLibraryColors::removalOfTheIndexedOfTwo()
{
    const Library library;
    library.add("{x}", "A", "One", RED);
    library.item("A")->set("{x}", TrelColor(BLUE));
    QCOMPARE(hexOf(library->get("{x}")), QString(BLUE));

    library->removeRows(1, 1, library.list("A"));
    QVERIFY(library->containsUid("{x}"));
    QCOMPARE(hexOf(library->get("{x}")), QString(MAGENTA));
}

void tst_TrelColorLibraryColors::oneEditOneWrite_data()
{
    QTest::addColumn<int>("number");
    for (int i = 0; i < int(std::size(EDITS)); ++i)
        QTest::newRow(EDITS[i].name) << i;
}

void tst_TrelColorLibraryColors::oneEditOneWrite()
{
    QFETCH(int, number);
    const NamedEdit &tested = EDITS[number];
    const Library library;
    library->loadUserColors(QString());
    const Writes writes;
    fillForEdits(library);
    Writes::take();

    tested.edit(library.get());
    QCOMPARE(Writes::take(), tested.writes);
    // No batch is left open.
    library.add("{later}", "Mine", "Later");
    QCOMPARE(Writes::take(), 1);
    QVERIFY(QFile::exists(userFile()));
}

void tst_TrelColorLibraryColors::editInTheHostsBatch_data()
{
    oneEditOneWrite_data();
}

void tst_TrelColorLibraryColors::editInTheHostsBatch()
{
    QFETCH(int, number);
    const NamedEdit &tested = EDITS[number];
    const Library library;
    library->loadUserColors(QString());
    const Writes writes;
    fillForEdits(library);
    Writes::take();

    library->setEditingMultipleColors(true);
    tested.edit(library.get());
    QCOMPARE(Writes::take(), 0);
    tested.edit(library.get());
    library->setEditingMultipleColors(false);
    QCOMPARE(Writes::take(), tested.writes);

    library->setEditingMultipleColors(true);
    tested.edit(library.get());
    library.add("{later}", "Mine", "Later");
    QCOMPARE(Writes::take(), 0);
    library->setEditingMultipleColors(false);
    QCOMPARE(Writes::take(), 1);
    library->setEditingMultipleColors(false);
    QCOMPARE(Writes::take(), 0);
}

void tst_TrelColorLibraryColors::noWriteBeforeLoading_data()
{
    oneEditOneWrite_data();
}

void tst_TrelColorLibraryColors::noWriteBeforeLoading()
{
    QFETCH(int, number);
    const Library library;
    const Writes writes;
    fillForEdits(library);
    EDITS[number].edit(library.get());
    library->setEditingMultipleColors(true);
    EDITS[number].edit(library.get());
    library->setEditingMultipleColors(false);
    QCOMPARE(Writes::take(), 0);
    QVERIFY(!QFile::exists(userFile()));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibraryColors, {})
#include "tst_TrelColorLibraryColors.moc"
