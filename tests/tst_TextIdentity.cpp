#include "PlainText.h"
#include "TestSupport.h"

#include <QDataStream>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

/// Text forms and HSV of the library, beside the plain ones: the same characters, colours and warnings for anything.
class tst_TextIdentity : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void writing_data();
    void writing();
    void sixDecimals();
    void readingMangledTexts();
    void readingHexadecimals();
    void hsvOfRandomColors();
    void hsvOfGreysAndEqualComponents();
    void hsvBetweenTwoHundredthsOfADegree();
};

namespace {

// Nothing of this is quick where nothing is optimised.
#ifdef NDEBUG
constexpr int ROUNDS = 32000;
#else
constexpr int ROUNDS = 2000;
#endif

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double TIE = 1.0 / 128; // 0.0078125: the seventh decimal is an exact half

constexpr unsigned int AWKWARD_WORDS[] = {0,          1,          0x7FFF,     0x8000,     0xFFFF,
                                          0x10000,    0x01010101, 0x7FFFFFFF, 0x80000000, 0x80008000,
                                          0xFFFEFFFF, 0xFFFF0000, 0xFFFFFFFE, 0xFFFFFFFF};

constexpr double AWKWARD_REALS[] = {0.0,
                                    -0.0,
                                    1.0,
                                    TIE,
                                    3 * TIE,
                                    -TIE,
                                    0.5e-6,
                                    1.5e-6,
                                    4.9e-7,
                                    0.9999995,
                                    0.99999949999,
                                    0.3127,
                                    0.329,
                                    1e-300,
                                    5e-324,
                                    1e15 + 0.3,
                                    4503599627370497.5,
                                    1e6 - 0.5e-6,
                                    999999.9999995,
                                    1e9 + TIE,
                                    1e12,
                                    1e22,
                                    1.7e308,
                                    -0.25,
                                    -1e-9,
                                    INF,
                                    -INF,
                                    NOT_A_NUMBER};

/// What stands where a number belongs, and is one for some readers.
const QStringList AWKWARD_FIELDS{"",
                                 " ",
                                 "0",
                                 "-0",
                                 "+1",
                                 "-1",
                                 "--1",
                                 "1-",
                                 "007",
                                 "00000000000000000000000000000000000001",
                                 "65535",
                                 "65536",
                                 "4294967295",
                                 "4294967296",
                                 "2147483647",
                                 "2147483648",
                                 "-2147483648",
                                 "-2147483649",
                                 "99999999999999999999",
                                 "0999999999",
                                 "1000000000",
                                 "1e3",
                                 "1E3",
                                 "1e",
                                 "e1",
                                 "0x10",
                                 "0b1",
                                 " 7",
                                 "7 ",
                                 "\t7\n",
                                 "7 7",
                                 "1.5",
                                 ".5",
                                 "5.",
                                 ".",
                                 "1..5",
                                 "1.5.5",
                                 "0.0078125",
                                 "1,5",
                                 "1,000",
                                 "1 000",
                                 "1_000",
                                 "1e-400",
                                 "1e400",
                                 "-1e400",
                                 "inf",
                                 "-inf",
                                 "+inf",
                                 "INF",
                                 "infinity",
                                 "nan",
                                 "-nan",
                                 "NaN",
                                 "0.1234567890123456789012345",
                                 "123456789012345678",
                                 "9007199254740993",
                                 "0.000000000000001",
                                 "0.00000000000000000000000001",
                                 "123456789012345",
                                 "1234567890123456",
                                 "999999.9999999999",
                                 "0.3127f",
                                 "1.0L",
                                 "#",
                                 "#ff",
                                 "#ffffffff00000000",
                                 "#FFff00AA80801234",
                                 "ffffffff00000000",
                                 "aRgb",
                                 "aYxy",
                                 QString::fromUtf8("７"),
                                 QString::fromUtf8("−1"),
                                 QString::fromUtf8("٣"),
                                 QString::fromUtf8("1 000"),
                                 QString(1, QChar(0)),
                                 QString("1") + QChar(0),
                                 QString("1") + QChar(0) + '2',
                                 QString(400, '9'),
                                 "0." + QString(400, '9')};

const QStringList SEEDS{"aRgb;1;0;#ffffffff00000000",
                        "aRgb;3;5;#80ff0000",
                        "aRgb;1;0;ffffffff00000000",
                        "aYxy;1;0;65535;1.000000;0.312700;0.329000",
                        "aYxy;3;5;65535;0.5;0.3;0.3",
                        "aYxy;1;0;70000;0.5;0.3;0.3",
                        "aNchannel;6;5;65535;100;200;300;400;1",
                        "aNchannel;1;0;65535;65535;0;0;0",
                        "aNchannel;1;0;70000;1;2",
                        "aNchannel;1;0;5",
                        "aHsv;1;0;65535;1;2;3",
                        "#ff8000",
                        "#80ff8000",
                        "#ffff80000000",
                        "#;1;2;3",
                        "red",
                        "Dark Orange",
                        "transparent",
                        ";;;",
                        ""};

class Random
{
public:
    explicit Random(unsigned int seed)
        : m_engine(seed)
    {
    }
    unsigned int word()
    {
        return unsigned(m_engine());
    }
    int below(int end)
    {
        return int(word() % unsigned(end));
    }
    bool once(int in)
    {
        return below(in) == 0;
    }
    double unit()
    {
        return double(word()) / double(std::mt19937::max());
    }
    template <typename List>
    auto oneOf(const List &list)
    {
        return list[below(int(std::size(list)))];
    }

private:
    std::mt19937 m_engine; // the standard library's distributions differ between implementations
};

/// Everything that a colour shows of itself, bit by bit.
struct State
{
    explicit State(const TrelColor &color)
        : configuration(color.getChannelConfiguration())
        , profile(color.getHuelockProfileID())
    {
        QDataStream stream(&words, QIODevice::WriteOnly);
        stream << color;
        color.getNChannelF(&levels);
        if (color.spec() == TrelColor::Yxy || color.spec() == TrelColor::Invalid) {
            const double components[] = {color.getY(), color.getx(), color.gety()};
            std::memcpy(reals.data(), components, sizeof components);
        }
    }
    bool operator==(const State &other) const
    {
        return words == other.words && configuration == other.configuration && profile == other.profile
               && reals == other.reals && levels == other.levels;
    }

