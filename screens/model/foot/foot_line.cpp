#include "screens/model/foot/foot_line.h"

#include "platform/text/text_numbers.h"

#include <cmath>

namespace zephyra {

std::string countText(std::uint64_t count) {
    if (count < 1000) return std::to_string(count);
    if (count >= 999'500) return "many";
    return formatFixed(static_cast<double>(count) / 1000.0, count < 99'950 ? 1 : 0) + "k";
}

FootLine::FootLine(ScreenContext& context)
    : context_(context), before_(context.source.plugin().droppedGrains()) {
    context_.source.add(*this);
    context_.help = [this](const std::string& sentence) { shown_.help = sentence; };
}

FootLine::~FootLine() {
    context_.source.remove(*this);
    context_.help = {};
}

void FootLine::forgetDropped() {
    before_ = context_.source.plugin().droppedGrains();
    droppedAt_ = -kDropsShown;
}

void FootLine::read(AudioUnitViewController&, const FrameTime& time) {
    const PluginInstance& plugin = context_.source.plugin();
    now_ = time.now;
    if (now_ - cpuAt_ >= kCpuEvery || now_ < cpuAt_) {
        const double share = plugin.cpuShare();
        shown_.cpu = "CPU " + formatFixed(std::ceil(share * 100.0), 0) + " %";
        shown_.isLate = share >= kLate;
        cpuAt_ = now_;
    }
    const std::uint64_t dropped = plugin.droppedGrains() - before_;
    if (dropped > dropped_) droppedAt_ = now_;
    dropped_ = dropped;
    shown_.dropped = countText(dropped) + " dropped";
    shown_.dropsNow = dropped > 0 && now_ - droppedAt_ < kDropsShown;
}

} // namespace zephyra
