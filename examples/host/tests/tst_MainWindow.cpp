#include "AddFixturesDialog.h"
#include "CctStrip.h"
#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "ColorForm.h"
#include "ColorMime.h"
#include "Crossfader.h"
#include "DmxOutput.h"
#include "FakeSink.h"
#include "FixtureTable.h"
#include "GradientSlider.h"
#include "MainWindow.h"
#include "PaneTest.h"
#include "Patch.h"
#include "ProjectSwatches.h"
#include "RecentFiles.h"
#include "SwatchBrowser.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <functional>

namespace {

/// Does \a work on the dialog that comes next, once it is there.
template <typename Dialog>
void whenDialogOpens(const std::function<void(Dialog *)> &work)
{
    auto *timer = new QTimer(qApp);
    timer->setInterval(0);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, work] {
        auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        if (!dialog || !dialog->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        work(dialog);
    });
    timer->start();
}

/// Closes \a window and cancels what it asks. \return whether it asked anything.
bool asksWhenClosed(QWidget &window)
{
    bool isAsked = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&isAsked] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        isAsked = true;
        box->button(QMessageBox::Cancel)->click();
    });
    timer.start(0);
    window.close();
    return isAsked;
}

/// Presses \a key, which hands the keyboard on, until each of \a panes has had it. \return the classes of those that it
/// never comes to.
QStringList panesMissedBy(Qt::Key key, QVector<const QWidget *> panes)
{
    constexpr int MAX_PRESSES = 200;
    for (int i = 0; i < MAX_PRESSES && !panes.isEmpty() && QApplication::focusWidget(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), key);
        const QWidget *now = QApplication::focusWidget();
        const auto isReached = [now](const QWidget *pane) { return pane == now || pane->isAncestorOf(now); };
        panes.erase(std::remove_if(panes.begin(), panes.end(), isReached), panes.end());
    }
    QStringList classes;
    for (const QWidget *pane : qAsConst(panes))
        classes.append(QString::fromLatin1(pane->metaObject()->className()));
    return classes;
}

/// The names of the next \a count widgets that Tab leads to.
QStringList namesBehind(QWidget *widget, int count)
{
    widget->setFocus();
    QStringList names;
    for (int i = 0; i < count && QApplication::focusWidget(); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        names.append(QApplication::focusWidget() ? QApplication::focusWidget()->accessibleName() : QString());
    }
    return names;
}

Fixture makeFixture(const QString &name, int address)
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    fixture.name = name;
    fixture.address = address;
    return fixture;
}

} // namespace

class tst_MainWindow : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void savesAndOpens();
    void marksChanges();
    void asksWhereToSave();
    void showsWhatIsWrongWithAFile();
    void aFileThatCannotBeOpenedLeavesTheProject();
    void aFaultyFileLeavesTheSwatches();
    void saysWhySavingFailed();
    void remembersRecentFiles();
    void forgetsRecentFilesThatAreGone();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void anEditOfAUserListIsNoChange();
    void aFixtureBehindAnEditOfAUserListIsAChange();
    void addsFixturesByDialog();
    void proposesPlaces();
    void removesAndDuplicatesTheSelection();
    void theEditorShowsTheSelection();
    void editsTheColourOfTheSelection();
    void undoReachesTheEditor();
    void dropsBringSwatchesIntoTheProject();
    void assigningTheSameIsNoStep();
    void undoKeysReachTheWindowFromANumber();
    void savesWhatIsBeingTyped();
    void saysThatNewFixturesOverlap();
    void swatchesAreAssignedByKey();
    void fadesTheSelection();
    void aFadeIsOneStepOnceItEnds();
    void fadesNothingWithoutASelection();
    void sendsAndBlacksOut();
    void showsRefusals();
    void changesTheTheme();
    void tabReachesEveryPane();
    void tabFindsTheChannelsOfEachProfile();
    void remembersItsLayout();

private:
    QAction *action(const QString &text) const;
    void addFixtures(int count);
    QString bytes(int row) const;
    QDoubleSpinBox *typeRed(const QString &text);
    QTreeView &tree() const;
    void clickSwatch(const QString &name);
    void renameSwatchInAUserList();
    GradientSlider &slider(const QString &name) const;
    QPushButton *fadeButton() const;
    void openNewWindow();

    QTemporaryDir m_folder;
    FakeDaemon m_daemon;
    std::unique_ptr<MainWindow> m_window;
};

