// PathCellView: the base of a cell of the path as a component.
#pragma once

#include "screens/draw/screen_control.h"
#include "screens/model/path/path_model.h"
#include "screens/path/knob_look.h"

#include <string>

namespace zephyra {

/// Knows its place, whether a hand is near, and the sentence that it helps with. Message thread.
class PathCellView : public ScreenControl {
public:
    PathCellView(ScreenContext& context, const PathCell& cell);

    const PathCell& cell() const { return cell_; }
    /// Another layout, by which the cell stands in the path's area.
    virtual void setPlace(const CellPlace& place);
    void useShortName(bool on);
    /// A frame: repaints what differs from what was drawn.
    virtual void show(const PathModel& model) = 0;

protected:
    const CellPlace& place() const { return place_; }
    const CellReach& reach() const { return reach_; }
    /// Repaints when it changed.
    void setReach(const CellReach& reach);
    void reachChanged() override;
    std::string name() const { return isShort_ ? cell_.shortName : cell_.name; }
    /// In the window, for menus.
    Box boxInWindow() const;

private:
    const PathCell cell_;
    CellPlace place_{};
    CellReach reach_;
    bool isShort_ = false;
};

} // namespace zephyra
