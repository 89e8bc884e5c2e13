#include "ColorUtils.h"

#include "Curve.h"
#include "CurveFactory.h"
#include "FullScale_p.h"
#include "HuelockProfileFactory.h"
#include "IOMode.h"
#include "IOModeFactory.h"
#include "NChannelSolver_p.h"
#include "TrelColor.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QList>
#include <QMap>
#include <QPointF>
#include <QString>
#include <QStringList>
#include <QVarLengthArray>
#include <QVector>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr int PRE_COMPENSATION = 3; ///< the curve mode that compensates the fixture's on-board curve
constexpr int SOFTWARE_CURVE = 1;   ///< any other mode; the one in use
constexpr double MAX_LEVEL_8 = 255;
constexpr double MAX_LEVEL_16 = 65535;
constexpr int ARGUMENTS_16 = 65536;

enum CurveType : int { Linear = 0, Normal = 1, Tungsten = 2 };

struct ConfigurationRow
{
    const char *name;
    int channels;
};

// By configuration value. ODD-26: not in the order of the channel counts.
constexpr ConfigurationRow CONFIGURATIONS[] = {
    {"Unknown", 0}, {"RGB", 3}, {"RGBAW", 5}, {"RGBW", 4}, {"Single Channel", 1}, {"RGBWW", 5}, {"RGBA", 4},
};
constexpr int CONFIGURATION_COUNT = int(std::size(CONFIGURATIONS));
static_assert(CONFIGURATION_COUNT == ColorUtils::CONFIG_RGBA + 1, "one row for each configuration");

const ConfigurationRow &configurationRow(ColorUtils::ChannelConfiguration configuration)
{
    const bool known = configuration > 0 && configuration < CONFIGURATION_COUNT;
    return CONFIGURATIONS[known ? configuration : ColorUtils::CONFIG_UNKNOWN];
}

HueLockProfile *profileOf(ColorUtils::HuelockProfileID id)
{
    return HuelockProfileFactory::instance()->getProfile(id);
}

quint16 roundedPwm(double level)
{
    const double pwm = level * MAX_LEVEL_16 + 0.5;
    return FullScale::toUInt16(pwm >= 0 ? pwm : std::floor(pwm)); // truncation is the floor of what is not negative
}

/// Half away from zero for positive values; for negative ones the rounding of Qt 5's qRound, which Qt 6 changed.
quint16 roundedByte(double value)
{
    if (value >= 0.0)
        return FullScale::toUInt16(value + 0.5);
    const auto below = double(FullScale::truncated(value - 1));
    return FullScale::toUInt16(double(FullScale::truncated(value - below + 0.5)) + below);
}

void write16(unsigned char *out, quint16 value, bool highByteFirst)
{
    const auto high = static_cast<unsigned char>(value >> 8);
    const auto low = static_cast<unsigned char>(value & 0xFF);
    out[0] = highByteFirst ? high : low;
    out[1] = highByteFirst ? low : high;
}

void applySoftwareCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType)
{
    const Curve *curve = CurveFactory::Instance()->getCurve(curveType);
    Q_ASSERT(curve);
    if (resolution == 2) {
        for (int i = 0; i < count; ++i) {
            // ODD-31: truncated here, rounded at 8 bits and on the pre-compensation path.
            unsigned short value = 0;
            curve->applyCurve(FullScale::toUInt16(levels[i] * MAX_LEVEL_16), &value);
            write16(out + 2 * std::ptrdiff_t(i), value, true);
        }
    } else if (resolution == 1) {
        for (int i = 0; i < count; ++i)
            curve->applyCurve(roundedByte(levels[i] * MAX_LEVEL_8), out + i);
    }
}

/// All that \a FUNCTION answers, by argument. Made at the first use, since each answer takes a square root.
template <auto FUNCTION>
const auto *tableOf()
{
    using Result = decltype(FUNCTION(0));
    static const std::vector<Result> table = [] {
        std::vector<Result> answers;
        answers.reserve(ARGUMENTS_16);
        for (int i = 0; i < ARGUMENTS_16; ++i)
            answers.push_back(FUNCTION(quint16(i)));
        return answers;
    }();
    return table.data();
}

