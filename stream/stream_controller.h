// MOK_SCRUB_GRANULATOR: the controller of one stream, which hands controls, sounds and live input
// to its engine.
#pragma once

#include "engine/granular_stream.h"
#include "platform/audio_buffer_list.h"
#include "platform/audio_session.h"
#include "platform/notification_center.h"
#include "platform/realtime.h"
#include "platform/render_cycle.h"
#include "stream/control_ranges.h"
#include "stream/live_buffer.h"

#include <array>
#include <cstddef>
#include <memory>

namespace zephyra {

/// What the render path holds of a stream.
struct granular_data {
    mokGranulatorSF* engine;
    WaveForm* waveform;
};

/// Sees a stream's finished output.
class Oscilloscope {
public:
    virtual ~Oscilloscope() = default;
    /// frames samples (at most mokGranulatorSF::kMaxBlockFrames) in the first two buffers of list,
    /// which are only to be read. RENDER.
    virtual void OscilloscopeAddAudio(const AudioBufferList& list,
                                      int frames) ZEPHYRA_NONBLOCKING = 0;
};

/// Owns the engine, the live buffer, the sound and the envelope of one stream. Everything is MAIN
/// unless said otherwise, and may go on while RENDER is in GranulatorProcessing: what RENDER can
/// see is swapped, and freed once no render call can see it any more. Constructed and destroyed
/// OFF.
class MOK_SCRUB_GRANULATOR {
public:
    /// An engine of 24 grains at 44100 Hz on a silent sound with the Hanning envelope, every
    /// control at its default, not playing. Both references must outlive this. Throws
    /// std::bad_alloc.
    MOK_SCRUB_GRANULATOR(NotificationCenter& notifications, const AudioSession& session);
    ~MOK_SCRUB_GRANULATOR();
    MOK_SCRUB_GRANULATOR(const MOK_SCRUB_GRANULATOR&) = delete;
    MOK_SCRUB_GRANULATOR& operator=(const MOK_SCRUB_GRANULATOR&) = delete;

    /// Sets the output rate (Hz) of the engine, the echo and the ring modulator, and resets both
    /// effects to their controls' values. A rate that isModuleSampleRate refuses changes nothing.
    /// OFF.
    void prepare(double sampleRate);

    /// Hands a displayed value to the engine. Returns false, and changes nothing, for a value the
    /// control does not take (see acceptsValue), for a control that a stream does not have
    /// (Dry/Wet, the tempo and the fade controls), and when memory for a rescaled sound is short.
    bool setControl(ControlId id, float displayed);
    /// The displayed value last set; the default at first.
    float control(ControlId id) const noexcept;

    /// Swaps the grain envelope for a new table of the menu's entry. False beyond the menu.
    bool pickEnvelope(std::size_t menuIndex);

    /// Plays sound from the next block on, scaled so that its peak is the Normalize control's value
    /// (silence stays silence); while live input is on, from when it goes off. sound must not be
    /// changed afterwards. False, and nothing changed, for null, a rate that is not above 0,
    /// samples that are not finite, and when memory for the scaled copy is short.
    bool loadSound(std::shared_ptr<mokSample> sound);

    /// On: grains are cut from the live buffer, and Normalize becomes 1 and the gain of the input
    /// as it is written. Off: from the loaded sound again. False, and nothing changed, when memory
    /// is short.
    bool enableLive(bool on);

    /// Switches the granular stage. The echo rings on.
    void play(bool on);

    /// The part of the sound that is scanned, as fractions of it; with start above end the scan
    /// runs from end to start. False, and nothing changed, for values outside 0..1.
    bool setRegion(float start, float end);

    mokGranulatorSF& engine() noexcept { return engine_; }
    WaveForm& waveForm() noexcept { return waveForm_; }

    /// Frees what was replaced and can no longer be seen by RENDER. Worth calling now and then;
    /// every swap also does.
    void collect() { retirement_.collect(); }
    /// How many replaced objects still wait.
    std::size_t waitingObjects() const noexcept { return retirement_.waiting(); }

    /// Shows the output to oscilloscope (not owned) from now on, or to nobody. OFF.
    void setOscilloscope(Oscilloscope* oscilloscope) noexcept { oscilloscope_ = oscilloscope; }

private:
    friend granular_data* getGranularData(MOK_SCRUB_GRANULATOR* controller) noexcept;
    friend void GranulatorProcessing(MOK_SCRUB_GRANULATOR* controller, int frames,
                                     const AudioBufferList* input,
                                     const AudioBufferList& output) ZEPHYRA_NONBLOCKING;

    bool applyControl(ControlId id, float value);
    bool applyToEffects(ControlId id, float value);
    void applyEffectControls();
    bool applyNormalize(float value);
    bool swapEnvelope(std::size_t menuIndex);
    void swapSound(std::shared_ptr<mokSample> next);
    void handToEngine(const mokSample* sample);

    RenderCycle cycle_;
    Retirement retirement_{cycle_};
    std::array<float, kControlCount> controls_;
    std::shared_ptr<mokWindow> window_;
    std::shared_ptr<mokSample> original_; // as it was loaded
    std::shared_ptr<mokSample> sound_;    // scaled by Normalize; may be the original itself
    WaveForm waveForm_;
    mokGranulatorSF engine_;
    granular_data data_{&engine_, &waveForm_};
    bool liveInput_ = false; // the engine is on the live sample
    Oscilloscope* oscilloscope_ = nullptr;
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

} // namespace zephyra
