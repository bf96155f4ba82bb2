// One render cycle, in the order in which it happens.

#include "audiounit/my_audio_unit.h"
#include "audiounit/parameter_table.h"
#include "modulation/lfo_widgets_mapping.h"
#include "platform/threads/flush_denormals.h"
#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr std::uint32_t kNoteOn = 0x9; ///< high nibble of a MIDI status byte

/// Towards 0; what is beyond the range counts as its end.
std::int64_t truncated(double value) ZEPHYRA_NONBLOCKING {
    using Limits = std::numeric_limits<std::int64_t>;
    if (value >= 0x1p63) return Limits::max();
    if (value < -0x1p63) return Limits::min();
    return static_cast<std::int64_t>(value);
}

/// With no beats to a bar only beat 0 begins one.
bool isMultiple(std::int64_t beat, std::int64_t bar) ZEPHYRA_NONBLOCKING {
    if (bar == 0) return beat == 0;
    return bar == -1 || beat % bar == 0; // the least number has no remainder by -1
}

/// What no sound can be becomes silence, before it gets into echoes that never end.
void clean(float* samples, std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    for (std::uint32_t i = 0; i < frames; ++i)
        samples[i] = std::fabs(samples[i]) <= MyAudioUnit::kMostInput ? samples[i] : 0.0f;
}

/// Sets the pointers that the host left null.
void supply(AudioBufferList& list, const AudioBufferList& memory,
            std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    const std::uint32_t count = std::min(list.mNumberBuffers, memory.mNumberBuffers);
    for (std::uint32_t c = 0; c < count; ++c) {
        if (list.mBuffers[c].mData) continue;
        list.mBuffers[c].mData = memory.mBuffers[c].mData;
        list.mBuffers[c].mDataByteSize = frames * static_cast<std::uint32_t>(sizeof(float));
    }
}

} // namespace

OSStatus
AUInternalRenderBlock::operator()(std::uint32_t frameCount, AudioBufferList& outputData,
                                  const AURenderEvent* events,
                                  AURenderPullInputBlock* pullInput) const ZEPHYRA_NONBLOCKING {
    return unit_->render(frameCount, outputData, events, pullInput);
}

OSStatus MyAudioUnit::render(std::uint32_t frames, AudioBufferList& output,
                             const AURenderEvent* events,
                             AURenderPullInputBlock* pullInput) ZEPHYRA_NONBLOCKING {
    if (!allocated_) return audio_unit_status::uninitialized;
    if (frames > maximumFrames_) return audio_unit_status::tooManyFrames;
    if (output.mNumberBuffers < 2) return audio_unit_status::noError;
    const FlushDenormals flush;
    if (!isInstrument_ && frames > 0) {
        const OSStatus status = pull(frames, pullInput);
        if (status != audio_unit_status::noError) return status;
    }
    followHost();
    applyEvents(events);
    lfotTickProcessing(record_.lfoInRefCon, static_cast<int>(frames));
    if (frames == 0) return audio_unit_status::noError;
    if (isInstrument_)
        renderInstrument(frames, output);
    else
        renderEffect(frames, output);
    return audio_unit_status::noError;
}

/// Into memory of our own: the sound is made over it, and the host's input is only to be read.
OSStatus MyAudioUnit::pull(std::uint32_t frames,
                           AURenderPullInputBlock* pullInput) ZEPHYRA_NONBLOCKING {
    if (!pullInput) return audio_unit_status::noConnection;
    AudioBuffer given[kMostInputChannels];
    const std::uint32_t channels = inputBus_.format().channelCount;
    AudioBufferList list{.mNumberBuffers = channels, .mBuffers = given};
    for (std::uint32_t c = 0; c < channels; ++c)
        given[c] = {.mDataByteSize = frames * static_cast<std::uint32_t>(sizeof(float)),
                    .mData = pullBuffer_->mBuffers[c].mData};
    const OSStatus status = pullInput->pullInput(frames, 0, list);
    if (status != audio_unit_status::noError) return status;
    for (std::uint32_t c = 0; c < channels; ++c) {
        float* const own = pullBuffer_->floats(c);
        const auto* const from = static_cast<const float*>(given[c].mData);
        if (!from || c >= list.mNumberBuffers)
            std::fill_n(own, frames, 0.0f);
        else if (from != own)
            std::copy_n(from, frames, own);
        clean(own, frames);
    }
    if (channels == 1) std::copy_n(pullBuffer_->floats(0), frames, pullBuffer_->floats(1));
    return audio_unit_status::noError;
}

