#include "TestSupport.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QLineF>
#include <QPointF>

#include <climits>
#include <memory>

namespace {

using Profile = ColorUtils::HuelockProfileID;
using Configuration = ColorUtils::ChannelConfiguration;

struct DataSet
{
    QStringList names;
    QVector<double> x;
    QVector<double> y;
    QVector<double> z;
};

const QMap<int, DataSet> DATA_SETS{
    {1,
     {{"Red", "Green", "Blue", "Amber", "White"},
      {11740, 1554, 5410, 5553, 6491},
      {5160, 5817, 480, 4321, 6777},
      {0, 521, 32210, 55, 4092}}},
    {2,
     {{"Red", "Green", "Blue", "Mint", "White"},
      {510, 188, 181, 319, 334},
      {250, 581, 98, 391, 338},
      {10, 63, 943, 134, 188}}},
    {3, {{"Red", "Green", "Blue", "White"}, {11740, 1554, 5410, 6491}, {5160, 5817, 480, 6777}, {0, 521, 32210, 4092}}},
    {5,
     {{"Red", "Green", "Blue", "Amber"},
      {490.1758, 167.1244, 162.222, 360.0982},
      {220.975, 540.001, 100, 268.4369},
      {8.6375, 81.1972, 848.8889, 26.189}}},
    {6,
     {{"Red", "Green", "Blue", "White"},
      {490.1758, 167.1244, 162.222, 416.7922},
      {220.975, 540.001, 100, 422.6625},
      {8.6375, 81.1972, 848.8889, 334.6078}}},
    {7, {{"Red", "Green", "Blue"}, {442.9544, 160.8801, 150}, {199, 504, 90}, {10.5046, 92.5591, 760}}},
    {8,
     {{"Red", "Green", "Blue", "Amber"},
      {1241.8235, 531.2934, 402.7027, 987.0858},
      {558, 1628, 100, 757},
      {23.7059, 277.8323, 2200, 12.2947}}},
    {9,
     {{"Red", "Green", "Blue", "White"},
      {1241.8235, 531.2934, 402.7027, 870.3271},
      {558, 1628, 100, 868},
      {23.7059, 277.8323, 2200, 588.7507}}},
};

const DataSet DEFAULT_SET{{"Red", "Green", "Blue"},
                          {0.4123152, 0.35765, 0.18025},
                          {0.2126, 0.7153, 0.0721},
                          {0.0193273, 0.1192167, 0.9493167}};

DataSet dataSet(int key)
{
    return DATA_SETS.value(key, DEFAULT_SET);
}

const QMap<int, const char *> PROFILE_NAMES{
    {0, "Generic RGB"},       {1, "Strand/Beam KVX"},   {2, "Tessel CoveLine"},   {3, "Generic RGBW"},
    {4, "Single Channel"},    {5, "WashLine PZ6 RGBA"}, {6, "WashLine PZ6 RGBW"}, {7, "PixelNode RGB"},
    {8, "FloodBar KQ2 RGBA"}, {9, "FloodBar KQ2 RGBW"},
};

// Own configuration of each profile, 0 to 9.
const QVector<int> CONFIGURATIONS{1, 2, 5, 3, 4, 6, 3, 1, 6, 3};

Tristimulus *shared(int profile, int configuration = ColorUtils::CONFIG_RGB)
{
    return TristimulusFactory::getInstance()->getTristimulus(Profile(profile), Configuration(configuration));
}

Tristimulus *ask(TristimulusFactory &factory, int profile, int configuration)
{
    return factory.getTristimulus(Profile(profile), Configuration(configuration));
}

void compareData(Tristimulus *actual, const DataSet &expected)
{
    QVERIFY(actual);
    QCOMPARE(actual->getX(), expected.x);
    QCOMPARE(actual->getY(), expected.y);
    QCOMPARE(actual->getZ(), expected.z);
    QCOMPARE(actual->getChannelNames(), expected.names);
    QCOMPARE(actual->numChannels(), int(expected.names.size()));
}

QPointF chromaticity(const DataSet &set, int channel)
{
    const double sum = set.x.at(channel) + set.y.at(channel) + set.z.at(channel);
    return {set.x.at(channel) / sum, set.y.at(channel) / sum};
}

// A point whose nearest point of the triangle is corner \a index: outward along the bisector.
QPointF beyondCorner(const QVector<QPointF> &corners, int index)
{
    const QLineF left = QLineF(corners.at((index + 1) % 3), corners.at(index)).unitVector();
    const QLineF right = QLineF(corners.at((index + 2) % 3), corners.at(index)).unitVector();
    return corners.at(index) + QPointF(left.dx() + right.dx(), left.dy() + right.dy());
}

void compareGamut(const Tristimulus *actual, const DataSet &expected)
{
    const QVector<QPointF> corners{chromaticity(expected, 0), chromaticity(expected, 1), chromaticity(expected, 2)};
    const QPointF centre = (corners.at(0) + corners.at(1) + corners.at(2)) / 3.0;
    QVERIFY(actual->inside(centre.x(), centre.y()));
    for (int index = 0; index < 3; ++index) {
        const QPointF outside = beyondCorner(corners, index);
        double x = -1.0;
        double y = -1.0;
        QVERIFY(!actual->closestPtOnGamut(outside.x(), outside.y(), x, y));
        // Beyond a corner the answer is the stored corner itself: one division, the same one as here.
        QVERIFY(x == corners.at(index).x());
        QVERIFY(y == corners.at(index).y());
    }
}

} // namespace

