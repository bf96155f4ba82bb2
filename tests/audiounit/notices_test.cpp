// What the host tells while it renders, and what MAIN makes of it.

#include "tests/support/fake_host.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

/// An armed stream that follows the host, whose scan stands in the middle.
struct FollowingRig : FakeHost {
    FollowingRig() {
        ready();
        controller.stream.controls.syncSampler.setOn(true);
        controller.stream.enableSamplerSync();
        instance.runLoop.runPosted();
        controller.stream.ui_playStop();
    }
    /// What a cycle brings: b for a downbeat, r for a rewind, 2 for both, . for neither.
    char at(double beat, double numerator, double denominator = NAN) {
        controller.stream.stop();
        controller.stream.setScrubNormalizedValue(0.5f);
        context = {120.0, numerator, beat, denominator};
        cycle(0);
        unit->takeNotices(); // without the main queue: it stays armed
        const bool rewound = controller.stream.getTimePhasor() == 0.0f;
        return controller.stream.isPlaying() ? (rewound ? '2' : 'b') : (rewound ? 'r' : '.');
    }
};

TEST(Notices, TellEachDownbeatAndEachReturnToTheStartOnce) {
    const struct {
        double numerator;
        std::vector<double> beats;
        const char* told;
        double denominator = 4;
    } rows[] = {{4, {-2, -1, 0, 1}, "..2."},
                {4, {0, 0, 0.5, 1, 0}, "2r..2"},
                {4, {4.9, 5.5, 8.0, 8.2, 9, 11.9, 12}, "b.b...b"},
                {3, {1, 2, 3.1, 5.9, 6}, "..b.b"},
                {0, {1, 0.5, 0, 4}, ".br."},
                {-1, {-1e300, 1, 1e300}, "br."},
                {4, {NAN, 1, 4}, "..b"},
                {NAN, {-1, 0, 4}, ".r."},
                {4, {3, 4, 6.5, 8}, ".b.b", NAN},
                {4, {3, 4, 6.5, 8}, ".b.b", 0},
                {6, {0, 1, 2.9, 3, 3.6, 6.2}, "2..b.b", 8},
                {7, {3.4, 3.5, 3.9, 7.4, 11.2, 11.5}, ".b.bb.", 8}, // one first beat is passed over
                {1, {0.1, 0.6, 0.7, 1}, "bb.b", 8},
                {3, {-0.1, 0.2, 2, 5.9, 6, 1}, ".2..bb", 2}, // and back, into the first beat
                {2, {1.5, 5, 2.5, 0.5, 2.5, 0.5}, "bb.b.b", 2}};
    for (const auto& row : rows) {
        FollowingRig rig;
        std::string told;
        for (double beat : row.beats) told += rig.at(beat, row.numerator, row.denominator);
        EXPECT_EQ(told, row.told) << row.numerator << "/" << row.denominator << " from "
                                  << row.beats[0];
    }
}

TEST(Notices, StartAFollowingStreamAtOnceOnADownbeatAndElseArmIt) {
    for (const auto& [beat, playsAtOnce] : {std::pair(0.0, true), {8.5, true}, {1.0, false}}) {
        FollowingRig rig;
        rig.controller.stream.ui_playStop(); // no longer armed
        rig.at(beat, 4);                     // the downbeat is told while the host stands
        EXPECT_FALSE(rig.controller.stream.isPlaying());
        for (bool moving : {true, false}) {
            rig.moving = moving;
            rig.cycle(64);
            rig.instance.runLoop.runPosted(); // takes notices too
            const bool isPlaying = getGranularData(&rig.controller.stream)->isPlaying;
            EXPECT_EQ(isPlaying, moving && playsAtOnce) << beat;
            EXPECT_EQ(rig.controller.stream.isArmed(), moving && !playsAtOnce) << beat;
        }
    }
}

TEST(Notices, TellNewestParametersThenTheTempoThenNotes) {
    FakeHost rig;
    rig.ready();
    rig.controller.stream.____play();
    const AUParameterEvent parameters[] = {
        {7, 3, 0}, {5, 3, 0}, {5, 20, 512}, {kParameterCount, 1, 0}, {9, NAN, 0}, {13, 0.4f, 0}};
    const AUMIDIEvent notes[] = {{3, 0, {0x99, 60, 100}}, {3, 0, {0x80, 60, 64}},
                                 {3, 0, {0x90, 61, 0}},   {3, 0, {0x90, 60, 128}},
                                 {3, 0, {0x90, 128, 1}},  {2, 0, {0x90, 60, 1}}};
    std::vector<AURenderEvent> events(12);
    events[0].parameter = parameters[0];
    for (std::size_t i = 1; i < 12; ++i) {
        events[i - 1].next = &events[i];
        events[i].eventType = i > 5 ? AURenderEventType::MIDI : AURenderEventType::parameterRamp;
        i > 5 ? void(events[i].MIDI = notes[i - 6]) : void(events[i].parameter = parameters[i]);
    }
    rig.context.currentTempo = 120.0;
    EXPECT_EQ(rig.after(events.data()), "5=20 7=3 13=1 tempo120 note60/100 note61/0 ");
    std::string told;
    for (double tempo : {120.0, double{NAN}, 90.0, double{INFINITY}, 90.0}) {
        rig.context.currentTempo = tempo;
        told += rig.after() + "| ";
    }
    EXPECT_EQ(told, "| | tempo90 | | | ");
    EXPECT_EQ(rig.controller.stream.currentClockBPM(), 90.0);
}

} // namespace
} // namespace zephyra
