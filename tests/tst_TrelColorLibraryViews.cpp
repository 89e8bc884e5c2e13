#include "TestSupport.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDomDocument>
#include <QIdentityProxyModel>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QSortFilterProxyModel>
#include <QTreeView>

#include <algorithm>
#include <memory>

using Item = TrelColorLibraryItem;

/// The library under Qt's own views and under Qt's own check of item models.
///
/// What the check says of the library itself, and why it stays:
/// - the flags of the invalid index are ItemIsEnabled, not "none" or ItemIsDropEnabled;
/// - rows are inserted one short of what was announced (ODD-63);
/// - a change of the list of lists names rootIndex(), which is no row of the invalid index;
/// - it begins at the invalid index, where it finds nothing to walk through; from rootIndex() on it would meet colours
///   under both columns of a list, and wants them under one.
/// RootedLibrary irons all but the second out, so that the check walks the whole tree.
class tst_TrelColorLibraryViews : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void modelTesterFindsNothingElse();
    void modelTesterMeetsTheRoot();
    void modelTesterMeetsInsertRows();

    void treeShowsTheLibrary();
    void listShowsTheLists();
    void withoutRootIndexViewsAreEmpty();
    void selectionHoldsBothColumns();
    void dragOfTheSelection();
    void editInPlace_data();
    void editInPlace();
    void whatCannotBeEdited_data();
    void whatCannotBeEdited();
    void removalOfSelectedRows_data();
    void removalOfSelectedRows();
    void removalOfTheShownList();
    void selectionFollowsItsColors();
    void manyColors();
    void projectLoadsWhileViewsLookOn();
    void userColorsLoadWhileViewsLookOn();
    void proxyOnTheLibraryItself();
    void proxyOnARootedLibrary();
    void libraryGoesBeforeItsViews();
};

namespace {

const char RED[] = "aRgb;1;0;#ffffffff00000000";
const char BLUE[] = "aRgb;1;0;#ffff00000000ffff";

QPixmap square(const TrelColor &color)
{
    QPixmap pixmap(8, 8);
    pixmap.fill(color.getQColor(true));
    return pixmap;
}

QString addColor(TrelColorLibrary &library, const QString &list, const QString &name, const char *value = RED)
{
    return library.createColorWithName(TrelColor(value), name, "{" + name + "}", list, "V-" + name);
}

/// The fixed lists, a preset list with P and a user list with A to E, all with thumbnails.
TrelColorLibrary &filledLibrary()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    library.setThumbnailGenerator(square);
    library.createColorList("Preset", false);
    library.createColorList("Mine", true);
    addColor(library, "Preset", "P");
    for (const char *name : {"A", "B", "C", "D", "E"})
        addColor(library, "Mine", name, BLUE);
    library.createExplicitColor(TrelColor(RED), RED);
    return library;
}

QStringList namesUnder(const QAbstractItemModel &model, const QModelIndex &parent)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(parent); ++row)
        names.append(model.index(row, 0, parent).data(Qt::EditRole).toString());
    return names;
}

QStringList namesOf(const TrelColorLibrary &library, const QString &listId)
{
    return namesUnder(library, library.getIndexOfListId(listId));
}

QModelIndex colorNamed(const TrelColorLibrary &library, const QString &name)
{
    return library.getIndexOfUid("{" + name + "}");
}

/// A view on \a root, shown and painted once.
template <typename View>
std::unique_ptr<View> viewOn(QAbstractItemModel &model, const QModelIndex &root)
{
    auto view = std::make_unique<View>();
    view->setModel(&model);
    view->setRootIndex(root);
    view->setSelectionMode(QAbstractItemView::ExtendedSelection);
    view->resize(400, 400);
    view->show();
    view->grab();
    return view;
}

std::unique_ptr<QTreeView> treeOn(TrelColorLibrary &library)
{
    auto tree = viewOn<QTreeView>(library, library.rootIndex());
    tree->expandAll();
    tree->grab();
    return tree;
}

/// Names down the tree as it shows them, each with its depth.
QStringList shown(const QTreeView &tree)
{
    QStringList lines;
    const QModelIndex top = tree.model()->index(0, 0, tree.rootIndex());
    for (QModelIndex index = top; index.isValid(); index = tree.indexBelow(index)) {
        QString indent;
        for (QModelIndex up = index.parent(); up.isValid() && up != tree.rootIndex(); up = up.parent())
            indent += "- ";
        lines.append(indent + index.data().toString());
    }
    return lines;
}

