#include "AddFixturesDialog.h"
#include "DmxOutput.h"
#include "FakeSink.h"
#include "FixtureTable.h"
#include "MainWindow.h"
#include "PaneTest.h"
#include "Patch.h"
#include "SwatchBrowser.h"
#include "WindowLooks.h"

#include <QTranslator>
#include <QTreeView>

using namespace WindowLooks;

/// The window with the German texts that ship, the library's among them. A program of its own, since the library takes
/// its names at its first use.
class tst_German : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void window();
    void dialog();
};

void tst_German::initTestCase()
{
    for (const char *catalogue : {"trelcolor_de", "trelcolor-host_de"}) {
        auto *texts = new QTranslator(this);
        QVERIFY(texts->load(QLatin1String(catalogue), QStringLiteral(TREL_TRANSLATIONS)));
        QCoreApplication::installTranslator(texts);
    }
    Theme::apply(Theme::Light);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->setThumbnailGenerator(SwatchBrowser::thumbnail);
    library->loadUserColors(QStringLiteral(TREL_PRESETS "/Basics.trelcolors"));
}

void tst_German::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
}

void tst_German::window()
{
    FakeDaemon daemon;
    daemon.isListening = false;
    MainWindow window(std::make_unique<FakeSink>(&daemon));
    window.patch()->reset(rig());
    window.panes().table->fitColumns();
    window.panes().browser->findChild<QTreeView *>()->expandAll();
    window.resize(SMALL);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.panes().table->selectRows({1, 2});
    window.setSending(true);
    window.output()->sendFrame();
    QCoreApplication::processEvents();
    QCOMPARE(window.size(), SMALL);
    QCOMPARE(cutIn(window), QString());
    QVERIFY(showsAllTabs(window));
    QCOMPARE(window.patch()->headerData(Patch::ColorColumn, Qt::Horizontal, Qt::DisplayRole).toString(),
             QStringLiteral("Farbe"));
    QVERIFY(shoot(&window, QStringLiteral("german")));
}

void tst_German::dialog()
{
    QUndoStack undo;
    const Patch patch(&undo);
    AddFixturesDialog dialog(&patch);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(shoot(&dialog, QStringLiteral("dialog-add-german")));
}

PANE_TEST_MAIN(tst_German)

#include "tst_German.moc"
