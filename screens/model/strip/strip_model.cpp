#include "screens/model/strip/strip_model.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

void StripModel::toggle() {
    context_.settings.*shows_ = !(context_.settings.*shows_);
    if (context_.settingsChanged) context_.settingsChanged();
}

bool StripModel::advance(const FrameTime& time) {
    OutputMonitor& monitor = context_.source.plugin().monitor();
    const bool wanted = context_.settings.*shows_, switched = wanted != isOn();
    if (switched) {
        watcher_.reset();
        if (wanted) watcher_.emplace(monitor.oscilloscope.watchers);
        begin(monitor.oscilloscope);
    }
    const bool moved = isOn() && follow(monitor.oscilloscope, time);
    return moved || switched;
}

SpectrumModel::SpectrumModel(ScreenContext& context)
    : StripModel(context, &ScreenSettings::showsSpectrum) {
    context.source.add(*this);
}

SpectrumModel::~SpectrumModel() {
    context().source.remove(*this);
}

void SpectrumModel::read(AudioUnitViewController& view, const FrameTime&) {
    rate_ = view._GRANULATOR_STREAM.instance().session.sampleRate;
}

bool ScopeModel::follow(const Oscilloscope& oscilloscope, const FrameTime& time) {
    const bool changed = trace_.advance(oscilloscope, time);
    float peak = 0.0f;
    for (const ScopeTrace::Column& column : trace_.columns())
        peak = std::max({peak, std::fabs(column.low), std::fabs(column.high)});
    return zoom_.advance(peak, time.elapsed) || changed;
}

} // namespace zephyra
