// MusicLine: tempo, its source, bar and beat, as the top shows them, and a hand that taps.
#pragma once

#include "screens/model/screen_context.h"

#include <string>

namespace zephyra {

/// Whether a quarter of the music began a moment ago; where no host tells of any, of ownTempo
/// (beats per minute) on the window's clock, seconds.
bool isBeatLit(const MusicPosition& music, double ownTempo, double now);

/// One moment. Plain data.
struct MusicShown {
    std::string tempo = "120.00"; ///< beats per minute
    bool isHosts = false;         ///< else it is tapped here
    bool hasBars = false;         ///< the host tells where the music stands
    bool isMoving = false;
    std::string bar = {};        ///< "17.3": bar and beat, from 1
    int beat = 0, beatCount = 0; ///< the beat that sounds, from 0; of the bar, at most kMostDots
    bool operator==(const MusicShown&) const = default;

    static constexpr int kMostDots = 8;
    /// "bpm, host"
    std::string source() const { return isHosts ? "bpm, host" : "bpm, own"; }
    std::string help() const;
};

/// Message thread.
class MusicLine final : public ScreenPart {
public:
    explicit MusicLine(ScreenContext& context);
    ~MusicLine() override;

    const MusicShown& shown() const noexcept { return shown_; }

    // What hands do to our own tempo; nothing while the host's counts.
    void tap();
    void step(int quarters);   ///< of a beat a minute, up or down
    void beginDrag();          ///< then
    void drag(double unitsUp); ///< moved upwards since then

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    ScreenContext& context_;
    MusicShown shown_;
};

} // namespace zephyra
