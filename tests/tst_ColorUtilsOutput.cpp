#include "ColorUtils.h"
#include "PlainSolver.h"
#include "TestSupport.h"
#include "TrelColor.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <algorithm>
#include <cmath>
#include <memory>

Q_DECLARE_METATYPE(TrelColor)

namespace {

using Levels = QVector<double>;
using Words = QVector<unsigned int>;

constexpr unsigned char UNTOUCHED = 0x5A;
constexpr int LINEAR = 0;
constexpr int SQUARE_LAW = 1;
constexpr int TUNGSTEN = 2;

/// Alphas and levels are stored as words of 32 bits.
constexpr double WORD = 1.0 / 4294967295.0;
/// The curve models hand out single-precision numbers; two units in the last place.
constexpr double SINGLE = 1.2e-7;

TrelColor rgb(double r, double g, double b, int profile = 0, double alpha = 1)
{
    return TrelColor::fromRgbF(r, g, b, alpha, ColorUtils::HuelockProfileID(profile));
}

TrelColor hsv(double h, double s, double v, int profile = 0, double alpha = 1)
{
    return TrelColor::fromHsvF(h, s, v, alpha, ColorUtils::HuelockProfileID(profile));
}

TrelColor yxy(double Y, double x, double y, int profile = 0, double alpha = 1)
{
    TrelColor color;
    color.setYxyF(Y, x, y, alpha, ColorUtils::HuelockProfileID(profile));
    return color;
}

TrelColor levels(const Levels &channels, int configuration, int profile, double alpha = 1)
{
    return TrelColor::fromNChannelF(Levels{alpha} + channels, ColorUtils::ChannelConfiguration(configuration),
                                    ColorUtils::HuelockProfileID(profile));
}

TrelColor levelWords(const Words &alphaAndChannels, int configuration, int profile)
{
    return TrelColor::fromNChannel16(alphaAndChannels, ColorUtils::ChannelConfiguration(configuration),
                                     ColorUtils::HuelockProfileID(profile));
}

TrelColor renderedFromYxy(TrelColor color)
{
    color.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    return color;
}

/// A Yxy colour that kept the configuration of what it was before.
TrelColor yxyWithConfiguration(int configuration, int profile, double Y, double x, double y)
{
    TrelColor color = levels({0.5}, configuration, profile);
    color.setYxyF(Y, x, y, 1, ColorUtils::HuelockProfileID(profile));
    return color;
}

Tristimulus *dataOf(const TrelColor &color)
{
    return TristimulusFactory::getInstance()->getTristimulus(color.getHuelockProfileID(),
                                                             color.getChannelConfiguration());
}

QByteArray text(const Levels &values)
{
    QByteArrayList list;
    for (const double value : values)
        list.append(QByteArray::number(value, 'g', 17));
    return "(" + list.join(", ") + ")";
}

bool near(const Levels &actual, const Levels &expected, double tolerance)
{
    return std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(),
                      [=](double a, double e) { return std::isnan(e) ? std::isnan(a) : std::abs(a - e) <= tolerance; });
}

Levels yxyOf(const TrelColor &color)
{
    Levels Yxy(3, -1);
    ColorUtils::convertTrelColorToYxy(color, Yxy.data());
    return Yxy;
}

/// The chromaticity of light from the default data's emitters at these levels.
Levels chromaticity(double red, double green, double blue)
{
    const double X = 0.4123152 * red + 0.35765 * green + 0.18025 * blue;
    const double Y = 0.2126 * red + 0.7153 * green + 0.0721 * blue;
    const double Z = 0.0193273 * red + 0.1192167 * green + 0.9493167 * blue;
    return {X / (X + Y + Z), Y / (X + Y + Z)};
}

/// A Yxy colour that the generic RGB fixture gives with these 16-bit levels, the first of them the highest.
TrelColor yxyOfWords(int first, int second, int third)
{
    const Levels at = chromaticity(1, double(second) / first, double(third) / first);
    return yxy(first / 65535.0, at[0], at[1]);
}

/// How one colour is sent to one fixture.
struct Fixture
{
    int profile = ColorUtils::GENERIC_RGB;
    int ioMode = ColorUtils::RGB_IN_OUT;
    int channelCount = 3;
    bool rgbPassThrough = true;
};

} // namespace

Q_DECLARE_METATYPE(Fixture)

namespace {

Levels toLevels(TrelColor color, const Fixture &fixture, bool &solvedFromColor, bool clampToGamut = true,
                int onboardCurve = LINEAR)
{
    const std::unique_ptr<double[]> result(
        ColorUtils::convertTrelColorToNChannelF(solvedFromColor, color, fixture.rgbPassThrough, fixture.channelCount,
                                                ColorUtils::HuelockProfileID(fixture.profile),
                                                ColorUtils::IOModeID(fixture.ioMode), clampToGamut, onboardCurve));
    Levels list;
    for (int c = 0; c < fixture.channelCount; ++c)
        list.append(result[std::size_t(c)]);
    return list;
}

Levels toLevels(const TrelColor &color, const Fixture &fixture)
{
    bool solvedFromColor = false;
    return toLevels(color, fixture, solvedFromColor);
}

/// The bytes, in hexadecimal, from an array of exactly the size that the call may write.
QByteArray toDmx(TrelColor color, const Fixture &fixture, int resolution, int curveType, int onboardCurve)
{
    const int size = qMax(0, fixture.channelCount) * qMax(0, resolution);
    const std::unique_ptr<unsigned char[]> out(new unsigned char[std::size_t(size)]);
    std::fill(out.get(), out.get() + size, UNTOUCHED);
    ColorUtils::convertTrelColorToDMX(color, fixture.rgbPassThrough, fixture.channelCount, resolution, out.get(),
                                      curveType, onboardCurve, ColorUtils::HuelockProfileID(fixture.profile),
                                      ColorUtils::IOModeID(fixture.ioMode));
    return QByteArray(reinterpret_cast<const char *>(out.get()), size).toHex();
}

QByteArray toBuffer(const TrelColor &color, const Fixture &fixture, int resolution, int curveType, int onboardCurve)
{
    const QList<unsigned char> bytes = ColorUtils::updateBuffer(
        curveType, onboardCurve, color, fixture.rgbPassThrough, fixture.channelCount, resolution,
        ColorUtils::IOModeID(fixture.ioMode), ColorUtils::HuelockProfileID(fixture.profile));
    QByteArray result;
    for (const unsigned char byte : bytes)
        result.append(static_cast<char>(byte));
    return result.toHex();
}

/// What the solver answers for \a color, cut or filled up with zeros to \a channelCount.
Levels plainlySolved(const TrelColor &color, int configuration, const Fixture &fixture, bool clampToGamut = true)
{
    Levels Yxy(3);
    if (color.spec() == TrelColor::Yxy)
        color.getYxyF(&Yxy[0], &Yxy[1], &Yxy[2]);
    else
        Yxy = yxyOf(color);
    Levels result(ColorUtils::configChannelCount(ColorUtils::ChannelConfiguration(configuration)));
    PlainSolver::convertYxyToNChannel(Yxy.constData(), result.data(), ColorUtils::ChannelConfiguration(configuration),
                                      ColorUtils::HuelockProfileID(fixture.profile), clampToGamut);
    while (result.size() < fixture.channelCount)
        result.append(0);
    return result.mid(0, qMax(0, fixture.channelCount));
}

bool sameBits(const Levels &a, const Levels &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), PlainSolver::sameBits);
}

