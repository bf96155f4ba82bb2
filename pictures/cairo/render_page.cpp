#include "pictures/cairo/render_page.h"

#include "pictures/cairo/grain_lane.h"
#include "pictures/cairo/motion_lanes.h"
#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/sound_lanes.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>

namespace zephyra {

namespace {

// The page, in pixels: time runs along the three lanes of the same width; the source's waveform
// stands upright beside the grains, because both share the position in the source.
constexpr double kLaneX = 236, kLaneWidth = 1226;
constexpr Box kSourceBox = {84, 122, 138, 450};
constexpr Box kMapBox = {kLaneX, 122, kLaneWidth, 450};
constexpr Box kLeftBox = {kLaneX, 592, kLaneWidth, 80};
constexpr Box kRightBox = {kLaneX, 676, kLaneWidth, 80};
constexpr double kMotionY = 776; // notes and controls, if any; the spectrum moves down for them
constexpr double kSpectrumHeight = 264, kFooter = 60;
constexpr double kLegendX = 1516, kLegendWidth = 12;
constexpr double kMargin = 28;

double heightWithGap(double height, double gap) {
    return height > 0 ? height + gap : 0;
}

/// The source's level as a faint glow behind the grains, so that one sees what they read.
void drawSourceGlow(Canvas& canvas, const std::vector<WaveformColumns::Column>& columns) {
    constexpr double kBrightest = 0.2;
    double loudest = 1e-9;
    for (const WaveformColumns::Column& column : columns) loudest = std::max(loudest, column.rms());
    for (std::size_t row = 0; row < columns.size(); ++row)
        canvas.fill({kMapBox.x, kMapBox.bottom() - static_cast<double>(row) - 1, kMapBox.width, 1},
                    theme::source.faded(kBrightest * columns[row].rms() / loudest));
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

} // namespace

PictureGrid RenderPage::grid() {
    return {.source = static_cast<std::size_t>(kSourceBox.height),
            .time = static_cast<std::size_t>(kLaneWidth),
            .frequencies = static_cast<std::size_t>(kSpectrumHeight)};
}

RenderPage::RenderPage(const RenderPicture& picture)
    : picture_(picture), times_(timeTicks(picture.seconds, 14)) {
    const double notes = notesHeight(picture.notes), paths = pathsHeight(picture.paths.size());
    const double pathsY = kMotionY + heightWithGap(notes, 6);
    notes_ = {kLaneX, kMotionY, kLaneWidth, notes};
    paths_ = {kLaneX, pathsY, kLaneWidth, paths};
    spectrum_ = {kLaneX, pathsY + heightWithGap(paths, 20), kLaneWidth, kSpectrumHeight};
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

    double y = kLeftBox.y + 14;
    for (const std::string& fact : texts.facts) {
        canvas.text(kMargin, y, canvas.fitted(fact, 142), {.size = 13.5});
        y += 24;
    }
}

void RenderPage::drawSourceAndGrains(Canvas& canvas) const {
    canvas.fill(kSourceBox, theme::panel);
    canvas.fill(kMapBox, theme::panel);

    const auto columns = picture_.source.columns();
    const double seconds = picture_.sourceSeconds;
    drawUprightAxis(canvas, kSourceBox, timeTicks(seconds, 12),
                    std::string("source (") + timeUnit(seconds) + ")");
    drawWaveform(canvas, kSourceBox, columns, theme::source, std::max(largestLevel(columns), 1e-6),
                 WaveformDirection::upwards);

    drawSourceGlow(canvas, columns);
    drawUprightAxis(canvas, kMapBox, roundTicks(0, 100, 10), "", AxisSide::right);
    canvas.text(kMapBox.right() + 8, kMapBox.y - 9, "%",
                {.colour = theme::faintText, .size = theme::tickSize});
    drawTimeGrid(canvas, kMapBox, times_);
    drawGrainMap(canvas, kMapBox, picture_.map);
    drawPitchLegend(canvas, {kLegendX, kMapBox.y, kLegendWidth, kMapBox.height},
                    pitchRange(picture_.map));
    canvas.outline(kSourceBox, theme::frame);
    canvas.outline(kMapBox, theme::frame);
}

void RenderPage::drawOutput(Canvas& canvas) const {
    const auto left = picture_.left.columns(), right = picture_.right.columns();
    const double scale = waveformScale(std::max(largestLevel(left), largestLevel(right)));
    for (const auto& [box, columns, name] :
         {std::tuple(kLeftBox, &left, "left (dB)"), std::tuple(kRightBox, &right, "right (dB)")}) {
        canvas.fill(box, theme::panel);
        drawUprightAxis(canvas, box, levelTicks(scale), name);
        drawTimeGrid(canvas, box, times_);
        drawWaveform(canvas, box, *columns, theme::output, scale);
        canvas.outline(box, theme::frame);
    }
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
    drawSourceAndGrains(canvas);
    drawOutput(canvas);
    drawMotion(canvas);
    drawSpectrum(canvas);
}

} // namespace zephyra
