#pragma once

#include "ColorUtils.h"
#include "HueLockProfile.h"

#include <QMap>

/// The registry of the ten built-in fixture profiles: filled once, constant afterwards.
class TREL_EXPORT HuelockProfileFactory
{
public:
    /// The registry, created and filled on first call and kept until the process ends. Filling it comes
    /// back here; such a call gets the half-filled registry.
    static HuelockProfileFactory *instance();

    HuelockProfileFactory(const HuelockProfileFactory &) = delete;
    HuelockProfileFactory &operator=(const HuelockProfileFactory &) = delete;
    ~HuelockProfileFactory();

    /// The profile of \a id, owned by the registry; that of #ColorUtils::GENERIC_RGB when \a id has none.
    /// Never null.
    HueLockProfile *getProfile(ColorUtils::HuelockProfileID id) const;

private:
    HuelockProfileFactory() = default;
    void populateProfileMap();

    static HuelockProfileFactory *m_instance;

    QMap<ColorUtils::HuelockProfileID, HueLockProfile *> m_profiles;
};
