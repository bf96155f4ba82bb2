// How a render begins and ends, and how long the echo is waited for.

#include "effects/echo_tail.h"
#include "engine/envelope_menu.h"
#include "rendering/offline_render.h"
#include "rendering/output/output_file.h"
#include "rendering/render_source.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(OfflineRender, InTheTailNoGrainStartsAndNothingBreaksOff) {
    RenderPlan plan{
        .sampleRate = 44100,
        .playFrames = 5000,
        .frames = 15000,
        .blockFrames = 512,
        .seed = 5,
        .envelope = kDefaultEnvelope,
        .settings = {{ControlId::density, 400}, {ControlId::pan, -1}, {ControlId::freeze, 1}},
        // In the tail, and in the last frame of all.
        .timedSettings = {{0.2, {ControlId::amplitude, 1}},
                          {14999.5 / 44100, {ControlId::pitch, 5}}},
        .start = {},
        .automation = {{0.25, ControlId::amplitude, 1.0f, false}}};
    std::vector<float> left;
    std::uint64_t grains = 0;
    OfflineRender render(plan, Folders{});
    ASSERT_TRUE(render.prepare({.sample = noiseSample(20000, 44100)}));
    const auto statistics = render.run([&](const RenderedBlock& block) -> Result<void> {
        EXPECT_EQ(block.firstFrame, left.size());
        EXPECT_EQ(*std::max_element(block.right, block.right + block.frames), 0.0f);
        left.insert(left.end(), block.left, block.left + block.frames);
        grains += block.grains.size();
        EXPECT_LE(block.cycles.size(), 2u); // its own alone
        for (const GrainRecord& grain : block.grains) EXPECT_LT(grain.frame, 5000u);
        return {};
    });
    ASSERT_TRUE(statistics);
    EXPECT_EQ(statistics.value().startedGrains + statistics.value().droppedGrains, grains);
    EXPECT_TRUE(render.plan().notices.empty());
    const PropertyDictionary state = render.state();
    const std::string pitch = ofStream(controlRange(ControlId::pitch).channel);
    EXPECT_EQ(PropertyReader(state).real(pitch), 5.0);
    // Grains last at most 85 ms and a quarter more; none steps to silence at once.
    const auto at = [&left](std::size_t frame) { return std::abs(left[frame]); };
    float loud = 0, silent = 0;
    for (std::size_t n = 5000; n < 5500; ++n) loud = std::max(loud, at(n));
    for (std::size_t n = 5000 + 4686; n < 15000; ++n) silent = std::max(silent, at(n));
    EXPECT_GT(loud, 0.1f);
    EXPECT_EQ(silent, 0.0f);
}

TEST(OfflineRender, WhatComesAtAFrameShapesTheFirstGrainFromThereOnWhateverTheBlock) {
    using enum ControlId;
    const std::pair<int, std::uint64_t> rows[] = {
        {0, 0}, {2192, 2200}, {2193, 2310}, {8191, 8250}, {8241, 8360}}; // of every 110 frames
    for (const int block : {64, 512, 65536})
        for (const auto& [frame, first] : rows) {
            const double at = (frame + 0.5) / 44100;
            OfflineRender render(
                {.sampleRate = 44100,
                 .playFrames = 9000,
                 .frames = 9000,
                 .blockFrames = block,
                 .seed = 5,
                 .settings = {{density, 400}, {length, 10}, {rndLength, 0}, {rndDensity, 0}},
                 .timedSettings = {{at, {length, 20}}, {at, {ControlId::pitch, -3}}},
                 .start = {},
                 .automation = {{at, pan, -1.0f, false}, {at, ControlId::pitch, 5.0f, false}},
                 .midi = {{at, 3, {0x90, 72, 100}}}},
                Folders{});
            ASSERT_TRUE(render.prepare({.sample = noiseSample(20000, 44100)}));
            std::vector<std::uint64_t> longer, left, higher;
            ASSERT_TRUE(render.run([&](const RenderedBlock& rendered) -> Result<void> {
                for (const GrainRecord& grain : rendered.grains) {
                    if (grain.length > 0.015f) longer.push_back(grain.frame);
                    if (grain.gainR == 0.0f) left.push_back(grain.frame);
                    if (grain.rate > 1.5f * 44100 / 20000) higher.push_back(grain.frame);
                }
                return {};
            }));
            for (const auto& moved : {longer, left, higher})
                EXPECT_EQ(moved.at(0), first) << frame << ", block " << block;
        }
}

/// Four seconds of an effect without its input.
RenderPlan livePlan(int block) {
    return {.sampleRate = 8000,
            .playFrames = 32000,
            .frames = 32000,
            .blockFrames = block,
            .seed = 5,
            .host = {.type = component_type::effect},
            .wetOnly = true};
}

