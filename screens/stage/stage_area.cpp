#include "screens/stage/stage_area.h"

#include "screens/draw/brush.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kBuildSeconds = 0.003; // of a frame, for a sound that is long

} // namespace

StageArea::StageArea(ScreenContext& context)
    : ScreenArea(context), reader_(context.source), hands_(context, scene_.view) {
    setOpaque(true);
}

void StageArea::layOut(const ScreenLayout& layout) {
    scene_.layout = layout;
    renews_ = true;
    setBounds(layout.stage.x, layout.stage.y, layout.stage.width,
              layout.stage.height + layout.ruler.height);
}

void StageArea::takeContents(const FrameTime& time) {
    scene_.contents = reader_.contents();
    scene_.reducedMotion = context().settings.reducedMotion;
    const StageContents& of = scene_.contents;
    double wanted = std::abs(of.pitch) + of.rndPitch / 2.0;
    for (const ShownGrain& grain : reader_.grains().sounding())
        wanted = std::max(wanted, std::abs(double{grain.semitones}));
    scene_.axis.advance(wanted, time.elapsed, !scene_.reducedMotion);
    scene_.trail.advance(of.scan, time.elapsed,
                         of.isPlaying && !of.isFrozen && !scene_.reducedMotion);
    reader_.setFades(!scene_.reducedMotion);
    const double bar = scene_.units(kMostBar + kBarGap);
    reader_.setBarSize({.semitones = bar / std::max(1e-3, scene_.y(0.0) - scene_.y(1.0)),
                        .source = kLeastLengths * scene_.units(kMostBar) /
                                  std::max(1, scene_.width()) * scene_.view.span()});
}

bool StageArea::groundDiffers() const {
    const StageContents &now = scene_.contents, &then = drawn_.contents;
    return renews_ || !(scene_.view == drawn_.view) || scene_.axis.range() != drawn_.axis.range() ||
           now.regionStart != then.regionStart || now.regionEnd != then.regionEnd ||
           now.gain != then.gain || now.isSynced != then.isSynced ||
           now.measures != then.measures || now.quarters != then.quarters ||
           now.isLive != then.isLive || now.seconds != then.seconds;
}

void StageArea::drawGround() {
    columns_.resize(static_cast<std::size_t>(scene_.width()));
    pyramid_.show(scene_.view.first(), scene_.view.last(), columns_);
    std::vector<WaveExtent> extents;
    placeColumns(scene_, columns_, pyramid_.peak(), extents);
    canvas_.ground.draw(scene_, std::move(extents));
    canvas_.renew(scene_);
    drawn_ = scene_;
    renews_ = false;
}

void StageArea::frame(const FrameTime& time) {
    takeContents(time);
    if (scene_.contents.sound != pyramid_.sound()) {
        pyramid_.setSound(scene_.contents.sound);
        scene_.view.reset();
        renews_ = true;
    }
    if (pyramid_.build(kBuildSeconds)) renews_ = true;
    if (groundDiffers()) drawGround();
    for (const Box& box : canvas_.compose(scene_, reader_.grains())) repaint(brush::rectangle(box));
}

void StageArea::paint(juce::Graphics& graphics) {
    const auto clip = graphics.getClipBounds();
    const auto stage = clip.getIntersection({0, 0, scene_.width(), scene_.height()});
    if (!stage.isEmpty())
        graphics.drawImageAt(canvas_.picture().getClippedImage(stage), stage.getX(), stage.getY());
    if (clip.getBottom() > scene_.height()) {
        graphics.setColour(brush::colour(palette::kGround));
        graphics.fillRect(0, scene_.height(), getWidth(), getHeight() - scene_.height());
    }
}

} // namespace zephyra
