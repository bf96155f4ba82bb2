// HostTime: tempo, meter, beat position and transport as a host tells them, kept up in between.
#pragma once

#include "hosting/plugin_block.h"
#include "platform/audio_unit/audio_unit_host.h"

#include <cstdint>
#include <limits>

namespace zephyra {

/// What one host knows of the music. The thread that renders, or any while nothing renders.
class HostTime {
public:
    /// Begins to count frames anew, at Hz above 0; what the host told stays.
    void start(double sampleRate) ZEPHYRA_NONBLOCKING;

    /// Beats per minute; not finite values are not reported, and no context at all without a tempo.
    void setTempo(double beatsPerMinute) ZEPHYRA_NONBLOCKING;
    void setMeter(double numerator, double denominator = 4) ZEPHYRA_NONBLOCKING;
    /// In quarters, of the next frame; while the transport moves it goes on with the tempo.
    void setBeatPosition(double beats) ZEPHYRA_NONBLOCKING;
    double beatPosition() const ZEPHYRA_NONBLOCKING { return beats_; }
    double tempo() const ZEPHYRA_NONBLOCKING { return context_.currentTempo; }
    void setTransport(bool moving) ZEPHYRA_NONBLOCKING;
    /// What a plug-in's host says of the next frame, and no more: the first word of it makes both
    /// reported. A tempo below 0 or above a million, a meter that is not above 0 and what is not
    /// finite are not heard; without a tempo 120 counts. Until the host speaks of its transport,
    /// that does what the positions do, and rolls where there are none.
    void follow(const PluginTransport& news) ZEPHYRA_NONBLOCKING;
    /// Whether the reported transport starts with the next frame.
    bool starts() const ZEPHYRA_NONBLOCKING { return reportsTransport_ && moving_ && !wasMoving_; }
    bool isMoving() const ZEPHYRA_NONBLOCKING { return moving_; }

    /// Whether each is reported; off at first, and a host need not.
    void reportContext(bool on) ZEPHYRA_NONBLOCKING { reportsContext_ = on; }
    void reportTransport(bool on) ZEPHYRA_NONBLOCKING { reportsTransport_ = on; }

    bool reportsContext() const ZEPHYRA_NONBLOCKING { return reportsContext_; }
    bool reportsTransport() const ZEPHYRA_NONBLOCKING { return reportsTransport_; }

    /// So many frames were rendered.
    void goOn(std::uint32_t frames) ZEPHYRA_NONBLOCKING;
    /// Frames since start.
    std::uint64_t rendered() const ZEPHYRA_NONBLOCKING { return rendered_; }

    /// What the audio unit is told of the next frame; false for nothing.
    bool musicalContext(AUMusicalContext& context) const ZEPHYRA_NONBLOCKING;
    bool transportState(AUTransportState& state) const ZEPHYRA_NONBLOCKING;

private:
    void keepBeats() ZEPHYRA_NONBLOCKING;
    bool followMusic(const PluginTransport& news) ZEPHYRA_NONBLOCKING;
    void followPosition(double beats) ZEPHYRA_NONBLOCKING;
    double beatsOf(double frames) const ZEPHYRA_NONBLOCKING;

    double sampleRate_ = 44100.0;
    AUMusicalContext context_; // without the beat position
    bool reportsContext_ = false, reportsTransport_ = false, moving_ = false, wasMoving_ = false;
    bool transportTold_ = false, jumped_ = false;
    double toldBeats_ = std::numeric_limits<double>::quiet_NaN(); // position told last; NaN: none
    std::uint64_t toldAt_ = 0;                                    // at this frame
    double beats_ = 0.0;
    double keptBeats_ = 0.0;   // at frame keptAt_; from there on one tempo holds
    std::uint64_t keptAt_ = 0; // so that no rounding adds up
    std::uint64_t rendered_ = 0;
};

} // namespace zephyra
