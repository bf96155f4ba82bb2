#include "screens/stage/stage_ground.h"

#include "screens/draw/opaque_target.h"
#include "screens/stage/stage_marks.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace zephyra {

namespace {

constexpr int kUnfinished = 2; // columns of live input that more comes into

struct Shares {
    int extremes, energy; // of 256
};
constexpr Shares kAtRest{72, 118}, kLit{100, 150};

int covered(float top, float bottom, int y) {
    const float share =
        std::min(bottom, static_cast<float>(y) + 1.0f) - std::max(top, static_cast<float>(y));
    return share <= 0.0f ? 0 : static_cast<int>(share * 256.0f);
}

Tint groundAt(const StageScene& scene, int y, bool isLit) {
    const double away = std::abs(2.0 * y / scene.height() - 1.0);
    const Tint far(palette::kGround), near(palette::kStage);
    const Tint at = near.towards(far, static_cast<int>(away * away * 150.0));
    return isLit ? at.towards(Tint(palette::kSource), 14) : at;
}

} // namespace

void StageGround::draw(const StageScene& scene, std::vector<WaveExtent> extents) {
    extents_ = std::move(extents);
    extents_.resize(static_cast<std::size_t>(scene.width()));
    origin_ = 0;
    scrolls_ = scene.contents.isLive;
    for (juce::Image* const image : {&atRest_, &lit_}) {
        const bool isLit = image == &lit_;
        if (image->getWidth() != scene.width() || image->getHeight() != scene.height())
            *image = opaqueImage(scene.width(), scene.height());
        const Pixels pixels(*image, {0, 0, scene.width(), scene.height()});
        fill(scene, pixels, isLit, 0, scene.width());
        if (!scrolls_) drawGrid(scene, pixels);
        drawWave(pixels, isLit, 0, scene.width());
        if (scrolls_) continue;
        if (!isLit) darkenOutside(scene, pixels);
        juce::Graphics graphics(*image);
        drawMarkTexts(scene, graphics);
    }
}

void StageGround::scroll(const StageScene& scene, std::vector<WaveExtent> extents, int by) {
    extents_ = std::move(extents);
    extents_.resize(static_cast<std::size_t>(scene.width()));
    const int width = scene.width();
    origin_ = (origin_ + by) % width;
    const int first = std::max(0, width - by - kUnfinished);
    for (juce::Image* const image : {&atRest_, &lit_}) {
        const Pixels pixels(*image, {0, 0, width, scene.height()});
        fill(scene, pixels, image == &lit_, first, width);
        drawWave(pixels, image == &lit_, first, width);
    }
}

// Columns first up to last of the stage, wherever the pictures keep them.
void StageGround::fill(const StageScene& scene, const Pixels& pixels, bool isLit, int first,
                       int last) const {
    for (int y = 0; y < scene.height(); ++y) {
        const Pixel ground = groundAt(scene, y, isLit).pixel();
        Pixel* const row = pixels.row(y);
        for (int x = first; x < last; ++x) row[kept(x)] = ground;
    }
}

void StageGround::drawWave(const Pixels& pixels, bool isLit, int first, int last) const {
    const Shares shares = isLit ? kLit : kAtRest;
    const Pixel source = Tint(palette::kSource).pixel();
    for (int y = 0; y < pixels.clip().height; ++y) {
        Pixel* const row = pixels.row(y);
        for (int x = first; x < last; ++x) {
            const WaveExtent& at = extents_[static_cast<std::size_t>(x)];
            const int extremes = covered(at.top, at.bottom, y);
            if (extremes == 0) continue;
            const int energy = covered(at.energyTop, at.energyBottom, y);
            Pixels::mix(row[kept(x)], source,
                        (extremes * shares.extremes + energy * (shares.energy - shares.extremes)) >>
                            8);
        }
    }
}

void StageGround::copy(const Pixels& to, bool isLit, const Box& box) const {
    const juce::Image& image = isLit ? lit_ : atRest_;
    const juce::Image::BitmapData from(image, juce::Image::BitmapData::readOnly);
    const int width = image.getWidth();
    for (int left = box.x; left < box.right();) { // at most two stretches
        const int begin = (left + origin_) % width;
        const int count = std::min(box.right() - left, width - begin);
        for (int y = box.y; y < box.bottom(); ++y)
            std::memcpy(to.row(y) + left, from.getPixelPointer(begin, y),
                        static_cast<std::size_t>(count) * sizeof(Pixel));
        left += count;
    }
}

void StageGround::drawMarks(const StageScene& scene, const Pixels& pixels,
                            juce::Image& picture) const {
    drawGrid(scene, pixels);
    darkenOutside(scene, pixels);
    juce::Graphics graphics(picture);
    graphics.reduceClipRegion(brush::rectangle(pixels.clip()));
    drawMarkTexts(scene, graphics);
}

} // namespace zephyra
