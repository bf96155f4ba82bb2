#include "screens/path/knob_look.h"

#include "screens/draw/brush.h"
#include "screens/path/knob_signs.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

using namespace palette;

// In units of the regular step.
constexpr float kArcWidth = 4.0f, kSpreadArcWidth = 3.4f, kDot = 3.8f, kSweepWidth = 2.0f;
constexpr float kSweepAway = 6.5f, kSpreadSweepAway = 5.0f, kCorner = 8.0f, kFrame = 2.0f,
                kGrip = 4.0f;
constexpr float kHalfTurn = juce::MathConstants<float>::pi * 0.75f;

float angleAt(float fraction) {
    return (2.0f * std::clamp(fraction, 0.0f, 1.0f) - 1.0f) * kHalfTurn;
}

bool isSpread(const CellPlace& place) {
    return place.diameter < 48 * place.scale;
}

float arcWidth(const CellPlace& place) {
    return static_cast<float>(place.scale) * (isSpread(place) ? kSpreadArcWidth : kArcWidth);
}

float arcRadius(const CellPlace& place) {
    return static_cast<float>(place.diameter) / 2.0f - 1.5f * static_cast<float>(place.scale);
}

void strokeArc(juce::Graphics& graphics, const CellPlace& place, float radius, float from, float to,
               float width) {
    juce::Path path;
    const auto x = static_cast<float>(place.centreX), y = static_cast<float>(place.centreY);
    path.addCentredArc(x, y, radius, radius, 0.0f, angleAt(std::min(from, to)),
                       angleAt(std::max(from, to)), true);
    graphics.strokePath(path, {width, juce::PathStrokeType::curved, juce::PathStrokeType::rounded});
}

void drawSweep(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
               bool isHovered) {
    if (!face.from || !face.to) return;
    const auto unit = static_cast<float>(place.scale);
    const float radius = sweepRadius(place);
    graphics.setColour(brush::colour(face.drives ? kAccent : kFaint));
    strokeArc(graphics, place, radius, *face.from, *face.to, kSweepWidth * unit);
    if (!isHovered) return;
    for (const float end : {*face.from, *face.to}) {
        const auto at = pointOnTurn(place, end, radius);
        const auto grip = juce::Rectangle(2 * kGrip * unit, 2 * kGrip * unit).withCentre(at);
        graphics.setColour(brush::colour(kRaised));
        graphics.fillEllipse(grip);
        graphics.setColour(brush::colour(face.drives ? kAccent : kFaint));
        graphics.drawEllipse(grip.reduced(unit * 0.75f), unit * 1.5f);
    }
}

void drawArc(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place, bool isLit) {
    const float radius = arcRadius(place), unit = static_cast<float>(place.scale);
    if (face.setAt) {
        graphics.setColour(brush::colour(kFaint));
        const auto inner = pointOnTurn(place, *face.setAt, radius - 7.0f * unit);
        const auto outer = pointOnTurn(place, *face.setAt, radius + 1.5f * unit);
        graphics.drawLine({inner, outer}, 1.5f * unit);
    }
    const Color color = face.isOff ? blend(kGround, {kDim.red, kDim.green, kDim.blue, 0.6f})
                        : isLit    ? kBright
                                   : kArc;
    graphics.setColour(brush::colour(color));
    const float begin = face.isBipolar ? 0.5f : 0.0f;
    if (face.arc != begin) strokeArc(graphics, place, radius, begin, face.arc, arcWidth(place));
    if (face.isOff) return;
    const float dot = (isSpread(place) ? 0.85f : 1.0f) * 2.0f * kDot * unit;
    graphics.setColour(brush::colour(kBright));
    graphics.fillEllipse(
        juce::Rectangle(dot, dot).withCentre(pointOnTurn(place, face.arc, radius)));
}

bool isLit(const CellReach& reach) {
    return reach.isHovered || reach.isPressed || !reach.showsNumber;
}

/// The letters that fit, never under the least.
juce::Font fitting(double pixels, const juce::String& text, float width, double least) {
    juce::Font font = brush::medium(pixels);
    const float needed = font.getStringWidthFloat(text);
    return needed <= width ? font : brush::medium(std::max(least, pixels * width / needed));
}

/// Over the whole cell, so far below the knob's centre.
juce::Rectangle<float> textLine(const CellPlace& place, double below, double pixels) {
    const auto height = static_cast<float>(pixels * 1.4);
    const float centre = static_cast<float>(place.centreY) + static_cast<float>(below);
    return {0.0f, centre - height / 2, static_cast<float>(place.cell.width), height};
}

