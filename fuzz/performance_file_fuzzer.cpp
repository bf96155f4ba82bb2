// Reads arbitrary bytes as a MIDI file and as a host's automation. Whatever comes, reading ends
// with one line of text, or with events in time's order whose values a control takes.

#include "fuzz/require.h"
#include "rendering/events/automation_file.h"
#include "rendering/events/midi_file.h"

#include <cmath>

namespace {

using namespace zephyra;

template <typename Event>
void requireOrder(const std::vector<Event>& events) {
    double last = 0;
    for (const Event& event : events) {
        require(event.seconds >= last);
        last = event.seconds;
    }
}

void requireMidi(const std::string& bytes, std::optional<double> tempo) {
    const Result<MidiFile> file = parseMidi(bytes, tempo, "input");
    if (!file) return require(isOneLine(file.message()));
    requireOrder(file.value().messages);
    for (const std::string& notice : file.value().notices) require(isOneLine(notice));
    for (const TimedMidi& message : file.value().messages) {
        require(std::isfinite(message.seconds));
        require(message.bytes[0] >= 0x80 && message.bytes[0] < 0xF0);
        require(message.bytes[1] < 0x80 && message.bytes[2] < 0x80);
        require(message.length == 2 || message.length == 3);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    requireMidi(bytes, std::nullopt);
    requireMidi(bytes, 120.0);
    const auto points = parseAutomation(bytes, 120.0, "input");
    if (!points) {
        require(isOneLine(points.message()));
        return 0;
    }
    requireOrder(points.value());
    for (const AutomationPoint& point : points.value()) {
        const ControlRange& range = controlRange(point.parameter);
        require(point.linear >= range.minimum && point.linear <= range.maximum);
    }
    return 0;
}
