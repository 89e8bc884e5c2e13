// Colour temperature and tint of any two numbers.

#include "Fuzz.h"

#include <CCTUtils.h>

#include <cmath>

namespace {

constexpr int UNTOUCHED = -7;

using Inverse = bool (*)(double, double, int &, int &);

void requireInverse(Inverse inverse, double a, double b, bool isInRange)
{
    int cct = UNTOUCHED;
    int tint = UNTOUCHED;
    FUZZ_REQUIRE(inverse(a, b, cct, tint) == isInRange || inverse == CCTUtils::getCCTAndTintFromxy);
    if (!isInRange)
        FUZZ_REQUIRE(cct == UNTOUCHED && tint == UNTOUCHED);
    if (!CCTUtils::isValidCCT(cct))
        return; // far from the locus, the last region's line goes on beyond its end
    double x = NAN;
    double y = NAN;
    FUZZ_REQUIRE(CCTUtils::getxyFromCCTAndTint(cct, tint, x, y));
    FUZZ_REQUIRE(std::isfinite(x) && std::isfinite(y));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const double a = input.real();
    const double b = input.real();
    requireInverse(CCTUtils::getCCTAndTintFromxy, a, b, a >= 0 && a <= 0.8 && b >= 0 && b <= 0.9);
    requireInverse(CCTUtils::getCCTAndTintFromuvPrime, a, b, a >= 0 && a <= 0.6 && b >= 0 && b <= 0.6);
    double x = 0;
    double y = 0;
    const int anyCct = input.integer();
    FUZZ_REQUIRE(CCTUtils::getxyFromCCTAndTint(anyCct, input.integer(), x, y) == CCTUtils::isValidCCT(anyCct));
    return 0;
}
