#include "Curve.h"

#include "TestSupport.h"

#include <climits>
#include <memory>
#include <new>
#include <type_traits>

namespace {

static_assert(std::has_virtual_destructor_v<Curve>, "the registry deletes curves as Curve");
static_assert(!std::is_copy_constructible_v<Curve> && !std::is_copy_assignable_v<Curve>, "tables have one owner");

/// A curve with the control points first, first + step, first + 2 × step, …
class LineCurve : public Curve
{
public:
    LineCurve(int first, int step)
    {
        build(first, step);
    }

    void build(int first, int step)
    {
        unsigned short points[LUT8_SIZE];
        for (int i = 0; i < LUT8_SIZE; ++i)
            points[i] = static_cast<unsigned short>(first + i * step);
        createLutFromControlPoints(points);
    }
};

/// Counts the calls of createLut() through the base class.
class CountingCurve : public Curve
{
public:
    CountingCurve(int &calls, int &destructions)
        : m_calls(calls)
        , m_destructions(destructions)
    {
    }

    ~CountingCurve() override
    {
        ++m_destructions;
    }

    void createLut() override
    {
        ++m_calls;
    }

private:
    int &m_calls;
    int &m_destructions;
};

template <typename T>
int applied(const Curve &curve, int index)
{
    T value = 0;
    curve.applyCurve(index, &value);
    return value;
}

template <typename T>
bool failsToAllocate(const Curve &curve)
{
    try {
        curve.applyCurve(0, static_cast<T *>(nullptr));
    } catch (const std::bad_alloc &) {
        return true;
    }
    return false;
}

using Word = unsigned short;
using Byte = unsigned char;

} // namespace

class tst_Curve : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void withoutTable_data();
    void withoutTable();
    void nullOutIsAFailedAllocation();
    void words_data();
    void words();
    void bytes_data();
    void bytes();
    void tablesAreBuiltOnce();
    void virtualOperations();
    void indexBeyondTableIsFatal_data();
    void indexBeyondTableIsFatal();
};

void tst_Curve::withoutTable_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("word");
    QTest::addColumn<int>("byte");
    QTest::newRow("zero") << 0 << 0 << 0;
    QTest::newRow("one") << 1 << 1 << 1;
    QTest::newRow("middle") << 128 << 128 << 128;
    QTest::newRow("last byte") << 255 << 255 << 255;
    QTest::newRow("low 8 bits") << 0x1234 << 0x1234 << 0x34;
    QTest::newRow("last word") << 65535 << 65535 << 255;
    QTest::newRow("beyond 16 bits") << 65536 << 0 << 0;
    QTest::newRow("low 16 bits") << 0x76543210 << 0x3210 << 0x10;
    QTest::newRow("negative") << -1 << 65535 << 255;
    QTest::newRow("least") << INT_MIN << 0 << 0;
}

void tst_Curve::withoutTable()
{
    QFETCH(int, index);
    QFETCH(int, word);
    QFETCH(int, byte);
    Curve curve;
    QCOMPARE(applied<Word>(curve, index), word);
    QCOMPARE(applied<Byte>(curve, index), byte);
    curve.createLut();
    QCOMPARE(applied<Word>(curve, index), word);
    QCOMPARE(applied<Byte>(curve, index), byte);
}

void tst_Curve::nullOutIsAFailedAllocation()
{
    QVERIFY(failsToAllocate<Word>(Curve()));
    QVERIFY(failsToAllocate<Byte>(Curve()));
    QVERIFY(failsToAllocate<Word>(LineCurve(0, 257)));
    QVERIFY(failsToAllocate<Byte>(LineCurve(0, 257)));
}

void tst_Curve::words_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("word");
    QTest::newRow("point") << 0 << 257 << 0x8000 << 0x8080;
    QTest::newRow("whole steps") << 0 << 257 << 0x80FF << 0x817F;
    QTest::newRow("fraction is cut, not rounded") << 100 << 1 << 255 << 100;
    QTest::newRow("half step is cut") << 0 << 3 << 128 << 1;
    QTest::newRow("last of the sloped segments") << 0 << 256 << 65279 << 65279;
    QTest::newRow("last segment begins at its point") << 0 << 256 << 65280 << 65280;
    QTest::newRow("last segment stays there") << 0 << 256 << 65535 << 65280;
    QTest::newRow("falling: first step") << 65535 << -257 << 1 << 65533;
    QTest::newRow("falling: last step") << 65535 << -257 << 255 << 65279;
}

void tst_Curve::words()
{
    QFETCH(int, first);
    QFETCH(int, step);
    QFETCH(int, index);
    QFETCH(int, word);
    QCOMPARE(applied<Word>(LineCurve(first, step), index), word);
}

void tst_Curve::bytes_data()
{
    QTest::addColumn<int>("point");
    QTest::addColumn<int>("byte");
    QTest::newRow("zero") << 0x0000 << 0x00;
    QTest::newRow("below half") << 0x007F << 0x00;
    QTest::newRow("half goes up") << 0x0080 << 0x01;
    QTest::newRow("above half") << 0x12FF << 0x13;
    QTest::newRow("bit 7 decides, not bit 6") << 0x1240 << 0x12;
    QTest::newRow("up to 255") << 0xFE80 << 0xFF;
    QTest::newRow("255 stays") << 0xFF7F << 0xFF;
    QTest::newRow("never past 255") << 0xFF80 << 0xFF;
    QTest::newRow("full") << 0xFFFF << 0xFF;
}

void tst_Curve::bytes()
{
    QFETCH(int, point);
    QFETCH(int, byte);
    const LineCurve curve(point, 0);
    QCOMPARE(applied<Byte>(curve, 0), byte);
    QCOMPARE(applied<Byte>(curve, 255), byte);
}

void tst_Curve::tablesAreBuiltOnce()
{
    LineCurve curve(0, 257);
    curve.build(1000, 0);
    QCOMPARE(applied<Word>(curve, 65535), 65535);
    QCOMPARE(applied<Byte>(curve, 255), 255);
}

void tst_Curve::virtualOperations()
{
    int calls = 0;
    int destructions = 0;
    std::unique_ptr<Curve> curve = std::make_unique<CountingCurve>(calls, destructions);
    QCOMPARE(calls, 0);
    curve->createLut();
    QCOMPARE(calls, 1);
    QCOMPARE(applied<Word>(*curve, 65535), 65535);
    curve.reset();
    QCOMPARE(destructions, 1);
}

void tst_Curve::indexBeyondTableIsFatal_data()
{
    QTest::addColumn<QString>("childCase");
    for (const char *name : {"word 65536", "word -1", "word least", "byte 256", "byte -1", "byte most"})
        QTest::newRow(name) << QString(name);
}

void tst_Curve::indexBeyondTableIsFatal()
{
    QFETCH(QString, childCase);
    QVERIFY(diesWith(childCase, "index out of range"));
}

const ChildCases childCases{
    {"word 65536", [] { applied<Word>(LineCurve(0, 257), 65536); }},
    {"word -1", [] { applied<Word>(LineCurve(0, 257), -1); }},
    {"word least", [] { applied<Word>(LineCurve(0, 257), INT_MIN); }},
    {"byte 256", [] { applied<Byte>(LineCurve(0, 257), 256); }},
    {"byte -1", [] { applied<Byte>(LineCurve(0, 257), -1); }},
    {"byte most", [] { applied<Byte>(LineCurve(0, 257), INT_MAX); }},
};

TREL_TEST_MAIN(tst_Curve, childCases)

#include "tst_Curve.moc"
