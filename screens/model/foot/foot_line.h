// FootLine: the sentence of help, the CPU's share and the grains that were dropped.
#pragma once

#include "screens/model/screen_context.h"

#include <cstdint>
#include <string>

namespace zephyra {

/// One moment. Plain data.
struct FootShown {
    std::string help = {}; ///< on what is under the pointer
    std::string cpu = "CPU 0 %";
    std::string dropped = "0 dropped"; ///< grains, since the window opened or somebody clicked
    bool isLate = false;               ///< rendering hardly keeps up
    bool dropsNow = false;             ///< a moment ago
    bool operator==(const FootShown&) const = default;
};

/// Takes ScreenContext::help for itself. Message thread.
class FootLine final : public ScreenPart {
public:
    static constexpr double kCpuEvery = 0.5;   ///< seconds: figures that flicker are not read
    static constexpr double kDropsShown = 2.0; ///< seconds
    static constexpr double kLate = 0.9;       ///< share of a block's time

    explicit FootLine(ScreenContext& context);
    ~FootLine() override;

    const FootShown& shown() const noexcept { return shown_; }
    /// Counts dropped grains from 0 again.
    void forgetDropped();

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    ScreenContext& context_;
    FootShown shown_;
    std::uint64_t before_, dropped_ = 0;
    double now_ = 0.0, cpuAt_ = -kCpuEvery, droppedAt_ = -kDropsShown;
};

/// In four places at most: "999", "12.3k", "100k", "many".
std::string countText(std::uint64_t count);

} // namespace zephyra
