// PathArea: the knobs in the order of the signal.
#pragma once

#include "screens/draw/screen_area.h"
#include "screens/model/path/path_model.h"
#include "screens/path/envelope_picker.h"
#include "screens/path/knob_cell.h"
#include "screens/path/section_switch.h"

#include <memory>
#include <vector>

namespace zephyra {

/// Holds the cells, and draws the signal line with its titles. Message thread.
class PathArea final : public juce::Component, public ScreenArea {
public:
    explicit PathArea(ScreenContext& context);
    ~PathArea() override;

    /// See PathModel::setVoices.
    void setVoices(const SoundingVoices* voices) { model_.setVoices(voices); }
    /// For what else touches knobs.
    KnobHand& hand() { return hand_; }
    /// The knob's cell, also one that is hidden; null for what is none.
    KnobCell* knobCell(ControlId id);
    /// The knob that stands there, in this area; null for none.
    KnobCell* knobCellAt(juce::Point<int> at);
    /// Opens the menu of grain shapes.
    void openEnvelopes();

    void layOut(const ScreenLayout& layout) override;
    void frame(const FrameTime& time) override;
    void paint(juce::Graphics& graphics) override;

private:
    void addCells();
    void addSwitches();
    void closeEnvelopes();
    void placeCells();
    void showCells();
    void paintSection(juce::Graphics& graphics, const PathSection& section) const;
    bool isOff(const PathSection& section) const;

    ScreenContext& context_;
    PathModel model_;
    KnobHand hand_;
    KnobLook look_;
    ScreenLayout layout_;
    std::vector<EnvelopeCurve> curves_;
    std::vector<std::unique_ptr<PathCellView>> cells_;
    std::vector<std::unique_ptr<SectionSwitch>> switches_;
    std::unique_ptr<EnvelopePicker> picker_;
    SafePointer<juce::Component> beforePicker_; // had the keyboard
    PathSync shownSync_;
    std::vector<bool> shownOff_;
};

} // namespace zephyra
