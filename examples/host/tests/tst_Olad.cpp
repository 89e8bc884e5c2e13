// The window and a real daemon: what is patched comes out of olad, however often that is restarted.

#include "DmxOutput.h"
#include "MainWindow.h"
#include "PaneTest.h"
#include "Patch.h"
#include "ProjectFile.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <csignal>

#include <unistd.h>

namespace {

constexpr int PATIENCE = 30000; // ms, on a busy machine
constexpr int ROOT = 0;
constexpr int NOBODY = 65534; // the daemon refuses to run as root

quint16 freePort()
{
    QTcpServer server;
    return server.listen(QHostAddress::LocalHost) ? server.serverPort() : quint16(0);
}

/// olad on loopback with a configuration of its own: the dummy device alone, its port patched to universe 1.
class Olad
{
public:
    ~Olad()
    {
        stop();
    }

    static QString program()
    {
        return QStandardPaths::findExecutable(QStringLiteral("olad"));
    }

    quint16 port() const
    {
        return m_port;
    }

    bool configure()
    {
        const char *others[] = {
            "artnet",  "e131",    "espnet",  "ftdidmx",  "gpio",   "karate",           "kinet",
            "milinst", "opendmx", "osc",     "pathport", "renard", "openpixelcontrol", "sandnet",
            "shownet", "spi",     "uartdmx", "usbdmx",   "usbpro", "usbserial",        "stageprofi"};
        bool isWritten = write(QStringLiteral("ola-dummy.conf"), "enabled = true\n")
                         && write(QStringLiteral("ola-port.conf"), "1-1-O-0 = 1\n");
        for (const char *plugin : others)
            isWritten =
                isWritten && write(QStringLiteral("ola-%1.conf").arg(QLatin1String(plugin)), "enabled = false\n");
        return isWritten && own(m_folder.path());
    }

    bool start()
    {
        QStringList words = {program(),
                             QStringLiteral("--config-dir"),
                             m_folder.path(),
                             QStringLiteral("--rpc-port"),
                             QString::number(m_port),
                             QStringLiteral("--http-port"),
                             QString::number(m_httpPort),
                             QStringLiteral("--interface"),
                             QStringLiteral("lo"),
                             QStringLiteral("--no-register-with-dns-sd"),
                             QStringLiteral("--log-level"),
                             QStringLiteral("1")};
        if (getuid() == ROOT)
            words = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=%1").arg(NOBODY),
                                QStringLiteral("--regid=%1").arg(NOBODY), QStringLiteral("--clear-groups")}
                    + words;
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start(words.takeFirst(), words);
        return m_process.waitForStarted();
    }

    void stop()
    {
        setHanging(false); // a daemon that is stopped does not end
        m_process.terminate();
        if (!m_process.waitForFinished())
            m_process.kill();
        m_process.waitForFinished();
    }

    /// Stops the daemon where it is, with its connections open, or lets it go on.
    void setHanging(bool isHanging) const
    {
        if (m_process.processId() > 0)
            kill(pid_t(m_process.processId()), isHanging ? SIGSTOP : SIGCONT);
    }

    /// What the daemon sends to \a universe by its own account; empty while it does not answer.
    QVector<int> content(int universe) const
    {
        QVector<int> slots;
        for (const QJsonValue &value : answer(QStringLiteral("get_dmx?u=%1").arg(universe), QStringLiteral("dmx")))
            slots.append(value.toInt());
        return slots;
    }

    /// Names of the plugins that run.
    QStringList plugins() const
    {
        QStringList names;
        for (const QJsonValue &value : answer(QStringLiteral("json/universe_plugin_list"), QStringLiteral("plugins"))) {
            const QJsonObject plugin = value.toObject();
            if (plugin.value(QStringLiteral("active")).toBool(true))
                names.append(plugin.value(QStringLiteral("name")).toString());
        }
        return names;
    }

private:
    /// An array of what the daemon answers over HTTP.
    QJsonArray answer(const QString &question, const QString &array) const
    {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_httpPort);
        if (!socket.waitForConnected())
            return {};
        socket.write(QStringLiteral("GET /%1 HTTP/1.0\r\n\r\n").arg(question).toLatin1());
        while (socket.waitForReadyRead() && socket.state() == QAbstractSocket::ConnectedState)
            continue;
        const QByteArray text = socket.readAll();
        return QJsonDocument::fromJson(text.mid(text.indexOf("\r\n\r\n") + 4)).object().value(array).toArray();
    }

    bool write(const QString &name, const QByteArray &text) const
    {
        QFile file(m_folder.filePath(name));
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && own(file.fileName());
    }

    /// Gives what the daemon reads and writes to whom it runs as.
    static bool own(const QString &path)
    {
        return getuid() != ROOT || chown(QFile::encodeName(path).constData(), NOBODY, NOBODY) == 0;
    }

    QTemporaryDir m_folder;
    quint16 m_port = freePort();
    quint16 m_httpPort = freePort();
    QProcess m_process;
};

