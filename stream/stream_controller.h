// MOK_SCRUB_GRANULATOR: the controller of one stream, from its controls, sound and tempo to its
// engine.
#pragma once

#include "controls/keyboard.h"
#include "controls/state_keys.h"
#include "engine/granular_stream.h"
#include "platform/instance.h"
#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/realtime.h"
#include "platform/threads/render_cycle.h"
#include "stream/captured_memory.h"
#include "stream/grain_watch.h"
#include "stream/live_buffer.h"
#include "stream/oscilloscope.h"
#include "stream/sample_reference.h"
#include "stream/scrub_area.h"
#include "stream/scrub_recorder.h"
#include "stream/sound_normalizer.h"
#include "stream/stream_controls.h"
#include "stream/stream_fade.h"
#include "stream/stream_settings.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace zephyra {

/// What the render path holds of a stream.
struct granular_data {
    mokGranulatorSF* engine;
    WaveForm* waveform;
    bool isPlaying = false;   ///< play-state flag; MAIN
    bool followsHost = false; ///< host-follow flag, a copy of the scan-sync switch; MAIN
};

/// Owns the engine, the controls, the sound, the live buffer and the envelope of one stream, and
/// its transport. Everything is MAIN unless said otherwise, and may go on while RENDER is in
/// GranulatorProcessing: what RENDER can see is swapped, and freed once no render call can see it
/// any more. Handlers are the targets of its own controls; sender is never read, the control is.
/// Made and destroyed OFF.
class MOK_SCRUB_GRANULATOR {
public:
    /// An engine of 24 grains at 44100 Hz on a silent sound with the Hanning envelope, every
    /// control at its default, not playing. suffix ends every channel. instance must outlive this.
    /// Throws std::bad_alloc.
    explicit MOK_SCRUB_GRANULATOR(Instance& instance, std::string suffix = kStreamSuffix);
    ~MOK_SCRUB_GRANULATOR();
    MOK_SCRUB_GRANULATOR(const MOK_SCRUB_GRANULATOR&) = delete;
    MOK_SCRUB_GRANULATOR& operator=(const MOK_SCRUB_GRANULATOR&) = delete;

    StreamControls controls;
    ScrubArea scrubArea;         ///< where a hand moves the scan
    ScrubRecorder scrubRecorder; ///< the take that a hand left

    /// Each may be null, and must outlive the stream or be taken away before.
    void setSettings(StreamSettings* settings) { settings_ = settings; }
    StreamSettings* settings() const { return settings_; }
    void setKeyboard(Keyboard* keyboard) { keyboard_ = keyboard; }

    // --- Transport: stream_transport.cpp ---

    /// Toggles: stops with a fade, or arms for the downbeat (scan sync on), or starts.
    void ui_playStop(Control* sender = nullptr);
    /// Starts with a fade-in, from wherever the last fade left the level.
    void ____play();
    /// Stops with a fade-out of so many seconds, which may also shorten one that runs; what is
    /// armed is no longer.
    void stopWithin(double seconds);
    /// How often it was started.
    std::uint64_t starts() const { return starts_; }
    /// Whether a start still has its step to go that shows it: until then nothing stops it.
    bool isStarting() const { return startQueued_; }
    /// Switches the engine on, off; true when it is. error gets what went wrong.
    bool play(std::string* error = nullptr);
    bool stop(std::string* error = nullptr);
    /// The engine's play switch.
    bool isPlaying() const { return engine_.granularOn; }
    /// Seconds from a silent level until the grains that still sound are cut.
    static double getDelayedStopTime() { return 0.5; }
    /// The next tick of either fade.
    void fadeIn();
    void fadeOut();
    void ui_rewind(Control* sender = nullptr);
    /// Arms or disarms a rewind for the downbeat, while the scan is synced.
    void ui_armRewind(Control* sender = nullptr);
    /// To the region's start, unless a finger holds the scan.
    void ____rewind();
    /// The scan stands, and live sound as it had been heard until then, see WaveForm::freeze.
    void ui_freeze(Control* sender = nullptr);
    bool isArmed() const { return shouldPlayOnTime; }
    /// Whether a hand or a stop's fade-out holds the scan's position.
    bool isScrubbing() const { return stopHolds_ || scrubArea.isHeld(); }

