#include "TestSupport.h"

#include <TrelColor.h>

#include <QDataStream>
#include <QDebug>
#include <QMimeData>
#include <QScopedPointer>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

using Levels16 = QVector<unsigned int>;

namespace {

constexpr char RANGE_WARNING[] = "TrelColor::setRgb16: RGB parameters out of range";
constexpr char NAME_WARNING[] = "TrelColor::setNamedColor: Unknown color name '";
constexpr char DEFAULT[] = "Invalid 1/0 ffffffff 0 0 0";
constexpr int STREAM_SIZE = 1 + 4 * 4;

// Six decimals are written.
constexpr double TEXT_TOLERANCE = 0.5e-6;

constexpr ColorUtils::HuelockProfileID profileId(int id)
{
    return static_cast<ColorUtils::HuelockProfileID>(id);
}

constexpr ColorUtils::ChannelConfiguration configurationId(int id)
{
    return static_cast<ColorUtils::ChannelConfiguration>(id);
}

unsigned int wordOf(double real)
{
    return static_cast<unsigned int>(real * 4294967295.0 + 0.5);
}

QString hex(unsigned int word)
{
    return QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0'));
}

// Every field as text: form, configuration/profile, alpha word, components, "|" and the level words if there are any.
QString describe(const TrelColor &color)
{
    static const QStringList FORMS{"Invalid", "Rgb", "Hsv", "Yxy", "Nchannel"};
    QStringList parts{FORMS.value(color.spec(), "?"),
                      QStringLiteral("%1/%2").arg(color.getChannelConfiguration()).arg(color.getHuelockProfileID()),
                      hex(wordOf(color.alphaF()))};
    if (color.spec() == TrelColor::Rgb)
        parts << hex(wordOf(color.redF())) << hex(wordOf(color.greenF())) << hex(wordOf(color.blueF()));
    else if (color.spec() == TrelColor::Hsv)
        parts << QString::number(color.hueF() * 360) << hex(wordOf(color.saturationF())) << hex(wordOf(color.valueF()));
    else if (color.spec() == TrelColor::Nchannel)
        parts << QString::number(color.getNChannelRenderType());
    else
        parts << QString::number(color.getY()) << QString::number(color.getx()) << QString::number(color.gety());

    QVector<double> levels;
    color.getNChannelF(&levels);
    for (int i = 1; i < int(levels.size()); ++i)
        parts << (i == 1 ? "| " : "") + hex(wordOf(levels[i]));
    return parts.join(' ');
}

TrelColor nChannel(const Levels16 &alphaAndLevels, int configuration, int profile, int renderType)
{
    TrelColor color = TrelColor::fromNChannel16(alphaAndLevels, configurationId(configuration), profileId(profile));
    color.setNChannelRenderType(static_cast<TrelColor::NChannelRenderType>(renderType));
    return color;
}

TrelColor yxy(double Y, double x, double y, unsigned int alpha, int configuration, int profile)
{
    TrelColor color = nChannel({65535}, configuration, 0, 0);
    color.setYxy16(Y, x, y, alpha, profileId(profile));
    return color;
}

TrelColor loaded()
{
    return nChannel({0x1234, 100, 200, 300, 400}, 6, 5, 1);
}

// Collects and swallows warnings while it lives.
class Warnings
{
public:
    Warnings()
    {
        s_texts.clear();
        s_previous = qInstallMessageHandler(record);
    }
    ~Warnings()
    {
        qInstallMessageHandler(s_previous);
    }
    Warnings(const Warnings &) = delete;
    Warnings &operator=(const Warnings &) = delete;

    QStringList take()
    {
        QStringList texts;
        texts.swap(s_texts);
        return texts;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        if (type == QtWarningMsg)
            s_texts.append(text);
        else
            s_previous(type, context, text);
    }

