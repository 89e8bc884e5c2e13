#include "CCTImageUtils.h"
#include "CCTUtils.h"
#include "TestSupport.h"

#include <cmath>
#include <limits>

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr int LOWEST_INT = std::numeric_limits<int>::min();
constexpr int HIGHEST_INT = std::numeric_limits<int>::max();
constexpr double UNTOUCHED = -7.0;

// A thousand pixels for each 1.0 of x and y.
const QRectF WHOLE(0, 0.9, 0.8, -0.9);
const QRect LARGE(0, 0, 800, 900);
// Only a part, in a widget of another aspect ratio that does not start at the origin.
const QRectF PART(0.2, 0.5, 0.4, -0.3);
const QRect SMALL(-40, 70, 300, 200);

struct Chromaticity
{
    double x = UNTOUCHED;
    double y = UNTOUCHED;
};

Chromaticity ofPixel(QPoint pixel, const QRectF &range, const QRect &widget)
{
    Chromaticity result;
    CCTImageUtils::getxyFromPoint(result.x, result.y, range, pixel, widget);
    return result;
}

// Sums and a product of numbers below 2.
constexpr double FEW_ULPS = 1e-15;

#define COMPARE_WITHIN(actual, expected, tolerance)                                                                    \
    QVERIFY2(std::abs((actual) - (expected)) <= (tolerance), QByteArray::number(actual, 'g', 17).constData())

} // namespace

class tst_CCTImageUtils : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void roundPoint_data();
    void roundPoint();
    void rangeSizeIsAbsolute();
    void xyOfPixel_data();
    void xyOfPixel();
    void pixelOfXy_data();
    void pixelOfXy();
    void everyPixelComesBack_data();
    void everyPixelComesBack();
    void emptyWidgetAndRange();
    void anyXy_data();
    void anyXy();
    void whitePoint_data();
    void whitePoint();
    void cctIsClamped_data();
    void cctIsClamped();
    void everyWhitePoint();
    void anyTint();
    void linesIntersect_data();
    void linesIntersect();

    void odd50_segmentsHereLinesThere();
    void odd53_positiveHeightAddsTwoHeights();
};

void tst_CCTImageUtils::roundPoint_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QPoint>("rounded");
    QTest::newRow("whole") << QPointF(3, -4) << QPoint(3, -4);
    QTest::newRow("below a half") << QPointF(2.49, -2.51) << QPoint(2, -3);
    QTest::newRow("a half goes up") << QPointF(0.5, 2.5) << QPoint(1, 3);
    QTest::newRow("a negative half goes up") << QPointF(-0.5, -2.5) << QPoint(0, -2);
    QTest::newRow("below a negative half") << QPointF(-0.51, -1.51) << QPoint(-1, -2);
    // The sum is 1.0 in doubles.
    QTest::newRow("last double before a half") << QPointF(std::nextafter(0.5, 0.0), 0) << QPoint(1, 0);
    QTest::newRow("largest ints") << QPointF(HIGHEST_INT, LOWEST_INT) << QPoint(HIGHEST_INT, LOWEST_INT);
    QTest::newRow("beyond ints") << QPointF(3e9, -3e9) << QPoint(HIGHEST_INT, LOWEST_INT);
    QTest::newRow("infinite") << QPointF(-INFINITE, INFINITE) << QPoint(LOWEST_INT, HIGHEST_INT);
    QTest::newRow("not a number") << QPointF(NOT_A_NUMBER, 7.2) << QPoint(0, 7);
}

void tst_CCTImageUtils::roundPoint()
{
    QFETCH(QPointF, point);
    QTEST(CCTImageUtils::roundPoint(point), "rounded");
}

void tst_CCTImageUtils::rangeSizeIsAbsolute()
{
    for (const double sign : {1.0, -1.0}) {
        const QRectF range(0.1, 0.2, sign * 0.75, sign * -0.5);
        QVERIFY(CCTImageUtils::getxyRectWidth(range) == 0.75);
        QVERIFY(CCTImageUtils::getxyRectHeight(range) == 0.5);
    }
    QVERIFY(CCTImageUtils::getxyRectWidth(QRectF()) == 0.0);
    QVERIFY(CCTImageUtils::getxyRectHeight(QRectF()) == 0.0);
}

