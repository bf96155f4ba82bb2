// SpectrumModel, ScopeModel: spectrum and scope of a window, each while it is switched on.
#pragma once

#include "screens/model/live_spectrum.h"
#include "screens/model/scope_trace.h"
#include "screens/model/screen_context.h"
#include "screens/model/strip/scope_zoom.h"

#include <optional>

namespace zephyra {

/// Off, nothing is read for it. Message thread.
class SpectrumModel final : public ScreenPart {
public:
    explicit SpectrumModel(ScreenContext& context);
    ~SpectrumModel() override;

    bool isOn() const noexcept { return watcher_.has_value(); }
    void toggle();
    LiveSpectrum& spectrum() noexcept { return spectrum_; }
    /// Follows the output and ScreenSettings::showsSpectrum. Whether what is shown changed.
    bool advance(const FrameTime& time);

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    ScreenContext& context_;
    std::optional<WatchCount::Watcher> watcher_;
    LiveSpectrum spectrum_;
    double rate_ = 0.0; // Hz
};

/// Likewise.
class ScopeModel {
public:
    explicit ScopeModel(ScreenContext& context) : context_(context) {}

    bool isOn() const noexcept { return watcher_.has_value(); }
    void toggle();
    ScopeTrace& trace() noexcept { return trace_; }
    int zoom() const noexcept { return zoom_.factor(); } ///< 1, 2, 4, 8 or 16
    bool advance(const FrameTime& time);

private:
    ScreenContext& context_;
    std::optional<WatchCount::Watcher> watcher_;
    ScopeTrace trace_;
    ScopeZoom zoom_;
};

} // namespace zephyra
