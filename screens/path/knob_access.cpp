#include "screens/path/knob_access.h"

#include "audiounit/control_text.h"
#include "screens/draw/brush.h"
#include "screens/path/knob_cell.h"

namespace zephyra {

namespace {

class KnobValue final : public juce::AccessibilityValueInterface {
public:
    explicit KnobValue(KnobCell& knob) : knob_(knob), range_(controlRange(knob.cell().id)) {}

    bool isReadOnly() const override { return false; }
    double getCurrentValue() const override {
        const float linear = range_.minimum + knob_.face().arc * (range_.maximum - range_.minimum);
        return double{displayedFromLinear(range_, linear)};
    }
    juce::String getCurrentValueAsString() const override {
        return brush::text(knob_.face().text.whole());
    }
    void setValue(double value) override {
        knob_.typeValue(valueText(range_, static_cast<float>(value)));
    }
    void setValueAsString(const juce::String& text) override {
        knob_.typeValue(text.toStdString());
    }
    AccessibleValueRange getRange() const override {
        const bool positions =
            range_.kind == ControlKind::whole || range_.kind == ControlKind::choice;
        const double span = double{range_.maximum} - double{range_.minimum};
        return {{range_.minimum, range_.maximum}, positions ? 1.0 : span / 50};
    }

private:
    KnobCell& knob_;
    const ControlRange& range_;
};

} // namespace

std::unique_ptr<juce::AccessibilityHandler> makeKnobAccess(KnobCell& knob) {
    return std::make_unique<juce::AccessibilityHandler>(
        knob, juce::AccessibilityRole::slider, juce::AccessibilityActions(),
        juce::AccessibilityHandler::Interfaces{std::make_unique<KnobValue>(knob)});
}

} // namespace zephyra
