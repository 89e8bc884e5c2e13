// A program that knows nothing of this tree but the installed package. Exit code 0: the conversion came out right.

#include <TrelColor.h>

#include <cstdio>

int main()
{
    TrelColor color("#ff8000");
    unsigned char bytes[3] = {};
    ColorUtils::convertTrelColorToDMX(color, false, 3, 1, bytes, 0, 0, ColorUtils::GENERIC_RGB, ColorUtils::RGB_IN_OUT);
    std::printf("%d %d %d\n", bytes[0], bytes[1], bytes[2]);
    return bytes[0] == 255 && bytes[1] == 128 && bytes[2] == 0 ? 0 : 1;
}
