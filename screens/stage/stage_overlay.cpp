#include "screens/stage/stage_overlay.h"

#include "screens/draw/brush.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr double kRing = 22, kRingLine = 2, kLoadingBar = 3; // units
constexpr double kPin = 12, kPinFrom = 4, kPinDot = 5;       // units: radii
constexpr double kNowWidth = 44, kNowHeight = 20;
constexpr float kBehindNow = 0.85f; // of the stage's colour

Box nowBox(const StageScene& scene) {
    const int x = static_cast<int>(std::clamp(scene.x(1.0), 0.0, 1.0 * scene.width()));
    return {x - scene.px(kNowWidth), 0, scene.px(kNowWidth), scene.height()};
}

/// Round the mark of a held sound, if there is one in sight.
std::optional<Box> pinBox(const StageScene& scene) {
    const auto& hold = scene.hold.shown();
    if (!hold) return std::nullopt;
    const int half = scene.px(kPin + 2.0 * kRingLine);
    const Box box{static_cast<int>(scene.x(hold->scan)) - half,
                  static_cast<int>(hold->y * scene.height()) - half, 2 * half, 2 * half};
    if (box.right() <= 0 || box.x >= scene.width()) return std::nullopt;
    return box;
}

} // namespace

std::array<Box, 6> StageOverlay::follow(const StageScene& scene, const StageHands& hands) {
    std::array<Box, 6> changed{};
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
    const auto pin = pinBox(scene);
    if (pin != pin_ || scene.hold.shown() != hold_) {
        changed[4] = pin.value_or(Box{});
        changed[5] = pin_.value_or(Box{});
    }
    pin_ = pin;
    hold_ = scene.hold.shown();
    return changed;
}

std::array<Box, 4> StageOverlay::boxes(const StageScene& scene) const {
    return {ring_.value_or(Box{}), pin_.value_or(Box{}),
            loaded_ ? Box{0, 0, scene.width(), scene.px(kLoadingBar)} : Box{},
            isWriting_ ? nowBox(scene) : Box{}};
}

/// A ring that grows; a dot in it once the sound is held. White: it is set by hand.
void StageOverlay::paintPin(juce::Graphics& graphics, const StageScene& scene) const {
    const auto centre = brush::floats(*pin_).getCentre();
    const auto circle = [&](double units) {
        const auto side = static_cast<float>(2.0 * scene.units(units));
        return juce::Rectangle<float>(side, side).withCentre(centre);
    };
    const double radius = kPinFrom + hold_->growth * (kPin - kPinFrom);
    const auto line = static_cast<float>(scene.units(kRingLine));
    graphics.setColour(brush::colour(palette::kInk));
    graphics.drawEllipse(circle(radius), 2.0f * line); // to be seen on bright bars as well
    if (hold_->stands) graphics.fillEllipse(circle(kPinDot + 1.0));
    graphics.setColour(brush::colour(palette::kBright));
    graphics.drawEllipse(circle(radius), line);
    if (hold_->stands) graphics.fillEllipse(circle(kPinDot));
}

void StageOverlay::paint(juce::Graphics& graphics, const StageScene& scene, bool isFocused) const {
    if (isWriting_) {
        const Box now = nowBox(scene);
        const int line = std::max(2, scene.px(2));
        graphics.setColour(brush::colour(palette::kBright));
        graphics.fillRect(now.right() - line, 0, line, scene.height());
        const juce::Font font = brush::medium(scene.units(scene.layout.measures.unitText));
        const int pad = scene.px(5), high = scene.px(kNowHeight);
        const int wide = static_cast<int>(font.getStringWidthFloat("now")) + 2 * pad;
        const juce::Rectangle<int> plate(now.right() - line - wide, scene.px(4), wide, high);
        graphics.setColour(brush::colour(palette::kStage, kBehindNow));
        graphics.fillRect(plate); // the scan stands close to it in live sound
        graphics.setColour(brush::colour(palette::kBright));
        graphics.setFont(font);
        graphics.drawText("now", plate.withTrimmedRight(pad), juce::Justification::centredRight,
                          false);
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
    if (pin_) paintPin(graphics, scene);
    if (isFocused) {
        graphics.setColour(brush::colour(palette::kBright));
        graphics.drawRect(0, 0, scene.width(), scene.height(), std::max(2, scene.px(2)));
    }
}

} // namespace zephyra
