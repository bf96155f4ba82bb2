#include "fuzz/restored_state.h"

#include "hosting/offline_host.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zephyra {
namespace {

constexpr std::uint32_t kFrames = 512;
constexpr int kBlocks = 4;

/// An audio unit as an offline host loads it, with nothing in its folders.
struct System {
    explicit System(FourCharCode type)
        : unit(MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                       instance, error)),
          view(instance), host(*unit, instance) {
        instance.folders = {"/nonexistent/shared", "/nonexistent/resources"};
        view.setAudioUnit(unit.get());
        view._GRANULATOR_STREAM.setSeed(1);
        host.start({44100.0, kFrames});
    }
    bool renderFinite() {
        std::array<float, kFrames> input, left, right;
        input.fill(0.5f);
        host.queueParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
        for (int block = 0; block < kBlocks; ++block) {
            host.render({kFrames, input.data(), input.data(), left.data(), right.data()});
            for (const auto& channel : {left, right})
                if (!std::all_of(channel.begin(), channel.end(),
                                 [](float sample) { return std::isfinite(sample); }))
                    return false;
        }
        return true;
    }
    void restore(const PropertyDictionary& state) {
        view.restoreState(state);
        host.render({}); // waits for what it loads
        instance.runLoop.runPosted();
        while (instance.alerts.answer(0)) {
        }
    }

    Instance instance;
    OSStatus error = 0;
    std::unique_ptr<MyAudioUnit> unit;
    AudioUnitViewController view;
    OfflineHost host;
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
    if (!system.renderFinite()) return "a rendered sample is not finite";
    const PropertyDictionary first = system.view.getState();
    if (const auto written = writePropertyList(first); !written) return written.message();
    system.restore(first);
    const PropertyDictionary second = system.view.getState();
    system.restore(second);
    return firstDifference(second, system.view.getState());
}

} // namespace zephyra
