#include "screens/strip/spectrum_view.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr double kHighest = -6.0, kLowest = -90.0; // dB at the top, at the bottom
constexpr double kColumn = 1.5, kLine = 1.2;       // units
constexpr float kFillAlpha = 0.3f;
constexpr double kGridDecibels[] = {-24.0, -48.0, -72.0};
constexpr std::pair<double, const char*> kGridHertz[] = {
    {100.0, "100 Hz"}, {1000.0, "1 kHz"}, {10000.0, "10 kHz"}};
constexpr int kNumbersFrom = 48; // units of height from which the second level has a number

} // namespace

SpectrumView::SpectrumView(ScreenContext& context)
    : StripView(context, model_, "Spectrum", helpText(HelpId::spectrum)), model_(context) {}

float SpectrumView::yOf(double decibels) const {
    return static_cast<float>((kHighest - decibels) / (kHighest - kLowest) * getHeight());
}

float SpectrumView::xOf(double hertz) const {
    return static_cast<float>(LiveSpectrum::placeOf(hertz) * getWidth());
}

void SpectrumView::laidOut() {
    model_.spectrum().setColumns(
        static_cast<std::size_t>(juce::jmax(2.0, getWidth() / (kColumn * layout().scale))));
    writeLabels();
}

juce::Colour SpectrumView::traceColour() const {
    return brush::colour(palette::kSource);
}

juce::Colour SpectrumView::fillColour() const {
    return brush::colour(palette::kSource, kFillAlpha);
}

void SpectrumView::drawGround(juce::Graphics& graphics) {
    graphics.setColour(brush::colour(palette::kLine, 0.6f));
    const float line = juce::jmax(1.0f, std::floor(px(1)));
    for (const double level : kGridDecibels)
        graphics.fillRect(0.0f, std::floor(yOf(level)), static_cast<float>(getWidth()), line);
    for (const auto& [hertz, name] : kGridHertz)
        graphics.fillRect(std::floor(xOf(hertz)), 0.0f, line, static_cast<float>(getHeight()));
    graphics.setColour(brush::colour(palette::kLine));
    graphics.fillRect(0.0f, 0.0f, static_cast<float>(getWidth()), line);
}

/// Straight lines between the columns' middles; a steep one fills what lies between its ends.
void SpectrumView::drawTrace(SpanImage& picture) {
    const auto levels = model_.spectrum().decibels();
    const auto count = static_cast<float>(levels.size());
    if (levels.empty()) return;
    const float half = px(kLine) / 2.0f, columns = count / static_cast<float>(getWidth());
    const auto at = [&](float x) {
        const float place = juce::jlimit(0.0f, count - 1.0f, x * columns - 0.5f);
        const auto below = static_cast<std::size_t>(place);
        const std::size_t above = juce::jmin(below + 1, levels.size() - 1);
        const float share = place - static_cast<float>(below);
        return yOf(double{levels[below] + share * (levels[above] - levels[below])});
    };
    float left = at(0.0f);
    for (int x = 0; x < getWidth(); ++x) {
        const float right = at(static_cast<float>(x + 1));
        const float top = juce::jmin(left, right), bottom = juce::jmax(left, right);
        left = right;
        picture.show(x, {top - half, bottom + half, (top + bottom) / 2.0f});
    }
}

void SpectrumView::writeLabels() {
    const float inset = px(layout().measures.margin), top = px(layout().measures.unitText) * 0.9f;
    std::vector<Label> labels;
    for (const auto& [hertz, name] : kGridHertz) labels.push_back({name, xOf(hertz) + px(5), top});
    for (const double level : kGridDecibels) {
        if (level == kGridDecibels[2]) continue;
        if (level != kGridDecibels[0] && getHeight() < layout().px(kNumbersFrom)) continue;
        labels.push_back(
            {juce::String::fromUTF8("\xe2\x88\x92") + juce::String(static_cast<int>(-level)), inset,
             yOf(level)});
    }
    setLabels(labels);
}

} // namespace zephyra
