#include "screens/model/settings/sheet_boxes.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr int kWidth = 480, kAround = 16, kMargin = 24, kInset = 8; // units
constexpr int kTop = 52, kHelp = 44, kGroup = 32, kRow = 30;
constexpr int kName = 140, kValue = 72, kGap = 12, kControl = 24, kBar = 12;

} // namespace

SheetBoxes sheetBoxes(const ScreenLayout& layout, const std::vector<SettingRow>& rows) {
    const auto px = [&](double units) { return layout.px(units); };
    SheetBoxes boxes;
    const int width = px(kWidth - 2 * (kMargin - kInset)); // of rows
    int y = 0;
    for (const SettingRow& row : rows) {
        auto& group = boxes.groups[static_cast<std::size_t>(row.entry->group)];
        if (!group) {
            group = Box{0, y, width, px(kGroup)};
            y += px(kGroup);
        }
        boxes.rows.push_back({0, y, width, px(kRow)});
        y += px(kRow);
    }
    y += px(kInset);
    boxes.content = {0, 0, width, y};
    const int others = px(kTop) + px(kHelp);
    const int most = layout.window.height - 2 * px(kAround);
    const int height = std::min(y + others, most);
    boxes.panel = {(layout.window.width - px(kWidth)) / 2, (layout.window.height - height) / 2,
                   px(kWidth), height};
    const Box& panel = boxes.panel;
    const int side = px(32);
    boxes.title = {panel.x + px(kMargin), panel.y, px(kWidth - 2 * kMargin) - side, px(kTop)};
    boxes.close = {panel.right() - px(kMargin - kInset) - side, panel.y + (px(kTop) - side) / 2,
                   side, side};
    boxes.list = {panel.x + px(kMargin - kInset), panel.y + px(kTop), width + px(kBar),
                  height - others};
    boxes.help = {panel.x + px(kMargin), boxes.list.bottom(), px(kWidth - 2 * kMargin), px(kHelp)};
    return boxes;
}

SettingRowBoxes settingRowBoxes(const Box& row, SettingKind kind, double scale) {
    const auto px = [scale](double units) { return static_cast<int>(std::lround(units * scale)); };
    const int inset = px(kInset), height = px(kControl), y = row.y + (row.height - height) / 2;
    const int x = row.x + inset + px(kName), right = row.right() - inset;
    SettingRowBoxes boxes{.name = {row.x + inset, row.y, px(kName), row.height},
                          .control = {x, y, right - x, height},
                          .value = {}};
    const int beside = px(kValue);
    switch (kind) {
    case SettingKind::choice:
        break;
    case SettingKind::toggle:
        boxes.control.width = px(28);
        boxes.value = {boxes.control.right() + px(kGap), y,
                       right - boxes.control.right() - px(kGap), height};
        break;
    case SettingKind::amount:
    case SettingKind::action:
        boxes.control.width -= beside + px(kGap);
        boxes.value = {right - beside, y, beside, height};
        break;
    case SettingKind::fact:
        boxes.value = boxes.control;
        break;
    }
    return boxes;
}

Box choiceBox(const Box& control, std::size_t choice, std::size_t count) {
    const auto edge = [&](std::size_t place) {
        return control.x + control.width * static_cast<int>(place) / static_cast<int>(count);
    };
    return {edge(choice), control.y, edge(choice + 1) - edge(choice), control.height};
}

} // namespace zephyra
