#include "TrelColor.h"

#include "FullScale_p.h"
#include "TristimulusFactory.h"
#include "ValueText_p.h"

#include <QDataStream>
#include <QDebug>
#include <QLinearGradient>
#include <QMimeData>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

constexpr int FULL_TURN = 36000; ///< hundredths of a degree
constexpr int ACHROMATIC = -1;
constexpr unsigned int ACHROMATIC_REAL = 0x7FFFFFFF; ///< ODD-04: what a real hue of −1.0 is stored as
constexpr unsigned int OPAQUE = 0xFFFFFFFF;

// By index. ODD-02: color0 is white and color1 black, not the other way round.
constexpr unsigned int GLOBAL_COLORS[] = {
    0xFFFFFFFF, // color0
    0xFF000000, // color1
    0xFF000000, // black
    0xFFFFFFFF, // white
    0xFF808080, // darkGray
    0xFFA0A0A4, // gray
    0xFFC0C0C0, // lightGray
    0xFFFF0000, // red
    0xFF00FF00, // green
    0xFF0000FF, // blue
    0xFF00FFFF, // cyan
    0xFFFF00FF, // magenta
    0xFFFFFF00, // yellow
    0xFF800000, // darkRed
    0xFF008000, // darkGreen
    0xFF000080, // darkBlue
    0xFF008080, // darkCyan
    0xFF800080, // darkMagenta
    0xFF808000, // darkYellow
    0x00000000, // transparent
};
static_assert(std::size(GLOBAL_COLORS) == Qt::transparent + 1, "one row for each global colour");

int byteOf(unsigned int argb, int shift)
{
    return int(argb >> shift & 0xFF);
}

/// Whether every value is in 0.0..1.0; NaN is not.
template <typename... Values>
bool areReal(Values... values)
{
    return ((values >= 0.0 && values <= 1.0) && ...);
}

template <typename... Values>
bool are8(Values... values)
{
    return ((values >= 0 && values <= 255) && ...);
}

template <typename... Values>
bool are16(Values... values)
{
    return ((values <= 65535u) && ...);
}

bool isRealHsv(double h, double s, double v, double a)
{
    return (h == -1.0 || areReal(h)) && areReal(s, v, a);
}

/// Stored hue of \a degrees. The remainder keeps the sign, so that a negative hue stays one (ODD-03).
unsigned int hueFromDegrees(int degrees)
{
    return unsigned(degrees == ACHROMATIC ? ACHROMATIC : degrees % 360 * 100);
}

unsigned int hueFromReal(double hue)
{
    return hue == -1.0 ? ACHROMATIC_REAL : FullScale::toUInt32(hue * FULL_TURN + 0.5);
}

/// Fills the pointers that are not null with what an N-channel getter answers.
template <typename Level, typename Convert>
void exportLevels(const QVector<unsigned int> &words, Level alpha, Convert convert, QVector<Level> *levels)
{
    if (!levels)
        return;
    levels->clear();
    levels->reserve(words.size() + 1);
    levels->append(alpha);
    for (const unsigned int word : words)
        levels->append(Level(convert(word)));
}

/// The words of the channel levels, which follow the alpha in \a levels.
template <typename Level, typename Convert>
QVector<unsigned int> importLevels(const QVector<Level> &levels, Convert convert)
{
    QVector<unsigned int> words(levels.size() - 1);
    std::transform(levels.cbegin() + 1, levels.cend(), words.begin(), convert);
    return words;
}

constexpr signed char hexValue(int character)
{
    if (character >= '0' && character <= '9')
        return static_cast<signed char>(character - '0');
    if (character >= 'a' && character <= 'f')
        return static_cast<signed char>(character - 'a' + 10);
    if (character >= 'A' && character <= 'F')
        return static_cast<signed char>(character - 'A' + 10);
    return -1;
}

/// hexValue() of every character up to U+00FF: digits follow no pattern that a branch could be predicted from.
constexpr std::array<signed char, 256> hexValues()
{
    std::array<signed char, 256> values = {};
    for (std::size_t c = 0; c < values.size(); ++c)
        values[c] = hexValue(int(c));
    return values;
}

constexpr auto HEX_VALUES = hexValues();

int hexDigit(char digit)
{
    return HEX_VALUES[static_cast<unsigned char>(digit)];
}

/// \pre the character is at most U+00FF.
int hexDigit(QChar digit)
{
    return HEX_VALUES[digit.unicode()];
}

/// The digits at \a s as a component; a wrong digit sets every bit from its place up.
template <int digits, typename Character>
unsigned int hexComponent(const Character *s)
{
    unsigned int component = 0;
    for (int i = 0; i < digits; ++i)
        component |= unsigned(hexDigit(s[i])) << (4 * (digits - 1 - i));
    return component;
}

/// The components that \a length digits give.
template <typename Character>
void readHexDigits(const Character *place, std::size_t length, unsigned int *argb)
{
    if (length != 6 && length != 8 && length != 12 && length != 16) {
        // ODD-23: not refused here, but by the range check of whoever takes the components.
        argb[0] = 0;
        std::fill_n(argb + 1, 3, 0xFFFFFFFF);
        return;
    }
    const bool withAlpha = length == 8 || length == 16;
    const bool areBytes = length == 6 || length == 8;
    argb[0] = 65535;
    for (int component = withAlpha ? 0 : 1; component < 4; ++component, place += areBytes ? 2 : 4)
        argb[component] = areBytes ? hexComponent<2>(place) * 257 : hexComponent<4>(place);
}

} // namespace

TrelColor::TrelColor()
{
    invalidate();
}

TrelColor::TrelColor(unsigned int rgb)
{
    // ODD-01: no alpha, as for a QColor from a QRgb.
    setRgb8(byteOf(rgb, 16), byteOf(rgb, 8), byteOf(rgb, 0), 255, ColorUtils::GENERIC_RGB);
}

TrelColor::TrelColor(Qt::GlobalColor color)
{
    const auto index = std::size_t(color);
    if (index >= std::size(GLOBAL_COLORS)) {
        invalidate();
        return;
    }
    const unsigned int argb = GLOBAL_COLORS[index];
    setRgb8(byteOf(argb, 16), byteOf(argb, 8), byteOf(argb, 0), byteOf(argb, 24), ColorUtils::GENERIC_RGB);
}

TrelColor::TrelColor(const QColor &color)
{
    setQColor(color);
}

