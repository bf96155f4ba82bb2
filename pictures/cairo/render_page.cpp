#include "pictures/cairo/render_page.h"

#include "pictures/cairo/grain_lane.h"
#include "pictures/cairo/motion_lanes.h"
#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/sound_lanes.h"

#include <algorithm>
#include <cstddef>
#include <numbers>
#include <string>

namespace zephyra {

namespace {

// The page, in pixels: time runs along the lanes of the same width; the source's waveform stands
// upright beside the grains, because both share the position in the source.
constexpr double kLaneX = 236, kLaneWidth = 1226;
constexpr double kLanesY = 130; // below the heading
constexpr double kSourceX = 84, kSourceWidth = 138;
constexpr double kMapHeight = 450, kPansHeight = 58;
constexpr double kSideHeight = 80, kMonoHeight = 124;
constexpr double kSpectrumHeight = 264, kFooter = 60;
constexpr double kSmallGap = 4, kGap = 20; // between lanes
constexpr double kLegendX = 1516, kLegendWidth = 12;
constexpr double kMargin = 28;

double heightWithGap(double height, double gap) {
    return height > 0 ? height + gap : 0;
}

/// As many settings to a line as fit, on two lines.
void drawSettings(Canvas& canvas, const std::vector<std::string>& settings) {
    const TextStyle style = {.colour = theme::text, .size = 13.5};
    const double width = RenderPage::kWidth - 2 * kMargin;
    std::string lines[2];
    std::size_t line = 0;
    for (const std::string& setting : settings) {
        const std::string joined =
            lines[line].empty() ? setting : lines[line] + "   \u00B7   " + setting;
        if (line == 0 && canvas.textWidth(joined, style) > width)
            lines[line = 1] = setting;
        else
            lines[line] = joined;
    }
    canvas.text(kMargin, 76, lines[0], style);
    canvas.text(kMargin, 98, canvas.fitted(lines[1], width, style), style);
}

/// One circle for a sound of one channel, two that overlap for more.
void drawChannels(Canvas& canvas, double x, double y, std::uint32_t channels) {
    constexpr double kRadius = 4.5, kApart = 5.5;
    canvas.setColour(theme::faintText);
    cairo_set_line_width(canvas.context(), 1.2);
    for (std::uint32_t i = 0; i < std::min(channels, 2u); ++i) {
        cairo_new_sub_path(canvas.context());
        cairo_arc(canvas.context(), x + kRadius + i * kApart, y, kRadius, 0, 2 * std::numbers::pi);
    }
    cairo_stroke(canvas.context());
}

std::string channelsText(std::uint32_t channels) {
    return channels == 1   ? "mono"
           : channels == 2 ? "stereo"
                           : std::to_string(channels) + " channels";
}

} // namespace

PictureGrid RenderPage::grid() {
    return {.source = static_cast<std::size_t>(kMapHeight),
            .time = static_cast<std::size_t>(kLaneWidth),
            .frequencies = static_cast<std::size_t>(kSpectrumHeight)};
}

RenderPage::RenderPage(const RenderPicture& picture)
    : picture_(picture), times_(timeTicks(picture.seconds, 14)),
      events_(picture.map.events, kLaneWidth, picture.seconds) {
    double y = kLanesY;
    const auto lane = [&y](double height, double gap) {
        const Box box = {kLaneX, y, kLaneWidth, height};
        y += heightWithGap(height, gap);
        return box;
    };
    labels_ = lane(events_.height(), 0);
    map_ = lane(kMapHeight, kSmallGap);
    source_ = {kSourceX, map_.y, kSourceWidth, map_.height};
    pans_ = lane(kPansHeight, kGap);
    left_ = picture.isStereo ? lane(kSideHeight, kSmallGap) : lane(kMonoHeight, kGap);
    right_ = picture.isStereo ? lane(kSideHeight, kGap) : left_;
    notes_ = lane(notesHeight(picture.notes), kSmallGap + 2);
    paths_ = lane(pathsHeight(picture.paths.size()), kGap);
    spectrum_ = lane(kSpectrumHeight, 0);
}

int RenderPage::height() const {
    return static_cast<int>(spectrum_.bottom() + kFooter);
}

void RenderPage::drawHeader(Canvas& canvas) const {
    const PictureTexts& texts = picture_.texts;
    const TextStyle title = {
        .colour = theme::title, .size = theme::titleSize, .weight = TextWeight::bold};
    canvas.text(kMargin, 45, canvas.fitted(texts.title, kWidth - 2 * kMargin - 160, title), title);
    canvas.text(kWidth - kMargin, 45, "Zephyra",
                {.colour = theme::faintText, .size = 17, .anchor = TextAnchor::right});
    drawSettings(canvas, texts.settings);
}

void RenderPage::drawFacts(Canvas& canvas) const {
    double y = pans_.y + 20;
    for (const std::string& fact : picture_.texts.facts) {
        canvas.text(kMargin, y, canvas.fitted(fact, 130), {.size = 13.5});
        y += 24;
    }
}

void RenderPage::drawSource(Canvas& canvas) const {
    canvas.fill(source_, theme::panel);
    const auto columns = picture_.source.columns();
    const double seconds = picture_.sourceSeconds;
    drawUprightAxis(canvas, source_, timeTicks(seconds, 12),
                    std::string("source (") + timeUnit(seconds) + ")");
    drawWaveform(canvas, source_, columns, theme::source, std::max(largestLevel(columns), 1e-6),
                 WaveformDirection::upwards);
    canvas.outline(source_, theme::frame);

    if (picture_.sourceChannels == 0) return;
    const TextStyle style = {.colour = theme::faintText, .size = theme::tickSize};
    drawChannels(canvas, source_.x, source_.y - 13.5, picture_.sourceChannels);
    canvas.text(source_.x + (picture_.sourceChannels > 1 ? 21 : 15), source_.y - 9,
                channelsText(picture_.sourceChannels), style);
}

void RenderPage::drawGrains(Canvas& canvas) const {
    canvas.fill(map_, theme::panel);
    drawSourceGlow(canvas, map_, picture_.source.columns());
    drawUprightAxis(canvas, map_, roundTicks(0, 100, 10), "", AxisSide::right);
    canvas.text(map_.right() + 8, map_.y - 9, "%",
                {.colour = theme::faintText, .size = theme::tickSize});
    drawTimeGrid(canvas, map_, times_);
    drawGrainMap(canvas, map_, picture_.map);
    drawPitchLegend(canvas, {kLegendX, map_.y, kLegendWidth, map_.height},
                    pitchRange(picture_.map));
    canvas.outline(map_, theme::frame);

    canvas.fill(pans_, theme::panel);
    drawUprightAxis(canvas, pans_, {{0.91, "L"}, {0.5, ""}, {0.09, "R"}}, "pan");
    drawTimeGrid(canvas, pans_, times_);
    drawPans(canvas, pans_, picture_.map);
    canvas.outline(pans_, theme::frame);
    events_.draw(canvas, labels_, map_.bottom());
}

void RenderPage::drawOutput(Canvas& canvas) const {
    const auto left = picture_.left.columns(), right = picture_.right.columns();
    const double scale = waveformScale(std::max(largestLevel(left), largestLevel(right)));
    const auto draw = [&](const Box& box, const std::vector<WaveformColumns::Column>& columns,
                          const char* name) {
        canvas.fill(box, theme::panel);
        drawUprightAxis(canvas, box, levelTicks(scale), name);
        drawTimeGrid(canvas, box, times_);
        drawWaveform(canvas, box, columns, theme::output, scale);
        canvas.outline(box, theme::frame);
    };
    draw(left_, left, picture_.isStereo ? "left (dB)" : "mono (dB)");
    if (picture_.isStereo) draw(right_, right, "right (dB)");
}

void RenderPage::drawMotion(Canvas& canvas) const {
    if (!picture_.notes.empty()) {
        drawNotes(canvas, notes_, picture_.notes, picture_.seconds, times_);
        canvas.text(notes_.x - 9, notes_.y + notes_.height / 2 + 4, "notes",
                    {.size = 13, .anchor = TextAnchor::right});
    }
    drawPaths(canvas, paths_, kMargin, picture_.paths, times_);
}

void RenderPage::drawSpectrum(Canvas& canvas) const {
    const SpectrumColumns& spectrum = picture_.spectrum;
    const LevelRange range = levelRange(spectrum);
    drawSpectrogram(canvas, spectrum_, spectrum, range);
    drawUprightAxis(canvas, spectrum_,
                    frequencyTicks(SpectrumColumns::kLowestFrequency, spectrum.highestFrequency()),
                    "output (Hz)");
    drawTimeAxis(canvas, spectrum_, times_,
                 std::string("time (") + timeUnit(picture_.seconds) + ")");
    drawLevelLegend(canvas, {kLegendX, spectrum_.y, kLegendWidth, spectrum_.height}, range);
    canvas.outline(spectrum_, theme::frame);
}

void RenderPage::draw(Canvas& canvas) const {
    drawHeader(canvas);
    drawFacts(canvas);
    drawSource(canvas);
    drawGrains(canvas);
    drawOutput(canvas);
    drawMotion(canvas);
    drawSpectrum(canvas);
}

} // namespace zephyra
