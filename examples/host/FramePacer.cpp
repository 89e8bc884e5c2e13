#include "FramePacer.h"

#include <algorithm>

namespace {

constexpr int TOLERATED_LATENESS = 4; // a frame may be late by this part of a period without moving the grid

} // namespace

FramePacer::FramePacer(int framesPerSecond)
    : m_period(Clock::duration(std::chrono::seconds(1)) / framesPerSecond)
{
}

void FramePacer::start(Clock::time_point now)
{
    m_due = now;
}

bool FramePacer::take(Clock::time_point now)
{
    if (now < m_due)
        return false;
    const bool isOnGrid = now - m_due <= m_period / TOLERATED_LATENESS;
    m_due = (isOnGrid ? m_due : now) + m_period;
    return true;
}

std::chrono::milliseconds FramePacer::wait(Clock::time_point now) const
{
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(m_due - now), std::chrono::milliseconds(0));
}

FramePacer::Clock::duration FramePacer::period() const
{
    return m_period;
}