QStringList names(QModelIndexList indexes)
{
    std::sort(indexes.begin(), indexes.end());
    QStringList result;
    for (const QModelIndex &index : qAsConst(indexes))
        result.append(index.data().toString());
    return result;
}

void selectRows(QAbstractItemView &view, const QModelIndexList &indexes)
{
    for (const QModelIndex &index : indexes)
        view.selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

/// Removes the selected rows as a host's "Delete" does: from the last one on, since the others move up.
void removeSelected(QAbstractItemView &view)
{
    QModelIndexList rows = view.selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end(), [](const QModelIndex &a, const QModelIndex &b) { return a.row() > b.row(); });
    for (const QModelIndex &row : qAsConst(rows))
        view.model()->removeRow(row.row(), row.parent());
}

/// Types \a text into the editor of \a index and ends it with \a key; false where there is no editor.
bool typeInto(QAbstractItemView &view, const QModelIndex &index, const QString &text, Qt::Key key)
{
    view.setCurrentIndex(index);
    view.edit(index);
    auto *editor = view.findChild<QLineEdit *>();
    if (!editor)
        return false;
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, key);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return true;
}

QDomDocument project(const QStringList &colors)
{
    QDomDocument document;
    QDomElement list = document.createElement("ColorLibrary");
    document.appendChild(list);
    for (const QString &name : colors) {
        QDomElement color = document.createElement("Color");
        color.setAttribute("name", name);
        color.setAttribute("uid", "{" + name + "}");
        color.setAttribute("value", RED);
        list.appendChild(color);
    }
    return document;
}

QStringList numbered(const QString &prefix, int count)
{
    QStringList result;
    for (int i = 0; i < count; ++i)
        result.append(prefix + QString::number(i));
    return result;
}

/// The library with its root where Qt's check looks for it.
class RootedLibrary : public QIdentityProxyModel
{
public:
    explicit RootedLibrary(TrelColorLibrary &library)
        : m_library(library)
    {
        setSourceModel(&library);
    }

    QModelIndex mapToSource(const QModelIndex &index) const override
    {
        return index.isValid() ? QIdentityProxyModel::mapToSource(index) : m_library.rootIndex();
    }
    QModelIndex mapFromSource(const QModelIndex &index) const override
    {
        return index == m_library.rootIndex() ? QModelIndex() : QIdentityProxyModel::mapFromSource(index);
    }
    QModelIndex index(int row, int column, const QModelIndex &parent) const override
    {
        return parent.column() > 0 ? QModelIndex() : QIdentityProxyModel::index(row, column, parent);
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return parent.column() > 0 ? 0 : QIdentityProxyModel::rowCount(parent);
    }
    bool hasChildren(const QModelIndex &parent) const override
    {
        return rowCount(parent) > 0;
    }
    Qt::ItemFlags flags(const QModelIndex &index) const override
    {
        return index.isValid() ? QIdentityProxyModel::flags(index) : Qt::NoItemFlags;
    }

private:
    TrelColorLibrary &m_library;
};

/// Collects the complaints of a model tester in its warning mode.
class Complaints
{
public:
    Complaints()
    {
        s_texts.clear();
        s_next = qInstallMessageHandler(collect);
    }
    Complaints(const Complaints &) = delete;
    Complaints &operator=(const Complaints &) = delete;
    ~Complaints()
    {
        qInstallMessageHandler(s_next);
    }

    /// Those since the last call that are not about the flags of the invalid index.
    QStringList taken()
    {
        QStringList rest;
        for (const QString &text : qAsConst(s_texts)) {
            if (text.contains("flags == Qt::ItemIsDropEnabled"))
                ++m_aboutFlags;
            else
                rest.append(text);
        }
        s_texts.clear();
        return rest;
    }
    int aboutFlags() const
    {
        return m_aboutFlags;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (text.startsWith("FAIL!"))
            s_texts.append(text);
        else
            s_next(type, context, text);
    }

    static QStringList s_texts;
    static QtMessageHandler s_next;

    int m_aboutFlags = 0;
};

QStringList Complaints::s_texts;
QtMessageHandler Complaints::s_next = nullptr;

