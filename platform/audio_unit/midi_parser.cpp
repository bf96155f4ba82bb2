#include "platform/audio_unit/midi_parser.h"

namespace zephyra {

namespace {

constexpr std::uint8_t kStatusBit = 0x80;
constexpr std::uint8_t kFirstSystem = 0xF0, kFirstRealTime = 0xF8;

unsigned dataBytesOf(MidiKind kind) ZEPHYRA_NONBLOCKING {
    return kind == MidiKind::program || kind == MidiKind::channelPressure ? 1 : 2;
}

} // namespace

bool MidiParser::next(std::uint8_t byte, MidiMessage& out) ZEPHYRA_NONBLOCKING {
    if (byte >= kFirstRealTime) return false;
    if (byte & kStatusBit) {
        reset();
        if (byte >= kFirstSystem) return false; // its data bytes find no status
        message_.bytes[0] = byte;
        dataBytes_ = dataBytesOf(message_.kind());
        dataArrived_ = 0;
        return false;
    }
    if (message_.bytes[0] == 0) return false;
    message_.bytes[++dataArrived_] = byte;
    if (dataArrived_ < dataBytes_) return false;
    dataArrived_ = 0; // running status: more data is another message
    out = message_;
    return true;
}

} // namespace zephyra