const TrelColor ORANGE = rgb(0.75, 0.35, 0.15);
const Levels ORANGE_LEVELS{0.75, 0.35, 0.15};
const Levels ORANGE_WORDS{49151 / 65535.0, 22937 / 65535.0, 9830 / 65535.0}; // ORANGE_LEVELS rounded to 16 bits

TrelColor orangeYxy(int profile = 0)
{
    const Levels at = chromaticity(0.75, 0.35, 0.15);
    return yxy(0.75, at[0], at[1], profile);
}

/// \a source with alpha 1/4, as near as 32 bits have it (2^30 / (2^32 - 1)).
TrelColor quarter(TrelColor source)
{
    source.setAlphaF(0.25);
    return source;
}

} // namespace

class tst_ColorUtilsOutput : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void colorToYxy_data();
    void colorToYxy();
    void colorToYxyByItsOwnProfile_data();
    void colorToYxyByItsOwnProfile();
    void blackToYxy_data();
    void blackToYxy();
    void colorToYxyWithShortData();
    void odd39_luminanceIsTheLargestRatio();
    void yxyToWords_data();
    void yxyToWords();
    void yxyToWordsOfFourChannels();
    void passesThrough_data();
    void passesThrough();
    void solves_data();
    void solves();
    void odd40_solvesForTheInputConfiguration();
    void solvesWithTheDefaultCurveOfTheColor();
    void clampsOnRequest();
    void channelCountOtherThanTheModes_data();
    void channelCountOtherThanTheModes();
    void unknownIOMode_data();
    void unknownIOMode();
    void dmxBytes_data();
    void dmxBytes();
    void stopsTheProgram_data();
    void stopsTheProgram();
    void odd42_bufferIgnoresAlpha();
    void bufferOfNoBytes_data();
    void bufferOfNoBytes();
    void updateColorCopies_data();
    void updateColorCopies();
    void updateColorMixes_data();
    void updateColorMixes();
    void updateColorMixesYxy_data();
    void updateColorMixesYxy();
    void updateColorConvertsToTheSourcesLevels();
    void odd41_mixturesAreGeneric();
};

void tst_ColorUtilsOutput::colorToYxy_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<int>("curve");
    QTest::addColumn<Levels>("expected");
    const Levels green = chromaticity(0, 1, 0);
    const TrelColor mixed = rgb(0.75, 0.5, 0.25);
    const TrelColor five = levels({0.2, 0.4, 0.6, 0.8, 0.5}, ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX);
    const Levels linear{0.75, 0.38641073711408536, 0.38786114394099047};

    QTest::newRow("full red, linear") << rgb(1, 0, 0) << LINEAR << Levels{1, 0.64, 0.32999996119473646};
    QTest::newRow("full red, square law") << rgb(1, 0, 0) << SQUARE_LAW << Levels{1, 0.64, 0.32999996119473646};
    QTest::newRow("full red, tungsten") << rgb(1, 0, 0) << TUNGSTEN << Levels{1, 0.64, 0.32999996119473646};
    QTest::newRow("RGB, linear") << mixed << LINEAR << linear;
    QTest::newRow("RGB, square law") << mixed << SQUARE_LAW
                                     << Levels{0.5748593377953477, 0.444507597169892, 0.4090363329075317};
    QTest::newRow("RGB, tungsten") << mixed << TUNGSTEN
                                   << Levels{0.5052986357480735, 0.48921376929389143, 0.42430616695668255};
    QTest::newRow("RGB, unknown curve is linear") << mixed << 3 << linear;
    QTest::newRow("RGB, curve -1 is linear") << mixed << -1 << linear;
    QTest::newRow("RGB, transparent") << rgb(0.75, 0.5, 0.25, 0, 0) << LINEAR << linear;
    QTest::newRow("RGB of another profile")
        << rgb(0.75, 0.5, 0.25, 7) << LINEAR << Levels{0.75, 0.4026208789042144, 0.37900339950284767};
    QTest::newRow("HSV, half green") << hsv(1.0 / 3, 1, 0.5) << LINEAR << Levels{0.5, green[0], green[1]};
    QTest::newRow("levels, linear") << five << LINEAR << Levels{0.8, 0.3021186440709491, 0.22799000435306793};
    QTest::newRow("levels, square law") << five << SQUARE_LAW
                                        << Levels{0.6505509508173576, 0.298126621206937, 0.21995583249244138};
    QTest::newRow("Yxy has no levels") << yxy(0.5, 0.3, 0.3) << LINEAR << Levels{0, qQNaN(), qQNaN()};
    QTest::newRow("invalid has no levels") << TrelColor() << LINEAR << Levels{0, qQNaN(), qQNaN()};
}

void tst_ColorUtilsOutput::colorToYxy()
{
    QFETCH(TrelColor, color);
    QFETCH(int, curve);
    QFETCH(Levels, expected);
    Levels Yxy(3, -1);
    ColorUtils::convertTrelColorToYxy(color, dataOf(color), Yxy.data(), curve);
    const double tolerance = curve == SQUARE_LAW || curve == TUNGSTEN ? SINGLE : WORD;
    QVERIFY2(near(Yxy, expected, tolerance), text(Yxy).constData());
}

void tst_ColorUtilsOutput::colorToYxyByItsOwnProfile_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<Levels>("expected");
    QTest::newRow("generic RGB, linear") << rgb(0.75, 0.5, 0.25)
                                         << Levels{0.75, 0.38641073711408536, 0.38786114394099047};
    QTest::newRow("calibrated RGB, square law") << rgb(0.75, 0.5, 0.25, ColorUtils::PIXELNODE_RGB_CLASS)
                                                << Levels{0.5748593377953477, 0.4736877319619369, 0.3919177974372711};
    QTest::newRow("calibrated levels, square law")
        << levels({0.2, 0.4, 0.6, 0.8, 0.5}, ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX)
        << Levels{0.6505509508173576, 0.298126621206937, 0.21995583249244138};
    QTest::newRow("black") << rgb(0, 0, 0, ColorUtils::PIXELNODE_RGB_CLASS) << Levels{0, 0, 0};
}

void tst_ColorUtilsOutput::colorToYxyByItsOwnProfile()
{
    QFETCH(TrelColor, color);
    QFETCH(Levels, expected);
    const Levels Yxy = yxyOf(color);
    QVERIFY2(near(Yxy, expected, SINGLE), text(Yxy).constData());
}

