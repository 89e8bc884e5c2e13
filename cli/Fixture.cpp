#include "Fixture.h"

#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>
#include <IOMode.h>
#include <IOModeFactory.h>
#include <Tristimulus.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

const IOMode &modeOf(ColorUtils::IOModeID id)
{
    return *IOModeFactory::instance()->ioMode(id);
}

HueLockProfile &profileOf(ColorUtils::HuelockProfileID id)
{
    return *HuelockProfileFactory::instance()->getProfile(id);
}

/// A pass-through gives what came in; any other mode drives the profile's emitters.
ColorUtils::ChannelConfiguration outputOf(ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID mode)
{
    return modeOf(mode).isNtoN() ? modeOf(mode).inputChannelConfiguration()
                                 : profileOf(profile).getChannelConfiguration();
}

} // namespace

Fixture Fixture::withDefaults(ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID mode)
{
    Fixture fixture;
    fixture.profile = profile;
    fixture.mode = mode;
    fixture.channels = ColorUtils::configChannelCount(outputOf(profile, mode));
    fixture.onboardCurve = ColorUtils::defaultCurveTypeForHuelockProfileID(profile);
    return fixture;
}

QStringList Fixture::channelNames() const
{
    QStringList names = profileOf(profile).getChannelNames().mid(0, channels);
    while (names.size() < channels)
        names.append(QStringLiteral("Channel %1").arg(names.size() + 1));
    return names;
}

std::optional<QString> Fixture::refusal(const TrelColor &color) const
{
    // Any colour may be solved for generic RGB on the way, to be shown on a screen.
    for (const ColorUtils::HuelockProfileID id : {ColorUtils::GENERIC_RGB, profile}) {
        if (const auto lack = lackOfData(id))
            return lack;
    }
    ColorUtils::ChannelConfiguration configuration = ColorUtils::CONFIG_UNKNOWN;
    ColorUtils::HuelockProfileID origin = ColorUtils::GENERIC_RGB;
    QVector<double> alphaAndLevels;
    color.getNChannelF(&alphaAndLevels, &configuration, &origin);
    const auto count = int(alphaAndLevels.size()) - 1;
    const bool isGenericRgb = origin == ColorUtils::GENERIC_RGB && configuration == ColorUtils::CONFIG_RGB;
    const bool passesThrough = color.spec() == TrelColor::Nchannel && modeOf(mode).isNtoN() && !isGenericRgb
                               && origin == profile && configuration == modeOf(mode).inputChannelConfiguration();
    if (passesThrough && count != channels)
        return QStringLiteral("it has %1 channel levels, the fixture takes %2").arg(count).arg(channels);
    return std::nullopt;
}

QVector<double> Fixture::levels(TrelColor color) const
{
    bool solved = false;
    const std::unique_ptr<double[]> values(ColorUtils::convertTrelColorToNChannelF(
        solved, color, rgbPassThrough, channels, profile, mode, true, onboardCurve));
    return QVector<double>(values.get(), values.get() + channels);
}

QByteArray Fixture::bytes(TrelColor color) const
{
    std::vector<unsigned char> out(std::size_t(channels) * std::size_t(resolution));
    ColorUtils::convertTrelColorToDMX(color, rgbPassThrough, channels, resolution, out.data(), curve, onboardCurve,
                                      profile, mode);
    return QByteArray(reinterpret_cast<const char *>(out.data()), int(out.size()));
}

std::optional<QString> lackOfData(ColorUtils::HuelockProfileID profile)
{
    const HueLockProfile &data = profileOf(profile);
    Tristimulus &emitters = *data.getTristimulus();
    const int needed = ColorUtils::configChannelCount(data.getChannelConfiguration());
    const int have = int(std::min({emitters.getX().size(), emitters.getY().size(), emitters.getZ().size()}));
    if (have >= needed)
        return std::nullopt;
    return QStringLiteral("profile \"%1\" has data for %2 of its %3 channels")
        .arg(data.name(), QString::number(have), QString::number(needed));
}
