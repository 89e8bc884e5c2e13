#include "IOMode.h"

IOMode::IOMode(ColorUtils::IOModeID id, const QString &name, bool is3toN, bool isNtoN,
               ColorUtils::ChannelConfiguration inputChannelConfiguration,
               QList<ColorUtils::HueLockMode> availableHueLockEnabled)
    : m_id(id)
    , m_name(name)
    , m_is3toN(is3toN)
    , m_isNtoN(isNtoN)
    , m_inputChannelConfiguration(inputChannelConfiguration)
    , m_availableHueLockEnabled(std::move(availableHueLockEnabled))
{
}

ColorUtils::IOModeID IOMode::index() const
{
    return m_id;
}

QString IOMode::name() const
{
    return m_name;
}

bool IOMode::is3toN() const
{
    return m_is3toN;
}

bool IOMode::isNtoN() const
{
    return m_isNtoN;
}

ColorUtils::ChannelConfiguration IOMode::inputChannelConfiguration() const
{
    return m_inputChannelConfiguration;
}

QList<ColorUtils::HueLockMode> IOMode::availableHueLockEnabled() const
{
    return m_availableHueLockEnabled;
}
