#include "Commands.h"

#include "Console.h"
#include "Table.h"

#include <CurveFactory.h>
#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>
#include <IOMode.h>
#include <IOModeFactory.h>

#include <QJsonArray>
#include <QJsonObject>

namespace {

QString yesOrNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QJsonArray jsonOf(const QStringList &texts)
{
    return QJsonArray::fromStringList(texts);
}

QStringList modeNames(const QList<ColorUtils::IOModeID> &ids)
{
    QStringList names;
    for (const ColorUtils::IOModeID id : ids)
        names.append(IOModeFactory::instance()->nameForIOModeID(id));
    return names;
}

QStringList calibrationNames(const QList<ColorUtils::HueLockMode> &settings)
{
    QStringList names;
    for (const ColorUtils::HueLockMode setting : settings)
        names.append(setting == ColorUtils::HUELOCK_ON ? QStringLiteral("on") : QStringLiteral("off"));
    return names;
}

/// Prints what \a rows and \a objects both hold, in the wanted form.
int print(const QString &format, const Table &rows, const QJsonArray &objects)
{
    if (format == QLatin1String("json"))
        Console::print(QJsonValue(objects));
    else
        Console::print(rows.aligned());
    return Console::Success;
}

} // namespace

int Commands::profiles(const QString &format)
{
    Table rows({"Id", "Name", "Channels", "Onboard curve", "Default mode", "Modes"});
    QJsonArray objects;
    const QList<ColorUtils::HuelockProfileID> ids = ColorUtils::huelockProfileIDList(true);
    for (const ColorUtils::HuelockProfileID id : ids) {
        const HueLockProfile *profile = HuelockProfileFactory::instance()->getProfile(id);
        const QString configuration = ColorUtils::nameForChannelConfiguration(profile->getChannelConfiguration());
        const QString curve = CurveFactory::Instance()->nameForCurveType(profile->getDefaultOnboardCurve());
        const QString mode = IOModeFactory::instance()->nameForIOModeID(profile->getDefaultIOModeID());
        const QStringList modes = modeNames(profile->getAvailableIOModeIDs());
        rows.addRow({QString::number(id), profile->name(), configuration, curve, mode, modes.join(", ")});
        objects.append(QJsonObject{{"id", id},
                                   {"name", profile->name()},
                                   {"configuration", configuration},
                                   {"channels", jsonOf(profile->getChannelNames())},
                                   {"onboardCurve", curve},
                                   {"defaultMode", mode},
                                   {"modes", jsonOf(modes)}});
    }
    return print(format, rows, objects);
}

int Commands::modes(const QString &format)
{
    Table rows({"Id", "Name", "Input", "3 to N", "N to N", "Calibration"});
    QJsonArray objects;
    for (int id = ColorUtils::RGB_IN_OUT; id <= ColorUtils::SINGLE_CHANNEL_IN_OUT; ++id) {
        const IOMode *mode = IOModeFactory::instance()->ioMode(ColorUtils::IOModeID(id));
        const QString input = ColorUtils::nameForChannelConfiguration(mode->inputChannelConfiguration());
        const QStringList calibration = calibrationNames(mode->availableHueLockEnabled());
        rows.addRow({QString::number(id), mode->name(), input, yesOrNo(mode->is3toN()), yesOrNo(mode->isNtoN()),
                     calibration.join(", ")});
        objects.append(QJsonObject{{"id", id},
                                   {"name", mode->name()},
                                   {"input", input},
                                   {"3toN", mode->is3toN()},
                                   {"NtoN", mode->isNtoN()},
                                   {"calibration", jsonOf(calibration)}});
    }
    return print(format, rows, objects);
}

int Commands::curves(const QString &format)
{
    Table rows({"Id", "Name"});
    QJsonArray objects;
    const CurveFactory *curves = CurveFactory::Instance();
    for (int id = 0; !curves->nameForCurveType(id).isEmpty(); ++id) {
        rows.addRow({QString::number(id), curves->nameForCurveType(id)});
        objects.append(QJsonObject{{"id", id}, {"name", curves->nameForCurveType(id)}});
    }
    return print(format, rows, objects);
}
