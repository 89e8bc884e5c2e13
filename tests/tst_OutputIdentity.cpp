#include "PlainOutput.h"
#include "PlainSolver.h"
#include "TestSupport.h"

#include <IOMode.h>
#include <IOModeFactory.h>
#include <TrelColor.h>
#include <Tristimulus.h>
#include <TristimulusFactory.h>

#include <QVector>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>

/// The library's road from a colour to bytes gives what the plain one gives, bit for bit.
class tst_OutputIdentity : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void pwmInverses();
    void pwmInversesOfArrays();
    void quadraticSolver();
    void dimRatios();
    void curves();
    void yxyToWords_data();
    void yxyToWords();
    void output_data();
    void output();
    void buffers_data();
    void buffers();
    void outputOfChangedEmitters();
};

namespace {

// The plain road takes its time where nothing is optimised.
#ifdef NDEBUG
constexpr int ROUNDS = 100000; // for each of ten profiles
#else
constexpr int ROUNDS = 6000;
#endif

constexpr int PRE_COMPENSATION = 3;
constexpr int MODES = 10;
constexpr int MAX_WORD = 0xFFFF;
constexpr unsigned char UNTOUCHED = 0x5A;

// Both ends of Yxy and beyond; what a division makes infinite; white.
constexpr double CORNERS[] = {0.0, -0.0, 1.0, 0.5, 1.0 / 3, 0.3127, -0.25, 2.0, 5e-324, 1e-9, 1e300, -1e300};
constexpr double LUMINANCES[] = {0.0, -0.0, 1.0, 1.0, 0.5, 1.5, -0.7, 1e-6};
constexpr int CURVES[] = {0, 1, 2, 0, 1, 2, 1, 1, -1, 3, 42};
constexpr int RESOLUTIONS[] = {1, 2, 1, 2, 2, 3};

/// Reproducible on every machine, unlike the standard distributions.
class Random
{
public:
    explicit Random(unsigned int seed)
        : m_engine(seed)
    {
    }
    double unit()
    {
        return double(m_engine()) / 4294967296.0;
    }
    double between(double low, double high)
    {
        return low + (high - low) * unit();
    }
    int below(int count)
    {
        return int(m_engine() % unsigned(count));
    }
    template <typename T, std::size_t N>
    T oneOf(const T (&values)[N])
    {
        return values[std::size_t(below(int(N)))];
    }

private:
    std::mt19937 m_engine;
};

/// How one colour is sent to one fixture.
struct Fixture
{
    ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB;
    ColorUtils::IOModeID ioMode = ColorUtils::RGB_IN_OUT;
    bool rgbPassThrough = false;
    int channelCount = 3;
    int resolution = 1;
    int curveType = 0;
    int onboardCurve = 0;
};

const IOMode &modeOf(const Fixture &fixture)
{
    return *IOModeFactory::instance()->ioMode(fixture.ioMode);
}

Tristimulus *dataOf(ColorUtils::HuelockProfileID profile)
{
    return TristimulusFactory::getInstance()->getTristimulus(profile, ColorUtils::CONFIG_RGB);
}

Fixture randomFixture(Random &random, ColorUtils::HuelockProfileID profile)
{
    Fixture fixture;
    fixture.profile = profile;
    fixture.ioMode = ColorUtils::IOModeID(random.below(MODES));
    fixture.rgbPassThrough = random.below(2) == 0;
    const ColorUtils::ChannelConfiguration configurations[] = {
        modeOf(fixture).inputChannelConfiguration(), modeOf(fixture).inputChannelConfiguration(),
        ColorUtils::nChannelConfigurationForHuelockProfileID(profile)};
    fixture.channelCount =
        random.below(8) == 0 ? random.below(8) : ColorUtils::configChannelCount(random.oneOf(configurations));
    fixture.resolution = random.oneOf(RESOLUTIONS);
    fixture.curveType = random.oneOf(CURVES);
    fixture.onboardCurve = random.oneOf(CURVES);
    return fixture;
}

double randomAlpha(Random &random)
{
    const double alphas[] = {1, 1, 0, 0.5, 254.0 / 255, random.unit(), random.unit()};
    return random.oneOf(alphas);
}

/// 0 to 1, with both ends more often than by chance.
double randomLevel(Random &random)
{
    const double levels[] = {0, 1, random.unit() * 1e-4, random.unit(), random.unit(), random.unit(), random.unit()};
    return random.oneOf(levels);
}

/// The chromaticity of one emitter, or a mixture of two: corners of the gamut and points of its sides.
QPointF ofEmitters(Random &random, ColorUtils::HuelockProfileID profile)
{
    Tristimulus *data = dataOf(profile);
    const int count = int(data->getX().size());
    const int a = random.below(count);
    const int b = random.below(count);
    const double share = random.below(3) == 0 ? 0 : random.unit();
    const auto mixed = [&](const QVector<double> &values) { return values.at(a) + share * values.at(b); };
    const double sum = mixed(data->getX()) + mixed(data->getY()) + mixed(data->getZ());
    return {mixed(data->getX()) / sum, mixed(data->getY()) / sum};
}

/// In gamuts, around them, on their borders, outside the diagram, and where ratios are infinite.
QPointF randomChromaticity(Random &random, ColorUtils::HuelockProfileID profile)
{
    const double x = random.between(0.05, 0.75);
    switch (random.below(8)) {
    case 0:
        return {random.oneOf(CORNERS), random.oneOf(CORNERS)};
    case 1:
        return {x, random.below(2) == 0 ? 1 - x : random.oneOf(CORNERS)};
    case 2:
        return ofEmitters(random, profile);
    case 3:
        return {random.between(-0.5, 1.5), random.between(-0.5, 1.5)};
    default:
        return {x, random.between(0.02, 0.75)};
    }
}

void makeYxy(TrelColor &color, Random &random, ColorUtils::HuelockProfileID fixture,
             ColorUtils::HuelockProfileID profile)
{
    const QPointF at = randomChromaticity(random, fixture);
    const double Y = random.below(2) == 0 ? random.unit() : random.oneOf(LUMINANCES);
    color.setYxyF(Y, at.x(), at.y(), randomAlpha(random), profile);
}

TrelColor randomLevels(Random &random, const Fixture &fixture, ColorUtils::HuelockProfileID profile)
{
    const ColorUtils::ChannelConfiguration configurations[] = {
        modeOf(fixture).inputChannelConfiguration(), modeOf(fixture).inputChannelConfiguration(),
        ColorUtils::nChannelConfigurationForHuelockProfileID(profile),
        ColorUtils::ChannelConfiguration(random.below(8))};
    const ColorUtils::ChannelConfiguration configuration = random.oneOf(configurations);
    const int misfit = random.below(16) == 0 ? random.below(3) : 0;
    const int count = ColorUtils::configChannelCount(configuration) + misfit;
    const bool isDark = random.below(16) == 0;
    QVector<double> levels{randomAlpha(random)};
    for (int c = 0; c < count; ++c)
        levels.append(isDark ? 0 : randomLevel(random));
    TrelColor color = TrelColor::fromNChannelF(levels, configuration, profile);
    if (random.below(4) == 0)
        color.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    return color;
}

/// Of any form, in the fixture's terms or another's.
TrelColor randomColor(Random &random, const Fixture &fixture)
{
    const ColorUtils::HuelockProfileID profiles[] = {fixture.profile, fixture.profile, ColorUtils::GENERIC_RGB,
                                                     ColorUtils::GENERIC_RGB,
                                                     ColorUtils::HuelockProfileID(random.below(12) - 1)};
    const ColorUtils::HuelockProfileID profile = random.oneOf(profiles);
    const double a = randomLevel(random);
    const double b = randomLevel(random);
    const double c = randomLevel(random);
    TrelColor color;
    switch (random.below(16)) {
    case 0:
        color.setHuelockProfileID(profile); // invalid
        return color;
    case 1:
    case 2:
    case 3:
        return TrelColor::fromRgbF(a, b, c, randomAlpha(random), profile);
    case 4:
    case 5:
    case 6:
        return TrelColor::fromHsvF(random.below(8) == 0 ? -1 : a, b, c, randomAlpha(random), profile);
    case 7:
        color = randomLevels(random, fixture, profile); // whose configuration the Yxy colour keeps
        makeYxy(color, random, fixture.profile, profile);
        return color;
    case 8:
    case 9:
    case 10:
    case 11:
        return randomLevels(random, fixture, profile);
    default:
        makeYxy(color, random, fixture.profile, profile);
        return color;
    }
}

/// The programming errors of docs/reliability.md: a colour that cannot pass, or a solve without enough data.
bool endsTheProgram(const TrelColor &color, const Fixture &fixture)
{
    const IOMode &mode = modeOf(fixture);
    const ColorUtils::ChannelConfiguration input = mode.inputChannelConfiguration();
    const bool isShortOfData = ColorUtils::configChannelCount(input) > int(dataOf(fixture.profile)->getX().size());
    const bool isGeneric = color.getHuelockProfileID() == ColorUtils::GENERIC_RGB;
    const bool isRgb = color.getChannelConfiguration() == ColorUtils::CONFIG_RGB;
    const bool isYxy = color.spec() == TrelColor::Yxy;
    const bool isLevels = color.spec() == TrelColor::Nchannel;

    const bool isInItsTerms = color.getChannelConfiguration() == input && color.getHuelockProfileID() == fixture.profile
                              && (fixture.ioMode == ColorUtils::RGB_IN_OUT || (mode.isNtoN() && !isYxy));
    const bool isFromYxy = isYxy || (isLevels && color.getNChannelRenderType() == TrelColor::NChannelRenderYxy);
    const bool isHandedOn =
        isGeneric && isRgb && !isFromYxy && (mode.is3toN() || (mode.isNtoN() && fixture.rgbPassThrough));
    if (!isInItsTerms && !isHandedOn)
        return isShortOfData;
    if (isGeneric && (input == ColorUtils::CONFIG_RGB || (isRgb && mode.isNtoN())))
        return false;
    if (isYxy)
        return isShortOfData;
    QVector<double> levels;
    color.getNChannelF(&levels);
    return !isLevels || int(levels.size()) != fixture.channelCount + 1;
}

using Levels = QVector<double>;
using Bytes = QVector<unsigned char>;

/// The one or the other of two roads.
struct Road
{
    decltype(&ColorUtils::convertTrelColorToNChannelF) toLevels;
    decltype(&ColorUtils::convertTrelColorToDMX) toDmx;
    decltype(&ColorUtils::updateBuffer) toBuffer;
};

constexpr Road LIBRARY = {ColorUtils::convertTrelColorToNChannelF, ColorUtils::convertTrelColorToDMX,
                          ColorUtils::updateBuffer};
constexpr Road PLAIN = {PlainOutput::convertTrelColorToNChannelF, PlainOutput::convertTrelColorToDMX,
                        PlainOutput::updateBuffer};

/// Whether the colour was solved, and its levels.
Levels levelsBy(const Road &road, TrelColor color, const Fixture &fixture, bool clampToGamut)
{
    bool solvedFromColor = false;
    const std::unique_ptr<double[]> levels(road.toLevels(solvedFromColor, color, fixture.rgbPassThrough,
                                                         fixture.channelCount, fixture.profile, fixture.ioMode,
                                                         clampToGamut, fixture.onboardCurve));
    Levels result{solvedFromColor ? 1.0 : 0.0};
    for (int c = 0; c < fixture.channelCount; ++c)
        result.append(levels[std::size_t(c)]);
    return result;
}

Bytes dmxBy(const Road &road, TrelColor color, const Fixture &fixture)
{
    Bytes bytes(fixture.channelCount * fixture.resolution, UNTOUCHED);
    road.toDmx(color, fixture.rgbPassThrough, fixture.channelCount, fixture.resolution, bytes.data(), fixture.curveType,
               fixture.onboardCurve, fixture.profile, fixture.ioMode);
    return bytes;
}

QList<unsigned char> bufferBy(const Road &road, const TrelColor &color, const Fixture &fixture)
{
    return road.toBuffer(fixture.curveType, fixture.onboardCurve, color, fixture.rgbPassThrough, fixture.channelCount,
                         fixture.resolution, fixture.ioMode, fixture.profile);
}

bool sameBits(const Levels &a, const Levels &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), PlainSolver::sameBits);
}