void tst_ColorUtilsOutput::blackToYxy_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::newRow("RGB") << rgb(0, 0, 0);
    QTest::newRow("RGB, transparent") << rgb(0, 0, 0, 0, 0);
    QTest::newRow("HSV") << hsv(0.3, 1, 0);
    QTest::newRow("Yxy") << yxy(0, 0.3, 0.4);
    QTest::newRow("levels") << levels({0, 0, 0, 0}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW);
    QTest::newRow("no levels but alpha") << levels({}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW);
}

void tst_ColorUtilsOutput::blackToYxy()
{
    QFETCH(TrelColor, color);
    for (const int curve : {LINEAR, SQUARE_LAW, TUNGSTEN}) {
        Levels Yxy(3, -1);
        ColorUtils::convertTrelColorToYxy(color, dataOf(color), Yxy.data(), curve);
        QCOMPARE(Yxy, Levels(3, 0.0));
    }
}

void tst_ColorUtilsOutput::colorToYxyWithShortData()
{
    Tristimulus none(ColorUtils::PIXELNODE_RGB_CLASS);
    Levels Yxy(3, -1);
    ColorUtils::convertTrelColorToYxy(rgb(1, 0.5, 0.5), &none, Yxy.data(), LINEAR);
    QVERIFY(std::isnan(Yxy[1]));
    QVERIFY(std::isnan(Yxy[2]));

    Tristimulus redOnly(ColorUtils::PIXELNODE_RGB_CLASS);
    redOnly.setX({4});
    redOnly.setY({2});
    redOnly.setZ({2});
    ColorUtils::convertTrelColorToYxy(rgb(1, 0.5, 0.5), &redOnly, Yxy.data(), LINEAR);
    QCOMPARE(Yxy, (Levels{1, 0.5, 0.25}));
}

void tst_ColorUtilsOutput::odd39_luminanceIsTheLargestRatio()
{
    QVERIFY(near(yxyOf(rgb(0.1, 0.2, 0.7)), Levels{0.7} + chromaticity(0.1, 0.2, 0.7), WORD));
    QVERIFY(near(yxyOf(rgb(1, 1, 1)), Levels{1} + chromaticity(1, 1, 1), WORD));
    QVERIFY(near(yxyOf(rgb(0, 0, 0.9)), Levels{0.9} + chromaticity(0, 0, 0.9), WORD));
}

void tst_ColorUtilsOutput::yxyToWords_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<int>("curve");
    QTest::addColumn<bool>("clampToGamut");
    QTest::addColumn<Words>("expected");
    const TrelColor color = yxyOfWords(0x8765, 0x1234, 0x4321);
    const TrelColor beyondRed = yxy(1, 0.9, 0.05);
    QTest::newRow("linear") << color << LINEAR << false << Words{0x8765, 0x1234, 0x4321};
    QTest::newRow("square law") << color << SQUARE_LAW << false << Words{0xB7D5, 0x3E2F, 0x7EEC};
    QTest::newRow("tungsten") << color << TUNGSTEN << false << Words{255, 255, 255};
    QTest::newRow("unknown curve") << color << 7 << false << Words{0x5A5A, 0x5A5A, 0x5A5A};
    QTest::newRow("clamped, inside") << color << LINEAR << true << Words{0x8765, 0x1234, 0x4321};
    QTest::newRow("clamped, outside") << beyondRed << LINEAR << true << Words{65535, 0, 0};
    QTest::newRow("not clamped, outside") << beyondRed << LINEAR << false << Words{0, 0, 0};
}

void tst_ColorUtilsOutput::yxyToWords()
{
    QFETCH(TrelColor, color);
    QFETCH(int, curve);
    QFETCH(bool, clampToGamut);
    const double Yxy[3] = {color.getY(), color.getx(), color.gety()};
    const std::unique_ptr<unsigned short[]> out(new unsigned short[3]);
    std::fill(out.get(), out.get() + 3, static_cast<unsigned short>(0x5A5A));
    ColorUtils::convertYxyToNChannelAndApplyCurve(Yxy, out.get(), ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB,
                                                  curve, clampToGamut);
    QTEST((Words{out[0], out[1], out[2]}), "expected");
}

void tst_ColorUtilsOutput::yxyToWordsOfFourChannels()
{
    const Fixture fixture{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, 4, false};
    const double Yxy[3] = {0.9, 0.4, 0.35};
    const Levels expected = plainlySolved(yxy(0.9, 0.4, 0.35), ColorUtils::CONFIG_RGBW, fixture);
    const std::unique_ptr<unsigned short[]> out(new unsigned short[4]);
    ColorUtils::convertYxyToNChannelAndApplyCurve(Yxy, out.get(), ColorUtils::CONFIG_RGBW,
                                                  ColorUtils::WASHLINE_PZ6_RGBW, LINEAR, true);
    for (int c = 0; c < 4; ++c)
        QCOMPARE(int(out[std::size_t(c)]), int(std::floor(expected.at(c) * 65535 + 0.5)));
}

