// StripModel: spectrum or scope of a window, while it is switched on.
#pragma once

#include "screens/model/live_spectrum.h"
#include "screens/model/scope_trace.h"
#include "screens/model/screen_context.h"
#include "screens/model/strip/scope_zoom.h"

#include <optional>

namespace zephyra {

/// Off, nothing is read for it. Message thread.
class StripModel {
public:
    /// shows: the setting that switches it.
    StripModel(ScreenContext& context, bool ScreenSettings::*shows)
        : context_(context), shows_(shows) {}
    virtual ~StripModel() = default;

    bool isOn() const noexcept { return watcher_.has_value(); }
    void toggle();
    /// Follows the output and the setting. Whether what is shown changed.
    bool advance(const FrameTime& time);

protected:
    /// Shows nothing of what was before.
    virtual void begin(const Oscilloscope& oscilloscope) = 0;
    virtual bool follow(const Oscilloscope& oscilloscope, const FrameTime& time) = 0;

    ScreenContext& context() noexcept { return context_; }

private:
    ScreenContext& context_;
    bool ScreenSettings::*const shows_;
    std::optional<WatchCount::Watcher> watcher_;
};

class SpectrumModel final : public StripModel, public ScreenPart {
public:
    explicit SpectrumModel(ScreenContext& context);
    ~SpectrumModel() override;

    LiveSpectrum& spectrum() noexcept { return spectrum_; }

    void read(AudioUnitViewController& view, const FrameTime& time) override;

protected:
    void begin(const Oscilloscope& oscilloscope) override { spectrum_.begin(oscilloscope); }
    bool follow(const Oscilloscope& oscilloscope, const FrameTime& time) override {
        return spectrum_.advance(oscilloscope, rate_, time);
    }

private:
    LiveSpectrum spectrum_;
    double rate_ = 0.0; // Hz
};

class ScopeModel final : public StripModel {
public:
    explicit ScopeModel(ScreenContext& context)
        : StripModel(context, &ScreenSettings::showsScope) {}

    ScopeTrace& trace() noexcept { return trace_; }
    int zoom() const noexcept { return zoom_.factor(); } ///< 1, 2, 4, 8 or 16

protected:
    void begin(const Oscilloscope& oscilloscope) override { trace_.begin(oscilloscope); }
    bool follow(const Oscilloscope& oscilloscope, const FrameTime& time) override;

private:
    ScopeTrace trace_;
    ScopeZoom zoom_;
};

} // namespace zephyra
