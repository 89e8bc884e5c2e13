#include "Fixture.h"

#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>
#include <IOMode.h>
#include <IOModeFactory.h>
#include <KestraProjectHelper.h>
#include <Tristimulus.h>

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Letters
{
    ColorUtils::ChannelConfiguration configuration;
    const char *letters;
};

constexpr Letters LETTERS[] = {
    {ColorUtils::CONFIG_RGB, "RGB"},          {ColorUtils::CONFIG_RGBAW, "RGBAW"}, {ColorUtils::CONFIG_RGBW, "RGBW"},
    {ColorUtils::CONFIG_SINGLE_CHANNEL, "D"}, {ColorUtils::CONFIG_RGBWW, "RGBWW"}, {ColorUtils::CONFIG_RGBA, "RGBA"},
};

const IOMode &modeOf(ColorUtils::IOModeID id)
{
    const IOMode *mode = IOModeFactory::instance()->ioMode(id);
    return mode ? *mode : *IOModeFactory::instance()->ioMode(ColorUtils::RGB_IN_OUT);
}

HueLockProfile &profileOf(ColorUtils::HuelockProfileID id)
{
    return *HuelockProfileFactory::instance()->getProfile(id);
}

/// Whether a colour that is in the fixture's own terms already can be handed through as it is. A conversion ends the
/// program at the others.
bool passesThrough(const TrelColor &color, int channels)
{
    if (color.spec() == TrelColor::Yxy)
        return true;
    QVector<double> alphaAndLevels;
    color.getNChannelF(&alphaAndLevels);
    return color.spec() == TrelColor::Nchannel && alphaAndLevels.size() == channels + 1;
}

/// \a color, or its chromaticity where a conversion would refuse it.
TrelColor sendable(const TrelColor &color, const Fixture &fixture)
{
    const bool isInItsTerms = color.getHuelockProfileID() == fixture.profile
                              && fixture.profile != ColorUtils::GENERIC_RGB
                              && color.getChannelConfiguration() == modeOf(fixture.mode).inputChannelConfiguration();
    const bool isHandedThrough = isInItsTerms && modeOf(fixture.mode).isNtoN();
    return isHandedThrough && !passesThrough(color, fixture.channels()) ? color.toYxy() : color;
}

} // namespace

const FixtureNumber FixtureNumber::ALL[] = {
    {"profile", ColorUtils::GENERIC_RGB, ColorUtils::FLOODBAR_KQ2_RGBW, [](const Fixture &f) { return int(f.profile); },
     [](Fixture &f, int value) { f.setProfile(ColorUtils::HuelockProfileID(value)); }},
    {"mode", ColorUtils::RGB_IN_OUT, ColorUtils::SINGLE_CHANNEL_IN_OUT, [](const Fixture &f) { return int(f.mode); },
     [](Fixture &f, int value) { f.setMode(ColorUtils::IOModeID(value)); }},
    {"calibrated", 0, 1, [](const Fixture &f) { return int(f.isCalibrated); },
     [](Fixture &f, int value) { f.isCalibrated = value != 0; }},
    {"resolution", 1, 2, [](const Fixture &f) { return f.resolution; },
     [](Fixture &f, int value) { f.resolution = value; }},
    {"curve", 0, 2, [](const Fixture &f) { return f.curve; }, [](Fixture &f, int value) { f.curve = value; }},
    {"onboardCurve", 0, 2, [](const Fixture &f) { return f.onboardCurve; },
     [](Fixture &f, int value) { f.onboardCurve = value; }},
    {"universe", 0, Fixture::MAX_UNIVERSE, [](const Fixture &f) { return f.universe; },
     [](Fixture &f, int value) { f.universe = value; }},
    {"address", 1, Fixture::SLOTS, [](const Fixture &f) { return f.address; },
     [](Fixture &f, int value) { f.address = value; }},
};

QString lackOf(ColorUtils::HuelockProfileID profile)
{
    const HueLockProfile &known = profileOf(profile);
    Tristimulus *data = known.getTristimulus();
    const int needed = ColorUtils::configChannelCount(known.getChannelConfiguration());
    const int have = data ? int(std::min({data->getX().size(), data->getY().size(), data->getZ().size()})) : 0;
    if (have >= needed)
        return QString();
    return QCoreApplication::translate("Fixture", "The profile %1 has calibration data for %2 of its %3 channels.")
        .arg(known.name(), QString::number(have), QString::number(needed));
}

