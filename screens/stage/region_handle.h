// RegionHandle: one end of the scanned region, to be dragged along the ruler.
#pragma once

#include "screens/draw/screen_control.h"
#include "screens/model/stage/stage_hands.h"
#include "screens/model/touch/touch_target.h"
#include "screens/stage/stage_scene.h"

namespace zephyra {

/// Stands on the ruler with more room than its grip takes; hands tells it what to do. Keys: arrows,
/// finer with Shift, Home and End. Message thread.
class RegionHandle final : public ScreenControl, public TouchTarget {
public:
    /// All outlive it.
    RegionHandle(RegionEdge edge, ScreenContext& context, StageHands& hands,
                 const StageScene& scene);

    /// To where the region's edge is now.
    void follow();

    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    bool touchBegan(const TouchEvent& event) override;
    void touchMoved(const TouchEvent& event) override;
    void touchEnded(const TouchEvent& event, int taps) override;
    void touchCancelled(const TouchEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    /// The edge, a fraction of the sound.
    double position() const;
    void moveTo(double position) { hands_.setEdge(edge_, position); }

private:
    bool takeKey(const juce::KeyPress& key) override;
    bool isStart() const { return edge_ == RegionEdge::start; }
    double placeOf(const juce::MouseEvent& event) const;
    double placeOf(const TouchEvent& event) const;
    double gripWidth() const;

    const RegionEdge edge_;
    StageHands& hands_;
    const StageScene& scene_;
    int touchedAt_ = 0; // its left, on the stage
};

} // namespace zephyra
