// What is read of MIDI files, whole, odd and broken ones.

#include "rendering/events/midi_file.h"

#include "platform/text/text_numbers.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

const std::string kFolder = ZEPHYRA_SOURCE_DIR "/fuzz/corpus/performance_file/";

/// "0.5 90 3C 40; " for each message.
std::string textOf(const MidiFile& file) {
    std::string text;
    for (const TimedMidi& message : file.messages) {
        text += formatShort(message.seconds);
        for (int i = 0; i < message.length; ++i) {
            char hex[8];
            std::snprintf(hex, sizeof hex, " %02X", message.bytes[static_cast<std::size_t>(i)]);
            text += hex;
        }
        text += "; ";
    }
    return text;
}

TEST(MidiFile, WholeAndOddFilesAreReadAndOddOnesGiveANotice) {
    const std::string note = "0 90 3C 40; 0.5 90 3C 00; ", slow = "0 90 3C 40; 1 90 3C 00; ",
                      across = "0 90 3C 40; 0.25 90 40 41; ",
                      leftOut = "messages after a meta or system-exclusive event leave their "
                                "status out; that of the message before is taken";
    const std::tuple<const char*, std::string, std::string> files[] = {
        {"five-notes", "0 99 3C 64; 1 99 43 64; 2 99 48 64; 3 99 37 64; 4 99 40 64; ", ""},
        {"two-tracks-tempo", "0 90 3C 40; 0.5 90 3C 00; 0.5 B0 01 40; ", ""},
        {"tempos-in-two-tracks",
         "0.3 C1 05; 0.6 D1 06; 0.75 E1 07 08; 1.8 B0 07 01; 1.8 81 3C 09; ", ""},
        // Half a beat at half a second a beat, half at one.
        {"tempo-after-the-notes", "0 90 3C 40; 0.75 90 3C 00; ", ""},
        {"tempo-of-nothing", note, ""},
        {"bytes-after-the-last-track", note, "12 bytes after the last track are ignored"},
        {"file-after-the-file", note, "34 bytes after the last track are ignored"},
        {"fewer-tracks-than-announced", note,
         "its header announces 3 tracks; it holds 1, which is played"},
        {"more-tracks-than-announced", slow,
         "its header announces 1 track; it holds 2, which are played"},
        {"longer-header", note, "its header is longer than 6 bytes; what follows them is skipped"},
        {"chunks-between-tracks", slow, "3 chunks of another kind than tracks are skipped"},
        {"chunk-without-a-name-before-the-track", note,
         "1 chunk of another kind than tracks is skipped"},
        {"status-runs-across-events", across + "0.5 90 43 42; ", leftOut},
        {"status-runs-across-a-text", across, leftOut},
        {"status-runs-across-a-sysex", across, leftOut}};
    for (const auto& [name, messages, notice] : files) {
        const std::string path = kFolder + name + ".mid";
        const auto read = must(readMidiFile(path, std::nullopt));
        EXPECT_EQ(textOf(read), messages) << name;
        std::vector<std::string> notices;
        if (!notice.empty()) notices = {path + ": " + notice};
        EXPECT_EQ(read.notices, notices);
    }
}

TEST(MidiFile, ItsBeatsArePlayedAtTheTempoOfTheHostWhereThereIsOne) {
    EXPECT_EQ(textOf(must(readMidiFile(kFolder + "tempos-in-two-tracks.mid", 240.0))),
              "0.125 C1 05; 0.25 D1 06; 0.375 E1 07 08; 0.75 B0 07 01; 0.75 81 3C 09; ");
}

TEST(MidiFile, ItsTemposAndMetersHoldFromWhereTheyStandUnlessATempoIsToldThroughout) {
    std::string bytes("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x2b"         // 96 ticks a beat
                      "\0\xff\x58\4\3\3\x18\x08"                         // 3/8
                      "\x60\xff\x51\3\3\xa9\x80"                         // a beat in 0.24 s
                      "\0\xff\x58\4\0\2\x18\x08\0\xff\x58\4\4\7\x18\x08" // no meters
                      "\x60\xff\x58\4\4\2\x18\x08\0\xff\x2f\0",
                      65);
    const auto textOfMusic = [&](ToldTempo told) {
        std::string text;
        for (const TimedMusic& one : must(parseMidi(bytes, 60.0, "it", told)).music)
            text += formatNumber(one.seconds) + " s " + formatNumber(one.beats) + " b " +
                    formatNumber(one.tempo) + " " + std::to_string(one.meter->first) + "/" +
                    std::to_string(one.meter->second) + "; ";
        return text;
    };
    EXPECT_EQ(textOfMusic(ToldTempo::begins),
              "0 s 0 b 60 3/8; 1 s 1 b 250 3/8; 1.24 s 2 b 250 4/4; ");
    EXPECT_EQ(textOfMusic(ToldTempo::holds), "");
}

TEST(MidiFile, BrokenFilesAreRefusedWithALineThatSaysWhy) {
    const std::pair<const char*, const char*> files[] = {
        {"cut-in-a-track", "it is cut off in its track 1; save it again"},
        {"second-track-cut-off", "it is cut off in its track 2;"},
        {"second-name-cut-off", "it is cut off in its track 2;"},
        {"track-claims-too-much", "it is cut off in its track 1;"},
        {"header-cut-off", "its header is cut off; save it again"},
        {"header-too-short", "its header is cut off;"},
        {"no-track", "it holds no track;"},
        {"endless-delta",
         "its track 1 is damaged (an event does not end within it); save it again"},
        {"event-goes-over-the-end", "(an event does not end within it)"},
        {"text-goes-over-the-end", "(an event does not end within it)"},
        {"no-end-mark", "(its end mark is missing)"},
        {"events-after-the-end-mark", "(events follow its end mark)"},
        {"no-status", "(an event has no status)"},
        {"clock-in-a-track", "(an event has a status that files do not know)"},
        {"message-breaks-off", "(a message breaks off)"},
        {"lasts-2-to-28-ticks", "(it lasts longer than 268435455 ticks)"},
        {"patterns-of-format-2", "its format is 2; save it with format 0 or 1"},
        {"no-beats", "not in beats; save it with ticks per quarter note"},
        {"film-time", "not in beats; save it with ticks per quarter note"}};
    for (const auto& [name, reason] : files) {
        const std::string path = kFolder + name + ".mid";
        EXPECT_THAT(
            failureOf(readMidiFile(path, std::nullopt)),
            AllOf(StartsWith(path + " is no MIDI file that can be read: it"), HasSubstr(reason)));
    }
}

} // namespace
} // namespace zephyra
