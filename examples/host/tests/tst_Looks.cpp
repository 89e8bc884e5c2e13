#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "Crossfader.h"
#include "DmxOutput.h"
#include "FakeSink.h"
#include "FixtureTable.h"
#include "MainWindow.h"
#include "PaneTest.h"
#include "Patch.h"
#include "SwatchBrowser.h"
#include "WindowLooks.h"

#include <TrelColorLibrary.h>

#include <QApplication>
#include <QTranslator>
#include <QTreeView>

using namespace WindowLooks;

namespace {

/// As long as German: each text grows by two fifths.
class LongTexts : public QTranslator
{
public:
    QString translate(const char *, const char *text, const char *, int) const override
    {
        const QString source = QString::fromUtf8(text);
        if (source.trimmed().size() < 2 || source.startsWith(QLatin1Char('<')) || source.startsWith(QLatin1Char(':')))
            return QString();
        return source + QString((source.size() * 2 + 4) / 5, QLatin1Char('n'));
    }

    bool isEmpty() const override
    {
        return false;
    }
};

} // namespace

/// Pictures of the window to look at, and what can be said of them without looking.
class tst_Looks : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void window_data();
    void window();
    void firstSteps();
};

void tst_Looks::initTestCase()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->setThumbnailGenerator(SwatchBrowser::thumbnail);
    for (const char *preset : {"Basics", "WhitePoints"})
        library->loadUserColors(QStringLiteral(TREL_PRESETS "/%1.trelcolors").arg(QLatin1String(preset)));
}

void tst_Looks::window_data()
{
    QTest::addColumn<int>("theme");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("isLong");
    QTest::newRow("dark-small") << int(Theme::Dark) << SMALL << false;
    QTest::newRow("dark-small-long") << int(Theme::Dark) << SMALL << true;
    QTest::newRow("dark-large") << int(Theme::Dark) << LARGE << false;
    QTest::newRow("light-small") << int(Theme::Light) << SMALL << false;
    QTest::newRow("light-large-long") << int(Theme::Light) << LARGE << true;
}

/// What a user sees first, in a build without output; then a rig with two fixtures in one place.
void tst_Looks::firstSteps()
{
    Theme::apply(Theme::Dark);
    MainWindow window(nullptr);
    window.resize(SMALL);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY(shoot(&window, QStringLiteral("empty")));
    QVector<Fixture> fixtures = rig();
    fixtures[3].address = fixtures[2].address + 1;
    window.patch()->reset(fixtures);
    window.panes().table->fitColumns();
    window.panes().table->setFocus();
    window.panes().table->selectRows({0});
    window.panes().table->edit(window.patch()->index(0, Patch::AddressColumn));
    QVERIFY(shoot(&window, QStringLiteral("overlap")));
}

void tst_Looks::window()
{
    QFETCH(int, theme);
    QFETCH(QSize, size);
    QFETCH(bool, isLong);
    LongTexts texts;
    if (isLong)
        QCoreApplication::installTranslator(&texts);
    Theme::apply(Theme::Variant(theme));
    FakeDaemon daemon;
    daemon.universes = QSet<int>{1};
    MainWindow window(std::make_unique<FakeSink>(&daemon));
    window.patch()->reset(rig());
    window.panes().table->fitColumns();
    window.panes().browser->findChild<QTreeView *>()->expandAll();
    window.setSending(true);
    window.output()->sendFrame();
    window.resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.panes().table->selectRows({1});
    QCOMPARE(window.size(), size);
    QCOMPARE(cutIn(window), QString());
    QVERIFY(isLong || showsAllTabs(window));
    QVERIFY(shoot(&window, QString::fromLatin1(QTest::currentDataTag())));
    QCoreApplication::removeTranslator(&texts);
}

PANE_TEST_MAIN(tst_Looks)

#include "tst_Looks.moc"
