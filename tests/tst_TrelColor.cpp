#include "TestSupport.h"
#include "TrelColor.h"

#include <QColor>
#include <QDataStream>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <type_traits>

using Args = std::array<double, 4>;
using Words = std::array<quint32, 4>; ///< alpha, red, green, blue

Q_DECLARE_METATYPE(TrelColor)

namespace {

constexpr auto GENERIC = ColorUtils::GENERIC_RGB;
constexpr auto PROFILE = ColorUtils::PIXELNODE_RGB_CLASS;
constexpr double FULL_SCALE = 4294967295.0;
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double TINY = std::numeric_limits<double>::denorm_min();
const double ABOVE_ONE = std::nextafter(1.0, 2.0);

// QColor computes in double up to Qt 5 and in float from Qt 6 on. In 16-bit steps, five float operations on values up
// to 1 lose 65535 * 5 * 2^-24 at most; a hue in the middle between two hundredths of a degree may then round down.
constexpr bool IS_QCOLOR_FLOAT = QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);
constexpr double QCOLOR_NOISE = IS_QCOLOR_FLOAT ? 0.02 : 1e-4;
constexpr int QCOLOR_HUE_NOISE = IS_QCOLOR_FLOAT ? 1 : 0;

/// What state() tells of a default-constructed or invalidated colour.
const QByteArray BLANK = "00 ffffffff 00000000 00000000 00000000 config 1 profile 0 Yxy 0 0 0";

/// Form, alpha and the three component words in hexadecimal. The stream form is the only public view of all 32 bits.
QByteArray words(const TrelColor &color)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << color;
    const QByteArray hex = bytes.toHex();
    return hex.left(2) + ' ' + hex.mid(2, 8) + ' ' + hex.mid(10, 8) + ' ' + hex.mid(18, 8) + ' ' + hex.mid(26);
}

/// Everything that a colour holds, as text.
QByteArray state(const TrelColor &color)
{
    QByteArray text = words(color) + " config " + QByteArray::number(int(color.getChannelConfiguration())) + " profile "
                      + QByteArray::number(int(color.getHuelockProfileID()));
    QVector<double> levels;
    color.getNChannelF(&levels);
    for (int i = 1; i < int(levels.size()); ++i)
        text += (i == 1 ? " levels " : " ") + QByteArray::number(std::llround(levels[i] * FULL_SCALE), 16);
    if (color.spec() != TrelColor::Invalid && color.spec() != TrelColor::Yxy)
        return text;
    text += " Yxy";
    for (const double value : {color.getY(), color.getx(), color.gety()})
        text += ' ' + QByteArray::number(value, 'g', 17);
    return text;
}

/// \a target after reading the words in \a hex, which leaves its configuration, profile and levels alone.
TrelColor stored(const QByteArray &hex, TrelColor target = TrelColor())
{
    QDataStream stream(QByteArray::fromHex(hex));
    stream >> target;
    return target;
}

TrelColor stored(int spec, const Words &words)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << qint8(spec);
    for (const quint32 word : words)
        stream << word;
    return stored(bytes.toHex());
}

TrelColor nchannel(const QVector<unsigned int> &levels, ColorUtils::ChannelConfiguration configuration,
                   ColorUtils::HuelockProfileID profile, unsigned int alpha = 65535)
{
    TrelColor color;
    color.setNChannel16(QVector<unsigned int>{alpha} + levels, configuration, profile);
    return color;
}

/// Differs from a default colour in every field, so that whatever a setter leaves behind shows.
TrelColor usedColor()
{
    TrelColor color = nchannel({1, 2, 3, 4, 5}, ColorUtils::CONFIG_RGBAW, PROFILE, 0x8000);
    color.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    return color;
}

TrelColor yxy(double Y, double x, double y, ColorUtils::HuelockProfileID profile = GENERIC, double alpha = 1.0)
{
    TrelColor color = TrelColor::fromxyY(x, y, Y, profile);
    color.setAlphaF(alpha);
    return color;
}

TrelColor withProfile(TrelColor color, ColorUtils::HuelockProfileID profile)
{
    color.setHuelockProfileID(profile);
    return color;
}

TrelColor withRenderType(TrelColor color, TrelColor::NChannelRenderType type)
{
    color.setNChannelRenderType(type);
    return color;
}

TrelColor edited(void (*edit)(TrelColor &), TrelColor color = usedColor())
{
    edit(color);
    return color;
}

unsigned int toUnsigned(double value)
{
    return static_cast<unsigned int>(static_cast<int>(value));
}

/// A whole-colour setter (on usedColor()) or factory with the ranges of its arguments.
struct Call
{
    const char *name;
    TrelColor (*make)(const Args &v);
    const char *warning;
    bool real;
    int count; ///< arguments
    Args low;
    Args high;
};

TrelColor makeRgb16Array(const Args &v)
{
    const unsigned int rgb[] = {toUnsigned(v[0]), toUnsigned(v[1]), toUnsigned(v[2])};
    TrelColor color = usedColor();
    color.setRgb16(rgb, PROFILE);
    return color;
}

// clang-format off
#define ARGS_8 int(v[0]), int(v[1]), int(v[2]), int(v[3]), PROFILE
#define ARGS_16 toUnsigned(v[0]), toUnsigned(v[1]), toUnsigned(v[2]), toUnsigned(v[3]), PROFILE
#define ARGS_HSV16 int(v[0]), toUnsigned(v[1]), toUnsigned(v[2]), toUnsigned(v[3]), PROFILE
#define ARGS_F v[0], v[1], v[2], v[3], PROFILE
#define FACTORY(function, args) #function, [](const Args &v) { return TrelColor::function(args); }
#define SETTER(function, args) #function, [](const Args &v) { \
    TrelColor color = usedColor(); \
    color.function(args); \
    return color; \
}

// clang-format on
constexpr Args ZERO = {0, 0, 0, 0};
constexpr Args MAX_8 = {255, 255, 255, 255};
constexpr Args MAX_16 = {65535, 65535, 65535, 65535};
constexpr Args MAX_F = {1, 1, 1, 1};

// clang-format off
const Call CALLS[] = {
    {FACTORY(fromRgb8, ARGS_8), "TrelColor::fromRgb: RGB parameters out of range", false, 4, ZERO, MAX_8},
    {FACTORY(fromRgb16, ARGS_16), "TrelColor::fromRgb16: RGB parameters out of range", false, 4, ZERO, MAX_16},
    {FACTORY(fromRgbF, ARGS_F), "TrelColor::fromRgbF: RGB parameters out of range", true, 4, ZERO, MAX_F},
    {FACTORY(fromHsv8, ARGS_8), "TrelColor::fromHsv: HSV parameters out of range", false, 4, {-1, 0, 0, 0},
     {359, 255, 255, 255}},
    {FACTORY(fromHsv16, ARGS_HSV16), "TrelColor::fromHsv: HSV parameters out of range", false, 4, {-1, 0, 0, 0},
     {359, 65535, 65535, 65535}},
    {FACTORY(fromHsvF, ARGS_F), "TrelColor::fromHsvF: HSV parameters out of range", true, 4, ZERO, MAX_F},
    {"fromxyY", [](const Args &v) { return TrelColor::fromxyY(v[0], v[1], v[2], PROFILE); },
     "TrelColor::fromxyY: xyY parameters out of range", true, 3, ZERO, MAX_F},
    {SETTER(setRgb8, ARGS_8), "TrelColor::setRgb8: RGB parameters out of range", false, 4, ZERO, MAX_8},
    {SETTER(setRgb16, ARGS_16), "TrelColor::setRgb16: RGB parameters out of range", false, 4, ZERO, MAX_16},
    {"setRgb16 of an array", makeRgb16Array, "TrelColor::setRgb16: RGB parameters out of range", false, 3, ZERO,
     MAX_16},
    {SETTER(setRgbF, ARGS_F), "TrelColor::setRgbF: RGB parameters out of range", true, 4, ZERO, MAX_F},
    {SETTER(setHsv8, ARGS_8), "TrelColor::setHsv8: HSV parameters out of range", false, 4, ZERO,
     {360, 255, 255, 255}},
    {SETTER(setHsv16, ARGS_HSV16), "TrelColor::setHsv16: HSV parameters out of range", false, 4, {INT_MIN, 0, 0, 0},
     {65535, 65535, 65535, 65535}},
    {SETTER(setHsvF, ARGS_F), "TrelColor::setHsvF: HSV parameters out of range", true, 4, ZERO, MAX_F},
};
// clang-format on

const Call &callNamed(const char *name)
{
    return *std::find_if(std::begin(CALLS), std::end(CALLS), [name](const Call &c) { return !qstrcmp(c.name, name); });
}

/// A setter of alpha or of one colour component.
struct Component
{
    const char *name;
    void (*set)(TrelColor &color, double value);
    int place; ///< 0 alpha, 1 red, 2 green, 3 blue
    int bits;  ///< 8, 16, or 32 for a real
};

// clang-format off
#define COMPONENT_8(function, place) {#function, [](TrelColor &c, double v) { c.function(int(v)); }, place, 8}
#define COMPONENT_16(function, place) {#function, [](TrelColor &c, double v) { c.function(toUnsigned(v)); }, place, 16}
#define COMPONENT_F(function, place) {#function, [](TrelColor &c, double v) { c.function(v); }, place, 32}

const Component COMPONENTS[] = {
    COMPONENT_8(setAlpha8, 0),   COMPONENT_8(setRed8, 1),   COMPONENT_8(setGreen8, 2),   COMPONENT_8(setBlue8, 3),
    COMPONENT_16(setAlpha16, 0), COMPONENT_16(setRed16, 1), COMPONENT_16(setGreen16, 2), COMPONENT_16(setBlue16, 3),
    COMPONENT_F(setAlphaF, 0),   COMPONENT_F(setRedF, 1),   COMPONENT_F(setGreenF, 2),   COMPONENT_F(setBlueF, 3),
};
// clang-format on

QByteArray rgbState(const Words &argb, const char *rest)
{
    return words(stored(TrelColor::Rgb, argb)) + rest;
}

/// What is left of \a word when it is read and set again at \a bits of resolution.
quint32 requantised(quint32 word, int bits)
{
    if (bits == 8)
        return (word >> 24) * 0x01010101u;
    if (bits == 16)
        return (word >> 16) * 0x00010001u;
    return word;
}

/// Calls a getter of four pointers with every combination of null pointers; returns the first wrong one.
template <typename First, typename Other>
QByteArray wrongNullHandling(const TrelColor &color, void (TrelColor::*get)(First *, Other *, Other *, Other *) const,
                             First first, const std::array<Other, 3> &others)
{
    for (int mask = 0; mask < 16; ++mask) {
        First a = 77;
        std::array<Other, 3> b = {77, 77, 77};
        (color.*get)(mask & 1 ? &a : nullptr, mask & 2 ? &b[0] : nullptr, mask & 4 ? &b[1] : nullptr,
                     mask & 8 ? &b[2] : nullptr);
        const bool filled = (mask & 7) == 7;
        const bool right = a == (filled ? first : First(77)) && b[0] == (filled ? others[0] : Other(77))
                           && b[1] == (filled ? others[1] : Other(77))
                           && b[2] == (filled && (mask & 8) ? others[2] : Other(77));
        if (!right)
            return "arguments given: " + QByteArray::number(mask, 2);
    }
    return {};
}

