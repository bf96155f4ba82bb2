// SoundPlayer: a plug-in's instance that plays a sound offline, and all that came out of it.
#pragma once

#include "bench/sound_sources.h"
#include "hosting/plugin_instance.h"
#include "platform/lists/property_list.h"
#include "tests/support/heard_instance.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace zephyra {

/// How an instance is set up before it plays.
struct SoundSetup {
    SoundKind kind = SoundKind::sine;
    std::uint32_t blockFrames = 480;
    double rate = 48000.0;         ///< Hz, of the host
    PropertyDictionary state = {}; ///< keys of a state that differ from a new instance's
};

/// An effect with the same seed and clock each time, behind a host whose transport moves at 120
/// beats a minute. It stands at the defaults, all wet, with a fade-in of 0. Whatever is set is as
/// a hand sets it, between two blocks.
class SoundPlayer : HeardLog, public PluginInstance {
public:
    /// Plays sound, or a new instance's LIVE where it is null; comesIn, which may be null, is what
    /// the host sends in, over and over.
    SoundPlayer(const SoundSetup& setup, std::shared_ptr<const mokSample> sound,
                std::shared_ptr<const mokSample> comesIn = nullptr);

    /// Renders, and appends what comes out.
    void play(double seconds);
    /// The displayed value.
    void set(ControlId id, float displayed);
    /// Grains all alike, a whole number of them in a pass through the sound: what is heard repeats
    /// with it, and what is not of the sound comes from playing it.
    void setEven();
    /// Whatever a hand does.
    void byHand(const std::function<void(HostedInstance& system)>& act);
    /// What the host says with the next block.
    PluginTransport news;

    /// Frames that were played.
    std::size_t played() const { return left.size(); }
    std::size_t framesOf(double seconds) const {
        return static_cast<std::size_t>(seconds * setup_.rate);
    }
    const SoundSetup& setup() const { return setup_; }

    std::vector<float> left, right;

private:
    SoundSetup setup_;
    std::shared_ptr<const mokSample> comesIn_;
    std::size_t inputAt_ = 0;
};

} // namespace zephyra
