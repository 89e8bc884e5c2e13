#include "TestSupport.h"
#include "Tristimulus.h"
#include "TristimulusFactory.h"

#include <QPolygonF>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double UNTOUCHED = -7.0;

using Getter = QVector<double> &(Tristimulus::*)();
using Setter = void (Tristimulus::*)(QVector<double>);

struct Axis
{
    const char *name;
    Getter get;
    Setter set;
};

const QVector<Axis> AXES{
    {"X", &Tristimulus::getX, &Tristimulus::setX},
    {"Y", &Tristimulus::getY, &Tristimulus::setY},
    {"Z", &Tristimulus::getZ, &Tristimulus::setZ},
};

// X + Y + Z is exactly 1 for every corner used here, so that the chromaticity (X, Y) comes without rounding.
void fill(Tristimulus *data, const QVector<QPointF> &emitters)
{
    QVector<double> x, y, z;
    for (const QPointF &emitter : emitters) {
        x.append(emitter.x());
        y.append(emitter.y());
        z.append(1.0 - emitter.x() - emitter.y());
    }
    data->setX(x);
    data->setY(y);
    data->setZ(z);
}

// Registered data under an identifier that no profile has: the conversion finds them, other tests do not.
Tristimulus *registered()
{
    static int s_next = 100;
    return TristimulusFactory::getInstance()->getTristimulus(ColorUtils::HuelockProfileID(s_next++),
                                                             ColorUtils::CONFIG_RGB);
}

Tristimulus *withGamut(const QVector<QPointF> &emitters)
{
    Tristimulus *data = registered();
    fill(data, emitters);
    data->calculatePolygon();
    return data;
}

// All lengths, projections and distances of this triangle are exact in binary.
const QVector<QPointF> TRIANGLE{{0.75, 0.125}, {0.125, 0.75}, {0.125, 0.125}};

struct Answer
{
    bool inside;
    double x = UNTOUCHED;
    double y = UNTOUCHED;
};

Answer closest(const Tristimulus *data, double x, double y)
{
    Answer answer;
    answer.inside = data->closestPtOnGamut(x, y, answer.x, answer.y);
    return answer;
}

bool sameBits(double actual, double expected)
{
    return actual == expected || (std::isnan(actual) && std::isnan(expected));
}

#define COMPARE_POINT(answer, expectedX, expectedY)                                                                    \
    QVERIFY2(sameBits((answer).x, expectedX) && sameBits((answer).y, expectedY),                                       \
             qPrintable(QString("(%1, %2)").arg((answer).x, 0, 'g', 17).arg((answer).y, 0, 'g', 17)))

} // namespace

class tst_Tristimulus : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmpty_data();
    void startsEmpty();
    void vectors_data();
    void vectors();
    void channelNames();
    void noGamutBeforeItIsCalculated();
    void gamutIsThatOfTheLastCalculation();
    void inside_data();
    void inside();
    void insideFollowsTheOddEvenRule();
    void insideAsQPolygonF_data();
    void insideAsQPolygonF();
    void closestPoint_data();
    void closestPoint();
    void equallyNearEdges_data();
    void equallyNearEdges();
    void fuzzilyEqualCorners_data();
    void fuzzilyEqualCorners();
    void gamutOfOnePoint();
    void gamutOfNothing();

    void odd43_gamutIsRedGreenBlue();
    void odd44_numChannelsCountsNames();
};

void tst_Tristimulus::startsEmpty_data()
{
    QTest::addColumn<int>("profile");
    for (const int profile : {-1, 0, 1, 9, 42})
        QTest::newRow(qPrintable(QString("profile %1").arg(profile))) << profile;
}

void tst_Tristimulus::startsEmpty()
{
    QFETCH(int, profile);
    Tristimulus data{ColorUtils::HuelockProfileID(profile)};
    for (const Axis &axis : AXES)
        QVERIFY2((data.*axis.get)().isEmpty(), axis.name);
    QVERIFY(data.getChannelNames().isEmpty());
    QCOMPARE(data.numChannels(), 0);
    QVERIFY(!data.inside(0.0, 0.0));
}

void tst_Tristimulus::vectors_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < int(AXES.size()); ++index)
        QTest::newRow(AXES.at(index).name) << index;
}