void tst_MainWindow::setUp()
{
    QSettings().clear();
    m_daemon = FakeDaemon();
    openNewWindow();
}

void tst_MainWindow::tearDown()
{
    m_window.reset();
    TrelColorLibrary::cleanup();
}

void tst_MainWindow::openNewWindow()
{
    m_window = std::make_unique<MainWindow>(std::make_unique<FakeSink>(&m_daemon));
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

/// The action whose text, without its accelerator, is \a text.
QAction *tst_MainWindow::action(const QString &text) const
{
    const QList<QAction *> actions = m_window->findChildren<QAction *>();
    for (QAction *candidate : actions) {
        if (candidate->text().remove('&') == text)
            return candidate;
    }
    return nullptr;
}

void tst_MainWindow::addFixtures(int count)
{
    QVector<Fixture> fixtures;
    for (int i = 0; i < count; ++i)
        fixtures.append(makeFixture(QString("Fixture %1").arg(i + 1), 1 + 3 * i));
    QVERIFY(m_window->patch()->add(fixtures));
}

QString tst_MainWindow::bytes(int row) const
{
    return m_window->patch()->index(row, Patch::BytesColumn).data().toString();
}

QTreeView &tst_MainWindow::tree() const
{
    return *m_window->panes().browser->findChild<QTreeView *>();
}

void tst_MainWindow::clickSwatch(const QString &name)
{
    tree().expandAll();
    QModelIndex index = tree().model()->index(0, 0);
    while (index.isValid() && index.data().toString() != name)
        index = tree().indexBelow(index);
    QVERIFY2(index.isValid(), qPrintable(name));
    tree().scrollTo(index);
    QTest::mouseClick(tree().viewport(), Qt::LeftButton, Qt::NoModifier, tree().visualRect(index).center());
}

void tst_MainWindow::renameSwatchInAUserList()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    library->createColorWithName(TrelColor("#ff8000"), "Dawn", QString(), "Mine", QString());
    clickSwatch("Dawn");
    QTest::keyClick(&tree(), Qt::Key_F2);
    auto *name = tree().findChild<QLineEdit *>();
    QVERIFY(name);
    name->selectAll();
    QTest::keyClicks(name, "Dusk");
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_VERIFY(library->nameExists("Dusk", "Mine"));
}

/// The editor's slider of this name on the page that is shown.
GradientSlider &tst_MainWindow::slider(const QString &name) const
{
    for (GradientSlider *each : m_window->panes().editor->findChildren<GradientSlider *>()) {
        if (each->accessibleName() == name && each->isVisible())
            return *each;
    }
    qFatal("no slider %s", qPrintable(name));
}

QPushButton *tst_MainWindow::fadeButton() const
{
    return m_window->panes().crossfader->findChild<QPushButton *>();
}

void tst_MainWindow::savesAndOpens()
{
    const QString path = m_folder.filePath("first.trelproject");
    addFixtures(2);
    m_window->patch()->assign({1}, {{TrelColor("red"), QString()}}, false);
    QVERIFY(m_window->saveTo(path));
    QCOMPARE(m_window->projectPath(), path);
    action("New")->trigger();
    QCOMPARE(m_window->patch()->rowCount(), 0);
    QVERIFY(m_window->projectPath().isEmpty());
    QVERIFY(m_window->open(path));
    QCOMPARE(m_window->patch()->rowCount(), 2);
    QCOMPARE(bytes(1), QString("255 0 0"));
    QVERIFY(m_window->windowTitle().contains("first"));
    QCOMPARE(m_window->undoStack()->count(), 0);
}

void tst_MainWindow::marksChanges()
{
    const QString path = m_folder.filePath("marked.trelproject");
    QVERIFY(!m_window->isWindowModified());
    addFixtures(1);
    QVERIFY(m_window->isWindowModified());
    QVERIFY(m_window->saveTo(path));
    QVERIFY(!m_window->isWindowModified());
    action("Undo Add Fixtures")->trigger();
    QVERIFY(m_window->isWindowModified());
    action("Redo Add Fixtures")->trigger();
    QVERIFY(!m_window->isWindowModified());
}