class tst_TristimulusFactory : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void oneRegistry();
    void builtInData_data();
    void builtInData();
    void channelCounts();
    void registeredObjectIsReturned_data();
    void registeredObjectIsReturned();
    void keys_data();
    void keys();
    void borrowedDataAreNewEachTime_data();
    void borrowedDataAreNewEachTime();
    void plainGenericDataEndTheBorrowing_data();
    void plainGenericDataEndTheBorrowing();
    void dataSetsAreConsistent();
    void noDeviceIsNoDatabase();

    void odd45_lookupByProfileStoreByKey();
    void odd46_singleChannelHasThreeChannels();
};

void tst_TristimulusFactory::oneRegistry()
{
    TristimulusFactory *registry = TristimulusFactory::getInstance();
    QVERIFY(registry);
    QCOMPARE(TristimulusFactory::getInstance(), registry);
}

static void addProfileRows()
{
    QTest::addColumn<int>("profile");
    for (auto name = PROFILE_NAMES.begin(); name != PROFILE_NAMES.end(); ++name)
        QTest::newRow(name.value()) << name.key();
}

void tst_TristimulusFactory::builtInData_data()
{
    addProfileRows();
}

void tst_TristimulusFactory::builtInData()
{
    QFETCH(int, profile);
    Tristimulus *data = shared(profile, CONFIGURATIONS.at(profile));
    compareData(data, dataSet(profile));
    compareGamut(data, dataSet(profile));
}

void tst_TristimulusFactory::channelCounts()
{
    const QVector<int> counts{3, 5, 5, 4, 3, 4, 4, 3, 4, 4};
    for (int profile = 0; profile < int(counts.size()); ++profile)
        QCOMPARE(shared(profile)->numChannels(), counts.at(profile));
}

void tst_TristimulusFactory::registeredObjectIsReturned_data()
{
    addProfileRows();
    QTest::newRow("unknown profile -1") << -1;
    QTest::newRow("unknown profile 10") << 10;
    QTest::newRow("unknown profile 42") << 42;
}

void tst_TristimulusFactory::registeredObjectIsReturned()
{
    QFETCH(int, profile);
    Tristimulus *data = shared(profile);
    for (int configuration = -1; configuration <= 7; ++configuration)
        QCOMPARE(shared(profile, configuration), data);
}

void tst_TristimulusFactory::keys_data()
{
    QTest::addColumn<int>("profile");
    QTest::addColumn<int>("configuration");
    QTest::addColumn<int>("key");
    const auto row = [](int profile, int configuration, int key) {
        QTest::newRow(qPrintable(QString("profile %1 configuration %2").arg(profile).arg(configuration)))
            << profile << configuration << key;
    };
    row(0, ColorUtils::CONFIG_UNKNOWN, 0);
    row(0, ColorUtils::CONFIG_RGB, 0);
    row(0, ColorUtils::CONFIG_RGBAW, 1);
    row(0, ColorUtils::CONFIG_RGBW, 3);
    row(0, ColorUtils::CONFIG_SINGLE_CHANNEL, 0);
    row(0, ColorUtils::CONFIG_RGBWW, 2);
    row(0, ColorUtils::CONFIG_RGBA, 0);
    row(0, 7, 0);
    row(0, -1, 0);
    for (int profile = 1; profile <= 9; ++profile) {
        row(profile, CONFIGURATIONS.at(profile), profile);
        row(profile, profile == 2 ? ColorUtils::CONFIG_RGBAW : ColorUtils::CONFIG_RGBWW, profile);
    }
    for (const int profile : {-1, 10, 42, INT_MIN, INT_MAX})
        row(profile, ColorUtils::CONFIG_RGBAW, profile);
}

void tst_TristimulusFactory::keys()
{
    QFETCH(int, profile);
    QFETCH(int, configuration);
    QFETCH(int, key);
    TristimulusFactory empty;
    Tristimulus *data = ask(empty, profile, configuration);
    compareData(data, dataSet(key));
    compareGamut(data, dataSet(key));
    // Stored under the key, which is a profile identifier too.
    QCOMPARE(ask(empty, key, ColorUtils::CONFIG_RGB), data);
}

