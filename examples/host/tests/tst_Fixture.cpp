#include "Fixture.h"
#include "PaneTest.h"

#include <IOMode.h>
#include <IOModeFactory.h>

class tst_Fixture : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithItsProfilesDefaults_data();
    void startsWithItsProfilesDefaults();
    void countsItsSlots();
    void givesTheBytesOfAColor();
    void takesEveryColorInEveryMode();
    void isEqualByWhatItHolds();
};

void tst_Fixture::startsWithItsProfilesDefaults_data()
{
    QTest::addColumn<int>("profile");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isCalibrated");
    QTest::addColumn<int>("onboardCurve");
    QTest::addColumn<QString>("letters");
    QTest::newRow("generic RGB") << int(ColorUtils::GENERIC_RGB) << int(ColorUtils::RGB_IN_OUT) << false << 0 << "RGB";
    QTest::newRow("RGBAW") << int(ColorUtils::STRAND_BEAM_KVX) << int(ColorUtils::RGB_IN_RGBAW_OUT) << true << 1
                           << "RGBAW";
    QTest::newRow("RGBWW") << int(ColorUtils::TESSEL_COVELINE) << int(ColorUtils::RGB_IN_RGBWW_OUT) << true << 1
                           << "RGBWW";
    QTest::newRow("RGBA") << int(ColorUtils::WASHLINE_PZ6_RGBA) << int(ColorUtils::RGBA_IN_OUT) << true << 1 << "RGBA";
    QTest::newRow("single channel") << int(ColorUtils::GENERIC_SINGLE_CHANNEL) << int(ColorUtils::SINGLE_CHANNEL_IN_OUT)
                                    << false << 0 << "D";
}

void tst_Fixture::startsWithItsProfilesDefaults()
{
    QFETCH(int, profile);
    const Fixture fixture = Fixture::withDefaults(ColorUtils::HuelockProfileID(profile));
    QTEST(int(fixture.mode), "mode");
    QTEST(fixture.isCalibrated, "isCalibrated");
    QTEST(fixture.onboardCurve, "onboardCurve");
    QTEST(fixture.channelLetters(), "letters");
    QCOMPARE(int(fixture.channelNames().size()), fixture.channels());
    QVERIFY(fixture.lack().isEmpty());
}

void tst_Fixture::countsItsSlots()
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::WASHLINE_PZ6_RGBW);
    fixture.address = 505;
    QCOMPARE(fixture.footprint(), 4);
    QCOMPARE(fixture.lastAddress(), 508);
    fixture.resolution = 2;
    QCOMPARE(fixture.lastAddress(), 512);
    fixture.setMode(ColorUtils::RGB_IN_OUT); // drives three of its emitters
    QCOMPARE(fixture.channels(), 3);
}

void tst_Fixture::givesTheBytesOfAColor()
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    QCOMPARE(fixture.bytes(TrelColor("#0180ff")), QByteArray("\x01\x80\xff", 3));
    fixture.resolution = 2;
    QCOMPARE(fixture.bytes(TrelColor("#00018000ffff")), QByteArray("\x00\x01\x80\x00\xff\xff", 6));
    QCOMPARE(fixture.bytes(TrelColor()), QByteArray(6, '\0'));
}

/// The library ends the program at colours in a fixture's own terms that do not match it; a host must not hand it any.
void tst_Fixture::takesEveryColorInEveryMode()
{
    QVector<TrelColor> colors = {TrelColor(),
                                 TrelColor("red"),
                                 TrelColor(0.31, 0.33),
                                 TrelColor(0.0, 0.0),
                                 TrelColor("aNchannel;3;6;65535;100;0"),
                                 TrelColor("aNchannel;1;7;65535;1;2;3;4;5;6;0"),
                                 TrelColor("aNchannel;77;-3;65535;9;0"),
                                 TrelColor("aYxy;3;6;65535;1;nan;inf")};
    for (const ColorUtils::HuelockProfileID id : ColorUtils::huelockProfileIDList(true)) {
        colors.append(TrelColor::fromRgb8(10, 20, 30, 255, id));
        colors.append(TrelColor::fromHsv8(10, 20, 30, 255, id));
        colors.append(TrelColor::fromxyY(0.3, 0.3, 0.5, id));
        colors.append(TrelColor("red").toNChannel16(ColorUtils::nChannelConfigurationForHuelockProfileID(id), id));
    }
    for (const ColorUtils::HuelockProfileID id : ColorUtils::huelockProfileIDList(true)) {
        Fixture fixture = Fixture::withDefaults(id);
        for (const ColorUtils::IOModeID mode : ColorUtils::ioModesForHuelockProfileID(id)) {
            fixture.setMode(mode);
            for (const bool isCalibrated : {false, true}) {
                fixture.isCalibrated = isCalibrated;
                for (const TrelColor &color : qAsConst(colors))
                    QCOMPARE(int(fixture.bytes(color).size()), fixture.footprint());
            }
        }
    }
}

void tst_Fixture::isEqualByWhatItHolds()
{
    const Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    Fixture other = fixture;
    other.id = 7;
    QVERIFY(fixture == other);
    other.color = TrelColor::fromHsv8(120, 255, 255);
    QVERIFY(!(fixture == other));
    const Fixture green = other;
    other.color = TrelColor::fromHsv8(120, 10, 255); // of the same hue
    QVERIFY(!(green == other));
    QVERIFY(isSameColor(TrelColor(), TrelColor()));
}

PANE_TEST_MAIN(tst_Fixture)

#include "tst_Fixture.moc"
