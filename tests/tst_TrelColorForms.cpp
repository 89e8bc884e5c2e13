#include "TestSupport.h"

#include <TrelColor.h>

#include <QLinearGradient>
#include <QRegularExpression>

#include <cmath>
#include <limits>
#include <random>

using Levels16 = QVector<unsigned int>;

namespace {

constexpr unsigned int OPAQUE = 0xFFFFFFFFu;
constexpr unsigned int ODD_ALPHA = 0x12345678u; // low half differs from the high one: shows a detour over 16 bits
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

// A chromaticity is a quotient of sums of a few products in double.
constexpr double LINEAR_TOLERANCE = 1e-12;
// The polynomials of the on-board curves are rounded to single precision.
constexpr double CURVE_TOLERANCE = 1e-6;
// Words are whole: a product of components is at most one word off, and a sum of two at most two.
constexpr double WORD_TOLERANCE = 1e-9;
// Levels that went through the solver carry its single-precision multipliers and one rounding to 16 bits.
constexpr unsigned int LEVEL_TOLERANCE = 2;
// Chromaticity of such levels.
constexpr double LEVEL_CHROMATICITY_TOLERANCE = 5e-5;

constexpr ColorUtils::HuelockProfileID profileId(int id)
{
    return static_cast<ColorUtils::HuelockProfileID>(id);
}

unsigned int wordOf(double real)
{
    return static_cast<unsigned int>(real * 4294967295.0 + 0.5);
}

double realOf(unsigned int word)
{
    return word / 4294967295.0;
}

unsigned int alphaWord(const TrelColor &color)
{
    return wordOf(color.alphaF());
}

Levels16 levelWords(const TrelColor &color)
{
    QVector<double> levels;
    color.getNChannelF(&levels);
    Levels16 words;
    for (int i = 1; i < int(levels.size()); ++i)
        words.append(wordOf(levels[i]));
    return words;
}

Levels16 channelLevels(const TrelColor &color)
{
    Levels16 levels;
    color.getNChannel16(&levels);
    return levels.mid(1);
}

QString hex(unsigned int word)
{
    return QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0'));
}

// Every field of a colour as text; the reals exactly, since a shortest form of 17 digits tells two doubles apart.
QString describe(const TrelColor &color)
{
    QStringList parts{QString::number(color.spec()), QString::number(color.getChannelConfiguration()),
                      QString::number(color.getHuelockProfileID()), hex(alphaWord(color))};
    if (color.spec() == TrelColor::Invalid || color.spec() == TrelColor::Yxy) {
        for (double real : {color.getY(), color.getx(), color.gety()})
            parts.append(QString::number(real, 'g', 17));
    } else if (color.spec() == TrelColor::Rgb) {
        for (double real : {color.redF(), color.greenF(), color.blueF()})
            parts.append(hex(wordOf(real)));
    } else if (color.spec() == TrelColor::Hsv) {
        for (double real : {color.hueF(), color.saturationF(), color.valueF()})
            parts.append(QString::number(real, 'g', 17));
    } else {
        parts.append(hex(static_cast<unsigned int>(color.getNChannelRenderType())));
    }
    const Levels16 levels = levelWords(color);
    for (unsigned int level : levels)
        parts.append("level " + hex(level));
    return parts.join(' ');
}

TrelColor withAlpha(TrelColor color, unsigned int alpha)
{
    color.setAlphaF(realOf(alpha));
    return color;
}

TrelColor rgb(unsigned int r, unsigned int g, unsigned int b, int profile = 0)
{
    return TrelColor::fromRgb16(r, g, b, 65535, profileId(profile));
}

TrelColor steps(int profile = 0)
{
    return rgb(0x4000, 0x8000, 0xC000, profile);
}

// Saturation 2/3 and hue 210 degrees: the same colour as steps().
TrelColor stepsAsHsv(int profile = 0)
{
    return TrelColor::fromHsv16(210, 0xAAAA, 0xC000, 65535, profileId(profile));
}

TrelColor yxy(double Y, double x, double y, int profile = 0)
{
    TrelColor color;
    color.setYxy16(Y, x, y, 65535, profileId(profile));
    return color;
}

TrelColor nChannel(const Levels16 &levels, ColorUtils::ChannelConfiguration configuration, int profile = 0,
                   int renderType = 0)
{
    TrelColor color = TrelColor::fromNChannel16(Levels16{65535} + levels, configuration, profileId(profile));
    color.setNChannelRenderType(static_cast<TrelColor::NChannelRenderType>(renderType));
    return color;
}

TrelColor rgbwSteps(int profile = 6, int renderType = 0)
{
    return nChannel({0x4000, 0x8000, 0xC000, 0x2000}, ColorUtils::CONFIG_RGBW, profile, renderType);
}

// A white of half luminance; on a generic RGB fixture the levels 32732, 32720, 32768.
TrelColor halfWhite(int profile = 0)
{
    return yxy(0.5, 0.3127, 0.3290, profile);
}

bool near(double actual, double expected, double tolerance)
{
    if (std::abs(actual - expected) <= tolerance)
        return true;
    qInfo("%.12g is not %.12g within %g", actual, expected, tolerance);
    return false;
}

bool nearLevels(const Levels16 &actual, const Levels16 &expected, unsigned int tolerance)
{
    bool same = actual.size() == expected.size();
    for (int i = 0; same && i < int(actual.size()); ++i)
        same = qMax(actual[i], expected[i]) - qMin(actual[i], expected[i]) <= tolerance;
    if (!same)
        qInfo() << "levels" << actual << "expected" << expected;
    return same;
}

// Collects debug lines while it lives.
class DebugLines
{
public:
    DebugLines()
    {
        s_lines.clear();
        s_previous = qInstallMessageHandler(record);
    }
    ~DebugLines()
    {
        qInstallMessageHandler(s_previous);
    }
    DebugLines(const DebugLines &) = delete;
    DebugLines &operator=(const DebugLines &) = delete;

    QStringList lines() const
    {
        return s_lines;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtDebugMsg)
            s_lines.append(text);
        else
            s_previous(type, context, text);
    }

    static inline QStringList s_lines;
    static inline QtMessageHandler s_previous = nullptr;
};

constexpr char END_OF_BLEND[] = "not doing blend ";

// The stream's own spacing stands between the text and the value.
bool isEndOfBlend(const QStringList &lines, const QString &progress)
{
    if (lines.size() == 1 && lines[0].startsWith(END_OF_BLEND)
        && lines[0].mid(int(qstrlen(END_OF_BLEND))).trimmed() == progress)
        return true;
    qInfo() << "debug lines" << lines;
    return false;
}

QVector<double> numbersIn(const QStringList &lines)
{
    static const QRegularExpression number(QStringLiteral("-?\\d+(\\.\\d+)?(e[-+]?\\d+)?"));
    QVector<double> numbers;
    auto found = number.globalMatch(lines.join('\n'));
    while (found.hasNext())
        numbers.append(found.next().captured().toDouble());
    return numbers;
}

template <typename Row, size_t count>
void addRows(const Row (&rows)[count])
{
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < count; ++i)
        QTest::newRow(rows[i].name) << int(i);
}

using Change = void (*)(TrelColor &);

struct SetYxyRow
{
    const char *name;
    Change set;
    unsigned int alpha;
    double Y, x, y;
};