/// The 16-bit values that a fixture with on-board curve \a type turns back into their index; null for themselves.
const quint16 *preCompensation16(int type)
{
    switch (type) {
    case Tungsten:
        return tableOf<ColorUtils::pwm16ToMNormDTungstenRes16>();
    case Normal:
        return tableOf<ColorUtils::pwm16ToMNormDNormRes16>();
    default:
        return nullptr;
    }
}

/// The same for bytes.
const quint8 *preCompensation8(int type)
{
    switch (type) {
    case Tungsten:
        return tableOf<ColorUtils::pwm16ToMNormDTungstenRes8>();
    case Normal:
        return tableOf<ColorUtils::pwm16ToMNormDNormRes8>();
    default:
        return tableOf<ColorUtils::pwm16ToMNormDLinearRes8>();
    }
}

bool isKnownCurveType(int type)
{
    return type == Linear || type == Normal || type == Tungsten;
}

/// ODD-32: the byte kept is the one at i, not at 2i, so that only the first channel is swapped exactly. By the
/// time that a later channel comes, position i holds bytes that were already moved.
void swapBytes(int count, unsigned char *out)
{
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const unsigned char kept = out[i];
        out[2 * i] = out[2 * i + 1];
        out[2 * i + 1] = kept;
    }
}

void applyPreCompensation(int count, int resolution, const double *levels, unsigned char *out, int curveType)
{
    if (!isKnownCurveType(curveType))
        return;
    if (resolution == 2) {
        const quint16 *table = preCompensation16(curveType);
        for (int i = 0; i < count; ++i) {
            const quint16 pwm = roundedPwm(levels[i]);
            write16(out + 2 * std::ptrdiff_t(i), table ? table[pwm] : pwm, false);
        }
        swapBytes(count, out);
    } else {
        const quint8 *table = preCompensation8(curveType);
        for (int i = 0; i < count; ++i)
            out[i] = table[roundedPwm(levels[i])];
    }
}

template <typename Out>
void mapPwm(const unsigned short *in, Out *out, int count, Out (*member)(unsigned short))
{
    for (int i = 0; i < count; ++i)
        out[i] = member(in[i]);
}

/// \a sum as a share of \a fullScale, 0..1.
double dimRatio(double sum, float fullScale)
{
    const auto f = float(sum);
    if (f > fullScale)
        return 1.0;
    if (!(f > 0.0f))
        return 0.0;
    return double(f) / double(fullScale);
}

/// What share of its light a channel gives at \a level behind the fixture's on-board curve.
double onboardRatio(double level, int onboardCurve)
{
    switch (onboardCurve) {
    case Normal:
        return ColorUtils::dmx16ToSquareLawDimRatio(FullScale::toUInt16(level * MAX_LEVEL_16));
    case Tungsten:
        return ColorUtils::dmx16ToTungstenDimRatio(FullScale::toUInt16(level * MAX_LEVEL_16));
    default:
        return level;
    }
}

QVector<double> channelLevels(const TrelColor &color)
{
    switch (color.spec()) {
    case TrelColor::Rgb:
    case TrelColor::Hsv:
        return {color.redF(), color.greenF(), color.blueF()};
    case TrelColor::Nchannel: {
        QVector<double> levels;
        color.getNChannelF(&levels);
        levels.removeFirst(); // the alpha
        return levels;
    }
    default:
        return {};
    }
}

/// \a source over \a target by \a alpha, channel by channel; the alpha in element 0 stays the target's.
QVector<unsigned int> mixedLevels(const TrelColor &target, const TrelColor &source, double alpha)
{
    QVector<unsigned int> from;
    QVector<unsigned int> to;
    source.getNChannel16(&from);
    target.getNChannel16(&to);
    while (to.size() < from.size())
        to.append(0);
    for (int i = 1; i < int(from.size()); ++i)
        to[i] = FullScale::toUInt32((1 - alpha) * to.at(i) + alpha * from.at(i));
    return to;
}

/// The facts of an I/O mode; those of no mode at all for an unknown identifier.
struct ModeFacts
{
    ColorUtils::ChannelConfiguration input = ColorUtils::CONFIG_UNKNOWN;
    bool is3toN = false;
    bool isNtoN = false;
};

ModeFacts factsOf(ColorUtils::IOModeID id)
{
    const IOMode *mode = IOModeFactory::instance()->ioMode(id);
    if (!mode)
        return {};
    return {mode->inputChannelConfiguration(), mode->is3toN(), mode->isNtoN()};
}

