// SpectrumView: the output's spectrum, 30 Hz to 20 kHz.
#pragma once

#include "screens/model/strip/strip_model.h"
#include "screens/strip/strip_view.h"

namespace zephyra {

/// Message thread.
class SpectrumView final : public StripView {
public:
    explicit SpectrumView(ScreenContext& context);

    void frame(const FrameTime& time) override;
    bool isOn() const override { return model_.isOn(); }
    void toggle() override { model_.toggle(); }

protected:
    void laidOut() override;
    void drawGround(juce::Graphics& graphics) override;
    void drawTrace(SpanImage::Pen& pen) override;
    void drawText(juce::Graphics& graphics) override;

private:
    float yOf(double decibels) const;
    float xOf(double hertz) const;

    SpectrumModel model_;
};

} // namespace zephyra