/// One component of (hue, saturation, value) by the closed form that needs no sextants; \a n is 5, 3, 1 for red,
/// green, blue. In words, not rounded.
double closedForm(int n, int hue, double saturation, double value)
{
    const double k = std::fmod(n + hue / 6000.0, 6.0);
    return value - value * saturation / FULL_SCALE * std::clamp(std::min(k, 4.0 - k), 0.0, 1.0);
}

/// The 32-bit words of \a color as doubles: alpha, red, green, blue.
Args rgbWords(const TrelColor &color)
{
    const double reals[] = {color.alphaF(), color.redF(), color.greenF(), color.blueF()};
    Args result{};
    std::transform(std::begin(reals), std::end(reals), result.begin(),
                   [](double real) { return std::round(real * FULL_SCALE); });
    return result;
}

} // namespace

class tst_TrelColor : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void enumeratorsAreFixedNumbers();
    void hasNoVirtualFunctions();
    void construction_data();
    void construction();
    void chromaticityConstructorChecksNothing();
    void componentConstructorChecksLikeTheSetter();
    void copiesAreIndependent();
    void globalColors_data();
    void globalColors();
    void odd01_rgbWordIgnoresItsAlphaByte();
    void odd02_color0IsWhiteAndColor1Black();

    void wholeColors_data();
    void wholeColors();
    void ranges_data();
    void ranges();
    void nullArrayIsOutOfRange();
    void scaling8();
    void scaling16();
    void scalingF_data();
    void scalingF();
    void odd03_hueRangesDiffer();
    void odd04_realAchromaticHueHasItsOwnMark();
    void odd12_fromHsv16WarnsAsFromHsv8();

    void components_data();
    void components();
    void componentsOfOtherForms_data();
    void componentsOfOtherForms();
    void componentRanges_data();
    void componentRanges();
    void odd10_nanPassesSingleComponents();
    void odd11_singleComponentsInvalidateSilently();

    void invalidateClearsEverything();
    void storesProfileAndRenderTypeOnly_data();
    void storesProfileAndRenderTypeOnly();
    void alphaGetters_data();
    void alphaGetters();
    void rgbGetters_data();
    void rgbGetters();
    void fullRedReadsFullAtEveryResolution();
    void byteOf16BitRedIsItsHighByte();
    void achromaticGreyHasNoHue();
    void hueGetters_data();
    void hueGetters();
    void saturationAndValueGetters();
    void hsvGettersOfRgb();
    void nullArgumentsOfGetters();
    void qColor_data();
    void qColor();
    void odd07_hue16RoundsGetHsvTruncates();

    void equality_data();
    void equality();
    void odd05_invalidEqualsNothing();
    void odd06_hsvEqualityIsHueAndAlpha();
    void blackness_data();
    void blackness();
    void blackLevels();

    void hsvToRgb_data();
    void hsvToRgb();
    void yxyAndLevelsToRgb_data();
    void yxyAndLevelsToRgb();
    void toRgbAndToHsvCopyTheirOwnForm();
    void rgbToHsv_data();
    void rgbToHsv();
    void yxyAndLevelsToHsv();
    void conversionsKeepAlphaAndProfile();
    void odd08_rgbIsRenderedForTheGenericProfile();
    void sweepHsvToRgbAgainstClosedForm();
    void sweepHsvToRgbAgainstQColor();
    void sweepRgbToHsvAgainstQColor_data();
    void sweepRgbToHsvAgainstQColor();
    void sweepRgbThroughHsvAndBack();

    void premultiply_data();
    void premultiply();
    void unpremultiply_data();
    void unpremultiply();
    void unpremultiplyWithoutAlphaIsACopy_data();
    void unpremultiplyWithoutAlphaIsACopy();
    void unpremultiplyOutOfRange();
    void odd09_premultiplyScalesChromaticity();
};

// ---- construction

void tst_TrelColor::enumeratorsAreFixedNumbers()
{
    QCOMPARE(int(TrelColor::Invalid), 0);
    QCOMPARE(int(TrelColor::Rgb), 1);
    QCOMPARE(int(TrelColor::Hsv), 2);
    QCOMPARE(int(TrelColor::Yxy), 3);
    QCOMPARE(int(TrelColor::Nchannel), 4);
    QCOMPARE(int(TrelColor::NChannelRenderRgb), 0);
    QCOMPARE(int(TrelColor::NChannelRenderYxy), 1);
    QCOMPARE(int(TrelColor().getNChannelRenderType()), 0);
}

void tst_TrelColor::hasNoVirtualFunctions()
{
    QVERIFY(!std::is_polymorphic_v<TrelColor>);
}

void tst_TrelColor::construction_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<QByteArray>("expected");
    const QColor custom(0x12, 0x34, 0x56, 0x78);
    const struct
    {
        const char *name;
        TrelColor color;
        QByteArray expected;
    } rows[] = {
        {"default", TrelColor(), BLANK},
        {"rgb word", TrelColor(0x00123456u), "01 ffffffff 12121212 34343434 56565656 config 1 profile 0"},
        {"rgb word 0", TrelColor(0u), "01 ffffffff 00000000 00000000 00000000 config 1 profile 0"},
        {"QColor", TrelColor(custom), "01 78787878 12121212 34343434 56565656 config 1 profile 0"},
        {"QColor in HSV", TrelColor(QColor::fromHsv(120, 255, 255, 7)),
         "01 07070707 00000000 ffffffff 00000000 config 1 profile 0"},
        {"invalid QColor", TrelColor(QColor()), "01 ffffffff 00000000 00000000 00000000 config 1 profile 0"},
        {"16-bit components", TrelColor(0x1234u, 0x5678u, 0x9abcu, 0xdef0u),
         "01 def0def0 12341234 56785678 9abc9abc config 1 profile 0"},
        {"QString", TrelColor(QString("#80123456")), "01 80808080 12121212 34343434 56565656 config 1 profile 0"},
        {"const char *", TrelColor("#80123456"), "01 80808080 12121212 34343434 56565656 config 1 profile 0"},
        {"assigned QColor", edited([](TrelColor &c) { c = QColor(1, 2, 3, 4); }),
         "01 04040404 01010101 02020202 03030303 config 1 profile 0"},
        {"assigned global colour", edited([](TrelColor &c) { c = Qt::darkCyan; }),
         "01 ffffffff 00000000 80808080 80808080 config 1 profile 0"},
        {"setQColor", edited([](TrelColor &c) { c.setQColor(QColor(1, 2, 3, 4)); }),
         "01 04040404 01010101 02020202 03030303 config 1 profile 0"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.color << row.expected;
}

void tst_TrelColor::construction()
{
    QFETCH(TrelColor, color);
    QFETCH(QByteArray, expected);
    QCOMPARE(state(color), expected);
    QCOMPARE(state(TrelColor(color)), expected);
    TrelColor assigned = usedColor();
    assigned = color;
    QCOMPARE(state(assigned), expected);
    QCOMPARE(color.isValid(), expected != BLANK);
}

void tst_TrelColor::chromaticityConstructorChecksNothing()
{
    const TrelColor color(-5.0, 7.0);
    QCOMPARE(color.spec(), TrelColor::Yxy);
    QCOMPARE(color.getY(), 1.0);
    QCOMPARE(color.getx(), -5.0);
    QCOMPARE(color.gety(), 7.0);
    QCOMPARE(color.alpha16(), 65535u);
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGB);
    QCOMPARE(color.getHuelockProfileID(), GENERIC);
}

void tst_TrelColor::componentConstructorChecksLikeTheSetter()
{
    expectWarning("TrelColor::setRgb16: RGB parameters out of range");
    QCOMPARE(state(TrelColor(0u, 0u, 65536u, 0u)), BLANK);
}

void tst_TrelColor::copiesAreIndependent()
{
    const TrelColor original = usedColor();
    TrelColor copy = original;
    QCOMPARE(state(copy), state(original));
    QVERIFY(copy == original);
    copy.invalidate();
    QCOMPARE(state(original), state(usedColor()));
    copy = original;
    copy.setNChannel16({65535, 9}, ColorUtils::CONFIG_SINGLE_CHANNEL, GENERIC);
    QCOMPARE(state(original), state(usedColor()));
}

void tst_TrelColor::globalColors_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<quint32>("argb");
    const struct
    {
        const char *name;
        quint32 argb;
    } rows[] = {
        {"color0", 0xFFFFFFFF},   {"color1", 0xFF000000},      {"black", 0xFF000000},      {"white", 0xFFFFFFFF},
        {"darkGray", 0xFF808080}, {"gray", 0xFFA0A0A4},        {"lightGray", 0xFFC0C0C0},  {"red", 0xFFFF0000},
        {"green", 0xFF00FF00},    {"blue", 0xFF0000FF},        {"cyan", 0xFF00FFFF},       {"magenta", 0xFFFF00FF},
        {"yellow", 0xFFFFFF00},   {"darkRed", 0xFF800000},     {"darkGreen", 0xFF008000},  {"darkBlue", 0xFF000080},
        {"darkCyan", 0xFF008080}, {"darkMagenta", 0xFF800080}, {"darkYellow", 0xFF808000}, {"transparent", 0x00000000},
    };
    int index = 0;
    for (const auto &row : rows)
        QTest::newRow(row.name) << index++ << row.argb;
}

void tst_TrelColor::globalColors()
{
    QFETCH(int, index);
    QFETCH(quint32, argb);
    const auto global = Qt::GlobalColor(index);
    const QByteArray expected = rgbState({(argb >> 24) * 0x01010101u, (argb >> 16 & 0xFF) * 0x01010101u,
                                          (argb >> 8 & 0xFF) * 0x01010101u, (argb & 0xFF) * 0x01010101u},
                                         " config 1 profile 0");
    QCOMPARE(state(TrelColor(global)), expected);
    QCOMPARE(TrelColor(global).rgba(), argb);
    TrelColor assigned = usedColor();
    assigned = global;
    QCOMPARE(state(assigned), expected);
}

void tst_TrelColor::odd01_rgbWordIgnoresItsAlphaByte()
{
    QCOMPARE(words(TrelColor(0x80FF0000u)), QByteArray("01 ffffffff ffffffff 00000000 00000000"));
    QCOMPARE(TrelColor::fromRgba(0x80FF0000u).alpha8(), 128);
}

void tst_TrelColor::odd02_color0IsWhiteAndColor1Black()
{
    QCOMPARE(TrelColor(Qt::color0).rgba(), 0xFFFFFFFFu);
    QCOMPARE(TrelColor(Qt::color1).rgba(), 0xFF000000u);
}

// ---- whole-colour setters and factories