/// Whether \a color is already in the terms of a fixture of \a profile in this mode.
bool isDirect(const TrelColor &color, ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID ioMode,
              const ModeFacts &mode)
{
    return mode.input == color.getChannelConfiguration() && color.getHuelockProfileID() == profile
           && (ioMode == ColorUtils::RGB_IN_OUT || (mode.isNtoN && color.spec() != TrelColor::Yxy));
}

/// Whether \a color, not being direct, must be solved from its chromaticity.
bool mustBeSolved(const TrelColor &color, bool rgbPassThrough, const ModeFacts &mode)
{
    return color.getHuelockProfileID() != ColorUtils::GENERIC_RGB
           || color.getChannelConfiguration() != ColorUtils::CONFIG_RGB || color.spec() == TrelColor::Yxy
           || (color.spec() == TrelColor::Nchannel && color.getNChannelRenderType() == TrelColor::NChannelRenderYxy)
           || (!mode.is3toN && (!mode.isNtoN || !rgbPassThrough));
}

/// The levels at \a result, at most \a channelCount of them, that give \a Yxy in the mode's input configuration.
void solveInto(double *result, int channelCount, const double Yxy[3], const ModeFacts &mode,
               ColorUtils::HuelockProfileID profile, bool clampToGamut)
{
    // ODD-40: the mode's input decides, which may be wider or narrower than the fixture.
    const int solved = ColorUtils::configChannelCount(mode.input);
    QVarLengthArray<double, 8> levels(solved);
    ColorUtils::convertYxyToNChannel(Yxy, levels.data(), mode.input, profile, clampToGamut);
    std::copy_n(levels.constData(), std::min(solved, channelCount), result);
}

/// The levels of an N-channel colour at \a result, one for each channel.
void passNChannel(double *result, int channelCount, const TrelColor &color)
{
    QVector<double> realVector;
    color.getNChannelF(&realVector);
    Q_ASSERT(realVector.size() == channelCount + 1);
    std::copy_n(realVector.constData() + 1, channelCount, result);
}

/// The levels of \a color at \a result, which holds zeros.
/// \return whether a colour of another model than Yxy was solved.
bool convertInto(double *result, int count, const TrelColor &color, bool rgbPassThrough,
                 ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID ioMode, bool clampToGamut)
{
    const ModeFacts mode = factsOf(ioMode);
    double Yxy[3];

    if (!isDirect(color, profile, ioMode, mode) && mustBeSolved(color, rgbPassThrough, mode)) {
        const bool isYxy = color.spec() == TrelColor::Yxy;
        if (isYxy)
            color.getYxyF(&Yxy[0], &Yxy[1], &Yxy[2]);
        else
            ColorUtils::convertTrelColorToYxy(color, Yxy);
        solveInto(result, count, Yxy, mode, profile, clampToGamut);
        return !isYxy;
    }

    const bool isGenericRgb = color.getHuelockProfileID() == ColorUtils::GENERIC_RGB
                              && (mode.input == ColorUtils::CONFIG_RGB
                                  || (color.getChannelConfiguration() == ColorUtils::CONFIG_RGB && mode.isNtoN));
    if (isGenericRgb) {
        const double rgb[] = {color.redF(), color.greenF(), color.blueF()};
        std::copy_n(rgb, std::min(count, 3), result);
    } else if (color.spec() == TrelColor::Yxy) {
        color.getYxyF(&Yxy[0], &Yxy[1], &Yxy[2]);
        solveInto(result, count, Yxy, mode, profile, clampToGamut);
    } else {
        if (color.spec() != TrelColor::Nchannel)
            Q_ASSERT(false);
        passNChannel(result, count, color);
    }
    return false;
}

/// As ColorUtils::convertTrelColorToDMX().
void toDmx(const TrelColor &color, bool rgbPassThrough, int channelCount, int resolution, unsigned char *out,
           int curveType, int onboardCurve, ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID ioMode)
{
    QVarLengthArray<double, 8> levels(std::max(channelCount, 0));
    std::fill(levels.begin(), levels.end(), 0.0);
    const bool solvedFromColor =
        convertInto(levels.data(), int(levels.size()), color, rgbPassThrough, profile, ioMode, true);
    const bool solved = color.spec() == TrelColor::Yxy || solvedFromColor;
    ColorUtils::applyCurve(channelCount, resolution, levels.constData(), out, solved ? onboardCurve : curveType,
                           solved ? PRE_COMPENSATION : SOFTWARE_CURVE);
}

} // namespace

