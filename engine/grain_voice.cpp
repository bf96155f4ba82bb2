#include "engine/grain_voice.h"

#include "engine/grain_step.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr std::uint64_t kUnreadTail = 4; // frames at the end that read indices never start from

/// 1 / length / rate; whatever has no such increment ends at its first sample.
float envelopeIncrementFor(float length, float rate) ZEPHYRA_NONBLOCKING {
    const float increment = (1.0f / length) / rate;
    return length > 0.0f && rate > 0.0f && increment < 1.0f ? increment : 1.0f;
}

bool isFinite(double value) ZEPHYRA_NONBLOCKING {
    return value - value == 0.0;
}

} // namespace

Relaxed<std::int32_t> mokGrain::_actives = 0;

GrainTables grainTables(const mokBuffer& source, const mokBuffer& envelope) ZEPHYRA_NONBLOCKING {
    constexpr std::uint64_t kMostIndexable = std::uint64_t{1} << 30;
    constexpr std::uint64_t kFewestIndexable = 8;
    const std::uint64_t modulus =
        source.size > kUnreadTail ? source.size - kUnreadTail : source.size;
    return {.source = source.getPtr(),
            .sourceSize = source.size,
            .sourceModulus = modulus,
            .envelope = envelope.getPtr(),
            .envelopeSize = envelope.size,
            .isIndexable = source.size < kMostIndexable && modulus >= kFewestIndexable &&
                           envelope.size < kMostIndexable,
            .ready = source.ready};
}

mokGrain::mokGrain(const mokBuffer* sourceBuffer, const mokBuffer* envelopeBuffer, float rate,
                   std::uint32_t givenSeed)
    : seed(givenSeed), source(sourceBuffer), envelope(envelopeBuffer),
      phaseIncrement(rate > 0.0f ? kFirstFrequency / rate : 0.0f), sampleRate(rate),
      envelopeIncrement(envelopeIncrementFor(kFirstLength, rate)) {
    if (!source) {
        ownSource_ = std::make_unique<mokWave>(mokWave::kPoints, kWaveSine);
        source = ownSource_.get();
        ownsSource = true;
    }
    if (!envelope) {
        ownEnvelope_ = std::make_unique<mokWindow>(mokWindow::kPoints, kWindowHanning);
        envelope = ownEnvelope_.get();
        ownsEnvelope = true;
    }
}

mokGrain::~mokGrain() {
    if (active) lowerActives(1);
}

void mokGrain::lowerActives(std::int32_t by) ZEPHYRA_NONBLOCKING {
    _actives = std::max(_actives.load() - by, 0);
}

void mokGrain::setParameters(const float& newAmplitude, const float& newFrequency,
                             const double& position, const float& newLength) ZEPHYRA_NONBLOCKING {
    straight = {};
    if (isFinite(double{newAmplitude})) amplitude = newAmplitude;
    const float increment = newFrequency / sampleRate;
    if (isFinite(double{newFrequency}) && isFinite(double{increment})) {
        frequency = newFrequency;
        phaseIncrement = increment;
    }
    if (isFinite(position)) readPhase = std::min(position < 0.0 ? -position : position, 1.0);
    placeOrigin(source->size);
    if (isFinite(double{newLength})) {
        length = newLength;
        envelopeIncrement = envelopeIncrementFor(length, sampleRate);
    }
}

void mokGrain::placeOrigin(std::uint64_t size) ZEPHYRA_NONBLOCKING {
    const double position = readPhase * static_cast<double>(size);
    const bool isBeyond = readPhase > 1.0; // of a rate so high that a wrap does not bring it back
    const bool isNear = position < kNearFrames || isBeyond || phaseIncrement < 0.0f;
    origin = isNear ? 0 : static_cast<std::int64_t>(position);
}

void mokGrain::setTaps(const GrainTapSet* set) ZEPHYRA_NONBLOCKING {
    taps = set ? set->forRate(phaseIncrement * static_cast<float>(source->size)) : nullptr;
}

void mokGrain::start() ZEPHYRA_NONBLOCKING {
    if (active) return;
    _actives = _actives.load() + 1;
    straight = {};
    envelopePhase = 0.0f;
    readPhase = 0.0;
    origin = 0;
    taps = nullptr;
    active = true;
    readOffset = source->offset;
}

void mokGrain::Processing(float* out, int count) ZEPHYRA_NONBLOCKING {
    const GrainTables tables = grainTables(*source, *envelope);
    straight = {};
    for (int n = 0; n < count; ++n) {
        switch (grain_step::advance(*this, tables.ready)) {
        case GrainStep::notReady:
            return;
        case GrainStep::ended:
            active = false;
            std::fill(out + n, out + count, 0.0f);
            lowerActives(count - n); // by samples, not by one: see _actives
            return;
        case GrainStep::sounds:
            out[n] = grain_step::sampleAt(*this, tables);
        }
    }
}

void mokGrain::setSampleRate(float rate) noexcept {
    if (!std::isfinite(rate) || !(rate > 0.0f)) return;
    sampleRate = rate;
    straight = {};
    if (std::isfinite(frequency / rate)) phaseIncrement = frequency / rate;
    envelopeIncrement = envelopeIncrementFor(length, rate);
}

} // namespace zephyra
