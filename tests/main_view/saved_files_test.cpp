// What users saved stays readable: files that an earlier program wrote, and what each must give.
//
// The texts beside the files in tests/saved_files/ say what was set when they were made. A key that
// is new comes into the files by hand, with its value in the text.

#include "controls/note_values.h"
#include "modulation/scrub_widget_wrapper.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

const fs::path kSaved = ZEPHYRA_SOURCE_DIR "/tests/saved_files";

PropertyDictionary readSaved(const char* name) {
    return readPropertyListFile(kSaved / name).value();
}

/// To compare with: an encoder may write the same sound otherwise.
std::string withoutSound(PropertyDictionary state) {
    if (state.contains("Captured_0"))
        state.at("Captured_0").as<PropertyDictionary>()->at("FLAC") = PropertyData();
    return writePropertyList(state).value();
}

struct Restored : HostedUnit {
    Restored() : HostedUnit(component_type::effect) {
        instance.folders = {shared.path(), {}};
        fs::copy(kSaved / "Kept.zephyra", shared / "Kept.zephyra");
        EXPECT_EQ(host.start({44100, 64}), audio_unit_status::noError);
    }
    /// No time passes, in which an LFO would move on.
    void settle() {
        for (int i = 0; i < 6; ++i) render(0);
    }

    std::string everyValue() {
        text.str({});
        for (const ControlRange& range : controlRanges())
            text << range.name << ' ' << valueOf(range.id) << '\n';
        text << "Region " << stream.regionStart() << " to " << stream.regionEnd() << "\nSeed "
             << stream.seed() << "\nQuality " << static_cast<int>(stream.quality())
             << "\nNormalize touched " << stream.normalizeTouched() << "\nKeyboard Pitch "
             << stream.controls._keyboardButton.tag << '\n';
        writeSounds();
        for (const AssignableControl& one : view.assignable.all()) writeBond(one);
        writeMidi();
        const PerformanceSurfaces& surfaces = view.surfaces;
        text << "Pad of " << surfaces._pad.octNum() << " octaves from note "
             << surfaces._pad.baseNote() << "\nSmall keyboard's octave "
             << surfaces._keyboardTiny.octave() << "\nTapped tempo "
             << view.assignments.tempo.value() << "\nLFOs " << view._lfoSwitch.isOn() << '\n'
             << view.presets.getCurrentSelectedBankName() << ": " << view.presets.getSnapshotName()
             << '\n';
        return text.str();
    }
    float valueOf(ControlId id) {
        const MOK_KNOB* const own = view.ownKnob(id);
        return own ? own->value() : stream.linear(id);
    }
    void writeSound(std::span<const float> frames, double rate) {
        text << frames.size() << " at " << rate << " Hz:";
        for (std::size_t n = 0; n < frames.size(); n += 21) text << ' ' << frames[n];
        text << '\n';
    }
    void writeSounds() {
        const mokSample& file = *stream.waveForm().fileSound();
        const SampleReference& reference = stream.sampleReference();
        text << "Sample "
             << (reference.relativePath.empty() ? reference.path : reference.relativePath) << ", ";
        writeSound({file.getPtr(), file.size}, double{file.sampleRate});
        if (stream.waveForm().isLiveCurrent() && !stream.waveForm().heardFrames().empty()) {
            text << "Captured ";
            writeSound(stream.waveForm().heardFrames(),
                       double{stream.waveForm().mSample()->sampleRate});
        }
        const bool plays = stream.controls.scrubPlay.tag == 1 || stream.scrubRecorder.isArmed();
        if (stream.scrubRecorder.take().empty()) return;
        text << "Take" << (plays ? " playing:" : ":");
        for (const float point : stream.scrubRecorder.take()) text << ' ' << point;
        text << '\n';
    }
    void writeBond(const AssignableControl& one) {
        const AssignmentType type = view.assignments.typeOf(*one.control);
        if (type == AssignmentType::none) return;
        text << one.name << ", " << assignmentEntry(type)->title;
        const auto& lfos = *view.assignments.getLfoWidgetsMapping();
        LfoWidgetWrapper* const lfo = lfos.getWrapperID(one.control);
        WidgetWrapper* const scrub = view.scrubWidgets.getWrapperID(one.control);
        WidgetWrapper* bond = lfo ? lfo : scrub;
        if (!bond) bond = view.tiltWidgets.getWrapperID(one.control);
        if (bond)
            text << ": " << bond->minRange() << " to " << bond->maxRange() << ", gravity "
                 << bond->gravity();
        if (lfo)
            text << ", " << kLfoShapes[static_cast<std::size_t>(lfo->currentLFO.shape())].name
                 << ", " << lfo->freeHz() << " Hz, " << (lfo->linkIsEnabled() ? "" : "un")
                 << "linked, " << lfo->clockSubMult() << " of "
                 << kNoteValues[static_cast<std::size_t>(lfo->clockSub())].name;
        if (scrub) text << ", velocity " << dynamic_cast<ScrubWidgetWrapper*>(scrub)->velocity();
        text << '\n';
    }
    void writeMidi() {
        for (const MidiBinding& binding : view.midiManager.bindings())
            text << triggerText(binding.trigger) << " to "
                 << view.assignments.displayName(*binding.control) << ": " << binding.min << " to "
                 << binding.max << ", curve " << binding.curve
                 << (binding.takeover == MidiTakeover::jump ? ", jumps" : ", is picked up")
                 << (binding.relative ? ", relative" : "") << '\n';
        const MidiManager::Navigation& midi = view.midiManager.navigation();
        text << "Programs " << midi.programsSelectPresets << ", banks " << midi.bankSelectsBanks
             << ", channel " << midi.channel;
        if (midi.firstPresetNote)
            text << ", " << midi.presetNotes << " presets from note " << *midi.firstPresetNote;
        if (midi.firstBankNote)
            text << ", " << midi.bankNotes << " banks from note " << *midi.firstBankNote;
        text << '\n';
    }

