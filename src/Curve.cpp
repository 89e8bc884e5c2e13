#include "Curve.h"

#include "FullScale_p.h"

Curve::Curve() = default;

void Curve::createLut()
{
}

Curve::~Curve() = default;

void Curve::applyCurve(int index, unsigned short *out) const
{
    Q_CHECK_PTR(out);
    if (!m_lut16) {
        *out = static_cast<unsigned short>(index);
        return;
    }
    Q_ASSERT_X(index >= 0 && index < LUT16_SIZE, "Curve::applyCurve", "index out of range");
    *out = m_lut16[std::size_t(index)];
}

void Curve::applyCurve(int index, unsigned char *out) const
{
    Q_CHECK_PTR(out);
    if (!m_lut8) {
        *out = static_cast<unsigned char>(index);
        return;
    }
    Q_ASSERT_X(index >= 0 && index < LUT8_SIZE, "Curve::applyCurve", "index out of range");
    *out = m_lut8[std::size_t(index)];
}

void Curve::createLutFromControlPoints(const unsigned short (&points)[LUT8_SIZE])
{
    constexpr int STEPS = LUT16_SIZE / LUT8_SIZE;
    constexpr double STEP = 1.0 / STEPS;
    if (m_lut16)
        return;

    m_lut16 = std::make_unique<unsigned short[]>(LUT16_SIZE);
    for (int i = 0; i < LUT8_SIZE; ++i) {
        // ODD-30: the last segment has no point to go to and stays flat.
        const int rise = i + 1 < LUT8_SIZE ? points[i + 1] - points[i] : 0;
        for (int j = 0; j < STEPS; ++j)
            m_lut16[std::size_t(i) * STEPS + std::size_t(j)] = FullScale::toUInt16((j * STEP) * rise + points[i]);
    }

    m_lut8 = std::make_unique<unsigned char[]>(LUT8_SIZE);
    for (int i = 0; i < LUT8_SIZE; ++i) {
        const int high = points[i] >> 8;
        const bool roundUp = (points[i] & 0x80) != 0 && high < 255;
        m_lut8[std::size_t(i)] = static_cast<unsigned char>(high + (roundUp ? 1 : 0));
    }
}