TrelColor::TrelColor(unsigned int r, unsigned int g, unsigned int b, unsigned int a)
{
    setRgb16(r, g, b, a, ColorUtils::GENERIC_RGB);
}

TrelColor::TrelColor(double x, double y)
{
    invalidate();
    m_spec = Yxy;
    storeYxy(1.0, x, y, ColorUtils::GENERIC_RGB);
}

TrelColor::TrelColor(const QString &name)
{
    invalidate();
    setNamedColor(name);
}

TrelColor::TrelColor(const char *name)
    : TrelColor(QString::fromUtf8(name))
{
}

TrelColor &TrelColor::operator=(const QColor &color)
{
    return *this = TrelColor(color);
}

TrelColor &TrelColor::operator=(Qt::GlobalColor color)
{
    return *this = TrelColor(color);
}

TrelColor TrelColor::fromRgb8(int r, int g, int b, int a, ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (!are8(r, g, b, a))
        color.refuse("TrelColor::fromRgb: RGB parameters out of range");
    else
        color.setRgb8(r, g, b, a, profile);
    return color;
}

TrelColor TrelColor::fromRgb16(unsigned int r, unsigned int g, unsigned int b, unsigned int a,
                               ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (!are16(r, g, b, a))
        color.refuse("TrelColor::fromRgb16: RGB parameters out of range");
    else
        color.setRgb16(r, g, b, a, profile);
    return color;
}

TrelColor TrelColor::fromRgbF(double r, double g, double b, double a, ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (!areReal(r, g, b, a))
        color.refuse("TrelColor::fromRgbF: RGB parameters out of range");
    else
        color.setRgbF(r, g, b, a, profile);
    return color;
}

TrelColor TrelColor::fromRgba(unsigned int argb)
{
    return fromRgb8(byteOf(argb, 16), byteOf(argb, 8), byteOf(argb, 0), byteOf(argb, 24), ColorUtils::GENERIC_RGB);
}

TrelColor TrelColor::fromRgb(unsigned int rgb)
{
    return fromRgb8(byteOf(rgb, 16), byteOf(rgb, 8), byteOf(rgb, 0), 255, ColorUtils::GENERIC_RGB);
}

TrelColor TrelColor::fromHsv8(int h, int s, int v, int a, ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    // ODD-03: −1 passes here, but not in the setter; 360 the other way round.
    if (h < ACHROMATIC || h >= 360 || !are8(s, v, a)) {
        color.refuse("TrelColor::fromHsv: HSV parameters out of range");
        return color;
    }
    color.store(Hsv, {hueFromDegrees(h), FullScale::fromByte(unsigned(s)), FullScale::fromByte(unsigned(v))},
                FullScale::fromByte(unsigned(a)), profile);
    return color;
}

TrelColor TrelColor::fromHsv16(int h, unsigned int s, unsigned int v, unsigned int a,
                               ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (h < ACHROMATIC || h >= 360 || !are16(s, v, a)) {
        // ODD-12: the text is that of fromHsv8().
        color.refuse("TrelColor::fromHsv: HSV parameters out of range");
        return color;
    }
    color.store(Hsv, {hueFromDegrees(h), FullScale::from16(s), FullScale::from16(v)}, FullScale::from16(a), profile);
    return color;
}

TrelColor TrelColor::fromHsvF(double h, double s, double v, double a, ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (!isRealHsv(h, s, v, a))
        color.refuse("TrelColor::fromHsvF: HSV parameters out of range");
    else
        color.setHsvF(h, s, v, a, profile);
    return color;
}

TrelColor TrelColor::fromxyY(double x, double y, double Y, ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    if (!areReal(x, y, Y)) {
        color.refuse("TrelColor::fromxyY: xyY parameters out of range");
        return color;
    }
    color.m_spec = Yxy;
    color.storeYxy(Y, x, y, profile);
    return color;
}

TrelColor TrelColor::fromNChannelF(const QVector<double> &levels, ColorUtils::ChannelConfiguration configuration,
                                   ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    color.setNChannelF(levels, configuration, profile);
    return color;
}

TrelColor TrelColor::fromNChannel16(const QVector<unsigned int> &levels, ColorUtils::ChannelConfiguration configuration,
                                    ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    color.setNChannel16(levels, configuration, profile);
    return color;
}

TrelColor TrelColor::fromNChannel8(const QVector<int> &levels, ColorUtils::ChannelConfiguration configuration,
                                   ColorUtils::HuelockProfileID profile)
{
    TrelColor color;
    color.setNChannel8(levels, configuration, profile);
    return color;
}

TrelColor::Spec TrelColor::spec() const
{
    return m_spec;
}

bool TrelColor::isValid() const
{
    return m_spec != Invalid;
}

void TrelColor::invalidate()
{
    store(Invalid, {0, 0, 0}, OPAQUE, ColorUtils::GENERIC_RGB);
}

ColorUtils::ChannelConfiguration TrelColor::getChannelConfiguration() const
{
    return m_channelConfiguration;
}

ColorUtils::HuelockProfileID TrelColor::getHuelockProfileID() const
{
    return m_profile;
}

void TrelColor::setHuelockProfileID(ColorUtils::HuelockProfileID profile)
{
    m_profile = profile;
}

TrelColor::NChannelRenderType TrelColor::getNChannelRenderType() const
{
    return NChannelRenderType(int(m_words[FirstWord]));
}

void TrelColor::setNChannelRenderType(NChannelRenderType type)
{
    // ODD-16: the word is shared with red, hue and half of Y.
    m_words[FirstWord] = unsigned(type);
}

int TrelColor::alpha8() const
{
    return FullScale::toByte(m_alpha);
}

unsigned int TrelColor::alpha16() const
{
    return FullScale::to16(m_alpha);
}

double TrelColor::alphaF() const
{
    return FullScale::toReal(m_alpha);
}

void TrelColor::setAlpha8(int alpha)
{
    // ODD-11: the one setter of a component that says something.
    if (!are8(alpha))
        refuse("TrelColor::setAlpha8: alpha parameter out of range");
    else
        m_alpha = FullScale::fromByte(unsigned(alpha));
}

void TrelColor::setAlpha16(unsigned int alpha)
{
    if (check16(alpha))
        m_alpha = FullScale::from16(alpha);
}

void TrelColor::setAlphaF(double alpha)
{
    if (checkReal(alpha))
        m_alpha = FullScale::fromReal(alpha);
}

int TrelColor::red8() const
{
    return FullScale::toByte(rgbWord(FirstWord));
}

