// Lv2Transport: what positions of an LV2 host mean for a plug-in's block.
#pragma once

#include "hosting/plugin_block.h"
#include "plugin/lv2/atom_events.h"

namespace zephyra {

/// Hosts send a position when something changes, some in each block, some never; and not all of it
/// each time, so that the meter and the tempo are kept. RENDER.
class Lv2Transport {
public:
    explicit Lv2Transport(double sampleRate) : sampleRate_(sampleRate) {}

    /// Values that make no sense (a meter or tempo not above 0) count as not sent. The beat is
    /// counted in quarters, from bar and beat in it, else from the beat since the start, else from
    /// the frame at the tempo; without any of these it is left to the instance. Tempo is in
    /// quarters a minute whatever the meter: that is what hosts send.
    PluginTransport read(const Lv2Position& position) ZEPHYRA_NONBLOCKING;

private:
    const double sampleRate_; // Hz
    double beatsPerBar_ = 4.0, beatUnit_ = 4.0;
    double tempo_ = 0.0;      // 0: none was sent
    bool sendsBeats_ = false; // then a frame alone tells nothing new
};

} // namespace zephyra
