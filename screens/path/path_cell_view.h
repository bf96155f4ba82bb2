// PathCellView: the base of a cell of the path as a component.
#pragma once

#include "screens/model/path/path_model.h"
#include "screens/model/screen_context.h"
#include "screens/path/knob_look.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <string>

namespace zephyra {

/// Knows its place, whether a hand is near, and the sentence that it helps with. Message thread.
class PathCellView : public juce::Component, public juce::SettableTooltipClient {
public:
    PathCellView(ScreenContext& context, const PathCell& cell);

    const PathCell& cell() const { return cell_; }
    /// Another layout, by which the cell stands in the path's area.
    virtual void setPlace(const CellPlace& place);
    void useShortName(bool on);
    /// A frame: repaints what differs from what was drawn.
    virtual void show(const PathModel& model) = 0;

    /// A frame round what has the focus shows while keys are used, not while pointers are.
    void showFocus(bool on);

    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;

protected:
    ScreenContext& context() { return context_; }
    const CellPlace& place() const { return place_; }
    const CellReach& reach() const { return reach_; }
    /// Repaints when it changed.
    void setReach(const CellReach& reach);
    /// What the cell does, in a sentence, for the foot, tooltips and assistive technology.
    void setHelp(const std::string& sentence);
    /// Shown in the foot while the pointer is here.
    virtual std::string sentence() const { return help_; }
    void tell(const std::string& sentence);
    std::string name() const { return isShort_ ? cell_.shortName : cell_.name; }
    /// In the window, for menus.
    Box boxInWindow() const;

private:
    ScreenContext& context_;
    const PathCell cell_;
    CellPlace place_{};
    CellReach reach_;
    std::string help_;
    bool isShort_ = false;
};

} // namespace zephyra
