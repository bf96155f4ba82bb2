// AudioUnitViewController: builds one instance of the system and keeps host, controls and engine
// together.
#pragma once

#include "audiounit/audio_unit_controller.h"
#include "audiounit/my_audio_unit.h"
#include "controls/toggle.h"
#include "library/quick_presets_manager.h"
#include "library/quick_sample_manager.h"
#include "main_view/assignable_controls.h"
#include "main_view/chosen_sample.h"
#include "main_view/compare_slots.h"
#include "main_view/control_locks.h"
#include "main_view/edit_history.h"
#include "main_view/host_link.h"
#include "main_view/host_parameters.h"
#include "main_view/live_scan.h"
#include "main_view/own_knobs.h"
#include "main_view/performance_surfaces.h"
#include "main_view/restore_report.h"
#include "main_view/snapshot_source.h"
#include "main_view/state_randomizer.h"
#include "modulation/accelerometer_widgets.h"
#include "modulation/control_manager.h"
#include "modulation/midi_manager.h"
#include "modulation/scrub_widgets.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/instance.h"
#include "platform/lists/property_list.h"
#include "stream/live_export.h"
#include "stream/sample_loader.h"
#include "stream/stream_controller.h"
#include "stream/stream_settings.h"
#include "stream/stream_state.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace zephyra {

/// What editState() has besides a session's keys; never saved.
namespace edit_key {
inline constexpr const char* kSlot = "CompareSlot";
inline constexpr const char* kSource = "Source"; ///< a SoundSource as a whole number
} // namespace edit_key

/// What grains are cut from.
enum class SoundSource : std::uint8_t { file, live, captured };

