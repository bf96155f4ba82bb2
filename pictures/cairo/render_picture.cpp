#include "pictures/cairo/render_picture.h"

#include "pictures/cairo/paths_lane.h"
#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/spectrogram_lane.h"
#include "pictures/cairo/waveform_lane.h"

#include <algorithm>
#include <cmath>

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
constexpr double kScanStepsPerPixel = 8;

std::size_t pixels(double length) {
    return static_cast<std::size_t>(length);
}

double secondsOf(std::uint64_t frames, double sampleRate) {
    return static_cast<double>(frames) / sampleRate;
}

std::vector<Tick> outputTimes(const PictureScales& scales) {
    return timeTicks(secondsOf(scales.frames, scales.sampleRate), 14);
}

double largest(const std::vector<WaveformColumns::Column>& columns) {
    double most = 0;
    for (const WaveformColumns::Column& column : columns)
        most = std::max({most, std::abs(double{column.low}), std::abs(double{column.high})});
    return most;
}

/// Decibels at both sides of a waveform's middle, down from full scale.
std::vector<Tick> waveformTicks(double scale) {
    std::vector<Tick> ticks = {{0.5, "-\u221E"}};
    for (const double decibels : {0.0, -6.0, -12.0, -24.0, -36.0}) {
        const double height = std::pow(10.0, decibels / 20) / scale;
        if (height > 1.001 || ticks.size() > 4) continue;
        const std::string label = std::to_string(static_cast<int>(decibels));
        ticks.push_back({0.5 + height / 2, height > 0.3 ? label : ""});
        ticks.push_back({0.5 - height / 2, ""}); // the same below the middle
    }
    return ticks;
}

/// A scale that fills the lane: full scale, or less for quiet sounds, or more for too loud ones.
double waveformScale(double peak) {
    if (peak > 1) return peak;
    for (const double scale : {0.0625, 0.125, 0.25, 0.5})
        if (peak <= scale) return scale;
    return 1;
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

double heightWithGap(double height, double gap) {
    return height > 0 ? height + gap : 0;
}

/// As many settings to a line as fit, on two lines.
void drawSettings(Canvas& canvas, const std::vector<std::string>& settings) {
    const TextStyle style = {.colour = theme::text, .size = 13.5};
    const double width = RenderPicture::kWidth - 2 * kMargin;
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

RenderPicture::RenderPicture(const PictureScales& scales)
    : scales_(scales), source_(scales.sourceFrames, pixels(kSourceBox.height)),
      left_(scales.frames, pixels(kLaneWidth)), right_(scales.frames, pixels(kLaneWidth)),
      spectrum_(scales.frames, scales.sampleRate, pixels(kLaneWidth), pixels(kSpectrumHeight)),
      paths_(scales.moved, secondsOf(scales.frames, scales.sampleRate), pixels(kLaneWidth)) {
    map_.seconds = secondsOf(scales.frames, scales.sampleRate);
    map_.playSeconds = map_.seconds;
    const double notes = notesHeight(scales.notes), paths = pathsHeight(scales.moved.size());
    const double pathsY = kMotionY + heightWithGap(notes, 6);
    page_ = {.notes = {kLaneX, kMotionY, kLaneWidth, notes},
             .paths = {kLaneX, pathsY, kLaneWidth, paths},
             .spectrum = {kLaneX, pathsY + heightWithGap(paths, 20), kLaneWidth, kSpectrumHeight}};
}

int RenderPicture::height() const {
    return static_cast<int>(page_.spectrum.bottom() + kFooter);
}

void RenderPicture::addSource(std::span<const float> samples) {
    source_.add(samples.data(), samples.size());
}

void RenderPicture::addOutput(const float* left, const float* right, std::size_t frames) {
    left_.add(left, frames);
    right_.add(right, frames);
    spectrum_.add(left, right, frames);
}

void RenderPicture::addScan(const ScanMark& mark) {
    const double step = map_.seconds / (kLaneWidth * kScanStepsPerPixel);
    if (map_.scan.empty() || mark.seconds - map_.scan.back().seconds >= step)
        map_.scan.push_back(mark);
}

void RenderPicture::drawHeader(Canvas& canvas, const PictureTexts& texts) const {
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

void RenderPicture::drawSourceAndGrains(Canvas& canvas) const {
    const double sourceSeconds = secondsOf(scales_.sourceFrames, scales_.sourceRate);
    canvas.fill(kSourceBox, theme::panel);
    canvas.fill(kMapBox, theme::panel);

    const auto columns = source_.columns();
    drawUprightAxis(canvas, kSourceBox, timeTicks(sourceSeconds, 12),
                    std::string("source (") + timeUnit(sourceSeconds) + ")");
    drawWaveform(canvas, kSourceBox, columns, theme::source, std::max(largest(columns), 1e-6),
                 WaveformDirection::upwards);

    drawSourceGlow(canvas, columns);
    drawUprightAxis(canvas, kMapBox, roundTicks(0, 100, 10), "", AxisSide::right);
    canvas.text(kMapBox.right() + 8, kMapBox.y - 9, "%",
                {.colour = theme::faintText, .size = theme::tickSize});
    drawTimeGrid(canvas, kMapBox, outputTimes(scales_));
    drawGrainMap(canvas, kMapBox, map_);
    drawPitchLegend(canvas, {kLegendX, kMapBox.y, kLegendWidth, kMapBox.height}, pitchRange(map_));
    canvas.outline(kSourceBox, theme::frame);
    canvas.outline(kMapBox, theme::frame);
}

void RenderPicture::drawOutput(Canvas& canvas) const {
    const auto left = left_.columns(), right = right_.columns();
    const double scale = waveformScale(std::max(largest(left), largest(right)));
    for (const auto& [box, columns, name] :
         {std::tuple(kLeftBox, &left, "left (dB)"), std::tuple(kRightBox, &right, "right (dB)")}) {
        canvas.fill(box, theme::panel);
        drawUprightAxis(canvas, box, waveformTicks(scale), name);
        drawTimeGrid(canvas, box, outputTimes(scales_));
        drawWaveform(canvas, box, *columns, theme::output, scale);
        canvas.outline(box, theme::frame);
    }
}

void RenderPicture::drawMotion(Canvas& canvas) const {
    if (!scales_.notes.empty()) {
        const Box& box = page_.notes;
        drawNotes(canvas, box, scales_.notes, map_.seconds, outputTimes(scales_));
        canvas.text(box.x - 9, box.y + box.height / 2 + 4, "notes",
                    {.size = 13, .anchor = TextAnchor::right});
    }
    drawPaths(canvas, page_.paths, kMargin, paths_.all(), outputTimes(scales_));
}

void RenderPicture::drawSpectrum(Canvas& canvas) const {
    const Box& box = page_.spectrum;
    const LevelRange range = levelRange(spectrum_);
    drawSpectrogram(canvas, box, spectrum_, range);
    drawUprightAxis(canvas, box,
                    frequencyTicks(SpectrumColumns::kLowestFrequency, spectrum_.highestFrequency()),
                    "output (Hz)");
    drawTimeAxis(canvas, box, outputTimes(scales_),
                 std::string("time (") + timeUnit(map_.seconds) + ")");
    drawLevelLegend(canvas, {kLegendX, box.y, kLegendWidth, box.height}, range);
    canvas.outline(box, theme::frame);
}

void RenderPicture::draw(Canvas& canvas, const PictureTexts& texts) {
    spectrum_.finish();
    drawHeader(canvas, texts);
    drawSourceAndGrains(canvas);
    drawOutput(canvas);
    drawMotion(canvas);
    drawSpectrum(canvas);
}

} // namespace zephyra
