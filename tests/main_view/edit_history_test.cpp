// Undo, compare and random settings: what a player takes back, and what stays with others.

#include "controls/state_keys.h"
#include "tests/support/hosted_unit.h"
#include "tests/support/stream_probe.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Player : HostedUnit {
    Player() : HostedUnit(component_type::effect) {
        ready().render(0);
        stream.loadSound(noiseSample(30000, 44100)); // a fresh effect plays its input
        render(0);
    }
    void edit(const std::string& name, const std::function<void()>& hand) {
        view.edits.beginEdit(name);
        hand();
        view.edits.endEdit();
    }
    void drag(MOK_KNOB& knob, float to) {
        edit("drag", [&] {
            knob.beginTracking({});
            render(1024);
            knob.setValue(to);
            knob.sendEventValueChanged();
            knob.endTracking({});
        });
    }
    PropertyDictionary state() { return view.editState(); }
    StreamControls& controls = stream.controls;
};

/// The keys that differ.
std::string difference(const PropertyDictionary& a, const PropertyDictionary& b) {
    std::string keys;
    for (const auto* state : {&a, &b})
        for (const auto& [key, value] : *state)
            if (!a.contains(key) || !b.contains(key) || !(a.at(key) == b.at(key)))
                keys += key + " ";
    return keys;
}

TEST(EditHistory, TakesEveryKindOfEditBackAndDoesItAgainWhileTheSoundGoesOn) {
    Player player;
    auto& view = player.view;
    auto& stream = player.stream;
    auto& controls = player.controls;
    stream.setDisplayed(playStop, 1.0f);
    controls._pan.skipFromPreset = true; // of presets, not of undo
    player.render(4096);
    const std::pair<const char*, std::function<void()>> edits[] = {
        {"knob", [&] { stream.setDisplayed(density, 200.0f); }},
        {"skipped", [&] { stream.setDisplayed(pan, -1.0f); }},
        {"own knob", [&] { view._inputDryWetKnob.setValue(80.0f); }},
        {"switch", [&] { controls._echoSwitch.touch(); }},
        {"freeze", [&] { stream.setDisplayed(freeze, 1.0f); }},
        {"live", [&] { stream.setDisplayed(live, 1.0f); }},
        {"normalize", [&] { stream.setDisplayed(normalize, 0.5f); }},
        {"region", [&] { stream.setRegion(0.25f, 0.75f); }},
        {"envelope", [&] { stream.pickEnvelope(3); }},
        {"take",
         [&] {
             stream.scrubRecorder.setTake(std::vector{0.1f, 0.5f, 0.2f});
         }},
        {"lfo", [&] { view.assignments.assign(controls._width, AssignmentType::lfo); }},
        {"octave", [&] { view.surfaces._keyboardTiny.setOctave(3); }},
        {"lock", [&] { view.locks.setLocked(pitch, true); }},
        {"both", [&] { controls._pitch.resetsDefault(), stream.setDisplayed(pitch, 7.0f); }}};
    for (const auto& [name, hand] : edits) {
        SCOPED_TRACE(name);
        const PropertyDictionary before = player.state();
        player.edit(name, hand);
        const PropertyDictionary after = player.state();
        EXPECT_NE(difference(before, after), "");
        EXPECT_EQ(view.edits.undoName(), name);
        EXPECT_TRUE(view.edits.undo());
        EXPECT_EQ(difference(player.state(), before), "");
        EXPECT_EQ(view.edits.redoName(), name);
        EXPECT_TRUE(view.edits.redo());
        EXPECT_EQ(difference(player.state(), after), "");
        if (std::string_view(name) == "lfo") // or it moves what is compared
            view.edits.undo();
    }
    EXPECT_TRUE(stream.isPlaying());
    EXPECT_EQ(stream.starts(), 1u);
    EXPECT_EQ(view.sampleLoader.requests(), 0u);
    while (view.edits.undo()) {
    }
    EXPECT_EQ(view.edits.undoName(), "");
    EXPECT_NEAR(stream.displayed(density), controlRange(density).defaultValue, 1e-3f);
}

