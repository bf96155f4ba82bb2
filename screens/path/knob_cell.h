// KnobCell: a knob of the path as a component: its hands.
#pragma once

#include "screens/model/path/knob_hand.h"
#include "screens/path/path_cell_view.h"
#include "screens/path/value_field.h"

#include <memory>
#include <optional>

namespace zephyra {

/// Looks as KnobLook draws it; hands go to KnobHand. Message thread.
class KnobCell final : public PathCellView {
public:
    KnobCell(ScreenContext& context, KnobHand& hand, KnobLook& look, const PathCell& cell);
    ~KnobCell() override;

    void show(const PathModel& model) override;
    void setPlace(const CellPlace& place) override;

    /// A field over the number, for a value to be typed; text stands in it at first, else the
    /// present value, selected.
    void openField(std::optional<juce::String> text = {});
    const KnobFace& face() const { return face_; }
    /// What assistive technology sets.
    void typeValue(const std::string& text);

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event,
                        const juce::MouseWheelDetails& wheel) override;
    bool keyPressed(const juce::KeyPress& key) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    std::string sentence() const override;

private:
    Point units(juce::Point<float> at) const;
    std::optional<BondEnd> gripAt(juce::Point<float> at) const;
    float fractionAt(juce::Point<float> at) const;
    void openMenu();
    void closeField();

    KnobHand& hand_;
    KnobLook& look_;
    KnobFace face_;
    bool wasShown_ = false;
    std::optional<BondEnd> grip_;
    std::unique_ptr<ValueField> field_;
};

} // namespace zephyra
