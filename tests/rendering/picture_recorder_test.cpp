// What a render's picture is collected from: grains, notes and the values of moved controls.

#include "rendering/events/midi_notes.h"
#include "rendering/offline_render.h"
#include "rendering/picture_recorder.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

/// A plan of one second at 44100 Hz, and one block of it.
RenderPlan planFor(SourceUse use) {
    return {.sampleRate = 44100,
            .playFrames = 44100,
            .frames = 44100,
            .blockFrames = 10000,
            .seed = 1,
            .envelope = 0,
            .use = use};
}

TEST(PictureRecorder, GrainsStandWhereTheyReadInTheSourceAtTheirPitch) {
    const SoundFileInfo source{.format = "", .channels = 1, .sampleRate = 44100, .frames = 88200};
    std::vector<float> silence(10000);
    // In a source of 2 s, 1 Hz is an octave up; in the live buffer of 10 s, 0.1 Hz is its own
    // pitch.
    const GrainRecord loaded{20500, 0.25f, 1.0f, 0.1f, 1, 0.5f, false};
    const GrainRecord live{20500, (441000 - 5 - 8820) / 441000.0f, 0.1f, 0.1f, 0, 0, true};
    const auto recorded = [&](SourceUse use, const GrainRecord& grain, std::uint64_t heard = 0) {
        const CycleScan scan = {.plays = true, .phase = double{grain.position}};
        const RenderedCycle cycles[] = {
            {500, 1.0f}, {4096, 0.5f, {}, 24096}, {10000, 0.25f, scan, heard}};
        PictureRecorder recorder(planFor(use), source,
                                 {.source = 1, .time = 1000, .frequencies = 1});
        recorder.add({20000, 10000, silence.data(), silence.data(), {&grain, 1}, cycles});
        return recorder.picture().map;
    };
    const GrainMark first = recorded(SourceUse::loaded, loaded).grains.at(0);
    EXPECT_NEAR(first.start, 20500 / 44100.0, 1e-9);
    EXPECT_NEAR(first.from, 0.25, 1e-6);
    EXPECT_NEAR(first.to, 0.35, 1e-6);
    EXPECT_NEAR(first.semitones, 12, 1e-3);
    EXPECT_EQ(first.level, 0.5);
    EXPECT_NEAR(first.pan, -1 / 3.0, 1e-6);
    EXPECT_FALSE(first.dropped);

    // The grain's cycle is cut from the input until its end, the last one from what is held.
    const GrainMap map = recorded(SourceUse::live, live, 15000);
    EXPECT_NEAR(map.grains.at(0).from, (24096 - 1 - 8820) / 88200.0, 1e-5);
    EXPECT_NEAR(map.grains.at(0).to - map.grains.at(0).from, 4410 / 88200.0, 1e-5);
    EXPECT_NEAR(map.grains.at(0).semitones, 0, 1e-3);
    EXPECT_TRUE(map.grains.at(0).dropped);
    EXPECT_EQ(map.grains.at(0).pan, 0) << "silent";
    // The scan plays in the last cycle alone, which begins with frame 24096.
    for (const auto& [heard, from, drift] : {std::tuple(15000u, 15000, 0), {30000u, 24096, 5904}}) {
        const auto scans = recorded(SourceUse::live, live, heard).scan;
        ASSERT_EQ(scans.size(), 1u) << "nobody hears where it stands while it does not play";
        EXPECT_NEAR(scans[0].low + scans[0].phase * scans[0].span, (from - 1 - 8820) / 88200.0,
                    1e-5);
        EXPECT_NEAR(scans[0].drift, drift / 88200.0, 1e-9) << "held sound stands, input goes on";
    }
}

/// Where the scan stood at a time, by what a picture keeps of it.
double scanAt(const GrainMap& map, double seconds) {
    const auto run = std::ranges::find_if(
        map.scan, [seconds](const ScanRun& each) { return seconds < each.end() - 1e-9; });
    if (run == map.scan.end() || seconds < run->seconds) return NAN;
    const double phase = run->phase + run->travel * (seconds - run->seconds) / run->length;
    return run->low + (phase - std::floor(phase)) * run->span;
}

