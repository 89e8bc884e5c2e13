#include "HuelockProfileFactory.h"

#include "TristimulusFactory.h"

#include <QObject>

#include <vector>

namespace {

struct ModeDefault
{
    ColorUtils::IOModeID mode;
    bool huelock; ///< calibration on by default
};

struct ProfileRow
{
    ColorUtils::HuelockProfileID id;
    const char *name;
    ColorUtils::ChannelConfiguration configuration;
    int curve;
    std::vector<ModeDefault> modes;
    ColorUtils::IOModeID defaultMode;
};

/// The built-in profiles, in the order in which they are made.
std::vector<ProfileRow> builtInProfiles()
{
    using C = ColorUtils;
    const std::vector<ModeDefault> rgbaModes = {
        {C::RGB_IN_OUT, true}, {C::RGB_IN_RGBA_OUT, true}, {C::RGBA_IN_OUT, true}};
    const std::vector<ModeDefault> rgbwModes = {
        {C::RGB_IN_OUT, true}, {C::RGB_IN_RGBW_OUT, true}, {C::RGBW_IN_OUT, true}};

    // clang-format off
    // ODD-28: the default modes and the calibration follow no rule.
    return {
        {C::GENERIC_RGB, QT_TRANSLATE_NOOP("QObject", "Generic RGB"), C::CONFIG_RGB, 0,
         {{C::RGB_IN_OUT, false}}, C::RGB_IN_OUT},
        {C::STRAND_BEAM_KVX, QT_TRANSLATE_NOOP("QObject", "Strand/Beam KVX"), C::CONFIG_RGBAW, 1,
         {{C::RGB_IN_OUT, true}, {C::RGB_IN_RGBAW_OUT, true}, {C::RGBAW_IN_OUT, false}}, C::RGB_IN_RGBAW_OUT},
        {C::TESSEL_COVELINE, QT_TRANSLATE_NOOP("QObject", "Tessel CoveLine"), C::CONFIG_RGBWW, 1,
         {{C::RGB_IN_OUT, true}, {C::RGB_IN_RGBWW_OUT, true}, {C::RGBWW_IN_OUT, true}}, C::RGB_IN_RGBWW_OUT},
        {C::GENERIC_RGBW, QT_TRANSLATE_NOOP("QObject", "Generic RGBW"), C::CONFIG_RGBW, 0,
         {{C::RGBW_IN_OUT, false}}, C::RGBW_IN_OUT},
        {C::GENERIC_SINGLE_CHANNEL, QT_TRANSLATE_NOOP("QObject", "Single Channel"), C::CONFIG_SINGLE_CHANNEL, 0,
         {{C::SINGLE_CHANNEL_IN_OUT, false}}, C::SINGLE_CHANNEL_IN_OUT},
        {C::WASHLINE_PZ6_RGBA, QT_TRANSLATE_NOOP("QObject", "WashLine PZ6 RGBA"), C::CONFIG_RGBA, 1,
         rgbaModes, C::RGBA_IN_OUT},
        {C::WASHLINE_PZ6_RGBW, QT_TRANSLATE_NOOP("QObject", "WashLine PZ6 RGBW"), C::CONFIG_RGBW, 1,
         rgbwModes, C::RGBW_IN_OUT},
        {C::FLOODBAR_KQ2_RGBA, QT_TRANSLATE_NOOP("QObject", "FloodBar KQ2 RGBA"), C::CONFIG_RGBA, 1,
         rgbaModes, C::RGBA_IN_OUT},
        {C::FLOODBAR_KQ2_RGBW, QT_TRANSLATE_NOOP("QObject", "FloodBar KQ2 RGBW"), C::CONFIG_RGBW, 1,
         rgbwModes, C::RGBW_IN_OUT},
        {C::PIXELNODE_RGB_CLASS, QT_TRANSLATE_NOOP("QObject", "PixelNode RGB"), C::CONFIG_RGB, 1,
         {{C::RGB_IN_OUT, true}}, C::RGB_IN_OUT},
    };
    // clang-format on
}

HueLockProfile *createProfile(const ProfileRow &row)
{
    QList<ColorUtils::IOModeID> modes;
    for (const ModeDefault &entry : row.modes)
        modes.append(entry.mode);
    auto *profile = new HueLockProfile(QObject::tr(row.name), row.configuration, row.curve, modes, row.defaultMode);
    for (const ModeDefault &entry : row.modes)
        profile->setDefaultIsHuelockEnabled(entry.mode, entry.huelock);
    return profile;
}

} // namespace

HuelockProfileFactory *HuelockProfileFactory::m_instance = nullptr;

HuelockProfileFactory *HuelockProfileFactory::instance()
{
    if (!m_instance) {
        // Published first: the tristimulus registry asks for profiles while it fills, and must find this object.
        m_instance = new HuelockProfileFactory;
        m_instance->populateProfileMap();
    }
    return m_instance;
}

HuelockProfileFactory::~HuelockProfileFactory()
{
    qDeleteAll(m_profiles);
}

HueLockProfile *HuelockProfileFactory::getProfile(ColorUtils::HuelockProfileID id) const
{
    // ODD-49: an identifier without a profile is generic RGB.
    return m_profiles.value(id, m_profiles.value(ColorUtils::GENERIC_RGB));
}

void HuelockProfileFactory::populateProfileMap()
{
    for (const ProfileRow &row : builtInProfiles()) {
        HueLockProfile *profile = createProfile(row);
        m_profiles.insert(row.id, profile);
        if (row.id == ColorUtils::GENERIC_RGB)
            Q_ASSERT(m_profiles.contains(ColorUtils::GENERIC_RGB));
        if (row.id == ColorUtils::PIXELNODE_RGB_CLASS)
            Q_ASSERT(m_profiles.contains(ColorUtils::PIXELNODE_RGB_CLASS));
        profile->setTristimulus(TristimulusFactory::getInstance()->getTristimulus(row.id, row.configuration));
    }
}
