#include "PaneTest.h"

#include "CctStrip.h"
#include "ChromaticityChart.h"
#include "Gamut.h"
#include "VisibleLight.h"

#include <CCTUtils.h>

#include <QMimeData>

#include <algorithm>
#include <cmath>
#include <memory>

#include "../../../cli/SpectralLocus.h"

/// The chart and the strip under mouse and keyboard.
class tst_ChromaticityChart : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void placesAndChromaticities();
    void clickAndDragPick();
    void picksStayInTheLight();
    void lightEndsAtTheSpectralLocus();
    void keysMove();
    void luminanceAndAlphaStay();
    void settingDoesNotEmit();
    void marksAreDrawn();
    void gamutOfEachProfile();
    void levelsOfTheProfileAreGiven();
    void dropsAreTaken();
    void stripPicks();
    void stripByKeyboard();
    void stripKeepsTheTint();
    void stripKeepsTheTintBackAndForth();
    void stripWithoutATemperature();
    void pictures();

private:
    QPoint at(double x, double y) const;
    QColor pixelAt(double x, double y);
    int darkestNear(double x, double y);

    std::unique_ptr<ChromaticityChart> m_chart;
    std::unique_ptr<QSignalSpy> m_spy;
};

namespace {

double distanceOf(const TrelColor &color, double x, double y)
{
    return std::hypot(color.getx() - x, color.gety() - y);
}

/// 3200 K with the tint 8000.
TrelColor tintedWhite()
{
    double x = 0;
    double y = 0;
    CCTUtils::getxyFromCCTAndTint(3200, 8000, x, y);
    TrelColor color;
    color.setYxyF(0.7, x, y);
    return color;
}

/// Half a pixel of the chart in these tests, and what is lost by rounding twice.
constexpr double PIXEL = 0.003;

QColor colorOf(QWidget &widget, QPoint place)
{
    const QImage image = widget.grab().toImage();
    return image.pixelColor(place * image.devicePixelRatio());
}

} // namespace

void tst_ChromaticityChart::setUp()
{
    m_chart = std::make_unique<ChromaticityChart>();
    m_spy = std::make_unique<QSignalSpy>(m_chart.get(), &ChromaticityChart::colorChanged);
    QVERIFY(PaneTest::present(*m_chart, QSize(400, 440)));
}

void tst_ChromaticityChart::tearDown()
{
    m_spy.reset();
    m_chart.reset();
}

QPoint tst_ChromaticityChart::at(double x, double y) const
{
    return m_chart->placeOf(QPointF(x, y)).toPoint();
}

QColor tst_ChromaticityChart::pixelAt(double x, double y)
{
    return colorOf(*m_chart, at(x, y));
}

/// The least lightness within a pixel of the place.
int tst_ChromaticityChart::darkestNear(double x, double y)
{
    const QImage image = m_chart->grab().toImage();
    const QPoint middle = at(x, y) * image.devicePixelRatio();
    int darkest = 255;
    for (const QPoint &step : {QPoint(0, 0), QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)})
        darkest = std::min(darkest, image.pixelColor(middle + step).lightness());
    return darkest;
}

void tst_ChromaticityChart::placesAndChromaticities()
{
    for (const QSize &size : {QSize(400, 440), QSize(800, 300), QSize(200, 700)}) {
        m_chart->resize(size);
        for (const QPointF &xy : {QPointF(0.3127, 0.329), QPointF(0.1, 0.7), QPointF(0.7, 0.25)}) {
            QVERIFY(m_chart->rect().contains(m_chart->placeOf(xy).toPoint()));
            const QPointF back = m_chart->chromaticityAt(m_chart->placeOf(xy));
            const double pixel = 1.0 / std::hypot(m_chart->placeOf({1, 0}).x() - m_chart->placeOf({0, 0}).x(), 0.0);
            QVERIFY(std::abs(back.x() - xy.x()) <= pixel && std::abs(back.y() - xy.y()) <= pixel);
        }
        const QPointF origin = m_chart->placeOf({0, 0});
        const double alongX = m_chart->placeOf({0.8, 0}).x() - origin.x();
        const double alongY = origin.y() - m_chart->placeOf({0, 0.8}).y();
        QVERIFY2(std::abs(alongX - alongY) <= 2.0, "x and y have one scale");
    }
}

