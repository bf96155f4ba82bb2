// The view controller and what moves its controls: the list of them, and who hears of an
// assignment.
#include "controls/state_keys.h"
#include "engine/envelope_menu.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <set>
#include <utility>

namespace zephyra {

namespace {

using enum ControlGroup;

constexpr float kBendSemitones = 2.0f; // either way

using View = AudioUnitViewController;

StreamControls& controlsOf(View& view) {
    return view._GRANULATOR_STREAM.controls;
}

/// What modulation may move besides the controls of the table, each in its place among them.
struct OtherControl {
    int place;
    const char* name;
    ControlGroup group;
    Control& (*of)(View&);
};

constexpr OtherControl kOtherControls[] = {
    {31, "Rewind", transport, [](View& v) -> Control& { return controlsOf(v)._rewind; }},
    {34, "Clear LIVE", transport, [](View& v) -> Control& { return controlsOf(v).liveClear; }},
    {35, "Keyboard Pitch", pitch,
     [](View& v) -> Control& { return controlsOf(v)._keyboardButton; }},
    {36, "Scrub Record", scan, [](View& v) -> Control& { return controlsOf(v).scrubRec; }},
    {37, "Scrub Play", scan, [](View& v) -> Control& { return controlsOf(v).scrubPlay; }},
    {38, "Scrub Rewind", scan, [](View& v) -> Control& { return controlsOf(v).scrubRewind; }},
    {39, "Keyboard", pitch, [](View& v) -> Control& { return v.surfaces._keyboard; }},
    {40, "Pad", pitch, [](View& v) -> Control& { return v.surfaces._pad; }},
};

// clang-format off
constexpr int kTablePlaces[] = {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) moved
#define MOVED(group, place) place,
#define NOT_MOVED
#include "stream/control_table.inl"
};
// clang-format on

constexpr std::size_t kMovedCount = std::size(kTablePlaces) + std::size(kOtherControls);

static_assert(
    [] {
        std::array<bool, kMovedCount> taken{};
        const auto take = [&taken](int place) {
            const auto at = static_cast<std::size_t>(place);
            return place >= 0 && at < taken.size() && !std::exchange(taken[at], true);
        };
        return std::all_of(std::begin(kTablePlaces), std::end(kTablePlaces), take) &&
               std::all_of(std::begin(kOtherControls), std::end(kOtherControls),
                           [&take](const OtherControl& other) { return take(other.place); });
    }(),
    "each place from 0 on is one control's: a new one takes the next number");

using Names = std::set<std::string, std::less<>>;

/// Null when entry is no dictionary or has no name.
const std::string* nameOf(const PropertyValue& entry) {
    const auto* const dictionary = entry.as<PropertyDictionary>();
    if (!dictionary) return nullptr;
    const auto name = dictionary->find(assignment_key::kName);
    return name == dictionary->end() ? nullptr : name->second.as<std::string>();
}

Names namesIn(const PropertyArray& records) {
    Names names;
    for (const PropertyValue& record : records)
        if (const std::string* const name = nameOf(record)) names.insert(*name);
    return names;
}

/// A state that was saved before a control existed leaves that control as it is: to what the state
/// says comes what we have for controls that its records do not name.
void addUnnamed(PropertyArray& saved, const PropertyArray& own, const Names& named) {
    for (const PropertyValue& entry : own)
        if (!named.contains(*nameOf(entry))) saved.push_back(entry);
}

} // namespace

void AudioUnitViewController::listAssignableControls() {
    std::array<AssignableControl, kMovedCount> list;
    const auto put = [&list](int place, Control& control, const char* name, ControlGroup group) {
        list[static_cast<std::size_t>(place)] = {&control, name, static_cast<int>(group)};
    };
    for (const ControlRange& range : controlRanges())
        if (range.place != kNotMoved) put(range.place, *control(range.id), range.name, range.group);
    for (const OtherControl& other : kOtherControls)
        put(other.place, other.of(*this), other.name, other.group);
    for (const AssignableControl& one : list) assignable.add(*one.control, one.name, one.color);
    assignable.addScrubReference(scrubWidgets);
}

/// What is drawn at random follows from the state's seed as well.
void AudioUnitViewController::startAnew(HostBars bars) {
    instance_.random.seed(_GRANULATOR_STREAM.seed());
    if (_GRANULATOR_STREAM.envelope() == kRandomEnvelope)
        _GRANULATOR_STREAM.pickEnvelope(kRandomEnvelope);
    midiManager.startAnew();
    assignments.getLfoWidgetsMapping()->startAnew();
    _GRANULATOR_STREAM.startAnew(bars);
}