void tst_MainWindow::asksWhereToSave()
{
    addFixtures(1);
    const QString path = m_folder.filePath("asked.trelproject");
    whenDialogOpens<QFileDialog>([&](QFileDialog *dialog) {
        dialog->setDirectory(m_folder.path());
        dialog->findChild<QLineEdit *>()->setText("asked"); // the suffix comes by itself
        QTest::keyClick(dialog->findChild<QLineEdit *>(), Qt::Key_Return);
    });
    action("Save")->trigger();
    QCOMPARE(m_window->projectPath(), path);
    QVERIFY(QFile::exists(path));
    whenDialogOpens<QFileDialog>([](QFileDialog *dialog) { dialog->reject(); });
    action("Save As…")->trigger();
    QCOMPARE(m_window->projectPath(), path);
}

void tst_MainWindow::showsWhatIsWrongWithAFile()
{
    const QString path = m_folder.filePath("damaged.trelproject");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<TrelProject>\n<Patch>\n<Fixture name=\"A\" address=\"900\"/>\n</Patch>\n</TrelProject>\n");
    file.close();
    QVERIFY(!m_window->open(path));
    auto *box = m_window->findChild<QMessageBox *>();
    QVERIFY(box && box->isVisible());
    QVERIFY(box->text().contains("damaged.trelproject"));
    QVERIFY2(box->informativeText().startsWith("Line 3: "), qPrintable(box->informativeText()));
    QVERIFY(box->informativeText().contains("900"));
    QVERIFY(box->grab().save(TREL_SCREENSHOTS "/dialog-fault.png"));
    QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
    QTRY_VERIFY(!m_window->findChild<QMessageBox *>());
}

void tst_MainWindow::aFileThatCannotBeOpenedLeavesTheProject()
{
    addFixtures(2);
    const int steps = m_window->undoStack()->count();
    QVERIFY(!m_window->open(m_folder.filePath("missing.trelproject")));
    QVERIFY(!m_window->findChild<QMessageBox *>()->informativeText().isEmpty());
    QCOMPARE(m_window->patch()->rowCount(), 2);
    QCOMPARE(m_window->undoStack()->count(), steps);
    QVERIFY(m_window->isWindowModified());
}

void tst_MainWindow::aFaultyFileLeavesTheSwatches()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    const QString uid =
        library->createColorWithName(TrelColor("#ff8000"), "Dawn", QString(), ProjectSwatches::listId(), QString());
    addFixtures(1);
    const QString path = m_folder.filePath("faulty.trelproject");
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(
        "<TrelProject>\n<Patch>\n<Fixture name=\"A\"/>\n<Fixture name=\"B\" address=\"900\"/>\n</Patch>\n"
        "<ColorLibrary name=\"Project Swatches\"><Color name=\"Dusk\" uid=\"{2}\" value=\"#000080\"/></ColorLibrary>\n"
        "</TrelProject>\n");
    file.close();
    QVERIFY(!m_window->open(path));
    const QString reason = m_window->findChild<QMessageBox *>()->informativeText();
    QVERIFY2(reason.startsWith("Line 4: "), qPrintable(reason));
    QCOMPARE(library->getColorUids(ProjectSwatches::listId()), QStringList{uid});
    QCOMPARE(library->pathOfUid(uid), QString("Project Swatches/Dawn"));
    QVERIFY(isSameColor(library->get(uid), TrelColor("#ff8000")));
    QCOMPARE(m_window->patch()->rowCount(), 1);
    QCOMPARE(m_window->patch()->fixtures().first().name, QString("Fixture 1"));
}

void tst_MainWindow::saysWhySavingFailed()
{
    addFixtures(1);
    QVERIFY(!m_window->saveTo(m_folder.filePath("no/such/folder.trelproject")));
    QVERIFY(!m_window->findChild<QMessageBox *>()->informativeText().isEmpty());
    QVERIFY(m_window->isWindowModified());
    QVERIFY(m_window->projectPath().isEmpty());
}

