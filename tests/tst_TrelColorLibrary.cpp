#include "TestSupport.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QDir>
#include <QDomDocument>
#include <QGuiApplication>
#include <QPointer>
#include <QTranslator>

#include <cstdio>
#include <utility>

using Item = TrelColorLibraryItem;
using Edit = void (*)(TrelColorLibrary &);

Q_DECLARE_METATYPE(Edit)
Q_DECLARE_METATYPE(Qt::ItemFlags)

/// The library as an item model: its life, the tree as indexes, edits and when they are saved, signals, thumbnails.
class tst_TrelColorLibrary : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void freshModelHasTwoLists();
    void rootIndexIsTheRoot();
    void cleanupMakesRoomForAFreshLibrary();
    void destructionIsAnnounced();
    void destructionSavesNothing();
    void destructionOfAUserListIsNoEdit();
    void withoutARootEverythingIsInvalid();
    void applicationGoesFirst_data();
    void applicationGoesFirst();

    void indexes_data();
    void indexes();
    void parents();
    void parentIsFoundByName();
    void listsAndUserLists();
    void columns();
    void mimeTypesAreEmpty();

    void dataOfAColor_data();
    void dataOfAColor();
    void dataOfOtherItems();
    void roleValues();
    void colorRolePointsAtTheColor();
    void headers_data();
    void headers();
    void headersAreTranslated();
    void flags_data();
    void flags();
    void odd64_listCanBeDraggedWhileEmpty();

    void setDataByRole_data();
    void setDataByRole();
    void odd62_setDataWritesColumnZero();
    void renames_data();
    void renames();
    void setDataOfTheInvalidIndex();

    void odd63_insertRowsAnnouncesOneTooMany_data();
    void odd63_insertRowsAnnouncesOneTooMany();
    void insertedRowsAreEmptyLists();
    void removeRows_data();
    void removeRows();
    void removeRowsWithoutRows();
    void removedItemsGoLater();
    void badRowsAreFatal_data();
    void badRowsAreFatal();

    void edits_data();
    void editsAreSavedOnceLoaded_data();
    void editsAreSavedOnceLoaded();
    void editsAreNotSavedBeforeLoading_data();
    void editsAreNotSavedBeforeLoading();
    void batchIsSavedOnce();
    void batchSavesWhenItBeginsAgain();
    void operationsLeaveTheBatchAsItIs();
    void removalInABatchBeforeLoadingIsSaved();
    void editsInABatchBeforeLoadingAreForgotten();

    void creationSignals_data();
    void creationSignals();
    void loadingTheProjectIsAnnounced();
    void changedSignals();
    void signalsAndSlotsInOrder();
    void containsDefaults();

    void thumbnails();
    void thumbnailGeneratorsResult();
};

namespace {

const char RED[] = "aRgb;1;0;#ffffffff00000000";
const char BLUE[] = "aRgb;1;0;#ffff00000000ffff";
const QStringList FIXED_LISTS{"Explicit Colors", "Project Swatches"};

QString userFile()
{
    return TrelColorLibrary::applicationSupportDir() + "\\userColors.xml";
}

/// A library that nobody has used, in a home without files.
TrelColorLibrary &freshLibrary()
{
    TrelColorLibrary::cleanup();
    const QFileInfo file(userFile());
    const QStringList names = file.dir().entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names) {
        if (name.startsWith(file.fileName()) && !QFile::remove(file.dir().filePath(name)))
            qFatal("cannot remove %s", qPrintable(name));
    }
    return *TrelColorLibrary::Instance();
}

QModelIndex childNamed(const TrelColorLibrary &library, const QString &name, const QModelIndex &parent, int column)
{
    for (int row = 0; row < library.rowCount(parent); ++row) {
        if (library.data(library.index(row, 0, parent), Qt::EditRole).toString() == name)
            return library.index(row, column, parent);
    }
    return QModelIndex();
}

/// Index of "List" or "List/Colour"; "root" is the root.
QModelIndex at(const TrelColorLibrary &library, const QString &path, int column = 0)
{
    const QModelIndex root = library.rootIndex();
    if (path == "root")
        return root;
    const QString list = path.section('/', 0, 0);
    if (!path.contains('/'))
        return childNamed(library, list, root, column);
    return childNamed(library, path.section('/', 1), childNamed(library, list, root, 0), column);
}

/// at() the other way round; "-" is the invalid index.
QString pathOf(const QModelIndex &index)
{
    if (!index.isValid())
        return "-";
    const TrelColorLibrary &library = *TrelColorLibrary::Instance();
    if (index == library.rootIndex())
        return "root";
    const QString column = index.column() == 0 ? QString() : QString("[%1]").arg(index.column());
    const QString name = "'" + library.data(index.sibling(index.row(), 0), Qt::EditRole).toString() + "'" + column;
    const QModelIndex parent = index.parent();
    return parent == library.rootIndex() ? name : pathOf(parent) + '/' + name;
}

QStringList namesUnder(const TrelColorLibrary &library, const QModelIndex &parent)
{
    QStringList names;
    for (int row = 0; row < library.rowCount(parent); ++row)
        names.append(library.data(library.index(row, 0, parent), Qt::EditRole).toString());
    return names;
}

QString addColor(TrelColorLibrary &library, const QString &list, const QString &name, const char *value = RED)
{
    return library.createColorWithName(TrelColor(value), name, "{" + name + "}", list, "V-" + name);
}

/// The fixed lists, a preset list with P and a user list with A and B.
TrelColorLibrary &filledLibrary()
{
    TrelColorLibrary &library = freshLibrary();
    library.createColorList("Preset", false);
    library.createColorList("Mine", true);
    addColor(library, "Preset", "P");
    addColor(library, "Mine", "A");
    addColor(library, "Mine", "B", BLUE);
    addColor(library, "Project Swatches", "S");
    library.createExplicitColor(TrelColor(BLUE), BLUE);
    return library;
}

/// What the model's signals said, in their order.
class Signals : public QObject
{
public:
    explicit Signals(TrelColorLibrary &library)
    {
        using Model = QAbstractItemModel;
        const auto rows = [this](const char *signal) {
            return [this, signal](const QModelIndex &parent, int first, int last) {
                lines.append(QString("%1 %2 %3..%4").arg(signal, pathOf(parent)).arg(first).arg(last));
            };
        };
        connect(&library, &Model::rowsAboutToBeInserted, this, rows("rowsAboutToBeInserted"));
        connect(&library, &Model::rowsInserted, this, rows("rowsInserted"));
        connect(&library, &Model::rowsAboutToBeRemoved, this, rows("rowsAboutToBeRemoved"));
        connect(&library, &Model::rowsRemoved, this, rows("rowsRemoved"));
        connect(&library, &Model::dataChanged, this,
                [this](const QModelIndex &first, const QModelIndex &last, const QVector<int> &roles) {
                    const QString end = first == last && roles.isEmpty() ? QString() : " to " + pathOf(last);
                    lines.append("dataChanged " + pathOf(first) + end);
                });
        connect(&library, &Model::modelAboutToBeReset, this, [this] { lines.append("modelAboutToBeReset"); });
        connect(&library, &Model::modelReset, this, [this] { lines.append("modelReset"); });
        connect(&library, &Model::layoutChanged, this, [this] { lines.append("layoutChanged"); });
        connect(&library, &TrelColorLibrary::changed, this,
                [this](const QString &id) { lines.append("changed " + id); });
        connect(&library, &TrelColorLibrary::addedColorToList, this,
                [this](const QModelIndex &list) { lines.append("addedColorToList " + pathOf(list)); });
    }

    QStringList lines;
};