void AudioUnitViewController::startModulationAnew() {
    assignments.getLfoWidgetsMapping()->startAnew();
    _GRANULATOR_STREAM.scrubRecorder.startAnew(HostBars::doNotCome);
}

void AudioUnitViewController::wireModulation() {
    listAssignableControls();
    assignments.initialize();
    _GRANULATOR_STREAM.scrubArea.addListener(&scrubWidgets);
    assignments.setObserver([this](Control& control, AssignmentType from, AssignmentType to) {
        assignmentChanged(control, from, to);
    });
    // A wheel bends the pitch as on any instrument, until somebody binds it.
    const MOK_KNOB& pitchKnob = _GRANULATOR_STREAM.controls._pitch;
    const float bend = kBendSemitones / (pitchKnob.maximumValue() - pitchKnob.minimumValue());
    midiManager.setFallback({.trigger = {.source = MidiSource::pitchBend},
                             .control = &_GRANULATOR_STREAM.controls._pitch,
                             .min = bend,
                             .max = bend,
                             .takeover = MidiTakeover::jump,
                             .relative = true});
    // A tapped tempo leads until a host tells its own.
    assignments.tempo.addTarget(
        this, "tempoTapped:", control_event::valueChanged, [this](Control&) {
            if (!assignments.BPM_LINK)
                _GRANULATOR_STREAM.syncStateDidChangedWithBPM(assignments.currentTempo());
        });
    _lfoSwitch.addTarget(this, "lfoSwitched:", control_event::valueChanged, [this](Control&) {
        if (audioUnit_)
            audioUnit_->setLfoToggleState(_lfoSwitch.isOn());
        else
            assignments.getLfoWidgetsMapping()->setIsEnabled(_lfoSwitch.isOn());
    });
}

/// The sources that the control manager only keeps records of.
void AudioUnitViewController::assignmentChanged(Control& control, AssignmentType from,
                                                AssignmentType to) {
    const bool drives =
        to == AssignmentType::lfo || to == AssignmentType::accelX || to == AssignmentType::accelY;
    if (drives && &control == &_GRANULATOR_STREAM.scrubArea)
        _GRANULATOR_STREAM.scrubRecorder.endPlaying(); // what was started last drives the scan
    if (from == AssignmentType::midi && to != AssignmentType::midi) midiManager.unbind(control);
    if (to == AssignmentType::midi) midiManager.describe(control);
    if (from == AssignmentType::accelX || from == AssignmentType::accelY)
        tiltWidgets.removeWidget(&control);
    if (to != AssignmentType::accelX && to != AssignmentType::accelY) return;
    const bool x = to == AssignmentType::accelX;
    tiltWidgets.addWidget_forAxis(&control, x ? Accelerometer::Axis::x : Accelerometer::Axis::y);
    describeTilt(control, to);
}

/// In the control manager's table, where people look for why nothing moves.
void AudioUnitViewController::describeTilt(Control& control, AssignmentType type) {
    const bool x = type == AssignmentType::accelX;
    const char* text = x ? "Accelerometer X Assigned" : "Accelerometer Y Assigned";
    if (!instance_.accelerometer.isPresent()) text = Accelerometer::kAbsent;
    if (!tiltWidgets.getWrapperID(&control)) text = assignmentEntry(AssignmentType::none)->title;
    assignments.record(control, type, text);
}

bool AudioUnitViewController::receiveMidi(const MidiMessage& message) {
    const Control* const learning = midiManager.learning();
    if (learning) edits.beginEdit(assignable.nameOf(*learning) + " MIDI");
    takesMidi_ = true;
    const bool taken = midiManager.receive(message);
    takesMidi_ = false;
    if (learning) edits.endEdit(); // which is one if it was learned
    const auto note = static_cast<std::size_t>(message.data1() & 0x7F);
    const bool on = message.kind() == MidiKind::noteOn;
    if (on && message.data2() != 0) {
        endedNotes_.reset(note);
        noteChannels_[note] = static_cast<std::uint8_t>(message.channel());
    }
    if ((on && message.data2() == 0) || message.kind() == MidiKind::noteOff) {
        if (endedNotes_.none()) postIfAlive(&AudioUnitViewController::showEndedNotes);
        endedNotes_.set(note);
    }
    return taken;
}

