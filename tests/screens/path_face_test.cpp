// What the path shows: where things stand, texts, and who moves a knob.
#include "controls/knob.h"
#include "screens/model/path/path_model.h"
#include "screens/model/path/path_places.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

#include <vector>

namespace zephyra {
namespace {

using enum ControlId;

bool overlap(const Box& a, const Box& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

TEST(PathPlaces, CellsStandApartInsideThePathAtEverySize) {
    for (const double zoom : {0.75, 1.0, 1.25, 1.5, 2.0, 2.5})
        for (const auto& [width, height] : {std::pair{800, 520},
                                            {960, 620},
                                            {1100, 700},
                                            {1400, 900},
                                            {1800, 1100},
                                            {3840, 2160}}) {
            const ScreenLayout layout = layOut(width, height, zoom);
            const Box path{0, 0, layout.path.width, layout.path.height};
            for (const PathSync sync : {PathSync{}, PathSync{true, true}}) {
                SCOPED_TRACE(testing::Message() << width << " at " << zoom << sync.scan);
                std::vector<Box> taken;
                for (const PathSection& section : pathSections()) {
                    const SectionPlace place = placeOf(section, layout);
                    taken.push_back({place.titleX, place.lineY, 1, 1});
                    if (section.hasSwitch) taken.push_back(place.switchBox);
                    if (section.hasSync) taken.push_back(place.syncBox);
                }
                for (const PathCell& cell : pathCells()) {
                    if (!isThere(cell, sync)) continue;
                    const CellPlace place = placeOf(cell, layout);
                    for (const Box& other : taken) EXPECT_FALSE(overlap(place.cell, other));
                    taken.push_back(place.cell);
                    EXPECT_GE(place.cell.x, 0);
                    EXPECT_LE(place.cell.right(), path.right());
                    EXPECT_LE(place.cell.bottom(), path.bottom());
                    EXPECT_GE(place.centreY - place.diameter / 2, 0);
                    EXPECT_LE(place.centreY + place.diameter / 2, place.nameTop + place.nameHeight);
                    EXPECT_LE(place.nameTop + place.nameHeight, place.cell.height);
                }
            }
        }
}

TEST(KnobText, HasThreeDigitsAndTheUnitThatFits) {
    struct Row {
        ControlId id;
        float displayed;
        const char *number, *unit;
    };
    for (const Row& row :
         {Row{density, 30, "30.0", "Hz"}, Row{length, 999.4f, "999", "ms"},
          Row{length, 1000, "1.00", "s"}, Row{ringModulationFrequency, 1234, "1.23", "kHz"},
          Row{pitch, -3.8f, "\u22123.8", "st"}, Row{pitch, 5.6f, "+5.6", "st"},
          Row{pitch, -0.01f, "0.0", "st"}, Row{rndPitch, 22, "22.0", "st"},
          Row{scanning, 0.4f, "0.40", "\u00D7"}, Row{leftDelay, 0.33f, "330", "ms"},
          Row{rightDelay, 1.5f, "1.50", "s"}, Row{leftGain, 0.5f, "50", "%"},
          Row{dryWet, 100, "100", "%"}, Row{width, 0.97f, "0.97", ""}, Row{pan, -0.3f, "30", "L"},
          Row{pan, 0.001f, "C", ""}, Row{measures, 4, "4", ""},
          Row{leftSubdivision, 12, "1/8T", ""}}) {
        const KnobText text = knobText(controlRange(row.id), row.displayed);
        EXPECT_EQ(text.number, row.number);
        EXPECT_EQ(text.unit, row.unit);
        const auto linear = linearFromTyped(controlRange(row.id), text.whole());
        ASSERT_TRUE(linear.ok()) << text.whole(); // what is copied can be pasted
        EXPECT_EQ(knobText(controlRange(row.id),
                           displayedFromLinear(controlRange(row.id), linear.value())),
                  text);
    }
}

struct Faces : testing::Test {
    Faces() { source.add(model); }
    const KnobFace& face(ControlId id, double seconds = 0.1) {
        for (double end = now + seconds; now < end; now += 0.02) {
            plugin.render(2);
            readFrameOf(source, {.now = now, .elapsed = 0.02});
        }
        return model.face(id);
    }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    AudioUnitViewController& view() { return plugin.system().view; }

    HostedPlugin plugin{PluginKind::effect};
    ScreenSource source{plugin};
    PathModel model;
    double now = 0.0;
};

TEST_F(Faces, ShowAnLfoAndWhereTheKnobWasSet) {
    source.asMain([&](auto&) {
        knob(pitch).setValue(12.0f);
        view().assignments.assign(knob(pitch), AssignmentType::lfo);
        auto* lfo = view().assignments.getLfoWidgetsMapping()->getWrapperID(&knob(pitch));
        lfo->setMinRange(0.25f);
        lfo->setHz(3.0);
    });
    // A window that opens while the LFO runs knows it as well.
    const KnobFace moved = face(pitch, 0.25);
    EXPECT_EQ(moved.by, KnobMover::lfo);
    EXPECT_TRUE(moved.drives && moved.isBipolar);
    EXPECT_EQ(moved.setAt, 0.75f);
    EXPECT_NE(moved.arc, 0.75f);
    EXPECT_EQ(moved.from, 0.25f);
    EXPECT_EQ(moved.to, 1.0f);
    EXPECT_EQ(knobMoverText(view(), pitch, moved),
              "moves by LFO, sine, 3 Hz, \u221212.0 st to +24.0 st, set to +12.0 st");
    // It steps 32 times a second, and glides between.
    float before = model.face(pitch).arc;
    for (int frame = 0; frame < 12; ++frame) {
        const float arc = face(pitch, 0.02).arc;
        EXPECT_NE(arc, before);
        before = arc;
    }
    // A hand sets it anew.
    source.asMain([&](auto&) {
        knob(pitch).beginTracking({0, 0});
        knob(pitch).setValue(0.0f);
        knob(pitch).sendEventValueChanged();
    });
    EXPECT_EQ(face(pitch, 0.04).setAt, 0.5f);
    EXPECT_TRUE(model.face(pitch).isHeld);
    source.asMain([&](auto&) { knob(pitch).cancelTracking(); });
    EXPECT_EQ(face(pitch, 0.2).setAt, 0.5f);
    // Switched off, LFOs stand.
    source.asMain([&](auto&) { view()._lfoSwitch.touch(); });
    EXPECT_FALSE(face(pitch).drives);
    EXPECT_EQ(model.face(pitch).by, KnobMover::lfo);
}

TEST_F(Faces, ShowMidiAndHosts) {
    source.asMain([&](auto&) {
        view().midiManager.bind({.trigger = {.number = 1}, .control = &knob(width), .max = 0.5f});
    });
    EXPECT_EQ(face(width).sign, "CC1");
    EXPECT_FALSE(model.face(width).drives); // it has not been moved
    for (const int value : {0, 64, 127}) plugin.midi({0xB0, 1, static_cast<std::uint8_t>(value)});
    EXPECT_TRUE(face(width).drives);
    EXPECT_EQ(model.face(width).setAt, 0.25f);
    EXPECT_EQ(model.face(width).arc, 0.5f);
    EXPECT_EQ(model.face(width).to, 0.5f);

    // The one that moves it now, of several, is shown, and its ends are dragged.
    const auto bind = [&](const MidiBinding& binding) {
        source.asMain([&](auto&) { view().midiManager.bind(binding); });
    };
    bind({.trigger = {.number = 2}, .control = &knob(width), .min = 0.2f});
    EXPECT_EQ(face(width).sign, "CC1");
    source.asMain([&](auto&) { setBondRange(view(), knob(width), 0.125f, 2.0f); });
    EXPECT_EQ(face(width).from, 0.125f);
    EXPECT_EQ(model.face(width).to, 1.0f);
    for (const auto& [by, relative, sign] : {std::tuple{MidiSource::pitchBend, true, "Bend"},
                                             {MidiSource::channelPressure, false, "Press"},
                                             {MidiSource::note, false, "C4"}}) {
        bind({.trigger = {.source = by, .number = by == MidiSource::note ? 60 : 0},
              .control = &knob(pan),
              .relative = relative});
        EXPECT_EQ(face(pan).sign, sign);
        EXPECT_EQ(model.face(pan).from.has_value(), !relative); // it goes from where it stands
        source.asMain([&](auto&) { view().midiManager.unbind(knob(pan)); });
    }

    EXPECT_EQ(face(amplitude).by, KnobMover::none);
    plugin.set(amplitude, 0.75f);
    EXPECT_EQ(face(amplitude).by, KnobMover::host);
    EXPECT_EQ(model.face(amplitude).setAt, 0.5f);
    EXPECT_EQ(knobMoverText(view(), amplitude, model.face(amplitude)),
              "moves by the host's automation, set to 0.50");
    EXPECT_EQ(face(amplitude, 2.0).by, KnobMover::none);
    EXPECT_EQ(model.face(amplitude).setAt, std::nullopt);
}

TEST_F(Faces, ShowTheFingerThatMovesThemAndNotTheSoundThatStandsHeld) {
    const ControlId first = pitch, second = width;
    auto& area = plugin.system().stream().scrubArea;
    source.asMain([&](auto&) {
        view().assignments.assign(knob(first), AssignmentType::scrubY);
        view().assignments.assign(knob(second), AssignmentType::secondFinger);
    });
    face(first, 0.1);
    source.asMain([&](auto&) {
        area.touchesBegan(1, {0.5, 0.5}, 0.0);
        area.touchesMoved(1, {0.5, 0.25}, 0.1);
    });
    const KnobFace moved = face(first, 0.1);
    EXPECT_TRUE(moved.by == KnobMover::scrub && moved.drives);
    EXPECT_EQ(moved.setAt, 0.5f);
    EXPECT_GT(moved.arc, 0.5f);
    EXPECT_FALSE(model.face(second).drives);
    source.asMain([&](auto&) { area.touchesBegan(2, {0.5, 0.5}, 0.2); });
    EXPECT_TRUE(face(second, 0.1).drives);
    source.asMain([&](auto&) { area.touchesEnded(2, 0.3), area.touchesEnded(1, 0.3); });
    source.asMain([&](auto&) { area.touchesBegan(3, {0.5, 0.5}, 1.0); });
    plugin.render(60); // until it holds
    source.asMain([&](auto&) { area.touchesEnded(3, 1.6); });
    ASSERT_TRUE(area.isPressAndHold());
    EXPECT_FALSE(face(first, 0.1).drives);
}

TEST_F(Faces, ShowSectionsLocksAndVoices) {
    struct Voices final : SoundingVoices {
        std::vector<SoundingVoice> all{{1005, 7.0f}, {1006, -3.0f, 0.01f}, {1007, NAN}};
        std::uint64_t lost = 0;
        std::size_t sounding(std::span<SoundingVoice> into) const override {
            std::copy(all.begin(), all.end(), into.begin());
            return all.size();
        }
        std::uint64_t dropped() const override { return lost; }
    } voices;
    EXPECT_TRUE(face(leftDelay).isOff && model.face(ringModulationAmount).isOff);
    EXPECT_FALSE(model.face(density).isOff || model.sync().echo);
    EXPECT_EQ(model.keep().name(), "Keep 1 s"); // an effect is live at once
    face(density, 2.2);
    EXPECT_EQ(model.keep().name(), "Keep 2 s");
    EXPECT_EQ(model.voices().count, 0u);
    model.setVoices(&voices);
    source.asMain([&](AudioUnitViewController& all) {
        for (const ControlId on : {echoSwitch, echoSync})
            all._GRANULATOR_STREAM.setDisplayed(on, 1.0f);
        knob(density).isRandomizable = false;
    });
    EXPECT_FALSE(face(leftDelay).isOff);
    EXPECT_TRUE(model.sync().echo && model.face(density).isLocked);
    EXPECT_EQ(model.voices().name(), "3 grains");
    EXPECT_EQ(VoicesFace{.count = 1}.name(), "1 grain");
    EXPECT_EQ(model.voices().dots[0], (VoicesFace::Dot{7.0f, 8}));
    EXPECT_EQ(model.voices().dots[1], (VoicesFace::Dot{-3.0f, 1}));
    EXPECT_FALSE(model.voices().dropped);
    voices.all.erase(voices.all.begin()); // the others stay at their dots
    voices.all.push_back({1008, 1.0f});
    voices.lost = 1;
    face(density, 0.02);
    EXPECT_EQ(model.voices().dots[0], (VoicesFace::Dot{1.0f, 8}));
    EXPECT_EQ(model.voices().dots[1], (VoicesFace::Dot{-3.0f, 1}));
    EXPECT_EQ(model.voices().dots[2], (VoicesFace::Dot{0.0f, 8}));
    EXPECT_TRUE(model.voices().dropped);
    face(density, 0.4);
    EXPECT_FALSE(model.voices().dropped);
}

} // namespace
} // namespace zephyra
