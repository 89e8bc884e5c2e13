#include "PaneTest.h"

#include "ColorMime.h"
#include "SwatchBrowser.h"

#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QUndoStack>

#include <memory>

/// The browser under mouse and keyboard.
class tst_SwatchBrowser : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void cleanupTestCase();
    void showsListsAndColors();
    void enterAndDoubleClickActivate();
    void unusableColorsAreNotActivated();
    void newListIsNamedAtOnce();
    void newColorGoesToTheCurrentList();
    void newColorBesidePresets();
    void firstColorMakesAList();
    void renameInPlace();
    void renameIsRefused_data();
    void renameIsRefused();
    void deleteSelectionAndUndo();
    void deletionIsRefused();
    void recolorSelection();
    void arrangeByKeyboard();
    void copyAndPaste();
    void searchHidesAndFinds();
    void newColorEndsASearch();
    void orderIsTheViewsOnly();
    void dropMovesBetweenLists();
    void dragByMouse();
    void dropCopies_data();
    void dropCopies();
    void dropIsRefused();
    void dropOfForeignColors();
    void sortedViewDropsAtTheEnd();
    void goesWhileANameIsTyped();
    void everythingHasAName();
    void thumbnailsAreSharp();
    void pictures();

private:
    QTreeView &tree() const;
    QModelIndex shown(const QString &name) const;
    void choose(const QStringList &names);
    QString message() const;
    void typeName(const QString &name);
    bool drag(const QMimeData &data, const QString &target, double height, Qt::KeyboardModifiers modifiers,
              Qt::DropActions actions);

    std::unique_ptr<QUndoStack> m_undo;
    std::unique_ptr<SwatchBrowser> m_browser;
};

namespace {

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

QStringList lists()
{
    QStringList names;
    for (int row = 0; row < library().rowCount(library().rootIndex()); ++row)
        names.append(library().index(row, 0, library().rootIndex()).data().toString());
    return names;
}

void addColor(const QString &list, const QString &name, const QString &value)
{
    library().createColorWithName(TrelColor(value), name, "{" + name + "}", list, "V-" + name);
}

std::unique_ptr<QMimeData> dragOf(const QStringList &names)
{
    QModelIndexList indexes;
    for (const QString &name : names)
        indexes.append(library().getIndexOfUid("{" + name + "}"));
    return std::unique_ptr<QMimeData>(ColorMime::fromLibrary(indexes));
}

constexpr double UPPER = 0.2; ///< shares of a row's height
constexpr double LOWER = 0.8;

} // namespace

void tst_SwatchBrowser::setUp()
{
    TrelColorLibrary::cleanup();
    library().setThumbnailGenerator(SwatchBrowser::thumbnail);
    library().createColorList("Preset", false);
    library().createColorList("Mine", true);
    library().createColorList("Other", true);
    addColor("Preset", "Amber", "#ffbf00");
    addColor("Preset", "Teal", "#008080");
    addColor("Mine", "Red", "#ff0000");
    addColor("Mine", "Green", "#00ff00");
    addColor("Mine", "Blue", "#0000ff");
    addColor("Other", "Grey", "#808080");
    m_undo = std::make_unique<QUndoStack>();
    m_browser = std::make_unique<SwatchBrowser>(m_undo.get());
    QVERIFY(PaneTest::present(*m_browser, QSize(300, 500)));
    tree().expandAll();
    tree().setFocus();
}

void tst_SwatchBrowser::tearDown()
{
    m_browser.reset();
    m_undo.reset();
}

void tst_SwatchBrowser::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
}

QTreeView &tst_SwatchBrowser::tree() const
{
    return *m_browser->findChild<QTreeView *>();
}

/// The row with this name as the view shows it; invalid for none.
QModelIndex tst_SwatchBrowser::shown(const QString &name) const
{
    for (QModelIndex index = tree().model()->index(0, 0); index.isValid(); index = tree().indexBelow(index)) {
        if (index.data().toString() == name)
            return index;
    }
    return QModelIndex();
}

/// Clicks the rows, the second and further ones with Ctrl.
void tst_SwatchBrowser::choose(const QStringList &names)
{
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    for (const QString &name : names) {
        tree().scrollTo(shown(name));
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, modifiers, tree().visualRect(shown(name)).center());
        modifiers = Qt::ControlModifier;
    }
}

