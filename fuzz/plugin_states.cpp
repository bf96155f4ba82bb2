#include "fuzz/played_system.h"
#include "fuzz/require.h"
#include "fuzz/system_attacks.h"
#include "hosting/plugin_instance.h"

namespace zephyra {
namespace {

constexpr std::uint32_t kFrames = 512;  // of a block: half a second in all moves every LFO and take
constexpr std::size_t kMostPresets = 3; // of one input; each loads its sound

struct AttackedPlugin : PluginInstance {
    explicit AttackedPlugin(PluginKind kind)
        : PluginInstance(kind, [](Instance& empty) {
              empty.log.setSink([](std::string_view) {});
              empty.folders = {"/nonexistent/shared", "/nonexistent/resources"};
          }) {}
    Result<void> restore(std::span<const std::byte> bytes) {
        const auto set = setState(bytes);
        system().instance.runLoop.finishWork();
        while (system().instance.alerts.answer(0)) {
        }
        return set;
    }
    void midi(std::initializer_list<std::uint8_t> bytes) {
        queueMidi(bytes.begin(), bytes.size(), 0);
    }
    /// A few blocks of a bounce with a tilt that changes and messages of every kind.
    std::string play() {
        std::array<float, kFrames> input, left{}, right{};
        input.fill(0.5f);
        queueParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f, 0);
        for (std::uint8_t block = 0; block < 6; ++block) {
            const auto value = static_cast<std::uint8_t>(block * 25);
            system().instance.accelerometer.set(block / 3.0f - 1.0f, 0.5f);
            midi({0xB0, block, value, 0xB0, 32, value, 0xE0, value, value, 0xD0, value});
            midi({0x90, static_cast<std::uint8_t>(60 + block), value, 0xC0, block});
            renderOffline({.frames = kFrames,
                           .input = {input.data(), input.data()},
                           .output = {left.data(), right.data()}});
            for (const auto& channel : {left, right})
                if (!std::ranges::all_of(channel, [](float x) { return std::isfinite(x); }))
                    return "a rendered sample is not finite";
            const RunLoop::Scope main(system().instance.runLoop);
            if (std::string fault = firstFault(system().view); !fault.empty()) return fault;
        }
        return "";
    }
};

/// The states that bytes hold: themselves, or some of a bank's presets, one after another.
std::vector<std::string> statesIn(std::span<const std::byte> bytes, unsigned chosen) {
    std::vector<std::string> presets;
    const auto list = readPropertyList(bytes, {.bytes = std::size_t{2} << 20, .values = 100000});
    const auto* const bank = list ? list.value().as<PropertyDictionary>() : nullptr;
    for (const auto& [key, value] : bank ? *bank : PropertyDictionary{})
        if (const auto* const preset = value.as<PropertyDictionary>();
            preset && preset->contains("SnapshotTags"))
            presets.push_back(writePropertyList(*preset).value());
    if (presets.empty()) return {{reinterpret_cast<const char*>(bytes.data()), bytes.size()}};
    std::ranges::rotate(presets, presets.begin() + chosen % presets.size());
    presets.resize(std::min(kMostPresets, presets.size()));
    return presets;
}

} // namespace

std::string tryPluginState(std::span<const std::byte> bytes) {
    constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument,
                                     PluginKind::standalone};
    const auto chosen = bytes.empty() ? 0u : std::to_integer<unsigned>(bytes.back());
    AttackedPlugin plugin(kKinds[chosen % 3]);
    if (!plugin.prepare({.sampleRate = 8000.0, .mostFrames = kFrames})) return "it does not start";
    for (const std::string& state : statesIn(bytes, chosen / 3)) {
        const std::string before = plugin.state();
        const auto set = plugin.restore(std::as_bytes(std::span(state)));
        if (set) continue;
        if (!isOneLine(set.message())) return "a message of several lines";
        return plugin.state() == before ? "" : "what was refused changed the state";
    }
    if (std::string fault = plugin.play(); !fault.empty()) return fault;
    std::string state;
    for (int again = 0; again < 2; ++again) {
        state = plugin.state();
        if (!plugin.restore(std::as_bytes(std::span(state)))) return "its own state is refused";
        if (plugin.currentProgram() != 0) return "a program that is not there";
    }
    return plugin.state() == state ? plugin.play() : "its own state does not stay the same";
}

} // namespace zephyra