constexpr auto QTEST_MODE = QAbstractItemModelTester::FailureReportingMode::QtTest;
constexpr auto WARNING_MODE = QAbstractItemModelTester::FailureReportingMode::Warning;

} // namespace

void tst_TrelColorLibraryViews::modelTesterFindsNothingElse()
{
    TrelColorLibrary &library = filledLibrary();
    RootedLibrary rooted(library);
    QCOMPARE(namesUnder(rooted, QModelIndex()), QStringList({"Explicit Colors", "Project Swatches", "Preset", "Mine"}));
    const QAbstractItemModelTester tester(&rooted, QTEST_MODE);

    addColor(library, "Mine", "F");
    library.createColor(TrelColor(RED), "{G}", "Preset", "", "");
    library.createExplicitColor(TrelColor(BLUE), BLUE);
    library.setData(colorNamed(library, "A"), "a", Qt::EditRole);
    library.setData(library.getIndexOfListId("Mine"), "Ours", Qt::EditRole);
    library.rename("{B}", "b", true);
    library.createNewSwatchUidFromUid("{C}", "Project Swatches");
    library.remove("{D}");
    library.removeRows(1, 2, library.getIndexOfListId("Ours"));
    QString error;
    for (const int count : {3, 1, 2}) {
        QDomDocument document = project(numbered("x", count));
        QVERIFY(library.loadDocument(document, error, 1.0, KESTRA_APPLICATION_ID));
    }
    library.clear("Preset");
    QCOMPARE(namesUnder(rooted, rooted.index(3, 0, QModelIndex())), QStringList({"a", "E", "F"}));
    QCOMPARE(namesUnder(rooted, rooted.index(1, 0, QModelIndex())), QStringList({"x0", "x1"}));
}

void tst_TrelColorLibraryViews::modelTesterMeetsTheRoot()
{
    TrelColorLibrary &library = filledLibrary();
    Complaints complaints;
    const QAbstractItemModelTester tester(&library, WARNING_MODE);
    addColor(library, "Mine", "F");
    library.setData(colorNamed(library, "A"), "a", Qt::EditRole);
    library.remove("{B}");
    QDomDocument document = project({"1", "2"});
    QString error;
    library.loadDocument(document, error, 1.0, KESTRA_APPLICATION_ID);
    QCOMPARE(complaints.taken(), QStringList());
    QVERIFY(complaints.aboutFlags() > 0);

    library.removeRows(2, 1, library.rootIndex());
    const QStringList ofTheRoot = complaints.taken();
    QCOMPARE(int(ofTheRoot.size()), 1);
    QVERIFY2(ofTheRoot.first().contains("bottomRight.row() < rowCount"), qPrintable(ofTheRoot.first()));
}

void tst_TrelColorLibraryViews::modelTesterMeetsInsertRows()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex list = library.getIndexOfListId("Mine");
    Complaints complaints;
    const QAbstractItemModelTester tester(&library, WARNING_MODE);
    library.insertRows(library.rowCount(list), 1, list);
    const QStringList atTheEnd = complaints.taken();
    QCOMPARE(int(atTheEnd.size()), 1);
    QVERIFY2(atTheEnd.first().contains("rowCount"), qPrintable(atTheEnd.first()));
    library.insertRows(0, 2, list);
    const QStringList inFront = complaints.taken();
    QVERIFY(!inFront.isEmpty());
    for (const QString &complaint : inFront)
        QVERIFY2(complaint.contains("rowCount") || complaint.contains("c.next"), qPrintable(complaint));
}

void tst_TrelColorLibraryViews::treeShowsTheLibrary()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const QStringList expected{
        "Explicit Colors", "- ", "Project Swatches", "Preset", "- P", "Mine", "- A", "- B", "- C", "- D", "- E"};
    QCOMPARE(shown(*tree), expected);
    QCOMPARE(tree->model()->headerData(0, Qt::Horizontal).toString(), QString("Swatches"));
    const QRect swatch = tree->visualRect(colorNamed(library, "P"));
    QVERIFY(swatch.isValid());
    const QImage picture = tree->viewport()->grab(swatch).toImage();
    bool isRedShown = false;
    for (int x = 0; x < picture.width(); ++x)
        isRedShown = isRedShown || picture.pixel(x, picture.height() / 2) == 0xffff0000U;
    QVERIFY2(isRedShown, "the thumbnail is painted");

    addColor(library, "Mine", "F");
    library.createColorList("New", true);
    QCOMPARE(shown(*tree), expected + QStringList({"- F", "New"}));
    addColor(library, "New", "N");
    tree->expandAll();
    QCOMPARE(shown(*tree), expected + QStringList({"- F", "New", "- N"}));
}

