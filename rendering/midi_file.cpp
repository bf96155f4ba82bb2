#include "rendering/midi_file.h"

#include "platform/files/small_file.h"
#include "rendering/midi_clean.h"
#include "rendering/time_order.h"

#include <algorithm>
#include <cmath>
#include <glib.h>
#include <memory>
#include <smf.h>

namespace zephyra {

namespace {

struct SmfDeleter {
    void operator()(smf_t* smf) const noexcept { smf_delete(smf); }
};

/// The library reports through its log what the answer says as well.
void ignoreLog(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

bool isChannelMessage(const smf_event_t& event) {
    return event.midi_buffer && event.midi_buffer_length >= 2 && event.midi_buffer_length <= 3 &&
           event.midi_buffer[0] >= 0x80 && event.midi_buffer[0] < 0xF0;
}

} // namespace

Result<std::vector<TimedMidi>> parseMidi(std::string_view bytes, std::optional<double> tempo,
                                         const std::string& where) {
    const auto unreadable = [&where](const std::string& reason) {
        return Failure{where + " is no MIDI file that can be read: " + reason};
    };
    // The library reads past the end of what is cut off, and ends the program over odd events.
    const Result<std::string> clean = cleanMidi(bytes);
    if (!clean) return unreadable(clean.message());
    const GLogFunc before = g_log_set_default_handler(ignoreLog, nullptr);
    const std::unique_ptr<smf_t, SmfDeleter> smf(
        smf_load_from_memory(clean.value().data(), static_cast<int>(clean.value().size())));
    g_log_set_default_handler(before, nullptr);
    if (!smf || smf->ppqn <= 0) return unreadable("its content is damaged");

    std::vector<TimedMidi> messages;
    while (const smf_event_t* const event = smf_get_next_event(smf.get())) {
        if (!isChannelMessage(*event)) continue;
        const double seconds =
            tempo ? static_cast<double>(event->time_pulses) / smf->ppqn * 60.0 / *tempo
                  : event->time_seconds;
        if (!std::isfinite(seconds) || seconds < 0) continue;
        TimedMidi message{.seconds = seconds,
                          .length = static_cast<std::uint8_t>(event->midi_buffer_length),
                          .bytes = {}};
        std::copy_n(event->midi_buffer, message.length, message.bytes.begin());
        messages.push_back(message);
    }
    sortByTime(messages);
    return messages;
}

Result<std::vector<TimedMidi>> readMidiFile(const std::filesystem::path& path,
                                            std::optional<double> tempo) {
    const Result<std::string> bytes = readSmallFile(path);
    if (!bytes) return Failure{bytes.message()};
    return parseMidi(bytes.value(), tempo, path.string());
}

} // namespace zephyra
