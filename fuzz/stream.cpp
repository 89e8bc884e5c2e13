// The stream form, from hostile and cut streams.

#include "Fuzz.h"

#include <TrelColor.h>

#include <QDataStream>
#include <QIODevice>

namespace {

constexpr int STREAM_FORM_SIZE = 17;

TrelColor someColor(int choice)
{
    switch (choice) {
    case 0:
        return TrelColor();
    case 1:
        return TrelColor(Qt::red);
    case 2:
        return TrelColor(0.3, 0.4);
    default:
        return TrelColor::fromNChannel8({1, 2, 3, 4}, ColorUtils::CONFIG_RGBW, ColorUtils::GENERIC_RGBW);
    }
}

QByteArray written(const TrelColor &color, QDataStream::ByteOrder order)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    stream << color;
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const TrelColor before = someColor(input.draw(4));
    const auto order = input.draw(2) == 0 ? QDataStream::BigEndian : QDataStream::LittleEndian;
    const QByteArray bytes = input.rest();
    QDataStream stream(bytes);
    stream.setByteOrder(order);
    TrelColor color = before;
    stream >> color;

    const bool isWhole = bytes.size() >= STREAM_FORM_SIZE;
    FUZZ_REQUIRE((stream.status() == QDataStream::Ok) == isWhole);
    if (!isWhole) {
        FUZZ_REQUIRE(color.aName() == before.aName() && color.spec() == before.spec());
        return 0;
    }
    FUZZ_REQUIRE(written(color, order) == bytes.left(STREAM_FORM_SIZE));
    // Whatever came in, every getter must answer.
    color.aName();
    color.nameFull8();
    color.getQColor(true);
    color.toHsv16();
    color.toRgb16(true);
    const bool isForm = color.spec() == TrelColor::Rgb || color.spec() == TrelColor::Hsv;
    FUZZ_REQUIRE(!isForm || color == TrelColor(color));
    return 0;
}