    // --- The host's tempo and transport: stream_sync.cpp ---

    /// A downbeat: fires whatever is armed.
    void syncStateTempoForte();
    /// The host's tempo in beats per minute; one that is not finite is ignored.
    void syncStateDidChangedWithBPM(double bpm);
    /// Starts a stream that is synced and stopped.
    void forceToPlayIfShouldPlay();
    /// The host's transport started, stopped, jumped back; they act while host-follow is set. A
    /// start arms for the downbeat; a stop takes that back, not what a hand armed.
    void shouldPlay();
    void shouldStop();
    void shouldRewind();
    void shouldRewindFromHost();
    void enableDelaySync(Control* sender = nullptr);
    void enableSamplerSync(Control* sender = nullptr);
    /// Beats per minute, 120 at first.
    double currentClockBPM() const { return CURRENT_CLOCK_BPM; }
    /// The scan speed last computed, freeze included.
    double scanningValue() const { return realScanningValue; }

    // --- Control to engine: stream_handlers.cpp ---

    void ui_setAmplitude(Control* sender = nullptr);
    void ui_setWidth(Control* sender = nullptr);
    void ui_setPan(Control* sender = nullptr);
    void ui_setDensity(Control* sender = nullptr);
    void ui_setLength(Control* sender = nullptr);
    void ui_setJittering(Control* sender = nullptr);
    void ui_setPitch(Control* sender = nullptr);
    void ui_setRndDensity(Control* sender = nullptr);
    void ui_setRndLength(Control* sender = nullptr);
    void ui_setRndPitch(Control* sender = nullptr);
    void ui_setSpeed(Control* sender = nullptr);
    void setEchoDelayLeft(Control* sender = nullptr);
    void setEchoDelayRight(Control* sender = nullptr);
    /// The rate, in Hz, at which seconds of echo become the samples that the echo counts: the
    /// output's; or 44100 whatever the output's, as it was where a state does not say. Then a
    /// preset sets the same counts everywhere, and at 88200 Hz its repeats come twice as fast.
    double echoRate() const;
    void setEchoAtOutputRate(bool atOutputRate);
    bool echoAtOutputRate() const { return echoAtOutputRate_; }
    void setEchoGainLeft(Control* sender = nullptr);
    void setEchoGainRight(Control* sender = nullptr);
    void setRmFrequency(Control* sender = nullptr);
    void setRmAmount(Control* sender = nullptr);
    void enableEcho(Control* sender = nullptr);
    void enableRM(Control* sender = nullptr);

    /// A displayed value, as people type it, to the control of id, whose handler then runs. Play
    /// Stop, Freeze and LIVE act like their buttons when the value differs from what the button
    /// shows (playing or armed counts as on). False, and nothing changed, for a value that
    /// acceptsValue refuses, for an id that a stream does not have (Dry/Wet, the fade times), and
    /// when LIVE cannot be switched on.
    bool setDisplayed(ControlId id, float displayed);
    /// A linear value, clamped to the range (one that is not finite is refused); the same
    /// otherwise. How parameters arrive.
    bool setLinear(ControlId id, float linear);
    /// What the control shows; the linear value. 0 for an id that a stream does not have.
    float displayed(ControlId id) const;
    float linear(ControlId id) const;

    /// What a hand moves for id: its control, or the picture of the sound for the scrubbing wave;
    /// null for an id that a stream does not have, and for the envelope.
    Control* control(ControlId id);

    // --- Scan position, region, envelope, seed, quality: stream_scan.cpp ---