int TrelColor::green8() const
{
    return FullScale::toByte(rgbWord(SecondWord));
}

int TrelColor::blue8() const
{
    return FullScale::toByte(rgbWord(ThirdWord));
}

unsigned int TrelColor::red16() const
{
    return FullScale::to16(rgbWord(FirstWord));
}

unsigned int TrelColor::green16() const
{
    return FullScale::to16(rgbWord(SecondWord));
}

unsigned int TrelColor::blue16() const
{
    return FullScale::to16(rgbWord(ThirdWord));
}

double TrelColor::redF() const
{
    return FullScale::toReal(rgbWord(FirstWord));
}

double TrelColor::greenF() const
{
    return FullScale::toReal(rgbWord(SecondWord));
}

double TrelColor::blueF() const
{
    return FullScale::toReal(rgbWord(ThirdWord));
}

void TrelColor::getRgb16(unsigned int *r, unsigned int *g, unsigned int *b, unsigned int *a) const
{
    if (!r || !g || !b)
        return;
    const TrelColor color = toRgb16(true);
    *r = color.red16();
    *g = color.green16();
    *b = color.blue16();
    if (a)
        *a = alpha16();
}

void TrelColor::getRgbF(double *r, double *g, double *b, double *a) const
{
    if (!r || !g || !b)
        return;
    const TrelColor color = toRgb16(true);
    *r = color.redF();
    *g = color.greenF();
    *b = color.blueF();
    if (a)
        *a = alphaF();
}

unsigned int TrelColor::rgba() const
{
    return unsigned(alpha8()) << 24 | (rgb() & 0xFFFFFF);
}

unsigned int TrelColor::rgb() const
{
    const TrelColor color = toRgb16(true);
    return 0xFF000000 | unsigned(color.red8()) << 16 | unsigned(color.green8()) << 8 | unsigned(color.blue8());
}

unsigned int TrelColor::toRgb(const TrelColor &color)
{
    return color.rgba();
}

void TrelColor::setRed8(int red)
{
    setComponent8(FirstWord, red);
}

void TrelColor::setGreen8(int green)
{
    setComponent8(SecondWord, green);
}

void TrelColor::setBlue8(int blue)
{
    setComponent8(ThirdWord, blue);
}

void TrelColor::setRed16(unsigned int red)
{
    setComponent16(FirstWord, red);
}

void TrelColor::setGreen16(unsigned int green)
{
    setComponent16(SecondWord, green);
}

void TrelColor::setBlue16(unsigned int blue)
{
    setComponent16(ThirdWord, blue);
}

void TrelColor::setRedF(double red)
{
    setComponentF(FirstWord, red);
}

void TrelColor::setGreenF(double green)
{
    setComponentF(SecondWord, green);
}

void TrelColor::setBlueF(double blue)
{
    setComponentF(ThirdWord, blue);
}

void TrelColor::setRgb8(int r, int g, int b, int a, ColorUtils::HuelockProfileID profile)
{
    if (!are8(r, g, b, a)) {
        refuse("TrelColor::setRgb8: RGB parameters out of range");
        return;
    }
    store(Rgb, {FullScale::fromByte(unsigned(r)), FullScale::fromByte(unsigned(g)), FullScale::fromByte(unsigned(b))},
          FullScale::fromByte(unsigned(a)), profile);
}

void TrelColor::setRgb16(unsigned int r, unsigned int g, unsigned int b, unsigned int a,
                         ColorUtils::HuelockProfileID profile)
{
    if (!are16(r, g, b, a)) {
        refuse("TrelColor::setRgb16: RGB parameters out of range");
        return;
    }
    store(Rgb, {FullScale::from16(r), FullScale::from16(g), FullScale::from16(b)}, FullScale::from16(a), profile);
}

void TrelColor::setRgb16(const unsigned int *rgb, ColorUtils::HuelockProfileID profile)
{
    if (!rgb) {
        refuse("TrelColor::setRgb16: RGB parameters out of range");
        return;
    }
    setRgb16(rgb[0], rgb[1], rgb[2], 65535, profile);
}

void TrelColor::setRgbF(double r, double g, double b, double a, ColorUtils::HuelockProfileID profile)
{
    if (!areReal(r, g, b, a)) {
        refuse("TrelColor::setRgbF: RGB parameters out of range");
        return;
    }
    store(Rgb, {FullScale::fromReal(r), FullScale::fromReal(g), FullScale::fromReal(b)}, FullScale::fromReal(a),
          profile);
}

int TrelColor::hue8() const
{
    return hue16();
}

int TrelColor::saturation8() const
{
    return FullScale::toByte(hsvWord(SecondWord));
}

int TrelColor::value8() const
{
    return FullScale::toByte(hsvWord(ThirdWord));
}

int TrelColor::hue16() const
{
    // ODD-07: rounded, so that 359.9° would be 360; getHsv16() truncates.
    const auto hue = qint64(storedHue());
    if (hue == ACHROMATIC)
        return ACHROMATIC;
    const qint64 degrees = (hue < 0 ? hue - 50 : hue + 50) / 100;
    return int(qMin(degrees, qint64(359)));
}

unsigned int TrelColor::saturation16() const
{
    return FullScale::to16(hsvWord(SecondWord));
}

unsigned int TrelColor::value16() const
{
    return FullScale::to16(hsvWord(ThirdWord));
}

double TrelColor::hueF() const
{
    const int hue = storedHue();
    return hue == ACHROMATIC ? -1.0 : hue / double(FULL_TURN);
}

double TrelColor::saturationF() const
{
    return FullScale::toReal(hsvWord(SecondWord));
}

double TrelColor::valueF() const
{
    return FullScale::toReal(hsvWord(ThirdWord));
}

void TrelColor::getHsv16(int *h, unsigned int *s, unsigned int *v, unsigned int *a) const
{
    if (!h || !s || !v)
        return;
    const TrelColor color = toHsv16();
    const int hue = color.storedHue();
    *h = hue == ACHROMATIC ? ACHROMATIC : hue / 100;
    *s = color.saturation16();
    *v = color.value16();
    if (a)
        *a = alpha16();
}

void TrelColor::getHsvF(double *h, double *s, double *v, double *a) const
{
    if (!h || !s || !v)
        return;
    const TrelColor color = toHsv16();
    *h = color.hueF();
    *s = color.saturationF();
    *v = color.valueF();
    if (a)
        *a = alphaF();
}

