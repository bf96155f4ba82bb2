#include "fuzz/restored_state.h"

#include "fuzz/played_system.h"
#include "fuzz/view_checks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

namespace zephyra {
namespace {

// So that within a few blocks every LFO and take has moved.
constexpr std::uint32_t kFrames = 512;
constexpr double kRate = 8000.0;
constexpr std::uint8_t kBlocks = 6;

struct System : PlayedSystem {
    explicit System(FourCharCode type) : PlayedSystem(type, {kRate, kFrames}) {}

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
    void queueMidi(std::initializer_list<std::uint8_t> bytes) {
        host.queueMidi(bytes.begin(), static_cast<std::uint16_t>(bytes.size()));
    }
    void restore(const PropertyDictionary& state) {
        view.restoreState(state);
        host.render({}); // waits for what it loads
        instance.runLoop.runPosted();
        while (instance.alerts.answer(0)) {
        }
    }
};

/// "Key was VALUE" of the first entry that differs.
std::string firstDifference(const PropertyDictionary& before, const PropertyDictionary& after) {
    for (const auto& [key, value] : before)
        if (const auto found = after.find(key); found == after.end() || found->second != value) {
            const auto* const real = value.as<double>();
            const auto* const now = found == after.end() ? nullptr : found->second.as<double>();
            return "the state changes in " + key +
                   (real && now
                        ? " from " + std::to_string(*real) + " by " + std::to_string(*now - *real)
                        : "");
        }
    return before.size() == after.size() ? "" : "the state gets another key";
}

} // namespace

std::string tryRestoring(std::span<const std::byte> bytes) {
    const auto list = readPropertyList(bytes, {.bytes = std::size_t{1} << 20, .values = 20000});
    const auto* const given = list ? list.value().as<PropertyDictionary>() : nullptr;
    if (!given) return "";
    constexpr FourCharCode kTypes[] = {component_type::effect, component_type::instrument};
    System system(kTypes[std::to_integer<unsigned>(bytes.back()) % 2]);
    system.restore(*given);
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
