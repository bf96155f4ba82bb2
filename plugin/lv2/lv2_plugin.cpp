#include "plugin/lv2/lv2_plugin.h"

#include "plugin/lv2/atom_events.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace zephyra {

namespace {

bool isOn(const float* port, bool unconnected) {
    return port ? *port > 0.0f : unconnected;
}

constexpr std::uint32_t number(Lv2Port port) {
    return static_cast<std::uint32_t>(port);
}

/// A sequence of the ports' values, as a host keeps it.
struct PortVector {
    LV2_Atom_Vector_Body head;
    ControlPorts::Values values;
};

} // namespace

Lv2Plugin::Lv2Plugin(PluginKind kind, double sampleRate, const HostFeatures& features)
    : uris_(*features.map), sampleRate_(sampleRate), mostFrames_(mostFrames(features, uris_)),
      instance_(kind), controls_(kind, sampleRate), transport_(sampleRate) {
    if (features.log)
        instance_.system().instance.log.setSink([log = features.log,
                                                 type = uris_.logNote](std::string_view line) {
            log->printf(log->handle, type, "%.*s\n", static_cast<int>(line.size()), line.data());
        });
}

void Lv2Plugin::connect(std::uint32_t port, void* data) {
    if (port < kParameterCount)
        controls_.connect(port, static_cast<const float*>(data));
    else if (port == number(Lv2Port::enabled))
        enabled_ = static_cast<const float*>(data);
    else if (port == number(Lv2Port::freeWheeling))
        freeWheeling_ = static_cast<const float*>(data);
    else if (port == number(Lv2Port::events))
        events_ = static_cast<const LV2_Atom_Sequence*>(data);
    else if (port < lv2PortCount(instance_.kind()))
        audio_[port - number(Lv2Port::outLeft)] = static_cast<float*>(data);
}

void Lv2Plugin::activate() {
    const auto prepared = instance_.prepare({.sampleRate = sampleRate_, .mostFrames = mostFrames_});
    if (!prepared)
        instance_.system().instance.log.write("Zephyra is silent: " + prepared.message());
}

float* Lv2Plugin::audio(Lv2Port port) const {
    return audio_[number(port) - number(Lv2Port::outLeft)];
}

void Lv2Plugin::run(std::uint32_t frames) {
    if (!audio(Lv2Port::outLeft)) return; // which a host has to connect
    instance_.setBypass(!isOn(enabled_, true));
    controls_.takeChanges(instance_, frames);

    // What the host tells of the music holds from its frame on.
    AtomEvents events(events_, uris_);
    PluginTransport transport;
    std::uint32_t begin = 0;
    while (const auto event = events.next()) {
        const std::uint32_t frame = std::min(event->frame, frames);
        if (event->midi) {
            instance_.queueMidi(event->midi, event->midiLength, frame - begin);
            continue;
        }
        if (frame > begin) renderSegment(begin, frame, transport);
        begin = frame;
        transport = transport_.read(event->position);
    }
    renderSegment(begin, frames, transport);
}

void Lv2Plugin::renderSegment(std::uint32_t begin, std::uint32_t end,
                              const PluginTransport& transport) {
    const auto from = [&](Lv2Port port) -> float* {
        float* const channel = audio(port);
        return channel ? channel + begin : nullptr;
    };
    const PluginBlock block{.frames = end - begin,
                            .input = {from(Lv2Port::inLeft), from(Lv2Port::inRight)},
                            .output = {from(Lv2Port::outLeft), from(Lv2Port::outRight)},
                            .transport = transport};
    if (isOn(freeWheeling_, false))
        instance_.renderOffline(block);
    else
        instance_.render(block);
}

LV2_State_Status Lv2Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle) {
    const PortVector ports{.head = {.child_size = sizeof(float), .child_type = uris_.atomFloat},
                           .values = controls_.values()};
    const std::string bytes = instance_.state();
    if (bytes.empty()) return LV2_STATE_ERR_UNKNOWN;
    constexpr std::uint32_t kFlags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    const auto status =
        store(handle, uris_.state, bytes.data(), bytes.size(), uris_.atomChunk, kFlags);
    if (status != LV2_STATE_SUCCESS) return status;
    return store(handle, uris_.ports, &ports, sizeof ports, uris_.atomVector, kFlags);
}

LV2_State_Status Lv2Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) {
    std::size_t size = 0;
    std::uint32_t type = 0, flags = 0;
    const void* const bytes = retrieve(handle, uris_.state, &size, &type, &flags);
    if (!bytes) return LV2_STATE_ERR_NO_PROPERTY;
    const auto restored = instance_.setState({static_cast<const std::byte*>(bytes), size});
    if (!restored) {
        instance_.system().instance.log.write("The state is not restored: " + restored.message());
        return LV2_STATE_ERR_UNKNOWN;
    }
    const void* const saved = retrieve(handle, uris_.ports, &size, &type, &flags);
    PortVector ports{};
    if (!saved || type != uris_.atomVector || size != sizeof ports) return LV2_STATE_SUCCESS;
    std::memcpy(&ports, saved, sizeof ports);
    if (ports.head.child_type == uris_.atomFloat) controls_.restored(ports.values);
    return LV2_STATE_SUCCESS;
}

} // namespace zephyra
