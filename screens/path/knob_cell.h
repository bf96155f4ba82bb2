// KnobCell: a knob of the path as a component: its hands.
#pragma once

#include "screens/model/path/knob_hand.h"
#include "screens/model/touch/touch_target.h"
#include "screens/path/path_cell_view.h"
#include "screens/path/value_field.h"

#include <memory>
#include <optional>

namespace zephyra {

/// Looks as KnobLook draws it; hands go to KnobHand. Message thread.
class KnobCell final : public PathCellView, public TouchTarget {
public:
    KnobCell(ScreenContext& context, KnobHand& hand, KnobLook& look, const PathCell& cell);
    ~KnobCell() override;

    void show(const PathModel& model) override;
    void setPlace(const CellPlace& place) override;

    /// A field over the number, for a value to be typed; text stands in it at first, else the
    /// present value, selected.
    void openField(std::optional<juce::String> text = {});
    const KnobFace& face() const { return face_; }
    /// A pointer's life, of the mouse or another source; in this component. press answers false for
    /// a knob that another pointer holds, release whether it was a tap on the number, by which a
    /// value is typed.
    bool press(TouchId pointer, juce::Point<float> at);
    void drag(TouchId pointer, juce::Point<float> to, Fineness fineness);
    bool release(TouchId pointer, juce::Point<float> at);
    void cancel(TouchId pointer);
    /// What assistive technology sets.
    void typeValue(const std::string& text);

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event,
                        const juce::MouseWheelDetails& wheel) override;
    // knob_cell_touch.cpp
    bool touchBegan(const TouchEvent& event) override;
    void touchMoved(const TouchEvent& event) override;
    void touchEnded(const TouchEvent& event, int taps) override;
    void touchCancelled(const TouchEvent& event) override;
    void touchRested(const TouchEvent& event) override;

    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

protected:
    bool takeKey(const juce::KeyPress& key) override;
    std::string sentence() const override;
    void tell(const std::string& sentence) override;

private:
    Point units(juce::Point<float> at) const;
    std::optional<BondEnd> gripAt(juce::Point<float> at) const;
    float fractionAt(juce::Point<float> at) const;
    bool holdsGrip(TouchId pointer) const { return grip_ && grip_->pointer == pointer; }
    bool endGrip(TouchId pointer);
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
    int fingers_ = 0; // of a touch screen, that have come down so far
    std::unique_ptr<ValueField> field_;
};

} // namespace zephyra