    static inline QStringList s_texts;
    static inline QtMessageHandler s_previous = nullptr;
};

template <typename Row, size_t count>
void addRows(const Row (&rows)[count])
{
    QTest::addColumn<int>("row");
    for (size_t i = 0; i < count; ++i)
        QTest::newRow(rows[i].name) << int(i);
}

struct WriteRow
{
    const char *name;
    TrelColor (*color)();
    const char *text;
};

const WriteRow VALUE_STRINGS[] = {
    {"opaque red", [] { return TrelColor::fromRgb8(255, 0, 0, 255, profileId(0)); }, "aRgb;1;0;#ffffffff00000000"},
    {"RGB: four lower-case digits each, profile",
     [] { return TrelColor::fromRgb16(0xABCD, 0x00EF, 0x1, 0x0A0B, profileId(7)); }, "aRgb;1;7;#0a0babcd00ef0001"},
    {"RGB, high halves of the words", [] { return TrelColor::fromRgbF(0.1, 0.2, 0.9, 0.123, profileId(9)); },
     "aRgb;1;9;#1f7c19993333e666"},
    {"RGB, profile -1", [] { return TrelColor::fromRgb8(0, 0, 0, 0, profileId(-1)); }, "aRgb;1;-1;#0000000000000000"},
    {"HSV as RGB", [] { return TrelColor::fromHsv16(210, 0xAAAA, 0xC000, 0x1234, profileId(5)); },
     "aRgb;1;5;#123440008000c000"},
    {"HSV, achromatic", [] { return TrelColor::fromHsv8(-1, 0, 128, 255, profileId(0)); },
     "aRgb;1;0;#ffff808080808080"},
    {"white point", [] { return TrelColor(0.3127, 0.329); }, "aYxy;1;0;65535;1.000000;0.312700;0.329000"},
    {"Yxy: alpha, configuration, profile", [] { return yxy(0.25, 0.5, 0.125, 0x1234, 3, 5); },
     "aYxy;3;5;4660;0.250000;0.500000;0.125000"},
    {"Yxy, rounded to six decimals", [] { return yxy(0.1234567, 0.3127004, 0.9999996, 65535, 1, 0); },
     "aYxy;1;0;65535;0.123457;0.312700;1.000000"},
    {"Yxy, out of range", [] { return yxy(-1.5, 1234567.25, 0, 65535, -1, 42); },
     "aYxy;-1;42;65535;-1.500000;1234567.250000;0.000000"},
    {"three channels",
     [] {
         return nChannel({65535, 65535, 0, 0}, 1, 0, 0);
     },
     "aNchannel;1;0;65535;65535;0;0;0"},
    {"four channels from Yxy",
     [] {
         return nChannel({0x1234, 100, 200, 300, 400}, 6, 5, 1);
     },
     "aNchannel;6;5;4660;100;200;300;400;1"},
    {"no channels", [] { return nChannel({65535}, 2, -1, 0); }, "aNchannel;2;-1;65535;0"},
    {"N-channel, a large render type",
     [] {
         return nChannel({65535, 1}, 4, 4, -1);
     },
     "aNchannel;4;4;65535;1;4294967295"},
    {"invalid", [] { return TrelColor(); }, ""},
    {"invalid that holds values", [] { return yxy(0.5, 0.3, 0.25, 65536, 1, 5); }, ""},
};

struct NamesRow
{
    const char *name;
    TrelColor (*color)();
    const char *name16;
    const char *name8;
    const char *nameFull8;
};

const NamesRow NAMES[] = {
    {"RGB", [] { return TrelColor::fromRgb16(0xABCD, 0x00EF, 0x1, 0x0A0B, profileId(7)); }, "#abcd00ef0001", "#ab0000",
     "10"},
    {"opaque RGB", [] { return TrelColor::fromRgb8(1, 16, 255, 255, profileId(0)); }, "#01011010ffff", "#0110ff",
     "255"},
    {"HSV", [] { return TrelColor::fromHsv16(210, 0xAAAA, 0xC000, 65535, profileId(0)); }, "#40008000c000", "#4080c0",
     "255"},
    {"black Yxy", [] { return yxy(0, 0.3, 0.3, 0x8000, 1, 0); }, "#000000000000", "#000000", "128"},
    {"green corner in Yxy", [] { return yxy(1, 0.1, 0.8, 65535, 1, 0); }, "#0000ffff0000", "#00ff00", "255"},
    {"N-channel",
     [] {
         return nChannel({65535, 0, 65535, 100, 0x1234, 0x0FFF}, 2, 1, 0);
     },
     nullptr, nullptr, "255,0,255,0,18,15"},
    {"N-channel without channels", [] { return nChannel({0x7F00}, 2, 1, 0); }, "#000000000000", "#000000", "127"},
    {"invalid", [] { return TrelColor(); }, "#000000000000", "#000000", "255"},
};

struct ReadRow
{
    const char *name;
    const char *text;
    const char *expected;
    const char *warning; ///< or null
};

const ReadRow READS[] = {
    {"empty text", "", DEFAULT, nullptr},
    {"three digits", "#f00", DEFAULT, RANGE_WARNING},
    {"no digits", "#", DEFAULT, RANGE_WARNING},
    {"six digits", "#ff0000", "Rgb 1/0 ffffffff ffffffff 00000000 00000000", nullptr},
    {"six digits, each place", "#1A2b3C", "Rgb 1/0 ffffffff 1a1a1a1a 2b2b2b2b 3c3c3c3c", nullptr},
    {"eight digits", "#80ff0000", "Rgb 1/0 80808080 ffffffff 00000000 00000000", nullptr},
    {"eight digits, each place", "#01234567", "Rgb 1/0 01010101 23232323 45454545 67676767", nullptr},
    {"twelve digits", "#123456789abc", "Rgb 1/0 ffffffff 12341234 56785678 9abc9abc", nullptr},
    {"sixteen digits", "#123456789abcDEF0", "Rgb 1/0 12341234 56785678 9abc9abc def0def0", nullptr},
    {"seven digits", "#ff00000", DEFAULT, RANGE_WARNING},
    {"fifteen digits", "#123456789abcdef", DEFAULT, RANGE_WARNING},
    {"seventeen digits: too long for the reader", "#123456789abcdef01", DEFAULT, nullptr},
    {"wrong digit", "#gg0000", DEFAULT, RANGE_WARNING},
    {"wrong last digit", "#00000g", DEFAULT, RANGE_WARNING},
    {"wrong digit of alpha", "#0g00000000000000", DEFAULT, RANGE_WARNING},
    {"blank before", " #ff0000", DEFAULT, "TrelColor::setNamedColor: Unknown color name ' #ff0000'"},

    {"colour name", "red", "Rgb 1/0 ffffffff ffffffff 00000000 00000000", nullptr},
    {"colour name, case and blanks as Qt has them", "Steel Blue", "Rgb 1/0 ffffffff 46464646 82828282 b4b4b4b4",
     nullptr},
    {"transparent", "transparent", "Rgb 1/0 00000000 00000000 00000000 00000000", nullptr},
    {"unknown name", "nosuchcolour", DEFAULT, "TrelColor::setNamedColor: Unknown color name 'nosuchcolour'"},
    {"unknown name beyond Latin-1", "\xe6\x97\xa5", DEFAULT, "TrelColor::setNamedColor: Unknown color name '?'"},
    {"percent signs", "%s%n", DEFAULT, "TrelColor::setNamedColor: Unknown color name '%s%n'"},

    {"aRgb in the default profile", "aRgb;1;0;#ffffffff00000000", "Rgb 1/0 ffffffff ffffffff 00000000 00000000",
     nullptr},
    {"aRgb with six digits", "aRgb;1;0;#102030", "Rgb 1/0 ffffffff 10101010 20202020 30303030", nullptr},
    {"aRgb without #", "aRgb;1;0;ffffffff00000000", DEFAULT, nullptr},
    {"aRgb, wrong length", "aRgb;3;5;#fff", DEFAULT, RANGE_WARNING},
    {"aRgb, wrong digit", "aRgb;3;5;#fffffffx00000000", DEFAULT, RANGE_WARNING},
    {"aRgb, too long", "aRgb;3;5;#ffffffff000000000", DEFAULT, nullptr},
    {"aRgb, empty part", "aRgb;3;5;", DEFAULT, nullptr},
    {"aRgb, five parts", "aRgb;3;5;#ff0000;", DEFAULT, nullptr},
    {"aRgb, three parts", "aRgb;3;5", DEFAULT, nullptr},
    {"one separator", ";", DEFAULT, nullptr},
    {"two separators", "red;;", DEFAULT, nullptr},

    {"aYxy, six parts", "aYxy;3;5;65535;0.5;0.3", DEFAULT, nullptr},
    {"aYxy, eight parts", "aYxy;3;5;65535;0.5;0.3;0.3;", DEFAULT, nullptr},
    {"aYxy, each place", "aYxy;2;0;4660;0.5;0.25;0.125", "Yxy 2/0 12341234 0.5 0.25 0.125", nullptr},
    {"aYxy, no range check", "aYxy;2;0;0;-3;1e300;7", "Yxy 2/0 00000000 -3 1e+300 7", nullptr},
    {"aYxy, no numbers", "aYxy;a;b;c;d;e;f", "Yxy 0/0 00000000 0 0 0", nullptr},
    {"aYxy, alpha out of range", "aYxy;3;5;65536;0.5;0.25;0.125", "Invalid 1/0 ffffffff 0.5 0.25 0.125", nullptr},

    {"aNchannel", "aNchannel;6;5;65535;100;200;300;400;1",
     "Nchannel 6/5 ffffffff 1 | 00640064 00c800c8 012c012c 01900190", nullptr},
    {"aNchannel, each place", "aNchannel;-3;77;4660;1;65535;0", "Nchannel -3/77 12341234 0 | 00010001 ffffffff",
     nullptr},
    {"aNchannel without channels", "aNchannel;1;0;4660;1", "Nchannel 1/0 12341234 1", nullptr},
    {"aNchannel without alpha", "aNchannel;1;0;1", DEFAULT, nullptr},
    {"aNchannel, no numbers", "aNchannel;a;b;c;d;e", "Nchannel 0/0 00000000 0 | 00000000", nullptr},
    {"aNchannel, levels are not checked", "aNchannel;1;0;65535;65536;4294967295;0",
     "Nchannel 1/0 ffffffff 0 | 00010000 fffeffff", nullptr},
    {"aNchannel, numbers beyond 32 bits and negative ones are 0",
     "aNchannel;99999999999;-99999999999;0;4294967296;-1;-1", "Nchannel 0/0 00000000 0 | 00000000 00000000", nullptr},
    {"aNchannel, alpha out of range", "aNchannel;6;5;65536;100;0", "Invalid 6/5 ffffffff 0 0 0", nullptr},

    {"another form is a name", "foo;1;2;3", DEFAULT, "TrelColor::setNamedColor: Unknown color name 'foo;1;2;3'"},
    {"the form is case-sensitive", "argb;1;0;#ffffffff00000000", DEFAULT,
     "TrelColor::setNamedColor: Unknown color name 'argb;1;0;#ffffffff00000000'"},
    {"no form", ";;;", DEFAULT, "TrelColor::setNamedColor: Unknown color name ';;;'"},
    {"a hexadecimal form of twelve characters", "#ff0000;1;2;3", DEFAULT, RANGE_WARNING},
    {"a hexadecimal form that is too long", "#ff0000;1;2;3;4;5;6", DEFAULT, nullptr},
};

const ReadRow RGB_RESETS[] = {
    {"aRgb;3;5;#ffffffff00000000", "aRgb;3;5;#ffffffff00000000", "Rgb 1/0 ffffffff ffffffff 00000000 00000000",
     nullptr},
    {"other numbers", "aRgb;-1;42;#123456789abcdef0", "Rgb 1/0 12341234 56785678 9abc9abc def0def0", nullptr},
};

const ReadRow YXY_RESETS[] = {
    {"aYxy;3;5;65535;0.5;0.3;0.3", "aYxy;3;5;65535;0.5;0.3;0.3", "Yxy 3/0 ffffffff 0.5 0.3 0.3", nullptr},
    {"other numbers", "aYxy;-1;42;4660;1;0;0", "Yxy -1/0 12341234 1 0 0", nullptr},
};

struct HexRow
{
    const char *name;
    const char *text;
    unsigned int alpha, red, green, blue;
};

const HexRow HEX_NAMES[] = {
    {"6 digits", "#0a9Fe0", 65535, 0x0A0A, 0x9F9F, 0xE0E0},
    {"8 digits", "#80ff0001", 0x8080, 0xFFFF, 0, 0x0101},
    {"12 digits", "#0123456789ab", 65535, 0x0123, 0x4567, 0x89AB},
    {"16 digits", "#FEDCba9876543210", 0xFEDC, 0xBA98, 0x7654, 0x3210},
    {"wrong 1st digit sets every higher bit", "#g00000000000", 65535, 0xFFFFF000u, 0, 0},
    {"wrong 2nd digit", "#1g0000000000", 65535, 0xFFFFFF00u, 0, 0},
    {"wrong 3rd digit", "#00000fg00000", 65535, 0, 0xFFFFFFF0u, 0},
    {"wrong 4th digit", "#00000000abcg", 65535, 0, 0, 0xFFFFFFFFu},
    {"wrong digit of alpha", "#00-0000000000000", 0xFFFFFFF0u, 0, 0, 0},
};

constexpr unsigned int UNTOUCHED = 7;

struct Argb
{
    unsigned int values[4] = {UNTOUCHED, UNTOUCHED, UNTOUCHED, UNTOUCHED};
};

bool operator==(const Argb &a, const Argb &b)
{
    return std::equal(std::begin(a.values), std::end(a.values), std::begin(b.values));
}

const Argb WRONG_LENGTH{{0, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu}};

struct StreamRow
{
    const char *name;
    TrelColor (*color)();
    const char *bytes;
};

const StreamRow STREAMED[] = {
    {"RGB", [] { return TrelColor::fromRgb16(0x1234, 0x5678, 0x9ABC, 0xDEF0, profileId(7)); },
     "01 def0def0 12341234 56785678 9abc9abc"},
    {"HSV", [] { return TrelColor::fromHsv8(210, 0x10, 0x20, 0x30, profileId(7)); },
     "02 30303030 00005208 10101010 20202020"},
    {"HSV, achromatic", [] { return TrelColor::fromHsv8(-1, 0, 128, 255, profileId(0)); },
     "02 ffffffff ffffffff 00000000 80808080"},
    {"invalid", [] { return TrelColor(); }, "00 ffffffff 00000000 00000000 00000000"},
    {"N-channel: the render type",
     [] {
         return nChannel({0x1234, 1, 2, 3}, 6, 5, 1);
     },
     "04 12341234 00000001 00000000 00000000"},
};

QByteArray streamed(const TrelColor &color, QDataStream::ByteOrder order = QDataStream::BigEndian)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    stream << color;
    return bytes;
}

