#pragma once

#include "DmxSink.h"
#include "FramePacer.h"

#include <QMap>
#include <QObject>
#include <QTimer>
#include <QVector>

class Patch;

/// Sends the patch: 44 times a second all slots of each of its universes, changed or not, so that receivers neither
/// miss a change for long nor take the line for dead.
///
/// A universe that leaves the patch is sent zeros for a second. When the connection is lost, it tries to open it again
/// once a second, for as long as it is enabled.
class DmxOutput : public QObject
{
    Q_OBJECT

public:
    static constexpr int FRAMES_PER_SECOND = 44; ///< what DMX of 512 slots can carry

    /// What becomes of the frames.
    enum State : int {
        Unavailable,  ///< this build has no output
        Off,          ///< not enabled
        Disconnected, ///< nobody listens; tries again
        Sending       ///< they go out
    };

    /// What the user should know.
    struct Status
    {
        State state = Off;
        QVector<int> universes;     ///< of the patch
        QVector<int> deadUniverses; ///< of those, what the daemon leads nowhere; none while it is not known

        bool operator==(const Status &other) const;
    };

    /// \param patch outlives the output. \param sink null for a build without output.
    DmxOutput(const Patch *patch, std::unique_ptr<DmxSink> sink, QObject *parent = nullptr);

    /// Whether it sends, or would if it could; never without a sink.
    bool isEnabled() const;
    /// What it does now.
    Status status() const;
    /// The status as a line for the user.
    QString statusText() const;

    /// One frame of every universe: what the clock does 44 times a second.
    void sendFrame();

public Q_SLOTS:
    /// Begins or ends. Whoever receives keeps the last frame.
    void setEnabled(bool enabled);
    /// Sends zeros instead of the patch.
    void setBlackout(bool blackout);

Q_SIGNALS:
    /// status() or statusText() are others.
    void statusChanged();

private:
    void onTimeout();
    bool reopen();
    bool sendUniverses();
    void updateStatus(State state);
    QVector<int> deadUniverses(const QVector<int> &universes) const;

    const Patch *m_patch;
    std::unique_ptr<DmxSink> m_sink;
    FramePacer m_pacer;
    QTimer m_timer;
    Status m_status;
    bool m_isEnabled = false;
    bool m_isBlackout = false;
    bool m_isOpen = false;
    int m_framesToRetry = 0;
    int m_framesToQuestion = 0;
    QMap<int, int> m_framesLeft; ///< by universe: how long it is sent after it has left the patch
};
