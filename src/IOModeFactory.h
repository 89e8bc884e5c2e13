#pragma once

#include "ColorUtils.h"

#include <array>

class IOMode;

/// The registry of the ten I/O modes: filled once, constant afterwards.
class TREL_EXPORT IOModeFactory
{
public:
    /// The registry, created on first call and kept until the process ends.
    static IOModeFactory *instance();

    IOModeFactory(const IOModeFactory &) = delete;
    IOModeFactory &operator=(const IOModeFactory &) = delete;
    ~IOModeFactory();

    /// The mode, owned by the registry; null for an identifier outside 0..9.
    IOMode *ioMode(ColorUtils::IOModeID id) const;

    /// Display name of the mode; empty for an identifier outside 0..9.
    QString nameForIOModeID(ColorUtils::IOModeID id) const;

    /// IOMode::is3toN() of the mode; false for an identifier outside 0..9.
    bool ioModeIs3toN(ColorUtils::IOModeID id) const;

    /// IOMode::isNtoN() of the mode; false for an identifier outside 0..9.
    bool ioModeIsNtoN(ColorUtils::IOModeID id) const;

    /// IOMode::availableHueLockEnabled() of the mode; empty for an identifier outside 0..9.
    QList<ColorUtils::HueLockMode> availableHueLockEnabled(ColorUtils::IOModeID id) const;

private:
    IOModeFactory();
    void populate();

    static IOModeFactory *m_instance;

    std::array<IOMode *, ColorUtils::SINGLE_CHANNEL_IN_OUT + 1> m_modes = {};
};
