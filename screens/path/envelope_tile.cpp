#include "screens/path/envelope_tile.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <algorithm>

namespace zephyra {

using namespace palette;

namespace {

constexpr float kFillAlpha = 0.22f, kTileCorner = 6.0f;
constexpr int kLeastPoints = 24;

} // namespace

void drawEnvelope(juce::Graphics& graphics, std::span<const float> gains,
                  juce::Rectangle<float> box, float lineWidth, juce::Colour colour) {
    if (gains.empty()) return;
    const bool goesBelow = *std::min_element(gains.begin(), gains.end()) < -0.001f;
    const float zero = goesBelow ? box.getCentreY() : box.getBottom();
    const float height = goesBelow ? box.getHeight() / 2 : box.getHeight();
    const int points = std::max(kLeastPoints, static_cast<int>(box.getWidth() * 2));
    juce::Path line;
    line.startNewSubPath(box.getX(), zero);
    for (int i = 0; i <= points; ++i) {
        const float part = static_cast<float>(i) / static_cast<float>(points);
        const auto at = static_cast<std::size_t>(part * static_cast<float>(gains.size() - 1));
        line.lineTo(box.getX() + part * box.getWidth(),
                    zero - std::clamp(gains[at], -1.0f, 1.0f) * height);
    }
    line.lineTo(box.getRight(), zero);
    juce::Path area(line);
    area.closeSubPath();
    graphics.setColour(colour.withMultipliedAlpha(kFillAlpha));
    graphics.fillPath(area);
    graphics.setColour(colour);
    graphics.strokePath(line,
                        {lineWidth, juce::PathStrokeType::curved, juce::PathStrokeType::rounded});
}

EnvelopeTile::EnvelopeTile(ScreenContext& context, const PathCell& cell,
                           std::span<const EnvelopeCurve> curves, std::function<void()> open)
    : PathCellView(context, cell), curves_(curves), open_(std::move(open)) {
    setTitle("Grain Envelope");
    setHelp(helpText(ControlId::envelope));
    if (!curves_.empty()) setValue(curves_[shown_].name);
}

void EnvelopeTile::show(const PathModel& model) {
    if (shown_ == model.envelope()) return;
    shown_ = model.envelope();
    setValue(shown_ < curves_.size() ? curves_[shown_].name : "");
    repaint();
}

void EnvelopeTile::paint(juce::Graphics& graphics) {
    CellReach ground = reach();
    ground.isHovered = false; // the tile itself is raised
    KnobLook::drawCell(graphics, place(), ground);
    if (shown_ >= curves_.size()) return;
    const auto unit = static_cast<float>(place().scale);
    const auto side = static_cast<float>(place().diameter) - 2.0f * unit;
    const auto tile =
        juce::Rectangle(side, side)
            .withCentre({static_cast<float>(place().centreX), static_cast<float>(place().centreY)});
    graphics.setColour(brush::colour(reach().isHovered ? kPressed : kRaised));
    graphics.fillRoundedRectangle(tile, kTileCorner * unit);
    const auto inner = tile.reduced(side * 0.15f, side * 0.22f);
    drawEnvelope(graphics, curves_[shown_].gains, inner, 2.0f * unit, brush::colour(kBright));

    const juce::Font font =
        reach().isHovered ? brush::medium(place().nameText) : brush::regular(place().nameText);
    const juce::String name = brush::text(curves_[shown_].name);
    const float chevron = 7.0f * unit, space = 5.0f * unit;
    const auto most = static_cast<float>(place().cell.width) - 2.0f * unit - chevron - space;
    const float width = juce::jmin(font.getStringWidthFloat(name) + unit, most);
    const float left = (static_cast<float>(place().cell.width) - width - space - chevron) / 2;
    graphics.setFont(font);
    graphics.setColour(brush::colour(reach().isHovered ? kBright : kText));
    const juce::Rectangle line(left, static_cast<float>(place().nameTop), width,
                               static_cast<float>(place().nameHeight));
    graphics.drawFittedText(name, line.getSmallestIntegerContainer(), juce::Justification::centred,
                            1, 0.8f);
    juce::Path down;
    const float x = left + width + space, y = line.getCentreY() - unit;
    down.startNewSubPath(x, y);
    down.lineTo(x + chevron / 2, y + chevron / 2);
    down.lineTo(x + chevron, y);
    graphics.strokePath(down, juce::PathStrokeType(1.3f * unit));
}

void EnvelopeTile::mouseUp(const juce::MouseEvent& event) {
    if (getLocalBounds().contains(event.getPosition())) open_();
}

bool EnvelopeTile::takeKey(const juce::KeyPress& key) {
    if (key != juce::KeyPress::returnKey && key != juce::KeyPress::downKey) return false;
    open_();
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> EnvelopeTile::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(
        *this, juce::AccessibilityRole::comboBox,
        juce::AccessibilityActions()
            .addAction(juce::AccessibilityActionType::showMenu, open_)
            .addAction(juce::AccessibilityActionType::press, open_));
}

} // namespace zephyra
