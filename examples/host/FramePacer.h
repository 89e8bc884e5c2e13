#pragma once

#include <chrono>

/// Says when the next frame of a steady rate is due. It reads no clock itself: the time is told.
///
/// Frames stand on a grid. One that comes late does not move the next, unless the two would follow each other too
/// closely: receivers drop the last frame of a burst. Then the grid begins anew, and missed frames are left out.
class FramePacer
{
public:
    using Clock = std::chrono::steady_clock;

    /// \param framesPerSecond above 0.
    explicit FramePacer(int framesPerSecond);

    /// The first frame is due at \a now.
    void start(Clock::time_point now);
    /// Whether a frame is due at \a now. If so, the next one is due a period after it.
    bool take(Clock::time_point now);
    /// Time from \a now to the next frame, rounded up; 0 when it is due.
    std::chrono::milliseconds wait(Clock::time_point now) const;
    /// Time between two frames.
    Clock::duration period() const;

private:
    Clock::duration m_period;
    Clock::time_point m_due;
};