const SetYxyRow SET_YXY[] = {
    {"16 bits", [](TrelColor &c) { c.setYxy16(0.5, 0.3, 0.25, 0x1234, profileId(7)); }, 0x12341234u, 0.5, 0.3, 0.25},
    {"16 bits, no alpha", [](TrelColor &c) { c.setYxy16(0.5, 0.3, 0.25, 0, profileId(7)); }, 0, 0.5, 0.3, 0.25},
    {"16 bits, opaque", [](TrelColor &c) { c.setYxy16(1, 0, 1, 65535, profileId(7)); }, OPAQUE, 1, 0, 1},
    {"8 bits", [](TrelColor &c) { c.setYxy8(0.5, 0.3, 0.25, 0x12, profileId(7)); }, 0x12121212u, 0.5, 0.3, 0.25},
    {"8 bits, opaque", [](TrelColor &c) { c.setYxy8(0.5, 0.3, 0.25, 255, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    // 0.123 is 0x1F7C at 16 bits, whose word would be 0x1F7C1F7C.
    {"real keeps the full precision of alpha", [](TrelColor &c) { c.setYxyF(0.5, 0.3, 0.25, 0.123, profileId(7)); },
     528280977u, 0.5, 0.3, 0.25},
    {"real, opaque", [](TrelColor &c) { c.setYxyF(0.5, 0.3, 0.25, 1.0, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    {"real, alpha is not a number", [](TrelColor &c) { c.setYxyF(0.5, 0.3, 0.25, NOT_A_NUMBER, profileId(7)); }, 0, 0.5,
     0.3, 0.25},
    {"16 bits, no range check", [](TrelColor &c) { c.setYxy16(-1, 2, 1e300, 65535, profileId(7)); }, OPAQUE, -1, 2,
     1e300},
    {"8 bits, no range check", [](TrelColor &c) { c.setYxy8(INFINITE, -2, 7, 255, profileId(7)); }, OPAQUE, INFINITE,
     -2, 7},
    {"real, no range check", [](TrelColor &c) { c.setYxyF(1.5, -INFINITE, -0.5, 1.0, profileId(7)); }, OPAQUE, 1.5,
     -INFINITE, -0.5},
};

const SetYxyRow BAD_ALPHA[] = {
    {"setYxy16(0.5, 0.3, 0.3, 70000, GENERIC_RGB)",
     [](TrelColor &c) { c.setYxy16(0.5, 0.3, 0.3, 70000, profileId(0)); }, OPAQUE, 0.5, 0.3, 0.3},
    {"16 bits, just above", [](TrelColor &c) { c.setYxy16(0.5, 0.3, 0.25, 65536, profileId(7)); }, OPAQUE, 0.5, 0.3,
     0.25},
    {"8 bits, just above", [](TrelColor &c) { c.setYxy8(0.5, 0.3, 0.25, 256, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    {"8 bits, negative", [](TrelColor &c) { c.setYxy8(0.5, 0.3, 0.25, -1, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    // Times 257 it would wrap to 256.
    {"8 bits, wild", [](TrelColor &c) { c.setYxy8(0.5, 0.3, 0.25, 16711936, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    {"real, above", [](TrelColor &c) { c.setYxyF(0.5, 0.3, 0.25, 1.5, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
    {"real, negative", [](TrelColor &c) { c.setYxyF(0.5, 0.3, 0.25, -0.5, profileId(7)); }, OPAQUE, 0.5, 0.3, 0.25},
};

struct GetYxyRow
{
    const char *name;
    TrelColor (*color)();
    double Y, x, y;
    double tolerance;
};

TrelColor invalidHoldingYxy()
{
    TrelColor color;
    color.setYxy16(0.5, 0.3, 0.25, 65536, profileId(7));
    return color;
}

const GetYxyRow GET_YXY[] = {
    {"invalid", [] { return TrelColor(); }, 0, 0, 0, 0},
    {"invalid that holds values", [] { return invalidHoldingYxy(); }, 0.5, 0.3, 0.25, 0},
    {"Yxy", [] { return yxy(0.5, 0.3, 0.25); }, 0.5, 0.3, 0.25, 0},
    {"chromaticity constructor", [] { return TrelColor(0.3, 0.25); }, 1.0, 0.3, 0.25, 0},
    {"RGB", [] { return steps(); }, 0.7500114442664225, 0.251503140990621, 0.2803163783757057, LINEAR_TOLERANCE},
    {"RGB, own profile with its curve", [] { return steps(7); }, 0.5748817559832713, 0.1965493170183981,
     0.2434062824433026, CURVE_TOLERANCE},
    // Its components are rounded to words after the sextant arithmetic.
    {"HSV", [] { return stepsAsHsv(); }, 0.7500114442664225, 0.251503140990621, 0.2803163783757057, WORD_TOLERANCE},
    {"N-channel, own configuration", [] { return rgbwSteps(); }, 0.5748817559832713, 0.1979586511751298,
     0.2448432959041593, CURVE_TOLERANCE},
};

using SetReal = void (TrelColor::*)(double);

struct SetRealRow
{
    const char *name;
    SetReal set;
    double value;
};

const SetRealRow REALS_IN_RANGE[] = {
    {"Y 0", &TrelColor::setY, 0.0},
    {"Y 1", &TrelColor::setY, 1.0},
    {"Y 0.4", &TrelColor::setY, 0.4},
    {"x 0", &TrelColor::setx, 0.0},
    {"x 1", &TrelColor::setx, 1.0},
    {"x 0.4", &TrelColor::setx, 0.4},
    {"y 0", &TrelColor::sety, 0.0},
    {"y 1", &TrelColor::sety, 1.0},
    {"y 0.4", &TrelColor::sety, 0.4},
    {"Y NaN", &TrelColor::setY, NOT_A_NUMBER},
    {"x NaN", &TrelColor::setx, NOT_A_NUMBER},
    {"y NaN", &TrelColor::sety, NOT_A_NUMBER},
};

const SetRealRow REALS_OUT_OF_RANGE[] = {
    {"Y below", &TrelColor::setY, -1e-9},       {"Y above", &TrelColor::setY, 1.0000001},
    {"x below", &TrelColor::setx, -1e-9},       {"x above", &TrelColor::setx, 1.0000001},
    {"y below", &TrelColor::sety, -1e-9},       {"y above", &TrelColor::sety, 1.0000001},
    {"Y infinite", &TrelColor::setY, INFINITE}, {"x minus infinite", &TrelColor::setx, -INFINITE},
    {"y infinite", &TrelColor::sety, INFINITE},
};

struct SetLevelsRow
{
    const char *name;
    Change set;
    unsigned int alpha;
    Levels16 words;
};

const SetLevelsRow SET_LEVELS[] = {
    {"setNChannel16([65535, 0, 65535, 100])",
     [](TrelColor &c) {
         c.setNChannel16({65535, 0, 65535, 100}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
     },
     OPAQUE,
     {0, 0xFFFFFFFFu, 0x00640064u}},
    {"16 bits, alpha",
     [](TrelColor &c) {
         c.setNChannel16({0x1234, 0x5678}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     0x12341234u,
     {0x56785678u}},
    {"16 bits, alpha only", [](TrelColor &c) { c.setNChannel16({0}, ColorUtils::CONFIG_RGB, profileId(0)); }, 0, {}},
    {"16 bits, levels are not checked",
     [](TrelColor &c) {
         c.setNChannel16({1, 65536, 0xFFFFFFFFu}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     0x00010001u,
     {0x00010000u, 0xFFFEFFFFu}},
    {"8 bits",
     [](TrelColor &c) {
         c.setNChannel8({0x12, 0, 255, 0x34}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     0x12121212u,
     {0, 0xFFFFFFFFu, 0x34343434u}},
    {"8 bits, levels are not checked",
     [](TrelColor &c) {
         c.setNChannel8({255, 300, -1}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     OPAQUE,
     {0x2D2D2D2Cu, 0xFEFEFEFFu}},
    {"real",
     [](TrelColor &c) {
         c.setNChannelF({0.123, 0.0, 1.0, 0.5}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     528280977u,
     {0, 0xFFFFFFFFu, 0x80000000u}},
    {"real, levels are not checked",
     [](TrelColor &c) {
         c.setNChannelF({1.0, 1.5, -0.5, NOT_A_NUMBER, INFINITE, -1e300}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     OPAQUE,
     {0x7FFFFFFFu, 0x80000001u, 0, 0, 0}},
    {"real, alpha is not a number",
     [](TrelColor &c) {
         c.setNChannelF({NOT_A_NUMBER, 1.0}, ColorUtils::CONFIG_RGB, profileId(0));
     },
     0,
     {0xFFFFFFFFu}},
};

const SetLevelsRow UNCHECKED_ALPHA[] = {
    {"setNChannel8([300, ...]): 300 x 0x01010101 in 32 bits",
     [](TrelColor &c) {
         c.setNChannel8({300, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     0x2D2D2D2Cu,
     {0x01010101u}},
    {"256",
     [](TrelColor &c) {
         c.setNChannel8({256, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     0x01010100u,
     {0x01010101u}},
    {"negative",
     [](TrelColor &c) {
         c.setNChannel8({-1, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     0xFEFEFEFFu,
     {0x01010101u}},
};

const SetLevelsRow CHECKED_ALPHA[] = {
    {"16 bits",
     [](TrelColor &c) {
         c.setNChannel16({65536, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     OPAQUE,
     {}},
    {"real, above",
     [](TrelColor &c) {
         c.setNChannelF({1.0001, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     OPAQUE,
     {}},
    {"real, negative",
     [](TrelColor &c) {
         c.setNChannelF({-0.1, 1}, ColorUtils::CONFIG_RGBA, profileId(5));
     },
     OPAQUE,
     {}},
};

struct ChangeRow
{
    const char *name;
    Change set;
};

const ChangeRow WHOLE_SETTERS[] = {
    {"setRgb8", [](TrelColor &c) { c.setRgb8(1, 2, 3, 255, profileId(0)); }},
    {"setRgb16", [](TrelColor &c) { c.setRgb16(1, 2, 3, 65535, profileId(0)); }},
    {"setRgbF", [](TrelColor &c) { c.setRgbF(0.1, 0.2, 0.3, 1.0, profileId(0)); }},
    {"setHsv8", [](TrelColor &c) { c.setHsv8(1, 2, 3, 255, profileId(0)); }},
    {"setHsv16", [](TrelColor &c) { c.setHsv16(1, 2, 3, 65535, profileId(0)); }},
    {"setHsvF", [](TrelColor &c) { c.setHsvF(0.1, 0.2, 0.3, 1.0, profileId(0)); }},
    {"setYxy16", [](TrelColor &c) { c.setYxy16(0.1, 0.2, 0.3, 65535, profileId(0)); }},
    {"setY", [](TrelColor &c) { c.setY(0.1); }},
    {"setRed16", [](TrelColor &c) { c.setRed16(1); }},
    {"setQColor", [](TrelColor &c) { c.setQColor(Qt::red); }},
    {"setNamedColor", [](TrelColor &c) { c.setNamedColor("#ff0000"); }},
    {"invalidate", [](TrelColor &c) { c.invalidate(); }},
};

struct ToYxyRow
{
    const char *name;
    TrelColor (*color)();
    ColorUtils::ChannelConfiguration configuration;
    int profile;
    int curve;
    double Y, x, y;
    double tolerance;
    ColorUtils::ChannelConfiguration resultConfiguration;
    int resultProfile;
};

const ToYxyRow TO_YXY[] = {
    {"red", [] { return rgb(65535, 0, 0); }, ColorUtils::CONFIG_UNKNOWN, -1, -1, 1, 0.64, 0.3299999611947365,
     LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"green", [] { return rgb(0, 65535, 0); }, ColorUtils::CONFIG_UNKNOWN, -1, -1, 1, 0.2999999916119113,
     0.5999999832238226, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"blue", [] { return rgb(0, 0, 65535); }, ColorUtils::CONFIG_UNKNOWN, -1, -1, 1, 0.1499999958391124,
     0.05999999833564498, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"white", [] { return rgb(65535, 65535, 65535); }, ColorUtils::CONFIG_RGB, 0, -1, 1, 0.3127687494575103,
     0.3291557001587748, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"black", [] { return rgb(0, 0, 0); }, ColorUtils::CONFIG_RGB, 0, -1, 0, 0, 0, 0, ColorUtils::CONFIG_RGB, 0},
    {"generic RGB, linear by default", [] { return steps(); }, ColorUtils::CONFIG_RGB, 0, -1, 0.7500114442664225,
     0.251503140990621, 0.2803163783757057, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"generic RGB, square law", [] { return steps(); }, ColorUtils::CONFIG_RGB, 0, 1, 0.5748817559832713,
     0.2174606380474536, 0.2346717371215573, CURVE_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"generic RGB, tungsten", [] { return steps(); }, ColorUtils::CONFIG_RGB, 0, 2, 0.5053229548142214,
     0.1962153099113443, 0.2054620679920419, CURVE_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"an unknown curve is linear", [] { return steps(); }, ColorUtils::CONFIG_RGB, 0, 3, 0.7500114442664225,
     0.251503140990621, 0.2803163783757057, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"own profile and its default curve", [] { return steps(7); }, ColorUtils::CONFIG_UNKNOWN, -1, -1,
     0.5748817559832713, 0.1965493170183981, 0.2434062824433026, CURVE_TOLERANCE, ColorUtils::CONFIG_RGB, 7},
    {"own profile, linear", [] { return steps(7); }, ColorUtils::CONFIG_UNKNOWN, -1, 0, 0.7500114442664225,
     0.2350755342587074, 0.2858338609745127, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 7},
    {"HSV", [] { return stepsAsHsv(7); }, ColorUtils::CONFIG_UNKNOWN, -1, 0, 0.7500114442664225, 0.2350755342587074,
     0.2858338609745127, WORD_TOLERANCE, ColorUtils::CONFIG_RGB, 7},
    {"N-channel", [] { return rgbwSteps(); }, ColorUtils::CONFIG_UNKNOWN, -1, -1, 0.5748817559832713,
     0.1979586511751298, 0.2448432959041593, CURVE_TOLERANCE, ColorUtils::CONFIG_RGBW, 6},
    {"N-channel, linear", [] { return rgbwSteps(); }, ColorUtils::CONFIG_UNKNOWN, -1, 0, 0.7500114442664225,
     0.2444163111667728, 0.2915179824621759, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGBW, 6},
    {"single channel", [] { return nChannel({0x8000}, ColorUtils::CONFIG_SINGLE_CHANNEL, 4); },
     ColorUtils::CONFIG_UNKNOWN, -1, -1, 0.5000076295109483, 0.64, 0.3299999611947365, LINEAR_TOLERANCE,
     ColorUtils::CONFIG_SINGLE_CHANNEL, 4},
    {"a profile without data has the default ones", [] { return steps(42); }, ColorUtils::CONFIG_UNKNOWN, -1, -1,
     0.7500114442664225, 0.251503140990621, 0.2803163783757057, LINEAR_TOLERANCE, ColorUtils::CONFIG_RGB, 42},
    {"no channels", [] { return nChannel({}, ColorUtils::CONFIG_RGBW, 6); }, ColorUtils::CONFIG_UNKNOWN, -1, -1, 0, 0,
     0, 0, ColorUtils::CONFIG_RGBW, 6},
    {"a dim level without data adds no light", [] { return rgbwSteps(7); }, ColorUtils::CONFIG_UNKNOWN, -1, -1,
     0.5748817559832713, 0.1965493170183981, 0.2434062824433026, CURVE_TOLERANCE, ColorUtils::CONFIG_RGBW, 7},
};

const ToYxyRow OTHER_PROFILE[] = {
    {"toYxy(CONFIG_RGB, GENERIC_RGB, -1) of an RGB colour of profile 7", [] { return steps(7); },
     ColorUtils::CONFIG_RGB, 0, -1, 0.7500114442664225, 0.251503140990621, 0.2803163783757057, LINEAR_TOLERANCE,
     ColorUtils::CONFIG_RGB, 7},
    {"generic colour through profile 7 and its curve", [] { return steps(); }, ColorUtils::CONFIG_UNKNOWN, 7, -1,
     0.5748817559832713, 0.1965493170183981, 0.2434062824433026, CURVE_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"generic colour through profile 6", [] { return steps(); }, ColorUtils::CONFIG_RGBW, 6, -1, 0.5748817559832713,
     0.1932951735867358, 0.2414236190081427, CURVE_TOLERANCE, ColorUtils::CONFIG_RGBW, 0},
    {"HSV through profile 7", [] { return stepsAsHsv(); }, ColorUtils::CONFIG_RGB, 7, 0, 0.7500114442664225,
     0.2350755342587074, 0.2858338609745127, WORD_TOLERANCE, ColorUtils::CONFIG_RGB, 0},
    {"N-channel of profile 7 through profile 6", [] { return rgbwSteps(7); }, ColorUtils::CONFIG_RGBW, 6, -1,
     0.5748817559832713, 0.1979586511751298, 0.2448432959041593, CURVE_TOLERANCE, ColorUtils::CONFIG_RGBW, 7},
};

struct ToNChannelRow
{
    const char *name;
    TrelColor (*color)();
    ColorUtils::ChannelConfiguration configuration;
    int profile;
    int curve;
    Levels16 levels;
    int renderType;
};

const ToNChannelRow TO_NCHANNEL[] = {
    {"generic RGB to itself", [] { return steps(); }, ColorUtils::CONFIG_RGB, 0, -1, {16384, 32768, 49152}, 0},
    {"red", [] { return rgb(65535, 0, 0); }, ColorUtils::CONFIG_RGB, 0, -1, {65535, 0, 0}, 0},
    {"black", [] { return rgb(0, 0, 0); }, ColorUtils::CONFIG_RGB, 0, -1, {0, 0, 0}, 0},
    {"default curve of the target profile",
     [] { return steps(); },
     ColorUtils::CONFIG_RGB,
     7,
     -1,
     {36304, 44313, 56464},
     0},
    {"given curve, linear", [] { return steps(); }, ColorUtils::CONFIG_RGB, 7, 0, {21173, 30902, 49152}, 0},
    {"given curve, normal", [] { return steps(); }, ColorUtils::CONFIG_RGB, 7, 1, {36304, 44313, 56464}, 0},
    {"given curve, tungsten", [] { return steps(); }, ColorUtils::CONFIG_RGBW, 6, 2, {255, 255, 255, 255}, 0},
    {"own profile's data and curve on the way in",
     [] { return steps(7); },
     ColorUtils::CONFIG_RGB,
     7,
     -1,
     {16386, 32773, 49158},
     0},
    {"HSV", [] { return stepsAsHsv(7); }, ColorUtils::CONFIG_RGB, 7, -1, {16386, 32773, 49158}, 0},
    {"HSV to four channels",
     [] { return stepsAsHsv(); },
     ColorUtils::CONFIG_RGBW,
     6,
     0,
     {1142, 18098, 49152, 49152},
     0},
    {"RGB to five channels",
     [] { return steps(); },
     ColorUtils::CONFIG_RGBAW,
     1,
     0,
     {0, 49152, 28294, 11383, 49152},
     0},
    {"Yxy", [] { return halfWhite(); }, ColorUtils::CONFIG_RGB, 0, -1, {32732, 32720, 32768}, 1},
    {"Yxy to RGBW", [] { return halfWhite(9); }, ColorUtils::CONFIG_RGBW, 6, -1, {39799, 42216, 45697, 45697}, 1},
    {"Yxy to RGBA", [] { return halfWhite(9); }, ColorUtils::CONFIG_RGBA, 5, -1, {25957, 40013, 45697, 45697}, 1},
    {"Yxy to RGBAW", [] { return halfWhite(); }, ColorUtils::CONFIG_RGBAW, 1, 0, {1397, 32768, 14470, 32768, 32768}, 1},
    {"Yxy to RGBWW",
     [] { return halfWhite(); },
     ColorUtils::CONFIG_RGBWW,
     2,
     1,
     {28862, 29796, 45697, 45697, 45697},
     1},
    {"Yxy beyond a corner is clamped",
     [] { return yxy(1, 0.1, 0.8); },
     ColorUtils::CONFIG_RGB,
     0,
     -1,
     {0, 65535, 0},
     1},
    {"Yxy beyond an edge is clamped",
     [] { return yxy(1, 0.1, 0.3); },
     ColorUtils::CONFIG_RGB,
     0,
     -1,
     {0, 42008, 65535},
     1},
    {"Yxy beyond another edge is clamped",
     [] { return yxy(1, 0.5, 0.15); },
     ColorUtils::CONFIG_RGBW,
     6,
     0,
     {65535, 0, 27456, 0},
     1},
    {"N-channel rendered from RGB",
     [] { return rgbwSteps(); },
     ColorUtils::CONFIG_RGBAW,
     1,
     -1,
     {0, 49158, 35866, 0, 29723},
     0},
    {"N-channel rendered from Yxy",
     [] { return rgbwSteps(6, 1); },
     ColorUtils::CONFIG_RGBAW,
     1,
     -1,
     {0, 49158, 35866, 0, 29723},
     1},
    {"N-channel with a render type of its own",
     [] { return rgbwSteps(6, 7); },
     ColorUtils::CONFIG_RGB,
     7,
     -1,
     {16824, 32987, 49158},
     7},
    {"same configuration, other profile",
     [] { return rgbwSteps(7); },
     ColorUtils::CONFIG_RGBW,
     6,
     -1,
     {0, 29498, 49158, 24848},
     0},
    {"same profile, other configuration",
     [] { return rgbwSteps(7); },
     ColorUtils::CONFIG_RGB,
     7,
     -1,
     {16386, 32773, 49158},
     0},
    {"a single channel is not solved", [] { return steps(); }, ColorUtils::CONFIG_SINGLE_CHANNEL, 4, -1, {0}, 0},
    {"configuration 0 is not the own one", [] { return steps(); }, ColorUtils::CONFIG_UNKNOWN, 0, -1, {}, 0},
};

struct CopyRow
{
    const char *name;
    TrelColor (*color)();
};

const CopyRow FORMS[] = {
    {"Invalid",
     [] {
         TrelColor color;
         color.setHuelockProfileID(profileId(5));
         return color;
     }},
    {"Rgb", [] { return withAlpha(steps(7), ODD_ALPHA); }},
    {"Hsv", [] { return withAlpha(stepsAsHsv(7), ODD_ALPHA); }},
    // Outside the generic gamut: clamping shows.
    {"Yxy", [] { return withAlpha(yxy(1, 0.1, 0.3, 7), ODD_ALPHA); }},
    {"Nchannel", [] { return withAlpha(rgbwSteps(6, 1), ODD_ALPHA); }},
};

struct MixRow
{
    const char *name;
    TrelColor (*a)();
    TrelColor (*b)();
    bool inYxy;
};

const MixRow MIXES[] = {
    {"RGB, RGB", [] { return steps(); }, [] { return rgb(1, 2, 3); }, false},
    {"HSV, RGB", [] { return stepsAsHsv(); }, [] { return rgb(1, 2, 3); }, false},
    {"RGB, HSV", [] { return steps(); }, [] { return stepsAsHsv(); }, false},
    {"N-channel from RGB, RGB", [] { return rgbwSteps(); }, [] { return steps(); }, false},
    {"RGB, N-channel from RGB", [] { return steps(); }, [] { return rgbwSteps(); }, false},
    {"Yxy, RGB", [] { return halfWhite(); }, [] { return steps(); }, true},
    {"RGB, Yxy", [] { return steps(); }, [] { return halfWhite(); }, true},
    {"Yxy, Yxy", [] { return halfWhite(); }, [] { return halfWhite(7); }, true},
    {"N-channel from Yxy, RGB", [] { return rgbwSteps(6, 1); }, [] { return steps(); }, true},
    {"RGB, N-channel from Yxy", [] { return steps(); }, [] { return rgbwSteps(6, 1); }, true},
    // Its red word 1 is no render type.
    {"RGB whose first word is 1, RGB",
     [] {
         TrelColor color = steps();
         color.setNChannelRenderType(TrelColor::NChannelRenderYxy);
         return color;
     },
     [] { return steps(); }, false},
};

struct MixInYxyRow
{
    const char *name;
    TrelColor (*a)();
    TrelColor (*b)();
    double Y, x, y;
    ColorUtils::ChannelConfiguration resultConfiguration;
};

TrelColor whiteOnRgbw(int profile)
{
    TrelColor color = nChannel({0, 0, 0, 0}, ColorUtils::CONFIG_RGBW);
    color.setYxy16(0.5, 0.3127, 0.3290, 65535, profileId(profile));
    return color;
}

// The alpha of the upper colour is 0x8000 of 0xFFFF, the lower colour is opaque.
const MixInYxyRow OVER[] = {
    {"Yxy over blue", [] { return halfWhite(); }, [] { return rgb(0, 0, 65535); }, 0.7500000001, 0.2408088068,
     0.2101387322, ColorUtils::CONFIG_RGB},
    {"Yxy of profile 7 over blue", [] { return halfWhite(7); }, [] { return rgb(0, 0, 65535, 1); }, 0.5748593378,
     0.1930970876, 0.1532556069, ColorUtils::CONFIG_RGB},
    {"RGB over Yxy: the upper one's profile", [] { return rgb(0, 0, 65535, 0); }, [] { return halfWhite(7); },
     0.7500076295, 0.2408063577, 0.210134683, ColorUtils::CONFIG_RGB},
    {"the upper one's configuration", [] { return whiteOnRgbw(7); }, [] { return rgb(0, 0, 65535); }, 0.5748593378,
     0.1930970876, 0.1532556069, ColorUtils::CONFIG_RGBW},
};

// At progress 0.25 from b to a, both opaque.
const MixInYxyRow BLENDS[] = {
    {"a is Yxy", [] { return halfWhite(7); }, [] { return rgb(65535, 0, 0, 6); }, 0.7726018263, 0.6419176771,
     0.3074053262, ColorUtils::CONFIG_RGB},
    {"b is Yxy", [] { return rgb(65535, 0, 0, 7); }, [] { return whiteOnRgbw(6); }, 0.4055685407, 0.4253521467,
     0.3218826876, ColorUtils::CONFIG_RGBW},
    {"both are Yxy: a decides", [] { return whiteOnRgbw(7); }, [] { return halfWhite(1); }, 0.2664977293, 0.31268992,
     0.3287822305, ColorUtils::CONFIG_RGBW},
    {"a is N-channel from Yxy",
     [] {
         return nChannel({0x4000, 0x8000, 0xC000}, ColorUtils::CONFIG_RGB, 0, 1);
     },
     [] { return rgb(65535, 0, 0, 7); }, 0.8125009537, 0.4605891527, 0.3070556993, ColorUtils::CONFIG_RGB},
    {"a is N-channel from RGB: b decides",
     [] {
         return nChannel({65535, 0, 0}, ColorUtils::CONFIG_RGB, 0, 0);
     },
     [] { return whiteOnRgbw(6); }, 0.4055685407, 0.4253521467, 0.3218826876, ColorUtils::CONFIG_RGBW},
};

struct GradientRow
{
    const char *name;
    QGradientStops stops;
    double position;
    double red, green, blue, alpha;
    const char *endOfBlend; ///< the progress that blend() reports, or null
};

const QGradientStops RED_GREEN_BLUE{{0.25, QColor(255, 0, 0)}, {0.5, QColor(0, 255, 0)}, {0.75, QColor(0, 0, 255)}};
const QGradientStops TWO_EQUAL{{0.0, QColor(51, 102, 204)}, {0.5, QColor(51, 102, 204)}, {1.0, QColor(0, 0, 0)}};
const QGradientStops ONE_STOP{{0.5, QColor(255, 0, 51, 102)}};
const QGradientStops TRANSLUCENT{{0.0, QColor(255, 0, 0, 51)}, {1.0, QColor(0, 0, 255, 255)}};

const GradientRow GRADIENTS[] = {
    {"inside the first interval", RED_GREEN_BLUE, 0.3125, 0.75, 0.25, 0, 1, nullptr},
    {"inside the second interval", RED_GREEN_BLUE, 0.6875, 0, 0.25, 0.75, 1, nullptr},
    {"at the first stop", RED_GREEN_BLUE, 0.25, 1, 0, 0, 1, "1"},
    {"exactly at an inner stop", RED_GREEN_BLUE, 0.5, 0, 1, 0, 1, "0"},
    {"at the last stop", RED_GREEN_BLUE, 0.75, 0, 0, 1, 1, "0"},
    {"above the last stop", RED_GREEN_BLUE, 0.875, 0, 0, 1, 1, nullptr},
    {"not a number", RED_GREEN_BLUE, NOT_A_NUMBER, 0, 0, 1, 1, nullptr},
    {"between equal colours nothing is blended", TWO_EQUAL, 0.0, 0.2, 0.4, 0.8, 1, nullptr},
    {"one stop", ONE_STOP, 0.5, 1, 0, 0.2, 0.4, nullptr},
    {"one stop, elsewhere", ONE_STOP, 0.1, 1, 0, 0.2, 0.4, nullptr},
    {"alpha weighs the colours", TRANSLUCENT, 0.5, 0.1, 0, 0.5, 0.6, nullptr},
    {"no stops set: black to white", {}, 0.25, 0.25, 0.25, 0.25, 1, nullptr},
};

const GradientRow BELOW_FIRST_STOP[] = {
    {"below the first stop", RED_GREEN_BLUE, 0.125, 0, 0, 1, 1, nullptr},
    {"negative", RED_GREEN_BLUE, -1, 0, 0, 1, 1, nullptr},
    {"just below", RED_GREEN_BLUE, 0.2499, 0, 0, 1, 1, nullptr},
};

void blendAt(double progress)
{
    TrelColor::blend(steps(), rgb(0, 0, 0), progress);
}

const ChildCases CHILD_CASES{
    {"emptyF", [] { TrelColor().setNChannelF({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"empty16", [] { TrelColor().setNChannel16({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"empty8", [] { TrelColor().setNChannel8({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"fromEmptyF", [] { TrelColor::fromNChannelF({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"fromEmpty16", [] { TrelColor::fromNChannel16({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"fromEmpty8", [] { TrelColor::fromNChannel8({}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); }},
    {"blendBelow", [] { blendAt(-1e-9); }},
    {"blendAbove", [] { blendAt(1.0000001); }},
    {"blendNaN", [] { blendAt(NOT_A_NUMBER); }},
    {"toWiderThanData", [] { steps().toNChannel16(ColorUtils::CONFIG_RGBW, TrelColor::OWN_PROFILE, -1); }},
    {"convertToWiderThanData",
     [] { steps(6).convertTo(TrelColor::Nchannel, ColorUtils::CONFIG_RGBW, TrelColor::OWN_PROFILE); }},
};

} // namespace

class tst_TrelColorForms : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void nChannelGettersLeaveNullPointersAlone();
    void setYxy_data();
    void setYxy();
    void odd13_setYxyWithBadAlphaHoldsTheRest_data();
    void odd13_setYxyWithBadAlphaHoldsTheRest();
    void getYxy_data();
    void getYxy();
    void getYxyNeedsAllThree();
    void setReal_data();
    void setReal();
    void setRealOutOfRange_data();
    void setRealOutOfRange();
    void setRealOnInvalid();
    void odd14_setRealOnAnotherFormCutsAlpha_data();
    void odd14_setRealOnAnotherFormCutsAlpha();
    void setRealOnNChannel();

    void setLevels_data();
    void setLevels();
    void odd15_setNChannel8TakesAnyAlpha_data();
    void odd15_setNChannel8TakesAnyAlpha();
    void levelsWithBadAlpha_data();
    void levelsWithBadAlpha();
    void levelsFactories();
    void getLevels();
    void getLevelsOfOtherForms_data();
    void getLevelsOfOtherForms();
    void levelsGoWithTheForm_data();
    void levelsGoWithTheForm();
    void odd16_renderTypeIsTheFirstWord();
    void emptyLevelsAreFatal_data();
    void emptyLevelsAreFatal();

    void toYxy_data();
    void toYxy();
    void odd17_toYxyKeepsTheOwnProfile_data();
    void odd17_toYxyKeepsTheOwnProfile();
    void toYxyCopies();
    void toNChannel16_data();
    void toNChannel16();
    void toNChannel16Copies();
    void odd18_toNChannel16StoresMinusOne();
    void widerThanDataIsFatal();
    void genericRgbComesBack();
    void convertTo_data();
    void convertTo();

    void mixOfOpaqueOrClear_data();
    void mixOfOpaqueOrClear();
    void mixColorsRGB();
    void mixColorsxy_data();
    void mixColorsxy();
    void mixChoosesTheSpace_data();
    void mixChoosesTheSpace();
    void blendRgb();
    void blendChoosesTheSpace_data();
    void blendChoosesTheSpace();
    void blendYxy_data();
    void blendYxy();
    void odd19_blendWritesDebugLines();
    void blendOutOfRangeIsFatal_data();
    void blendOutOfRangeIsFatal();
    void colorFromGradient_data();
    void colorFromGradient();
    void odd20_belowTheFirstStopIsTheLast_data();
    void odd20_belowTheFirstStopIsTheLast();

private:
    void checkToYxy(const ToYxyRow &row);
    void checkGradient(const GradientRow &row);
};

// The registries' one debug line, about the missing database, belongs to no test.
void tst_TrelColorForms::initTestCase()
{
    QVERIFY(steps().toYxy().isValid());
}

void tst_TrelColorForms::nChannelGettersLeaveNullPointersAlone()
{
    TrelColor color;
    color.setNChannel16({65535, 1, 2, 3}, ColorUtils::CONFIG_RGB, ColorUtils::PIXELNODE_RGB_CLASS);
    auto configuration = ColorUtils::CONFIG_UNKNOWN;
    auto profile = ColorUtils::GENERIC_RGB;
    color.getNChannelF(nullptr, &configuration, nullptr);
    color.getNChannel16(nullptr, nullptr, &profile);
    color.getNChannel8(nullptr, nullptr, nullptr);
    QCOMPARE(configuration, ColorUtils::CONFIG_RGB);
    QCOMPARE(profile, ColorUtils::PIXELNODE_RGB_CLASS);
}

void tst_TrelColorForms::setYxy_data()
{
    addRows(SET_YXY);
}

void tst_TrelColorForms::setYxy()
{
    QFETCH(int, row);
    const SetYxyRow &expected = SET_YXY[row];
    TrelColor color = nChannel({1, 2, 3, 4}, ColorUtils::CONFIG_RGBA, 5, 1);
    expected.set(color);
    QCOMPARE(color.spec(), TrelColor::Yxy);
    QCOMPARE(alphaWord(color), expected.alpha);
    QCOMPARE(color.getY(), expected.Y);
    QCOMPARE(color.getx(), expected.x);
    QCOMPARE(color.gety(), expected.y);
    QCOMPARE(color.getHuelockProfileID(), profileId(7));
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGBA);
    QCOMPARE(levelWords(color), Levels16());
}

void tst_TrelColorForms::odd13_setYxyWithBadAlphaHoldsTheRest_data()
{
    addRows(BAD_ALPHA);
}

void tst_TrelColorForms::odd13_setYxyWithBadAlphaHoldsTheRest()
{
    QFETCH(int, row);
    const SetYxyRow &expected = BAD_ALPHA[row];
    TrelColor color = nChannel({1, 2, 3, 4}, ColorUtils::CONFIG_RGBA, 5, 1);
    expected.set(color);
    QCOMPARE(color.spec(), TrelColor::Invalid);
    QCOMPARE(alphaWord(color), OPAQUE);
    QCOMPARE(color.getY(), expected.Y);
    QCOMPARE(color.getx(), expected.x);
    QCOMPARE(color.gety(), expected.y);
    QCOMPARE(color.getHuelockProfileID(), profileId(row == 0 ? 0 : 7));
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGB);
    QCOMPARE(levelWords(color), Levels16());
}

void tst_TrelColorForms::getYxy_data()
{
    addRows(GET_YXY);
}

void tst_TrelColorForms::getYxy()
{
    QFETCH(int, row);
    const GetYxyRow &expected = GET_YXY[row];
    TrelColor color = expected.color();
    if (color.isValid())
        color = withAlpha(color, ODD_ALPHA);
    const unsigned int alpha = color.isValid() ? ODD_ALPHA : OPAQUE;

    double Y[4] = {-1, -1, -1, color.getY()};
    double x[4] = {-1, -1, -1, color.getx()};
    double y[4] = {-1, -1, -1, color.gety()};
    int alpha8 = -1;
    unsigned int alpha16 = 0;
    double alphaF = -1;
    color.getYxy8(&Y[0], &x[0], &y[0], &alpha8);
    color.getYxy16(&Y[1], &x[1], &y[1], &alpha16);
    color.getYxyF(&Y[2], &x[2], &y[2], &alphaF);
    QCOMPARE(alpha8, int(alpha >> 24));
    QCOMPARE(alpha16, alpha >> 16);
    QCOMPARE(wordOf(alphaF), alpha);
    for (int i = 0; i < 4; ++i) {
        QVERIFY(near(Y[i], expected.Y, expected.tolerance));
        QVERIFY(near(x[i], expected.x, expected.tolerance));
        QVERIFY(near(y[i], expected.y, expected.tolerance));
    }

    color.getYxy8(&Y[0], &x[0], &y[0], nullptr);
    color.getYxy16(&Y[1], &x[1], &y[1], nullptr);
    color.getYxyF(&Y[2], &x[2], &y[2], nullptr);
    QVERIFY(near(Y[0] + Y[1] + Y[2], 3 * expected.Y, 3 * expected.tolerance));
}

void tst_TrelColorForms::getYxyNeedsAllThree()
{
    const TrelColor color = yxy(0.5, 0.3, 0.25);
    for (int missing = 0; missing < 3; ++missing) {
        double values[3] = {7, 7, 7};
        double *const Y = missing == 0 ? nullptr : &values[0];
        double *const x = missing == 1 ? nullptr : &values[1];
        double *const y = missing == 2 ? nullptr : &values[2];
        unsigned int alpha = 7;
        color.getYxy16(Y, x, y, &alpha);
        color.getYxy8(Y, x, y, nullptr);
        color.getYxyF(Y, x, y, nullptr);
        QCOMPARE(alpha, 7u);
        for (double value : values)
            QCOMPARE(value, 7.0);
    }
}

void tst_TrelColorForms::setReal_data()
{
    addRows(REALS_IN_RANGE);
}

void tst_TrelColorForms::setReal()
{
    QFETCH(int, row);
    const SetRealRow &set = REALS_IN_RANGE[row];
    TrelColor color = nChannel({1, 2, 3, 4}, ColorUtils::CONFIG_RGBA);
    color.setYxyF(0.5, 0.3, 0.25, realOf(ODD_ALPHA), profileId(7));
    (color.*set.set)(set.value);

    const double Y = set.set == &TrelColor::setY ? set.value : 0.5;
    const double x = set.set == &TrelColor::setx ? set.value : 0.3;
    const double y = set.set == &TrelColor::sety ? set.value : 0.25;
    QCOMPARE(color.spec(), TrelColor::Yxy);
    QCOMPARE(color.getY(), Y);
    QCOMPARE(color.getx(), x);
    QCOMPARE(color.gety(), y);
    QCOMPARE(alphaWord(color), ODD_ALPHA);
    QCOMPARE(color.getHuelockProfileID(), profileId(7));
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGBA);
}

void tst_TrelColorForms::setRealOutOfRange_data()
{
    addRows(REALS_OUT_OF_RANGE);
}

void tst_TrelColorForms::setRealOutOfRange()
{
    QFETCH(int, row);
    const SetRealRow &set = REALS_OUT_OF_RANGE[row];
    for (const CopyRow &form : FORMS) {
        TrelColor color = form.color();
        (color.*set.set)(set.value);
        QCOMPARE(describe(color), describe(TrelColor()));
        QCOMPARE(int(color.getNChannelRenderType()), 0);
    }
}

void tst_TrelColorForms::setRealOnInvalid()
{
    TrelColor color;
    color.setHuelockProfileID(profileId(5));
    color.setx(0.25);
    QCOMPARE(describe(color), QString("3 1 5 ffffffff 0 0.25 0"));

    TrelColor holding = invalidHoldingYxy();
    holding.setY(0.75);
    QCOMPARE(holding.spec(), TrelColor::Yxy);
    QCOMPARE(holding.getY(), 0.75);
    QCOMPARE(holding.getx(), 0.3);
    QCOMPARE(holding.gety(), 0.25);
}

void tst_TrelColorForms::odd14_setRealOnAnotherFormCutsAlpha_data()
{
    addRows(REALS_IN_RANGE);
}

void tst_TrelColorForms::odd14_setRealOnAnotherFormCutsAlpha()
{
    QFETCH(int, row);
    const SetRealRow &set = REALS_IN_RANGE[row];
    for (const TrelColor &start : {steps(7), stepsAsHsv(7)}) {
        TrelColor color = withAlpha(start, ODD_ALPHA);
        (color.*set.set)(set.value);
        QCOMPARE(color.spec(), TrelColor::Yxy);
        QCOMPARE(alphaWord(color), 0x12341234u);
        QCOMPARE(color.getHuelockProfileID(), profileId(7));
        QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGB);
        if (set.set == &TrelColor::setY)
            QCOMPARE(color.getY(), set.value);
        else
            QVERIFY(near(color.getY(), 0.5748817559832713, CURVE_TOLERANCE));
        if (set.set == &TrelColor::setx)
            QCOMPARE(color.getx(), set.value);
        else
            QVERIFY(near(color.getx(), 0.1965493170183981, CURVE_TOLERANCE));
        if (set.set == &TrelColor::sety)
            QCOMPARE(color.gety(), set.value);
        else
            QVERIFY(near(color.gety(), 0.2434062824433026, CURVE_TOLERANCE));
    }
}

void tst_TrelColorForms::setRealOnNChannel()
{
    TrelColor color = withAlpha(rgbwSteps(6, 1), ODD_ALPHA);
    color.sety(0.5);
    QCOMPARE(color.spec(), TrelColor::Yxy);
    QCOMPARE(alphaWord(color), 0x12341234u);
    QCOMPARE(color.getHuelockProfileID(), profileId(6));
    QVERIFY(near(color.getY(), 0.5748817559832713, CURVE_TOLERANCE));
    QVERIFY(near(color.getx(), 0.1979586511751298, CURVE_TOLERANCE));
    QCOMPARE(color.gety(), 0.5);
    QCOMPARE(levelWords(color), Levels16());
}

void tst_TrelColorForms::setLevels_data()
{
    addRows(SET_LEVELS);
}

void tst_TrelColorForms::setLevels()
{
    QFETCH(int, row);
    const SetLevelsRow &expected = SET_LEVELS[row];
    for (const CopyRow &form : FORMS) {
        TrelColor color = form.color();
        expected.set(color);
        QCOMPARE(color.spec(), TrelColor::Nchannel);
        QCOMPARE(alphaWord(color), expected.alpha);
        QCOMPARE(levelWords(color), expected.words);
        QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGB);
        QCOMPARE(color.getHuelockProfileID(), ColorUtils::GENERIC_RGB);
    }
}

void tst_TrelColorForms::odd15_setNChannel8TakesAnyAlpha_data()
{
    addRows(UNCHECKED_ALPHA);
}

void tst_TrelColorForms::odd15_setNChannel8TakesAnyAlpha()
{
    QFETCH(int, row);
    const SetLevelsRow &expected = UNCHECKED_ALPHA[row];
    TrelColor color;
    expected.set(color);
    QCOMPARE(color.spec(), TrelColor::Nchannel);
    QCOMPARE(alphaWord(color), expected.alpha);
    QCOMPARE(levelWords(color), expected.words);
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGBA);
    QCOMPARE(color.getHuelockProfileID(), profileId(5));
}

void tst_TrelColorForms::levelsWithBadAlpha_data()
{
    addRows(CHECKED_ALPHA);
}

void tst_TrelColorForms::levelsWithBadAlpha()
{
    QFETCH(int, row);
    const SetLevelsRow &expected = CHECKED_ALPHA[row];
    TrelColor color = rgbwSteps(6, 1);
    expected.set(color);
    QCOMPARE(color.spec(), TrelColor::Invalid);
    QCOMPARE(alphaWord(color), expected.alpha);
    QCOMPARE(levelWords(color), expected.words);
    QCOMPARE(int(color.getNChannelRenderType()), 0);
    QCOMPARE(color.getChannelConfiguration(), ColorUtils::CONFIG_RGBA);
    QCOMPARE(color.getHuelockProfileID(), profileId(5));
}

void tst_TrelColorForms::levelsFactories()
{
    const QString expected = "4 6 5 80808080 00000000 level 00000000 level ffffffff";
    QCOMPARE(describe(TrelColor::fromNChannel8({128, 0, 255}, ColorUtils::CONFIG_RGBA, profileId(5))), expected);
    QCOMPARE(describe(TrelColor::fromNChannel16({0x8080, 0, 65535}, ColorUtils::CONFIG_RGBA, profileId(5))), expected);
    QCOMPARE(describe(TrelColor::fromNChannelF({128 / 255.0, 0.0, 1.0}, ColorUtils::CONFIG_RGBA, profileId(5))),
             expected);
}

void tst_TrelColorForms::getLevels()
{
    TrelColor color = TrelColor::fromNChannel16({65535, 0, 65535, 100}, ColorUtils::CONFIG_RGB, profileId(7));
    QVector<int> levels8(9, -1);
    Levels16 levels16;
    QVector<double> levelsF{1, 2};
    auto configuration = ColorUtils::CONFIG_UNKNOWN;
    auto profile = ColorUtils::GENERIC_RGB;
    color.getNChannel8(&levels8, &configuration, &profile);
    QCOMPARE(levels8, (QVector<int>{255, 0, 255, 0}));
    QCOMPARE(configuration, ColorUtils::CONFIG_RGB);
    QCOMPARE(profile, profileId(7));

    color.setHuelockProfileID(profileId(9));
    color.getNChannel16(&levels16, nullptr, &profile);
    QCOMPARE(levels16, (Levels16{65535, 0, 65535, 100}));
    QCOMPARE(profile, profileId(9));

    configuration = ColorUtils::CONFIG_UNKNOWN;
    color.getNChannelF(&levelsF, &configuration, nullptr);
    QCOMPARE(levelsF, (QVector<double>{1.0, 0.0, 1.0, 6553700 / 4294967295.0}));
    QCOMPARE(configuration, ColorUtils::CONFIG_RGB);
}

void tst_TrelColorForms::getLevelsOfOtherForms_data()
{
    QTest::addColumn<int>("row");
    for (int i = TrelColor::Invalid; i <= TrelColor::Yxy; ++i)
        QTest::newRow(FORMS[i].name) << i;
}

void tst_TrelColorForms::getLevelsOfOtherForms()
{
    QFETCH(int, row);
    const TrelColor color = FORMS[row].color();
    const unsigned int alpha = color.isValid() ? ODD_ALPHA : OPAQUE;
    QVector<double> levelsF;
    QVector<int> levels8;
    Levels16 levels16;
    color.getNChannelF(&levelsF);
    color.getNChannel16(&levels16);
    color.getNChannel8(&levels8);
    QCOMPARE(levelsF, QVector<double>{realOf(alpha)});
    QCOMPARE(levels16, Levels16{alpha >> 16});
    QCOMPARE(levels8, QVector<int>{int(alpha >> 24)});
}

void tst_TrelColorForms::levelsGoWithTheForm_data()
{
    addRows(WHOLE_SETTERS);
}

void tst_TrelColorForms::levelsGoWithTheForm()
{
    QFETCH(int, row);
    TrelColor color = rgbwSteps();
    WHOLE_SETTERS[row].set(color);
    QVERIFY(color.spec() != TrelColor::Nchannel);
    QCOMPARE(levelWords(color), Levels16());
}

void tst_TrelColorForms::odd16_renderTypeIsTheFirstWord()
{
    TrelColor color = rgb(0x1234, 0, 0);
    color.setNChannel16({65535, 1, 2, 3}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
    QCOMPARE(int(color.getNChannelRenderType()), 0x12341234);

    TrelColor rendered = rgbwSteps(6, 1);
    rendered.setNChannelF({1.0, 0.5}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
    QCOMPARE(rendered.getNChannelRenderType(), TrelColor::NChannelRenderYxy);
    rendered.setNChannel8({255, 1}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
    QCOMPARE(rendered.getNChannelRenderType(), TrelColor::NChannelRenderYxy);

    TrelColor red = rgb(65535, 2, 3);
    red.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    QCOMPARE(red.spec(), TrelColor::Rgb);
    QCOMPARE(wordOf(red.redF()), 1u);
    QCOMPARE(red.green16(), 2u);

    TrelColor hue = stepsAsHsv();
    hue.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    QCOMPARE(hue.hueF(), 1 / 36000.0);

    TrelColor none;
    none.setNChannelRenderType(TrelColor::NChannelRenderYxy);
    QCOMPARE(none.spec(), TrelColor::Invalid);
    QCOMPARE(none.getNChannelRenderType(), TrelColor::NChannelRenderYxy);
}

void tst_TrelColorForms::emptyLevelsAreFatal_data()
{
    QTest::addColumn<QString>("child");
    for (const char *name : {"emptyF", "empty16", "empty8", "fromEmptyF", "fromEmpty16", "fromEmpty8"})
        QTest::newRow(name) << QString(name);
}

void tst_TrelColorForms::emptyLevelsAreFatal()
{
    QFETCH(QString, child);
    QVERIFY(diesWith(child, "index out of range"));
}

void tst_TrelColorForms::checkToYxy(const ToYxyRow &row)
{
    const TrelColor result =
        withAlpha(row.color(), ODD_ALPHA).toYxy(row.configuration, profileId(row.profile), row.curve);
    QCOMPARE(result.spec(), TrelColor::Yxy);
    QVERIFY(near(result.getY(), row.Y, row.tolerance));
    QVERIFY(near(result.getx(), row.x, row.tolerance));
    QVERIFY(near(result.gety(), row.y, row.tolerance));
    QCOMPARE(alphaWord(result), ODD_ALPHA);
    QCOMPARE(result.getChannelConfiguration(), row.resultConfiguration);
    QCOMPARE(result.getHuelockProfileID(), profileId(row.resultProfile));
    QCOMPARE(levelWords(result), Levels16());
}

void tst_TrelColorForms::toYxy_data()
{
    addRows(TO_YXY);
}

void tst_TrelColorForms::toYxy()
{
    QFETCH(int, row);
    checkToYxy(TO_YXY[row]);
}

void tst_TrelColorForms::odd17_toYxyKeepsTheOwnProfile_data()
{
    addRows(OTHER_PROFILE);
}

void tst_TrelColorForms::odd17_toYxyKeepsTheOwnProfile()
{
    QFETCH(int, row);
    checkToYxy(OTHER_PROFILE[row]);
}

void tst_TrelColorForms::toYxyCopies()
{
    for (const TrelColor &color : {TrelColor(), invalidHoldingYxy(), withAlpha(whiteOnRgbw(6), ODD_ALPHA)})
        QCOMPARE(describe(color.toYxy(ColorUtils::CONFIG_RGBAW, profileId(1), 2)), describe(color));
}

void tst_TrelColorForms::toNChannel16_data()
{
    addRows(TO_NCHANNEL);
}

void tst_TrelColorForms::toNChannel16()
{
    QFETCH(int, row);
    const ToNChannelRow &expected = TO_NCHANNEL[row];
    const TrelColor result = withAlpha(expected.color(), ODD_ALPHA)
                                 .toNChannel16(expected.configuration, profileId(expected.profile), expected.curve);
    QCOMPARE(result.spec(), TrelColor::Nchannel);
    QVERIFY(nearLevels(channelLevels(result), expected.levels, LEVEL_TOLERANCE));
    for (unsigned int word : levelWords(result))
        QCOMPARE(word >> 16, word & 0xFFFFu);
    QCOMPARE(alphaWord(result), ODD_ALPHA);
    QCOMPARE(result.getChannelConfiguration(), expected.configuration);
    QCOMPARE(result.getHuelockProfileID(), profileId(expected.profile));
    QCOMPARE(int(result.getNChannelRenderType()), expected.renderType);
}

void tst_TrelColorForms::toNChannel16Copies()
{
    const TrelColor color = withAlpha(rgbwSteps(6, 1), ODD_ALPHA);
    QCOMPARE(describe(color.toNChannel16(ColorUtils::CONFIG_RGBW, profileId(6), 2)), describe(color));

    const TrelColor invalid = invalidHoldingYxy();
    QCOMPARE(describe(invalid.toNChannel16(ColorUtils::CONFIG_RGBW, profileId(6), -1)), describe(invalid));
}

void tst_TrelColorForms::odd18_toNChannel16StoresMinusOne()
{
    // Default emitter data, since −1 is a profile without data; the curve is that of profile 7.
    const Levels16 expected{0, 34609, 49158};
    const TrelColor solved = steps(7).toNChannel16(ColorUtils::CONFIG_RGB, TrelColor::OWN_PROFILE, -1);
    QVERIFY(nearLevels(channelLevels(solved), expected, LEVEL_TOLERANCE));
    QCOMPARE(solved.getHuelockProfileID(), profileId(-1));

    const TrelColor converted = steps(7).convertTo(TrelColor::Nchannel, ColorUtils::CONFIG_RGB, TrelColor::OWN_PROFILE);
    QCOMPARE(describe(converted), describe(solved));

    // −1 is not the colour's profile 7: solved anew.
    const TrelColor own = nChannel({0x4000, 0x8000, 0xC000}, ColorUtils::CONFIG_RGB, 7);
    const TrelColor again = own.toNChannel16(ColorUtils::CONFIG_RGB, TrelColor::OWN_PROFILE, -1);
    QVERIFY(nearLevels(channelLevels(again), expected, LEVEL_TOLERANCE));
    QCOMPARE(again.getHuelockProfileID(), profileId(-1));

    const TrelColor stored = nChannel({0x4000, 0x8000, 0xC000}, ColorUtils::CONFIG_RGB, -1, 1);
    QCOMPARE(describe(stored.toNChannel16(ColorUtils::CONFIG_RGB, TrelColor::OWN_PROFILE, -1)), describe(stored));
}

void tst_TrelColorForms::widerThanDataIsFatal()
{
    QVERIFY(diesWith("toWiderThanData", "index out of range"));
    QVERIFY(diesWith("convertToWiderThanData", "index out of range"));
}

void tst_TrelColorForms::genericRgbComesBack()
{
    std::mt19937 random(20240229); // any fixed seed
    std::uniform_int_distribution<unsigned int> level(0, 65535);
    for (int i = 0; i < 500; ++i) {
        const Levels16 levels{level(random), level(random), level(random)};
        const TrelColor solved =
            rgb(levels[0], levels[1], levels[2]).toNChannel16(ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB, -1);
        QVERIFY(nearLevels(channelLevels(solved), levels, LEVEL_TOLERANCE));
    }
}

void tst_TrelColorForms::convertTo_data()
{
    QTest::addColumn<int>("source");
    QTest::addColumn<int>("target");
    for (int source = TrelColor::Invalid; source <= TrelColor::Nchannel; ++source) {
        for (int target = -1; target <= 5; ++target)
            QTest::addRow("%s to %d", FORMS[source].name, target) << source << target;
    }
}

void tst_TrelColorForms::convertTo()
{
    QFETCH(int, source);
    QFETCH(int, target);
    const auto configuration = ColorUtils::CONFIG_RGB;
    const auto profile = profileId(2);
    const TrelColor color = FORMS[source].color();
    TrelColor expected;
    if (target == source && target != TrelColor::Nchannel)
        expected = color;
    else if (target == TrelColor::Rgb)
        expected = color.toRgb16(true);
    else if (target == TrelColor::Hsv)
        expected = color.toHsv16();
    else if (target == TrelColor::Yxy)
        expected = color.toYxy(configuration, profile, -1);
    else if (target == TrelColor::Nchannel)
        expected = color.toNChannel16(configuration, profile, -1);

    const TrelColor result = color.convertTo(static_cast<TrelColor::Spec>(target), configuration, profile);
    const bool convertible = source != TrelColor::Invalid && target >= TrelColor::Rgb && target <= TrelColor::Nchannel;
    QCOMPARE(int(result.spec()), convertible ? target : int(TrelColor::Invalid));
    QCOMPARE(describe(result), describe(expected));
}

void tst_TrelColorForms::mixOfOpaqueOrClear_data()
{
    addRows(FORMS);
}

void tst_TrelColorForms::mixOfOpaqueOrClear()
{
    QFETCH(int, row);
    const TrelColor other = withAlpha(whiteOnRgbw(6), ODD_ALPHA);
    TrelColor color = FORMS[row].color();
    color.setAlpha16(65535);
    QCOMPARE(describe(TrelColor::mix(color, other)), describe(color));
    color.setAlpha16(0);
    QCOMPARE(describe(TrelColor::mix(color, other)), describe(other));
    QCOMPARE(describe(TrelColor::mix(withAlpha(other, 0), color)), describe(color));
}

void tst_TrelColorForms::mixColorsRGB()
{
    const TrelColor a = TrelColor::fromRgbF(1.0, 0.5, 0.25, 0.25, profileId(7));
    const TrelColor b = TrelColor::fromRgbF(0.0, 0.5, 1.0, 0.5, profileId(5));
    for (const TrelColor &mixed : {TrelColor::mixColorsRGB(a, b), TrelColor::mix(a, b)}) {
        QCOMPARE(mixed.spec(), TrelColor::Rgb);
        QVERIFY(near(mixed.redF(), 0.25, WORD_TOLERANCE));
        QVERIFY(near(mixed.greenF(), 0.5, WORD_TOLERANCE));
        QVERIFY(near(mixed.blueF(), 0.8125, WORD_TOLERANCE));
        QVERIFY(near(mixed.alphaF(), 0.625, WORD_TOLERANCE));
        QCOMPARE(mixed.getHuelockProfileID(), ColorUtils::GENERIC_RGB);
    }

    // HSV is read through its RGB conversion, and opaque colours are mixed as any others.
    const TrelColor hsv = TrelColor::mixColorsRGB(stepsAsHsv(), rgb(1, 2, 3));
    QVERIFY(near(hsv.redF(), 0x4000 / 65535.0, WORD_TOLERANCE));
    QVERIFY(near(hsv.greenF(), 0x8000 / 65535.0, WORD_TOLERANCE));
    QVERIFY(near(hsv.blueF(), 0xC000 / 65535.0, WORD_TOLERANCE));
    QCOMPARE(alphaWord(hsv), OPAQUE);
}

void tst_TrelColorForms::mixColorsxy_data()
{
    addRows(OVER);
}

void tst_TrelColorForms::mixColorsxy()
{
    QFETCH(int, row);
    const MixInYxyRow &expected = OVER[row];
    TrelColor a = expected.a();
    a.setAlpha16(0x8000);
    const TrelColor b = expected.b();
    for (const TrelColor &mixed : {TrelColor::mixColorsxy(a, b), TrelColor::mix(a, b)}) {
        QCOMPARE(mixed.spec(), TrelColor::Yxy);
        QVERIFY(near(mixed.getY(), expected.Y, LEVEL_CHROMATICITY_TOLERANCE));
        QVERIFY(near(mixed.getx(), expected.x, LEVEL_CHROMATICITY_TOLERANCE));
        QVERIFY(near(mixed.gety(), expected.y, LEVEL_CHROMATICITY_TOLERANCE));
        QVERIFY(near(mixed.alphaF(), 1.0, WORD_TOLERANCE));
        QCOMPARE(mixed.getChannelConfiguration(), expected.resultConfiguration);
        QCOMPARE(mixed.getHuelockProfileID(), ColorUtils::GENERIC_RGB);
    }
}

void tst_TrelColorForms::mixChoosesTheSpace_data()
{
    addRows(MIXES);
}

void tst_TrelColorForms::mixChoosesTheSpace()
{
    QFETCH(int, row);
    const TrelColor a = withAlpha(MIXES[row].a(), ODD_ALPHA);
    const TrelColor b = MIXES[row].b();
    const TrelColor expected = MIXES[row].inYxy ? TrelColor::mixColorsxy(a, b) : TrelColor::mixColorsRGB(a, b);
    QCOMPARE(expected.spec(), MIXES[row].inYxy ? TrelColor::Yxy : TrelColor::Rgb);
    QCOMPARE(describe(TrelColor::mix(a, b)), describe(expected));
}

void tst_TrelColorForms::blendRgb()
{
    const TrelColor a = TrelColor::fromRgbF(1.0, 0.5, 0.25, 0.25, profileId(7));
    const TrelColor b = TrelColor::fromRgbF(0.0, 0.5, 1.0, 0.5, profileId(5));
    const DebugLines debug;
    const TrelColor blended = TrelColor::blend(a, b, 0.25);
    QCOMPARE(debug.lines(), QStringList());
    QCOMPARE(blended.spec(), TrelColor::Rgb);
    QVERIFY(near(blended.redF(), 0.0625, WORD_TOLERANCE));
    QVERIFY(near(blended.greenF(), 0.21875, WORD_TOLERANCE));
    QVERIFY(near(blended.blueF(), 0.390625, WORD_TOLERANCE));
    QVERIFY(near(blended.alphaF(), 0.4375, WORD_TOLERANCE));
    QCOMPARE(blended.getHuelockProfileID(), ColorUtils::GENERIC_RGB);
}

void tst_TrelColorForms::blendChoosesTheSpace_data()
{
    addRows(MIXES);
}

void tst_TrelColorForms::blendChoosesTheSpace()
{
    QFETCH(int, row);
    const DebugLines debug;
    const TrelColor blended = TrelColor::blend(MIXES[row].a(), MIXES[row].b(), 0.5);
    QCOMPARE(blended.spec(), MIXES[row].inYxy ? TrelColor::Yxy : TrelColor::Rgb);
    QCOMPARE(debug.lines().isEmpty(), !MIXES[row].inYxy);
}

void tst_TrelColorForms::blendYxy_data()
{
    addRows(BLENDS);
}

void tst_TrelColorForms::blendYxy()
{
    QFETCH(int, row);
    const MixInYxyRow &expected = BLENDS[row];
    const DebugLines debug;
    const TrelColor blended = TrelColor::blend(expected.a(), expected.b(), 0.25);
    QCOMPARE(blended.spec(), TrelColor::Yxy);
    QVERIFY(near(blended.getY(), expected.Y, LEVEL_CHROMATICITY_TOLERANCE));
    QVERIFY(near(blended.getx(), expected.x, LEVEL_CHROMATICITY_TOLERANCE));
    QVERIFY(near(blended.gety(), expected.y, LEVEL_CHROMATICITY_TOLERANCE));
    QCOMPARE(alphaWord(blended), OPAQUE);
    QCOMPARE(blended.getChannelConfiguration(), expected.resultConfiguration);
    QCOMPARE(blended.getHuelockProfileID(), ColorUtils::GENERIC_RGB);
}

void tst_TrelColorForms::odd19_blendWritesDebugLines()
{
    const TrelColor a = withAlpha(steps(7), ODD_ALPHA);
    const TrelColor b = withAlpha(whiteOnRgbw(6), ODD_ALPHA);
    {
        const DebugLines debug;
        QCOMPARE(describe(TrelColor::blend(a, b, 0.0)), describe(b));
        QVERIFY(isEndOfBlend(debug.lines(), "0"));
    }
    {
        const DebugLines debug;
        QCOMPARE(describe(TrelColor::blend(a, b, 1.0)), describe(a));
        QVERIFY(isEndOfBlend(debug.lines(), "1"));
    }
    const DebugLines debug;
    const TrelColor blended = TrelColor::blend(a, b, 0.5);
    const QVector<double> numbers = numbersIn(debug.lines());
    QCOMPARE(int(numbers.size()), 3);
    // A debug stream writes six significant digits.
    QVERIFY(near(numbers[0], blended.getY(), 1e-6));
    QVERIFY(near(numbers[1], blended.getx(), 1e-6));
    QVERIFY(near(numbers[2], blended.gety(), 1e-6));
}

void tst_TrelColorForms::blendOutOfRangeIsFatal_data()
{
    QTest::addColumn<QString>("child");
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("below 0") << "blendBelow" << QByteArray("progress >= 0.0");
    QTest::newRow("above 1") << "blendAbove" << QByteArray("progress <= 1.0");
    QTest::newRow("not a number") << "blendNaN" << QByteArray("progress >= 0.0");
}

void tst_TrelColorForms::blendOutOfRangeIsFatal()
{
    QFETCH(QString, child);
    QFETCH(QByteArray, text);
    QVERIFY(diesWith(child, text));
}

void tst_TrelColorForms::checkGradient(const GradientRow &row)
{
    QLinearGradient gradient;
    if (!row.stops.isEmpty())
        gradient.setStops(row.stops);
    const DebugLines debug;
    const TrelColor color = TrelColor::colorFromGradient(gradient, row.position);
    if (row.endOfBlend)
        QVERIFY(isEndOfBlend(debug.lines(), row.endOfBlend));
    else
        QCOMPARE(debug.lines(), QStringList());
    QCOMPARE(color.spec(), TrelColor::Rgb);
    QVERIFY(near(color.redF(), row.red, WORD_TOLERANCE));
    QVERIFY(near(color.greenF(), row.green, WORD_TOLERANCE));
    QVERIFY(near(color.blueF(), row.blue, WORD_TOLERANCE));
    QVERIFY(near(color.alphaF(), row.alpha, WORD_TOLERANCE));
}

void tst_TrelColorForms::colorFromGradient_data()
{
    addRows(GRADIENTS);
}

void tst_TrelColorForms::colorFromGradient()
{
    QFETCH(int, row);
    checkGradient(GRADIENTS[row]);
}

void tst_TrelColorForms::odd20_belowTheFirstStopIsTheLast_data()
{
    addRows(BELOW_FIRST_STOP);
}

void tst_TrelColorForms::odd20_belowTheFirstStopIsTheLast()
{
    QFETCH(int, row);
    checkGradient(BELOW_FIRST_STOP[row]);
}

TREL_TEST_MAIN(tst_TrelColorForms, CHILD_CASES)

#include "tst_TrelColorForms.moc"
