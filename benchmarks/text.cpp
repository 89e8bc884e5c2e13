// Colours to and from text, and to HSV, beside QColor and the plain transcription. Each benchmark proves its answers
// first.

#include "PlainText.h"

#include <TrelColor.h>

#include <benchmark/benchmark.h>

#include <QColor>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <vector>

namespace {

constexpr std::size_t COUNT = 1024;

/// Opaque colours, the same ones every time.
template <typename Color>
std::vector<Color> randomColors()
{
    std::mt19937 random(1);
    std::vector<Color> colors;
    for (std::size_t i = 0; i < COUNT; ++i)
        colors.emplace_back(QColor::fromRgb(QRgb(random())));
    return colors;
}

/// Every form in turn.
std::vector<TrelColor> colorsOfAllForms()
{
    std::mt19937 random(2);
    const auto word = [&] { return unsigned(random()) & 0xFFFF; };
    const auto unit = [&] { return double(random()) / double(std::mt19937::max()); };
    std::vector<TrelColor> colors(COUNT);
    for (std::size_t i = 0; i < COUNT; i += 4) {
        colors[i].setRgb16(word(), word(), word(), word());
        colors[i + 1].setHsv16(int(word() % 360), word(), word(), word());
        colors[i + 2].setYxyF(unit(), unit(), unit(), unit());
        colors[i + 3].setNChannel16({65535, word(), word(), word(), word(), word()}, ColorUtils::CONFIG_RGBAW,
                                    ColorUtils::STRAND_BEAM_KVX);
    }
    return colors;
}

TrelColor toHsv(const TrelColor &color)
{
    return color.toHsv16();
}

QColor toHsv(const QColor &color)
{
    return color.toHsv();
}

int hueOf(const TrelColor &hsv)
{
    return hsv.hue16();
}

int hueOf(const QColor &hsv)
{
    return hsv.hsvHue();
}

QString nameOf(const TrelColor &color)
{
    return color.name();
}

QString nameOf(const QColor &color)
{
    return color.name(QColor::HexArgb);
}

// Each class writes all that a name of its own holds: 16 bits a component here, an alpha there.
QString expectedName(const TrelColor &color)
{
    return PlainText::name(color);
}

QString expectedName(const QColor &color)
{
    return QString::asprintf("#%08x", color.rgba());
}

template <typename Color>
void hexIn(benchmark::State &state, Color color)
{
    std::vector<QString> names;
    for (const QColor &named : randomColors<QColor>()) {
        names.push_back(named.name());
        color.setNamedColor(names.back());
        if (unsigned(color.rgb()) != named.rgb()) {
            state.SkipWithError("wrong colour");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state) {
        color.setNamedColor(names[i++ % COUNT]);
        benchmark::DoNotOptimize(color);
    }
}
BENCHMARK_CAPTURE(hexIn, library, TrelColor());
BENCHMARK_CAPTURE(hexIn, qcolor, QColor());

template <typename Color>
void hexOut(benchmark::State &state, Color)
{
    const std::vector<Color> colors = randomColors<Color>();
    if (!std::all_of(colors.begin(), colors.end(), [](const Color &c) { return nameOf(c) == expectedName(c); })) {
        state.SkipWithError("wrong name");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(nameOf(colors[i++ % COUNT]));
}
BENCHMARK_CAPTURE(hexOut, library, TrelColor());
BENCHMARK_CAPTURE(hexOut, qcolor, QColor());

template <typename Color>
void hsv(benchmark::State &state, Color)
{
    const std::vector<Color> colors = randomColors<Color>();
    for (const Color &color : colors) {
        const auto component = [&](int shift) { return (unsigned(color.rgb()) >> shift & 0xFF) * 0x01010101u; };
        const int hundredths = PlainText::toHsv16(component(16), component(8), component(0)).hue;
        // Whole degrees are rounded by one class and cut by the other.
        if (std::abs(100 * hueOf(toHsv(color)) - hundredths) > 100) {
            state.SkipWithError("wrong hue");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(toHsv(colors[i++ % COUNT]));
}
BENCHMARK_CAPTURE(hsv, library, TrelColor());
BENCHMARK_CAPTURE(hsv, qcolor, QColor());

QString writtenByLibrary(const TrelColor &color)
{
    return color.aName();
}

void valueOut(benchmark::State &state, QString (*written)(const TrelColor &color))
{
    const std::vector<TrelColor> colors = colorsOfAllForms();
    for (const TrelColor &color : colors) {
        if (written(color) != PlainText::aName(color)) {
            state.SkipWithError("wrong text");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(written(colors[i++ % COUNT]));
}
BENCHMARK_CAPTURE(valueOut, library, writtenByLibrary);
BENCHMARK_CAPTURE(valueOut, plain, PlainText::aName);

void readByLibrary(TrelColor &color, const QString &text)
{
    color.setNamedColor(text);
}

void valueIn(benchmark::State &state, void (*read)(TrelColor &color, const QString &text))
{
    std::vector<QString> texts;
    TrelColor color;
    for (const TrelColor &written : colorsOfAllForms()) {
        texts.push_back(PlainText::aName(written));
        read(color, texts.back());
        if (PlainText::aName(color) != texts.back()) {
            state.SkipWithError("wrong colour");
            return;
        }
    }
    std::size_t i = 0;
    for (auto _ : state) {
        read(color, texts[i++ % COUNT]);
        benchmark::DoNotOptimize(color);
    }
}
BENCHMARK_CAPTURE(valueIn, library, readByLibrary);
BENCHMARK_CAPTURE(valueIn, plain, PlainText::setNamedColor);

} // namespace
