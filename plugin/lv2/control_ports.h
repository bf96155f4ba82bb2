// ControlPorts: the values of the parameters' ports, which act when they change.
#pragma once

#include "hosting/plugin_instance.h"
#include "hosting/plugin_parameters.h"
#include "platform/threads/relaxed.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace zephyra {

/// A host writes a port's value again in every block, whether it means something by it or not. So a
/// value acts when it differs from the one before; the first one from a fresh instance's.
///
/// A state comes with what the ports stood at when it was saved. When a host brings a port back to
/// that right after a restore, it only keeps the two together, and what MIDI or a hand had moved
/// besides the port stays as the state has it. Any other new value is meant.
class ControlPorts {
public:
    using Values = std::array<float, kParameterCount>;

    static constexpr double kSecondsAfterRestore = 0.5; ///< of sound, that are right after it
    static constexpr double kSecondsOfHand = 0.25;      ///< a host's idle call is due by then

    /// sampleRate in Hz.
    ControlPorts(PluginKind kind, double sampleRate);

    /// OFF for RENDER: a host connects between two runs. Null for nowhere.
    void connect(std::size_t address, const float* value) { ports_[address] = value; }

    /// Queues what changed, at frame 0 of a block of so many. RENDER.
    void takeChanges(PluginInstance& instance, std::uint32_t frames) ZEPHYRA_NONBLOCKING;

    /// A hand in a window has moved the parameter, and tells the host, who brings the port along
    /// later: until kSecondsOfHand behind the last one its changes are such copies, and one that is
    /// late must not take the hand back. Addresses above the table are ignored. Any thread.
    void handMoved(std::size_t address) ZEPHYRA_NONBLOCKING {
        if (address < kParameterCount) handMoved_[address] = true;
    }

    /// What the ports stand at. Any thread.
    Values values() const;
    /// A state was restored that was saved with these. HOST, one at a time.
    void restored(const Values& saved);

private:
    bool isCopyOfHand(std::size_t address, std::uint32_t frames) ZEPHYRA_NONBLOCKING;
    bool takeRestored() ZEPHYRA_NONBLOCKING;

    std::array<const float*, kParameterCount> ports_{};
    std::array<Relaxed<float>, kParameterCount> values_{}; // set by RENDER
    std::array<Relaxed<float>, kParameterCount> restored_{};
    std::atomic<bool> wasRestored_ = false; // restored_ is new
    Values saved_;                          // what RENDER knows of it; NaN: acts like any other
    std::array<Relaxed<bool>, kParameterCount> handMoved_{};  // since the last block
    std::array<std::uint64_t, kParameterCount> handFrames_{}; // until the port acts again
    const std::uint64_t framesAfterRestore_, framesOfHand_;
    std::uint64_t framesLeft_ = 0; // until saved_ counts no more
};

} // namespace zephyra