static void addBorrowingRows()
{
    QTest::addColumn<int>("configuration");
    QTest::addColumn<int>("key");
    QTest::newRow("RGBAW") << int(ColorUtils::CONFIG_RGBAW) << 1;
    QTest::newRow("RGBWW") << int(ColorUtils::CONFIG_RGBWW) << 2;
    QTest::newRow("RGBW") << int(ColorUtils::CONFIG_RGBW) << 3;
}

void tst_TristimulusFactory::borrowedDataAreNewEachTime_data()
{
    addBorrowingRows();
}

void tst_TristimulusFactory::borrowedDataAreNewEachTime()
{
    QFETCH(int, configuration);
    QFETCH(int, key);
    TristimulusFactory empty;
    // The registry forgets the object that it replaces without deleting it.
    const std::unique_ptr<Tristimulus> first(ask(empty, 0, configuration));
    first->setChannelNames({"changed"});
    Tristimulus *second = ask(empty, 0, configuration);
    QVERIFY(second != first.get());
    compareData(second, dataSet(key));
    QCOMPARE(first->getChannelNames(), QStringList("changed"));
    QCOMPARE(ask(empty, key, configuration), second);
}

void tst_TristimulusFactory::plainGenericDataEndTheBorrowing_data()
{
    addBorrowingRows();
}

void tst_TristimulusFactory::plainGenericDataEndTheBorrowing()
{
    QFETCH(int, configuration);
    QFETCH(int, key);
    TristimulusFactory empty;
    Tristimulus *borrowed = ask(empty, 0, configuration);
    Tristimulus *plain = ask(empty, 0, ColorUtils::CONFIG_RGB);
    QVERIFY(plain != borrowed);
    QCOMPARE(ask(empty, 0, configuration), plain);
    compareData(plain, DEFAULT_SET);
    QCOMPARE(ask(empty, key, configuration), borrowed);
}

void tst_TristimulusFactory::dataSetsAreConsistent()
{
    // The same emitters in two families, and the normalised default set.
    DataSet withoutAmber = dataSet(1);
    withoutAmber.names.removeAt(3);
    for (QVector<double> *values : {&withoutAmber.x, &withoutAmber.y, &withoutAmber.z})
        values->removeAt(3);
    compareData(shared(3), withoutAmber);
    for (const auto &pair : {qMakePair(5, 6), qMakePair(8, 9)}) {
        QCOMPARE(shared(pair.first)->getX().mid(0, 3), shared(pair.second)->getX().mid(0, 3));
        QCOMPARE(shared(pair.first)->getY().mid(0, 3), shared(pair.second)->getY().mid(0, 3));
        QCOMPARE(shared(pair.first)->getZ().mid(0, 3), shared(pair.second)->getZ().mid(0, 3));
    }
    const QVector<double> &y = shared(0)->getY();
    QVERIFY(qAbs(y.at(0) + y.at(1) + y.at(2) - 1.0) < 1e-15); // three roundings of numbers below 1
}

void tst_TristimulusFactory::noDeviceIsNoDatabase()
{
    QVERIFY(!TristimulusFactory::getInstance()->parseXML(nullptr));
    TristimulusFactory empty;
    QVERIFY(!empty.parseXML(nullptr));
    for (int profile = 0; profile <= 9; ++profile)
        compareData(shared(profile), dataSet(profile));
}

void tst_TristimulusFactory::odd45_lookupByProfileStoreByKey()
{
    // In the shared registry plain generic data exist from the start: no borrowing is left.
    for (const int configuration : {ColorUtils::CONFIG_RGBAW, ColorUtils::CONFIG_RGBWW, ColorUtils::CONFIG_RGBW}) {
        QCOMPARE(shared(0, configuration), shared(0, ColorUtils::CONFIG_RGB));
        QCOMPARE(shared(0, configuration)->numChannels(), 3);
    }

    TristimulusFactory empty;
    Tristimulus *strand = ask(empty, ColorUtils::STRAND_BEAM_KVX, ColorUtils::CONFIG_RGBAW);
    const std::unique_ptr<Tristimulus> replaced(strand);
    Tristimulus *borrowed = ask(empty, ColorUtils::GENERIC_RGB, ColorUtils::CONFIG_RGBAW);
    QVERIFY(borrowed != strand);
    QCOMPARE(borrowed->numChannels(), 5);
    QCOMPARE(ask(empty, ColorUtils::STRAND_BEAM_KVX, ColorUtils::CONFIG_RGBAW), borrowed);
}

void tst_TristimulusFactory::odd46_singleChannelHasThreeChannels()
{
    Tristimulus *data = shared(ColorUtils::GENERIC_SINGLE_CHANNEL, ColorUtils::CONFIG_SINGLE_CHANNEL);
    compareData(data, DEFAULT_SET);
    QVERIFY(data != shared(ColorUtils::GENERIC_RGB));
}

TREL_TEST_MAIN(tst_TristimulusFactory, {})
#include "tst_TristimulusFactory.moc"