void tst_Tristimulus::vectors()
{
    QFETCH(int, index);
    const Axis &axis = AXES.at(index);
    Tristimulus data(ColorUtils::GENERIC_RGB);
    const QVector<double> values{1.5, -2.0, 1e300};
    (data.*axis.set)(values);
    QCOMPARE((data.*axis.get)(), values);

    (data.*axis.get)()[1] = 7.0;
    (data.*axis.get)().append(8.0);
    QCOMPARE((data.*axis.get)(), (QVector<double>{1.5, 7.0, 1e300, 8.0}));
    QCOMPARE(values, (QVector<double>{1.5, -2.0, 1e300}));

    (data.*axis.set)({4.0});
    QCOMPARE((data.*axis.get)(), QVector<double>{4.0});
    for (int other = 0; other < int(AXES.size()); ++other)
        QCOMPARE((data.*AXES.at(other).get)().isEmpty(), other != index);
    (data.*axis.set)({});
    QVERIFY((data.*axis.get)().isEmpty());
}

void tst_Tristimulus::channelNames()
{
    Tristimulus data(ColorUtils::GENERIC_RGB);
    data.setChannelNames({"Red", "Red", ""});
    QCOMPARE(data.getChannelNames(), QStringList({"Red", "Red", ""}));
    QCOMPARE(data.numChannels(), 3);
    data.getChannelNames().clear();
    QCOMPARE(data.numChannels(), 3);
    data.setChannelNames({"Mint"});
    QCOMPARE(data.getChannelNames(), QStringList("Mint"));
    QCOMPARE(data.numChannels(), 1);
}

void tst_Tristimulus::noGamutBeforeItIsCalculated()
{
    Tristimulus data(ColorUtils::GENERIC_RGB);
    fill(&data, TRIANGLE);
    QVERIFY(!data.inside(0.25, 0.25));
    const Answer answer = closest(&data, 0.25, 0.25);
    QVERIFY(!answer.inside);
    COMPARE_POINT(answer, UNTOUCHED, UNTOUCHED);
}

void tst_Tristimulus::gamutIsThatOfTheLastCalculation()
{
    Tristimulus *data = withGamut(TRIANGLE);
    // A second run replaces the corners; kept beside the new ones, they would turn inside out.
    data->calculatePolygon();
    QVERIFY(data->inside(0.25, 0.25));

    fill(data, {{1.0, 0.0}, {0.75, 0.25}, {0.75, 0.0}});
    QVERIFY(data->inside(0.25, 0.25));
    QVERIFY(!data->inside(0.8125, 0.0625));
    data->calculatePolygon();
    QVERIFY(!data->inside(0.25, 0.25));
    QVERIFY(data->inside(0.8125, 0.0625));
    COMPARE_POINT(closest(data, 0.25, 0.125), 0.75, 0.125);
}

void tst_Tristimulus::inside_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("expected");
    QTest::newRow("interior") << 0.25 << 0.25 << true;
    QTest::newRow("beside red-green") << 0.5 << 0.5 << false;
    QTest::newRow("beside green-blue") << 0.0625 << 0.25 << false;
    QTest::newRow("beside blue-red") << 0.25 << 0.0625 << false;
    // A crossing counts from the lower end of an edge up to, without, its upper end, when it lies at or
    // left of the point: lower and left borders belong to the inside.
    QTest::newRow("on red-green") << 0.4375 << 0.4375 << false;
    QTest::newRow("on green-blue") << 0.125 << 0.5 << true;
    QTest::newRow("on blue-red") << 0.5 << 0.125 << true;
    QTest::newRow("at red") << 0.75 << 0.125 << false;
    QTest::newRow("at green") << 0.125 << 0.75 << false;
    QTest::newRow("at blue") << 0.125 << 0.125 << true;
    QTest::newRow("x not a number") << NOT_A_NUMBER << 0.25 << false;
    QTest::newRow("y not a number") << 0.25 << NOT_A_NUMBER << false;
    QTest::newRow("infinite") << HUGE_VAL << 0.25 << false;
}

void tst_Tristimulus::inside()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, expected);
    QCOMPARE(withGamut(TRIANGLE)->inside(x, y), expected);
}

void tst_Tristimulus::insideFollowsTheOddEvenRule()
{
    const Tristimulus *data = withGamut(TRIANGLE);
    const QPolygonF polygon(TRIANGLE);
    int found = 0;
    for (int column = 0; column <= 64; ++column) {
        for (int line = 0; line <= 64; ++line) {
            const QPointF point(column / 64.0, line / 64.0);
            const bool expected = polygon.containsPoint(point, Qt::OddEvenFill);
            QCOMPARE(data->inside(point.x(), point.y()), expected);
            found += expected;
        }
    }
    // Both legs are 40 steps long; without the hypotenuse, 40 + 39 + … + 1 points.
    QCOMPARE(found, 820);
}

