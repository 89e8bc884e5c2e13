#pragma once

#include "DmxSink.h"

#include <QVector>

/// A daemon that is told whether it listens, and remembers what it was sent.
struct FakeDaemon
{
    struct Packet
    {
        int universe;
        QByteArray content;
    };

    bool isListening = true;
    std::optional<QSet<int>> universes; ///< that lead somewhere; nothing while it does not answer
    QVector<Packet> packets;
    int openings = 0;
    int questions = 0;

    /// What the universe was sent last; empty for nothing.
    QByteArray last(int universe) const
    {
        for (auto packet = packets.crbegin(); packet != packets.crend(); ++packet) {
            if (packet->universe == universe)
                return packet->content;
        }
        return QByteArray();
    }
};

/// Sends to a FakeDaemon, which outlives it.
class FakeSink : public DmxSink
{
public:
    explicit FakeSink(FakeDaemon *daemon)
        : m_daemon(daemon)
    {
    }

    bool open() override
    {
        ++m_daemon->openings;
        m_answer.reset();
        return m_daemon->isListening;
    }

    bool send(int universe, const QByteArray &content) override
    {
        if (m_daemon->isListening)
            m_daemon->packets.append({universe, content});
        return m_daemon->isListening;
    }

    void askForUniverses() override
    {
        ++m_daemon->questions;
        m_isAsked = true;
    }

    void process() override
    {
        if (m_isAsked && m_daemon->isListening)
            m_answer = m_daemon->universes;
        m_isAsked = false;
    }

    std::optional<QSet<int>> knownUniverses() const override
    {
        return m_answer;
    }

private:
    FakeDaemon *m_daemon;
    bool m_isAsked = false;
    std::optional<QSet<int>> m_answer;
};
