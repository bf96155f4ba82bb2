// Lv2Plugin: one instance as an LV2 host knows it: ports, blocks and state.
#pragma once

#include "hosting/plugin_instance.h"
#include "plugin/lv2/control_ports.h"
#include "plugin/lv2/host_features.h"
#include "plugin/lv2/ports.h"
#include "plugin/lv2/transport.h"
#include "plugin/lv2/uris.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <lv2/atom/atom.h>
#include <lv2/state/state.h>

namespace zephyra {

/// Translates; see lv2_entry.cpp for what calls it. Latency is none, so there is no port for it.
class Lv2Plugin {
public:
    /// Throws std::bad_alloc.
    Lv2Plugin(PluginKind kind, double sampleRate, const HostFeatures& features);

    /// Nothing happens for ports that there are not; null leaves a port alone: without the right
    /// one of two a side is mono. OFF.
    void connect(std::uint32_t port, void* data);
    void activate(); ///< OFF
    void deactivate() { instance_.release(); }
    /// RENDER; while the host is free-wheeling it may wait and allocate.
    void run(std::uint32_t frames);

    /// Hands the state to the host, in bytes that hold or name the sound as the library's presets
    /// do: no path of the host's is needed. HOST.
    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle);
    /// Applies it; what is no state is refused with a line in the log, and nothing changes. HOST.
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle);

    /// A hand in a window is at the parameter, whose port follows in the host's time. Any thread.
    void handMoved(std::size_t address) { controls_.handMoved(address); }

    /// What it translates for.
    PluginInstance& instance() noexcept { return instance_; }

private:
    void renderSegment(std::uint32_t begin, std::uint32_t end, const PluginTransport& transport);
    float* audio(Lv2Port port) const;

    const Lv2Uris uris_;
    const double sampleRate_;
    const std::uint32_t mostFrames_;
    PluginInstance instance_;
    ControlPorts controls_;
    Lv2Transport transport_;
    const float* enabled_ = nullptr;
    const float* freeWheeling_ = nullptr;
    const LV2_Atom_Sequence* events_ = nullptr;
    std::array<float*, 4> audio_{}; // from Lv2Port::outLeft on
};

} // namespace zephyra