void TrelColor::setHsv8(int h, int s, int v, int a, ColorUtils::HuelockProfileID profile)
{
    if (h < 0 || h > 360 || !are8(s, v, a)) {
        refuse("TrelColor::setHsv8: HSV parameters out of range");
        return;
    }
    store(Hsv, {hueFromDegrees(h), FullScale::fromByte(unsigned(s)), FullScale::fromByte(unsigned(v))},
          FullScale::fromByte(unsigned(a)), profile);
}

void TrelColor::setHsv16(int h, unsigned int s, unsigned int v, unsigned int a, ColorUtils::HuelockProfileID profile)
{
    // ODD-03: no lower limit.
    if (h > 65535 || !are16(s, v, a)) {
        refuse("TrelColor::setHsv16: HSV parameters out of range");
        return;
    }
    store(Hsv, {hueFromDegrees(h), FullScale::from16(s), FullScale::from16(v)}, FullScale::from16(a), profile);
}

void TrelColor::setHsvF(double h, double s, double v, double a, ColorUtils::HuelockProfileID profile)
{
    if (!isRealHsv(h, s, v, a)) {
        refuse("TrelColor::setHsvF: HSV parameters out of range");
        return;
    }
    store(Hsv, {hueFromReal(h), FullScale::fromReal(s), FullScale::fromReal(v)}, FullScale::fromReal(a), profile);
}

double TrelColor::getY() const
{
    return yxyReal(YReal);
}

double TrelColor::getx() const
{
    return yxyReal(xReal);
}

double TrelColor::gety() const
{
    return yxyReal(yReal);
}

void TrelColor::getYxy16(double *Y, double *x, double *y, unsigned int *alpha) const
{
    if (!Y || !x || !y)
        return;
    const bool isStored = m_spec == Yxy || m_spec == Invalid;
    const TrelColor color = isStored ? *this : toYxy();
    *Y = color.real(YReal);
    *x = color.real(xReal);
    *y = color.real(yReal);
    if (alpha)
        *alpha = alpha16();
}

void TrelColor::getYxyF(double *Y, double *x, double *y, double *alpha) const
{
    if (!Y || !x || !y)
        return;
    getYxy16(Y, x, y);
    if (alpha)
        *alpha = alphaF();
}

void TrelColor::getYxy8(double *Y, double *x, double *y, int *alpha) const
{
    if (!Y || !x || !y)
        return;
    getYxy16(Y, x, y);
    if (alpha)
        *alpha = alpha8();
}

void TrelColor::setY(double Y)
{
    setYxyComponent(YReal, Y);
}

void TrelColor::setx(double x)
{
    setYxyComponent(xReal, x);
}

void TrelColor::sety(double y)
{
    setYxyComponent(yReal, y);
}

void TrelColor::setYxy16(double Y, double x, double y, unsigned int alpha, ColorUtils::HuelockProfileID profile)
{
    // ODD-13: an alpha out of range invalidates the colour, and the rest is stored all the same.
    beginYxy();
    setAlpha16(alpha);
    storeYxy(Y, x, y, profile);
}

void TrelColor::setYxyF(double Y, double x, double y, double alpha, ColorUtils::HuelockProfileID profile)
{
    beginYxy();
    setAlphaF(alpha);
    storeYxy(Y, x, y, profile);
}

void TrelColor::setYxy8(double Y, double x, double y, int alpha, ColorUtils::HuelockProfileID profile)
{
    // Bounded first, so that the product of a wild alpha cannot wrap into the range.
    setYxy16(Y, x, y, unsigned(qBound(-1, alpha, 256)) * 257u, profile);
}

void TrelColor::getNChannelF(QVector<double> *levels, ColorUtils::ChannelConfiguration *configuration,
                             ColorUtils::HuelockProfileID *profile) const
{
    exportLevels(m_levels, alphaF(), FullScale::toReal, levels);
    exportOrigin(configuration, profile);
}

void TrelColor::getNChannel16(QVector<unsigned int> *levels, ColorUtils::ChannelConfiguration *configuration,
                              ColorUtils::HuelockProfileID *profile) const
{
    exportLevels(m_levels, alpha16(), FullScale::to16, levels);
    exportOrigin(configuration, profile);
}

void TrelColor::getNChannel8(QVector<int> *levels, ColorUtils::ChannelConfiguration *configuration,
                             ColorUtils::HuelockProfileID *profile) const
{
    exportLevels(m_levels, alpha8(), FullScale::toByte, levels);
    exportOrigin(configuration, profile);
}

void TrelColor::setNChannelF(const QVector<double> &levels, ColorUtils::ChannelConfiguration configuration,
                             ColorUtils::HuelockProfileID profile)
{
    m_spec = Nchannel;
    setAlphaF(levels.at(0));
    storeLevels(importLevels(levels, FullScale::fromReal), configuration, profile);
}

void TrelColor::setNChannel16(const QVector<unsigned int> &levels, ColorUtils::ChannelConfiguration configuration,
                              ColorUtils::HuelockProfileID profile)
{
    m_spec = Nchannel;
    setAlpha16(levels.at(0));
    storeLevels(importLevels(levels, FullScale::from16), configuration, profile);
}

void TrelColor::setNChannel8(const QVector<int> &levels, ColorUtils::ChannelConfiguration configuration,
                             ColorUtils::HuelockProfileID profile)
{
    m_spec = Nchannel;
    // ODD-15: no range check here.
    m_alpha = FullScale::fromByte(unsigned(levels.at(0)));
    storeLevels(importLevels(levels, [](int level) { return FullScale::fromByte(unsigned(level)); }), configuration,
                profile);
}

void TrelColor::setQColor(const QColor &color)
{
    setRgb8(color.red(), color.green(), color.blue(), color.alpha(), ColorUtils::GENERIC_RGB);
}

QColor TrelColor::getQColor(bool clampToGamut) const
{
    const TrelColor color = toRgb16(clampToGamut);
    return QColor(color.red8(), color.green8(), color.blue8(), alpha8());
}