QByteArray fromHex(const char *text)
{
    return QByteArray::fromHex(QByteArray(text).replace(' ', ""));
}

TrelColor readInto(TrelColor color, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream >> color;
    return color;
}

struct DebugRow
{
    const char *name;
    TrelColor (*color)();
    const char *text;
};

const DebugRow DEBUG_FORMS[] = {
    {"invalid", [] { return TrelColor(); }, "TrelColor(Invalid) "},
    {"opaque red", [] { return TrelColor::fromRgb8(255, 0, 0, 255, profileId(0)); },
     "TrelColor(ARGB 65535, 65535, 0, 0) "},
    {"RGB, each place", [] { return TrelColor::fromRgb16(1, 2, 3, 4, profileId(0)); }, "TrelColor(ARGB 4, 1, 2, 3) "},
    {"HSV", [] { return TrelColor::fromHsv16(210, 0xAAAA, 0xC000, 0x1234, profileId(0)); },
     "TrelColor(ARGB 4660, 16384, 32768, 49152) "},
    {"Yxy", [] { return yxy(0.5, 0.25, 0.312712345, 4, 1, 0); }, "TrelColor(AYxy 4, 0.5, 0.25, 0.312712) "},
};

struct HostileRow
{
    const char *name;
    const char *text;
    TrelColor::Spec spec;
};

