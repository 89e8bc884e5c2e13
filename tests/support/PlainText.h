#pragma once

#include "TrelColor.h"

/// The text forms and the HSV conversion of TrelColor once more, written to be read next to their description and
/// not to be fast: each field is a string of its own. Whatever replaces the library's writer and reader must give
/// the same characters, colours and warnings.
namespace PlainText {

/// As TrelColor::aName().
QString aName(const TrelColor &color);

/// As TrelColor::name().
QString name(const TrelColor &color);

/// As ::get_hex_rgb16().
bool getHexRgb16(const QString &text, unsigned int *argb);

/// As TrelColor::setNamedColor().
void setNamedColor(TrelColor &color, const QString &text);

/// What a TrelColor stores of a hue, a saturation and a value.
struct HsvWords
{
    int hue = 0; ///< hundredths of a degree; −1 for an achromatic colour
    unsigned int saturation = 0;
    unsigned int value = 0;
};

/// As TrelColor::toHsv16() of an RGB colour with these component words.
HsvWords toHsv16(unsigned int red, unsigned int green, unsigned int blue);

} // namespace PlainText