    QByteArray words; ///< form, alpha, three component words
    int configuration;
    int profile;
    std::array<quint64, 3> reals = {};
    QVector<double> levels;
};

/// Collects the warnings while it lives.
class Warnings
{
public:
    Warnings()
        : m_previous(qInstallMessageHandler(collect))
    {
        s_texts.clear();
    }
    ~Warnings()
    {
        qInstallMessageHandler(m_previous);
    }
    Q_DISABLE_COPY(Warnings)

    /// What was said since the last call.
    static QStringList taken()
    {
        QStringList texts;
        texts.swap(s_texts);
        return texts;
    }

private:
    static void collect(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type == QtWarningMsg)
            s_texts.append(text);
    }

    static inline QStringList s_texts;
    QtMessageHandler m_previous;
};

QByteArray shown(const QString &text)
{
    return '"' + text.toUtf8().toPercentEncoding(" #;+-.,") + '"';
}

double randomReal(Random &random)
{
    switch (random.below(6)) {
    case 0:
        return random.oneOf(AWKWARD_REALS);
    case 1: // a half in the seventh decimal, or as near as a double comes
        return (random.below(2000000) + 0.5) / 1e6;
    case 2:
        return std::ldexp(random.unit(), random.below(60) - 40) * (random.once(4) ? -1 : 1);
    default:
        return random.unit();
    }
}

unsigned int randomWord(Random &random)
{
    return random.once(4) ? random.oneOf(AWKWARD_WORDS) : random.word();
}

ColorUtils::ChannelConfiguration randomConfiguration(Random &random)
{
    return ColorUtils::ChannelConfiguration(random.once(20) ? int(random.word()) : random.below(8));
}

ColorUtils::HuelockProfileID randomProfile(Random &random)
{
    return ColorUtils::HuelockProfileID(random.once(20) ? int(random.word()) : random.below(12) - 1);
}

double fraction(unsigned int word)
{
    return word / 4294967295.0;
}

TrelColor randomRgb(Random &random)
{
    return TrelColor::fromRgbF(fraction(randomWord(random)), fraction(randomWord(random)), fraction(randomWord(random)),
                               fraction(randomWord(random)), randomProfile(random));
}

