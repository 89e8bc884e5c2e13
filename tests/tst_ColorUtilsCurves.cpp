#include "ColorUtils.h"

#include "TestSupport.h"

#include <cstring>
#include <type_traits>
#include <vector>

namespace {

using Word = unsigned short;
using Byte = unsigned char;
using Levels = QVector<double>;

constexpr int SOFTWARE = 0;
constexpr int PRE_COMPENSATION = 3;

constexpr int LINEAR = 0;
constexpr int NORMAL = 1;
constexpr int TUNGSTEN = 2;

constexpr int DOMAIN_SIZE = 65536;

static_assert(std::is_same_v<decltype(ColorUtils::quadraticSolver(1, 0, 0, 0, 0)), float>, "roots are single");

/// The level that rounds to the 16-bit value \a word.
double levelOf(int word)
{
    return word / 65535.0;
}

/// The bytes that applyCurve() leaves in a buffer full of EE, in hexadecimal. The buffer begins at an odd address,
/// as a fixture's bytes in the middle of a DMX universe may.
QByteArray appliedBytes(const Levels &levels, int count, int resolution, int curveType, int mode)
{
    std::vector<Byte> buffer(17, 0xEE);
    ColorUtils::applyCurve(count, resolution, levels.constData(), buffer.data() + 1, curveType, mode);
    return QByteArray(reinterpret_cast<const char *>(buffer.data()), int(buffer.size())).toHex();
}

QByteArray inBuffer(const QByteArray &hex)
{
    return ("ee" + hex).leftJustified(34, 'e');
}

/// The words that applyCurve16() leaves in three words of 0xEEEE.
QVector<int> appliedWords(const Levels &levels, int curveType, int mode)
{
    std::vector<Word> out(3, 0xEEEE);
    ColorUtils::applyCurve16(int(levels.size()), levels.constData(), out.data(), curveType, mode);
    return {out[0], out[1], out[2]};
}

/// FNV-1a over values of 1, 2 or 4 bytes, low byte first.
class Checksum
{
public:
    template <typename T>
    void add(T value)
    {
        for (size_t i = 0; i < sizeof(T); ++i)
            m_sum = (m_sum ^ ((value >> (8 * i)) & 0xFF)) * 0x100000001b3u;
    }

