#include "main_view/audio_unit_view_controller.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace zephyra {

namespace {

constexpr double kCollectInterval = 0.1; // seconds

} // namespace

AudioUnitViewController::AudioUnitViewController(Instance& instance)
    : OwnKnobs(instance.notifications, kStreamSuffix), _GRANULATOR_STREAM(instance, kStreamSuffix),
      parameters(_GRANULATOR_STREAM.controls, _inputDryWetKnob, kStreamSuffix),
      sampleLoader(instance, _GRANULATOR_STREAM), liveExport(instance, _GRANULATOR_STREAM),
      surfaces(_GRANULATOR_STREAM), scrubWidgets(instance.runLoop),
      assignments(instance, assignable), midiManager(instance, assignments), tiltWidgets(instance),
      _lfoSwitch("LFOSwitch", true), snapshotSource(*this, instance),
      chosenSample(instance.folders, sampleLoader), presets(instance, &snapshotSource),
      samples(instance, &chosenSample), locks([this](ControlId id) { return control(id); }),
      compare(*this), randomizer(*this), edits(*this), instance_(instance) {
    _GRANULATOR_STREAM.setSettings(this);
    addOwnTargets();
    wireModulation();
    refreshNotice_ = instance_.notifications.addObserver("refreshParameters", [this](const auto&) {
        // While the host moves a button, the other controls are about to move as well.
        if (link_.isMoving())
            postIfAlive(&AudioUnitViewController::refreshParameters);
        else
            refreshParameters();
    });
    collecting_ = instance_.runLoop.addTimer(kCollectInterval, [this] {
        _GRANULATOR_STREAM.collect();
        edits.settle();
    });
    samples.viewDidLoad();
    refreshParameters();
}

AudioUnitViewController::~AudioUnitViewController() {
    disconnect();
    instance_.runLoop.cancel(collecting_);
    instance_.notifications.removeObserver(refreshNotice_);
    _GRANULATOR_STREAM.scrubArea.removeListener(&scrubWidgets);
    _GRANULATOR_STREAM.setSettings(nullptr);
}

Control* AudioUnitViewController::control(ControlId id) {
    if (MOK_KNOB* const own = ownKnob(id)) return own;
    return _GRANULATOR_STREAM.control(id);
}

void AudioUnitViewController::addOwnTargets() {
    _inputDryWetKnob.addTarget(this, "setDryWet:", control_event::valueChanged, [this](Control&) {
        if (audioUnit_) audioUnit_->setDryWet(_inputDryWetKnob.value());
    });
    _GRANULATOR_STREAM.controls._saveButton.addTarget(
        this, "saveData:", control_event::touchUpInside,
        [this](Control& sender) { liveExport.saveData(&sender); });
}

void AudioUnitViewController::setAudioUnit(MyAudioUnit* unit) {
    if (unit == audioUnit_) return;
    disconnect();
    audioUnit_ = unit;
    if (!audioUnit_) return;
    audioUnit_->setController_andParameters(this, parameters._paramChildrens);
    link_.adopt();
    refreshParameters(); // a host may read them before it allocates
}

void AudioUnitViewController::disconnect() {
    if (!audioUnit_) return;
    link_.disconnect();
    std::exchange(audioUnit_, nullptr)->removeController();
}

void AudioUnitViewController::postIfAlive(void (AudioUnitViewController::*task)()) {
    instance_.runLoop.post([this, task, alive = std::weak_ptr(alive_)] {
        if (!alive.expired()) (this->*task)();
    });
}

std::string AudioUnitViewController::fadeTimesText() const {
    return "Fade In/Out (Play/Pause) Time: [In: " + formatFixed(double{_fadeInTime.value()}, 3) +
           " secs  Out: " + formatFixed(double{_fadeOutTime.value()}, 3) + " secs]";
}

void AudioUnitViewController::loadSample(const std::filesystem::path& path) {
    edits.beginEdit(path.filename().string());
    sampleLoader.loadSamplePerform(path);
    edits.endEdit();
}

bool AudioUnitViewController::LoadSampleDelegate(const std::string& name) {
    const std::filesystem::path path = instance_.folders.resources / name;
    std::error_code unreadable;
    // Without a folder, the name would be looked for wherever the host runs.
    if (instance_.folders.resources.empty() || !std::filesystem::is_regular_file(path, unreadable))
        return false;
    sampleLoader.loadSamplePerform(path);
    return true;
}

bool AudioUnitViewController::sampleWasRequested() const {
    return sampleLoader.requests() > 0 || !_GRANULATOR_STREAM.sampleReference().path.empty() ||
           _GRANULATOR_STREAM.waveForm().isLiveCurrent(); // captured, from a state
}

void AudioUnitViewController::midiNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING {
    audioUnit_->noticeNoteOn(note, velocity);
}

void AudioUnitViewController::playNote(int note, int velocity) {
    if (velocity <= 0 || note < 0 || note > 127) return;
    noteChannel_ = noteChannels_[static_cast<std::size_t>(note)];
    takesMidi_ = true;
    _GRANULATOR_STREAM.selectPitchFromMidiNote_andVeloc(note, velocity);
    takesMidi_ = false;
    noteChannel_ = 0;
}

double AudioUnitViewController::fadeInTime() const {
    return double{_fadeInTime.value()};
}

double AudioUnitViewController::fadeOutTime() const {
    return double{_fadeOutTime.value()};
}

} // namespace zephyra
