// Which messages arbitrary MIDI bytes hold.

#include "platform/audio_unit/midi_parser.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(MidiParser, YieldsWholeChannelMessagesAndNothingElse) {
    using Bytes = std::vector<std::uint8_t>; // of a message three
    const std::tuple<const char*, Bytes, Bytes> cases[] = {
        {"both lengths", {0xC3, 5, 0xBF, 127, 2}, {0xC3, 5, 0, 0xBF, 127, 2}},
        {"running",
         {0x90, 6, 1, 7, 0, 0xD0, 1, 2},
         {0x90, 6, 1, 0x90, 7, 0, 0xD0, 1, 0, 0xD0, 2, 0}},
        {"real time anywhere", {0xB0, 0xF8, 1, 0xFE, 2, 0xFF, 3, 4}, {0xB0, 1, 2, 0xB0, 3, 4}},
        {"cut off", {0xE0, 1, 0xB0, 2, 0xB0, 7, 8}, {0xB0, 7, 8}},
        {"data without a status", {1, 2, 3, 0x80, 60, 64}, {0x80, 60, 64}},
        {"exclusive", {0xB0, 1, 2, 0xF0, 3, 4, 0xF7, 5, 6, 0xC0, 7}, {0xB0, 1, 2, 0xC0, 7, 0}},
        {"exclusive without end", {0xF0, 1, 0xC0, 7, 8}, {0xC0, 7, 0, 0xC0, 8, 0}},
        {"common", {0xB0, 1, 2, 0xF2, 3, 4, 5, 6, 0xF6, 7, 8}, {0xB0, 1, 2}}};
    for (const auto& [what, bytes, wanted] : cases) {
        MidiParser parser;
        Bytes messages;
        MidiMessage message;
        for (const std::uint8_t byte : bytes)
            if (parser.next(byte, message))
                messages.insert(messages.end(), message.bytes.begin(), message.bytes.end());
        EXPECT_TRUE(messages == wanted) << what << ": " << messages.size();
    }
}

} // namespace
} // namespace zephyra