    quint64 sum() const
    {
        return m_sum;
    }

private:
    quint64 m_sum = 0xcbf29ce484222325u;
};

template <typename T>
quint64 checksumOf(T (*function)(Word))
{
    Checksum checksum;
    for (int p = 0; p < DOMAIN_SIZE; ++p)
        checksum.add(function(Word(p)));
    return checksum.sum();
}

template <typename T>
quint64 checksumOf(void (*function)(const Word *, T *, int))
{
    std::vector<Word> in(DOMAIN_SIZE);
    for (size_t p = 0; p < in.size(); ++p)
        in[p] = Word(p);
    std::vector<T> out(in.size());
    function(in.data(), out.data(), DOMAIN_SIZE);
    Checksum checksum;
    for (const T value : out)
        checksum.add(value);
    return checksum.sum();
}

/// The model's value before it is divided by \a fullScale. It is single, the ratio a double: the product gives it back.
float dimValue(double (*ratio)(Word), int dmx, double fullScale)
{
    return float(ratio(Word(dmx)) * fullScale);
}

quint64 checksumOf(double (*ratio)(Word), double fullScale)
{
    Checksum checksum;
    for (int dmx = 0; dmx < DOMAIN_SIZE; ++dmx) {
        const float value = dimValue(ratio, dmx, fullScale);
        quint32 bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        checksum.add(bits);
    }
    return checksum.sum();
}

template <typename T>
bool writesNothing(void (*function)(const Word *, T *, int), int count)
{
    const Word in[] = {1000, 2000};
    T out[] = {77, 77};
    function(in, out, count);
    return out[0] == 77 && out[1] == 77;
}

struct InverseRow
{
    int pwm;
    int normal16;
    int normal8;
    int tungsten8;
    int linear8;
    int squareLaw8;
};

// Solved in a program of its own, with the quadratics' coefficients in single precision.
const InverseRow INVERSES[] = {
    {0, 0, 0, 0, 0, 0},
    {1, 16, 0, 1, 0, 0},
    {2, 31, 0, 2, 0, 0},
    {3, 46, 0, 3, 0, 0},
    {4, 61, 0, 4, 0, 0},
    {5, 76, 0, 5, 0, 0},
    {6, 90, 0, 6, 0, 0},
    {8, 119, 0, 7, 0, 0},
    {9, 134, 1, 7, 0, 0},
    {17, 246, 1, 10, 0, 0},
    {18, 260, 1, 10, 0, 1},
    {25, 353, 1, 12, 0, 1},
    {37, 507, 2, 15, 0, 1},
    {38, 519, 2, 15, 0, 2},
    {64, 825, 3, 19, 0, 3},
    {100, 1205, 5, 23, 0, 4},
    {127, 1464, 6, 26, 0, 5},
    {128, 1474, 6, 26, 0, 5},
    {129, 1483, 6, 26, 1, 5},
    {200, 2091, 8, 32, 1, 8},
    {255, 2509, 10, 36, 1, 9},
    {256, 2516, 10, 36, 1, 9},
    {257, 2524, 10, 36, 1, 9},
    {300, 2826, 11, 39, 1, 10},
    {321, 2968, 12, 40, 1, 11},
    {322, 2974, 12, 40, 1, 11},
    {323, 2981, 12, 40, 1, 11},
    {385, 3377, 13, 42, 1, 13},
    {386, 3383, 13, 42, 2, 13},
    {500, 4047, 16, 46, 2, 15},
    {700, 5068, 20, 51, 3, 19},
    {1000, 6378, 25, 56, 4, 24},
    {1503, 8215, 32, 63, 6, 31},
    {2000, 9758, 38, 69, 8, 37},
    {3000, 12381, 48, 78, 12, 48},
    {4096, 14799, 58, 86, 16, 57},
    {6000, 18337, 71, 98, 23, 71},
    {8192, 21776, 85, 110, 32, 84},
    {10000, 24279, 94, 118, 39, 94},
    {13107, 28104, 109, 131, 51, 109},
    {16384, 31675, 123, 143, 64, 123},
    {20000, 35223, 137, 155, 78, 137},
    {25000, 39637, 154, 169, 97, 154},
    {30000, 43629, 170, 183, 117, 169},
    {32767, 45696, 178, 189, 127, 177},
    {32768, 45697, 178, 189, 128, 177},
    {39321, 50268, 196, 205, 153, 195},
    {45000, 53931, 210, 217, 175, 209},
    {52428, 58388, 227, 232, 204, 227},
    {60000, 62618, 244, 245, 233, 243},
    {65000, 65266, 254, 254, 253, 253},
    {65145, 65341, 254, 254, 253, 254},
    {65146, 65341, 254, 255, 253, 254},
    {65272, 65407, 254, 255, 254, 254},
    {65273, 65407, 255, 255, 254, 254},
    {65406, 65476, 255, 255, 254, 254},
    {65407, 65477, 255, 255, 255, 254},
    {65520, 65535, 255, 255, 255, 254},
    {65521, 65535, 255, 255, 255, 255},
    {65534, 65535, 255, 255, 255, 255},
    {65535, 65535, 255, 255, 255, 255},
};

struct DimRow
{
    int dmx;
    float value;
};

// The polynomials in exact rational arithmetic, then rounded to single and clamped.
const DimRow TUNGSTEN_DIM[] = {
    {0, 0.0f},
    {1, 0.0f},
    {1000, 0.0f},
    {5000, 0.0f},
    {11083, 0.0f},
    {11084, 0.10918007f},
    {11085, 0.232002541f},
    {11200, 14.5978231f},
    {12000, 127.985535f},
    {13107, 324.88797f},
    {16384, 1194.89392f},
    {20000, 2671.67554f},
    {24576, 5315.96777f},
    {26214, 6467.18408f},
    {30000, 9525.66406f},
    {32767, 12102.1426f},
    {32768, 12103.125f},
    {39321, 19320.9004f},
    {45000, 26842.7637f},
    {49152, 33116.3398f},
    {52428, 38562.5117f},
    {60000, 53110.3633f},
    {65000, 64671.1016f},
    {65300, 65429.4414f},
    {65341, 65533.7305f},
    {65342, 65535.0f},
    {65534, 65535.0f},
    {65535, 65535.0f},
};

const DimRow SQUARE_LAW_DIM[] = {
    {0, 0.0f},
    {1, 0.0657937676f},
    {2, 0.131664544f},
    {3, 0.197563827f},
    {10, 0.65965724f},
    {16, 1.05684936f},
    {50, 3.32699394f},
    {100, 6.72532129f},
    {255, 17.71315f},
    {256, 17.7862625f},
    {257, 17.8594036f},
    {500, 36.4781761f},
    {1000, 80.0847397f},
    {2048, 194.612091f},
    {4096, 508.81012f},
    {8192, 1495.92505f},
    {10000, 2083.78491f},
    {13107, 3311.63916f},
    {16384, 4904.79932f},
    {20000, 7017.93311f},
    {26214, 11519.627f},
    {30000, 14801.7764f},
    {32767, 17458.8652f},
    {32768, 17459.8652f},
    {39321, 24622.8789f},
    {45000, 31820.2461f},
    {52428, 42621.4961f},
    {60000, 55250.8164f},
    {65000, 64486.3516f},
    {65400, 65255.9883f},
    {65533, 65512.9062f},
    {65534, 65514.8398f},
    {65535, 65516.0f},
};

} // namespace

