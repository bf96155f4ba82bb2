// What is to happen to a control, as it is typed.

#include "cli/options/control_options.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(LfoOption, EveryKeyIsTakenAndNamesAreForgiving) {
    const auto plain = must(parseLfo("scrubbing wave"));
    EXPECT_EQ(std::tuple(plain.control, plain.hz), std::tuple(ControlId::scrubbingWave, 0.25));
    EXPECT_FALSE(plain.link || plain.phase);
    const LfoRequest lfo = must(parseLfo(
        "dry/wet:shape=Random Interp,link=1/8t,mult=2,min=0.9,max=0.1,gravity=1,phase=0.5"));
    EXPECT_TRUE(lfo.control == ControlId::dryWet && lfo.shape == kLfoRandomInterp);
    EXPECT_EQ(std::tuple(lfo.link, lfo.mult, lfo.min, lfo.max, lfo.gravity, lfo.phase),
              std::tuple(12, 2.0, 0.9f, 0.1f, 1.0f, 0.5));
}

TEST(LearnOption, SourcesKeysAndTakeoverAreTaken) {
    const std::tuple<const char*, MidiTrigger, ControlId> cases[] = {
        {"cc:119=density", {MidiSource::controller, 119, 0}, ControlId::density},
        {"CC14:31=Pan,channel=16", {MidiSource::controller14, 31, 16}, ControlId::pan},
        {"note:0=Echo Switch", {MidiSource::note, 0, 0}, ControlId::echoSwitch},
        {"pressure=fade in,channel=any", {MidiSource::channelPressure, 0, 0}, ControlId::fadeIn},
    };
    for (const auto& [text, trigger, control] : cases) {
        const auto read = must(parseLearn(text));
        EXPECT_EQ(read.binding.trigger, trigger) << text;
        EXPECT_EQ(read.control, control) << text;
        EXPECT_EQ(read.binding.takeover, MidiTakeover::jump) << text;
    }
    const auto bend =
        must(parseLearn("bend=Pitch,relative=yes,min=0.5,max=0.25,takeover=pickup,curve=2"));
    const MidiBinding& binding = bend.binding;
    EXPECT_TRUE(binding.relative && binding.takeover == MidiTakeover::soft);
    EXPECT_EQ(std::tuple(binding.min, binding.max, binding.curve), std::tuple(0.5f, 0.25f, 2.0f));
}

} // namespace
} // namespace zephyra
