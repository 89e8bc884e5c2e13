#include "PaneTest.h"

#include "SwatchCommands.h"
#include "SwatchFilter.h"
#include "SwatchRows.h"

#include <QAbstractItemModelTester>
#include <QDomDocument>
#include <QFile>
#include <QRandomGenerator>
#include <QUndoStack>

#include <memory>

using Item = TrelColorLibraryItem;

/// Edits of the library under Qt's check of item models, there and back.
class tst_SwatchCommands : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;

private Q_SLOTS:
    void cleanupTestCase();
    void rowsAreTheLibrarys();
    void insertionsAreAnnouncedExactly();
    void libraryGoesFirst();
    void deletedColorsComeBackWhole();
    void restoredColorsAreFoundByUid();
    void moveWithinAList_data();
    void moveWithinAList();
    void moveToAnotherList();
    void renameKeepsTheTiesOnUndo();
    void oldPresetsSurvive();
    void listsComeBackInPlace();
    void lostColorsAreLeftOut();
    void randomEditsAndBack();
    void eachEditWritesOnce();
    void searchAndOrder();
};

namespace {

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

/// Everything of the library, as lines.
QStringList contents()
{
    QStringList lines;
    for (int row = 0; row < library().rowCount(library().rootIndex()); ++row) {
        const QModelIndex list = library().index(row, 0, library().rootIndex());
        lines.append(list.data().toString() + (library().isUserListIndex(list) ? " user" : ""));
        for (int color = 0; color < library().rowCount(list); ++color) {
            const QModelIndex index = library().index(color, 0, list);
            const SwatchRecord record = SwatchRecord::at(index);
            lines.append(
                "  "
                + QStringList({record.uid, record.name, record.color.aName(), record.originatingPreset, record.vendorId,
                               record.oldPreset, index.data(Item::CanBeModifiedRole).toString()})
                      .join("|"));
        }
    }
    return lines;
}

SwatchPlace place(const QString &name)
{
    const QModelIndex index = library().getIndexOfUid("{" + name + "}");
    return {index.parent().data().toString(), index.row(), SwatchRecord::at(index)};
}

SwatchRecord record(const QString &name)
{
    SwatchRecord result;
    result.uid = "{" + name + "}";
    result.name = name;
    result.color = TrelColor("red");
    return result;
}

void addColor(const QString &list, const QString &name)
{
    const QColor color = QColor::fromHsv(int(qHash(name) % 360), 200, 200);
    library().createColorWithName(TrelColor(color), name, "{" + name + "}", list, "V-" + name);
    library().setData(library().getIndexOfUid("{" + name + "}"), "from/" + name, Item::OriginatingPresetRole);
}

QStringList shownIn(const QAbstractItemModel &model, const QModelIndex &parent = QModelIndex())
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names.append(model.index(row, 0, parent).data().toString());
    return names;
}

constexpr auto QTEST_MODE = QAbstractItemModelTester::FailureReportingMode::QtTest;

} // namespace

void tst_SwatchCommands::setUp()
{
    TrelColorLibrary::cleanup();
    library().createColorList("Preset", false);
    library().createColorList("Mine", true);
    library().createColorList("Other", true);
    addColor("Preset", "P");
    for (const char *name : {"A", "B", "C", "D", "E"})
        addColor("Mine", name);
    addColor("Other", "X");
}

void tst_SwatchCommands::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
}

void tst_SwatchCommands::rowsAreTheLibrarys()
{
    SwatchRows rows;
    const QAbstractItemModelTester tester(&rows, QTEST_MODE);
    QCOMPARE(shownIn(rows), QStringList({"Explicit Colors", "Project Swatches", "Preset", "Mine", "Other"}));
    QCOMPARE(shownIn(rows, rows.index(3, 0)), QStringList({"A", "B", "C", "D", "E"}));
    const QModelIndex c = rows.index(2, 1, rows.index(3, 0));
    QCOMPARE(c.data().toString(), QString("V-C"));
    QCOMPARE(rows.mapToSource(c).row(), 2);
    QCOMPARE(rows.mapFromSource(rows.mapToSource(c)), c);
    QCOMPARE(rows.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), QString("Color ID"));
    QVERIFY(!rows.index(0, 0, rows.index(3, 1)).isValid());
    QVERIFY(!rows.index(0, 0, c).isValid());
}