/// Counts how often the user's file is written, by the text that goes to the debug output along with it.
class Saves
{
public:
    Saves()
    {
        s_count = 0;
        s_next = qInstallMessageHandler(count);
    }
    Saves(const Saves &) = delete;
    Saves &operator=(const Saves &) = delete;
    ~Saves()
    {
        qInstallMessageHandler(s_next);
    }

    /// Since the last call.
    int taken()
    {
        return std::exchange(s_count, 0);
    }

private:
    static void count(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtDebugMsg && text.contains("<ColorLibraryList"))
            ++s_count;
        else
            s_next(type, context, text);
    }

    static int s_count;
    static QtMessageHandler s_next;
};

int Saves::s_count = 0;
QtMessageHandler Saves::s_next = nullptr;

/// The user's file as "List(A,B) Other()", "no file" without one.
QString saved()
{
    QFile file(userFile());
    if (!file.open(QIODevice::ReadOnly))
        return "no file";
    QDomDocument document;
    if (!document.setContent(file.readAll()))
        return "not well-formed";
    QStringList lists;
    for (QDomElement list = document.documentElement().firstChildElement(); !list.isNull();
         list = list.nextSiblingElement()) {
        QStringList colors;
        for (QDomElement color = list.firstChildElement(); !color.isNull(); color = color.nextSiblingElement())
            colors.append(color.attribute("name"));
        lists.append(list.attribute("name") + '(' + colors.join(',') + ')');
    }
    return lists.join(' ');
}

QPixmap square(const TrelColor &color)
{
    QPixmap pixmap(3, 3);
    pixmap.fill(color.getQColor(true));
    return pixmap;
}

QRgb pixel(const QVariant &decoration)
{
    return decoration.value<QPixmap>().toImage().pixel(1, 1);
}

class Renaming : public QTranslator
{
public:
    bool isEmpty() const override
    {
        return false;
    }
    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return QString("%1: %2").arg(context, text);
    }
};

} // namespace

void tst_TrelColorLibrary::freshModelHasTwoLists()
{
    const TrelColorLibrary &library = freshLibrary();
    const QModelIndex root = library.rootIndex();
    QCOMPARE(library.rowCount(QModelIndex()), 0);
    QCOMPARE(library.columnCount(QModelIndex()), 0);
    QVERIFY(!library.hasChildren(QModelIndex()));
    QCOMPARE(library.rowCount(root), 2);
    QVERIFY(library.hasChildren(root));
    QCOMPARE(namesUnder(library, root), FIXED_LISTS);
    for (const bool isProject : {false, true}) {
        const QModelIndex list = library.index(isProject ? 1 : 0, 0, root);
        QCOMPARE(library.rowCount(list), 0);
        QCOMPARE(library.data(list, Item::ItemTypeRole), QVariant(int(Item::LIST_ITEM)));
        QCOMPARE(library.data(list, Item::ListStateRole), QVariant(isProject ? 1 : 0));
        QCOMPARE(library.data(list, Item::CanBeModifiedRole), QVariant(isProject));
    }
    QVERIFY(!library.containsDefaults());
    QVERIFY(!library.canGeneratePixmap());
    QVERIFY(library.QObject::parent() == nullptr);
}

void tst_TrelColorLibrary::rootIndexIsTheRoot()
{
    const TrelColorLibrary &library = freshLibrary();
    const QModelIndex root = library.rootIndex();
    QVERIFY(root.isValid());
    QCOMPARE(root.row(), 0);
    QCOMPARE(root.column(), 0);
    QCOMPARE(root.model(), &library);
    QVERIFY(root.internalPointer() != nullptr);
    QCOMPARE(library.rootIndex(), root);
    QCOMPARE(library.columnCount(root), 2);
    QCOMPARE(library.data(root, Qt::EditRole), QVariant(QString()));
    QCOMPARE(library.data(root, Item::CanBeModifiedRole), QVariant(false));
    QCOMPARE(library.data(root, Item::OriginatingPresetRole).toString(), QString(QChar(0)));
}

void tst_TrelColorLibrary::cleanupMakesRoomForAFreshLibrary()
{
    TrelColorLibrary &library = filledLibrary();
    const Saves saves;
    library.loadUserColors(QString());
    library.setContainsDefaults();
    library.setThumbnailGenerator(square);
    QCOMPARE(TrelColorLibrary::Instance(), &library);
    const QPointer<QObject> old(&library);

    TrelColorLibrary::cleanup();
    QVERIFY(old.isNull());
    TrelColorLibrary::cleanup();

    TrelColorLibrary &fresh = *TrelColorLibrary::Instance();
    QCOMPARE(namesUnder(fresh, fresh.rootIndex()), FIXED_LISTS);
    QCOMPARE(fresh.rowCount(at(fresh, "Project Swatches")), 0);
    QVERIFY(!fresh.containsDefaults());
    QVERIFY(!fresh.canGeneratePixmap());
    fresh.createColorList("Mine", true);
    fresh.saveUserColors();
    QCOMPARE(saved(), QString("no file"));
}

void tst_TrelColorLibrary::destructionIsAnnounced()
{
    const Signals heard(filledLibrary());
    TrelColorLibrary::cleanup();
    const QStringList expected{"rowsAboutToBeRemoved root 0..3",
                               "rowsRemoved root 0..3",
                               "dataChanged root",
                               "dataChanged root",
                               "modelAboutToBeReset",
                               "modelReset"};
    QCOMPARE(heard.lines, expected);
}

void tst_TrelColorLibrary::destructionSavesNothing()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    library.saveUserColors();
    library.removeRows(0, 3, library.rootIndex());
    QCOMPARE(saves.taken(), 1);
    QVERIFY2(library.isUserListIndex(library.index(0, 0, library.rootIndex())), "its removal would be saved");
    library.setEditingMultipleColors(true);
    library.remove("{A}");
    TrelColorLibrary::cleanup();
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("Mine(A,B)"));
}

void tst_TrelColorLibrary::destructionOfAUserListIsNoEdit()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    library.removeRows(0, 3, library.rootIndex());
    TrelColorLibrary::cleanup();
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
}

void tst_TrelColorLibrary::withoutARootEverythingIsInvalid()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex root = library.rootIndex();
    const QModelIndex color = at(library, "Mine/A");
    int asked = 0;
    connect(&library, &QAbstractItemModel::modelReset, this, [&] {
        ++asked;
        QCOMPARE(library.rootIndex(), QModelIndex());
        for (const QModelIndex &stale : {root, color}) {
            QVERIFY(!library.data(stale, Qt::EditRole).isValid());
            QCOMPARE(library.rowCount(stale), 0);
            QCOMPARE(library.columnCount(stale), 0);
            QVERIFY(!library.index(0, 0, stale).isValid());
            QVERIFY(!library.parent(stale).isValid());
            QVERIFY(!library.isListIndex(stale));
        }
        QVERIFY(!library.getIndexOfListId("Mine").isValid());
        QVERIFY(!library.getIndexOfUid("{A}").isValid());
        QVERIFY(!library.nameExists("Mine"));
        QCOMPARE(library.mimeTypes(), QStringList());
    });
    TrelColorLibrary::cleanup();
    QCOMPARE(asked, 1);
}

void tst_TrelColorLibrary::applicationGoesFirst_data()
{
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("library left to the application") << QByteArray("gone, then fresh with 2 lists\n");
    QTest::newRow("library cleaned up before") << QByteArray("gone, then fresh with 2 lists\n");
    QTest::newRow("library made twice") << QByteArray("gone, then fresh with 2 lists\n");
    QTest::newRow("library never made") << QByteArray("nothing\n");
    QTest::newRow("application never destroyed") << QByteArray("left\n");
}

