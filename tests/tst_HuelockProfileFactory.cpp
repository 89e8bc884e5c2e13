#include "ColorUtils.h"
#include "HuelockProfileFactory.h"
#include "TestSupport.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QTranslator>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace {

using Profile = ColorUtils::HuelockProfileID;
using Mode = ColorUtils::IOModeID;

struct Row
{
    int id;
    const char *name;
    int configuration;
    int curve;
    QList<int> modes;
    int defaultMode;
    QList<int> huelockOn;
    QStringList channels;
};

const QStringList RGB{"Red", "Green", "Blue"};
const QStringList RGBA{"Red", "Green", "Blue", "Amber"};
const QStringList RGBW{"Red", "Green", "Blue", "White"};

// Plain numbers: they are what documents store.
const QVector<Row> ROWS{
    {0, "Generic RGB", 1, 0, {0}, 0, {}, RGB},
    {1, "Strand/Beam KVX", 2, 1, {0, 7, 3}, 7, {0, 7}, {"Red", "Green", "Blue", "Amber", "White"}},
    {2, "Tessel CoveLine", 5, 1, {0, 8, 4}, 8, {0, 8, 4}, {"Red", "Green", "Blue", "Mint", "White"}},
    {3, "Generic RGBW", 3, 0, {2}, 2, {}, RGBW},
    {4, "Single Channel", 4, 0, {9}, 9, {}, RGB},
    {5, "WashLine PZ6 RGBA", 6, 1, {0, 5, 1}, 1, {0, 5, 1}, RGBA},
    {6, "WashLine PZ6 RGBW", 3, 1, {0, 6, 2}, 2, {0, 6, 2}, RGBW},
    {7, "PixelNode RGB", 1, 1, {0}, 0, {0}, RGB},
    {8, "FloodBar KQ2 RGBA", 6, 1, {0, 5, 1}, 1, {0, 5, 1}, RGBA},
    {9, "FloodBar KQ2 RGBW", 3, 1, {0, 6, 2}, 2, {0, 6, 2}, RGBW},
};

const QList<int> UNKNOWN_IDS{-1, 10, 42, INT_MIN, INT_MAX};

HueLockProfile *profile(int id)
{
    return HuelockProfileFactory::instance()->getProfile(Profile(id));
}

template <typename Enumeration>
QList<int> numbers(const QList<Enumeration> &values)
{
    QList<int> result;
    for (const Enumeration value : values)
        result.append(int(value));
    return result;
}

template <typename Enabled>
QList<int> modesThat(Enabled enabled)
{
    QList<int> result;
    for (int mode = -1; mode <= 10; ++mode) {
        if (enabled(mode))
            result.append(mode);
    }
    return result;
}

QList<int> sorted(QList<int> values)
{
    std::sort(values.begin(), values.end());
    return values;
}

QStringList namesOf(const QList<int> &ids)
{
    QStringList names;
    for (const int id : ids)
        names.append(ROWS.at(id).name);
    return names;
}

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "not so: %s\n", what);
    std::exit(1);
}

#define REQUIRE(condition) require(condition, #condition)

/// Puts a mark before every text of the context of QObject::tr.
class Marker : public QTranslator
{
public:
    explicit Marker(const QString &mark)
        : m_mark(mark)
    {
    }

    QString translate(const char *context, const char *text, const char *, int) const override
    {
        return qstrcmp(context, "QObject") == 0 ? m_mark + QString::fromUtf8(text) : QString();
    }

    bool isEmpty() const override
    {
        return false;
    }

private:
    QString m_mark;
};

class ChildApplication
{
private:
    int m_count = 1;
    char m_name[5] = "test";
    char *m_arguments[2] = {m_name, nullptr};
    QCoreApplication m_application{m_count, m_arguments};
};

QStringList marked(const QString &mark, const QStringList &texts)
{
    QStringList result;
    for (const QString &text : texts)
        result.append(mark + text);
    return result;
}

