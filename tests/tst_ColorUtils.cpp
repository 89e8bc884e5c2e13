#include "ColorUtils.h"

#include "TestSupport.h"

#include <QTranslator>

#include <climits>
#include <cstdio>

namespace {

static_assert(sizeof(ColorUtils::ChannelConfiguration) == 4, "stored as 32 bits");
static_assert(sizeof(ColorUtils::HuelockProfileID) == 4, "stored as 32 bits");
static_assert(sizeof(ColorUtils::HueLockMode) == 4, "stored as 32 bits");
static_assert(sizeof(ColorUtils::IOModeID) == 4, "stored as 32 bits");

struct NamedValue
{
    const char *name;
    int value;
    int expected;
};

const NamedValue ENUMERATORS[] = {
    {"CONFIG_UNKNOWN", ColorUtils::CONFIG_UNKNOWN, 0},
    {"CONFIG_RGB", ColorUtils::CONFIG_RGB, 1},
    {"CONFIG_RGBAW", ColorUtils::CONFIG_RGBAW, 2},
    {"CONFIG_RGBW", ColorUtils::CONFIG_RGBW, 3},
    {"CONFIG_SINGLE_CHANNEL", ColorUtils::CONFIG_SINGLE_CHANNEL, 4},
    {"CONFIG_RGBWW", ColorUtils::CONFIG_RGBWW, 5},
    {"CONFIG_RGBA", ColorUtils::CONFIG_RGBA, 6},
    {"GENERIC_RGB", ColorUtils::GENERIC_RGB, 0},
    {"STRAND_BEAM_KVX", ColorUtils::STRAND_BEAM_KVX, 1},
    {"TESSEL_COVELINE", ColorUtils::TESSEL_COVELINE, 2},
    {"GENERIC_RGBW", ColorUtils::GENERIC_RGBW, 3},
    {"GENERIC_SINGLE_CHANNEL", ColorUtils::GENERIC_SINGLE_CHANNEL, 4},
    {"WASHLINE_PZ6_RGBA", ColorUtils::WASHLINE_PZ6_RGBA, 5},
    {"WASHLINE_PZ6_RGBW", ColorUtils::WASHLINE_PZ6_RGBW, 6},
    {"PIXELNODE_RGB_CLASS", ColorUtils::PIXELNODE_RGB_CLASS, 7},
    {"FLOODBAR_KQ2_RGBA", ColorUtils::FLOODBAR_KQ2_RGBA, 8},
    {"FLOODBAR_KQ2_RGBW", ColorUtils::FLOODBAR_KQ2_RGBW, 9},
    {"HUELOCK_OFF", ColorUtils::HUELOCK_OFF, 0},
    {"HUELOCK_ON", ColorUtils::HUELOCK_ON, 1},
    {"RGB_IN_OUT", ColorUtils::RGB_IN_OUT, 0},
    {"RGBA_IN_OUT", ColorUtils::RGBA_IN_OUT, 1},
    {"RGBW_IN_OUT", ColorUtils::RGBW_IN_OUT, 2},
    {"RGBAW_IN_OUT", ColorUtils::RGBAW_IN_OUT, 3},
    {"RGBWW_IN_OUT", ColorUtils::RGBWW_IN_OUT, 4},
    {"RGB_IN_RGBA_OUT", ColorUtils::RGB_IN_RGBA_OUT, 5},
    {"RGB_IN_RGBW_OUT", ColorUtils::RGB_IN_RGBW_OUT, 6},
    {"RGB_IN_RGBAW_OUT", ColorUtils::RGB_IN_RGBAW_OUT, 7},
    {"RGB_IN_RGBWW_OUT", ColorUtils::RGB_IN_RGBWW_OUT, 8},
    {"SINGLE_CHANNEL_IN_OUT", ColorUtils::SINGLE_CHANNEL_IN_OUT, 9},
};

/// Translates every text of every context.
class AnyTranslator : public QTranslator
{
public:
    bool isEmpty() const override
    {
        return false;
    }

    QString translate(const char *, const char *, const char *, int) const override
    {
        return "translated";
    }
};

QList<int> profileIds(bool includeGenericExtras)
{
    QList<int> ids;
    const QList<ColorUtils::HuelockProfileID> list = ColorUtils::huelockProfileIDList(includeGenericExtras);
    for (const ColorUtils::HuelockProfileID id : list)
        ids.append(id);
    return ids;
}

void printProfileIds()
{
    const QList<int> ids = profileIds(true);
    for (const int id : ids)
        std::printf("%d ", id);
}

} // namespace

