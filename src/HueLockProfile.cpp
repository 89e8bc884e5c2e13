#include "HueLockProfile.h"

#include "Tristimulus.h"

HueLockProfile::HueLockProfile(const QString &name, ColorUtils::ChannelConfiguration channelConfiguration,
                               int defaultOnboardCurve, QList<ColorUtils::IOModeID> availableIOModeIDs,
                               ColorUtils::IOModeID defaultIOModeID)
    : m_name(name)
    , m_channelConfiguration(channelConfiguration)
    , m_defaultOnboardCurve(defaultOnboardCurve)
    , m_defaultIOModeID(defaultIOModeID)
    , m_availableIOModeIDs(std::move(availableIOModeIDs))
{
}

QString HueLockProfile::name() const
{
    return m_name;
}

ColorUtils::ChannelConfiguration HueLockProfile::getChannelConfiguration() const
{
    return m_channelConfiguration;
}

int HueLockProfile::getDefaultOnboardCurve() const
{
    return m_defaultOnboardCurve;
}

ColorUtils::IOModeID HueLockProfile::getDefaultIOModeID() const
{
    return m_defaultIOModeID;
}

QList<ColorUtils::IOModeID> HueLockProfile::getAvailableIOModeIDs() const
{
    return m_availableIOModeIDs;
}

Tristimulus *HueLockProfile::getTristimulus() const
{
    return m_matrix;
}

void HueLockProfile::setTristimulus(Tristimulus *tristimulus)
{
    m_matrix = tristimulus;
}

bool HueLockProfile::getDefaultIsHuelockEnabled(ColorUtils::IOModeID mode) const
{
    return m_defaultIsHuelockEnabled.value(mode, false);
}

void HueLockProfile::setDefaultIsHuelockEnabled(ColorUtils::IOModeID mode, bool enabled)
{
    m_defaultIsHuelockEnabled.insert(mode, enabled);
}

QStringList HueLockProfile::getChannelNames() const
{
    Q_ASSERT(m_matrix);
    return m_matrix->getChannelNames();
}