void namesAreTranslated()
{
    const ChildApplication application;
    Marker marker("de:");
    QCoreApplication::installTranslator(&marker);
    for (const Row &row : ROWS) {
        REQUIRE(profile(row.id)->name() == "de:" + QString(row.name));
        REQUIRE(ColorUtils::huelockProfileIDName(Profile(row.id)) == "de:" + QString(row.name));
        REQUIRE(profile(row.id)->getChannelNames() == marked("de:", row.channels));
    }
    REQUIRE(ColorUtils::huelockProfileIDNameList(true) == marked("de:", namesOf({0, 1, 2, 3, 4, 5, 6, 7, 8, 9})));
}

void nameMapOutlivesItsTranslation()
{
    const ChildApplication application;
    Marker first("first:");
    Marker second("second:");
    QCoreApplication::installTranslator(&first);
    const QMap<int, QString> names = ColorUtils::huelockProfileIDNameMap();
    REQUIRE(names.size() == ROWS.size());
    for (const Row &row : ROWS)
        REQUIRE(names.value(row.id) == "first:" + QString(row.name));
    QCoreApplication::removeTranslator(&first);
    REQUIRE(ColorUtils::huelockProfileIDNameMap() == names);
    QCoreApplication::installTranslator(&second);
    REQUIRE(ColorUtils::huelockProfileIDNameMap() == names);
}

const ChildCases childCases{
    {"names are translated", namesAreTranslated},
    {"name map outlives its translation", nameMapOutlivesItsTranslation},
};

} // namespace

class tst_HuelockProfileFactory : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneRegistry();
    void profiles_data();
    void profiles();
    void questions_data();
    void questions();
    void calibrationIsTheRegistrys_data();
    void calibrationIsTheRegistrys();
    void unknownIdentifiers_data();
    void unknownIdentifiers();
    void huelockOfUnknownModes();
    void nameLists();
    void nameMap();
    void namesAreTranslated();

    void odd28_irregularProfiles();
    void odd29_nameMapKeepsItsFirstNames();
    void odd49_unknownProfileIsGenericRgb();
};

void tst_HuelockProfileFactory::oneRegistry()
{
    HuelockProfileFactory *registry = HuelockProfileFactory::instance();
    QVERIFY(registry);
    QCOMPARE(HuelockProfileFactory::instance(), registry);
    for (const Row &row : ROWS)
        QCOMPARE(profile(row.id), profile(row.id));
}

static void addProfileRows()
{
    QTest::addColumn<int>("id");
    for (const Row &row : ROWS)
        QTest::newRow(row.name) << row.id;
}

void tst_HuelockProfileFactory::profiles_data()
{
    addProfileRows();
}

void tst_HuelockProfileFactory::profiles()
{
    QFETCH(int, id);
    const Row &row = ROWS.at(id);
    const HueLockProfile *stored = profile(id);
    QVERIFY(stored);
    QCOMPARE(stored->name(), QString(row.name));
    QCOMPARE(int(stored->getChannelConfiguration()), row.configuration);
    QCOMPARE(stored->getDefaultOnboardCurve(), row.curve);
    QCOMPARE(numbers(stored->getAvailableIOModeIDs()), row.modes);
    QCOMPARE(int(stored->getDefaultIOModeID()), row.defaultMode);
    QCOMPARE(modesThat([&](int mode) { return stored->getDefaultIsHuelockEnabled(Mode(mode)); }),
             sorted(row.huelockOn));
    QCOMPARE(stored->getChannelNames(), row.channels);
}

void tst_HuelockProfileFactory::questions_data()
{
    addProfileRows();
}

