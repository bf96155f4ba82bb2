#include "screens/model/foot/foot_boxes.h"

#include <algorithm>

namespace zephyra {

FootBoxes footBoxes(const ScreenLayout& layout, const FootWidths& widths) {
    FootBoxes boxes;
    const int height = layout.foot.height, inset = layout.px(12), gap = layout.px(24) - inset;
    const int margin = layout.px(layout.measures.margin);
    const int line = std::max(1, layout.px(1)); // the foot's upper edge
    int x = margin - inset / 2;
    for (std::size_t i = 0; i < kDrawers; ++i) {
        if (widths.tabs[i] == 0) continue;
        boxes.tabs[i] = {x, line, widths.tabs[i] + inset, height - line};
        x = boxes.tabs[i].right() + gap;
    }
    const int begin = x > margin ? x : margin;
    int right = layout.foot.width - margin;
    boxes.dropped = {right - widths.dropped, 0, widths.dropped, height};
    right = boxes.dropped.x - layout.px(16);
    boxes.cpu = {right - widths.cpu, 0, widths.cpu, height};
    boxes.help = {begin, 0, std::max(0, boxes.cpu.x - layout.px(16) - begin), height};
    return boxes;
}

} // namespace zephyra
