#include "screens/strip/scope_view.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr double kLine = 1.4;   // units
constexpr float kReach = 0.46f; // of the height, for full scale

} // namespace

ScopeView::ScopeView(ScreenContext& context)
    : StripView(context, "Scope", helpText(HelpId::scope)), model_(context) {}

void ScopeView::laidOut() {
    model_.trace().setColumns(static_cast<std::size_t>(juce::jmax(2, getWidth())));
}

void ScopeView::frame(const FrameTime& time) {
    if (model_.advance(time)) repaint();
}

void ScopeView::drawGround(juce::Graphics& graphics) {
    const int line = juce::jmax(1, layout().px(1));
    graphics.setColour(brush::colour(palette::kLine, 0.6f));
    graphics.fillRect(0, getHeight() / 2, getWidth(), line);
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0, 0, getWidth(), line);
    graphics.fillRect(0, 0, line, getHeight());
}

void ScopeView::drawTrace(SpanImage::Pen& pen) {
    const auto columns = model_.trace().columns();
    const auto middle = static_cast<float>(getHeight()) / 2.0f;
    const float reach = static_cast<float>(getHeight() * model_.zoom()) * kReach;
    const float half = px(kLine) / 2.0f;
    const juce::Colour trace = brush::colour(palette::kArc);
    const int line = juce::jmax(1, layout().px(1));
    for (int x = line; x < getWidth(); ++x) {
        const auto at = static_cast<std::size_t>(x);
        if (at >= columns.size()) break;
        pen.fill(x, middle - columns[at].high * reach - half,
                 middle - columns[at].low * reach + half, trace);
    }
}

void ScopeView::drawText(juce::Graphics& graphics) {
    if (model_.zoom() == 1) return;
    label(graphics, juce::String::fromUTF8("\xc3\x97") + juce::String(model_.zoom()), px(6),
          px(layout().measures.unitText) * 0.9f);
}

} // namespace zephyra
