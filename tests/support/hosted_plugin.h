// HostedPlugin: a plug-in's instance, prepared, whose blocks a test asks for one after the other.
#pragma once

#include "hosting/plugin_instance.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {

/// Its blocks are a bounce's, so that all that was asked for is done when one ends.
struct HostedPlugin : HeardLog, PluginInstance {
    explicit HostedPlugin(PluginKind kind) : PluginInstance(kind, prepareFor(*this)) {
        EXPECT_TRUE(prepare({48000.0, kFrames}).ok());
    }

    static constexpr std::uint32_t kFrames = 480; ///< of a block: 10 ms

    /// Loudest sample of the last of so many blocks, which a steady input goes into.
    float render(int blocks = 1) {
        for (int i = 0; i < blocks; ++i) renderOffline(block());
        const auto peak = std::max_element(
            left.begin(), left.end(), [](float a, float b) { return std::abs(a) < std::abs(b); });
        return std::abs(*peak);
    }
    void midi(std::initializer_list<std::uint8_t> bytes, std::uint32_t frame = 0) {
        queueMidi(bytes.begin(), bytes.size(), frame);
    }
    void set(ControlId id, float linear, std::uint32_t frame = 0) {
        queueParameter(static_cast<AUParameterAddress>(id), linear, frame);
    }
    float value(ControlId id) const { return parameter(static_cast<AUParameterAddress>(id)); }
    void sync(bool on) {
        const auto held = main();
        system().stream().setDisplayed(ControlId::scanSync, on ? 1.0f : 0.0f);
    }
    /// What a preset would keep.
    PropertyDictionary snapshot() {
        const auto held = main();
        return system().view.snapshotAsItIs();
    }
    /// Whether the stream plays or is armed.
    bool plays() {
        const auto held = main();
        return system().stream().linear(ControlId::playStop) != 0.0f;
    }
    /// Whether it does so in time, while it renders in real time.
    bool willPlay(bool playing) {
        for (int i = 0; i < 2000 && plays() != playing; ++i) {
            renderLive();
        }
        return plays() == playing;
    }
    void renderLive() {
        PluginInstance::render(block());
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    RunLoop::Scope main() { return RunLoop::Scope(system().instance.runLoop); }
    Result<void> restore(const std::string& text) {
        return setState(std::as_bytes(std::span(text)));
    }

    std::vector<float> input = std::vector<float>(kFrames, 0.25f);
    std::vector<float> left = std::vector<float>(kFrames), right = left;
    PluginTransport transport; ///< of the next block

private:
    PluginBlock block() {
        return {.frames = kFrames,
                .input = {input.data(), input.data()},
                .output = {left.data(), right.data()},
                .transport = std::exchange(transport, {})};
    }
    static HostedInstance::Prepare prepareFor(HeardLog& log) {
        return [&log](Instance& fresh) {
            log.hear(fresh);
            fresh.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
        };
    }
};

} // namespace zephyra
