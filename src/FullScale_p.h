#pragma once

#include <QtGlobal>

/// Arithmetic of full-scale words: a component as an unsigned 32-bit integer, 0xFFFFFFFF for 1.0.
///
/// Every real that becomes a 16- or 32-bit word goes through truncated(), so that no value, NaN and infinities
/// included, is undefined behaviour.
namespace FullScale {

constexpr double MAX_WORD = 4294967295.0;

/// \a value truncated toward zero to a signed 64-bit integer; 0 for NaN and for what 64 bits do not hold.
constexpr qint64 truncated(double value)
{
    constexpr double LIMIT = 9223372036854775808.0; // 2^63
    return value >= -LIMIT && value < LIMIT ? qint64(value) : 0;
}

/// The low 32 bits of \a value, truncated.
constexpr quint32 toUInt32(double value)
{
    return quint32(truncated(value) & 0xFFFFFFFF);
}

/// The low 16 bits of \a value, truncated.
constexpr quint16 toUInt16(double value)
{
    return quint16(truncated(value) & 0xFFFF);
}

/// The word of an 8-bit component: the byte in all four bytes.
constexpr quint32 fromByte(quint32 byte)
{
    return byte * 0x01010101u;
}

/// The word of a 16-bit component: the value in both halves.
constexpr quint32 from16(quint32 value)
{
    return value * 0x00010001u;
}

/// The word of a component 0.0..1.0, rounded.
constexpr quint32 fromReal(double value)
{
    return toUInt32(value * MAX_WORD + 0.5);
}

constexpr quint8 toByte(quint32 word)
{
    return quint8(word >> 24);
}

constexpr quint16 to16(quint32 word)
{
    return quint16(word >> 16);
}

constexpr double toReal(quint32 word)
{
    return word / MAX_WORD;
}

} // namespace FullScale