void tst_TrelColorLibrary::applicationGoesFirst()
{
    QFETCH(QByteArray, expected);
    const ChildResult result = runChild(QTest::currentDataTag());
    QVERIFY2(!result.crashed, result.err.constData());
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out, expected);
    QVERIFY2(!result.err.contains("QPixmap:") && !result.err.contains("QObject::~QObject"), result.err.constData());
}

void tst_TrelColorLibrary::indexes_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expected");
    QTest::newRow("first list") << "root" << 0 << 0 << "'Explicit Colors'";
    QTest::newRow("last list") << "root" << 3 << 0 << "'Mine'";
    QTest::newRow("beyond the lists") << "root" << 4 << 0 << "-";
    QTest::newRow("row -1") << "root" << -1 << 0 << "-";
    QTest::newRow("vendor's column") << "root" << 3 << 1 << "'Mine'[1]";
    QTest::newRow("column is not checked") << "root" << 3 << 7 << "'Mine'[7]";
    QTest::newRow("colour") << "Mine" << 1 << 0 << "'Mine'/'B'";
    QTest::newRow("colour's vendor") << "Mine" << 1 << 1 << "'Mine'/'B'[1]";
    QTest::newRow("beyond the colours") << "Mine" << 2 << 0 << "-";
    QTest::newRow("under a colour") << "Mine/A" << 0 << 0 << "-";
    QTest::newRow("explicit colour, which has no columns") << "Explicit Colors" << 0 << 0 << "'Explicit Colors'/''";
    QTest::newRow("under the invalid index") << "no such list" << 0 << 0 << "-";
}

void tst_TrelColorLibrary::indexes()
{
    QFETCH(QString, parent);
    QFETCH(int, row);
    QFETCH(int, column);
    QFETCH(QString, expected);
    const TrelColorLibrary &library = filledLibrary();
    const QModelIndex index = library.index(row, column, at(library, parent));
    QCOMPARE(pathOf(index), expected);
    QCOMPARE(index.row(), expected == "-" ? -1 : row);
    QCOMPARE(index.column(), expected == "-" ? -1 : column);
}

void tst_TrelColorLibrary::parents()
{
    const TrelColorLibrary &library = filledLibrary();
    QCOMPARE(library.parent(QModelIndex()), QModelIndex());
    QCOMPARE(library.parent(library.rootIndex()), QModelIndex());
    for (const int column : {0, 1, 5}) {
        QCOMPARE(library.parent(at(library, "Mine", column)), library.rootIndex());
        QCOMPARE(library.parent(at(library, "Mine/B", column)), at(library, "Mine"));
        QCOMPARE(library.parent(at(library, "Project Swatches/S", column)), at(library, "Project Swatches"));
    }
    QCOMPARE(library.parent(library.index(0, 0, at(library, "Explicit Colors"))), at(library, "Explicit Colors"));
}

// The tool tip is the one way to a list's name that is not compared with the others.
void tst_TrelColorLibrary::parentIsFoundByName()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex mine = at(library, "Mine");
    const QModelIndex color = at(library, "Mine/A");
    QVERIFY(library.setData(mine, "Preset", Qt::ToolTipRole));
    QCOMPARE(namesUnder(library, library.rootIndex()), FIXED_LISTS + QStringList({"Preset", "Preset"}));
    QCOMPARE(library.parent(color).row(), 2);
    QVERIFY(library.parent(color) != mine);
}

void tst_TrelColorLibrary::listsAndUserLists()
{
    const TrelColorLibrary &library = filledLibrary();
    for (const char *list : {"Explicit Colors", "Project Swatches", "Preset", "Mine"}) {
        QVERIFY(library.isListIndex(at(library, list)));
        QVERIFY(library.isListIndex(at(library, list, 1)));
        QCOMPARE(library.isUserListIndex(at(library, list)), QString(list) == "Mine");
    }
    QVERIFY2(!library.isUserListIndex(at(library, "Mine", 1)), "only column 0 can be edited");
    for (const char *other : {"root", "Mine/A", "Project Swatches/S", "no such list"}) {
        QVERIFY(!library.isListIndex(at(library, other)));
        QVERIFY(!library.isUserListIndex(at(library, other)));
    }
}

void tst_TrelColorLibrary::columns()
{
    const TrelColorLibrary &library = filledLibrary();
    QCOMPARE(library.columnCount(at(library, "Mine")), 2);
    QCOMPARE(library.columnCount(at(library, "Mine/A")), 2);
    QCOMPARE(library.columnCount(library.index(0, 0, at(library, "Explicit Colors"))), 0);
}

void tst_TrelColorLibrary::mimeTypesAreEmpty()
{
    QCOMPARE(filledLibrary().mimeTypes(), QStringList());
}

void tst_TrelColorLibrary::dataOfAColor_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariantList>("byColumn");
    const QVariant none;
    const auto row = [](const char *name, int role, const QVariantList &byColumn) {
        QTest::newRow(name) << role << byColumn;
    };
    const auto everywhere = [](const QVariant &value) { return QVariantList{value, value, value}; };
    row("display", Qt::DisplayRole, {QString("A"), QString("V-A"), none});
    row("edit", Qt::EditRole, everywhere(QString("A")));
    row("tool tip", Qt::ToolTipRole, {QString("A"), QString("V-A"), none});
    row("status tip", Qt::StatusTipRole, everywhere(none));
    row("size hint", Qt::SizeHintRole, everywhere(none));
    row("in front of the roles", Item::ColorRole - 1, everywhere(none));
    row("uid", Item::UidRole, everywhere(QString("{A}")));
    row("explicit colour", Item::ExplicitColorRole, everywhere(QString()));
    row("old preset", Item::OldPresetRole, everywhere(QString()));
    row("can be modified", Item::CanBeModifiedRole, everywhere(true));
    row("item type", Item::ItemTypeRole, everywhere(1));
    row("list state", Item::ListStateRole, everywhere(1));
    row("originating preset", Item::OriginatingPresetRole, everywhere(QString()));
    row("vendor's identifier", Item::VendorIdRole, everywhere(QString("V-A")));
    row("behind the roles", Item::VendorIdRole + 1, everywhere(none));
    row("negative", -1, everywhere(none));
}

void tst_TrelColorLibrary::dataOfAColor()
{
    QFETCH(int, role);
    QFETCH(QVariantList, byColumn);
    const TrelColorLibrary &library = filledLibrary();
    for (int column = 0; column < int(byColumn.size()); ++column) {
        const QVariant value = library.data(at(library, "Mine/A", column), role);
        QCOMPARE(value, byColumn[column]);
        QCOMPARE(value.userType(), byColumn[column].userType());
    }
}

void tst_TrelColorLibrary::dataOfOtherItems()
{
    const TrelColorLibrary &library = filledLibrary();
    const QModelIndex explicitColor = library.index(0, 0, at(library, "Explicit Colors"));
    QCOMPARE(library.data(explicitColor, Item::ExplicitColorRole), QVariant(QString(BLUE)));
    QCOMPARE(library.data(explicitColor, Item::ItemTypeRole), QVariant(int(Item::EXPLICIT_COLOR_ITEM)));
    QCOMPARE(library.data(explicitColor, Item::CanBeModifiedRole), QVariant(false));
    QCOMPARE(library.data(at(library, "Preset"), Item::CanBeModifiedRole), QVariant(false));
    QCOMPARE(library.data(at(library, "Preset/P"), Item::CanBeModifiedRole), QVariant(false));
    QCOMPARE(library.data(at(library, "Mine"), Item::UidRole), QVariant(QString()));
    QVERIFY(!library.data(QModelIndex(), Qt::EditRole).isValid());
}

void tst_TrelColorLibrary::roleValues()
{
    const QVector<int> roles{
        Item::ColorRole,         Item::UidRole,      Item::ExplicitColorRole, Item::OldPresetRole,
        Item::CanBeModifiedRole, Item::ItemTypeRole, Item::ListStateRole,     Item::OriginatingPresetRole,
        Item::VendorIdRole};
    QCOMPARE(roles, QVector<int>({33, 34, 35, 36, 37, 38, 39, 40, 41}));
}