void tst_MainWindow::remembersRecentFiles()
{
    for (int i = 0; i < RecentFiles::MAX_FILES + 2; ++i)
        QVERIFY(m_window->saveTo(m_folder.filePath(QString("recent%1.trelproject").arg(i))));
    auto *menu = m_window->findChild<RecentFiles *>();
    QCOMPARE(int(menu->paths().size()), RecentFiles::MAX_FILES);
    QVERIFY(menu->paths().first().endsWith("recent9.trelproject"));
    QVERIFY(m_window->saveTo(m_folder.filePath("recent5.trelproject")));
    QCOMPARE(int(menu->paths().size()), RecentFiles::MAX_FILES); // first now, and there once
    openNewWindow();
    menu = m_window->findChild<RecentFiles *>();
    QCOMPARE(menu->actions().first()->toolTip(), m_folder.filePath("recent5.trelproject"));
    menu->actions().first()->trigger();
    QTRY_COMPARE(m_window->projectPath(), m_folder.filePath("recent5.trelproject"));
}

void tst_MainWindow::forgetsRecentFilesThatAreGone()
{
    const QString path = m_folder.filePath("gone.trelproject");
    QVERIFY(m_window->saveTo(path));
    QVERIFY(QFile::remove(path));
    auto *menu = m_window->findChild<RecentFiles *>();
    menu->actions().first()->trigger();
    QTRY_VERIFY(m_window->findChild<QMessageBox *>());
    QVERIFY(menu->paths().isEmpty());
    QVERIFY(!menu->isEnabled());
}

void tst_MainWindow::asksBeforeItDiscards_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<bool>("closes");
    QTest::addColumn<bool>("saves");
    QTest::newRow("save") << int(QMessageBox::Save) << true << true;
    QTest::newRow("discard") << int(QMessageBox::Discard) << true << false;
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << false;
}

void tst_MainWindow::asksBeforeItDiscards()
{
    QFETCH(int, answer);
    const QString path = m_folder.filePath(QString("discard%1.trelproject").arg(answer));
    QVERIFY(m_window->saveTo(path));
    addFixtures(1);
    whenDialogOpens<QMessageBox>(
        [answer](QMessageBox *box) { box->button(QMessageBox::StandardButton(answer))->click(); });
    QTEST(m_window->close(), "closes");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QTEST(file.readAll().contains("Fixture 1"), "saves");
}

/// The user's lists save themselves.
void tst_MainWindow::anEditOfAUserListIsNoChange()
{
    renameSwatchInAUserList();
    QCOMPARE(m_window->undoStack()->count(), 1);
    QVERIFY(!m_window->isWindowModified());
    QVERIFY(!asksWhenClosed(*m_window));
    QVERIFY(!m_window->isVisible());
}

void tst_MainWindow::aFixtureBehindAnEditOfAUserListIsAChange()
{
    renameSwatchInAUserList();
    addFixtures(1);
    QVERIFY(m_window->isWindowModified());
    QVERIFY(asksWhenClosed(*m_window));
    QVERIFY(m_window->isVisible());
}

void tst_MainWindow::addsFixturesByDialog()
{
    whenDialogOpens<AddFixturesDialog>([](AddFixturesDialog *dialog) {
        auto *name = dialog->findChild<QLineEdit *>();
        name->selectAll();
        QTest::keyClicks(name, "Wash");
        auto *profile = dialog->findChildren<QComboBox *>().at(0);
        profile->setCurrentIndex(profile->findText("WashLine PZ6 RGBW"));
        dialog->findChildren<QSpinBox *>().at(0)->setValue(3);
        dialog->findChildren<QSpinBox *>().at(1)->setValue(2);
        QVERIFY(dialog->grab().save(TREL_SCREENSHOTS "/dialog-add.png"));
        QTest::keyClick(dialog, Qt::Key_Return);
    });
    action("Add Fixtures…")->trigger();
    Patch *patch = m_window->patch();
    QCOMPARE(patch->rowCount(), 3);
    QCOMPARE(patch->fixtures().at(2).name, QString("Wash 3"));
    QCOMPARE(patch->fixtures().at(2).universe, 2);
    QCOMPARE(patch->fixtures().at(2).address, 9);
    QCOMPARE(patch->fixtures().at(2).profile, ColorUtils::WASHLINE_PZ6_RGBW);
    QCOMPARE(m_window->panes().table->selectedRows(), (QVector<int>{0, 1, 2}));
    QCOMPARE(m_window->undoStack()->count(), 1);
    whenDialogOpens<AddFixturesDialog>([](AddFixturesDialog *dialog) { dialog->reject(); });
    action("Add Fixtures…")->trigger();
    QCOMPARE(patch->rowCount(), 3);
}

