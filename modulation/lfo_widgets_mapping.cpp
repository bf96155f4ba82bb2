#include "modulation/lfo_widgets_mapping.h"

#include "controls/knob.h"
#include "controls/scan_target.h"

namespace zephyra {

LFO_WIDGETS_MAPPING::LFO_WIDGETS_MAPPING(Instance& instance) : instance_(instance) {
    beginTicks();
}

LFO_WIDGETS_MAPPING::~LFO_WIDGETS_MAPPING() {
    instance_.runLoop.cancel(timer_);
}

void LFO_WIDGETS_MAPPING::beginTicks() {
    instance_.runLoop.cancel(timer_);
    timer_ = instance_.runLoop.addTimer(kLfoTick, [this] { notifyClients(); });
}

void LFO_WIDGETS_MAPPING::startAnew() {
    beginTicks();
    wrappers_.forEach([](LfoWidgetWrapper& wrapper) { wrapper.startAnew(); });
}

void LFO_WIDGETS_MAPPING::addWidget(Control* control) {
    if (!control) return instance_.log.write("Error: Attempted to add a widget with a ID null");
    if (auto* const knob = dynamic_cast<MOK_KNOB*>(control))
        wrappers_.add(
            std::make_shared<MOK_KNOB_LFO_CONTROL_WRAPPER>(*knob, bpm_, instance_.random));
    else if (auto* const scan = dynamic_cast<ScanTarget*>(control))
        wrappers_.add(
            std::make_shared<LfoScrubWaveFormWidgetWrapper>(*scan, bpm_, instance_.random));
}

void LFO_WIDGETS_MAPPING::removeWidget(const Control* control) {
    wrappers_.remove(control);
}

void LFO_WIDGETS_MAPPING::removeAllWidgets() {
    wrappers_.clear();
}

LfoWidgetWrapper* LFO_WIDGETS_MAPPING::getWrapperID(const Control* control) const {
    return wrappers_.find(control);
}

PropertyDictionary LFO_WIDGETS_MAPPING::getWrapperInfo(const Control* control) const {
    const LfoWidgetWrapper* const wrapper = wrappers_.find(control);
    return wrapper ? wrapper->state() : PropertyDictionary{};
}

StateFindings LFO_WIDGETS_MAPPING::setWrapperInfo_fromDictionary(Control* control,
                                                                 const PropertyDictionary& state) {
    StateFindings findings;
    if (!wrappers_.find(control)) addWidget(control);
    if (LfoWidgetWrapper* const wrapper = wrappers_.find(control)) {
        PropertyReader reader(state, findings, control->channel);
        wrapper->applyState(reader);
    }
    return findings;
}

void LFO_WIDGETS_MAPPING::notifyClients() {
    if (!enabled_) return;
    wrappers_.forEach([](LfoWidgetWrapper& wrapper) { processLFO(&wrapper.currentLFO); });
}

void LFO_WIDGETS_MAPPING::setTempo(double bpm) {
    bpm_ = bpm;
    wrappers_.forEach([bpm](LfoWidgetWrapper& wrapper) { wrapper.setTempo(bpm); });
}

// LFOs move controls, and controls live on MAIN: there is nothing to do here.
void lfotTickProcessing(LFO_WIDGETS_MAPPING*, int) ZEPHYRA_NONBLOCKING {}

} // namespace zephyra
