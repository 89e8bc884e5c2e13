#include "GammaCurveTest.h"

#include <GammaCurveTungsten.h>

#include <type_traits>

static_assert(std::is_base_of_v<Curve, GammaCurveTungsten>, "the registry holds it as a Curve");

namespace {

// clang-format off
constexpr int POINTS[256] = {
    0,     1,     2,     3,     4,     5,     7,     9,     11,    14,    17,    20,    24,    28,    33,    38,
    43,    50,    57,    64,    72,    81,    90,    100,   110,   120,   131,   141,   151,   162,   174,   186,
    199,   212,   226,   240,   255,   270,   285,   302,   322,   345,   370,   398,   428,   461,   497,   535,
    576,   619,   666,   714,   766,   820,   876,   936,   997,   1062,  1129,  1199,  1271,  1346,  1423,  1504,
    1586,  1672,  1760,  1851,  1944,  2040,  2138,  2239,  2343,  2449,  2558,  2670,  2784,  2901,  3020,  3143,
    3267,  3395,  3524,  3657,  3792,  3930,  4070,  4213,  4359,  4507,  4658,  4812,  4968,  5126,  5288,  5452,
    5618,  5787,  5959,  6134,  6311,  6490,  6673,  6858,  7045,  7235,  7428,  7624,  7822,  8022,  8225,  8431,
    8640,  8851,  9065,  9281,  9500,  9721,  9946,  10172, 10402, 10634, 10868, 11106, 11346, 11588, 11833, 12081,
    12331, 12584, 12840, 13098, 13359, 13623, 13889, 14157, 14429, 14703, 14979, 15258, 15540, 15824, 16112, 16401,
    16693, 16988, 17286, 17586, 17889, 18194, 18502, 18813, 19126, 19442, 19760, 20081, 20405, 20731, 21060, 21392,
    21726, 22063, 22402, 22744, 23089, 23436, 23786, 24138, 24493, 24851, 25211, 25574, 25940, 26308, 26679, 27052,
    27428, 27807, 28188, 28572, 28959, 29348, 29740, 30134, 30531, 30931, 31333, 31738, 32145, 32555, 32968, 33383,
    33801, 34222, 34645, 35071, 35499, 35930, 36364, 36800, 37239, 37681, 38125, 38571, 39021, 39473, 39927, 40385,
    40844, 41307, 41772, 42240, 42710, 43183, 43659, 44137, 44617, 45101, 45587, 46076, 46567, 47061, 47557, 48056,
    48558, 49062, 49569, 50079, 50591, 51106, 51623, 52143, 52666, 53191, 53719, 54250, 54783, 55319, 55857, 56398,
    56942, 57488, 58037, 58588, 59143, 59699, 60259, 60821, 61385, 61952, 62522, 63095, 63670, 64247, 64880, 65535,
};
// clang-format on

} // namespace

class tst_GammaCurveTungsten : public GammaCurveTest
{
    Q_OBJECT

public:
    tst_GammaCurveTungsten()
        : GammaCurveTest([]() -> std::unique_ptr<Curve> { return std::make_unique<GammaCurveTungsten>(); }, POINTS)
    {
    }

private Q_SLOTS:
    void words_data();
    void words();
    void bytes_data();
    void bytes();
    void lastSegmentIsFlat();
};

void tst_GammaCurveTungsten::words_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("value");
    QTest::newRow("darkest") << 0 << 0;
    QTest::newRow("last of the first segment") << 255 << 0;
    QTest::newRow("second point") << 256 << 1;
    QTest::newRow("half level") << 32767 << 12330;
    QTest::newRow("middle point") << 32768 << 12331;
    QTest::newRow("last before the flat end") << 65279 << 65532;
    QTest::newRow("last point") << 65280 << 65535;
    QTest::newRow("full level") << 65535 << 65535;
}

void tst_GammaCurveTungsten::words()
{
    QFETCH(int, index);
    QFETCH(int, value);
    QCOMPARE(word(*m_curve, index), value);
}

void tst_GammaCurveTungsten::bytes_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("value");
    QTest::newRow("darkest") << 0 << 0;
    QTest::newRow("0x0078 rounds down") << 25 << 0;
    QTest::newRow("0x0083 rounds up") << 26 << 1;
    QTest::newRow("0x302B rounds down") << 128 << 48;
    QTest::newRow("0xFAF7 rounds up") << 253 << 251;
    QTest::newRow("0xFD70 rounds down") << 254 << 253;
    QTest::newRow("0xFFFF does not pass 255") << 255 << 255;
}

void tst_GammaCurveTungsten::bytes()
{
    QFETCH(int, index);
    QFETCH(int, value);
    QCOMPARE(byte(*m_curve, index), value);
}

void tst_GammaCurveTungsten::lastSegmentIsFlat()
{
    QCOMPARE(word(*m_curve, 65279), 65532);
    for (int index = 65280; index < 65536; ++index)
        QCOMPARE(word(*m_curve, index), 65535);
}

TREL_TEST_MAIN(tst_GammaCurveTungsten, GammaCurveTest::childCases<GammaCurveTungsten>())

#include "tst_GammaCurveTungsten.moc"
