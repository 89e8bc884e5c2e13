#include "FramePacer.h"

#include <TestSupport.h>

using namespace std::chrono_literals;

class tst_FramePacer : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void firstFrameIsDueAtOnce();
    void keepsTheGridWhenFramesComeALittleLate();
    void leavesOutWhatItMissed();
    void waitsToTheNextFrame();
    void neverSendsTwoFramesCloseTogether();
};

static constexpr FramePacer::Clock::time_point START(1000s);

void tst_FramePacer::firstFrameIsDueAtOnce()
{
    FramePacer pacer(44);
    pacer.start(START);
    QVERIFY(!pacer.take(START - 1ns));
    QVERIFY(pacer.take(START));
    QVERIFY(!pacer.take(START));
}

void tst_FramePacer::keepsTheGridWhenFramesComeALittleLate()
{
    FramePacer pacer(44);
    pacer.start(START);
    QVERIFY(pacer.take(START));
    for (int frame = 1; frame <= 44; ++frame)
        QVERIFY(pacer.take(START + frame * pacer.period() + 1ms));
    QVERIFY(!pacer.take(START + 45 * pacer.period() - 1ns)); // 45 frames in a second, the first at 0
    QVERIFY(pacer.take(START + 45 * pacer.period()));
}

void tst_FramePacer::leavesOutWhatItMissed()
{
    FramePacer pacer(44);
    pacer.start(START);
    QVERIFY(pacer.take(START));
    const auto late = START + 500ms;
    QVERIFY(pacer.take(late));
    QVERIFY(!pacer.take(late + pacer.period() - 1ns));
    QVERIFY(pacer.take(late + pacer.period()));
}

void tst_FramePacer::waitsToTheNextFrame()
{
    FramePacer pacer(50);
    pacer.start(START);
    QCOMPARE(pacer.wait(START - 5ms).count(), 5);
    QVERIFY(pacer.take(START));
    QCOMPARE(pacer.wait(START + 500us).count(), 20); // rounded up: a timer that wakes early would spin
    QCOMPARE(pacer.wait(START + 20ms).count(), 0);
    QCOMPARE(pacer.wait(START + 1s).count(), 0);
}

void tst_FramePacer::neverSendsTwoFramesCloseTogether()
{
    FramePacer pacer(44);
    pacer.start(START);
    auto now = START;
    auto last = START - 1s;
    int frames = 0;
    for (int tick = 0; tick < 20000; ++tick) {
        // A clock of uneven steps: it crawls, and now and then jumps over most of a frame.
        now += tick % 97 == 0 ? 19ms : 100us * (1 + tick % 5);
        if (!pacer.take(now))
            continue;
        QVERIFY(now - last >= pacer.period() * 3 / 4);
        last = now;
        ++frames;
    }
    QVERIFY(frames > 300);
}

TREL_TEST_MAIN(tst_FramePacer, {})

#include "tst_FramePacer.moc"
