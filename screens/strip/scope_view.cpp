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
    : StripView(context, model_, "Scope", helpText(HelpId::scope)), model_(context) {}

void ScopeView::laidOut() {
    model_.trace().setColumns(static_cast<std::size_t>(juce::jmax(2, getWidth())));
    showZoom();
}

juce::Colour ScopeView::traceColour() const {
    return brush::colour(palette::kArc);
}

void ScopeView::drawGround(juce::Graphics& graphics) {
    const int line = juce::jmax(1, layout().px(1));
    graphics.setColour(brush::colour(palette::kLine, 0.6f));
    graphics.fillRect(0, getHeight() / 2, getWidth(), line);
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0, 0, getWidth(), line);
    graphics.fillRect(0, 0, line, getHeight());
}

void ScopeView::drawTrace(SpanImage& picture) {
    if (zoom_ != model_.zoom()) showZoom();
    const auto columns = model_.trace().columns();
    const auto height = static_cast<float>(getHeight()), middle = height / 2.0f;
    const float reach = height * static_cast<float>(model_.zoom()) * kReach;
    const float half = px(kLine) / 2.0f;
    const int line = juce::jmax(1, layout().px(1));
    for (int x = line; x < getWidth(); ++x) {
        const auto at = static_cast<std::size_t>(x);
        if (at >= columns.size()) break;
        picture.show(x, {middle - columns[at].high * reach - half,
                         middle - columns[at].low * reach + half, height});
    }
}

void ScopeView::showZoom() {
    zoom_ = model_.zoom();
    if (zoom_ == 1) return setLabels({});
    setLabels({{juce::String::fromUTF8("\xc3\x97") + juce::String(zoom_), px(6),
                px(layout().measures.unitText) * 0.9f}});
}

} // namespace zephyra
