#include "screens/model/top/top_boxes.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kNarrow = 4, kGap = 8, kEdge = 12; // units
constexpr double kPresetShare = 0.62; // of the room at most, where the sample wants some, too

/// Widths that differ by step, in units.
struct TopMeasures {
    double live, arrow, compare, tempo, bar, locate;
};
constexpr TopMeasures kMeasures[] = {
    {.live = 38, .arrow = 20, .compare = 23, .tempo = 62, .bar = 52, .locate = 56},
    {.live = 46, .arrow = 23, .compare = 27, .tempo = 76, .bar = 68, .locate = 64},
    {.live = 64, .arrow = 32, .compare = 41, .tempo = 108, .bar = 96, .locate = 88}};

/// Places boxes one behind the other, in the middle of the top's height.
class Row {
public:
    Row(const ScreenLayout& layout, int x, int direction)
        : layout_(layout), x_(x), direction_(direction) {}

    Box place(double width, double height) { return placePixels(layout_.px(width), height); }
    Box placePixels(int width, double height) {
        const int tall = layout_.px(height);
        if (direction_ < 0) x_ -= width;
        const Box box{x_, (layout_.top.height - tall) / 2, width, tall};
        if (direction_ > 0) x_ += width;
        return box;
    }
    void skip(double units) { x_ += direction_ * layout_.px(units); }
    int line() {
        skip(kEdge);
        const int at = x_;
        skip(kEdge);
        return at;
    }
    int x() const { return x_; }

private:
    const ScreenLayout& layout_;
    int x_, direction_;
};

} // namespace

TopBoxes topBoxes(const ScreenLayout& layout, const TopWishes& wishes) {
    const LayoutMeasures& of = layout.measures;
    const TopMeasures& wide = kMeasures[static_cast<std::size_t>(layout.step)];
    const double button = of.buttonSize, high = of.top - 8;
    TopBoxes boxes;

    Row left(layout, layout.px(layout.step == LayoutStep::large ? 32 : of.margin), 1);
    boxes.play = left.place(of.playSize, of.playSize);
    left.skip(kGap);
    boxes.rewind = left.place(button, button);
    left.skip(kNarrow);
    boxes.freeze = left.place(button, button);
    left.skip(kNarrow);
    boxes.live = left.place(wide.live, button);
    if (wishes.showsClear) {
        left.skip(kNarrow);
        boxes.clear = left.place(wide.live, button);
    }
    boxes.lines[0] = left.line();
    left.skip(-kNarrow);
    boxes.previous = left.place(wide.arrow, button);
    boxes.next = left.place(wide.arrow, button);
    left.skip(kNarrow);

    Row right(layout, layout.top.width - layout.px(of.margin - 4), -1);
    boxes.settings = right.place(button, button);
    right.skip(kNarrow);
    boxes.bar = right.place(wide.bar, high);
    boxes.tempo = right.place(wide.tempo, high);
    boxes.lines[3] = right.line();
    boxes.compare = right.place(2 * wide.compare + 4, button - 4);
    Row slots(layout, boxes.compare.x + layout.px(2), 1);
    boxes.compareA = slots.place(wide.compare, button - 8);
    boxes.compareB = slots.place(wide.compare, button - 8);
    right.skip(kGap);
    boxes.redo = right.place(button, button);
    boxes.undo = right.place(button, button);
    boxes.lines[2] = right.line();
    boxes.random = right.place(button, button);
    right.skip(kGap);

    const bool hasSample = layout.step != LayoutStep::compact;
    const int room = std::max(0, right.x() - left.x());
    const int wished = wishes.presetWidth + layout.px(2 * kGap);
    const int most = hasSample ? static_cast<int>(room * kPresetShare) : room;
    boxes.preset = left.placePixels(std::min(wished, most), high);
    if (!hasSample) return boxes;
    left.skip(-kGap);
    boxes.lines[1] = left.line();
    left.skip(-kGap);
    const int locate = wishes.showsLocate ? layout.px(wide.locate) : 0;
    const int rest = std::max(0, right.x() + layout.px(kGap) - left.x() - locate);
    boxes.sample = left.placePixels(std::min(wishes.sampleWidth + layout.px(2 * kGap), rest), high);
    if (!wishes.showsLocate) return boxes;
    boxes.locate = left.place(wide.locate, button - 4);
    return boxes;
}

} // namespace zephyra
