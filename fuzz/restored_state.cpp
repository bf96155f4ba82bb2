#include "fuzz/system_attacks.h"

#include "fuzz/played_system.h"

namespace zephyra {
namespace {

// So that within a few blocks every LFO and take has moved.
constexpr std::uint32_t kFrames = 512;
constexpr double kRate = 8000.0;
constexpr std::uint8_t kBlocks = 6;
constexpr std::size_t kMostPresets = 3; // of one input; each loads its sound

struct System : PlayedSystem {
    explicit System(FourCharCode type) : PlayedSystem(type) { host.start({kRate, kFrames}); }

    /// Half a second with a tilt that changes and messages of every kind.
    std::string play() {
        std::array<float, kFrames> input, left, right;
        input.fill(0.5f);
        host.queueParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
        for (std::uint8_t block = 0; block < kBlocks; ++block) {
            const auto value = static_cast<std::uint8_t>(block * 25);
            instance.accelerometer.set(block / 3.0f - 1.0f, 0.5f);
            queueMidi({0xB0, block, value, 0xB0, 32, value, 0xE0, value, value, 0xD0, value});
            queueMidi({0x90, static_cast<std::uint8_t>(60 + block), value, 0xC0, block});
            host.render({kFrames, input.data(), input.data(), left.data(), right.data()});
            for (const auto& channel : {left, right})
                if (!std::all_of(channel.begin(), channel.end(),
                                 [](float sample) { return std::isfinite(sample); }))
                    return "a rendered sample is not finite";
            if (const std::string fault = firstFault(view); !fault.empty()) return fault;
        }
        return "";
    }
    void queueMidi(std::initializer_list<std::uint8_t> midi) {
        host.queueMidi(midi.begin(), static_cast<std::uint16_t>(midi.size()));
    }
    void restore(const PropertyDictionary& state) {
        view.restoreState(state);
        host.render({}); // waits for what it loads
        instance.runLoop.runPosted();
        while (instance.alerts.answer(0)) {
        }
    }
};

/// Names the first entry that differs.
std::string firstDifference(const PropertyDictionary& before, const PropertyDictionary& after) {
    for (const auto& [key, value] : before)
        if (const auto found = after.find(key); found == after.end() || found->second != value)
            return "the state changes in " + key;
    return before.size() == after.size() ? "" : "the state gets another key";
}

/// The states in a list: itself, or some of a bank's presets, one after another.
std::vector<const PropertyDictionary*> statesIn(const PropertyDictionary& list, unsigned chosen) {
    std::vector<const PropertyDictionary*> presets;
    for (const auto& [key, value] : list)
        if (const auto* const preset = value.as<PropertyDictionary>();
            preset && preset->contains("SnapshotTags"))
            presets.push_back(preset);
    if (presets.empty()) return {&list};
    const std::size_t first = chosen % presets.size();
    const std::size_t count = std::min(kMostPresets, presets.size() - first);
    return {presets.begin() + static_cast<std::ptrdiff_t>(first),
            presets.begin() + static_cast<std::ptrdiff_t>(first + count)};
}

} // namespace

std::string tryRestoring(std::span<const std::byte> bytes) {
    const auto list = readPropertyList(bytes, {.bytes = std::size_t{2} << 20, .values = 100000});
    const auto* const given = list ? list.value().as<PropertyDictionary>() : nullptr;
    if (!given) return "";
    const auto chosen = std::to_integer<unsigned>(bytes.back());
    constexpr FourCharCode kTypes[] = {component_type::effect, component_type::instrument};
    System system(kTypes[chosen % 2]);
    for (const PropertyDictionary* const state : statesIn(*given, chosen / 2))
        system.restore(*state);
    if (const std::string fault = system.play(); !fault.empty()) return fault;
    const PropertyDictionary first = system.view.getState();
    if (const auto written = writePropertyList(first); !written) return written.message();
    system.restore(first);
    if (const std::string fault = firstFault(system.view); !fault.empty()) return fault;
    const PropertyDictionary second = system.view.getState();
    system.restore(second);
    return firstDifference(second, system.view.getState());
}

} // namespace zephyra