const HostileRow HOSTILE[] = {
    {"Yxy, configuration 0", "aYxy;0;0;65535;0.5;0.3;0.3", TrelColor::Yxy},
    {"Yxy, unknown configuration", "aYxy;42;0;65535;0.5;0.3;0.3", TrelColor::Yxy},
    {"Yxy, smallest configuration", "aYxy;-2147483648;0;65535;0.5;0.3;0.3", TrelColor::Yxy},
    {"Yxy, nan", "aYxy;1;0;65535;nan;nan;nan", TrelColor::Yxy},
    {"Yxy, nan Y", "aYxy;1;0;65535;nan;0.3;0.3", TrelColor::Yxy},
    {"Yxy, nan x", "aYxy;1;0;65535;0.5;nan;0.3", TrelColor::Yxy},
    {"Yxy, inf", "aYxy;1;0;65535;inf;inf;-inf", TrelColor::Yxy},
    {"Yxy, infinite Y", "aYxy;1;0;65535;inf;0.3;0.3", TrelColor::Yxy},
    {"Yxy, minus infinite Y", "aYxy;1;0;65535;-inf;0.3;0.3", TrelColor::Yxy},
    {"Yxy, huge", "aYxy;1;0;65535;1e308;1e308;1e308", TrelColor::Yxy},
    {"Yxy, huge Y", "aYxy;1;0;65535;1e308;0.3;0.3", TrelColor::Yxy},
    {"Yxy, large Y", "aYxy;1;0;65535;1e15;0.3;0.3", TrelColor::Yxy},
    {"Yxy, negative", "aYxy;1;0;65535;-1;-1;-1", TrelColor::Yxy},
    {"Yxy, negative Y", "aYxy;1;0;65535;-1;0.3;0.3", TrelColor::Yxy},
    {"Yxy, x 0", "aYxy;1;0;65535;1;0;0.5", TrelColor::Yxy},
    {"Yxy, y 0", "aYxy;1;0;65535;1;0.5;0", TrelColor::Yxy},
    {"Yxy, x + y = 1", "aYxy;1;0;65535;1;0.5;0.5", TrelColor::Yxy},
    {"Yxy, alpha out of range", "aYxy;1;0;4294967295;0.5;0.3;0.3", TrelColor::Invalid},
    {"Yxy, alpha out of range, nan", "aYxy;1;0;65536;nan;inf;1e308", TrelColor::Invalid},
    {"no levels", "aNchannel;1;0;65535;0", TrelColor::Nchannel},
    {"no levels, RGBAW", "aNchannel;2;1;65535;1", TrelColor::Nchannel},
    {"no alpha", "aNchannel;1;0;0", TrelColor::Invalid},
    {"configuration 0", "aNchannel;0;0;65535;1;2;3;0", TrelColor::Nchannel},
    {"configuration 7", "aNchannel;7;0;65535;1;2;3;4;5;6;7;0", TrelColor::Nchannel},
    {"configuration -1", "aNchannel;-1;0;65535;1;2;3;0", TrelColor::Nchannel},
    {"largest configuration", "aNchannel;2147483647;0;65535;1;2;3;0", TrelColor::Nchannel},
    {"smallest configuration", "aNchannel;-2147483648;0;65535;1;2;3;0", TrelColor::Nchannel},
    {"profile -1", "aNchannel;1;-1;65535;1;2;3;0", TrelColor::Nchannel},
    {"profile 10", "aNchannel;1;10;65535;1;2;3;0", TrelColor::Nchannel},
    {"profile 42, RGBWW", "aNchannel;5;42;65535;1;2;3;4;5;0", TrelColor::Nchannel},
    {"largest profile", "aNchannel;1;2147483647;65535;1;2;3;0", TrelColor::Nchannel},
    {"smallest profile", "aNchannel;1;-2147483648;65535;1;2;3;1", TrelColor::Nchannel},
    {"fewer levels than channels", "aNchannel;2;1;65535;65535;0", TrelColor::Nchannel},
    {"more levels than channels", "aNchannel;1;0;65535;0;0;0;0;0;65535;0", TrelColor::Nchannel},
    {"five levels for a three-channel profile", "aNchannel;2;7;65535;1;2;3;4;5;0", TrelColor::Nchannel},
    {"generic profile, RGBAW", "aNchannel;2;0;65535;1;2;3;4;5;0", TrelColor::Nchannel},
    {"single channel, no data beyond", "aNchannel;4;4;65535;0;0;0;65535;0", TrelColor::Nchannel},
    {"huge levels", "aNchannel;1;7;65535;4294967295;65536;99999999999;0", TrelColor::Nchannel},
    {"huge render type", "aNchannel;1;0;65535;1;2;3;4294967295", TrelColor::Nchannel},
    {"words for numbers", "aNchannel;nan;inf;65535;nan;inf;x;y", TrelColor::Nchannel},
    {"alpha out of range", "aNchannel;2;1;70000;1;2;3;4;5;1", TrelColor::Invalid},
    {"RGB, unknown configuration and profile", "aRgb;42;-7;#ffffffff00000000", TrelColor::Rgb},
};

bool inRange(unsigned int r, unsigned int g, unsigned int b)
{
    return r <= 65535 && g <= 65535 && b <= 65535;
}

