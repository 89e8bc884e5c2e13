#pragma once

#include <limits>

/// \a value truncated toward zero to an int; the nearest int for what no int holds, 0 for NaN.
constexpr int saturatedInt(double value)
{
    if (value >= std::numeric_limits<int>::max())
        return std::numeric_limits<int>::max();
    if (value <= std::numeric_limits<int>::min())
        return std::numeric_limits<int>::min();
    return value == value ? int(value) : 0;
}
