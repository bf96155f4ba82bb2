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
    /// A pointer's life, of the mouse or another source; in this component. release answers whether
    /// it was a tap on the number, by which a value is typed.
    void press(TouchId pointer, juce::Point<float> at);
    void drag(TouchId pointer, juce::Point<float> to, Fineness fineness);
    bool release(TouchId pointer, juce::Point<float> at);
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
    bool holdsGrip(TouchId pointer) const { return grip_ && grip_->pointer == pointer; }
    const juce::Image& stillPicture();
    void openMenu();
    void closeField();

    KnobHand& hand_;
    KnobLook& look_;
    KnobFace face_;
    bool wasShown_ = false;
    juce::Image still_; // of stillFace_ and stillReach_; invalid while nothing moves the knob
    KnobFace stillFace_;
    CellReach stillReach_;
    struct HeldGrip {
        TouchId pointer;
        BondEnd end;
    };
    std::optional<HeldGrip> grip_;
    std::unique_ptr<ValueField> field_;
};

} // namespace zephyra
