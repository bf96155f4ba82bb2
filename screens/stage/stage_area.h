// StageArea: the sound with its grains and scan, and the ruler below.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/draw/screen_control.h"
#include "screens/model/stage/stage_fingers.h"
#include "screens/model/stage/stage_hands.h"
#include "screens/model/touch/touch_target.h"
#include "screens/stage/missing_notice.h"
#include "screens/stage/region_handle.h"
#include "screens/stage/ruler.h"
#include "screens/stage/sound_name.h"
#include "screens/stage/stage_canvas.h"
#include "screens/stage/stage_overlay.h"

#include <span>
#include <vector>

namespace zephyra {

/// Message thread.
class StageArea final : public ScreenControl, public ScreenArea, public TouchTarget {
public:
    explicit StageArea(ScreenContext& context);
    ~StageArea() override;

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void blit(WindowBlitter& blitter) override;
    void paint(juce::Graphics& graphics) override;

    StageHands& hands() noexcept { return hands_; }
    const StageScene& scene() const noexcept { return scene_; }
    const GrainCloud& grains() const noexcept { return reader_.grains(); }

    // stage_area_input.cpp
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event,
                        const juce::MouseWheelDetails& wheel) override;
    bool touchBegan(const TouchEvent& event) override;
    void touchMoved(const TouchEvent& event) override;
    void touchEnded(const TouchEvent& event, int taps) override;
    void touchCancelled(const TouchEvent& event) override;
    bool followsAtOnce() const override { return true; }
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void hoverChanged() override {}
    bool takeKey(const juce::KeyPress& key) override;
    void takeContents(const FrameTime& time);
    void takeSound();
    bool groundDiffers() const;
    void drawGround();
    void scrollGround();
    void followEdges();
    void repaintBox(const Box& box);
    double placeX(const juce::MouseEvent& event) const;
    double placeY(const juce::MouseEvent& event) const;

    StageReader reader_;
    WavePyramid pyramid_;
    StageScene scene_, drawn_; // now, and as the ground was drawn
    StageHands hands_;
    StageFingers fingers_{hands_};
    StageCanvas canvas_;
    StageOverlay overlay_;
    Ruler ruler_;
    RegionHandle start_, end_;
    MissingNotice missing_;
    SoundName name_;
    std::span<const Box> moved_; // of the canvas, to be painted
    std::vector<WaveColumn> columns_;
    std::vector<WaveExtent> extents_;
    std::int64_t liveColumn_ = 0; // of live input, the first that is drawn
    std::uint64_t liveBegins_ = 0;
    bool renews_ = true;
};

} // namespace zephyra