void tst_TrelColorLibrary::colorRolePointsAtTheColor()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex index = at(library, "Mine/A");
    const QVariant pointer = library.data(index, Item::ColorRole);
    QCOMPARE(pointer.userType(), int(QMetaType::VoidStar));
    const auto *color = static_cast<const TrelColor *>(pointer.value<void *>());
    QCOMPARE(color->aName(), QString(RED));
    QCOMPARE(library.data(at(library, "Mine/A", 1), Item::ColorRole), pointer);

    TrelColor blue(BLUE);
    QVERIFY(library.setData(index, QVariant::fromValue<void *>(&blue), Item::ColorRole));
    QCOMPARE(color->aName(), QString(BLUE));
    QCOMPARE(library.data(index, Item::ColorRole), pointer);

    QVERIFY(library.setData(index, QVariant::fromValue<void *>(nullptr), Item::ColorRole));
    QVERIFY(library.setData(index, QString("no pointer"), Item::ColorRole));
    QCOMPARE(color->aName(), QString(BLUE));
}

void tst_TrelColorLibrary::headers_data()
{
    QTest::addColumn<int>("section");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("expected");
    const auto row = [](const char *name, int section, int orientation, int role, const QVariant &expected) {
        QTest::newRow(name) << section << orientation << role << expected;
    };
    row("name", 0, Qt::Horizontal, Qt::DisplayRole, QString("Swatches"));
    row("vendor's identifier", 1, Qt::Horizontal, Qt::DisplayRole, QString("Color ID"));
    row("section 5", 5, Qt::Horizontal, Qt::DisplayRole, QString("Color ID"));
    row("section -1", -1, Qt::Horizontal, Qt::DisplayRole, QString("Color ID"));
    row("vertical", 0, Qt::Vertical, Qt::DisplayRole, QVariant());
    row("edit role", 0, Qt::Horizontal, Qt::EditRole, QVariant());
    row("tool tip", 1, Qt::Horizontal, Qt::ToolTipRole, QVariant());
}

void tst_TrelColorLibrary::headers()
{
    QFETCH(int, section);
    QFETCH(int, orientation);
    QFETCH(int, role);
    QFETCH(QVariant, expected);
    QCOMPARE(freshLibrary().headerData(section, Qt::Orientation(orientation), role), expected);
}

void tst_TrelColorLibrary::headersAreTranslated()
{
    const TrelColorLibrary &library = freshLibrary();
    Renaming translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    const QVariant name = library.headerData(0, Qt::Horizontal, Qt::DisplayRole);
    const QVariant vendor = library.headerData(1, Qt::Horizontal, Qt::DisplayRole);
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(name, QVariant(QString("TrelColorLibrary: Swatches")));
    QCOMPARE(vendor, QVariant(QString("TrelColorLibrary: Color ID")));
}

void tst_TrelColorLibrary::flags_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("column");
    QTest::addColumn<Qt::ItemFlags>("expected");
    const Qt::ItemFlags parent = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled;
    const Qt::ItemFlags leaf = parent | Qt::ItemIsDragEnabled;
    const auto row = [](const char *name, const char *path, int column, Qt::ItemFlags expected) {
        QTest::newRow(name) << path << column << expected;
    };
    row("invalid", "no such list", 0, Qt::ItemIsEnabled);
    row("root", "root", 0, parent);
    row("explicit colours", "Explicit Colors", 0, parent);
    row("project", "Project Swatches", 0, parent);
    row("project's vendor column", "Project Swatches", 1, parent);
    row("project's colour", "Project Swatches/S", 0, leaf | Qt::ItemIsEditable);
    row("preset list", "Preset", 0, parent);
    row("preset's colour", "Preset/P", 0, leaf);
    row("empty preset list", "Empty preset", 0, leaf);
    row("user list", "Mine", 0, parent | Qt::ItemIsEditable);
    row("user list's vendor column", "Mine", 1, parent);
    row("empty user list", "Empty", 0, leaf | Qt::ItemIsEditable);
    row("empty user list's vendor column", "Empty", 1, leaf);
    row("colour", "Mine/A", 0, leaf | Qt::ItemIsEditable);
    row("colour's vendor", "Mine/A", 1, leaf);
    row("column 2", "Mine/A", 2, leaf);
    row("colour that is named as the project", "Mine/Project Swatches", 0, leaf);
    row("explicit colour", "Explicit Colors/", 0, leaf);
}

void tst_TrelColorLibrary::flags()
{
    QFETCH(QString, path);
    QFETCH(int, column);
    QFETCH(Qt::ItemFlags, expected);
    TrelColorLibrary &library = filledLibrary();
    library.createColorList("Empty", true);
    library.createColorList("Empty preset", false);
    addColor(library, "Mine", "Project Swatches");
    QCOMPARE(library.flags(at(library, path, column)), expected);
}

void tst_TrelColorLibrary::odd64_listCanBeDraggedWhileEmpty()
{
    TrelColorLibrary &library = freshLibrary();
    library.createColorList("Mine", true);
    QVERIFY(library.flags(at(library, "Mine")).testFlag(Qt::ItemIsDragEnabled));
    QVERIFY(library.flags(at(library, "Project Swatches")).testFlag(Qt::ItemIsDragEnabled));
    addColor(library, "Mine", "A");
    QVERIFY(!library.flags(at(library, "Mine")).testFlag(Qt::ItemIsDragEnabled));
    library.remove("{A}");
    QVERIFY(library.flags(at(library, "Mine")).testFlag(Qt::ItemIsDragEnabled));
}

void tst_TrelColorLibrary::setDataByRole_data()
{
    QTest::addColumn<int>("role");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QVariant>("stored");
    QTest::addColumn<int>("type");
    const auto row = [](const char *name, int role, const QVariant &value, bool result, const QVariant &stored,
                        int type) { QTest::newRow(name) << role << value << result << stored << type; };
    const QString text("text");
    row("display", Qt::DisplayRole, text, true, text, 1);
    row("edit", Qt::EditRole, text, true, text, 1);
    row("tool tip", Qt::ToolTipRole, text, true, text, 1);
    row("uid", Item::UidRole, text, true, text, 1);
    row("explicit colour", Item::ExplicitColorRole, text, true, text, 2);
    row("old preset", Item::OldPresetRole, text, true, text, 3);
    row("can be modified", Item::CanBeModifiedRole, false, true, false, 1);
    row("can be modified as text", Item::CanBeModifiedRole, QString("false"), true, false, 1);
    row("item type is read only", Item::ItemTypeRole, 2, false, 1, 1);
    row("list state cleared", Item::ListStateRole, 0, true, 0, 1);
    row("list state set", Item::ListStateRole, 7, true, 1, 1);
    row("originating preset", Item::OriginatingPresetRole, text, true, text, 1);
    row("vendor's identifier", Item::VendorIdRole, text, true, text, 1);
    row("decoration is read only", Qt::DecorationRole, QPixmap(2, 2), false, QPixmap(), 1);
    row("unknown role", Item::VendorIdRole + 1, text, false, QVariant(), 1);
}

void tst_TrelColorLibrary::setDataByRole()
{
    QFETCH(int, role);
    QFETCH(QVariant, value);
    QFETCH(bool, result);
    QFETCH(QVariant, stored);
    QFETCH(int, type);
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex color = at(library, "Mine/A");
    const Signals heard(library);
    QCOMPARE(library.setData(color, value, role), result);
    const QVariant found = library.data(color, role);
    QCOMPARE(found.userType(), stored.userType());
    if (stored.userType() == QMetaType::QPixmap)
        QVERIFY(found.value<QPixmap>().isNull());
    else
        QCOMPARE(found, stored);
    QCOMPARE(library.data(color, Item::ItemTypeRole).toInt(), type);
    // Views are told whether or not anything was written.
    QCOMPARE(heard.lines, QStringList("dataChanged " + pathOf(color)));
}

