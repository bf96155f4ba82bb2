// PluginPlayer: a plug-in's instance behind a host that plays it block by block.
#pragma once

#include "hosting/plugin_instance.h"
#include "tests/support/block_partition.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {

/// Seed and clock stand still. A file's sound, echo, an LFO of random values and one that moves the
/// scan are there once arrange() was called.
struct PluginPlayer : HeardLog {
    static void fix(Instance& instance) {
        instance.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
        instance.random.seed(7);
        instance.clock.fix(7);
    }
    explicit PluginPlayer(PluginKind kind = PluginKind::effect)
        : plugin(kind, [this](Instance& fresh) { fix(fresh), hear(fresh); }) {}

    /// As a player would, in a state that is worth a bounce; live: from the input, else of a file.
    static void arrange(HostedInstance& system, bool live = false) {
        const RunLoop::Scope main(system.instance.runLoop);
        MOK_SCRUB_GRANULATOR& stream = system.stream();
        if (!live) stream.loadSound(noiseSample(30000, 44100));
        stream.setSeed(7);
        stream.pickEnvelope(11); // drawn at random
        for (const ControlId id : {ControlId::echoSwitch, ControlId::ringModulationSwitch})
            stream.setDisplayed(id, 1.0f);
        stream.setDisplayed(ControlId::rndPitch, 5.0f);
        stream.setDisplayed(ControlId::density, 80.0f);
        LFO_WIDGETS_MAPPING& lfos = *system.view.assignments.getLfoWidgetsMapping();
        MOK_KNOB& pitch = stream.controls._pitch;
        lfos.addWidget(&pitch);
        lfos.getWrapperID(&pitch)->setHz(9.0);
        lfos.getWrapperID(&pitch)->setLfoShapeFromWrapper(kLfoRandom);
        const float take[] = {0.02f, 0.09f, 0.01f, 0.06f}; // where LIVE soon hears something
        stream.scrubRecorder.setTake(take);
        PropertyDictionary state;
        stream.scrubRecorder.saveDataForRecordScrub(state);
        state.insert_or_assign(stream.channel() + "_SCRUB_REC_IS_PLAYING_", std::int64_t{1});
        StateFindings findings;
        PropertyReader reader(state, findings);
        stream.scrubRecorder.loadStateForRecordScrub(reader); // and it plays
    }

    /// Blocks of the partition, noise coming in; what comes out, left before right of each block.
    /// events: before each block, with its number.
    std::vector<float> play(std::int32_t frames, bool offline, PluginTransport transport = {},
                            const std::function<void(int)>& events = {}, std::uint32_t seed = 3) {
        std::vector<float> heard;
        const auto input = noiseSample(static_cast<std::uint64_t>(frames), 44100, 5);
        std::int32_t done = 0;
        int number = 0;
        for (const std::int32_t block : randomPartition(frames, 700, seed)) {
            if (events) events(number++);
            const auto size = static_cast<std::size_t>(block);
            heard.resize(heard.size() + 2 * size);
            float* const right = heard.data() + heard.size() - size;
            const float* const in = input->getPtr() + done;
            const PluginBlock sent{
                static_cast<std::uint32_t>(block), {in, in}, {right - size, right}, transport};
            if (offline)
                plugin.renderOffline(sent);
            else
                plugin.render(sent);
            done += block;
        }
        return heard;
    }

    PluginInstance plugin;
};

} // namespace zephyra
