#include "ColorMime.h"
#include "ColorSlot.h"
#include "Crossfader.h"
#include "Fixture.h"
#include "PaneTest.h"

#include <QDoubleSpinBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>

class tst_Crossfader : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void blendsByHand();
    void blendsWithTheKeyboard();
    void fadesOverTime();
    void fadesBackFromTheEnd();
    void stopsWhereItIs();
    void handsOverToTheHand();
    void fadesAtOnceInNoTime();
    void fadesByTheClock();
    void slotsTakeColors();
    void slotsTakeTheCurrentColor();
    void pictures();

private:
    QSlider *slider() const;
    QPushButton *button() const;
    ColorSlot *colorSlot(int place) const;
    QPoint handle(double position) const;

    std::unique_ptr<Crossfader> m_fader;
    std::unique_ptr<QSignalSpy> m_started;
    std::unique_ptr<QSignalSpy> m_moved;
    std::unique_ptr<QSignalSpy> m_finished;
};

void tst_Crossfader::setUp()
{
    m_fader = std::make_unique<Crossfader>();
    m_started = std::make_unique<QSignalSpy>(m_fader.get(), &Crossfader::started);
    m_moved = std::make_unique<QSignalSpy>(m_fader.get(), &Crossfader::moved);
    m_finished = std::make_unique<QSignalSpy>(m_fader.get(), &Crossfader::finished);
    QVERIFY(PaneTest::present(*m_fader, QSize(200, 220)));
}

void tst_Crossfader::tearDown()
{
    m_fader.reset();
}

QSlider *tst_Crossfader::slider() const
{
    return m_fader->findChild<QSlider *>();
}

QPushButton *tst_Crossfader::button() const
{
    return m_fader->findChild<QPushButton *>();
}

ColorSlot *tst_Crossfader::colorSlot(int place) const
{
    return m_fader->findChildren<ColorSlot *>().at(place);
}

QPoint tst_Crossfader::handle(double position) const
{
    constexpr int HALF_HANDLE = 7;
    const int travel = slider()->width() - 2 * HALF_HANDLE;
    return QPoint(HALF_HANDLE + int(travel * position), slider()->height() / 2);
}

void tst_Crossfader::blendsByHand()
{
    QTest::mousePress(slider(), Qt::LeftButton, Qt::NoModifier, handle(0.0));
    PaneTest::dragTo(*slider(), handle(0.25));
    PaneTest::dragTo(*slider(), handle(0.5));
    QCOMPARE(m_started->size(), 1);
    QVERIFY(m_moved->size() >= 2);
    QVERIFY(m_finished->isEmpty());
    QTest::mouseRelease(slider(), Qt::LeftButton, Qt::NoModifier, handle(0.5));
    QCOMPARE(m_finished->size(), 1);
    QVERIFY(qAbs(m_fader->position() - 0.5) < 0.1);
    const double level = m_finished->first().first().value<TrelColor>().redF(); // of black to white
    QVERIFY(qAbs(level - m_fader->position()) < 0.01);
}

void tst_Crossfader::blendsWithTheKeyboard()
{
    slider()->setFocus();
    QTest::keyClick(slider(), Qt::Key_PageUp);
    QCOMPARE(m_fader->position(), 0.1);
    QTest::keyClick(slider(), Qt::Key_End);
    QCOMPARE(m_finished->size(), 2);
    QVERIFY(isSameColor(m_fader->color().toRgb16(true), TrelColor("white")));
    QTest::keyClick(slider(), Qt::Key_End);
    QCOMPARE(m_finished->size(), 2); // it stands there already
}

void tst_Crossfader::fadesOverTime()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(1000.0); // so that the test, not the clock, moves it
    QTest::mouseClick(button(), Qt::LeftButton);
    QVERIFY(m_fader->isRunning());
    QCOMPARE(m_started->size(), 1);
    m_fader->advance(250000);
    QCOMPARE(m_fader->position(), 0.25);
    m_fader->advance(500000);
    QCOMPARE(m_fader->position(), 0.5);
    QCOMPARE(m_fader->color().red8(), 128);
    QVERIFY(m_finished->isEmpty());
    m_fader->advance(1000000);
    QCOMPARE(m_fader->position(), 1.0);
    QVERIFY(!m_fader->isRunning());
    QCOMPARE(m_finished->size(), 1);
    m_fader->advance(2000000);
    QCOMPARE(m_finished->size(), 1);
}