void tst_MainWindow::proposesPlaces()
{
    addFixtures(2);
    AddFixturesDialog dialog(m_window->patch());
    const QList<QSpinBox *> boxes = dialog.findChildren<QSpinBox *>(); // number, universe, address
    QCOMPARE(boxes.at(2)->value(), 7);
    boxes.at(1)->setValue(5);
    QCOMPARE(boxes.at(2)->value(), 1);
    auto *add = dialog.findChild<QDialogButtonBox *>()->buttons().constLast();
    QVERIFY(dialog.findChildren<QPushButton *>().size() == 2);
    boxes.at(0)->setValue(171); // of three slots
    bool isAnyDisabled = false;
    for (const QPushButton *button : dialog.findChildren<QPushButton *>())
        isAnyDisabled = isAnyDisabled || !button->isEnabled();
    QVERIFY(isAnyDisabled);
    boxes.at(0)->setValue(1);
    QVERIFY(add->isEnabled());
    boxes.at(2)->setValue(100); // chosen by the user: it stays
    boxes.at(1)->setValue(1);
    QCOMPARE(boxes.at(2)->value(), 100);
    QCOMPARE(dialog.fixtures().first().address, 100);
}

void tst_MainWindow::removesAndDuplicatesTheSelection()
{
    addFixtures(3);
    QVERIFY(!action("Remove Fixtures")->isEnabled());
    m_window->panes().table->selectRows({1});
    QVERIFY(action("Remove Fixtures")->isEnabled());
    action("Duplicate Fixtures")->trigger();
    QCOMPARE(m_window->patch()->fixtures().at(3).name, QString("Fixture 2 2"));
    m_window->panes().table->setFocus();
    QTest::keyClick(m_window->panes().table, Qt::Key_Delete);
    QCOMPARE(m_window->patch()->rowCount(), 3);
    QTest::keySequence(m_window.get(), QKeySequence::Undo);
    QCOMPARE(m_window->patch()->rowCount(), 4);
}

void tst_MainWindow::theEditorShowsTheSelection()
{
    addFixtures(2);
    m_window->patch()->assign({1}, {{TrelColor("#112233"), QString()}}, false);
    m_window->panes().table->selectRows({1});
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("#112233")));
    m_window->panes().table->selectRows({0});
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("black")));
}

void tst_MainWindow::editsTheColourOfTheSelection()
{
    addFixtures(3);
    m_window->panes().table->selectRows({0, 2});
    auto *text = m_window->panes().editor->findChild<QLineEdit *>();
    text->setFocus();
    text->selectAll();
    QTest::keyClicks(text, "#0a141e");
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(bytes(0), QString("10 20 30"));
    QCOMPARE(bytes(1), QString("0 0 0"));
    QCOMPARE(bytes(2), QString("10 20 30"));
    m_window->panes().table->clearSelection();
    text->selectAll();
    QTest::keyClicks(text, "#ffffff");
    QTest::keyClick(text, Qt::Key_Return);
    QCOMPARE(bytes(0), QString("10 20 30")); // nobody's colour was edited
}

void tst_MainWindow::undoReachesTheEditor()
{
    addFixtures(1);
    m_window->panes().table->selectRows({0});
    GradientSlider &red = slider("Red");
    red.setFocus();
    QTest::keyClick(&red, Qt::Key_Right);
    QTest::keyClick(&red, Qt::Key_Right);
    QCOMPARE(bytes(0), QString("2 0 0"));
    m_window->undoStack()->undo();
    QCOMPARE(bytes(0), QString("0 0 0")); // one gesture
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("black")));
    QCOMPARE(red.value(), 0);
}