void tst_CCTImageUtils::xyOfPixel_data()
{
    QTest::addColumn<QRectF>("range");
    QTest::addColumn<QRect>("widget");
    QTest::addColumn<QPoint>("pixel");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::newRow("top left") << WHOLE << LARGE << QPoint(0, 0) << 0.0 << 0.9;
    QTest::newRow("inside") << WHOLE << LARGE << QPoint(313, 571) << 0.313 << 0.329;
    QTest::newRow("last pixel") << WHOLE << LARGE << QPoint(799, 899) << 0.799 << 0.001;
    QTest::newRow("behind the last pixel") << WHOLE << LARGE << QPoint(800, 900) << 0.8 << 0.0;
    QTest::newRow("outside") << WHOLE << LARGE << QPoint(-100, -50) << -0.1 << 0.95;
    QTest::newRow("part, top left") << PART << SMALL << QPoint(0, 0) << 0.2 << 0.5;
    QTest::newRow("part, inside") << PART << SMALL << QPoint(75, 50) << 0.3 << 0.425;
    QTest::newRow("part, thirds of a pixel") << PART << SMALL << QPoint(1, 1) << 0.2 + 0.4 / 300 << 0.5 - 0.3 / 200;
    QTest::newRow("negative width") << QRectF(0.2, 0.5, -0.4, -0.3) << SMALL << QPoint(75, 50) << 0.3 << 0.425;
    QTest::newRow("one pixel") << WHOLE << QRect(0, 0, 1, 1) << QPoint(0, 0) << 0.0 << 0.9;
}

void tst_CCTImageUtils::xyOfPixel()
{
    QFETCH(QRectF, range);
    QFETCH(QRect, widget);
    QFETCH(QPoint, pixel);
    QFETCH(double, x);
    QFETCH(double, y);
    const Chromaticity xy = ofPixel(pixel, range, widget);
    COMPARE_WITHIN(xy.x, x, FEW_ULPS);
    COMPARE_WITHIN(xy.y, y, FEW_ULPS);
    const Chromaticity moved = ofPixel(pixel, range, widget.translated(1000, -1000));
    QVERIFY(moved.x == xy.x && moved.y == xy.y);
}

void tst_CCTImageUtils::pixelOfXy_data()
{
    QTest::addColumn<QRectF>("range");
    QTest::addColumn<QRect>("widget");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QPoint>("pixel");
    QTest::newRow("top left") << WHOLE << LARGE << 0.0 << 0.9 << QPoint(0, 0);
    QTest::newRow("bottom right") << WHOLE << LARGE << 0.8 << 0.0 << QPoint(800, 900);
    QTest::newRow("D65") << WHOLE << LARGE << 0.3127 << 0.3290 << QPoint(313, 571);
    QTest::newRow("less than half a pixel") << WHOLE << LARGE << 0.1004 << 0.7996 << QPoint(100, 100);
    QTest::newRow("more than half a pixel") << WHOLE << LARGE << 0.1006 << 0.7994 << QPoint(101, 101);
    QTest::newRow("half a pixel") << QRectF(0, 1, 1, -1) << QRect(0, 0, 4, 4) << 0.375 << 0.375 << QPoint(2, 3);
    QTest::newRow("outside") << WHOLE << LARGE << -0.1004 << 1.0004 << QPoint(-100, -100);
    QTest::newRow("part") << PART << SMALL << 0.3 << 0.425 << QPoint(75, 50);
    QTest::newRow("negative width") << QRectF(0.2, 0.5, -0.4, -0.3) << SMALL << 0.3 << 0.425 << QPoint(75, 50);
    QTest::newRow("positive height") << QRectF(0.2, 0.5, 0.4, 0.3) << SMALL << 0.3 << 0.425 << QPoint(75, 50);
    // Right less left plus one, and bottom less top plus one.
    QTest::newRow("widget by its corners")
        << WHOLE << QRect(QPoint(10, 20), QPoint(89, 109)) << 0.4 << 0.45 << QPoint(40, 45);
}

void tst_CCTImageUtils::pixelOfXy()
{
    QFETCH(QRectF, range);
    QFETCH(QRect, widget);
    QFETCH(double, x);
    QFETCH(double, y);
    QTEST(CCTImageUtils::getPointFromxy(x, y, range, widget), "pixel");
    QTEST(CCTImageUtils::getPointFromxy(x, y, range, widget.translated(1000, -1000)), "pixel");
}

void tst_CCTImageUtils::everyPixelComesBack_data()
{
    QTest::addColumn<QRectF>("range");
    QTest::addColumn<QRect>("widget");
    QTest::newRow("whole") << WHOLE << LARGE;
    QTest::newRow("part") << PART << SMALL;
    QTest::newRow("odd sizes") << QRectF(0.123, 0.877, 0.371, -0.613) << QRect(1, 2, 173, 97);
}

