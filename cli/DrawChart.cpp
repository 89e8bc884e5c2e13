#include "Commands.h"

#include "Chart.h"
#include "Console.h"
#include "Fixture.h"
#include "Lookup.h"

#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <QBuffer>

#include <cmath>
#include <optional>

namespace {

constexpr int SMALLEST_SIDE = 100;
constexpr int LARGEST_SIDE = 8192;

std::optional<QSize> sizeFrom(const QString &text)
{
    const QStringList parts = text.split('x');
    if (parts.size() != 2)
        return std::nullopt;
    const QSize size(parts.at(0).toInt(), parts.at(1).toInt());
    const QRect allowed(SMALLEST_SIDE, SMALLEST_SIDE, LARGEST_SIDE - SMALLEST_SIDE + 1,
                        LARGEST_SIDE - SMALLEST_SIDE + 1);
    return allowed.contains(size.width(), size.height()) ? std::optional(size) : std::nullopt;
}

/// "x,y,w,h" with (x, y) the top left corner; the height counts downwards, whatever its sign.
std::optional<QRectF> rangeFrom(const QString &text)
{
    constexpr double WIDEST = 10;
    const QStringList parts = text.split(',');
    if (parts.size() != 4)
        return std::nullopt;
    double numbers[4];
    for (int i = 0; i < 4; ++i) {
        bool isNumber = false;
        numbers[i] = parts.at(i).toDouble(&isNumber);
        if (!isNumber || !(std::abs(numbers[i]) <= WIDEST))
            return std::nullopt;
    }
    if (!(numbers[2] > 0) || numbers[3] == 0)
        return std::nullopt;
    return QRectF(numbers[0], numbers[1], numbers[2], -std::abs(numbers[3]));
}

/// The picture as the bytes of a file; empty when the ending of \a path is no known format.
QByteArray rendered(const Chart &chart, const QString &path)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (path.endsWith(QLatin1String(".svg"), Qt::CaseInsensitive)) {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(chart.size);
        svg.setViewBox(QRect(QPoint(0, 0), chart.size));
        svg.setTitle(QStringLiteral("CIE 1931 chromaticity chart"));
        QPainter painter(&svg);
        chart.paint(painter);
    } else if (path.endsWith(QLatin1String(".png"), Qt::CaseInsensitive)) {
        QImage image(chart.size, QImage::Format_RGB32);
        QPainter painter(&image);
        chart.paint(painter);
        painter.end();
        image.save(&buffer, "PNG");
    }
    return bytes;
}

bool save(const QByteArray &bytes, const QString &path)
{
    QSaveFile file(path);
    // commit() alone does not see it when the last buffer cannot be written.
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() && file.commit())
        return true;
    Console::complain(QStringLiteral("cannot write '%1': %2").arg(path, file.errorString()));
    return false;
}

} // namespace

int Commands::chart(const ChartArguments &arguments)
{
    Chart chart;
    const auto size = sizeFrom(arguments.size);
    const auto range = rangeFrom(arguments.range);
    if (!size) {
        Console::complain(QStringLiteral("no size '%1': WxH, each %2 to %3")
                              .arg(arguments.size, QString::number(SMALLEST_SIDE), QString::number(LARGEST_SIDE)));
        return Console::BadArguments;
    }
    if (!range) {
        Console::complain(
            QStringLiteral("no range '%1': x,y,w,h of the chart, with w above 0 and h not 0").arg(arguments.range));
        return Console::BadArguments;
    }
    chart.size = *size;
    chart.range = *range;
    for (const QString &text : arguments.profiles) {
        const auto profile = Lookup::profile(text);
        if (!profile) {
            Console::complain(QStringLiteral("no profile '%1' (see 'trelcolor profiles')").arg(text));
            return Console::BadArguments;
        }
        chart.profiles.append(*profile);
    }

    int code = Console::Success;
    // The chart's own colours are solved for generic RGB.
    if (const auto lack = lackOfData(ColorUtils::GENERIC_RGB)) {
        Console::complain(*lack);
        return Console::BadInput;
    }
    for (const QString &text : arguments.colors) {
        const TrelColor color(text);
        if (!color.isValid()) {
            Console::complain(QStringLiteral("'%1' is no colour").arg(text));
            code = Console::BadInput;
            continue;
        }
        chart.marks.append({text, color});
    }

    const QByteArray bytes = rendered(chart, arguments.out);
    if (bytes.isEmpty()) {
        Console::complain(QStringLiteral("'%1' ends in neither .png nor .svg").arg(arguments.out));
        return Console::BadArguments;
    }
    return save(bytes, arguments.out) ? code : Console::BadInput;
}