void tst_MainWindow::dropsBringSwatchesIntoTheProject()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    const QString uid = library->createColorWithName(TrelColor("#ff8000"), "Dawn", QString(), "Mine", QString());
    addFixtures(2);
    const int steps = m_window->undoStack()->count();
    const std::unique_ptr<QMimeData> data(ColorMime::fromLibrary({library->getIndexOfUid(uid)}));
    FixtureTable *table = m_window->panes().table;
    QVERIFY(PaneTest::drop(*table->viewport(), table->visualRect(m_window->patch()->index(1, 0)).center(), *data));
    QCOMPARE(bytes(1), QString("255 128 0"));
    const QStringList swatches = library->getColorUids(ProjectSwatches::listId());
    QCOMPARE(int(swatches.size()), 1);
    QCOMPARE(m_window->patch()->fixtures().at(1).uid, swatches.first());
    QCOMPARE(m_window->undoStack()->count(), steps + 1);
    QVERIFY(library->set(swatches.first(), TrelColor("#000001"))); // the fixture follows the project's swatch
    QCOMPARE(bytes(1), QString("0 0 1"));
    m_window->undoStack()->undo();
    QVERIFY(library->getColorUids(ProjectSwatches::listId()).isEmpty());
    QCOMPARE(bytes(1), QString("0 0 0"));
}

void tst_MainWindow::assigningTheSameIsNoStep()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    QModelIndexList swatches;
    for (const char *color : {"#ff8000", "#0080ff", "#00ff80"})
        swatches.append(library->getIndexOfUid(
            library->createColorWithName(TrelColor(color), color, QString(), "Mine", QString())));
    addFixtures(2);
    FixtureTable *table = m_window->panes().table;
    const QPoint lastRow = table->visualRect(m_window->patch()->index(1, 0)).center();
    const std::unique_ptr<QMimeData> data(ColorMime::fromLibrary(swatches));
    QVERIFY(PaneTest::drop(*table->viewport(), lastRow, *data));
    QCOMPARE(library->getColorUids(ProjectSwatches::listId()).size(), 1); // of those that a fixture got
    const int steps = m_window->undoStack()->count();
    QVERIFY(PaneTest::drop(*table->viewport(), lastRow, *data));
    QCOMPARE(m_window->undoStack()->count(), steps);
    m_window->undoStack()->undo();
    QVERIFY(PaneTest::drop(*table->viewport(), lastRow, *data));
    QCOMPARE(m_window->undoStack()->count(), steps);
    QCOMPARE(bytes(1), QString("255 128 0"));
}

/// Types into the number, without ending it.
QDoubleSpinBox *tst_MainWindow::typeRed(const QString &text)
{
    auto *number = slider("Red").parentWidget()->findChild<QDoubleSpinBox *>();
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, text);
    return number;
}

void tst_MainWindow::undoKeysReachTheWindowFromANumber()
{
    addFixtures(1);
    m_window->panes().table->selectRows({0});
    QDoubleSpinBox *number = typeRed("128");
    QTest::keyClick(number, Qt::Key_Return);
    QCOMPARE(bytes(0), QString("128 0 0"));
    QTest::keyClick(number, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(bytes(0), QString("0 0 0"));
    QTest::keyClicks(number, "5"); // now there is something of its own to take back
    QTest::keyClick(number, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(m_window->undoStack()->index(), 1);
}

void tst_MainWindow::savesWhatIsBeingTyped()
{
    const QString path = m_folder.filePath("typed.trelproject");
    addFixtures(1);
    m_window->panes().table->selectRows({0});
    QDoubleSpinBox *number = typeRed("77");
    QVERIFY(m_window->saveTo(path));
    QCOMPARE(bytes(0), QString("77 0 0"));
    QVERIFY(!m_window->isWindowModified());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("#ffff4d4d00000000"));
    QVERIFY(number->hasFocus());

    FixtureTable *table = m_window->panes().table;
    table->setFocus();
    table->setCurrentIndex(m_window->patch()->index(0, Patch::AddressColumn));
    QTest::keyClick(table, Qt::Key_F2);
    auto *address = table->viewport()->findChild<QSpinBox *>();
    QVERIFY(address);
    address->selectAll();
    QTest::keyClicks(address, "30");
    QVERIFY(m_window->saveTo(path));
    QCOMPARE(m_window->patch()->fixtures().first().address, 30);
    QVERIFY(!m_window->isWindowModified());
    QVERIFY(table->hasFocus());
}

void tst_MainWindow::saysThatNewFixturesOverlap()
{
    addFixtures(2);
    AddFixturesDialog dialog(m_window->patch());
    QLabel *places = nullptr;
    for (QLabel *label : dialog.findChildren<QLabel *>())
        places = label->text().startsWith("Slots") ? label : places;
    QVERIFY(places);
    QVERIFY(!places->text().contains("overlap"));
    dialog.findChildren<QSpinBox *>().at(2)->setValue(5); // in the middle of the second one
    QVERIFY(places->text().contains("overlap"));
    dialog.findChildren<QSpinBox *>().at(2)->setValue(7);
    QVERIFY(!places->text().contains("overlap"));
    dialog.findChild<QLineEdit *>()->setText("Bar %2");
    dialog.findChildren<QSpinBox *>().at(0)->setValue(2);
    QCOMPARE(dialog.fixtures().at(1).name, QString("Bar %2 2"));
}

void tst_MainWindow::swatchesAreAssignedByKey()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorList("Mine", true);
    library->createColorWithName(TrelColor("#0000ff"), "Deep", QString(), "Mine", QString());
    addFixtures(2);
    m_window->panes().table->selectRows({0});
    const int steps = m_window->undoStack()->count();
    clickSwatch("Deep");
    QCOMPARE(bytes(0), QString("0 0 0")); // to look at a swatch is not to give it to a fixture
    QTest::keyClick(&tree(), Qt::Key_Return);
    QCOMPARE(bytes(0), QString("0 0 255"));
    QCOMPARE(bytes(1), QString("0 0 0"));
    QCOMPARE(QStringList{m_window->patch()->fixtures().first().uid}, library->getColorUids(ProjectSwatches::listId()));
    QCOMPARE(m_window->undoStack()->count(), steps + 1);
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("#0000ff")));
}