class tst_ColorUtilsCurves : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void softwareCurve_data();
    void softwareCurve();
    void everyModeButThreeIsTheSoftwareCurve();
    void preCompensation_data();
    void preCompensation();
    void noChannelsWriteNothing_data();
    void noChannelsWriteNothing();
    void levelBeyondTableIsFatal_data();
    void levelBeyondTableIsFatal();
    void words_data();
    void words();
    void pwmOfLevels_data();
    void pwmOfLevels();
    void pwmOfNoLevelsWritesNothing();
    void quadraticSolver_data();
    void quadraticSolver();
    void inverses_data();
    void inverses();
    void inversesOverWholeDomain_data();
    void inversesOverWholeDomain();
    void arraysOfNoValuesWriteNothing();
    void tungstenDim_data();
    void tungstenDim();
    void squareLawDim_data();
    void squareLawDim();
    void dimOverWholeDomain();
    void dimRatioStaysInRange();
    void odd31_softwareTruncatesAndPreCompensationRounds();
    void odd32_bytesAreSwappedWithPositionI();
    void odd33_tungsten16NeverExceeds255();
    void odd34_singleDiscriminantAndSolutionDoubleRoot();
    void odd35_squareLawFullScaleIs65516();
};

void tst_ColorUtilsCurves::softwareCurve_data()
{
    QTest::addColumn<Levels>("levels");
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("curveType");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Levels &levels, int resolution, int curveType, const char *bytes) {
        QTest::newRow(name) << levels << resolution << curveType << QByteArray(bytes);
    };

    row("linear 8 bit: 127.5 rounds up", {0.5}, 1, LINEAR, "80");
    row("linear 8 bit: rounds to nearest", {0.25, 0.75, 0.0, 1.0}, 1, LINEAR, "40bf00ff");
    row("linear 16 bit: 32767.5 is cut", {0.5}, 2, LINEAR, "7fff");
    row("linear 16 bit: full level", {1.0}, 2, LINEAR, "ffff");
    row("linear 16 bit: high byte first", {0.25, 0.0, 0.75}, 2, LINEAR, "3fff0000bfff");
    row("normal 8 bit", {0.5, 1.0, 0.0}, 1, NORMAL, "45ff00");
    row("normal 16 bit: full level ends at 65520", {1.0}, 2, NORMAL, "fff0");
    row("normal 16 bit", {0.5, 0.0}, 2, NORMAL, "44b30000");
    row("tungsten 8 bit", {0.5, 1.0, 0.0}, 1, TUNGSTEN, "30ff00");
    row("tungsten 16 bit", {0.5, 1.0, 0.0}, 2, TUNGSTEN, "302affff0000");
    row("unknown curve 3 is linear", {0.5}, 2, 3, "7fff");
    row("unknown curve -1 is linear, 8 bit", {0.5}, 1, -1, "80");
    row("resolution 0 writes nothing", {0.5}, 0, LINEAR, "");
    row("resolution 3 writes nothing", {0.5}, 3, NORMAL, "");
    row("resolution -1 writes nothing", {0.5}, -1, TUNGSTEN, "");

    row("16 bit: NaN and infinities give 0", {qQNaN(), qInf(), -qInf()}, 2, LINEAR, "000000000000");
    row("8 bit: NaN and infinities give 0", {qQNaN(), qInf(), -qInf()}, 1, LINEAR, "000000");
    row("16 bit tungsten: NaN is index 0", {qQNaN()}, 2, TUNGSTEN, "0000");
    row("8 bit normal: NaN is index 0", {qQNaN()}, 1, NORMAL, "00");
    row("16 bit: low 16 bits of 131070", {2.0}, 2, LINEAR, "fffe");
    row("16 bit normal: low 16 bits of 131070", {2.0}, 2, NORMAL, "fff0");
    row("8 bit: low 8 bits of 510", {2.0}, 1, LINEAR, "fe");
    row("16 bit: -32767.5 is cut toward zero", {-0.5, -1.0}, 2, LINEAR, "80010001");
    row("8 bit: -127.5 rounds up", {-0.5, -1.0}, 1, LINEAR, "8101");
    row("8 bit: -63.75 and -191.25 round to nearest", {-0.25, -0.75}, 1, LINEAR, "c041");
    row("16 bit: beyond 32 bits", {4294967297.0}, 2, LINEAR, "ffff");
    row("8 bit: beyond 32 bits", {4294967297.0}, 1, LINEAR, "ff");
    row("16 bit: last power of ten in 64 bits, then 0", {1e14, 1e15}, 2, LINEAR, "c0000000");
    row("8 bit: beyond 64 bits gives 0", {1e17, -1e17}, 1, LINEAR, "0000");
}

