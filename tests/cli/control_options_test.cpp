// What is to happen to a control, as it is typed.

#include "cli/options/control_options.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(LfoOption, EveryKeyIsTakenAndNamesAreForgiving) {
    const auto plain = parseLfo("scrubbing wave");
    ASSERT_TRUE(plain) << plain.message();
    EXPECT_EQ(plain.value().control, ControlId::scrubbingWave);
    EXPECT_EQ(plain.value().hz, 0.25);
    EXPECT_FALSE(plain.value().link || plain.value().phase);
    const auto linked = parseLfo(
        "dry/wet:shape=Random Interp,link=1/8t,mult=2,min=0.9,max=0.1,gravity=1,phase=0.5");
    ASSERT_TRUE(linked) << linked.message();
    const LfoRequest& lfo = linked.value();
    EXPECT_EQ(lfo.control, ControlId::dryWet);
    EXPECT_EQ(lfo.shape, kLfoRandomInterp);
    EXPECT_EQ(lfo.link, 12);
    EXPECT_EQ(lfo.mult, 2.0);
    EXPECT_EQ(lfo.min, 0.9f);
    EXPECT_EQ(lfo.max, 0.1f);
    EXPECT_EQ(lfo.gravity, 1.0f);
    EXPECT_EQ(lfo.phase, 0.5);
}

TEST(LearnOption, SourcesKeysAndTakeoverAreTaken) {
    const struct {
        const char* text;
        MidiTrigger trigger;
        ControlId control;
    } cases[] = {
        {"cc:119=density", {MidiSource::controller, 119, 0}, ControlId::density},
        {"CC14:31=Pan,channel=16", {MidiSource::controller14, 31, 16}, ControlId::pan},
        {"note:0=Echo Switch", {MidiSource::note, 0, 0}, ControlId::echoSwitch},
        {"pressure=fade in,channel=any", {MidiSource::channelPressure, 0, 0}, ControlId::fadeIn},
    };
    for (const auto& one : cases) {
        const auto read = parseLearn(one.text);
        ASSERT_TRUE(read) << read.message();
        EXPECT_EQ(read.value().binding.trigger, one.trigger) << one.text;
        EXPECT_EQ(read.value().control, one.control) << one.text;
        EXPECT_EQ(read.value().binding.takeover, MidiTakeover::jump) << one.text;
    }
    const auto bend =
        parseLearn("bend=Pitch,relative=yes,min=0.5,max=0.25,takeover=pickup,curve=2");
    ASSERT_TRUE(bend) << bend.message();
    EXPECT_TRUE(bend.value().binding.relative);
    EXPECT_EQ(bend.value().binding.min, 0.5f);
    EXPECT_EQ(bend.value().binding.max, 0.25f);
    EXPECT_EQ(bend.value().binding.curve, 2.0f);
    EXPECT_EQ(bend.value().binding.takeover, MidiTakeover::soft);
}

} // namespace
} // namespace zephyra
