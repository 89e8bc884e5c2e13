#include "ColorMime.h"

#include "ColorText.h"

#include <TrelColorLibrary.h>

#include <QColor>
#include <QCoreApplication>
#include <QMimeData>
#include <QRegularExpression>
#include <QRgba64>

#include <cstring>
#include <memory>

namespace {

constexpr char X_COLOR[] = "application/x-color";
/// Marks a host's own drags, for the library too; its content says which process.
constexpr char HOST_COLOR[] = "x-kestra/color";
constexpr int MAX_TEXT = 64 * 1024; ///< characters of a foreign text that are looked at
constexpr int MAX_COLORS = 4096;    ///< of one drop

QByteArray processMark()
{
    return QByteArray::number(QCoreApplication::applicationPid());
}

QColor toQColor(const TrelColor &color)
{
    const TrelColor rgb = color.toRgb16(true);
    return QColor::fromRgba64(ushort(rgb.red16()), ushort(rgb.green16()), ushort(rgb.blue16()), ushort(rgb.alpha16()));
}

/// Adds the forms that other programs read.
void addForeignForms(QMimeData *data, const QVector<NamedColor> &colors)
{
    if (colors.isEmpty())
        return;
    QStringList lines;
    for (const NamedColor &each : colors)
        lines.append(each.color.getQColor(true).name());
    data->setColorData(toQColor(colors.first().color));
    data->setText(lines.join(QLatin1Char('\n')));
}

QStringList listIn(const QMimeData *data, const char *format)
{
    const QByteArray bytes = data->data(QLatin1String(format));
    return bytes.isEmpty() ? QStringList() : QString::fromLatin1(bytes).split(QLatin1Char(','));
}

QString nameOfUid(const QString &uid)
{
    return uid.isEmpty() ? QString() : TrelColorLibrary::Instance()->getName(uid, TrelColorLibrary::NameDescriptor);
}

void appendIfGood(QVector<NamedColor> &colors, const TrelColor &color, const QString &name)
{
    if (colors.size() < MAX_COLORS && ColorText::problemOf(color).isEmpty())
        colors.append({color, name});
}

QVector<NamedColor> colorsInOwnForm(const QMimeData *data)
{
    const QStringList values = listIn(data, TRELCOLOR_MIME_TYPE);
    const QStringList names = listIn(data, kTRELCOLOR_NAME_MIME_TYPE);
    QVector<NamedColor> colors;
    for (int i = 0; i < values.size(); ++i) {
        const TrelColor color = ColorText::parse(TrelColorLibrary::UidAndValueToValue(values.at(i)));
        // A name with a comma is split; then only the library knows the names.
        QString name = nameOfUid(TrelColorLibrary::UidAndValueToUid(values.at(i)));
        if (name.isEmpty() && names.size() == values.size())
            name = names.at(i);
        appendIfGood(colors, color, name);
    }
    return colors;
}

/// Four 16-bit words, red, green, blue and alpha, as programs of other toolkits hand them over.
TrelColor colorOfWords(const QByteArray &bytes)
{
    quint16 words[4] = {0, 0, 0, 0xFFFF};
    if (bytes.size() != int(sizeof(words)))
        return TrelColor();
    std::memcpy(words, bytes.constData(), sizeof(words));
    return TrelColor::fromRgb16(words[0], words[1], words[2], words[3]);
}

QVector<NamedColor> colorOfForeignForm(const QMimeData *data)
{
    QVector<NamedColor> colors;
    const QColor color = qvariant_cast<QColor>(data->colorData());
    if (color.isValid()) {
        const QRgba64 words = color.rgba64();
        appendIfGood(colors, TrelColor::fromRgb16(words.red(), words.green(), words.blue(), words.alpha()), QString());
    } else {
        appendIfGood(colors, colorOfWords(data->data(QLatin1String(X_COLOR))), QString());
    }
    return colors;
}

QVector<NamedColor> colorsOfText(const QString &text)
{
    static const QRegularExpression lineEnds(QStringLiteral("[\r\n]+"));
    QVector<NamedColor> colors;
    const QStringList lines = text.left(MAX_TEXT).split(lineEnds);
    for (const QString &line : lines)
        appendIfGood(colors, ColorText::parse(line), QString());
    return colors;
}

} // namespace

QMimeData *ColorMime::fromColors(const QVector<NamedColor> &colors)
{
    QVector<NamedColor> good;
    QStringList values;
    QStringList names;
    for (const NamedColor &each : colors) {
        if (!ColorText::problemOf(each.color).isEmpty())
            continue;
        good.append(each);
        values.append(each.color.aName());
        names.append(each.name);
    }
    auto *data = new QMimeData;
    if (good.isEmpty())
        return data;
    data->setData(QLatin1String(TRELCOLOR_MIME_TYPE), values.join(QLatin1Char(',')).toLatin1());
    data->setData(QLatin1String(kTRELCOLOR_NAME_MIME_TYPE), names.join(QLatin1Char(',')).toLatin1());
    addForeignForms(data, good);
    return data;
}

QMimeData *ColorMime::fromLibrary(const QModelIndexList &indexes)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    QModelIndexList rows;
    QVector<NamedColor> colors;
    for (const QModelIndex &index : indexes) {
        if (index.model() != library || index.column() != 0 || library->isListIndex(index))
            continue;
        const auto *color = static_cast<const TrelColor *>(index.data(TrelColorLibraryItem::ColorRole).value<void *>());
        if (!color || !ColorText::problemOf(*color).isEmpty())
            continue;
        rows.append(index);
        colors.append({*color, index.data(Qt::EditRole).toString()});
    }
    QMimeData *data = library->mimeData(rows);
    data->setData(QLatin1String(HOST_COLOR), processMark());
    addForeignForms(data, colors);
    return data;
}

QVector<NamedColor> ColorMime::colorsOf(const QMimeData *data)
{
    if (!data)
        return {};
    QVector<NamedColor> colors;
    if (data->hasFormat(QLatin1String(TRELCOLOR_MIME_TYPE)))
        colors = colorsInOwnForm(data);
    if (colors.isEmpty() && data->hasColor())
        colors = colorOfForeignForm(data);
    if (colors.isEmpty() && data->hasText())
        colors = colorsOfText(data->text());
    return colors;
}

QStringList ColorMime::uidsOf(const QMimeData *data)
{
    if (!data || data->data(QLatin1String(HOST_COLOR)) != processMark())
        return {};
    QStringList uids;
    const QStringList values = listIn(data, TRELCOLOR_MIME_TYPE);
    for (const QString &value : values) {
        const QString uid = TrelColorLibrary::UidAndValueToUid(value);
        if (!uid.isEmpty())
            uids.append(uid);
    }
    return uids;
}

bool ColorMime::canRead(const QMimeData *data)
{
    return data && (data->hasFormat(QLatin1String(TRELCOLOR_MIME_TYPE)) || data->hasColor() || data->hasText());
}
