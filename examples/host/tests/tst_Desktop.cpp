#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "ColorMime.h"
#include "ColorPreview.h"
#include "FakeSink.h"
#include "FixtureTable.h"
#include "MainWindow.h"
#include "PaneTest.h"
#include "Patch.h"
#include "SwatchBrowser.h"

#include <QEventLoop>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QTimer>
#include <QTreeView>

#include <functional>
#include <memory>

namespace {

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

/// Pointer and keyboard of the display, which xdotool moves as a hand would: what they do reaches the program through
/// the window system.
class Hand
{
public:
    static bool type(const QStringList &keys)
    {
        return act(QStringList{"key"} + keys);
    }

    /// One step after the other, with the program's events in between, also those of a drag that is under way.
    static void drag(QPoint from, QPoint to, const std::function<void()> &beforeRelease)
    {
        const QPoint past(QApplication::startDragDistance() + 2, 0);
        QVector<std::function<void()>> steps{
            [=] { move(from); },
            [] {
                act({"mousedown", "1"});
            },
            [=] { move(from + past / 2); },
            [=] { move(from + past); },
            [=] { move((from + to) / 2); },
            [=] { move(to - QPoint(2, 0)); },
            [=] { move(to); },
            [] {}, // the answer of the place to the last movement
            beforeRelease,
            [] {
                act({"mouseup", "1"});
            },
        };
        QEventLoop loop;
        QTimer timer;
        timer.setSingleShot(true); // a step that handles events itself is over before the next one
        QObject::connect(&timer, &QTimer::timeout, [&] {
            if (steps.isEmpty())
                return loop.quit();
            steps.takeFirst()();
            timer.start(STEP_MS);
        });
        timer.start(STEP_MS);
        loop.exec();
    }

    static void move(QPoint to)
    {
        act({"mousemove", QString::number(to.x()), QString::number(to.y())});
    }

private:
    static bool act(const QStringList &arguments)
    {
        return QProcess::execute(QStringLiteral("xdotool"), arguments) == 0;
    }

    static constexpr int STEP_MS = 40;
};

/// Another program's field: it takes a drop as text and prints what it was offered.
class Stranger : public QLineEdit
{
protected:
    void dropEvent(QDropEvent *event) override
    {
        const QColor color = qvariant_cast<QColor>(event->mimeData()->colorData());
        QLineEdit::dropEvent(event);
        std::printf("%s %s\n", qPrintable(text()), qPrintable(color.name()));
        std::fflush(stdout);
        QCoreApplication::quit();
    }
};

constexpr int PATIENCE = 30000; // ms, on a busy machine
constexpr QRect PLACE_OF_STRANGER(1060, 20, 200, 60);

int runStranger(int argc, char **argv)
{
    QApplication application(argc, argv);
    Stranger field;
    field.setGeometry(PLACE_OF_STRANGER);
    field.show();
    return QApplication::exec();
}

} // namespace

/// The window on a display, under a pointer and a keyboard that are not the test's own events.
class tst_Desktop : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void cleanupTestCase();
    void swatchOntoFixture();
    void swatchIntoAnotherList();
    void swatchOntoEditor();
    void fixtureIntoList();
    void editedColorIntoList();
    void escapeEndsADrag();
    void colorIntoAnotherProgram();
    void pickInTheChart();
    void listByKeyboard();

private:
    QTreeView &tree() const;
    QPoint swatch(const QString &name) const;
    QPoint fixture(int row) const;
    QColor colorOf(int row) const;
    void shoot(const QString &name) const;

    FakeDaemon m_daemon;
    std::unique_ptr<MainWindow> m_window;
};

void tst_Desktop::setUp()
{
    library().setThumbnailGenerator(SwatchBrowser::thumbnail);
    library().createColorList("Mine", true);
    library().createColorList("Other", true);
    library().createColorWithName(TrelColor("#ff0000"), "Red", "{Red}", "Mine", QString());
    library().createColorWithName(TrelColor("#0000ff"), "Blue", "{Blue}", "Mine", QString());
    m_window = std::make_unique<MainWindow>(std::make_unique<FakeSink>(&m_daemon));
    m_window->setGeometry(0, 0, 1024, 700);
    Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    fixture.name = QStringLiteral("One");
    fixture.color = TrelColor("#808080");
    Fixture next = fixture;
    next.name = QStringLiteral("Two");
    next.address = 4;
    m_window->patch()->reset({fixture, next});
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    tree().expandAll();
    m_window->panes().table->clearSelection();
}

void tst_Desktop::tearDown()
{
    m_window.reset();
    TrelColorLibrary::cleanup();
}

void tst_Desktop::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
}

QTreeView &tst_Desktop::tree() const
{
    return *m_window->panes().browser->findChild<QTreeView *>();
}

/// Where the row with this name is on the display.
QPoint tst_Desktop::swatch(const QString &name) const
{
    for (QModelIndex index = tree().model()->index(0, 0); index.isValid(); index = tree().indexBelow(index)) {
        if (index.data().toString() == name)
            return tree().viewport()->mapToGlobal(tree().visualRect(index).center());
    }
    return QPoint();
}

QPoint tst_Desktop::fixture(int row) const
{
    const FixtureTable *table = m_window->panes().table;
    return table->viewport()->mapToGlobal(table->visualRect(table->model()->index(row, Patch::AddressColumn)).center());
}

