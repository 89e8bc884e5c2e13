#include "PlainOutput.h"

#include "Curve.h"
#include "CurveFactory.h"
#include "IOMode.h"
#include "IOModeFactory.h"
#include "PlainSolver.h"
#include "TrelColor.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace PlainOutput {

namespace {

constexpr int NORMAL = 1;
constexpr int TUNGSTEN = 2;
constexpr int PRE_COMPENSATION = 3;
constexpr int SOFTWARE_CURVE = 1;

/// The integer part of \a value, of which a word keeps the low 16 bits. Out of the reach of 64 bits: 0.
unsigned short toWord(double value)
{
    constexpr double LIMIT = 0x1p63;
    if (!(value >= -LIMIT && value < LIMIT))
        return 0;
    return static_cast<unsigned short>(static_cast<long long>(value) & 0xFFFF);
}

unsigned char toByte(float value)
{
    return static_cast<unsigned char>(value);
}

bool isKnown(int curveType)
{
    return curveType >= 0 && curveType <= TUNGSTEN;
}

QVector<unsigned short> toPwm(const double *levels, int count)
{
    QVector<unsigned short> pwm(count);
    for (int c = 0; c < count; ++c)
        pwm[c] = toWord(std::floor(levels[c] * 65535 + 0.5));
    return pwm;
}

/// The words that fixtures with on-board curve \a curveType turn into \a pwm.
QVector<unsigned short> compensatedWords(const QVector<unsigned short> &pwm, int curveType)
{
    QVector<unsigned short> words;
    for (const unsigned short p : pwm) {
        if (curveType == TUNGSTEN)
            words.append(pwm16ToMNormDTungstenRes16(p));
        else if (curveType == NORMAL)
            words.append(pwm16ToMNormDNormRes16(p));
        else
            words.append(p);
    }
    return words;
}

QVector<unsigned char> compensatedBytes(const QVector<unsigned short> &pwm, int curveType)
{
    QVector<unsigned char> bytes;
    for (const unsigned short p : pwm) {
        if (curveType == TUNGSTEN)
            bytes.append(pwm16ToMNormDTungstenRes8(p));
        else if (curveType == NORMAL)
            bytes.append(pwm16ToMNormDNormRes8(p));
        else
            bytes.append(pwm16ToMNormDLinearRes8(p));
    }
    return bytes;
}

void applySoftwareCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType)
{
    const Curve *curve = CurveFactory::Instance()->getCurve(curveType);
    for (int c = 0; c < count; ++c) {
        if (resolution == 2) {
            unsigned short word = 0;
            curve->applyCurve(toWord(levels[c] * 65535), &word);
            qToBigEndian(word, out + 2 * c);
        } else if (resolution == 1) {
            curve->applyCurve(qRound(levels[c] * 255), out + c);
        }
    }
}

void applyPreCompensation(int count, int resolution, const double *levels, unsigned char *out, int curveType)
{
    if (!isKnown(curveType))
        return;
    const QVector<unsigned short> pwm = toPwm(levels, count);
    if (resolution != 2) {
        const QVector<unsigned char> bytes = compensatedBytes(pwm, curveType);
        std::copy(bytes.begin(), bytes.end(), out);
        return;
    }
    const QVector<unsigned short> words = compensatedWords(pwm, curveType);
    for (int c = 0; c < count; ++c)
        qToLittleEndian(words.at(c), out + 2 * c);
    for (int i = 0; i < count; ++i) {
        const unsigned char remembered = out[i]; // not that of channel i, but for the first
        out[2 * i] = out[2 * i + 1];
        out[2 * i + 1] = remembered;
    }
}

double power(double x, int exponent)
{
    double product = x;
    for (int i = 1; i < exponent; ++i)
        product *= x;
    return product;
}

/// \a sum, clamped, as a share of full scale.
double dimRatio(double sum, double fullScale)
{
    const double f = double(static_cast<float>(sum));
    return qBound(0.0, f, fullScale) / fullScale;
}

double onboardRatio(double level, int onboardCurve)
{
    if (onboardCurve == NORMAL)
        return dmx16ToSquareLawDimRatio(toWord(level * 65535));
    if (onboardCurve == TUNGSTEN)
        return dmx16ToTungstenDimRatio(toWord(level * 65535));
    return level;
}

QVector<double> channelLevels(const TrelColor &color)
{
    if (color.spec() == TrelColor::Rgb || color.spec() == TrelColor::Hsv)
        return {color.redF(), color.greenF(), color.blueF()};
    if (color.spec() != TrelColor::Nchannel)
        return {};
    QVector<double> levels;
    color.getNChannelF(&levels);
    return levels.mid(1); // without the alpha
}

