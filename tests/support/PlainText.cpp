#include "PlainText.h"

#include <QColor>
#include <QStringList>

#include <cmath>

namespace PlainText {

namespace {

constexpr unsigned int ALL_BITS = 0xFFFFFFFF;
constexpr double FULL_SCALE = 4294967295.0;

int hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    return -1;
}

/// A digit that is none is −1, whose bits fill everything from its place up.
unsigned int hexNumber(const char *digits, int count)
{
    unsigned int number = 0;
    for (int i = 0; i < count; ++i)
        number |= unsigned(hexDigit(digits[i])) << 4 * (count - 1 - i);
    return number;
}

/// The text up to the first character that does not fit into a byte.
QByteArray narrowed(const QString &text)
{
    QByteArray bytes;
    for (const QChar character : text) {
        if (character.unicode() == 0 || character.unicode() > 255)
            break;
        bytes += char(character.unicode());
    }
    return bytes;
}

void setPlainName(TrelColor &color, const QString &text)
{
    if (text.startsWith('#')) {
        unsigned int argb[4];
        if (getHexRgb16(text, argb))
            color.setRgb16(argb[1], argb[2], argb[3], argb[0], ColorUtils::GENERIC_RGB);
        else
            color.invalidate();
        return;
    }
    QColor named;
    named.setNamedColor(text);
    if (named.isValid()) {
        color.setQColor(named);
        return;
    }
    qWarning("TrelColor::setNamedColor: Unknown color name '%s'", text.toLatin1().constData());
    color.invalidate();
}

void setRgbParts(TrelColor &color, const QStringList &parts)
{
    if (parts.size() == 4 && parts[3].startsWith('#'))
        setPlainName(color, parts[3]);
    else
        color.invalidate();
}

void setYxyParts(TrelColor &color, const QStringList &parts)
{
    if (parts.size() != 7) {
        color.invalidate();
        return;
    }
    // A level vector is the public way to a configuration; a Yxy setter keeps it.
    color.setNChannel16({65535}, ColorUtils::ChannelConfiguration(parts[1].toInt()), ColorUtils::GENERIC_RGB);
    color.setYxy16(parts[4].toDouble(), parts[5].toDouble(), parts[6].toDouble(), parts[3].toUInt(),
                   ColorUtils::GENERIC_RGB);
}

void setNChannelParts(TrelColor &color, const QStringList &parts)
{
    QVector<unsigned int> levels;
    for (int i = 3; i < int(parts.size()) - 1; ++i)
        levels.append(parts[i].toUInt());
    if (levels.isEmpty()) {
        color.invalidate();
        return;
    }
    color.setNChannel16(levels, ColorUtils::ChannelConfiguration(parts[1].toInt()),
                        ColorUtils::HuelockProfileID(parts[2].toInt()));
    color.setNChannelRenderType(TrelColor::NChannelRenderType(parts.last().toUInt()));
}

void setParts(TrelColor &color, const QString &text)
{
    const QStringList parts = text.split(';');
    if (parts.size() < 4)
        color.invalidate();
    else if (parts[0] == "aRgb")
        setRgbParts(color, parts);
    else if (parts[0] == "aYxy")
        setYxyParts(color, parts);
    else if (parts[0] == "aNchannel")
        setNChannelParts(color, parts);
    else
        setPlainName(color, text);
}

QString rgbName(const TrelColor &color)
{
    const TrelColor rgb = color.toRgb16(true);
    return QString::asprintf("aRgb;%d;%d;#%04x%04x%04x%04x", color.getChannelConfiguration(),
                             color.getHuelockProfileID(), color.alpha16(), rgb.red16(), rgb.green16(), rgb.blue16());
}

QString yxyName(const TrelColor &color)
{
    return QString::asprintf("aYxy;%d;%d;%u;%f;%f;%f", color.getChannelConfiguration(), color.getHuelockProfileID(),
                             color.alpha16(), color.getY(), color.getx(), color.gety());
}

QString nChannelName(const TrelColor &color)
{
    QString text = QString::asprintf("aNchannel;%d;%d", color.getChannelConfiguration(), color.getHuelockProfileID());
    QVector<unsigned int> levels; // the alpha first
    color.getNChannel16(&levels);
    for (const unsigned int level : qAsConst(levels))
        text += QString::asprintf(";%u", level);
    return text + QString::asprintf(";%u", unsigned(color.getNChannelRenderType()));
}

/// Whether two reals are the same but for rounding.
bool isFuzzilyEqual(double a, double b)
{
    return std::abs(a - b) * 1e12 <= std::min(std::abs(a), std::abs(b));
}

unsigned int fullScale(double real)
{
    return unsigned(real * FULL_SCALE + 0.5);
}

} // namespace

QString aName(const TrelColor &color)
{
    switch (color.spec()) {
    case TrelColor::Rgb:
    case TrelColor::Hsv:
        return rgbName(color);
    case TrelColor::Yxy:
        return yxyName(color);
    case TrelColor::Nchannel:
        return nChannelName(color);
    default:
        return QString();
    }
}

QString name(const TrelColor &color)
{
    const TrelColor rgb = color.toRgb16(true);
    return QString::asprintf("#%04x%04x%04x", rgb.red16(), rgb.green16(), rgb.blue16());
}

bool getHexRgb16(const QString &text, unsigned int *argb)
{
    if (text.size() > 17)
        return false;
    const QByteArray bytes = narrowed(text);
    if (!bytes.startsWith('#'))
        return false;
    const char *digits = bytes.constData() + 1;
    const int count = int(bytes.size()) - 1;
    argb[0] = 65535;
    switch (count) {
    case 6:
    case 8:
        for (int component = count == 6 ? 1 : 0; component < 4; ++component, digits += 2)
            argb[component] = hexNumber(digits, 2) * 257;
        return true;
    case 12:
    case 16:
        for (int component = count == 12 ? 1 : 0; component < 4; ++component, digits += 4)
            argb[component] = hexNumber(digits, 4);
        return true;
    default:
        argb[0] = 0;
        argb[1] = argb[2] = argb[3] = ALL_BITS;
        return true;
    }
}

void setNamedColor(TrelColor &color, const QString &text)
{
    if (text.isEmpty())
        color.invalidate();
    else if (text.contains(';'))
        setParts(color, text);
    else
        setPlainName(color, text);
}

HsvWords toHsv16(unsigned int red, unsigned int green, unsigned int blue)
{
    const double r = red / FULL_SCALE;
    const double g = green / FULL_SCALE;
    const double b = blue / FULL_SCALE;
    const double max = r > g && r > b ? r : std::max(g, b);
    const double min = g > r && b > r ? r : std::min(g, b);
    const double delta = max - min;
    if (isFuzzilyEqual(1 + delta, 1.0))
        return {-1, 0, fullScale(max)};

    double h = 0;
    if (isFuzzilyEqual(r, max))
        h = (g - b) / delta;
    else if (isFuzzilyEqual(g, max))
        h = (b - r) / delta + 2;
    else if (isFuzzilyEqual(b, max))
        h = (r - g) / delta + 4;
    h *= 60;
    if (h < 0)
        h += 360;
    return {int(h * 100 + 0.5), fullScale(delta / max), fullScale(max)};
}

} // namespace PlainText
