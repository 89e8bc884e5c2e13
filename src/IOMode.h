#pragma once

#include "ColorUtils.h"

#include <QList>
#include <QString>

/// One way in which control data map onto a fixture's channels; immutable.
class TREL_EXPORT IOMode
{
public:
    /// \param name                       display name, already translated.
    /// \param is3toN                     the input is an RGB triple that is converted to the fixture's channels.
    /// \param isNtoN                     the input has one value for each output channel.
    /// \param inputChannelConfiguration  configuration of the input data.
    /// \param availableHueLockEnabled    calibration settings that may be chosen, in display order.
    IOMode(ColorUtils::IOModeID id, const QString &name, bool is3toN, bool isNtoN,
           ColorUtils::ChannelConfiguration inputChannelConfiguration,
           QList<ColorUtils::HueLockMode> availableHueLockEnabled);

    /// The mode's identifier.
    ColorUtils::IOModeID index() const;
    /// The display name.
    QString name() const;
    /// Whether the input is an RGB triple that is converted to the fixture's channels.
    bool is3toN() const;
    /// Whether the input has one value for each output channel.
    bool isNtoN() const;
    /// Configuration of the input data.
    ColorUtils::ChannelConfiguration inputChannelConfiguration() const;
    /// The calibration settings that may be chosen in this mode.
    QList<ColorUtils::HueLockMode> availableHueLockEnabled() const;

private:
    ColorUtils::IOModeID m_id;
    QString m_name;
    bool m_is3toN;
    bool m_isNtoN;
    ColorUtils::ChannelConfiguration m_inputChannelConfiguration;
    QList<ColorUtils::HueLockMode> m_availableHueLockEnabled;
};