TEST(PictureRecorder, TheScanGoesWhereGrainsReadHoweverItIsMoved) {
    using enum ControlId;
    RenderPlan plan = planFor(SourceUse::loaded);
    plan.blockFrames = 512;
    plan.playFrames = 40000; // then comes the tail
    plan.settings = {{jittering, 0}, {density, 400}, {length, 10}};
    plan.start = 0.3f;
    plan.end = 0.34f; // crossed in 18 ms, more than once a block at its fastest
    plan.timedSettings = {
        {0.2, {scanning, 4}}, {0.4, {scanning, -4}}, {0.5, {scrubbingWave, 0.33f}}};
    const SoundFileInfo source{.format = "", .channels = 2, .sampleRate = 44100, .frames = 20000};
    OfflineRender render(plan, Folders{});
    ASSERT_TRUE(render.prepare({.sample = noiseSample(20000, 44100)}));
    PictureRecorder recorder(plan, source, {.source = 1, .time = 1000, .frequencies = 1});
    ASSERT_TRUE(render.run([&](const RenderedBlock& block) -> Result<void> {
        recorder.addOutput(block.left, block.right, block.frames);
        recorder.add(block);
        return {};
    }));
    const GrainMap& map = recorder.picture().map;
    EXPECT_LT(map.scan.size(), 12u) << "a run for every change";
    std::size_t grains = 0;
    for (const GrainMark& grain : map.grains) {
        const double apart = std::abs(scanAt(map, grain.start) - grain.from);
        EXPECT_LT(std::min(apart, 0.04 - apart), 2e-4)
            << grain.start; // just before it wraps, or after
        ++grains;
    }
    EXPECT_GT(grains, 200u);
    EXPECT_TRUE(std::isnan(scanAt(map, 40001 / 44100.0)) && recorder.picture().isStereo);
    EXPECT_EQ(recorder.picture().sourceChannels, 2u);
}

TEST(PictureRecorder, AMovedControlBeginsWhereItStandsAndNamesTheEndsOfItsWay) {
    RenderPlan plan = planFor(SourceUse::loaded);
    plan.moved = {{ControlId::echoSwitch, "LFO"}, {ControlId::density, "CC 1"}};
    plan.initial[static_cast<std::size_t>(ControlId::density)] = 50;
    PictureRecorder recorder(plan,
                             {.format = "", .channels = 1, .sampleRate = 44100, .frames = 1000},
                             {.source = 1, .time = 2, .frequencies = 1});
    float silence[] = {0};
    const RenderedCycle cycles[] = {{1, 0.5f}};
    const float moved[] = {1.0f, 200.25f}; // half way of the density: 0.5 + 399.5 / 8 Hz
    recorder.add({44099, 1, silence, silence, {}, cycles, moved});
    const ControlPath& path = recorder.finish("in.wav", {}, {}).paths.at(1);
    EXPECT_EQ(path.name + " " + path.mover, "Density CC 1");
    EXPECT_EQ(std::tuple(path.lowText, path.highText), std::tuple("50 Hz", "50.4 Hz"));
    EXPECT_EQ(path.columns[1].count, 1u);
    EXPECT_EQ(recorder.picture().paths.at(0).highText, "on");
    EXPECT_FALSE(recorder.picture().isStereo);
    EXPECT_EQ(recorder.picture().texts.settings.at(0), "Density 50 Hz");
}

TEST(NotesOf, ANoteEndsWithItsOwnChannelsNoteOffOrWhenItIsStruckAgain) {
    const std::vector<TimedMidi> messages = {
        {0.0, 3, {0x90, 60, 127}}, {0.5, 3, {0x81, 60, 0}}, // another channel's
        {1.0, 3, {0x90, 60, 64}},  {2.0, 3, {0x90, 60, 0}}, {2.5, 3, {0xB0, 60, 1}},
        {3.0, 3, {0x91, 72, 1}},   {9.0, 3, {0x91, 74, 1}}, // beyond the end
    };
    const auto notes = notesOf(messages, 4.0);
    ASSERT_EQ(notes.size(), 3u);
    for (const std::size_t i : {0u, 1u, 2u}) EXPECT_EQ(notes[i].length, 1.0) << i;
    EXPECT_EQ(notes[2].number, 72);
}

} // namespace
} // namespace zephyra
