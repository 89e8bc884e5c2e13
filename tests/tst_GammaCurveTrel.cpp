#include "GammaCurveTest.h"

#include <GammaCurveTrel.h>

#include <type_traits>

static_assert(std::is_base_of_v<Curve, GammaCurveTrelNormal>, "the registry holds it as a Curve");

namespace {

// clang-format off
constexpr int POINTS[256] = {
    0,     16,    36,    60,    84,    108,   136,   164,   196,   228,   264,   300,   340,   380,   420,   464,
    512,   560,   608,   660,   716,   772,   828,   888,   948,   1012,  1076,  1144,  1212,  1284,  1356,  1428,
    1504,  1584,  1664,  1744,  1828,  1916,  2004,  2092,  2184,  2276,  2372,  2468,  2568,  2668,  2772,  2876,
    2980,  3088,  3200,  3312,  3424,  3540,  3660,  3780,  3900,  4024,  4148,  4276,  4404,  4536,  4668,  4804,
    4940,  5076,  5216,  5360,  5504,  5648,  5796,  5948,  6100,  6252,  6408,  6564,  6724,  6884,  7048,  7212,
    7380,  7548,  7716,  7888,  8064,  8240,  8416,  8596,  8780,  8964,  9148,  9336,  9524,  9716,  9908,  10104,
    10300, 10500, 10700, 10900, 11104, 11312, 11520, 11728, 11940, 12156, 12372, 12588, 12808, 13028, 13252, 13476,
    13704, 13932, 14164, 14396, 14628, 14864, 15104, 15344, 15584, 15828, 16076, 16324, 16572, 16824, 17076, 17332,
    17588, 17848, 18108, 18372, 18636, 18900, 19168, 19440, 19712, 19984, 20260, 20540, 20820, 21100, 21384, 21668,
    21956, 22244, 22536, 22828, 23124, 23420, 23716, 24016, 24320, 24624, 24928, 25236, 25548, 25860, 26172, 26488,
    26804, 27124, 27444, 27768, 28092, 28420, 28748, 29076, 29408, 29744, 30080, 30416, 30756, 31100, 31444, 31788,
    32136, 32484, 32836, 33188, 33544, 33900, 34260, 34620, 34980, 35344, 35712, 36080, 36448, 36820, 37196, 37572,
    37948, 38328, 38708, 39092, 39476, 39864, 40252, 40644, 41036, 41428, 41824, 42224, 42624, 43024, 43428, 43836,
    44244, 44652, 45064, 45476, 45892, 46308, 46728, 47148, 47572, 47996, 48420, 48848, 49280, 49712, 50144, 50580,
    51020, 51460, 51900, 52344, 52788, 53236, 53684, 54136, 54588, 55044, 55500, 55956, 56416, 56880, 57344, 57808,
    58276, 58748, 59220, 59692, 60168, 60644, 61124, 61604, 62088, 62572, 63060, 63548, 64036, 64528, 65024, 65520,
};
// clang-format on

} // namespace

class tst_GammaCurveTrel : public GammaCurveTest
{
    Q_OBJECT

public:
    tst_GammaCurveTrel()
        : GammaCurveTest([]() -> std::unique_ptr<Curve> { return std::make_unique<GammaCurveTrelNormal>(); }, POINTS)
    {
    }

private Q_SLOTS:
    void words_data();
    void words();
    void bytes_data();
    void bytes();
    void odd30_lastSegmentIsFlatAndBelowFullScale();
};

void tst_GammaCurveTrel::words_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("value");
    QTest::newRow("darkest") << 0 << 0;
    QTest::newRow("1/256 of 16 steps") << 15 << 0;
    QTest::newRow("16 steps") << 16 << 1;
    QTest::newRow("last of the first segment") << 255 << 15;
    QTest::newRow("second point") << 256 << 16;
    QTest::newRow("half level") << 32767 << 17587;
    QTest::newRow("middle point") << 32768 << 17588;
    QTest::newRow("last before the flat end") << 65279 << 65518;
    QTest::newRow("last point") << 65280 << 65520;
    QTest::newRow("full level is not full output") << 65535 << 65520;
}

void tst_GammaCurveTrel::words()
{
    QFETCH(int, index);
    QFETCH(int, value);
    QCOMPARE(word(*m_curve, index), value);
}

void tst_GammaCurveTrel::bytes_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("value");
    QTest::newRow("darkest") << 0 << 0;
    QTest::newRow("0x006C rounds down") << 5 << 0;
    QTest::newRow("0x0088 rounds up") << 6 << 1;
    QTest::newRow("0x44B4 rounds up") << 128 << 69;
    QTest::newRow("0xF83C rounds down") << 251 << 248;
    QTest::newRow("0xFE00 stays") << 254 << 254;
    QTest::newRow("0xFFF0 does not pass 255") << 255 << 255;
}

void tst_GammaCurveTrel::bytes()
{
    QFETCH(int, index);
    QFETCH(int, value);
    QCOMPARE(byte(*m_curve, index), value);
}

void tst_GammaCurveTrel::odd30_lastSegmentIsFlatAndBelowFullScale()
{
    QCOMPARE(word(*m_curve, 65279), 65518);
    for (int index = 65280; index < 65536; ++index)
        QCOMPARE(word(*m_curve, index), 65520);
}

TREL_TEST_MAIN(tst_GammaCurveTrel, GammaCurveTest::childCases<GammaCurveTrelNormal>())

#include "tst_GammaCurveTrel.moc"
