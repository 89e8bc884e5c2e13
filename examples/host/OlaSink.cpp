#include "DmxSink.h"

#include <ola/Callback.h>
#include <ola/Clock.h>
#include <ola/DmxBuffer.h>
#include <ola/client/OlaClient.h>
#include <ola/client/StreamingClient.h>
#include <ola/io/SelectServer.h>
#include <ola/network/IPV4Address.h>
#include <ola/network/SocketAddress.h>
#include <ola/network/TCPSocket.h>

#include <chrono>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// A daemon that owes an answer for so long hangs. What is sent to it then fills the connection, and the sending that
/// finds it full waits until the daemon goes on.
constexpr auto PATIENCE = std::chrono::milliseconds(500);

/// The connection over which the daemon is asked: the streaming client only talks.
class Inquiry
{
public:
    explicit Inquiry(quint16 port)
        : m_socket(ola::network::TCPSocket::Connect(
            ola::network::IPV4SocketAddress(ola::network::IPV4Address::Loopback(), port)))
    {
        if (!m_socket)
            return;
        m_client = std::make_unique<ola::client::OlaClient>(m_socket.get());
        m_isOpen = m_client->Setup();
        m_client->SetCloseHandler(m_whenClosed);
        m_server.AddReadDescriptor(m_socket.get());
    }

    Inquiry(const Inquiry &) = delete;
    Inquiry &operator=(const Inquiry &) = delete;

    ~Inquiry()
    {
        if (m_client)
            m_client->Stop();
        if (m_isOpen)
            m_server.RemoveReadDescriptor(m_socket.get());
        m_client.reset();
        delete m_whenClosed;
    }

    bool isOpen() const
    {
        return m_isOpen;
    }

    void ask()
    {
        if (!m_isOpen || m_isAsked)
            return;
        m_isAsked = true;
        m_asked = Clock::now();
        m_client->FetchUniverseList(ola::NewSingleCallback(this, &Inquiry::onUniverses));
    }

    bool isHanging()
    {
        if (isOverdue())
            process(); // this program may have been the one that was busy
        return isOverdue();
    }

    void process()
    {
        if (m_isOpen)
            m_server.RunOnce(ola::TimeInterval(0, 0));
    }

    std::optional<QSet<int>> universes() const
    {
        return m_universes;
    }

private:
    bool isOverdue() const
    {
        return m_isOpen && m_isAsked && Clock::now() - m_asked > PATIENCE;
    }

    void onClosed()
    {
        m_whenClosed = nullptr; // which deletes itself once it has run
        m_isOpen = false;
    }

    /// A universe without an output port leads nowhere.
    void onUniverses(const ola::client::Result &result, const std::vector<ola::client::OlaUniverse> &universes)
    {
        m_isAsked = false;
        if (!result.Success())
            return;
        QSet<int> known;
        for (const ola::client::OlaUniverse &universe : universes) {
            if (universe.OutputPortCount() > 0)
                known.insert(int(universe.Id()));
        }
        m_universes = known;
    }

    std::unique_ptr<ola::network::TCPSocket> m_socket;
    ola::io::SelectServer m_server;
    std::unique_ptr<ola::client::OlaClient> m_client;
    /// The client runs it at most once and never deletes it.
    ola::SingleUseCallback0<void> *m_whenClosed = ola::NewSingleCallback(this, &Inquiry::onClosed);
    bool m_isOpen = false;
    bool m_isAsked = false; ///< the answer has not come yet
    Clock::time_point m_asked;
    std::optional<QSet<int>> m_universes;
};

/// Streams to the OLA daemon of this machine, and asks it which universes have a port.
class OlaSink : public DmxSink
{
public:
    explicit OlaSink(quint16 port)
        : m_port(port)
    {
    }

    /// The connection to a daemon that hangs is kept, and goes on with it.
    bool open() override
    {
        if (m_inquiry && m_inquiry->isHanging())
            return false;
        if (m_stream && m_inquiry && m_inquiry->isOpen())
            return true;
        m_inquiry.reset();
        ola::client::StreamingClient::Options options;
        options.auto_start = false; // whoever owns the rig decides whether its daemon runs
        options.server_port = m_port;
        m_stream = std::make_unique<ola::client::StreamingClient>(options);
        if (!m_stream->Setup()) {
            m_stream.reset();
            return false;
        }
        m_inquiry = std::make_unique<Inquiry>(m_port);
        return true;
    }

    bool send(int universe, const QByteArray &content) override
    {
        if (!m_stream || (m_inquiry && m_inquiry->isHanging()))
            return false;
        const ola::DmxBuffer frame(reinterpret_cast<const uint8_t *>(content.constData()),
                                   static_cast<unsigned int>(content.size()));
        if (m_stream->SendDMX(static_cast<unsigned int>(universe), frame, ola::client::StreamingClient::SendArgs()))
            return true;
        m_stream.reset();
        m_inquiry.reset();
        return false;
    }

    void askForUniverses() override
    {
        if (m_inquiry)
            m_inquiry->ask();
    }

    void process() override
    {
        if (m_inquiry)
            m_inquiry->process();
    }

    std::optional<QSet<int>> knownUniverses() const override
    {
        return m_inquiry ? m_inquiry->universes() : std::nullopt;
    }

private:
    quint16 m_port;
    std::unique_ptr<ola::client::StreamingClient> m_stream;
    std::unique_ptr<Inquiry> m_inquiry;
};

} // namespace

std::unique_ptr<DmxSink> DmxSink::create(quint16 port)
{
    return std::make_unique<OlaSink>(port);
}