void tst_ChromaticityChart::clickAndDragPick()
{
    QTest::mouseClick(m_chart.get(), Qt::LeftButton, {}, at(0.3, 0.5));
    QCOMPARE(int(m_spy->size()), 1);
    QCOMPARE(m_chart->color().spec(), TrelColor::Yxy);
    QVERIFY(distanceOf(m_chart->color(), 0.3, 0.5) < PIXEL);
    QTest::mousePress(m_chart.get(), Qt::LeftButton, {}, at(0.3, 0.4));
    PaneTest::dragTo(*m_chart, at(0.4, 0.4));
    PaneTest::dragTo(*m_chart, at(0.5, 0.35));
    QTest::mouseRelease(m_chart.get(), Qt::LeftButton, {}, at(0.5, 0.35));
    QVERIFY(m_spy->size() >= 4);
    QVERIFY(distanceOf(m_chart->color(), 0.5, 0.35) < PIXEL);
    const int count = int(m_spy->size());
    QTest::mouseClick(m_chart.get(), Qt::RightButton, {}, at(0.2, 0.2));
    QCOMPARE(int(m_spy->size()), count);
}

void tst_ChromaticityChart::picksStayInTheLight()
{
    QTest::mouseClick(m_chart.get(), Qt::LeftButton, {}, at(0.7, 0.7));
    QVERIFY(std::abs(m_chart->color().getx() + m_chart->color().gety() - 1.0) < 0.01);
    QTest::mouseClick(m_chart.get(), Qt::LeftButton, {}, at(-0.03, 0.3));
    QVERIFY(std::abs(m_chart->color().getx() - 0.045) < 0.02);
    for (const QPointF &xy : {QPointF(-1, -1), QPointF(2, 2), QPointF(0, 0.9), QPointF(0.5, 0)}) {
        const QPointF light = VisibleLight::nearest(xy);
        const QPointF again = VisibleLight::nearest(light);
        QVERIFY(std::hypot(light.x() - again.x(), light.y() - again.y()) < 1e-9);
        QVERIFY(light.x() > 0 && light.y() > 0 && light.x() + light.y() <= 1.0);
    }
    QCOMPARE(VisibleLight::nearest({0.3, 0.3}), QPointF(0.3, 0.3));
}

void tst_ChromaticityChart::lightEndsAtTheSpectralLocus()
{
    const QPolygonF border = VisibleLight::outline();
    const QVector<SpectralColor> locus = spectralLocus();
    for (const SpectralColor &light : locus) {
        double least = 1.0;
        for (int i = 0; i < border.size(); ++i) {
            QPointF closest;
            const QPointF &next = border.at((i + 1) % border.size());
            least = std::min(least, ColorUtils::minDistance(border.at(i), next, light.xy, closest));
        }
        QVERIFY2(least <= 0.0012, qPrintable(QString("%1 nm: %2").arg(light.wavelength).arg(least)));
    }
    for (const QPointF &corner : border) {
        const bool isOnLocus = std::any_of(locus.cbegin(), locus.cend(), [&corner](const SpectralColor &light) {
            return std::hypot(light.xy.x() - corner.x(), light.xy.y() - corner.y()) <= 0.0001;
        });
        QVERIFY2(isOnLocus, qPrintable(QString("%1, %2").arg(corner.x()).arg(corner.y())));
    }
}

