#include "plugin/lv2/transport.h"

#include <cmath>

namespace zephyra {

namespace {

/// Keeps what is above 0; whether it was there.
bool keep(const std::optional<double>& sent, double& kept) ZEPHYRA_NONBLOCKING {
    if (!sent || !(*sent > 0.0)) return false;
    kept = *sent;
    return true;
}

} // namespace

PluginTransport Lv2Transport::read(const Lv2Position& position) ZEPHYRA_NONBLOCKING {
    PluginTransport transport;
    const bool hasBeats = keep(position.beatsPerBar, beatsPerBar_);
    const bool hasUnit = keep(position.beatUnit, beatUnit_);
    if (hasBeats || hasUnit) {
        transport.numerator = beatsPerBar_;
        transport.denominator = beatUnit_;
    }
    if (keep(position.beatsPerMinute, tempo_)) transport.tempo = tempo_;
    if (position.speed) transport.moving = *position.speed != 0.0;

    const double quarters = 4.0 / beatUnit_; // of a beat
    const bool hasBeat = (position.bar && position.barBeat) || position.beat;
    if (position.bar && position.barBeat)
        transport.beats = (*position.bar * beatsPerBar_ + *position.barBeat) * quarters;
    else if (position.beat)
        transport.beats = *position.beat * quarters;
    else if (position.frame && tempo_ > 0.0 && !sendsBeats_)
        transport.beats = *position.frame / sampleRate_ * tempo_ / 60.0;
    if (transport.beats && !std::isfinite(*transport.beats)) transport.beats.reset();
    sendsBeats_ |= hasBeat;
    return transport;
}

} // namespace zephyra