void tst_ColorUtilsCurves::softwareCurve()
{
    QFETCH(Levels, levels);
    QFETCH(int, resolution);
    QFETCH(int, curveType);
    QFETCH(QByteArray, bytes);
    QCOMPARE(appliedBytes(levels, int(levels.size()), resolution, curveType, SOFTWARE), inBuffer(bytes));
}

void tst_ColorUtilsCurves::everyModeButThreeIsTheSoftwareCurve()
{
    for (const int mode : {-1, 0, 1, 2, 4, 5}) {
        QCOMPARE(appliedBytes({0.5, 0.5}, 2, 2, NORMAL, mode), inBuffer("44b344b3"));
        QCOMPARE(appliedBytes({0.5}, 1, 1, NORMAL, mode), inBuffer("45"));
        QCOMPARE(appliedWords({0.5}, NORMAL, mode), (QVector<int>{0x44B3, 0xEEEE, 0xEEEE}));
    }
}

void tst_ColorUtilsCurves::preCompensation_data()
{
    QTest::addColumn<Levels>("levels");
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("curveType");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char *name, const Levels &levels, int resolution, int curveType, const char *bytes) {
        QTest::newRow(name) << levels << resolution << curveType << QByteArray(bytes);
    };

    row("linear 16 bit: full level", {1.0}, 2, LINEAR, "ffff");
    row("linear 16 bit: rounds", {0.5}, 2, LINEAR, "8000");
    row("linear 8 bit: 257 PWM steps a byte", {levelOf(128), levelOf(129), levelOf(385), 0.5, 1.0}, 1, LINEAR,
        "00010180ff");
    row("normal 16 bit: full level", {1.0}, 2, NORMAL, "ffff");
    row("normal 16 bit: 45697", {0.5}, 2, NORMAL, "b281");
    row("normal 16 bit: second low byte is the first one's", {0.5, 1.0}, 2, NORMAL, "b281ff81");
    row("normal 8 bit", {0.5, 1.0, 0.0}, 1, NORMAL, "b2ff00");
    row("tungsten 16 bit: at most 255", {1.0}, 2, TUNGSTEN, "00ff");
    row("tungsten 16 bit: 3 stays", {levelOf(3)}, 2, TUNGSTEN, "0003");
    row("tungsten 8 bit", {0.5, levelOf(4), levelOf(321), 1.0}, 1, TUNGSTEN, "bd0428ff");

    row("resolution 0 writes bytes, linear", {0.5, 1.0}, 0, LINEAR, "80ff");
    row("resolution 3 writes bytes, normal", {0.5, 1.0}, 3, NORMAL, "b2ff");
    row("resolution -1 writes bytes, tungsten", {0.5, 1.0}, -1, TUNGSTEN, "bdff");
    row("unknown curve 3 leaves bytes alone", {0.5, 1.0}, 1, 3, "");
    row("unknown curve 3 leaves words alone", {0.5, 1.0}, 2, 3, "");
    row("unknown curve -1 leaves words alone", {0.5, 1.0}, 2, -1, "");

    row("NaN gives 0", {qQNaN()}, 2, LINEAR, "0000");
    row("infinity gives 0", {qInf()}, 2, LINEAR, "0000");
    row("negative infinity gives 0", {-qInf()}, 2, LINEAR, "0000");
    row("NaN and infinities give 0, normal 8 bit", {qQNaN(), qInf(), -qInf()}, 1, NORMAL, "000000");
    row("low 16 bits of 131070", {2.0}, 2, LINEAR, "fffe");
    row("negative: floor of -16383.25", {-0.25}, 2, LINEAR, "c000");
    row("beyond 64 bits gives 0", {1e15}, 2, LINEAR, "0000");
}