QString TrelColor::aName() const
{
    switch (m_spec) {
    case Rgb:
    case Hsv: {
        const TrelColor color = toRgb16(true);
        TextWriter writer(QLatin1String("aRgb"), 1, m_channelConfiguration, m_profile);
        writer.append(';');
        writer.append('#');
        for (const unsigned int component : {alpha16(), color.red16(), color.green16(), color.blue16()})
            writer.appendHex(component);
        return writer.text();
    }
    case Yxy: {
        const qint64 millionths[] = {millionthsOf(real(YReal)), millionthsOf(real(xReal)), millionthsOf(real(yReal))};
        if (std::count(std::begin(millionths), std::end(millionths), NO_MILLIONTHS) > 0)
            return QString::asprintf("aYxy;%d;%d;%u;%f;%f;%f", m_channelConfiguration, m_profile, alpha16(),
                                     real(YReal), real(xReal), real(yReal));
        TextWriter writer(QLatin1String("aYxy"), 4, m_channelConfiguration, m_profile);
        writer.appendField(alpha16());
        for (const qint64 value : millionths)
            writer.appendMillionths(value);
        return writer.text();
    }
    case Nchannel: {
        TextWriter writer(QLatin1String("aNchannel"), int(m_levels.size()) + 2, m_channelConfiguration, m_profile);
        writer.appendField(alpha16());
        for (const unsigned int level : m_levels)
            writer.appendField(unsigned(FullScale::to16(level)));
        writer.appendField(m_words[FirstWord]);
        return writer.text();
    }
    default:
        return QString();
    }
}

QString TrelColor::name() const
{
    const TrelColor color = toRgb16(true);
    TextWriter writer(QLatin1String("#"), 1);
    for (const unsigned int component : {color.red16(), color.green16(), color.blue16()})
        writer.appendHex(component);
    return writer.text();
}

QString TrelColor::name8() const
{
    const TrelColor color = toRgb16(true);
    return QString::asprintf("#%02x%02x%02x", unsigned(color.red8()), unsigned(color.green8()),
                             unsigned(color.blue8()));
}

QString TrelColor::nameFull8() const
{
    QVector<int> levels;
    getNChannel8(&levels);
    QStringList texts;
    for (const int level : qAsConst(levels))
        texts.append(QString::number(level));
    return texts.join(QLatin1Char(','));
}

void TrelColor::setNamedColor(const QString &name)
{
    if (name.isEmpty())
        invalidate();
    else if (name.contains(QLatin1Char(';')))
        setValueString(name);
    else
        setPlainName(name);
}

QMimeData *TrelColor::mimeData() const
{
    auto *data = new QMimeData;
    data->setData(QLatin1String(TRELCOLOR_MIME_TYPE), aName().toLatin1());
    return data;
}

TrelColor TrelColor::toRgb16(bool clampToGamut) const
{
    if (m_spec == Invalid || m_spec == Rgb)
        return *this;

    TrelColor result;
    result.m_spec = Rgb;
    if (m_spec == Hsv) {
        result = rgbFromHsv();
    } else if (m_spec == Yxy || m_spec == Nchannel) {
        double components[3] = {real(YReal), real(xReal), real(yReal)};
        if (m_spec == Nchannel)
            ColorUtils::convertTrelColorToYxy(*this, components);
        unsigned short levels[3] = {};
        // ODD-08: the preview is always that of generic RGB.
        ColorUtils::convertYxyToNChannelAndApplyCurve(components, levels, ColorUtils::CONFIG_RGB,
                                                      ColorUtils::GENERIC_RGB, 0, clampToGamut);
        result.setRgb16(levels[0], levels[1], levels[2], 65535, ColorUtils::GENERIC_RGB);
    }
    result.m_alpha = m_alpha;
    result.m_profile = m_profile;
    return result;
}

TrelColor TrelColor::toHsv16() const
{
    if (m_spec == Invalid || m_spec == Hsv)
        return *this;
    return m_spec == Rgb ? hsvFromRgb() : toRgb16(true).hsvFromRgb();
}

TrelColor TrelColor::toYxy(ColorUtils::ChannelConfiguration configuration, ColorUtils::HuelockProfileID profile,
                           int curveType) const
{
    if (m_spec == Invalid || m_spec == Yxy)
        return *this;
    if (configuration == ColorUtils::CONFIG_UNKNOWN)
        configuration = m_channelConfiguration;
    if (profile == OWN_PROFILE)
        profile = m_profile;
    if (curveType == DEFAULT_CURVE)
        curveType = ColorUtils::defaultCurveTypeForHuelockProfileID(profile);

    double components[3] = {};
    if (m_spec == Rgb || m_spec == Nchannel || m_spec == Hsv) {
        Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
        ColorUtils::convertTrelColorToYxy(m_spec == Hsv ? toRgb16(true) : *this, data, components, curveType);
    }

    TrelColor result;
    result.m_spec = Yxy;
    result.m_channelConfiguration = configuration;
    result.m_alpha = m_alpha;
    // ODD-17: tagged with where the colour came from, not with what it was converted through.
    result.storeYxy(components[0], components[1], components[2], m_profile);
    return result;
}

TrelColor TrelColor::toNChannel16(ColorUtils::ChannelConfiguration configuration, ColorUtils::HuelockProfileID profile,
                                  int curveType) const
{
    // ODD-18: the profile is compared, solved and stored as it is given, −1 included; the default curve alone
    // is that of the own profile.
    if (m_spec == Invalid || (m_spec == Nchannel && m_channelConfiguration == configuration && m_profile == profile))
        return *this;
    if (curveType == DEFAULT_CURVE) {
        curveType = ColorUtils::defaultCurveTypeForHuelockProfileID(profile == OWN_PROFILE ? m_profile : profile);
    }

    double components[3] = {};
    if (m_spec == Yxy)
        getYxyF(&components[0], &components[1], &components[2]);
    else
        ColorUtils::convertTrelColorToYxy(m_spec == Hsv ? toRgb16(true) : *this, components);

    QVector<unsigned short> levels(ColorUtils::configChannelCount(configuration));
    ColorUtils::convertYxyToNChannelAndApplyCurve(components, levels.data(), configuration, profile, curveType, true);
    QVector<unsigned int> withAlpha{65535};
    for (const unsigned short level : qAsConst(levels))
        withAlpha.append(level);

    TrelColor result = fromNChannel16(withAlpha, configuration, profile);
    result.m_alpha = m_alpha;
    if (m_spec == Yxy)
        result.setNChannelRenderType(NChannelRenderYxy);
    else if (m_spec == Nchannel)
        result.setNChannelRenderType(getNChannelRenderType());
    return result;
}