void tst_ColorUtilsOutput::passesThrough_data()
{
    using CU = ColorUtils;
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<Fixture>("fixture");
    QTest::addColumn<Levels>("expected");
    const Levels fourOf = ORANGE_LEVELS + Levels{0};
    const TrelColor four = levels({0.1, 0.2, 0.3, 0.4}, CU::CONFIG_RGBW, CU::WASHLINE_PZ6_RGBW);
    const TrelColor three = levels({0.75, 0.35, 0.15}, CU::CONFIG_RGB, CU::GENERIC_RGB);
    const TrelColor one = levels({0.6}, CU::CONFIG_SINGLE_CHANNEL, CU::GENERIC_SINGLE_CHANNEL);
    TrelColor looksRendered = ORANGE;
    looksRendered.setNChannelRenderType(TrelColor::NChannelRenderYxy);

    QTest::newRow("generic RGB, RGB in/out") << ORANGE << Fixture{} << ORANGE_LEVELS;
    QTest::newRow("generic RGB, RGB in/out, no pass-through asked")
        << ORANGE << Fixture{CU::GENERIC_RGB, CU::RGB_IN_OUT, 3, false} << ORANGE_LEVELS;
    QTest::newRow("generic RGB, RGB in/out of another profile")
        << ORANGE << Fixture{CU::PIXELNODE_RGB_CLASS, CU::RGB_IN_OUT, 3, false} << ORANGE_LEVELS;
    QTest::newRow("generic RGB to four channels, pass-through asked")
        << ORANGE << Fixture{CU::GENERIC_RGBW, CU::RGBW_IN_OUT, 4, true} << fourOf;
    QTest::newRow("generic RGB to four channels of the generic profile")
        << ORANGE << Fixture{CU::GENERIC_RGB, CU::RGBA_IN_OUT, 4, true} << fourOf;
    QTest::newRow("generic RGB, RGB in / RGBW out")
        << ORANGE << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGB_IN_RGBW_OUT, 4, false} << fourOf;
    QTest::newRow("generic RGB, RGB in / RGBAW out, pass-through asked")
        << ORANGE << Fixture{CU::STRAND_BEAM_KVX, CU::RGB_IN_RGBAW_OUT, 5, true} << fourOf + Levels{0};
    QTest::newRow("generic RGB to a single channel")
        << ORANGE << Fixture{CU::GENERIC_SINGLE_CHANNEL, CU::SINGLE_CHANNEL_IN_OUT, 1, true} << Levels{0.75};
    QTest::newRow("generic HSV") << hsv(1.0 / 3, 1, 0.5) << Fixture{} << Levels{0, 0.5, 0};
    QTest::newRow("invalid") << TrelColor() << Fixture{} << Levels{0, 0, 0};
    QTest::newRow("a red word that looks like a render type")
        << looksRendered << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGB_IN_RGBW_OUT, 3, true} << Levels{WORD, 0.35, 0.15};
    QTest::newRow("generic RGB levels are read as 16-bit RGB") << three << Fixture{} << ORANGE_WORDS;
    QTest::newRow("generic RGB levels, RGB in / RGBW out")
        << three << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGB_IN_RGBW_OUT, 3, true} << ORANGE_WORDS;
    QTest::newRow("generic RGB levels rendered from Yxy, direct")
        << renderedFromYxy(three) << Fixture{} << ORANGE_WORDS;
    QTest::newRow("generic Yxy, direct, is read as 16-bit RGB") << orangeYxy() << Fixture{} << ORANGE_WORDS;
    QTest::newRow("levels of the fixture")
        << four << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGBW_IN_OUT, 4, true} << Levels{0.1, 0.2, 0.3, 0.4};
    QTest::newRow("levels of the fixture, no pass-through asked")
        << four << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGBW_IN_OUT, 4, false} << Levels{0.1, 0.2, 0.3, 0.4};
    QTest::newRow("levels rendered from Yxy of the fixture")
        << renderedFromYxy(four) << Fixture{CU::WASHLINE_PZ6_RGBW, CU::RGBW_IN_OUT, 4, true}
        << Levels{0.1, 0.2, 0.3, 0.4};
    QTest::newRow("calibrated RGB levels of the fixture")
        << levels({0.75, 0.35, 0.15}, CU::CONFIG_RGB, CU::PIXELNODE_RGB_CLASS)
        << Fixture{CU::PIXELNODE_RGB_CLASS, CU::RGB_IN_OUT, 3, true} << ORANGE_LEVELS;
    QTest::newRow("generic levels of four channels")
        << levels({0.1, 0.2, 0.3, 0.4}, CU::CONFIG_RGBW, CU::GENERIC_RGB)
        << Fixture{CU::GENERIC_RGB, CU::RGBW_IN_OUT, 4, true} << Levels{0.1, 0.2, 0.3, 0.4};
    QTest::newRow("single channel") << one << Fixture{CU::GENERIC_SINGLE_CHANNEL, CU::SINGLE_CHANNEL_IN_OUT, 1, false}
                                    << Levels{0.6};
}

void tst_ColorUtilsOutput::passesThrough()
{
    QFETCH(TrelColor, color);
    QFETCH(Fixture, fixture);
    QFETCH(Levels, expected);
    for (const bool before : {false, true}) {
        bool solvedFromColor = before;
        const Levels result = toLevels(color, fixture, solvedFromColor);
        QVERIFY2(near(result, expected, 1.5 * WORD), text(result).constData());
        QCOMPARE(solvedFromColor, before);
    }
}

void tst_ColorUtilsOutput::solves_data()
{
    using CU = ColorUtils;
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<Fixture>("fixture");
    QTest::addColumn<int>("configuration");
    const TrelColor four = levels({0.1, 0.2, 0.3, 0.4}, CU::CONFIG_RGBW, CU::WASHLINE_PZ6_RGBW);
    const TrelColor three = levels({0.75, 0.35, 0.15}, CU::CONFIG_RGB, CU::GENERIC_RGB);
    const int pixel = CU::PIXELNODE_RGB_CLASS;
    const int wash = CU::WASHLINE_PZ6_RGBW;

    QTest::newRow("calibrated RGB to the generic profile") << rgb(0.75, 0.35, 0.15, pixel) << Fixture{} << 1;
    QTest::newRow("calibrated RGB, same profile, RGB in / RGBW out")
        << rgb(0.75, 0.35, 0.15, wash) << Fixture{wash, CU::RGB_IN_RGBW_OUT, 4, true} << 1;
    QTest::newRow("calibrated RGB, RGBW in/out, pass-through asked")
        << rgb(0.75, 0.35, 0.15, pixel) << Fixture{wash, CU::RGBW_IN_OUT, 4, true} << 3;
    QTest::newRow("calibrated HSV") << hsv(0.1, 0.7, 0.8, pixel) << Fixture{wash, CU::RGBW_IN_OUT, 4, true} << 3;
    QTest::newRow("generic RGB, RGBW in/out, no pass-through asked")
        << ORANGE << Fixture{wash, CU::RGBW_IN_OUT, 4, false} << 3;
    QTest::newRow("generic HSV, RGBA in/out, no pass-through asked")
        << hsv(0.1, 0.7, 0.8) << Fixture{CU::FLOODBAR_KQ2_RGBA, CU::RGBA_IN_OUT, 4, false} << 6;
    QTest::newRow("invalid, RGBW in/out, no pass-through asked")
        << TrelColor() << Fixture{wash, CU::RGBW_IN_OUT, 4, false} << 3;
    QTest::newRow("generic levels of four channels, another profile")
        << levels({0.1, 0.2, 0.3, 0.4}, CU::CONFIG_RGBW, CU::GENERIC_RGB) << Fixture{wash, CU::RGBW_IN_OUT, 4, true}
        << 3;
    QTest::newRow("generic RGB levels rendered from Yxy, RGB in / RGBW out")
        << renderedFromYxy(three) << Fixture{wash, CU::RGB_IN_RGBW_OUT, 4, true} << 1;
    QTest::newRow("levels to another profile of the same layout")
        << four << Fixture{CU::FLOODBAR_KQ2_RGBW, CU::RGBW_IN_OUT, 4, true} << 3;
    QTest::newRow("levels in another mode") << four << Fixture{wash, CU::RGBA_IN_OUT, 4, true} << 6;
    QTest::newRow("levels, same profile, RGB in/out") << four << Fixture{wash, CU::RGB_IN_OUT, 3, true} << 1;
    QTest::newRow("Yxy to another profile") << orangeYxy() << Fixture{pixel, CU::RGB_IN_OUT, 3, true} << 1;
    QTest::newRow("Yxy, RGBW in/out, pass-through asked")
        << orangeYxy() << Fixture{wash, CU::RGBW_IN_OUT, 4, true} << 3;
    QTest::newRow("generic Yxy, same profile, RGB in / RGBW out")
        << orangeYxy() << Fixture{CU::GENERIC_RGB, CU::RGB_IN_RGBW_OUT, 4, true} << 1;
    QTest::newRow("calibrated Yxy, direct") << orangeYxy(pixel) << Fixture{pixel, CU::RGB_IN_OUT, 3, true} << 1;
    QTest::newRow("calibrated Yxy of the mode's layout")
        << yxyWithConfiguration(CU::CONFIG_RGBW, wash, 0.7, 0.35, 0.36) << Fixture{wash, CU::RGBW_IN_OUT, 4, true} << 3;
    QTest::newRow("Yxy to RGBWW") << orangeYxy() << Fixture{CU::TESSEL_COVELINE, CU::RGBWW_IN_OUT, 5, true} << 5;
    QTest::newRow("Yxy to RGBAW") << orangeYxy() << Fixture{CU::STRAND_BEAM_KVX, CU::RGBAW_IN_OUT, 5, true} << 2;
    QTest::newRow("Yxy to a single channel")
        << orangeYxy() << Fixture{CU::GENERIC_SINGLE_CHANNEL, CU::SINGLE_CHANNEL_IN_OUT, 1, true} << 4;
}

