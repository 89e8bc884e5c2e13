#include "GammaCurveTest.h"

GammaCurveTest::GammaCurveTest(Factory createCurve, const int (&points)[256])
    : m_curve(createCurve())
    , m_points(points)
{
}

int GammaCurveTest::word(const Curve &curve, int index)
{
    unsigned short value = 0;
    curve.applyCurve(index, &value);
    return value;
}

int GammaCurveTest::byte(const Curve &curve, int index)
{
    unsigned char value = 0;
    curve.applyCurve(index, &value);
    return value;
}

/// The ascending line between two points in integers: a shift by 8 truncates j/256 of the difference exactly.
int GammaCurveTest::interpolated(int index) const
{
    const int i = index / 256;
    const int next = i < 255 ? m_points[i + 1] : m_points[255];
    return m_points[i] + (((next - m_points[i]) * (index % 256)) >> 8);
}

void GammaCurveTest::controlPoints()
{
    for (int i = 0; i < 256; ++i)
        QVERIFY2(word(*m_curve, i * 256) == m_points[i], qPrintable(QString("point %1").arg(i)));
}

void GammaCurveTest::wordsBetweenPoints()
{
    for (int index = 0; index < 65536; ++index)
        QVERIFY2(word(*m_curve, index) == interpolated(index), qPrintable(QString("index %1").arg(index)));
}

void GammaCurveTest::bytesAreRoundedPoints()
{
    for (int i = 0; i < 256; ++i)
        QVERIFY2(byte(*m_curve, i) == qMin(255, (m_points[i] + 128) / 256), qPrintable(QString("index %1").arg(i)));
}

void GammaCurveTest::buildingAgainChangesNothing()
{
    m_curve->createLut();
    QCOMPARE(word(*m_curve, 32767), interpolated(32767));
    QCOMPARE(byte(*m_curve, 255), 255);
}

void GammaCurveTest::indexBeyondTableIsFatal_data()
{
    QTest::addColumn<QString>("childCase");
    for (const char *name : {"word 65536", "word -1", "byte 256", "byte -1"})
        QTest::newRow(name) << QString(name);
}

void GammaCurveTest::indexBeyondTableIsFatal()
{
    QFETCH(QString, childCase);
    QVERIFY(diesWith(childCase, "index out of range"));
}
