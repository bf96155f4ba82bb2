#include "screens/stage/stage_marks.h"

#include "screens/draw/brush.h"
#include "screens/model/stage/ruler_scale.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr int kDarkens = 141;                  // of 256, outside the region
constexpr double kLeastCell = 6.0;             // units between the quarters of a synced scan
constexpr int kGridLine = 70, kZeroLine = 120; // of 256
constexpr float kBehindLabel = 0.8f;           // of the stage's colour, over the sound

// The cells of a synced scan: a measure and every second one a little lighter, its quarters.
void drawCells(const StageScene& scene, const Pixels& pixels) {
    const StageContents& of = scene.contents;
    const int cells = of.measures * std::max(1, of.quarters);
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

} // namespace

void drawGrid(const StageScene& scene, const Pixels& pixels) {
    if (scene.contents.isSynced) drawCells(scene, pixels);
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

std::string nameOnStage(const StageScene& scene) {
    const bool hasRoom = scene.layout.step != LayoutStep::compact; // in the top
    if (hasRoom || !scene.contents.missing.empty()) return {};     // or a notice stands there
    return scene.contents.isLive ? "Live input" : scene.contents.name;
}

Box nameBox(const StageScene& scene) {
    const std::string name = nameOnStage(scene);
    if (name.empty()) return {};
    const double letters = scene.layout.measures.unitText;
    const double start = std::min(scene.contents.regionStart, scene.contents.regionEnd);
    const int x = std::max(scene.px(44), static_cast<int>(scene.x(start)) + scene.px(8));
    const float width =
        brush::regular(scene.units(letters)).getStringWidthFloat(brush::drawn(name));
    return {x, scene.px(6), std::min(static_cast<int>(std::ceil(width)) + 1, scene.width() / 2),
            scene.px(letters + 4)};
}

void drawMarkTexts(const StageScene& scene, juce::Graphics& graphics) {
    const LayoutMeasures& of = scene.layout.measures;
    graphics.setFont(brush::regular(scene.units(of.unitText)));
    graphics.setColour(brush::colour(palette::kFaint));
    const int high = scene.px(of.unitText + 4), left = scene.px(12), wide = scene.px(40);
    const auto label = [&](int semitones) {
        const juce::String sign = semitones > 0   ? "+"
                                  : semitones < 0 ? juce::String::fromUTF8("\u2212")
                                                  : juce::String();
        const int y = static_cast<int>(scene.y(semitones)) - high / 2;
        const juce::String text = sign + juce::String(std::abs(semitones));
        const int pad = scene.px(3);
        const int inked = static_cast<int>(graphics.getCurrentFont().getStringWidthFloat(text));
        graphics.setColour(brush::colour(palette::kStage, kBehindLabel));
        graphics.fillRoundedRectangle(
            juce::Rectangle(left - pad, y, inked + 2 * pad, high).toFloat(),
            static_cast<float>(pad));
        graphics.setColour(brush::colour(palette::kFaint));
        graphics.drawText(text, left, y, wide, high, juce::Justification::centredLeft, false);
    };
    label(0);
    for (const int semitones : scene.axis.labels()) {
        label(semitones);
        label(-semitones);
    }
    if (const Box name = nameBox(scene); name.width > 0) {
        graphics.setColour(brush::colour(palette::kText));
        brush::drawLine(graphics, nameOnStage(scene), brush::floats(name),
                        juce::Justification::centredLeft);
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

void darkenOutside(const StageScene& scene, const Pixels& pixels) {
    const Tint dark(palette::kGround);
    const double one = scene.x(scene.contents.regionStart), two = scene.x(scene.contents.regionEnd);
    const auto column = [&](double x) {
        return static_cast<int>(std::clamp(x, 0.0, 1.0 * scene.width()));
    };
    const int left = column(std::min(one, two)), right = column(std::max(one, two));
    pixels.mixBox({0, 0, left, scene.height()}, dark, kDarkens);
    pixels.mixBox({right, 0, scene.width() - right, scene.height()}, dark, kDarkens);
}

} // namespace zephyra