QString tst_SwatchBrowser::message() const
{
    for (const QLabel *label : m_browser->findChildren<QLabel *>()) {
        if (label->objectName() == "message" && label->isVisible())
            return label->text();
    }
    return QString();
}

/// Into the field that is open in the tree.
void tst_SwatchBrowser::typeName(const QString &name)
{
    auto *editor = tree().findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, name);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Drags \a data over the row of \a target and drops it, if it is taken there.
bool tst_SwatchBrowser::drag(const QMimeData &data, const QString &target, double height,
                             Qt::KeyboardModifiers modifiers, Qt::DropActions actions)
{
    const QRect rect = tree().visualRect(shown(target));
    const QPoint position(rect.center().x(), rect.top() + int(rect.height() * height));
    return PaneTest::drop(*tree().viewport(), position, data, actions, modifiers);
}

void tst_SwatchBrowser::showsListsAndColors()
{
    QCOMPARE(tree().model()->rowCount(), 4);
    QVERIFY2(!shown("Explicit Colors").isValid(), "colours without a name have no place in it");
    QVERIFY(shown("Project Swatches").isValid());
    QCOMPARE(tree().model()->headerData(0, Qt::Horizontal).toString(), QString("Swatches"));
    const QRect swatch = tree().visualRect(shown("Red"));
    const QImage picture = tree().viewport()->grab(swatch).toImage();
    QCOMPARE(picture.pixelColor(9, picture.height() / 2).name(), QString("#ff0000"));
    choose({"Red"});
    const QImage selected = tree().viewport()->grab(tree().visualRect(shown("Red"))).toImage();
    QCOMPARE(selected.pixelColor(9, picture.height() / 2).name(), QString("#ff0000"));
    QVERIFY(selected != picture);
    QVERIFY(tree().isFirstColumnSpanned(shown("Mine").row(), QModelIndex()));
}

void tst_SwatchBrowser::enterAndDoubleClickActivate()
{
    QSignalSpy spy(m_browser.get(), &SwatchBrowser::colorActivated);
    choose({"Green"});
    QTest::keyClick(&tree(), Qt::Key_Return);
    QCOMPARE(int(spy.size()), 1);
    QCOMPARE(qvariant_cast<TrelColor>(spy.first().at(0)).name8(), QString("#00ff00"));
    QCOMPARE(spy.first().at(1).toString(), QString("{Green}"));
    choose({"Teal"});
    QTest::mouseDClick(tree().viewport(), Qt::LeftButton, {}, tree().visualRect(shown("Teal")).center());
    QCOMPARE(int(spy.size()), 2);
    QCOMPARE(spy.last().at(1).toString(), QString("{Teal}"));
    choose({"Mine"});
    QTest::keyClick(&tree(), Qt::Key_Return);
    QCOMPARE(int(spy.size()), 2);
    choose({"Red", "Blue", "Mine"});
    QCOMPARE(m_browser->selectedUids(), QStringList({"{Red}", "{Blue}"}));
}

void tst_SwatchBrowser::unusableColorsAreNotActivated()
{
    addColor("Mine", "Wild", "aYxy;1;0;65535;9;0.3;0.3");
    QSignalSpy activated(m_browser.get(), &SwatchBrowser::colorActivated);
    QSignalSpy refused(m_browser.get(), &SwatchBrowser::refused);
    choose({"Wild"});
    QTest::keyClick(&tree(), Qt::Key_Return);
    QCOMPARE(int(activated.size()), 0);
    QCOMPARE(refused.first().first().toString(), QString("“Wild” cannot be used. Y, x and y lie between 0 and 1."));
}

void tst_SwatchBrowser::newListIsNamedAtOnce()
{
    QTest::keyClick(&tree(), Qt::Key_L, Qt::ControlModifier);
    QCOMPARE(lists().last(), QString("New List"));
    typeName("Act 1");
    QCOMPARE(lists().last(), QString("Act 1"));
    m_undo->undo();
    m_undo->undo();
    QCOMPARE(lists(), QStringList({"Explicit Colors", "Project Swatches", "Preset", "Mine", "Other"}));
    m_undo->redo();
    m_undo->redo();
    QCOMPARE(lists().last(), QString("Act 1"));
    QVERIFY(library().isUserListIndex(library().getIndexOfListId("Act 1")));
}