void tst_TrelColor::wholeColors_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<QByteArray>("expected");
    const struct
    {
        const char *name;
        TrelColor color;
        const char *expected;
    } rows[] = {
        {"fromRgb8", TrelColor::fromRgb8(0x12, 0x34, 0x56, 0x78, PROFILE),
         "01 78787878 12121212 34343434 56565656 config 1 profile 7"},
        {"fromRgb16", TrelColor::fromRgb16(0x1234, 0x5678, 0x9abc, 0xdef0, PROFILE),
         "01 def0def0 12341234 56785678 9abc9abc config 1 profile 7"},
        {"fromRgbF", TrelColor::fromRgbF(0.5, 0.25, 1.0 / 3.0, 0.0, PROFILE),
         "01 00000000 80000000 40000000 55555555 config 1 profile 7"},
        {"fromRgba(0x80FF0000) has alpha 128", TrelColor::fromRgba(0x80FF0000u),
         "01 80808080 ffffffff 00000000 00000000 config 1 profile 0"},
        {"fromRgba", TrelColor::fromRgba(0x12345678u), "01 12121212 34343434 56565656 78787878 config 1 profile 0"},
        {"fromRgb is opaque", TrelColor::fromRgb(0x12345678u),
         "01 ffffffff 34343434 56565656 78787878 config 1 profile 0"},
        {"fromHsv8", TrelColor::fromHsv8(359, 1, 2, 3, PROFILE),
         "02 03030303 00008c3c 01010101 02020202 config 1 profile 7"},
        {"fromHsv8 achromatic", TrelColor::fromHsv8(-1, 0, 128, 255, GENERIC),
         "02 ffffffff ffffffff 00000000 80808080 config 1 profile 0"},
        {"fromHsv16", TrelColor::fromHsv16(10, 0x1234, 0x5678, 0x9abc, PROFILE),
         "02 9abc9abc 000003e8 12341234 56785678 config 1 profile 7"},
        {"fromHsv16 achromatic", TrelColor::fromHsv16(-1, 1, 2, 3, PROFILE),
         "02 00030003 ffffffff 00010001 00020002 config 1 profile 7"},
        {"fromHsvF", TrelColor::fromHsvF(0.5, 0.25, 1.0 / 3.0, 0.0, PROFILE),
         "02 00000000 00004650 40000000 55555555 config 1 profile 7"},
        {"fromHsvF full turn", TrelColor::fromHsvF(1.0, 1.0, 0.0, 1.0, PROFILE),
         "02 ffffffff 00008ca0 ffffffff 00000000 config 1 profile 7"},
        {"fromHsvF hue 0.49 hundredths", TrelColor::fromHsvF(0.49 / 36000.0, 0.0, 0.0, 1.0, PROFILE),
         "02 ffffffff 00000000 00000000 00000000 config 1 profile 7"},
        {"fromHsvF hue 0.51 hundredths", TrelColor::fromHsvF(0.51 / 36000.0, 0.0, 0.0, 1.0, PROFILE),
         "02 ffffffff 00000001 00000000 00000000 config 1 profile 7"},
        {"fromHsvF(-1.0)", TrelColor::fromHsvF(-1.0, 0.0, 0.5, 1.0, GENERIC),
         "02 ffffffff 7fffffff 00000000 80000000 config 1 profile 0"},
        {"setRgb8", edited([](TrelColor &c) { c.setRgb8(0x12, 0x34, 0x56, 0x78, GENERIC); }),
         "01 78787878 12121212 34343434 56565656 config 1 profile 0"},
        {"setRgb8 red", edited([](TrelColor &c) { c.setRgb8(255, 0, 0, 255, GENERIC); }),
         "01 ffffffff ffffffff 00000000 00000000 config 1 profile 0"},
        {"setRgb16", edited([](TrelColor &c) { c.setRgb16(0x1234, 0x5678, 0x9abc, 0xdef0, PROFILE); }),
         "01 def0def0 12341234 56785678 9abc9abc config 1 profile 7"},
        {"setRgb16 of an array", makeRgb16Array({0x1234, 0x5678, 0x9abc, 0}),
         "01 ffffffff 12341234 56785678 9abc9abc config 1 profile 7"},
        {"setRgbF", edited([](TrelColor &c) { c.setRgbF(0.5, 0.25, 1.0 / 3.0, 0.0, PROFILE); }),
         "01 00000000 80000000 40000000 55555555 config 1 profile 7"},
        {"setHsv8", edited([](TrelColor &c) { c.setHsv8(359, 1, 2, 3, PROFILE); }),
         "02 03030303 00008c3c 01010101 02020202 config 1 profile 7"},
        {"setHsv8(360) stores hue 0", edited([](TrelColor &c) { c.setHsv8(360, 1, 2, 3, PROFILE); }),
         "02 03030303 00000000 01010101 02020202 config 1 profile 7"},
        {"setHsv16", edited([](TrelColor &c) { c.setHsv16(10, 0x1234, 0x5678, 0x9abc, PROFILE); }),
         "02 9abc9abc 000003e8 12341234 56785678 config 1 profile 7"},
        {"setHsv16(65535) is 15 degrees", edited([](TrelColor &c) { c.setHsv16(65535, 1, 2, 3, PROFILE); }),
         "02 00030003 000005dc 00010001 00020002 config 1 profile 7"},
        {"setHsv16 achromatic", edited([](TrelColor &c) { c.setHsv16(-1, 1, 2, 3, PROFILE); }),
         "02 00030003 ffffffff 00010001 00020002 config 1 profile 7"},
        {"setHsv16(-2) stays negative", edited([](TrelColor &c) { c.setHsv16(-2, 1, 2, 3, PROFILE); }),
         "02 00030003 ffffff38 00010001 00020002 config 1 profile 7"},
        {"setHsv16(-360) is 0", edited([](TrelColor &c) { c.setHsv16(-360, 1, 2, 3, PROFILE); }),
         "02 00030003 00000000 00010001 00020002 config 1 profile 7"},
        {"setHsv16(-361) is -1.00 degrees", edited([](TrelColor &c) { c.setHsv16(-361, 1, 2, 3, PROFILE); }),
         "02 00030003 ffffff9c 00010001 00020002 config 1 profile 7"},
        {"setHsv16(INT_MIN) is -128 degrees", edited([](TrelColor &c) { c.setHsv16(INT_MIN, 1, 2, 3, PROFILE); }),
         "02 00030003 ffffce00 00010001 00020002 config 1 profile 7"},
        {"setHsvF", edited([](TrelColor &c) { c.setHsvF(0.5, 0.25, 1.0 / 3.0, 0.0, PROFILE); }),
         "02 00000000 00004650 40000000 55555555 config 1 profile 7"},
        {"setHsvF full turn", edited([](TrelColor &c) { c.setHsvF(1.0, 1.0, 0.0, 1.0, PROFILE); }),
         "02 ffffffff 00008ca0 ffffffff 00000000 config 1 profile 7"},
        {"setHsvF(-1.0)", edited([](TrelColor &c) { c.setHsvF(-1.0, 0.0, 0.5, 1.0, PROFILE); }),
         "02 ffffffff 7fffffff 00000000 80000000 config 1 profile 7"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.color << QByteArray(row.expected);

    const TrelColor chromaticity = TrelColor::fromxyY(0.25, 0.5, 0.75, PROFILE);
    QTest::newRow("fromxyY") << chromaticity << words(chromaticity) + " config 1 profile 7 Yxy 0.75 0.25 0.5";
}

void tst_TrelColor::wholeColors()
{
    QFETCH(TrelColor, color);
    QFETCH(QByteArray, expected);
    QCOMPARE(state(color), expected);
}

void tst_TrelColor::ranges_data()
{
    QTest::addColumn<int>("call");
    QTest::addColumn<int>("argument");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("accepted");
    for (int i = 0; i < int(std::size(CALLS)); ++i) {
        const Call &call = CALLS[i];
        for (int a = 0; a < call.count; ++a) {
            const auto add = [&](const char *what, double value, bool accepted) {
                QTest::addRow("%s argument %d %s", call.name, a, what) << i << a << value << accepted;
            };
            const double low = call.low[size_t(a)];
            const double high = call.high[size_t(a)];
            add("lowest", low, true);
            add("highest", high, true);
            add("above", call.real ? ABOVE_ONE : high + 1, false);
            if (low > INT_MIN)
                add("below", call.real ? -TINY : low - 1, false);
            if (!call.real)
                continue;
            add("NaN", NOT_A_NUMBER, false);
            add("infinite", INFINITE, false);
            add("negative infinite", -INFINITE, false);
        }
    }
}

void tst_TrelColor::ranges()
{
    QFETCH(int, call);
    QFETCH(int, argument);
    QFETCH(double, value);
    QFETCH(bool, accepted);
    Args arguments = CALLS[call].real ? Args{0.5, 0.25, 0.125, 0.75} : Args{10, 20, 30, 40};
    arguments[size_t(argument)] = value;
    if (!accepted)
        expectWarning(CALLS[call].warning);
    const TrelColor color = CALLS[call].make(arguments);
    QCOMPARE(color.isValid(), accepted);
    if (!accepted)
        QCOMPARE(state(color), BLANK);
    else
        QCOMPARE(color.getHuelockProfileID(), PROFILE);
}

void tst_TrelColor::nullArrayIsOutOfRange()
{
    TrelColor color = usedColor();
    expectWarning("TrelColor::setRgb16: RGB parameters out of range");
    color.setRgb16(nullptr, PROFILE);
    QCOMPARE(state(color), BLANK);
}

void tst_TrelColor::scaling8()
{
    for (int v = 0; v < 256; ++v) {
        const int other = 255 - v;
        const TrelColor color = TrelColor::fromRgb8(v, other, v, other, GENERIC);
        const quint32 word = quint32(v) * 0x01010101u;
        QCOMPARE(words(color), words(stored(TrelColor::Rgb, {~word, word, ~word, word})));
        QCOMPARE(color.red8(), v);
        QCOMPARE(color.green8(), other);
        QCOMPARE(color.blue8(), v);
        QCOMPARE(color.alpha8(), other);
    }
}

void tst_TrelColor::scaling16()
{
    for (unsigned int v = 0; v < 65536; ++v) {
        const unsigned int other = 65535 - v;
        const TrelColor color = TrelColor::fromRgb16(v, other, v, other, GENERIC);
        if (color.red16() != v || color.green16() != other || color.blue16() != v || color.alpha16() != other)
            QFAIL(qPrintable(QString("%1 is not read as it was set").arg(v)));
        // An exact quotient: the word is v repeated, nothing else gives this double.
        if (color.redF() != v * 65537.0 / FULL_SCALE || color.alphaF() != other * 65537.0 / FULL_SCALE)
            QFAIL(qPrintable(QString("%1 is not stored as v * 0x10001").arg(v)));
    }
}

void tst_TrelColor::scalingF_data()
{
    QTest::addColumn<double>("real");
    QTest::addColumn<quint32>("word");
    QTest::newRow("0") << 0.0 << 0u;
    QTest::newRow("-0") << -0.0 << 0u;
    QTest::newRow("smallest") << TINY << 0u;
    QTest::newRow("0.49 words") << 0.49 / FULL_SCALE << 0u;
    QTest::newRow("0.51 words") << 0.51 / FULL_SCALE << 1u;
    QTest::newRow("a tenth") << 0.1 << 0x1999999Au;
    QTest::newRow("a quarter") << 0.25 << 0x40000000u;
    QTest::newRow("a third") << 1.0 / 3.0 << 0x55555555u;
    QTest::newRow("a half, rounded up") << 0.5 << 0x80000000u;
    QTest::newRow("last but 0.6 words") << 1.0 - 0.6 / FULL_SCALE << 0xFFFFFFFEu;
    QTest::newRow("last but 0.4 words") << 1.0 - 0.4 / FULL_SCALE << 0xFFFFFFFFu;
    QTest::newRow("1") << 1.0 << 0xFFFFFFFFu;
}

void tst_TrelColor::scalingF()
{
    QFETCH(double, real);
    QFETCH(quint32, word);
    const TrelColor color = TrelColor::fromRgbF(real, real, real, real, GENERIC);
    QCOMPARE(words(color), words(stored(TrelColor::Rgb, {word, word, word, word})));
    QVERIFY(color.redF() == word / FULL_SCALE);
    QVERIFY(color.greenF() == word / FULL_SCALE);
    QVERIFY(color.blueF() == word / FULL_SCALE);
    QVERIFY(color.alphaF() == word / FULL_SCALE);
}

void tst_TrelColor::odd03_hueRangesDiffer()
{
    const struct
    {
        const char *name;
        QVector<double> accepted, refused;
    } rows[] = {
        {"fromHsv8", {-1, 0, 359}, {INT_MIN, -2, 360, 65535}},
        {"fromHsv16", {-1, 0, 359}, {INT_MIN, -2, 360, 65535}},
        {"setHsv8", {0, 359, 360}, {INT_MIN, -2, -1, 361, 65535}},
        {"setHsv16", {INT_MIN, -361, -2, -1, 0, 359, 360, 361, 65535}, {65536, INT_MAX}},
    };
    for (const auto &row : rows) {
        const Call &call = callNamed(row.name);
        for (const double hue : row.accepted)
            QVERIFY2(call.make({hue, 1, 2, 3}).isValid(), row.name);
        for (const double hue : row.refused) {
            expectWarning(call.warning);
            QVERIFY2(!call.make({hue, 1, 2, 3}).isValid(), row.name);
        }
    }
    QCOMPARE(edited([](TrelColor &c) { c.setHsv16(-10, 1, 2, 3, GENERIC); }).hue16(), -10);
}

void tst_TrelColor::odd04_realAchromaticHueHasItsOwnMark()
{
    const TrelColor grey = TrelColor::fromHsvF(-1.0, 0.0, 0.5, 1.0, GENERIC);
    QVERIFY(grey.hueF() == 2147483647 / 36000.0);
    QCOMPARE(words(grey.toRgb16(true)), QByteArray("01 ffffffff 80000000 80000000 80000000"));
    const TrelColor saturated = TrelColor::fromHsvF(-1.0, 0.5, 0.5, 1.0, GENERIC);
    QCOMPARE(words(saturated.toRgb16(true)), QByteArray("01 ffffffff 00000000 00000000 00000000"));
    QCOMPARE(words(edited([](TrelColor &c) { c.setHsvF(-1.0, 0.5, 0.5, 1.0, GENERIC); })), words(saturated));

    for (const double hue : {-0.5, std::nextafter(-1.0, 0.0), std::nextafter(-1.0, -2.0), -2.0}) {
        expectWarning("TrelColor::fromHsvF: HSV parameters out of range");
        QCOMPARE(state(TrelColor::fromHsvF(hue, 0.0, 0.5, 1.0, GENERIC)), BLANK);
        expectWarning("TrelColor::setHsvF: HSV parameters out of range");
        TrelColor color = usedColor();
        color.setHsvF(hue, 0.0, 0.5, 1.0, GENERIC);
        QCOMPARE(state(color), BLANK);
    }
}

void tst_TrelColor::odd12_fromHsv16WarnsAsFromHsv8()
{
    expectWarning("TrelColor::fromHsv: HSV parameters out of range");
    QVERIFY(!TrelColor::fromHsv8(360, 0, 0, 0, GENERIC).isValid());
    expectWarning("TrelColor::fromHsv: HSV parameters out of range");
    QVERIFY(!TrelColor::fromHsv16(360, 0, 0, 0, GENERIC).isValid());
}

// ---- alpha and single components

void tst_TrelColor::components_data()
{
    QTest::addColumn<int>("component");
    QTest::addColumn<QByteArray>("form");
    for (int i = 0; i < int(std::size(COMPONENTS)); ++i)
        QTest::addRow("%s of RGB", COMPONENTS[i].name) << i << QByteArray("01");
    for (const char *form : {"00", "02", "03", "04"}) {
        for (const int i : {0, 4, 8})
            QTest::addRow("%s of form %s", COMPONENTS[i].name, form) << i << QByteArray(form);
    }
}

void tst_TrelColor::components()
{
    QFETCH(int, component);
    QFETCH(QByteArray, form);
    const Component &c = COMPONENTS[component];
    const QByteArray values[] = {"12345678", "9abcdef0", "13579bdf", "2468ace0"};
    const auto text = [&](const QByteArray &changed) {
        QByteArray result = form;
        for (int place = 0; place < 4; ++place)
            result += ' ' + (place == c.place ? changed : values[place]);
        return result;
    };
    const double value = c.bits == 8 ? 0x42 : c.bits == 16 ? 0x4243 : 0.25;
    const char *const word = c.bits == 8 ? "42424242" : c.bits == 16 ? "42434243" : "40000000";
    TrelColor color = stored(text(values[c.place]), usedColor());
    const TrelColor expected = stored(text(word), usedColor());
    c.set(color, value);
    QCOMPARE(state(color), state(expected));
}

void tst_TrelColor::componentsOfOtherForms_data()
{
    QTest::addColumn<int>("component");
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<quint32>("red");
    QTest::addColumn<quint32>("green");
    QTest::addColumn<quint32>("blue");
    const auto withAlpha = [](TrelColor color) {
        color.setAlphaF(0x12345678 / FULL_SCALE);
        return color;
    };
    const struct
    {
        const char *name;
        TrelColor color;
        Words rgb; ///< element 0 unused
    } sources[] = {
        {"Invalid", stored("00 12345678 11223344 55667788 99aabbcc"), {0, 0x11223344, 0x55667788, 0x99aabbcc}},
        {"HSV", stored("02 12345678 00002ee0 ffffffff ffffffff", usedColor()), {0, 0, 0xffffffff, 0}},
        {"Yxy", withAlpha(yxy(0.8, 0.5, 0.4, PROFILE)), {0, 0xcccccccc, 0x39d239d2, 0x0b240b24}},
        {"levels",
         withAlpha(nchannel({10000, 20000, 30000, 40000}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW)),
         {0, 0x4f804f80, 0x2f0b2f0b, 0x9c409c40}},
    };
    for (const auto &source : sources) {
        for (int i = 0; i < int(std::size(COMPONENTS)); ++i) {
            if (COMPONENTS[i].place > 0)
                QTest::addRow("%s on %s", COMPONENTS[i].name, source.name)
                    << i << source.color << source.rgb[1] << source.rgb[2] << source.rgb[3];
        }
    }
}

void tst_TrelColor::componentsOfOtherForms()
{
    QFETCH(int, component);
    QFETCH(TrelColor, color);
    QFETCH(quint32, red);
    QFETCH(quint32, green);
    QFETCH(quint32, blue);
    const Component &c = COMPONENTS[component];
    const QByteArray profile = QByteArray::number(int(color.getHuelockProfileID()));
    Words expected = {0x12345678, red, green, blue};
    for (quint32 &word : expected)
        word = requantised(word, c.bits);
    expected[size_t(c.place)] = c.bits == 8 ? 0x0A0A0A0A : c.bits == 16 ? 0x42434243 : 0x40000000;
    c.set(color, c.bits == 8 ? 10 : c.bits == 16 ? 0x4243 : 0.25);
    QCOMPARE(state(color), rgbState(expected, " config 1 profile ") + profile);
}

void tst_TrelColor::componentRanges_data()
{
    QTest::addColumn<int>("component");
    QTest::addColumn<double>("value");
    QTest::addColumn<bool>("accepted");
    for (int i = 0; i < int(std::size(COMPONENTS)); ++i) {
        const Component &c = COMPONENTS[i];
        const bool real = c.bits == 32;
        const double high = c.bits == 8 ? 255 : c.bits == 16 ? 65535 : 1;
        QTest::addRow("%s lowest", c.name) << i << 0.0 << true;
        QTest::addRow("%s highest", c.name) << i << high << true;
        QTest::addRow("%s below", c.name) << i << (real ? -TINY : -1) << false;
        QTest::addRow("%s above", c.name) << i << (real ? ABOVE_ONE : high + 1) << false;
        QTest::addRow("%s far below", c.name) << i << (real ? -INFINITE : INT_MIN) << false;
        QTest::addRow("%s far above", c.name) << i << (real ? INFINITE : INT_MAX) << false;
    }
}

void tst_TrelColor::componentRanges()
{
    QFETCH(int, component);
    QFETCH(double, value);
    QFETCH(bool, accepted);
    const bool warns = qstrcmp(COMPONENTS[component].name, "setAlpha8") == 0;
    for (TrelColor color : {stored("01 12345678 9abcdef0 13579bdf 2468ace0", usedColor()), usedColor(), TrelColor()}) {
        const bool staysInvalid = COMPONENTS[component].place == 0 && !color.isValid();
        if (!accepted && warns)
            expectWarning("TrelColor::setAlpha8: alpha parameter out of range");
        COMPONENTS[component].set(color, value);
        QCOMPARE(color.isValid(), accepted && !staysInvalid);
        if (!accepted)
            QCOMPARE(state(color), BLANK);
    }
}

void tst_TrelColor::odd10_nanPassesSingleComponents()
{
    for (const Component &c : COMPONENTS) {
        if (c.bits != 32)
            continue;
        TrelColor color = stored("01 ffffffff ffffffff ffffffff ffffffff");
        c.set(color, NOT_A_NUMBER);
        Words expected = {0xffffffff, 0xffffffff, 0xffffffff, 0xffffffff};
        expected[size_t(c.place)] = 0;
        QCOMPARE(words(color), words(stored(TrelColor::Rgb, expected)));
    }
    // A colour in another form goes on to the whole-colour setter, where NaN is out of range.
    TrelColor color = TrelColor::fromHsv8(120, 255, 255, 255, PROFILE);
    expectWarning("TrelColor::setRgbF: RGB parameters out of range");
    color.setRedF(NOT_A_NUMBER);
    QCOMPARE(state(color), BLANK);
}

void tst_TrelColor::odd11_singleComponentsInvalidateSilently()
{
    TrelColor color = TrelColor::fromRgb8(1, 2, 3, 4, PROFILE);
    color.setRed8(300);
    QCOMPARE(state(color), BLANK);

    color = TrelColor::fromRgb8(1, 2, 3, 4, PROFILE);
    expectWarning("TrelColor::setAlpha8: alpha parameter out of range");
    color.setAlpha8(300);
    QCOMPARE(state(color), BLANK);
}

// ---- getters

void tst_TrelColor::invalidateClearsEverything()
{
    TrelColor levels = usedColor();
    levels.invalidate();
    QCOMPARE(state(levels), BLANK);
    TrelColor chromaticity = yxy(0.5, 0.3, 0.4, PROFILE, 0.5);
    chromaticity.invalidate();
    QCOMPARE(state(chromaticity), BLANK);
}

void tst_TrelColor::storesProfileAndRenderTypeOnly_data()
{
    QTest::addColumn<QByteArray>("form");
    for (const char *form : {"00", "01", "02", "03", "04"})
        QTest::newRow(form) << QByteArray(form);
}

void tst_TrelColor::storesProfileAndRenderTypeOnly()
{
    QFETCH(QByteArray, form);
    const TrelColor source = stored(form + " 12345678 9abcdef0 13579bdf 2468ace0", usedColor());

    TrelColor color = source;
    color.setHuelockProfileID(ColorUtils::HuelockProfileID(-1));
    QCOMPARE(color.getHuelockProfileID(), TrelColor::OWN_PROFILE);
    color.setHuelockProfileID(source.getHuelockProfileID());
    QCOMPARE(state(color), state(source));

    color.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    QCOMPARE(int(color.getNChannelRenderType()), 1);
    QCOMPARE(state(color), state(stored(form + " 12345678 00000001 13579bdf 2468ace0", usedColor())));
}

void tst_TrelColor::alphaGetters_data()
{
    QTest::addColumn<TrelColor>("color");
    for (const char *form : {"00", "01", "02", "03", "04"})
        QTest::addRow("form %s", form) << stored(QByteArray(form) + " 12345678 00000000 00000000 00000000");
}

void tst_TrelColor::alphaGetters()
{
    QFETCH(TrelColor, color);
    QCOMPARE(color.alpha8(), 0x12);
    QCOMPARE(color.alpha16(), 0x1234u);
    QVERIFY(color.alphaF() == 0x12345678 / FULL_SCALE);
}

void tst_TrelColor::rgbGetters_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<quint32>("red");
    QTest::addColumn<quint32>("green");
    QTest::addColumn<quint32>("blue");
    const quint32 r = 0x9abcdef0, g = 0x00ffffff, b = 0xff000000;
    QTest::newRow("Invalid") << stored("00 12345678 9abcdef0 00ffffff ff000000") << r << g << b;
    QTest::newRow("RGB") << stored("01 12345678 9abcdef0 00ffffff ff000000") << r << g << b;
    QTest::newRow("HSV") << stored("02 12345678 00002ee0 ffffffff ffffffff") << 0u << 0xffffffffu << 0u;
    QTest::newRow("Yxy outside the gamut is clamped")
        << yxy(0.75, 0.2, 0.45, GENERIC, 0x12345678 / FULL_SCALE) << 0u << 0xbfffbfffu << 0x53d853d8u;
}

