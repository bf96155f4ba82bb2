#include "screens/model/strip/strip_model.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

void flip(ScreenContext& context, bool ScreenSettings::*shows) {
    context.settings.*shows = !(context.settings.*shows);
    if (context.settingsChanged) context.settingsChanged();
}

/// Whether it was switched just now.
bool follow(bool wanted, std::optional<WatchCount::Watcher>& watcher, ScreenContext& context) {
    if (wanted == watcher.has_value()) return false;
    watcher.reset();
    if (wanted) watcher.emplace(context.source.plugin().monitor().oscilloscope.watchers);
    return true;
}

} // namespace

SpectrumModel::SpectrumModel(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

SpectrumModel::~SpectrumModel() {
    context_.source.remove(*this);
}

void SpectrumModel::toggle() {
    flip(context_, &ScreenSettings::showsSpectrum);
}

void SpectrumModel::read(AudioUnitViewController& view, const FrameTime&) {
    rate_ = view._GRANULATOR_STREAM.instance().session.sampleRate;
}

bool SpectrumModel::advance(const FrameTime& time) {
    const bool switched = follow(context_.settings.showsSpectrum, watcher_, context_);
    if (switched) spectrum_.setColumns(spectrum_.decibels().size());
    if (!isOn()) return switched;
    return spectrum_.advance(context_.source.plugin().monitor().oscilloscope, rate_, time) ||
           switched;
}

void ScopeModel::toggle() {
    flip(context_, &ScreenSettings::showsScope);
}

bool ScopeModel::advance(const FrameTime& time) {
    const bool switched = follow(context_.settings.showsScope, watcher_, context_);
    if (switched) trace_.setColumns(trace_.columns().size());
    if (!isOn()) return switched;
    const bool changed =
        trace_.advance(context_.source.plugin().monitor().oscilloscope, time) || switched;
    float peak = 0.0f;
    for (const ScopeTrace::Column& column : trace_.columns())
        peak = std::max({peak, std::fabs(column.low), std::fabs(column.high)});
    return zoom_.advance(peak, time.elapsed) || changed;
}

} // namespace zephyra