bool same(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

// Reads a colour in every way. True when each answer lies in its range and the forms keep what they promise.
bool readsWell(const TrelColor &color)
{
    const TrelColor clamped = color.toRgb16(true);
    const TrelColor unclamped = color.toRgb16(false);
    const TrelColor seen = color.toYxy();
    const TrelColor hsv = color.toHsv16();
    const bool invalid = color.spec() == TrelColor::Invalid;
    bool well = clamped.spec() == (invalid ? TrelColor::Invalid : TrelColor::Rgb)
                && seen.spec() == (invalid ? TrelColor::Invalid : TrelColor::Yxy) && unclamped.spec() == clamped.spec()
                && hsv.spec() == (invalid ? TrelColor::Invalid : TrelColor::Hsv);

    well = well && inRange(color.red16(), color.green16(), color.blue16())
           && inRange(clamped.red16(), clamped.green16(), clamped.blue16())
           && inRange(unclamped.red16(), unclamped.green16(), unclamped.blue16())
           && inRange(0, color.saturation16(), color.value16());
    well = well && (invalid || (color.hue16() >= -1 && color.hue16() <= 359));
    well = well && clamped.alpha16() == color.alpha16() && seen.alpha16() == color.alpha16();
    well = well && color.getQColor(true).isValid() && color.getQColor(false).isValid();

    double Y = 0;
    double x = 0;
    double y = 0;
    color.getYxy16(&Y, &x, &y, nullptr);
    well = well && same(Y, seen.getY()) && same(x, seen.getx()) && same(y, seen.gety()) && same(Y, color.getY());
    well = well && (invalid ? !color.isBlack() : !color.isBlack() || same(Y, 0));

    QVector<int> levels;
    color.getNChannel8(&levels);
    well = well && color.nameFull8().count(',') == int(levels.size()) - 1;
    well = well && color.name().size() == 13 && color.name8().size() == 7 && color.rgb() >= 0xFF000000u;
    well = well && streamed(color).size() == STREAM_SIZE;

    const QString text = color.aName();
    return well && text.isEmpty() == invalid && TrelColor(text).aName() == text;
}

} // namespace

class tst_TrelColorText : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void aName_data();
    void aName();
    void names_data();
    void names();
    void mimeData();

    void setNamedColor_data();
    void setNamedColor();
    void odd21_readingRgbResetsConfigurationAndProfile_data();
    void odd21_readingRgbResetsConfigurationAndProfile();
    void odd22_readingYxyResetsTheProfile_data();
    void odd22_readingYxyResetsTheProfile();
    void constructors();
    void qtColorNames_data();
    void qtColorNames();
    void unknownNameIsOneWarning();

    void hexDigits();
    void hexNames_data();
    void hexNames();
    void odd23_hexNamesTakeAnyDigitAndLength_data();
    void odd23_hexNamesTakeAnyDigitAndLength();
    void hexNamesOfWideCharacters();

    void roundTripRgb();
    void roundTripHsv();
    void roundTripYxy();
    void roundTripNChannel();

    void streamWrites_data();
    void streamWrites();
    void streamWritesYxy();
    void streamByteOrder();
    void streamReads_data();
    void streamReads();
    void streamRoundTrip();
    void odd24_onlyRgbAndHsvSurviveTheStream();
    void streamReadsUnknownForms_data();
    void streamReadsUnknownForms();
    void truncatedStreamChangesNothing_data();
    void truncatedStreamChangesNothing();

    void debugForm_data();
    void debugForm();
    void debugSpacing();
    void odd25_debugFormOfNChannelIsEmpty();

    void hostileText_data();
    void hostileText();
    void thousandsOfLevels();
    void damagedText();

private:
    void checkRead(const ReadRow &row);
};

// The registries' one debug line, about the missing database, belongs to no test.
void tst_TrelColorText::initTestCase()
{
    QVERIFY(TrelColor(0x102030u).toYxy().isValid());
}

void tst_TrelColorText::aName_data()
{
    addRows(VALUE_STRINGS);
}

void tst_TrelColorText::aName()
{
    QFETCH(int, row);
    QCOMPARE(VALUE_STRINGS[row].color().aName(), QString(VALUE_STRINGS[row].text));
}

void tst_TrelColorText::names_data()
{
    addRows(NAMES);
}

void tst_TrelColorText::names()
{
    QFETCH(int, row);
    const NamesRow &expected = NAMES[row];
    const TrelColor color = expected.color();
    QCOMPARE(color.nameFull8(), QString(expected.nameFull8));
    if (!expected.name16)
        return;
    QCOMPARE(color.name(), QString(expected.name16));
    QCOMPARE(color.name8(), QString(expected.name8));
}

void tst_TrelColorText::mimeData()
{
    QCOMPARE(QString(TRELCOLOR_MIME_TYPE), QString("data/x-trelcolor"));
    for (const WriteRow &row : VALUE_STRINGS) {
        const QScopedPointer<QMimeData> data(row.color().mimeData());
        QCOMPARE(data->formats(), QStringList{"data/x-trelcolor"});
        QCOMPARE(data->data("data/x-trelcolor"), QByteArray(row.text));
    }
}

void tst_TrelColorText::checkRead(const ReadRow &row)
{
    for (TrelColor color : {TrelColor(), loaded(), yxy(0.5, 0.3, 0.25, 0x1234, 3, 7)}) {
        if (row.warning)
            expectWarning(row.warning);
        color.setNamedColor(row.text);
        QCOMPARE(describe(color), QString(row.expected));
    }
}

void tst_TrelColorText::setNamedColor_data()
{
    addRows(READS);
}

void tst_TrelColorText::setNamedColor()
{
    QFETCH(int, row);
    checkRead(READS[row]);
}

void tst_TrelColorText::odd21_readingRgbResetsConfigurationAndProfile_data()
{
    addRows(RGB_RESETS);
}

void tst_TrelColorText::odd21_readingRgbResetsConfigurationAndProfile()
{
    QFETCH(int, row);
    checkRead(RGB_RESETS[row]);
}

void tst_TrelColorText::odd22_readingYxyResetsTheProfile_data()
{
    addRows(YXY_RESETS);
}

void tst_TrelColorText::odd22_readingYxyResetsTheProfile()
{
    QFETCH(int, row);
    checkRead(YXY_RESETS[row]);
}