/// Creates the stream with its controls, the parameters, the settings; draws nothing. Everything is
/// MAIN unless said otherwise. Made and destroyed MAIN and OFF; destroying disconnects from the
/// audio unit.
class AudioUnitViewController final : public AudioUnitController,
                                      public StreamSettings,
                                      public OwnKnobs {
public:
    /// instance must outlive this. Throws std::bad_alloc.
    explicit AudioUnitViewController(Instance& instance);
    ~AudioUnitViewController() override;

    /// Hands itself and the parameters to unit and lets go of the one before; null only lets go.
    /// OFF.
    void setAudioUnit(MyAudioUnit* unit);
    MyAudioUnit* audioUnit() const { return audioUnit_; }

    MOK_SCRUB_GRANULATOR _GRANULATOR_STREAM;
    HostParameters parameters;
    SampleLoader sampleLoader;
    LiveExport liveExport;

    PerformanceSurfaces surfaces;
    AssignableControls assignable;
    ScrubWidgets scrubWidgets; ///< what moves with the fingers that scrub
    ControlManager assignments;
    MidiManager midiManager;
    AccelerometerWidgets tiltWidgets;
    Toggle _lfoSwitch; ///< off: every LFO stands

    SnapshotSource snapshotSource; ///< of presets
    ChosenSample chosenSample;     ///< from samples
    QuickPresetsManager presets;   ///< the store; MIDI chooses in it as well
    QuickSampleManager samples;

    ControlLocks locks; ///< what random settings leave alone
    CompareSlots compare;
    StateRandomizer randomizer;
    EditHistory edits; ///< of every window

    /// What a hand moves for id, its own knob or something of the stream's; null for the envelope.
    Control* control(ControlId id);
    /// The same where it is a knob, else null.
    MOK_KNOB* knob(ControlId id) { return dynamic_cast<MOK_KNOB*>(control(id)); }

    /// How often a host has moved that parameter's control; wraps.
    std::uint32_t hostMoves(ControlId id) const { return link_.moves(id); }

    /// A MIDI message of the host, besides what the audio unit makes of its notes. Whether it moved
    /// what it is bound to, was learned, or chose a bank or preset.
    bool receiveMidi(const MidiMessage& message);

    /// "Fade In/Out (Play/Pause) Time: [In: %.3f secs  Out: %.3f secs]".
    std::string fadeTimesText() const;

    /// Loads a file of the user's; what goes wrong becomes an alert.
    void loadSample(const std::filesystem::path& path);

    // AudioUnitController
    MOK_SCRUB_GRANULATOR* granulatorStream() override { return &_GRANULATOR_STREAM; }
    Modulation* controlManager() override { return &assignments; }
    MOK_KNOB* inputDryWetKnob() override { return &_inputDryWetKnob; }
    void connectViewWithAU() override;
    void refreshParameters() override;
    void removeTargets() override;
    void audioUnitLeaves() override { setAudioUnit(nullptr); }
    /// As a session keeps it; keys that a newer program wrote and restoreState did not know are
    /// handed back.
    PropertyDictionary getState() override { return getStateWith({}); }
    /// The same; add, which may be empty, adds what else belongs to that moment. It runs on MAIN.
    PropertyDictionary getStateWith(const std::function<void(PropertyDictionary& state)>& add);
    /// Passes a copy to restoreStateProc on MAIN; parameters that are set from now on are newer.
    void restoreState(PropertyDictionary state) override {
        restoreState_then(std::move(state), {});
    }
    /// The same; then, which may be empty, runs on MAIN as the restore's last step, with the number
    /// of the state.
    void restoreState_then(PropertyDictionary state,
                           std::function<void(StateOrder::Number asked)> then);
    bool LoadSampleDelegate(const std::string& name) override;
    bool sampleWasRequested() const override;
    void standBehindInput() override;
    void parameterMoved(AUParameterAddress address, AUValue value) override;
    void midiNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING override;
    void playNote(int note, int velocity) override;

    // StreamSettings
    double fadeInTime() const override;
    double fadeOutTime() const override;
    void AUv3_Parameter_playToggle_from_DSP() override;
    void AUv3_Parameter_freezeToggle_from_DSP() override;
    void AUv3_Parameter_LiveToggle_from_DSP() override;
    void AUv3_Parameter_scrub_from_DSP(ControlEvents event) override;
    void bendNote(MOK_KNOB& played) override { midiManager.carryBend(played, noteChannel_); }

    /// The state as a preset keeps it: without sound data, without what is of a session (MIDI
    /// navigation, the preset selected). A sound that no file holds becomes one in the shared
    /// folder first; what goes wrong then becomes an alert.
    PropertyDictionary snapshotState();
    /// The same without a new file: a sound that no file holds stays out of it.
    PropertyDictionary snapshotAsItIs();
    /// Missing keys and wrong types keep what is there. The preset that a session names is
    /// selected, not loaded.
    void restoreStateProc(const PropertyDictionary& state);
    /// The same for a state that was asked for earlier: a parameter that a host, a hand or MIDI has
    /// set since then stays as it is.
    void restoreStateProc_asked(const PropertyDictionary& state, StateOrder::Number asked);

    /// Modulation, MIDI and the stream go back to where the state has them; controls and sounds
    /// stay as they are. On the sample clock, OFF.
    void startAnew(HostBars bars);
    /// LFOs and take alone do; RENDER sees to the grains.
    void startModulationAnew();

    // --- For undo, compare and random settings: view_controller_edits.cpp ---

    /// Everything that an edit may change; quick, and nothing ends by it.
    PropertyDictionary editState();
    /// The keys whose values differ between two of them, with those that go together.
    std::set<std::string> changedKeys(const PropertyDictionary& a, const PropertyDictionary& b,
                                      const std::function<bool(const std::string&)>& skips = {});
    /// What state has under these keys, for restorePart; what is not there is named so as well.
    PropertyDictionary partOf(const PropertyDictionary& state, const std::set<std::string>& keys);
    /// Restores what part names, and leaves the rest alone. Reported to nobody; the host hears of
    /// each parameter that changes as of a hand's gesture.
    void restorePart(const PropertyDictionary& part);
    /// The linear value that a hand has given the knob: of one that an LFO drives not where that
    /// has it now.
    float baseValue(const MOK_KNOB& knob);
    /// A preset's state, as one edit that has its name.
    void restorePreset(const PropertyDictionary& state, StateOrder::Number asked);
    /// Whether the host or MIDI moves controls right now.
    bool isMovedFromOutside() const { return link_.isMoving() || takesMidi_; }
    double secondsNow() const; ///< of MAIN's clock
    Instance& instance() { return instance_; }

    using ReportTaker = std::function<void(const RestoreReport& report)>;
    /// From now on taker gets the report of each state that is restored, whoever asked for that, as
    /// soon as it is whole; in it, it may set another taker, or none, but restores no state other
    /// than by restoreState. While nobody takes them, their lines go to the log.
    void setReportTaker(ReportTaker taker) { reportTaker_ = std::move(taker); }
    /// Of the state restored last; its sample may still be loading.
    const RestoreReport& restoreReport() const { return *report_; }

private:
    SoundSource source() const;
    std::map<ControlId, float> drivenValues();
    void keepDriven(const std::map<ControlId, float>& before, const PropertyDictionary& part);
    void addOwnTargets();
    void disconnect();
    void postIfAlive(void (AudioUnitViewController::*task)());

    // view_controller_state.cpp
    PropertyDictionary stateFor(StateUse use);
    void handOver(const RestoreReport& report) const;
    void sampleEnded(const RestoreReport& report) const;
    void restoreSession(const PropertyDictionary& state, StateOrder::Number asked);
    void restoreOwnKnobs(PropertyReader& state, StateScope scope);
    std::optional<QuickPresetsManager::Shown> restoreSelection(PropertyReader& state);

    // view_controller_modulation.cpp
    void listAssignableControls();
    void wireModulation();
    void assignmentChanged(Control& control, AssignmentType from, AssignmentType to);
    void saveModulation(PropertyDictionary& state);
    void followTable();
    void describeTilt(Control& control, AssignmentType type);
    void showEndedNotes();
    void restoreAssignments(PropertyReader& state);
    void restoreModulation(PropertyReader& state, StateScope scope);

    Instance& instance_;
    MyAudioUnit* audioUnit_ = nullptr;
    HostLink link_{*this};
    LiveScan liveScan_{_GRANULATOR_STREAM, link_};
    NotificationCenter::Token refreshNotice_ = 0;
    RunLoop::Token collecting_ = 0;
    bool takesMidi_ = false;      // what it moves is no hand's edit
    std::bitset<128> endedNotes_; // of MIDI, whose keys are still to go up
    std::array<std::uint8_t, 128>
        noteChannels_{};  // 1..16, on which each note came last; 0 for none
    int noteChannel_ = 0; // of the note that is played; 0 for a hand's
    PropertyDictionary unknownState_;
    ReportTaker reportTaker_;
    std::shared_ptr<const RestoreReport> report_ = std::make_shared<RestoreReport>();
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true); // posted tasks look at it
};

} // namespace zephyra
