#include "rendering/events/midi_tracks.h"

#include "platform/text/message_text.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace zephyra {

namespace {

constexpr unsigned kSysEx = 0xF0, kEscape = 0xF7, kMeta = 0xFF, kEndOfTrack = 0x2F, kTempo = 0x51,
                   kMeter = 0x58;
constexpr std::uint32_t kMostTicks = 1u << 28; // what four bytes of seven bits can say
constexpr std::size_t kHeaderBytes = 6;
constexpr std::string_view kHeaderName = "MThd", kTrackName = "MTrk";

/// Takes bytes from the front; none when there are not enough.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : rest_(bytes) {}

    std::string_view rest() const { return rest_; }

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

/// Of a file that lost something on its way.
Failure damaged(const std::string& what) {
    return {what + "; save it again, or fetch another copy"};
}

/// How many data bytes a channel message has.
std::size_t dataBytes(unsigned status) {
    const unsigned kind = status >> 4;
    return kind == 0xC || kind == 0xD ? 1 : 2;
}

/// One track on its way into the tracks of its file.
class Track {
public:
    Track(std::string_view content, MidiTracks& to) : from_(content), to_(to) {}

    Result<void> read() {
        while (!ended_)
            if (const auto whole = takeEvent(); !whole) return whole;
        if (from_.rest().empty()) return {};
        return Failure{"events follow its end mark"};
    }

    /// Whether a message repeats the status of one before a meta or system-exclusive event.
    bool runsAcross() const { return runsAcross_; }

private:
    static Failure endless() { return {"an event does not end within it"}; }

    Result<void> takeEvent() {
        if (from_.rest().empty()) return Failure{"its end mark is missing"};
        const auto wait = from_.variable();
        const auto first = from_.number(1);
        if (!wait || !first) return endless();
        tick_ += *wait;
        if (tick_ >= kMostTicks)
            return Failure{"it lasts longer than " + std::to_string(kMostTicks - 1) + " ticks"};
        const bool isLong = *first == kMeta || *first == kSysEx || *first == kEscape;
        return isLong ? takeLong(*first) : takeMessage(*first);
    }

    /// An event with a length of its own.
    Result<void> takeLong(unsigned status) {
        interrupted_ = true;
        const auto type = status == kMeta ? from_.number(1) : std::optional<std::uint32_t>(0);
        const auto length = from_.variable();
        const auto data = type && length ? from_.take(*length) : std::nullopt;
        if (!data) return endless();
        if (status != kMeta) return {};
        ended_ = *type == kEndOfTrack;
        if (*type == kTempo && data->size() == 3)
            if (const std::uint32_t microseconds = *Bytes(*data).number(3); microseconds > 0)
                to_.tempos.push_back({tick_, microseconds});
        if (*type == kMeter && data->size() == 4) takeMeter(Bytes(*data));
        return {};
    }

    /// The value is a power of two; clicks and 32nds behind it are for metronomes and sheets.
    void takeMeter(Bytes data) {
        constexpr std::uint32_t kShortest = 6; // a 64th
        const auto beats = *data.number(1), power = *data.number(1);
        if (beats > 0 && power <= kShortest)
            to_.meters.push_back(
                {tick_, static_cast<std::uint8_t>(beats), static_cast<std::uint8_t>(1u << power)});
    }

    /// A channel message, which may go on with the status of the one before.
    Result<void> takeMessage(unsigned first) {
        const bool repeats = first < 0x80;
        if (repeats && status_ == 0) return Failure{"an event has no status"};
        if (first >= kSysEx) return Failure{"an event has a status that files do not know"};
        if (!repeats) status_ = first;
        if (repeats && interrupted_) runsAcross_ = true;
        interrupted_ = false;
        const std::size_t given = repeats ? 1 : 0;
        const auto data = from_.take(dataBytes(status_) - given);
        if (!data) return endless();
        TickedMidi message{.tick = tick_,
                           .length = static_cast<std::uint8_t>(1 + dataBytes(status_)),
                           .bytes = {static_cast<std::uint8_t>(status_)}};
        if (repeats) message.bytes[1] = static_cast<std::uint8_t>(first);
        std::copy(data->begin(), data->end(), &message.bytes[1 + given]);
        if (std::any_of(&message.bytes[1], message.bytes.end(), [](auto b) { return b >= 0x80; }))
            return Failure{"a message breaks off"};
        to_.messages.push_back(message);
        return {};
    }