void tst_TrelColorText::constructors()
{
    const QString blue = "Rgb 1/0 ffffffff 00000000 00000000 ffffffff";
    QCOMPARE(describe(TrelColor("#0000ff")), blue);
    QCOMPARE(describe(TrelColor(QString("#0000ff"))), blue);
    QCOMPARE(describe(TrelColor("aNchannel;6;5;65535;100;1")), QString("Nchannel 6/5 ffffffff 1 | 00640064"));
    QCOMPARE(describe(TrelColor("")), QString(DEFAULT));
    QCOMPARE(describe(TrelColor(QString())), QString(DEFAULT));
    QCOMPARE(describe(TrelColor(static_cast<const char *>(nullptr))), QString(DEFAULT));
    expectWarning("TrelColor::setNamedColor: Unknown color name 'nosuchcolour'");
    QCOMPARE(describe(TrelColor("nosuchcolour")), QString(DEFAULT));
}

void tst_TrelColorText::qtColorNames_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = QColor::colorNames();
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_TrelColorText::qtColorNames()
{
    QFETCH(QString, name);
    const QColor expected(name);
    const TrelColor color(name);
    QCOMPARE(color.red8(), expected.red());
    QCOMPARE(color.green8(), expected.green());
    QCOMPARE(color.blue8(), expected.blue());
    QCOMPARE(color.alpha8(), expected.alpha());
    QCOMPARE(color.getQColor(true).rgba(), expected.rgba());
    QCOMPARE(wordOf(color.redF()), unsigned(expected.red()) * 0x01010101u);
}

void tst_TrelColorText::unknownNameIsOneWarning()
{
    Warnings warnings;
    QVERIFY(!TrelColor("nosuchcolour").isValid());
    QCOMPARE(warnings.take(), QStringList{QString(NAME_WARNING) + "nosuchcolour'"});
    QVERIFY(!TrelColor("#f00").isValid());
    QCOMPARE(warnings.take(), QStringList{RANGE_WARNING});
}

void tst_TrelColorText::hexDigits()
{
    const QByteArray lower = "0123456789abcdef";
    const QByteArray upper = "0123456789ABCDEF";
    for (int code = std::numeric_limits<char>::min(); code <= std::numeric_limits<char>::max(); ++code) {
        const char digit = static_cast<char>(code);
        QCOMPARE(h2i(digit), qMax(int(lower.indexOf(digit)), int(upper.indexOf(digit))));
    }
}

void tst_TrelColorText::hexNames_data()
{
    addRows(HEX_NAMES);
}

void tst_TrelColorText::hexNames()
{
    QFETCH(int, row);
    const HexRow &hexName = HEX_NAMES[row];
    const Argb expected{{hexName.alpha, hexName.red, hexName.green, hexName.blue}};
    Argb bytes;
    QVERIFY(get_hex_rgb16(hexName.text, bytes.values));
    QVERIFY(bytes == expected);

    const QString text(hexName.text);
    Argb wide;
    QVERIFY(get_hex_rgb16(text.constData(), int(text.size()), wide.values));
    QVERIFY(wide == expected);
}

void tst_TrelColorText::odd23_hexNamesTakeAnyDigitAndLength_data()
{
    QTest::addColumn<int>("digits");
    for (int digits = 0; digits <= 20; ++digits)
        QTest::addRow("%d digits", digits) << digits;
    QTest::newRow("many digits") << 100000;
}

void tst_TrelColorText::odd23_hexNamesTakeAnyDigitAndLength()
{
    QFETCH(int, digits);
    const bool known = digits == 6 || digits == 8 || digits == 12 || digits == 16;
    for (char digit : {'0', 'z'}) {
        const QByteArray text = '#' + QByteArray(digits, digit);
        Argb argb;
        QVERIFY(get_hex_rgb16(text.constData(), argb.values));
        if (!known)
            QVERIFY(argb == WRONG_LENGTH);
        else if (digit == '0')
            QVERIFY(argb == (Argb{{digits % 8 == 0 ? 0u : 65535u, 0, 0, 0}}));
        else
            QVERIFY(argb.values[1] > 65535 && argb.values[2] > 65535 && argb.values[3] > 65535);

        const bool accepted = known && digit == '0';
        if (!accepted && digits <= 16)
            expectWarning(RANGE_WARNING);
        QCOMPARE(TrelColor(text.constData()).isValid(), accepted);
    }
}

void tst_TrelColorText::hexNamesOfWideCharacters()
{
    Argb argb;
    QVERIFY(!get_hex_rgb16("ff0000", argb.values));
    QVERIFY(!get_hex_rgb16("", argb.values));
    QVERIFY(!get_hex_rgb16(static_cast<const char *>(nullptr), argb.values));

    const QString text = "#112233445566778899";
    QVERIFY(!get_hex_rgb16(text.constData(), 18, argb.values));
    QVERIFY(!get_hex_rgb16(text.constData(), 0, argb.values));
    QVERIFY(!get_hex_rgb16(text.constData() + 1, 6, argb.values));

    QVERIFY(get_hex_rgb16(text.constData(), 17, argb.values));
    QVERIFY(argb == (Argb{{0x1122, 0x3344, 0x5566, 0x7788}}));
    QVERIFY(get_hex_rgb16(text.constData(), 7, argb.values));
    QVERIFY(argb == (Argb{{65535, 0x1111, 0x2222, 0x3333}}));

    // Characters above 255 end the text, those below are wrong digits.
    const QString ended = QString("#112233") + QChar(0x0134) + "4";
    QVERIFY(get_hex_rgb16(ended.constData(), int(ended.size()), argb.values));
    QVERIFY(argb == (Argb{{65535, 0x1111, 0x2222, 0x3333}}));
    const QString wrong = QString("#11223") + QChar(0x00E9);
    QVERIFY(get_hex_rgb16(wrong.constData(), int(wrong.size()), argb.values));
    QVERIFY(argb.values[3] > 65535);
    QCOMPARE(describe(TrelColor(ended)), QString("Rgb 1/0 ffffffff 11111111 22222222 33333333"));
}

constexpr int ROUND_TRIPS = 1000;

void tst_TrelColorText::roundTripRgb()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> real(0, 1);
    for (int i = 0; i < ROUND_TRIPS; ++i) {
        const TrelColor color =
            TrelColor::fromRgbF(real(random), real(random), real(random), real(random), ColorUtils::GENERIC_RGB);
        const TrelColor read(color.aName());
        QCOMPARE(read.red16(), color.red16());
        QCOMPARE(read.green16(), color.green16());
        QCOMPARE(read.blue16(), color.blue16());
        QCOMPARE(read.alpha16(), color.alpha16());
        QCOMPARE(read.aName(), color.aName());
        QVERIFY(TrelColor(read.aName()) == read);

        const TrelColor named(color.name());
        QCOMPARE(named.name(), color.name());
        QCOMPARE(TrelColor(color.name8()).rgba(), color.rgb());
    }
}