QByteArray text(const TrelColor &color, const Fixture &fixture)
{
    const auto number = [](int value) { return QByteArray::number(value); };
    double Y, x, y;
    color.getYxyF(&Y, &x, &y);
    return "colour " + color.aName().toUtf8() + " (" + QByteArray::number(Y, 'g', 17) + ", "
           + QByteArray::number(x, 'g', 17) + ", " + QByteArray::number(y, 'g', 17) + ") of profile "
           + number(color.getHuelockProfileID()) + ", configuration " + number(color.getChannelConfiguration())
           + "; fixture of profile " + number(fixture.profile) + ", mode " + number(fixture.ioMode) + ", "
           + number(fixture.channelCount) + " channels of " + number(fixture.resolution) + " bytes, curves "
           + number(fixture.curveType) + " and " + number(fixture.onboardCurve)
           + (fixture.rgbPassThrough ? ", passing RGB" : "");
}

/// What differs between the roads; empty when nothing does.
QByteArray difference(const TrelColor &color, const Fixture &fixture, bool clampToGamut)
{
    if (!sameBits(levelsBy(LIBRARY, color, fixture, clampToGamut), levelsBy(PLAIN, color, fixture, clampToGamut)))
        return (clampToGamut ? "levels: " : "levels, not clamped: ") + text(color, fixture);
    if (dmxBy(LIBRARY, color, fixture) != dmxBy(PLAIN, color, fixture))
        return "bytes: " + text(color, fixture);
    return {};
}