    Bytes from_;
    MidiTracks& to_;
    std::uint32_t tick_ = 0;
    unsigned status_ = 0;      // the one that a message without one repeats
    bool interrupted_ = false; // by a meta or system-exclusive event since the last message
    bool runsAcross_ = false, ended_ = false;
};

/// How many tracks the header announces.
Result<std::uint32_t> takeHeader(Bytes& bytes, MidiTracks& file) {
    if (bytes.take(4) != kHeaderName)
        return Failure{"it does not begin with MThd; choose a standard MIDI file"};
    const auto length = bytes.number(4);
    const auto content = length ? bytes.take(*length) : std::nullopt;
    if (!content || content->size() < kHeaderBytes) return damaged("its header is cut off");
    Bytes header(*content);
    const std::uint32_t format = *header.number(2), tracks = *header.number(2);
    file.ticksPerBeat = *header.number(2);
    if (format > 1) // the tracks of format 2 are no voices of one piece
        return Failure{"its format is " + std::to_string(format) + "; save it with format 0 or 1"};
    if (file.ticksPerBeat == 0 || file.ticksPerBeat >= 0x8000)
        return Failure{"its time is not in beats; save it with ticks per quarter note"};
    if (content->size() > kHeaderBytes)
        file.notices.push_back("its header is longer than " + counted(kHeaderBytes, "byte") +
                               "; what follows them is skipped");
    return tracks;
}

struct Chunk {
    std::string_view name, content;
};

/// None, and nothing taken, where no whole chunk of this file stands.
std::optional<Chunk> takeChunk(Bytes& bytes) {
    Bytes after = bytes;
    const auto name = after.take(4);
    const auto size = after.number(4);
    const auto content = name && size ? after.take(*size) : std::nullopt;
    if (!content || *name == kHeaderName) return std::nullopt;
    // What follows the last track may be anything; before a track a chunk may have any name.
    const bool isName =
        std::all_of(name->begin(), name->end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (!isName && !after.rest().starts_with(kTrackName)) return std::nullopt;
    bytes = after;
    return Chunk{*name, *content};
}

/// What a file's chunks turned out to be.
struct Chunks {
    std::size_t tracks = 0, others = 0;
    bool statusRunsAcross = false; ///< meta or system-exclusive events
};

Result<Chunks> takeChunks(Bytes& bytes, MidiTracks& file) {
    Chunks found;
    while (const auto chunk = takeChunk(bytes)) {
        if (chunk->name != kTrackName) {
            ++found.others;
            continue;
        }
        ++found.tracks;
        Track track(chunk->content, file);
        if (const auto read = track.read(); !read)
            return damaged("its track " + std::to_string(found.tracks) + " is damaged (" +
                           read.message() + ")");
        if (track.runsAcross()) found.statusRunsAcross = true;
    }
    return found;
}

/// announced is how many tracks there should be, left how many bytes are no chunks.
void addNotices(const Chunks& found, std::size_t announced, std::size_t left,
                std::vector<std::string>& notices) {
    const auto are = [](std::size_t count) { return count == 1 ? " is " : " are "; };
    if (found.tracks != announced)
        notices.push_back("its header announces " + counted(announced, "track") + "; it holds " +
                          std::to_string(found.tracks) + ", which" + are(found.tracks) + "played");
    if (found.others > 0)
        notices.push_back(counted(found.others, "chunk") + " of another kind than tracks" +
                          are(found.others) + "skipped");
    if (found.statusRunsAcross)
        notices.push_back("messages after a meta or system-exclusive event leave their status out; "
                          "that of the message before is taken");
    if (left > 0)
        notices.push_back(counted(left, "byte") + " after the last track" + are(left) + "ignored");
}

} // namespace

Result<MidiTracks> readMidiTracks(std::string_view all) {
    Bytes bytes(all);
    MidiTracks file;
    const Result<std::uint32_t> announced = takeHeader(bytes, file);
    if (!announced) return Failure{announced.message()};
    const Result<Chunks> found = takeChunks(bytes, file);
    if (!found) return Failure{found.message()};
    const std::size_t tracks = found.value().tracks;
    const std::string_view left = bytes.rest();
    if (left.starts_with(kTrackName) || (tracks < announced.value() && !left.empty()))
        return damaged("it is cut off in its track " + std::to_string(tracks + 1));
    if (tracks == 0) return damaged("it holds no track");
    addNotices(found.value(), announced.value(), left.size(), file.notices);
    return file;
}

} // namespace zephyra