ColorUtils *ColorUtils::m_instance = nullptr;

ColorUtils *ColorUtils::getInstance()
{
    if (!m_instance)
        m_instance = new ColorUtils;
    return m_instance;
}

int ColorUtils::configChannelCount(ChannelConfiguration configuration)
{
    return configurationRow(configuration).channels;
}

QString ColorUtils::nameForChannelConfiguration(ChannelConfiguration configuration)
{
    return QLatin1String(configurationRow(configuration).name);
}

QList<ColorUtils::HuelockProfileID> ColorUtils::huelockProfileIDList(bool includeGenericExtras)
{
    QList<HuelockProfileID> ids;
    for (int id = GENERIC_RGB; id <= FLOODBAR_KQ2_RGBW; ++id) {
        if (includeGenericExtras || (id != GENERIC_RGBW && id != GENERIC_SINGLE_CHANNEL))
            ids.append(HuelockProfileID(id));
    }
    return ids;
}

QString ColorUtils::huelockProfileIDName(HuelockProfileID profile)
{
    return profileOf(profile)->name();
}

QList<ColorUtils::IOModeID> ColorUtils::ioModesForHuelockProfileID(HuelockProfileID profile)
{
    return profileOf(profile)->getAvailableIOModeIDs();
}

ColorUtils::IOModeID ColorUtils::defaultIOModeIDForHuelockProfileID(HuelockProfileID profile)
{
    return profileOf(profile)->getDefaultIOModeID();
}

ColorUtils::ChannelConfiguration ColorUtils::nChannelConfigurationForHuelockProfileID(HuelockProfileID profile)
{
    return profileOf(profile)->getChannelConfiguration();
}

int ColorUtils::defaultCurveTypeForHuelockProfileID(HuelockProfileID profile)
{
    return profileOf(profile)->getDefaultOnboardCurve();
}

bool ColorUtils::defaultHueLockEnabled(HuelockProfileID profile, int ioMode)
{
    return profileOf(profile)->getDefaultIsHuelockEnabled(IOModeID(ioMode));
}

QStringList ColorUtils::huelockProfileIDNameList(bool includeGenericExtras)
{
    QStringList names;
    const QList<HuelockProfileID> ids = huelockProfileIDList(includeGenericExtras);
    for (const HuelockProfileID id : ids)
        names.append(huelockProfileIDName(id));
    return names;
}

QMap<int, QString> ColorUtils::huelockProfileIDNameMap()
{
    // ODD-29: a translation that is loaded later does not reach it.
    static QMap<int, QString> names;
    if (names.isEmpty()) {
        const QList<HuelockProfileID> ids = huelockProfileIDList(true);
        for (const HuelockProfileID id : ids)
            names.insert(id, huelockProfileIDName(id));
    }
    return names;
}

void ColorUtils::applyCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType,
                            int mode)
{
    if (mode == PRE_COMPENSATION)
        applyPreCompensation(count, resolution, levels, out, curveType);
    else
        applySoftwareCurve(count, resolution, levels, out, curveType);
}

void ColorUtils::applyCurve16(int count, const double *levels, unsigned short *out, int curveType, int mode)
{
    if (mode != PRE_COMPENSATION) {
        const Curve *curve = CurveFactory::Instance()->getCurve(curveType);
        Q_ASSERT(curve);
        for (int i = 0; i < count; ++i)
            curve->applyCurve(FullScale::toUInt16(levels[i] * MAX_LEVEL_16), out + i);
        return;
    }
    if (!isKnownCurveType(curveType))
        return;
    const quint16 *table = preCompensation16(curveType);
    for (int i = 0; i < count; ++i) {
        const quint16 pwm = roundedPwm(levels[i]);
        out[i] = table ? table[pwm] : pwm;
    }
}

void ColorUtils::nChannelFToPWM(const double *levels, unsigned short *out, int count)
{
    for (int i = 0; i < count; ++i)
        out[i] = roundedPwm(levels[i]);
}

float ColorUtils::quadraticSolver(float a, float b, float c, float y, float max)
{
    // ODD-34: single, double, single. A negative discriminant gives NaN, which is not above 0 either.
    const float d = b * b - 4 * a * (c - y);
    const double s = std::sqrt(double(d));
    auto x = float((-double(b) + s) / (2 * double(a)));
    if (!(x > 0))
        x = float((-double(b) - s) / (2 * double(a)));
    if (!(x > 0))
        x = 0;
    return std::floor(std::min(x, max) + 0.5f);
}