Fixture Fixture::withDefaults(ColorUtils::HuelockProfileID profile)
{
    Fixture fixture;
    fixture.setProfile(profile);
    return fixture;
}

QString Fixture::nameFrom(const QString &text)
{
    return KestraProjectHelper::writableText(text).simplified().left(MAX_NAME_LENGTH);
}

void Fixture::setProfile(ColorUtils::HuelockProfileID newProfile)
{
    profile = newProfile;
    onboardCurve = ColorUtils::defaultCurveTypeForHuelockProfileID(profile);
    setMode(ColorUtils::defaultIOModeIDForHuelockProfileID(profile));
}

void Fixture::setMode(ColorUtils::IOModeID newMode)
{
    mode = newMode;
    isCalibrated = ColorUtils::defaultHueLockEnabled(profile, mode);
}

bool Fixture::canChooseCalibration() const
{
    return modeOf(mode).availableHueLockEnabled().size() > 1;
}

ColorUtils::ChannelConfiguration Fixture::configuration() const
{
    return modeOf(mode).isNtoN() ? modeOf(mode).inputChannelConfiguration()
                                 : profileOf(profile).getChannelConfiguration();
}

int Fixture::channels() const
{
    return ColorUtils::configChannelCount(configuration());
}

int Fixture::footprint() const
{
    return channels() * resolution;
}

int Fixture::lastAddress() const
{
    return address + footprint() - 1;
}

QString Fixture::channelLetters() const
{
    const auto *row = std::find_if(std::begin(LETTERS), std::end(LETTERS),
                                   [this](const Letters &entry) { return entry.configuration == configuration(); });
    return row == std::end(LETTERS) ? QString() : QString::fromLatin1(row->letters);
}

QStringList Fixture::channelNames() const
{
    const QString letters = channelLetters();
    QStringList names = profileOf(profile).getChannelNames().mid(0, channels());
    while (names.size() < letters.size())
        names.append(letters.at(names.size()));
    return names;
}

QString Fixture::lack() const
{
    // Any colour may be solved for generic RGB on the way, to be shown on a screen.
    const QString generic = lackOf(ColorUtils::GENERIC_RGB);
    return generic.isEmpty() ? lackOf(profile) : generic;
}

QString Fixture::conflict() const
{
    if (name.isEmpty())
        return QCoreApplication::translate("Fixture", "A fixture needs a name.");
    if (!ColorUtils::ioModesForHuelockProfileID(profile).contains(mode))
        return QCoreApplication::translate("Fixture", "The profile of “%1” has no mode %2.")
            .arg(name, QString::number(mode));
    if (address < 1 || lastAddress() > SLOTS)
        return QCoreApplication::translate("Fixture", "“%1” would take slots %2 to %3; a universe has 1 to %4.")
            .arg(name, QString::number(address), QString::number(lastAddress()), QString::number(SLOTS));
    if (universe < 0 || universe > MAX_UNIVERSE)
        return QCoreApplication::translate("Fixture", "Universes are numbered from 0 to %1.").arg(MAX_UNIVERSE);
    return QString();
}

QByteArray Fixture::bytes(const TrelColor &shown) const
{
    QByteArray out(footprint(), '\0');
    if (!shown.isValid() || !lack().isEmpty())
        return out;
    TrelColor converted = sendable(shown, *this);
    ColorUtils::convertTrelColorToDMX(converted, !isCalibrated, channels(), resolution,
                                      reinterpret_cast<unsigned char *>(out.data()), curve, onboardCurve, profile,
                                      mode);
    return out;
}

bool Fixture::operator==(const Fixture &other) const
{
    return name == other.name && profile == other.profile && mode == other.mode && isCalibrated == other.isCalibrated
           && resolution == other.resolution && curve == other.curve && onboardCurve == other.onboardCurve
           && universe == other.universe && address == other.address && uid == other.uid
           && isSameColor(color, other.color);
}

// By the text, since HSV colours count as equal by their hue alone.
bool isSameColor(const TrelColor &a, const TrelColor &b)
{
    return a.spec() == b.spec() && a.aName() == b.aName() && a.getHuelockProfileID() == b.getHuelockProfileID();
}