QColor tst_Desktop::colorOf(int row) const
{
    return m_window->patch()->fixtures().at(row).color.getQColor(true);
}

/// The display as it is, with what a drag marks.
void tst_Desktop::shoot(const QString &name) const
{
    QDir().mkpath(QStringLiteral(TREL_SCREENSHOTS));
    QVERIFY(
        m_window->screen()->grabWindow(0, 0, 0, 1024, 700).save(QStringLiteral(TREL_SCREENSHOTS "/%1.png").arg(name)));
}

void tst_Desktop::swatchOntoFixture()
{
    Hand::drag(swatch("Red"), fixture(1), [this] { shoot("drag-onto-fixture"); });
    QCOMPARE(colorOf(1), QColor("#ff0000"));
    QVERIFY(colorOf(0) != QColor("#ff0000"));
    m_window->undoStack()->undo();
    QVERIFY(colorOf(1) != QColor("#ff0000"));
}

void tst_Desktop::swatchIntoAnotherList()
{
    Hand::drag(swatch("Red"), swatch("Other"), [this] { shoot("drag-into-list"); });
    QCOMPARE(PaneTest::namesIn("Other"), QStringList("Red"));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList("Blue"));
    m_window->undoStack()->undo();
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Blue"}));
}

void tst_Desktop::swatchOntoEditor()
{
    ColorEditor *editor = m_window->panes().editor;
    Hand::drag(swatch("Blue"), editor->mapToGlobal(editor->rect().center()), [] {});
    QCOMPARE(editor->color().name8(), QString("#0000ff"));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Blue"}));
}

void tst_Desktop::fixtureIntoList()
{
    m_window->panes().table->selectRows({0});
    Hand::drag(fixture(0), swatch("Other"), [] {});
    QCOMPARE(int(PaneTest::namesIn("Other").size()), 1);
    m_window->undoStack()->undo();
    QCOMPARE(PaneTest::namesIn("Other"), QStringList());
}

void tst_Desktop::editedColorIntoList()
{
    ColorEditor *editor = m_window->panes().editor;
    editor->setColor(TrelColor("#123456"));
    const QWidget *preview = editor->findChild<ColorPreview *>();
    Hand::drag(preview->mapToGlobal(preview->rect().center()), swatch("Other"), [] {});
    const QModelIndex list = library().getIndexOfListId("Other");
    QCOMPARE(library().rowCount(list), 1);
    QCOMPARE(library().get(library().index(0, 0, list).data(TrelColorLibraryItem::UidRole).toString()).name8(),
             QString("#123456"));
}

void tst_Desktop::escapeEndsADrag()
{
    Hand::drag(swatch("Red"), swatch("Other"), [] { Hand::type({"Escape"}); });
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Blue"}));
    QCOMPARE(PaneTest::namesIn("Other"), QStringList());
    QCOMPARE(m_window->undoStack()->count(), 0);
}

void tst_Desktop::colorIntoAnotherProgram()
{
    QProcess stranger;
    stranger.start(QCoreApplication::applicationFilePath(), {"--stranger"});
    QVERIFY(stranger.waitForStarted());
    const QPoint place = PLACE_OF_STRANGER.center();
    const auto isThere = [&] {
        const QImage shown = m_window->screen()->grabWindow(0, place.x(), place.y(), 1, 1).toImage();
        return shown.pixelColor(0, 0) != QColor(Qt::black); // the display's own ground
    };
    QTRY_VERIFY_WITH_TIMEOUT(isThere(), PATIENCE);
    Hand::drag(swatch("Red"), place, [] { QTest::qWait(1000); });
    QTRY_COMPARE_WITH_TIMEOUT(stranger.state(), QProcess::NotRunning, PATIENCE);
    QCOMPARE(stranger.readAllStandardOutput(), QByteArray("#ff0000 #ff0000\n"));
    QCOMPARE(PaneTest::namesIn("Mine"), QStringList({"Red", "Blue"}));
}

void tst_Desktop::pickInTheChart()
{
    ChromaticityChart *chart = m_window->panes().chart;
    m_window->panes().table->selectRows({0});
    const QColor before = colorOf(0);
    const QPoint center = chart->mapToGlobal(chart->rect().center());
    Hand::drag(center, center + QPoint(20, 20), [] {});
    QVERIFY(colorOf(0) != before);
    QVERIFY(m_window->undoStack()->count() >= 1); // more than one where the movements come slowly
}

void tst_Desktop::listByKeyboard()
{
    tree().setFocus();
    QVERIFY(Hand::type({"ctrl+l"}));
    QTRY_VERIFY(tree().findChild<QLineEdit *>());
    QVERIFY(Hand::type({"ctrl+a", "A", "c", "t", "Return"}));
    QTRY_VERIFY(library().getIndexOfListId("Act").isValid());
    QVERIFY(Hand::type({"ctrl+z"}));
    QTRY_VERIFY(!library().getIndexOfListId("Act").isValid());
}

int main(int argc, char **argv)
{
    isolateFromUser();
    if (argc == 2 && qstrcmp(argv[1], "--stranger") == 0)
        return runStranger(argc, argv);
    PaneTest::beforeApplication();
    QApplication application(argc, argv);
    PaneTest::prepare();
    tst_Desktop test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Desktop.moc"