unsigned short ColorUtils::pwm16ToMNormDNormRes16(unsigned short p)
{
    if (p == 0)
        return 0;
    return FullScale::toUInt16(quadraticSolver(1.425e-5f, 0.065898f, -0.065865f, p, 65535.0f));
}

unsigned char ColorUtils::pwm16ToMNormDNormRes8(unsigned short p)
{
    if (p == 0)
        return 0;
    return static_cast<unsigned char>(quadraticSolver(0.941203f, 16.936f, -0.065865f, p, 255.0f));
}

unsigned short ColorUtils::pwm16ToMNormDTungstenRes16(unsigned short p)
{
    // ODD-33: both segments end at 255, as those of the 8-bit form.
    if (p <= 4)
        return p;
    if (p <= 321)
        return static_cast<unsigned char>(quadraticSolver(3.359e-6f, -0.0039f, 4.339f, p, 255.0f));
    return FullScale::toUInt16(quadraticSolver(1.9829e-5f, -0.325303f, 1573.0f, p, 255.0f));
}

unsigned char ColorUtils::pwm16ToMNormDTungstenRes8(unsigned short p)
{
    if (p <= 4)
        return static_cast<unsigned char>(p);
    if (p <= 321)
        return static_cast<unsigned char>(quadraticSolver(0.221829f, -1.002f, 4.339f, p, 255.0f));
    return static_cast<unsigned char>(quadraticSolver(1.31f, -83.603f, 1573.0f, p, 255.0f));
}

unsigned char ColorUtils::pwm16ToMNormDLinearRes8(unsigned short p)
{
    return static_cast<unsigned char>(std::floor(p / 257.0 + 0.5));
}

void ColorUtils::pwmToMNormDNormRes16(const unsigned short *in, unsigned short *out, int count)
{
    mapPwm(in, out, count, pwm16ToMNormDNormRes16);
}

void ColorUtils::pwmToMNormDNormRes8(const unsigned short *in, unsigned char *out, int count)
{
    mapPwm(in, out, count, pwm16ToMNormDNormRes8);
}

void ColorUtils::pwmToMNormDTungstenRes16(const unsigned short *in, unsigned short *out, int count)
{
    mapPwm(in, out, count, pwm16ToMNormDTungstenRes16);
}

void ColorUtils::pwmToMNormDTungstenRes8(const unsigned short *in, unsigned char *out, int count)
{
    mapPwm(in, out, count, pwm16ToMNormDTungstenRes8);
}

void ColorUtils::pwmToMNormDLinearRes16(const unsigned short *in, unsigned short *out, int count)
{
    for (int i = 0; i < count; ++i)
        out[i] = in[i];
}

void ColorUtils::pwmToMNormDLinearRes8(const unsigned short *in, unsigned char *out, int count)
{
    mapPwm(in, out, count, pwm16ToMNormDLinearRes8);
}

unsigned char ColorUtils::lut16BitToBit(unsigned short v)
{
    // 3.7648 = 4 · 0.9412, 286.861969 = 16.937², 1.8824 = 2 · 0.9412
    const double r = std::sqrt(v * 3.7648 + 286.861969);
    double x = (r - 16.937) / 1.8824;
    if (!(x > 0))
        x = (-16.937 - r) / 1.8824;
    if (!(x > 0))
        return 0;
    return static_cast<unsigned char>(std::min(x, MAX_LEVEL_8));
}

double ColorUtils::dmx16ToTungstenDimRatio(unsigned short dmx)
{
    const double x = dmx;
    const double x2 = x * x;
    const double x3 = x2 * x;
    const double x4 = x3 * x;
    const double x5 = x4 * x;
    const double x6 = x5 * x;
    const double x7 = x6 * x;
    return dimRatio(-9.555e-24 * x6 + 3.7684e-29 * x7 + 1.045e-18 * x5 - 6.1689e-14 * x4 + 2.031e-9 * x3
                        - 1.6217e-5 * x2 - 9.38789e-10 * x - 4.64192e-16,
                    65535.0f);
}