    /// The engine's scan position, a fraction of the sound.
    float getTimePhasor() const { return engine_.currentScanPosition(); }
    /// Whether the scan's own speed does not move it: it is 0, or a hand or an LFO holds the scan.
    bool scanStands() const { return realScanningValue == 0.0 || scrubArea.stands(); }
    /// Moves the scan to a fraction of the sound, held inside the region, unless a hand holds it.
    /// Not finite is ignored.
    void setScrubNormalizedValue(float position);
    /// The same for the hand itself.
    void scrubTo(float position);
    /// The scan to the region's start for 0 ms; other times are fractions of the sound's length.
    void setTimePointer(double milliseconds);
    /// The part of the sound that is scanned, as fractions of it; with start above end the scan
    /// runs from end to start. False, and nothing changed, for values outside 0..1.
    bool setRegion(float start, float end);
    float regionStart() const { return regionStart_; }
    float regionEnd() const { return regionEnd_; }
    /// How often a scan position or another region was chosen.
    std::uint64_t scanChoices() const { return scanChoices_; }
    /// Swaps the grain envelope for a new table of the menu's entry. False beyond the menu.
    bool pickEnvelope(std::size_t menuIndex);
    std::size_t envelope() const { return envelope_; }
    /// The generator's state from the next block on; 0 is ignored.
    void setSeed(std::uint32_t seed);
    /// As last set, else as the clock gave it.
    std::uint32_t seed() const { return seed_; }
    /// How grains that start from the next block on read their sound; live input is read fine at
    /// most, because a wider reach would run ahead of it.
    void setQuality(GrainQuality quality);
    GrainQuality quality() const { return quality_; }

    // --- Notes to pitch: stream_notes.cpp ---

    static constexpr int kPitchZeroNote = 60; ///< MIDI
    /// While the keyboard button is on: selects the note that the pitch control stands at.
    void ui_setPitchToKeyboard(Control* sender = nullptr);
    void selectPitchFromMidiNote_andVeloc(int note, int velocity);
    /// Key 24 is pitch 0. keyboard may be null; the amplitude changes nothing.
    void keyDown_keyNum_forAmp(Keyboard* keyboard, int keyNum, float amplitude);

    // --- Live input: stream_live.cpp ---

    void ui_enableLiveInput(Control* sender = nullptr);
    bool isLive() const { return controls._enableLIVE.tag == 1; }
    /// An instrument has no input: LIVE stays off, whoever asks.
    void setLiveAllowed(bool allowed);
    bool liveAllowed() const { return liveAllowed_; }
    /// How often LIVE went on.
    std::uint64_t liveStarts() const { return liveStarts_; }
    /// Forgets what was heard, but for held sound.
    void ui_liveClear(Control* sender = nullptr);
    /// Makes a captured sound the live buffer's content, oldest frame first, and the current sound,
    /// held while Freeze is on.
    /// False, and nothing changed, when it is empty, has no rate, is not playable (see
    /// normalized_sample.h), or memory is short.
    bool setCaptured(std::span<const float> samples, double rate);
    /// What is remembered between two states of the captured sound, see captured_state.h.
    CapturedMemory& capturedMemory() { return capturedMemory_; }

    // --- Sound: stream_sound.cpp ---

    /// Plays a file's sound from the next block on; LIVE goes off. sound is kept as it is:
    /// Normalize plays a scaled copy once it has been touched. False, and nothing changed, for
    /// null, a sound that is not playable (see normalized_sample.h), and when memory is short.
    bool loadSound(std::shared_ptr<const mokSample> sound, SampleReference reference = {},
                   SoundUse use = SoundUse::play);
    /// The same for a sound that was made playable before, for normalizePeak() as it was then.
    void takeSound(PlayableSound sound, SampleReference reference, SoundUse use = SoundUse::play);
    /// What is loaded from a file; an empty path when nothing is. Live input leaves it as it was.
    const SampleReference& sampleReference() const { return reference_; }
    /// Names the file that is about to be loaded, so that a state keeps it though it is missing.
    void setSampleReference(SampleReference reference) { reference_ = std::move(reference); }
    /// The sound that is loaded stands in this file now; what plays is left alone.
    void nameSound(SampleReference reference);
    /// Back from the captured sound to the file's; nothing without one. LIVE goes off.
    void restoreLastSample();
    /// Normalize: for LIVE the gain of the input as it is written, for a file the peak that a copy
    /// of it is scaled to. Called by the knob's touch, which from then on counts for later sounds
    /// too.
    void ui_normalizeBuffer(Control* sender = nullptr);
    SoundNormalizer& normalizer() noexcept { return normalizer_; }
    /// The peak that files are scaled to; nothing plays them as they are.
    std::optional<float> normalizePeak() const;
    bool normalizeTouched() const { return normalizeTouched_; }
    /// Whether Normalize applies to files; false plays them as they are.
    void setNormalizeTouched(bool touched);
    /// Whether new grains get the level that keeps the cloud's loudness whatever its density and
    /// length; off in states that do not know it. The second: any thread.
    void setSteadyLevel(bool on) { engine_.setSteadyLevel(on); }
    bool isLevelSteady() const { return engine_.isLevelSteady(); }
    /// "name, 12.345 s, 44100 Hz, WAV ..." of the current sound, for people.
    std::string fileInformation() const;

