#pragma once

#include "TrelExport.h"

#include <memory>

/// A dimming curve: what a channel level becomes on its way to a fixture. The base class is the identity.
class TREL_EXPORT Curve
{
public:
    Curve();
    Curve(const Curve &) = delete;
    Curve &operator=(const Curve &) = delete;

    /// Builds the lookup tables; the base version builds none.
    virtual void createLut();

    virtual ~Curve();

    /// 16-bit curve value of \a index (0..65535) into \a out. Without a table, the low 16 bits of the index.
    /// A null \a out counts as a failed allocation (std::bad_alloc). Fatal: an index beyond the table
    /// ("index out of range").
    void applyCurve(int index, unsigned short *out) const;

    /// 8-bit curve value of \a index (0..255) into \a out, otherwise the same.
    void applyCurve(int index, unsigned char *out) const;

protected:
    static constexpr int LUT8_SIZE = 256;    ///< entries of the 8-bit table, and control points
    static constexpr int LUT16_SIZE = 65536; ///< entries of the 16-bit table

    /// Builds both tables from 256 ascending control points, unless they exist.
    ///
    /// The 16-bit table goes linearly from point to point in 256 steps, truncated; the last 256 entries
    /// stay at the last point (ODD-30). The 8-bit table holds the points' high bytes, rounded half up,
    /// never past 255.
    void createLutFromControlPoints(const unsigned short (&points)[LUT8_SIZE]);

private:
    std::unique_ptr<unsigned char[]> m_lut8;
    std::unique_ptr<unsigned short[]> m_lut16;
};