/// The first word for which the two differ; -1 without one.
template <typename Result>
int firstDifference(Result (*library)(unsigned short), Result (*plain)(unsigned short))
{
    for (int word = 0; word <= MAX_WORD; ++word) {
        const Result actual = library(static_cast<unsigned short>(word));
        const Result expected = plain(static_cast<unsigned short>(word));
        if (std::memcmp(&actual, &expected, sizeof actual) != 0)
            return word;
    }
    return -1;
}

/// The same for a function of arrays, which gets all words at once.
template <typename Result>
int firstDifference(void (*library)(const unsigned short *, Result *, int), Result (*plain)(unsigned short))
{
    QVector<unsigned short> words;
    for (int word = 0; word <= MAX_WORD; ++word)
        words.append(static_cast<unsigned short>(word));
    QVector<Result> results(words.size());
    library(words.constData(), results.data(), int(words.size()));
    for (int word = 0; word <= MAX_WORD; ++word) {
        if (results.at(word) != plain(words.at(word)))
            return word;
    }
    return -1;
}

unsigned short itself(unsigned short word)
{
    return word;
}

void addProfiles()
{
    QTest::addColumn<int>("profile");
    for (const ColorUtils::HuelockProfileID profile : ColorUtils::huelockProfileIDList(true))
        QTest::newRow(qPrintable(ColorUtils::huelockProfileIDName(profile))) << int(profile);
}

