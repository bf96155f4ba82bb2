// WaveForm: a stream's sounds, one loaded from a file and one kept of the live input.
#pragma once

#include "platform/audio_unit/audio_session.h"
#include "platform/notification_center.h"
#include "platform/sound/audio_buffer_list.h"
#include "platform/text/log.h"
#include "platform/threads/realtime.h"
#include "platform/threads/render_cycle.h"
#include "stream/normalized_sample.h"
#include "stream/waveform_data.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// One of its two samples is the current one, which grains are cut from. The file sample is kept as
/// it was loaded and, where it is normalized, as a scaled copy besides. The live sample holds the
/// last kLiveFrames frames of input: the oldest frame is at the write index, the newest just before
/// it; its floats are stored by RENDER and read elsewhere as relaxed atomics. While it is frozen, a
/// copy of it is what is heard, and it goes on being written behind that. What RENDER can see is
/// never changed under it but replaced by another sample. Everything is MAIN unless said otherwise;
/// destroyed OFF.
class WaveForm {
public:
    /// Fixed in frames, not in time: 10 s at 44100 Hz, about 9.19 s at 48000 Hz.
    static constexpr std::uint64_t kLiveFrames = 441000;

    /// A silent file sample is current. retirement belongs to the render cycle that
    /// drawLiveWaveForm is called in; all four references must outlive this. Throws
    /// std::bad_alloc.
    WaveForm(NotificationCenter& notifications, const AudioSession& session, Log& log,
             Retirement& retirement);
    ~WaveForm();
    WaveForm(const WaveForm&) = delete;
    WaveForm& operator=(const WaveForm&) = delete;

    // --- The current sound ---

    /// The sound that grains are cut from; never null. RENDER writes a live one: read its floats
    /// with copyLive.
    const mokSample* mSample() const noexcept;
    /// Whether that is the live sample, which stays current when live input goes off.
    bool isLiveCurrent() const noexcept { return liveIsCurrent_; }
    void makeLiveCurrent();
    void makeFileCurrent();
    /// Seconds of the current sound.
    double getFileDuration() const noexcept;
    /// Called whenever another sample has become the current one, before the old one is let go, so
    /// that whoever RENDER reads it through can follow. An empty handler calls nobody.
    void setReplacedHandler(std::function<void()> handler) { replaced_ = std::move(handler); }

    // --- The file sample ---

    /// Takes sound, of which nothing may be null.
    void setFileSample(PlayableSound sound);
    /// Scales the sound, as it was loaded, to another peak; nothing plays it as it is. False, and
    /// nothing changed, when memory is short.
    bool normalizeBufferWithValue(std::optional<float> peak);
    /// Plays that copy of fileSound() in its place; never null.
    void playFileSample(std::shared_ptr<const mokSample> played) { swapFile(std::move(played)); }
    /// The largest magnitude of fileSound().
    float fileSoundPeak() const noexcept { return originalPeak_; }
    /// Whether setFileSample ever took a sound.
    bool hasFileSample() const noexcept { return hasFile_; }
    /// The sound as it was loaded, silence before; never null.
    std::shared_ptr<const mokSample> fileSound() const noexcept { return original_; }

    // --- The live sample ---

    /// Brings a fresh silent buffer of frames (at least 16) at rate (Hz), write index 0. A rate
    /// that is not finite and above 0, or memory that is short, changes nothing; the answer is
    /// false.
    bool initLiveBuffer_andSamplingRate(std::uint64_t frames, double rate);

    /// On: sets the buffer up if the session's rate is not the one it was last set up for, starts
    /// writing and posts "refreshParameters"; false, and still off, when that fails. Off only drops
    /// the flag: stopLiveTimer() ends the writing. Which sound is current stays.
    bool enableLIVE(bool on);
    bool enableLIVE() const noexcept { return _enableLIVE; }
    /// While live input is on: sets the buffer up again if the session's rate is another one now.
    /// False after a log line, and nothing changed, when that fails.
    bool followSession();

    /// Brings a buffer that was set up for rate (Hz) and has heard samples, of which the last
    /// kLiveFrames are kept. The samples must be finite. False, and nothing changed, for none, for
    /// a rate as above, and when memory is short.
    bool setLiveContent(std::span<const float> samples, double rate);

    /// While on, the live sound stands still as what had been heard when it went on, or when the
    /// live sample became the current one since: for as long as that is current, whatever becomes
    /// of live input and its buffer. Where nothing had been heard there is nothing to hold, and
    /// where memory is short (a log line says so) none can be: then grains go on following the
    /// input.
    void freeze(bool on);
    /// Whether grains are cut from such a copy.
    bool isHeld() const noexcept { return held_ != nullptr; }
    /// How often live sound was held.
    std::uint64_t holds() const noexcept { return holds_; }