TrelColor randomHsv(Random &random)
{
    TrelColor color;
    const double saturation = random.once(6) ? 0 : fraction(randomWord(random));
    if (random.once(3)) {
        const int hue = random.once(8) ? int(random.word() >> 16) - 40000 : random.below(720) - 360;
        color.setHsv16(hue, unsigned(saturation * 65535), randomWord(random) >> 16, randomWord(random) >> 16,
                       randomProfile(random));
    } else {
        const double hue = random.once(8) ? -1.0 : random.once(8) ? random.below(7) / 6.0 : random.unit();
        color.setHsvF(hue, saturation, fraction(randomWord(random)), random.unit(), randomProfile(random));
    }
    return color;
}

TrelColor randomYxy(Random &random)
{
    // A Yxy setter keeps the configuration.
    TrelColor color = TrelColor::fromNChannel16({65535}, randomConfiguration(random), randomProfile(random));
    color.setYxyF(randomReal(random), randomReal(random), randomReal(random), fraction(randomWord(random)),
                  randomProfile(random));
    return color;
}

TrelColor randomLevels(Random &random)
{
    QVector<double> levels{fraction(randomWord(random))};
    for (int n = random.once(10) ? random.below(40) : random.below(7); n > 0; --n)
        levels.append(fraction(randomWord(random)));
    TrelColor color = TrelColor::fromNChannelF(levels, randomConfiguration(random), randomProfile(random));
    const int type = random.once(5) ? int(random.word()) : random.below(2);
    color.setNChannelRenderType(TrelColor::NChannelRenderType(type));
    return color;
}

using MakeColor = TrelColor (*)(Random &random);
constexpr MakeColor MAKERS[] = {randomRgb, randomHsv, randomYxy, randomLevels, [](Random &) { return TrelColor(); }};

/// Reads \a text, starting from \a before. How the library's colour and warnings differ from the plain reader's; empty
/// where they do not.
QByteArray readingDifference(const QString &text, const TrelColor &before)
{
    TrelColor actual = before;
    actual.setNamedColor(text);
    const QStringList warnings = Warnings::taken();
    TrelColor expected = before;
    PlainText::setNamedColor(expected, text);
    const QStringList expectedWarnings = Warnings::taken();

    const QByteArray what =
        shown(text) + " reads as " + shown(PlainText::aName(actual)) + ", plainly " + shown(PlainText::aName(expected));
    if (warnings != expectedWarnings)
        return what + "; says " + shown(warnings.join("; ")) + ", plainly " + shown(expectedWarnings.join("; "));
    if (!(State(actual) == State(expected)))
        return what;
    // No invalid colour equals another, nor one that holds NaN.
    const bool isComparable = actual.isValid() && actual == actual;
    return isComparable && actual != expected ? what + ", unequal" : QByteArray();
}

} // namespace

Q_DECLARE_METATYPE(MakeColor)

namespace {

QString randomCharacter(Random &random)
{
    static const QString CHARACTERS = QString::fromUtf8(" +-;;;#.,0123456789abcdefABCDEFxeRgbYNchl\tÿĀ１\U0001F308");
    return random.once(40) ? QString(1, QChar(0)) : QString(random.oneOf(CHARACTERS));
}

QString mangledFields(const QString &text, Random &random)
{
    QStringList fields = text.split(';');
    const int at = random.below(int(fields.size()));
    switch (random.below(4)) {
    case 0:
        fields.removeAt(at);
        break;
    case 1:
        fields.insert(at, fields.at(at));
        break;
    case 2:
        fields.swapItemsAt(at, random.below(int(fields.size())));
        break;
    default:
        fields[at] = random.oneOf(AWKWARD_FIELDS);
    }
    return fields.join(';');
}

QString mangledCharacters(QString text, Random &random)
{
    const int at = random.below(int(text.size()) + 1);
    switch (random.below(6)) {
    case 0:
        return text.left(at);
    case 1:
        return text.mid(at);
    case 2:
        return text.remove(at, 1 + random.below(3));
    case 3:
        return text.insert(at, randomCharacter(random));
    case 4:
        return text.replace(at, 1, randomCharacter(random));
    default:
        return random.once(2) ? text.toUpper() : text + random.oneOf(SEEDS);
    }
}

QString mangledText(Random &random)
{
    QString text = random.once(2) ? random.oneOf(SEEDS) : PlainText::aName(random.oneOf(MAKERS)(random));
    for (int n = random.below(4); n > 0; --n)
        text = random.once(3) ? mangledCharacters(text, random) : mangledFields(text, random);
    return text;
}

} // namespace

