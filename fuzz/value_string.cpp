// A value string, from text or from a colour, comes back as itself.

#include "Fuzz.h"

#include <TrelColor.h>

namespace {

constexpr const char *FORMS[] = {"", "aRgb;", "aYxy;", "aNchannel;"};

void requireStable(const TrelColor &color)
{
    const QString text = color.aName();
    FUZZ_REQUIRE(color.isValid() || text.isEmpty());
    if (text.isEmpty())
        return;
    const TrelColor again(text);
    FUZZ_REQUIRE(again.isValid());
    // An RGB text gives its configuration and profile up, a Yxy text its profile; from then on nothing changes.
    const TrelColor third(again.aName());
    FUZZ_REQUIRE(third.isValid());
    FUZZ_REQUIRE(third.aName() == again.aName());
    FUZZ_REQUIRE(again.spec() == (color.spec() == TrelColor::Hsv ? TrelColor::Rgb : color.spec()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const QString form = QLatin1String(FORMS[input.draw(4)]);
    requireStable(TrelColor(form + QString::fromUtf8(input.rest())));
    return 0;
}
