#include "ColorText.h"

#include <QColor>
#include <QRegularExpression>

#include <cmath>

namespace {

constexpr unsigned int OPAQUE = 65535;
constexpr int MIN_FIELDS = 4; // of a value string

bool isIn01(double value)
{
    return std::isfinite(value) && value >= 0.0 && value <= 1.0;
}

bool isHexadecimal(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^#([0-9a-fA-F]{6}|[0-9a-fA-F]{8}|[0-9a-fA-F]{12}|[0-9a-fA-F]{16})$"));
    return pattern.match(text).hasMatch();
}

/// Whether each of \a fields is a number; the library reads anything else as 0.
bool areNumbers(const QStringList &fields)
{
    for (const QString &field : fields) {
        bool isNumber = false;
        const double value = field.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(value))
            return false;
    }
    return true;
}

bool isWellFormedValueString(const QString &text)
{
    const QStringList fields = text.split(QLatin1Char(';'));
    if (fields.size() < MIN_FIELDS)
        return false;
    const QString &form = fields.first();
    if (form == QLatin1String("aRgb"))
        return fields.size() == 4 && areNumbers(fields.mid(1, 2)) && isHexadecimal(fields.last());
    return (form == QLatin1String("aYxy") || form == QLatin1String("aNchannel")) && areNumbers(fields.mid(1));
}

} // namespace

TrelColor ColorText::parse(const QString &text, QString *reason)
{
    const QString trimmed = text.trimmed();
    const bool isValueString = trimmed.contains(QLatin1Char(';'));
    const bool isHex = trimmed.startsWith(QLatin1Char('#'));
    QString problem;
    TrelColor color;
    if (trimmed.isEmpty())
        problem = tr("Nothing was entered.");
    else if (isHex && !isHexadecimal(trimmed))
        problem = tr("After “#” stand 6, 8, 12 or 16 hexadecimal digits.");
    else if (isValueString && !isWellFormedValueString(trimmed))
        problem = tr("This is no complete value string.");
    else if (!isHex && !isValueString && !QColor::isValidColor(trimmed))
        problem = tr("No colour is called “%1”.").arg(trimmed);
    else
        color.setNamedColor(trimmed);
    if (problem.isEmpty())
        problem = problemOf(color);
    if (problem.isEmpty())
        return color;
    if (reason)
        *reason = problem;
    return TrelColor();
}

QString ColorText::shown(const TrelColor &color)
{
    if (color.spec() != TrelColor::Rgb && color.spec() != TrelColor::Hsv)
        return color.aName();
    if (color.alpha16() != OPAQUE)
        return color.aName();
    const QString coarse = color.name8();
    return TrelColor(coarse).name() == color.name() ? coarse : color.name();
}

QString ColorText::problemOf(const TrelColor &color)
{
    if (!color.isValid())
        return tr("This is no colour.");
    if (color.spec() == TrelColor::Yxy) {
        const bool isInRange = isIn01(color.getY()) && isIn01(color.getx()) && isIn01(color.gety());
        return isInRange ? QString() : tr("Y, x and y lie between 0 and 1.");
    }
    if (color.spec() != TrelColor::Nchannel)
        return QString();
    const ColorUtils::HuelockProfileID profile = color.getHuelockProfileID();
    if (!ColorUtils::huelockProfileIDList(true).contains(profile))
        return tr("There is no fixture profile %1.").arg(int(profile));
    const auto configuration = ColorUtils::nChannelConfigurationForHuelockProfileID(profile);
    QVector<unsigned int> levels;
    color.getNChannel16(&levels);
    const int channels = int(levels.size()) - 1; // the first is the alpha
    if (color.getChannelConfiguration() != configuration || channels != ColorUtils::configChannelCount(configuration))
        return tr("%1 has other channels.").arg(ColorUtils::huelockProfileIDName(profile));
    return QString();
}
