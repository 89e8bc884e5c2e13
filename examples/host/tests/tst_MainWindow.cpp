#include "AddFixturesDialog.h"
#include "ColorEditor.h"
#include "ColorMime.h"
#include "Crossfader.h"
#include "DmxOutput.h"
#include "Drags.h"
#include "FakeSink.h"
#include "FixtureTable.h"
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
#include <QTemporaryDir>

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
    void saysWhySavingFailed();
    void remembersRecentFiles();
    void forgetsRecentFilesThatAreGone();
    void asksBeforeItDiscards_data();
    void asksBeforeItDiscards();
    void addsFixturesByDialog();
    void proposesPlaces();
    void removesAndDuplicatesTheSelection();
    void theEditorShowsTheSelection();
    void editsTheColourOfTheSelection();
    void undoReachesTheEditor();
    void dropsBringSwatchesIntoTheProject();
    void swatchesAreAssignedByKey();
    void fadesTheSelection();
    void fadesNothingWithoutASelection();
    void sendsAndBlacksOut();
    void showsRefusals();
    void changesTheTheme();
    void remembersItsLayout();

private:
    QAction *action(const QString &text) const;
    void addFixtures(int count);
    QString bytes(int row) const;
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
    QCOMPARE(m_window->projectPath(), m_folder.filePath("recent5.trelproject"));
}

void tst_MainWindow::forgetsRecentFilesThatAreGone()
{
    const QString path = m_folder.filePath("gone.trelproject");
    QVERIFY(m_window->saveTo(path));
    QVERIFY(QFile::remove(path));
    auto *menu = m_window->findChild<RecentFiles *>();
    menu->actions().first()->trigger();
    QVERIFY(m_window->findChild<QMessageBox *>());
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
    Q_EMIT m_window->panes().editor->colorChanged(TrelColor("#010101"));
    Q_EMIT m_window->panes().editor->colorChanged(TrelColor("#020202"));
    QCOMPARE(bytes(0), QString("2 2 2"));
    m_window->undoStack()->undo();
    QCOMPARE(bytes(0), QString("0 0 0")); // one gesture
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("black")));
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
    QVERIFY(Drags::drop(table->viewport(), table->visualRect(m_window->patch()->index(1, 0)).center(), data.get()));
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

void tst_MainWindow::swatchesAreAssignedByKey()
{
    addFixtures(1);
    m_window->panes().table->selectRows({0});
    Q_EMIT m_window->panes().browser->colorActivated(TrelColor("#0000ff"), QString());
    QCOMPARE(bytes(0), QString("0 0 255"));
    QVERIFY(m_window->patch()->fixtures().first().uid.isEmpty());
    QVERIFY(isSameColor(m_window->panes().editor->color(), TrelColor("#0000ff")));
}

void tst_MainWindow::fadesTheSelection()
{
    addFixtures(3);
    m_window->panes().table->selectRows({0, 1});
    const int steps = m_window->undoStack()->count();
    Crossfader *fader = m_window->panes().crossfader;
    fader->findChild<QDoubleSpinBox *>()->setValue(1000.0);
    fader->toggle();
    fader->advance(500000); // of black to white
    QCOMPARE(bytes(0), QString("128 128 128"));
    QCOMPARE(bytes(2), QString("0 0 0"));
    QCOMPARE(m_window->undoStack()->count(), steps);
    m_window->panes().table->selectRows({2}); // the fade goes on where it began
    fader->advance(1000000);
    QCOMPARE(bytes(1), QString("255 255 255"));
    QCOMPARE(bytes(2), QString("0 0 0"));
    QCOMPARE(m_window->undoStack()->count(), steps + 1);
    m_window->undoStack()->undo();
    QCOMPARE(bytes(0), QString("0 0 0"));
}

void tst_MainWindow::fadesNothingWithoutASelection()
{
    addFixtures(1);
    const int steps = m_window->undoStack()->count();
    m_window->panes().crossfader->findChild<QDoubleSpinBox *>()->setValue(0.0);
    m_window->panes().crossfader->toggle();
    QVERIFY(!m_window->statusBar()->currentMessage().isEmpty());
    m_window->panes().crossfader->advance(0);
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