void tst_TrelColorText::roundTripHsv()
{
    std::mt19937 random(2);
    std::uniform_int_distribution<int> hue(-1, 359);
    std::uniform_int_distribution<unsigned int> part(0, 65535);
    for (int i = 0; i < ROUND_TRIPS; ++i) {
        const TrelColor color =
            TrelColor::fromHsv16(hue(random), part(random), part(random), part(random), ColorUtils::GENERIC_RGB);
        const TrelColor read(color.aName());
        QCOMPARE(read.spec(), TrelColor::Rgb);
        QCOMPARE(read.alpha16(), color.alpha16());
        QCOMPARE(read.value16(), color.value16());
        QCOMPARE(read.aName(), color.aName());
    }
}

void tst_TrelColorText::roundTripYxy()
{
    std::mt19937 random(3);
    std::uniform_real_distribution<double> real(-2, 2);
    std::uniform_int_distribution<unsigned int> alpha(0, 65535);
    std::uniform_int_distribution<int> configuration(-5, 10);
    for (int i = 0; i < ROUND_TRIPS; ++i) {
        const TrelColor color = yxy(real(random), real(random), real(random), alpha(random), configuration(random), 0);
        const TrelColor read(color.aName());
        QCOMPARE(read.spec(), TrelColor::Yxy);
        QVERIFY(qAbs(read.getY() - color.getY()) <= TEXT_TOLERANCE);
        QVERIFY(qAbs(read.getx() - color.getx()) <= TEXT_TOLERANCE);
        QVERIFY(qAbs(read.gety() - color.gety()) <= TEXT_TOLERANCE);
        QCOMPARE(read.alpha16(), color.alpha16());
        QCOMPARE(read.getChannelConfiguration(), color.getChannelConfiguration());
        QCOMPARE(read.aName(), color.aName());
        QVERIFY(TrelColor(read.aName()) == read);
    }
}

void tst_TrelColorText::roundTripNChannel()
{
    std::mt19937 random(4);
    std::uniform_int_distribution<unsigned int> level(0, 65535);
    std::uniform_int_distribution<int> count(0, 12);
    std::uniform_int_distribution<int> small(-5, 15);
    for (int i = 0; i < ROUND_TRIPS; ++i) {
        Levels16 levels{level(random)};
        for (int channels = count(random); channels > 0; --channels)
            levels.append(level(random));
        const TrelColor color = nChannel(levels, small(random), small(random), i % 3);
        const TrelColor read(color.aName());
        QVERIFY(read == color);
        QCOMPARE(describe(read), describe(color));
        QCOMPARE(read.aName(), color.aName());
    }
}

void tst_TrelColorText::streamWrites_data()
{
    addRows(STREAMED);
}

void tst_TrelColorText::streamWrites()
{
    QFETCH(int, row);
    QCOMPARE(streamed(STREAMED[row].color()).toHex(), fromHex(STREAMED[row].bytes).toHex());
}

// The three words are the first half of the doubles' storage, in the machine's order.
void tst_TrelColorText::streamWritesYxy()
{
    const double reals[3] = {0.7, 0.3, 0.25};
    unsigned int words[3];
    std::memcpy(words, reals, sizeof(words));
    const QString expected = "03ffffffff" + hex(words[0]) + hex(words[1]) + hex(words[2]);
    QCOMPARE(QString(streamed(yxy(reals[0], reals[1], reals[2], 65535, 3, 5)).toHex()), expected);
}

void tst_TrelColorText::streamByteOrder()
{
    const TrelColor color = STREAMED[0].color();
    const QByteArray bytes = fromHex("01 f0def0de 34123412 78567856 bc9abc9a");
    QCOMPARE(streamed(color, QDataStream::LittleEndian).toHex(), bytes.toHex());

    QDataStream stream(bytes);
    stream.setByteOrder(QDataStream::LittleEndian);
    TrelColor read;
    stream >> read;
    QCOMPARE(describe(read), QString("Rgb 1/0 def0def0 12341234 56785678 9abc9abc"));
}

void tst_TrelColorText::streamReads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("RGB") << fromHex("01 01234567 89abcdef 02468ace 13579bdf")
                         << "Rgb 1/0 01234567 89abcdef 02468ace 13579bdf";
    QTest::newRow("HSV") << fromHex("02 00000000 00005208 ffffffff 80000000")
                         << "Hsv 1/0 00000000 210 ffffffff 80000000";
    QTest::newRow("HSV, achromatic") << fromHex("02 ffffffff ffffffff 00000000 80808080")
                                     << "Hsv 1/0 ffffffff -360 00000000 80808080";
    QTest::newRow("invalid") << fromHex("00 12345678 00000000 00000000 00000000") << "Invalid 1/0 12345678 0 0 0";
    QTest::newRow("N-channel") << fromHex("04 ffffffff 00000001 00000000 00000000") << "Nchannel 1/0 ffffffff 1";
}

void tst_TrelColorText::streamReads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    QCOMPARE(describe(readInto(TrelColor(), bytes)), expected);
}

void tst_TrelColorText::streamRoundTrip()
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> real(0, 1);
    QVector<TrelColor> colors{TrelColor()};
    for (int i = 0; i < ROUND_TRIPS; ++i) {
        const double alpha = real(random);
        colors.append(TrelColor::fromRgbF(real(random), real(random), real(random), alpha, ColorUtils::GENERIC_RGB));
        colors.append(TrelColor::fromHsvF(real(random), real(random), real(random), alpha, ColorUtils::GENERIC_RGB));
    }
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    for (const TrelColor &color : qAsConst(colors))
        out << color;
    QCOMPARE(int(bytes.size()), int(colors.size()) * STREAM_SIZE);

    QDataStream in(bytes);
    for (const TrelColor &color : qAsConst(colors)) {
        TrelColor read;
        in >> read;
        QCOMPARE(describe(read), describe(color));
        QCOMPARE(streamed(read), streamed(color));
    }
    QVERIFY(in.atEnd());
    QCOMPARE(in.status(), QDataStream::Ok);
}