void tst_ColorUtilsCurves::preCompensation()
{
    QFETCH(Levels, levels);
    QFETCH(int, resolution);
    QFETCH(int, curveType);
    QFETCH(QByteArray, bytes);
    QCOMPARE(appliedBytes(levels, int(levels.size()), resolution, curveType, PRE_COMPENSATION), inBuffer(bytes));
}

void tst_ColorUtilsCurves::noChannelsWriteNothing_data()
{
    QTest::addColumn<int>("resolution");
    QTest::addColumn<int>("mode");
    QTest::newRow("software 8 bit") << 1 << SOFTWARE;
    QTest::newRow("software 16 bit") << 2 << SOFTWARE;
    QTest::newRow("pre-compensation 8 bit") << 1 << PRE_COMPENSATION;
    QTest::newRow("pre-compensation 16 bit") << 2 << PRE_COMPENSATION;
}

void tst_ColorUtilsCurves::noChannelsWriteNothing()
{
    QFETCH(int, resolution);
    QFETCH(int, mode);
    for (const int curveType : {LINEAR, NORMAL, TUNGSTEN})
        QCOMPARE(appliedBytes({0.5, 1.0}, 0, resolution, curveType, mode), inBuffer(""));
}

void tst_ColorUtilsCurves::levelBeyondTableIsFatal_data()
{
    QTest::addColumn<QString>("childCase");
    for (const char *name : {"normal above 1", "tungsten below 0"})
        QTest::newRow(name) << QString(name);
}

void tst_ColorUtilsCurves::levelBeyondTableIsFatal()
{
    QFETCH(QString, childCase);
    QVERIFY(diesWith(childCase, "index out of range"));
}

void tst_ColorUtilsCurves::words_data()
{
    QTest::addColumn<Levels>("levels");
    QTest::addColumn<int>("curveType");
    QTest::addColumn<int>("mode");
    QTest::addColumn<QVector<int>>("words");
    const auto row = [](const char *name, const Levels &levels, int curveType, int mode, const QVector<int> &words) {
        QTest::newRow(name) << levels << curveType << mode << words;
    };

    row("linear truncates", {0.5, 1.0, 0.25}, LINEAR, SOFTWARE, {0x7FFF, 0xFFFF, 0x3FFF});
    row("normal", {0.5, 1.0, 0.0}, NORMAL, SOFTWARE, {17587, 65520, 0});
    row("tungsten", {0.5, 1.0, 0.0}, TUNGSTEN, SOFTWARE, {12330, 65535, 0});
    row("unknown curve is linear", {0.5}, 42, SOFTWARE, {0x7FFF, 0xEEEE, 0xEEEE});
    row("NaN and infinities", {qQNaN(), qInf(), -qInf()}, LINEAR, SOFTWARE, {0, 0, 0});
    row("out of range", {2.0, -0.5, 4294967297.0}, LINEAR, SOFTWARE, {0xFFFE, 0x8001, 0xFFFF});
    row("no levels", {}, LINEAR, SOFTWARE, {0xEEEE, 0xEEEE, 0xEEEE});

    row("pre-compensation: linear", {0.5, 1.0, levelOf(0x1234)}, LINEAR, PRE_COMPENSATION, {0x8000, 0xFFFF, 0x1234});
    row("pre-compensation: normal", {0.5, 1.0, levelOf(1)}, NORMAL, PRE_COMPENSATION, {45697, 65535, 16});
    row("pre-compensation: tungsten", {0.5, levelOf(4), levelOf(5)}, TUNGSTEN, PRE_COMPENSATION, {255, 4, 255});
    row("pre-compensation: unknown curve 3", {0.5}, 3, PRE_COMPENSATION, {0xEEEE, 0xEEEE, 0xEEEE});
    row("pre-compensation: unknown curve -1", {0.5}, -1, PRE_COMPENSATION, {0xEEEE, 0xEEEE, 0xEEEE});
    row("pre-compensation: NaN and infinities", {qQNaN(), qInf(), -qInf()}, LINEAR, PRE_COMPENSATION, {0, 0, 0});
    row("pre-compensation: out of range", {2.0, -0.25, 1e15}, LINEAR, PRE_COMPENSATION, {0xFFFE, 0xC000, 0});
    row("pre-compensation: no levels", {}, LINEAR, PRE_COMPENSATION, {0xEEEE, 0xEEEE, 0xEEEE});
}

void tst_ColorUtilsCurves::words()
{
    QFETCH(Levels, levels);
    QFETCH(int, curveType);
    QFETCH(int, mode);
    QFETCH(QVector<int>, words);
    QCOMPARE(appliedWords(levels, curveType, mode), words);
}