void tst_CCTImageUtils::everyPixelComesBack()
{
    QFETCH(QRectF, range);
    QFETCH(QRect, widget);
    for (int i = -1; i <= widget.width(); ++i) {
        for (int j = -1; j <= widget.height(); ++j) {
            const Chromaticity xy = ofPixel(QPoint(i, j), range, widget);
            if (CCTImageUtils::getPointFromxy(xy.x, xy.y, range, widget) != QPoint(i, j))
                QFAIL(qPrintable(QString("%1, %2").arg(i).arg(j)));
        }
    }
}

void tst_CCTImageUtils::emptyWidgetAndRange()
{
    const Chromaticity nowhere = ofPixel(QPoint(0, 0), WHOLE, QRect());
    QVERIFY(std::isnan(nowhere.x) && std::isnan(nowhere.y));
    const Chromaticity beyond = ofPixel(QPoint(1, 1), WHOLE, QRect());
    QVERIFY(beyond.x == INFINITE && beyond.y == -INFINITE);
    const Chromaticity corner = ofPixel(QPoint(5, 5), QRectF(0.25, 0.5, 0, 0), LARGE);
    QVERIFY(corner.x == 0.25 && corner.y == 0.5);

    QCOMPARE(CCTImageUtils::getPointFromxy(0.3, 0.3, WHOLE, QRect()), QPoint(0, 0));
    QCOMPARE(CCTImageUtils::getPointFromxy(0.3, 0.3, QRectF(), LARGE), QPoint(HIGHEST_INT, LOWEST_INT));
    QCOMPARE(CCTImageUtils::getPointFromxy(0.0, 0.0, QRectF(), LARGE), QPoint(0, 0));
    QCOMPARE(CCTImageUtils::getPointFromCCT(6500, WHOLE, QRect()), QPoint(0, 0));
}

void tst_CCTImageUtils::anyXy_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<QPoint>("pixel");
    QTest::newRow("not a number") << NOT_A_NUMBER << 0.4 << QPoint(0, 500);
    QTest::newRow("infinite x") << INFINITE << 0.4 << QPoint(HIGHEST_INT, 500);
    QTest::newRow("infinite y") << 0.3 << INFINITE << QPoint(300, LOWEST_INT);
    QTest::newRow("negative infinite") << -INFINITE << -INFINITE << QPoint(LOWEST_INT, HIGHEST_INT);
    QTest::newRow("huge") << 1e300 << -1e300 << QPoint(HIGHEST_INT, HIGHEST_INT);
}

void tst_CCTImageUtils::anyXy()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QTEST(CCTImageUtils::getPointFromxy(x, y, WHOLE, LARGE), "pixel");

    const Chromaticity xy = ofPixel(QPoint(400, 450), QRectF(x, 0.5, 0.4, -0.3), LARGE);
    QVERIFY(std::isfinite(xy.x) == std::isfinite(x));
    COMPARE_WITHIN(xy.y, 0.35, FEW_ULPS);
}

// Pixels found with 40 digits from the table of regions; none of them is nearer to another pixel than 0.003.
void tst_CCTImageUtils::whitePoint_data()
{
    QTest::addColumn<int>("cct");
    QTest::addColumn<int>("tint");
    QTest::addColumn<QPoint>("large");
    QTest::addColumn<QPoint>("small");
    QTest::newRow("1950 K") << 1950 << 0 << QPoint(532, 488) << QPoint(249, 59);
    QTest::newRow("2856 K, taken down to 2850 K") << 2856 << 0 << QPoint(448, 492) << QPoint(186, 62);
    QTest::newRow("4000 K") << 4000 << 0 << QPoint(380, 523) << QPoint(135, 82);
    QTest::newRow("6500 K") << 6500 << 0 << QPoint(314, 576) << QPoint(85, 118);
    QTest::newRow("11000 K") << 11000 << 0 << QPoint(276, 617) << QPoint(57, 145);
    QTest::newRow("6500 K, full scale") << 6500 << 32767 << QPoint(309, 540) << QPoint(81, 94);
    QTest::newRow("6500 K, negative full scale") << 6500 << -32767 << QPoint(318, 608) << QPoint(88, 139);
    QTest::newRow("6500 K, beyond") << 6500 << 50000 << QPoint(306, 519) << QPoint(79, 80);
    QTest::newRow("6500 K, beyond negative") << 6500 << -50000 << QPoint(320, 623) << QPoint(90, 149);
    QTest::newRow("1950 K, full scale") << 1950 << 32767 << QPoint(584, 420) << QPoint(288, 13);
    QTest::newRow("1950 K, negative full scale") << 1950 << -32767 << QPoint(489, 544) << QPoint(217, 96);
    QTest::newRow("1950 K, beyond") << 1950 << 50000 << QPoint(616, 379) << QPoint(312, -14);
    QTest::newRow("11000 K, full scale") << 11000 << 32767 << QPoint(263, 594) << QPoint(47, 129);
    QTest::newRow("11000 K, negative full scale") << 11000 << -32767 << QPoint(289, 638) << QPoint(66, 159);
    QTest::newRow("11000 K, beyond") << 11000 << 50000 << QPoint(255, 580) << QPoint(41, 120);
    QTest::newRow("11000 K, beyond negative") << 11000 << -50000 << QPoint(295, 648) << QPoint(71, 165);
}