void tst_SwatchCommands::insertionsAreAnnouncedExactly()
{
    SwatchRows rows;
    SwatchFilter filter;
    const QAbstractItemModelTester tester(&rows, QTEST_MODE);
    const QAbstractItemModelTester filterTester(&filter, QTEST_MODE);
    QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
    library().insertRows(1, 2, library().getIndexOfListId("Mine"));
    QCOMPARE(int(inserted.size()), 1);
    QCOMPARE(inserted.first().at(1).toInt(), 1);
    QCOMPARE(inserted.first().at(2).toInt(), 2);
    library().createColorList("New", true);
    QCOMPARE(inserted.last().at(1).toInt(), 5);
    QCOMPARE(inserted.last().at(2).toInt(), 5);
    QCOMPARE(shownIn(filter), QStringList({"Project Swatches", "Preset", "Mine", "Other", "New"}));
    library().removeRows(2, 1, library().rootIndex());
    QCOMPARE(shownIn(filter), QStringList({"Project Swatches", "Mine", "Other", "New"}));
    QCOMPARE(shownIn(filter, filter.index(1, 0)), QStringList({"A", "", "", "B", "C", "D", "E"}));
}

void tst_SwatchCommands::libraryGoesFirst()
{
    SwatchFilter filter;
    QCOMPARE(filter.rowCount(), 4);
    TrelColorLibrary::cleanup();
    QCOMPARE(filter.rowCount(), 0);
    QVERIFY(!filter.toLibrary(QModelIndex()).isValid());
}

void tst_SwatchCommands::deletedColorsComeBackWhole()
{
    SwatchFilter filter;
    const QAbstractItemModelTester tester(&filter, QTEST_MODE);
    const QStringList before = contents();
    QUndoStack stack;
    stack.push(new DeleteColorsCommand({place("D"), place("X"), place("A"), place("B")}));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"C", "E"}));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList());
    stack.undo();
    QCOMPARE(contents(), before);
    stack.redo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"C", "E"}));
    stack.undo();
    QCOMPARE(contents(), before);
}

void tst_SwatchCommands::restoredColorsAreFoundByUid()
{
    QUndoStack stack;
    const QString value = library().get("{B}").aName();
    stack.push(new DeleteColorsCommand({place("B")}));
    stack.undo();
    for (const char *uid : {"{A}", "{B}", "{E}"})
        QVERIFY2(library().get(uid).aName() != TrelColor(Qt::magenta).aName(), uid);
    QCOMPARE(library().get("{B}").aName(), value);
}

void tst_SwatchCommands::moveWithinAList_data()
{
    QTest::addColumn<QStringList>("moved");
    QTest::addColumn<int>("row");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("up") << QStringList("C") << 1 << QStringList({"A", "C", "B", "D", "E"});
    QTest::newRow("down") << QStringList("B") << 4 << QStringList({"A", "C", "D", "B", "E"});
    QTest::newRow("to the end") << QStringList("A") << 5 << QStringList({"B", "C", "D", "E", "A"});
    QTest::newRow("to where it is") << QStringList("C") << 2 << QStringList({"A", "B", "C", "D", "E"});
    QTest::newRow("two, gathered") << QStringList({"A", "D"}) << 2 << QStringList({"B", "A", "D", "C", "E"});
    QTest::newRow("in the order chosen") << QStringList({"D", "A"}) << 0 << QStringList({"D", "A", "B", "C", "E"});
}

void tst_SwatchCommands::moveWithinAList()
{
    QFETCH(QStringList, moved);
    QFETCH(int, row);
    const QStringList before = contents();
    QVector<SwatchPlace> places;
    for (const QString &name : qAsConst(moved))
        places.append(place(name));
    QUndoStack stack;
    stack.push(new MoveColorsCommand(places, "Mine", row));
    QTEST(PaneTest::namesIn("Mine"), "expected");
    stack.undo();
    QCOMPARE(contents(), before);
    stack.redo();
    QTEST(PaneTest::namesIn("Mine"), "expected");
}

void tst_SwatchCommands::moveToAnotherList()
{
    library().createColorWithName(TrelColor("blue"), "B", "{B'}", "Other", "");
    const QStringList before = contents();
    QUndoStack stack;
    stack.push(new MoveColorsCommand({place("B"), place("E")}, "Other", 1));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"A", "C", "D"}));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"X", "B 2", "E", "B"}));
    QCOMPARE(place("B").record.vendorId, QString("V-B"));
    QCOMPARE(place("B").record.originatingPreset, QString("from/B"));
    stack.undo();
    QCOMPARE(contents(), before);
}

