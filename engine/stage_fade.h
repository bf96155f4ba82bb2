// StageFade: how far an effect that was switched has faded in or out.
#pragma once

#include "platform/threads/realtime.h"

#include <algorithm>

namespace zephyra {

/// A place in both channels of a block.
struct StereoSpan {
    float* left;
    float* right;

    StereoSpan from(int frame) const ZEPHYRA_NONBLOCKING { return {left + frame, right + frame}; }
};

/// A switch that moves from 0 to 1 and back within a number of frames, along 3t² - 2t³: without a
/// kink at its ends, it bends a low sine less than a straight line would. Counted in frames, so it
/// is the same whatever the blocks; switched back halfway it goes back from where it stands.
/// RENDER.
class StageFade {
public:
    /// Stands at on at once.
    void jump(bool on) ZEPHYRA_NONBLOCKING {
        on_ = on;
        left_ = 0;
    }
    /// Sets out for on; where it stands there or is on its way, nothing changes. frames is at least
    /// 1.
    void take(bool on, int frames) ZEPHYRA_NONBLOCKING {
        if (on == on_) return;
        if (left_ == 0) length_ = frames;
        on_ = on;
        left_ = length_ - left_;
    }

    /// Whether anything of what it switches is heard.
    bool sounds() const ZEPHYRA_NONBLOCKING { return on_ || left_ > 0; }
    bool isMoving() const ZEPHYRA_NONBLOCKING { return left_ > 0; }
    /// Whether it stands at on.
    bool isAt(bool on) const ZEPHYRA_NONBLOCKING { return on_ == on && left_ == 0; }
    /// How many of the next frames pass before it comes to stand; all where it stands.
    int within(int frames) const ZEPHYRA_NONBLOCKING {
        return left_ > 0 ? std::min(left_, frames) : frames;
    }
    /// While it moves: the gain of the nth frame from here, n below within().
    float gain(int n) const ZEPHYRA_NONBLOCKING {
        const int place = on_ ? length_ - left_ + n + 1 : left_ - n - 1;
        const float t = static_cast<float>(place) / static_cast<float>(length_);
        return t * t * (3.0f - 2.0f * t);
    }
    /// Goes on by frames, at most within().
    void pass(int frames) ZEPHYRA_NONBLOCKING {
        if (left_ > 0) left_ -= frames;
    }

private:
    bool on_ = false;
    int length_ = 1;
    int left_ = 0; // frames until it stands at on_
};

} // namespace zephyra