void tst_TextIdentity::writing_data()
{
    QTest::addColumn<MakeColor>("make");
    QTest::newRow("RGB") << MAKERS[0];
    QTest::newRow("HSV") << MAKERS[1];
    QTest::newRow("Yxy") << MAKERS[2];
    QTest::newRow("channel levels") << MAKERS[3];
    QTest::newRow("invalid") << MAKERS[4];
}

void tst_TextIdentity::writing()
{
    QFETCH(MakeColor, make);
    const Warnings warnings;
    Random random(1);
    for (int n = 0; n < 2 * ROUNDS; ++n) {
        const TrelColor color = make(random);
        const QString text = PlainText::aName(color);
        QCOMPARE(color.aName(), text);
        // The name of the others is that of their RGB form, which takes a while to find.
        if (color.spec() <= TrelColor::Hsv || n % 1000 == 0)
            QCOMPARE(color.name(), PlainText::name(color));
        const QByteArray difference = readingDifference(text, make(random));
        QVERIFY2(difference.isEmpty(), difference.constData());
    }
}

void tst_TextIdentity::sixDecimals()
{
    Random random(2);
    TrelColor color;
    const auto check = [&](double Y) {
        color.setYxy16(Y, 0.3127, 0.329);
        return color.aName() == PlainText::aName(color);
    };
    for (int n = 0; n < 5 * ROUNDS; ++n) {
        // Around a half in the seventh decimal, where a product rounds either way.
        double real = (random.below(1 << (1 + random.below(30))) + 0.5) / 1e6;
        for (int step = random.below(4); step > 0; --step)
            real = std::nextafter(real, random.once(2) ? INF : -INF);
        QVERIFY2(check(real), QByteArray::number(real, 'g', 17).constData());
    }
    // All the exact halves below 10: (2n + 1) / 128.
    for (int n = 0; n < 640; ++n)
        QVERIFY2(check((2 * n + 1) * TIE), QByteArray::number(n).constData());
    for (const double real : AWKWARD_REALS)
        QVERIFY2(check(real), QByteArray::number(real, 'g', 17).constData());
}

void tst_TextIdentity::readingMangledTexts()
{
    const Warnings warnings;
    Random random(3);
    for (const QString &text : SEEDS + AWKWARD_FIELDS) {
        for (const MakeColor make : MAKERS)
            QCOMPARE(readingDifference(text, make(random)), QByteArray());
    }
    for (const QString &seed : SEEDS) {
        const int count = int(seed.count(';')) + 1;
        for (int i = 0; i < count * int(AWKWARD_FIELDS.size()); ++i) {
            QStringList fields = seed.split(';');
            fields[i % count] = AWKWARD_FIELDS.at(i / count);
            QCOMPARE(readingDifference(fields.join(';'), randomLevels(random)), QByteArray());
        }
    }
    for (int n = 0; n < 8 * ROUNDS; ++n)
        QCOMPARE(readingDifference(mangledText(random), random.oneOf(MAKERS)(random)), QByteArray());
}

void tst_TextIdentity::readingHexadecimals()
{
    const Warnings warnings;
    const QString digits = "0123456789abcdefABCDEF";
    const int lengths[] = {3, 4, 6, 6, 6, 8, 8, 9, 12, 12, 16, 16, 17};
    Random random(4);
    for (int n = 0; n < 8 * ROUNDS; ++n) {
        QString text = "#";
        const int length = random.once(8) ? random.below(20) : random.oneOf(lengths);
        while (text.size() <= length)
            text += random.oneOf(digits);
        if (random.once(3)) {
            const int at = random.below(int(text.size()));
            text[at] = random.once(4) ? QChar(random.word() & 0xFFFF) : QChar(random.word() & 0xFF);
        }
        QCOMPARE(readingDifference(text, TrelColor()), QByteArray());

        std::array<unsigned int, 4> actual = {};
        std::array<unsigned int, 4> expected = {};
        const bool isHex = PlainText::getHexRgb16(text, expected.data());
        QVERIFY2(get_hex_rgb16(text.constData(), int(text.size()), actual.data()) == isHex, shown(text).constData());
        QVERIFY2(actual == expected, shown(text).constData());
        // The form for bytes has no longest length.
        if (text.size() <= 17) {
            actual = {};
            QCOMPARE(get_hex_rgb16(text.toLatin1().constData(), actual.data()),
                     PlainText::getHexRgb16(QString::fromLatin1(text.toLatin1()), expected.data()));
            QVERIFY2(actual == expected, shown(text).constData());
        }
    }
}

