#include "screens/path/knob_signs.h"

#include "screens/draw/brush.h"

namespace zephyra {

namespace {

using namespace palette;
using juce::Path;

// In a box of 12 x 12 units.
Path wave() {
    Path path;
    path.startNewSubPath(0.5f, 7.0f);
    path.cubicTo(1.5f, 0.0f, 4.5f, 0.0f, 6.0f, 6.0f);
    path.cubicTo(7.5f, 12.0f, 10.5f, 12.0f, 11.5f, 5.0f);
    return path;
}

Path pointsAndLines() {
    Path path;
    path.startNewSubPath(1.5f, 9.5f);
    path.lineTo(5.0f, 3.0f);
    path.lineTo(10.5f, 6.0f);
    for (const juce::Point<float> at : {juce::Point(1.5f, 9.5f), {5.0f, 3.0f}, {10.5f, 6.0f}})
        path.addEllipse(at.x - 1.0f, at.y - 1.0f, 2.0f, 2.0f);
    return path;
}

Path upAndDown() {
    Path path;
    path.startNewSubPath(3.0f, 4.0f);
    path.lineTo(6.0f, 1.0f);
    path.lineTo(9.0f, 4.0f);
    path.startNewSubPath(6.0f, 1.0f);
    path.lineTo(6.0f, 11.0f);
    path.startNewSubPath(3.0f, 8.0f);
    path.lineTo(6.0f, 11.0f);
    path.lineTo(9.0f, 8.0f);
    return path;
}

Path tilted() {
    Path path;
    path.addRectangle(2.5f, 3.5f, 7.0f, 5.0f);
    path.applyTransform(juce::AffineTransform::rotation(-0.5f, 6.0f, 6.0f));
    return path;
}

Path lock() {
    Path path;
    path.addRectangle(2.5f, 5.5f, 7.0f, 5.0f);
    path.startNewSubPath(4.0f, 5.5f);
    path.lineTo(4.0f, 3.8f);
    path.cubicTo(4.0f, 0.8f, 8.0f, 0.8f, 8.0f, 3.8f);
    path.lineTo(8.0f, 5.5f);
    return path;
}

Path signOf(KnobMover by) {
    switch (by) {
    case KnobMover::lfo:
        return wave();
    case KnobMover::host:
        return pointsAndLines();
    case KnobMover::scrub:
        return upAndDown();
    case KnobMover::tilt:
        return tilted();
    case KnobMover::midi:
    case KnobMover::none:
        break;
    }
    return {};
}

void stroke(juce::Graphics& graphics, const Path& path, float x, float y, float unit) {
    graphics.strokePath(path, {1.5f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded},
                        juce::AffineTransform::scale(unit).translated(x, y));
}

/// In letters; behind them nothing of the sweep is left.
void drawText(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
              bool isRaised) {
    const juce::String text = face.isLearning ? "CC ?" : brush::text(face.sign);
    const auto unit = static_cast<float>(place.scale);
    const juce::Font font = brush::regular(place.unitText);
    const float width = font.getStringWidthFloat(text) + 4.0f * unit;
    const auto centre = static_cast<float>(place.centreX),
               radius = static_cast<float>(place.diameter) / 2;
    const float height = font.getHeight();
    const float left =
        juce::jmin(centre + radius * 0.9f, static_cast<float>(place.cell.width) - width);
    const juce::Rectangle box(left, -2.0f * unit, width, height); // clear of the dot
    graphics.setColour(brush::colour(isRaised ? kRaised : kGround));
    graphics.fillRect(box.withTrimmedBottom(unit).withTrimmedTop(unit));
    graphics.setColour(brush::colour(face.isLearning ? kBright : face.drives ? kAccent : kFaint));
    graphics.setFont(font);
    graphics.drawText(text, box, juce::Justification::centred, false);
}

} // namespace

void drawKnobSigns(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                   bool isRaised) {
    const auto unit = static_cast<float>(place.scale);
    const auto centre = static_cast<float>(place.centreX),
               radius = static_cast<float>(place.diameter) / 2;
    const auto width = static_cast<float>(place.cell.width);
    const float top = static_cast<float>(place.centreY) - radius - 7.0f * unit;
    if (face.isLocked) {
        graphics.setColour(brush::colour(kFaint));
        stroke(graphics, lock(), juce::jmax(0.0f, centre - radius - 8.0f * unit),
               juce::jmax(unit, top), unit);
    }
    if (face.isLearning || face.by == KnobMover::midi) {
        drawText(graphics, face, place, isRaised);
        return;
    }
    if (face.by == KnobMover::none) return;
    graphics.setColour(brush::colour(face.drives ? kAccent : kFaint));
    stroke(graphics, signOf(face.by), juce::jmin(centre + radius * 0.8f, width - 13.0f * unit),
           juce::jmax(unit, top), unit);
}

} // namespace zephyra
