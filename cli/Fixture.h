#pragma once

#include <TrelColor.h>

#include <QStringList>

#include <optional>

/// A fixture as the command line describes it, and the conversion of colours for it.
struct Fixture
{
    ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB;
    ColorUtils::IOModeID mode = ColorUtils::RGB_IN_OUT;
    int channels = 3;
    int resolution = 1; ///< bytes a channel
    int curve = 0;
    int onboardCurve = 0;
    bool rgbPassThrough = false;

    /// What a fixture of \a profile in \a mode starts with.
    static Fixture withDefaults(ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID mode);

    /// Display names of the channels; "Channel 6" where the profile has no name.
    QStringList channelNames() const;

    /// Why \a color cannot be converted for this fixture; nothing when it can. Asks for everything that the
    /// library answers with a fatal assertion.
    std::optional<QString> refusal(const TrelColor &color) const;

    /// Channel levels 0..1. \pre refusal() says nothing.
    QVector<double> levels(TrelColor color) const;

    /// DMX bytes. \pre refusal() says nothing.
    QByteArray bytes(TrelColor color) const;
};

/// Why colours of \a profile cannot be solved: its calibration data lack channels. Nothing when they can.
std::optional<QString> lackOfData(ColorUtils::HuelockProfileID profile);
