// ProgressIndicator: a bar that shows how much of something is done.
#pragma once

#include "controls/control.h"

#include <algorithm>

namespace zephyra {

/// MAIN.
class ProgressIndicator final : public Control {
public:
    /// 0 empty .. 1 full, held to it; not a number (0 of 0) shows as empty.
    void setProgress(double share) {
        progress_ = share == share ? static_cast<float>(std::clamp(share, 0.0, 1.0)) : 0.0f;
        setNeedsDisplay();
    }
    float progress() const noexcept { return progress_; }

private:
    float progress_ = 0.0f;
};

} // namespace zephyra