void tst_TrelColorLibraryViews::listShowsTheLists()
{
    TrelColorLibrary &library = filledLibrary();
    const auto lists = viewOn<QListView>(library, library.rootIndex());
    const auto colors = viewOn<QListView>(library, library.getIndexOfListId("Mine"));
    QCOMPARE(namesUnder(*lists->model(), lists->rootIndex()),
             QStringList({"Explicit Colors", "Project Swatches", "Preset", "Mine"}));
    for (int row = 0; row < 5; ++row) {
        const QModelIndex index = colors->model()->index(row, 0, colors->rootIndex());
        QVERIFY(colors->visualRect(index).isValid());
        QCOMPARE(colors->indexAt(colors->visualRect(index).center()), index);
    }
    addColor(library, "Mine", "F");
    library.remove("{A}");
    colors->grab();
    const QModelIndex first = colors->indexAt(QPoint(5, 5));
    QCOMPARE(first.data().toString(), QString("B"));
    QVERIFY(colors->visualRect(colorNamed(library, "F")).isValid());
}

void tst_TrelColorLibraryViews::withoutRootIndexViewsAreEmpty()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = viewOn<QTreeView>(library, QModelIndex());
    QCOMPARE(shown(*tree), QStringList());
    tree->selectAll();
    QCOMPARE(tree->selectionModel()->selectedIndexes(), QModelIndexList());
}

void tst_TrelColorLibraryViews::selectionHoldsBothColumns()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    selectRows(*tree, {colorNamed(library, "B"), colorNamed(library, "D"), colorNamed(library, "P")});
    QCOMPARE(names(tree->selectionModel()->selectedIndexes()).size(), 6);
    QCOMPARE(names(tree->selectionModel()->selectedRows()).size(), 3);
    QVERIFY(tree->selectionModel()->isRowSelected(1, library.getIndexOfListId("Mine")));
    QVERIFY(!tree->selectionModel()->isRowSelected(0, library.getIndexOfListId("Mine")));

    tree->selectionModel()->clear();
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, tree->visualRect(colorNamed(library, "B")).center());
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      tree->visualRect(colorNamed(library, "D")).center());
    QCOMPARE(names(tree->selectionModel()->selectedRows()), QStringList({"B", "C", "D"}));
    QCOMPARE(tree->currentIndex(), colorNamed(library, "D"));
}

void tst_TrelColorLibraryViews::dragOfTheSelection()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    tree->setDragEnabled(true);
    selectRows(*tree, {colorNamed(library, "B"), colorNamed(library, "C")});
    QModelIndexList rows = tree->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    const std::unique_ptr<QMimeData> data(tree->model()->mimeData(rows));
    QStringList values;
    for (const QByteArray &entry : data->data("data/x-trelcolor").split(','))
        values.append(TrelColorLibrary::UidAndValueToUid(QString::fromLatin1(entry)));
    QCOMPARE(values, QStringList({"{B}", "{C}"}));
    QCOMPARE(data->data("data/x-trelcolor-name"), QByteArray("B,C"));
    // No type is one that the model takes, so that views refuse a drop by themselves.
    QVERIFY(!library.canDropMimeData(data.get(), Qt::CopyAction, 0, 0, library.getIndexOfListId("Mine")));
}

void tst_TrelColorLibraryViews::editInPlace_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *uid, const char *text, int key, const char *expected) {
        QTest::newRow(name) << uid << text << key << expected;
    };
    row("colour", "{B}", "Deep sea", Qt::Key_Return, "Deep sea");
    row("colour, given up", "{B}", "Deep sea", Qt::Key_Escape, "B");
    row("colour, sibling's name", "{B}", "C", Qt::Key_Return, "B");
    row("colour, own name", "{B}", "B", Qt::Key_Return, "B");
    row("list", "", "Ours", Qt::Key_Return, "Ours");
    row("list, given up", "", "Ours", Qt::Key_Escape, "Mine");
    row("list, another list's name", "", "Preset", Qt::Key_Return, "Mine");
    row("list, own name", "", "Mine", Qt::Key_Return, "Mine");
}

