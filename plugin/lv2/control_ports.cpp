#include "plugin/lv2/control_ports.h"

#include "plugin/lv2/ports.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace zephyra {

namespace {

constexpr float kNone = std::numeric_limits<float>::quiet_NaN();

/// Hosts write values into their sessions with eight decimals.
bool isSame(float one, float other) ZEPHYRA_NONBLOCKING {
    const float size = std::max(std::abs(one), std::abs(other));
    return std::abs(one - other) <= 1e-6f * size + 1e-8f;
}

} // namespace

ControlPorts::ControlPorts(PluginKind kind, double sampleRate)
    : framesAfterRestore_(static_cast<std::uint64_t>(kSecondsAfterRestore * sampleRate)),
      framesOfHand_(static_cast<std::uint64_t>(kSecondsOfHand * sampleRate)) {
    saved_.fill(kNone);
    for (std::size_t i = 0; i < kParameterCount; ++i)
        values_[i] = portDefault(kind, pluginParameters()[i]);
}

void ControlPorts::takeChanges(PluginInstance& instance, std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    if (!takeRestored()) return;
    for (std::size_t i = 0; i < kParameterCount; ++i) {
        const bool isCopy = isCopyOfHand(i, frames);
        const float value = ports_[i] ? *ports_[i] : values_[i].load();
        if (value == values_[i] || !std::isfinite(value)) continue;
        values_[i] = value;
        // Only the first value after a restore may be the host's copy of what was saved.
        if (!isSame(value, std::exchange(saved_[i], kNone)) && !isCopy)
            instance.queueParameter(i, linearFromPort(pluginParameters()[i], value));
    }
    if (framesLeft_ == 0) return;
    framesLeft_ -= std::min<std::uint64_t>(framesLeft_, frames);
    if (framesLeft_ == 0) saved_.fill(kNone);
}

bool ControlPorts::isCopyOfHand(std::size_t address, std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    std::uint64_t& left = handFrames_[address];
    if (handMoved_[address]) {
        handMoved_[address] = false;
        left = framesOfHand_;
    }
    if (left == 0) return false;
    left -= std::min<std::uint64_t>(left, frames);
    return true;
}

/// False while another thread is at it: the next block will know.
bool ControlPorts::takeRestored() ZEPHYRA_NONBLOCKING {
    if (!wasRestored_.exchange(false, std::memory_order_acquire)) return true;
    std::ranges::copy(restored_, saved_.begin());
    framesLeft_ = framesAfterRestore_;
    return !wasRestored_.load(std::memory_order_acquire);
}

ControlPorts::Values ControlPorts::values() const {
    Values values;
    // Until the next block, those of the state that was just restored: the host sets its ports so.
    const bool isNew = wasRestored_.load(std::memory_order_acquire);
    std::ranges::copy(isNew ? restored_ : values_, values.begin());
    return values;
}

void ControlPorts::restored(const Values& saved) {
    std::ranges::copy(saved, restored_.begin());
    wasRestored_.store(true, std::memory_order_release);
}

} // namespace zephyra