void tst_HuelockProfileFactory::questions()
{
    QFETCH(int, id);
    const Row &row = ROWS.at(id);
    QCOMPARE(ColorUtils::huelockProfileIDName(Profile(id)), QString(row.name));
    QCOMPARE(int(ColorUtils::nChannelConfigurationForHuelockProfileID(Profile(id))), row.configuration);
    QCOMPARE(ColorUtils::defaultCurveTypeForHuelockProfileID(Profile(id)), row.curve);
    QCOMPARE(numbers(ColorUtils::ioModesForHuelockProfileID(Profile(id))), row.modes);
    QCOMPARE(int(ColorUtils::defaultIOModeIDForHuelockProfileID(Profile(id))), row.defaultMode);
    QCOMPARE(modesThat([&](int mode) { return ColorUtils::defaultHueLockEnabled(Profile(id), mode); }),
             sorted(row.huelockOn));
}

void tst_HuelockProfileFactory::calibrationIsTheRegistrys_data()
{
    addProfileRows();
}

void tst_HuelockProfileFactory::calibrationIsTheRegistrys()
{
    QFETCH(int, id);
    Tristimulus *data = profile(id)->getTristimulus();
    QVERIFY(data);
    const auto configuration = profile(id)->getChannelConfiguration();
    QCOMPARE(data, TristimulusFactory::getInstance()->getTristimulus(Profile(id), configuration));
}

void tst_HuelockProfileFactory::unknownIdentifiers_data()
{
    QTest::addColumn<int>("id");
    for (const int id : UNKNOWN_IDS)
        QTest::newRow(QByteArray::number(id).constData()) << id;
}

void tst_HuelockProfileFactory::unknownIdentifiers()
{
    QFETCH(int, id);
    QCOMPARE(profile(id), profile(0));
    QCOMPARE(profile(id)->name(), QString("Generic RGB"));
    QCOMPARE(ColorUtils::huelockProfileIDName(Profile(id)), QString("Generic RGB"));
    QCOMPARE(int(ColorUtils::nChannelConfigurationForHuelockProfileID(Profile(id))), 1);
    QCOMPARE(ColorUtils::defaultCurveTypeForHuelockProfileID(Profile(id)), 0);
    QCOMPARE(numbers(ColorUtils::ioModesForHuelockProfileID(Profile(id))), QList<int>{0});
    QCOMPARE(int(ColorUtils::defaultIOModeIDForHuelockProfileID(Profile(id))), 0);
    QVERIFY(!ColorUtils::defaultHueLockEnabled(Profile(id), 0));
}

void tst_HuelockProfileFactory::huelockOfUnknownModes()
{
    QVERIFY(!ColorUtils::defaultHueLockEnabled(ColorUtils::WASHLINE_PZ6_RGBA, ColorUtils::SINGLE_CHANNEL_IN_OUT));
    for (const int mode : UNKNOWN_IDS)
        QVERIFY(!ColorUtils::defaultHueLockEnabled(ColorUtils::TESSEL_COVELINE, mode));
}

