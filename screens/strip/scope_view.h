// ScopeView: the output's newest sound as a wave.
#pragma once

#include "screens/strip/strip_view.h"

namespace zephyra {

/// Message thread.
class ScopeView final : public StripView {
public:
    explicit ScopeView(ScreenContext& context);

protected:
    void laidOut() override;
    void drawGround(juce::Graphics& graphics) override;
    void drawTrace(SpanImage& picture) override;
    juce::Colour traceColour() const override;

private:
    void showZoom();

    ScopeModel model_;
    int zoom_ = 1; // that a label says
};

} // namespace zephyra
