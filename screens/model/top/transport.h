// Transport: play, rewind, freeze and LIVE as buttons show them, and what hands do there.
#pragma once

#include "screens/model/button_face.h"
#include "screens/model/button_touch.h"
#include "screens/model/screen_context.h"

#include <array>
#include <optional>
#include <string>

namespace zephyra {

enum class TransportButton { play, rewind, freeze, live, clear };
inline constexpr std::size_t kTransportButtons = 5;

enum class PlayState { stopped, armed, playing, fadingOut };

/// One moment. Plain data.
struct TransportShown {
    PlayState play = PlayState::stopped;
    bool rewindIsArmed = false, isFrozen = false, isLive = false, liveIsAllowed = true;
    bool isInSync = false; ///< with the host's bars: play and rewind wait for one
    bool isOnBeat = false; ///< a quarter began a moment ago
    bool operator==(const TransportShown&) const = default;

    ButtonFace face(TransportButton button) const;
    /// Of play "stopped", "armed", "playing" or "fading out", of others "on", "armed",
    /// "unavailable", or empty for off.
    std::string value(TransportButton button) const;
    /// One sentence.
    std::string help(TransportButton button) const;
};

/// Message thread.
class Transport final : public ScreenPart {
public:
    /// Rewind that is held for so long waits for the next bar, while the scan is in sync.
    static constexpr double kHold = 0.5; ///< seconds

    explicit Transport(ScreenContext& context);
    ~Transport() override;

    const TransportShown& shown() const noexcept { return shown_; }
    /// A part of a press; it reaches the control, and the host as part of a gesture.
    void touch(TransportButton button, ButtonTouch touch);

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    void touchRewind(ButtonTouch touch);
    void send(TransportButton button, ButtonTouch touch);

    ScreenContext& context_;
    TransportShown shown_;
    double now_ = 0.0;
    std::optional<double> rewindHeldSince_;
};

} // namespace zephyra
