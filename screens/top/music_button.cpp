#include "screens/top/music_button.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr double kDragBegins = 4.0, kDot = 5.0, kDotStep = 9.0; // units
// Shares of the height on which the two lines are centred.
constexpr float kNumberCentre = 0.39f, kSourceCentre = 0.80f;

juce::Rectangle<float> lineAt(juce::Rectangle<float> cell, float share, float height) {
    return cell.withY(cell.getY() + cell.getHeight() * share - height).withHeight(2.0f * height);
}

} // namespace

MusicButton::MusicButton(ScreenContext& context, MusicLine& line)
    : ScreenButton(context, "Tempo", {}), line_(line) {
    setFace({.isBare = true});
    touched = [this](ButtonTouch touch) {
        if (touch == ButtonTouch::down) drags_ = false;
        if (touch == ButtonTouch::inside && !drags_) line_.tap();
    };
}

void MusicButton::show(const LayoutMeasures& measures) {
    if (shown_ == line_.shown() && measures_.tempoText == measures.tempoText) return;
    const bool isSame = shown_.tempo == line_.shown().tempo &&
                        shown_.isHosts == line_.shown().isHosts &&
                        measures_.tempoText == measures.tempoText;
    shown_ = line_.shown();
    measures_ = measures;
    if (isSame) return;
    setHelp(shown_.help());
    setValue(shown_.tempo + " " + shown_.source());
    repaint();
}

void MusicButton::paintSign(juce::Graphics& graphics, juce::Rectangle<float> cell, Color) {
    graphics.setFont(brush::medium(px(measures_.tempoText)));
    graphics.setColour(brush::colour(palette::kBright));
    graphics.drawText(brush::text(shown_.tempo),
                      lineAt(cell, kNumberCentre, px(measures_.tempoText)),
                      juce::Justification::centred, true);
    graphics.setFont(brush::medium(px(measures_.unitText)));
    graphics.setColour(brush::colour(palette::kFaint));
    graphics.drawText(brush::text(shown_.source()),
                      lineAt(cell, kSourceCentre, px(measures_.unitText)),
                      juce::Justification::centred, true);
}

void MusicButton::mouseDown(const juce::MouseEvent& event) {
    ScreenButton::mouseDown(event);
    if (isHeldBy(event)) line_.beginDrag();
}

void MusicButton::mouseDrag(const juce::MouseEvent& event) {
    ScreenButton::mouseDrag(event);
    if (!isHeldBy(event)) return;
    const double up = -event.getDistanceFromDragStartY() / double{px(1.0)};
    if (std::abs(up) >= kDragBegins) drags_ = true;
    if (drags_) line_.drag(up);
}

void MusicButton::mouseWheelMove(const juce::MouseEvent&, const juce::MouseWheelDetails& wheel) {
    if (wheel.deltaY != 0.0f) line_.step(wheel.deltaY > 0.0f ? 1 : -1);
}

bool MusicButton::takeKey(const juce::KeyPress& key) {
    constexpr int kPage = 20; // quarters: 5 beats a minute
    if (key == juce::KeyPress::upKey || key == juce::KeyPress::rightKey)
        line_.step(1);
    else if (key == juce::KeyPress::downKey || key == juce::KeyPress::leftKey)
        line_.step(-1);
    else if (key == juce::KeyPress::pageUpKey)
        line_.step(kPage);
    else if (key == juce::KeyPress::pageDownKey)
        line_.step(-kPage);
    else
        return ScreenButton::takeKey(key);
    return true;
}

BarView::BarView(ScreenContext& context) : ScreenControl(context, "Bar and beat") {
    setOpaque(true);
    setHelp(helpText(HelpId::bar));
}

void BarView::show(const MusicShown& shown, const LayoutMeasures& measures, double scale) {
    const bool isSame = shown.bar == shown_.bar && shown.beatCount == shown_.beatCount &&
                        shown.isMoving == shown_.isMoving && scale == scale_ &&
                        measures.tempoText == measures_.tempoText;
    shown_ = shown;
    measures_ = measures;
    scale_ = scale;
    if (isSame) return;
    setDescription(brush::text(shown.bar));
    repaint();
}

void BarView::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
    if (!shown_.hasBars) return;
    const auto px = [this](double units) { return static_cast<float>(units * scale_); };
    const auto cell = getLocalBounds().toFloat();
    graphics.setFont(brush::medium(px(measures_.tempoText)));
    graphics.setColour(brush::colour(shown_.isMoving ? palette::kBright : palette::kText));
    graphics.drawText(brush::text(shown_.bar), lineAt(cell, kNumberCentre, px(measures_.tempoText)),
                      juce::Justification::centred, true);
    const float step = px(kDotStep), dot = px(kDot);
    float x = cell.getCentreX() - step * static_cast<float>(shown_.beatCount) / 2.0f +
              (step - dot) / 2.0f;
    const float y = cell.getHeight() * kSourceCentre - dot / 2.0f;
    for (int beat = 0; beat < shown_.beatCount; ++beat, x += step) {
        const bool isNow = beat == shown_.beat;
        const bool isPast = beat < shown_.beat;
        graphics.setColour(brush::colour(isNow && shown_.isMoving ? palette::kAccent
                                         : isNow || isPast        ? palette::kDim
                                                                  : palette::kTrack));
        graphics.fillEllipse(x, y, dot, dot);
    }
}

std::string BarView::sentence() const {
    if (!shown_.hasBars) return {};
    return helpText(HelpId::barNow, "Bar " + shown_.bar.substr(0, shown_.bar.find('.')) +
                                        ", beat " + std::to_string(shown_.beat + 1));
}

} // namespace zephyra
