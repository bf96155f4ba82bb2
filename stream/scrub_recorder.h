// ScrubRecorder: gesture recorder, which loops a take of how a hand moved a stream's scan.
#pragma once

#include "platform/lists/property_list.h"
#include "platform/lists/property_reader.h"
#include "platform/threads/run_loop.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zephyra {

class Button;
class Control;
class MOK_SCRUB_GRANULATOR;
struct StreamControls;

/// Whether downbeats of the host's are to come, for what waits for one.
enum class HostBars : std::uint8_t { come, doNotCome };

/// Takes points 15 times a second, of the scan's position as a fraction of the sound. Synced, a
/// take plays as recorded at 120 beats per minute and follows the tempo, and its play button arms
/// for the downbeat. It records or plays, never both. Its buttons are the stream's. MAIN.
class ScrubRecorder {
public:
    static constexpr std::size_t kPoints = 1800;     ///< the longest take, two minutes
    static constexpr double kPointsPerSecond = 15.0; ///< of recording and of playing

    /// Both must outlive this; runLoop is the stream's.
    ScrubRecorder(MOK_SCRUB_GRANULATOR& stream, RunLoop& runLoop);
    ~ScrubRecorder();
    ScrubRecorder(const ScrubRecorder&) = delete;
    ScrubRecorder& operator=(const ScrubRecorder&) = delete;

    /// Wires its three buttons. OFF.
    void addTargets();

    /// The record button: waits for a hand, or ends the recording.
    void ui_scrubRec(Control* sender = nullptr);
    /// A tick of recording.
    void recordScrub();
    /// A hand takes hold of the scan or moves it, lets it go: a take gets points only in between.
    void handScrubs();
    void handEnds();

    /// The play button: plays or stops; synced, it arms or disarms instead of playing.
    void ui_scrubPlay(Control* sender = nullptr);
    /// Plays the take from where it stood, one posted step later.
    void ____playScrubRec();
    /// A tick of playing; nothing while somebody holds the scan.
    void playScrub();
    /// Whether a take moves the scan: it plays and has points.
    bool movesScan() const;
    /// What else begins to drive the scan takes it from the take that plays; an armed one waits on.
    void endPlaying();
    /// A downbeat: plays what is armed.
    void syncStateTempoForte();
    bool isArmed() const noexcept { return shouldPlayOnTimeScrubRec; }
    /// A take that plays begins anew: at once, or armed for the downbeat as its button would.
    void startAnew(HostBars bars);
    /// Drops an armed take.
    void disarm();

    /// The take between two points, 0..1; beyond the buffer its nearer end.
    float readInterp(float x) const;
    /// The take plays from its first point again.
    void ui_resetScrubRecPhase(Control* sender = nullptr);
    /// The same, while the scan is synced; a stream whose take does not play is rewound instead.
    void resetScrubRecPhase();
    /// Forgets the take.
    void resetScrubRecordedData();

    /// What plays: all recorded points but the last.
    std::span<const float> take() const { return {scrubBuffer.data(), std::size_t(recLength)}; }
    /// Takes the place of the take. False, and nothing changed, unless there are 1 to kPoints
    /// points, each in 0..1.
    bool setTake(std::span<const float> points);

    /// Writes the take, and whether it plays, under the stream's channel: floats in this machine's
    /// layout, which is little endian on all that Zephyra runs on. Without a take the keys go, and
    /// with them a recording that has no points yet.
    void saveDataForRecordScrub(PropertyDictionary& state);
    /// The same, and a recording goes on.
    void keepTake(PropertyDictionary& state) const;
    /// These keys: of the take's length first; one below 1 stands for no take.
    std::array<std::string, 3> takeKeys() const;
    /// Whether state speaks of a take.
    bool isIn(const PropertyReader& state) const;
    /// Reads the same keys; without a take there the present one is forgotten. Points outside 0..1
    /// are held to it, one that is not finite becomes the one before it. Playing begins at the
    /// first point at once.
    void loadStateForRecordScrub(PropertyReader& state);

private:
    StreamControls& controls() const;
    void beginLink(void (ScrubRecorder::*tick)());
    void endLink();
    void startPlaying();
    void stopPlaying();
    bool willPlay() const;
    void enableButtons();
    void tookPlace(std::size_t points);
    void placeScan();
    float wrapped(float x) const;
    void showProgress(double points, double of);

    MOK_SCRUB_GRANULATOR& stream_;
    RunLoop& runLoop_;
    std::array<float, kPoints> scrubBuffer{};
    float ndx = 0.0f; ///< the next point to record, or where playing has come to; see wrapped
    std::int32_t recLength = 0; ///< the last recorded point, or how many were loaded
    bool shouldStartRecordScrub = false;
    bool scrubRecIsStarted = false;
    bool one = true; ///< nothing was ever recorded
    bool shouldPlayOnTimeScrubRec = false;
    bool startQueued_ = false; // the posted step that plays has not run yet
    bool recalled_ = false; // out of a state, and has not played yet: its first tick comes too late
    RunLoop::Token scrubRecordPlayTimer = 0; // of recording or of playing
};

} // namespace zephyra