void tst_ColorUtilsOutput::solves()
{
    QFETCH(TrelColor, color);
    QFETCH(Fixture, fixture);
    QFETCH(int, configuration);
    const Levels expected = plainlySolved(color, configuration, fixture);
    for (const bool before : {false, true}) {
        bool solvedFromColor = before;
        const Levels result = toLevels(color, fixture, solvedFromColor);
        QVERIFY2(sameBits(result, expected), (text(result) + ", plainly " + text(expected)).constData());
        QCOMPARE(solvedFromColor, before || color.spec() != TrelColor::Yxy);
    }
}

void tst_ColorUtilsOutput::odd40_solvesForTheInputConfiguration()
{
    const Fixture fixture{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGB_IN_RGBW_OUT, 4, true};
    const Levels result = toLevels(orangeYxy(), fixture);
    QVERIFY(sameBits(result, plainlySolved(orangeYxy(), ColorUtils::CONFIG_RGB, fixture)));
    QVERIFY(result.at(3) == 0.0);
    QVERIFY(plainlySolved(orangeYxy(), ColorUtils::CONFIG_RGBW, fixture).at(3) > 0.1);
}

void tst_ColorUtilsOutput::solvesWithTheDefaultCurveOfTheColor()
{
    const TrelColor color = rgb(0.75, 0.5, 0.25, ColorUtils::PIXELNODE_RGB_CLASS);
    for (const int onboardCurve : {LINEAR, SQUARE_LAW, TUNGSTEN}) {
        bool solvedFromColor = false;
        const Levels result = toLevels(color, Fixture{}, solvedFromColor, true, onboardCurve);
        QVERIFY(std::abs(*std::max_element(result.begin(), result.end()) - 0.5748593377953477) <= SINGLE);
    }
}

void tst_ColorUtilsOutput::clampsOnRequest()
{
    const Fixture fixture{ColorUtils::GENERIC_RGB, ColorUtils::RGB_IN_RGBW_OUT, 3, true};
    bool solvedFromColor = false;
    QCOMPARE(toLevels(yxy(1, 0.9, 0.05), fixture, solvedFromColor, false), Levels(3, 0.0));
    QVERIFY(near(toLevels(yxy(1, 0.9, 0.05), fixture, solvedFromColor, true), {1, 0, 0}, SINGLE));
}

void tst_ColorUtilsOutput::channelCountOtherThanTheModes_data()
{
    QTest::addColumn<int>("channelCount");
    for (const int count : {-1, 0, 1, 2, 3, 4, 5, 8})
        QTest::addRow("%d channels", count) << count;
}

void tst_ColorUtilsOutput::channelCountOtherThanTheModes()
{
    QFETCH(int, channelCount);
    const Fixture solving{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, channelCount, false};
    const Fixture passing{ColorUtils::GENERIC_RGB, ColorUtils::RGB_IN_OUT, channelCount, true};
    const Fixture unknown{ColorUtils::GENERIC_RGB, 10, channelCount, true};
    const int size = qMax(0, channelCount);

    Levels passed = ORANGE_LEVELS + Levels(8, 0.0);
    QVERIFY(sameBits(toLevels(orangeYxy(), solving), plainlySolved(orangeYxy(), ColorUtils::CONFIG_RGBW, solving)));
    QVERIFY(near(toLevels(ORANGE, passing), passed.mid(0, size), WORD));
    QCOMPARE(toLevels(ORANGE, unknown), Levels(size, 0.0));
    for (const Fixture &fixture : {solving, passing, unknown}) {
        for (const int resolution : {1, 2}) {
            const QByteArray bytes = toDmx(orangeYxy(), fixture, resolution, LINEAR, LINEAR);
            QCOMPARE(int(bytes.size()), 2 * resolution * size);
            QCOMPARE(toBuffer(orangeYxy(), fixture, resolution, LINEAR, LINEAR), bytes);
            QCOMPARE(toBuffer(ORANGE, fixture, resolution, LINEAR, LINEAR),
                     toDmx(ORANGE, fixture, resolution, LINEAR, LINEAR));
        }
    }
}

void tst_ColorUtilsOutput::unknownIOMode_data()
{
    QTest::addColumn<int>("ioMode");
    QTest::newRow("10") << 10;
    QTest::newRow("-1") << -1;
}

void tst_ColorUtilsOutput::unknownIOMode()
{
    QFETCH(int, ioMode);
    const Fixture fixture{ColorUtils::WASHLINE_PZ6_RGBW, ioMode, 4, true};
    const TrelColor four = levels({0.1, 0.2, 0.3, 0.4}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW);
    for (const TrelColor &color : {ORANGE, orangeYxy(), four, rgb(1, 1, 1, ColorUtils::PIXELNODE_RGB_CLASS)}) {
        QCOMPARE(toLevels(color, fixture), Levels(4, 0.0));
        QCOMPARE(toDmx(color, fixture, 1, LINEAR, LINEAR), QByteArray("00000000"));
    }
}