namespace {

QByteArray hsvDifference(unsigned int red, unsigned int green, unsigned int blue)
{
    const TrelColor color = TrelColor::fromRgbF(fraction(red), fraction(green), fraction(blue), fraction(0x12345678),
                                                ColorUtils::PIXELNODE_RGB_CLASS);
    const PlainText::HsvWords words = PlainText::toHsv16(red, green, blue);
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << qint8(TrelColor::Hsv) << 0x12345678 << words.hue << words.saturation << words.value;

    const State actual(color.toHsv16());
    if (actual.words == bytes && actual.configuration == ColorUtils::CONFIG_RGB
        && actual.profile == ColorUtils::PIXELNODE_RGB_CLASS)
        return {};
    return QByteArray::number(red, 16) + ' ' + QByteArray::number(green, 16) + ' ' + QByteArray::number(blue, 16)
           + " becomes " + actual.words.toHex() + ", plainly " + bytes.toHex();
}

} // namespace

void tst_TextIdentity::hsvOfRandomColors()
{
    Random random(5);
    for (int n = 0; n < 32 * ROUNDS; ++n) {
        unsigned int words[] = {random.word(), random.word(), random.word()};
        if (n % 2 == 0) {
            for (unsigned int &word : words)
                word = (word & 0xFFFF) * 0x10001;
        }
        QCOMPARE(hsvDifference(words[0], words[1], words[2]), QByteArray());
    }
}

void tst_TextIdentity::hsvOfGreysAndEqualComponents()
{
    for (unsigned int grey = 0; grey < 65536; ++grey)
        QCOMPARE(hsvDifference(grey * 0x10001, grey * 0x10001, grey * 0x10001), QByteArray());
    for (const unsigned int red : AWKWARD_WORDS) {
        for (const unsigned int green : AWKWARD_WORDS) {
            for (const unsigned int blue : AWKWARD_WORDS)
                QCOMPARE(hsvDifference(red, green, blue), QByteArray());
        }
    }
    Random random(6);
    for (int n = 0; n < ROUNDS; ++n) {
        const unsigned int a = random.word();
        const unsigned int b = random.once(2) ? random.word() : a + unsigned(random.below(5)) - 2;
        QCOMPARE(hsvDifference(a, a, b), QByteArray());
        QCOMPARE(hsvDifference(a, b, a), QByteArray());
        QCOMPARE(hsvDifference(b, a, a), QByteArray());
    }
}

void tst_TextIdentity::hsvBetweenTwoHundredthsOfADegree()
{
    // A sixth of the circle has 6000 hundredths: steps of 1/12000 of the difference are exact halves.
    Random random(7);
    for (int n = 0; n < 2 * ROUNDS; ++n) {
        const unsigned int step = 0x10001 * unsigned(1 + random.below(5));
        const unsigned int low = random.word() % (0xFFFFFFFF - 12000 * step);
        const unsigned int middle = low + step * unsigned(random.below(12001));
        const unsigned int high = low + 12000 * step;
        QCOMPARE(hsvDifference(high, middle, low), QByteArray());
        QCOMPARE(hsvDifference(high, low, middle), QByteArray());
        QCOMPARE(hsvDifference(middle, high, low), QByteArray());
        QCOMPARE(hsvDifference(low, high, middle), QByteArray());
        QCOMPARE(hsvDifference(middle, low, high), QByteArray());
        QCOMPARE(hsvDifference(low, middle, high), QByteArray());
    }
}

TREL_TEST_MAIN(tst_TextIdentity, {})
#include "tst_TextIdentity.moc"