double ColorUtils::dmx16ToSquareLawDimRatio(unsigned short dmx)
{
    // ODD-35: full scale is where the fit ends, not 65535.
    const double x = dmx;
    const double x2 = x * x;
    const double x3 = x2 * x;
    const double x4 = x3 * x;
    return dimRatio(0.065828 * x + 1.4257e-5 * x2 + 1.674e-18 * x4 - 2.11838e-13 * x3 - 4.8488e-5, 65516.0f);
}

void ColorUtils::convertYxyToNChannel(const double *Yxy, double *out, ChannelConfiguration configuration,
                                      HuelockProfileID profile, bool clampToGamut)
{
    const int numChannels = configChannelCount(configuration);
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, configuration);
    double x = Yxy[1];
    double y = Yxy[2];
    if (clampToGamut)
        data->closestPtOnGamut(Yxy[1], Yxy[2], x, y);

    brightestMixture({data->getX(), data->getY(), data->getZ()}, numChannels, x, y, out);
    for (int c = 0; c < numChannels; ++c)
        out[c] *= Yxy[0];
}

void ColorUtils::gaussianEliminationTwoByThree(const double m[2][3], double &a, double &b)
{
    double m0[] = {m[0][0], m[0][1], m[0][2]};
    double m1[] = {m[1][0], m[1][1], m[1][2]};

    // ODD-36: multipliers have single precision. The scaled pivots are never read, so they are not kept.
    const double f = float(m1[0] / m0[0]);
    for (int i = 0; i < 3; ++i)
        m1[i] -= f * m0[i];
    const double g = float(m0[1] / m1[1]);
    for (int i = 0; i < 3; ++i)
        m0[i] -= g * m1[i];
    a = m0[2] * double(float(1 / m0[0]));
    b = m1[2] * double(float(1 / m1[1]));
}

bool ColorUtils::validateDimmingRatio(QVector<double> levels)
{
    return std::all_of(levels.cbegin(), levels.cend(), [](double level) { return level >= 0 && level <= 1; });
}

void ColorUtils::convertXYZtoYxy(const double XYZ[3], double Yxy[3])
{
    const double X = XYZ[0];
    const double Y = XYZ[1];
    const double Z = XYZ[2];
    if (X <= 0 && Y <= 0 && Z <= 0) {
        std::fill_n(Yxy, 3, 0.0);
        return;
    }
    // ODD-38: the largest of the three, not Y.
    Yxy[0] = std::max({X, Y, Z});
    Yxy[1] = X / (X + Y + Z);
    Yxy[2] = Y / (X + Y + Z);
}

double ColorUtils::minDistance(QPointF a, QPointF b, QPointF p, QPointF &closest)
{
    const double squaredLength = length_squared(a, b);
    const double t = squaredLength == 0 ? 0 : dot(p - a, b - a) / squaredLength;
    if (squaredLength == 0 || t < 0)
        closest = a;
    else if (t > 1)
        closest = b;
    else
        closest = a + t * (b - a);
    return distance(p, closest);
}

QList<unsigned char> ColorUtils::expandFor5Channels(QList<unsigned char> channels)
{
    const int length = int(channels.size());
    if (length != 3 && length != 6)
        return {};
    const int expanded = length == 3 ? 5 : 10;
    for (int i = length; i < expanded; ++i)
        channels.append(channels.at(i - length));
    return channels;
}

void ColorUtils::convertTrelColorToYxy(const TrelColor &color, Tristimulus *data, double Yxy[3], int onboardCurve)
{
    std::fill_n(Yxy, 3, 0.0);
    if (color.isBlack())
        return;

    const QVector<double> levels = channelLevels(color);
    const QVector<double> &X = data->getX();
    const QVector<double> &Y = data->getY();
    const QVector<double> &Z = data->getZ();
    const auto channelsWithData = std::min({X.size(), Y.size(), Z.size()});
    double sumX = 0;
    double sumY = 0;
    double sumZ = 0;
    for (int c = 0; c < int(levels.size()); ++c) {
        const double ratio = onboardRatio(levels.at(c), onboardCurve);
        // ODD-39: the luminance is the largest ratio, whatever the emitters' own luminances.
        Yxy[0] = std::max(Yxy[0], ratio);
        if (c >= channelsWithData)
            continue;
        sumX += X.at(c) * ratio;
        sumY += Y.at(c) * ratio;
        sumZ += Z.at(c) * ratio;
    }
    Yxy[1] = sumX / (sumX + sumY + sumZ);
    Yxy[2] = sumY / (sumX + sumY + sumZ);
}

