// MeterModel: the level meter of a window, while it is switched on.
#pragma once

#include "screens/model/level_meter.h"
#include "screens/model/screen_context.h"

#include <optional>
#include <vector>

namespace zephyra {

/// Off, nothing is measured for it. Message thread.
class MeterModel {
public:
    explicit MeterModel(ScreenContext& context) : context_(context) {}

    /// Follows the output and ScreenSettings::showsMeter. Whether anything that is shown changed.
    bool advance(const FrameTime& time);

    bool isOn() const noexcept { return watcher_.has_value(); }
    const LevelMeter& meter() const noexcept { return meter_; }
    /// Puts the clip lights out and forgets the highest peak.
    void clear() { meter_.clear(); }

private:
    ScreenContext& context_;
    std::optional<WatchCount::Watcher> watcher_;
    LevelMeter meter_;
};

/// Switches for meter, scope and spectrum, for a menu; what is chosen is remembered.
std::vector<MenuRow> displayMenu(ScreenContext& context);

} // namespace zephyra
