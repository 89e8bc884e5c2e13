// A host's first colour, for the start-up benchmark; without the library, the Qt program that this is compared with.

#ifdef TREL_WITH_LIBRARY
#include <TrelColor.h>
#endif

#include <QCoreApplication>

namespace {

/// Whether white light at half its level comes out lit.
bool convert()
{
#ifdef TREL_WITH_LIBRARY
    TrelColor white;
    white.setYxyF(0.5, 0.3127, 0.3290);
    unsigned char bytes[5] = {};
    ColorUtils::convertTrelColorToDMX(white, false, 5, 1, bytes, 0, 1, ColorUtils::STRAND_BEAM_KVX,
                                      ColorUtils::RGBAW_IN_OUT);
    return bytes[0] + bytes[1] + bytes[2] + bytes[3] + bytes[4] > 0;
#else
    return true;
#endif
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return convert() ? 0 : 1;
}