void tst_TrelColorLibraryViews::editInPlace()
{
    QFETCH(QString, uid);
    QFETCH(QString, text);
    QFETCH(int, key);
    QFETCH(QString, expected);
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const QModelIndex index = uid.isEmpty() ? library.getIndexOfListId("Mine") : library.getIndexOfUid(uid);
    QVERIFY(typeInto(*tree, index, text, Qt::Key(key)));
    QCOMPARE(index.data().toString(), expected);
    QVERIFY(tree->findChild<QLineEdit *>() == nullptr);
    QVERIFY2(tree->isExpanded(uid.isEmpty() ? index : index.parent()), "a rename keeps the list open");
    QCOMPARE(tree->currentIndex(), index);
}

void tst_TrelColorLibraryViews::whatCannotBeEdited_data()
{
    QTest::addColumn<QString>("uid");
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("column");
    QTest::newRow("preset's colour") << "{P}"
                                     << "" << 0;
    QTest::newRow("colour's vendor") << "{B}"
                                     << "" << 1;
    QTest::newRow("preset list") << ""
                                 << "Preset" << 0;
    QTest::newRow("project") << ""
                             << "Project Swatches" << 0;
    QTest::newRow("explicit colours") << ""
                                      << "Explicit Colors" << 0;
    QTest::newRow("user list's vendor column") << ""
                                               << "Mine" << 1;
}

void tst_TrelColorLibraryViews::whatCannotBeEdited()
{
    QFETCH(QString, uid);
    QFETCH(QString, list);
    QFETCH(int, column);
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const QModelIndex first = uid.isEmpty() ? library.getIndexOfListId(list) : library.getIndexOfUid(uid);
    const QModelIndex index = library.index(first.row(), column, first.parent());
    QVERIFY(index.isValid());
    expectWarning("edit: editing failed");
    QVERIFY(!typeInto(*tree, index, "x", Qt::Key_Return));
}

void tst_TrelColorLibraryViews::removalOfSelectedRows_data()
{
    QTest::addColumn<QStringList>("selected");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("one") << QStringList{"B"} << QStringList{"A", "C", "D", "E"};
    QTest::newRow("neighbours") << QStringList{"B", "C"} << QStringList{"A", "D", "E"};
    QTest::newRow("scattered") << QStringList{"A", "C", "E"} << QStringList{"B", "D"};
    QTest::newRow("selected upwards") << QStringList{"E", "C", "A"} << QStringList{"B", "D"};
    QTest::newRow("all") << QStringList{"A", "B", "C", "D", "E"} << QStringList{};
}

void tst_TrelColorLibraryViews::removalOfSelectedRows()
{
    QFETCH(QStringList, selected);
    QFETCH(QStringList, left);
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const auto list = viewOn<QListView>(library, library.getIndexOfListId("Mine"));
    list->setSelectionModel(tree->selectionModel());
    QModelIndexList indexes;
    for (const QString &name : selected)
        indexes.append(colorNamed(library, name));
    selectRows(*tree, indexes);
    tree->setCurrentIndex(indexes.first());
    selectRows(*tree, indexes);
    removeSelected(*tree);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    tree->grab();
    list->grab();
    QCOMPARE(namesOf(library, "Mine"), left);
    QCOMPARE(shown(*tree).mid(6), left.replaceInStrings(QRegularExpression("^"), "- "));
    QVERIFY(!tree->currentIndex().isValid() || tree->currentIndex().model() == &library);
}

void tst_TrelColorLibraryViews::removalOfTheShownList()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const auto list = viewOn<QListView>(library, library.getIndexOfListId("Mine"));
    tree->setCurrentIndex(colorNamed(library, "C"));
    const QPersistentModelIndex color(colorNamed(library, "C"));
    const QPersistentModelIndex preset(colorNamed(library, "P"));
    library.removeRows(3, 1, library.rootIndex());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    tree->grab();
    list->grab();
    QVERIFY(!color.isValid());
    QVERIFY(!list->rootIndex().isValid());
    QVERIFY(preset.isValid());
    QCOMPARE(shown(*tree), QStringList({"Explicit Colors", "- ", "Project Swatches", "Preset", "- P"}));
    library.removeRows(0, 1, library.rootIndex());
    QCOMPARE(shown(*tree), QStringList({"Project Swatches", "Preset", "- P"}));
    QCOMPARE(preset.data().toString(), QString("P"));
    QCOMPARE(QModelIndex(preset).parent().row(), 1);
}