bool isDirect(const TrelColor &color, ColorUtils::HuelockProfileID profile, const IOMode &mode)
{
    return mode.inputChannelConfiguration() == color.getChannelConfiguration() && color.getHuelockProfileID() == profile
           && (mode.index() == ColorUtils::RGB_IN_OUT || (mode.isNtoN() && color.spec() != TrelColor::Yxy));
}

bool mustBeSolved(const TrelColor &color, bool rgbPassThrough, const IOMode &mode)
{
    const bool isRenderedFromYxy =
        color.spec() == TrelColor::Nchannel && color.getNChannelRenderType() == TrelColor::NChannelRenderYxy;
    return color.getHuelockProfileID() != ColorUtils::GENERIC_RGB
           || color.getChannelConfiguration() != ColorUtils::CONFIG_RGB || color.spec() == TrelColor::Yxy
           || isRenderedFromYxy || (!mode.is3toN() && (!mode.isNtoN() || !rgbPassThrough));
}

bool passesAsRgb(const TrelColor &color, const IOMode &mode)
{
    return color.getHuelockProfileID() == ColorUtils::GENERIC_RGB
           && (mode.inputChannelConfiguration() == ColorUtils::CONFIG_RGB
               || (color.getChannelConfiguration() == ColorUtils::CONFIG_RGB && mode.isNtoN()));
}

/// Luminance and chromaticity of a colour with the emitters and the curve of its own profile.
QVector<double> ownYxy(const TrelColor &color)
{
    const ColorUtils::HuelockProfileID profile = color.getHuelockProfileID();
    QVector<double> Yxy(3);
    if (color.spec() == TrelColor::Yxy) {
        color.getYxyF(&Yxy[0], &Yxy[1], &Yxy[2]);
    } else {
        Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(profile, color.getChannelConfiguration());
        convertTrelColorToYxy(color, data, Yxy.data(), ColorUtils::defaultCurveTypeForHuelockProfileID(profile));
    }
    return Yxy;
}

/// A new array of \a count numbers: those of \a levels, as many as fit, and zeros.
double *newArray(const QVector<double> &levels, int count)
{
    auto *array = new double[std::size_t(count)]();
    std::copy_n(levels.begin(), std::min(int(levels.size()), count), array);
    return array;
}

double *newSolution(const TrelColor &color, int channelCount, ColorUtils::HuelockProfileID profile, const IOMode &mode,
                    bool clampToGamut)
{
    const ColorUtils::ChannelConfiguration input = mode.inputChannelConfiguration();
    QVector<double> levels(ColorUtils::configChannelCount(input));
    PlainSolver::convertYxyToNChannel(ownYxy(color).constData(), levels.data(), input, profile, clampToGamut);
    return newArray(levels, channelCount);
}

} // namespace

float quadraticSolver(float a, float b, float c, float y, float max)
{
    const float d = b * b - 4 * a * (c - y);
    const double s = std::sqrt(double(d));
    float x = static_cast<float>((-double(b) + s) / (2 * double(a)));
    if (!(x > 0))
        x = static_cast<float>((-double(b) - s) / (2 * double(a)));
    if (!(x > 0))
        x = 0;
    if (x > max)
        x = max;
    return std::floor(x + 0.5F);
}

unsigned short pwm16ToMNormDNormRes16(unsigned short p)
{
    return p == 0 ? toWord(0) : toWord(double(quadraticSolver(1.425e-5F, 0.065898F, -0.065865F, p, 65535.0F)));
}

unsigned char pwm16ToMNormDNormRes8(unsigned short p)
{
    return p == 0 ? toByte(0) : toByte(quadraticSolver(0.941203F, 16.936F, -0.065865F, p, 255.0F));
}

unsigned short pwm16ToMNormDTungstenRes16(unsigned short p)
{
    if (p <= 4)
        return p;
    if (p <= 321)
        return toByte(quadraticSolver(3.359e-6F, -0.0039F, 4.339F, p, 255.0F));
    return toWord(double(quadraticSolver(1.9829e-5F, -0.325303F, 1573.0F, p, 255.0F)));
}

unsigned char pwm16ToMNormDTungstenRes8(unsigned short p)
{
    if (p <= 4)
        return toByte(p);
    if (p <= 321)
        return toByte(quadraticSolver(0.221829F, -1.002F, 4.339F, p, 255.0F));
    return toByte(quadraticSolver(1.31F, -83.603F, 1573.0F, p, 255.0F));
}

unsigned char pwm16ToMNormDLinearRes8(unsigned short p)
{
    return static_cast<unsigned char>(std::floor(p / 257.0 + 0.5));
}

double dmx16ToTungstenDimRatio(unsigned short dmx)
{
    const double x = dmx;
    return dimRatio(-9.555e-24 * power(x, 6) + 3.7684e-29 * power(x, 7) + 1.045e-18 * power(x, 5)
                        - 6.1689e-14 * power(x, 4) + 2.031e-9 * power(x, 3) - 1.6217e-5 * power(x, 2) - 9.38789e-10 * x
                        - 4.64192e-16,
                    65535);
}