void MyAudioUnit::followHost() ZEPHYRA_NONBLOCKING {
    AUTransportState state;
    const bool tells = capturedTransport_ && capturedTransport_->transportState(state);
    const bool jumped = tells && (state.flags & transport_flag::jumped) != 0;
    const bool beginsBar = followMusicalContext(jumped);
    if (tells) followTransport((state.flags & transport_flag::moving) != 0, beginsBar);
}

/// The bar that a jump leads to counts, though it be the present one again; and so does a loop to 0
/// that came in the middle of the cycle before.
void MyAudioUnit::jumpTo(double position) ZEPHYRA_NONBLOCKING {
    constexpr double kLongestCycle = 0.25; // quarters
    record_.hasBeenSynced = false;
    lastBar_ = std::numeric_limits<double>::quiet_NaN();
    if (position >= 0.0 && position < kLongestCycle) record_.hasBeenRewinded = true;
}

/// Whether the cycle begins a bar.
bool MyAudioUnit::followMusicalContext(bool jumped) ZEPHYRA_NONBLOCKING {
    AUMusicalContext context;
    if (!capturedContext_ || !capturedContext_->musicalContext(context)) return false;
    const double position = context.currentBeatPosition;
    bool beginsBar = false;
    if (std::isfinite(position)) {
        if (jumped) jumpTo(position);
        beginsBar = followBars(context);
        followRewinds(position);
    }
    const double tempo = context.currentTempo;
    if (std::isfinite(tempo) && tempo != record_.lastTempoValue) {
        record_.lastTempoValue = tempo;
        tempo_.store(tempo, std::memory_order_relaxed);
    }
    return beginsBar;
}

/// Tells each downbeat once, in the first cycle whose beat begins a bar.
bool MyAudioUnit::followBars(const AUMusicalContext& context) ZEPHYRA_NONBLOCKING {
    const double numerator = context.timeSignatureNumerator;
    if (!std::isfinite(numerator)) return false;
    const double position = context.currentBeatPosition,
                 beat = 4 / context.timeSignatureDenominator;
    const double quarters = std::trunc(numerator) * beat;
    if (beat != 1.0 && quarters > 0 && std::isfinite(quarters))
        return followBarsOf(quarters, beat, position);
    const bool begins = isMultiple(truncated(position), truncated(numerator));
    if (begins && !record_.hasBeenSynced) notice(RenderNoticeKind::bar);
    record_.hasBeenSynced = begins;
    return begins;
}

/// Of a meter whose beats are no quarters, also where a cycle passes a bar's whole first beat.
bool MyAudioUnit::followBarsOf(double quarters, double beat, double position) ZEPHYRA_NONBLOCKING {
    const double bar = std::floor(position / quarters);
    const bool isFirstBeat = position - bar * quarters < beat;
    const bool wentOn = bar == lastBar_ + 1;
    const bool isTold = record_.hasBeenSynced && bar == lastBar_;
    if (wentOn || (isFirstBeat && !isTold)) notice(RenderNoticeKind::bar);
    record_.hasBeenSynced = isFirstBeat;
    lastBar_ = bar;
    return isFirstBeat;
}

/// A position of 0 tells at once; one before it (a count-in) as soon as 0 is reached.
void MyAudioUnit::followRewinds(double position) ZEPHYRA_NONBLOCKING {
    if (position <= 0.0) record_.hasBeenRewinded = true;
    if (position < 0.0 || !record_.hasBeenRewinded) return;
    record_.hasBeenRewinded = false;
    notice(RenderNoticeKind::rewind);
}

