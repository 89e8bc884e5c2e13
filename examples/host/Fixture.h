#pragma once

#include <TrelColor.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// One fixture of the patch: what it is, where it listens, and the colour that it shows.
struct Fixture
{
    static constexpr int SLOTS = 512;            ///< of a DMX universe
    static constexpr int MAX_UNIVERSE = 65535;   ///< universes are numbered from 0
    static constexpr int MAX_NAME_LENGTH = 100;  ///< characters of a name
    static constexpr int RESOLUTIONS[] = {1, 2}; ///< bytes a channel
    static constexpr int CURVES[] = {0, 1, 2};   ///< curve types of CurveFactory

    quint32 id = 0; ///< given by the patch and kept while rows move; 0 outside one
    QString name;
    ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB;
    ColorUtils::IOModeID mode = ColorUtils::RGB_IN_OUT;
    bool isCalibrated = false; ///< whether generic RGB colours are solved in a mode that could pass them through
    int resolution = 1;        ///< bytes a channel
    int curve = 0;             ///< software curve
    int onboardCurve = 0;      ///< the fixture's own, compensated for
    int universe = 1;
    int address = 1; ///< first slot, 1 to SLOTS
    QString uid;     ///< of the project's swatch that the colour follows; empty for a colour of its own
    TrelColor color = TrelColor::fromRgb(0);

    /// What a new fixture of \a profile starts with: its mode, calibration and on-board curve.
    static Fixture withDefaults(ColorUtils::HuelockProfileID profile);

    /// A name that files can hold, made of what a user typed; empty where nothing is left of it.
    static QString nameFrom(const QString &text);

    /// Gives the fixture another profile, and the mode, calibration and on-board curve that it starts with.
    void setProfile(ColorUtils::HuelockProfileID newProfile);
    /// Gives the fixture another mode, and the calibration that its profile has in it by default.
    void setMode(ColorUtils::IOModeID newMode);
    /// Whether the mode leaves a choice between calibrated and not.
    bool canChooseCalibration() const;

    /// Emitters that are driven: those of the mode's input for a pass-through, otherwise the profile's.
    ColorUtils::ChannelConfiguration configuration() const;
    /// Number of DMX channels.
    int channels() const;
    /// Slots that it takes.
    int footprint() const;
    /// Its last slot; above SLOTS when it does not fit.
    int lastAddress() const;
    /// One letter a channel: R, G, B, A for amber, W for white; D for the one of a dimmer.
    QString channelLetters() const;
    /// Display names of the channels.
    QStringList channelNames() const;

    /// Why no colour can be sent: calibration data that a fixture profile database left short. Empty when they can.
    QString lack() const;

    /// Why there can be no such fixture: its name, the mode for its profile, its place. Empty when there can.
    QString conflict() const;

    /// The footprint() bytes that make the fixture show \a shown; zeros for an invalid colour and when it lack()s data.
    QByteArray bytes(const TrelColor &shown) const;

    /// Everything but the id.
    bool operator==(const Fixture &other) const;
};

/// A number of a fixture, as files and tables have it.
struct FixtureNumber
{
    const char *name;            ///< the attribute in files
    int minimum;                 ///< least value that a file may have
    int maximum;                 ///< greatest one
    int (*get)(const Fixture &); ///< reads it
    void (*set)(Fixture &, int); ///< writes a value from minimum to maximum

    /// All of them; to be set in this order, since the profile gives the others their defaults, and then the mode.
    static const FixtureNumber ALL[8];
};

/// What calibration data of \a profile is missing, in a sentence; empty where all is there.
QString lackOf(ColorUtils::HuelockProfileID profile);

/// Whether both are the same colour in the same terms, by their value strings. Two invalid ones are.
bool isSameColor(const TrelColor &a, const TrelColor &b);