double dmx16ToSquareLawDimRatio(unsigned short dmx)
{
    const double x = dmx;
    return dimRatio(0.065828 * x + 1.4257e-5 * power(x, 2) + 1.674e-18 * power(x, 4) - 2.11838e-13 * power(x, 3)
                        - 4.8488e-5,
                    65516);
}

void applyCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType, int mode)
{
    if (mode == PRE_COMPENSATION)
        applyPreCompensation(count, resolution, levels, out, curveType);
    else
        applySoftwareCurve(count, resolution, levels, out, curveType);
}

void convertTrelColorToYxy(const TrelColor &color, Tristimulus *data, double Yxy[3], int onboardCurve)
{
    Yxy[0] = Yxy[1] = Yxy[2] = 0;
    if (color.isBlack())
        return;
    const QVector<double> levels = channelLevels(color);
    double luminance = 0;
    double sums[3] = {0, 0, 0};
    for (int c = 0; c < int(levels.size()); ++c) {
        const double ratio = onboardRatio(levels.at(c), onboardCurve);
        luminance = std::max(luminance, ratio);
        if (c < int(data->getX().size())) {
            sums[0] += data->getX().at(c) * ratio;
            sums[1] += data->getY().at(c) * ratio;
            sums[2] += data->getZ().at(c) * ratio;
        }
    }
    Yxy[0] = luminance;
    Yxy[1] = sums[0] / (sums[0] + sums[1] + sums[2]);
    Yxy[2] = sums[1] / (sums[0] + sums[1] + sums[2]);
}

void convertYxyToNChannelAndApplyCurve(const double Yxy[3], unsigned short *out,
                                       ColorUtils::ChannelConfiguration configuration,
                                       ColorUtils::HuelockProfileID profile, int curveType, bool clampToGamut)
{
    const int count = ColorUtils::configChannelCount(configuration);
    QVector<double> levels(count);
    PlainSolver::convertYxyToNChannel(Yxy, levels.data(), configuration, profile, clampToGamut);
    if (!isKnown(curveType))
        return;
    const QVector<unsigned short> words = compensatedWords(toPwm(levels.constData(), count), curveType);
    std::copy(words.begin(), words.end(), out);
}

double *convertTrelColorToNChannelF(bool &solvedFromColor, TrelColor &color, bool rgbPassThrough, int channelCount,
                                    ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID ioMode,
                                    bool clampToGamut, int)
{
    const IOMode &mode = *IOModeFactory::instance()->ioMode(ioMode);
    if (!isDirect(color, profile, mode) && mustBeSolved(color, rgbPassThrough, mode)) {
        if (color.spec() != TrelColor::Yxy)
            solvedFromColor = true;
        return newSolution(color, channelCount, profile, mode, clampToGamut);
    }
    if (passesAsRgb(color, mode))
        return newArray({color.redF(), color.greenF(), color.blueF()}, channelCount);
    if (color.spec() == TrelColor::Yxy)
        return newSolution(color, channelCount, profile, mode, clampToGamut);
    if (color.spec() != TrelColor::Nchannel)
        Q_ASSERT(false);
    const QVector<double> levels = channelLevels(color);
    Q_ASSERT(levels.size() == channelCount);
    return newArray(levels, channelCount);
}

void convertTrelColorToDMX(TrelColor &color, bool rgbPassThrough, int channelCount, int resolution, unsigned char *out,
                           int curveType, int onboardCurve, ColorUtils::HuelockProfileID profile,
                           ColorUtils::IOModeID ioMode)
{
    bool solvedFromColor = false;
    const double *levels = convertTrelColorToNChannelF(solvedFromColor, color, rgbPassThrough, channelCount, profile,
                                                       ioMode, true, onboardCurve);
    if (color.spec() == TrelColor::Yxy || solvedFromColor)
        applyCurve(channelCount, resolution, levels, out, onboardCurve, PRE_COMPENSATION);
    else
        applyCurve(channelCount, resolution, levels, out, curveType, SOFTWARE_CURVE);
    delete[] levels;
}

QList<unsigned char> updateBuffer(int curveType, int onboardCurve, const TrelColor &color, bool rgbPassThrough,
                                  int channelCount, int resolution, ColorUtils::IOModeID ioMode,
                                  ColorUtils::HuelockProfileID profile)
{
    TrelColor working(0U, 0U, 0U, 65535U);
    if (working.isBlack() || color.alpha8() == 255) // always; over black nothing is mixed
        working = color;
    QVector<unsigned char> buffer(channelCount * resolution);
    convertTrelColorToDMX(working, rgbPassThrough, channelCount, resolution, buffer.data(), curveType, onboardCurve,
                          profile, ioMode);
    return buffer.toList();
}

} // namespace PlainOutput
