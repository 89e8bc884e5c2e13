// Any sequence of setters, getters and conversions on two colours, with any numbers.

#include "Fuzz.h"

#include <TrelColor.h>

#include <iterator>

namespace {

using Input = Fuzz::Input;
using Profile = ColorUtils::HuelockProfileID;
using Configuration = ColorUtils::ChannelConfiguration;

struct Colors
{
    TrelColor a;
    TrelColor b;
};

Profile anyProfile(Input &input)
{
    return Profile(input.draw(4) == 0 ? input.integer() : input.draw(10));
}

/// One of the ten: the library stops a program that wants more channels than a profile's data have.
Profile knownProfile(Input &input)
{
    return Profile(input.draw(10));
}

Configuration anyConfiguration(Input &input)
{
    return Configuration(input.draw(4) == 0 ? input.integer() : input.draw(7));
}

template <typename T>
QVector<T> levels(Input &input, T (*level)(Input &))
{
    QVector<T> result;
    for (int count = 1 + input.draw(7); count > 0; --count)
        result.append(level(input));
    return result;
}

void setRgb(Input &input, Colors &colors)
{
    colors.a.setRgbF(input.real(), input.real(), input.real(), input.real(), anyProfile(input));
}

void setRgbWords(Input &input, Colors &colors)
{
    colors.a.setRgb16(unsigned(input.integer()), unsigned(input.integer()), unsigned(input.integer()),
                      unsigned(input.integer()), anyProfile(input));
}

void setRgbBytes(Input &input, Colors &colors)
{
    colors.a.setRgb8(input.integer(), input.integer(), input.integer(), input.integer(), anyProfile(input));
}

void setHsv(Input &input, Colors &colors)
{
    colors.a.setHsvF(input.real(), input.real(), input.real(), input.real(), anyProfile(input));
}

void setHsvWords(Input &input, Colors &colors)
{
    colors.a.setHsv16(input.integer(), unsigned(input.integer()), unsigned(input.integer()), unsigned(input.integer()),
                      anyProfile(input));
}

void setHsvBytes(Input &input, Colors &colors)
{
    colors.a.setHsv8(input.integer(), input.integer(), input.integer(), input.integer(), anyProfile(input));
}

void setYxy(Input &input, Colors &colors)
{
    colors.a.setYxyF(input.real(), input.real(), input.real(), input.real(), anyProfile(input));
}

void setYxyWords(Input &input, Colors &colors)
{
    colors.a.setYxy16(input.real(), input.real(), input.real(), unsigned(input.integer()), anyProfile(input));
}

void setYxyBytes(Input &input, Colors &colors)
{
    colors.a.setYxy8(input.real(), input.real(), input.real(), input.integer(), anyProfile(input));
}

void setLevels(Input &input, Colors &colors)
{
    const auto level = [](Input &from) { return from.real(); };
    colors.a.setNChannelF(levels<double>(input, level), anyConfiguration(input), anyProfile(input));
}

void setLevelWords(Input &input, Colors &colors)
{
    const auto level = [](Input &from) { return unsigned(from.integer()); };
    colors.a.setNChannel16(levels<unsigned int>(input, level), anyConfiguration(input), anyProfile(input));
}

void setLevelBytes(Input &input, Colors &colors)
{
    const auto level = [](Input &from) { return from.integer(); };
    colors.a.setNChannel8(levels<int>(input, level), anyConfiguration(input), anyProfile(input));
}

void setReal(Input &input, Colors &colors)
{
    using Setter = void (TrelColor::*)(double);
    constexpr Setter SETTERS[] = {&TrelColor::setAlphaF, &TrelColor::setRedF, &TrelColor::setGreenF,
                                  &TrelColor::setBlueF,  &TrelColor::setY,    &TrelColor::setx,
                                  &TrelColor::sety};
    (colors.a.*SETTERS[input.draw(int(std::size(SETTERS)))])(input.real());
}

void setWord(Input &input, Colors &colors)
{
    using Setter = void (TrelColor::*)(unsigned int);
    constexpr Setter SETTERS[] = {&TrelColor::setAlpha16, &TrelColor::setRed16, &TrelColor::setGreen16,
                                  &TrelColor::setBlue16};
    (colors.a.*SETTERS[input.draw(int(std::size(SETTERS)))])(unsigned(input.integer()));
}

void setByte(Input &input, Colors &colors)
{
    using Setter = void (TrelColor::*)(int);
    constexpr Setter SETTERS[] = {&TrelColor::setAlpha8, &TrelColor::setRed8, &TrelColor::setGreen8,
                                  &TrelColor::setBlue8};
    (colors.a.*SETTERS[input.draw(int(std::size(SETTERS)))])(input.integer());
}

void setOrigin(Input &input, Colors &colors)
{
    colors.a.setHuelockProfileID(anyProfile(input));
    colors.a.setNChannelRenderType(TrelColor::NChannelRenderType(input.integer()));
}

void swap(Input &, Colors &colors)
{
    std::swap(colors.a, colors.b);
}

void mix(Input &input, Colors &colors)
{
    using Mix = TrelColor (*)(const TrelColor &, const TrelColor &);
    constexpr Mix MIXES[] = {TrelColor::mix, TrelColor::mixColorsRGB, TrelColor::mixColorsxy};
    colors.a = MIXES[input.draw(int(std::size(MIXES)))](colors.a, colors.b);
}

void blend(Input &input, Colors &colors)
{
    colors.a = TrelColor::blend(colors.a, colors.b, double(input.any<std::uint16_t>()) / 65535.0);
}

void premultiply(Input &input, Colors &colors)
{
    colors.a = input.draw(2) == 0 ? TrelColor::premultiply(colors.a) : TrelColor::unpremultiply(colors.a);
}

void toForm(Input &input, Colors &colors)
{
    switch (input.draw(4)) {
    case 0:
        colors.a = colors.a.toRgb16(input.draw(2) == 0);
        break;
    case 1:
        colors.a = colors.a.toHsv16();
        break;
    case 2:
        colors.a = colors.a.toYxy();
        break;
    default:
        colors.a.setNamedColor(colors.a.aName());
    }
}

void toChannels(Input &input, Colors &colors)
{
    const Profile profile = knownProfile(input);
    colors.a =
        colors.a.toNChannel16(ColorUtils::nChannelConfigurationForHuelockProfileID(profile), profile, input.integer());
}

void update(Input &, Colors &colors)
{
    // A target's own profile decides what its channels mean.
    if (colors.a.spec() == TrelColor::Nchannel || colors.b.spec() == TrelColor::Nchannel)
        return;
    ColorUtils::updateColor(colors.a, colors.b);
}

void toDmx(Input &input, Colors &colors)
{
    constexpr int MAX_CHANNELS = 8;
    constexpr unsigned char GUARD = 0xA5;
    const Profile profile = knownProfile(input);
    const auto mode = ColorUtils::defaultIOModeIDForHuelockProfileID(profile);
    const int channels = ColorUtils::configChannelCount(ColorUtils::nChannelConfigurationForHuelockProfileID(profile));
    TrelColor color = colors.a;
    QVector<int> own;
    color.getNChannel8(&own);
    // Passing on levels of another fixture, or any colour but a generic RGB one, stops a program on purpose.
    if (color.spec() == TrelColor::Nchannel
            ? own.size() != channels + 1
            : color.spec() != TrelColor::Yxy && color.getHuelockProfileID() != ColorUtils::GENERIC_RGB)
        return;
    const int resolution = 1 + input.draw(2);
    unsigned char out[2 * MAX_CHANNELS];
    std::memset(out, GUARD, sizeof out);
    ColorUtils::convertTrelColorToDMX(color, input.draw(2) == 0, channels, resolution, out, input.integer(),
                                      input.integer(), profile, mode);
    for (std::size_t i = std::size_t(channels * resolution); i < sizeof out; ++i)
        FUZZ_REQUIRE(out[i] == GUARD);
}

void read(Input &, Colors &colors)
{
    const TrelColor &color = colors.a;
    QVector<double> reals;
    QVector<unsigned int> words;
    QVector<int> bytes;
    color.getNChannelF(&reals);
    color.getNChannel16(&words);
    color.getNChannel8(&bytes);
    FUZZ_REQUIRE(reals.size() == words.size() && words.size() == bytes.size());
    FUZZ_REQUIRE(color.alpha16() <= 65535 && color.alpha8() <= 255 && color.alphaF() >= 0 && color.alphaF() <= 1);
    color.getQColor(true);
    color.nameFull8();
    color.isBlack();
    color.allNChannelsBlack();
    double h = 0;
    double s = 0;
    double v = 0;
    color.getHsvF(&h, &s, &v);
    FUZZ_REQUIRE(color.red16() <= 65535 && color.green16() <= 65535 && color.blue16() <= 65535);
}

constexpr void (*OPERATIONS[])(Input &, Colors &) = {
    setRgb,    setRgbWords,   setRgbBytes,   setHsv,     setHsvWords, setHsvBytes, setYxy,    setYxyWords, setYxyBytes,
    setLevels, setLevelWords, setLevelBytes, setReal,    setWord,     setByte,     setOrigin, swap,        mix,
    blend,     premultiply,   toForm,        toChannels, update,      toDmx,       read,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    Colors colors{TrelColor(Qt::red), TrelColor(0.3, 0.4)};
    while (!input.isEmpty())
        OPERATIONS[input.draw(int(std::size(OPERATIONS)))](input, colors);
    read(input, colors);
    const QString text = colors.a.aName();
    FUZZ_REQUIRE(colors.a.isValid() || text.isEmpty());
    return 0;
}