void tst_TrelColorLibraryViews::selectionFollowsItsColors()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    selectRows(*tree, {colorNamed(library, "B"), colorNamed(library, "D")});
    library.remove("{A}");
    library.remove("{C}");
    addColor(library, "Mine", "F");
    QCOMPARE(names(tree->selectionModel()->selectedRows()), QStringList({"B", "D"}));
    library.rename("{B}", "b", true);
    QCOMPARE(names(tree->selectionModel()->selectedRows()), QStringList({"b", "D"}));
    library.remove("{D}");
    QCOMPARE(names(tree->selectionModel()->selectedRows()), QStringList({"b"}));
}

void tst_TrelColorLibraryViews::manyColors()
{
    TrelColorLibrary &library = filledLibrary();
    library.createColorList("Many", true);
    const auto tree = treeOn(library);
    const auto list = viewOn<QListView>(library, library.getIndexOfListId("Many"));
    tree->expand(library.getIndexOfListId("Many"));
    const QStringList expected = numbered("c", 2000);
    for (const QString &name : expected)
        addColor(library, "Many", name);
    QCOMPARE(namesUnder(*list->model(), list->rootIndex()), expected);
    QCOMPARE(int(shown(*tree).size()), 12 + 2000);

    for (QAbstractItemView *view :
         {static_cast<QAbstractItemView *>(tree.get()), static_cast<QAbstractItemView *>(list.get())}) {
        view->scrollToBottom();
        view->grab();
        QVERIFY(view->viewport()->rect().intersects(view->visualRect(colorNamed(library, "c1999"))));
        view->setCurrentIndex(colorNamed(library, "c1000"));
        view->scrollTo(colorNamed(library, "c1000"));
        view->grab();
        QVERIFY(view->viewport()->rect().intersects(view->visualRect(colorNamed(library, "c1000"))));
    }
    list->selectAll();
    QCOMPARE(int(list->selectionModel()->selectedRows().size()), 2000);
    list->selectionModel()->clear();
    for (int i = 1; i < 2000; i += 2)
        selectRows(*list, {library.index(i, 0, list->rootIndex())});
    removeSelected(*list);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    list->grab();
    tree->grab();
    QCOMPARE(library.rowCount(list->rootIndex()), 1000);
    QCOMPARE(library.index(999, 0, list->rootIndex()).data().toString(), QString("c1998"));
    QCOMPARE(int(shown(*tree).size()), 12 + 1000);
    QVERIFY(typeInto(*list, colorNamed(library, "c1998"), "last", Qt::Key_Return));
    QCOMPARE(colorNamed(library, "c1998").data().toString(), QString("last"));
}

void tst_TrelColorLibraryViews::projectLoadsWhileViewsLookOn()
{
    TrelColorLibrary &library = filledLibrary();
    addColor(library, "Project Swatches", "S");
    const auto tree = treeOn(library);
    const auto list = viewOn<QListView>(library, library.getIndexOfListId("Project Swatches"));
    const QPersistentModelIndex old(colorNamed(library, "S"));
    selectRows(*tree, {colorNamed(library, "B"), colorNamed(library, "S")});
    tree->setCurrentIndex(colorNamed(library, "S"));
    selectRows(*tree, {colorNamed(library, "B")});
    QSignalSpy resets(&library, &QAbstractItemModel::modelReset);

    QString error;
    for (const int count : {3, 1, 40}) {
        QDomDocument document = project(numbered("p", count));
        QVERIFY(library.loadDocument(document, error, 1.0, KESTRA_APPLICATION_ID));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        tree->grab();
        list->grab();
        QCOMPARE(namesUnder(*list->model(), list->rootIndex()), numbered("p", count));
        QCOMPARE(tree->rootIndex(), library.rootIndex());
    }
    QVERIFY(!old.isValid());
    QCOMPARE(int(resets.size()), 0);
    QVERIFY(names(tree->selectionModel()->selectedRows()).contains("B"));
    QVERIFY(tree->isExpanded(library.getIndexOfListId("Mine")));
    QVERIFY(typeInto(*list, colorNamed(library, "p39"), "Sky", Qt::Key_Return));
    QCOMPARE(colorNamed(library, "p39").data().toString(), QString("Sky"));

    QDomDocument document = project({"other"});
    QVERIFY(library.loadDocument(document, error, 1.0, "Another"));
    QCOMPARE(library.rowCount(list->rootIndex()), 40);
    QDomDocument empty;
    QVERIFY(library.loadDocument(empty, error, 1.0, KESTRA_APPLICATION_ID));
    QCOMPARE(library.rowCount(list->rootIndex()), 0);
}

