// TakeRecorder: keeps where the scan of a render stands, as often as a take has positions.
#pragma once

#include "platform/threads/run_loop.h"
#include "rendering/events/take_file.h"

#include <functional>
#include <utility>
#include <vector>

namespace zephyra {

/// MAIN.
class TakeRecorder {
public:
    /// Keeps positions as runLoop, which must outlive this, goes on. The first is that of the first
    /// tick, where a player of the take will put it.
    TakeRecorder(RunLoop& runLoop, std::function<float()> scan)
        : runLoop_(runLoop), scan_(std::move(scan)),
          link_(runLoop.addDisplayLink(ScrubRecorder::kPointsPerSecond, [this] { keep(); })) {}
    ~TakeRecorder() { stop(); }
    TakeRecorder(const TakeRecorder&) = delete;
    TakeRecorder& operator=(const TakeRecorder&) = delete;

    void stop() { runLoop_.cancel(std::exchange(link_, 0)); }
    const std::vector<float>& positions() const noexcept { return positions_; }
    /// Whether there were more than a take holds.
    bool isCut() const noexcept { return cut_; }

private:
    void keep() {
        cut_ = positions_.size() == kMostTakePoints;
        if (!cut_) positions_.push_back(scan_());
    }

    RunLoop& runLoop_;
    std::function<float()> scan_;
    std::vector<float> positions_;
    bool cut_ = false;
    RunLoop::Token link_;
};

} // namespace zephyra
