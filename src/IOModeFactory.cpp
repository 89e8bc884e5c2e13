#include "IOModeFactory.h"

#include "IOMode.h"

#include <QObject>

namespace {

enum Calibration : int { OnOrOff, OnOnly, OffOnly };

struct ModeRow
{
    ColorUtils::IOModeID id;
    const char *name;
    bool is3toN;
    bool isNtoN;
    ColorUtils::ChannelConfiguration input;
    Calibration calibration;
};

// ODD-27: mode 0 is of both kinds, since for three channels the two are one thing. RGBAW pass-through is the
// one colour pass-through without calibration.
constexpr ModeRow MODES[] = {
    {ColorUtils::RGB_IN_OUT, QT_TRANSLATE_NOOP("QObject", "RGB In/Out"), true, true, ColorUtils::CONFIG_RGB, OnOrOff},
    {ColorUtils::RGBA_IN_OUT, QT_TRANSLATE_NOOP("QObject", "RGBA In/Out"), false, true, ColorUtils::CONFIG_RGBA,
     OnOrOff},
    {ColorUtils::RGBW_IN_OUT, QT_TRANSLATE_NOOP("QObject", "RGBW In/Out"), false, true, ColorUtils::CONFIG_RGBW,
     OnOrOff},
    {ColorUtils::RGBAW_IN_OUT, QT_TRANSLATE_NOOP("QObject", "RGBAW In/Out"), false, true, ColorUtils::CONFIG_RGBAW,
     OffOnly},
    {ColorUtils::RGBWW_IN_OUT, QT_TRANSLATE_NOOP("QObject", "RGBWW In/Out"), false, true, ColorUtils::CONFIG_RGBWW,
     OnOrOff},
    {ColorUtils::RGB_IN_RGBA_OUT, QT_TRANSLATE_NOOP("QObject", "RGB In / RGBA Out"), true, false,
     ColorUtils::CONFIG_RGB, OnOnly},
    {ColorUtils::RGB_IN_RGBW_OUT, QT_TRANSLATE_NOOP("QObject", "RGB In / RGBW Out"), true, false,
     ColorUtils::CONFIG_RGB, OnOnly},
    {ColorUtils::RGB_IN_RGBAW_OUT, QT_TRANSLATE_NOOP("QObject", "RGB In / RGBAW Out"), true, false,
     ColorUtils::CONFIG_RGB, OnOnly},
    {ColorUtils::RGB_IN_RGBWW_OUT, QT_TRANSLATE_NOOP("QObject", "RGB In / RGBWW Out"), true, false,
     ColorUtils::CONFIG_RGB, OnOnly},
    {ColorUtils::SINGLE_CHANNEL_IN_OUT, QT_TRANSLATE_NOOP("QObject", "Single Channel In/Out"), false, true,
     ColorUtils::CONFIG_SINGLE_CHANNEL, OffOnly},
};

} // namespace

IOModeFactory *IOModeFactory::m_instance = nullptr;

IOModeFactory *IOModeFactory::instance()
{
    if (!m_instance)
        m_instance = new IOModeFactory;
    return m_instance;
}

IOModeFactory::IOModeFactory()
{
    populate();
}

IOModeFactory::~IOModeFactory()
{
    qDeleteAll(m_modes);
}

IOMode *IOModeFactory::ioMode(ColorUtils::IOModeID id) const
{
    const bool isMode = id >= 0 && std::size_t(id) < m_modes.size();
    return isMode ? m_modes[std::size_t(id)] : nullptr;
}

QString IOModeFactory::nameForIOModeID(ColorUtils::IOModeID id) const
{
    const IOMode *mode = ioMode(id);
    return mode ? mode->name() : QString();
}

bool IOModeFactory::ioModeIs3toN(ColorUtils::IOModeID id) const
{
    const IOMode *mode = ioMode(id);
    return mode && mode->is3toN();
}

bool IOModeFactory::ioModeIsNtoN(ColorUtils::IOModeID id) const
{
    const IOMode *mode = ioMode(id);
    return mode && mode->isNtoN();
}

QList<ColorUtils::HueLockMode> IOModeFactory::availableHueLockEnabled(ColorUtils::IOModeID id) const
{
    const IOMode *mode = ioMode(id);
    return mode ? mode->availableHueLockEnabled() : QList<ColorUtils::HueLockMode>();
}

void IOModeFactory::populate()
{
    // By Calibration; the modes share them.
    const QList<ColorUtils::HueLockMode> settings[] = {
        {ColorUtils::HUELOCK_ON, ColorUtils::HUELOCK_OFF}, {ColorUtils::HUELOCK_ON}, {ColorUtils::HUELOCK_OFF}};
    for (const ModeRow &row : MODES) {
        m_modes[std::size_t(row.id)] =
            new IOMode(row.id, QObject::tr(row.name), row.is3toN, row.isNtoN, row.input, settings[row.calibration]);
    }
}
