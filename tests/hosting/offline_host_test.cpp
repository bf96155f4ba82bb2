// The offline host: what the unit sees of time, music and events, and that renders repeat.

#include "tests/support/hosted_unit.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zephyra {
namespace {

using enum ControlId;

TEST(OfflineHost, CountsBeatsWithTheTempoWhileTheTransportMoves) {
    HostedUnit hosted(component_type::instrument);
    hosted.ready(100);
    hosted.stream.setDisplayed(scanSync, 1.0f);
    hosted.host.reportContext(true);
    hosted.host.reportTransport(true);
    hosted.host.setMeter(4);
    hosted.host.setTempo(90);
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

} // namespace
} // namespace zephyra
