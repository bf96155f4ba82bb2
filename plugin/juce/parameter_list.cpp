#include "plugin/juce/parameter_list.h"

#include "plugin/juce/zephyra_parameter.h"

namespace zephyra {

namespace {

constexpr int kRowHeight = 26, kNameWidth = 190, kTextWidth = 90, kMargin = 6;

} // namespace

/// A hand on it makes a gesture; values that come from elsewhere make none.
class ParameterList::Row final : public juce::Component {
public:
    explicit Row(ZephyraParameter& parameter) : parameter_(parameter) {
        name_.setText(parameter.getName(99), juce::dontSendNotification);
        name_.setTooltip(pluginParameters()[parameter.address()].meaning);
        addAndMakeVisible(name_);
        if (parameter.isBoolean())
            useSwitch();
        else
            useSlider();
        refresh();
    }

    void refresh() {
        const float value = parameter_.getValue();
        if (parameter_.isBoolean())
            return switch_.setToggleState(value >= 0.5f, juce::dontSendNotification);
        if (slider_.isMouseButtonDown()) return; // the hand's is newer
        slider_.setValue(double{value}, juce::dontSendNotification);
    }

    void resized() override {
        auto area = getLocalBounds().reduced(kMargin, 0);
        name_.setBounds(area.removeFromLeft(kNameWidth));
        switch_.setBounds(area);
        slider_.setBounds(area);
    }

private:
    void useSwitch() {
        switch_.setTitle(name_.getText());
        switch_.onClick = [this] {
            parameter_.beginChangeGesture();
            parameter_.setValueNotifyingHost(switch_.getToggleState() ? 1.0f : 0.0f);
            parameter_.endChangeGesture();
        };
        addAndMakeVisible(switch_);
    }

    void useSlider() {
        slider_.setTitle(name_.getText());
        slider_.setTextBoxStyle(juce::Slider::TextBoxRight, false, kTextWidth, kRowHeight - 4);
        slider_.textFromValueFunction = [this](double value) {
            return parameter_.getText(static_cast<float>(value), 99);
        };
        slider_.valueFromTextFunction = [this](const juce::String& text) {
            return double{parameter_.getValueForText(text)};
        };
        slider_.setRange(0.0, 1.0);
        slider_.setDoubleClickReturnValue(true, double{parameter_.getDefaultValue()});
        slider_.setScrollWheelEnabled(false); // which scrolls the list
        slider_.onDragStart = [this] { parameter_.beginChangeGesture(); };
        slider_.onDragEnd = [this] { parameter_.endChangeGesture(); };
        slider_.onValueChange = [this] { changed(); };
        addAndMakeVisible(slider_);
    }

    /// Typed and double-clicked values come without a drag.
    void changed() {
        const bool drags = slider_.isMouseButtonDown();
        if (!drags) parameter_.beginChangeGesture();
        parameter_.setValueNotifyingHost(static_cast<float>(slider_.getValue()));
        if (!drags) parameter_.endChangeGesture();
    }

    ZephyraParameter& parameter_;
    juce::Label name_;
    juce::Slider slider_;
    juce::ToggleButton switch_;
};

ParameterList::ParameterList(juce::AudioProcessor& processor) : processor_(processor) {
    for (AUParameterAddress address = 0; address < kParameterCount; ++address) {
        all_.push_back(std::make_unique<Row>(parameterAt(processor_, address)));
        rows_.addAndMakeVisible(*all_.back());
    }
    view_.setViewedComponent(&rows_, false);
    view_.setScrollBarsShown(true, false);
    addAndMakeVisible(view_);
}

ParameterList::~ParameterList() = default;

void ParameterList::refresh() {
    for (const auto& row : all_) row->refresh();
}

void ParameterList::resized() {
    view_.setBounds(getLocalBounds());
    const int width = getWidth() - view_.getScrollBarThickness();
    rows_.setSize(width, kRowHeight * static_cast<int>(all_.size()));
    for (std::size_t i = 0; i < all_.size(); ++i)
        all_[i]->setBounds(0, kRowHeight * static_cast<int>(i), width, kRowHeight);
}

} // namespace zephyra
