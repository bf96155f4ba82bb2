#include "screens/stage/stage_canvas.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kCellWidth = 32, kCellHeight = 16; // units
constexpr double kRail = 4, kRailLight = 5;         // units
constexpr int kFadeSteps = 20;
constexpr std::uint64_t kScanItem = 1ull << 62, kBandItem = kScanItem + 1,
                        kRegionItem = kScanItem + 2, kTrailItem = kScanItem + 16,
                        kEndedItem = 1ull << 60;

Box columnBox(double x, int wide, int height) {
    return {static_cast<int>(x) - wide, 0, 2 * wide + 1, height};
}

} // namespace

void StageCanvas::renew(const StageScene& scene) {
    if (picture_.getWidth() != scene.width() || picture_.getHeight() != scene.height())
        picture_ = opaqueImage(scene.width(), scene.height());
    dirty_.setArea(scene.width(), scene.height(), scene.px(kCellWidth), scene.px(kCellHeight));
    all_ = true;
}

void StageCanvas::addItem(std::uint64_t id, std::uint64_t looks, const Box& box) {
    items_.push_back({id, looks, box});
}

void StageCanvas::place(const StageScene& scene, const GrainCloud& grains) {
    std::swap(items_, before_);
    items_.clear();
    sounding_.clear();
    ended_.clear();
    const auto put = [&](const ShownGrain& grain, std::vector<Placed>& into, std::uint64_t id,
                         std::uint64_t looks) {
        const double turns = std::max(0.0, std::floor(grain.from));
        for (double shift = -turns; grain.to + shift > 0.0; shift -= 1.0) {
            const GrainBar bar = placeBar(scene, grain, shift, ground.extents());
            if (bar.box.right() > 0 && bar.box.x < scene.width()) {
                into.push_back({&grain, bar});
                addItem(id, looks, bar.box);
            }
            if (grain.to + shift <= 1.0) break;
        }
    };
    for (const ShownGrain& grain : grains.ended())
        put(grain, ended_, kEndedItem + grain.id,
            static_cast<std::uint64_t>(grain.endedFor / GrainCloud::kFadeSeconds * kFadeSteps));
    for (const ShownGrain& grain : grains.sounding()) {
        put(grain, sounding_, grain.id, std::bit_cast<std::uint64_t>(grain.through));
        const int y = static_cast<int>(axisOf(scene, grain));
        const int half = scene.px(kRailLight);
        addItem(grain.id, 0, {0, y - half, scene.px(kRail), 2 * half});
    }
    // The wider ones go below, so that short ones stay to be seen.
    std::stable_sort(sounding_.begin(), sounding_.end(), [](const Placed& a, const Placed& b) {
        return a.bar.right - a.bar.left > b.bar.right - b.bar.left;
    });
    const StageContents& of = scene.contents;
    const double scan = scene.x(of.scan), reach = of.jitter / scene.view.span() * scene.width();
    addItem(kScanItem, (of.isFrozen ? 1u : 0u) + (of.isPlaying ? 2u : 0u),
            columnBox(scan, scene.px(3), scene.height()));
    const int left = static_cast<int>(scan - reach), right = static_cast<int>(scan + reach);
    addItem(kBandItem, 0, {left - 2, 0, right - left + 4, scene.height()});
    trail_.place(scene, ground.extents(),
                 [this](std::size_t step, std::uint64_t looks, const Box& box) {
                     addItem(kTrailItem + step, looks, box);
                 });
}

void StageCanvas::findChanges() {
    const auto differs = [](const std::vector<Item>& these, const std::vector<Item>& those,
                            const auto& hear) {
        for (const Item& item : these)
            if (std::find(those.begin(), those.end(), item) == those.end()) hear(item);
    };
    // A band that moves changes at its ends only.
    const auto add = [this](const Item& item) {
        if (item.id != kBandItem) return dirty_.add(item.box);
    };
    differs(items_, before_, add);
    differs(before_, items_, add);
    const auto band = [](const std::vector<Item>& of) {
        const auto at = std::find_if(of.begin(), of.end(),
                                     [](const Item& item) { return item.id == kBandItem; });
        return at == of.end() ? Box{} : at->box;
    };
    const Box now = band(items_), then = band(before_);
    if (now == then) return;
    const auto end = [&](int one, int two) {
        dirty_.add({std::min(one, two) - 2, 0, std::abs(one - two) + 5, now.height});
    };
    end(now.x, then.x);
    end(now.right(), then.right());
}

const std::vector<Box>& StageCanvas::compose(const StageScene& scene, const GrainCloud& grains) {
    place(scene, grains);
    if (all_)
        dirty_.add({0, 0, scene.width(), scene.height()});
    else
        findChanges();
    all_ = false;
    const std::vector<Box>& boxes = dirty_.take();
    for (const Box& box : boxes) composeBox(scene, box);
    return boxes;
}

void StageCanvas::copyGround(const StageScene& scene, const Box& box) {
    const StageContents& of = scene.contents;
    const double reach = of.jitter;
    const auto column = [&](double fraction) {
        return static_cast<int>(std::clamp(scene.x(fraction), 1.0 * box.x, 1.0 * box.right()));
    };
    const int left = column(of.scan - reach), right = column(of.scan + reach);
    const auto copy = [&](bool isLit, int from, int to) {
        if (to > from) ground.copy(picture_, isLit, {from, box.y, to - from, box.height});
    };
    copy(false, box.x, left);
    copy(true, left, right);
    copy(false, right, box.right());
    ground.drawMarks(scene, picture_, box);
}

void StageCanvas::composeBox(const StageScene& scene, const Box& box) {
    copyGround(scene, box);
    const Pixels pixels(picture_, box);
    trail_.draw(pixels);
    const auto touches = [&](const GrainBar& bar) {
        return bar.box.x < box.right() && bar.box.right() > box.x && bar.box.y < box.bottom() &&
               bar.box.bottom() > box.y;
    };
    for (const Placed& it : sounding_)
        if (touches(it.bar)) drawLight(pixels, scene, *it.grain, it.bar, ground.extents());
    for (const Placed& it : ended_)
        if (touches(it.bar)) drawEnded(pixels, scene, *it.grain, it.bar);
    drawScan(pixels, scene); // below the bars: short ones stand on it
    for (const Placed& it : sounding_)
        if (touches(it.bar)) drawBar(pixels, scene, *it.grain, it.bar);
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
                             1.0 - std::abs(y + 0.5 - scene.y(double{it.grain->semitones})) / half);
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
    const double scan = scene.x(of.scan), reach = of.jitter / scene.view.span() * scene.width();
    const int dash = std::max(2, scene.px(3));
    if (reach >= scene.units(3))
        for (const double x : {scan - reach, scan + reach})
            for (int y = pixels.clip().y; y < pixels.clip().bottom(); ++y)
                if (y / dash % 2 == 0)
                    pixels.mixSpan(y, static_cast<int>(x), static_cast<int>(x) + 1, bright, 90);
    const int half = std::max(1, scene.px(1));
    const int x = std::clamp(static_cast<int>(scan), half, std::max(half, scene.width() - half));
    if (scan >= 0.0 && scan <= scene.width())
        pixels.mixBox({x - half, 0, 2 * half, scene.height()}, of.isFrozen ? bright : accent, 256);
}

} // namespace zephyra
