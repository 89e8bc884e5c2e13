#include "Commands.h"

#include "Console.h"
#include "Fixture.h"
#include "Table.h"

#include <QJsonArray>
#include <QJsonObject>

namespace {

/// A form of the colour: its name and the colour written in it.
struct Form
{
    QString name;
    QString text;
};

constexpr const char *SPEC_NAMES[] = {"Invalid", "RGB", "HSV", "Yxy", "N-channel"};
static_assert(std::size(SPEC_NAMES) == TrelColor::Nchannel + 1, "one name for each form");

template <typename... Numbers>
QString joined(Numbers... numbers)
{
    return QStringList{QString::number(numbers)...}.join(QStringLiteral(", "));
}

QString joinedReals(std::initializer_list<double> reals)
{
    QStringList texts;
    for (const double real : reals)
        texts.append(QString::number(real, 'f', 6));
    return texts.join(QStringLiteral(", "));
}

QString levelsFor(const TrelColor &color, ColorUtils::HuelockProfileID profile)
{
    if (const auto lack = lackOfData(profile))
        return *lack;
    QVector<unsigned int> levels;
    color.toNChannel16(ColorUtils::nChannelConfigurationForHuelockProfileID(profile), profile).getNChannel16(&levels);
    QStringList texts;
    for (int i = 1; i < int(levels.size()); ++i)
        texts.append(QString::number(levels.at(i)));
    return texts.join(QStringLiteral(", "));
}

QVector<Form> formsOf(const TrelColor &color)
{
    double Y = 0;
    double x = 0;
    double y = 0;
    color.getYxyF(&Y, &x, &y);
    QVector<Form> forms{
        {"Form", SPEC_NAMES[color.spec()]},
        {"Value string", color.aName()},
        {"Hex", color.name8()},
        {"Hex, 16 bit", color.name()},
        {"Alpha", QString::number(color.alphaF(), 'f', 6)},
        {"RGB, 8 bit", joined(color.red8(), color.green8(), color.blue8())},
        {"RGB, 16 bit", joined(color.red16(), color.green16(), color.blue16())},
        {"RGB, real", joinedReals({color.redF(), color.greenF(), color.blueF()})},
        {"HSV, 8 bit", joined(color.hue8(), color.saturation8(), color.value8())},
        {"HSV, 16 bit", joined(color.hue16(), color.saturation16(), color.value16())},
        {"HSV, real", joinedReals({color.hueF(), color.saturationF(), color.valueF()})},
        {"Yxy", joinedReals({Y, x, y})},
        {"Configuration", ColorUtils::nameForChannelConfiguration(color.getChannelConfiguration())},
        {"Profile", QString::number(color.getHuelockProfileID())},
    };
    const QList<ColorUtils::HuelockProfileID> profiles = ColorUtils::huelockProfileIDList(true);
    for (const ColorUtils::HuelockProfileID profile : profiles)
        forms.append({ColorUtils::huelockProfileIDName(profile) + ", 16 bit", levelsFor(color, profile)});
    return forms;
}

QString tableOf(const QVector<Form> &forms)
{
    Table table({"Form", "Value"});
    for (const Form &form : forms)
        table.addRow({form.name, form.text});
    return table.aligned();
}

QJsonObject jsonOf(const QVector<Form> &forms)
{
    QJsonObject object;
    for (const Form &form : forms)
        object.insert(form.name, form.text);
    return object;
}

} // namespace

int Commands::inspect(const QStringList &colors, const QString &format)
{
    // Every colour is shown on a screen, for which generic RGB is solved.
    if (const auto lack = lackOfData(ColorUtils::GENERIC_RGB)) {
        Console::complain(*lack);
        return Console::BadInput;
    }
    int code = Console::Success;
    QJsonArray objects;
    QStringList tables;
    for (const QString &text : colors) {
        const TrelColor color(text);
        if (!color.isValid()) {
            Console::complain(QStringLiteral("'%1' is no colour").arg(text));
            code = Console::BadInput;
            continue;
        }
        const QVector<Form> forms = formsOf(color);
        objects.append(jsonOf(forms));
        tables.append(tableOf(forms));
    }
    if (format == QLatin1String("json"))
        Console::print(QJsonValue(objects));
    else
        Console::print(tables.join('\n'));
    return code;
}