void tst_MainWindow::fadesTheSelection()
{
    addFixtures(3);
    m_window->panes().table->selectRows({0, 1});
    const int steps = m_window->undoStack()->count();
    Crossfader *fader = m_window->panes().crossfader;
    fader->findChild<QDoubleSpinBox *>()->setValue(0.2);
    QTest::mouseClick(fadeButton(), Qt::LeftButton);
    QVERIFY(fader->isRunning());
    m_window->panes().table->selectRows({2}); // the fade goes on where it began
    QTRY_VERIFY(!fader->isRunning());
    QCOMPARE(bytes(0), QString("255 255 255"));
    QCOMPARE(bytes(1), QString("255 255 255"));
    QCOMPARE(bytes(2), QString("0 0 0"));
    QCOMPARE(m_window->undoStack()->count(), steps + 1);
    m_window->undoStack()->undo();
    QCOMPARE(bytes(0), QString("0 0 0"));
}

void tst_MainWindow::aFadeIsOneStepOnceItEnds()
{
    addFixtures(2);
    m_window->panes().table->selectRows({0});
    const int steps = m_window->undoStack()->count();
    Crossfader *fader = m_window->panes().crossfader;
    fader->findChild<QDoubleSpinBox *>()->setValue(1000.0); // so that the test, not the clock, moves it
    QTest::mouseClick(fadeButton(), Qt::LeftButton);
    fader->advance(500000); // of black to white
    QCOMPARE(bytes(0), QString("128 128 128"));
    QCOMPARE(bytes(1), QString("0 0 0"));
    QCOMPARE(m_window->undoStack()->count(), steps);
    QTest::mouseClick(fadeButton(), Qt::LeftButton); // stops it
    QVERIFY(!fader->isRunning());
    QCOMPARE(bytes(0), QString("128 128 128"));
    QCOMPARE(m_window->undoStack()->count(), steps + 1);
    m_window->undoStack()->undo();
    QCOMPARE(bytes(0), QString("0 0 0"));
}

void tst_MainWindow::fadesNothingWithoutASelection()
{
    addFixtures(1);
    const int steps = m_window->undoStack()->count();
    Crossfader *fader = m_window->panes().crossfader;
    fader->findChild<QDoubleSpinBox *>()->setValue(0.0);
    QTest::mouseClick(fadeButton(), Qt::LeftButton);
    QVERIFY(!m_window->statusBar()->currentMessage().isEmpty());
    QTRY_VERIFY(!fader->isRunning());
    QCOMPARE(fader->position(), 1.0);
    QCOMPARE(bytes(0), QString("0 0 0"));
    QCOMPARE(m_window->undoStack()->count(), steps);
}