void tst_SwatchCommands::renameKeepsTheTiesOnUndo()
{
    const QStringList before = contents();
    QUndoStack stack;
    stack.push(new RenameColorCommand(place("B"), "Sea"));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"A", "Sea", "C", "D", "E"}));
    QCOMPARE(place("B").record.vendorId, QString());
    stack.undo();
    QCOMPARE(contents(), before);
    stack.push(new RenameListCommand("Mine", "Ours"));
    stack.push(new RecolorCommand({place("A"), place("C")}, TrelColor("aYxy;1;0;65535;0.5;0.3;0.3")));
    QCOMPARE(place("C").record.color.aName(), QString("aYxy;1;0;65535;0.500000;0.300000;0.300000"));
    QCOMPARE(place("C").list, QString("Ours"));
    stack.undo();
    stack.undo();
    QCOMPARE(contents(), before);
}

void tst_SwatchCommands::oldPresetsSurvive()
{
    QDomDocument document;
    QDomElement list = document.createElement("ColorLibrary");
    document.appendChild(list);
    for (int i = 0; i < 3; ++i) {
        QDomElement color = document.createElement("Color");
        color.setAttribute("uid", QString("{old%1}").arg(i));
        color.setAttribute("name", "same");
        color.setAttribute("value", "red");
        list.appendChild(color);
    }
    QString error;
    QVERIFY(library().loadDocument(document, error, 0.5, "Kestra"));
    const QStringList before = contents();
    QUndoStack stack;
    stack.push(new DeleteColorsCommand({place("old0")}));
    QVERIFY(contents() != before);
    stack.undo();
    QCOMPARE(contents(), before);
}

void tst_SwatchCommands::listsComeBackInPlace()
{
    SwatchFilter filter;
    const QAbstractItemModelTester tester(&filter, QTEST_MODE);
    const QStringList before = contents();
    QUndoStack stack;
    stack.push(new CreateListCommand("New"));
    stack.push(new CreateColorsCommand("New", -1, {record("n1"), record("n2")}));
    stack.push(new DeleteListsCommand({"Other", "Mine"}));
    QCOMPARE(shownIn(filter), QStringList({"Project Swatches", "Preset", "New"}));
    stack.undo();
    QCOMPARE(shownIn(filter), QStringList({"Project Swatches", "Preset", "Mine", "Other", "New"}));
    QVERIFY(library().isUserListIndex(library().getIndexOfListId("Mine")));
    stack.push(new MoveListCommand("New", 3));
    QCOMPARE(shownIn(filter), QStringList({"Project Swatches", "Preset", "New", "Mine", "Other"}));
    while (stack.canUndo())
        stack.undo();
    QCOMPARE(contents(), before);
}

void tst_SwatchCommands::lostColorsAreLeftOut()
{
    QUndoStack stack;
    stack.push(new RecolorCommand({place("A"), place("B")}, TrelColor("white")));
    stack.push(new RenameColorCommand(place("C"), "Sea"));
    stack.push(new MoveColorsCommand({place("D")}, "Other", 0));
    library().remove("{A}");
    library().remove("{C}");
    library().remove("{D}");
    while (stack.canUndo())
        stack.undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"B", "E"}));
    while (stack.canRedo())
        stack.redo();
    QCOMPARE(place("B").record.color.name8(), QString("#ffffff"));
    library().removeRows(3, 1, library().rootIndex());
    while (stack.canUndo())
        stack.undo();
    QCOMPARE(shownIn(SwatchFilter()), QStringList({"Project Swatches", "Preset", "Other"}));
}

/// Whatever was done, undoing it all gives the library as it was, and doing it again what it became.
void tst_SwatchCommands::randomEditsAndBack()
{
    SwatchFilter filter;
    const QAbstractItemModelTester tester(&filter, QTEST_MODE);
    QRandomGenerator random(20240607);
    const QStringList lists{"Mine", "Other", "Project Swatches"};
    const auto anyPlaces = [&] {
        QVector<SwatchPlace> places;
        for (const QString &list : lists) {
            const QModelIndex index = library().getIndexOfListId(list);
            for (int row = 0; row < library().rowCount(index); ++row) {
                if (random.bounded(4) == 0)
                    places.append({list, row, SwatchRecord::at(library().index(row, 0, index))});
            }
        }
        std::shuffle(places.begin(), places.end(), random);
        return places;
    };
    const QStringList before = contents();
    QUndoStack stack;
    QVector<QStringList> states{before};
    for (int i = 0; i < 120; ++i) {
        const QString list = lists.at(random.bounded(int(lists.size())));
        const int rows = library().rowCount(library().getIndexOfListId(list));
        const QVector<SwatchPlace> places = anyPlaces();
        const int kind = random.bounded(5);
        if (kind == 0 || places.isEmpty())
            stack.push(new CreateColorsCommand(list, random.bounded(-1, rows + 1),
                                               {record(QString("r%1").arg(i)), record(QString("s%1").arg(i))}));
        else if (kind == 1)
            stack.push(new DeleteColorsCommand(places));
        else if (kind == 2)
            stack.push(new MoveColorsCommand(places, list, random.bounded(0, rows + 1)));
        else if (kind == 3)
            stack.push(new RenameColorCommand(places.first(), QString("name %1").arg(i)));
        else
            stack.push(new RecolorCommand(places, TrelColor::fromRgb8(random.bounded(256), 0, 0)));
        states.append(contents());
    }
    for (int i = int(states.size()) - 2; i >= 0; --i) {
        stack.undo();
        QCOMPARE(contents(), states.at(i));
    }
    for (int i = 1; i < states.size(); ++i) {
        stack.redo();
        QCOMPARE(contents(), states.at(i));
    }
}

