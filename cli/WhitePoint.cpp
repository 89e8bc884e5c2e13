#include "Commands.h"

#include "Console.h"
#include "Fixture.h"
#include "Lookup.h"
#include "Table.h"

#include <CCTUtils.h>

#include <QJsonObject>

#include <cmath>

namespace {

/// A white point and what there is to say of it, in the order in which it is said.
struct Property
{
    QString key; ///< in JSON
    QString name;
    QString text;
};

QString joined(const QVector<double> &values, int decimals)
{
    QStringList texts;
    for (const double value : values)
        texts.append(QString::number(value, 'f', decimals));
    return texts.join(QStringLiteral(", "));
}

/// Duv of (u', v') from the locus point of \a cct, negative on the side of a negative tint.
double signedDuv(int cct, int tint, double uPrime, double vPrime)
{
    double locusU = 0;
    double locusV = 0;
    CCTUtils::getuvPrimeFromCCT(cct, locusU, locusV);
    return std::copysign(CCTUtils::getDuvFromuvPrime(locusU, locusV, uPrime, vPrime), tint);
}

QVector<Property> describe(int cct, int tint, double x, double y)
{
    const double uPrime = CCTUtils::getuPrimeFromxy(x, y);
    const double vPrime = CCTUtils::getvPrimeFromxy(x, y);
    QVector<Property> properties{{"cct", "CCT", QString::number(cct) + " K"},
                                 {"tint", "Tint", QString::number(tint)},
                                 {"xy", "x, y", joined({x, y}, 6)},
                                 {"uvPrime", "u', v'", joined({uPrime, vPrime}, 6)}};
    if (CCTUtils::isValidCCT(cct))
        properties.append({"duv", "Duv", QString::number(signedDuv(cct, tint, uPrime, vPrime), 'f', 6)});
    properties.append({"rgb", "RGB preview", TrelColor(x, y).name8()});
    return properties;
}

void describeFixture(QVector<Property> &properties, const Fixture &fixture, const TrelColor &white)
{
    properties.append({"profile", "Profile", ColorUtils::huelockProfileIDName(fixture.profile)});
    properties.append({"channels", "Channels", fixture.channelNames().join(QStringLiteral(", "))});
    properties.append({"levels", "Levels", joined(fixture.levels(white), 4)});
    properties.append({"bytes", "Bytes", QString::fromLatin1(fixture.bytes(white).toHex(' '))});
}

void print(const QVector<Property> &properties, const QString &format)
{
    if (format == QLatin1String("json")) {
        QJsonObject object;
        for (const Property &property : properties)
            object.insert(property.key, property.text);
        Console::print(QJsonValue(object));
        return;
    }
    Table table({"White point", "Value"});
    for (const Property &property : properties)
        table.addRow({property.name, property.text});
    Console::print(table.aligned());
}

} // namespace

int Commands::cct(const CctArguments &arguments)
{
    int cct = arguments.cct;
    int tint = arguments.tint;
    double x = arguments.x;
    double y = arguments.y;
    if (arguments.isInverse && !CCTUtils::getCCTAndTintFromxy(x, y, cct, tint)) {
        Console::complain(QStringLiteral("(%1, %2) is outside the diagram").arg(x).arg(y));
        return Console::BadInput;
    }
    if (!arguments.isInverse)
        CCTUtils::getxyFromCCTAndTint(cct, tint, x, y);
    if (const auto lack = lackOfData(ColorUtils::GENERIC_RGB)) {
        Console::complain(*lack);
        return Console::BadInput;
    }

    QVector<Property> properties = describe(cct, tint, x, y);
    if (!arguments.profile.isEmpty()) {
        const auto profile = Lookup::profile(arguments.profile);
        if (!profile) {
            Console::complain(QStringLiteral("no profile '%1' (see 'trelcolor profiles')").arg(arguments.profile));
            return Console::BadArguments;
        }
        const TrelColor white(x, y);
        const Fixture fixture =
            Fixture::withDefaults(*profile, ColorUtils::defaultIOModeIDForHuelockProfileID(*profile));
        if (const auto refusal = fixture.refusal(white)) {
            Console::complain(*refusal);
            return Console::BadInput;
        }
        describeFixture(properties, fixture, white);
    }
    print(properties, arguments.format);
    return Console::Success;
}