/// The plan once it is rendered with so much silence, then 0.25, and late from 2 s on.
RenderPlan renderLive(const RenderPlan& plan, std::size_t silent, float late,
                      const std::function<void(const RenderedBlock&)>& each) {
    RenderSource source;
    source.inputLeft.assign(32000, 0.25f);
    std::fill(source.inputLeft.begin() + 16000, source.inputLeft.end(), late);
    std::fill_n(source.inputLeft.begin(), silent, 0.0f);
    source.inputRight = source.inputLeft;
    OfflineRender render(plan, Folders{});
    EXPECT_TRUE(render.prepare(source));
    EXPECT_TRUE(render.run([&](const RenderedBlock& block) -> Result<void> {
        each(block);
        return {};
    }));
    return render.plan();
}

TEST(OfflineRender, HoldsLiveSoundFromTwoSecondsToThreeWhoeverPressesFreeze) {
    using enum ControlId;
    const ControlSetting on{freeze, 1}, off{freeze, 0};
    struct Press {
        std::vector<TimedSetting> timed = {};
        std::vector<AutomationPoint> automated = {};
        std::vector<TimedMidi> midi = {};
        std::vector<ControlSetting> settings = {};
        bool freeze = false; // is asked for
        std::optional<double> from = {};
        std::uint64_t before = 16000, after = 32000; // most frames heard until 2 s, from 3 s on
    };
    const Press presses[] = {
        {.timed = {{2, on}}},
        {.timed = {{1, on}, {2, off}, {2, on}}, .before = 8000},
        {.timed = {{2, on}, {2.5, {live, 0}}}, .after = 20000},
        {.automated = {{2, freeze, 1.0f, false}}},
        {.midi = {{2, 3, {0xB0, 9, 127}}}},
        {.freeze = true},
        {.settings = {on}, .freeze = true, .from = 2}, // not before
    };
    for (std::size_t i = 0; i < 2 * std::size(presses); ++i) {
        SCOPED_TRACE(i / 2);
        const Press& press = presses[i / 2];
        RenderPlan plan = livePlan(i % 2 ? 512 : 65536);
        plan.settings = press.settings;
        plan.timedSettings = press.timed;
        insertByTime(plan.timedSettings, {3, off});
        plan.host.freeze = press.freeze;
        plan.host.freezeSeconds = press.from;
        plan.automation = press.automated;
        plan.midi = press.midi;
        plan.motion.learned = {{freeze, {.trigger = {.number = 9}}}};
        std::vector<float> left;
        const auto notices =
            renderLive(plan, 0, -0.25f, [&](const RenderedBlock& block) {
                left.insert(left.end(), block.left, block.left + block.frames);
                for (const RenderedCycle& cycle : block.cycles) {
                    const std::uint64_t end = block.firstFrame + cycle.end;
                    EXPECT_EQ(cycle.heard, end > 24000   ? std::min(end, press.after)
                                           : end > 16000 ? 16000
                                                         : std::min(end, press.before));
                }
            }).notices;
        EXPECT_GE(*std::min_element(left.begin(), left.begin() + 24000), 0.0f);
        EXPECT_GT(*std::max_element(left.begin() + 23000, left.begin() + 24000), 0.0f);
        EXPECT_LT(*std::min_element(left.begin() + 24000, left.begin() + 25000), 0.0f);
        EXPECT_EQ(notices, std::vector<std::string>());
    }
}

TEST(OfflineRender, TellsOfFreezeWhereNothingThatSoundsIsHeld) {
    using enum ControlId;
    const std::tuple<double, float, std::size_t, std::string> cases[] = {
        {0, 0.9f, 0, "Freeze at 0.000 s has nothing to hold"},
        {0.5, 0.9999f, 0, ""},
        {0.5, 0.5f, 0, "Freeze at 0.500 s holds silence where the scan stands"},
        {0.5, 0.9999f, 20000, "Freeze at 0.500 s holds silence where the scan stands"},
        {3.998, 0.5f, 0, ""}, // no grain starts any more
    };
    for (const auto& [seconds, position, silent, said] : cases) {
        RenderPlan plan = livePlan(65536);
        plan.settings = {{scanning, 0}, {scrubbingWave, position}};
        plan.timedSettings = {{seconds, {freeze, 1}}};
        if (seconds == 0.5)
            for (const double later : {1, 2, 3})
                plan.timedSettings.push_back({later, {freeze, later == 2 ? 1.0f : 0.0f}});
        std::string notices;
        for (const std::string& notice : renderLive(plan, silent, 0.25f, [](auto&) {}).notices)
            notices += notice;
        EXPECT_EQ(notices.substr(0, said.empty() ? notices.size() : said.size()), said);
    }
}

TEST(OfflineRender, TheScanOfACycleTellsWhetherGrainsStart) {
    OfflineRender render({.sampleRate = 44100,
                          .playFrames = 44100,
                          .frames = 44100,
                          .blockFrames = 512,
                          .seed = 5,
                          .timedSettings = {{0.3, {ControlId::playStop, 0}}},
                          .host = {.fadeOut = 0.05}},
                         Folders{});
    ASSERT_TRUE(render.prepare({.sample = noiseSample(20000, 44100)}));
    std::uint64_t silent = 0;
    ASSERT_TRUE(render.run([&](const RenderedBlock& block) -> Result<void> {
        for (const RenderedCycle& cycle : block.cycles) {
            if (cycle.scan.plays) continue;
            ++silent;
            EXPECT_TRUE(block.grains.empty());
        }
        return {};
    }));
    EXPECT_GT(silent, 10u) << "once it has faded out";
}

