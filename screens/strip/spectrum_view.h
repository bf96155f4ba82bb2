// SpectrumView: the output's spectrum, 30 Hz to 20 kHz.
#pragma once

#include "screens/strip/strip_view.h"

namespace zephyra {

/// Message thread.
class SpectrumView final : public StripView {
public:
    explicit SpectrumView(ScreenContext& context);

protected:
    void laidOut() override;
    void drawGround(juce::Graphics& graphics) override;
    void drawTrace(SpanImage& picture) override;
    juce::Colour traceColour() const override;
    juce::Colour fillColour() const override;

private:
    float yOf(double decibels) const;
    float xOf(double hertz) const;
    void writeLabels();

    SpectrumModel model_;
};

} // namespace zephyra
