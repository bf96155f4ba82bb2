#include "rendering/midi_clean.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace zephyra {

namespace {

constexpr unsigned kSysEx = 0xF0, kEscape = 0xF7, kMeta = 0xFF, kEndOfTrack = 0x2F, kTempo = 0x51;
constexpr std::uint32_t kMostTicks = 1u << 28; // what four bytes of seven bits can say

/// Takes bytes from the front; none when there are not enough.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : rest_(bytes) {}

    bool empty() const { return rest_.empty(); }

    std::optional<std::string_view> take(std::size_t count) {
        if (count > rest_.size()) return std::nullopt;
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }

    /// count bytes, the most significant first.
    std::optional<std::uint32_t> number(std::size_t count) {
        const auto taken = take(count);
        if (!taken) return std::nullopt;
        std::uint32_t value = 0;
        for (const char byte : *taken) value = value << 8 | static_cast<unsigned char>(byte);
        return value;
    }

    /// Seven bits a byte, at most four bytes.
    std::optional<std::uint32_t> variable() {
        std::uint32_t value = 0;
        for (int i = 0; i < 4; ++i) {
            const auto byte = number(1);
            if (!byte) return std::nullopt;
            value = value << 7 | (*byte & 0x7F);
            if (*byte < 0x80) return value;
        }
        return std::nullopt;
    }

private:
    std::string_view rest_;
};

std::string bigEndian(std::uint32_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> 8 * i & 0xFF);
    return text;
}

/// Seven bits a byte, always four bytes.
std::string variableText(std::uint32_t value) {
    std::string text;
    for (int i = 3; i >= 0; --i)
        text += static_cast<char>((value >> 7 * i & 0x7F) | (i > 0 ? 0x80u : 0u));
    return text;
}

/// How many data bytes a channel message has.
std::size_t dataBytes(unsigned status) {
    const unsigned kind = status >> 4;
    return kind == 0xC || kind == 0xD ? 1 : 2;
}

enum class Event { broken, whole, lastOfTrack };

/// One track on its way from the file to the clean one.
class Track {
public:
    explicit Track(Bytes from) : from_(from) {}

    /// None when it is damaged.
    std::optional<std::string> clean() {
        for (;;) {
            const Event event = takeEvent();
            if (event == Event::broken) return std::nullopt;
            if (event == Event::whole) continue;
            if (!from_.empty()) return std::nullopt;
            keep(std::string{static_cast<char>(kMeta), static_cast<char>(kEndOfTrack), '\0'});
            return "MTrk" + bigEndian(static_cast<std::uint32_t>(to_.size()), 4) + to_;
        }
    }

private:
    Event takeEvent() {
        const auto wait = from_.variable();
        const auto first = from_.number(1);
        if (!wait || !first) return Event::broken;
        waited_ += *wait;
        ticks_ += *wait;
        if (ticks_ >= kMostTicks) return Event::broken;
        if (*first == kMeta || *first == kSysEx || *first == kEscape) {
            running_ = 0; // these end a run
            return takeLong(*first);
        }
        return takeMessage(*first);
    }

    /// An event with a length of its own.
    Event takeLong(unsigned status) {
        const auto type = status == kMeta ? from_.number(1) : std::optional<std::uint32_t>(0);
        const auto length = from_.variable();
        const auto data = type && length ? from_.take(*length) : std::nullopt;
        if (!data) return Event::broken;
        if (status != kMeta) return Event::whole;
        if (*type == kTempo && data->size() == 3 && data->find_first_not_of('\0') != data->npos)
            keep(std::string{static_cast<char>(kMeta), static_cast<char>(kTempo), 3} +
                 std::string(*data));
        return *type == kEndOfTrack ? Event::lastOfTrack : Event::whole;
    }

    /// A channel message, which may go on with the status of the one before.
    Event takeMessage(unsigned first) {
        const bool repeats = first < 0x80;
        if (!repeats) running_ = first;
        if (running_ < 0x80 || running_ >= kSysEx) return Event::broken;
        const auto data = from_.take(dataBytes(running_) - (repeats ? 1 : 0));
        if (!data) return Event::broken;
        for (const char byte : *data)
            if (static_cast<unsigned char>(byte) >= 0x80) return Event::broken;
        std::string message{static_cast<char>(running_)};
        if (repeats) message += static_cast<char>(first);
        keep(message + std::string(*data));
        return Event::whole;
    }

    void keep(const std::string& event) {
        to_ += variableText(waited_) + event;
        waited_ = 0;
    }

    Bytes from_;
    std::string to_;
    unsigned running_ = 0;     // the status that a message without one repeats
    std::uint32_t waited_ = 0; // ticks since the last event that was kept
    std::uint32_t ticks_ = 0;
};

} // namespace

Result<std::string> cleanMidi(std::string_view all) {
    Bytes bytes(all);
    const auto mark = bytes.take(4);
    if (!mark || *mark != "MThd") return Failure{"it does not begin like a MIDI file"};
    const auto length = bytes.number(4);
    const auto format = bytes.number(2), tracks = bytes.number(2), beat = bytes.number(2);
    if (!length || *length != 6 || !format || *format > 2 || !tracks || *tracks == 0 || !beat)
        return Failure{"its header is damaged"};
    if (*beat == 0 || *beat >= 0x8000)
        return Failure{"its time is not in beats; save it with ticks per quarter note"};
    std::string clean(all.substr(0, 14));
    std::uint32_t found = 0;
    while (!bytes.empty()) {
        const auto kind = bytes.take(4);
        const auto size = bytes.number(4);
        const auto content = kind && size ? bytes.take(*size) : std::nullopt;
        if (!content) return Failure{"it ends in the middle"};
        if (*kind != "MTrk") continue;
        ++found;
        const auto track = Track(Bytes(*content)).clean();
        if (!track) return Failure{"its track " + std::to_string(found) + " is damaged"};
        clean += *track;
    }
    if (found == *tracks) return clean;
    return Failure{"it holds " + std::to_string(found) + " tracks of " + std::to_string(*tracks)};
}

} // namespace zephyra
