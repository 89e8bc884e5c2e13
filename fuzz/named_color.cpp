// Any text as a colour: names, hexadecimal forms and value strings.

#include "Fuzz.h"

#include <TrelColor.h>

namespace {

void compareHexReaders(const QByteArray &bytes)
{
    constexpr int LONGEST = 17; // the one for QChar refuses what is longer
    const QByteArray text = QByteArray(bytes.constData()).left(LONGEST);
    const QString wide = QString::fromLatin1(text);
    unsigned int words[4] = {1, 2, 3, 4};
    unsigned int wideWords[4] = {1, 2, 3, 4};
    const bool isHex = get_hex_rgb16(text.constData(), words);
    FUZZ_REQUIRE(isHex == get_hex_rgb16(wide.constData(), int(wide.size()), wideWords));
    FUZZ_REQUIRE(std::memcmp(words, wideWords, sizeof words) == 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const bool isWide = input.draw(4) == 0;
    const QByteArray bytes = input.rest();
    const QString text = isWide ? QString(reinterpret_cast<const QChar *>(bytes.constData()), int(bytes.size() / 2))
                                : QString::fromUtf8(bytes);
    compareHexReaders(bytes);

    const TrelColor color(text);
    TrelColor again(Qt::red);
    again.setNamedColor(text);
    FUZZ_REQUIRE(color.isValid() == again.isValid());
    FUZZ_REQUIRE(color.aName() == again.aName());
    FUZZ_REQUIRE(color.name8().size() == 7);
    FUZZ_REQUIRE(color.name().size() == 13);
    if (color.isValid() && color.spec() == TrelColor::Rgb)
        FUZZ_REQUIRE(TrelColor(color.name()).name() == color.name());
    return 0;
}
