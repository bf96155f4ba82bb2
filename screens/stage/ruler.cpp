#include "screens/stage/ruler.h"

#include "screens/draw/brush.h"
#include "screens/model/stage/ruler_scale.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kTailUnits = 56;  // of the trail on the region's bar
constexpr double kMostLabel = 120; // units, that the flag covers and uncovers
constexpr double kFlagPadding = 8; // units at each side of its text
constexpr double kLabelGap = 6, kNumberGap = 16;

juce::Font font(const StageScene& scene) {
    return brush::regular(scene.units(scene.layout.measures.unitText));
}

juce::Font flagFont(const StageScene& scene) {
    return brush::medium(scene.units(scene.layout.measures.unitText + 1));
}

int widthOf(const juce::Font& font, const juce::String& text) {
    return static_cast<int>(std::ceil(font.getStringWidthFloat(text)));
}

// The smallest time that a few pixels tell apart.
double finest(const StageScene& scene) {
    return 4.0 * scene.contents.seconds * scene.view.span() / std::max(1, scene.width());
}

juce::String edgeText(const StageScene& scene, bool isStart) {
    const StageContents& of = scene.contents;
    const double at = (isStart ? of.regionStart : of.regionEnd) - (of.isWriting ? 1.0 : 0.0);
    return juce::String(isStart ? "Start " : "End ") +
           brush::text(timeText(at * of.seconds, finest(scene)));
}

// Where an edge's text stands: beside its grip, inside the region.
Box edgeBox(const StageScene& scene, bool isStart, int wide) {
    const Box grip = Ruler::grip(scene, isStart, Ruler::kGrip);
    const bool isForward = scene.contents.regionStart <= scene.contents.regionEnd;
    const int gap = scene.px(kLabelGap), y = Ruler::box(scene).y, high = Ruler::box(scene).height;
    return isStart == isForward ? Box{grip.right() + gap, y, wide, high}
                                : Box{grip.x - gap - wide, y, wide, high};
}

bool meet(const Box& a, const Box& b, int gap) {
    return a.x < b.right() + gap && b.x < a.right() + gap;
}

} // namespace

Box Ruler::box(const StageScene& scene) {
    return {0, scene.height(), scene.width(), scene.layout.ruler.height};
}

Box Ruler::grip(const StageScene& scene, bool isStart, double wide) {
    const StageContents& of = scene.contents;
    const bool isLeft = isStart == (of.regionStart <= of.regionEnd);
    const int x = static_cast<int>(
        std::lround(std::clamp(scene.x(isStart ? of.regionStart : of.regionEnd), -1e6, 1e6)));
    return {isLeft ? x : x - scene.px(wide), box(scene).y, scene.px(wide), box(scene).height};
}

Ruler::Flag Ruler::flagOf(const StageScene& scene) {
    const StageContents& of = scene.contents;
    Flag flag;
    flag.isAccent = of.scanMoves();
    flag.text = timeText((of.scan - (of.isWriting ? 1.0 : 0.0)) * of.seconds, finest(scene));
    const double x = scene.x(of.scan);
    if (x < 0.0 || x > scene.width()) return flag; // outside what is shown
    const int wide = widthOf(flagFont(scene), brush::text(flag.text)) + 2 * scene.px(kFlagPadding);
    const Box one = grip(scene, true, kGrip), two = grip(scene, false, kGrip);
    const int gap = scene.px(2);
    int least = 0, most = scene.width() - wide; // beside the grips where there is room
    if (std::abs(one.centreX() - two.centreX()) > wide + one.width + two.width + 2 * gap) {
        least = std::max(least, std::min(one.right(), two.right()) + gap);
        most = std::min(most, std::max(one.x, two.x) - gap - wide);
    }
    flag.box = {std::clamp(static_cast<int>(x) - wide / 2, least, std::max(least, most)),
                box(scene).y, wide, box(scene).height - std::max(1, scene.px(1))};
    return flag;
}

std::vector<Ruler::Tail> Ruler::tailOf(const StageScene& scene) {
    std::vector<Tail> tail;
    const double reach = scene.units(kTailUnits);
    for (std::size_t i = 0; i < scene.trail.size(); ++i) {
        const ScanTrail::Step step = scene.trail[i];
        const double a = scene.x(step.from), b = scene.x(step.to);
        const double away = std::abs((a + b) / 2.0 - scene.x(scene.contents.scan));
        if (away >= reach) continue;
        const int x = static_cast<int>(std::min(a, b));
        tail.push_back(
            {x, static_cast<int>(std::max(a, b)) - x, static_cast<float>(1.0 - away / reach)});
    }
    return tail;
}

