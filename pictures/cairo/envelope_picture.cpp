#include "pictures/cairo/envelope_picture.h"

#include "engine/envelope_menu.h"
#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <string_view>

namespace zephyra {

namespace {

constexpr std::size_t kColumns = 4;
constexpr Box kFirstBox = {76, 118, 312, 200};
constexpr double kStepX = 386, kStepY = 285;
constexpr double kLowest = -1, kHighest = 1;
constexpr std::string_view kPrefix = "Grain Envelope: ";

Box boxAt(std::size_t index) {
    return {kFirstBox.x + kStepX * static_cast<double>(index % kColumns),
            kFirstBox.y + kStepY * static_cast<double>(index / kColumns), kFirstBox.width,
            kFirstBox.height};
}

/// The curve, with the area down to zero filled.
void drawCurve(Canvas& canvas, const Box& box, const mokWindow& window) {
    const auto y = [&box](double value) {
        return box.bottom() - (value - kLowest) / (kHighest - kLowest) * box.height;
    };
    cairo_t* const context = canvas.context();
    const float* const points = window.getPtr();
    canvas.clip(box);
    cairo_move_to(context, box.x, y(0));
    for (std::uint64_t n = 0; n < window.size; ++n)
        cairo_line_to(context,
                      box.x + box.width * static_cast<double>(n) / static_cast<double>(window.size),
                      y(points[n]));
    cairo_line_to(context, box.right(), y(0));
    canvas.setColour(theme::output.faded(0.22));
    cairo_fill_preserve(context);
    canvas.setColour(theme::output);
    cairo_set_line_width(context, 1.6);
    cairo_stroke(context);
    canvas.resetClip();
}

void drawEnvelope(Canvas& canvas, const Box& box, const std::string& name,
                  const mokWindow& window) {
    canvas.fill(box, theme::panel);
    drawUprightAxis(canvas, box, roundTicks(kLowest, kHighest, 4), "");
    drawTimeAxis(canvas, box, roundTicks(0, 100, 5), "");
    drawCurve(canvas, box, window);
    canvas.outline(box, theme::frame);
    canvas.text(box.x, box.y - 10, name,
                {.colour = theme::title, .size = 16, .weight = TextWeight::bold});
}

} // namespace

Result<void> drawEnvelopes(Canvas& canvas) {
    canvas.text(28, 45, "Grain envelopes",
                {.colour = theme::title, .size = theme::titleSize, .weight = TextWeight::bold});
    canvas.text(28, 72, "gain over the length of a grain (%)");
    canvas.text(kEnvelopePictureWidth - 28, 45, "Zephyra",
                {.colour = theme::faintText, .size = 17, .anchor = TextAnchor::right});
    for (std::size_t i = 0; i < kEnvelopeMenu.size(); ++i) {
        const std::shared_ptr<mokWindow> window = makeEnvelope(i);
        if (!window) return Failure{"memory is too short for the envelopes; free some"};
        drawEnvelope(canvas, boxAt(i),
                     std::string(std::string_view(kEnvelopeMenu[i]).substr(kPrefix.size())),
                     *window);
    }
    return {};
}

} // namespace zephyra
