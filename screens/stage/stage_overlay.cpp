#include "screens/stage/stage_overlay.h"

#include "screens/draw/brush.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr double kRing = 22, kRingLine = 2, kLoadingBar = 3; // units
constexpr double kNowWidth = 44, kNowHeight = 20;

Box nowBox(const StageScene& scene) {
    const int x = static_cast<int>(std::clamp(scene.x(1.0), 0.0, 1.0 * scene.width()));
    return {x - scene.px(kNowWidth), 0, scene.px(kNowWidth), scene.height()};
}

} // namespace

std::array<Box, 4> StageOverlay::follow(const StageScene& scene, const StageHands& hands) {
    std::array<Box, 4> changed{};
    std::optional<Box> ring;
    if (const auto& finger = hands.scrubbing()) {
        const int half = scene.px(kRing);
        ring = Box{static_cast<int>(finger->x * scene.width()) - half,
                   static_cast<int>(finger->y * scene.height()) - half, 2 * half, 2 * half};
    }
    if (ring != ring_) {
        changed[0] = ring.value_or(Box{});
        changed[1] = ring_.value_or(Box{});
        ring_ = ring;
    }
    std::optional<int> loaded;
    if (scene.contents.loading) loaded = static_cast<int>(*scene.contents.loading * scene.width());
    if (loaded != loaded_) changed[2] = {0, 0, scene.width(), scene.px(kLoadingBar)};
    loaded_ = loaded;
    if (std::exchange(isWriting_, scene.contents.isWriting) != scene.contents.isWriting)
        changed[3] = nowBox(scene);
    return changed;
}

void StageOverlay::paint(juce::Graphics& graphics, const StageScene& scene, bool isFocused) const {
    if (isWriting_) {
        const Box now = nowBox(scene);
        const int line = std::max(2, scene.px(2));
        graphics.setColour(brush::colour(palette::kBright));
        graphics.fillRect(now.right() - line, 0, line, scene.height());
        graphics.setFont(brush::medium(scene.units(scene.layout.measures.unitText)));
        graphics.drawText("now", now.x, scene.px(4), now.width - line - scene.px(5),
                          scene.px(kNowHeight), juce::Justification::centredRight, false);
    }
    if (loaded_) {
        const int high = scene.px(kLoadingBar);
        graphics.setColour(brush::colour(palette::kTrack));
        graphics.fillRect(0, 0, scene.width(), high);
        graphics.setColour(brush::colour(palette::kBright));
        graphics.fillRect(0, 0, *loaded_, high);
    }
    if (ring_) {
        const auto line = static_cast<float>(scene.units(kRingLine));
        graphics.setColour(brush::colour(palette::kBright));
        graphics.drawEllipse(brush::floats(*ring_).reduced(line), line);
    }
    if (isFocused) {
        graphics.setColour(brush::colour(palette::kBright));
        graphics.drawRect(0, 0, scene.width(), scene.height(), std::max(2, scene.px(2)));
    }
}

} // namespace zephyra
