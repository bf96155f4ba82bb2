// WaveForm: a stream's live input, kept in a circular buffer that grains are cut from.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/audio_buffer_list.h"
#include "platform/audio_session.h"
#include "platform/notification_center.h"
#include "platform/realtime.h"
#include "platform/relaxed.h"
#include "platform/render_cycle.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace zephyra {

/// What RENDER needs for writing live input.
struct waveform_data {
    Relaxed<bool> isLiveEnabled = false;             ///< nothing is written while false
    Relaxed<float> normalizeGain = 1.0f;             ///< factor for input as it is written
    Relaxed<std::int64_t> numberOfInputChannels = 2; ///< of the input bus; below 2 is mono
    std::int32_t timerCount = 0; ///< render cycles since the last redraw request; RENDER's own
    /// The live sample. Its offset is the write index, its ready flag enables writing. RENDER takes
    /// one snapshot per block, see RenderCycle.
    std::atomic<mokSample*> mSample = nullptr;
};

/// Holds the last kLiveFrames frames of input: the oldest frame is at the write index, the newest
/// just before it. Its floats are stored by RENDER and read elsewhere as relaxed atomics; its guard
/// points are never written, because no live read reaches them. A fresh buffer is always another
/// one, swapped in. Everything is MAIN unless said otherwise; destroyed OFF.
class WaveForm {
public:
    /// Fixed in frames, not in time: 10 s at 44100 Hz, about 9.19 s at 48000 Hz.
    static constexpr std::uint64_t kLiveFrames = 441000;

    /// retirement belongs to the render cycle that drawLiveWaveForm is called in; all three
    /// references must outlive this. Throws std::bad_alloc.
    WaveForm(NotificationCenter& notifications, const AudioSession& session,
             Retirement& retirement);
    ~WaveForm();
    WaveForm(const WaveForm&) = delete;
    WaveForm& operator=(const WaveForm&) = delete;

    /// Brings a fresh silent buffer of frames (at least 16) at rate (Hz), write index 0. A rate
    /// that is not finite and above 0, or memory that is short, changes nothing; the answer is
    /// false.
    bool initLiveBuffer_andSamplingRate(std::uint64_t frames, double rate);

    /// On: sets the buffer up if the session's rate is not the one it was last set up for, starts
    /// writing and posts "refreshParameters"; false, and still off, when that fails. Off only drops
    /// the flag: stopLiveTimer() ends the writing.
    bool enableLIVE(bool on);
    bool enableLIVE() const noexcept { return _enableLIVE; }

    /// The next block that is written goes to the buffer's start.
    void resetLiveWriteIndex() noexcept { pendingReset_.store(true, std::memory_order_relaxed); }
    /// The write index while live input is on, else 0. A reset shows at once.
    std::uint64_t getWriteLiveIndex() const noexcept;

    /// Writing starts with the next render cycle.
    void startLiveTimer() noexcept { data_.isLiveEnabled = true; }
    /// Writing ends with the present render cycle; requests a redraw.
    void stopLiveTimer() noexcept;

    /// Forgets what was heard: a fresh buffer of the same size and rate. False when memory is
    /// short.
    bool clearBuffer();

    /// Called whenever a fresh buffer stands in mSample and before the old one is let go, so that
    /// whoever else RENDER reads it through can follow. An empty handler calls nobody.
    void setReplacedHandler(std::function<void()> handler) { replaced_ = std::move(handler); }

    /// The live sample. RENDER writes it: read its floats with copyLive.
    const mokSample* liveSample() const noexcept { return live_.get(); }

    /// The frames from index first on, wrapping at the buffer's end. The write index tells where
    /// old and new meet; it may move meanwhile.
    void copyLive(std::uint64_t first, std::span<float> frames) const noexcept;

    /// Whether the wave should be drawn again; a request is answered once.
    bool takeRedrawRequest() noexcept { return redraw_.exchange(false, std::memory_order_relaxed); }

    /// The sound that is shown: "NULL" while that is live input, empty at first.
    void setCurrentPath(std::string path) { currentPath_ = std::move(path); }
    const std::string& currentPath() const noexcept { return currentPath_; }
    /// The sound that was shown before live input was.
    const std::string& lastSelectedPath() const noexcept { return lastSelectedPath_; }

    /// The texts over the wave display.
    const std::string& title() const noexcept { return title_; }
    const std::string& shortTitle() const noexcept { return shortTitle_; }

    /// The record RENDER works with.
    waveform_data& data() noexcept { return data_; }

private:
    friend void drawLiveWaveForm(WaveForm* waveform, int frames,
                                 const AudioBufferList& input) ZEPHYRA_NONBLOCKING;
    bool replaceSample(std::uint64_t frames, float rate);
    void requestRedraw() ZEPHYRA_NONBLOCKING { redraw_.store(true, std::memory_order_relaxed); }
    void countRedraw(int frames) ZEPHYRA_NONBLOCKING;
    void write(int frames, const float* in0, const float* in1) ZEPHYRA_NONBLOCKING;

    NotificationCenter& notifications_;
    const AudioSession& session_;
    Retirement& retirement_;
    waveform_data data_;
    std::shared_ptr<mokSample> live_; // what data_.mSample points at
    std::function<void()> replaced_;
    std::optional<double> sessionRate_; // Hz, of the last set-up for the session
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