TEST(EditHistory, CountsHandsAndNestsJoinsTicksAndForgetsTheOldest) {
    Player player;
    auto& edits = player.view.edits;
    const auto tick = [&](float value) {
        player.edit("Width", [&] { player.stream.setDisplayed(width, value); });
        player.render(4410); // 0.1 s
    };
    for (const float value : {0.3f, 0.4f, 0.5f}) tick(value);
    EXPECT_TRUE(edits.undo());
    EXPECT_EQ(player.stream.displayed(width), 0.25f); // the three are one
    EXPECT_FALSE(edits.canUndo());
    edits.redo();
    EXPECT_EQ(player.stream.displayed(width), 0.5f);
    player.render(44100);
    tick(0.6f); // too late
    EXPECT_TRUE(edits.undo() && edits.canUndo());

    player.drag(player.controls._pitch, 3.0f);
    player.drag(player.controls._pitch, 5.0f);
    EXPECT_FALSE(edits.canRedo());
    player.edit("nothing", [] {});
    player.edit("whole", [&] {
        player.edit("part", [&] { player.stream.setDisplayed(pan, 1.0f); });
        EXPECT_FALSE(edits.undo()); // in the middle of an edit
        player.stream.setDisplayed(jittering, 3.0f);
    });
    edits.endEdit(); // without a beginning
    EXPECT_EQ(edits.undoName(), "whole");
    edits.undo();
    EXPECT_EQ(player.stream.displayed(pan), 0.0f);
    edits.undo();
    EXPECT_EQ(player.stream.displayed(pitch), 3.0f);

    edits.beginEdit("open");
    player.stream.setDisplayed(pan, 0.5f);
    edits.endEveryEdit(); // its window closes
    EXPECT_EQ(edits.undoName(), "open");
    std::size_t count = 0;
    for (int i = 0; i < 150; ++i)
        player.edit(std::to_string(i), [&] { player.controls._echoSwitch.touch(); });
    while (edits.undo()) ++count;
    EXPECT_EQ(count, EditHistory::kMost);
}

TEST(EditHistory, LeavesToHostMidiAndLfoWhatTheyMoveMeanwhile) {
    Player player;
    auto& view = player.view;
    auto& stream = player.stream;
    view.assignments.assign(player.controls._width, AssignmentType::lfo);
    stream.setDisplayed(playStop, 1.0f);
    player.edit("Pitch", [&] {
        stream.setDisplayed(pitch, 7.0f);
        player.queue(density, 300.0f);
        player.queue(scrubbingWave, 0.7f);
        player.midi({0xB0, 7, 100});
        player.render(20000); // the LFO moves on
        player.render(0);
    });
    const float width = stream.linear(ControlId::width);
    const PropertyDictionary before = player.state();
    EXPECT_TRUE(view.edits.undo());
    EXPECT_EQ(difference(before, player.state()), "Pitch_0 Pitch_0 ");
    EXPECT_EQ(stream.linear(ControlId::width), width);
    // A hand on what is automated is a hand.
    player.edit("Density", [&] {
        player.queue(density, 100.0f);
        player.render(64);
        player.render(0);
        player.controls._density.resetsDefault();
    });
    EXPECT_TRUE(view.edits.undo());
    EXPECT_NEAR(stream.linear(density), 300.0f, 1e-3f);
}