/// Other emitters in the place of a profile's, written as a host may do it, until the end of the scope.
class ChangedEmitters
{
public:
    ChangedEmitters(Random &random, ColorUtils::HuelockProfileID profile)
        : m_data(dataOf(profile))
        , m_x(m_data->getX())
        , m_y(m_data->getY())
        , m_z(m_data->getZ())
    {
        const int count = int(m_x.size());
        for (int changes = 1 + random.below(3); changes > 0; --changes) {
            QVector<double> *const vectors[] = {&m_data->getX(), &m_data->getY(), &m_data->getZ()};
            (*random.oneOf(vectors))[random.below(count)] *= random.between(0.5, 2);
        }
    }
    ~ChangedEmitters()
    {
        m_data->setX(m_x);
        m_data->setY(m_y);
        m_data->setZ(m_z);
    }
    ChangedEmitters(const ChangedEmitters &) = delete;
    ChangedEmitters &operator=(const ChangedEmitters &) = delete;

private:
    Tristimulus *m_data;
    Levels m_x, m_y, m_z;
};

} // namespace

void tst_OutputIdentity::pwmInverses()
{
    QCOMPARE(firstDifference(ColorUtils::pwm16ToMNormDNormRes16, PlainOutput::pwm16ToMNormDNormRes16), -1);
    QCOMPARE(firstDifference(ColorUtils::pwm16ToMNormDNormRes8, PlainOutput::pwm16ToMNormDNormRes8), -1);
    QCOMPARE(firstDifference(ColorUtils::pwm16ToMNormDTungstenRes16, PlainOutput::pwm16ToMNormDTungstenRes16), -1);
    QCOMPARE(firstDifference(ColorUtils::pwm16ToMNormDTungstenRes8, PlainOutput::pwm16ToMNormDTungstenRes8), -1);
    QCOMPARE(firstDifference(ColorUtils::pwm16ToMNormDLinearRes8, PlainOutput::pwm16ToMNormDLinearRes8), -1);
}

