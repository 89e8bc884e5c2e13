#pragma once

#include <QByteArray>
#include <QSet>

#include <memory>
#include <optional>

/// Where DMX frames go. No call waits for anything: all run on the GUI thread between two frames.
class DmxSink
{
public:
    DmxSink() = default;
    DmxSink(const DmxSink &) = delete;
    DmxSink &operator=(const DmxSink &) = delete;
    virtual ~DmxSink() = default;

    /// Connects, where there is no connection that works. False when nobody listens, or answers.
    virtual bool open() = 0;
    /// Sends all slots of a universe. False when the connection is gone or its other end hangs; open() then tries again.
    virtual bool send(int universe, const QByteArray &content) = 0;
    /// Asks for the universes that lead somewhere. The answer comes during a later process().
    virtual void askForUniverses() = 0;
    /// Takes in what has come.
    virtual void process() = 0;
    /// The last answer; nothing since open() until there is one.
    virtual std::optional<QSet<int>> knownUniverses() const = 0;

    /// The sink of this build, which talks to the lighting daemon of this machine at \a port; null when there is none.
    static std::unique_ptr<DmxSink> create(quint16 port);
    /// The daemon's usual port.
    static constexpr quint16 DEFAULT_PORT = 9010;
};