void ColorUtils::convertTrelColorToYxy(const TrelColor &color, double Yxy[3])
{
    const HuelockProfileID profile = color.getHuelockProfileID();
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, color.getChannelConfiguration());
    convertTrelColorToYxy(color, data, Yxy, defaultCurveTypeForHuelockProfileID(profile));
}

void ColorUtils::convertYxyToNChannelAndApplyCurve(const double Yxy[3], unsigned short *out,
                                                   ChannelConfiguration configuration, HuelockProfileID profile,
                                                   int curveType, bool clampToGamut)
{
    const int count = configChannelCount(configuration);
    QVarLengthArray<double, 8> levels(count);
    convertYxyToNChannel(Yxy, levels.data(), configuration, profile, clampToGamut);
    applyCurve16(count, levels.constData(), out, curveType, PRE_COMPENSATION);
}

double *ColorUtils::convertTrelColorToNChannelF(bool &solvedFromColor, TrelColor &color, bool rgbPassThrough,
                                                int channelCount, HuelockProfileID profile, IOModeID ioMode,
                                                bool clampToGamut, int)
{
    const int count = std::max(channelCount, 0);
    auto *result = new double[std::size_t(count)]();
    if (convertInto(result, count, color, rgbPassThrough, profile, ioMode, clampToGamut))
        solvedFromColor = true;
    return result;
}

void ColorUtils::convertTrelColorToDMX(TrelColor &color, bool rgbPassThrough, int channelCount, int resolution,
                                       unsigned char *out, int curveType, int onboardCurve, HuelockProfileID profile,
                                       IOModeID ioMode)
{
    toDmx(color, rgbPassThrough, channelCount, resolution, out, curveType, onboardCurve, profile, ioMode);
}

QList<unsigned char> ColorUtils::updateBuffer(int curveType, int onboardCurve, const TrelColor &color,
                                              bool rgbPassThrough, int channelCount, int resolution, IOModeID ioMode,
                                              HuelockProfileID profile)
{
    if (channelCount < 1 || resolution < 1)
        return {};
    // ODD-42: nothing ever lies under the colour, which therefore is converted as it is.
    std::vector<unsigned char> buffer(std::size_t(channelCount) * std::size_t(resolution));
    toDmx(color, rgbPassThrough, channelCount, resolution, buffer.data(), curveType, onboardCurve, profile, ioMode);
    return QList<unsigned char>(buffer.cbegin(), buffer.cend());
}

void ColorUtils::updateColor(TrelColor &target, const TrelColor &source)
{
    constexpr int OPAQUE = 255;
    if (target.isBlack() || source.alpha8() == OPAQUE) {
        target = source;
        return;
    }
    const ChannelConfiguration configuration = source.getChannelConfiguration();
    if (target.getChannelConfiguration() != configuration
        || target.getHuelockProfileID() != source.getHuelockProfileID() || target.spec() != source.spec())
        target = target.convertTo(source.spec(), configuration, source.getHuelockProfileID());

    // ODD-41: a mixture belongs to no fixture any more, so it carries the generic profile.
    const double a = source.alphaF();
    if (source.spec() == TrelColor::Yxy) {
        target.setYxyF(a * source.getY() + (1 - a) * target.getY(), a * source.getx() + (1 - a) * target.getx(),
                       a * source.gety() + (1 - a) * target.gety(), 1.0, GENERIC_RGB);
    } else if (configuration != CONFIG_RGB) {
        target.setNChannel16(mixedLevels(target, source, a), target.getChannelConfiguration(), GENERIC_RGB);
    } else {
        const auto mixed = [a](unsigned int from, unsigned int to) {
            return FullScale::toUInt32(a * from + (1 - a) * to);
        };
        target.setRgb16(mixed(source.red16(), target.red16()), mixed(source.green16(), target.green16()),
                        mixed(source.blue16(), target.blue16()), 65535, GENERIC_RGB);
    }
}

double dot(QPointF a, QPointF b)
{
    return a.x() * b.x() + a.y() * b.y();
}

double length_squared(QPointF a, QPointF b)
{
    return dot(b - a, b - a);
}

double distance(QPointF a, QPointF b)
{
    return std::sqrt(length_squared(a, b));
}