void tst_CCTImageUtils::whitePoint()
{
    QFETCH(int, cct);
    QFETCH(int, tint);
    QFETCH(QPoint, large);
    QFETCH(QPoint, small);
    QCOMPARE(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, WHOLE, LARGE), large);
    QCOMPARE(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, PART, SMALL), small);

    const QPoint bounded = CCTImageUtils::getPointFromCCTAndTint(cct, tint, WHOLE, LARGE);
    QCOMPARE(bounded == large, qAbs(tint) <= 32767);
    QCOMPARE(bounded, CCTImageUtils::getPointFromCCTAndTint(cct, qBound(-32767, tint, 32767), WHOLE, LARGE));
    QCOMPARE(CCTImageUtils::getPointFromCCT(cct, WHOLE, LARGE),
             CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, 0, WHOLE, LARGE));
}

void tst_CCTImageUtils::cctIsClamped_data()
{
    QTest::addColumn<int>("cct");
    QTest::addColumn<int>("drawn");
    for (const int cct : {11001, 100000, HIGHEST_INT})
        QTest::newRow(QByteArray::number(cct).constData()) << cct << 11000;
    for (const int cct : {LOWEST_INT, -6500, 0, 1900, 1949})
        QTest::newRow(QByteArray::number(cct).constData()) << cct << 1950;
    QTest::newRow("10989") << 10989 << 10980;
}

void tst_CCTImageUtils::cctIsClamped()
{
    QFETCH(int, cct);
    QFETCH(int, drawn);
    // Wide enough that 10 K are several pixels everywhere.
    const QRect wide(0, 0, 80000, 90000);
    QCOMPARE(CCTImageUtils::getPointFromCCT(cct, WHOLE, wide), CCTImageUtils::getPointFromCCT(drawn, WHOLE, wide));
    QVERIFY(CCTImageUtils::getPointFromCCT(cct, WHOLE, wide)
            != CCTImageUtils::getPointFromCCT(drawn == 1950 ? 1960 : drawn - 10, WHOLE, wide));
    for (const int tint : {-40000, -32767, 1, 40000}) {
        QCOMPARE(CCTImageUtils::getPointFromCCTAndTint(cct, tint, WHOLE, wide),
                 CCTImageUtils::getPointFromCCTAndTint(drawn, tint, WHOLE, wide));
        QCOMPARE(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, WHOLE, wide),
                 CCTImageUtils::getPointFromCCTAndUnboundedTint(drawn, tint, WHOLE, wide));
    }
}

void tst_CCTImageUtils::everyWhitePoint()
{
    for (int cct = 1950; cct <= 11000; cct += 10) {
        for (const int tint : {-65534, -32767, 0, 32767, 65534}) {
            double x = UNTOUCHED;
            double y = UNTOUCHED;
            QVERIFY(CCTUtils::getxyFromCCTAndTint(cct, tint, x, y));
            QCOMPARE(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, PART, SMALL),
                     CCTImageUtils::getPointFromxy(x, y, PART, SMALL));
        }
    }
}

void tst_CCTImageUtils::anyTint()
{
    for (const int cct : {0, 6500, 100000}) {
        QCOMPARE(CCTImageUtils::getPointFromCCTAndTint(cct, HIGHEST_INT, WHOLE, LARGE),
                 CCTImageUtils::getPointFromCCTAndTint(cct, 32767, WHOLE, LARGE));
        QCOMPARE(CCTImageUtils::getPointFromCCTAndTint(cct, LOWEST_INT, WHOLE, LARGE),
                 CCTImageUtils::getPointFromCCTAndTint(cct, -32767, WHOLE, LARGE));
        for (const int tint : {LOWEST_INT, HIGHEST_INT}) {
            double x = UNTOUCHED;
            double y = UNTOUCHED;
            QVERIFY(CCTUtils::getxyFromCCTAndTint(qBound(1950, cct, 11000), tint, x, y));
            QCOMPARE(CCTImageUtils::getPointFromCCTAndUnboundedTint(cct, tint, WHOLE, LARGE),
                     CCTImageUtils::getPointFromxy(x, y, WHOLE, LARGE));
        }
    }
}