void tst_ColorUtilsOutput::dmxBytes_data()
{
    using CU = ColorUtils;
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<Fixture>("fixture");
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("curveType");
    QTest::addColumn<int>("onboardCurve");
    QTest::addColumn<QByteArray>("expected");
    const auto addRow = [](const QByteArray &name, const TrelColor &color, const Fixture &fixture, int resolution,
                           int curveType, int onboardCurve, const char *expected) {
        QTest::newRow(name.constData()) << color << fixture << resolution << curveType << onboardCurve
                                        << QByteArray(expected);
    };
    const Fixture three;
    const Fixture fourInOut{CU::GENERIC_RGBW, CU::RGBW_IN_OUT, 4, true};
    const Fixture fourOut{CU::GENERIC_RGB, CU::RGB_IN_RGBW_OUT, 4, true};
    const Fixture wash{CU::WASHLINE_PZ6_RGBW, CU::RGBW_IN_OUT, 4, true};
    const TrelColor half = rgb(0.5, 0, 1);
    const TrelColor four = levels({0.5, 0.25, 1, 0.75}, CU::CONFIG_RGBW, CU::WASHLINE_PZ6_RGBW);
    const TrelColor yxyColor = yxyOfWords(0x8765, 0x1234, 0x4321);
    const TrelColor threeLevels = levelWords({65535, 0x8765, 0x1234, 0x4321}, CU::CONFIG_RGB, CU::GENERIC_RGB);
    const TrelColor rendered = renderedFromYxy(threeLevels);

    addRow("8-bit components", TrelColor::fromRgb8(128, 1, 254), three, 1, LINEAR, LINEAR, "8001fe");
    addRow("8 bits round", half, three, 1, LINEAR, LINEAR, "8000ff");
    addRow("16 bits truncate", half, three, 2, LINEAR, LINEAR, "7fff0000ffff");
    addRow("8 bits, normal curve", half, three, 1, 1, LINEAR, "4500ff");
    addRow("16 bits, normal curve", half, three, 2, 1, LINEAR, "44b30000fff0");
    addRow("8 bits, tungsten curve", half, three, 1, 2, LINEAR, "3000ff");
    addRow("16 bits, tungsten curve", half, three, 2, 2, LINEAR, "302a0000ffff");
    addRow("unknown curve is linear", half, three, 1, 9, LINEAR, "8000ff");
    addRow("passed through, square law on board", half, three, 1, 1, SQUARE_LAW, "4500ff");
    addRow("passed through, tungsten on board", half, three, 2, LINEAR, TUNGSTEN, "7fff0000ffff");
    addRow("four channels, pass-through", half, fourInOut, 1, LINEAR, LINEAR, "8000ff00");
    addRow("RGB in / RGBW out", half, fourOut, 2, 1, LINEAR, "44b30000fff00000");
    addRow("levels, linear", four, wash, 1, LINEAR, TUNGSTEN, "8040ffbf");
    addRow("levels, normal curve", four, wash, 1, 1, LINEAR, "4513ff93");
    addRow("generic levels", threeLevels, fourOut, 1, 1, TUNGSTEN, "4c021500");
    addRow("software curve, resolution 3", half, three, 3, LINEAR, LINEAR, "5a5a5a5a5a5a5a5a5a");
    addRow("software curve, resolution 4", four, wash, 4, 1, LINEAR, "5a5a5a5a5a5a5a5a5a5a5a5a5a5a5a5a");

    for (const int curveType : {0, 1, 2, 9}) {
        const auto name = [curveType](const char *what) {
            return QByteArray("Yxy, ") + what + ", curve type " + QByteArray::number(curveType);
        };
        addRow(name("8 bits, linear"), yxyColor, three, 1, curveType, LINEAR, "871243");
        addRow(name("8 bits, square law"), yxyColor, three, 1, curveType, SQUARE_LAW, "b73e7e");
        addRow(name("8 bits, tungsten"), yxyColor, three, 1, curveType, TUNGSTEN, "c25a92");
        addRow(name("16 bits, linear"), yxyColor, three, 2, curveType, LINEAR, "876512654312");
        addRow(name("16 bits, square law"), yxyColor, three, 2, curveType, SQUARE_LAW, "b7d53ed57e3e");
        addRow(name("16 bits, tungsten"), yxyColor, three, 2, curveType, TUNGSTEN, "00ff00ff0000");
    }
    addRow("Yxy, unknown on-board curve, 8 bits", yxyColor, three, 1, LINEAR, 7, "5a5a5a");
    addRow("Yxy, unknown on-board curve, 16 bits", yxyColor, three, 2, LINEAR, 7, "5a5a5a5a5a5a");
    addRow("Yxy, resolution 3", yxyColor, three, 3, LINEAR, LINEAR, "8712435a5a5a5a5a5a");
    addRow("Yxy solved, 8 bits", yxyColor, fourOut, 1, LINEAR, LINEAR, "87124300");
    addRow("Yxy solved, 16 bits", yxyColor, fourOut, 2, LINEAR, LINEAR, "8765126543120065");
    addRow("Yxy out of gamut", yxy(1, 0.9, 0.05), fourOut, 1, LINEAR, LINEAR, "ff000000");
    addRow("solved from levels, 8 bits", rendered, fourOut, 1, 1, LINEAR, "87124300");
    addRow("solved from levels, 16 bits", rendered, fourOut, 2, 1, LINEAR, "8765126543120065");
    addRow("solved from levels, tungsten", rendered, fourOut, 1, LINEAR, TUNGSTEN, "c25a9200");
}

void tst_ColorUtilsOutput::dmxBytes()
{
    QFETCH(TrelColor, color);
    QFETCH(Fixture, fixture);
    QFETCH(int, resolution);
    QFETCH(int, curveType);
    QFETCH(int, onboardCurve);
    QTEST(toDmx(color, fixture, resolution, curveType, onboardCurve), "expected");
}

void tst_ColorUtilsOutput::stopsTheProgram_data()
{
    QTest::addColumn<QString>("child");
    QTest::addColumn<QByteArray>("message");
    const QByteArray notPassed = "\"false\"";
    const QByteArray otherCount = "\"realVector.size() == channelCount + 1\"";
    QTest::newRow("calibrated RGB passed through") << "calibratedRgb" << notPassed;
    QTest::newRow("calibrated HSV passed through") << "calibratedHsv" << notPassed;
    QTest::newRow("calibrated black passed through") << "calibratedBlack" << notPassed;
    QTest::newRow("calibrated RGB passed through, as levels") << "calibratedRgbAsLevels" << notPassed;
    QTest::newRow("too many levels") << "tooManyLevels" << otherCount;
    QTest::newRow("too few levels") << "tooFewLevels" << otherCount;
    QTest::newRow("too few levels, in a buffer") << "tooFewLevelsInBuffer" << otherCount;
    QTest::newRow("calibration for fewer channels") << "fewerChannels" << QByteArray("index out of range");
}

void tst_ColorUtilsOutput::stopsTheProgram()
{
    QFETCH(QString, child);
    QFETCH(QByteArray, message);
    QVERIFY(diesWith(child, message));
}

void tst_ColorUtilsOutput::odd42_bufferIgnoresAlpha()
{
    const Fixture three;
    const Fixture wash{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, 4, true};
    const Fixture solving{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, 4, false};
    struct Case
    {
        TrelColor color;
        Fixture fixture;
    };
    const Case cases[] = {
        {ORANGE, three},
        {ORANGE, solving},
        {hsv(0.1, 0.7, 0.8), three},
        {orangeYxy(), three},
        {orangeYxy(), wash},
        {levels({0.1, 0.2, 0.3, 0.4}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW), wash},
        {rgb(0.75, 0.35, 0.15, ColorUtils::PIXELNODE_RGB_CLASS), wash},
    };
    for (const Case &one : cases) {
        for (const int resolution : {1, 2}) {
            const QByteArray bytes = toDmx(one.color, one.fixture, resolution, 1, SQUARE_LAW);
            for (const double alpha : {0.0, 0.25, 254 / 255.0, 1.0}) {
                TrelColor color = one.color;
                color.setAlphaF(alpha);
                QCOMPARE(toBuffer(color, one.fixture, resolution, 1, SQUARE_LAW), bytes);
            }
        }
    }
    QCOMPARE(toBuffer(rgb(0.5, 0, 1, 0, 0.25), three, 2, LINEAR, LINEAR), QByteArray("7fff0000ffff"));
    QCOMPARE(toBuffer(rgb(0, 0, 0, 0, 0.25), three, 1, LINEAR, LINEAR), QByteArray("000000"));
    QCOMPARE(toBuffer(TrelColor(), three, 1, LINEAR, LINEAR), QByteArray("000000"));
}

