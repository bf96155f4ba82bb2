// StripArea: spectrum and scope.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/strip/scope_view.h"
#include "screens/strip/spectrum_view.h"

namespace zephyra {

/// Message thread.
class StripArea final : public juce::Component, public ScreenArea {
public:
    explicit StripArea(ScreenContext& context);

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void blit(WindowBlitter& blitter) override;

private:
    SpectrumView spectrum_;
    ScopeView scope_;
    static constexpr int kTurns = 3;

    int turn_ = 0;
    double spectrumsTime_ = 0.0, scopesTime_ = 0.0; // seconds since its turn
};

} // namespace zephyra