TEST(EditHistory, KnowsWhatAHandGaveAKnobBelowTheLfoThatCarriesItOn) {
    Player player;
    auto& view = player.view;
    MOK_KNOB& knob = player.controls._width;
    const auto assign = [&](AssignmentType type) {
        player.edit("assign", [&] { view.assignments.assign(knob, type); });
        player.render(20000);
        player.render(0);
    };
    const struct {
        const char* name;
        std::function<void()> hand;
        float to, within;
    } hands[] = {
        {"drag", [&] { player.drag(knob, 0.5f); }, 0.5f, 0.0f},
        {"type",
         [&] {
             player.edit("type", [&] {
                 knob.sendActionsForControlEvents(control_event::touchDown);
                 knob.setValue(0.625f);
                 knob.sendEventValueChanged();
                 player.render(20000); // an LFO does not wait for the end of it
                 knob.sendActionsForControlEvents(control_event::touchUpInside);
             });
         },
         0.625f, 0.0f},
        {"reset", [&] { player.edit("reset", [&] { knob.resetsDefault(); }); }, 0.25f, 0.0f},
        {"Randomise", [&] { view.randomizer.randomize(0.01); }, 0.25f, 0.01f}};
    assign(AssignmentType::lfo);
    EXPECT_NE(knob.value(), 0.25f);
    float before = 0.25f;
    for (const auto& [name, hand, to, within] : hands) {
        SCOPED_TRACE(name);
        hand();
        const float after = view.baseValue(knob);
        EXPECT_NE(after, before);
        EXPECT_NEAR(after, to, within);
        player.render(20000); // the LFO goes on, and keeps to what it carries
        EXPECT_EQ(view.edits.undoName(), name);
        EXPECT_TRUE(view.edits.undo());
        EXPECT_EQ(view.baseValue(knob), before);
        player.render(20000);
        EXPECT_TRUE(view.edits.redo());
        EXPECT_EQ(view.baseValue(knob), after);
        before = after;
        player.render(20000);
    }
    // Others' assignments come and go above it, and its own leaves it where the hand had it.
    player.edit("other",
                [&] { view.assignments.assign(player.controls._pan, AssignmentType::lfo); });
    player.render(20000);
    EXPECT_TRUE(view.edits.undo());
    EXPECT_EQ(view.baseValue(knob), before);
    // Automation is no hand, and an LFO that rests carries nothing.
    player.queue(ControlId::width, 0.9f);
    player.render(64);
    player.render(0);
    EXPECT_EQ(view.baseValue(knob), before);
    auto& lfo = *view.assignments.getLfoWidgetsMapping()->getWrapperID(&knob);
    for (const bool rests : {true, false}) {
        lfo.setSuspended(rests);
        EXPECT_EQ(view.baseValue(knob) == knob.value(), rests);
        view._lfoSwitch.touch();
        EXPECT_EQ(view.baseValue(knob), knob.value());
        view._lfoSwitch.touch();
    }
    while (view.edits.undo()) player.render(20000);
    EXPECT_EQ(view.assignments.typeOf(knob), AssignmentType::none);
    EXPECT_EQ(knob.value(), 0.25f);
    EXPECT_EQ(StreamProbe::fields(player.stream.engine()).width, 0.25f);
    player.edit("both", [&] {
        player.drag(knob, 0.5f);
        view.assignments.assign(knob, AssignmentType::lfo);
    });
    player.render(20000);
    EXPECT_TRUE(view.edits.undo());
    EXPECT_EQ(knob.value(), 0.25f);
}

TEST(EditHistory, HasSoundsThatComeLaterAndPresetsByName) {
    const TemporaryFolder shared;
    Player player;
    player.instance.folders.shared = shared.path();
    auto& view = player.view;
    auto& stream = player.stream;
    const std::filesystem::path folder = ZEPHYRA_SOURCE_DIR "/resources";
    const std::filesystem::path files[] = {folder / "Blackbird.mp3",
                                           folder / "Zephyra_Sample08.mp3"};
    const auto load = [&](const std::filesystem::path& file) {
        view.loadSample(file);
        player.instance.runLoop.finishWork();
        player.render(8820); // the history is looked after now and then
    };
    load(files[0]);
    EXPECT_FALSE(view.edits.canUndo()); // there is none to return to
    EXPECT_EQ(view.edits.undoKind(), EditKind::change);
    load(files[1]);
    EXPECT_EQ(view.edits.undoName(), files[1].filename().string());
    const auto plays = [&] {
        player.instance.runLoop.finishWork();
        return std::filesystem::path(stream.sampleReference().path).filename();
    };
    EXPECT_TRUE(view.edits.undo());
    EXPECT_EQ(plays(), files[0].filename());
    EXPECT_TRUE(view.edits.redo());
    EXPECT_EQ(plays(), files[1].filename());
    view.loadSample(files[0]);
    EXPECT_EQ(view.edits.undoName(), files[0].filename().string());
    EXPECT_TRUE(view.edits.undo()); // before that one came, which it does no more
    EXPECT_EQ(plays(), files[1].filename());
    EXPECT_EQ(view.edits.undoName(), files[1].filename().string());
    view.loadSample(folder / "none.wav");
    plays();
    player.render(8820); // it was none to take back
    EXPECT_TRUE(view.edits.undo());
    EXPECT_EQ(plays(), files[0].filename());
    EXPECT_EQ(view.edits.undoName(), "");
    EXPECT_EQ(view.edits.redoName(), files[1].filename().string());

    stream.setDisplayed(density, 321.0f);
    PropertyDictionary preset = view.snapshotAsItIs();
    preset.insert_or_assign("SnapshotTags", "Glass");
    stream.setDisplayed(density, 40.0f);
    view.snapshotSource.restoreStateProc(preset);
    EXPECT_EQ(view.edits.undoName(), "Glass");
    EXPECT_EQ(view.edits.undoKind(), EditKind::preset);
    EXPECT_TRUE(view.edits.undo());
    EXPECT_NEAR(stream.displayed(density), 40.0f, 1e-3f);
    view.restoreState(preset); // as a host's program
    player.render(0);
    EXPECT_EQ(view.edits.undoName(), "Glass");
    EXPECT_EQ(view.edits.redoName(), "");
    view.restoreState(view.getState()); // a host's
    player.render(0);
    EXPECT_FALSE(view.edits.canUndo() || view.edits.canRedo());
}

