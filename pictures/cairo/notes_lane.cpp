#include "pictures/cairo/notes_lane.h"

#include "controls/named_knobs.h"
#include "platform/audio_unit/midi_message.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zephyra {

namespace {

constexpr Colour kNoteColour = Colour::hex(0x8FB8FF);
constexpr double kLaneHeight = 64;
constexpr double kNames = 16, kNameSize = 11.5; // pixels of the names above the notes
constexpr double kNarrowest = 2, kThickest = 9; // pixels of a note, so that every one can be seen
constexpr double kMargin = 4;                   // pixels below the lowest

struct Span {
    int low, high;
};

Span numbers(const std::vector<NoteMark>& notes) {
    const auto [low, high] =
        std::minmax_element(notes.begin(), notes.end(), [](const NoteMark& a, const NoteMark& b) {
            return a.number < b.number;
        });
    return {low->number, high->number};
}

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

} // namespace

std::vector<NoteMark> notesOf(const std::vector<TimedMidi>& messages, double end) {
    std::vector<NoteMark> notes;
    std::vector<int> sounding(16 * 128, -1); // by channel and number: its place in notes
    for (const TimedMidi& timed : messages) {
        const MidiMessage message{timed.bytes};
        const bool on = message.kind() == MidiKind::noteOn;
        if (timed.seconds >= end || (!on && message.kind() != MidiKind::noteOff)) continue;
        int& place =
            sounding[static_cast<std::size_t>((message.channel() - 1) * 128 + message.data1())];
        if (place >= 0) {
            NoteMark& before = notes[static_cast<std::size_t>(place)];
            before.length = timed.seconds - before.seconds;
        }
        place = -1;
        if (!on || message.data2() == 0) continue;
        place = static_cast<int>(notes.size());
        notes.push_back(
            {timed.seconds, end - timed.seconds, message.data1(), message.data2() / 127.0});
    }
    return notes;
}

double notesHeight(const std::vector<NoteMark>& notes) {
    return notes.empty() ? 0 : kLaneHeight;
}

void drawNotes(Canvas& canvas, const Box& box, const std::vector<NoteMark>& notes, double seconds,
               const std::vector<Tick>& grid) {
    canvas.fill(box, theme::panel);
    drawTimeGrid(canvas, box, grid);
    canvas.clip(box);
    if (!notes.empty()) {
        const Span span = numbers(notes);
        const double step = (box.height - kNames - kMargin) / (span.high - span.low + 1);
        const double thickness = std::clamp(step - 1, kNarrowest, kThickest);
        std::vector<Box> bars;
        for (const NoteMark& note : notes) {
            const double middle = box.y + kNames + (span.high - note.number + 0.5) * step;
            bars.push_back({box.x + note.seconds / seconds * box.width, middle - thickness / 2,
                            std::max(note.length / seconds * box.width, kNarrowest), thickness});
            canvas.fill(bars.back(), kNoteColour.faded(0.35 + 0.65 * note.velocity));
        }
        drawNames(canvas, box, notes, bars);
    }
    canvas.resetClip();
    canvas.outline(box, theme::frame);
}

} // namespace zephyra