TrelColor TrelColor::convertTo(Spec spec, ColorUtils::ChannelConfiguration configuration,
                               ColorUtils::HuelockProfileID profile) const
{
    if (spec == m_spec && spec != Nchannel)
        return *this;
    switch (spec) {
    case Rgb:
        return toRgb16(true);
    case Hsv:
        return toHsv16();
    case Yxy:
        return toYxy(configuration, profile, DEFAULT_CURVE);
    case Nchannel:
        return toNChannel16(configuration, profile, DEFAULT_CURVE);
    default:
        return TrelColor();
    }
}

bool TrelColor::isBlack() const
{
    switch (m_spec) {
    case Rgb:
        return m_words[FirstWord] == 0 && m_words[SecondWord] == 0 && m_words[ThirdWord] == 0;
    case Hsv:
        return m_words[ThirdWord] == 0;
    case Yxy:
        return real(YReal) == 0.0;
    case Nchannel:
        return allNChannelsBlack();
    default:
        return false;
    }
}

bool TrelColor::allNChannelsBlack() const
{
    return std::all_of(m_levels.cbegin(), m_levels.cend(), [](unsigned int level) { return level == 0; });
}

bool TrelColor::operator==(const TrelColor &other) const
{
    if (m_spec != other.m_spec || m_alpha != other.m_alpha)
        return false;
    bool same = false;
    switch (m_spec) {
    case Rgb:
        same = std::equal(m_words.cbegin(), m_words.cbegin() + 3, other.m_words.cbegin());
        break;
    case Hsv:
        // ODD-06: the unsigned remainder of the hue alone.
        same = m_words[FirstWord] % unsigned(FULL_TURN) == other.m_words[FirstWord] % unsigned(FULL_TURN);
        break;
    case Yxy:
        same = real(YReal) == other.real(YReal) && real(xReal) == other.real(xReal) && real(yReal) == other.real(yReal);
        break;
    case Nchannel:
        same = m_levels == other.m_levels && m_words[FirstWord] == other.m_words[FirstWord];
        break;
    default:
        break; // ODD-05: no colour equals no colour.
    }
    return same && m_profile == other.m_profile && m_channelConfiguration == other.m_channelConfiguration;
}

bool TrelColor::operator!=(const TrelColor &other) const
{
    return !(*this == other);
}

TrelColor TrelColor::premultiply(const TrelColor &color)
{
    return scaledByAlpha(color, [](double value, double alpha) { return value * alpha; });
}

TrelColor TrelColor::unpremultiply(const TrelColor &color)
{
    if (color.alphaF() == 0.0)
        return color;
    return scaledByAlpha(color, [](double value, double alpha) { return value / alpha; });
}

TrelColor TrelColor::scaledByAlpha(const TrelColor &color, double (*scaled)(double value, double alpha))
{
    const double a = color.alphaF();
    if (color.m_spec == Nchannel) {
        QVector<double> levels;
        color.getNChannelF(&levels);
        for (int i = 1; i < int(levels.size()); ++i)
            levels[i] = scaled(levels.at(i), a);
        return fromNChannelF(levels, color.m_channelConfiguration, color.m_profile);
    }
    if (color.m_spec == Yxy) {
        // ODD-09: the chromaticity is scaled as well.
        TrelColor result =
            fromxyY(scaled(color.getx(), a), scaled(color.gety(), a), scaled(color.getY(), a), ColorUtils::GENERIC_RGB);
        result.setAlphaF(a);
        return result;
    }
    return fromRgbF(scaled(color.redF(), a), scaled(color.greenF(), a), scaled(color.blueF(), a), a,
                    ColorUtils::GENERIC_RGB);
}

TrelColor TrelColor::mix(const TrelColor &a, const TrelColor &b)
{
    const double alpha = a.alphaF();
    if (alpha == 1.0)
        return a;
    if (alpha == 0.0)
        return b;
    return a.isMixedInYxy() || b.isMixedInYxy() ? mixColorsxy(a, b) : mixColorsRGB(a, b);
}

TrelColor TrelColor::mixColorsRGB(const TrelColor &a, const TrelColor &b)
{
    const double alpha = a.alphaF();
    const auto mixed = [alpha](double over, double under) { return alpha * over + (1 - alpha) * under; };
    return fromRgbF(mixed(a.redF(), b.redF()), mixed(a.greenF(), b.greenF()), mixed(a.blueF(), b.blueF()),
                    b.alphaF() * (1 - alpha) + alpha, ColorUtils::GENERIC_RGB);
}

TrelColor TrelColor::mixColorsxy(const TrelColor &a, const TrelColor &b)
{
    return mixColorsRGB(a, b).toYxy(a.m_channelConfiguration, a.m_profile, DEFAULT_CURVE);
}

TrelColor TrelColor::blend(const TrelColor &a, const TrelColor &b, double progress)
{
    Q_ASSERT(progress >= 0.0);
    Q_ASSERT(progress <= 1.0);
    if (progress == 0.0 || progress == 1.0) {
        // ODD-19: an end is no blend; a host's log shows that it was asked for one.
        qDebug() << "not doing blend " << progress;
        return progress == 0.0 ? b : a;
    }

    const double p = progress;
    const double q = 1 - progress;
    const double alphaA = a.alphaF();
    const double alphaB = b.alphaF();
    const auto blended = [&](double of, double from) { return q * alphaB * from + p * alphaA * of; };
    const TrelColor rgb = fromRgbF(blended(a.redF(), b.redF()), blended(a.greenF(), b.greenF()),
                                   blended(a.blueF(), b.blueF()), q * alphaB + p * alphaA, ColorUtils::GENERIC_RGB);
    if (!a.isMixedInYxy() && !b.isMixedInYxy())
        return rgb;

    const TrelColor &leading = a.isMixedInYxy() ? a : b;
    const TrelColor result = rgb.toYxy(leading.m_channelConfiguration, leading.m_profile, DEFAULT_CURVE);
    qDebug() << result.getY() << result.getx() << result.gety();
    return result;
}

TrelColor TrelColor::colorFromGradient(const QLinearGradient &gradient, double position)
{
    const QGradientStops stops = gradient.stops();
    const int last = int(stops.size()) - 1;
    int i = 0;
    while (i < last && !(stops.at(i).first <= position && position <= stops.at(i + 1).first))
        ++i;
    // ODD-20: a position below the first stop lands here too.
    if (i >= last)
        return TrelColor(stops.at(last).second);

    const TrelColor lower(stops.at(i).second);
    const TrelColor upper(stops.at(i + 1).second);
    if (lower == upper)
        return lower;
    const double f = (position - stops.at(i).first) / (stops.at(i + 1).first - stops.at(i).first);
    return blend(lower, upper, 1 - f);
}

