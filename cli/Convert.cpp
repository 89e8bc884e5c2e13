#include "Commands.h"

#include "Console.h"
#include "Fixture.h"
#include "Lookup.h"
#include "Table.h"

#include <CurveFactory.h>
#include <IOModeFactory.h>

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>

#include <cstdio>

namespace {

/// One colour, converted.
struct Row
{
    QString text;
    QString hex;
    double Y = 0;
    double x = 0;
    double y = 0;
    QVector<double> levels;
    QByteArray bytes;
};

QString modeNames(ColorUtils::HuelockProfileID profile)
{
    QStringList names;
    const QList<ColorUtils::IOModeID> ids = ColorUtils::ioModesForHuelockProfileID(profile);
    for (const ColorUtils::IOModeID id : ids)
        names.append(QStringLiteral("%1 \"%2\"").arg(id).arg(IOModeFactory::instance()->nameForIOModeID(id)));
    return names.join(QStringLiteral(", "));
}

/// The fixture that \a arguments describe; nothing, after a complaint, when they make no sense.
std::optional<Fixture> fixtureFrom(const Commands::ConvertArguments &arguments)
{
    const auto profile = Lookup::profile(arguments.profile);
    if (!profile) {
        Console::complain(QStringLiteral("no profile '%1' (see 'trelcolor profiles')").arg(arguments.profile));
        return std::nullopt;
    }
    const auto mode = arguments.mode.isEmpty() ? ColorUtils::defaultIOModeIDForHuelockProfileID(*profile)
                                               : Lookup::mode(arguments.mode);
    if (!mode || !ColorUtils::ioModesForHuelockProfileID(*profile).contains(*mode)) {
        Console::complain(QStringLiteral("profile \"%1\" has no mode '%2'; its modes: %3")
                              .arg(ColorUtils::huelockProfileIDName(*profile), arguments.mode, modeNames(*profile)));
        return std::nullopt;
    }

    Fixture fixture = Fixture::withDefaults(*profile, *mode);
    for (const auto &[text, target] :
         {std::pair(arguments.curve, &fixture.curve), std::pair(arguments.onboardCurve, &fixture.onboardCurve)}) {
        if (text.isEmpty())
            continue;
        const auto curve = Lookup::curve(text);
        if (!curve) {
            Console::complain(QStringLiteral("no curve '%1' (see 'trelcolor curves')").arg(text));
            return std::nullopt;
        }
        *target = *curve;
    }
    if (arguments.channels != 0)
        fixture.channels = arguments.channels;
    fixture.resolution = arguments.resolution / 8;
    fixture.rgbPassThrough = arguments.rgbPassThrough;
    return fixture;
}

QStringList linesOfStandardInput()
{
    QByteArray input;
    char buffer[4096];
    while (const std::size_t got = std::fread(buffer, 1, sizeof buffer, stdin))
        input.append(buffer, int(got));
    QStringList lines;
    const QStringList all = QString::fromUtf8(input.constData(), input.size()).split('\n');
    for (const QString &line : all) {
        if (!line.trimmed().isEmpty())
            lines.append(line.trimmed());
    }
    return lines;
}

QStringList colorTexts(const QStringList &arguments)
{
    QStringList texts;
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("-"))
            texts += linesOfStandardInput();
        else
            texts.append(argument);
    }
    return texts;
}

std::optional<Row> converted(const QString &text, const Fixture &fixture)
{
    const TrelColor color(text);
    if (!color.isValid()) {
        Console::complain(QStringLiteral("'%1' is no colour").arg(text));
        return std::nullopt;
    }
    if (const auto refusal = fixture.refusal(color)) {
        Console::complain(QStringLiteral("'%1' cannot be converted: %2").arg(text, *refusal));
        return std::nullopt;
    }
    Row row;
    row.text = text;
    row.hex = color.name8();
    color.getYxyF(&row.Y, &row.x, &row.y);
    row.levels = fixture.levels(color);
    row.bytes = fixture.bytes(color);
    return row;
}

QString fixedPoint(double value)
{
    constexpr double WIDEST = 1e6; // a value string may hold any number
    return std::abs(value) < WIDEST ? QString::number(value, 'f', 4) : QString::number(value);
}

