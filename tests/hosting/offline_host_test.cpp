// The offline host: what the unit sees of time, music and events, and that renders repeat.

#include "platform/threads/worker.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

using enum ControlId;

TEST(OfflineHost, CountsBeatsWithTheTempoWhileTheTransportMoves) {
    HostedUnit hosted(component_type::instrument);
    hosted.ready(100);
    hosted.stream.setDisplayed(scanSync, 1.0f);
    hosted.report(90);
    hosted.host.setBeatPosition(-1.5);
    hosted.render(44100);
    hosted.host.setTransport(true);
    for (int i = 0; i < 441; ++i) hosted.render(100);
    EXPECT_DOUBLE_EQ(hosted.host.beatPosition(), 0.0);
    EXPECT_TRUE(hosted.stream.isPlaying());
    hosted.host.setTempo(120);
    hosted.render(22050);
    EXPECT_DOUBLE_EQ(hosted.host.beatPosition(), 1.0);
    EXPECT_GT(*std::max_element(hosted.heard.begin(), hosted.heard.end()), 0.01f);
    hosted.host.setTransport(false);
    hosted.render(512);
    hosted.render(0);
    EXPECT_EQ(hosted.stream.controls._playToggle.tag, 0);
    EXPECT_EQ(hosted.instance.runLoop.now(), 110762.0 / 44100);
}

TEST(OfflineHost, BringsAnInstrumentToItsDemonstrationSampleBeforeTheFirstBlock) {
    HostedUnit hosted(component_type::instrument), own(component_type::instrument);
    hosted.host.start({});
    EXPECT_TRUE(hosted.stream.sampleReference().path.ends_with("Zephyra_Sample08.mp3"));
    own.view.loadSample(ZEPHYRA_SOURCE_DIR "/resources/Blackbird.mp3");
    own.host.start({});
    EXPECT_TRUE(own.stream.sampleReference().path.ends_with("Blackbird.mp3"));
}

TEST(OfflineHost, WaitsForTheWorkThatWasBegunAndNotForWhatOthersKeepAskingFor) {
    HostedUnit hosted(component_type::instrument);
    hosted.ready(100);
    Worker worker(hosted.instance.runLoop, hosted.instance.log);
    std::atomic<bool> ends = false;
    std::atomic<int> asked = 0;
    std::thread other([&] { // asks anew before the last work is done, for 3 s at most
        for (; !ends && asked < 600; ++asked) {
            {
                const RunLoop::Scope main(hosted.instance.runLoop);
                worker.start([](auto&) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(10));
                    return RunLoop::Task();
                });
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    EXPECT_TRUE(comesTrue([&] { return asked > 0; }));
    for (int block = 0; block < 5; ++block) hosted.render(100);
    EXPECT_LT(asked, 600);
    ends = true;
    other.join();
}

TEST(OfflineHost, CutsABlockWhereSomethingActsAndNowhereElse) {
    // Most frames of a cycle, frames of each of two blocks, where something is to act; "f:" where
    // it did, and where cycles ended.
    using Offsets = std::vector<std::uint32_t>;
    const std::tuple<std::uint32_t, std::uint32_t, Offsets, const char*> rows[] = {
        {512, 512, {}, "512 1024 "},
        {512, 512, {0}, "0: 512 1024 "},
        {512, 512, {16, 1, 17, 2}, "16 16: 16: 16: 32 32: 512 1024 "},
        {512, 512, {496}, "496 496: 512 1024 "},
        {512, 512, {511}, "512 512: 1024 "},
        {512, 512, {512, 1000}, "512 512: 1008 1008: 1024 "},
        {512, 512, {1024}, "512 1024 "},
        {100, 100, {98, 100}, "100 100: 100: 200 "}, // the second block begins there
        {100, 200, {90, 98}, "96 96: 100 112 112: 200 300 400 "},
        {4096, 8192, {4000}, "4000 4000: 4096 8192 12288 16384 "}};
    HostedUnit hosted(component_type::instrument);
    OfflineHost& host = hosted.host;
    std::uint64_t first = 0;
    std::string happened;
    host.setCycleListener(
        [&](std::uint32_t end) { happened += std::to_string(first + end) + " "; });
    for (const auto& [most, frames, offsets, wanted] : rows) {
        hosted.ready(most);
        happened.clear();
        for (const std::uint32_t at : offsets)
            host.queueTask([&] { happened += std::to_string(host.renderedFrames()) + ": "; }, at);
        for (first = 0; first < 2 * frames; first += frames) hosted.render(frames);
        EXPECT_EQ(happened, wanted);
        EXPECT_EQ(host.hasQueued(), offsets == Offsets{1024});
    }
    host.stop(); // the unit may outlive it
    EXPECT_FALSE(hosted.unit->musicalContextBlock || hosted.unit->transportStateBlock);
}

TEST(OfflineHost, LetsNothingOvertakeAnotherOnTheWayToMain) {
    HostedUnit hosted(component_type::instrument);
    hosted.ready();
    const auto moved = [&](const std::string& order) {
        for (const char what : order) {
            if (what == 'p') hosted.queue(pitch, 5.0f);
            if (what == 't') hosted.host.queueTask([&] { hosted.stream.setDisplayed(pitch, -3); });
            if (what == 'n') hosted.midi({0x90, 72, 100});
            if (what == 'w') hosted.midi({0xE0, 0, 0x7F}), hosted.midi({0xE0, 0, 0x40}); // and back
        }
        hosted.render(0);
        return hosted.stream.linear(pitch);
    };
    for (const auto& [order, value] :
         {std::pair("pn", 12.0f), {"np", 5.0f}, {"pt", -3.0f}, {"tp", 5.0f}, {"wn", 12.0f}})
        EXPECT_EQ(moved(order), value) << order;
    std::string late(80, 'p');
    late.back() = 'n';
    EXPECT_EQ(moved(late), 12.0f);
    // What a block leaves to the next one keeps the order of its frames, whatever comes there.
    hosted.host.queueTask([&] { hosted.stream.setDisplayed(pitch, -3); }, 511);
    hosted.host.queueParameter(static_cast<AUParameterAddress>(pitch), 5.0f, 510);
    hosted.render(512);
    hosted.queue(width, 1.0f);
    EXPECT_EQ(moved(""), -3.0f);
    moved(std::string(9000, 'n')); // more than any queue to MAIN holds
    EXPECT_EQ(hosted.unit->lostNotices() + hosted.inlet.replaced(), 0u);
}

TEST(OfflineHost, MovesNothingElseByAnEventOrACut) {
    const auto heard = [](FourCharCode type, bool plain) {
        HostedUnit hosted(type);
        hosted.ready();
        const bool plays = type == component_type::instrument; // of an effect the input is heard
        hosted.stream.setDisplayed(scanSync, 1.0f);
        hosted.stream.setScrubNormalizedValue(0.5f); // until the rewind of beat 0 is taken
        if (plays) hosted.stream.____play();
        hosted.report(120);
        for (int i = 0; i < 8; ++i) {
            hosted.host.setTransport(plays && i < 4);
            if (!plain && plays) hosted.queue(width, hosted.stream.linear(width));
            if (!plain && !plays) hosted.host.queueTask([] {}, 208);
            hosted.render(512);
        }
        EXPECT_GT(*std::max_element(hosted.heard.begin(), hosted.heard.end()), 0.01f);
        return hosted.heard;
    };
    for (const FourCharCode type : {component_type::instrument, component_type::effect})
        EXPECT_EQ(heard(type, false), heard(type, true));
}

} // namespace
} // namespace zephyra
