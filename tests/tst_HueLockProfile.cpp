#include "HueLockProfile.h"
#include "TestSupport.h"
#include "Tristimulus.h"

#include <climits>
#include <memory>

namespace {

const QList<ColorUtils::IOModeID> MODES{ColorUtils::RGBA_IN_OUT, ColorUtils::RGB_IN_OUT, ColorUtils::RGB_IN_RGBA_OUT};

HueLockProfile someProfile()
{
    return HueLockProfile("Some fixture", ColorUtils::CONFIG_RGBA, 2, MODES, ColorUtils::RGB_IN_RGBA_OUT);
}

const ChildCases childCases{
    {"channel names without calibration", [] { someProfile().getChannelNames(); }},
};

} // namespace

class tst_HueLockProfile : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void constructorStoresItsArguments();
    void valuesOutsideTheListsAreKept_data();
    void valuesOutsideTheListsAreKept();
    void listsAreCopies();
    void huelockDefaults();
    void tristimulusIsNotOwned();
    void tristimulusCanBeReplaced();
    void channelNamesAreThoseOfTheData();
    void channelNamesWithoutDataAreFatal();
};

void tst_HueLockProfile::constructorStoresItsArguments()
{
    const HueLockProfile profile = someProfile();
    QCOMPARE(profile.name(), QString("Some fixture"));
    QCOMPARE(profile.getChannelConfiguration(), ColorUtils::CONFIG_RGBA);
    QCOMPARE(profile.getDefaultOnboardCurve(), 2);
    QCOMPARE(profile.getAvailableIOModeIDs(), MODES);
    QCOMPARE(profile.getDefaultIOModeID(), ColorUtils::RGB_IN_RGBA_OUT);
    QVERIFY(!profile.getTristimulus());
    for (int mode = -1; mode <= 10; ++mode)
        QVERIFY2(!profile.getDefaultIsHuelockEnabled(ColorUtils::IOModeID(mode)), qPrintable(QString::number(mode)));
}

void tst_HueLockProfile::valuesOutsideTheListsAreKept_data()
{
    QTest::addColumn<int>("value");
    QTest::newRow("just below") << -1;
    QTest::newRow("beyond") << 42;
    QTest::newRow("smallest") << INT_MIN;
    QTest::newRow("largest") << INT_MAX;
}

void tst_HueLockProfile::valuesOutsideTheListsAreKept()
{
    QFETCH(int, value);
    const HueLockProfile profile(QString(), ColorUtils::ChannelConfiguration(value), value, {},
                                 ColorUtils::IOModeID(value));
    QCOMPARE(profile.name(), QString());
    QCOMPARE(int(profile.getChannelConfiguration()), value);
    QCOMPARE(profile.getDefaultOnboardCurve(), value);
    QCOMPARE(int(profile.getDefaultIOModeID()), value);
    QVERIFY(profile.getAvailableIOModeIDs().isEmpty());
}

void tst_HueLockProfile::listsAreCopies()
{
    const HueLockProfile profile = someProfile();
    profile.getAvailableIOModeIDs().clear();
    profile.name().clear();
    QCOMPARE(profile.getAvailableIOModeIDs(), MODES);
    QCOMPARE(profile.name(), QString("Some fixture"));
}

void tst_HueLockProfile::huelockDefaults()
{
    HueLockProfile profile = someProfile();
    profile.setDefaultIsHuelockEnabled(ColorUtils::RGBA_IN_OUT, true);
    profile.setDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT, false);
    // The map takes any mode, supported or not.
    profile.setDefaultIsHuelockEnabled(ColorUtils::SINGLE_CHANNEL_IN_OUT, true);
    QVERIFY(profile.getDefaultIsHuelockEnabled(ColorUtils::RGBA_IN_OUT));
    QVERIFY(!profile.getDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT));
    QVERIFY(profile.getDefaultIsHuelockEnabled(ColorUtils::SINGLE_CHANNEL_IN_OUT));
    QVERIFY(!profile.getDefaultIsHuelockEnabled(ColorUtils::RGB_IN_RGBA_OUT));

    profile.setDefaultIsHuelockEnabled(ColorUtils::RGBA_IN_OUT, false);
    profile.setDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT, true);
    QVERIFY(!profile.getDefaultIsHuelockEnabled(ColorUtils::RGBA_IN_OUT));
    QVERIFY(profile.getDefaultIsHuelockEnabled(ColorUtils::RGB_IN_OUT));
    QCOMPARE(profile.getAvailableIOModeIDs(), MODES);
}

void tst_HueLockProfile::tristimulusIsNotOwned()
{
    const auto data = std::make_unique<Tristimulus>(ColorUtils::WASHLINE_PZ6_RGBA);
    data->setX({1.0, 2.0});
    {
        HueLockProfile profile = someProfile();
        profile.setTristimulus(data.get());
        QCOMPARE(profile.getTristimulus(), data.get());
    }
    QCOMPARE(data->getX(), (QVector<double>{1.0, 2.0}));
}

void tst_HueLockProfile::tristimulusCanBeReplaced()
{
    Tristimulus first(ColorUtils::GENERIC_RGB);
    Tristimulus second(ColorUtils::GENERIC_RGB);
    HueLockProfile profile = someProfile();
    profile.setTristimulus(&first);
    profile.setTristimulus(&second);
    QCOMPARE(profile.getTristimulus(), &second);
    profile.setTristimulus(nullptr);
    QVERIFY(!profile.getTristimulus());
}

void tst_HueLockProfile::channelNamesAreThoseOfTheData()
{
    Tristimulus data(ColorUtils::GENERIC_RGB);
    HueLockProfile profile = someProfile();
    profile.setTristimulus(&data);
    QVERIFY(profile.getChannelNames().isEmpty());
    data.setChannelNames({"Red", "Lime"});
    QCOMPARE(profile.getChannelNames(), QStringList({"Red", "Lime"}));
}

void tst_HueLockProfile::channelNamesWithoutDataAreFatal()
{
    QVERIFY(diesWith("channel names without calibration", "m_matrix"));
}

TREL_TEST_MAIN(tst_HueLockProfile, childCases)
#include "tst_HueLockProfile.moc"