Table tableOf(const QVector<Row> &rows, const Fixture &fixture)
{
    Table table(QStringList{"Colour", "Hex", "Y", "x", "y"} + fixture.channelNames() + QStringList{"Bytes"});
    for (const Row &row : rows) {
        QStringList cells{row.text, row.hex, fixedPoint(row.Y), fixedPoint(row.x), fixedPoint(row.y)};
        for (const double level : row.levels)
            cells.append(fixedPoint(level));
        cells.append(QString::fromLatin1(row.bytes.toHex(' ')));
        table.addRow(cells);
    }
    return table;
}

/// JSON has no NaN.
QJsonValue numberOrNull(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue();
}

QJsonObject identified(int id, const QString &name)
{
    return {{"id", id}, {"name", name}};
}

QJsonObject jsonOf(const Row &row, const QStringList &channelNames)
{
    QJsonArray channels;
    for (int i = 0; i < int(row.levels.size()); ++i)
        channels.append(QJsonObject{{"name", channelNames.at(i)}, {"level", numberOrNull(row.levels.at(i))}});
    QJsonArray bytes;
    for (const char byte : row.bytes)
        bytes.append(int(static_cast<unsigned char>(byte)));
    return {{"color", row.text},
            {"hex", row.hex},
            {"Y", numberOrNull(row.Y)},
            {"x", numberOrNull(row.x)},
            {"y", numberOrNull(row.y)},
            {"channels", channels},
            {"bytes", bytes}};
}

QJsonObject jsonOf(const QVector<Row> &rows, const Fixture &fixture)
{
    QJsonArray colors;
    for (const Row &row : rows)
        colors.append(jsonOf(row, fixture.channelNames()));
    const CurveFactory *curves = CurveFactory::Instance();
    return {{"profile", identified(fixture.profile, ColorUtils::huelockProfileIDName(fixture.profile))},
            {"mode", identified(fixture.mode, IOModeFactory::instance()->nameForIOModeID(fixture.mode))},
            {"channels", fixture.channels},
            {"resolution", fixture.resolution * 8},
            {"curve", identified(fixture.curve, curves->nameForCurveType(fixture.curve))},
            {"onboardCurve", identified(fixture.onboardCurve, curves->nameForCurveType(fixture.onboardCurve))},
            {"rgbPassThrough", fixture.rgbPassThrough},
            {"colors", colors}};
}

QString hexOf(const QVector<Row> &rows)
{
    QString text;
    for (const Row &row : rows)
        text += QString::fromLatin1(row.bytes.toHex()) + '\n';
    return text;
}

QString heading(const Fixture &fixture)
{
    const CurveFactory *curves = CurveFactory::Instance();
    return QStringLiteral("%1: %2, %3 x %4 bit, curve %5, onboard curve %6%7\n\n")
        .arg(ColorUtils::huelockProfileIDName(fixture.profile),
             IOModeFactory::instance()->nameForIOModeID(fixture.mode), QString::number(fixture.channels),
             QString::number(fixture.resolution * 8), curves->nameForCurveType(fixture.curve),
             curves->nameForCurveType(fixture.onboardCurve),
             fixture.rgbPassThrough ? QStringLiteral(", RGB pass-through") : QString());
}

void print(const QVector<Row> &rows, const Fixture &fixture, const QString &format)
{
    if (format == QLatin1String("json"))
        Console::print(QJsonValue(jsonOf(rows, fixture)));
    else if (format == QLatin1String("csv"))
        Console::print(tableOf(rows, fixture).csv());
    else if (format == QLatin1String("hex"))
        Console::print(hexOf(rows));
    else
        Console::print(heading(fixture) + tableOf(rows, fixture).aligned());
}

} // namespace

int Commands::convert(const ConvertArguments &arguments)
{
    const auto fixture = fixtureFrom(arguments);
    if (!fixture)
        return Console::BadArguments;

    const QStringList texts = colorTexts(arguments.colors);
    QVector<Row> rows;
    for (const QString &text : texts) {
        if (const auto row = converted(text, *fixture))
            rows.append(*row);
    }
    print(rows, *fixture, arguments.format);
    return rows.size() == texts.size() ? Console::Success : Console::BadInput;
}
