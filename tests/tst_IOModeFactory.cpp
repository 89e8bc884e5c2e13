#include "IOModeFactory.h"

#include "IOMode.h"
#include "TestSupport.h"

#include <QTranslator>

#include <climits>
#include <cstdio>

namespace {

using HueLockModes = QList<ColorUtils::HueLockMode>;

const HueLockModes ON_OFF{ColorUtils::HUELOCK_ON, ColorUtils::HUELOCK_OFF};
const HueLockModes ON{ColorUtils::HUELOCK_ON};
const HueLockModes OFF{ColorUtils::HUELOCK_OFF};

struct Mode
{
    int id;
    const char *name;
    bool is3toN;
    bool isNtoN;
    int configuration;
    HueLockModes hueLock;
};

// clang-format off
const QVector<Mode> MODES{
    {0, "RGB In/Out", true, true, 1, ON_OFF},
    {1, "RGBA In/Out", false, true, 6, ON_OFF},
    {2, "RGBW In/Out", false, true, 3, ON_OFF},
    {3, "RGBAW In/Out", false, true, 2, OFF},
    {4, "RGBWW In/Out", false, true, 5, ON_OFF},
    {5, "RGB In / RGBA Out", true, false, 1, ON},
    {6, "RGB In / RGBW Out", true, false, 1, ON},
    {7, "RGB In / RGBAW Out", true, false, 1, ON},
    {8, "RGB In / RGBWW Out", true, false, 1, ON},
    {9, "Single Channel In/Out", false, true, 4, OFF},
};
// clang-format on

/// Puts every text of QObject's context in angle brackets and knows no other context.
class BracketTranslator : public QTranslator
{
public:
    bool isEmpty() const override
    {
        return false;
    }

    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "QObject") == 0 ? '<' + QString::fromUtf8(text) + '>' : QString();
    }
};

void printNames()
{
    for (int id = 0; id < 10; ++id)
        std::printf("%s\n", qPrintable(IOModeFactory::instance()->nameForIOModeID(ColorUtils::IOModeID(id))));
}

void printNamesBuiltTranslated()
{
    char name[] = "child";
    char *argv[] = {name, nullptr};
    int argc = 1;
    QCoreApplication application(argc, argv);
    BracketTranslator translator;
    QCoreApplication::installTranslator(&translator);
    IOModeFactory::instance();
    QCoreApplication::removeTranslator(&translator);
    printNames();
}

QByteArray expectedNames(const QByteArray &before, const QByteArray &after)
{
    QByteArray names;
    for (const Mode &mode : MODES)
        names += before + mode.name + after + '\n';
    return names;
}

} // namespace

class tst_IOModeFactory : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void singleton();
    void modes_data();
    void modes();
    void unknownIdAddsNoEntry_data();
    void unknownIdAddsNoEntry();
    void equalHueLockListsAreShared();
    void namesWithoutApplication();
    void namesAreTranslatedWhenBuilt();
    void odd27_mode0IsBothAndRgbawPassThroughHasNoHueLock();
};

void tst_IOModeFactory::singleton()
{
    IOModeFactory *factory = IOModeFactory::instance();
    QVERIFY(factory);
    QCOMPARE(IOModeFactory::instance(), factory);
}

void tst_IOModeFactory::modes_data()
{
    QTest::addColumn<int>("id");
    for (const Mode &mode : MODES)
        QTest::newRow(mode.name) << mode.id;
}

void tst_IOModeFactory::modes()
{
    QFETCH(int, id);
    const Mode &expected = MODES[id];
    const auto modeId = ColorUtils::IOModeID(id);
    const IOModeFactory *factory = IOModeFactory::instance();
    IOMode *mode = factory->ioMode(modeId);

    QVERIFY(mode);
    QCOMPARE(factory->ioMode(modeId), mode);
    QCOMPARE(int(mode->index()), expected.id);
    QCOMPARE(mode->name(), QString(expected.name));
    QCOMPARE(mode->is3toN(), expected.is3toN);
    QCOMPARE(mode->isNtoN(), expected.isNtoN);
    QCOMPARE(int(mode->inputChannelConfiguration()), expected.configuration);
    QCOMPARE(mode->availableHueLockEnabled(), expected.hueLock);

    QCOMPARE(factory->nameForIOModeID(modeId), QString(expected.name));
    QCOMPARE(factory->ioModeIs3toN(modeId), expected.is3toN);
    QCOMPARE(factory->ioModeIsNtoN(modeId), expected.isNtoN);
    QCOMPARE(factory->availableHueLockEnabled(modeId), expected.hueLock);
}

void tst_IOModeFactory::unknownIdAddsNoEntry_data()
{
    QTest::addColumn<int>("id");
    QTest::newRow("first beyond the table") << 10;
    QTest::newRow("below the table") << -1;
    QTest::newRow("far above") << INT_MAX;
    QTest::newRow("far below") << INT_MIN;
}

void tst_IOModeFactory::unknownIdAddsNoEntry()
{
    QFETCH(int, id);
    const auto modeId = ColorUtils::IOModeID(id);
    const IOModeFactory *factory = IOModeFactory::instance();

    QVERIFY(!factory->ioMode(modeId));
    QCOMPARE(factory->nameForIOModeID(modeId), QString());
    QVERIFY(!factory->ioModeIs3toN(modeId));
    QVERIFY(!factory->ioModeIsNtoN(modeId));
    QVERIFY(factory->availableHueLockEnabled(modeId).isEmpty());
    QVERIFY(!factory->ioMode(modeId));
}

void tst_IOModeFactory::equalHueLockListsAreShared()
{
    const IOModeFactory *factory = IOModeFactory::instance();
    for (const Mode &a : MODES) {
        for (const Mode &b : MODES) {
            const HueLockModes listA = factory->availableHueLockEnabled(ColorUtils::IOModeID(a.id));
            const HueLockModes listB = factory->availableHueLockEnabled(ColorUtils::IOModeID(b.id));
            QVERIFY2(listA.isSharedWith(listB) == (a.hueLock == b.hueLock),
                     qPrintable(QString("modes %1 and %2").arg(a.id).arg(b.id)));
        }
    }
}

void tst_IOModeFactory::namesWithoutApplication()
{
    const ChildResult result = runChild("names");
    QVERIFY(!result.crashed);
    QCOMPARE(result.out, expectedNames("", ""));
}

void tst_IOModeFactory::namesAreTranslatedWhenBuilt()
{
    const ChildResult result = runChild("translated names");
    QVERIFY(!result.crashed);
    QCOMPARE(result.out, expectedNames("<", ">"));
}

void tst_IOModeFactory::odd27_mode0IsBothAndRgbawPassThroughHasNoHueLock()
{
    const IOModeFactory *factory = IOModeFactory::instance();
    QVERIFY(factory->ioModeIs3toN(ColorUtils::RGB_IN_OUT));
    QVERIFY(factory->ioModeIsNtoN(ColorUtils::RGB_IN_OUT));
    QCOMPARE(factory->availableHueLockEnabled(ColorUtils::RGBAW_IN_OUT), OFF);
    QCOMPARE(factory->availableHueLockEnabled(ColorUtils::RGBWW_IN_OUT), ON_OFF);
    QCOMPARE(factory->availableHueLockEnabled(ColorUtils::RGB_IN_RGBAW_OUT), ON);
}

const ChildCases childCases{{"names", printNames}, {"translated names", printNamesBuiltTranslated}};

TREL_TEST_MAIN(tst_IOModeFactory, childCases)

#include "tst_IOModeFactory.moc"
