// The road of a colour to a fixture, timed. Each benchmark proves its answer first. Times of one run are
// comparable with each other only; quote ratios.

#include "Chromaticities.h"

#include <TrelColor.h>

#include <benchmark/benchmark.h>

#include <QColor>
#include <QLoggingCategory>

#include <vector>

namespace {

void updateBuffer(benchmark::State &state)
{
    const auto bytesOf = [](const TrelColor &color) {
        return ColorUtils::updateBuffer(0, 1, color, false, 5, 2, ColorUtils::RGBAW_IN_OUT,
                                        ColorUtils::STRAND_BEAM_KVX);
    };
    const QList<unsigned char> dark = bytesOf(TrelColor(Qt::black));
    if (dark.size() != 10 || dark.count(0) != 10) {
        state.SkipWithError("black is lit");
        return;
    }
    std::vector<TrelColor> colors;
    for (const Chromaticity &input : chromaticities()) {
        colors.emplace_back();
        colors.back().setYxyF(input.Yxy[0], input.Yxy[1], input.Yxy[2]);
    }
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(bytesOf(colors[i++ % COLORS]));
}
BENCHMARK(updateBuffer);

void hexName(benchmark::State &state)
{
    if (TrelColor("#ff8000") != TrelColor::fromRgb(0xFF8000)) {
        state.SkipWithError("wrong colour");
        return;
    }
    const QString name = "#ff8000";
    TrelColor color;
    for (auto _ : state) {
        color.setNamedColor(name);
        benchmark::DoNotOptimize(color);
    }
}
BENCHMARK(hexName);

/// The peer of hexName.
void hexNameOfQColor(benchmark::State &state)
{
    const QString name = "#ff8000";
    QColor color;
    for (auto _ : state) {
        color.setNamedColor(name);
        benchmark::DoNotOptimize(color);
    }
}
BENCHMARK(hexNameOfQColor);

void valueStringRoundTrip(benchmark::State &state)
{
    const QString text = "aNchannel;6;5;65535;100;200;300;400;1";
    if (TrelColor(text).aName() != text) {
        state.SkipWithError("wrong text");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(TrelColor(text).aName());
}
BENCHMARK(valueStringRoundTrip);

void toHsv(benchmark::State &state)
{
    const TrelColor color = TrelColor::fromRgb(0x0000FF);
    if (color.toHsv16().hue16() != 240) {
        state.SkipWithError("wrong hue");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(color.toHsv16());
}
BENCHMARK(toHsv);

/// The peer of toHsv.
void toHsvOfQColor(benchmark::State &state)
{
    const QColor color(0, 0, 255);
    for (auto _ : state)
        benchmark::DoNotOptimize(color.toHsv());
}
BENCHMARK(toHsvOfQColor);

} // namespace

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules("*.debug=false");
    benchmark::AddCustomContext("build type", TREL_BUILD_TYPE);
    benchmark::AddCustomContext("Qt", qVersion());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