    // --- Life ---

    /// Sets the output rate (Hz) of the engine, the echo and the ring modulator, resets both
    /// effects to their controls' values, and sets live input up again for the session's rate. A
    /// rate that isModuleSampleRate refuses changes nothing. OFF.
    void prepare(double sampleRate);
    /// Goes back to where the state has it, with the sound and the controls as they are: generator,
    /// interval, scan, take, what LIVE heard, echo and ring modulator. What plays begins from its
    /// start, with its fade; what fades out has ended. A scan that stands stays, but for what moved
    /// it on the sample clock. On the sample clock, MAIN and OFF.
    void startAnew(HostBars bars);
    /// Stops at once, without a fade. OFF.
    void stopAtOnce();
    /// A scan that stands is where it belongs, whoever moved it there.
    void forgetScanHome() { scanHome_.reset(); }
    /// The device's block length in frames, for displays.
    void setBufferSize(double frames) { bufferFrames_ = frames; }
    double bufferSize() const { return bufferFrames_; }
    /// Sends every effect value again (a reset has cleared them), and the scan's.
    void applyEffectControls();

    mokGranulatorSF& engine() noexcept { return engine_; }
    const mokGranulatorSF& engine() const noexcept { return engine_; }
    WaveForm& waveForm() noexcept { return waveForm_; }
    const WaveForm& waveForm() const noexcept { return waveForm_; }
    Instance& instance() noexcept { return instance_; }
    /// What ends every channel.
    const std::string& channel() const { return suffix_; }

    /// Posts task, unless the stream is gone by then.
    void onMain(RunLoop::Task task);

    /// Frees what was replaced and can no longer be seen by RENDER. Worth calling now and then;
    /// every swap also does.
    void collect() {
        retirement_.collect();
        grainWatch_.collect();
    }
    /// How many replaced objects still wait.
    std::size_t waitingObjects() const noexcept { return retirement_.waiting(); }

    /// What the finished output is shown to.
    Oscilloscope& oscilloscope() noexcept { return oscilloscope_; }
    /// Whom a window asks for the grains that start, inside RunLoop::Scope. MAIN.
    GrainWatch& grainWatch() noexcept { return grainWatch_; }

private:
    friend granular_data* getGranularData(MOK_SCRUB_GRANULATOR* controller) noexcept;
    friend bool GranulatorRests(MOK_SCRUB_GRANULATOR* controller) ZEPHYRA_NONBLOCKING;
    friend void GranulatorProcessing(MOK_SCRUB_GRANULATOR* controller, int frames,
                                     const AudioBufferList* input,
                                     const AudioBufferList& output) ZEPHYRA_NONBLOCKING;