    /// The next block that is written goes to the buffer's start.
    void resetLiveWriteIndex() noexcept { pendingReset_.store(true, std::memory_order_relaxed); }
    /// The write index while live input is on, else 0; a reset shows at once. Of held sound it is
    /// where the index stood.
    std::uint64_t getWriteLiveIndex() const noexcept;

    /// Writing starts with the next render cycle.
    void startLiveTimer() noexcept { data_.isLiveEnabled = true; }
    /// Writing ends with the present render cycle; requests a redraw.
    void stopLiveTimer() noexcept;

    /// Forgets what was heard: a fresh buffer of the same size and rate. False when memory is
    /// short.
    bool clearBuffer();
    /// While live input is on: forgets it but for what setLiveContent brought since the buffer was
    /// made or cleared. False when memory is short.
    bool startAnew();

    /// The live sound as it is heard when it is the current one: held, or the buffer, which RENDER
    /// writes: read its floats with copyLive.
    const LiveSample* liveSample() const noexcept { return held_ ? held_.get() : live_.get(); }
    /// How often another buffer had taken the place of the one that it is, or is a copy of.
    std::uint64_t liveReplacements() const noexcept {
        return held_ ? heldReplacements_ : liveReplacements_;
    }
    /// copyFrames and framesHeard of liveSample().
    void copyLive(std::uint64_t first, std::span<float> frames) const noexcept {
        copyFrames(*liveSample(), first, frames);
    }
    std::vector<float> heardFrames() const { return framesHeard(*liveSample()); }

    // --- The display ---

    /// Whether the wave should be drawn again; a request is answered once.
    bool takeRedrawRequest() noexcept { return redraw_.exchange(false, std::memory_order_relaxed); }

    /// The file whose sound is shown from now on; the titles become its name.
    void setCurrentPath(std::string path);
    /// The sound that is shown: "NULL" while that is live input, empty at first.
    const std::string& currentPath() const noexcept { return currentPath_; }
    /// The file that is shown when the live sound no longer is.
    void setLastSelectedPath(std::string path) { lastSelectedPath_ = std::move(path); }
    const std::string& lastSelectedPath() const noexcept { return lastSelectedPath_; }

    /// The texts over the wave display.
    const std::string& title() const noexcept { return title_; }
    const std::string& shortTitle() const noexcept { return shortTitle_; }

    /// The record RENDER works with.
    waveform_data& data() noexcept { return data_; }

private:
    friend void drawLiveWaveForm(WaveForm* waveform, int frames,
                                 const AudioBufferList& input) ZEPHYRA_NONBLOCKING;
    void swapLive(std::shared_ptr<LiveSample> next);
    void swapFile(std::shared_ptr<const mokSample> next);
    std::shared_ptr<const LiveSample> takeHeld(std::shared_ptr<const LiveSample> next);
    std::shared_ptr<const LiveSample> frozenCopy() const;
    void hold();
    void retire(std::shared_ptr<const mokSample> sound);
    void tellReplaced();
    void showLive();
    void requestRedraw() ZEPHYRA_NONBLOCKING { redraw_.store(true, std::memory_order_relaxed); }
    void countRedraw(int frames) ZEPHYRA_NONBLOCKING;
    void write(int frames, const float* in0, const float* in1) ZEPHYRA_NONBLOCKING;

    NotificationCenter& notifications_;
    const AudioSession& session_;
    Log& log_;
    Retirement& retirement_;
    waveform_data data_;
    std::shared_ptr<const mokSample> original_; // the file's sound as it was loaded
    std::shared_ptr<const mokSample> file_;     // as it plays; may be the original itself
    float originalPeak_ = 0.0f;
    bool hasFile_ = false;
    std::shared_ptr<LiveSample> live_; // what data_.mSample points at
    std::vector<float> brought_;       // into live_ by setLiveContent
    std::uint64_t liveReplacements_ = 0;
    std::shared_ptr<const LiveSample> held_; // a copy of live_ as it was; null for none
    std::uint64_t heldReplacements_ = 0;     // liveReplacements_ as it was then
    std::uint64_t holds_ = 0;
    bool isFrozen_ = false;
    bool liveIsCurrent_ = false;
    std::function<void()> replaced_;
    std::optional<double> sessionRate_; // Hz, of the last set-up for a session
    bool _enableLIVE = false;
    std::atomic<bool> pendingReset_ = false; // a jump to index 0 that RENDER has not taken yet
    std::atomic<bool> redraw_ = false;
    std::string currentPath_, lastSelectedPath_, title_, shortTitle_;
};

/// Writes one block of input behind the newest frame: in0 · gain for mono, gain · (in0 + in1 / 2)
/// for stereo; further channels are left out. A result that is not finite is written as 0. Mono is
/// a bus, or an input list, of fewer than two channels. Does nothing for a null waveform, while
/// live input is off, for no frames and for an input without a first channel. Requests a redraw
/// about six times a second. Called within the render cycle of the waveform's retirement. RENDER.
void drawLiveWaveForm(WaveForm* waveform, int frames,
                      const AudioBufferList& input) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