void tst_ChromaticityChart::keysMove()
{
    m_chart->setColor(TrelColor("aYxy;1;0;65535;1;0.3;0.3"));
    m_chart->setFocus();
    QTest::keyClick(m_chart.get(), Qt::Key_Right);
    QVERIFY(distanceOf(m_chart->color(), 0.305, 0.3) < 1e-9);
    QTest::keyClick(m_chart.get(), Qt::Key_Up);
    QVERIFY(distanceOf(m_chart->color(), 0.305, 0.305) < 1e-9);
    QTest::keyClick(m_chart.get(), Qt::Key_Left, Qt::ShiftModifier);
    QVERIFY(distanceOf(m_chart->color(), 0.3045, 0.305) < 1e-9);
    QTest::keyClick(m_chart.get(), Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(distanceOf(m_chart->color(), 0.3045, 0.3045) < 1e-9);
    QCOMPARE(int(m_spy->size()), 4);
    QVERIFY(m_chart->accessibleDescription().contains("0.3045"));
    QTest::keyClick(m_chart.get(), Qt::Key_A);
    QCOMPARE(int(m_spy->size()), 4);
}

void tst_ChromaticityChart::luminanceAndAlphaStay()
{
    m_chart->setColor(TrelColor("aYxy;1;0;30000;0.25;0.3;0.3"));
    QTest::mouseClick(m_chart.get(), Qt::LeftButton, {}, at(0.4, 0.4));
    QCOMPARE(m_chart->color().getY(), 0.25);
    QCOMPARE(m_chart->color().alpha16(), 30000u);
    m_chart->setColor(TrelColor("black"));
    QTest::mouseClick(m_chart.get(), Qt::LeftButton, {}, at(0.4, 0.4));
    QVERIFY2(m_chart->color().isBlack(), "a pick does not light what was dark");
}

void tst_ChromaticityChart::settingDoesNotEmit()
{
    m_chart->setColor(TrelColor("red"));
    m_chart->setProfile(ColorUtils::WASHLINE_PZ6_RGBA);
    m_chart->setColor(TrelColor());
    QCOMPARE(m_chart->color().name8(), QString("#ff0000"));
    QCOMPARE(int(m_spy->size()), 0);
}

void tst_ChromaticityChart::marksAreDrawn()
{
    m_chart->setProfile(ColorUtils::WASHLINE_PZ6_RGBW);
    m_chart->setColor(TrelColor("aYxy;1;0;65535;1;0.35;0.42"));
    const QColor mark = pixelAt(0.35, 0.42);
    QCOMPARE(mark.name(), m_chart->color().getQColor(true).name());
    m_chart->setColor(TrelColor("aYxy;1;0;65535;1;0.06;0.55"));
    const Gamut::Clamped clamped = Gamut(ColorUtils::WASHLINE_PZ6_RGBW).clamp(m_chart->color());
    QVERIFY(clamped.isOutside);
    QCOMPARE(pixelAt(clamped.given.x(), clamped.given.y()), QColor(Qt::white));
    QVERIFY(m_chart->accessibleDescription().contains("gives"));
    for (const int cct : {2500, 4000, 9000}) {
        double x = 0;
        double y = 0;
        QVERIFY(CCTUtils::getxyFromCCT(cct, x, y));
        QVERIFY2(darkestNear(x, y) < 60, "the locus of white light");
    }
}

void tst_ChromaticityChart::gamutOfEachProfile()
{
    for (const ColorUtils::HuelockProfileID profile : ColorUtils::huelockProfileIDList(true)) {
        const Gamut gamut(profile);
        QVERIFY(gamut.canSolve());
        const QPolygonF corners = gamut.corners();
        QCOMPARE(int(corners.size()), 3);
        for (const QPointF &corner : corners) {
            TrelColor color;
            color.setYxyF(1, corner.x(), corner.y());
            QVERIFY2(!gamut.clamp(color).isOutside, "a corner is within");
        }
        TrelColor far;
        far.setYxyF(1, 0.05, 0.9);
        QVERIFY(gamut.clamp(far).isOutside);
        QVERIFY(!gamut.clamp(gamut.given(far)).isOutside);
        QVERIFY(!gamut.clamp(TrelColor("black")).isVisible);
    }
}

void tst_ChromaticityChart::levelsOfTheProfileAreGiven()
{
    const TrelColor amber("aNchannel;6;5;65535;0;0;0;65535;1");
    QVERIFY(!Gamut(ColorUtils::WASHLINE_PZ6_RGBA).clamp(amber).isOutside);
    QCOMPARE(Gamut(ColorUtils::WASHLINE_PZ6_RGBA).given(amber).aName(), amber.aName());
}

void tst_ChromaticityChart::dropsAreTaken()
{
    QMimeData data;
    data.setColorData(QColor("#102030"));
    QVERIFY(PaneTest::drop(*m_chart, QPoint(5, 5), data));
    QCOMPARE(m_chart->color().name8(), QString("#102030"));
    QCOMPARE(int(m_spy->size()), 1);
}

void tst_ChromaticityChart::stripPicks()
{
    CctStrip strip;
    double x = 0;
    double y = 0;
    CCTUtils::getxyFromCCT(4000, x, y);
    TrelColor white;
    white.setYxyF(1, x, y);
    strip.setColor(white);
    QSignalSpy spy(&strip, &CctStrip::colorChanged);
    QVERIFY(PaneTest::present(strip, QSize(400, 44)));
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(0, 12));
    QCOMPARE(strip.value(), CCTUtils::getMinCCT());
    QTest::mousePress(&strip, Qt::LeftButton, {}, QPoint(150, 12));
    PaneTest::dragTo(strip, QPoint(250, 12));
    PaneTest::dragTo(strip, QPoint(399, 12));
    QTest::mouseRelease(&strip, Qt::LeftButton, {}, QPoint(399, 12));
    QCOMPARE(strip.value(), CCTUtils::getMaxCCT());
    QCOMPARE(int(spy.size()), 4);
    CCTUtils::getxyFromCCT(CCTUtils::getMaxCCT(), x, y);
    QVERIFY(distanceOf(qvariant_cast<TrelColor>(spy.last().first()), x, y) < 0.0005);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, QPoint(200, 12));
    const double middle = 2e6 / (1e6 / CCTUtils::getMinCCT() + 1e6 / CCTUtils::getMaxCCT());
    QVERIFY2(std::abs(strip.value() - middle) < 60, qPrintable(QString::number(strip.value())));
    QCOMPARE(strip.value() % CCTUtils::getCCTStepSize(), 0);
}