void tst_ColorUtilsCurves::pwmOfLevels_data()
{
    QTest::addColumn<double>("level");
    QTest::addColumn<int>("pwm");
    QTest::newRow("zero") << 0.0 << 0;
    QTest::newRow("full") << 1.0 << 65535;
    QTest::newRow("32767.5 rounds up") << 0.5 << 32768;
    QTest::newRow("16383.75 rounds up") << 0.25 << 16384;
    QTest::newRow("0.4 of a step") << 0.4 / 65535.0 << 0;
    QTest::newRow("0.6 of a step") << 0.6 / 65535.0 << 1;
    QTest::newRow("low 16 bits of 131070") << 2.0 << 65534;
    QTest::newRow("floor of -16383.25") << -0.25 << 49152;
    QTest::newRow("NaN") << qQNaN() << 0;
    QTest::newRow("infinity") << qInf() << 0;
    QTest::newRow("negative infinity") << -qInf() << 0;
    QTest::newRow("beyond 64 bits") << 1e15 << 0;
}

void tst_ColorUtilsCurves::pwmOfLevels()
{
    QFETCH(double, level);
    QFETCH(int, pwm);
    const double levels[] = {1.0, level};
    Word out[] = {7, 7, 7};
    ColorUtils::nChannelFToPWM(levels, out, 2);
    QCOMPARE(int(out[0]), 65535);
    QCOMPARE(int(out[1]), pwm);
    QCOMPARE(int(out[2]), 7);
}

void tst_ColorUtilsCurves::pwmOfNoLevelsWritesNothing()
{
    const double level = 1.0;
    for (const int count : {0, -1}) {
        Word out = 7;
        ColorUtils::nChannelFToPWM(&level, &out, count);
        QCOMPARE(int(out), 7);
    }
}

void tst_ColorUtilsCurves::quadraticSolver_data()
{
    QTest::addColumn<QVector<float>>("abcy");
    QTest::addColumn<float>("max");
    QTest::addColumn<float>("root");
    const auto row = [](const char *name, const QVector<float> &abcy, float max, float root) {
        QTest::newRow(name) << abcy << max << root;
    };

    row("square root of 9", {1, 0, 0, 9}, 100, 3);
    row("c moves y", {1, 0, 2, 11}, 100, 3);
    row("larger of two positive roots", {1, -5, 6, 0}, 100, 3);
    row("negative a: smaller of two positive roots", {-1, 5, -6, 0}, 100, 2);
    row("first root negative: second", {-1, 0, 9, 0}, 100, 3);
    row("first root zero: second", {-1, 4, 0, 0}, 100, 4);
    row("no positive root", {1, 5, 6, 0}, 100, 0);
    row("negative discriminant", {1, 0, 1, 0}, 100, 0);
    row("2.5 rounds up", {1, -5, 6.25f, 0}, 100, 3);
    row("2.25 rounds down", {1, 0, 0, 5.0625f}, 100, 2);
    row("0.5 rounds up", {4, 0, 0, 1}, 100, 1);
    row("0.25 rounds down", {16, 0, 0, 1}, 100, 0);
    row("clamped to max", {1, 0, 0, 100}, 5, 5);
    row("max is rounded after the clamp", {1, 0, 0, 100}, 5.5f, 6);
    row("max 0", {1, 0, 0, 100}, 0, 0);
    row("NaN has no root", {1, 0, 0, float(qQNaN())}, 100, 0);
    row("a = 0: infinite root is clamped", {0, -1, 0, 1}, 100, 100);
    row("a = 0: negative infinite root", {0, 1, 0, 1}, 100, 0);
}

void tst_ColorUtilsCurves::quadraticSolver()
{
    QFETCH(QVector<float>, abcy);
    QFETCH(float, max);
    QFETCH(float, root);
    // Whole numbers: qFuzzyCompare, behind QCOMPARE of floats, would let a neighbour of a large one pass.
    QVERIFY(ColorUtils::quadraticSolver(abcy[0], abcy[1], abcy[2], abcy[3], max) == root);
}

void tst_ColorUtilsCurves::inverses_data()
{
    QTest::addColumn<int>("index");
    int index = 0;
    for (const InverseRow &row : INVERSES)
        QTest::newRow(qPrintable(QString("PWM %1").arg(row.pwm))) << index++;
}