double TrelColor::real(Real place) const
{
    double value = 0;
    std::memcpy(&value, &m_words[2 * std::size_t(place)], sizeof value);
    return value;
}

void TrelColor::setReal(Real place, double value)
{
    std::memcpy(&m_words[2 * std::size_t(place)], &value, sizeof value);
}

int TrelColor::storedHue() const
{
    return int(hsvWord(FirstWord));
}

unsigned int TrelColor::rgbWord(Word place) const
{
    return m_spec == Invalid || m_spec == Rgb ? m_words[place] : toRgb16(true).m_words[place];
}

unsigned int TrelColor::hsvWord(Word place) const
{
    return m_spec == Invalid || m_spec == Hsv ? m_words[place] : toHsv16().m_words[place];
}

double TrelColor::yxyReal(Real place) const
{
    return m_spec == Invalid || m_spec == Yxy ? real(place) : toYxy().real(place);
}

/// Whether mixing with this colour happens in Yxy.
bool TrelColor::isMixedInYxy() const
{
    return m_spec == Yxy || (m_spec == Nchannel && getNChannelRenderType() == NChannelRenderYxy);
}

/// Invalidates the colour with \a warning.
void TrelColor::refuse(const char *warning)
{
    qWarning("%s", warning);
    invalidate();
}

/// The checks of single components: whether \a value is in range; if not, the colour is invalid, without a
/// message (ODD-11).
bool TrelColor::checkReal(double value)
{
    // ODD-10: NaN is neither below nor above.
    if (value < 0.0 || value > 1.0) {
        invalidate();
        return false;
    }
    return true;
}

bool TrelColor::check8(int value)
{
    if (!are8(value)) {
        invalidate();
        return false;
    }
    return true;
}

bool TrelColor::check16(unsigned int value)
{
    if (!are16(value)) {
        invalidate();
        return false;
    }
    return true;
}

/// Becomes a colour of form \a spec with three component words and configuration CONFIG_RGB.
void TrelColor::store(Spec spec, const std::array<unsigned int, 3> &words, unsigned int alpha,
                      ColorUtils::HuelockProfileID profile)
{
    m_channelConfiguration = ColorUtils::CONFIG_RGB;
    m_profile = profile;
    m_spec = spec;
    m_alpha = alpha;
    m_words = {words[0], words[1], words[2]};
    m_levels.clear();
}

void TrelColor::beginYxy()
{
    m_spec = Yxy;
    m_levels.clear();
}

void TrelColor::storeYxy(double Y, double x, double y, ColorUtils::HuelockProfileID profile)
{
    setReal(YReal, Y);
    setReal(xReal, x);
    setReal(yReal, y);
    m_profile = profile;
}

/// The last step of the N-channel setters; the alpha, set before, may have invalidated the colour, which then
/// has no levels. ODD-16: the render type is whatever the first component word held before.
void TrelColor::storeLevels(QVector<unsigned int> levels, ColorUtils::ChannelConfiguration configuration,
                            ColorUtils::HuelockProfileID profile)
{
    if (m_spec == Nchannel)
        m_levels = std::move(levels);
    m_channelConfiguration = configuration;
    m_profile = profile;
}

/// Fills what is not null.
void TrelColor::exportOrigin(ColorUtils::ChannelConfiguration *configuration,
                             ColorUtils::HuelockProfileID *profile) const
{
    if (configuration)
        *configuration = m_channelConfiguration;
    if (profile)
        *profile = m_profile;
}

void TrelColor::setComponent8(Word place, int value)
{
    if (!check8(value))
        return;
    if (m_spec == Rgb) {
        m_words[place] = FullScale::fromByte(unsigned(value));
        return;
    }
    int components[] = {red8(), green8(), blue8()};
    components[place] = value;
    setRgb8(components[0], components[1], components[2], alpha8(), m_profile);
}

void TrelColor::setComponent16(Word place, unsigned int value)
{
    if (!check16(value))
        return;
    if (m_spec == Rgb) {
        m_words[place] = FullScale::from16(value);
        return;
    }
    unsigned int components[] = {red16(), green16(), blue16()};
    components[place] = value;
    setRgb16(components[0], components[1], components[2], alpha16(), m_profile);
}

void TrelColor::setComponentF(Word place, double value)
{
    if (!checkReal(value))
        return;
    if (m_spec == Rgb) {
        m_words[place] = FullScale::fromReal(value);
        return;
    }
    double components[] = {redF(), greenF(), blueF()};
    components[place] = value;
    setRgbF(components[0], components[1], components[2], alphaF(), m_profile);
}

void TrelColor::setYxyComponent(Real place, double value)
{
    if (!checkReal(value))
        return;
    if (m_spec == Yxy) {
        setReal(place, value);
        return;
    }
    double components[3];
    getYxyF(&components[0], &components[1], &components[2]);
    components[place] = value;
    beginYxy();
    // ODD-14: the low half of the alpha is lost on the way.
    setAlpha16(alpha16());
    storeYxy(components[0], components[1], components[2], m_profile);
}

/// The result of toHsv16(). \pre the colour is #Rgb.
TrelColor TrelColor::hsvFromRgb() const
{
    // Of the words, since unequal ones are further apart as reals than a fuzzy comparison overlooks.
    const unsigned int words[] = {m_words[FirstWord], m_words[SecondWord], m_words[ThirdWord]};
    const unsigned int max = std::max({words[0], words[1], words[2]});
    const unsigned int min = std::min({words[0], words[1], words[2]});
    unsigned int hue = unsigned(ACHROMATIC);
    unsigned int saturation = 0;
    if (max != min) {
        const int largest = max == words[0] ? 0 : max == words[1] ? 1 : 2;
#ifndef QT_NO_DEBUG
        Q_ASSERT_X(max == words[largest], "TrelColor::toHsv16", "internal error");
#endif
        const double top = FullScale::toReal(max);
        const double delta = top - FullScale::toReal(min);
        const double ahead = FullScale::toReal(words[(largest + 1) % 3]);
        const double behind = FullScale::toReal(words[(largest + 2) % 3]);
        const double h = ((ahead - behind) / delta + 2 * largest) * 60;
        hue = FullScale::toUInt32((h < 0 ? h + 360 : h) * 100 + 0.5);
        saturation = FullScale::fromReal(delta / top);
    }

    TrelColor result;
    result.store(Hsv, {hue, saturation, max}, m_alpha, m_profile);
    result.m_channelConfiguration = m_channelConfiguration;
    return result;
}

