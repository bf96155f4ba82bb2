// SheetBoxes: where everything of the sheet of settings stands.
#pragma once

#include "screens/model/screen_layout.h"
#include "screens/model/settings/settings_model.h"

#include <array>
#include <optional>
#include <vector>

namespace zephyra {

/// Pixels: the panel, title, close and list of the window; help, of the panel's lower end; groups
/// and rows of the list's content. Plain data.
struct SheetBoxes {
    Box panel, title, close, help;
    Box list; ///< what is seen of the content
    Box content;
    std::array<std::optional<Box>, kSettingGroups> groups; ///< titles; none for one without rows
    std::vector<Box> rows;
    bool operator==(const SheetBoxes&) const = default;
};

/// The panel is 480 units wide and as high as its rows need, or as the window lets it be: then the
/// list is scrolled.
SheetBoxes sheetBoxes(const ScreenLayout& layout, const std::vector<SettingRow>& rows);

/// Within a row: its name, its control, and beside an amount's slider its value. Plain data.
struct SettingRowBoxes {
    Box name, control, value;
};
SettingRowBoxes settingRowBoxes(const Box& row, SettingKind kind, double scale);

/// The box of one of so many choices; they share the control's width.
Box choiceBox(const Box& control, std::size_t choice, std::size_t count);

} // namespace zephyra
