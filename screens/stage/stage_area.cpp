#include "screens/stage/stage_area.h"

#include "screens/desktop/window_blitter.h"
#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kBuildSeconds = 0.003; // of a frame, for a sound that is long
constexpr double kLaneShare = 1.03;     // of the axis, up to which bars are stacked

} // namespace

StageArea::StageArea(ScreenContext& context)
    : ScreenControl(context, "Scan"), reader_(context.source), hands_(context, scene_.view),
      start_(RegionEdge::start, context, hands_, scene_),
      end_(RegionEdge::end, context, hands_, scene_), missing_(context), name_(context) {
    setOpaque(true);
    setHelp(helpText(HelpId::scan));
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false); // a frame is for who walks by keys
    addAndMakeVisible(end_);
    addAndMakeVisible(start_);
    addChildComponent(missing_);
    addChildComponent(name_);
}

StageArea::~StageArea() = default;

void StageArea::layOut(const ScreenLayout& layout) {
    scene_.layout = layout;
    renews_ = true;
    setBounds(layout.stage.x, layout.stage.y, layout.stage.width,
              layout.stage.height + layout.ruler.height);
    followEdges();
}

void StageArea::takeContents(const FrameTime& time) {
    scene_.contents = reader_.contents();
    scene_.reducedMotion = context().settings.reducedMotion;
    scene_.slow.advance(time.elapsed);
    scene_.flagTick.advance(time.elapsed);
    scene_.trailTick.advance(time.elapsed);
    const StageContents& of = scene_.contents;
    double wanted = std::abs(of.pitch) + of.rndPitch / 2.0;
    for (const ShownGrain& grain : reader_.grains().sounding())
        wanted = std::max(wanted, std::abs(double{grain.semitones}));
    scene_.axis.advance(wanted, time.elapsed, !scene_.reducedMotion);
    scene_.trail.advance(of.scan, time.elapsed,
                         of.isPlaying && !of.isFrozen && !scene_.reducedMotion);
    if (scene_.reducedMotion) scene_.trail.clear();
    const auto& finger = hands_.scrubbing();
    scene_.hold.advance(finger, finger ? scene_.view.at(finger->x) : 0.0, of.scan, of.staysHeld,
                        time.elapsed, !scene_.reducedMotion);
    reader_.setFades(!scene_.reducedMotion);
    const double bar = scene_.units(kStackedBar);
    reader_.setBarSize({.semitones = bar / std::max(1e-3, scene_.y(0.0) - scene_.y(1.0)),
                        .source = kLeastLengths * scene_.units(kMostBar) /
                                  std::max(1, scene_.width()) * scene_.view.span(),
                        .most = scene_.axis.range() * kLaneShare});
}

void StageArea::takeSound() {
    const StageContents& of = scene_.contents;
    if (of.sound != pyramid_.sound()) {
        pyramid_.setSound(of.sound);
        renews_ = true;
        if (!of.isLive) scene_.view.reset();
    }
    if (of.isLive != drawn_.contents.isLive) scene_.view.reset();
    if (pyramid_.build(kBuildSeconds)) renews_ = true;
}

bool StageArea::groundDiffers() const {
    const StageContents &now = scene_.contents, &then = drawn_.contents;
    return renews_ || !(scene_.view == drawn_.view) || scene_.axis.range() != drawn_.axis.range() ||
           now.regionStart != then.regionStart || now.regionEnd != then.regionEnd ||
           now.gain != then.gain || now.isNormalized != then.isNormalized ||
           now.isSynced != then.isSynced || now.measures != then.measures ||
           now.quarters != then.quarters || now.isLive != then.isLive ||
           now.isWriting != then.isWriting || now.seconds != then.seconds || now.name != then.name;
}

void StageArea::drawGround() {
    columns_.resize(static_cast<std::size_t>(scene_.width()));
    const StageView& view = scene_.view;
    if (scene_.contents.isLive) {
        liveColumn_ = reader_.live().show(view.first(), view.last(), columns_);
        liveBegins_ = reader_.live().begins();
        if (!reader_.live().isComplete()) liveBegins_ = 0; // more of its past comes
    } else
        pyramid_.show(view.first(), view.last(), columns_);
    placeColumns(scene_, columns_, pyramid_.peak(), extents_);
    canvas_.ground.draw(scene_, extents_);
    canvas_.renew(scene_);
    name_.follow(scene_);
    drawn_ = scene_;
    renews_ = false;
}

/// What came in scrolls the picture on.
void StageArea::scrollGround() {
    const StageView& view = scene_.view;
    const std::int64_t column = reader_.live().show(view.first(), view.last(), columns_);
    const std::int64_t by = column - liveColumn_;
    if (liveBegins_ != reader_.live().begins() || by < 0 || by >= scene_.width())
        return drawGround();
    liveColumn_ = column;
    placeColumns(scene_, columns_, pyramid_.peak(), extents_);
    canvas_.ground.scroll(scene_, extents_, static_cast<int>(by));
    canvas_.renew(scene_);
}

void StageArea::followEdges() {
    start_.follow();
    end_.follow();
}

void StageArea::repaintBox(const Box& box) {
    if (box.width > 0) repaint(brush::rectangle(box));
}

void StageArea::frame(const FrameTime& time) {
    takeContents(time);
    takeSound();
    const bool scrolls = reader_.takeLiveNews() && scene_.contents.isLive;
    if (groundDiffers())
        drawGround();
    else if (scrolls)
        scrollGround();
    moved_ = canvas_.follow(scene_, reader_.grains());
    for (const Box& box : overlay_.follow(scene_, hands_)) repaintBox(box);
    const auto ruler = ruler_.follow(scene_);
    if (!ruler.isEmpty()) repaint(ruler);
    followEdges();
    missing_.show(scene_.contents.missing, scene_.layout);
}

void StageArea::blit(WindowBlitter& blitter) {
    const bool enters = !moved_.empty() && !showsFocus() && blitter.enter(*this);
    if (enters)
        for (const Box& box : overlay_.boxes(scene_)) blitter.keepOff(box);
    bool isRepainted = false;
    for (const Box& box : moved_) {
        if (const auto rows = enters ? blitter.room(box) : std::nullopt) {
            canvas_.paint(*rows, box, scene_);
        } else {
            repaintBox(box);
            isRepainted = true;
        }
    }
    // JUCE's picture begins where what it repaints does: held there, a place keeps its memory.
    if (isRepainted) repaintBox({0, 0, 1, 1});
    moved_ = {};
}

void StageArea::paint(juce::Graphics& graphics) {
    const auto clip = graphics.getClipBounds();
    if (clip.getY() < scene_.height()) {
        canvas_.paint(graphics, scene_);
        overlay_.paint(graphics, scene_, showsFocus());
    }
    if (clip.getBottom() > scene_.height()) ruler_.paint(graphics, scene_);
}

} // namespace zephyra
