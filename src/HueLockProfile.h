#pragma once

#include "ColorUtils.h"

#include <QList>
#include <QMap>
#include <QString>

class Tristimulus;

/// What the toolkit knows about one family of fixtures.
class TREL_EXPORT HueLockProfile
{
public:
    /// A profile without calibration data, with calibration off by default in every mode.
    /// \param name                display name, already translated.
    /// \param defaultOnboardCurve curve type (CurveFactory) that the fixture applies on board by default.
    /// \param availableIOModeIDs  supported I/O modes, in display order.
    HueLockProfile(const QString &name, ColorUtils::ChannelConfiguration channelConfiguration, int defaultOnboardCurve,
                   QList<ColorUtils::IOModeID> availableIOModeIDs, ColorUtils::IOModeID defaultIOModeID);

    /// The display name.
    QString name() const;
    /// The emitter set.
    ColorUtils::ChannelConfiguration getChannelConfiguration() const;
    /// Curve type that the fixture applies on board by default.
    int getDefaultOnboardCurve() const;
    /// The I/O mode that a new fixture starts in.
    ColorUtils::IOModeID getDefaultIOModeID() const;
    /// The supported I/O modes, in display order.
    QList<ColorUtils::IOModeID> getAvailableIOModeIDs() const;

    /// The calibration data, owned by TristimulusFactory; null before setTristimulus().
    Tristimulus *getTristimulus() const;
    /// Stores the pointer; the profile does not own it.
    void setTristimulus(Tristimulus *tristimulus);

    /// Whether calibration is on by default in \a mode; false for a mode that was never set.
    bool getDefaultIsHuelockEnabled(ColorUtils::IOModeID mode) const;
    /// Sets or replaces the default of \a mode.
    void setDefaultIsHuelockEnabled(ColorUtils::IOModeID mode, bool enabled);

    /// Display names of the channels. Fatal without calibration data ("m_matrix").
    QStringList getChannelNames() const;

private:
    QString m_name;
    Tristimulus *m_matrix = nullptr;
    ColorUtils::ChannelConfiguration m_channelConfiguration;
    int m_defaultOnboardCurve;
    ColorUtils::IOModeID m_defaultIOModeID;
    QMap<ColorUtils::IOModeID, bool> m_defaultIsHuelockEnabled;
    QList<ColorUtils::IOModeID> m_availableIOModeIDs;
};