void tst_MainWindow::sendsAndBlacksOut()
{
    addFixtures(1);
    m_window->patch()->assign({0}, {{TrelColor("red"), QString()}}, false);
    m_daemon.universes = QSet<int>{2};
    const auto statusText = [this] {
        QString all;
        for (const QLabel *label : m_window->statusBar()->findChildren<QLabel *>())
            all += label->text();
        return all;
    };
    const QString before = statusText();
    QTest::keyClick(m_window.get(), Qt::Key_F5);
    QVERIFY(m_window->output()->isEnabled());
    QTRY_VERIFY(!m_daemon.packets.isEmpty());
    QCOMPARE(m_daemon.last(1).left(1), QByteArray("\xff", 1));
    QTRY_VERIFY(!m_window->output()->status().deadUniverses.isEmpty());
    QVERIFY(statusText() != before);
    QTest::keyClick(m_window.get(), Qt::Key_F6);
    QTRY_COMPARE(m_daemon.last(1), QByteArray(512, '\0'));
    QTest::keyClick(m_window.get(), Qt::Key_F5);
    QVERIFY(!m_window->output()->isEnabled());
    QCOMPARE(statusText(), before);
}

void tst_MainWindow::showsRefusals()
{
    addFixtures(1);
    QVERIFY(!m_window->patch()->setValues({0}, Patch::AddressColumn, 512));
    QVERIFY(m_window->statusBar()->currentMessage().contains("Fixture 1"));
}

void tst_MainWindow::changesTheTheme()
{
    const QImage darkIcon = action("Save")->icon().pixmap(32, 32).toImage();
    action("Light")->trigger();
    QCOMPARE(Theme::current(), Theme::Light);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 200);
    QVERIFY(action("Save")->icon().pixmap(32, 32).toImage() != darkIcon); // drawn in the new ink
    Theme::apply(Theme::Dark);
    Theme::restore();
    QCOMPARE(Theme::current(), Theme::Light);
    action("Dark")->trigger();
    QCOMPARE(Theme::current(), Theme::Dark);
}

void tst_MainWindow::tabReachesEveryPane()
{
    addFixtures(1);
    const PaneSet &panes = m_window->panes();
    const QVector<const QWidget *> all = {
        &tree(),        panes.chart, panes.cctStrip,  panes.editor->findChild<QLineEdit *>(),
        &slider("Red"), panes.table, panes.crossfader};
    auto *search = panes.browser->findChild<QLineEdit *>();
    QCOMPARE(search->accessibleName(), QString("Search colours"));
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        search->setFocus();
        QVERIFY(search->hasFocus());
        QCOMPARE(panesMissedBy(key, all), QStringList());
    }
}

/// The rows of the page are made anew for each profile, and must not come behind all other panes then.
void tst_MainWindow::tabFindsTheChannelsOfEachProfile()
{
    addFixtures(1);
    Fixture wash = Fixture::withDefaults(ColorUtils::WASHLINE_PZ6_RGBW);
    wash.name = QStringLiteral("Wash");
    wash.address = 4;
    QVERIFY(m_window->patch()->add({wash}));
    auto *tabs = m_window->panes().editor->findChild<QTabWidget *>();
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier,
                      tabs->tabBar()->tabRect(ColorForm::Levels).center());
    QCOMPARE(tabs->currentIndex(), int(ColorForm::Levels));
    for (const int row : {0, 1, 0}) {
        m_window->panes().table->selectRows({row});
        QCoreApplication::processEvents(); // which shows the new rows
        QStringList names;
        for (const QString &channel : m_window->patch()->fixtures().at(row).channelNames())
            names << channel << channel; // a slider and a number
        QCOMPARE(namesBehind(tabs->tabBar(), int(names.size())), names);
    }
}

void tst_MainWindow::remembersItsLayout()
{
    m_window->resize(1100, 720);
    QCoreApplication::processEvents();
    QVERIFY(m_window->close());
    openNewWindow();
    QCOMPARE(m_window->size(), QSize(1100, 720));
}

int main(int argc, char **argv)
{
    isolateFromUser();
    QApplication application(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("TrelColor"));
    QApplication::setApplicationName(QStringLiteral("trelcolor-host"));
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    PaneTest::prepare();
    QDir().mkpath(QStringLiteral(TREL_SCREENSHOTS));
    tst_MainWindow test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_MainWindow.moc"