void tst_TrelColorLibrary::odd62_setDataWritesColumnZero()
{
    TrelColorLibrary &library = filledLibrary();
    for (const int column : {1, 4}) {
        const QString name = QString("new %1").arg(column);
        const QModelIndex color = library.index(0, column, at(library, "Mine"));
        const Signals heard(library);
        QVERIFY(library.setData(color, name, Qt::EditRole));
        QCOMPARE(heard.lines, QStringList(QString("dataChanged 'Mine'/'%1'[%2]").arg(name).arg(column)));
        QCOMPARE(library.data(color.sibling(0, 0), Qt::DisplayRole), QVariant(name));
        QCOMPARE(library.data(color.sibling(0, 1), Qt::DisplayRole), QVariant(QString()));
    }
}

void tst_TrelColorLibrary::renames_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("role");
    QTest::addColumn<QString>("newName");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *path, int role, const char *newName, bool result,
                        const char *expected) { QTest::newRow(name) << path << role << newName << result << expected; };
    row("free name", "Mine/A", Qt::EditRole, "C", true, "C");
    row("sibling's name", "Mine/A", Qt::EditRole, "B", false, "A");
    row("sibling's name by the display role", "Mine/A", Qt::DisplayRole, "B", false, "A");
    row("own name", "Mine/A", Qt::EditRole, "A", false, "A");
    row("own name by the display role", "Mine/A", Qt::DisplayRole, "A", false, "A");
    row("sibling's name in another case", "Mine/A", Qt::EditRole, "b", true, "b");
    row("sibling's name and a space", "Mine/A", Qt::EditRole, "B ", true, "B ");
    row("name in another list", "Mine/A", Qt::EditRole, "P", true, "P");
    row("the list's name", "Mine/A", Qt::EditRole, "Mine", true, "Mine");
    row("empty name", "Mine/A", Qt::EditRole, "", true, "A");
    row("sibling's name as a tool tip", "Mine/A", Qt::ToolTipRole, "B", true, "B");
    row("list", "Mine", Qt::EditRole, "Ours", true, "Ours");
    row("list to another list's name", "Mine", Qt::EditRole, "Preset", false, "Mine");
    row("list to its own name", "Mine", Qt::EditRole, "Mine", false, "Mine");
    row("list to its colour's name", "Mine", Qt::EditRole, "A", true, "A");
    row("list that the user may not rename", "Preset", Qt::EditRole, "Ours", true, "Ours");
}

void tst_TrelColorLibrary::renames()
{
    QFETCH(QString, path);
    QFETCH(int, role);
    QFETCH(QString, newName);
    QFETCH(bool, result);
    QFETCH(QString, expected);
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex index = at(library, path);
    const Signals heard(library);
    QCOMPARE(library.setData(index, newName, role), result);
    QCOMPARE(library.data(index, Qt::EditRole).toString(), expected);
    QCOMPARE(heard.lines, result ? QStringList("dataChanged " + pathOf(index)) : QStringList());
    if (!path.contains('/'))
        return;
    const bool isRenamed = expected != "A";
    QCOMPARE(library.data(index, Item::VendorIdRole).toString(), isRenamed ? QString() : QString("V-A"));
}

void tst_TrelColorLibrary::setDataOfTheInvalidIndex()
{
    TrelColorLibrary &library = filledLibrary();
    const Signals heard(library);
    for (const int role : {int(Qt::EditRole), int(Item::VendorIdRole)})
        QVERIFY(!library.setData(QModelIndex(), "name", role));
    QCOMPARE(heard.lines, QStringList());
}

void tst_TrelColorLibrary::odd63_insertRowsAnnouncesOneTooMany_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("list at the end") << "root" << 4 << 1 << (FIXED_LISTS + QStringList{"Preset", "Mine", ""});
    QTest::newRow("list in front") << "root" << 0 << 1
                                   << (QStringList{""} + FIXED_LISTS + QStringList{"Preset", "Mine"});
    QTest::newRow("three colours at the end") << "Mine" << 2 << 3 << QStringList{"A", "B", "", "", ""};
    QTest::newRow("two colours in the middle") << "Mine" << 1 << 2 << QStringList{"A", "", "", "B"};
    QTest::newRow("colour in an empty list") << "Empty" << 0 << 1 << QStringList{""};
}

void tst_TrelColorLibrary::odd63_insertRowsAnnouncesOneTooMany()
{
    QFETCH(QString, parent);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(QStringList, names);
    TrelColorLibrary &library = filledLibrary();
    if (parent == "Empty")
        library.createColorList("Empty", true);
    const QModelIndex index = at(library, parent);
    QSignalSpy before(&library, &QAbstractItemModel::rowsAboutToBeInserted);
    QSignalSpy after(&library, &QAbstractItemModel::rowsInserted);
    const Signals heard(library);
    QVERIFY(!library.insertRows(row, count, index));

    const QString range = QString("%1 %2..%3").arg(pathOf(index)).arg(row).arg(row + count);
    const QStringList expected{"rowsAboutToBeInserted " + range, "rowsInserted " + range,
                               "dataChanged " + pathOf(index)};
    QCOMPARE(heard.lines, expected);
    for (const QSignalSpy *spy : {&before, &after}) {
        QCOMPARE(int(spy->size()), 1);
        QCOMPARE(spy->at(0).at(0).value<QModelIndex>(), index);
        QCOMPARE(spy->at(0).at(1).toInt(), row);
        QCOMPARE(spy->at(0).at(2).toInt(), row + count);
    }
    QCOMPARE(namesUnder(library, index), names);

    QVERIFY2(!library.removeRows(row, count, index), "a success");
    QVERIFY(!namesUnder(library, index).contains(QString()));
}

void tst_TrelColorLibrary::insertedRowsAreEmptyLists()
{
    TrelColorLibrary &library = filledLibrary();
    library.insertRows(1, 1, at(library, "Mine"));
    const QModelIndex color = library.index(1, 0, at(library, "Mine"));
    QCOMPARE(library.data(color, Item::ItemTypeRole), QVariant(int(Item::LIST_ITEM)));
    QCOMPARE(library.data(color, Item::CanBeModifiedRole), QVariant(true));
    QCOMPARE(library.data(color, Item::ListStateRole), QVariant(1));
    QCOMPARE(library.data(color, Item::OriginatingPresetRole).toString(), QString(QChar(0)));
    for (const int role : {int(Qt::EditRole), int(Item::UidRole), int(Item::ExplicitColorRole),
                           int(Item::OldPresetRole), int(Item::VendorIdRole)})
        QCOMPARE(library.data(color, role), QVariant(QString()));
    QVERIFY(!static_cast<TrelColor *>(library.data(color, Item::ColorRole).value<void *>())->isValid());
    QCOMPARE(library.rowCount(color), 0);
    QVERIFY(library.setData(color, "{C}", Item::UidRole));
    QCOMPARE(library.data(color, Item::ItemTypeRole), QVariant(int(Item::UID_COLOR_ITEM)));
}

void tst_TrelColorLibrary::removeRows_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("count");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("first colour") << "Mine" << 0 << 1 << QStringList{"B", "C"};
    QTest::newRow("middle colour") << "Mine" << 1 << 1 << QStringList{"A", "C"};
    QTest::newRow("last two colours") << "Mine" << 1 << 2 << QStringList{"A"};
    QTest::newRow("all colours") << "Mine" << 0 << 3 << QStringList{};
    QTest::newRow("list") << "root" << 2 << 1 << (FIXED_LISTS + QStringList{"Mine"});
    QTest::newRow("fixed lists") << "root" << 0 << 2 << QStringList{"Preset", "Mine"};
    QTest::newRow("all lists") << "root" << 0 << 4 << QStringList{};
}

