#include "DmxOutput.h"
#include "FakeSink.h"
#include "PaneTest.h"
#include "Patch.h"

#include <QSignalSpy>
#include <QUndoStack>

class tst_DmxOutput : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void withoutASinkItIsUnavailable();
    void sendsNothingUntilItIsEnabled();
    void sendsAllSlotsOfEachUniverse();
    void repeatsWhatDoesNotChange();
    void sendsZerosToAUniverseThatLeft();
    void blacksOut();
    void opensAgainWhenTheDaemonComesBack();
    void triesAgainOnlyNowAndThen();
    void reportsDeadUniverses();
    void darkensWhatLeftWhileItWasOff();
    void runsByItself();

private:
    void addFixture(int universe, int address, const char *color);
    void sendFrames(int count);

    std::unique_ptr<QUndoStack> m_undo;
    std::unique_ptr<Patch> m_patch;
    FakeDaemon m_daemon;
    std::unique_ptr<DmxOutput> m_output;
};

void tst_DmxOutput::setUp()
{
    m_undo = std::make_unique<QUndoStack>();
    m_patch = std::make_unique<Patch>(m_undo.get());
    m_daemon = FakeDaemon();
    m_output = std::make_unique<DmxOutput>(m_patch.get(), std::make_unique<FakeSink>(&m_daemon));
}

void tst_DmxOutput::tearDown()
{
    m_output.reset();
    m_patch.reset();
    m_undo.reset();
}

void tst_DmxOutput::addFixture(int universe, int address, const char *color)
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::GENERIC_RGB);
    fixture.name = QStringLiteral("Fixture");
    fixture.universe = universe;
    fixture.address = address;
    fixture.color = TrelColor(color);
    QVERIFY(m_patch->add({fixture}));
}

void tst_DmxOutput::sendFrames(int count)
{
    for (int i = 0; i < count; ++i)
        m_output->sendFrame();
}

void tst_DmxOutput::withoutASinkItIsUnavailable()
{
    DmxOutput output(m_patch.get(), nullptr);
    QCOMPARE(output.status().state, DmxOutput::Unavailable);
    output.setEnabled(true);
    QVERIFY(!output.isEnabled());
    output.sendFrame();
    QCOMPARE(output.status().state, DmxOutput::Unavailable);
    QVERIFY(!output.statusText().isEmpty());
}

void tst_DmxOutput::sendsNothingUntilItIsEnabled()
{
    addFixture(1, 1, "red");
    sendFrames(3);
    QCOMPARE(m_output->status().state, DmxOutput::Off);
    QCOMPARE(m_daemon.openings, 0);
    QVERIFY(m_daemon.packets.isEmpty());
}

void tst_DmxOutput::sendsAllSlotsOfEachUniverse()
{
    addFixture(1, 1, "#010203");
    addFixture(7, 510, "#0a0b0c");
    m_output->setEnabled(true);
    sendFrames(1);
    QCOMPARE(m_daemon.packets.size(), 2);
    QCOMPARE(m_daemon.packets.at(0).universe, 1);
    QCOMPARE(m_daemon.packets.at(0).content, QByteArray("\1\2\3", 3) + QByteArray(509, '\0'));
    QCOMPARE(m_daemon.packets.at(1).universe, 7);
    QCOMPARE(m_daemon.packets.at(1).content, QByteArray(509, '\0') + QByteArray("\x0a\x0b\x0c", 3));
    QCOMPARE(m_output->status().state, DmxOutput::Sending);
    QCOMPARE(m_output->status().universes, (QVector<int>{1, 7}));
}

void tst_DmxOutput::repeatsWhatDoesNotChange()
{
    addFixture(1, 1, "red");
    m_output->setEnabled(true);
    sendFrames(5);
    QCOMPARE(m_daemon.packets.size(), 5);
    m_patch->assign({0}, {{TrelColor("#00ff00"), QString()}}, false);
    sendFrames(1);
    QCOMPARE(m_daemon.last(1).left(3), QByteArray("\0\xff\0", 3));
}

