#include "pictures/cairo/motion_lanes.h"

#include "controls/named_knobs.h"
#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace zephyra {

namespace {

// The notes' lane, in pixels.
constexpr Colour kNoteColour = Colour::hex(0x8FB8FF);
constexpr double kNotesHeight = 64;
constexpr double kNames = 16, kNameSize = 11.5; // above the notes
constexpr double kBelow = 4;                    // the lowest note
constexpr double kNarrowest = 2, kThickest = 9; // of a note, so that every one can be seen

// The paths' rows, in pixels.
constexpr double kGap = 4, kInset = 4; // between rows, and from a row's edge to its path
constexpr double kLowest = 28;         // below that nothing can be read
constexpr double kLabelGap = 9;        // between names and rows
constexpr std::array<Colour, 8> kPathColours = {
    Colour::hex(0x6FE0B0), Colour::hex(0xFFB454), Colour::hex(0x5FB6F0), Colour::hex(0xF4729A),
    Colour::hex(0xC3E06B), Colour::hex(0xB693FF), Colour::hex(0xFFE08A), Colour::hex(0x5FD9E0),
};

/// Names where the one before leaves room, each above its note's beginning.
void drawNames(Canvas& canvas, const Box& box, const std::vector<NoteMark>& notes,
               const std::vector<Box>& bars) {
    const TextStyle style = {.size = kNameSize};
    double used = box.x;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const std::string name = midiNoteName(notes[i].number);
        const double width = canvas.textWidth(name, style);
        const double x = std::min(bars[i].x, box.right() - width - 2);
        if (x < used) continue;
        used = x + width + 6;
        canvas.text(x, box.y + kNames - 4, name, style);
    }
}

/// One row with the gap below it.
double rowPitch(std::size_t count) {
    return std::clamp(240.0 / static_cast<double>(count), kLowest + kGap, 64.0 + kGap);
}

/// A line through all that was seen; many values within a column become an upright stroke.
void tracePath(Canvas& canvas, const Box& row, const ControlPath& path) {
    const auto y = [&row, &path](float value) {
        return row.bottom() - kInset - path.heightOf(value) * (row.height - 2 * kInset);
    };
    cairo_t* const context = canvas.context();
    const double step = row.width / static_cast<double>(path.columns.size());
    double last = y(path.columns.front().first);
    cairo_move_to(context, row.x, last);
    for (std::size_t i = 0; i < path.columns.size(); ++i) {
        const SeenValues& column = path.columns[i];
        if (column.count == 0) continue;
        const double x = row.x + (static_cast<double>(i) + 0.5) * step;
        for (const float value : {column.first, column.low, column.high, column.last})
            cairo_line_to(context, x, last = y(value));
    }
    cairo_line_to(context, row.right(), last);
}

void drawLabels(Canvas& canvas, const Box& row, double labelsX, const ControlPath& path,
                const Colour& colour) {
    const double right = row.x - kLabelGap, width = right - labelsX;
    const double middle = row.y + row.height / 2;
    const TextStyle name = {.colour = colour, .size = 13, .anchor = TextAnchor::right};
    const TextStyle mover = {.colour = theme::faintText, .size = 11.5, .anchor = TextAnchor::right};
    canvas.text(right, middle - 2, canvas.fitted(path.name, width, name), name);
    canvas.text(right, middle + 12, canvas.fitted(path.mover, width, mover), mover);

    const TextStyle value = {.colour = theme::faintText, .size = 11.5};
    const double x = row.right() + kLabelGap;
    if (path.lowText == path.highText) {
        canvas.text(x, middle + 4, path.lowText, value);
        return;
    }
    canvas.text(x, row.y + 10, path.highText, value);
    canvas.text(x, row.bottom() - 2, path.lowText, value);
}

} // namespace

double notesHeight(const std::vector<NoteMark>& notes) {
    return notes.empty() ? 0 : kNotesHeight;
}

void drawNotes(Canvas& canvas, const Box& box, const std::vector<NoteMark>& notes, double seconds,
               const std::vector<Tick>& grid) {
    canvas.fill(box, theme::panel);
    drawTimeGrid(canvas, box, grid);
    canvas.clip(box);
    const NoteRange span = noteRange(notes);
    const double step = (box.height - kNames - kBelow) / (span.high - span.low + 1);
    const double thickness = std::clamp(step - 1, kNarrowest, kThickest);
    std::vector<Box> bars;
    for (const NoteMark& note : notes) {
        const double middle = box.y + kNames + (span.high - note.number + 0.5) * step;
        bars.push_back({box.x + note.seconds / seconds * box.width, middle - thickness / 2,
                        std::max(note.length / seconds * box.width, kNarrowest), thickness});
        canvas.fill(bars.back(), kNoteColour.faded(0.35 + 0.65 * note.velocity));
    }
    drawNames(canvas, box, notes, bars);
    canvas.resetClip();
    canvas.outline(box, theme::frame);
}

double pathsHeight(std::size_t count) {
    return count == 0 ? 0 : std::round(rowPitch(count) * static_cast<double>(count) - kGap);
}

void drawPaths(Canvas& canvas, const Box& box, double labelsX,
               const std::vector<ControlPath>& paths, const std::vector<Tick>& grid) {
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const double pitch = (box.height + kGap) / static_cast<double>(paths.size());
        const double top = std::round(box.y + pitch * static_cast<double>(i));
        const Box row = {box.x, top, box.width, std::round(pitch - kGap)};
        const Colour& colour = kPathColours[i % kPathColours.size()];
        canvas.fill(row, theme::panel);
        drawTimeGrid(canvas, row, grid);
        canvas.clip(row);
        canvas.setColour(colour);
        cairo_set_line_width(canvas.context(), 1.4);
        tracePath(canvas, row, paths[i]);
        cairo_stroke(canvas.context());
        canvas.resetClip();
        canvas.outline(row, theme::frame);
        drawLabels(canvas, row, labelsX, paths[i], colour);
    }
}

} // namespace zephyra