/// \pre the colour is #Hsv. The result has configuration CONFIG_RGB; alpha and profile are the caller's to set.
TrelColor TrelColor::rgbFromHsv() const
{
    constexpr double SEXTANT = 6000;
    TrelColor result;
    const unsigned int valueWord = m_words[ThirdWord];
    if (m_words[SecondWord] == 0) {
        result.store(Rgb, {valueWord, valueWord, valueWord}, OPAQUE, ColorUtils::GENERIC_RGB);
        return result;
    }
    // ODD-04: the other achromatic mark is not looked for; it lies beyond the sextants and gives black.
    const int hue = storedHue();
    const double h = hue == ACHROMATIC || hue == FULL_TURN ? 0 : hue / SEXTANT;
    const int i = int(h);
    const double f = h - i;
    const double s = FullScale::toReal(m_words[SecondWord]);
    const double v = FullScale::toReal(valueWord);
    const double p = v * (1 - s);
    const double q = v * (1 - s * f);
    const double t = v * (1 - s * (1 - f));
    const double rgbOfSextant[][3] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};

    result.store(Rgb, {0, 0, 0}, OPAQUE, ColorUtils::GENERIC_RGB);
    if (i < 0 || i >= int(std::size(rgbOfSextant)))
        return result;
    std::transform(std::begin(rgbOfSextant[i]), std::end(rgbOfSextant[i]), result.m_words.begin(), FullScale::fromReal);
    return result;
}

/// \a text contains ";".
void TrelColor::setValueString(QStringView text)
{
    Fields fields(text);
    if (fields.left() < 4) {
        invalidate();
        return;
    }
    const QStringView form = fields.next();
    const auto configuration = ColorUtils::ChannelConfiguration(fields.nextInt());
    const auto profile = ColorUtils::HuelockProfileID(fields.nextInt());

    if (form == QLatin1String("aRgb")) {
        // ODD-21: configuration and profile are not restored.
        const bool isLast = fields.left() == 1;
        const QStringView digits = fields.next();
        if (isLast && digits.startsWith(QLatin1Char('#')))
            setPlainName(digits);
        else
            invalidate();
    } else if (form == QLatin1String("aYxy")) {
        if (fields.left() != 4) {
            invalidate();
            return;
        }
        const unsigned int alpha = fields.nextUInt();
        const double Y = fields.nextReal();
        const double x = fields.nextReal();
        const double y = fields.nextReal();
        // ODD-22: the configuration stays, the profile does not.
        m_channelConfiguration = configuration;
        setYxy16(Y, x, y, alpha, ColorUtils::GENERIC_RGB);
    } else if (form == QLatin1String("aNchannel")) {
        // Alpha and levels, then the render type.
        if (fields.left() < 2) {
            invalidate();
            return;
        }
        m_spec = Nchannel;
        setAlpha16(fields.nextUInt());
        QVector<unsigned int> levels(fields.left() - 1);
        for (unsigned int &level : levels)
            level = FullScale::from16(fields.nextUInt());
        storeLevels(std::move(levels), configuration, profile);
        setNChannelRenderType(NChannelRenderType(int(fields.nextUInt())));
    } else {
        setPlainName(text);
    }
}

/// A hexadecimal name or a colour name of Qt's.
void TrelColor::setPlainName(QStringView text)
{
    if (text.startsWith(QLatin1Char('#'))) {
        unsigned int argb[4];
        if (get_hex_rgb16(text.data(), int(text.size()), argb))
            setRgb16(argb[1], argb[2], argb[3], argb[0], ColorUtils::GENERIC_RGB);
        else
            invalidate();
        return;
    }
    QColor color;
    color.setNamedColor(text);
    if (color.isValid()) {
        setQColor(color);
        return;
    }
    qWarning("TrelColor::setNamedColor: Unknown color name '%s'", text.toLatin1().constData());
    invalidate();
}

QDataStream &operator<<(QDataStream &stream, const TrelColor &color)
{
    return stream << qint8(color.m_spec) << qint32(color.m_alpha) << qint32(color.m_words[0])
                  << qint32(color.m_words[1]) << qint32(color.m_words[2]);
}

QDataStream &operator>>(QDataStream &stream, TrelColor &color)
{
    qint8 spec = 0;
    qint32 alpha = 0;
    qint32 words[3] = {};
    stream >> spec >> alpha >> words[0] >> words[1] >> words[2];
    if (stream.status() != QDataStream::Ok)
        return stream;
    // ODD-24: the rest of the colour stays as it was.
    color.m_spec = TrelColor::Spec(spec);
    color.m_alpha = unsigned(alpha);
    for (std::size_t i = 0; i < std::size(words); ++i)
        color.m_words[i] = unsigned(words[i]);
    return stream;
}

QDebug operator<<(QDebug debug, const TrelColor &color)
{
    debug.nospace();
    switch (color.spec()) {
    case TrelColor::Invalid:
        debug << "TrelColor(Invalid)";
        break;
    case TrelColor::Rgb:
    case TrelColor::Hsv: {
        const TrelColor rgb = color.toRgb16(true);
        debug << "TrelColor(ARGB " << rgb.alpha16() << ", " << rgb.red16() << ", " << rgb.green16() << ", "
              << rgb.blue16() << ')';
        break;
    }
    case TrelColor::Yxy:
        debug << "TrelColor(AYxy " << color.alpha16() << ", " << color.getY() << ", " << color.getx() << ", "
              << color.gety() << ')';
        break;
    default:
        break; // ODD-25: nothing for channel levels.
    }
    return debug.space();
}

bool get_hex_rgb16(const char *s, unsigned int *argb)
{
    if (!s || s[0] != '#')
        return false;
    readHexDigits(s + 1, std::strlen(s + 1), argb);
    return true;
}

bool get_hex_rgb16(const QChar *s, int length, unsigned int *argb)
{
    constexpr int LONGEST = 17;
    if (length < 1 || length > LONGEST)
        return false;
    const auto isEnd = [](QChar character) { return character.isNull() || character.unicode() > 255; };
    const QChar *end = std::find_if(s, s + length, isEnd);
    if (s == end || *s != QLatin1Char('#'))
        return false;
    readHexDigits(s + 1, std::size_t(end - s - 1), argb);
    return true;
}

int h2i(char digit)
{
    return hexDigit(digit);
}
