#pragma once

#include <random>
#include <vector>

constexpr int COLORS = 1024;

struct Chromaticity
{
    double Yxy[3];
};

/// COLORS chromaticities around white, some of them out of every fixture's gamut, the same ones every time.
inline std::vector<Chromaticity> chromaticities()
{
    std::mt19937 random(1);
    const auto unit = [&] { return double(random()) / double(std::mt19937::max()); };
    std::vector<Chromaticity> result;
    for (int i = 0; i < COLORS; ++i)
        result.push_back({{1.0, 0.15 + 0.4 * unit(), 0.1 + 0.5 * unit()}});
    return result;
}