void tst_TrelColorLibrary::removeRows()
{
    QFETCH(QString, parent);
    QFETCH(int, row);
    QFETCH(int, count);
    QFETCH(QStringList, names);
    TrelColorLibrary &library = filledLibrary();
    addColor(library, "Mine", "C");
    const QModelIndex index = at(library, parent);
    const Signals heard(library);
    QVERIFY(!library.removeRows(row, count, index));
    const QString range = QString("%1 %2..%3").arg(pathOf(index)).arg(row).arg(row + count - 1);
    const QStringList expected{"rowsAboutToBeRemoved " + range, "rowsRemoved " + range, "dataChanged " + pathOf(index)};
    QCOMPARE(heard.lines, expected);
    QCOMPARE(namesUnder(library, index), names);
}

void tst_TrelColorLibrary::removeRowsWithoutRows()
{
    TrelColorLibrary &library = filledLibrary();
    library.createColorList("Empty", true);
    const Signals heard(library);
    for (const char *parent : {"no such list", "Empty", "Mine/A"})
        QVERIFY(!library.removeRows(0, 1, at(library, parent)));
    QCOMPARE(heard.lines, QStringList());
}

void tst_TrelColorLibrary::removedItemsGoLater()
{
    TrelColorLibrary &library = filledLibrary();
    const QPointer<Item> color(static_cast<Item *>(at(library, "Mine/A").internalPointer()));
    library.removeRows(0, 1, at(library, "Mine"));
    QVERIFY2(!color.isNull(), "a view may still hold it");
    QVERIFY(!library.containsUid("{A}"));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(color.isNull());
}

void tst_TrelColorLibrary::badRowsAreFatal_data()
{
    QTest::addColumn<bool>("isRemoval");
    QTest::newRow("remove beyond the end") << true;
    QTest::newRow("remove more than there are") << true;
    QTest::newRow("remove row -1") << true;
    QTest::newRow("remove behind the lists") << true;
    QTest::newRow("insert beyond the end") << false;
    QTest::newRow("insert at row -1") << false;
}

void tst_TrelColorLibrary::badRowsAreFatal()
{
    QFETCH(bool, isRemoval);
    QVERIFY(diesWith(QTest::currentDataTag(), "index out of range"));
    if (isRemoval)
        QVERIFY(!runChild(QTest::currentDataTag()).out.contains("announced"));
}

void tst_TrelColorLibrary::edits_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("file");
    using L = TrelColorLibrary;
    const auto saves = [](const char *name, const char *file, Edit edit) { QTest::newRow(name) << edit << 1 << file; };
    const auto savesNothing = [](const char *name, Edit edit) { QTest::newRow(name) << edit << 0 << "no file"; };

    saves("rename a colour", "Mine(A1,B)", [](L &l) { l.setData(at(l, "Mine/A"), "A1", Qt::EditRole); });
    saves("rename a list", "Ours(A,B)", [](L &l) { l.setData(at(l, "Mine"), "Ours", Qt::EditRole); });
    saves("set a vendor's identifier", "Mine(A,B)", [](L &l) { l.setData(at(l, "Mine/A"), "x", Item::VendorIdRole); });
    saves("set through column 1", "Mine(A1,B)", [](L &l) { l.setData(at(l, "Mine/A", 1), "A1", Qt::EditRole); });
    saves("set an unknown role", "Mine(A,B)", [](L &l) { l.setData(at(l, "Mine/A"), "x", Item::VendorIdRole + 1); });
    saves("empty name", "Mine(A,B)", [](L &l) { l.setData(at(l, "Mine/A"), "", Qt::EditRole); });
    saves("make a list the user's", "Preset(P) Mine(A,B)",
          [](L &l) { l.setData(at(l, "Preset"), true, Item::CanBeModifiedRole); });
    saves("remove a colour", "Mine(B)", [](L &l) { l.removeRows(0, 1, at(l, "Mine")); });
    saves("remove all colours", "Mine()", [](L &l) { l.removeRows(0, 2, at(l, "Mine")); });
    saves("remove a user list", "", [](L &l) { l.removeRows(3, 1, l.rootIndex()); });
    saves("save", "Mine(A,B)", [](L &l) { l.saveUserColors(); });
    saves("create a colour", "Mine(A,B,Color)", [](L &l) { l.createColor(TrelColor(RED), "", "Mine", "", ""); });
    saves("create a colour with a name", "Mine(A,B,C)", [](L &l) { addColor(l, "Mine", "C"); });
    saves("insert a colour", "Mine(A,B,C)", [](L &l) { l.handleInsertColor("{C}", "C", RED, "", "Mine", ""); });
    saves("copy a swatch", "Mine(A,B,P)", [](L &l) { l.createNewSwatchUidFromUid("{P}", "Mine"); });
    saves("rename by uid", "Mine(A1,B)", [](L &l) { l.rename("{A}", "A1", false); });
    saves("rename by uid and keep the origin", "Mine(A1,B)", [](L &l) { l.rename("{A}", "A1", true); });
    saves("set by uid", "Mine(A,B)", [](L &l) { l.set("{A}", TrelColor(BLUE)); });
    saves("remove by uid", "Mine(A)", [](L &l) { l.remove("{B}"); });
    saves("clear", "Mine()", [](L &l) { l.clear("Mine"); });
    saves("create a user list", "Mine(A,B) New()", [](L &l) { l.createColorList("New", true); });
    saves("batch of three", "Ours(B)", [](L &l) {
        l.setEditingMultipleColors(true);
        l.setData(at(l, "Mine/A"), "A1", Qt::EditRole);
        l.setData(at(l, "Mine"), "Ours", Qt::EditRole);
        l.removeRows(0, 1, at(l, "Ours"));
        l.setEditingMultipleColors(false);
    });

    savesNothing("refused rename", [](L &l) { l.setData(at(l, "Mine/A"), "B", Qt::EditRole); });
    savesNothing("rename a preset's colour", [](L &l) { l.setData(at(l, "Preset/P"), "P1", Qt::EditRole); });
    savesNothing("rename a preset list", [](L &l) { l.setData(at(l, "Preset"), "Other", Qt::EditRole); });
    savesNothing("rename a project's colour", [](L &l) { l.setData(at(l, "Project Swatches/S"), "S1", Qt::EditRole); });
    savesNothing("take a list from the user", [](L &l) { l.setData(at(l, "Mine"), false, Item::CanBeModifiedRole); });
    savesNothing("invalid index", [](L &l) { l.setData(QModelIndex(), "x", Qt::EditRole); });
    savesNothing("remove a preset's colour", [](L &l) { l.removeRows(0, 1, at(l, "Preset")); });
    savesNothing("remove a project's colour", [](L &l) { l.remove("{S}"); });
    savesNothing("remove a preset list", [](L &l) { l.removeRows(2, 1, l.rootIndex()); });
    // Only the first row is looked at.
    savesNothing("remove a user list behind a preset list", [](L &l) { l.removeRows(2, 2, l.rootIndex()); });
    savesNothing("insert rows", [](L &l) { l.insertRows(0, 1, at(l, "Mine")); });
    savesNothing("create a preset's colour", [](L &l) { addColor(l, "Preset", "P1"); });
    savesNothing("create a preset list", [](L &l) { l.createColorList("New", false); });
    savesNothing("create an explicit colour", [](L &l) { l.createExplicitColor(TrelColor(RED), RED); });
    savesNothing("copy into the project", [](L &l) { l.getExposableUidFromUid("{P}"); });
    savesNothing("rename an unknown uid", [](L &l) { l.rename("{?}", "x", true); });
    savesNothing("empty batch", [](L &l) {
        l.setEditingMultipleColors(true);
        l.setEditingMultipleColors(false);
    });
}

