#include "ColorForm.h"

#include "Gamut.h"

#include <CCTUtils.h>
#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>

#include <QCoreApplication>

#include <cmath>

namespace {

constexpr double MAX_8 = 255.0;
constexpr double DEGREES = 360.0;
constexpr double PERCENT = 100.0;
constexpr double MAX_ALPHA = 65535.0;
constexpr double MAX_X = 0.8; ///< chromaticities of light stay below
constexpr double MAX_Y = 0.9;
constexpr double TINT_STEP = 100.0;

/// The texts of fields.
class Text
{
    Q_DECLARE_TR_FUNCTIONS(ColorForm)
};

ColorField percentField(const QString &label, const QString &hint)
{
    return {label, 0.0, PERCENT, 1.0, 1, Text::tr(" %"), hint};
}

QVector<ColorField> rgbFields()
{
    const auto field = [](const QString &label) {
        return ColorField{label, 0.0, MAX_8, 1.0, 0, QString(), Text::tr("From 0 to 255")};
    };
    return {field(Text::tr("Red")), field(Text::tr("Green")), field(Text::tr("Blue"))};
}

QVector<ColorField> hsvFields()
{
    return {
        {Text::tr("Hue"), 0.0, DEGREES, 1.0, 1, Text::tr("°"), Text::tr("Degrees around the colour circle from red")},
        percentField(Text::tr("Saturation"), Text::tr("From grey to full colour")),
        percentField(Text::tr("Value"), Text::tr("From black to bright"))};
}

QVector<ColorField> yxyFields()
{
    return {percentField(Text::tr("Luminance Y"), Text::tr("Of what is possible at this chromaticity")),
            {Text::tr("x"), 0.0, MAX_X, 0.001, 4, QString(), Text::tr("Chromaticity, CIE 1931")},
            {Text::tr("y"), 0.0, MAX_Y, 0.001, 4, QString(), Text::tr("Chromaticity, CIE 1931")}};
}

QVector<ColorField> whiteFields()
{
    return {{Text::tr("Temperature"), double(CCTUtils::getMinCCT()), double(CCTUtils::getMaxCCT()),
             double(CCTUtils::getCCTStepSize()), 0, Text::tr(" K"), Text::tr("Correlated colour temperature")},
            {Text::tr("Tint"), double(CCTUtils::getMinTint()), double(CCTUtils::getMaxTint()), TINT_STEP, 0, QString(),
             Text::tr("Above 0 greenish, below pinkish")},
            percentField(Text::tr("Luminance"), Text::tr("Of what is possible at this chromaticity"))};
}

QVector<ColorField> levelFields(ColorUtils::HuelockProfileID profile)
{
    const QStringList names = HuelockProfileFactory::instance()->getProfile(profile)->getChannelNames();
    const int channels = ColorUtils::configChannelCount(ColorUtils::nChannelConfigurationForHuelockProfileID(profile));
    QVector<ColorField> fields;
    for (int i = 0; i < channels; ++i) {
        const QString number = Text::tr("Channel %1").arg(i + 1);
        fields.append(percentField(channels == 1 ? Text::tr("Level") : names.value(i, number), number));
    }
    return fields;
}

QVector<double> hsvValues(const TrelColor &color, const QVector<double> &last)
{
    const TrelColor hsv = color.spec() == TrelColor::Hsv ? color : color.toRgb16(true).toHsv16();
    double hue = 0.0;
    double saturation = 0.0;
    double value = 0.0;
    hsv.getHsvF(&hue, &saturation, &value);
    const bool isGrey = hue < 0.0 || hue > 1.0 || saturation <= 0.0;
    const double lastHue = last.isEmpty() ? 0.0 : last.first();
    return {isGrey ? lastHue : hue * DEGREES, saturation * PERCENT, value * PERCENT};
}

QVector<double> yxyValues(const TrelColor &color, const QVector<double> &last)
{
    const Gamut::Clamped seen = Gamut(ColorUtils::GENERIC_RGB).clamp(color);
    const QPointF xy = seen.isVisible ? seen.wanted : last.size() == 3 ? QPointF(last.at(1), last.at(2)) : QPointF();
    return {seen.isVisible ? color.toYxy().getY() * PERCENT : 0.0, xy.x(), xy.y()};
}

/// Colour temperature and tint of a colour with light; false for one that is not near white.
bool whitePointOf(const TrelColor &color, int &cct, int &tint)
{
    const Gamut::Clamped seen = Gamut(ColorUtils::GENERIC_RGB).clamp(color);
    return seen.isVisible && CCTUtils::getCCTAndTintFromxy(seen.wanted.x(), seen.wanted.y(), cct, tint)
           && CCTUtils::isValidCCT(cct) && std::abs(tint) <= CCTUtils::getMaxTint();
}

} // namespace