void tst_SwatchCommands::eachEditWritesOnce()
{
    library().loadUserColors(QString());
    static int saves;
    saves = 0;
    QLoggingCategory::setFilterRules(QString());
    const auto count = [](QtMsgType type, const QMessageLogContext &, const QString &text) {
        saves += type == QtDebugMsg && text.contains("<ColorLibraryList>") ? 1 : 0;
    };
    const QtMessageHandler before = qInstallMessageHandler(count);
    QUndoStack stack;
    stack.push(new CreateListCommand("New"));
    const int afterCreation = saves;
    stack.push(new CreateColorsCommand("New", -1, {record("n1"), record("n2"), record("n3")}));
    const int afterColors = saves;
    stack.push(new MoveColorsCommand({place("A"), place("n2")}, "Other", 0));
    const int afterMove = saves;
    auto *both = new SwatchCommandGroup("both");
    both->add(new RenameListCommand("New", "Newer"));
    both->add(new DeleteColorsCommand({place("B"), place("C")}));
    stack.push(both);
    const int afterGroup = saves;
    stack.undo();
    const int afterUndo = saves;
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules("default.debug=false");
    QCOMPARE(afterCreation, 1);
    QCOMPARE(afterColors, 2);
    QCOMPARE(afterMove, 3);
    QCOMPARE(afterGroup, 4);
    QCOMPARE(afterUndo, 5);
}

void tst_SwatchCommands::searchAndOrder()
{
    library().createColorList("Sorted", true);
    const QPair<const char *, const char *> colors[] = {{"Swatch 10", "#808080"},
                                                        {"swatch 9", "#0000ff"},
                                                        {"Äpfel", "#ff0000"},
                                                        {"Zebra", "#101010"},
                                                        {"Birne", "#00ff00"}};
    for (const auto &[name, value] : colors)
        library().createColorWithName(TrelColor(value), name, "", "Sorted", "");
    SwatchFilter filter;
    const QAbstractItemModelTester tester(&filter, QTEST_MODE);
    const auto sorted = [&] { return shownIn(filter, filter.fromLibrary(library().getIndexOfListId("Sorted"))); };
    filter.setOrder(SwatchFilter::ByHue);
    QCOMPARE(sorted(), QStringList({"Äpfel", "Birne", "swatch 9", "Zebra", "Swatch 10"}));
    filter.setOrder(SwatchFilter::ByName);
    QCOMPARE(sorted().indexOf("swatch 9"), sorted().indexOf("Swatch 10") - 1);
    QCOMPARE(sorted().last(), QString("Zebra"));
    filter.setOrder(SwatchFilter::Arranged);
    QCOMPARE(sorted(), PaneTest::namesIn("Sorted"));

    filter.setSearch("SWATCH 9");
    QCOMPARE(shownIn(filter), QStringList("Sorted"));
    QCOMPARE(sorted(), QStringList("swatch 9"));
    filter.setSearch("#ff00");
    QCOMPARE(sorted(), QStringList("Äpfel"));
    filter.setSearch("mine");
    QCOMPARE(shownIn(filter), QStringList("Mine"));
    QCOMPARE(shownIn(filter, filter.index(0, 0)), QStringList({"A", "B", "C", "D", "E"}));
    library().setData(library().getIndexOfListId("Mine"), "Ours", Qt::EditRole);
    QCOMPARE(shownIn(filter), QStringList());
    filter.setSearch("V-c");
    QCOMPARE(shownIn(filter, filter.index(0, 0)), QStringList("C"));
    library().createColorWithName(TrelColor("red"), "v-c too", "", "Other", "");
    QCOMPARE(shownIn(filter), QStringList({"Ours", "Other"}));
    filter.setSearch("");
    QCOMPARE(filter.rowCount(), 5);
    QCOMPARE(PaneTest::namesIn("Sorted").first(), QString("Swatch 10"));
}

PANE_TEST_MAIN(tst_SwatchCommands)
#include "tst_SwatchCommands.moc"