void tst_ColorUtilsCurves::inverses()
{
    QFETCH(int, index);
    const InverseRow &row = INVERSES[index];
    const auto pwm = Word(row.pwm);
    QCOMPARE(int(ColorUtils::pwm16ToMNormDNormRes16(pwm)), row.normal16);
    QCOMPARE(int(ColorUtils::pwm16ToMNormDNormRes8(pwm)), row.normal8);
    QCOMPARE(int(ColorUtils::pwm16ToMNormDTungstenRes8(pwm)), row.tungsten8);
    QCOMPARE(int(ColorUtils::pwm16ToMNormDLinearRes8(pwm)), row.linear8);
    QCOMPARE(int(ColorUtils::lut16BitToBit(pwm)), row.squareLaw8);
}

// Checksums of an independent program's answers for every input: a digit of a coefficient shows here or nowhere.
void tst_ColorUtilsCurves::inversesOverWholeDomain_data()
{
    QTest::addColumn<quint64>("actual");
    QTest::addColumn<quint64>("expected");
    const auto row = [](const char *name, quint64 actual, quint64 expected) {
        QTest::newRow(name) << actual << expected;
    };

    row("normal 16 bit", checksumOf(ColorUtils::pwm16ToMNormDNormRes16), 0xcdff82fb9de6f51du);
    row("normal 16 bit, array", checksumOf(ColorUtils::pwmToMNormDNormRes16), 0xcdff82fb9de6f51du);
    row("normal 8 bit", checksumOf(ColorUtils::pwm16ToMNormDNormRes8), 0x30fe2cdce8184897u);
    row("normal 8 bit, array", checksumOf(ColorUtils::pwmToMNormDNormRes8), 0x30fe2cdce8184897u);
    row("tungsten 16 bit", checksumOf(ColorUtils::pwm16ToMNormDTungstenRes16), 0x11a6cdfcb6fcc26eu);
    row("tungsten 16 bit, array", checksumOf(ColorUtils::pwmToMNormDTungstenRes16), 0x11a6cdfcb6fcc26eu);
    row("tungsten 8 bit", checksumOf(ColorUtils::pwm16ToMNormDTungstenRes8), 0xd971f77657b18f7au);
    row("tungsten 8 bit, array", checksumOf(ColorUtils::pwmToMNormDTungstenRes8), 0xd971f77657b18f7au);
    row("linear 16 bit, array", checksumOf(ColorUtils::pwmToMNormDLinearRes16), 0xba36b3170979df25u);
    row("linear 8 bit", checksumOf(ColorUtils::pwm16ToMNormDLinearRes8), 0xa944ce4b92dda6a5u);
    row("linear 8 bit, array", checksumOf(ColorUtils::pwmToMNormDLinearRes8), 0xa944ce4b92dda6a5u);
    row("square law 8 bit", checksumOf(ColorUtils::lut16BitToBit), 0xd42e537244000537u);
}

void tst_ColorUtilsCurves::inversesOverWholeDomain()
{
    QFETCH(quint64, actual);
    QFETCH(quint64, expected);
    QCOMPARE(actual, expected);
}

void tst_ColorUtilsCurves::arraysOfNoValuesWriteNothing()
{
    for (const int count : {0, -1}) {
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDNormRes16, count));
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDNormRes8, count));
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDTungstenRes16, count));
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDTungstenRes8, count));
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDLinearRes16, count));
        QVERIFY(writesNothing(ColorUtils::pwmToMNormDLinearRes8, count));
    }
}

void tst_ColorUtilsCurves::tungstenDim_data()
{
    QTest::addColumn<int>("dmx");
    QTest::addColumn<float>("value");
    for (const DimRow &row : TUNGSTEN_DIM)
        QTest::newRow(qPrintable(QString("DMX %1").arg(row.dmx))) << row.dmx << row.value;
}

void tst_ColorUtilsCurves::tungstenDim()
{
    QFETCH(int, dmx);
    QFETCH(float, value);
    QVERIFY(dimValue(ColorUtils::dmx16ToTungstenDimRatio, dmx, 65535.0) == value);
}

void tst_ColorUtilsCurves::squareLawDim_data()
{
    QTest::addColumn<int>("dmx");
    QTest::addColumn<float>("value");
    for (const DimRow &row : SQUARE_LAW_DIM)
        QTest::newRow(qPrintable(QString("DMX %1").arg(row.dmx))) << row.dmx << row.value;
}

void tst_ColorUtilsCurves::squareLawDim()
{
    QFETCH(int, dmx);
    QFETCH(float, value);
    QVERIFY(dimValue(ColorUtils::dmx16ToSquareLawDimRatio, dmx, 65516.0) == value);
}