void tst_TrelColorLibrary::editsAreSavedOnceLoaded_data()
{
    edits_data();
}

void tst_TrelColorLibrary::editsAreSavedOnceLoaded()
{
    QFETCH(Edit, edit);
    QFETCH(int, count);
    QFETCH(QString, file);
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
    edit(library);
    QCOMPARE(saves.taken(), count);
    QCOMPARE(saved(), file);
}

void tst_TrelColorLibrary::editsAreNotSavedBeforeLoading_data()
{
    edits_data();
}

void tst_TrelColorLibrary::editsAreNotSavedBeforeLoading()
{
    QFETCH(Edit, edit);
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    edit(library);
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
}

void tst_TrelColorLibrary::batchIsSavedOnce()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    library.setEditingMultipleColors(true);
    library.removeRows(0, 1, at(library, "Mine"));
    addColor(library, "Mine", "C");
    library.setData(at(library, "Mine/B"), "B1", Qt::EditRole);
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
    library.setEditingMultipleColors(false);
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine(B1,C)"));
    library.setEditingMultipleColors(false);
    QCOMPARE(saves.taken(), 0);
    library.remove("{C}");
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine(B1)"));
}

void tst_TrelColorLibrary::batchSavesWhenItBeginsAgain()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    library.setEditingMultipleColors(true);
    library.remove("{A}");
    library.setEditingMultipleColors(true);
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine(B)"));
    library.remove("{B}");
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("Mine(B)"));
    library.setEditingMultipleColors(false);
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine()"));
}

void tst_TrelColorLibrary::operationsLeaveTheBatchAsItIs()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.loadUserColors(QString());
    library.setEditingMultipleColors(true);
    library.rename("{A}", "A1", true);
    addColor(library, "Mine", "C");
    library.createNewSwatchUidFromUid("{P}", "Mine");
    library.setData(at(library, "Mine/B"), "B1", Qt::EditRole);
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
    library.setEditingMultipleColors(false);
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine(A1,B1,C,P)"));
}

void tst_TrelColorLibrary::removalInABatchBeforeLoadingIsSaved()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.setEditingMultipleColors(true);
    library.removeRows(0, 1, at(library, "Mine"));
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
    library.loadUserColors(QString());
    QCOMPARE(saves.taken(), 1);
    QCOMPARE(saved(), QString("Mine(B)"));
}

void tst_TrelColorLibrary::editsInABatchBeforeLoadingAreForgotten()
{
    TrelColorLibrary &library = filledLibrary();
    Saves saves;
    library.setEditingMultipleColors(true);
    library.setData(at(library, "Mine/A"), "A1", Qt::EditRole);
    library.setData(at(library, "Mine"), "Ours", Qt::EditRole);
    library.loadUserColors(QString());
    QCOMPARE(saves.taken(), 0);
    QCOMPARE(saved(), QString("no file"));
}

void tst_TrelColorLibrary::creationSignals_data()
{
    QTest::addColumn<Edit>("edit");
    QTest::addColumn<QStringList>("expected");
    using L = TrelColorLibrary;
    QTest::newRow("colour") << Edit([](L &l) { l.createColor(TrelColor(RED), "", "Mine", "", ""); })
                            << QStringList{"rowsAboutToBeInserted 'Mine' 2..2", "rowsInserted 'Mine' 2..2",
                                           "dataChanged 'Mine'", "addedColorToList 'Mine'"};
    QTest::newRow("colour in a new list") << Edit([](L &l) { l.createColor(TrelColor(RED), "", "New", "", ""); })
                                          << QStringList{"rowsAboutToBeInserted root 4..5",
                                                         "rowsInserted root 4..5",
                                                         "dataChanged root",
                                                         "dataChanged 'New'",
                                                         "rowsAboutToBeInserted 'New' 0..0",
                                                         "rowsInserted 'New' 0..0",
                                                         "dataChanged 'New'",
                                                         "addedColorToList 'New'"};
    QTest::newRow("explicit colour") << Edit([](L &l) {
        l.createExplicitColor(TrelColor(RED), RED);
    }) << QStringList{"rowsAboutToBeInserted 'Explicit Colors' 1..1", "rowsInserted 'Explicit Colors' 1..1"};
    QTest::newRow("list") << Edit([](L &l) { l.createNewLibraryIfNecessary("New", false); })
                          << QStringList{"rowsAboutToBeInserted root 4..5", "rowsInserted root 4..5",
                                         "dataChanged root", "dataChanged 'New'"};
    QTest::newRow("list with cleared state")
        << Edit([](L &l) { l.createNewLibraryIfNecessary("New", true); })
        << QStringList{"rowsAboutToBeInserted root 4..5", "rowsInserted root 4..5", "dataChanged root",
                       "dataChanged 'New'", "dataChanged 'New'"};
    QTest::newRow("list that exists") << Edit([](L &l) { l.createNewLibraryIfNecessary("Mine", true); })
                                      << QStringList{};
    QTest::newRow("list through the slot") << Edit([](L &l) { l.createColorList("Mine", true); })
                                           << QStringList{"rowsAboutToBeInserted root 4..5", "rowsInserted root 4..5",
                                                          "dataChanged root", "dataChanged 'Mine 2'"};
    QTest::newRow("name and origin") << Edit([](L &l) { l.rename("{A}", "A1", true); })
                                     << QStringList{"dataChanged 'Mine'/'A1'", "dataChanged 'Mine'/'A1'",
                                                    "dataChanged 'Mine'/'A1'", "dataChanged 'Mine'/'A1'"};
    QTest::newRow("name alone") << Edit([](L &l) { l.rename("{A}", "A1", false); })
                                << QStringList{"dataChanged 'Mine'/'A1'", "dataChanged 'Mine'/'A1'"};
    QTest::newRow("refused name") << Edit([](L &l) { l.rename("{A}", "B", false); })
                                  << QStringList{"dataChanged 'Mine'/'A'"};
}

void tst_TrelColorLibrary::creationSignals()
{
    QFETCH(Edit, edit);
    QFETCH(QStringList, expected);
    TrelColorLibrary &library = filledLibrary();
    const Signals heard(library);
    edit(library);
    QCOMPARE(heard.lines, expected);
}

void tst_TrelColorLibrary::loadingTheProjectIsAnnounced()
{
    TrelColorLibrary &library = filledLibrary();
    addColor(library, "Project Swatches", "T");
    QDomDocument document;
    QVERIFY(document.setContent(QString("<Project><ColorLibrary name=\"x\"><Color name=\"1\" uid=\"{1}\" value=\"%1\"/>"
                                        "<Color name=\"2\" uid=\"{2}\" value=\"%1\"/>"
                                        "<Color name=\"3\" uid=\"{3}\" value=\"%1\"/></ColorLibrary></Project>")
                                    .arg(RED)));
    const Signals heard(library);
    QString error;
    QVERIFY(library.loadDocument(document, error, 1.0, KESTRA_APPLICATION_ID));
    QCOMPARE(error, QString());
    const QStringList names{"1", "2", "3"};
    QCOMPARE(namesUnder(library, at(library, "Project Swatches")), names);
    QStringList rows = heard.lines.filter("rows");
    const QStringList expected{"rowsAboutToBeRemoved 'Project Swatches' 0..1", "rowsRemoved 'Project Swatches' 0..1",
                               "rowsAboutToBeInserted 'Project Swatches' 0..2", "rowsInserted 'Project Swatches' 0..2"};
    QCOMPARE(rows, expected);
    QVERIFY2(heard.lines.filter("odel").isEmpty(), "a reset takes the views' root index away");
}