void tst_TrelColor::rgbGetters()
{
    QFETCH(TrelColor, color);
    QFETCH(quint32, red);
    QFETCH(quint32, green);
    QFETCH(quint32, blue);
    QCOMPARE(color.red8(), int(red >> 24));
    QCOMPARE(color.green8(), int(green >> 24));
    QCOMPARE(color.blue8(), int(blue >> 24));
    QCOMPARE(color.red16(), red >> 16);
    QCOMPARE(color.green16(), green >> 16);
    QCOMPARE(color.blue16(), blue >> 16);
    QVERIFY(color.redF() == red / FULL_SCALE);
    QVERIFY(color.greenF() == green / FULL_SCALE);
    QVERIFY(color.blueF() == blue / FULL_SCALE);

    Words shorts{};
    color.getRgb16(&shorts[1], &shorts[2], &shorts[3], &shorts[0]);
    QVERIFY((shorts == Words{0x1234, red >> 16, green >> 16, blue >> 16}));
    Args reals{};
    color.getRgbF(&reals[1], &reals[2], &reals[3], &reals[0]);
    QVERIFY((reals == Args{0x12345678 / FULL_SCALE, red / FULL_SCALE, green / FULL_SCALE, blue / FULL_SCALE}));

    const quint32 rgb = (red >> 24) << 16 | (green >> 24) << 8 | blue >> 24;
    QCOMPARE(color.rgba(), 0x12000000u | rgb);
    QCOMPARE(TrelColor::toRgb(color), 0x12000000u | rgb);
    QCOMPARE(color.rgb(), 0xFF000000u | rgb);
}