    TemporaryFolder shared;
    std::ostringstream text;
};

TEST(SavedFiles, OfASessionGiveEveryValueAndAreSavedWithTheSameKeysAgain) {
    const PropertyDictionary saved = readSaved("session.plist");
    Restored restored;
    restored.unit->setFullState(saved);
    restored.settle();
    EXPECT_EQ(restored.everyValue(), readText(kSaved / "session.txt"));
    restored.stream.syncStateTempoForte(); // the take waits for it
    restored.settle();
    EXPECT_EQ(withoutSound(restored.unit->getFullState()), withoutSound(saved));
}

TEST(SavedFiles, OfABankGiveEveryPresetAndAreSavedWithTheSameKeysAgain) {
    const PropertyDictionary bank = readSaved("Kept.zephyra");
    Restored restored;
    fs::copy(kSaved / "Sounds", restored.shared / "Sounds");
    restored.view.presets.refreshBankSelection();
    restored.view.presets.selectBankFromIndex(0);
    const std::pair<int, const char*> presets[] = {
        {0, "everything.txt"}, {1, "bare.txt"}, {2, "live.txt"}, {0, "everything.txt"}};
    for (const auto& [row, values] : presets) {
        restored.view.presets.selectSnapFromIndex(row);
        restored.settle();
        EXPECT_EQ(restored.everyValue(), readText(kSaved / values)) << values;
        PropertyDictionary saved = *std::next(bank.begin(), row)->second.as<PropertyDictionary>();
        saved.erase("SnapshotTags");
        restored.stream.syncStateTempoForte();
        restored.settle();
        EXPECT_EQ(withoutSound(restored.view.snapshotState()), withoutSound(saved)) << values;
    }
}

TEST(SavedFiles, OfAHostHoldTheUnitAndEveryParameterBigEndianByItsAddress) {
    const PropertyDictionary saved = readSaved("host_state.plist");
    Restored restored;
    restored.unit->setFullState(readSaved("session.plist"));
    restored.settle();
    EXPECT_EQ(withoutSound(restored.unit->fullState()), withoutSound(saved));
    const PropertyData& data = *saved.at("data").as<PropertyData>();
    ASSERT_EQ(data.size(), 8 * kParameterCount);
    const auto word = [&data](std::size_t at) {
        std::uint32_t bits = 0;
        for (std::size_t n = at; n < at + 4; ++n)
            bits = bits << 8 | static_cast<std::uint32_t>(data[n]);
        return bits;
    };
    for (std::size_t n = 0; n < kParameterCount; ++n) {
        EXPECT_EQ(word(8 * n), n);
        EXPECT_EQ(std::bit_cast<float>(word(8 * n + 4)),
                  restored.valueOf(static_cast<ControlId>(n)));
    }
}

} // namespace
} // namespace zephyra