void tst_ColorUtilsOutput::bufferOfNoBytes_data()
{
    QTest::addColumn<int>("channelCount");
    QTest::addColumn<int>("resolution");
    QTest::newRow("no channels") << 0 << 1;
    QTest::newRow("negative channels") << -3 << 2;
    QTest::newRow("resolution 0") << 3 << 0;
    QTest::newRow("negative resolution") << 3 << -1;
    QTest::newRow("both negative") << -3 << -1;
}

void tst_ColorUtilsOutput::bufferOfNoBytes()
{
    QFETCH(int, channelCount);
    QFETCH(int, resolution);
    const Fixture fixture{ColorUtils::GENERIC_RGB, ColorUtils::RGB_IN_OUT, channelCount, true};
    for (const TrelColor &color : {ORANGE, orangeYxy()})
        QCOMPARE(toBuffer(color, fixture, resolution, LINEAR, LINEAR), QByteArray());
}

void tst_ColorUtilsOutput::updateColorCopies_data()
{
    QTest::addColumn<TrelColor>("target");
    QTest::addColumn<TrelColor>("source");
    const TrelColor source = quarter(rgb(0.1, 0.2, 0.3, ColorUtils::PIXELNODE_RGB_CLASS));
    const TrelColor four = levels({0.1, 0.2, 0.3, 0.4}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW, 0.25);
    TrelColor almostOpaque = rgb(0.1, 0.2, 0.3);
    almostOpaque.setAlpha16(0xFF00);

    QTest::newRow("over black RGB") << rgb(0, 0, 0) << source;
    QTest::newRow("over black RGB of another profile") << rgb(0, 0, 0, ColorUtils::WASHLINE_PZ6_RGBA) << source;
    QTest::newRow("over black HSV") << hsv(0.2, 1, 0) << source;
    QTest::newRow("over black Yxy") << yxy(0, 0.3, 0.3) << source;
    QTest::newRow("over black levels") << levels({0, 0, 0, 0}, ColorUtils::CONFIG_RGBW, 6) << source;
    QTest::newRow("levels over black") << rgb(0, 0, 0) << four;
    QTest::newRow("Yxy over black") << rgb(0, 0, 0) << quarter(yxy(0.5, 0.3, 0.4, ColorUtils::WASHLINE_PZ6_RGBW));
    QTest::newRow("transparent over black") << rgb(0, 0, 0) << rgb(0.1, 0.2, 0.3, 0, 0);
    QTest::newRow("opaque over a colour") << ORANGE << rgb(0.1, 0.2, 0.3, ColorUtils::PIXELNODE_RGB_CLASS);
    QTest::newRow("opaque at 8 bits only") << ORANGE << almostOpaque;
    QTest::newRow("opaque levels over a colour")
        << ORANGE << levels({0.1, 0.2}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW);
}

void tst_ColorUtilsOutput::updateColorCopies()
{
    QFETCH(TrelColor, target);
    QFETCH(TrelColor, source);
    ColorUtils::updateColor(target, source);
    QVERIFY(target == source);
}

void tst_ColorUtilsOutput::updateColorMixes_data()
{
    using CU = ColorUtils;
    QTest::addColumn<TrelColor>("target");
    QTest::addColumn<TrelColor>("source");
    QTest::addColumn<TrelColor>("expected");
    const TrelColor red = rgb(1, 0, 0);
    const TrelColor blue = quarter(rgb(0, 0, 1));
    const TrelColor purple = TrelColor::fromRgb16(49151, 0, 16383);
    const Levels redAt = chromaticity(1, 0, 0);
    const auto wash = CU::WASHLINE_PZ6_RGBW;
    const auto of = [wash](const Words &words) { return levelWords(words, CU::CONFIG_RGBW, wash); };
    const auto generic = [](const Words &words) { return levelWords(words, CU::CONFIG_RGBW, CU::GENERIC_RGB); };
    TrelColor nearlyOpaque = rgb(0, 0, 0);
    nearlyOpaque.setAlpha8(254);

    QTest::newRow("RGB, truncated") << TrelColor::fromRgb16(60000, 30000, 1001)
                                    << quarter(TrelColor::fromRgb16(10001, 50001, 65535))
                                    << TrelColor::fromRgb16(47500, 35000, 17134);
    QTest::newRow("RGB, target half transparent") << rgb(1, 0, 0, 0, 0.5) << blue << purple;
    QTest::newRow("RGB, source transparent") << TrelColor::fromRgb16(60000, 30000, 1001, 5, wash) << rgb(0, 0, 1, 0, 0)
                                             << TrelColor::fromRgb16(60000, 30000, 1001);
    QTest::newRow("RGB, source nearly opaque")
        << TrelColor::fromRgb16(60000, 0, 0) << nearlyOpaque << TrelColor::fromRgb16(235, 0, 0);
    QTest::newRow("RGB of two profiles") << rgb(1, 0, 0, CU::PIXELNODE_RGB_CLASS) << quarter(rgb(0, 0, 1, wash))
                                         << purple;
    QTest::newRow("RGB over HSV") << hsv(0, 1, 1) << blue << purple;
    QTest::newRow("RGB over Yxy") << yxy(1, redAt[0], redAt[1]) << blue << purple;
    QTest::newRow("RGB over invalid") << TrelColor() << blue << TrelColor::fromRgb16(0, 0, 16383);
    QTest::newRow("HSV over RGB") << red << quarter(hsv(2.0 / 3, 1, 1)) << purple;
    QTest::newRow("HSV over HSV") << hsv(0, 1, 1) << quarter(hsv(2.0 / 3, 1, 1)) << purple;
    QTest::newRow("RGB levels over RGB levels")
        << levels({1, 0, 0}, CU::CONFIG_RGB, CU::GENERIC_RGB)
        << quarter(levels({0, 0, 1}, CU::CONFIG_RGB, CU::GENERIC_RGB)) << purple;
    QTest::newRow("levels, truncated") << of({40000, 60000, 30000, 1001, 50001})
                                       << quarter(of({0, 10001, 50001, 65535, 2}))
                                       << generic({40000, 47500, 35000, 17134, 37501});
    QTest::newRow("levels, target short of three")
        << of({40000, 60000}) << quarter(of({0, 10001, 50001, 65535, 2})) << generic({40000, 47500, 12500, 16383, 0});
    QTest::newRow("levels, source short of three keeps the target's")
        << of({40000, 60000, 30000, 1001, 50001}) << quarter(of({0, 10001}))
        << generic({40000, 47500, 30000, 1001, 50001});
    QTest::newRow("single channel") << levels({1}, CU::CONFIG_SINGLE_CHANNEL, CU::GENERIC_SINGLE_CHANNEL)
                                    << quarter(levels({0.5}, CU::CONFIG_SINGLE_CHANNEL, CU::GENERIC_SINGLE_CHANNEL))
                                    << levelWords({65535, 57343}, CU::CONFIG_SINGLE_CHANNEL, CU::GENERIC_RGB);
}