void tst_SwatchBrowser::newColorGoesToTheCurrentList()
{
    m_browser->setEditedColor(TrelColor("#123456"));
    choose({"Green"});
    QTest::keyClick(&tree(), Qt::Key_Insert);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Colour", "Blue"}));
    QCOMPARE(int(m_browser->selectedUids().size()), 1);
    QCOMPARE(library().get(m_browser->selectedUids().first()).name8(), QString("#123456"));
    QTest::keyClick(&tree(), Qt::Key_Insert);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Colour", "Colour 2", "Blue"}));
    QTest::keyClick(&tree(), Qt::Key_F2);
    typeName("Navy");
    QCOMPARE(PaneTest::namesIn("Mine").at(3), QString("Navy"));
    while (m_undo->canUndo())
        m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
}

void tst_SwatchBrowser::newColorBesidePresets()
{
    choose({"Amber"});
    QTest::keyClick(&tree(), Qt::Key_Insert);
    QCOMPARE(PaneTest::namesIn("Preset"), QStringList({"Amber", "Teal"}));
    QCOMPARE(PaneTest::namesIn("Mine").last(), QString("Colour"));
}

void tst_SwatchBrowser::firstColorMakesAList()
{
    choose({"Mine", "Other"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QCOMPARE(lists().last(), QString("Preset"));
    QTest::keyClick(&tree(), Qt::Key_Insert);
    QCOMPARE(lists().last(), QString("My Colours"));
    QCOMPARE(PaneTest::namesIn("My Colours"), QStringList("Colour"));
    m_undo->undo();
    QCOMPARE(lists().last(), QString("Preset"));
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
}

void tst_SwatchBrowser::renameInPlace()
{
    choose({"Blue"});
    QTest::keyClick(&tree(), Qt::Key_F2);
    typeName("  Sky ");
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Sky"}));
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
    QCOMPARE(library().getName("{Blue}", TrelColorLibrary::VendorIdDescriptor), QString("V-Blue"));
    choose({"Other"});
    QTest::keyClick(&tree(), Qt::Key_F2);
    typeName("Ours");
    QVERIFY(lists().contains("Ours"));
    QTest::keyClick(&tree(), Qt::Key_F2);
    typeName("Ours");
    QCOMPARE(m_undo->count(), 1);
    QCOMPARE(message(), QString());
}

void tst_SwatchBrowser::renameIsRefused_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("a sibling's") << "Red"
                                 << "Green"
                                 << "“Mine” has a colour called “Green” already.";
    QTest::newRow("another list's") << "Mine"
                                    << "Preset"
                                    << "There is a list called “Preset” already.";
    QTest::newRow("nothing") << "Red"
                             << " "
                             << "A name cannot be empty.";
    QTest::newRow("a preset's colour") << "Amber"
                                       << ""
                                       << "“Amber” cannot be renamed.";
    QTest::newRow("the project's list") << "Project Swatches"
                                        << ""
                                        << "“Project Swatches” cannot be renamed.";
}

void tst_SwatchBrowser::renameIsRefused()
{
    QFETCH(QString, row);
    QFETCH(QString, name);
    QFETCH(QString, reason);
    QSignalSpy refused(m_browser.get(), &SwatchBrowser::refused);
    choose({row});
    QTest::keyClick(&tree(), Qt::Key_F2);
    if (!name.isEmpty())
        typeName(name);
    QCOMPARE(int(refused.size()), 1);
    QCOMPARE(refused.first().first().toString(), reason);
    QCOMPARE(message(), reason);
    QVERIFY(shown(row).isValid());
    QCOMPARE(m_undo->count(), 0);
    choose({"Blue"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QCOMPARE(message(), QString());
}

void tst_SwatchBrowser::deleteSelectionAndUndo()
{
    choose({"Red", "Blue", "Grey"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList("Green"));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList());
    QCOMPARE(m_undo->undoText(), QString("Delete 3 Colours"));
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
    QCOMPARE(library().get("{Blue}").name8(), QString("#0000ff"));
    choose({"Mine", "Red", "Grey"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QVERIFY(!lists().contains("Mine"));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList());
    m_undo->undo();
    QCOMPARE(lists(), QStringList({"Explicit Colors", "Project Swatches", "Preset", "Mine", "Other"}));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList("Grey"));
}

void tst_SwatchBrowser::deletionIsRefused()
{
    choose({"Red", "Amber"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QCOMPARE(message(), QString("“Preset” is a preset and cannot be changed."));
    choose({"Preset"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QCOMPARE(message(), QString("“Preset” cannot be deleted."));
    QCOMPARE(m_undo->count(), 0);
    QCOMPARE(PaneTest::namesIn("Mine").size(), 3);
}

void tst_SwatchBrowser::recolorSelection()
{
    m_browser->setEditedColor(TrelColor("aYxy;1;0;65535;0.5;0.3127;0.329"));
    m_browser->setEditedColor(TrelColor());
    choose({"Red", "Grey"});
    QTest::keyClick(&tree(), Qt::Key_E, Qt::ControlModifier);
    QCOMPARE(library().get("{Red}").aName(), QString("aYxy;1;0;65535;0.500000;0.312700;0.329000"));
    QCOMPARE(library().get("{Grey}").aName(), library().get("{Red}").aName());
    m_undo->undo();
    QCOMPARE(library().get("{Red}").name8(), QString("#ff0000"));
    choose({"Teal"});
    QTest::keyClick(&tree(), Qt::Key_E, Qt::ControlModifier);
    QCOMPARE(message(), QString("“Preset” is a preset and cannot be changed."));
    QCOMPARE(library().get("{Teal}").name8(), QString("#008080"));
}

void tst_SwatchBrowser::arrangeByKeyboard()
{
    choose({"Blue"});
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Blue", "Green"}));
    QCOMPARE(m_browser->selectedUids(), QStringList("{Blue}"));
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Blue", "Red", "Green"}));
    choose({"Blue", "Red"});
    QTest::keyClick(&tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Green", "Blue", "Red"}));
    while (m_undo->canUndo())
        m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));

    choose({"Other"});
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(lists().mid(2), QStringList({"Preset", "Other", "Mine"}));
    QVERIFY(tree().isExpanded(shown("Other")));
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(lists().mid(2), QStringList({"Preset", "Other", "Mine"}));
    m_undo->undo();
    QCOMPARE(lists().mid(2), QStringList({"Preset", "Mine", "Other"}));
    choose({"Preset"});
    QTest::keyClick(&tree(), Qt::Key_Down, Qt::AltModifier);
    QCOMPARE(message(), QString("“Preset” cannot be moved."));
}

void tst_SwatchBrowser::copyAndPaste()
{
    choose({"Teal", "Red"});
    QTest::keyClick(&tree(), Qt::Key_C, Qt::ControlModifier);
    choose({"Grey"});
    QTest::keyClick(&tree(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Grey", "Teal", "Red"}));
    QCOMPARE(m_browser->selectedUids().size(), 2);
    QVERIFY(!m_browser->selectedUids().contains("{Teal}"));
    const QModelIndex copy = library().getIndexOfUid(m_browser->selectedUids().first());
    QCOMPARE(copy.data(TrelColorLibraryItem::OriginatingPresetRole).toString(), QString("Preset/Teal"));
    QCOMPARE(copy.data(TrelColorLibraryItem::VendorIdRole).toString(), QString("V-Teal"));
    QTest::keyClick(&tree(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Grey", "Teal", "Red", "Teal 2", "Red 2"}));
    m_undo->undo();
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Other"), QStringList("Grey"));

    QGuiApplication::clipboard()->setText("#102030\n#405060");
    QTest::keyClick(&tree(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Grey", "Colour", "Colour 2"}));
    m_undo->undo();
    QGuiApplication::clipboard()->setText(QString("#102030\n").repeated(4000));
    QTest::keyClick(&tree(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(PaneTest::namesIn("Other").last(), QString("Colour 4000"));
    m_undo->undo();
    QGuiApplication::clipboard()->setText("no colour at all");
    QTest::keyClick(&tree(), Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(message(), QString("There are no colours in it."));
}

void tst_SwatchBrowser::searchHidesAndFinds()
{
    auto *search = m_browser->findChild<QLineEdit *>();
    QTest::keyClick(&tree(), Qt::Key_F, Qt::ControlModifier);
    QVERIFY(search->hasFocus());
    QTest::keyClicks(search, "re");
    QVERIFY(shown("Red").isValid());
    QVERIFY(shown("Green").isValid());
    QVERIFY(shown("Grey").isValid());
    QVERIFY(!shown("Blue").isValid());
    QTest::keyClicks(search, "d");
    QVERIFY(!shown("Green").isValid());
    QVERIFY(!shown("Other").isValid());
    QTest::keyClick(search, Qt::Key_Return);
    QVERIFY(tree().hasFocus());
    search->clear();
    QCOMPARE(tree().model()->rowCount(), 4);
    QVERIFY(shown("Blue").isValid());
}

void tst_SwatchBrowser::newColorEndsASearch()
{
    auto *search = m_browser->findChild<QLineEdit *>();
    search->setText("red");
    choose({"Red"});
    QTest::keyClick(&tree(), Qt::Key_Insert);
    QCOMPARE(search->text(), QString());
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Colour", "Green", "Blue"}));
    QCOMPARE(tree().currentIndex().data().toString(), QString("Colour"));
}

void tst_SwatchBrowser::orderIsTheViewsOnly()
{
    auto *order = m_browser->findChild<QComboBox *>();
    order->setFocus();
    QTest::keyClick(order, Qt::Key_Down);
    QCOMPARE(tree().indexBelow(shown("Mine")).data().toString(), QString("Blue"));
    QTest::keyClick(order, Qt::Key_Down);
    QCOMPARE(tree().indexBelow(shown("Mine")).data().toString(), QString("Red"));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
    tree().setFocus();
    choose({"Blue"});
    QTest::keyClick(&tree(), Qt::Key_Up, Qt::AltModifier);
    QCOMPARE(message(), QString("Colours move within one list, while it is shown whole and as arranged."));
    QCOMPARE(m_undo->count(), 0);
}

void tst_SwatchBrowser::dropMovesBetweenLists()
{
    const auto data = dragOf({"Red", "Blue"});
    QVERIFY(drag(*data, "Grey", UPPER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList("Green"));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Red", "Blue", "Grey"}));
    QCOMPARE(m_browser->selectedUids(), QStringList({"{Red}", "{Blue}"}));
    QCOMPARE(library().get("{Red}").name8(), QString("#ff0000"));
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue"}));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList("Grey"));
    QVERIFY(drag(*data, "Other", LOWER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Grey", "Red", "Blue"}));
    m_undo->undo();
    QVERIFY(drag(*dragOf({"Red"}), "Green", LOWER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Green", "Red", "Blue"}));
}

void tst_SwatchBrowser::dragByMouse()
{
    choose({"Red", "Grey"});
    PaneTest::DragWatch watch(tree());
    const QPoint from = tree().visualRect(shown("Grey")).center();
    const QPoint away(0, QApplication::startDragDistance() + 1);
    QTest::mousePress(tree().viewport(), Qt::LeftButton, {}, from);
    PaneTest::dragTo(*tree().viewport(), from + away / 2);
    PaneTest::dragTo(*tree().viewport(), from + away);
    QVERIFY(watch.drag());
    QCOMPARE(ColorMime::uidsOf(watch.drag()->mimeData()), QStringList({"{Red}", "{Grey}"}));
    QVERIFY(!watch.drag()->pixmap().isNull());
    QTest::mouseRelease(tree().viewport(), Qt::LeftButton, {}, from + away);
    QCOMPARE(m_undo->count(), 0);

    choose({"Mine"});
    PaneTest::DragWatch second(tree());
    const QPoint list = tree().visualRect(shown("Mine")).center();
    QTest::mousePress(tree().viewport(), Qt::LeftButton, {}, list);
    PaneTest::dragTo(*tree().viewport(), list + away / 2);
    PaneTest::dragTo(*tree().viewport(), list + away);
    QVERIFY2(!second.drag(), "lists stay");
    QTest::mouseRelease(tree().viewport(), Qt::LeftButton, {}, list + away);
}

void tst_SwatchBrowser::dropCopies_data()
{
    QTest::addColumn<QString>("color");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("origin");
    QTest::newRow("with Ctrl") << "Red" << Qt::KeyboardModifiers(Qt::ControlModifier) << "Mine/Red";
    QTest::newRow("out of a preset") << "Amber" << Qt::KeyboardModifiers(Qt::NoModifier) << "Preset/Amber";
}

void tst_SwatchBrowser::dropCopies()
{
    QFETCH(QString, color);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QVERIFY(drag(*dragOf({color}), "Grey", LOWER, modifiers, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList({"Grey", color}));
    QCOMPARE(PaneTest::namesIn("Mine").size(), 3);
    QCOMPARE(PaneTest::namesIn("Preset").size(), 2);
    const QModelIndex copy = library().getIndexOfName(color, library().getIndexOfListId("Other"));
    QVERIFY(copy.data(TrelColorLibraryItem::UidRole).toString() != "{" + color + "}");
    QTEST(copy.data(TrelColorLibraryItem::OriginatingPresetRole).toString(), "origin");
    m_undo->undo();
    QCOMPARE(PaneTest::namesIn("Other"), QStringList("Grey"));
}

void tst_SwatchBrowser::dropIsRefused()
{
    QVERIFY(!drag(*dragOf({"Red"}), "Teal", UPPER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QVERIFY(!drag(*dragOf({"Red"}), "Preset", UPPER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QMimeData picture;
    picture.setData("image/png", "x");
    QVERIFY(!drag(picture, "Red", UPPER, Qt::NoModifier, Qt::CopyAction));
    QCOMPARE(m_undo->count(), 0);
    QMimeData prose;
    prose.setText("some words");
    QVERIFY(drag(prose, "Red", UPPER, Qt::NoModifier, Qt::CopyAction));
    QCOMPARE(message(), QString("There are no colours in it."));
    QCOMPARE(m_undo->count(), 0);
}

void tst_SwatchBrowser::dropOfForeignColors()
{
    QMimeData foreign;
    foreign.setColorData(QColor("#abcdef"));
    QVERIFY(drag(foreign, "Red", LOWER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Colour", "Green", "Blue"}));
    QCOMPARE(library().get(m_browser->selectedUids().first()).name8(), QString("#abcdef"));
    QVERIFY(drag(*dragOf({"Amber"}), "Project Swatches", UPPER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Project Swatches"), QStringList("Amber"));
}

void tst_SwatchBrowser::sortedViewDropsAtTheEnd()
{
    m_browser->findChild<QComboBox *>()->setCurrentIndex(1);
    QVERIFY(drag(*dragOf({"Grey"}), "Green", UPPER, Qt::NoModifier, Qt::CopyAction | Qt::MoveAction));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Green", "Blue", "Grey"}));
}

void tst_SwatchBrowser::goesWhileANameIsTyped()
{
    choose({"Red"});
    QTest::keyClick(&tree(), Qt::Key_F2);
    auto *editor = tree().findChild<QLineEdit *>();
    QVERIFY(editor);
    QTest::keyClicks(editor, "Half a na");
    m_browser.reset();
    QCOMPARE(m_undo->count(), 0);
    QCOMPARE(PaneTest::namesIn("Mine").first(), QString("Red"));
}

void tst_SwatchBrowser::everythingHasAName()
{
    for (const QWidget *widget : m_browser->findChildren<QWidget *>()) {
        const bool isControl = qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QComboBox *>(widget)
                               || qobject_cast<const QTreeView *>(widget);
        if (isControl && widget->parentWidget() && !qobject_cast<const QComboBox *>(widget->parentWidget()))
            QVERIFY2(!widget->accessibleName().isEmpty(), widget->metaObject()->className());
    }
    const QToolBar *bar = m_browser->findChild<QToolBar *>();
    for (const QAction *action : bar->actions()) {
        const QWidget *button = bar->widgetForAction(const_cast<QAction *>(action));
        QVERIFY(!button->accessibleName().isEmpty());
        QVERIFY2(!button->accessibleName().contains('&'), qPrintable(button->accessibleName()));
        QVERIFY2(!action->icon().isNull(), qPrintable(action->text()));
        QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
    }
}

void tst_SwatchBrowser::thumbnailsAreSharp()
{
    const QPixmap pixmap = SwatchBrowser::thumbnail(TrelColor("#336699"));
    QCOMPARE(pixmap.width(), int(18 * pixmap.devicePixelRatio()));
    const QImage image = pixmap.toImage();
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2).name(), QString("#336699"));
}

void tst_SwatchBrowser::pictures()
{
    library().createColorList("Whites of the evening show, second act", true);
    addColor("Whites of the evening show, second act", "Candle", "aYxy;1;0;65535;1;0.5378;0.4115");
    addColor("Whites of the evening show, second act", "A rather long name of a colour", "#fff1e0");
    tree().expandAll();
    choose({"Green", "Amber"});
    QTest::keyClick(&tree(), Qt::Key_Delete);
    QVERIFY(PaneTest::takePictures(*m_browser, "browser"));
    m_browser->resize(200, 400);
    QVERIFY(PaneTest::takePictures(*m_browser, "browser-narrow"));
    m_browser->resize(620, 400);
    QVERIFY(PaneTest::takePictures(*m_browser, "browser-wide"));
}

PANE_TEST_MAIN(tst_SwatchBrowser)
#include "tst_SwatchBrowser.moc"