Fixture makeFixture(int universe, const char *color)
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    fixture.name = QStringLiteral("Front");
    fixture.universe = universe;
    fixture.address = 10;
    fixture.color = TrelColor(color);
    return fixture;
}

} // namespace

class tst_Olad : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void whatIsPatchedComesOut();
    void comesBackAfterARestart();
    void goesOnWithADaemonThatHung();
    void reportsUniversesThatLeadNowhere();
    void theProgramSendsAProject();

private:
    /// Slots of universe 1: zeros but for the three that the fixture has.
    static QVector<int> universeWith(int red, int green, int blue);

    std::unique_ptr<Olad> m_daemon;
    std::unique_ptr<MainWindow> m_window;
};

void tst_Olad::setUp()
{
    if (Olad::program().isEmpty())
        QSKIP("olad is not installed");
    m_daemon = std::make_unique<Olad>();
    std::unique_ptr<DmxSink> sink = DmxSink::create(m_daemon->port());
    if (!sink)
        QSKIP("built without OLA");
    QVERIFY(m_daemon->configure());
    QVERIFY(m_daemon->start());
    m_window = std::make_unique<MainWindow>(std::move(sink));
    m_window->show();
    m_window->setSending(true);
}

void tst_Olad::tearDown()
{
    if (m_window)
        m_window->undoStack()->setClean();
    m_window.reset();
    m_daemon.reset();
}

QVector<int> tst_Olad::universeWith(int red, int green, int blue)
{
    QVector<int> slots(Fixture::SLOTS, 0);
    slots[9] = red;
    slots[10] = green;
    slots[11] = blue;
    return slots;
}

void tst_Olad::whatIsPatchedComesOut()
{
    QVERIFY(m_window->patch()->add({makeFixture(1, "#ff8040")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(255, 128, 64), PATIENCE);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().state, DmxOutput::Sending, PATIENCE);
    QCOMPARE(m_daemon->plugins(), QStringList("Dummy")); // nothing of this machine's is driven

    m_window->undoStack()->undo();
    QVERIFY(m_window->patch()->add({makeFixture(1, "#0102ff")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(1, 2, 255), PATIENCE);

    m_window->output()->setBlackout(true);
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(0, 0, 0), PATIENCE);
}

void tst_Olad::comesBackAfterARestart()
{
    QVERIFY(m_window->patch()->add({makeFixture(1, "#ff8040")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(255, 128, 64), PATIENCE);
    m_daemon->stop();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().state, DmxOutput::Disconnected, PATIENCE);
    QVERIFY(m_daemon->start());
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(255, 128, 64), PATIENCE);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().state, DmxOutput::Sending, PATIENCE);
}

/// More frames than its connection holds are due meanwhile: whoever sent them would wait for it.
void tst_Olad::goesOnWithADaemonThatHung()
{
    QVERIFY(m_window->patch()->add({makeFixture(1, "#ff8040")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(255, 128, 64), PATIENCE);
    m_daemon->setHanging(true);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().state, DmxOutput::Disconnected, PATIENCE);
    for (int frame = 0; frame < 40000; ++frame)
        m_window->output()->sendFrame();
    QCOMPARE(m_window->output()->status().state, DmxOutput::Disconnected);
    m_window->undoStack()->undo();
    QVERIFY(m_window->patch()->add({makeFixture(1, "#0102ff")}));
    m_daemon->setHanging(false);
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(1, 2, 255), PATIENCE);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().state, DmxOutput::Sending, PATIENCE);
}

void tst_Olad::theProgramSendsAProject()
{
    m_window->setSending(false);
    const QTemporaryDir folder;
    const QString project = folder.filePath(QStringLiteral("show.trelproject"));
    ProjectFile::Fault fault;
    QVERIFY(ProjectFile::write(project, {makeFixture(1, "#ff8040")}, fault));
    QProcess host;
    host.setProcessChannelMode(QProcess::ForwardedChannels);
    host.start(QStringLiteral(TREL_HOST), {"--send", "--ola-port", QString::number(m_daemon->port()), project});
    QTRY_COMPARE_WITH_TIMEOUT(m_daemon->content(1), universeWith(255, 128, 64), PATIENCE);
    host.terminate();
    QVERIFY(host.waitForFinished(PATIENCE));
}

void tst_Olad::reportsUniversesThatLeadNowhere()
{
    QVERIFY(m_window->patch()->add({makeFixture(1, "#ff8040")}));
    QVERIFY(m_window->patch()->add({makeFixture(2, "#ff8040")}));
    QTRY_COMPARE_WITH_TIMEOUT(m_window->output()->status().deadUniverses, QVector<int>{2}, PATIENCE);
}

int main(int argc, char **argv)
{
    std::signal(SIGPIPE, SIG_IGN); // as the program does
    isolateFromUser();
    PaneTest::beforeApplication();
    QApplication application(argc, argv);
    PaneTest::prepare();
    tst_Olad test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Olad.moc"
