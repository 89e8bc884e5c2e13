#include "CCTImageUtils.h"
#include "CCTUtils.h"
#include "ColorUtils.h"
#include "Curve.h"
#include "CurveFactory.h"
#include "HueLockProfile.h"
#include "HuelockProfileFactory.h"
#include "IOMode.h"
#include "IOModeFactory.h"
#include "KestraProjectHelper.h"
#include "TestSupport.h"
#include "TrelColor.h"
#include "TrelColorLibrary.h"
#include "TrelColorLibraryItem.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <memory>

/// Any number in any place: every public function with a number or an enumerator among its arguments meets NaN,
/// infinities, the neighbours of every limit and identifiers that nobody has given out. What comes back is what the
/// headers say; what goes on inside is for the sanitizers to judge.
class tst_AnyNumber : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void realSetters_data();
    void realSetters();
    void intSetters_data();
    void intSetters();
    void idSetters_data();
    void idSetters();
    void functions_data();
    void functions();
    void fatal_data();
    void fatal();
    void everyFunctionIsMet_data();
    void everyFunctionIsMet();
};

namespace {

using Config = ColorUtils::ChannelConfiguration;
using Profile = ColorUtils::HuelockProfileID;
using Mode = ColorUtils::IOModeID;
using Limits = std::numeric_limits<double>;

constexpr double NOT_A_NUMBER = Limits::quiet_NaN();
constexpr double ENDLESS = Limits::infinity();
constexpr double LARGEST = Limits::max();
constexpr double TOO_LARGE_FOR_64_BITS = 9223372036854775808.0;
constexpr int LINEAR = 0;
constexpr int NORMAL = 1;
constexpr int TUNGSTEN = 2;
constexpr int PRE_COMPENSATION = 3;
constexpr int SOFTWARE = 1;
constexpr int LAST_REGION = 21;

/// NaN, both ends, the smallest numbers, and each limit between its neighbours; of either sign.
QVector<double> makeReals()
{
    const double limits[] = {0.0,   0.5,          0.6,          0.8,          0.9,          1.0,
                             255.0, 256.0,        359.0,        360.0,        1900.0,       1950,
                             11000, 12500,        32767.0,      36000,        65516,        65535,
                             65536, 2147483647.0, 2147483648.0, 4294967295.0, 4294967296.0, TOO_LARGE_FOR_64_BITS};
    QVector<double> values{NOT_A_NUMBER, ENDLESS, LARGEST, 1e308, Limits::min(), std::nextafter(Limits::min(), 0.0)};
    for (const double limit : limits)
        values << limit << std::nextafter(limit, ENDLESS) << std::nextafter(limit, -ENDLESS);
    const QVector<double> positive = values;
    for (const double value : positive)
        values.append(-value);
    return values;
}

const QVector<double> REALS = makeReals();

/// Few enough to be tried in several places at once.
const QVector<double> FEW_REALS{
    NOT_A_NUMBER, ENDLESS, -ENDLESS, LARGEST, -1e308, Limits::denorm_min(), -0.0, 0.3, 1.0, std::nextafter(1.0, 2.0),
    -65536};

const QVector<int> INTS{INT_MIN, INT_MIN + 1, -65536, -32768, -32767, -361,  -360,        -359,   -2,    -1,
                        0,       1,           2,      3,      4,      9,     10,          20,     21,    22,
                        41,      42,          254,    255,    256,    257,   358,         359,    360,   361,
                        1899,    1900,        1949,   1950,   1951,   10999, 11000,       11001,  12499, 12500,
                        32766,   32767,       32768,  65534,  65535,  65536, INT_MAX - 1, INT_MAX};

/// Every identifier of every list, and others.
const QVector<int> IDS{INT_MIN, -2, -1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 42, INT_MAX};

QStringList s_faults;
QStringList s_warnings;
double s_now = 0;
int s_passed = 0;

/// Collects what the library says; there is too much of it to announce each line.
class Messages
{
public:
    Messages()
        : m_next(qInstallMessageHandler(record))
    {
        s_warnings.clear();
    }
    Messages(const Messages &) = delete;
    Messages &operator=(const Messages &) = delete;
    ~Messages()
    {
        qInstallMessageHandler(m_next);
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type != QtDebugMsg)
            s_warnings.append(text);
    }

    QtMessageHandler m_next;
};

void check(bool holds, const char *what)
{
    constexpr int ENOUGH = 10;
    if (!holds && s_faults.size() < ENOUGH)
        s_faults.append(QString("%1: %2").arg(s_now, 0, 'g', 17).arg(what));
}

/// Calls \a pass with each value, whatever its warnings.
template <typename Values, typename F>
void withEach(const Values &values, F pass)
{
    for (const auto value : values) {
        s_now = double(value);
        ++s_passed;
        pass(value);
    }
}

template <typename F>
void withReals(F pass)
{
    withEach(REALS, pass);
}

template <typename F>
void withInts(F pass)
{
    withEach(INTS, pass);
}

template <typename F>
void withIds(F pass)
{
    withEach(IDS, pass);
}

/// Two and three places at once.
template <typename F>
void withPairs(F pass)
{
    for (const double a : FEW_REALS)
        withEach(FEW_REALS, [&](double b) { pass(a, b); });
}

template <typename F>
void withTriples(F pass)
{
    for (const double a : FEW_REALS)
        withPairs([&](double b, double c) { pass(a, b, c); });
}

bool isShare(double value)
{
    return value >= 0 && value <= 1;
}

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSame(QPointF a, QPointF b)
{
    return isSame(a.x(), b.x()) && isSame(a.y(), b.y());
}

bool isSame(const QLineF &a, const QLineF &b)
{
    return isSame(a.p1(), b.p1()) && isSame(a.p2(), b.p2());
}

/// The low bits of \a value without its fraction; 0 for what 64 bits do not hold.
unsigned int lowBits(double value, double modulus)
{
    if (!(std::abs(value) < TOO_LARGE_FOR_64_BITS))
        return 0;
    const double rest = std::fmod(std::trunc(value), modulus);
    return unsigned(rest < 0 ? rest + modulus : rest);
}

unsigned int low16(double value)
{
    return lowBits(value, 65536.0);
}

/// The nearest int; 0 for NaN.
int nearestInt(double value)
{
    if (std::isnan(value))
        return 0;
    return int(std::min(std::max(std::trunc(value), double(INT_MIN)), double(INT_MAX)));
}

/// What a caller hands out to be written to, with a border on either side that nobody may touch.
template <typename T>
class Bordered
{
public:
    explicit Bordered(int size)
        : m_values(std::size_t(size + 2 * BORDER), FILLER)
    {
    }
    T *out()
    {
        return m_values.data() + BORDER;
    }
    T at(int i) const
    {
        return m_values[std::size_t(BORDER + i)];
    }
    int size() const
    {
        return int(m_values.size()) - 2 * BORDER;
    }
    /// Whether nothing but the first \a count values was written.
    bool isUntouchedBehind(int count) const
    {
        const auto isFiller = [](T value) { return value == FILLER; };
        return std::all_of(m_values.cbegin(), m_values.cbegin() + BORDER, isFiller)
               && std::all_of(m_values.cbegin() + BORDER + count, m_values.cend(), isFiller);
    }

private:
    static constexpr int BORDER = 16;
    static constexpr T FILLER = T(165);
    std::vector<T> m_values;
};

QByteArray streamed(const TrelColor &color)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << color;
    return bytes;
}

TrelColor fromStream(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    TrelColor color;
    stream >> color;
    return color;
}

QVector<double> yxyOf(const TrelColor &color)
{
    return {color.getY(), color.getx(), color.gety()};
}

bool isDefault(const TrelColor &color)
{
    QVector<unsigned int> levels;
    color.getNChannel16(&levels);
    return !color.isValid() && streamed(color) == streamed(TrelColor()) && levels.size() == 1
           && yxyOf(color) == QVector<double>(3, 0.0) && color.getChannelConfiguration() == ColorUtils::CONFIG_RGB
           && color.getHuelockProfileID() == ColorUtils::GENERIC_RGB;
}

void checkRgb(const TrelColor &color)
{
    check(color.red8() >= 0 && color.red8() <= 255, "red8");
    check(color.green8() >= 0 && color.green8() <= 255, "green8");
    check(color.blue8() >= 0 && color.blue8() <= 255, "blue8");
    unsigned int words[3] = {};
    color.getRgb16(&words[0], &words[1], &words[2]);
    check(words[0] <= 65535 && words[1] <= 65535 && words[2] <= 65535, "getRgb16");
    check(words[0] == color.red16() && words[1] == color.green16() && words[2] == color.blue16(), "red16, …");
    check(isShare(color.redF()) && isShare(color.greenF()) && isShare(color.blueF()), "redF, …");
    check((color.rgba() & 0xFFFFFF) == (color.rgb() & 0xFFFFFF), "rgba");
    check(color.getQColor(true).isValid(), "getQColor");
}

void checkHsv(const TrelColor &color)
{
    constexpr int LARGEST_HUE = INT_MAX / 100 + 1; // whole degrees of the largest word
    check(color.hue8() == color.hue16() && color.hue16() <= 359 && color.hue16() >= -LARGEST_HUE, "hue");
    check(std::isfinite(color.hueF()), "hueF");
    check(color.saturation8() >= 0 && color.saturation8() <= 255 && color.saturation16() <= 65535, "saturation");
    check(color.value8() >= 0 && color.value8() <= 255 && color.value16() <= 65535, "value");
    check(isShare(color.saturationF()) && isShare(color.valueF()), "saturationF, valueF");
}

/// Chromaticities of other forms are those of a fixture's light, or NaN where it gives none.
void checkYxy(const TrelColor &color)
{
    if (color.spec() == TrelColor::Yxy || !color.isValid())
        return;
    const QVector<double> values = yxyOf(color);
    check(isShare(values[0]), "getY");
    check((isShare(values[1]) && isShare(values[2])) || (std::isnan(values[1]) && std::isnan(values[2])), "getx, gety");
}

void checkLevels(const TrelColor &color)
{
    QVector<int> bytes;
    QVector<unsigned int> words;
    QVector<double> shares;
    color.getNChannel8(&bytes);
    color.getNChannel16(&words);
    color.getNChannelF(&shares);
    check(bytes.size() == words.size() && words.size() == shares.size() && !words.isEmpty(), "number of levels");
    check(color.spec() == TrelColor::Nchannel || words.size() == 1, "levels of another form");
    check(std::all_of(bytes.cbegin(), bytes.cend(), [](int level) { return level >= 0 && level <= 255; }), "levels 8");
    check(std::all_of(words.cbegin(), words.cend(), [](unsigned int level) { return level <= 65535; }), "levels 16");
    check(std::all_of(shares.cbegin(), shares.cend(), isShare), "levels F");
}

/// What is behind configuration and profile; a number too small for the decimals loses its sign.
QString valuesOf(const QString &text)
{
    return text.section(';', 3).replace("-0.000000", "0.000000");
}

/// A value string says the same when it is read and written again, but for what reading does not restore.
void checkText(const TrelColor &color)
{
    const QString text = color.aName();
    check(text.isEmpty() == !color.isValid(), "empty value string");
    const QString again = TrelColor(text).aName();
    check(TrelColor(again).aName() == again, "value string, read twice");
    if (color.spec() == TrelColor::Nchannel)
        check(again == text, "value string of levels");
    else
        check(valuesOf(again) == valuesOf(text), "value string");
    static const QRegularExpression name("^#[0-9a-f]{12}$");
    static const QRegularExpression name8("^#[0-9a-f]{6}$");
    check(name.match(color.name()).hasMatch() && name8.match(color.name8()).hasMatch(), "hexadecimal name");
}

