#include "pictures/cairo/envelope_page.h"

#include "pictures/axis_ticks.h"
#include "pictures/cairo/picture_axes.h"

#include <cstddef>

namespace zephyra {

namespace {

constexpr std::size_t kColumns = 4;
constexpr Box kFirstBox = {76, 118, 312, 200};
constexpr double kStepX = 386, kStepY = 285;
constexpr double kLowest = EnvelopeCurve::kLowest, kHighest = EnvelopeCurve::kHighest;

Box boxAt(std::size_t index) {
    return {kFirstBox.x + kStepX * static_cast<double>(index % kColumns),
            kFirstBox.y + kStepY * static_cast<double>(index / kColumns), kFirstBox.width,
            kFirstBox.height};
}

/// The curve, with the area down to zero filled.
void drawCurve(Canvas& canvas, const Box& box, const std::vector<float>& gains) {
    const auto y = [&box](double value) {
        return box.bottom() - (value - kLowest) / (kHighest - kLowest) * box.height;
    };
    cairo_t* const context = canvas.context();
    canvas.clip(box);
    cairo_move_to(context, box.x, y(0));
    for (std::size_t n = 0; n < gains.size(); ++n)
        cairo_line_to(
            context, box.x + box.width * static_cast<double>(n) / static_cast<double>(gains.size()),
            y(gains[n]));
    cairo_line_to(context, box.right(), y(0));
    canvas.setColour(theme::output.faded(0.22));
    cairo_fill_preserve(context);
    canvas.setColour(theme::output);
    cairo_set_line_width(context, 1.6);
    cairo_stroke(context);
    canvas.resetClip();
}

void drawEnvelope(Canvas& canvas, const Box& box, const EnvelopeCurve& curve) {
    canvas.fill(box, theme::panel);
    drawUprightAxis(canvas, box, roundTicks(kLowest, kHighest, 4), "");
    drawTimeAxis(canvas, box, roundTicks(0, 100, 5), "");
    drawCurve(canvas, box, curve.gains);
    canvas.outline(box, theme::frame);
    canvas.text(box.x, box.y - 10, curve.name,
                {.colour = theme::title, .size = 16, .weight = TextWeight::bold});
}

} // namespace

void drawEnvelopes(Canvas& canvas, const std::vector<EnvelopeCurve>& curves) {
    canvas.text(28, 45, "Grain envelopes",
                {.colour = theme::title, .size = theme::titleSize, .weight = TextWeight::bold});
    canvas.text(28, 72, "gain over the length of a grain (%)");
    canvas.text(kEnvelopePageWidth - 28, 45, "Zephyra",
                {.colour = theme::faintText, .size = 17, .anchor = TextAnchor::right});
    for (std::size_t i = 0; i < curves.size(); ++i) drawEnvelope(canvas, boxAt(i), curves[i]);
}

} // namespace zephyra