/// Posted: the note-ons of the same moment come from the audio unit, perhaps later.
void AudioUnitViewController::showEndedNotes() {
    for (std::size_t note = 0; note < endedNotes_.size(); ++note)
        if (endedNotes_.test(note)) surfaces.showNoteOff(static_cast<int>(note));
    endedNotes_.reset();
}

void AudioUnitViewController::saveModulation(PropertyDictionary& state) {
    state.insert_or_assign(state_key::kControlAssignments, assignments.getState());
    state.insert_or_assign(state_key::kMidi, midiManager.getState());
    state.insert_or_assign(state_key::kTilt, tiltWidgets.getState(assignmentName));
    state.insert_or_assign(state_key::kPad, surfaces._pad.getState());
    state.insert_or_assign(state_key::kSmallKeyboardOctave, surfaces._keyboardTiny.octave());
    state.insert_or_assign(state_key::kTapTempo, assignments.tempo.value());
    state.insert_or_assign(_lfoSwitch.channel, _lfoSwitch.isOn());
}

/// The table decides: what else drove a control lets it go, also what the state did not speak of.
void AudioUnitViewController::followTable() {
    for (const auto& [control, name, color] : assignable.all()) {
        const AssignmentType type = assignments.typeOf(*control);
        if (type == AssignmentType::midi)
            midiManager.describe(*control);
        else
            midiManager.unbind(*control);
        if (type != AssignmentType::accelX && type != AssignmentType::accelY) {
            tiltWidgets.removeWidget(control);
            continue;
        }
        const auto axis =
            type == AssignmentType::accelX ? Accelerometer::Axis::x : Accelerometer::Axis::y;
        if (!tiltWidgets.getWrapperID(control) || tiltWidgets.axisOf(control) != axis)
            tiltWidgets.addWidget_forAxis(control, axis);
        describeTilt(*control, type);
    }
}

/// The records first: MIDI takes over what it binds, and tilt adds how its controls follow.
void AudioUnitViewController::restoreAssignments(PropertyReader& state) {
    const PropertyArray* const records = state.array(state_key::kControlAssignments);
    const PropertyDictionary* const savedMidi = state.dictionary(state_key::kMidi);
    const PropertyArray* const savedTilt = state.array(state_key::kTilt);
    PropertyDictionary midi = savedMidi ? *savedMidi : PropertyDictionary{};
    PropertyArray tilt = savedTilt ? *savedTilt : PropertyArray{};
    const auto bindings = midi.find(midi_key::kBindings);
    PropertyArray* const rebound =
        bindings == midi.end() ? nullptr : bindings->second.as<PropertyArray>();
    if (records) {
        const Names named = namesIn(*records);
        addUnnamed(tilt, tiltWidgets.getState(assignmentName), named);
        if (rebound) {
            const PropertyDictionary own = midiManager.getState();
            addUnnamed(*rebound, *own.at(midi_key::kBindings).as<PropertyArray>(), named);
            // Now: later it would take the restored records back.
            for (const auto& one : assignable.all())
                if (named.contains(assignmentName(*one.control))) midiManager.unbind(*one.control);
        }
        append(state.findings(), assignments.restoreState(*records));
    }
    append(state.findings(), midiManager.restoreState(midi));
    if (savedTilt)
        append(state.findings(), tiltWidgets.restoreState(tilt, [this](const std::string& name) {
            return assignments.controlNamed(name);
        }));
    followTable();
}

void AudioUnitViewController::restoreModulation(PropertyReader& state, StateScope scope) {
    if (const auto tempo = state.real(state_key::kTapTempo)) {
        assignments.tempo.setValue(*tempo);
        assignments.tempo.sendEventValueChanged();
    }
    if (scope == StateScope::whole || state.has(state_key::kControlAssignments))
        restoreAssignments(state);
    if (const PropertyArray* pad = state.array(state_key::kPad))
        append(state.findings(), surfaces._pad.restoreState(*pad));
    constexpr std::int64_t kMostOctaves = 100; // more than any keyboard: setOctave holds the rest
    if (const auto octave = state.whole(state_key::kSmallKeyboardOctave))
        surfaces._keyboardTiny.setOctave(
            static_cast<int>(std::clamp(*octave, -kMostOctaves, kMostOctaves)));
    if (const auto on = state.boolean(_lfoSwitch.channel)) {
        _lfoSwitch.setOn(*on);
        _lfoSwitch.sendEventValueChanged();
    }
}

} // namespace zephyra