void tst_OutputIdentity::pwmInversesOfArrays()
{
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDNormRes16, PlainOutput::pwm16ToMNormDNormRes16), -1);
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDNormRes8, PlainOutput::pwm16ToMNormDNormRes8), -1);
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDTungstenRes16, PlainOutput::pwm16ToMNormDTungstenRes16), -1);
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDTungstenRes8, PlainOutput::pwm16ToMNormDTungstenRes8), -1);
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDLinearRes16, itself), -1);
    QCOMPARE(firstDifference(ColorUtils::pwmToMNormDLinearRes8, PlainOutput::pwm16ToMNormDLinearRes8), -1);
}

void tst_OutputIdentity::quadraticSolver()
{
    Random random(1);
    for (int n = 0; n < ROUNDS; ++n) {
        const auto number = [&random] { return static_cast<float>(random.between(-1, 1)); };
        const float a = number() * (n % 2 ? 1.0F : 1e-5F);
        const float b = number() * (n % 3 ? 1.0F : 100.0F);
        const float c = number() * 2000;
        const float y = static_cast<float>(random.below(MAX_WORD + 1));
        const float max = n % 5 ? 65535.0F : 255.0F;
        QVERIFY2(ColorUtils::quadraticSolver(a, b, c, y, max) == PlainOutput::quadraticSolver(a, b, c, y, max),
                 qPrintable(QString("%1 %2 %3 %4").arg(double(a)).arg(double(b)).arg(double(c)).arg(double(y))));
    }
}

void tst_OutputIdentity::dimRatios()
{
    QCOMPARE(firstDifference(ColorUtils::dmx16ToTungstenDimRatio, PlainOutput::dmx16ToTungstenDimRatio), -1);
    QCOMPARE(firstDifference(ColorUtils::dmx16ToSquareLawDimRatio, PlainOutput::dmx16ToSquareLawDimRatio), -1);
}

