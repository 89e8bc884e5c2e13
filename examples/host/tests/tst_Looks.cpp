#include "AddFixturesDialog.h"
#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "Crossfader.h"
#include "DmxOutput.h"
#include "FakeSink.h"
#include "FixtureTable.h"
#include "MainWindow.h"
#include "Patch.h"
#include "SwatchBrowser.h"

#include <TestSupport.h>
#include <TrelColorLibrary.h>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QSplitter>
#include <QTranslator>

namespace {

constexpr QSize SMALL(1024, 700);
constexpr QSize LARGE(1600, 1000);

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

/// A small rig with each kind of fixture.
QVector<Fixture> rig()
{
    const struct
    {
        const char *name;
        ColorUtils::HuelockProfileID profile;
        int resolution;
        const char *color;
    } ROWS[] = {
        {"Front left", ColorUtils::WASHLINE_PZ6_RGBW, 2, "aYxy;1;0;65535;0.8;0.4476;0.4075"},
        {"Front right", ColorUtils::WASHLINE_PZ6_RGBA, 1, "#ff9329"},
        {"Cove", ColorUtils::TESSEL_COVELINE, 1, "aYxy;1;0;65535;1;0.3127;0.329"},
        {"Beam", ColorUtils::STRAND_BEAM_KVX, 1, "#8f2bd8"},
        {"Pixel 1", ColorUtils::PIXELNODE_RGB_CLASS, 1, "#00c8a0"},
        {"Pixel 2", ColorUtils::PIXELNODE_RGB_CLASS, 1, "#0f4fa8"},
        {"House", ColorUtils::GENERIC_SINGLE_CHANNEL, 1, "#808080"},
        {"Cyc", ColorUtils::GENERIC_RGB, 1, "mediumvioletred"},
    };
    QVector<Fixture> fixtures;
    int address = 1;
    for (const auto &row : ROWS) {
        Fixture fixture = Fixture::withDefaults(row.profile);
        fixture.name = QString::fromLatin1(row.name);
        fixture.resolution = row.resolution;
        fixture.address = address;
        fixture.color = TrelColor(row.color);
        address += fixture.footprint();
        fixtures.append(fixture);
    }
    return fixtures;
}

void shoot(QWidget *widget, const QString &name)
{
    QDir().mkpath(QStringLiteral(TREL_SCREENSHOTS));
    QCoreApplication::processEvents();
    QVERIFY(widget->grab().save(QStringLiteral("%1/%2.png").arg(QStringLiteral(TREL_SCREENSHOTS), name)));
}

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
    void german();
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

/// The dialog and the window with the texts that ship. The names of the library stay as they were at its first use.
void tst_Looks::german()
{
    Theme::apply(Theme::Light);
    QTranslator texts;
    QVERIFY(texts.load(QStringLiteral("trelcolor-host_de"), QStringLiteral(TREL_TRANSLATIONS)));
    QCoreApplication::installTranslator(&texts);
    FakeDaemon daemon;
    daemon.isListening = false;
    MainWindow window(std::make_unique<FakeSink>(&daemon));
    window.patch()->reset(rig());
    window.panes().table->fitColumns();
    window.resize(SMALL);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.panes().table->selectRows({1, 2});
    window.setSending(true);
    window.output()->sendFrame();
    QCOMPARE(window.size(), SMALL);
    shoot(&window, QStringLiteral("german"));
    AddFixturesDialog dialog(window.patch(), &window);
    dialog.show();
    shoot(&dialog, QStringLiteral("dialog-add-german"));
    QCoreApplication::removeTranslator(&texts);
}

/// What a user sees first, in a build without output; then a rig with two fixtures in one place.
void tst_Looks::firstSteps()
{
    Theme::apply(Theme::Dark);
    MainWindow window(nullptr);
    window.resize(SMALL);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    shoot(&window, QStringLiteral("empty"));
    QVector<Fixture> fixtures = rig();
    fixtures[3].address = fixtures[2].address + 1;
    window.patch()->reset(fixtures);
    window.panes().table->fitColumns();
    window.panes().table->setFocus();
    window.panes().table->selectRows({0});
    window.panes().table->edit(window.patch()->index(0, Patch::AddressColumn));
    shoot(&window, QStringLiteral("overlap"));
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
    window.setSending(true);
    window.output()->sendFrame();
    window.resize(size);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.panes().table->selectRows({1});
    QCOMPARE(window.size(), size); // nothing in it needs more room
    shoot(&window, QString::fromLatin1(QTest::currentDataTag()));
    QCoreApplication::removeTranslator(&texts);
}

TREL_TEST_MAIN_WITH(QApplication, tst_Looks, {})

#include "tst_Looks.moc"