void tst_TrelColor::fullRedReadsFullAtEveryResolution()
{
    const TrelColor color = edited([](TrelColor &c) { c.setRgb8(255, 0, 0, 255, GENERIC); });
    QCOMPARE(color.red8(), 255);
    QCOMPARE(color.red16(), 65535u);
    QVERIFY(color.redF() == 1.0);
}

void tst_TrelColor::byteOf16BitRedIsItsHighByte()
{
    QCOMPARE(edited([](TrelColor &c) { c.setRgb16(0x1234, 0, 0, 65535, GENERIC); }).red8(), 0x12);
    QCOMPARE(edited([](TrelColor &c) { c.setRgb16(0x12FF, 0, 0, 65535, GENERIC); }).red8(), 0x12);
}

void tst_TrelColor::achromaticGreyHasNoHue()
{
    const TrelColor grey = TrelColor::fromHsv8(-1, 0, 128, 255, GENERIC);
    QCOMPARE(grey.hue8(), -1);
    QCOMPARE(grey.hue16(), -1);
    QVERIFY(grey.hueF() == -1.0);
    QCOMPARE(grey.rgba(), 0xFF808080u);
}

void tst_TrelColor::hueGetters_data()
{
    QTest::addColumn<int>("hue");
    QTest::addColumn<int>("rounded");
    QTest::addColumn<int>("truncated");
    const struct
    {
        const char *name;
        int hue, rounded, truncated;
    } rows[] = {
        {"0", 0, 0, 0},
        {"0.49 degrees", 49, 0, 0},
        {"0.5 degrees", 50, 1, 0},
        {"1.49 degrees", 149, 1, 1},
        {"1.5 degrees", 150, 2, 1},
        {"359.49 degrees", 35949, 359, 359},
        {"359.5 degrees", 35950, 359, 359},
        {"359.9 degrees", 35990, 359, 359},
        {"a full turn", 36000, 359, 360},
        {"real achromatic", 0x7FFFFFFF, 359, 21474836},
        {"-0.49 degrees", -49, 0, 0},
        {"-0.51 degrees", -51, -1, 0},
        {"-1.5 degrees", -150, -2, -1},
        {"-2 degrees", -200, -2, -2},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.hue << row.rounded << row.truncated;
    QTest::newRow("achromatic") << -1 << -1 << -1;
}

void tst_TrelColor::hueGetters()
{
    QFETCH(int, hue);
    QFETCH(int, rounded);
    QFETCH(int, truncated);
    const double real = hue == -1 ? -1.0 : hue / 36000.0;
    for (const int spec : {int(TrelColor::Invalid), int(TrelColor::Hsv)}) {
        const TrelColor color = stored(spec, {0xffffffff, static_cast<quint32>(hue), 0xffffffff, 0xffffffff});
        QCOMPARE(color.hue8(), rounded);
        QCOMPARE(color.hue16(), rounded);
        QVERIFY(color.hueF() == real);
        int whole = 77;
        unsigned int s = 0, v = 0;
        color.getHsv16(&whole, &s, &v, nullptr);
        QCOMPARE(whole, truncated);
        double h = 77, sF = 0, vF = 0;
        color.getHsvF(&h, &sF, &vF, nullptr);
        QVERIFY(h == real);
    }
}

void tst_TrelColor::saturationAndValueGetters()
{
    for (const char *form : {"00", "02"}) {
        const TrelColor color = stored(QByteArray(form) + " 12345678 00000000 9abcdef0 00ffffff");
        QCOMPARE(color.saturation8(), 0x9a);
        QCOMPARE(color.saturation16(), 0x9abcu);
        QVERIFY(color.saturationF() == 0x9abcdef0 / FULL_SCALE);
        QCOMPARE(color.value8(), 0);
        QCOMPARE(color.value16(), 0x00ffu);
        QVERIFY(color.valueF() == 0x00ffffff / FULL_SCALE);
    }
}

void tst_TrelColor::hsvGettersOfRgb()
{
    // 240 degrees, half saturated: green = red = blue / 2, up to the word that halving 0xFFFFFFFF leaves over.
    const TrelColor color = stored("01 12345678 80000000 80000000 ffffffff");
    QCOMPARE(color.hue8(), 240);
    QCOMPARE(color.hue16(), 240);
    QVERIFY(color.hueF() == 24000 / 36000.0);
    QCOMPARE(color.saturation8(), 0x7f);
    QCOMPARE(color.saturation16(), 0x7fffu);
    QVERIFY(color.saturationF() == 0x7fffffff / FULL_SCALE);
    QCOMPARE(color.value8(), 0xff);
    QCOMPARE(color.value16(), 0xffffu);
    QVERIFY(color.valueF() == 1.0);

    int h = 0;
    unsigned int s = 0, v = 0, a = 0;
    color.getHsv16(&h, &s, &v, &a);
    QCOMPARE(h, 240);
    QCOMPARE(s, 0x7fffu);
    QCOMPARE(v, 0xffffu);
    QCOMPARE(a, 0x1234u);
}

void tst_TrelColor::nullArgumentsOfGetters()
{
    const TrelColor rgb = stored("01 12345678 9abcdef0 00ffffff ff000000");
    QCOMPARE(wrongNullHandling<unsigned int>(rgb, &TrelColor::getRgb16, 0x9abc, {0x00ff, 0xff00, 0x1234}),
             QByteArray());
    QCOMPARE(wrongNullHandling<double>(rgb, &TrelColor::getRgbF, 0x9abcdef0 / FULL_SCALE,
                                       {0x00ffffff / FULL_SCALE, 0xff000000 / FULL_SCALE, 0x12345678 / FULL_SCALE}),
             QByteArray());
    const TrelColor hsv = stored("02 12345678 00008c96 00ffffff ff000000");
    QCOMPARE((wrongNullHandling<int, unsigned int>(hsv, &TrelColor::getHsv16, 359, {0x00ff, 0xff00, 0x1234})),
             QByteArray());
    QCOMPARE(wrongNullHandling<double>(hsv, &TrelColor::getHsvF, 35990 / 36000.0,
                                       {0x00ffffff / FULL_SCALE, 0xff000000 / FULL_SCALE, 0x12345678 / FULL_SCALE}),
             QByteArray());
}

void tst_TrelColor::qColor_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<bool>("clamp");
    QTest::addColumn<quint32>("argb");
    const TrelColor outside = yxy(0.75, 0.2, 0.45, GENERIC, 0.5);
    QTest::newRow("RGB") << stored("01 12345678 9abcdef0 00ffffff ff000000") << true << 0x129a00ffu;
    QTest::newRow("HSV") << stored("02 12345678 00002ee0 ffffffff ffffffff") << false << 0x1200ff00u;
    QTest::newRow("invalid is opaque black") << TrelColor() << true << 0xff000000u;
    QTest::newRow("Yxy") << yxy(0.8, 0.5, 0.4) << false << 0xffcc390bu;
    QTest::newRow("Yxy outside the gamut, clamped") << outside << true << 0x8000bf53u;
    QTest::newRow("Yxy outside the gamut, as it is") << outside << false << 0x80000000u;
    QTest::newRow("levels") << nchannel({10000, 20000, 30000, 40000}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW,
                                        0x1234)
                            << true << 0x124f2f9cu;
}