class tst_ColorUtils : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void enumerators_data();
    void enumerators();
    void channelConfigurations_data();
    void channelConfigurations();
    void configurationNamesAreNotTranslated();
    void profileIdList();
    void profileIdListReadsNoRegistry();
    void getInstance();
    void odd26_configurationsAreNotNumberedByChannelCount();
};

void tst_ColorUtils::enumerators_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("expected");
    for (const NamedValue &row : ENUMERATORS)
        QTest::newRow(row.name) << row.value << row.expected;
}

void tst_ColorUtils::enumerators()
{
    QFETCH(int, value);
    QFETCH(int, expected);
    QCOMPARE(value, expected);
}

void tst_ColorUtils::channelConfigurations_data()
{
    QTest::addColumn<int>("configuration");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("channels");

    QTest::newRow("CONFIG_UNKNOWN") << 0 << "Unknown" << 0;
    QTest::newRow("CONFIG_RGB") << 1 << "RGB" << 3;
    QTest::newRow("CONFIG_RGBAW") << 2 << "RGBAW" << 5;
    QTest::newRow("CONFIG_RGBW") << 3 << "RGBW" << 4;
    QTest::newRow("CONFIG_SINGLE_CHANNEL") << 4 << "Single Channel" << 1;
    QTest::newRow("CONFIG_RGBWW") << 5 << "RGBWW" << 5;
    QTest::newRow("CONFIG_RGBA") << 6 << "RGBA" << 4;
    QTest::newRow("first beyond the list, 7") << 7 << "Unknown" << 0;
    QTest::newRow("below the list, -1") << -1 << "Unknown" << 0;
    QTest::newRow("far above") << INT_MAX << "Unknown" << 0;
    QTest::newRow("far below") << INT_MIN << "Unknown" << 0;
}

void tst_ColorUtils::channelConfigurations()
{
    QFETCH(int, configuration);
    QFETCH(QString, name);
    QFETCH(int, channels);
    const auto id = ColorUtils::ChannelConfiguration(configuration);
    QCOMPARE(ColorUtils::nameForChannelConfiguration(id), name);
    QCOMPARE(ColorUtils::configChannelCount(id), channels);
}

void tst_ColorUtils::configurationNamesAreNotTranslated()
{
    AnyTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(QObject::tr("RGB"), QString("translated"));
    QCOMPARE(ColorUtils::nameForChannelConfiguration(ColorUtils::CONFIG_RGB), QString("RGB"));
    QCOMPARE(ColorUtils::nameForChannelConfiguration(ColorUtils::CONFIG_SINGLE_CHANNEL), QString("Single Channel"));
    QCOMPARE(ColorUtils::nameForChannelConfiguration(ColorUtils::CONFIG_UNKNOWN), QString("Unknown"));
}

void tst_ColorUtils::profileIdList()
{
    QCOMPARE(profileIds(true), (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    QCOMPARE(profileIds(false), (QList<int>{0, 1, 2, 5, 6, 7, 8, 9}));
}

// Without an application object, building the profile registry would leave a line about the missing database.
void tst_ColorUtils::profileIdListReadsNoRegistry()
{
    const ChildResult result = runChild("profile ids");
    QVERIFY(!result.crashed);
    QCOMPARE(result.out, QByteArray("0 1 2 3 4 5 6 7 8 9 "));
    QCOMPARE(result.err, QByteArray());
}

void tst_ColorUtils::getInstance()
{
    ColorUtils *instance = ColorUtils::getInstance();
    QVERIFY(instance);
    QCOMPARE(ColorUtils::getInstance(), instance);
}

void tst_ColorUtils::odd26_configurationsAreNotNumberedByChannelCount()
{
    QList<int> counts;
    for (int id = 0; id <= 6; ++id)
        counts.append(ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(id)));
    QCOMPARE(counts, (QList<int>{0, 3, 5, 4, 1, 5, 4}));
    QCOMPARE(int(ColorUtils::CONFIG_RGBAW), 2);
    QCOMPARE(int(ColorUtils::CONFIG_RGBW), 3);
    QCOMPARE(int(ColorUtils::CONFIG_RGBA), 6);
}

const ChildCases childCases{{"profile ids", printProfileIds}};

TREL_TEST_MAIN(tst_ColorUtils, childCases)

#include "tst_ColorUtils.moc"