void checkConversions(const TrelColor &color)
{
    for (const int id : {-1, 0, 1, 2, 3, 4, 5, 42, INT_MAX}) {
        const auto spec = TrelColor::Spec(id);
        const TrelColor converted = color.convertTo(spec, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
        const bool isForm = id >= TrelColor::Rgb && id <= TrelColor::Nchannel;
        check(converted.spec() == (isForm && color.isValid() ? spec : TrelColor::Invalid), "convertTo");
        check(!converted.isValid() || converted.alpha16() == color.alpha16(), "convertTo's alpha");
    }
}

void checkMixing(const TrelColor &color)
{
    const TrelColor under(0x336699);
    for (const TrelColor &result :
         {TrelColor::premultiply(color), TrelColor::unpremultiply(color), TrelColor::mix(color, under),
          TrelColor::mixColorsRGB(color, under), TrelColor::blend(color, under, 0.3)})
        check(result.alpha16() <= 65535 && (result.isValid() || result.aName().isEmpty()), "mixture");
    check(TrelColor::mixColorsRGB(color, under).isValid(), "mixColorsRGB");
    check(TrelColor::blend(color, under, 0.3).isValid(), "blend");
}

void checkEquality(const TrelColor &color)
{
    const TrelColor copy = color;
    const QVector<double> values = yxyOf(color);
    const bool hasNaN = color.spec() == TrelColor::Yxy
                        && std::any_of(values.cbegin(), values.cend(), [](double value) { return std::isnan(value); });
    check((copy == color) == (color.isValid() && !hasNaN), "equality");
    check((copy != color) != (copy == color), "inequality");
}

/// Whatever is stored, every getter and conversion has an answer.
void checkReadable(const TrelColor &color)
{
    check(color.isValid() == (color.spec() != TrelColor::Invalid), "isValid");
    check(color.alpha8() >= 0 && color.alpha8() <= 255 && color.alpha16() <= 65535 && isShare(color.alphaF()), "alpha");
    check(!color.isBlack() || color.name() == "#000000000000", "black");
    const bool isWhole = color.spec() != TrelColor::Yxy && color.spec() != TrelColor::Nchannel;
    check(streamed(color).size() == 17, "stream form");
    check(!isWhole || streamed(fromStream(streamed(color))) == streamed(color), "stream form, read again");
    QString debug;
    QDebug(&debug) << color;
    check(debug.trimmed().isEmpty() == (color.spec() == TrelColor::Nchannel), "debug form");
    checkRgb(color);
    checkHsv(color);
    checkYxy(color);
    checkLevels(color);
    checkText(color);
    checkConversions(color);
    checkMixing(color);
    checkEquality(color);
}

/// One of each form, none of them black, white or opaque.
QVector<TrelColor> starts()
{
    TrelColor yxy;
    yxy.setYxyF(0.5, 0.4, 0.3, 0.7);
    return {TrelColor(), TrelColor::fromRgb8(10, 20, 30, 40), TrelColor::fromHsv8(200, 100, 50, 150), yxy,
            TrelColor::fromNChannel16({500, 1000, 2000, 3000, 4000}, ColorUtils::CONFIG_RGBA,
                                      ColorUtils::WASHLINE_PZ6_RGBA)};
}

// Setters and factories with one argument to try; the others are in range. A factory replaces the colour.

// What a row does with colour c and value v.
#define REAL(statement) [](Color &c, double v) { statement; }
#define INT(statement) [](Color &c, int v) { statement; }
#define WORD(statement)                                                                                                \
    [](Color &c, int value) {                                                                                          \
        const auto v = unsigned(value);                                                                                \
        statement;                                                                                                     \
    }
#define ID(statement) [](Color &c, int id) { statement; }

constexpr TrelColor::Spec SAME = TrelColor::Spec(-1);

struct RealSetter
{
    const char *function;
    const char *argument;
    TrelColor::Spec spec; ///< of the result; SAME for that of the colour before
    const char *warning;  ///< of a value out of range; null where nothing is said
    void (*set)(TrelColor &color, double value);
    double (*get)(const TrelColor &color);
    bool takesMinusOne = false;
};

constexpr char SET_RGB_F[] = "TrelColor::setRgbF: RGB parameters out of range";
constexpr char SET_HSV_F[] = "TrelColor::setHsvF: HSV parameters out of range";
constexpr char FROM_RGB_F[] = "TrelColor::fromRgbF: RGB parameters out of range";
constexpr char FROM_HSV_F[] = "TrelColor::fromHsvF: HSV parameters out of range";
constexpr char FROM_XYY[] = "TrelColor::fromxyY: xyY parameters out of range";

using Color = TrelColor;

double alphaOf(const Color &c)
{
    return c.alphaF();
}
double redOf(const Color &c)
{
    return c.redF();
}
double greenOf(const Color &c)
{
    return c.greenF();
}
double blueOf(const Color &c)
{
    return c.blueF();
}
double hueOf(const Color &c)
{
    return c.hueF();
}
double saturationOf(const Color &c)
{
    return c.saturationF();
}
double valueOf(const Color &c)
{
    return c.valueF();
}
double YOf(const Color &c)
{
    return c.getY();
}
double xOf(const Color &c)
{
    return c.getx();
}
double yOf(const Color &c)
{
    return c.gety();
}

// clang-format off
const RealSetter REAL_SETTERS[] = {
    {"TrelColor::setAlphaF", "alpha", SAME, nullptr, REAL(c.setAlphaF(v)), alphaOf},
    {"TrelColor::setRedF", "red", Color::Rgb, nullptr, REAL(c.setRedF(v)), redOf},
    {"TrelColor::setGreenF", "green", Color::Rgb, nullptr, REAL(c.setGreenF(v)), greenOf},
    {"TrelColor::setBlueF", "blue", Color::Rgb, nullptr, REAL(c.setBlueF(v)), blueOf},
    {"TrelColor::setY", "Y", Color::Yxy, nullptr, REAL(c.setY(v)), YOf},
    {"TrelColor::setx", "x", Color::Yxy, nullptr, REAL(c.setx(v)), xOf},
    {"TrelColor::sety", "y", Color::Yxy, nullptr, REAL(c.sety(v)), yOf},
    {"TrelColor::setRgbF", "r", Color::Rgb, SET_RGB_F, REAL(c.setRgbF(v, 0.2, 0.3, 0.4)), redOf},
    {"TrelColor::setRgbF", "g", Color::Rgb, SET_RGB_F, REAL(c.setRgbF(0.1, v, 0.3, 0.4)), greenOf},
    {"TrelColor::setRgbF", "b", Color::Rgb, SET_RGB_F, REAL(c.setRgbF(0.1, 0.2, v, 0.4)), blueOf},
    {"TrelColor::setRgbF", "a", Color::Rgb, SET_RGB_F, REAL(c.setRgbF(0.1, 0.2, 0.3, v)), alphaOf},
    {"TrelColor::setHsvF", "h", Color::Hsv, SET_HSV_F, REAL(c.setHsvF(v, 0.2, 0.3, 0.4)), hueOf, true},
    {"TrelColor::setHsvF", "s", Color::Hsv, SET_HSV_F, REAL(c.setHsvF(0.1, v, 0.3, 0.4)), saturationOf},
    {"TrelColor::setHsvF", "v", Color::Hsv, SET_HSV_F, REAL(c.setHsvF(0.1, 0.2, v, 0.4)), valueOf},
    {"TrelColor::setHsvF", "a", Color::Hsv, SET_HSV_F, REAL(c.setHsvF(0.1, 0.2, 0.3, v)), alphaOf},
    {"TrelColor::fromRgbF", "r", Color::Rgb, FROM_RGB_F, REAL(c = Color::fromRgbF(v, 0.2, 0.3, 0.4)), redOf},
    {"TrelColor::fromRgbF", "g", Color::Rgb, FROM_RGB_F, REAL(c = Color::fromRgbF(0.1, v, 0.3, 0.4)), greenOf},
    {"TrelColor::fromRgbF", "b", Color::Rgb, FROM_RGB_F, REAL(c = Color::fromRgbF(0.1, 0.2, v, 0.4)), blueOf},
    {"TrelColor::fromRgbF", "a", Color::Rgb, FROM_RGB_F, REAL(c = Color::fromRgbF(0.1, 0.2, 0.3, v)), alphaOf},
    {"TrelColor::fromHsvF", "h", Color::Hsv, FROM_HSV_F, REAL(c = Color::fromHsvF(v, 0.2, 0.3, 0.4)), hueOf, true},
    {"TrelColor::fromHsvF", "s", Color::Hsv, FROM_HSV_F, REAL(c = Color::fromHsvF(0.1, v, 0.3, 0.4)), saturationOf},
    {"TrelColor::fromHsvF", "v", Color::Hsv, FROM_HSV_F, REAL(c = Color::fromHsvF(0.1, 0.2, v, 0.4)), valueOf},
    {"TrelColor::fromHsvF", "a", Color::Hsv, FROM_HSV_F, REAL(c = Color::fromHsvF(0.1, 0.2, 0.3, v)), alphaOf},
    {"TrelColor::fromxyY", "x", Color::Yxy, FROM_XYY, REAL(c = Color::fromxyY(v, 0.3, 0.5)), xOf},
    {"TrelColor::fromxyY", "y", Color::Yxy, FROM_XYY, REAL(c = Color::fromxyY(0.3, v, 0.5)), yOf},
    {"TrelColor::fromxyY", "Y", Color::Yxy, FROM_XYY, REAL(c = Color::fromxyY(0.3, 0.3, v)), YOf},
};
// clang-format on

/// NaN passes the silent setters (ODD-10): as 0 into a word, as itself into a real. A colour of another form becomes
/// RGB by way of setRgbF(), which refuses it.
void checkNaN(const RealSetter &setter, const TrelColor &before, const TrelColor &after, const QStringList &warnings)
{
    const bool isRefusedLater = setter.spec == TrelColor::Rgb && before.spec() != TrelColor::Rgb;
    if (setter.warning || isRefusedLater) {
        check(isDefault(after), "NaN is refused");
        check(warnings == QStringList(setter.warning ? setter.warning : SET_RGB_F), "warning of NaN");
        return;
    }
    const double expected = setter.spec == TrelColor::Yxy ? NOT_A_NUMBER : 0.0;
    check(warnings.isEmpty() && isSame(setter.get(after), expected), "NaN passes");
}

void checkReal(const RealSetter &setter, const TrelColor &before, double value)
{
    constexpr double HUE_STEP = 1.0 / 36000;
    constexpr double WORD_STEP = 1.0 / 4294967295.0;
    TrelColor after = before;
    s_warnings.clear();
    setter.set(after, value);
    const QStringList warnings = s_warnings;
    if (std::isnan(value)) {
        checkNaN(setter, before, after, warnings);
    } else if (isShare(value) || (setter.takesMinusOne && value == -1.0)) {
        check(warnings.isEmpty(), "no warning in range");
        check(after.spec() == (setter.spec == SAME ? before.spec() : setter.spec), "form");
        const double step = setter.takesMinusOne ? HUE_STEP : setter.spec == TrelColor::Yxy ? 0.0 : WORD_STEP;
        check(value == -1.0 || std::abs(setter.get(after) - value) <= step, "what was set is read");
    } else {
        check(isDefault(after), "out of range");
        check(warnings == (setter.warning ? QStringList(setter.warning) : QStringList()), "warning");
    }
    checkReadable(after);
}

struct IntSetter
{
    const char *function;
    const char *argument;
    TrelColor::Spec spec;
    const char *warning;
    int lowest;
    int highest;
    void (*set)(TrelColor &color, int value);
    int (*get)(const TrelColor &color);
    bool isHue = false;
};

constexpr char SET_RGB_8[] = "TrelColor::setRgb8: RGB parameters out of range";
constexpr char SET_RGB_16[] = "TrelColor::setRgb16: RGB parameters out of range";
constexpr char SET_HSV_8[] = "TrelColor::setHsv8: HSV parameters out of range";
constexpr char SET_HSV_16[] = "TrelColor::setHsv16: HSV parameters out of range";
constexpr char SET_ALPHA_8[] = "TrelColor::setAlpha8: alpha parameter out of range";
constexpr char FROM_RGB_8[] = "TrelColor::fromRgb: RGB parameters out of range";
constexpr char FROM_RGB_16[] = "TrelColor::fromRgb16: RGB parameters out of range";
constexpr char FROM_HSV[] = "TrelColor::fromHsv: HSV parameters out of range";

int alpha8Of(const Color &c)
{
    return c.alpha8();
}
int red8Of(const Color &c)
{
    return c.red8();
}
int green8Of(const Color &c)
{
    return c.green8();
}
int blue8Of(const Color &c)
{
    return c.blue8();
}
int saturation8Of(const Color &c)
{
    return c.saturation8();
}
int value8Of(const Color &c)
{
    return c.value8();
}
int hue16Of(const Color &c)
{
    return c.hue16();
}
int alpha16Of(const Color &c)
{
    return int(c.alpha16());
}
int red16Of(const Color &c)
{
    return int(c.red16());
}
int green16Of(const Color &c)
{
    return int(c.green16());
}
int blue16Of(const Color &c)
{
    return int(c.blue16());
}
int saturation16Of(const Color &c)
{
    return int(c.saturation16());
}
int value16Of(const Color &c)
{
    return int(c.value16());
}

void setRgbWords(Color &c, unsigned int r, unsigned int g, unsigned int b)
{
    const unsigned int words[] = {r, g, b};
    c.setRgb16(words);
}

// A negative int is a large word.
// clang-format off
const IntSetter INT_SETTERS[] = {
    {"TrelColor::setAlpha8", "alpha", SAME, SET_ALPHA_8, 0, 255, INT(c.setAlpha8(v)), alpha8Of},
    {"TrelColor::setAlpha16", "alpha", SAME, nullptr, 0, 65535, WORD(c.setAlpha16(v)), alpha16Of},
    {"TrelColor::setRed8", "red", Color::Rgb, nullptr, 0, 255, INT(c.setRed8(v)), red8Of},
    {"TrelColor::setGreen8", "green", Color::Rgb, nullptr, 0, 255, INT(c.setGreen8(v)), green8Of},
    {"TrelColor::setBlue8", "blue", Color::Rgb, nullptr, 0, 255, INT(c.setBlue8(v)), blue8Of},
    {"TrelColor::setRed16", "red", Color::Rgb, nullptr, 0, 65535, WORD(c.setRed16(v)), red16Of},
    {"TrelColor::setGreen16", "green", Color::Rgb, nullptr, 0, 65535, WORD(c.setGreen16(v)), green16Of},
    {"TrelColor::setBlue16", "blue", Color::Rgb, nullptr, 0, 65535, WORD(c.setBlue16(v)), blue16Of},
    {"TrelColor::setRgb8", "r", Color::Rgb, SET_RGB_8, 0, 255, INT(c.setRgb8(v, 2, 3, 4)), red8Of},
    {"TrelColor::setRgb8", "g", Color::Rgb, SET_RGB_8, 0, 255, INT(c.setRgb8(1, v, 3, 4)), green8Of},
    {"TrelColor::setRgb8", "b", Color::Rgb, SET_RGB_8, 0, 255, INT(c.setRgb8(1, 2, v, 4)), blue8Of},
    {"TrelColor::setRgb8", "a", Color::Rgb, SET_RGB_8, 0, 255, INT(c.setRgb8(1, 2, 3, v)), alpha8Of},
    {"TrelColor::setRgb16", "r", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c.setRgb16(v, 2u, 3u, 4u)), red16Of},
    {"TrelColor::setRgb16", "g", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c.setRgb16(1u, v, 3u, 4u)), green16Of},
    {"TrelColor::setRgb16", "b", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c.setRgb16(1u, 2u, v, 4u)), blue16Of},
    {"TrelColor::setRgb16", "a", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c.setRgb16(1u, 2u, 3u, v)), alpha16Of},
    {"TrelColor::setRgb16", "rgb[0]", Color::Rgb, SET_RGB_16, 0, 65535, WORD(setRgbWords(c, v, 2, 3)), red16Of},
    {"TrelColor::setRgb16", "rgb[1]", Color::Rgb, SET_RGB_16, 0, 65535, WORD(setRgbWords(c, 1, v, 3)), green16Of},
    {"TrelColor::setRgb16", "rgb[2]", Color::Rgb, SET_RGB_16, 0, 65535, WORD(setRgbWords(c, 1, 2, v)), blue16Of},
    {"TrelColor::TrelColor", "r", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c = Color(v, 2u, 3u, 4u)), red16Of},
    {"TrelColor::TrelColor", "g", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c = Color(1u, v, 3u, 4u)), green16Of},
    {"TrelColor::TrelColor", "b", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c = Color(1u, 2u, v, 4u)), blue16Of},
    {"TrelColor::TrelColor", "a", Color::Rgb, SET_RGB_16, 0, 65535, WORD(c = Color(1u, 2u, 3u, v)), alpha16Of},
    {"TrelColor::fromRgb8", "r", Color::Rgb, FROM_RGB_8, 0, 255, INT(c = Color::fromRgb8(v, 2, 3, 4)), red8Of},
    {"TrelColor::fromRgb8", "g", Color::Rgb, FROM_RGB_8, 0, 255, INT(c = Color::fromRgb8(1, v, 3, 4)), green8Of},
    {"TrelColor::fromRgb8", "b", Color::Rgb, FROM_RGB_8, 0, 255, INT(c = Color::fromRgb8(1, 2, v, 4)), blue8Of},
    {"TrelColor::fromRgb8", "a", Color::Rgb, FROM_RGB_8, 0, 255, INT(c = Color::fromRgb8(1, 2, 3, v)), alpha8Of},
    {"TrelColor::fromRgb16", "r", Color::Rgb, FROM_RGB_16, 0, 65535, WORD(c = Color::fromRgb16(v, 2, 3, 4)), red16Of},
    {"TrelColor::fromRgb16", "g", Color::Rgb, FROM_RGB_16, 0, 65535, WORD(c = Color::fromRgb16(1, v, 3, 4)), green16Of},
    {"TrelColor::fromRgb16", "b", Color::Rgb, FROM_RGB_16, 0, 65535, WORD(c = Color::fromRgb16(1, 2, v, 4)), blue16Of},
    {"TrelColor::fromRgb16", "a", Color::Rgb, FROM_RGB_16, 0, 65535, WORD(c = Color::fromRgb16(1, 2, 3, v)), alpha16Of},
    {"TrelColor::setHsv8", "h", Color::Hsv, SET_HSV_8, 0, 360, INT(c.setHsv8(v, 2, 3, 4)), hue16Of, true},
    {"TrelColor::setHsv8", "s", Color::Hsv, SET_HSV_8, 0, 255, INT(c.setHsv8(1, v, 3, 4)), saturation8Of},
    {"TrelColor::setHsv8", "v", Color::Hsv, SET_HSV_8, 0, 255, INT(c.setHsv8(1, 2, v, 4)), value8Of},
    {"TrelColor::setHsv8", "a", Color::Hsv, SET_HSV_8, 0, 255, INT(c.setHsv8(1, 2, 3, v)), alpha8Of},
    {"TrelColor::setHsv16", "h", Color::Hsv, SET_HSV_16, INT_MIN, 65535, INT(c.setHsv16(v, 2, 3, 4)), hue16Of, true},
    {"TrelColor::setHsv16", "s", Color::Hsv, SET_HSV_16, 0, 65535, WORD(c.setHsv16(1, v, 3, 4)), saturation16Of},
    {"TrelColor::setHsv16", "v", Color::Hsv, SET_HSV_16, 0, 65535, WORD(c.setHsv16(1, 2, v, 4)), value16Of},
    {"TrelColor::setHsv16", "a", Color::Hsv, SET_HSV_16, 0, 65535, WORD(c.setHsv16(1, 2, 3, v)), alpha16Of},
    {"TrelColor::fromHsv8", "h", Color::Hsv, FROM_HSV, -1, 359, INT(c = Color::fromHsv8(v, 2, 3, 4)), hue16Of, true},
    {"TrelColor::fromHsv8", "s", Color::Hsv, FROM_HSV, 0, 255, INT(c = Color::fromHsv8(1, v, 3, 4)), saturation8Of},
    {"TrelColor::fromHsv8", "v", Color::Hsv, FROM_HSV, 0, 255, INT(c = Color::fromHsv8(1, 2, v, 4)), value8Of},
    {"TrelColor::fromHsv8", "a", Color::Hsv, FROM_HSV, 0, 255, INT(c = Color::fromHsv8(1, 2, 3, v)), alpha8Of},
    {"TrelColor::fromHsv16", "h", Color::Hsv, FROM_HSV, -1, 359, INT(c = Color::fromHsv16(v, 2, 3, 4)), hue16Of, true},
    {"TrelColor::fromHsv16", "s", Color::Hsv, FROM_HSV, 0, 65535, WORD(c = Color::fromHsv16(1, v, 3, 4)),
     saturation16Of},
    {"TrelColor::fromHsv16", "v", Color::Hsv, FROM_HSV, 0, 65535, WORD(c = Color::fromHsv16(1, 2, v, 4)), value16Of},
    {"TrelColor::fromHsv16", "a", Color::Hsv, FROM_HSV, 0, 65535, WORD(c = Color::fromHsv16(1, 2, 3, v)), alpha16Of},
};
// clang-format on