void tst_ColorUtilsCurves::dimOverWholeDomain()
{
    QCOMPARE(checksumOf(ColorUtils::dmx16ToTungstenDimRatio, 65535.0), quint64(0x77b47557e1a1a490u));
    QCOMPARE(checksumOf(ColorUtils::dmx16ToSquareLawDimRatio, 65516.0), quint64(0xd6104a566d201bf8u));
}

void tst_ColorUtilsCurves::dimRatioStaysInRange()
{
    for (int dmx = 0; dmx <= 11083; ++dmx)
        QVERIFY(ColorUtils::dmx16ToTungstenDimRatio(Word(dmx)) == 0.0);
    QVERIFY(ColorUtils::dmx16ToTungstenDimRatio(11084) > 0.0);
    QVERIFY(ColorUtils::dmx16ToTungstenDimRatio(65341) < 1.0);
    for (int dmx = 65342; dmx < DOMAIN_SIZE; ++dmx)
        QVERIFY(ColorUtils::dmx16ToTungstenDimRatio(Word(dmx)) == 1.0);

    QVERIFY(ColorUtils::dmx16ToSquareLawDimRatio(0) == 0.0);
    QVERIFY(ColorUtils::dmx16ToSquareLawDimRatio(1) > 0.0);
    QVERIFY(ColorUtils::dmx16ToSquareLawDimRatio(65534) < 1.0);
    QVERIFY(ColorUtils::dmx16ToSquareLawDimRatio(65535) == 1.0);
}

void tst_ColorUtilsCurves::odd31_softwareTruncatesAndPreCompensationRounds()
{
    QCOMPARE(appliedBytes({0.5}, 1, 2, LINEAR, SOFTWARE), inBuffer("7fff"));
    QCOMPARE(appliedBytes({0.5}, 1, 2, LINEAR, PRE_COMPENSATION), inBuffer("8000"));
    QCOMPARE(appliedBytes({0.5}, 1, 1, LINEAR, SOFTWARE), inBuffer("80"));
    QCOMPARE(appliedWords({0.5}, LINEAR, SOFTWARE)[0], 0x7FFF);
    QCOMPARE(appliedWords({0.5}, LINEAR, PRE_COMPENSATION)[0], 0x8000);
}

void tst_ColorUtilsCurves::odd32_bytesAreSwappedWithPositionI()
{
    const Levels levels{levelOf(0x1234), levelOf(0x5678), levelOf(0x9ABC), levelOf(0xDEF0), levelOf(0x2468)};
    const char *const swapped[] = {"1234", "12345634", "123456349a56", "123456349a56de34", "123456349a56de34249a"};
    for (int count = 1; count <= 5; ++count)
        QCOMPARE(appliedBytes(levels, count, 2, LINEAR, PRE_COMPENSATION), inBuffer(swapped[count - 1]));
}

void tst_ColorUtilsCurves::odd33_tungsten16NeverExceeds255()
{
    for (int pwm = 0; pwm < DOMAIN_SIZE; ++pwm)
        QCOMPARE(int(ColorUtils::pwm16ToMNormDTungstenRes16(Word(pwm))), pwm <= 4 ? pwm : 255);
    QCOMPARE(int(ColorUtils::pwm16ToMNormDNormRes16(65535)), 65535);
}

void tst_ColorUtilsCurves::odd34_singleDiscriminantAndSolutionDoubleRoot()
{
    const auto root = [](float y) { return ColorUtils::quadraticSolver(1.425e-5f, 0.065898f, -0.065865f, y, 65535); };
    // A discriminant in double would give 23260.
    QVERIFY(root(9242) == 23259);
    // Its root in single would give 13508.
    QVERIFY(root(3490) == 13507);
    // A solution kept in double would give 12551.
    QVERIFY(root(3072) == 12552);
}

void tst_ColorUtilsCurves::odd35_squareLawFullScaleIs65516()
{
    QVERIFY(ColorUtils::dmx16ToSquareLawDimRatio(65535) == 1.0);
    QVERIFY(dimValue(ColorUtils::dmx16ToSquareLawDimRatio, 65530, 65516.0) == 65507.1055f);
    QVERIFY(dimValue(ColorUtils::dmx16ToTungstenDimRatio, 65341, 65535.0) == 65533.7305f);
}

const ChildCases childCases{
    {"normal above 1", [] { appliedBytes({2.0}, 1, 1, NORMAL, SOFTWARE); }},
    {"tungsten below 0", [] { appliedBytes({-0.5}, 1, 1, TUNGSTEN, SOFTWARE); }},
};

TREL_TEST_MAIN(tst_ColorUtilsCurves, childCases)

#include "tst_ColorUtilsCurves.moc"