void tst_DmxOutput::sendsZerosToAUniverseThatLeft()
{
    addFixture(1, 1, "red");
    addFixture(2, 1, "red");
    m_output->setEnabled(true);
    sendFrames(1);
    m_patch->remove({1});
    m_daemon.packets.clear();
    sendFrames(2 * DmxOutput::FRAMES_PER_SECOND);
    QCOMPARE(m_daemon.last(2), QByteArray(Fixture::SLOTS, '\0'));
    QCOMPARE(m_daemon.packets.size(), 3 * DmxOutput::FRAMES_PER_SECOND); // a second of them
    QCOMPARE(m_output->status().universes, QVector<int>{1});
}

void tst_DmxOutput::blacksOut()
{
    addFixture(1, 1, "red");
    m_output->setEnabled(true);
    QSignalSpy changes(m_output.get(), &DmxOutput::statusChanged);
    m_output->setBlackout(true);
    QCOMPARE(changes.size(), 1);
    sendFrames(1);
    QCOMPARE(m_daemon.last(1), QByteArray(Fixture::SLOTS, '\0'));
    m_output->setBlackout(false);
    sendFrames(1);
    QCOMPARE(m_daemon.last(1).left(1), QByteArray("\xff", 1));
}

void tst_DmxOutput::opensAgainWhenTheDaemonComesBack()
{
    addFixture(1, 1, "red");
    m_output->setEnabled(true);
    sendFrames(3);
    m_daemon.isListening = false;
    sendFrames(1);
    QCOMPARE(m_output->status().state, DmxOutput::Disconnected);
    m_daemon.isListening = true;
    m_daemon.packets.clear();
    sendFrames(DmxOutput::FRAMES_PER_SECOND);
    QCOMPARE(m_output->status().state, DmxOutput::Sending);
    QCOMPARE(m_daemon.last(1).left(1), QByteArray("\xff", 1));
}

void tst_DmxOutput::triesAgainOnlyNowAndThen()
{
    m_daemon.isListening = false;
    m_output->setEnabled(true);
    sendFrames(3 * DmxOutput::FRAMES_PER_SECOND);
    QCOMPARE(m_daemon.openings, 3);
    m_output->setEnabled(false);
    QCOMPARE(m_output->status().state, DmxOutput::Off);
    sendFrames(DmxOutput::FRAMES_PER_SECOND);
    QCOMPARE(m_daemon.openings, 3);
}

void tst_DmxOutput::reportsDeadUniverses()
{
    addFixture(1, 1, "red");
    addFixture(2, 1, "red");
    m_output->setEnabled(true);
    sendFrames(1);
    QVERIFY(m_output->status().deadUniverses.isEmpty()); // there is no answer yet
    m_daemon.universes = QSet<int>{1};
    sendFrames(3 * DmxOutput::FRAMES_PER_SECOND);
    QCOMPARE(m_output->status().deadUniverses, QVector<int>{2});
    QVERIFY(m_output->statusText().contains(QLatin1Char('2')));
    m_daemon.universes = QSet<int>{1, 2};
    sendFrames(3 * DmxOutput::FRAMES_PER_SECOND);
    QVERIFY(m_output->status().deadUniverses.isEmpty());
}

void tst_DmxOutput::darkensWhatLeftWhileItWasOff()
{
    addFixture(1, 1, "red");
    addFixture(2, 1, "red");
    m_output->setEnabled(true);
    sendFrames(1);
    m_output->setEnabled(false);
    m_patch->remove({1});
    QCOMPARE(m_daemon.last(2).left(1), QByteArray("\xff", 1));
    m_output->setEnabled(true);
    sendFrames(1);
    QCOMPARE(m_daemon.last(2), QByteArray(Fixture::SLOTS, '\0'));
}

void tst_DmxOutput::runsByItself()
{
    addFixture(1, 1, "red");
    m_output->setEnabled(true);
    QTRY_VERIFY(m_daemon.packets.size() >= 3);
    m_output->setEnabled(false);
    const int sent = int(m_daemon.packets.size());
    QTest::qWait(5 * 1000 / DmxOutput::FRAMES_PER_SECOND); // frames
    QCOMPARE(int(m_daemon.packets.size()), sent);
}

PANE_TEST_MAIN(tst_DmxOutput)

#include "tst_DmxOutput.moc"
