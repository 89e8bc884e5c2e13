#pragma once

#include "ColorUtils.h"

#include <QMap>

class QIODevice;
class Tristimulus;

/// The registry of the emitters' measurements, one Tristimulus for each fixture profile.
///
/// It starts with built-in data for profiles 0..9 and then lets the optional file "FixtureProfiles.xml",
/// in the folder above the application's, replace them (see ProfileHandler). Without a QCoreApplication
/// there is no such folder, hence no file.
class TREL_EXPORT TristimulusFactory
{
public:
    /// The registry, created and filled on first call and kept until the process ends. Filling it comes
    /// back here; such a call gets the half-filled registry.
    static TristimulusFactory *getInstance();

    /// An empty registry of its own. The conversions ask getInstance() only; this is for looking at how data
    /// come to be.
    TristimulusFactory() = default;
    TristimulusFactory(const TristimulusFactory &) = delete;
    TristimulusFactory &operator=(const TristimulusFactory &) = delete;
    ~TristimulusFactory();

    /// The data of \a profile, owned by the registry, made from built-in values on first request. Never null.
    ///
    /// #ColorUtils::GENERIC_RGB with \a configuration RGBAW, RGBWW or RGBW is built from the data of the
    /// first profile with that layout, but only as long as plain generic RGB data are not registered: the
    /// lookup goes by the profile identifier alone (ODD-45).
    Tristimulus *getTristimulus(ColorUtils::HuelockProfileID profile, ColorUtils::ChannelConfiguration configuration);

    /// Reads a fixture profile database from \a device and replaces the data of the profiles that it holds.
    /// \return false when \a device is null or the document could not be read to its end; profiles completed
    /// before the fault keep their new data. The reading stops at an entity declaration, below 64 levels of
    /// nesting and after 256 Ki characters. Fatal: see ProfileHandler::startElement().
    bool parseXML(QIODevice *device);

private:
    void populate();

    static TristimulusFactory *s_instance;

    QMap<int, Tristimulus *> m_tristimuli;
};
