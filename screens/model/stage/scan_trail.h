// ScanTrail: where the scan has just been.
#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// Steps of the scan's last seconds; a fixed number, nothing is allocated. Message thread.
class ScanTrail {
public:
    static constexpr double kSeconds = 2.6;
    static constexpr std::size_t kMost = 192; ///< steps

    /// From one picture's position to the next one's; a jump leaves no trail.
    struct Step {
        double from, to, age; ///< fractions of the sound; seconds
        std::uint64_t id;     ///< higher than those before
    };

    void advance(double position, double elapsed, bool leavesTrail) {
        for (std::size_t i = 0; i < count_; ++i) at(i).age += elapsed;
        while (count_ > 0 && at(0).age > kSeconds) drop();
        const double step = position - last_;
        if (leavesTrail && step != 0.0 && std::abs(step) < kJump) {
            if (count_ > 0 && at(count_ - 1).age < kSeconds / kMost)
                at(count_ - 1).to = position; // many steps of a fast display
            else {
                if (count_ == kMost) drop();
                at(count_++) = {last_, position, 0.0, next_++};
            }
        }
        last_ = position;
    }
    void clear() { count_ = 0; }

    std::size_t size() const noexcept { return count_; }
    const Step& operator[](std::size_t i) const { return steps_[(first_ + i) % kMost]; }

private:
    static constexpr double kJump = 0.02; // of the sound

    Step& at(std::size_t i) { return steps_[(first_ + i) % kMost]; }
    void drop() {
        first_ = (first_ + 1) % kMost;
        --count_;
    }

    std::array<Step, kMost> steps_{};
    std::size_t first_ = 0, count_ = 0;
    double last_ = 0.0;
    std::uint64_t next_ = 0;
};

} // namespace zephyra