void MyAudioUnit::followTransport(bool moves, bool beginsBar) ZEPHYRA_NONBLOCKING {
    if (moves == record_.lastWasPlaying) return;
    record_.lastWasPlaying = moves;
    notice(moves ? RenderNoticeKind::start : RenderNoticeKind::stop);
    // The bar may have been told while the host stood, and a start that is only armed now would
    // wait for the next one.
    if (moves && beginsBar) notice(RenderNoticeKind::forceToPlay);
}

void MyAudioUnit::applyEvents(const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    for (; events; events = events->next) {
        switch (events->eventType) {
        case AURenderEventType::parameter:
        case AURenderEventType::parameterRamp:
            applyParameter(events->parameter);
            break;
        case AURenderEventType::MIDI:
            applyMidi(events->MIDI);
            break;
        default:
            break;
        }
    }
}

void MyAudioUnit::applyParameter(const AUParameterEvent& event) ZEPHYRA_NONBLOCKING {
    if (event.parameterAddress >= kParameterCount || !std::isfinite(event.value)) return;
    storeParameter(record_, event.parameterAddress, event.value, instance_.states.now());
    markParameter(event.parameterAddress);
}

void MyAudioUnit::applyMidi(const AUMIDIEvent& event) ZEPHYRA_NONBLOCKING {
    const auto& [status, note, velocity] = event.data;
    if (event.length < 3 || status >> 4 != kNoteOn || note > 127 || velocity > 127) return;
    if (controller_) controller_->midiNoteOn(note, velocity);
}

void MyAudioUnit::renderInstrument(std::uint32_t frames,
                                   AudioBufferList& output) ZEPHYRA_NONBLOCKING {
    supply(output, *ownOutput_, frames);
    if (!_GRANULATOR_STREAM) // nothing would be written
        for (std::uint32_t c = 0; c < 2; ++c) std::fill_n(output.floats(c), frames, 0.0f);
    GranulatorProcessing(_GRANULATOR_STREAM, static_cast<int>(frames), &output, output);
}

bool MyAudioUnit::rests() const ZEPHYRA_NONBLOCKING {
    const DryWetGains now = dryWetGains();
    DryWetGains next = now;
    next.advance();
    const bool glides = next.wet != now.wet || next.dry != now.dry;
    return (isInstrument_ || !glides) && GranulatorRests(_GRANULATOR_STREAM);
}

void MyAudioUnit::pass(std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    GranulatorPassing(_GRANULATOR_STREAM, static_cast<int>(frames));
}

DryWetGains MyAudioUnit::dryWetGains() const ZEPHYRA_NONBLOCKING {
    return {record_.m_z_dry_wet,  record_.m_z_dry_wet_inv,
            record_._inputDryWet, record_._inputDryWetInv,
            record_.m_a,          record_.m_b};
}

void MyAudioUnit::renderEffect(std::uint32_t frames, AudioBufferList& output) ZEPHYRA_NONBLOCKING {
    supply(output, *pullBuffer_, frames);
    const AudioBufferList& dry = *record_.lastInputBuffer;
    for (std::uint32_t c = 0; c < 2; ++c)
        std::copy_n(pullBuffer_->floats(c), frames, dry.floats(c));
    const int count = static_cast<int>(frames);
    GranulatorProcessing(_GRANULATOR_STREAM, count, pullBuffer_, *pullBuffer_);
    DryWetGains gains = dryWetGains();
    mixDryWet(gains,
              {{pullBuffer_->floats(0), dry.floats(0)}, {pullBuffer_->floats(1), dry.floats(1)}},
              count);
    record_.m_z_dry_wet = gains.wet;
    record_.m_z_dry_wet_inv = gains.dry;
    for (std::uint32_t c = 0; c < 2; ++c)
        if (output.floats(c) != pullBuffer_->floats(c))
            std::copy_n(pullBuffer_->floats(c), frames, output.floats(c));
}

} // namespace zephyra
