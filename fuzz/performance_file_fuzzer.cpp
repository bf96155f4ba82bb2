// Reads arbitrary bytes as a MIDI file and as a host's automation. Whatever comes, reading ends
// with one line of text, or with events in time's order whose values a control takes.

#include "fuzz/require.h"
#include "rendering/automation_file.h"
#include "rendering/midi_file.h"

namespace {

using namespace zephyra;

template <typename Events>
void requireOrder(const Result<Events>& events) {
    if (!events) {
        require(!events.message().empty());
        return;
    }
    double last = 0;
    for (const auto& event : events.value()) {
        require(event.seconds >= last);
        last = event.seconds;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    requireOrder(parseMidi(bytes, std::nullopt, "input"));
    requireOrder(parseMidi(bytes, 120.0, "input"));
    const auto points = parseAutomation(bytes, 120.0, "input");
    requireOrder(points);
    if (!points) return 0;
    for (const AutomationPoint& point : points.value()) {
        const ControlRange& range = controlRange(point.parameter);
        require(point.linear >= range.minimum && point.linear <= range.maximum);
    }
    return 0;
}