ColorForm::ColorForm(Kind kind, ColorUtils::HuelockProfileID profile)
    : m_kind(kind)
    , m_profile(profile)
{
}

ColorForm::Kind ColorForm::kind() const
{
    return m_kind;
}

QString ColorForm::name() const
{
    switch (m_kind) {
    case Rgb:
        return Text::tr("RGB");
    case Hsv:
        return Text::tr("HSV");
    case Yxy:
        return Text::tr("Yxy");
    case White:
        return Text::tr("White");
    case Levels:
        return Text::tr("Levels");
    }
    return QString();
}

QVector<ColorField> ColorForm::fields() const
{
    switch (m_kind) {
    case Rgb:
        return rgbFields();
    case Hsv:
        return hsvFields();
    case Yxy:
        return yxyFields();
    case White:
        return whiteFields();
    case Levels:
        return levelFields(m_profile);
    }
    return {};
}

QVector<double> ColorForm::values(const TrelColor &color, const QVector<double> &last) const
{
    const TrelColor rgb = color.toRgb16(true);
    switch (m_kind) {
    case Rgb:
        return {rgb.redF() * MAX_8, rgb.greenF() * MAX_8, rgb.blueF() * MAX_8};
    case Hsv:
        return hsvValues(color, last);
    case Yxy:
        return yxyValues(color, last);
    case White:
        return whiteValues(color, last);
    case Levels:
        return levelValues(color);
    }
    return {};
}

QVector<double> ColorForm::whiteValues(const TrelColor &color, const QVector<double> &last) const
{
    int cct = last.size() == 3 ? int(last.at(0)) : 5600;
    int tint = last.size() == 3 ? int(last.at(1)) : 0;
    int colorsCct = 0;
    int colorsTint = 0;
    if (whitePointOf(color, colorsCct, colorsTint)) {
        cct = colorsCct;
        tint = colorsTint;
    }
    return {double(cct), double(tint), yxyValues(color, {}).first()};
}

QVector<double> ColorForm::levelValues(const TrelColor &color) const
{
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(m_profile);
    const int channels = ColorUtils::configChannelCount(configuration);
    QVector<double> levels(channels + 1, 0.0);
    if (color.spec() == TrelColor::Nchannel && color.getHuelockProfileID() == m_profile)
        color.getNChannelF(&levels);
    else if (Gamut(m_profile).canSolve())
        color.toNChannel16(configuration, m_profile).getNChannelF(&levels);
    levels.removeFirst(); // the alpha
    levels.resize(channels);
    for (double &level : levels)
        level *= PERCENT;
    return levels;
}

TrelColor ColorForm::color(const QVector<double> &values, unsigned int alpha16) const
{
    const double alpha = alpha16 / MAX_ALPHA;
    TrelColor color;
    switch (m_kind) {
    case Rgb:
        color.setRgbF(values.at(0) / MAX_8, values.at(1) / MAX_8, values.at(2) / MAX_8, alpha);
        break;
    case Hsv:
        color.setHsvF(std::fmod(values.at(0), DEGREES) / DEGREES, values.at(1) / PERCENT, values.at(2) / PERCENT,
                      alpha);
        break;
    case Yxy:
        color.setYxy16(values.at(0) / PERCENT, values.at(1), values.at(2), alpha16);
        break;
    case White: {
        double x = 0.0;
        double y = 0.0;
        CCTUtils::getxyFromCCTAndTint(int(values.at(0)), int(values.at(1)), x, y);
        color.setYxy16(values.at(2) / PERCENT, x, y, alpha16);
        break;
    }
    case Levels: {
        QVector<double> levels{alpha};
        for (const double value : values)
            levels.append(value / PERCENT);
        color.setNChannelF(levels, ColorUtils::nChannelConfigurationForHuelockProfileID(m_profile), m_profile);
        break;
    }
    }
    return color;
}

bool ColorForm::canShow(const TrelColor &color) const
{
    if (m_kind == White) {
        int cct = 0;
        int tint = 0;
        return whitePointOf(color, cct, tint);
    }
    return m_kind != Levels || Gamut(m_profile).canSolve();
}