void tst_Crossfader::fadesBackFromTheEnd()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(1000.0);
    slider()->setValue(slider()->maximum());
    m_fader->toggle();
    m_fader->advance(250000);
    QCOMPARE(m_fader->position(), 0.75);
    m_fader->advance(1000000);
    QCOMPARE(m_fader->position(), 0.0);
}

void tst_Crossfader::stopsWhereItIs()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(1000.0);
    QTest::mouseClick(button(), Qt::LeftButton);
    const QString running = button()->text();
    m_fader->advance(400000);
    QTest::mouseClick(button(), Qt::LeftButton);
    QVERIFY(!m_fader->isRunning());
    QVERIFY(button()->text() != running);
    QCOMPARE(m_fader->position(), 0.4);
    QCOMPARE(m_finished->size(), 1);
}

void tst_Crossfader::handsOverToTheHand()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(1000.0);
    m_fader->toggle();
    m_fader->advance(500000);
    QTest::mousePress(slider(), Qt::LeftButton, Qt::NoModifier, handle(0.5));
    QVERIFY(!m_fader->isRunning());
    PaneTest::dragTo(*slider(), handle(0.1));
    QTest::mouseRelease(slider(), Qt::LeftButton, Qt::NoModifier, handle(0.1));
    QCOMPARE(m_started->size(), 1); // it is one movement
    QCOMPARE(m_finished->size(), 1);
    QVERIFY(m_fader->position() < 0.3);
}

void tst_Crossfader::fadesAtOnceInNoTime()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(0.0);
    m_fader->toggle();
    m_fader->advance(0);
    QCOMPARE(m_fader->position(), 1.0);
    QCOMPARE(m_finished->size(), 1);
}

void tst_Crossfader::fadesByTheClock()
{
    m_fader->findChild<QDoubleSpinBox *>()->setValue(2.0);
    QTest::mouseClick(button(), Qt::LeftButton);
    QVERIFY(m_fader->isRunning());
    QTRY_COMPARE(m_finished->size(), 1);
    QVERIFY(!m_fader->isRunning());
    QCOMPARE(m_started->size(), 1);
    QVERIFY2(m_moved->size() > 3, "the light goes there step by step");
    const TrelColor last = m_moved->last().first().value<TrelColor>();
    QVERIFY(isSameColor(last.toRgb16(true), TrelColor("white")));
    QVERIFY(isSameColor(m_finished->first().first().value<TrelColor>(), last));
}

void tst_Crossfader::slotsTakeColors()
{
    const std::unique_ptr<QMimeData> data(ColorMime::fromColors({{TrelColor("#ff0000"), "Red"}}));
    QVERIFY(PaneTest::drop(*colorSlot(0), QPoint(5, 5), *data));
    QVERIFY(isSameColor(colorSlot(0)->color(), TrelColor("#ff0000")));
    QVERIFY(isSameColor(m_fader->color().toRgb16(true), TrelColor("#ff0000")));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(colorSlot(0), &enter);
    QDropEvent move(QPoint(5, 5), Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    move.setDropAction(Qt::MoveAction);
    QCoreApplication::sendEvent(colorSlot(0), &move);
    QCOMPARE(move.dropAction(), Qt::CopyAction); // the source keeps its own
    QMimeData noColor;
    noColor.setText("tea");
    QVERIFY(!PaneTest::drop(*colorSlot(0), QPoint(5, 5), noColor));
}

void tst_Crossfader::slotsTakeTheCurrentColor()
{
    m_fader->setCurrentColor(TrelColor("#0000ff"));
    QTest::mouseClick(colorSlot(1), Qt::LeftButton);
    QVERIFY(isSameColor(colorSlot(1)->color(), TrelColor("#0000ff")));
    m_fader->setCurrentColor(TrelColor("#00ff00"));
    colorSlot(0)->setFocus();
    QTest::keyClick(colorSlot(0), Qt::Key_Space);
    QVERIFY(isSameColor(colorSlot(0)->color(), TrelColor("#00ff00")));
}

void tst_Crossfader::pictures()
{
    QVERIFY(PaneTest::takePictures(*m_fader, "crossfader"));
    colorSlot(0)->setColor(TrelColor("#ff9329"));
    colorSlot(1)->setColor(TrelColor("#0f4fa8"));
    slider()->setValue(slider()->maximum() / 2);
    m_fader->findChild<QDoubleSpinBox *>()->setValue(3600.0); // so that it stays about there
    QTest::mouseClick(button(), Qt::LeftButton);
    QVERIFY(m_fader->isRunning());
    QVERIFY(PaneTest::takePictures(*m_fader, "crossfader-running"));
}

PANE_TEST_MAIN(tst_Crossfader)

#include "tst_Crossfader.moc"