void tst_TrelColor::qColor()
{
    QFETCH(TrelColor, color);
    QFETCH(bool, clamp);
    QFETCH(quint32, argb);
    const QColor result = color.getQColor(clamp);
    QCOMPARE(result.spec(), QColor::Rgb);
    QCOMPARE(result.rgba(), argb);
}

void tst_TrelColor::odd07_hue16RoundsGetHsvTruncates()
{
    const TrelColor color = stored("02 ffffffff 00008c96 ffffffff ffffffff");
    QCOMPARE(color.hue16(), 359);
    int h = 0;
    unsigned int s = 0, v = 0;
    color.getHsv16(&h, &s, &v, nullptr);
    QCOMPARE(h, 359);

    const TrelColor half = stored("02 ffffffff 00000096 ffffffff ffffffff");
    QCOMPARE(half.hue16(), 2);
    half.getHsv16(&h, &s, &v, nullptr);
    QCOMPARE(h, 1);
}

// ---- equality, blackness

void tst_TrelColor::equality_data()
{
    QTest::addColumn<TrelColor>("a");
    QTest::addColumn<TrelColor>("b");
    QTest::addColumn<bool>("equal");
    const auto hsv = [](int hue) { return stored(TrelColor::Hsv, {~0u, static_cast<quint32>(hue), 5, 6}); };
    const auto levels = [](const QVector<unsigned int> &v) { return nchannel(v, ColorUtils::CONFIG_RGB, GENERIC); };
    const TrelColor rgb = stored("01 12345678 9abcdef0 13579bdf 2468ace0");
    const TrelColor otherConfig = nchannel({9}, ColorUtils::CONFIG_RGBAW, GENERIC);
    const TrelColor chroma = yxy(0.5, 0.3, 0.4);
    const TrelColor chromaOtherConfig =
        edited([](TrelColor &c) { c.setYxy16(0.5, 0.3, 0.4, 65535, GENERIC); }, otherConfig);
    const TrelColor three = levels({1, 2, 3});
    const struct
    {
        const char *name;
        TrelColor a, b;
        bool equal;
    } rows[] = {
        {"a valid copy", rgb, TrelColor(rgb), true},
        {"RGB, HSV of the same words", rgb, stored("02 12345678 9abcdef0 13579bdf 2468ace0"), false},
        {"RGB, last bit of alpha", rgb, stored("01 12345679 9abcdef0 13579bdf 2468ace0"), false},
        {"RGB, last bit of red", rgb, stored("01 12345678 9abcdef1 13579bdf 2468ace0"), false},
        {"RGB, last bit of green", rgb, stored("01 12345678 9abcdef0 13579bde 2468ace0"), false},
        {"RGB, last bit of blue", rgb, stored("01 12345678 9abcdef0 13579bdf 2468ace1"), false},
        {"RGB, profile", rgb, withProfile(rgb, PROFILE), false},
        {"RGB, configuration", rgb, stored("01 12345678 9abcdef0 13579bdf 2468ace0", otherConfig), false},
        {"RGB, left-over levels", rgb, stored("01 12345678 9abcdef0 13579bdf 2468ace0", three), true},
        {"HSV, alpha", hsv(10), stored("02 fffffffe 0000000a 00000005 00000006"), false},
        {"HSV, hue", hsv(10), hsv(11), false},
        {"HSV, a turn more", hsv(10), hsv(36010), true},
        {"HSV, a full turn and 0", TrelColor::fromHsvF(1.0, 0.5, 0.5, 1.0, GENERIC), hsv(0), true},
        {"HSV, profile", hsv(10), withProfile(hsv(10), PROFILE), false},
        {"HSV, configuration", hsv(10), stored("02 ffffffff 0000000a 00000005 00000006", otherConfig), false},
        {"Yxy", chroma, yxy(0.5, 0.3, 0.4), true},
        {"Yxy, alpha", chroma, yxy(0.5, 0.3, 0.4, GENERIC, 0.5), false},
        {"Yxy, Y", chroma, yxy(std::nextafter(0.5, 1.0), 0.3, 0.4), false},
        {"Yxy, x", chroma, yxy(0.5, std::nextafter(0.3, 1.0), 0.4), false},
        {"Yxy, y", chroma, yxy(0.5, 0.3, std::nextafter(0.4, 1.0)), false},
        {"Yxy, negative zero", TrelColor(0.0, 0.3), TrelColor(-0.0, 0.3), true},
        {"Yxy, NaN", TrelColor(NOT_A_NUMBER, 0.3), TrelColor(NOT_A_NUMBER, 0.3), false},
        {"Yxy, profile", chroma, withProfile(chroma, PROFILE), false},
        {"Yxy, configuration", chroma, chromaOtherConfig, false},
        {"levels", three, levels({1, 2, 3}), true},
        {"levels, alpha", three, nchannel({1, 2, 3}, ColorUtils::CONFIG_RGB, GENERIC, 1), false},
        {"levels, first", three, levels({0, 2, 3}), false},
        {"levels, last", three, levels({1, 2, 4}), false},
        {"levels, count", three, levels({1, 2, 3, 0}), false},
        {"levels, render type", three, withRenderType(three, TrelColor::NChannelRenderYxy), false},
        {"levels, profile", three, withProfile(three, PROFILE), false},
        {"levels, configuration", three, nchannel({1, 2, 3}, ColorUtils::CONFIG_RGBW, GENERIC), false},
        {"form 5", stored("05 00000000 00000000 00000000 00000000"), stored("05 00000000 00000000 00000000 00000000"),
         false},
        {"form -1", stored("ff 00000000 00000000 00000000 00000000"), stored("ff 00000000 00000000 00000000 00000000"),
         false},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.a << row.b << row.equal;
}

void tst_TrelColor::equality()
{
    QFETCH(TrelColor, a);
    QFETCH(TrelColor, b);
    QFETCH(bool, equal);
    QCOMPARE(a == b, equal);
    QCOMPARE(b == a, equal);
    QCOMPARE(a != b, !equal);
    QCOMPARE(b != a, !equal);
}

void tst_TrelColor::odd05_invalidEqualsNothing()
{
    const TrelColor invalid;
    const TrelColor copy = invalid;
    const TrelColor black = TrelColor::fromRgb8(0, 0, 0, 255, GENERIC);
    for (const TrelColor &other : {TrelColor(), copy, black}) {
        QVERIFY(!(invalid == other));
        QVERIFY(!(other == invalid));
        QVERIFY(invalid != other);
    }
}

void tst_TrelColor::odd06_hsvEqualityIsHueAndAlpha()
{
    const auto hsv16 = [](int h, unsigned int s, unsigned int v) {
        TrelColor color;
        color.setHsv16(h, s, v, 65535, GENERIC);
        return color;
    };
    QVERIFY(hsv16(10, 1, 2) == hsv16(370, 60000, 3));
    QVERIFY(hsv16(10, 1, 2) != hsv16(11, 1, 2));
    // The remainder is that of the unsigned word: 4294967295 mod 36000 is 23295, 4294966296 mod 36000 is 22296.
    QVERIFY(hsv16(-1, 0, 0) == stored("02 ffffffff 00005aff 00000000 00000000"));
    QVERIFY(hsv16(-10, 0, 0) == stored("02 ffffffff 00005718 00000000 00000000"));
    QVERIFY(hsv16(-10, 0, 0) != hsv16(350, 0, 0));
    QVERIFY(TrelColor::fromHsvF(-1.0, 0.0, 0.0, 1.0, GENERIC) == stored("02 ffffffff 00002d7f 00000000 00000000"));
}

void tst_TrelColor::blackness_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<bool>("black");
    const struct
    {
        const char *name;
        TrelColor color;
        bool black;
    } rows[] = {
        {"invalid", TrelColor(), false},
        {"RGB with alpha 0", TrelColor::fromRgb8(0, 0, 0, 0, GENERIC), true},
        {"RGB opaque", TrelColor::fromRgb8(0, 0, 0, 255, GENERIC), true},
        {"RGB, one word of red", stored("01 ffffffff 00000001 00000000 00000000"), false},
        {"RGB, one word of green", stored("01 ffffffff 00000000 00000001 00000000"), false},
        {"RGB, one word of blue", stored("01 ffffffff 00000000 00000000 00000001"), false},
        {"HSV", stored("02 ffffffff 00001000 ffffffff 00000000"), true},
        {"HSV, one word of value", stored("02 ffffffff 00000000 00000000 00000001"), false},
        {"Yxy", yxy(0.0, 0.3, 0.4), true},
        {"Yxy, negative zero", edited([](TrelColor &c) { c.setYxy16(-0.0, 0.3, 0.4, 65535, GENERIC); }), true},
        {"Yxy, smallest Y", yxy(TINY, 0.0, 0.0), false},
        {"levels", nchannel({0, 0, 0}, ColorUtils::CONFIG_RGB, GENERIC), true},
        {"levels with a render type",
         withRenderType(nchannel({0, 0, 0}, ColorUtils::CONFIG_RGB, GENERIC), TrelColor::NChannelRenderYxy), true},
        {"levels, last one lit", nchannel({0, 0, 1}, ColorUtils::CONFIG_RGB, GENERIC), false},
        {"no levels", stored("04 ffffffff 00000000 00000001 00000001"), true},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.color << row.black;
}

void tst_TrelColor::blackness()
{
    QFETCH(TrelColor, color);
    QFETCH(bool, black);
    QCOMPARE(color.isBlack(), black);
}

void tst_TrelColor::blackLevels()
{
    QVERIFY(TrelColor().allNChannelsBlack());
    QVERIFY(TrelColor::fromRgb8(255, 255, 255, 255, GENERIC).allNChannelsBlack());
    QVERIFY(nchannel({0, 0}, ColorUtils::CONFIG_RGB, GENERIC).allNChannelsBlack());
    QVERIFY(!nchannel({1, 0}, ColorUtils::CONFIG_RGB, GENERIC).allNChannelsBlack());
    QVERIFY(!stored("01 ffffffff 00000000 00000000 00000000", usedColor()).allNChannelsBlack());
}

// ---- conversion to RGB and HSV

void tst_TrelColor::hsvToRgb_data()
{
    QTest::addColumn<QByteArray>("hsv");
    QTest::addColumn<QByteArray>("rgb");
    const struct
    {
        const char *name, *hsv, *rgb;
    } rows[] = {
        {"0 degrees", "00000000 ffffffff ffffffff", "ffffffff 00000000 00000000"},
        {"60 degrees", "00001770 ffffffff ffffffff", "ffffffff ffffffff 00000000"},
        {"120 degrees", "00002ee0 ffffffff ffffffff", "00000000 ffffffff 00000000"},
        {"180 degrees", "00004650 ffffffff ffffffff", "00000000 ffffffff ffffffff"},
        {"240 degrees", "00005dc0 ffffffff ffffffff", "00000000 00000000 ffffffff"},
        {"300 degrees", "00007530 ffffffff ffffffff", "ffffffff 00000000 ffffffff"},
        // Worked out as exact fractions, one hue inside each sextant.
        {"1 degree", "00000064 80000000 c0000000", "c0000000 61999999 60000000"},
        {"65 degrees", "00001964 40000000 ffffffff", "faaaaaaa ffffffff bfffffff"},
        {"123.45 degrees", "00003039 80000000 80000000", "40000000 80000000 43ae147b"},
        {"200.01 degrees", "00004e21 fedcba98 76543210", "0086a1c9 4f0aa5ea 76543210"},
        {"299.99 degrees", "0000752f 11111111 ffffffff", "ffff4595 eeeeeeee ffffffff"},
        {"359.99 degrees", "00008c9f ffffffff ffffffff", "ffffffff 00000000 000aec34"},
        {"no saturation", "00001234 00000000 12345678", "12345678 12345678 12345678"},
        {"no saturation, achromatic", "ffffffff 00000000 12345678", "12345678 12345678 12345678"},
        {"no saturation, real achromatic", "7fffffff 00000000 12345678", "12345678 12345678 12345678"},
        {"no saturation, hue beyond a turn", "00010000 00000000 12345678", "12345678 12345678 12345678"},
        {"saturated achromatic is hue 0", "ffffffff ffffffff ffffffff", "ffffffff 00000000 00000000"},
        {"a full turn is hue 0", "00008ca0 ffffffff ffffffff", "ffffffff 00000000 00000000"},
        {"a hundredth above a full turn", "00008ca1 ffffffff ffffffff", "00000000 00000000 00000000"},
        {"saturated real achromatic", "7fffffff 00000001 ffffffff", "00000000 00000000 00000000"},
        {"-60 degrees", "ffffe890 ffffffff ffffffff", "00000000 00000000 00000000"},
        // Truncation toward zero keeps -3 degrees in sextant 0, where green becomes -0.05: the word wraps.
        {"-3 degrees", "fffffed4 ffffffff ffffffff", "ffffffff f3333334 00000000"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << QByteArray(row.hsv) << QByteArray(row.rgb);
}

void tst_TrelColor::hsvToRgb()
{
    QFETCH(QByteArray, hsv);
    QFETCH(QByteArray, rgb);
    const TrelColor color = stored("02 12345678 " + hsv, usedColor());
    for (const bool clamp : {false, true})
        QCOMPARE(state(color.toRgb16(clamp)), "01 12345678 " + rgb + " config 1 profile 7");
}

void tst_TrelColor::yxyAndLevelsToRgb_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<bool>("clamp");
    QTest::addColumn<QByteArray>("expected");
    const TrelColor outside = yxy(0.75, 0.2, 0.45);
    const auto rgbw = [](const QVector<unsigned int> &v) {
        return nchannel(v, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW);
    };
    // Solved apart from the library, from the emitters of the profiles, every level more than 0.1 away from the next
    // 16-bit value.
    QTest::newRow("D65") << yxy(1.0, 0.3127, 0.329) << true << QByteArray("ffb7ffb7 ff9fff9f ffffffff");
    QTest::newRow("D65 dimmed") << yxy(0.4, 0.3127, 0.329) << false << QByteArray("66496649 66406640 66666666");
    QTest::newRow("orange") << yxy(0.8, 0.5, 0.4) << true << QByteArray("cccccccc 39d239d2 0b240b24");
    QTest::newRow("teal") << yxy(0.25, 0.25, 0.33) << false << QByteArray("0f2f0f2f 40004000 3f7e3f7e");
    QTest::newRow("black") << yxy(0.0, 0.3, 0.3) << true << QByteArray("00000000 00000000 00000000");
    QTest::newRow("outside, clamped") << outside << true << QByteArray("00000000 bfffbfff 53d853d8");
    QTest::newRow("outside, as it is") << outside << false << QByteArray("00000000 00000000 00000000");
    QTest::newRow("purple outside, clamped") << yxy(1.0, 0.4, 0.1) << true << QByteArray("ffffffff 00000000 b905b905");
    QTest::newRow("levels") << rgbw({10000, 20000, 30000, 40000}) << false << QByteArray("4f804f80 2f0b2f0b 9c409c40");
    QTest::newRow("equal levels") << rgbw({30000, 30000, 30000, 30000}) << true
                                  << QByteArray("70c670c6 242d242d 75307530");
    QTest::newRow("black levels") << rgbw({0, 0, 0, 0}) << true << QByteArray("00000000 00000000 00000000");
}

void tst_TrelColor::yxyAndLevelsToRgb()
{
    QFETCH(TrelColor, color);
    QFETCH(bool, clamp);
    QFETCH(QByteArray, expected);
    const QByteArray profile = QByteArray::number(int(color.getHuelockProfileID()));
    QCOMPARE(state(color.toRgb16(clamp)), "01 ffffffff " + expected + " config 1 profile " + profile);
}

void tst_TrelColor::toRgbAndToHsvCopyTheirOwnForm()
{
    for (const char *form : {"00", "01"}) {
        const TrelColor color = stored(QByteArray(form) + " 12345678 9abcdef0 13579bdf 2468ace0", usedColor());
        QCOMPARE(state(color.toRgb16(true)), state(color));
        QCOMPARE(state(color.toRgb16(false)), state(color));
    }
    for (const char *form : {"00", "02"}) {
        const TrelColor color = stored(QByteArray(form) + " 12345678 9abcdef0 13579bdf 2468ace0", usedColor());
        QCOMPARE(state(color.toHsv16()), state(color));
    }
}

void tst_TrelColor::rgbToHsv_data()
{
    QTest::addColumn<QByteArray>("rgb");
    QTest::addColumn<QByteArray>("hsv");
    const struct
    {
        const char *name, *rgb, *hsv;
    } rows[] = {
        {"red", "ffffffff 00000000 00000000", "00000000 ffffffff ffffffff"},
        {"yellow", "ffffffff ffffffff 00000000", "00001770 ffffffff ffffffff"},
        {"green", "00000000 ffffffff 00000000", "00002ee0 ffffffff ffffffff"},
        {"cyan", "00000000 ffffffff ffffffff", "00004650 ffffffff ffffffff"},
        {"blue", "00000000 00000000 ffffffff", "00005dc0 ffffffff ffffffff"},
        {"magenta", "ffffffff 00000000 ffffffff", "00007530 ffffffff ffffffff"},
        {"black", "00000000 00000000 00000000", "ffffffff 00000000 00000000"},
        {"grey", "12345678 12345678 12345678", "ffffffff 00000000 12345678"},
        {"white", "ffffffff ffffffff ffffffff", "ffffffff 00000000 ffffffff"},
        // 60 / 255 degrees are 23.53 hundredths, 360 - 60 / 255 are 35976.47.
        {"hue rounded up", "ffffffff 01010101 00000000", "00000018 ffffffff ffffffff"},
        {"hue rounded down", "ffffffff 00000000 01010101", "00008c88 ffffffff ffffffff"},
        // -60 / 2^32 degrees round up to the full turn, which toRgb16() reads as 0.
        {"hue of a full turn", "ffffffff 00000000 00000001", "00008ca0 ffffffff ffffffff"},
        {"darkest red is chromatic", "00000001 00000000 00000000", "00000000 ffffffff 00000001"},
        {"one word above a grey is chromatic", "80000001 80000000 80000000", "00000000 00000002 80000001"},
        // delta 0x40000000, max 0x80000000, min 0x40000000: saturation a half, middle component a quarter up.
        {"sextant 0", "80000000 50000000 40000000", "000005dc 80000000 80000000"},
        {"sextant 1", "50000000 80000000 40000000", "00002904 80000000 80000000"},
        {"sextant 2", "40000000 80000000 50000000", "000034bc 80000000 80000000"},
        {"sextant 3", "40000000 50000000 80000000", "000057e4 80000000 80000000"},
        {"sextant 4", "50000000 40000000 80000000", "0000639c 80000000 80000000"},
        {"sextant 5", "80000000 40000000 50000000", "000086c4 80000000 80000000"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << QByteArray(row.rgb) << QByteArray(row.hsv);
}

void tst_TrelColor::rgbToHsv()
{
    QFETCH(QByteArray, rgb);
    QFETCH(QByteArray, hsv);
    const TrelColor color = stored("01 12345678 " + rgb, nchannel({}, ColorUtils::CONFIG_RGBAW, PROFILE));
    QCOMPARE(state(color.toHsv16()), "02 12345678 " + hsv + " config 2 profile 7");
}

void tst_TrelColor::yxyAndLevelsToHsv()
{
    const TrelColor orange = stored("01 80008000 cccccccc 39d239d2 0b240b24");
    const TrelColor chroma = edited([](TrelColor &c) { c.setYxy16(0.8, 0.5, 0.4, 0x8000, GENERIC); });
    QCOMPARE(state(chroma.toHsv16()), state(orange.toHsv16()));
    QCOMPARE(chroma.hue16(), orange.hue16());
    QCOMPARE(chroma.saturation16(), orange.saturation16());
    QCOMPARE(chroma.value16(), 0xccccu);

    const TrelColor levels =
        nchannel({10000, 20000, 30000, 40000}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW, 0x1234);
    const TrelColor rendered = withProfile(stored("01 12341234 4f804f80 2f0b2f0b 9c409c40"), ColorUtils::GENERIC_RGBW);
    QCOMPARE(state(levels.toHsv16()), state(rendered.toHsv16()));

    const TrelColor clamped = stored("01 ffffffff 00000000 bfffbfff 53d853d8");
    QCOMPARE(state(yxy(0.75, 0.2, 0.45).toHsv16()), state(clamped.toHsv16()));
}

void tst_TrelColor::conversionsKeepAlphaAndProfile()
{
    const TrelColor chroma = yxy(0.8, 0.5, 0.4, PROFILE, 0x12345678 / FULL_SCALE);
    const TrelColor hsv = stored("02 12345678 00000000 00000000 00000000", usedColor());
    for (const TrelColor &color : {chroma, hsv, usedColor()}) {
        const TrelColor rgb = color.toRgb16(true);
        QVERIFY(rgb.alphaF() == color.alphaF());
        QCOMPARE(rgb.getHuelockProfileID(), PROFILE);
        QCOMPARE(rgb.getChannelConfiguration(), ColorUtils::CONFIG_RGB);
        QVERIFY(rgb.allNChannelsBlack());
        QVERIFY(color.toHsv16().alphaF() == color.alphaF());
        QCOMPARE(color.toHsv16().getHuelockProfileID(), PROFILE);
    }
}

void tst_TrelColor::odd08_rgbIsRenderedForTheGenericProfile()
{
    // Rendered for the emitters of this profile, orange would be cccc 55f7 0ecc.
    QCOMPARE(state(yxy(0.8, 0.5, 0.4, PROFILE).toRgb16(true)),
             QByteArray("01 ffffffff cccccccc 39d239d2 0b240b24 config 1 profile 7"));
}

/// Every hue word of a full turn. A word is half a unit away from the exact value at most; 1e-4 is far above what
/// doubles lose at this size and far below the next word.
void tst_TrelColor::sweepHsvToRgbAgainstClosedForm()
{
    const quint32 pairs[][2] = {{~0u, ~0u}, {0x80000000, ~0u}, {~0u, 0x12345678}, {0x9abcdef0, 0x87654321}, {1, ~0u}};
    for (const auto &[s, v] : pairs) {
        for (int hue = 0; hue < 36000; ++hue) {
            const Args rgb = rgbWords(stored(TrelColor::Hsv, {~0u, quint32(hue), s, v}).toRgb16(false));
            const double wrong =
                std::max({std::abs(rgb[1] - closedForm(5, hue, s, v)), std::abs(rgb[2] - closedForm(3, hue, s, v)),
                          std::abs(rgb[3] - closedForm(1, hue, s, v))});
            if (wrong > 0.5 + 1e-4)
                QFAIL(qPrintable(QString("hue %1 s %2 v %3: off by %4 words").arg(hue).arg(s).arg(v).arg(wrong)));
        }
    }
}

/// QColor computes the same reals but rounds them to 16 bits, where we keep 32: our value lies within half a 16-bit
/// step of its own, and its 8-bit components (from the rounded ones) may be one above ours. The two disagree on
/// achromatic colours only: QColor takes hue -1 for grey at any saturation, here it is hue 0 of a saturated colour
/// (hsvToRgb has the case), so this sweep starts at hue 0.
void tst_TrelColor::sweepHsvToRgbAgainstQColor()
{
    const int levels[] = {0, 1, 17, 64, 127, 128, 200, 254, 255};
    for (int h = 0; h < 360; ++h) {
        for (const int s : levels) {
            for (const int v : levels) {
                const TrelColor color = TrelColor::fromHsv8(h, s, v, 255, GENERIC);
                const QRgba64 qt = QColor::fromHsv(h, s, v).rgba64();
                const double wrong =
                    std::max({std::abs(color.redF() * 65535 - qt.red()), std::abs(color.greenF() * 65535 - qt.green()),
                              std::abs(color.blueF() * 65535 - qt.blue())});
                if (wrong > 0.5 + QCOLOR_NOISE)
                    QFAIL(qPrintable(QString("hsv %1 %2 %3: off by %4 / 65535").arg(h).arg(s).arg(v).arg(wrong)));
            }
        }
    }
}

void tst_TrelColor::sweepRgbToHsvAgainstQColor_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<bool>("edgesOnly");
    QTest::newRow("lattice of the cube") << 5 << false;
    QTest::newRow("greys and edges of the cube") << 1 << true;
}

/// At 8 bits both sides hold the same reals, and QColor keeps its hue in hundredths of a degree too, so hues agree
/// (exactly where QColor computes in double), the achromatic -1 included. Its saturation has 16 bits: ours lies within
/// half a step of it. Value is one of the components and exact on both sides. At 32 bits they part: QColor cannot hold
/// such a colour.
void tst_TrelColor::sweepRgbToHsvAgainstQColor()
{
    QFETCH(int, step);
    QFETCH(bool, edgesOnly);
    const auto disagrees = [](int r, int g, int b) {
        double h = 0, s = 0, v = 0;
        TrelColor::fromRgb8(r, g, b, 255, GENERIC).getHsvF(&h, &s, &v, nullptr);
        const QColor qt = QColor(r, g, b).toHsv();
        const auto hue = [](double real) { return real < 0 ? -1 : qRound(real * 36000); };
        const int qtHue = hue(double(qt.hueF()));
        return (hue(h) == -1) != (qtHue == -1) || std::abs(hue(h) - qtHue) > QCOLOR_HUE_NOISE
               || v != std::max({r, g, b}) / 255.0
               || std::abs(s * 65535 - qRound(double(qt.saturationF()) * 65535)) > 0.5 + QCOLOR_NOISE;
    };
    int count = 0;
    for (int r = 0; r < 256; r += step) {
        for (int g = 0; g < 256; g += step) {
            const bool corner = r % 255 == 0 && g % 255 == 0;
            const bool face = r % 255 == 0 || g % 255 == 0;
            for (int b = 0; b < 256; b += step) {
                const bool edge = corner || (face && b % 255 == 0);
                if (edgesOnly && !edge && !(r == g && g == b))
                    continue;
                ++count;
                if (disagrees(r, g, b))
                    QFAIL(qPrintable(QString("rgb %1 %2 %3").arg(r).arg(g).arg(b)));
            }
        }
    }
    QCOMPARE(count, edgesOnly ? 12 * 254 + 8 + 254 : 52 * 52 * 52);
}

/// Hue is rounded to hundredths, at most half of one off, which moves the middle component by delta / 12000 and leaves
/// the others, up to the words that rounding saturation and value costs.
void tst_TrelColor::sweepRgbThroughHsvAndBack()
{
    quint32 random = 1;
    const auto next = [&random] { return random = random * 1664525u + 1013904223u; };
    for (int i = 0; i < 20000; ++i) {
        const Words source = {next(), next(), next(), next()};
        const Args before = rgbWords(stored(TrelColor::Rgb, source));
        const Args after = rgbWords(stored(TrelColor::Rgb, source).toHsv16().toRgb16(true));
        const auto [low, high] = std::minmax({source[1], source[2], source[3]});
        QVERIFY(after[0] == before[0]);
        for (size_t c = 1; c < 4; ++c) {
            const bool middle = source[c] != low && source[c] != high;
            const double allowed = 2 + (middle ? (high - low) / 12000.0 : 0.0);
            if (std::abs(after[c] - before[c]) > allowed)
                QFAIL(qPrintable(QString("colour %1 component %2").arg(i).arg(c)));
        }
    }
}

// ---- premultiplication

void tst_TrelColor::premultiply_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<QByteArray>("expected");
    const TrelColor levels = withRenderType(nchannel({65535, 32768, 0, 1}, ColorUtils::CONFIG_RGBA, PROFILE, 0x3333),
                                            TrelColor::NChannelRenderYxy);
    const struct
    {
        const char *name;
        TrelColor color;
        const char *expected;
    } rows[] = {
        {"RGB", stored("01 33333333 ffffffff 80808080 00000000", usedColor()),
         "01 33333333 33333333 19b34ce6 00000000 config 1 profile 0"},
        {"RGB, alpha 0", stored("01 00000000 ffffffff 80808080 00000000", usedColor()),
         "01 00000000 00000000 00000000 00000000 config 1 profile 0"},
        {"RGB, opaque", stored("01 ffffffff ffffffff 80808080 00000001", usedColor()),
         "01 ffffffff ffffffff 80808080 00000001 config 1 profile 0"},
        {"HSV", stored("02 33333333 00002ee0 ffffffff ffffffff", usedColor()),
         "01 33333333 00000000 33333333 00000000 config 1 profile 0"},
        {"invalid", TrelColor(), "01 ffffffff 00000000 00000000 00000000 config 1 profile 0"},
        {"levels", levels, "04 33333333 00000000 00000000 00000000 config 6 profile 7 levels 33333333 1999b333 0 3333"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.color << QByteArray(row.expected);
}

void tst_TrelColor::premultiply()
{
    QFETCH(TrelColor, color);
    QFETCH(QByteArray, expected);
    QCOMPARE(state(TrelColor::premultiply(color)), expected);
}

void tst_TrelColor::unpremultiply_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::addColumn<QByteArray>("expected");
    const TrelColor levels = withRenderType(
        TrelColor::fromNChannelF({0.2, 0.2, 0.1, 0.0}, ColorUtils::CONFIG_RGB, PROFILE), TrelColor::NChannelRenderYxy);
    const struct
    {
        const char *name;
        TrelColor color;
        const char *expected;
    } rows[] = {
        {"RGB", stored("01 33333333 33333333 19999999 00000000", usedColor()),
         "01 33333333 ffffffff 7ffffffd 00000000 config 1 profile 0"},
        {"RGB, opaque", stored("01 ffffffff ffffffff 80808080 00000001", usedColor()),
         "01 ffffffff ffffffff 80808080 00000001 config 1 profile 0"},
        {"HSV", stored("02 33333333 00002ee0 ffffffff 33333333", usedColor()),
         "01 33333333 00000000 ffffffff 00000000 config 1 profile 0"},
        {"invalid", TrelColor(), "01 ffffffff 00000000 00000000 00000000 config 1 profile 0"},
        // 0.1 is stored as 0x1999999A, five times of it is 0x80000002.
        {"levels", levels, "04 33333333 00000000 00000000 00000000 config 1 profile 7 levels ffffffff 80000002 0"},
    };
    for (const auto &row : rows)
        QTest::newRow(row.name) << row.color << QByteArray(row.expected);
}

void tst_TrelColor::unpremultiply()
{
    QFETCH(TrelColor, color);
    QFETCH(QByteArray, expected);
    QCOMPARE(state(TrelColor::unpremultiply(color)), expected);
}

void tst_TrelColor::unpremultiplyWithoutAlphaIsACopy_data()
{
    QTest::addColumn<TrelColor>("color");
    QTest::newRow("RGB") << stored("01 00000000 9abcdef0 13579bdf 2468ace0", usedColor());
    QTest::newRow("HSV") << stored("02 00000000 00002ee0 13579bdf 2468ace0", usedColor());
    QTest::newRow("Yxy") << yxy(0.5, 0.3, 0.4, PROFILE, 0.0);
    QTest::newRow("levels") << nchannel({1, 2, 3}, ColorUtils::CONFIG_RGB, PROFILE, 0);
    QTest::newRow("invalid") << stored("00 00000000 00000000 00000000 00000000");
}

void tst_TrelColor::unpremultiplyWithoutAlphaIsACopy()
{
    QFETCH(TrelColor, color);
    QCOMPARE(state(TrelColor::unpremultiply(color)), state(color));
}

void tst_TrelColor::unpremultiplyOutOfRange()
{
    expectWarning("TrelColor::fromRgbF: RGB parameters out of range");
    QCOMPARE(state(TrelColor::unpremultiply(stored("01 33333333 00000000 00000000 ffffffff", usedColor()))), BLANK);

    // The alpha is set after the factory gave up.
    expectWarning("TrelColor::fromxyY: xyY parameters out of range");
    const TrelColor chroma = TrelColor::unpremultiply(yxy(0.1, 0.3, 0.1, PROFILE, 0.2));
    QCOMPARE(state(chroma), QByteArray("00 33333333 00000000 00000000 00000000 config 1 profile 0 Yxy 0 0 0"));
}

void tst_TrelColor::odd09_premultiplyScalesChromaticity()
{
    const auto isNear = [](const TrelColor &color, double Y, double x, double y) {
        // Products and quotients of doubles below 1, each rounded once.
        constexpr double ROUNDING = 2e-16;
        return std::abs(color.getY() - Y) <= ROUNDING && std::abs(color.getx() - x) <= ROUNDING
               && std::abs(color.gety() - y) <= ROUNDING;
    };
    const TrelColor color = yxy(0.5, 0.3, 0.4, PROFILE, 0.2);
    const TrelColor product = TrelColor::premultiply(color);
    QCOMPARE(product.spec(), TrelColor::Yxy);
    QVERIFY(isNear(product, 0.1, 0.06, 0.08));
    QCOMPARE(product.alphaF(), 0.2);
    QCOMPARE(product.getHuelockProfileID(), GENERIC);
    QCOMPARE(product.getChannelConfiguration(), ColorUtils::CONFIG_RGB);

    const TrelColor quotient = TrelColor::unpremultiply(product);
    QVERIFY(isNear(quotient, 0.5, 0.3, 0.4));
    QCOMPARE(quotient.alphaF(), 0.2);
    QCOMPARE(quotient.getHuelockProfileID(), GENERIC);
}

const ChildCases childCases{};

TREL_TEST_MAIN(tst_TrelColor, childCases)

#include "tst_TrelColor.moc"