void tst_Tristimulus::insideAsQPolygonF_data()
{
    constexpr double NEAR = 0x1p-43; // exact beside the other numbers
    QTest::addColumn<QPolygonF>("corners");
    QTest::newRow("a fixture's") << QPolygonF({{0.6875, 0.3125}, {0.1875, 0.71875}, {0.15625, 0.046875}});
    QTest::newRow("level side") << QPolygonF({{0.125, 0.25}, {0.625, 0.25}, {0.375, 0.5}});
    QTest::newRow("nearly level side") << QPolygonF({{0.125, 0.25}, {0.625, 0.25 + NEAR}, {0.375, 0.5}});
    QTest::newRow("upright side") << QPolygonF({{0.25, 0.125}, {0.25, 0.625}, {0.125, 0.375}});
    QTest::newRow("first and last corner alike") << QPolygonF({{0.25, 0.25}, {0.5, 0.375}, {0.25, 0.25}});
    QTest::newRow("first and last corner nearly alike")
        << QPolygonF({{0.25, 0.25}, {0.5, 0.375}, {0.25 + NEAR, 0.25 - NEAR}});
    QTest::newRow("on a line") << QPolygonF({{0.125, 0.125}, {0.25, 0.25}, {0.375, 0.375}});
    QTest::newRow("a point") << QPolygonF({{0.25, 0.25}, {0.25, 0.25}, {0.25, 0.25}});
}

void tst_Tristimulus::insideAsQPolygonF()
{
    QFETCH(QPolygonF, corners);
    const Tristimulus *data = withGamut(corners);
    std::vector<double> numbers{0, 0.5, 1, NOT_A_NUMBER, std::numeric_limits<double>::infinity()};
    for (const QPointF &corner : qAsConst(corners)) {
        for (const double number : {corner.x(), corner.y()}) {
            numbers.push_back(number);
            numbers.push_back(std::nextafter(number, 1.0));
            numbers.push_back(std::nextafter(number, 0.0));
        }
    }
    std::mt19937 random(3);
    for (int i = 0; i < 200; ++i)
        numbers.push_back(double(random()) / double(std::mt19937::max()));
    for (const double x : numbers) {
        for (const double y : numbers)
            QCOMPARE(data->inside(x, y), corners.containsPoint(QPointF(x, y), Qt::OddEvenFill));
    }
}

void tst_Tristimulus::closestPoint_data()
{
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<bool>("inside");
    QTest::addColumn<double>("closestX");
    QTest::addColumn<double>("closestY");
    QTest::newRow("interior stays") << 0.25 << 0.3125 << true << 0.25 << 0.3125;
    QTest::newRow("at blue, inside by the rule") << 0.125 << 0.125 << true << 0.125 << 0.125;
    QTest::newRow("at red, outside by the rule") << 0.75 << 0.125 << false << 0.75 << 0.125;
    QTest::newRow("at green, outside by the rule") << 0.125 << 0.75 << false << 0.125 << 0.75;
    QTest::newRow("on red-green, outside by the rule") << 0.4375 << 0.4375 << false << 0.4375 << 0.4375;
    QTest::newRow("foot on red-green") << 0.6875 << 0.6875 << false << 0.4375 << 0.4375;
    QTest::newRow("foot on green-blue") << 0.0 << 0.5 << false << 0.125 << 0.5;
    QTest::newRow("foot on blue-red") << 0.5 << 0.0625 << false << 0.5 << 0.125;
    QTest::newRow("just outside blue-red") << 0.5 << 0.125 - 1e-9 << false << 0.5 << 0.125;
    QTest::newRow("just outside green-blue") << 0.125 - 1e-9 << 0.5 << false << 0.125 << 0.5;
    QTest::newRow("beyond red") << 1.0 << 0.0 << false << 0.75 << 0.125;
    QTest::newRow("beyond green") << 0.0 << 1.0 << false << 0.125 << 0.75;
    QTest::newRow("beyond blue") << 0.0 << 0.0 << false << 0.125 << 0.125;
    QTest::newRow("far beyond blue") << -1e9 << -1e9 << false << 0.125 << 0.125;
    QTest::newRow("not a number") << NOT_A_NUMBER << 0.25 << false << NOT_A_NUMBER << NOT_A_NUMBER;
}

void tst_Tristimulus::closestPoint()
{
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(bool, inside);
    QFETCH(double, closestX);
    QFETCH(double, closestY);
    const Answer answer = closest(withGamut(TRIANGLE), x, y);
    QCOMPARE(answer.inside, inside);
    COMPARE_POINT(answer, closestX, closestY);
}

void tst_Tristimulus::equallyNearEdges_data()
{
    QTest::addColumn<QPolygonF>("corners");
    QTest::newRow("red-green before green-blue") << QPolygonF({{0, 16}, {0, 0}, {16, 0}});
    QTest::newRow("green-blue before blue-red") << QPolygonF({{16, 0}, {0, 16}, {0, 0}});
    QTest::newRow("red-green before blue-red") << QPolygonF({{0, 0}, {0, 16}, {16, 0}});
}

