#include "fuzz/require.h"
#include "fuzz/system_attacks.h"
#include "hosting/plugin_instance.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zephyra {
namespace {

constexpr std::uint32_t kFrames = 512;

/// A few blocks of a bounce, with a note that comes and goes.
std::string play(PluginInstance& plugin) {
    std::array<float, kFrames> input, left{}, right{};
    input.fill(0.5f);
    for (const std::uint8_t velocity : std::to_array<std::uint8_t>({100, 0, 100})) {
        const std::uint8_t note[] = {0x90, 67, velocity};
        plugin.queueMidi(note, sizeof note, velocity);
        plugin.renderOffline({.frames = kFrames,
                              .input = {input.data(), input.data()},
                              .output = {left.data(), right.data()}});
        for (const auto& channel : {left, right})
            if (!std::all_of(channel.begin(), channel.end(),
                             [](float sample) { return std::isfinite(sample); }))
                return "a rendered sample is not finite";
    }
    return "";
}

} // namespace

std::string tryPluginState(std::span<const std::byte> bytes) {
    constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument,
                                     PluginKind::standalone};
    const auto chosen = bytes.empty() ? 0u : std::to_integer<unsigned>(bytes.back());
    PluginInstance plugin(kKinds[chosen % 3], [](Instance& empty) {
        empty.log.setSink([](std::string_view) {});
        empty.folders = {"/nonexistent/shared", "/nonexistent/resources"};
    });
    if (!plugin.prepare({.sampleRate = 8000.0, .mostFrames = kFrames})) return "it does not start";
    const std::string before = plugin.state();
    if (const auto set = plugin.setState(bytes); !set) {
        if (!isOneLine(set.message())) return "a message of several lines";
        return plugin.state() == before ? "" : "what was refused changed the state";
    }
    if (std::string fault = play(plugin); !fault.empty()) return fault;
    for (int again = 0; again < 2; ++again) {
        const std::string state = plugin.state();
        if (!plugin.setState(std::as_bytes(std::span(state)))) return "its own state is refused";
        if (plugin.currentProgram() != 0) return "a program that is not there";
    }
    return play(plugin);
}

} // namespace zephyra