    void addTargets();
    void addTarget(Control& control, const char* message, ControlEvents events,
                   void (MOK_SCRUB_GRANULATOR::*handler)(Control*));
    void addButtonTargets();
    void showPlaying();
    void setArmed(bool armed);
    void dropArmed();
    bool waitsForStart(void (MOK_SCRUB_GRANULATOR::*told)());
    void clearBackgroundLater(Button& button);
    double fadeTime(ControlId id) const;
    void switchEngine(bool on);
    void handFadedLevel();
    double scanSpeed() const;
    bool moveScan(double position);
    void scanWasMoved();
    void rewindScan();
    void fadeInAnew();
    void handToEngine(const mokSample* sample);
    void applyNormalize();
    void leaveLive();
    void playFile();
    bool buttonShows(ControlId id) const;
    bool switchButton(ControlId id, bool on);
    double echoSeconds(const MOK_KNOB& delay, const MokKnobEnum& subdivision) const;

    Instance& instance_;
    std::string suffix_;
    StreamSettings* settings_ = nullptr;
    Keyboard* keyboard_ = nullptr;
    bool showsPitch_ = false; // a key goes down to show where the pitch stands, wheel and all

    RenderCycle cycle_;
    Retirement retirement_{cycle_, [this](const void* table) { return engine_.holds(table); }};
    std::shared_ptr<mokWindow> window_;
    WaveForm waveForm_;
    mokGranulatorSF engine_;
    granular_data data_{&engine_, &waveForm_};
    Oscilloscope oscilloscope_;
    GrainWatch grainWatch_{engine_, cycle_};

    StreamFade fade_; ///< the level's way up and down: _fade, _incrIn, _incrOut and the abort flags
    bool _isFading = false;
    bool stopHolds_ = false; // a stop's fade-out holds the scan
    bool shouldPlayOnTime = false;
    bool hostArmed_ = false; // the host's start armed it, so its stop disarms it
    bool shouldRewindOnTime = false;
    std::uint64_t starts_ = 0;
    bool startQueued_ = false;       // a start's step that shows it has not run yet
    bool hostWaits_ = false;         // something that the host told since comes after it
    RunLoop::Token pendingStop_ = 0; // the stop: that a fade-out has scheduled
    double CURRENT_CLOCK_BPM = 120.0;
    double realScanningValue = 0.0;
    double isFreezed = 1.0; ///< a multiplier: 0 while frozen

    SampleReference reference_;
    CapturedMemory capturedMemory_;
    bool normalizeTouched_ = false;
    bool echoAtOutputRate_ = true;
    bool liveAllowed_ = true;
    std::uint64_t liveStarts_ = 0;
    float regionStart_ = 0.0f, regionEnd_ = 1.0f;
    std::uint64_t scanChoices_ = 0; // setScrubNormalizedValue and setRegion count
    /// The phase that startAnew() brings a standing scan back to; none: wherever it stands then.
    std::optional<double> scanHome_;
    std::size_t envelope_;
    std::uint32_t seed_;
    GrainQuality quality_ = GrainQuality::classic;
    double bufferFrames_ = 512.0;
    std::shared_ptr<void> life_ = std::make_shared<char>(); // posted steps end with the stream
    SoundNormalizer normalizer_;
};

/// The record of a stream's engine and live input; null for null. Any thread.
granular_data* getGranularData(MOK_SCRUB_GRANULATOR* controller) noexcept;

/// One render cycle: writes input (null, or fewer buffers than channels, is fine) into the live
/// buffer, renders frames samples into the first two buffers of output, and shows them to the
/// oscilloscope. Input and output may be the same memory. More than
/// mokGranulatorSF::kMaxBlockFrames frames are done in several such steps. A null controller does
/// nothing. RENDER.
void GranulatorProcessing(MOK_SCRUB_GRANULATOR* controller, int frames,
                          const AudioBufferList* input,
                          const AudioBufferList& output) ZEPHYRA_NONBLOCKING;

/// Whether a cycle of silent input would be silent, and leave nothing behind that is heard later:
/// no grain can sound, the effects have come to rest, and live input hears what it holds anyway.
/// True for a null controller. RENDER.
bool GranulatorRests(MOK_SCRUB_GRANULATOR* controller) ZEPHYRA_NONBLOCKING;

/// Passes over a cycle of a stream that rests: the scan goes on, for those who watch it and for
/// what follows. RENDER.
void GranulatorPassing(MOK_SCRUB_GRANULATOR* controller, int frames) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