void tst_TrelColorLibrary::changedSignals()
{
    TrelColorLibrary &library = filledLibrary();
    QSignalSpy spy(&library, &TrelColorLibrary::changed);
    library.eventLibraryChanged("Mine");
    library.eventLibraryChanged("mine");
    library.eventLibraryChanged("A");
    library.eventLibraryChanged(QString());
    library.onColorLibraryListChanged("no such list");
    library.onColorLibraryListChanged("Mine");
    QStringList ids;
    for (const QList<QVariant> &arguments : std::as_const(spy))
        ids.append(arguments.at(0).toString());
    QCOMPARE(ids, QStringList({"Mine", "no such list", "Mine"}));
}

void tst_TrelColorLibrary::signalsAndSlotsInOrder()
{
    const QMetaObject &meta = TrelColorLibrary::staticMetaObject;
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures.append(meta.method(i).methodSignature());
    const QStringList expected{"changed(QString)", "addedColorToList(QModelIndex&)",
                               "onColorLibraryListChanged(QString)", "createColorList(QString,bool)",
                               "handleInsertColor(QString,QString,QString,QString,QString,QString)"};
    QCOMPARE(signatures, expected);
    for (int i = 0; i < int(expected.size()); ++i)
        QCOMPARE(meta.method(meta.methodOffset() + i).methodType(), i < 2 ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(meta.className(), "TrelColorLibrary");
    QCOMPARE(meta.superClass()->className(), "QAbstractItemModel");
}

void tst_TrelColorLibrary::containsDefaults()
{
    TrelColorLibrary &library = freshLibrary();
    QVERIFY(!library.containsDefaults());
    library.setContainsDefaults();
    QVERIFY(library.containsDefaults());
    library.setContainsDefaults();
    QVERIFY(library.containsDefaults());
}

void tst_TrelColorLibrary::thumbnails()
{
    TrelColorLibrary &library = filledLibrary();
    library.setThumbnailGenerator(square);
    QVERIFY2(library.data(at(library, "Mine/A"), Qt::DecorationRole).value<QPixmap>().isNull(),
             "made before there was a generator");

    addColor(library, "Preset", "Blue", BLUE);
    const QVariant icon = library.data(at(library, "Preset/Blue"), Qt::DecorationRole);
    QCOMPARE(icon.userType(), int(QMetaType::QPixmap));
    QCOMPARE(pixel(icon), 0xff0000ffU);
    QVERIFY(!library.data(at(library, "Preset/Blue", 1), Qt::DecorationRole).isValid());
    QVERIFY(library.data(at(library, "Preset"), Qt::DecorationRole).value<QPixmap>().isNull());

    TrelColor green(Qt::green);
    library.setData(at(library, "Preset/Blue"), QVariant::fromValue<void *>(&green), Item::ColorRole);
    QCOMPARE(pixel(library.data(at(library, "Preset/Blue"), Qt::DecorationRole)), 0xff00ff00U);

    library.createExplicitColor(TrelColor(RED), RED);
    QVERIFY(library.data(library.index(1, 0, at(library, "Explicit Colors")), Qt::DecorationRole)
                .value<QPixmap>()
                .isNull());

    library.setThumbnailGenerator(nullptr);
    library.setData(at(library, "Preset/Blue"), library.data(at(library, "Mine/A"), Item::ColorRole), Item::ColorRole);
    QCOMPARE(pixel(library.data(at(library, "Preset/Blue"), Qt::DecorationRole)), 0xff00ff00U);
}

void tst_TrelColorLibrary::thumbnailGeneratorsResult()
{
    TrelColorLibrary &library = freshLibrary();
    const TrelColor red(RED);
    QVERIFY(!library.canGeneratePixmap());
    QVERIFY(library.generatePixmap(red).isNull());
    library.setThumbnailGenerator(square);
    QVERIFY(library.canGeneratePixmap());
    QCOMPARE(library.generatePixmap(red).size(), QSize(3, 3));
    QCOMPARE(pixel(library.generatePixmap(red)), 0xffff0000U);
    library.setThumbnailGenerator(nullptr);
    QVERIFY(!library.canGeneratePixmap());
    QVERIFY(library.generatePixmap(red).isNull());
}

namespace {

struct Application
{
    int argc = 1;
    char name[5] = "test";
    char *argv[2] = {name, nullptr};
    QGuiApplication application{argc, argv};
};

/// A library with pixmaps, a loaded user file and items that wait for their deletion.
QPointer<QObject> usedLibrary()
{
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    library.setThumbnailGenerator(square);
    library.loadUserColors(QString());
    library.createColorList("Mine", true);
    addColor(library, "Mine", "A");
    addColor(library, "Mine", "B");
    library.remove("{A}");
    return &library;
}

void reportFresh(bool isGone)
{
    TrelColorLibrary::cleanup();
    const Application application;
    const TrelColorLibrary &library = *TrelColorLibrary::Instance();
    std::printf("%s, then fresh with %d lists\n", isGone ? "gone" : "still there",
                library.rowCount(library.rootIndex()));
}

void leftToTheApplication()
{
    QPointer<QObject> library;
    {
        const Application application;
        library = usedLibrary();
    }
    reportFresh(library.isNull());
}

void cleanedUpBefore()
{
    QPointer<QObject> library;
    {
        const Application application;
        library = usedLibrary();
        TrelColorLibrary::cleanup();
    }
    reportFresh(library.isNull());
}

void madeTwice()
{
    QPointer<QObject> first;
    QPointer<QObject> second;
    {
        const Application application;
        first = usedLibrary();
        TrelColorLibrary::cleanup();
        second = usedLibrary();
    }
    reportFresh(first.isNull() && second.isNull());
}

void neverMade()
{
    TrelColorLibrary::cleanup();
    {
        const Application application;
        TrelColorLibrary::cleanup();
    }
    TrelColorLibrary::cleanup();
    std::puts("nothing");
}

void neverDestroyed()
{
    static auto *application = new Application;
    usedLibrary();
    std::puts(application->argc == 1 ? "left" : "changed");
}

/// Calls \a edit, which must not tell any view about rows that are not there.
template <typename F>
void announcing(F edit)
{
    const Application application;
    TrelColorLibrary &library = filledLibrary();
    QObject::connect(&library, &QAbstractItemModel::rowsAboutToBeRemoved, [] {
        std::puts("announced");
        std::fflush(stdout);
    });
    edit(library);
}

using Library = TrelColorLibrary;

const ChildCases childCases{
    {"library left to the application", leftToTheApplication},
    {"library cleaned up before", cleanedUpBefore},
    {"library made twice", madeTwice},
    {"library never made", neverMade},
    {"application never destroyed", neverDestroyed},
    {"remove beyond the end", [] { announcing([](Library &l) { l.removeRows(2, 1, at(l, "Mine")); }); }},
    {"remove more than there are", [] { announcing([](Library &l) { l.removeRows(1, 2, at(l, "Mine")); }); }},
    {"remove row -1", [] { announcing([](Library &l) { l.removeRows(-1, 1, at(l, "Mine")); }); }},
    {"remove behind the lists", [] { announcing([](Library &l) { l.removeRows(4, 1, l.rootIndex()); }); }},
    {"insert beyond the end", [] { announcing([](Library &l) { l.insertRows(3, 1, at(l, "Mine")); }); }},
    {"insert at row -1", [] { announcing([](Library &l) { l.insertRows(-1, 1, at(l, "Mine")); }); }},
};

} // namespace

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibrary, childCases)
#include "tst_TrelColorLibrary.moc"