void tst_ChromaticityChart::stripByKeyboard()
{
    CctStrip strip;
    strip.setColor(TrelColor("aYxy;1;0;65535;0.5;0.3805;0.3769")); // about 4000 K
    QVERIFY(PaneTest::present(strip, QSize(400, 44)));
    strip.setFocus();
    const int before = strip.value();
    QVERIFY(std::abs(before - 4000) < 60);
    QSignalSpy spy(&strip, &CctStrip::colorChanged);
    QTest::keyClick(&strip, Qt::Key_Right);
    QCOMPARE(strip.value(), before + 50);
    QTest::keyClick(&strip, Qt::Key_PageDown);
    QCOMPARE(strip.value(), before - 450);
    QCOMPARE(int(spy.size()), 2);
    QCOMPARE(strip.color().getY(), 0.5);
    QTest::keyClick(&strip, Qt::Key_End);
    QCOMPARE(strip.value(), CCTUtils::getMaxCCT());
}

void tst_ChromaticityChart::stripKeepsTheTint()
{
    CctStrip strip;
    QSignalSpy spy(&strip, &CctStrip::colorChanged);
    strip.setColor(tintedWhite());
    QCOMPARE(int(spy.size()), 0);
    QVERIFY(std::abs(strip.value() - 3200) <= 10);
    strip.setValue(5000);
    int cct = 0;
    int tint = 0;
    CCTUtils::getCCTAndTintFromxy(strip.color().getx(), strip.color().gety(), cct, tint);
    QVERIFY(std::abs(tint - 8000) < 100);
    QVERIFY(std::abs(cct - 5000) <= 10);
}

/// As in the window, which gives back what the strip has picked.
void tst_ChromaticityChart::stripKeepsTheTintBackAndForth()
{
    CctStrip strip;
    strip.setColor(tintedWhite());
    connect(&strip, &CctStrip::colorChanged, &strip, &CctStrip::setColor);
    for (int i = 0; i < 500; ++i) {
        strip.setValue(i % 2 == 0 ? 2800 : 4100);
        QCOMPARE(strip.value(), i % 2 == 0 ? 2800 : 4100);
    }
    int cct = 0;
    int tint = 0;
    CCTUtils::getCCTAndTintFromxy(strip.color().getx(), strip.color().gety(), cct, tint);
    QVERIFY2(std::abs(tint - 8000) < 100, qPrintable(QString::number(tint)));
}

void tst_ChromaticityChart::stripWithoutATemperature()
{
    CctStrip strip;
    strip.setValue(3000);
    strip.setColor(TrelColor("#00ff00"));
    QCOMPARE(strip.value(), 3000);
    QCOMPARE(strip.color().name8(), QString("#00ff00"));
    strip.setColor(TrelColor());
    QCOMPARE(strip.color().name8(), QString("#00ff00"));
}

void tst_ChromaticityChart::pictures()
{
    m_chart->setProfile(ColorUtils::WASHLINE_PZ6_RGBW);
    m_chart->setColor(TrelColor("aYxy;1;0;65535;1;0.06;0.55"));
    QVERIFY(PaneTest::takePictures(*m_chart, "chart"));
    m_chart->setColor(TrelColor("aYxy;1;0;65535;1;0.4;0.38"));
    m_chart->resize(m_chart->minimumSizeHint());
    QVERIFY(PaneTest::takePictures(*m_chart, "chart-narrow"));
    m_chart->resize(700, 320);
    QVERIFY(PaneTest::takePictures(*m_chart, "chart-wide"));
    CctStrip strip;
    strip.setColor(TrelColor("aYxy;1;0;65535;1;0.4;0.38"));
    strip.resize(370, strip.sizeHint().height());
    strip.show();
    QVERIFY(PaneTest::takePictures(strip, "strip"));
    strip.resize(170, strip.sizeHint().height());
    QVERIFY(PaneTest::takePictures(strip, "strip-narrow"));
}

PANE_TEST_MAIN(tst_ChromaticityChart)
#include "tst_ChromaticityChart.moc"