void tst_OutputIdentity::curves()
{
    Random random(2);
    for (int n = 0; n < ROUNDS; ++n) {
        // Beyond 0 to 1 only where no table ends there.
        const int mode = random.below(2) == 0 ? PRE_COMPENSATION : random.below(3);
        const double scale = mode == PRE_COMPENSATION && random.below(4) == 0 ? random.between(-3, 3) : 1;
        const int count = random.below(8);
        const int resolution = random.oneOf(RESOLUTIONS);
        const int curve = random.oneOf(CURVES);
        Levels levels;
        for (int c = 0; c < count; ++c)
            levels.append(scale * randomLevel(random));
        Bytes actual(count * resolution, UNTOUCHED);
        Bytes expected(count * resolution, UNTOUCHED);
        ColorUtils::applyCurve(count, resolution, levels.constData(), actual.data(), curve, mode);
        PlainOutput::applyCurve(count, resolution, levels.constData(), expected.data(), curve, mode);
        QVERIFY2(actual == expected, qPrintable(QString("round %1").arg(n)));
    }
}

void tst_OutputIdentity::yxyToWords_data()
{
    addProfiles();
}

void tst_OutputIdentity::yxyToWords()
{
    QFETCH(int, profile);
    const auto id = ColorUtils::HuelockProfileID(profile);
    const ColorUtils::ChannelConfiguration configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(id);
    const int count = ColorUtils::configChannelCount(configuration);
    Random random(3);
    for (int n = 0; n < ROUNDS / 4; ++n) {
        const QPointF at = randomChromaticity(random, id);
        const double Yxy[] = {random.unit(), at.x(), at.y()};
        const int curve = random.oneOf(CURVES);
        const bool clampToGamut = random.below(4) != 0;
        QVector<unsigned short> actual(count, UNTOUCHED);
        QVector<unsigned short> expected(count, UNTOUCHED);
        ColorUtils::convertYxyToNChannelAndApplyCurve(Yxy, actual.data(), configuration, id, curve, clampToGamut);
        PlainOutput::convertYxyToNChannelAndApplyCurve(Yxy, expected.data(), configuration, id, curve, clampToGamut);
        QVERIFY2(actual == expected, qPrintable(QString("round %1").arg(n)));
    }
}

void tst_OutputIdentity::output_data()
{
    addProfiles();
}

void tst_OutputIdentity::output()
{
    QFETCH(int, profile);
    Random random(unsigned(4 + profile));
    int compared = 0;
    while (compared < ROUNDS) {
        const Fixture fixture = randomFixture(random, ColorUtils::HuelockProfileID(profile));
        const TrelColor color = randomColor(random, fixture);
        if (endsTheProgram(color, fixture))
            continue;
        ++compared;
        const QByteArray what = difference(color, fixture, random.below(2) == 0);
        QVERIFY2(what.isEmpty(), what.constData());
    }
}

void tst_OutputIdentity::buffers_data()
{
    addProfiles();
}

void tst_OutputIdentity::buffers()
{
    QFETCH(int, profile);
    Random random(unsigned(20 + profile));
    int compared = 0;
    while (compared < ROUNDS / 4) {
        const Fixture fixture = randomFixture(random, ColorUtils::HuelockProfileID(profile));
        const TrelColor color = randomColor(random, fixture);
        if (endsTheProgram(color, fixture))
            continue;
        ++compared;
        QVERIFY2(bufferBy(LIBRARY, color, fixture) == bufferBy(PLAIN, color, fixture),
                 text(color, fixture).constData());
    }
}

void tst_OutputIdentity::outputOfChangedEmitters()
{
    Random random(40);
    for (int n = 0; n < ROUNDS / 4; ++n) {
        const auto profile = ColorUtils::HuelockProfileID(random.below(10));
        const Fixture fixture = randomFixture(random, profile);
        const TrelColor color = randomColor(random, fixture);
        const ChangedEmitters changed(random, profile);
        if (endsTheProgram(color, fixture))
            continue;
        const QByteArray what = difference(color, fixture, random.below(2) == 0);
        QVERIFY2(what.isEmpty(), what.constData());
    }
}

TREL_TEST_MAIN(tst_OutputIdentity, {})
#include "tst_OutputIdentity.moc"
