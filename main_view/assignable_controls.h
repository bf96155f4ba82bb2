// AssignableControls: everything that a modulation source may move, as one list.
#pragma once

#include "controls/scrub_reference.h"
#include "modulation/control_manager.h"
#include "stream/control_ranges.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// One control of the list.
struct AssignableControl {
    Control* control;
    std::string name; ///< as people read it
    int color;        ///< group, see ControlManagerDataSource
};

/// The list for the control manager. Its order is that of the table and of saved records; new
/// controls go to the end. MAIN.
class AssignableControls final : public ControlManagerDataSource {
public:
    /// What is listed must outlive this.
    void add(Control& control, std::string name, int color);
    void addScrubReference(ScrubReference& reference) { scrubReferences_.push_back(&reference); }
    const std::vector<AssignableControl>& all() const { return all_; }
    /// Empty for one that is not listed.
    std::string nameOf(const Control& control) const;

    // ControlManagerDataSource
    std::vector<Control*> getWidgetsObjForControlManager() override;
    std::vector<std::string> getWidgetsObjNamesForControlManager() override;
    std::vector<int> getWidgetsObjColorsForControlManager() override;
    std::vector<ScrubReference*> getScrubReference() override { return scrubReferences_; }

private:
    std::vector<AssignableControl> all_;
    std::vector<ScrubReference*> scrubReferences_;
};

} // namespace zephyra
