#pragma once

/// Whether each of a curve's 256 control points lies above the one before.
constexpr bool ascends(const unsigned short (&points)[256])
{
    for (int i = 1; i < 256; ++i) {
        if (points[i] <= points[i - 1])
            return false;
    }
    return true;
}
