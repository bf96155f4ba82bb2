#include "screens/stage/stage_ground.h"

#include "screens/model/stage/ruler_scale.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr int kDarkens = 141;                  // of 256, outside the region
constexpr double kLeastCell = 6.0;             // units between the quarters of a synced scan
constexpr int kGridLine = 70, kZeroLine = 120; // of 256

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
    for (juce::Image* const image : {&atRest_, &lit_}) {
        if (image->getWidth() != scene.width() || image->getHeight() != scene.height())
            *image = opaqueImage(scene.width(), scene.height());
        drawWave(scene, *image, image == &lit_);
    }
}

void StageGround::drawWave(const StageScene& scene, juce::Image& image, bool isLit) const {
    {
        const Pixels pixels(image, {0, 0, scene.width(), scene.height()});
        for (int y = 0; y < scene.height(); ++y) {
            const Tint tint = groundAt(scene, y, isLit);
            juce::PixelRGB ground;
            ground.setARGB(255, static_cast<std::uint8_t>(tint.red),
                           static_cast<std::uint8_t>(tint.green),
                           static_cast<std::uint8_t>(tint.blue));
            std::fill_n(pixels.row(y), scene.width(), ground);
        }
    }
    drawGrid(scene, image);
    if (scene.contents.isSynced) drawCells(scene, image);
    const Shares shares = isLit ? kLit : kAtRest;
    const Tint source(palette::kSource), dark(palette::kGround);
    const double one = scene.x(scene.contents.regionStart), two = scene.x(scene.contents.regionEnd);
    const int left = static_cast<int>(std::clamp(std::min(one, two), 0.0, 1.0 * scene.width()));
    const int right = static_cast<int>(std::clamp(std::max(one, two), 0.0, 1.0 * scene.width()));
    {
        const Pixels pixels(image, {0, 0, scene.width(), scene.height()});
        for (int y = 0; y < scene.height(); ++y) {
            juce::PixelRGB* const row = pixels.row(y);
            for (int x = 0; x < scene.width(); ++x) {
                const WaveExtent& at = extents_[static_cast<std::size_t>(x)];
                const int extremes = covered(at.top, at.bottom, y);
                if (extremes == 0) continue;
                const int energy = covered(at.energyTop, at.energyBottom, y);
                Pixels::mix(
                    row[x], source,
                    (extremes * shares.extremes + energy * (shares.energy - shares.extremes)) >> 8);
            }
            if (isLit) continue;
            pixels.mixSpan(y, 0, left, dark, kDarkens);
            pixels.mixSpan(y, right, scene.width(), dark, kDarkens);
        }
    }
    drawTexts(scene, image);
}

void StageGround::drawGrid(const StageScene& scene, juce::Image& image) const {
    const Pixels pixels(image, {0, 0, scene.width(), scene.height()});
    const Tint line(palette::kLine);
    const StageContents& of = scene.contents;
    if (!of.isSynced && of.seconds > 0.0)
        for (const RulerTick& tick :
             rulerTicks(scene.view.first() * of.seconds, scene.view.last() * of.seconds,
                        scene.width() / scene.layout.scale, false, of.isWriting))
            pixels.mixColumn(static_cast<int>(tick.place * scene.width()), 0, scene.height(), line,
                             kGridLine);
    const auto across = [&](double semitones, int alpha) {
        const int y = static_cast<int>(scene.y(semitones));
        pixels.mixSpan(y, 0, scene.width(), line, alpha);
    };
    for (const int label : scene.axis.labels()) {
        across(label, kGridLine);
        across(-label, kGridLine);
    }
    across(0, kZeroLine);
}

// The cells of a synced scan: a measure and every second one a little lighter, its quarters.
void StageGround::drawCells(const StageScene& scene, juce::Image& image) const {
    const StageContents& of = scene.contents;
    const int cells = of.measures * std::max(1, of.quarters);
    const Pixels pixels(image, {0, 0, scene.width(), scene.height()});
    const Tint line(palette::kTrack), lighter(palette::kSource);
    const double measure = scene.x(1.0 / of.measures) - scene.x(0.0);
    const double quarter = measure / std::max(1, of.quarters);
    for (int i = 0; i <= cells; ++i) {
        const bool isMeasure = i % std::max(1, of.quarters) == 0;
        const int x = static_cast<int>(scene.x(static_cast<double>(i) / cells));
        if (isMeasure && i / std::max(1, of.quarters) % 2 == 1)
            pixels.mixBox({x, 0, static_cast<int>(measure + 0.5), scene.height()}, lighter, 9);
        if (isMeasure || quarter >= scene.units(kLeastCell))
            pixels.mixColumn(x, 0, scene.height(), line, isMeasure ? 230 : 90);
    }
}

void StageGround::drawTexts(const StageScene& scene, juce::Image& image) const {
    juce::Graphics graphics(image);
    const LayoutMeasures& of = scene.layout.measures;
    graphics.setFont(brush::regular(scene.units(of.unitText)));
    graphics.setColour(brush::colour(palette::kFaint));
    const int high = scene.px(of.unitText + 4), left = scene.px(12), wide = scene.px(40);
    const auto label = [&](int semitones) {
        const juce::String sign = semitones > 0   ? "+"
                                  : semitones < 0 ? juce::String::fromUTF8("\u2212")
                                                  : juce::String();
        const int y = static_cast<int>(scene.y(semitones)) - high / 2;
        graphics.drawText(sign + juce::String(std::abs(semitones)), left, y, wide, high,
                          juce::Justification::centredLeft, false);
    };
    label(0);
    for (const int semitones : scene.axis.labels()) {
        label(semitones);
        label(-semitones);
    }
    if (scene.layout.step == LayoutStep::compact) { // the top has no room for it
        const double start = std::min(scene.contents.regionStart, scene.contents.regionEnd);
        const int x = std::max(scene.px(44), static_cast<int>(scene.x(start)) + scene.px(8));
        graphics.setColour(brush::colour(palette::kText));
        graphics.drawText(brush::text(scene.contents.isLive ? "Live input" : scene.contents.name),
                          x, scene.px(6), scene.width() / 2, high, juce::Justification::centredLeft,
                          true);
        graphics.setColour(brush::colour(palette::kFaint));
    }
    if (!scene.contents.isSynced) return;
    const double measure = scene.x(1.0 / scene.contents.measures) - scene.x(0.0);
    if (measure < scene.units(24)) return;
    for (int i = 0; i < scene.contents.measures; ++i)
        graphics.drawText(
            juce::String(i + 1),
            std::max(scene.px(44),
                     static_cast<int>(scene.x(1.0 * i / scene.contents.measures)) + scene.px(5)),
            scene.height() - high - scene.px(3), wide, high, juce::Justification::centredLeft,
            false);
}

} // namespace zephyra
