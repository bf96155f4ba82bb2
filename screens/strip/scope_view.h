// ScopeView: the output's newest sound as a wave.
#pragma once

#include "screens/model/strip/strip_model.h"
#include "screens/strip/strip_view.h"

namespace zephyra {

/// Message thread.
class ScopeView final : public StripView {
public:
    explicit ScopeView(ScreenContext& context);

    void frame(const FrameTime& time) override;
    bool isOn() const override { return model_.isOn(); }
    void toggle() override { model_.toggle(); }

protected:
    void laidOut() override;
    void drawGround(juce::Graphics& graphics) override;
    void drawTrace(SpanImage::Pen& pen) override;
    void drawText(juce::Graphics& graphics) override;

private:
    ScopeModel model_;
};

} // namespace zephyra