void tst_ColorUtilsOutput::updateColorMixes()
{
    QFETCH(TrelColor, target);
    QFETCH(TrelColor, source);
    QFETCH(TrelColor, expected);
    ColorUtils::updateColor(target, source);
    Words words;
    target.getNChannel16(&words);
    QByteArrayList list{target.name().toUtf8()};
    for (const unsigned int word : qAsConst(words))
        list.append(QByteArray::number(word));
    QVERIFY2(target == expected, list.join(" ").constData());
}

void tst_ColorUtilsOutput::updateColorMixesYxy_data()
{
    QTest::addColumn<TrelColor>("target");
    QTest::addColumn<TrelColor>("source");
    QTest::addColumn<Levels>("expected");
    const Levels red = chromaticity(1, 0, 0);
    const Levels blue = chromaticity(0, 0, 1);
    const Levels mixed{1, 0.75 * red[0] + 0.25 * blue[0], 0.75 * red[1] + 0.25 * blue[1]};
    const TrelColor target = yxy(0.8, 0.3, 0.4, ColorUtils::PIXELNODE_RGB_CLASS, 0.5);
    const TrelColor source = quarter(yxy(0.4, 0.5, 0.2, ColorUtils::WASHLINE_PZ6_RGBW));
    QTest::newRow("Yxy over Yxy") << target << source << Levels{0.7, 0.35, 0.35};
    QTest::newRow("transparent Yxy over Yxy") << target << yxy(0.4, 0.5, 0.2, 0, 0) << Levels{0.8, 0.3, 0.4};
    QTest::newRow("Yxy over RGB") << rgb(1, 0, 0) << quarter(yxy(1, blue[0], blue[1])) << mixed;
    QTest::newRow("Yxy over HSV") << hsv(0, 1, 1) << quarter(yxy(1, blue[0], blue[1])) << mixed;
}

void tst_ColorUtilsOutput::updateColorMixesYxy()
{
    QFETCH(TrelColor, target);
    QFETCH(TrelColor, source);
    QFETCH(Levels, expected);
    ColorUtils::updateColor(target, source);
    const Levels result{target.getY(), target.getx(), target.gety()};
    QCOMPARE(int(target.spec()), int(TrelColor::Yxy));
    QVERIFY2(near(result, expected, WORD), text(result).constData());
    QCOMPARE(target.alphaF(), 1.0);
    QCOMPARE(int(target.getHuelockProfileID()), int(ColorUtils::GENERIC_RGB));
    QCOMPARE(int(target.getChannelConfiguration()), int(ColorUtils::CONFIG_RGB));
}

void tst_ColorUtilsOutput::updateColorConvertsToTheSourcesLevels()
{
    const auto configuration = ColorUtils::CONFIG_RGBW;
    const auto profile = ColorUtils::WASHLINE_PZ6_RGBW;
    const TrelColor source = quarter(levelWords({0, 10001, 50001, 65535, 2}, configuration, profile));
    const TrelColor targets[] = {
        rgb(0.5, 0.4, 0.9, 0, 0.5),
        yxy(0.7, 0.3, 0.4),
        levels({0.5, 0.6, 0.7, 0.8}, configuration, ColorUtils::FLOODBAR_KQ2_RGBW),
        levels({0.5, 0.6, 0.7, 0.8}, ColorUtils::CONFIG_RGBA, profile),
    };
    const double a = source.alphaF();
    Words over;
    source.getNChannel16(&over);
    for (TrelColor target : targets) {
        Words expected;
        target.convertTo(TrelColor::Nchannel, configuration, profile).getNChannel16(&expected);
        QCOMPARE(int(expected.size()), 5);
        for (int c = 1; c < 5; ++c)
            expected[c] = static_cast<unsigned int>((1 - a) * expected[c] + a * over[c]);
        ColorUtils::updateColor(target, source);
        Words result;
        target.getNChannel16(&result);
        QCOMPARE(result, expected);
    }
}

void tst_ColorUtilsOutput::odd41_mixturesAreGeneric()
{
    const auto profile = ColorUtils::WASHLINE_PZ6_RGBW;
    const struct
    {
        TrelColor target;
        TrelColor source;
    } pairs[] = {
        {rgb(0.1, 0.2, 0.3, profile), quarter(rgb(0.3, 0.2, 0.1, profile))},
        {yxy(0.1, 0.2, 0.3, profile), quarter(yxy(0.3, 0.2, 0.1, profile))},
        {levels({0.1, 0.2, 0.3, 0.4}, ColorUtils::CONFIG_RGBW, profile),
         quarter(levels({0.4, 0.3, 0.2, 0.1}, ColorUtils::CONFIG_RGBW, profile))},
    };
    for (const auto &pair : pairs) {
        TrelColor mixture = pair.target;
        ColorUtils::updateColor(mixture, pair.source);
        QCOMPARE(int(mixture.getHuelockProfileID()), int(ColorUtils::GENERIC_RGB));
        QCOMPARE(int(mixture.spec()), int(pair.source.spec()));
    }
}

namespace {

void passCalibrated(const TrelColor &color)
{
    toDmx(color, Fixture{ColorUtils::PIXELNODE_RGB_CLASS, ColorUtils::RGB_IN_OUT, 3, true}, 1, LINEAR, LINEAR);
}

void passLevels(int channelCount)
{
    const Fixture fixture{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, channelCount, true};
    toLevels(levels({0.1, 0.2, 0.3, 0.4}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW), fixture);
}

const ChildCases childCases{
    {"calibratedRgb", [] { passCalibrated(rgb(0.1, 0.2, 0.3, ColorUtils::PIXELNODE_RGB_CLASS)); }},
    {"calibratedHsv", [] { passCalibrated(hsv(0.1, 0.2, 0.3, ColorUtils::PIXELNODE_RGB_CLASS)); }},
    {"calibratedBlack", [] { passCalibrated(rgb(0, 0, 0, ColorUtils::PIXELNODE_RGB_CLASS)); }},
    {"calibratedRgbAsLevels",
     [] {
         toLevels(rgb(1, 1, 1, ColorUtils::PIXELNODE_RGB_CLASS), Fixture{ColorUtils::PIXELNODE_RGB_CLASS, 0, 3, true});
     }},
    {"tooManyLevels", [] { passLevels(3); }},
    {"tooFewLevels", [] { passLevels(5); }},
    {"tooFewLevelsInBuffer",
     [] {
         toBuffer(levels({0.1, 0.2}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW),
                  Fixture{ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT, 4, true}, 1, LINEAR, LINEAR);
     }},
    {"fewerChannels",
     [] {
         toLevels(ORANGE, Fixture{ColorUtils::PIXELNODE_RGB_CLASS, ColorUtils::RGBW_IN_OUT, 4, false});
     }},
};

} // namespace

TREL_TEST_MAIN(tst_ColorUtilsOutput, childCases)
#include "tst_ColorUtilsOutput.moc"
