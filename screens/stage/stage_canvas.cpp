#include "screens/stage/stage_canvas.h"

#include "screens/draw/opaque_target.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <tuple>
#include <utility>

namespace zephyra {

namespace {

constexpr double kRail = 4, kRailLight = 5; // units

/// What draws; an item's id begins with it.
enum class Part : std::uint64_t { bar, head, read, light, rail, ended, trail, scan };

std::uint64_t idOf(Part part, std::uint64_t which = 0) {
    return static_cast<std::uint64_t>(part) << 56 | which;
}

/// What a grain lights of the rail: at its pitch, wherever its bar is stacked.
Box railBox(const StageScene& scene, const ShownGrain& grain) {
    const int y = static_cast<int>(std::floor(scene.y(double{grain.semitones})));
    const int half = static_cast<int>(std::ceil(scene.units(kRailLight)));
    return {0, y - half, scene.px(kRail), 2 * half + 1};
}

/// The scan's line, whole also at the stage's ends.
Box scanLine(const StageScene& scene) {
    const int half = std::max(1, scene.px(1));
    const int x = std::clamp(static_cast<int>(scene.x(scene.contents.scan)), half,
                             std::max(half, scene.width() - half));
    return {x - half, 0, 2 * half, scene.height()};
}

} // namespace

void StageCanvas::renew(const StageScene& scene) {
    dirty_.setArea(scene.width(), scene.height());
    all_ = true;
}

bool StageCanvas::Item::operator<(const Item& other) const {
    return std::tie(id, looks, box.x, box.y, box.width, box.height) <
           std::tie(other.id, other.looks, other.box.x, other.box.y, other.box.width,
                    other.box.height);
}

void StageCanvas::addItem(std::uint64_t id, std::uint64_t looks, const Box& box) {
    items_.push_back({id, looks, box});
}

/// How bright a grain is read changes by little from frame to frame, and over much of the stage.
void StageCanvas::followGlows(const StageScene& scene, const GrainCloud& grains) {
    std::swap(glows_, glowsBefore_);
    glows_.clear();
    for (const ShownGrain& grain : grains.sounding()) {
        const auto before =
            std::find_if(glowsBefore_.begin(), glowsBefore_.end(),
                         [&](const GrainGlow& glow) { return glow.id == grain.id; });
        if (before == glowsBefore_.end() || scene.slow.isNow())
            glows_.push_back({grain.id, grain.through, grain.envelope});
        else
            glows_.push_back(*before);
    }
}

void StageCanvas::placeGrain(const StageScene& scene, const ShownGrain& grain,
                             const GrainGlow& glow, std::vector<Placed>& into) {
    const double turns = std::max(0.0, std::floor(grain.from));
    for (double shift = -turns; grain.to + shift > 0.0; shift -= 1.0) {
        const GrainBar bar = placeBar(scene, grain, glow, shift, ground.extents());
        if (bar.box.right() > 0 && bar.box.x < scene.width()) into.push_back({grain, bar});
        if (grain.to + shift <= 1.0) break;
    }
}

void StageCanvas::placeScan(const StageScene& scene) {
    const StageContents& of = scene.contents;
    addItem(idOf(Part::scan), of.scanMoves() ? 1u : 0u, scanLine(scene));
    if (scene.slow.isNow()) {
        bandScan_ = of.scan;
        bandReach_ = of.jitter;
    }
    const double middle = scene.x(bandScan_);
    const double reach = bandReach_ / scene.view.span() * scene.width();
    const int left = static_cast<int>(middle - reach), right = static_cast<int>(middle + reach);
    bandBefore_ = std::exchange(band_, {left - 2, 0, right - left + 4, scene.height()});
    trail_.place(scene, ground.extents(),
                 [this](std::uint64_t step, std::uint64_t looks, const Box& box) {
                     addItem(idOf(Part::trail, step), looks, box);
                 });
}

void StageCanvas::place(const StageScene& scene, const GrainCloud& grains) {
    std::swap(items_, before_);
    items_.clear();
    sounding_.clear();
    ended_.clear();
    followGlows(scene, grains);
    for (const ShownGrain& grain : grains.ended()) placeGrain(scene, grain, {}, ended_);
    for (const Placed& it : ended_)
        addItem(idOf(Part::ended, it.grain.id), static_cast<std::uint64_t>(fadeStep(it.grain)),
                it.bar.endedBox);
    std::size_t at = 0;
    for (const ShownGrain& grain : grains.sounding())
        placeGrain(scene, grain, glows_[at++], sounding_);
    for (const Placed& it : sounding_) {
        const std::uint64_t id = it.grain.id;
        addItem(idOf(Part::bar, id), 0, it.bar.box);
        addItem(idOf(Part::head, id), std::bit_cast<std::uint64_t>(it.grain.through),
                it.bar.headBox);
        const auto glow = std::bit_cast<std::uint64_t>(it.bar.glowHead) ^
                          std::bit_cast<std::uint64_t>(it.bar.glowEnvelope);
        addItem(idOf(Part::read, id), glow, it.bar.readBox);
        addItem(idOf(Part::light, id), glow, it.bar.lightBox);
        addItem(idOf(Part::rail, id), 0, railBox(scene, it.grain));
    }
    // The wider ones go below, so that short ones stay to be seen.
    std::stable_sort(sounding_.begin(), sounding_.end(), [](const Placed& a, const Placed& b) {
        return a.bar.right - a.bar.left > b.bar.right - b.bar.left;
    });
    placeScan(scene);
    std::sort(items_.begin(), items_.end());
}

void StageCanvas::findChanges() {
    const auto differs = [this](const std::vector<Item>& these, const std::vector<Item>& those) {
        auto other = those.begin();
        for (const Item& item : these) {
            while (other != those.end() && *other < item) ++other;
            if (other == those.end() || !(*other == item)) dirty_.add(item.box);
        }
    };
    differs(items_, before_);
    differs(before_, items_);
    if (band_ == bandBefore_) return; // one that moves changes at its ends only
    const auto end = [&](int one, int two) {
        dirty_.add({std::min(one, two) - 2, 0, std::abs(one - two) + 5, band_.height});
    };
    end(band_.x, bandBefore_.x);
    end(band_.right(), bandBefore_.right());
}

const std::vector<Box>& StageCanvas::follow(const StageScene& scene, const GrainCloud& grains) {
    place(scene, grains);
    if (std::exchange(all_, false))
        dirty_.add({0, 0, scene.width(), scene.height()});
    else
        findChanges();
    return dirty_.take();
}

void StageCanvas::paint(juce::Graphics& graphics, const StageScene& scene) {
    const juce::Rectangle<int> all(scene.width(), scene.height());
    const OpaqueTarget target(graphics);
    if (!target || ground.hasMarks()) {
        const auto part = graphics.getClipBounds().getIntersection(all);
        if (part.isEmpty()) return;
        drawPicture(brush::boxOf(part), scene);
        return copyOpaque(graphics, picture_);
    }
    for (const auto& rectangle : target.clip()) {
        const auto part = rectangle.getIntersection(all);
        if (part.isEmpty()) continue;
        compose({target.rows(), brush::boxOf(part)}, scene);
    }
}

void StageCanvas::compose(const Pixels& pixels, const StageScene& scene) const {
    copyGround(pixels, scene);
    drawMoving(pixels, scene);
}

void StageCanvas::paint(const PixelRows& rows, const Box& box, const StageScene& scene) {
    if (!ground.hasMarks()) return compose({rows, box}, scene);
    drawPicture(box, scene);
    const juce::Image::BitmapData from(picture_, juce::Image::BitmapData::readOnly);
    for (int y = box.y; y < box.bottom(); ++y)
        std::memcpy(rows.row(y) + box.x, from.getPixelPointer(box.x, y),
                    static_cast<std::size_t>(box.width) * sizeof(Pixel));
}

void StageCanvas::drawPicture(const Box& box, const StageScene& scene) {
    if (picture_.getWidth() != scene.width() || picture_.getHeight() != scene.height())
        picture_ = opaqueImage(scene.width(), scene.height());
    const Pixels pixels(picture_, box);
    copyGround(pixels, scene);
    if (ground.hasMarks()) ground.drawMarks(scene, pixels, picture_);
    drawMoving(pixels, scene);
}

void StageCanvas::copyGround(const Pixels& pixels, const StageScene& scene) const {
    const Box& box = pixels.clip();
    const auto column = [&](double fraction) {
        return static_cast<int>(std::clamp(scene.x(fraction), 1.0 * box.x, 1.0 * box.right()));
    };
    const int left = column(bandScan_ - bandReach_), right = column(bandScan_ + bandReach_);
    const auto copy = [&](bool isLit, int from, int to) {
        if (to > from) ground.copy(pixels, isLit, {from, box.y, to - from, box.height});
    };
    copy(false, box.x, left);
    copy(true, left, right);
    copy(false, right, box.right());
}

void StageCanvas::drawMoving(const Pixels& pixels, const StageScene& scene) const {
    const Box& box = pixels.clip();
    trail_.draw(pixels);
    const auto touches = [&](const Box& of) {
        return of.x < box.right() && of.right() > box.x && of.y < box.bottom() &&
               of.bottom() > box.y;
    };
    for (const Placed& it : sounding_)
        if (touches(it.bar.lightBox)) drawLight(pixels, scene, it.grain, it.bar, ground.extents());
    for (const Placed& it : ended_)
        if (touches(it.bar.endedBox)) drawEnded(pixels, scene, it.grain, it.bar);
    drawScan(pixels, scene); // below the bars: short ones stand on it
    for (const Placed& it : sounding_)
        if (touches(it.bar.box)) drawBar(pixels, scene, it.grain, it.bar);
    drawRail(pixels, scene);
}

void StageCanvas::drawRail(const Pixels& pixels, const StageScene& scene) const {
    const int wide = scene.px(kRail);
    if (pixels.clip().x >= wide) return;
    const double half = scene.units(kRailLight);
    for (int y = pixels.clip().y; y < pixels.clip().bottom(); ++y) {
        const double semitones = (scene.y(0.0) - y - 0.5) / (scene.y(0.0) - scene.y(1.0));
        if (std::abs(semitones) > scene.axis.range()) continue;
        double light = 0.0;
        for (const Placed& it : sounding_)
            light = std::max(light,
                             1.0 - std::abs(y + 0.5 - scene.y(double{it.grain.semitones})) / half);
        pixels.mixSpan(y, 0, wide, Tint(palette::pitch(semitones)),
                       static_cast<int>(97.0 + 159.0 * std::max(0.0, light)));
    }
}

void StageCanvas::drawScan(const Pixels& pixels, const StageScene& scene) const {
    const StageContents& of = scene.contents;
    const Tint bright(palette::kBright), accent(palette::kAccent);
    for (const double edge : {of.regionStart, of.regionEnd}) {
        if (edge <= 0.0 || edge >= 1.0) continue; // the sound's own end
        const double x = scene.x(edge);
        pixels.mixBox({static_cast<int>(x), 0, std::max(1, scene.px(1)), scene.height()},
                      Tint(palette::kArc), 190);
    }
    const double scan = scene.x(of.scan), middle = scene.x(bandScan_);
    const double reach = bandReach_ / scene.view.span() * scene.width();
    const int dash = std::max(2, scene.px(3));
    if (reach >= scene.units(3))
        for (const double x : {middle - reach, middle + reach})
            for (int y = pixels.clip().y; y < pixels.clip().bottom(); ++y)
                if (y / dash % 2 == 0)
                    pixels.mixSpan(y, static_cast<int>(x), static_cast<int>(x) + 1, bright, 90);
    if (scan >= 0.0 && scan <= scene.width())
        pixels.mixBox(scanLine(scene), of.scanMoves() ? accent : bright, 256);
}

} // namespace zephyra