TEST(CompareSlots, KeepWhatIsEditedInEachAndUndoFindsItsWayThroughBoth) {
    using enum CompareSlots::Slot;
    Player player;
    CompareSlots& compare = player.view.compare;
    const auto set = [&](float value) {
        player.edit("Pan", [&] { player.stream.setDisplayed(pan, value); });
    };
    set(0.1f);
    compare.choose(b);
    set(0.2f);
    player.edit("take", [&] { player.stream.scrubRecorder.setTake(std::vector{0.1f, 0.5f}); });
    const PropertyDictionary inB = player.state();
    compare.choose(a);
    EXPECT_EQ(player.stream.displayed(pan), 0.1f);
    EXPECT_TRUE(player.stream.scrubRecorder.take().empty());
    set(0.3f);
    compare.choose(b);
    EXPECT_EQ(difference(player.state(), inB), "");
    for (const float expected : {0.3f, 0.1f, 0.2f}) {
        player.view.edits.undo();
        EXPECT_EQ(player.stream.displayed(pan), expected);
    }
    EXPECT_EQ(compare.chosen(), b);
    compare.choose(a); // as it was undone to
    EXPECT_EQ(player.stream.displayed(pan), 0.1f);
}

TEST(StateRandomizer, MovesAsFarAsItIsAskedAndLeavesOutWhatIsLockedOrOff) {
    Player player;
    auto& view = player.view;
    auto& stream = player.stream;
    const PropertyDictionary before = player.state();
    view.locks.setLocked(pitch, true);
    view.randomizer.randomize(NAN);
    EXPECT_FALSE(view.edits.canUndo());
    player.instance.random.seed(5);
    view.randomizer.randomize(1.0);
    EXPECT_EQ(view.edits.undoName(), "Randomise");
    for (const ControlId id : {pitch, amplitude, dryWet, leftDelay, ringModulationAmount, fadeIn})
        EXPECT_EQ(view.control(id) ? stream.linear(id) : 0, [&] {
            Player fresh;
            return fresh.stream.linear(id);
        }()) << controlRange(id).name;
    EXPECT_NE(stream.displayed(density), controlRange(density).defaultValue);
    EXPECT_TRUE(view.edits.undo());
    view.locks.setLocked(pitch, false);
    EXPECT_EQ(difference(before, player.state()), "");

    const float far = stream.linear(length);
    for (int i = 0; i < 20; ++i) {
        view.randomizer.randomize(0.05, StateRandomizer::OffSections::move);
        EXPECT_NEAR(stream.linear(length), far, 0.05f * 1995.0f + 0.01f);
        view.edits.undo();
    }
    view.randomizer.randomize(0.05, StateRandomizer::OffSections::move);
    EXPECT_NE(stream.linear(leftDelay), 0.3f);
    // What is locked goes with a session.
    view.locks.setLocked(density, true);
    Player other;
    other.view.restoreState(view.getState());
    other.render(0);
    EXPECT_TRUE(other.view.locks.isLocked(density));
    EXPECT_FALSE(other.view.locks.isLocked(pan));
    other.view.restoreState(Player().view.getState()); // without any
    other.render(0);
    EXPECT_FALSE(other.view.locks.isLocked(density));
    EXPECT_FALSE(view.snapshotAsItIs().contains(state_key::kLocked));
}

} // namespace
} // namespace zephyra