void tst_CCTImageUtils::linesIntersect_data()
{
    QTest::addColumn<QLineF>("a");
    QTest::addColumn<QLineF>("b");
    QTest::addColumn<bool>("intersect");
    QTest::addColumn<QPointF>("point");
    const QPointF untouched(UNTOUCHED, UNTOUCHED);
    QTest::newRow("crossing") << QLineF(0, 0, 2, 2) << QLineF(0, 2, 2, 0) << true << QPointF(1, 1);
    QTest::newRow("end on end") << QLineF(0, 0, 2, 0) << QLineF(2, 0, 2, 2) << true << QPointF(2, 0);
    QTest::newRow("end on line") << QLineF(0, 0, 4, 0) << QLineF(2, 0, 2, 2) << true << QPointF(2, 0);
    // The point is written all the same.
    QTest::newRow("would cross beyond one") << QLineF(0, 0, 2, 2) << QLineF(0, 8, 2, 6) << false << QPointF(4, 4);
    QTest::newRow("would cross beyond the other") << QLineF(0, 8, 8, 0) << QLineF(0, 0, 2, 2) << false << QPointF(4, 4);
    QTest::newRow("would cross beyond both") << QLineF(0, 0, 1, 0) << QLineF(4, 4, 4, 2) << false << QPointF(4, 0);
    QTest::newRow("would cross before both") << QLineF(2, 2, 4, 4) << QLineF(2, 0, 4, 0) << false << QPointF(0, 0);
    QTest::newRow("parallel") << QLineF(0, 0, 2, 2) << QLineF(1, 0, 3, 2) << false << untouched;
    QTest::newRow("the same") << QLineF(0, 0, 2, 2) << QLineF(0, 0, 2, 2) << false << untouched;
    QTest::newRow("null line") << QLineF(1, 1, 1, 1) << QLineF(0, 2, 2, 0) << false << untouched;
    QTest::newRow("not a number") << QLineF(0, 0, NOT_A_NUMBER, 2) << QLineF(0, 2, 2, 0) << false << untouched;
}

void tst_CCTImageUtils::linesIntersect()
{
    QFETCH(QLineF, a);
    QFETCH(QLineF, b);
    QPointF point(UNTOUCHED, UNTOUCHED);
    QTEST(CCTImageUtils::linesIntersect(a, b, &point), "intersect");
    QTEST(point, "point");
    QTEST(CCTImageUtils::linesIntersect(a, b, nullptr), "intersect");
}

void tst_CCTImageUtils::odd50_segmentsHereLinesThere()
{
    const QLineF level(0, 0, 2, 0);
    QPointF here, there;
    for (const QLineF &other : {QLineF(3, 1, 3, -1), QLineF(1, 2, 1, 1), QLineF(-1, 2, -1, 1)}) {
        QVERIFY(!CCTImageUtils::linesIntersect(level, other, &here));
        QVERIFY(CCTUtils::linesIntersect(level, other, &there));
        QCOMPARE(here, there);
    }
    QVERIFY(CCTImageUtils::linesIntersect(level, QLineF(1, 1, 1, -1), &here));
    QVERIFY(CCTUtils::linesIntersect(level, QLineF(1, 1, 1, -1), &there));
    QVERIFY(!CCTImageUtils::linesIntersect(level, level.translated(0, 1), &here));
    QVERIFY(!CCTUtils::linesIntersect(level, level.translated(0, 1), &there));
}

void tst_CCTImageUtils::odd53_positiveHeightAddsTwoHeights()
{
    const QRectF range(0.2, 0.5, 0.4, 0.3);
    COMPARE_WITHIN(ofPixel(QPoint(0, 0), range, SMALL).y, 1.1, FEW_ULPS);
    COMPARE_WITHIN(ofPixel(QPoint(0, 100), range, SMALL).y, 0.95, FEW_ULPS);
    COMPARE_WITHIN(ofPixel(QPoint(75, 200), range, SMALL).y, 0.8, FEW_ULPS);
    COMPARE_WITHIN(ofPixel(QPoint(75, 200), range, SMALL).x, 0.3, FEW_ULPS);
    // The way back knows nothing of it.
    QCOMPARE(CCTImageUtils::getPointFromxy(0.2, 1.1, range, SMALL), QPoint(0, -400));
}

TREL_TEST_MAIN(tst_CCTImageUtils, {})
#include "tst_CCTImageUtils.moc"