void tst_TrelColorText::odd24_onlyRgbAndHsvSurviveTheStream()
{
    const TrelColor white = yxy(1, 0.3127, 0.329, 65535, 3, 5);
    const TrelColor whiteRead = readInto(TrelColor(), streamed(white));
    QVERIFY(whiteRead != white);
    QCOMPARE(whiteRead.spec(), TrelColor::Yxy);
    QCOMPARE(whiteRead.getY(), 1.0);
    QCOMPARE(whiteRead.gety(), 0.0);
    // The words that are not read stay.
    QCOMPARE(readInto(yxy(0.5, 0.25, 0.125, 65535, 2, 7), streamed(white)).gety(), 0.125);

    const TrelColor channels = nChannel({0x1234, 1, 2, 3}, 1, 7, 1);
    QCOMPARE(describe(readInto(TrelColor(), streamed(channels))), QString("Nchannel 1/0 12341234 1"));

    const TrelColor red = TrelColor::fromRgb8(255, 0, 0, 255, profileId(9));
    QCOMPARE(describe(readInto(loaded(), streamed(red))),
             QString("Rgb 6/5 ffffffff ffffffff 00000000 00000000 | 00640064 00c800c8 012c012c 01900190"));
}

void tst_TrelColorText::streamReadsUnknownForms_data()
{
    QTest::addColumn<int>("form");
    for (int form : {5, 6, 100, 127, -1, -128})
        QTest::addRow("form %d", form) << form;
}

void tst_TrelColorText::streamReadsUnknownForms()
{
    QFETCH(int, form);
    QByteArray bytes = streamed(TrelColor::fromRgb8(255, 0, 0, 255, profileId(0)));
    bytes[0] = static_cast<char>(form);
    const TrelColor color = readInto(TrelColor(), bytes);
    QCOMPARE(int(color.spec()), form);
    QCOMPARE(color.alpha16(), 65535u);
    QVERIFY(color.isValid());
    QVERIFY(color != color);
    QCOMPARE(color.rgba(), 0xFF000000u);
    QCOMPARE(color.convertTo(TrelColor::Rgb, ColorUtils::CONFIG_RGB, ColorUtils::GENERIC_RGB).spec(), TrelColor::Rgb);
    QCOMPARE(color.toYxy().getY(), 0.0);
    QCOMPARE(color.nameFull8(), QString("255"));
    QCOMPARE(TrelColor(color.aName()).isValid(), !color.aName().isEmpty());
}

void tst_TrelColorText::truncatedStreamChangesNothing_data()
{
    QTest::addColumn<int>("size");
    for (int size = 0; size < STREAM_SIZE; ++size)
        QTest::addRow("%d bytes", size) << size;
}

void tst_TrelColorText::truncatedStreamChangesNothing()
{
    QFETCH(int, size);
    const QByteArray whole = streamed(TrelColor::fromHsv8(210, 1, 2, 3, profileId(0)));
    const TrelColor targets[] = {TrelColor(), loaded(), yxy(0.5, 0.3, 0.25, 0x1234, 3, 7),
                                 TrelColor::fromRgb16(1, 2, 3, 4, profileId(7))};
    for (const TrelColor &target : targets) {
        TrelColor color = target;
        QDataStream cut(whole.left(size));
        cut >> color;
        QCOMPARE(describe(color), describe(target));
        QCOMPARE(color.getNChannelRenderType(), target.getNChannelRenderType());
        QCOMPARE(cut.status(), QDataStream::ReadPastEnd);

        QDataStream failed(whole);
        failed.setStatus(QDataStream::ReadCorruptData);
        failed >> color;
        QCOMPARE(describe(color), describe(target));
        QCOMPARE(failed.status(), QDataStream::ReadCorruptData);
    }
}

void tst_TrelColorText::debugForm_data()
{
    addRows(DEBUG_FORMS);
}

void tst_TrelColorText::debugForm()
{
    QFETCH(int, row);
    QString text;
    QDebug(&text) << DEBUG_FORMS[row].color();
    QCOMPARE(text, QString(DEBUG_FORMS[row].text));
}

void tst_TrelColorText::debugSpacing()
{
    QString text;
    QDebug(&text).nospace() << 1 << TrelColor() << 2 << 3;
    QCOMPARE(text, QString("1TrelColor(Invalid) 2 3 "));
}

void tst_TrelColorText::odd25_debugFormOfNChannelIsEmpty()
{
    QString text;
    QDebug(&text) << loaded();
    QCOMPARE(text, QString(" "));
}

void tst_TrelColorText::hostileText_data()
{
    addRows(HOSTILE);
}

void tst_TrelColorText::hostileText()
{
    QFETCH(int, row);
    const TrelColor color(HOSTILE[row].text);
    QCOMPARE(color.spec(), HOSTILE[row].spec);
    QVERIFY(readsWell(color));
}

void tst_TrelColorText::thousandsOfLevels()
{
    constexpr int COUNT = 5000;
    for (const char *head : {"aNchannel;1;0", "aNchannel;2;1", "aNchannel;42;-7"}) {
        const QString text = head + QString(";65535").repeated(COUNT + 1) + ";1";
        const TrelColor color(text);
        QCOMPARE(color.spec(), TrelColor::Nchannel);
        QVector<int> levels;
        color.getNChannel8(&levels);
        QCOMPARE(levels, QVector<int>(COUNT + 1, 255));
        QCOMPARE(color.aName(), text);
        QVERIFY(readsWell(color));
    }
}

void tst_TrelColorText::damagedText()
{
    const QByteArray alphabet = "0123456789abcdefxgRNnY;;;###.-+ \t\xff\x01";
    std::mt19937 random(6);
    Warnings warnings;
    for (int i = 0; i < 3000; ++i) {
        QByteArray text(HOSTILE[random() % (sizeof(HOSTILE) / sizeof(HOSTILE[0]))].text);
        for (unsigned int damages = 1 + random() % 4; damages > 0; --damages) {
            const int place = int(random() % unsigned(text.size()));
            const char letter = alphabet[int(random() % unsigned(alphabet.size()))];
            const QByteArray piece(int(random() % 3), letter);
            text.replace(place, int(random() % 2), piece);
        }
        const TrelColor color(QString::fromLatin1(text));
        QVERIFY2(readsWell(color), text.toHex().constData());
        const QStringList printed = warnings.take();
        for (const QString &warning : printed)
            QVERIFY2(warning == RANGE_WARNING || warning.startsWith(NAME_WARNING), qPrintable(warning));
    }
}

TREL_TEST_MAIN(tst_TrelColorText, {})

#include "tst_TrelColorText.moc"