void tst_HuelockProfileFactory::nameLists()
{
    const QStringList all = ColorUtils::huelockProfileIDNameList(true);
    QCOMPARE(all, namesOf({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));

    const QStringList calibrated = ColorUtils::huelockProfileIDNameList(false);
    QCOMPARE(calibrated, namesOf({0, 1, 2, 5, 6, 7, 8, 9}));
    QCOMPARE(int(calibrated.size()), 8);
    QCOMPARE(calibrated.first(), QString("Generic RGB"));
    QCOMPARE(calibrated.last(), QString("FloodBar KQ2 RGBW"));
    QVERIFY(!calibrated.contains("Generic RGBW"));
    QVERIFY(!calibrated.contains("Single Channel"));
}

void tst_HuelockProfileFactory::nameMap()
{
    QMap<int, QString> names = ColorUtils::huelockProfileIDNameMap();
    QCOMPARE(names.keys(), (QList<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
    QCOMPARE(QStringList(names.values()), namesOf(names.keys()));

    const QMap<int, QString> untouched = names;
    names.clear();
    QCOMPARE(ColorUtils::huelockProfileIDNameMap(), untouched);
}

void tst_HuelockProfileFactory::namesAreTranslated()
{
    const ChildResult result = runChild("names are translated");
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

void tst_HuelockProfileFactory::odd28_irregularProfiles()
{
    // Wide families with one white or amber start in pass-through, those with two more emitters do not.
    QCOMPARE(ColorUtils::defaultIOModeIDForHuelockProfileID(ColorUtils::STRAND_BEAM_KVX), ColorUtils::RGB_IN_RGBAW_OUT);
    QCOMPARE(ColorUtils::defaultIOModeIDForHuelockProfileID(ColorUtils::TESSEL_COVELINE), ColorUtils::RGB_IN_RGBWW_OUT);
    for (const Profile id : {ColorUtils::WASHLINE_PZ6_RGBA, ColorUtils::FLOODBAR_KQ2_RGBA})
        QCOMPARE(ColorUtils::defaultIOModeIDForHuelockProfileID(id), ColorUtils::RGBA_IN_OUT);
    for (const Profile id : {ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::FLOODBAR_KQ2_RGBW})
        QCOMPARE(ColorUtils::defaultIOModeIDForHuelockProfileID(id), ColorUtils::RGBW_IN_OUT);

    // The one calibrated pass-through that is off.
    QVERIFY(!ColorUtils::defaultHueLockEnabled(ColorUtils::STRAND_BEAM_KVX, ColorUtils::RGBAW_IN_OUT));
    QVERIFY(ColorUtils::defaultHueLockEnabled(ColorUtils::STRAND_BEAM_KVX, ColorUtils::RGB_IN_RGBAW_OUT));
    QVERIFY(ColorUtils::defaultHueLockEnabled(ColorUtils::TESSEL_COVELINE, ColorUtils::RGBWW_IN_OUT));

    const HueLockProfile *generic = profile(ColorUtils::GENERIC_RGB);
    const HueLockProfile *pixelNode = profile(ColorUtils::PIXELNODE_RGB_CLASS);
    QCOMPARE(pixelNode->getChannelConfiguration(), generic->getChannelConfiguration());
    QCOMPARE(pixelNode->getAvailableIOModeIDs(), generic->getAvailableIOModeIDs());
    QCOMPARE(pixelNode->getDefaultIOModeID(), generic->getDefaultIOModeID());
    QCOMPARE(generic->getDefaultOnboardCurve(), 0);
    QCOMPARE(pixelNode->getDefaultOnboardCurve(), 1);
    QVERIFY(!generic->getDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT));
    QVERIFY(pixelNode->getDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT));
}

void tst_HuelockProfileFactory::odd29_nameMapKeepsItsFirstNames()
{
    const ChildResult result = runChild("name map outlives its translation");
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

void tst_HuelockProfileFactory::odd49_unknownProfileIsGenericRgb()
{
    constexpr Profile UNKNOWN = Profile(42);
    QCOMPARE(profile(UNKNOWN), profile(ColorUtils::GENERIC_RGB));
    QCOMPARE(ColorUtils::nChannelConfigurationForHuelockProfileID(UNKNOWN), ColorUtils::CONFIG_RGB);

    // Its data are an object of its own with the default values.
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(UNKNOWN, ColorUtils::CONFIG_RGBAW);
    QVERIFY(data != profile(ColorUtils::GENERIC_RGB)->getTristimulus());
    QCOMPARE(data->getX(), (QVector<double>{0.4123152, 0.35765, 0.18025}));
    QCOMPARE(data->getY(), (QVector<double>{0.2126, 0.7153, 0.0721}));
    QCOMPARE(data->getZ(), (QVector<double>{0.0193273, 0.1192167, 0.9493167}));
    QCOMPARE(data->getChannelNames(), RGB);
}

TREL_TEST_MAIN(tst_HuelockProfileFactory, childCases)
#include "tst_HuelockProfileFactory.moc"
