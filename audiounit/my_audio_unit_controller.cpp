// MyAudioUnit and its view controller: the tree, and what each type of component begins with.

#include "audiounit/my_audio_unit.h"
#include "audiounit/parameter_table.h"
#include "modulation/lfo_widgets_mapping.h"
#include "modulation/modulation.h"
#include "stream/stream_controller.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kDemonstrationSample = "Zephyra_Sample08.mp3";
constexpr float kDimmed = 0.33f; ///< alpha of a control that changes nothing

} // namespace

void MyAudioUnit::setController_andParameters(
    AudioUnitController* controller, std::vector<std::shared_ptr<AUParameter>> parameters) {
    if (!controller) return;
    removeController();
    controller_ = controller;
    _GRANULATOR_STREAM = controller->granulatorStream();
    _GRANULATOR_STREAM->setLiveAllowed(!isInstrument_);
    controlManager_ = controller->controlManager();
    if (controlManager_) record_.lfoInRefCon = controlManager_->getLfoWidgetsMapping();
    createParametersTree(std::move(parameters));
    source_ = instance_.runLoop.addSource([this] { takeNotices(); });
    record_.lastTempoValue = -1.0; // which the new stream has not heard
    if (allocated_) prepareStream();
    postToMain(&MyAudioUnit::adaptToComponentType);
    controller->connectViewWithAU();
}

void MyAudioUnit::removeController() {
    instance_.runLoop.cancel(std::exchange(source_, 0));
    AudioUnitController* const left = std::exchange(controller_, nullptr);
    _GRANULATOR_STREAM = nullptr;
    controlManager_ = nullptr;
    record_.lfoInRefCon = nullptr;
    if (left) left->audioUnitLeaves();
}

PropertyDictionary MyAudioUnit::getFullState() const {
    return controller_ ? controller_->getState() : PropertyDictionary{};
}

void MyAudioUnit::setFullState(PropertyDictionary state) {
    if (controller_) controller_->restoreState(std::move(state));
}

void MyAudioUnit::createParametersTree(std::vector<std::shared_ptr<AUParameter>> parameters) {
    letGoOfTree();
    parameterTree_ = AUParameterTree::createTreeWithChildren(std::move(parameters));
    parameterTree_->implementorValueObserver = [this](const AUParameter& parameter, AUValue value) {
        storeParameter(record_, parameter.address(), value, instance_.states.now());
    };
    parameterTree_->implementorValueProvider = [this](const AUParameter& parameter) {
        return loadParameter(record_, parameter.address());
    };
}

/// A host may keep the tree for longer.
void MyAudioUnit::letGoOfTree() {
    if (!parameterTree_) return;
    parameterTree_->implementorValueObserver = nullptr;
    parameterTree_->implementorValueProvider = nullptr;
    parameterTree_ = nullptr;
}

void MyAudioUnit::setLfoToggleState(bool on) {
    if (!controlManager_) return;
    LFO_WIDGETS_MAPPING* const mapping = controlManager_->getLfoWidgetsMapping();
    record_.lfoInRefCon = mapping;
    if (mapping) mapping->setIsEnabled(on);
}

/// Runs task on the main queue, unless the audio unit or its controller has gone by then.
void MyAudioUnit::postToMain(void (MyAudioUnit::*task)()) {
    instance_.runLoop.post([this, task, alive = std::weak_ptr<bool>(alive_)] {
        if (!alive.expired() && controller_) (this->*task)();
    });
}

void MyAudioUnit::askForParameters() {
    if (allocated_) controller_->refreshParameters();
}

void MyAudioUnit::adaptToComponentType() {
    if (isInstrument_ || !passesInput_) return beginWithSample();
    Button& live = _GRANULATOR_STREAM->controls._enableLIVE;
    // A restored state may have switched it on already, and the event would switch it off.
    if (live.tag == 0) live.trigger();
    controller_->standBehindInput();
}

void MyAudioUnit::beginWithSample() {
    for (Button* button :
         {&_GRANULATOR_STREAM->controls._enableLIVE, &_GRANULATOR_STREAM->controls.liveClear}) {
        button->hidden = isInstrument_;
        button->setNeedsDisplay();
    }
    if (!controller_->sampleWasRequested() &&
        !controller_->LoadSampleDelegate(kDemonstrationSample))
        instance_.log.write("no " + (instance_.folders.resources / kDemonstrationSample).string() +
                            ": the instrument begins without a sound");
    MOK_KNOB& dryWet = *controller_->inputDryWetKnob();
    dryWet.alpha = kDimmed;
    dryWet.setNeedsDisplay();
}

} // namespace zephyra