void drawNumber(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place) {
    const juce::String number = brush::text(face.text.number);
    const float inner =
        2.0f * (arcRadius(place) - arcWidth(place) / 2.0f - static_cast<float>(place.scale));
    graphics.setColour(brush::colour(face.isOff ? kDim : kBright));
    graphics.setFont(fitting(place.numberText, number, inner, place.unitText));
    graphics.drawText(number, textLine(place, -place.scale, place.numberText),
                      juce::Justification::centred, false);
}

void drawUnit(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place) {
    if (face.text.unit.empty()) return;
    const double below = isSpread(place)
                             ? 0.36 * place.diameter
                             : 0.36 * (place.numberText + place.unitText) + 3.8 * place.scale;
    graphics.setColour(brush::colour(face.isOff ? kDim : kFaint));
    graphics.setFont(brush::regular(place.unitText));
    graphics.drawText(brush::text(face.text.unit), textLine(place, below, place.unitText),
                      juce::Justification::centred, false);
}

} // namespace

juce::Point<float> pointOnTurn(const CellPlace& place, float fraction, float radius) {
    return juce::Point(static_cast<float>(place.centreX), static_cast<float>(place.centreY))
        .getPointOnCircumference(radius, angleAt(fraction));
}

float sweepRadius(const CellPlace& place) {
    const float away = isSpread(place) ? kSpreadSweepAway : kSweepAway;
    return arcRadius(place) + away * static_cast<float>(place.scale);
}

void KnobLook::drawCell(juce::Graphics& graphics, const CellPlace& place, const CellReach& reach) {
    graphics.fillAll(brush::colour(kGround));
    const auto unit = static_cast<float>(place.scale);
    const juce::Rectangle cell(0.0f, 0.0f, static_cast<float>(place.cell.width),
                               static_cast<float>(place.cell.height));
    if (reach.isHovered || reach.isPressed) {
        graphics.setColour(brush::colour(reach.isPressed ? kPressed : kRaised));
        graphics.fillRoundedRectangle(cell, kCorner * unit);
    }
    if (!reach.showsFocus) return;
    graphics.setColour(brush::colour(kBright));
    graphics.drawRoundedRectangle(cell.reduced(kFrame * unit / 2), (kCorner - kFrame / 2) * unit,
                                  kFrame * unit);
}

void KnobLook::drawName(juce::Graphics& graphics, const CellPlace& place, const CellReach& reach,
                        const std::string& name, bool isOff) {
    const bool lit = reach.isHovered || reach.isPressed;
    graphics.setColour(brush::colour(lit ? kBright : isOff ? kDim : kText));
    graphics.setFont(lit ? brush::medium(place.nameText) : brush::regular(place.nameText));
    graphics.drawText(brush::text(name), 0, place.nameTop, place.cell.width, place.nameHeight,
                      juce::Justification::centred, false);
}

void KnobLook::drawStill(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                         const CellReach& reach, const std::string& name) {
    CellReach ground = reach;
    ground.isHovered = isLit(reach);
    drawCell(graphics, place, ground);
    const juce::Image& empty = track(place.diameter, arcWidth(place));
    graphics.setOpacity(1.0f);
    graphics.drawImageAt(empty, place.centreX - empty.getWidth() / 2,
                         place.centreY - empty.getHeight() / 2);
    drawSweep(graphics, face, place, isLit(reach));
    if (reach.showsNumber) drawUnit(graphics, face, place);
    drawKnobSigns(graphics, face, place, isLit(reach));
    drawName(graphics, place, ground, name, face.isOff);
}

void KnobLook::drawMoving(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                          const CellReach& reach) {
    drawArc(graphics, face, place, isLit(reach));
    if (reach.showsNumber) drawNumber(graphics, face, place);
}

const juce::Image& KnobLook::track(int diameter, float width) {
    juce::Image& image = tracks_[{diameter, static_cast<int>(width * 64)}];
    if (image.isValid()) return image;
    const int side = diameter + 2 * static_cast<int>(std::ceil(width));
    image = juce::Image(juce::Image::ARGB, side, side, true, juce::SoftwareImageType());
    juce::Graphics graphics(image);
    graphics.setColour(brush::colour(kTrack));
    const double scale = width / (diameter < 48 ? kSpreadArcWidth : kArcWidth);
    CellPlace place{};
    place.centreX = place.centreY = side / 2;
    place.diameter = diameter;
    place.scale = scale;
    strokeArc(graphics, place, arcRadius(place), 0.0f, 1.0f, width);
    return image;
}

} // namespace zephyra