void checkInt(const IntSetter &setter, const TrelColor &before, int value)
{
    TrelColor after = before;
    s_warnings.clear();
    setter.set(after, value);
    const QStringList warnings = s_warnings;
    if (value >= setter.lowest && value <= setter.highest) {
        check(warnings.isEmpty(), "no warning in range");
        check(after.spec() == (setter.spec == SAME ? before.spec() : setter.spec), "form");
        check(setter.get(after) == (setter.isHue ? value % 360 : value), "what was set is read");
    } else {
        check(isDefault(after), "out of range");
        check(warnings == (setter.warning ? QStringList(setter.warning) : QStringList()), "warning");
    }
    checkReadable(after);
}

/// Setters that store an identifier as it is.
struct IdSetter
{
    const char *function;
    const char *argument;
    void (*set)(TrelColor &color, int id);
    int (*get)(const TrelColor &color);
};

int profileOf(const Color &c)
{
    return c.getHuelockProfileID();
}
int configurationOf(const Color &c)
{
    return c.getChannelConfiguration();
}
int renderTypeOf(const Color &c)
{
    return c.getNChannelRenderType();
}

const unsigned int WORDS[] = {1000, 2000, 3000};

// clang-format off
const IdSetter ID_SETTERS[] = {
    {"TrelColor::setHuelockProfileID", "profile", ID(c.setHuelockProfileID(Profile(id))), profileOf},
    {"TrelColor::setRgb8", "profile", ID(c.setRgb8(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::setRgb16", "profile", ID(c.setRgb16(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::setRgb16", "profile of three words", ID(c.setRgb16(WORDS, Profile(id))), profileOf},
    {"TrelColor::setRgbF", "profile", ID(c.setRgbF(0.1, 0.2, 0.3, 0.4, Profile(id))), profileOf},
    {"TrelColor::setHsv8", "profile", ID(c.setHsv8(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::setHsv16", "profile", ID(c.setHsv16(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::setHsvF", "profile", ID(c.setHsvF(0.1, 0.2, 0.3, 0.4, Profile(id))), profileOf},
    {"TrelColor::setYxy8", "profile", ID(c.setYxy8(0.1, 0.2, 0.3, 4, Profile(id))), profileOf},
    {"TrelColor::setYxy16", "profile", ID(c.setYxy16(0.1, 0.2, 0.3, 4, Profile(id))), profileOf},
    {"TrelColor::setYxyF", "profile", ID(c.setYxyF(0.1, 0.2, 0.3, 0.4, Profile(id))), profileOf},
    {"TrelColor::fromRgb8", "profile", ID(c = Color::fromRgb8(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::fromRgb16", "profile", ID(c = Color::fromRgb16(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::fromRgbF", "profile", ID(c = Color::fromRgbF(0.1, 0.2, 0.3, 0.4, Profile(id))), profileOf},
    {"TrelColor::fromHsv8", "profile", ID(c = Color::fromHsv8(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::fromHsv16", "profile", ID(c = Color::fromHsv16(1, 2, 3, 4, Profile(id))), profileOf},
    {"TrelColor::fromHsvF", "profile", ID(c = Color::fromHsvF(0.1, 0.2, 0.3, 0.4, Profile(id))), profileOf},
    {"TrelColor::fromxyY", "profile", ID(c = Color::fromxyY(0.1, 0.2, 0.3, Profile(id))), profileOf},
    {"TrelColor::setNChannel8", "profile",
     ID(c.setNChannel8({1, 2, 3, 4}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::setNChannel16", "profile",
     ID(c.setNChannel16({1, 2, 3, 4}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::setNChannelF", "profile",
     ID(c.setNChannelF({0.1, 0.2, 0.3}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::fromNChannel8", "profile",
     ID(c = Color::fromNChannel8({1, 2}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::fromNChannel16", "profile",
     ID(c = Color::fromNChannel16({1, 2}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::fromNChannelF", "profile",
     ID(c = Color::fromNChannelF({0.1}, ColorUtils::CONFIG_RGB, Profile(id))), profileOf},
    {"TrelColor::setNChannel8", "configuration",
     ID(c.setNChannel8({1, 2, 3, 4}, Config(id), ColorUtils::GENERIC_RGB)), configurationOf},
    {"TrelColor::setNChannel16", "configuration",
     ID(c.setNChannel16({1, 2, 3, 4}, Config(id), Profile(5))), configurationOf},
    {"TrelColor::setNChannelF", "configuration",
     ID(c.setNChannelF({0.1, 0.2}, Config(id), Profile(1))), configurationOf},
    {"TrelColor::fromNChannel8", "configuration",
     ID(c = Color::fromNChannel8({1, 2}, Config(id), Profile(42))), configurationOf},
    {"TrelColor::fromNChannel16", "configuration",
     ID(c = Color::fromNChannel16({1}, Config(id), Profile(-1))), configurationOf},
    {"TrelColor::fromNChannelF", "configuration",
     ID(c = Color::fromNChannelF({0.1, 2.0}, Config(id), Profile(9))), configurationOf},
    {"TrelColor::setNChannelRenderType", "type",
     ID(c.setNChannelRenderType(Color::NChannelRenderType(id))), renderTypeOf},
};
// clang-format on

struct Subject
{
    const char *name;
    QStringList functions;
    void (*run)();
};

// Every other function of TrelColor that takes a number.

void setAnyYxy()
{
    withTriples([](double a, double b, double c) {
        TrelColor color;
        color.setYxyF(a, b, c, 0.3);
        check(isSame(color.getY(), a) && isSame(color.getx(), b) && isSame(color.gety(), c), "setYxyF stores it");
        checkReadable(color);
    });
    withReals([](double value) {
        TrelColor color;
        color.setYxy16(value, 0.3, 0.3, 4000);
        check(isSame(color.getY(), value) && color.alpha16() == 4000, "setYxy16 stores it");
        checkReadable(color);
        color.setYxy8(0.5, value, 0.3, 40);
        check(isSame(color.getx(), value) && color.alpha8() == 40, "setYxy8 stores it");
        checkReadable(color);
    });
}

/// ODD-13: an alpha out of range leaves an invalid colour that holds the rest.
template <typename Alpha>
void checkYxyAlpha(void (*set)(TrelColor &color, Alpha alpha), Alpha alpha, bool isInRange)
{
    TrelColor color(0x102030);
    set(color, alpha);
    check(color.spec() == (isInRange ? TrelColor::Yxy : TrelColor::Invalid), "form");
    check(yxyOf(color) == QVector<double>({0.5, 0.4, 0.3}), "Y, x and y stay");
    check(color.getHuelockProfileID() == ColorUtils::PIXELNODE_RGB_CLASS, "profile stays");
    checkReadable(color);
}

void setAnyYxyAlpha()
{
    constexpr auto PROFILE = ColorUtils::PIXELNODE_RGB_CLASS;
    withReals([](double alpha) {
        const bool isInRange = isShare(alpha) || std::isnan(alpha);
        checkYxyAlpha<double>([](Color &c, double a) { c.setYxyF(0.5, 0.4, 0.3, a, PROFILE); }, alpha, isInRange);
    });
    withInts([](int alpha) {
        const bool is8 = alpha >= 0 && alpha <= 255;
        const bool is16 = alpha >= 0 && alpha <= 65535;
        checkYxyAlpha<int>([](Color &c, int a) { c.setYxy8(0.5, 0.4, 0.3, a, PROFILE); }, alpha, is8);
        checkYxyAlpha<int>([](Color &c, int a) { c.setYxy16(0.5, 0.4, 0.3, unsigned(a), PROFILE); }, alpha, is16);
    });
}

void constructFromAnything()
{
    withPairs([](double x, double y) {
        const TrelColor color(x, y);
        check(color.spec() == TrelColor::Yxy && color.getY() == 1.0, "Y is 1");
        check(isSame(color.getx(), x) && isSame(color.gety(), y), "x and y");
        checkReadable(color);
    });
    withInts([](int value) {
        check(TrelColor(unsigned(value)).rgba() == (0xFF000000 | unsigned(value)), "from 0xRRGGBB");
        check(TrelColor::fromRgb(unsigned(value)).rgba() == (0xFF000000 | unsigned(value)), "fromRgb");
        check(TrelColor::fromRgba(unsigned(value)).rgba() == unsigned(value), "fromRgba");
    });
    for (int i = 0; i < 32; ++i) {
        const TrelColor color{Qt::GlobalColor(i)};
        check(color.isValid() == (i <= Qt::transparent), "global colour");
        checkReadable(color);
    }
}

/// Levels are not range-checked: what a word cannot hold keeps its low bits.
void setAnyLevels()
{
    withPairs([](double a, double b) {
        const auto color = TrelColor::fromNChannelF({0.5, a, b}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW);
        QVector<double> levels;
        color.getNChannelF(&levels);
        constexpr double WORDS_IN_ALL = 4294967296.0;
        check(levels.value(1) == lowBits(a * 4294967295.0 + 0.5, WORDS_IN_ALL) / 4294967295.0, "first level");
        check(levels.value(2) == lowBits(b * 4294967295.0 + 0.5, WORDS_IN_ALL) / 4294967295.0, "second level");
        checkReadable(color);
    });
    withReals([](double alpha) {
        TrelColor color;
        color.setNChannelF({alpha, 0.1}, ColorUtils::CONFIG_SINGLE_CHANNEL, ColorUtils::GENERIC_SINGLE_CHANNEL);
        check(color.isValid() == (isShare(alpha) || std::isnan(alpha)), "alpha");
        check(color.getHuelockProfileID() == ColorUtils::GENERIC_SINGLE_CHANNEL, "profile stays");
        checkReadable(color);
    });
    withInts([](int value) {
        TrelColor color;
        color.setNChannel16({unsigned(value), unsigned(value)}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
        check(color.isValid() == (value >= 0 && value <= 65535), "16-bit alpha");
        checkReadable(color);
        color.setNChannel8({value, value}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB); // ODD-15
        check(color.isValid(), "8-bit alpha");
        checkReadable(color);
    });
}

/// Light that a fixture of \a profile gives cannot be told to have more channels than its data.
Config widestOf(int profile)
{
    return ColorUtils::nChannelConfigurationForHuelockProfileID(Profile(profile));
}

bool fits(int profile, int configuration)
{
    const int data =
        TristimulusFactory::getInstance()->getTristimulus(Profile(profile), widestOf(profile))->numChannels();
    return ColorUtils::configChannelCount(Config(configuration)) <= data;
}

void convertToAnything()
{
    for (const TrelColor &color : starts()) {
        for (const int profile : IDS) {
            withIds([&](int id) {
                const TrelColor yxy = color.toYxy(Config(id), Profile(profile), id);
                check(yxy.isValid() == color.isValid(), "toYxy");
                check(yxy.alpha16() == color.alpha16(), "toYxy's alpha");
                if (!fits(profile, id))
                    return; // fatal
                const TrelColor levels = color.toNChannel16(Config(id), Profile(profile), id);
                QVector<unsigned int> words;
                levels.getNChannel16(&words);
                check(!color.isValid() || words.size() == ColorUtils::configChannelCount(Config(id)) + 1,
                      "toNChannel16");
                check(levels.isValid() == color.isValid(), "toNChannel16's form");
                check(color.convertTo(TrelColor::Nchannel, Config(id), Profile(profile)).isValid() == color.isValid(),
                      "convertTo");
            });
        }
        withIds([&](int id) {
            const bool isForm = id >= TrelColor::Rgb && id <= TrelColor::Nchannel;
            const TrelColor converted =
                color.convertTo(TrelColor::Spec(id), ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB);
            check(converted.isValid() == (isForm && color.isValid()), "convertTo any form");
        });
    }
}

void blendAnything()
{
    withReals([](double progress) {
        if (!isShare(progress))
            return; // fatal
        for (const TrelColor &a : starts()) {
            for (const TrelColor &b : starts()) {
                const TrelColor result = TrelColor::blend(a, b, progress);
                const bool isCopy = progress == 0.0 || progress == 1.0;
                check(isCopy || result.isValid(), "blend");
                checkLevels(result);
                checkRgb(result);
            }
        }
    });
}

void gradientAtAnything()
{
    QLinearGradient gradient;
    gradient.setColorAt(0.2, Qt::red);
    gradient.setColorAt(std::nextafter(0.2, 1.0), Qt::green);
    gradient.setColorAt(0.7, Qt::blue);
    gradient.setColorAt(NOT_A_NUMBER, Qt::white);
    QLinearGradient steep;
    steep.setStops({{0.0, Qt::red}, {Limits::denorm_min(), Qt::blue}});
    withReals([&](double position) {
        check(TrelColor::colorFromGradient(gradient, position).spec() == TrelColor::Rgb, "gradient");
        check(TrelColor::colorFromGradient(QLinearGradient(), position).spec() == TrelColor::Rgb, "plain gradient");
        const TrelColor color = TrelColor::colorFromGradient(steep, position);
        check(color == TrelColor(position == 0.0 ? Qt::red : Qt::blue), "steep gradient");
    });
}

void hexOfAnyLength()
{
    const QString text("#00112233445566778899aabbccddeeff");
    withInts([&](int length) {
        unsigned int argb[4] = {1, 2, 3, 4};
        if (length > text.size() && length <= 17)
            return;
        const bool isRead = get_hex_rgb16(text.constData(), length, argb);
        check(isRead == (length >= 1 && length <= 17), "get_hex_rgb16");
    });
    for (int digit = CHAR_MIN; digit <= CHAR_MAX; ++digit) {
        const bool isDigit = digit > 0 && QByteArray("0123456789abcdefABCDEF").contains(char(digit));
        check(h2i(char(digit)) == (isDigit ? QByteArray(1, char(digit)).toInt(nullptr, 16) : -1), "h2i");
    }
    s_passed += CHAR_MAX - CHAR_MIN;
}

const Subject COLOR_SUBJECTS[] = {
    {"set any yxy", {"TrelColor::setYxyF", "TrelColor::setYxy16", "TrelColor::setYxy8"}, setAnyYxy},
    {"set any yxy alpha", {"TrelColor::setYxyF"}, setAnyYxyAlpha},
    {"construct from anything",
     {"TrelColor::TrelColor", "TrelColor::fromRgb", "TrelColor::fromRgba"},
     constructFromAnything},
    {"set any levels", {"TrelColor::setNChannelF"}, setAnyLevels},
    {"convert to anything", {"TrelColor::toYxy", "TrelColor::toNChannel16", "TrelColor::convertTo"}, convertToAnything},
    {"blend anything", {"TrelColor::blend"}, blendAnything},
    {"gradient at anything", {"TrelColor::colorFromGradient"}, gradientAtAnything},
    {"hex of any length", {"get_hex_rgb16", "h2i"}, hexOfAnyLength},
};

// Curves and levels.

unsigned int curveWord(int type, unsigned int index)
{
    unsigned short word = 0;
    CurveFactory::Instance()->getCurve(type)->applyCurve(int(index), &word);
    return word;
}

bool isKnownCurve(int type)
{
    return type >= LINEAR && type <= TUNGSTEN;
}

unsigned int pwmOf(double level)
{
    return low16(std::floor(level * 65535 + 0.5));
}

unsigned int compensated(int type, unsigned int pwm)
{
    const auto p = static_cast<unsigned short>(pwm);
    return type == TUNGSTEN ? ColorUtils::pwm16ToMNormDTungstenRes16(p)
           : type == NORMAL ? ColorUtils::pwm16ToMNormDNormRes16(p)
                            : pwm;
}

/// The 8-bit index of a level; for gamma curves one beyond 255 is fatal.
unsigned int byteIndex(double level)
{
    return low16(std::floor(level * 255 + 0.5));
}

void applyCurveToAnyLevel()
{
    withReals([](double level) {
        const double levels[] = {level, level, level};
        for (const int type : {LINEAR, NORMAL, TUNGSTEN, -1, 42, INT_MAX}) {
            Bordered<unsigned char> words(6);
            ColorUtils::applyCurve(3, 2, levels, words.out(), type, SOFTWARE);
            const unsigned int expected = curveWord(type, low16(level * 65535));
            check(words.at(4) == expected >> 8 && words.at(5) == (expected & 0xFF), "16-bit software curve");
            check(words.isUntouchedBehind(6), "16-bit software curve's buffer");

            Bordered<unsigned short> plain(3);
            ColorUtils::applyCurve16(3, levels, plain.out(), type, SOFTWARE);
            check(plain.at(2) == expected && plain.isUntouchedBehind(3), "applyCurve16, software");

            Bordered<unsigned short> inverse(3);
            ColorUtils::applyCurve16(3, levels, inverse.out(), type, PRE_COMPENSATION);
            check(!isKnownCurve(type) || inverse.at(2) == compensated(type, pwmOf(level)), "applyCurve16, inverse");
            check(inverse.isUntouchedBehind(isKnownCurve(type) ? 3 : 0), "applyCurve16's buffer");

            Bordered<unsigned char> swapped(6); // ODD-32: exact for the first channel
            ColorUtils::applyCurve(3, 2, levels, swapped.out(), type, PRE_COMPENSATION);
            check(!isKnownCurve(type) || swapped.at(0) == inverse.at(0) >> 8, "16-bit pre-compensation");
            check(swapped.isUntouchedBehind(isKnownCurve(type) ? 6 : 0), "16-bit pre-compensation's buffer");

            Bordered<unsigned char> bytes(3);
            ColorUtils::applyCurve(3, 1, levels, bytes.out(), type, PRE_COMPENSATION);
            check(bytes.isUntouchedBehind(isKnownCurve(type) ? 3 : 0), "8-bit pre-compensation's buffer");
            check(type != LINEAR || bytes.at(2) == (pwmOf(level) * 2 + 257) / 514, "8-bit pre-compensation");

            const bool isLinear = type != NORMAL && type != TUNGSTEN;
            if (!isLinear && byteIndex(level) > 255)
                continue; // fatal
            Bordered<unsigned char> software(3);
            ColorUtils::applyCurve(3, 1, levels, software.out(), type, SOFTWARE);
            check(software.isUntouchedBehind(3), "8-bit software curve's buffer");
            check(!isLinear || software.at(2) == (byteIndex(level) & 0xFF), "8-bit software curve");
        }
        Bordered<unsigned short> pwm(3);
        ColorUtils::nChannelFToPWM(levels, pwm.out(), 3);
        check(pwm.at(0) == pwmOf(level) && pwm.at(2) == pwmOf(level) && pwm.isUntouchedBehind(3), "nChannelFToPWM");
    });
}

/// Counts below 1 write nothing, resolutions nobody knows nothing or one byte a channel.
void applyCurveInAnyMode()
{
    const double levels[] = {0.25, 0.5, 0.75};
    const unsigned short words[] = {100, 40000, 65535};
    withInts([&](int number) {
        const int count = std::min(number, 3);
        for (const int mode : {number, PRE_COMPENSATION}) {
            Bordered<unsigned char> counted(6);
            ColorUtils::applyCurve(count, 2, levels, counted.out(), NORMAL, mode);
            check(counted.isUntouchedBehind(2 * std::max(count, 0)), "count");
            Bordered<unsigned short> counted16(3);
            ColorUtils::applyCurve16(count, levels, counted16.out(), NORMAL, mode);
            check(counted16.isUntouchedBehind(std::max(count, 0)), "count of words");
        }
        Bordered<unsigned char> resolved(6);
        ColorUtils::applyCurve(3, number, levels, resolved.out(), LINEAR, SOFTWARE);
        check(resolved.isUntouchedBehind(number == 1 ? 3 : number == 2 ? 6 : 0), "resolution, software");
        Bordered<unsigned char> compensation(6);
        ColorUtils::applyCurve(3, number, levels, compensation.out(), LINEAR, PRE_COMPENSATION);
        check(compensation.isUntouchedBehind(number == 2 ? 6 : 3), "resolution, pre-compensation");
        Bordered<unsigned char> inMode(3);
        ColorUtils::applyCurve(3, 1, levels, inMode.out(), NORMAL, number);
        Bordered<unsigned char> inSoftware(3);
        ColorUtils::applyCurve(3, 1, levels, inSoftware.out(), NORMAL, SOFTWARE);
        check(number == PRE_COMPENSATION || std::equal(inMode.out(), inMode.out() + 3, inSoftware.out()), "mode");

        Bordered<unsigned short> pwm(3);
        ColorUtils::nChannelFToPWM(levels, pwm.out(), count);
        check(pwm.isUntouchedBehind(std::max(count, 0)), "nChannelFToPWM");
        for (const auto map : {ColorUtils::pwmToMNormDNormRes16, ColorUtils::pwmToMNormDTungstenRes16,
                               ColorUtils::pwmToMNormDLinearRes16}) {
            Bordered<unsigned short> out(3);
            map(words, out.out(), count);
            check(out.isUntouchedBehind(std::max(count, 0)), "pwmTo…16");
        }
        for (const auto map : {ColorUtils::pwmToMNormDNormRes8, ColorUtils::pwmToMNormDTungstenRes8,
                               ColorUtils::pwmToMNormDLinearRes8}) {
            Bordered<unsigned char> out(3);
            map(words, out.out(), count);
            check(out.isUntouchedBehind(std::max(count, 0)), "pwmTo…8");
        }
    });
}

/// Each word there is, one by one and as an array.
void everyWord()
{
    for (int number = 0; number <= 65535; ++number) {
        s_now = number;
        ++s_passed;
        const auto p = static_cast<unsigned short>(number);
        unsigned short word = 0;
        unsigned char byte = 0;
        ColorUtils::pwmToMNormDNormRes16(&p, &word, 1);
        check(word == ColorUtils::pwm16ToMNormDNormRes16(p), "pwmToMNormDNormRes16");
        ColorUtils::pwmToMNormDTungstenRes16(&p, &word, 1);
        check(word == ColorUtils::pwm16ToMNormDTungstenRes16(p) && word <= 255, "pwmToMNormDTungstenRes16");
        ColorUtils::pwmToMNormDNormRes8(&p, &byte, 1);
        check(byte == ColorUtils::pwm16ToMNormDNormRes8(p), "pwmToMNormDNormRes8");
        ColorUtils::pwmToMNormDTungstenRes8(&p, &byte, 1);
        check(byte == ColorUtils::pwm16ToMNormDTungstenRes8(p), "pwmToMNormDTungstenRes8");
        ColorUtils::pwmToMNormDLinearRes8(&p, &byte, 1);
        check(byte == ColorUtils::pwm16ToMNormDLinearRes8(p) && byte == (number * 2 + 257) / 514, "…LinearRes8");
        const auto squareLaw = [](double x) { return 0.9412 * x * x + 16.937 * x; };
        const int x = ColorUtils::lut16BitToBit(p);
        check(squareLaw(x) <= number + 1e-6 && (x == 255 || squareLaw(x + 1) > number - 1e-6), "lut16BitToBit");
        check(isShare(ColorUtils::dmx16ToTungstenDimRatio(p)), "dmx16ToTungstenDimRatio");
        check(isShare(ColorUtils::dmx16ToSquareLawDimRatio(p)), "dmx16ToSquareLawDimRatio");
    }
}

void solveAnyQuadratic()
{
    constexpr float HUGE_FLOAT = std::numeric_limits<float>::max();
    constexpr float NO_FLOAT = std::numeric_limits<float>::quiet_NaN();
    const float values[] = {
        NO_FLOAT, std::numeric_limits<float>::infinity(), -HUGE_FLOAT, HUGE_FLOAT, 0.0f, -0.0f, 1e-45f, 1.5f, -1.0f,
        65535.0f};
    const auto solve = [](float a, float b, float c, float y, float max) {
        const float x = ColorUtils::quadraticSolver(a, b, c, y, max);
        check(x == std::floor(x), "a whole number");
        check(std::isnan(max) || x <= std::floor(max + 0.5f), "at most the largest");
        check(!(max >= 0) || x >= 0, "at least 0");
    };
    for (const float a : values) {
        for (const float b : values) {
            for (const float c : values)
                withEach(values, [&](float y) {
                    for (const float max : values)
                        solve(a, b, c, y, max);
                });
        }
    }
}

void askCurvesForAnything()
{
    const CurveFactory &factory = *CurveFactory::Instance();
    withInts([&](int type) {
        check(factory.getCurve(type) == factory.getCurve(isKnownCurve(type) ? type : LINEAR), "getCurve");
        check(factory.nameForCurveType(type).isEmpty() == !isKnownCurve(type), "nameForCurveType");
        const Curve identity;
        unsigned short word = 0;
        unsigned char byte = 0;
        identity.applyCurve(type, &word);
        identity.applyCurve(type, &byte);
        check(word == low16(type) && byte == (low16(type) & 0xFF), "low bits without a table");
    });
}

const Subject CURVE_SUBJECTS[] = {
    {"apply curve to any level",
     {"ColorUtils::applyCurve", "ColorUtils::applyCurve16", "ColorUtils::nChannelFToPWM"},
     applyCurveToAnyLevel},
    {"apply curve in any mode",
     {"ColorUtils::applyCurve", "ColorUtils::pwmToMNormDNormRes16", "ColorUtils::pwmToMNormDNormRes8",
      "ColorUtils::pwmToMNormDTungstenRes16", "ColorUtils::pwmToMNormDTungstenRes8",
      "ColorUtils::pwmToMNormDLinearRes16", "ColorUtils::pwmToMNormDLinearRes8"},
     applyCurveInAnyMode},
    {"every word",
     {"ColorUtils::pwm16ToMNormDNormRes16", "ColorUtils::pwm16ToMNormDNormRes8",
      "ColorUtils::pwm16ToMNormDTungstenRes16", "ColorUtils::pwm16ToMNormDTungstenRes8",
      "ColorUtils::pwm16ToMNormDLinearRes8", "ColorUtils::lut16BitToBit", "ColorUtils::dmx16ToTungstenDimRatio",
      "ColorUtils::dmx16ToSquareLawDimRatio"},
     everyWord},
    {"solve any quadratic", {"ColorUtils::quadraticSolver"}, solveAnyQuadratic},
    {"ask curves for anything",
     {"CurveFactory::getCurve", "CurveFactory::nameForCurveType", "Curve::applyCurve"},
     askCurvesForAnything},
};

// The solver, and what leads to it.

/// Levels are shares of the wanted luminance; without a chromaticity there are none.
void checkSolved(const double (&Yxy)[3], int configuration, int profile, bool clampToGamut)
{
    const int count = ColorUtils::configChannelCount(Config(configuration));
    Bordered<double> levels(count);
    ColorUtils::convertYxyToNChannel(Yxy, levels.out(), Config(configuration), Profile(profile), clampToGamut);
    check(levels.isUntouchedBehind(count), "convertYxyToNChannel's buffer");
    for (int c = 0; c < count && std::isfinite(Yxy[0]); ++c)
        check(levels.at(c) == 0.0 || isShare(levels.at(c) / Yxy[0]), "a share of Y");
    for (int c = 0; c < count && std::isnan(Yxy[1] + Yxy[2]) && std::isfinite(Yxy[0]); ++c)
        check(levels.at(c) == 0.0 || !std::isnan(Yxy[1]) || !std::isnan(Yxy[2]), "no light without a chromaticity");
    for (const int curve : {LINEAR, NORMAL, TUNGSTEN, -1, INT_MAX}) {
        Bordered<unsigned short> words(count);
        ColorUtils::convertYxyToNChannelAndApplyCurve(Yxy, words.out(), Config(configuration), Profile(profile), curve,
                                                      clampToGamut);
        check(words.isUntouchedBehind(isKnownCurve(curve) ? count : 0), "…AndApplyCurve's buffer");
    }
}

void solveAnything()
{
    withTriples([](double Y, double x, double y) {
        for (const bool clamp : {false, true}) {
            checkSolved({Y, x, y}, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB, clamp);
            checkSolved({Y, x, y}, ColorUtils::CONFIG_RGBAW, ColorUtils::STRAND_BEAM_KVX, clamp);
        }
    });
    withReals([](double value) {
        for (const int profile : {0, 1, 5, 9}) {
            checkSolved({value, 0.3, 0.3}, widestOf(profile), profile, false);
            checkSolved({0.5, value, 0.3}, widestOf(profile), profile, false);
            checkSolved({0.5, 0.3, value}, widestOf(profile), profile, true);
        }
    });
}

void solveForAnyFixture()
{
    for (const int profile : IDS) {
        withIds([&](int configuration) {
            if (fits(profile, configuration))
                checkSolved({0.5, 0.35, 0.35}, configuration, profile, true);
        });
    }
}

/// A number that is none spreads to both unknowns.
void eliminateAnything()
{
    for (int place = 0; place < 6; ++place) {
        withReals([&](double value) {
            double m[2][3] = {{3, 1, 2}, {1, 2, 3}};
            m[place / 3][place % 3] = value;
            double a = 0;
            double b = 0;
            ColorUtils::gaussianEliminationTwoByThree(m, a, b);
            check(!std::isnan(value) || (std::isnan(a) && std::isnan(b)), "NaN stays");
            check(!(std::abs(value) <= 1.0) || place < 3 || (std::isfinite(a) && std::isfinite(b)), "a solution");
        });
    }
}

void validateAnyRatio()
{
    check(ColorUtils::validateDimmingRatio({}), "no levels");
    withReals([](double value) {
        check(ColorUtils::validateDimmingRatio({0.5, value}) == isShare(value), "validateDimmingRatio");
    });
}

void convertAnyXYZ()
{
    withTriples([](double X, double Y, double Z) {
        const double XYZ[] = {X, Y, Z};
        Bordered<double> Yxy(3);
        ColorUtils::convertXYZtoYxy(XYZ, Yxy.out());
        check(Yxy.isUntouchedBehind(3), "convertXYZtoYxy's buffer");
        if (X <= 0 && Y <= 0 && Z <= 0) {
            check(Yxy.at(0) == 0 && Yxy.at(1) == 0 && Yxy.at(2) == 0, "no light");
            return;
        }
        const bool hasNaN = std::isnan(X) || std::isnan(Y) || std::isnan(Z);
        check(hasNaN || Yxy.at(0) == std::max({X, Y, Z}), "the largest of the three");
        check(!hasNaN || (std::isnan(Yxy.at(1)) && std::isnan(Yxy.at(2))), "NaN stays");
    });
}

void measureAnything()
{
    const QPointF a(0.25, 0.5);
    withPairs([&](double x, double y) {
        const QPointF p(x, y);
        const bool isSane = std::abs(x) < 1e150 && std::abs(y) < 1e150;
        check(isSame(dot(a, p), dot(p, a)), "dot");
        check(isSame(length_squared(a, p), length_squared(p, a)), "length_squared");
        check(isSame(distance(a, p), distance(p, a)), "distance");
        check(!isSane || distance(p, p) == 0, "distance to itself");
        check(!(distance(a, p) < 0), "no distance below 0");
        QPointF closest(7, 7);
        for (const auto &[from, to, point] :
             {std::array<QPointF, 3>{a, p, QPointF(1, 1)}, {p, a, QPointF(1, 1)}, {a, a, p}}) {
            const double gap = ColorUtils::minDistance(from, to, point, closest);
            check(!(gap < 0) && std::isfinite(gap) >= isSane, "minDistance");
            check(!isSane
                      || (closest.x() >= std::min(from.x(), to.x()) - 1e-9 * (1 + std::abs(x))
                          && closest.x() <= std::max(from.x(), to.x()) + 1e-9 * (1 + std::abs(x))),
                  "the nearest point is on the segment");
        }
        ColorUtils::minDistance(p, p, a, closest);
        check(std::isnan(x + y) || isSame(closest, p) || !isSane, "a segment without length");
    });
}

void expandAnyLength()
{
    for (int length = 0; length <= 12; ++length) {
        QList<unsigned char> channels;
        for (int i = 0; i < length; ++i)
            channels.append(static_cast<unsigned char>(250 + i));
        const auto expanded = ColorUtils::expandFor5Channels(channels);
        check(int(expanded.size()) == (length == 3 ? 5 : length == 6 ? 10 : 0), "expandFor5Channels");
        ++s_passed;
    }
}

// Fixtures.

void askForAnyProfile()
{
    const HuelockProfileFactory &factory = *HuelockProfileFactory::instance();
    withIds([&](int id) {
        const auto profile = Profile(id);
        const Profile known = id >= 0 && id <= 9 ? profile : ColorUtils::GENERIC_RGB;
        check(factory.getProfile(profile) == factory.getProfile(known), "getProfile");
        check(ColorUtils::huelockProfileIDName(profile) == factory.getProfile(known)->name(), "name");
        check(ColorUtils::ioModesForHuelockProfileID(profile) == ColorUtils::ioModesForHuelockProfileID(known),
              "modes");
        check(ColorUtils::defaultIOModeIDForHuelockProfileID(profile)
                  == ColorUtils::defaultIOModeIDForHuelockProfileID(known),
              "default mode");
        check(widestOf(id) == widestOf(known), "configuration");
        check(isKnownCurve(ColorUtils::defaultCurveTypeForHuelockProfileID(profile)), "curve");
        for (const int mode : IDS) {
            const bool isSupported = ColorUtils::ioModesForHuelockProfileID(known).contains(Mode(mode));
            check(isSupported || !ColorUtils::defaultHueLockEnabled(profile, mode), "calibration");
        }
    });
}

void askForAnyConfiguration()
{
    const int counts[] = {0, 3, 5, 4, 1, 5, 4};
    withIds([&](int id) {
        const bool isKnown = id >= 1 && id <= 6;
        check(ColorUtils::configChannelCount(Config(id)) == (isKnown ? counts[id] : 0), "configChannelCount");
        check((ColorUtils::nameForChannelConfiguration(Config(id)) == "Unknown") == !isKnown, "name");
    });
}

void askForAnyMode()
{
    const IOModeFactory &factory = *IOModeFactory::instance();
    withIds([&](int id) {
        const auto mode = Mode(id);
        const bool isKnown = id >= 0 && id <= 9;
        check((factory.ioMode(mode) != nullptr) == isKnown, "ioMode");
        check(factory.nameForIOModeID(mode).isEmpty() == !isKnown, "nameForIOModeID");
        check(isKnown || (!factory.ioModeIs3toN(mode) && !factory.ioModeIsNtoN(mode)), "kind");
        check(factory.availableHueLockEnabled(mode).isEmpty() == !isKnown, "availableHueLockEnabled");
        const IOMode own(mode, "own", true, false, Config(id), {ColorUtils::HueLockMode(id)});
        check(own.index() == mode && own.inputChannelConfiguration() == id && own.availableHueLockEnabled().at(0) == id,
              "IOMode stores it");
    });
}

void makeAnyProfile()
{
    withInts([](int number) {
        HueLockProfile profile("own", Config(number), number, {Mode(number)}, Mode(number));
        check(profile.getChannelConfiguration() == number && profile.getDefaultOnboardCurve() == number
                  && profile.getDefaultIOModeID() == number && profile.getAvailableIOModeIDs().at(0) == number,
              "HueLockProfile stores it");
        check(!profile.getDefaultIsHuelockEnabled(Mode(number)), "off by default");
        profile.setDefaultIsHuelockEnabled(Mode(number), true);
        check(profile.getDefaultIsHuelockEnabled(Mode(number)), "switched on");
        const TrelColor color = TrelColor::fromRgbF(0.1, 0.2, 0.3);
        for (const int data : {0, 1, 9}) {
            double Yxy[3] = {};
            ColorUtils::convertTrelColorToYxy(
                color, TristimulusFactory::getInstance()->getTristimulus(Profile(data), widestOf(data)), Yxy, number);
            check(isShare(Yxy[0]) && isShare(Yxy[1]) && isShare(Yxy[2]), "any on-board curve");
        }
    });
}

void askForAnyData()
{
    TristimulusFactory &factory = *TristimulusFactory::getInstance();
    for (const int profile : IDS) {
        withIds([&](int configuration) {
            Tristimulus *data = factory.getTristimulus(Profile(profile), Config(configuration));
            check(data && data->numChannels() >= 3 && data->getX().size() == data->numChannels(), "getTristimulus");
        });
    }
    withReals([&](double value) {
        for (const double other : {0.3, value}) {
            for (const int profile : {0, 1, 42}) {
                const Tristimulus *data = factory.getTristimulus(Profile(profile), widestOf(profile));
                double x = 7;
                double y = 7;
                const bool isInside = data->inside(value, other);
                check(data->closestPtOnGamut(value, other, x, y) == isInside, "inside is its own nearest");
                check(!isInside || (x == value && y == other), "the point itself");
                check(!(std::abs(value) < 1e150) || (isShare(x) && isShare(y)), "a point of the gamut");
                double nothing = 7;
                check(!Tristimulus(Profile(profile)).closestPtOnGamut(value, other, nothing, nothing) && nothing == 7,
                      "no gamut yet");
            }
        }
    });
}

/// Measurements of no fixture there can be; the levels solved from them are levels all the same.
void measureAnyFixture()
{
    constexpr int PROFILE = 1000;
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(Profile(PROFILE), ColorUtils::CONFIG_RGB);
    const auto restore = [data, X = data->getX(), Y = data->getY(), Z = data->getZ()] {
        data->setX(X);
        data->setY(Y);
        data->setZ(Z);
        data->calculatePolygon();
    };
    withReals([&](double value) {
        for (const auto set : {&Tristimulus::setX, &Tristimulus::setY, &Tristimulus::setZ}) {
            for (const QVector<double> &values :
                 {QVector<double>{value, 0.5, 0.5}, {0.5, 0.5, value}, {value, value, value}}) {
                (data->*set)(values);
                data->calculatePolygon();
                double x = 0;
                double y = 0;
                data->closestPtOnGamut(0.3, 0.3, x, y);
                checkSolved({1.0, 0.3, 0.3}, ColorUtils::CONFIG_RGB, PROFILE, false);
                checkSolved({1.0, 0.3, 0.3}, ColorUtils::CONFIG_RGB, PROFILE, true);
                const TrelColor color = TrelColor::fromRgbF(0.1, 0.2, 0.3, 1.0, Profile(PROFILE)).toYxy();
                check(color.spec() == TrelColor::Yxy && isShare(color.getY()), "toYxy");
                checkRgb(color);
                restore();
            }
        }
    });
}

/// Profile 10 is registered, and no fixture has it.
bool parse(const QString &profiles)
{
    QByteArray document = ("<Profiles>" + profiles + "</Profiles>").toUtf8();
    QBuffer buffer(&document);
    return buffer.open(QIODevice::ReadOnly) && TristimulusFactory::getInstance()->parseXML(&buffer);
}

double measurementRead()
{
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(Profile(10), ColorUtils::CONFIG_RGB);
    return data->getX().value(0, -7);
}

void readAnyMeasurement()
{
    const QString profile("<Profile index='10'><Channel index='0' X='%1' Y='%1' Z='%1'/></Profile>");
    withReals([&](double value) {
        for (const QString &text : {QString::number(value, 'g', 17), QString::number(value, 'f', 3)}) {
            check(parse(profile.arg(text)), "parseXML");
            check(measurementRead() != -7 && isSame(measurementRead(), text.toDouble()), "the number as it reads");
        }
    });
    withInts([&](int index) {
        if (index >= -1 && index <= 10)
            return; // replaces the data of others
        check(parse(profile.arg("0.5") + QString("<Profile index='%1'/>").arg(index)), "parseXML");
        check(measurementRead() == 0.5, "no such profile");
    });
}

// Output.

/// Colours of each form that a fixture of \a profile takes, tame and wild.
QVector<TrelColor> colorsFor(int profile)
{
    QVector<TrelColor> colors{TrelColor(), TrelColor(0x204060), TrelColor::fromHsv8(100, 200, 50)};
    for (const double value : FEW_REALS) {
        TrelColor yxy;
        yxy.setYxyF(value, 0.3, 0.3, 1.0, Profile(profile));
        colors.append(yxy);
        yxy.setYxyF(0.5, value, 0.3, 0.5);
        colors.append(yxy);
        const Config configuration = widestOf(profile);
        QVector<double> levels(ColorUtils::configChannelCount(configuration) + 1, value);
        levels[0] = 0.7;
        colors.append(TrelColor::fromNChannelF(levels, configuration, Profile(profile)));
    }
    return colors;
}

/// Whether \a color, put out in this way, is one of the fatal cases: the wrong number of levels, or invalid and
/// calibrated, which is in nobody's terms.
bool isFatal(const TrelColor &color, int count, int profile, Mode mode)
{
    if (color.spec() != TrelColor::Nchannel)
        return false;
    const IOMode *facts = IOModeFactory::instance()->ioMode(mode);
    const bool isDirect = facts && facts->inputChannelConfiguration() == color.getChannelConfiguration()
                          && color.getHuelockProfileID() == profile
                          && (mode == ColorUtils::RGB_IN_OUT || facts->isNtoN());
    QVector<double> levels;
    color.getNChannelF(&levels);
    return isDirect && profile != ColorUtils::GENERIC_RGB && levels.size() != count + 1;
}

void putOut(TrelColor color, int count, int profile, Mode mode, bool passThrough)
{
    if (isFatal(color, std::max(count, 0), profile, mode))
        return;
    bool isSolved = false;
    const std::unique_ptr<double[]> levels(ColorUtils::convertTrelColorToNChannelF(
        isSolved, color, passThrough, count, Profile(profile), mode, true, INT_MAX));
    check(levels != nullptr, "an array");
    for (int c = 0; c < count; ++c)
        check(color.spec() == TrelColor::Yxy || isShare(levels[std::size_t(c)]), "levels");
    for (const int resolution : {1, 2}) {
        const int size = std::max(count, 0) * resolution;
        Bordered<unsigned char> bytes(size);
        ColorUtils::convertTrelColorToDMX(color, passThrough, count, resolution, bytes.out(), LINEAR, NORMAL,
                                          Profile(profile), mode);
        check(bytes.isUntouchedBehind(size), "convertTrelColorToDMX's buffer");
        const auto buffer =
            ColorUtils::updateBuffer(LINEAR, NORMAL, color, passThrough, count, resolution, mode, Profile(profile));
        check(int(buffer.size()) == size, "updateBuffer");
        check(std::equal(buffer.cbegin(), buffer.cend(), bytes.out()), "updateBuffer's bytes");
    }
}

void putOutAnything()
{
    for (const int profile : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}) {
        for (const TrelColor &color : colorsFor(profile)) {
            for (const Mode mode : ColorUtils::ioModesForHuelockProfileID(Profile(profile))) {
                withEach(QVector<int>{INT_MIN, -1, 0, 1, 3, 4, 5, 6, 64}, [&](int count) {
                    putOut(color, count, profile, mode, true);
                    putOut(color, count, profile, mode, false);
                });
            }
        }
    }
}

void putOutForAnyFixture()
{
    TrelColor yxy(0.3, 0.3);
    for (const int profile : IDS) {
        withIds([&](int mode) {
            const IOMode *facts = IOModeFactory::instance()->ioMode(Mode(mode));
            if (facts && !fits(profile, facts->inputChannelConfiguration()))
                return; // fatal
            putOut(yxy, 5, profile, Mode(mode), true);
            putOut(TrelColor(0x102030), 5, profile, Mode(mode), false);
            bool isSolved = false;
            const std::unique_ptr<double[]> levels(ColorUtils::convertTrelColorToNChannelF(
                isSolved, yxy, false, 5, Profile(profile), Mode(mode), true, mode));
            check(facts || std::all_of(levels.get(), levels.get() + 5, [](double level) { return level == 0; }),
                  "an unknown mode gives zeros");
        });
    }
}

/// Resolutions and curves that nobody knows.
void putOutInAnyWay()
{
    TrelColor color(0x204060);
    TrelColor yxy(0.3, 0.3);
    withInts([&](int number) {
        for (TrelColor *each : {&color, &yxy}) {
            const int resolution = std::min(number, 4);
            Bordered<unsigned char> bytes(12);
            ColorUtils::convertTrelColorToDMX(*each, true, 3, resolution, bytes.out(), number, number,
                                              ColorUtils::GENERIC_RGB, ColorUtils::RGB_IN_OUT);
            check(bytes.isUntouchedBehind(resolution == 2 ? 6 : 3), "convertTrelColorToDMX's buffer");
            const auto buffer = ColorUtils::updateBuffer(number, number, *each, true, 3, resolution,
                                                         ColorUtils::RGB_IN_OUT, ColorUtils::GENERIC_RGB);
            check(int(buffer.size()) == std::max(0, resolution) * 3, "updateBuffer");
        }
    });
}

void layAnything()
{
    for (const int profile : {0, 1, 5}) {
        for (const TrelColor &source : colorsFor(profile)) {
            if (source.spec() == TrelColor::Nchannel && !fits(profile, source.getChannelConfiguration()))
                continue;
            for (TrelColor target : starts()) {
                ++s_passed;
                ColorUtils::updateColor(target, source);
                checkRgb(target);
                checkLevels(target);
                double Yxy[3] = {7, 7, 7};
                ColorUtils::convertTrelColorToYxy(target, Yxy);
                check(isShare(Yxy[0]), "convertTrelColorToYxy");
            }
        }
    }
}

const Subject FIXTURE_SUBJECTS[] = {
    {"solve anything",
     {"ColorUtils::convertYxyToNChannel", "ColorUtils::convertYxyToNChannelAndApplyCurve"},
     solveAnything},
    {"solve for any fixture", {"ColorUtils::convertYxyToNChannel"}, solveForAnyFixture},
    {"eliminate anything", {"ColorUtils::gaussianEliminationTwoByThree"}, eliminateAnything},
    {"validate any ratio", {"ColorUtils::validateDimmingRatio"}, validateAnyRatio},
    {"convert any XYZ", {"ColorUtils::convertXYZtoYxy"}, convertAnyXYZ},
    {"measure anything", {"ColorUtils::minDistance", "dot", "length_squared", "distance"}, measureAnything},
    {"expand any length", {"ColorUtils::expandFor5Channels"}, expandAnyLength},
    {"ask for any profile",
     {"ColorUtils::huelockProfileIDName", "ColorUtils::ioModesForHuelockProfileID",
      "ColorUtils::defaultIOModeIDForHuelockProfileID", "ColorUtils::nChannelConfigurationForHuelockProfileID",
      "ColorUtils::defaultCurveTypeForHuelockProfileID", "ColorUtils::defaultHueLockEnabled",
      "HuelockProfileFactory::getProfile"},
     askForAnyProfile},
    {"ask for any configuration",
     {"ColorUtils::configChannelCount", "ColorUtils::nameForChannelConfiguration"},
     askForAnyConfiguration},
    {"ask for any mode",
     {"IOModeFactory::ioMode", "IOModeFactory::nameForIOModeID", "IOModeFactory::ioModeIs3toN",
      "IOModeFactory::ioModeIsNtoN", "IOModeFactory::availableHueLockEnabled", "IOMode::IOMode"},
     askForAnyMode},
    {"make any profile",
     {"HueLockProfile::HueLockProfile", "HueLockProfile::getDefaultIsHuelockEnabled",
      "HueLockProfile::setDefaultIsHuelockEnabled", "ColorUtils::convertTrelColorToYxy"},
     makeAnyProfile},
    {"ask for any data",
     {"TristimulusFactory::getTristimulus", "Tristimulus::Tristimulus", "Tristimulus::inside",
      "Tristimulus::closestPtOnGamut"},
     askForAnyData},
    {"measure any fixture", {"Tristimulus::setX", "Tristimulus::setY", "Tristimulus::setZ"}, measureAnyFixture},
    {"read any measurement", {"TristimulusFactory::parseXML"}, readAnyMeasurement},
    {"put out anything",
     {"ColorUtils::convertTrelColorToNChannelF", "ColorUtils::convertTrelColorToDMX", "ColorUtils::updateBuffer"},
     putOutAnything},
    {"put out for any fixture", {"ColorUtils::convertTrelColorToDMX"}, putOutForAnyFixture},
    {"put out in any way", {"ColorUtils::convertTrelColorToDMX"}, putOutInAnyWay},
    {"lay anything", {"ColorUtils::updateColor"}, layAnything},
};

// White light.

void isAnythingValid()
{
    withPairs([](double a, double b) {
        check(CCTUtils::xyAreValid(a, b) == (a >= 0 && a <= 0.8 && b >= 0 && b <= 0.9), "xyAreValid");
        check(CCTUtils::uvPrimeAreValid(a, b) == (a >= 0 && a <= 0.6 && b >= 0 && b <= 0.6), "uvPrimeAreValid");
    });
    withReals([](double value) {
        check(CCTUtils::xyAreValid(value, 0.3) == (value >= 0 && value <= 0.8), "x");
        check(CCTUtils::xyAreValid(0.3, value) == (value >= 0 && value <= 0.9), "y");
        check(CCTUtils::uvPrimeAreValid(value, 0.3) == (value >= 0 && value <= 0.6), "u'");
        check(CCTUtils::uvPrimeAreValid(0.3, value) == (value >= 0 && value <= 0.6), "v'");
    });
    withInts([](int value) {
        check(CCTUtils::isValidCCT(value) == (value >= 1950 && value <= 11000), "isValidCCT");
        check(CCTUtils::isMaxCCTRegionIndex(value) == (value == LAST_REGION), "isMaxCCTRegionIndex");
    });
}

void convertAnyChromaticity()
{
    withPairs([](double a, double b) {
        const double results[] = {CCTUtils::getuPrimeFromxy(a, b), CCTUtils::getvPrimeFromxy(a, b),
                                  CCTUtils::getxFromuvPrime(a, b), CCTUtils::getyFromuvPrime(a, b)};
        for (const double result : results)
            check(!std::isnan(a + b) || std::isnan(result) || !(std::isnan(a) || std::isnan(b)), "NaN stays");
        const bool isTame = isShare(a) && isShare(b);
        check(!isTame
                  || isSame(std::round(1e9 * CCTUtils::getxFromuvPrime(results[0], results[1])), std::round(1e9 * a)),
              "there and back");
    });
}

void distanceOfAnything()
{
    withTriples([](double a, double b, double c) {
        const double distances[] = {CCTUtils::getDistanceBetweenPoints({a, b}, {c, 0.3}),
                                    CCTUtils::getDuvFromuvPrime(a, b, c, 0.3), CCTUtils::getDuvFromxy(a, b, c, 0.3)};
        for (const double distance : distances)
            check(std::isnan(distance) || distance >= 0, "a distance");
        check(isSame(distances[0], CCTUtils::getDistanceBetweenPoints({c, 0.3}, {a, b})), "as far from either end");
        check(isSame(distances[1], CCTUtils::getDuvPrimeFromuvPrime(a, b, c, 0.3)), "getDuvPrimeFromuvPrime");
        check(!(std::isnan(a) || std::isnan(b) || std::isnan(c)) || std::isnan(distances[0]), "NaN stays");
    });
}

/// A region outside the table is its nearest end.
void askAnyRegion()
{
    withInts([](int number) {
        const int region = std::min(std::max(number, 0), LAST_REGION);
        check(number > 0 || CCTUtils::cctIsInRegion(1950, number), "the first region");
        check(number < LAST_REGION || CCTUtils::cctIsInRegion(12000, number), "the last region");
        check(isSame(CCTUtils::getCCTRegionLine(number), CCTUtils::getCCTRegionLine(region)), "getCCTRegionLine");
        for (const int cct : INTS) {
            check(CCTUtils::cctIsInRegion(cct, number) == CCTUtils::cctIsInRegion(cct, region), "cctIsInRegion");
            check(CCTUtils::getNumCCTStepsFromCCT(number, cct) == CCTUtils::getNumCCTStepsFromCCT(region, cct),
                  "steps");
            double u = 7;
            double v = 7;
            CCTUtils::getuvPrimeFromCCTRegion(number, cct, u, v);
            double expectedU = 0;
            double expectedV = 0;
            CCTUtils::getuvPrimeFromCCTRegionWithNumSteps(region, CCTUtils::getNumCCTStepsFromCCT(region, cct),
                                                          expectedU, expectedV);
            check(u == expectedU && v == expectedV && std::isfinite(u) && std::isfinite(v), "locus point");
            CCTUtils::getuvPrimeFromCCTRegionWithNumSteps(number, cct, u, v);
            check(std::isfinite(u) && std::isfinite(v), "locus point of steps");
            CCTUtils::getxyFromCCTRegion(number, 5000, cct, u, v);
            check(std::isfinite(u) && std::isfinite(v), "tinted point");
        }
        for (const double value : FEW_REALS) {
            check(isSame(CCTUtils::getPivotLine(number, value, 0.4), CCTUtils::getPivotLine(region, value, 0.4)),
                  "pivot");
            check(isSame(CCTUtils::getStandardLengthPivotLine(number, 0.2, value),
                         CCTUtils::getStandardLengthPivotLine(region, 0.2, value)),
                  "standard length");
            check(isSame(CCTUtils::getIsoLineDuvPrime(number, value, 0.4),
                         CCTUtils::getIsoLineDuvPrime(region, value, 0.4)),
                  "getIsoLineDuvPrime");
            const double position = CCTUtils::getRegionPositionFromuvPrimeAndRegion(0.2, value, number);
            check(isSame(position, CCTUtils::getRegionPositionFromuvPrimeAndRegion(0.2, value, region)), "position");
            check(std::isnan(position) || isShare(position), "a share of the region");
        }
    });
}

void askForAnyPosition()
{
    withReals([](double value) {
        for (const int region : {0, 10, LAST_REGION}) {
            const int cct = CCTUtils::getCCTFromCCTRegionAndRegionPosition(region, value);
            const int start = CCTUtils::getCCTFromCCTRegionAndRegionPosition(region, 0.0);
            const int end = CCTUtils::getCCTFromCCTRegionAndRegionPosition(region, 1.0);
            check(!isShare(value) || (cct >= start && cct <= end), "within the region");
            check(!(value > 1e10) || cct == INT_MAX, "largest");
            check(!(value < -1e10) || cct == INT_MIN, "least");
            check(!std::isnan(value) || cct == 0, "no CCT of NaN");
            const double full = CCTUtils::getIsoDuvPrimeFromCCTRegionAndRegionPosition(region, value);
            check(std::isnan(full) || full >= 0, "a length");
            const int found = CCTUtils::getCCTFromuvAndCCTRegion(value, 0.4, region);
            check(found == 0 || (found >= start && found <= end), "CCT of a point");
        }
    });
}

void tintAnything()
{
    withPairs([](double u, double v) {
        for (const int region : {-1, 0, 10, LAST_REGION, INT_MAX}) {
            for (const int tint : {INT_MIN, -32768, -1, 0, 1, 32767, INT_MAX}) {
                double tintedU = u;
                double tintedV = v;
                CCTUtils::tintuvPrime(region, tint, tintedU, tintedV);
                check(tint != 0 || (isSame(tintedU, u) && isSame(tintedV, v)), "no tint");
            }
            const int end = CCTUtils::getTintEnd(u, v, region, {0.2, 0.4});
            check(end == 32767 || end == -32767, "getTintEnd");
            const int tint = CCTUtils::getTintFromuvAndIntersectionPoint(u, v, region, {0.2, 0.4});
            check(tint == 0 || (tint > 0) == (end > 0), "tint's sign");
            const int from = CCTUtils::getTintFromuvAndIntersectionPoint(0.2, 0.4, region, {u, v});
            check(std::isfinite(u + v) || from == 0 || std::abs(double(from)) <= 2147483648.0, "any locus point");
            check(CCTUtils::getTintEnd(0.2, 0.4, region, {u, v}) != 0, "any locus point's end");
            int cct = 7;
            int both = 7;
            CCTUtils::getCCTAndTintFromuvAndCCTRegion(u, v, region, {0.2, 0.4}, cct, both);
            check(both == tint && cct == CCTUtils::getCCTFromuvAndCCTRegion(0.2, 0.4, region), "CCT and tint");
            CCTUtils::getCCTAndTintFromuvAndCCTRegion(0.2, 0.4, region, {u, v}, cct, both);
            check(both == from && cct == CCTUtils::getCCTFromuvAndCCTRegion(u, v, region), "of any locus point");
        }
    });
}

template <typename F>
void checkWhite(int cct, F find)
{
    const bool isValid = cct >= 1950 && cct <= 11000;
    double a = 7;
    double b = 7;
    check(find(a, b) == isValid, "found");
    check(isValid || (a == 0 && b == 0), "outputs of none");
    check(!isValid || (std::isfinite(a) && std::isfinite(b)), "outputs");
}

void whitePointOfAnyCCT()
{
    for (const int tint : INTS) {
        withInts([&](int cct) {
            checkWhite(cct, [&](double &u, double &v) { return CCTUtils::getuvPrimeFromCCTAndTint(cct, tint, u, v); });
            checkWhite(cct, [&](double &x, double &y) { return CCTUtils::getxyFromCCTAndTint(cct, tint, x, y); });
            checkWhite(cct, [&](double &u, double &v) { return CCTUtils::getuvPrimeFromCCT(cct, u, v); });
            checkWhite(cct, [&](double &x, double &y) { return CCTUtils::getxyFromCCT(cct, x, y); });
            double u = 0;
            double v = 0;
            CCTUtils::getuvPrimeFromValidCCTAndTint(cct, tint, u, v);
            check(std::isfinite(u) && std::isfinite(v), "an unchecked CCT");
        });
    }
}

void whitePointOfAnything()
{
    const auto ask = [](double a, double b) {
        int cct = -7;
        int tint = -7;
        const bool isUv = a >= 0 && a <= 0.6 && b >= 0 && b <= 0.6;
        check(CCTUtils::getCCTAndTintFromuvPrime(a, b, cct, tint) == isUv, "getCCTAndTintFromuvPrime");
        check(isUv || (cct == -7 && tint == -7), "outputs of none");
        check(!isUv || (cct >= 1900 && cct <= 12500), "a CCT of the table");
        int unchecked = -7;
        CCTUtils::getCCTAndTintFromValiduvPrime(a, b, unchecked, tint);
        check(!isUv || unchecked == cct, "unchecked");
        cct = tint = -7;
        const bool isxy =
            CCTUtils::xyAreValid(a, b)
            && CCTUtils::uvPrimeAreValid(CCTUtils::getuPrimeFromxy(a, b), CCTUtils::getvPrimeFromxy(a, b));
        check(CCTUtils::getCCTAndTintFromxy(a, b, cct, tint) == isxy, "getCCTAndTintFromxy");
        check(isxy || (cct == -7 && tint == -7), "outputs of no xy");
    };
    withPairs(ask);
    withReals([&](double value) {
        ask(value, 0.3);
        ask(0.3, value);
    });
}

void crossAnything()
{
    const QLineF line(0.1, 0.2, 0.9, 0.7);
    withTriples([&](double a, double b, double c) {
        for (const QLineF &other : {QLineF(a, b, c, 0.5), QLineF(0.5, c, b, a)}) {
            QPointF onChart;
            QPointF anywhere;
            const bool isOnChart = CCTImageUtils::linesIntersect(line, other, &onChart);
            check(!isOnChart || CCTUtils::linesIntersect(line, other, &anywhere), "a stricter test");
            check(CCTImageUtils::linesIntersect(line, other, nullptr) == isOnChart, "without a point");
            QPointF onRegion;
            const bool isInRegion = CCTUtils::lineIntersectsRegion(other, LAST_REGION, &onRegion);
            check(CCTUtils::lineIntersectsRegion(other, INT_MAX, nullptr) == isInRegion, "any region");
        }
    });
}

const Subject WHITE_SUBJECTS[] = {
    {"is anything valid",
     {"CCTUtils::isValidCCT", "CCTUtils::xyAreValid", "CCTUtils::uvPrimeAreValid", "CCTUtils::isMaxCCTRegionIndex"},
     isAnythingValid},
    {"convert any chromaticity",
     {"CCTUtils::getuPrimeFromxy", "CCTUtils::getvPrimeFromxy", "CCTUtils::getxFromuvPrime",
      "CCTUtils::getyFromuvPrime"},
     convertAnyChromaticity},
    {"distance of anything",
     {"CCTUtils::getDistanceBetweenPoints", "CCTUtils::getDuvFromuvPrime", "CCTUtils::getDuvPrimeFromuvPrime",
      "CCTUtils::getDuvFromxy"},
     distanceOfAnything},
    {"ask any region",
     {"CCTUtils::cctIsInRegion", "CCTUtils::getPivotLine", "CCTUtils::getStandardLengthPivotLine",
      "CCTUtils::getCCTRegionLine", "CCTUtils::getNumCCTStepsFromCCT", "CCTUtils::getuvPrimeFromCCTRegionWithNumSteps",
      "CCTUtils::getuvPrimeFromCCTRegion", "CCTUtils::getIsoLineDuvPrime",
      "CCTUtils::getRegionPositionFromuvPrimeAndRegion", "CCTUtils::getxyFromCCTRegion"},
     askAnyRegion},
    {"ask for any position",
     {"CCTUtils::getCCTFromCCTRegionAndRegionPosition", "CCTUtils::getIsoDuvPrimeFromCCTRegionAndRegionPosition",
      "CCTUtils::getCCTFromuvAndCCTRegion"},
     askForAnyPosition},
    {"tint anything",
     {"CCTUtils::tintuvPrime", "CCTUtils::getTintEnd", "CCTUtils::getTintFromuvAndIntersectionPoint",
      "CCTUtils::getCCTAndTintFromuvAndCCTRegion"},
     tintAnything},
    {"white point of any CCT",
     {"CCTUtils::getuvPrimeFromValidCCTAndTint", "CCTUtils::getuvPrimeFromCCTAndTint", "CCTUtils::getuvPrimeFromCCT",
      "CCTUtils::getxyFromCCTAndTint", "CCTUtils::getxyFromCCT"},
     whitePointOfAnyCCT},
    {"white point of anything",
     {"CCTUtils::getCCTAndTintFromValiduvPrime", "CCTUtils::getCCTAndTintFromuvPrime", "CCTUtils::getCCTAndTintFromxy"},
     whitePointOfAnything},
    {"cross anything",
     {"CCTUtils::lineIntersectsRegion", "CCTUtils::linesIntersect", "CCTImageUtils::linesIntersect"},
     crossAnything},
};

// The chart.

const QRectF RANGE(0.2, 0.6, 0.4, -0.3);
const QRect WIDGET(0, 0, 400, 300);

/// Widths as they are, whatever an int makes of them.
double sizeOf(int first, int last)
{
    return double(last) - first + 1;
}

void roundAnything()
{
    withPairs([](double x, double y) {
        const QPoint point = CCTImageUtils::roundPoint({x, y});
        check(point.x() == nearestInt(std::floor(x + 0.5)) && point.y() == nearestInt(std::floor(y + 0.5)),
              "roundPoint");
    });
    withReals([](double value) {
        check(CCTImageUtils::roundPoint({value, 0}).x() == nearestInt(std::floor(value + 0.5)), "x");
        check(CCTImageUtils::roundPoint({0, value}).y() == nearestInt(std::floor(value + 0.5)), "y");
    });
}

void chartAnyRange()
{
    const auto chart = [](const QRectF &range) {
        check(isSame(CCTImageUtils::getxyRectWidth(range), std::abs(range.width())), "getxyRectWidth");
        check(isSame(CCTImageUtils::getxyRectHeight(range), std::abs(range.height())), "getxyRectHeight");
        double x = 7;
        double y = 7;
        CCTImageUtils::getxyFromPoint(x, y, range, QPoint(200, 150), WIDGET);
        check(isSame(x, range.x() + 0.5 * std::abs(range.width())), "middle");
        const QPoint point = CCTImageUtils::getPointFromxy(0.3, 0.5, range, WIDGET);
        const double across = 400 * (0.3 - range.x()) / std::abs(range.width());
        const double down = 300 * (range.y() - 0.5) / std::abs(range.height());
        check(point.x() == nearestInt(std::floor(across + 0.5)), "pixel across");
        check(point.y() == nearestInt(std::floor(down + 0.5)), "pixel down");
        const QPoint white = CCTImageUtils::getPointFromCCT(5000, range, WIDGET);
        check(white == CCTImageUtils::getPointFromCCTAndTint(5000, 0, range, WIDGET), "white point");
    };
    withTriples([&](double a, double b, double c) { chart(QRectF(a, b, c, -0.3)); });
    withReals([&](double value) {
        chart(QRectF(value, 0.6, 0.4, -0.3));
        chart(QRectF(0.2, value, 0.4, -0.3));
        chart(QRectF(0.2, 0.6, value, -0.3));
        chart(QRectF(0.2, 0.6, 0.4, value));
    });
    withPairs([&](double x, double y) {
        const QPoint point = CCTImageUtils::getPointFromxy(x, y, RANGE, WIDGET);
        check(point.x() == nearestInt(std::floor(400 * (x - RANGE.x()) / RANGE.width() + 0.5)), "pixel of any x");
    });
}

void chartAnyWidget()
{
    const QVector<int> edges{INT_MIN, INT_MIN + 1, -400, -1, 0, 1, 399, 65535, INT_MAX - 1, INT_MAX};
    for (const int first : edges) {
        withEach(edges, [&](int last) {
            const QRect widget(QPoint(first, 0), QPoint(last, 299));
            const QRect turned(QPoint(0, first), QPoint(399, last));
            const double size = sizeOf(first, last);
            double x = 7;
            double y = 7;
            CCTImageUtils::getxyFromPoint(x, y, RANGE, QPoint(100, 150), widget);
            check(isSame(x, RANGE.x() + 100 / size * RANGE.width()), "x on any width");
            CCTImageUtils::getxyFromPoint(x, y, RANGE, QPoint(100, 150), turned);
            check(isSame(y, RANGE.y() - 150 / size * 0.3) || std::abs(y - (RANGE.y() - 150 / size * 0.3)) < 1e-9,
                  "y on any height");
            const QPoint across = CCTImageUtils::getPointFromxy(0.4, 0.5, RANGE, widget);
            check(across.x() == nearestInt(std::floor(size * (0.4 - RANGE.x()) / RANGE.width() + 0.5)), "pixel across");
            const QPoint down = CCTImageUtils::getPointFromxy(0.4, 0.5, RANGE, turned);
            check(down.y() == nearestInt(std::floor(size * (RANGE.y() - 0.5) / 0.3 + 0.5)), "pixel down");
        });
    }
}

void chartAnyPixel()
{
    for (const int down : INTS) {
        withInts([&](int across) {
            double x = 7;
            double y = 7;
            CCTImageUtils::getxyFromPoint(x, y, RANGE, QPoint(across, down), WIDGET);
            check(isSame(x, RANGE.x() + across / 400.0 * RANGE.width()), "x of any pixel");
            check(std::isfinite(y), "y of any pixel");
        });
    }
}

void chartAnyWhitePoint()
{
    for (const int tint : INTS) {
        withInts([&](int cct) {
            const int knownCCT = std::min(std::max(cct, 1950), 11000);
            const int knownTint = std::min(std::max(tint, -32767), 32767);
            check(CCTImageUtils::getPointFromCCT(cct, RANGE, WIDGET)
                      == CCTImageUtils::getPointFromCCT(knownCCT, RANGE, WIDGET),
                  "getPointFromCCT");
            check(CCTImageUtils::getPointFromCCTAndTint(cct, tint, RANGE, WIDGET)
                      == CCTImageUtils::getPointFromCCTAndUnboundedTint(knownCCT, knownTint, RANGE, WIDGET),
                  "getPointFromCCTAndTint");
            double x = 0;
            double y = 0;
            CCTUtils::getxyFromCCTAndTint(knownCCT, tint, x, y);
            check(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, RANGE, WIDGET)
                      == CCTImageUtils::getPointFromxy(x, y, RANGE, WIDGET),
                  "getPointFromCCTAndUnboundedTint");
        });
    }
}

const Subject CHART_SUBJECTS[] = {
    {"round anything", {"CCTImageUtils::roundPoint"}, roundAnything},
    {"chart any range",
     {"CCTImageUtils::getxyRectWidth", "CCTImageUtils::getxyRectHeight", "CCTImageUtils::getPointFromxy",
      "CCTImageUtils::getxyFromPoint"},
     chartAnyRange},
    {"chart any widget", {"CCTImageUtils::getPointFromxy", "CCTImageUtils::getxyFromPoint"}, chartAnyWidget},
    {"chart any pixel", {"CCTImageUtils::getxyFromPoint"}, chartAnyPixel},
    {"chart any white point",
     {"CCTImageUtils::getPointFromCCTAndUnboundedTint", "CCTImageUtils::getPointFromCCTAndTint",
      "CCTImageUtils::getPointFromCCT"},
     chartAnyWhitePoint},
};

// The library.

constexpr char MINE[] = "Mine";

/// A fresh library with a user list of three colours.
TrelColorLibrary &filledLibrary()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    library.createColorList(MINE, true);
    for (const char *uid : {"{a}", "{b}", "{c}"})
        library.createColor(TrelColor(0x102030), uid, MINE, "preset", "vendor");
    return library;
}

bool isKnownRole(int role)
{
    const bool isOwn = role >= TrelColorLibraryItem::ColorRole && role <= TrelColorLibraryItem::VendorIdRole;
    return isOwn || role == Qt::DisplayRole || role == Qt::DecorationRole || role == Qt::EditRole
           || role == Qt::ToolTipRole;
}

bool isWritableRole(int role)
{
    return isKnownRole(role) && role != Qt::DecorationRole && role != TrelColorLibraryItem::ItemTypeRole;
}

const QVector<int> ROLES = [] {
    QVector<int> roles{INT_MIN, -1, 255, 256, INT_MAX};
    for (int role = 0; role <= 50; ++role)
        roles.append(role);
    return roles;
}();

void indexAnything()
{
    const TrelColorLibrary &library = filledLibrary();
    const QModelIndex list = library.getIndexOfListId(MINE);
    withInts([&](int number) {
        const QModelIndex row = library.index(number, 0, list);
        check(row.isValid() == (number >= 0 && number < 3), "row");
        const QModelIndex column = library.index(1, number, list);
        check(column.isValid() == (number >= 0), "column");
        check(library.data(column, Qt::DisplayRole).isValid() == (number == 0 || number == 1), "data of any column");
        check(library.flags(column).testFlag(Qt::ItemIsEditable) == (number == 0), "flags of any column");
        check(!library.index(number, number, QModelIndex()).isValid(), "under nothing");
        check(library.headerData(number, Qt::Horizontal, Qt::DisplayRole).toString()
                  == (number == 0 ? "Swatches" : "Color ID"),
              "section");
        check(!library.headerData(0, Qt::Orientation(3), Qt::DisplayRole).isValid(), "orientation");
        check(library.headerData(0, Qt::Horizontal, number).isValid() == (number == Qt::DisplayRole), "role");
        const auto *item = static_cast<TrelColorLibraryItem *>(list.internalPointer());
        check((item->child(number) != nullptr) == (number >= 0 && number < 3), "child");
        check(item->data(Qt::DisplayRole, number).isValid() == (number == 0 || number == 1), "item's column");
    });
}

void askForAnyRole()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex color = library.getIndexOfUid("{a}");
    auto *item = static_cast<TrelColorLibraryItem *>(color.internalPointer());
    withEach(ROLES, [&](int role) {
        check(library.data(color, role).isValid() == isKnownRole(role), "data");
        check(item->data(role, 0).isValid() == isKnownRole(role), "item's data");
    });
    withEach(ROLES, [&](int role) {
        if (role == TrelColorLibraryItem::ColorRole)
            return; // takes a pointer
        const QString before = item->displayName();
        check(item->setData(role, role, INT_MAX) == isWritableRole(role), "item's setData");
        check(library.setData(color, QString::number(role) + " more", role) == isWritableRole(role), "setData");
        check(isWritableRole(role) || item->displayName() == before, "an unknown role changes nothing");
    });
}

/// Counts below 1 do nothing, wherever.
void insertAndRemoveNothing()
{
    TrelColorLibrary &library = filledLibrary();
    const QModelIndex list = library.getIndexOfListId(MINE);
    auto *item = static_cast<TrelColorLibraryItem *>(list.internalPointer());
    for (const int row : INTS) {
        withInts([&](int number) {
            const int count = std::min(number, 0);
            check(!library.insertRows(row, count, list) && !library.removeRows(row, count, list), "rows");
            check(!library.insertRows(row, number, QModelIndex()) && !library.removeRows(row, number, QModelIndex()),
                  "under nothing");
            item->removeChildren(row, count);
            if (row >= 0 && row <= 3)
                item->insertChildren(row, count);
            check(item->childCount() == 3, "nothing changed");
        });
    }
}

void describeByAnything()
{
    TrelColorLibrary &library = filledLibrary();
    library.rename("{a}", "A", true);
    withInts([&](int descriptor) {
        const bool isKnown = descriptor >= 1 && descriptor <= 4;
        check(library.getName("{a}", descriptor).isEmpty() == !isKnown, "getName");
        check(library.getName("{none}", descriptor).isEmpty(), "getName of none");
        const QString text =
            library.getAlternativeColorDescriptor("{a}", TrelColorLibrary::ColorDescriptor(descriptor));
        check(isKnown ? text == library.getName("{a}", descriptor) : text == "A", "getAlternativeColorDescriptor");
    });
}

/// Old uids are kept of a list without a name, below version 0.96; NaN is no version.
void loadAnyVersion()
{
    TrelColorLibrary &library = filledLibrary();
    QDomDocument document;
    document.setContent(QString("<p><ColorLibrary><Color uid='{o}' name='O' value='#102030'/></ColorLibrary></p>"));
    const auto load = [&](double version) {
        QString error;
        QStringList oldUids;
        KestraProjectHelper helper;
        check(helper.loadDocument(document, error, version, oldUids) && error.isEmpty(), "helper");
        check(oldUids.isEmpty() == !(version < 0.96), "old uids");
        TrelColorLibraryItem item(nullptr, false);
        check(item.loadDocument(document, error, version, "Kestra") && item.childCount() >= 1, "item");
        check(library.loadDocument(document, error, version, "Kestra"), "library");
        check(library.getColorUids("Project Swatches").first() == "{o}", "swatch");
    };
    withReals(load);
    withEach(QVector<double>{0.96, std::nextafter(0.96, 0.0), std::nextafter(0.96, 1.0)}, load);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

const Subject LIBRARY_SUBJECTS[] = {
    {"index anything",
     {"TrelColorLibrary::index", "TrelColorLibrary::headerData", "TrelColorLibraryItem::child",
      "TrelColorLibraryItem::data"},
     indexAnything},
    {"ask for any role",
     {"TrelColorLibrary::data", "TrelColorLibrary::setData", "TrelColorLibraryItem::setData"},
     askForAnyRole},
    {"insert and remove nothing",
     {"TrelColorLibrary::insertRows", "TrelColorLibrary::removeRows", "TrelColorLibraryItem::insertChildren",
      "TrelColorLibraryItem::removeChildren"},
     insertAndRemoveNothing},
    {"describe by anything",
     {"TrelColorLibrary::getName", "TrelColorLibrary::getAlternativeColorDescriptor"},
     describeByAnything},
    {"load any version",
     {"KestraProjectHelper::loadDocument", "TrelColorLibrary::loadDocument", "TrelColorLibraryItem::loadDocument"},
     loadAnyVersion},
};

QVector<Subject> allSubjects()
{
    QVector<Subject> all;
    for (const Subject &row : COLOR_SUBJECTS)
        all.append(row);
    for (const Subject &row : CURVE_SUBJECTS)
        all.append(row);
    for (const Subject &row : FIXTURE_SUBJECTS)
        all.append(row);
    for (const Subject &row : WHITE_SUBJECTS)
        all.append(row);
    for (const Subject &row : CHART_SUBJECTS)
        all.append(row);
    for (const Subject &row : LIBRARY_SUBJECTS)
        all.append(row);
    return all;
}

const QVector<Subject> SUBJECTS = allSubjects();

/// What is fatal and no other test dies of.
struct FatalCase
{
    const char *name;
    const char *text;
    void (*run)();
};

/// A colour wider than the data of the profile that it names.
TrelColor tooWide()
{
    return TrelColor::fromNChannel16({32768, 1, 2, 3, 4, 5}, ColorUtils::CONFIG_RGBAW, ColorUtils::GENERIC_RGB);
}

void solveTooWide()
{
    const double Yxy[] = {0.5, 0.3, 0.3};
    unsigned short words[5];
    ColorUtils::convertYxyToNChannelAndApplyCurve(Yxy, words, ColorUtils::CONFIG_RGBWW, ColorUtils::PIXELNODE_RGB_CLASS,
                                                  LINEAR, true);
}

void putOutInto(TrelColor color, Profile profile, Mode mode)
{
    unsigned char bytes[8];
    ColorUtils::convertTrelColorToDMX(color, false, 4, 2, bytes, LINEAR, LINEAR, profile, mode);
}

/// Previews are rendered for generic RGB: once its data have fewer than three channels, none can be.
void previewWithoutData()
{
    Tristimulus *data =
        TristimulusFactory::getInstance()->getTristimulus(ColorUtils::GENERIC_RGB, ColorUtils::CONFIG_RGB);
    for (const auto set : {&Tristimulus::setX, &Tristimulus::setY, &Tristimulus::setZ})
        (data->*set)({1.0, 2.0});
    TrelColor(0.3, 0.3).red8();
}

/// The library under an application object.
template <typename F>
void inALibrary(F use)
{
    int count = 1;
    char name[] = "test";
    char *arguments[] = {name, nullptr};
    const QGuiApplication application(count, arguments);
    use(filledLibrary());
}

void loadProject(TrelColorLibrary &library)
{
    QDomDocument document;
    QString error;
    library.loadDocument(document, error, 1.0, "Kestra");
}

const FatalCase FATAL_CASES[] = {
    {"laid over, too wide", "index out of range",
     [] {
         TrelColor target(0x102030);
         ColorUtils::updateColor(target, tooWide());
     }},
    {"solved and compensated, too wide", "index out of range", solveTooWide},
    {"put out, too wide", "index out of range",
     [] { putOutInto(TrelColor(0.3, 0.3), ColorUtils::PIXELNODE_RGB_CLASS, ColorUtils::RGBW_IN_OUT); }},
    {"put out, calibrated RGB", "\"false\"",
     [] {
         putOutInto(TrelColor::fromRgb8(1, 2, 3, 255, ColorUtils::PIXELNODE_RGB_CLASS), ColorUtils::PIXELNODE_RGB_CLASS,
                    ColorUtils::RGB_IN_OUT);
     }},
    {"put out, invalid for its alpha and calibrated", "\"false\"",
     [] {
         putOutInto(TrelColor::fromNChannelF({2.0, 0.1, 0.2}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW),
                    ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT);
     }},
    {"put out, another number of levels", "realVector.size() == channelCount + 1",
     [] {
         putOutInto(TrelColor::fromNChannel16({65535, 1, 2}, ColorUtils::CONFIG_RGBW, ColorUtils::WASHLINE_PZ6_RGBW),
                    ColorUtils::WASHLINE_PZ6_RGBW, ColorUtils::RGBW_IN_OUT);
     }},
    {"put out at 8 bits, beyond the curve", "index out of range",
     [] {
         const double level = 1e6;
         unsigned char byte = 0;
         ColorUtils::applyCurve(1, 1, &level, &byte, NORMAL, SOFTWARE);
     }},
    {"preview without data", "index out of range", previewWithoutData},
    {"blended at infinity", "progress <= 1.0", [] { TrelColor::blend(TrelColor(), TrelColor(), ENDLESS); }},
    {"blended below 0 by a denormal", "progress >= 0.0",
     [] { TrelColor::blend(TrelColor(), TrelColor(), -Limits::denorm_min()); }},
    {"blended above 1 by the least", "progress <= 1.0",
     [] { TrelColor::blend(TrelColor(), TrelColor(), std::nextafter(1.0, 2.0)); }},
    {"project without its list", "listIndex.isValid()",
     [] {
         inALibrary([](TrelColorLibrary &library) {
             library.removeRows(1, 1, library.rootIndex());
             loadProject(library);
         });
     }},
    {"project whose list has another name", "listIndex.isValid()",
     [] {
         inALibrary([](TrelColorLibrary &library) {
             library.setData(library.getIndexOfListId("Project Swatches"), "Mine too", Qt::EditRole);
             loadProject(library);
         });
     }},
    {"rows removed, most", "index out of range",
     [] {
         inALibrary([](TrelColorLibrary &library) { library.removeRows(0, INT_MAX, library.getIndexOfListId(MINE)); });
     }},
    {"rows inserted, last row", "index out of range",
     [] {
         inALibrary([](TrelColorLibrary &library) { library.insertRows(INT_MAX, 1, library.getIndexOfListId(MINE)); });
     }},
};

ChildCases childCases()
{
    ChildCases cases;
    for (const FatalCase &row : FATAL_CASES)
        cases.insert(row.name, row.run);
    return cases;
}

template <typename Rows>
void addRows(const Rows &rows)
{
    QTest::addColumn<int>("row");
    int i = 0;
    for (const auto &row : rows)
        QTest::addRow("%s: %s", row.function, row.argument) << i++;
}

QString faults()
{
    if (s_passed == 0)
        return "nothing was tried";
    return s_faults.join('\n');
}

void begin()
{
    s_faults.clear();
    s_passed = 0;
}

/// Public functions of \a header with a number or an enumerator among what goes in.
QStringList functionsIn(const QString &header)
{
    static const QRegularExpression comment("//[^\n]*");
    static const QRegularExpression declaration("(?:^|[ *&])(\\w+)\\(([^()]*)\\)[^()]*$");
    static const QRegularExpression number(
        "\\b(int|double|float|short|unsigned|char digit|Spec|NChannelRenderType|ChannelConfiguration|HuelockProfileID|"
        "IOModeID|HueLockMode|GlobalColor|Orientation|ColorDescriptor|QPointF?|QRectF?|QLineF)\\b");
    QFile file(QFINDTESTDATA("../src/" + header));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(file.readAll()).remove(comment);
    const QString className = QFileInfo(header).baseName();
    const auto classEnd = text.indexOf("\n};");
    QStringList names;
    for (const QString &part : {text.left(classEnd), text.mid(classEnd)}) {
        const QString prefix = part.contains("class TREL_EXPORT") ? className + "::" : QString();
        const QStringList statements = part.section("\nprivate:", 0, 0).split(QRegularExpression("[;{}:]\\s"));
        for (const QString &statement : statements) {
            const auto match = declaration.match(statement.simplified());
            if (!match.hasMatch() || statement.contains("Q_PROPERTY"))
                continue;
            const QStringList parameters = match.captured(2).split(',');
            const bool takesNumber = std::any_of(parameters.cbegin(), parameters.cend(), [](const QString &parameter) {
                const bool goesOut = parameter.contains(QRegularExpression("[*&]")) && !parameter.contains("const ");
                return !goesOut && number.match(parameter).hasMatch();
            });
            if (takesNumber)
                names.append(prefix + match.captured(1));
        }
    }
    names.removeDuplicates();
    return names;
}

QSet<QString> functionsMet()
{
    QSet<QString> met;
    for (const RealSetter &row : REAL_SETTERS)
        met.insert(row.function);
    for (const IntSetter &row : INT_SETTERS)
        met.insert(row.function);
    for (const IdSetter &row : ID_SETTERS)
        met.insert(row.function);
    for (const Subject &row : SUBJECTS) {
        for (const QString &function : row.functions)
            met.insert(function);
    }
    return met;
}

} // namespace

void tst_AnyNumber::realSetters_data()
{
    addRows(REAL_SETTERS);
}

void tst_AnyNumber::realSetters()
{
    QFETCH(int, row);
    const Messages messages;
    begin();
    for (const TrelColor &before : starts())
        withReals([&](double value) { checkReal(REAL_SETTERS[row], before, value); });
    QVERIFY2(faults().isEmpty(), qPrintable(faults()));
}

void tst_AnyNumber::intSetters_data()
{
    addRows(INT_SETTERS);
}

void tst_AnyNumber::intSetters()
{
    QFETCH(int, row);
    const Messages messages;
    begin();
    for (const TrelColor &before : starts())
        withInts([&](int value) { checkInt(INT_SETTERS[row], before, value); });
    QVERIFY2(faults().isEmpty(), qPrintable(faults()));
}

void tst_AnyNumber::idSetters_data()
{
    addRows(ID_SETTERS);
}

void tst_AnyNumber::idSetters()
{
    QFETCH(int, row);
    const IdSetter &setter = ID_SETTERS[row];
    const Messages messages;
    begin();
    for (const TrelColor &before : starts()) {
        withIds([&](int id) {
            TrelColor color = before;
            s_warnings.clear();
            setter.set(color, id);
            check(setter.get(color) == id, "what was set is read");
            check(s_warnings.isEmpty(), "no warning");
            checkReadable(color);
        });
    }
    QVERIFY2(faults().isEmpty(), qPrintable(faults()));
}

void tst_AnyNumber::functions_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < int(SUBJECTS.size()); ++i)
        QTest::newRow(SUBJECTS[i].name) << i;
}

void tst_AnyNumber::functions()
{
    QFETCH(int, row);
    const Messages messages;
    begin();
    SUBJECTS[row].run();
    QVERIFY2(faults().isEmpty(), qPrintable(faults()));
}

void tst_AnyNumber::fatal_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const FatalCase &row : FATAL_CASES)
        QTest::newRow(row.name) << QByteArray(row.text);
}

void tst_AnyNumber::fatal()
{
    QFETCH(QByteArray, text);
    QVERIFY(diesWith(QTest::currentDataTag(), text));
}

void tst_AnyNumber::everyFunctionIsMet_data()
{
    QTest::addColumn<QString>("header");
    const QFileInfo anyHeader(QFINDTESTDATA("../src/TrelColor.h"));
    const QStringList headers = anyHeader.dir().entryList({"*.h"});
    for (const QString &header : headers) {
        if (!header.endsWith("_p.h"))
            QTest::newRow(qPrintable(header)) << header;
    }
}

void tst_AnyNumber::everyFunctionIsMet()
{
    QFETCH(QString, header);
    const QSet<QString> met = functionsMet();
    QStringList missed;
    for (const QString &name : functionsIn(header)) {
        if (!met.contains(name))
            missed.append(name);
    }
    QVERIFY2(missed.isEmpty(), qPrintable("no row for " + missed.join(", ")));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_AnyNumber, childCases())
#include "tst_AnyNumber.moc"