void tst_TrelColorLibraryViews::userColorsLoadWhileViewsLookOn()
{
    QTemporaryDir folder;
    const QString path = folder.filePath("colors.xml");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<ColorLibraryList><ColorLibrary name=\"Mine\" isUserLibrary=\"1\"><Color name=\"X\" uid=\"{X}\" "
               "value=\"red\"/></ColorLibrary></ColorLibraryList>");
    file.close();
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    selectRows(*tree, {colorNamed(library, "E")});
    library.loadUserColors(path);
    tree->expandAll();
    tree->grab();
    QCOMPARE(shown(*tree).mid(10), QStringList({"- E", "Mine 2", "- X"}));
    QCOMPARE(names(tree->selectionModel()->selectedRows()), QStringList({"E"}));
    QVERIFY2(QGuiApplication::overrideCursor() == nullptr, "the wait cursor is gone");
}

// Qt's proxies count columns and rows from the invalid index, where the library has none.
void tst_TrelColorLibraryViews::proxyOnTheLibraryItself()
{
    TrelColorLibrary &library = filledLibrary();
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&library);
    proxy.sort(0, Qt::DescendingOrder);
    QVERIFY(!proxy.mapFromSource(library.rootIndex()).isValid());
    const auto list = viewOn<QListView>(proxy, proxy.mapFromSource(library.getIndexOfListId("Mine")));
    QCOMPARE(namesUnder(proxy, list->rootIndex()), QStringList({"A", "B", "C", "D", "E"}));
    proxy.setFilterRegularExpression("[BCD]");
    list->grab();
    QCOMPARE(namesUnder(library, library.getIndexOfListId("Mine")).size(), 5);
}

void tst_TrelColorLibraryViews::proxyOnARootedLibrary()
{
    TrelColorLibrary &library = filledLibrary();
    RootedLibrary rooted(library);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&rooted);
    proxy.sort(0, Qt::DescendingOrder);
    const auto tree = viewOn<QTreeView>(proxy, QModelIndex());
    QCOMPARE(shown(*tree), QStringList({"Project Swatches", "Preset", "Mine", "Explicit Colors"}));
    tree->expand(proxy.index(2, 0, QModelIndex()));
    const auto list = viewOn<QListView>(proxy, proxy.index(2, 0, QModelIndex()));
    QCOMPARE(namesUnder(proxy, list->rootIndex()), QStringList({"E", "D", "C", "B", "A"}));
    addColor(library, "Mine", "BB");
    library.remove("{D}");
    list->grab();
    QCOMPARE(namesUnder(proxy, list->rootIndex()), QStringList({"E", "C", "BB", "B", "A"}));
    QCOMPARE(shown(*tree).mid(3, 5), QStringList({"- E", "- C", "- BB", "- B", "- A"}));
}

void tst_TrelColorLibraryViews::libraryGoesBeforeItsViews()
{
    TrelColorLibrary &library = filledLibrary();
    const auto tree = treeOn(library);
    const auto list = viewOn<QListView>(library, library.getIndexOfListId("Mine"));
    tree->setCurrentIndex(colorNamed(library, "C"));
    TrelColorLibrary::cleanup();
    tree->grab();
    list->grab();
    QVERIFY(!tree->rootIndex().isValid());
    QVERIFY(!tree->currentIndex().isValid());

    TrelColorLibrary &fresh = *TrelColorLibrary::Instance();
    tree->setModel(&fresh);
    tree->setRootIndex(fresh.rootIndex());
    QCOMPARE(shown(*tree), QStringList({"Explicit Colors", "Project Swatches"}));
}

TREL_TEST_MAIN_WITH(QApplication, tst_TrelColorLibraryViews, {})
#include "tst_TrelColorLibraryViews.moc"