void tst_Tristimulus::equallyNearEdges()
{
    QFETCH(QPolygonF, corners);
    // Outside a triangle there is one nearest point only. So far up, though, all edges count as horizontal in
    // the inside test, nothing is inside, and a point within the triangle can be 2 from both of its legs.
    constexpr double FAR_UP = 17592186044416.0; // 2^44
    corners.translate(0.0, FAR_UP);
    const Answer answer = closest(withGamut(corners), 2.0, FAR_UP + 2.0);
    QVERIFY(!answer.inside);
    COMPARE_POINT(answer, 0.0, FAR_UP + 2.0);
}

void tst_Tristimulus::fuzzilyEqualCorners_data()
{
    QTest::addColumn<QPolygonF>("corners");
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<double>("closestX");
    // Steps of 2^-41 = 4.5e-13 are within the 1e-12 of equality, 2^-39 = 1.8e-12 are not. With two corners
    // equal, the edge that would start at the second of them is not visited.
    const double near = std::ldexp(1.0, -41);
    const double apart = std::ldexp(1.0, -39);
    QTest::newRow("green equals red: no green-blue")
        << QPolygonF({{0, 0}, {near, 0}, {0, 1}}) << QPointF(1, 0.5) << 0.0;
    QTest::newRow("green differs from red") << QPolygonF({{0, 0}, {apart, 0}, {0, 1}}) << QPointF(1, 0.5) << apart / 2;
    QTest::newRow("red equals blue: no red-green")
        << QPolygonF({{0, 0}, {0, 1}, {near, 0}}) << QPointF(-1, 0.5) << near / 2;
    QTest::newRow("red differs from blue") << QPolygonF({{0, 0}, {0, 1}, {apart, 0}}) << QPointF(-1, 0.5) << 0.0;
}

void tst_Tristimulus::fuzzilyEqualCorners()
{
    QFETCH(QPolygonF, corners);
    QFETCH(QPointF, point);
    QFETCH(double, closestX);
    const Answer answer = closest(withGamut(corners), point.x(), point.y());
    QVERIFY(!answer.inside);
    // Projecting onto a slanted edge of length 1 rounds at 1e-16; the edges are 2e-13 apart here.
    QVERIFY2(std::abs(answer.x - closestX) < 1e-15, qPrintable(QString::number(answer.x, 'g', 17)));
    QVERIFY(std::abs(answer.y - 0.5) < 1e-11);
}

void tst_Tristimulus::gamutOfOnePoint()
{
    const Tristimulus *data = withGamut({{0.25, 0.5}, {0.25, 0.5}, {0.25, 0.5}});
    QVERIFY(!data->inside(0.25, 0.5));
    for (const QPointF &point : {QPointF(0.25, 0.5), QPointF(0.0, 0.0), QPointF(1.0, 0.5)}) {
        const Answer answer = closest(data, point.x(), point.y());
        QVERIFY(!answer.inside);
        COMPARE_POINT(answer, 0.25, 0.5);
    }
}

void tst_Tristimulus::gamutOfNothing()
{
    Tristimulus *data = withGamut(TRIANGLE);
    fill(data, {});
    data->calculatePolygon();
    QVERIFY(!data->inside(0.25, 0.25));
    const Answer answer = closest(data, 0.25, 0.25);
    QVERIFY(!answer.inside);
    COMPARE_POINT(answer, NOT_A_NUMBER, NOT_A_NUMBER);
}

void tst_Tristimulus::odd43_gamutIsRedGreenBlue()
{
    // The fourth emitter lies far outside the triangle of the first three.
    const Tristimulus *data = withGamut(TRIANGLE + QVector<QPointF>{{0.875, 0.875}});
    QVERIFY(!data->inside(0.5, 0.5));
    COMPARE_POINT(closest(data, 0.875, 0.875), 0.4375, 0.4375);

    // Amber of a shipped fixture is more saturated than any mixture of its red and green.
    const Tristimulus *shipped =
        TristimulusFactory::getInstance()->getTristimulus(ColorUtils::STRAND_BEAM_KVX, ColorUtils::CONFIG_RGBAW);
    QVERIFY(!shipped->inside(5553.0 / 9929.0, 4321.0 / 9929.0));
}

void tst_Tristimulus::odd44_numChannelsCountsNames()
{
    Tristimulus data(ColorUtils::GENERIC_RGB);
    fill(&data, TRIANGLE);
    QCOMPARE(data.numChannels(), 0);
    data.setChannelNames({"Red", "Green", "Blue", "Amber"});
    QCOMPARE(data.numChannels(), 4);
    QCOMPARE(int(data.getX().size()), 3);
}

TREL_TEST_MAIN(tst_Tristimulus, {})
#include "tst_Tristimulus.moc"
