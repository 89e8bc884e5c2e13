// The road of a colour to a fixture's bytes, beside the plain one. Each benchmark proves its answer first.

#include "Chromaticities.h"
#include "PlainOutput.h"

#include <TrelColor.h>
#include <Tristimulus.h>
#include <TristimulusFactory.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace {

constexpr auto PROFILE = ColorUtils::STRAND_BEAM_KVX;
constexpr auto MODE = ColorUtils::RGBAW_IN_OUT;
constexpr int CHANNELS = 5;
constexpr int RESOLUTION = 2;
constexpr int FIXTURE_BYTES = CHANNELS * RESOLUTION;
constexpr int UNIVERSE_BYTES = 512;
constexpr int FIXTURES = UNIVERSE_BYTES / FIXTURE_BYTES;
constexpr double REFRESHES = 44; ///< of a universe in a second

using ToDmx = decltype(&ColorUtils::convertTrelColorToDMX);
using ToBuffer = decltype(&ColorUtils::updateBuffer);
using Bytes = std::array<unsigned char, FIXTURE_BYTES>;

/// COLORS Yxy colours in random order, exactly a quarter of them out of the fixture's gamut.
std::vector<TrelColor> yxyColors()
{
    Tristimulus *data = TristimulusFactory::getInstance()->getTristimulus(PROFILE, ColorUtils::CONFIG_RGBAW);
    std::mt19937 random(1);
    const auto unit = [&random] { return double(random()) / double(std::mt19937::max()); };
    std::vector<TrelColor> colors;
    std::array<int, 2> wanted = {COLORS / 4, COLORS - COLORS / 4}; // outside, inside
    while (int(colors.size()) < COLORS) {
        const double x = 0.1 + 0.6 * unit();
        const double y = 0.05 + 0.65 * unit();
        if (--wanted[data->inside(x, y) ? 1 : 0] < 0)
            continue;
        colors.emplace_back();
        colors.back().setYxyF(unit(), x, y);
    }
    std::shuffle(colors.begin(), colors.end(), random);
    return colors;
}

/// Fixtures with either curve on board are mixed in a rig.
int onboardCurve(std::size_t i)
{
    return 1 + int(i % 2);
}

void toDmx(ToDmx convert, TrelColor &color, std::size_t i, unsigned char *out)
{
    convert(color, false, CHANNELS, RESOLUTION, out, 0, onboardCurve(i), PROFILE, MODE);
}

QList<unsigned char> toBuffer(ToBuffer convert, const TrelColor &color, std::size_t i)
{
    return convert(0, onboardCurve(i), color, false, CHANNELS, RESOLUTION, MODE, PROFILE);
}

/// Whether both roads lead each colour to the same bytes, and not all to darkness.
bool rightBytes(std::vector<TrelColor> &colors)
{
    int lit = 0;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        Bytes actual = {};
        Bytes expected = {};
        toDmx(ColorUtils::convertTrelColorToDMX, colors[i], i, actual.data());
        toDmx(PlainOutput::convertTrelColorToDMX, colors[i], i, expected.data());
        const QList<unsigned char> buffer = toBuffer(ColorUtils::updateBuffer, colors[i], i);
        if (actual != expected || buffer != toBuffer(PlainOutput::updateBuffer, colors[i], i)
            || !std::equal(buffer.begin(), buffer.end(), expected.begin(), expected.end()))
            return false;
        lit += std::any_of(actual.begin(), actual.end(), [](unsigned char byte) { return byte > 0; });
    }
    return lit > COLORS / 2;
}

void dmx(benchmark::State &state, ToDmx convert)
{
    std::vector<TrelColor> colors = yxyColors();
    if (!rightBytes(colors)) {
        state.SkipWithError("wrong bytes");
        return;
    }
    std::size_t i = 0;
    Bytes bytes = {};
    for (auto _ : state) {
        toDmx(convert, colors[i % COLORS], i, bytes.data());
        benchmark::DoNotOptimize(bytes);
        ++i;
    }
}
BENCHMARK_CAPTURE(dmx, library, ColorUtils::convertTrelColorToDMX);
BENCHMARK_CAPTURE(dmx, plain, PlainOutput::convertTrelColorToDMX);

void buffer(benchmark::State &state, ToBuffer convert)
{
    std::vector<TrelColor> colors = yxyColors();
    if (!rightBytes(colors)) {
        state.SkipWithError("wrong bytes");
        return;
    }
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(toBuffer(convert, colors[i % COLORS], i));
        ++i;
    }
}
BENCHMARK_CAPTURE(buffer, library, ColorUtils::updateBuffer);
BENCHMARK_CAPTURE(buffer, plain, PlainOutput::updateBuffer);

/// Every fixture of a universe gets another colour at every refresh.
void universes(benchmark::State &state, ToDmx convert)
{
    std::vector<TrelColor> colors = yxyColors();
    if (!rightBytes(colors)) {
        state.SkipWithError("wrong bytes");
        return;
    }
    std::size_t i = 0;
    std::array<unsigned char, UNIVERSE_BYTES> bytes = {};
    for (auto _ : state) {
        for (std::ptrdiff_t fixture = 0; fixture < FIXTURES; ++fixture) {
            toDmx(convert, colors[i % COLORS], i, bytes.data() + FIXTURE_BYTES * fixture);
            ++i;
        }
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["universes"] =
        benchmark::Counter(double(state.iterations()) / REFRESHES, benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(universes, library, ColorUtils::convertTrelColorToDMX);

} // namespace