/// Letters are dear: the flag and its tail follow more slowly.
juce::Rectangle<int> Ruler::follow(const StageScene& scene) {
    const StageContents& of = scene.contents;
    const Shown now{.view = scene.view,
                    .regionStart = of.regionStart,
                    .regionEnd = of.regionEnd,
                    .seconds = of.seconds,
                    .isLive = of.isWriting,
                    .isSynced = of.isSynced,
                    .strip = box(scene)};
    if (now == shown_ && !scene.flagTick.isNow()) return {};
    const Flag flag = flagOf(scene);
    tail_ = tailOf(scene);
    juce::Rectangle<int> changed;
    if (!(now == shown_)) changed = brush::rectangle(now.strip);
    const bool fades = scene.trail.size() > 0 && !scene.reducedMotion;
    if (!(flag == flag_) || fades) {
        const int tail = scene.px(std::max(kTailUnits, kMostLabel));
        for (const Flag* const one : {&flag, &std::as_const(flag_)})
            if (one->box.width > 0)
                changed = changed.isEmpty()
                              ? brush::rectangle(one->box).expanded(tail, 0)
                              : changed.getUnion(brush::rectangle(one->box).expanded(tail, 0));
    }
    shown_ = now;
    flag_ = flag;
    return changed.getIntersection(brush::rectangle(now.strip));
}

void Ruler::paint(juce::Graphics& graphics, const StageScene& scene) const {
    graphics.setColour(brush::colour(palette::kGround));
    graphics.fillRect(brush::rectangle(box(scene)));
    paintScale(graphics, scene);
    paintRegion(graphics, scene);
    paintFlag(graphics, scene);
}

void Ruler::paintScale(juce::Graphics& graphics, const StageScene& scene) const {
    const StageContents& of = scene.contents;
    const Box strip = box(scene);
    const int line = std::max(1, scene.px(1));
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(strip.x, strip.bottom() - line, strip.width, line);
    const juce::Font small = font(scene);
    graphics.setFont(small);
    const auto clip = graphics.getClipBounds();
    const Box start = edgeBox(scene, true, widthOf(small, edgeText(scene, true)));
    const Box end = edgeBox(scene, false, widthOf(small, edgeText(scene, false)));
    const bool isSparse = scene.layout.step == LayoutStep::compact;
    for (const RulerTick& tick :
         rulerTicks(scene.view.first() * of.seconds, scene.view.last() * of.seconds,
                    strip.width / scene.layout.scale, isSparse, of.isWriting)) {
        const int x = static_cast<int>(tick.place * strip.width);
        graphics.setColour(brush::colour(palette::kTrack));
        graphics.fillRect(x, strip.y, line, scene.px(4));
        const juce::String label = brush::text(tick.label);
        const int wide = widthOf(small, label);
        const Box at{x - wide / 2, strip.y, wide, strip.height};
        if (label.isEmpty() || !clip.intersects(brush::rectangle(at)) || at.x < 0 ||
            at.right() > strip.width)
            continue;
        const int gap = scene.px(kNumberGap);
        if (meet(at, start, gap) || meet(at, end, gap)) continue;
        if (flag_.box.width > 0 && meet(at, flag_.box, scene.px(2))) continue;
        graphics.setColour(brush::colour(palette::kFaint));
        graphics.drawText(label, brush::rectangle(at).expanded(2, 0), juce::Justification::centred,
                          false);
    }
}

void Ruler::paintRegion(juce::Graphics& graphics, const StageScene& scene) const {
    const StageContents& of = scene.contents;
    const Box strip = box(scene);
    const int thick = std::max(2, scene.px(2));
    const double one = scene.x(std::min(of.regionStart, of.regionEnd));
    const double two = scene.x(std::max(of.regionStart, of.regionEnd));
    const int left = static_cast<int>(std::clamp(one, 0.0, 1.0 * strip.width));
    const int right = static_cast<int>(std::clamp(two, 0.0, 1.0 * strip.width));
    graphics.setColour(brush::colour(palette::kArc));
    graphics.fillRect(left, strip.y, right - left, thick);
    for (const Tail& part : tail_) {
        graphics.setColour(brush::colour(palette::kAccent, part.light));
        graphics.fillRect(part.x, strip.y, part.width, thick);
    }
    const juce::Font small = font(scene);
    graphics.setFont(small);
    graphics.setColour(brush::colour(palette::kText));
    for (const bool isStart : {true, false}) {
        const juce::String text = edgeText(scene, isStart);
        const Box at = edgeBox(scene, isStart, widthOf(small, text));
        const bool isCovered = flag_.box.width > 0 && meet(at, flag_.box, scene.px(2));
        const Box other = edgeBox(scene, !isStart, widthOf(small, edgeText(scene, !isStart)));
        if (isCovered || (!isStart && meet(at, other, scene.px(kLabelGap)))) continue;
        graphics.drawText(text, brush::rectangle(at).expanded(2, 0), juce::Justification::centred,
                          false);
    }
}

void Ruler::paintFlag(juce::Graphics& graphics, const StageScene& scene) const {
    if (flag_.box.width == 0) return;
    const auto corner = static_cast<float>(scene.units(3));
    graphics.setColour(brush::colour(flag_.isAccent ? palette::kAccent : palette::kArc));
    graphics.fillRoundedRectangle(brush::floats(flag_.box), corner);
    graphics.setColour(brush::colour(palette::kInk));
    graphics.setFont(flagFont(scene));
    graphics.drawText(brush::text(flag_.text), brush::rectangle(flag_.box),
                      juce::Justification::centred, false);
}

} // namespace zephyra