TEST(RenderPlan, LengthRateAndSeedComeFromTheSourceAndTheClock) {
    RenderRequest request;
    const SoundFileInfo source{.format = "", .channels = 1, .sampleRate = 22050, .frames = 11025};
    Clock clock;
    clock.fix(1234567);
    const auto own = makeRenderPlan(request, source, clock);
    ASSERT_TRUE(own);
    EXPECT_EQ(std::tuple(own.value().sampleRate, own.value().frames, own.value().seed),
              std::tuple(22050, 11025u, 1234567u));
    clock.fix(0);
    EXPECT_EQ(makeRenderPlan(request, source, clock).value().seed, 1u);
    const TemporaryFolder folder;
    request.host.state = folder / "state";
    for (const auto& [saved, seed] :
         {std::pair<std::int64_t, std::uint32_t>(7, 7), {0, 1}, {1LL << 32, 1}}) {
        ASSERT_TRUE(
            writePropertyListFile(*request.host.state, {{ofStream(state_key::kSeed), saved}}));
        EXPECT_EQ(makeRenderPlan(request, source, clock).value().seed, seed) << saved;
    }
    EXPECT_EQ(dueFrame(1e308, 48000), std::uint64_t{1} << 62);

    request.sampleRate = 44100;
    EXPECT_EQ(makeRenderPlan(request, source, clock).value().frames, 22050u);
    EXPECT_TRUE(checkInputRate(request, source));
    request.host.type = component_type::effect;
    EXPECT_FALSE(checkInputRate(request, source));
}

TEST(EchoTail, LastsUntilEveryRepeatIsSixtyDecibelsDown) {
    const std::tuple<EchoSide, EchoSide, double, double> cases[] = {
        {{22050, 0}, {11025, 0}, 44100, 0.5},               // one repeat each
        {{22050, 0.11}, {11025, 0}, 44100, 2.0},            // 1, 0.11, 0.0121, 0.00133
        {{4410, 0.5}, {11025, 0}, 44100, 1.0},              // 0.5 to the power of 9 is above 0.001
        {{4410, 0}, {11025, 0.2}, 44100, 1.25},             // 0.2 to the power of 4 is above 0.001
        {{22050, 0}, {11025, 0}, 22050, 1.0},               // the same samples take twice the time
        {{200001, 0}, {11025, 0}, 44100, 200000 / 44100.0}, // the echo's longest delay
        {{198450, 0.98}, {11025, 0}, 44100, kLongestEchoTail}};
    for (const auto& [left, right, rate, seconds] : cases)
        EXPECT_DOUBLE_EQ(echoTail(left, right, rate), seconds) << left.delay << " " << left.gain;
}

TEST(OutputFile, CountsAndLimitsWhatExceedsFullScaleOnEitherSide) {
    TemporaryFolder folder;
    OutputFile file;
    ASSERT_TRUE(
        file.open({.path = folder / "a.wav", .type = defaultOutputType(), .sampleRate = 44100}));
    float left[] = {-1.5f, -1.0f, 0.0f}, right[] = {1.0f, 1.25f, -1.01f};
    ASSERT_TRUE(file.write(left, right, 3) && file.close());
    EXPECT_EQ(std::tuple(file.limitedSamples(), file.peak(), left[0]), std::tuple(3u, 1.5, -1.0f));
    EXPECT_EQ(right[2], -1.0f);
}

TEST(RenderSource, IsReadUntilWhoeverAsksForItWantsNoMore) {
    const TemporaryFolder folder;
    std::vector<float> sound(40000, 0.25f);
    OutputFile file;
    ASSERT_TRUE(
        file.open({.path = folder / "in.wav", .type = defaultOutputType(), .sampleRate = 44100}));
    ASSERT_TRUE(file.write(sound.data(), sound.data(), 40000) && file.close());
    for (const bool live : {false, true}) {
        const RenderRequest request{.input = folder / "in.wav", .live = live};
        double last = 0;
        const auto read = readRenderSource(request, Folders{}, std::make_shared<FileFacts>(),
                                           [&](double share) { return last = share, true; });
        ASSERT_TRUE(read) << read.message();
        EXPECT_EQ(std::tuple(last, read.value().shownSamples().size()), std::tuple(1.0, 40000u));
        EXPECT_EQ(read.value().source.inputLeft.size(), live ? 40000u : 0u);
        EXPECT_FALSE(readRenderSource(request, Folders{}, std::make_shared<FileFacts>(),
                                      [](double) { return false; }));
    }
}

} // namespace
} // namespace zephyra
