// LiteralStream: the engine's arithmetic as a plain loop, sample by sample and grain by grain.
//
// Slow and obviously right: what the engine's output must equal bit for bit, and what its speed is
// measured against. It shares no code with the engine but the buffers it reads.
#pragma once

#include "engine/grain_taps.h"
#include "engine/grain_window.h"
#include "engine/sample_buffer.h"
#include "platform/threads/flush_denormals.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace zephyra {

struct LiteralGrain {
    bool active = false;
    double readPhase = 0;
    float phaseIncrement = 0, envelopePhase = 0, envelopeIncrement = 1, amplitude = 0;
    std::uint64_t readOffset = 0;
    double origin = 0; // positions are counted from it: 0 near the beginning, or the first frame

    const GrainTaps* taps = nullptr; // null: linearly

    static std::uint64_t indexOf(const mokBuffer& source, std::uint64_t frame) {
        return frame % (source.size > 4 ? source.size - 4 : source.size);
    }

    float linear(const mokBuffer& source) const {
        const float p = static_cast<float>(readPhase * static_cast<double>(source.size) - origin);
        const auto i = static_cast<std::uint64_t>(p);
        const float f = p - static_cast<float>(i);
        const auto index = indexOf(source, readOffset + static_cast<std::uint64_t>(origin) + i);
        return source.data[index] + (source.data[index + 1] - source.data[index]) * f;
    }

    // Eight sums side by side, over a source that goes on with its first frame behind its last.
    float tapped(const mokBuffer& source) const {
        const double p = readPhase * static_cast<double>(source.size) - origin;
        const auto i = static_cast<std::uint64_t>(p);
        const float phase =
            static_cast<float>(p - std::floor(p)) * static_cast<float>(taps->phases);
        const auto row = static_cast<int>(phase);
        const float part = phase - static_cast<float>(row);
        const auto index = indexOf(source, readOffset + static_cast<std::uint64_t>(origin) + i);
        float s[8] = {};
        for (int n = 0; n < 8 * taps->groups; ++n) {
            const TapGroup& group = taps->rows[row * taps->groups + n / 8];
            const auto frame = static_cast<std::int64_t>(index) + n + 1 - 4 * taps->groups;
            const auto size = static_cast<std::int64_t>(source.size);
            const float tap = group.taps[n % 8] + group.slopes[n % 8] * part;
            s[n % 8] += source.data[((frame % size) + size) % size] * tap;
        }
        return ((s[0] + s[1]) + (s[2] + s[3])) + ((s[4] + s[5]) + (s[6] + s[7]));
    }

    void render(const mokBuffer& source, const mokBuffer& envelope, float* out, int count) {
        for (int n = 0; n < count; ++n) {
            envelopePhase += envelopeIncrement;
            if (envelopePhase >= 1) {
                active = false;
                out[n] = 0;
                continue;
            }
            readPhase += double{phaseIncrement};
            if (readPhase >= 1) {
                readPhase -= 1;
                origin = 0;
            }
            if (!source.ready) return;
            const float s = taps ? tapped(source) : linear(source);
            const float q = envelopePhase * static_cast<float>(envelope.size);
            const auto j = static_cast<std::uint64_t>(q);
            const float e = envelope.data[j] +
                            (envelope.data[j + 1] - envelope.data[j]) * (q - static_cast<float>(j));
            out[n] = amplitude * (s * e);
        }
    }
};

/// The settings are the engine's fields, in its units; a test sets them as it wishes.
struct LiteralStream {
    const mokSample* sample;
    const mokWindow* window;
    float sampleRate = 44100;
    std::uint32_t seed = 1;

    float level = 0.5f, width = 0.25f, panA = 0, panB = 1;
    float grainLength = 0.085f, density = 50, playbackRate = 0;
    float rndLength = 0.25f, rndDensity = 0.25f, rndPitch = 0, jitter = 0;
    float scanSpan = 1, scanStart = 0, phasorIncrement = 0;
    GrainQuality quality = GrainQuality::classic;

    std::vector<LiteralGrain> grains;
    std::vector<float> gainL, gainR, scratch, phases, mixL, mixR;
    std::vector<int> startOffset;
    double phasorPhase = 0;
    std::uint64_t interval = 0, counter = 0;
    float scanPosition = 0;
    std::uint64_t started = 0, dropped = 0;

    LiteralStream(const mokSample& source, const mokWindow& shape, int voices)
        : sample(&source), window(&shape), grains(voices), gainL(voices), gainR(voices),
          scratch(8192), phases(8192), mixL(8192), mixR(8192), startOffset(voices) {}

    void startGrain(int frame) {
        const std::uint32_t S = seed;
        const auto product = [S](std::uint32_t power) {
            return static_cast<float>(static_cast<std::int32_t>(S * power)) * 0x1p-31f;
        };
        const auto r = [&](std::uint32_t power) { return product(power) + 1.0f - 1.0f; };
        const float length = grainLength + r(282475249u) * (rndLength * grainLength);
        const float d = density + r(1622647863u) * (density * rndDensity);
        const float quotient = sampleRate / d;
        interval = quotient >= 0x1p64f ? std::numeric_limits<std::uint64_t>::max()
                   : quotient > 0      ? static_cast<std::uint64_t>(quotient)
                                       : 0;
        const auto rate = static_cast<float>(
            double{playbackRate} * std::pow(2.0, double{r(3095271137u)} * double{rndPitch}));
        const std::uint32_t m5 = 3095271137u * 16807u;
        const float jitterOffset = jitter * r(m5);
        seed = S * m5;
        const float spread = width * (product(16807u) + 1.0f) * 0.5f;
        const float position = scanPosition + jitterOffset;
        std::size_t i = 0;
        while (i < grains.size() && grains[i].active) ++i;
        if (i == grains.size()) {
            ++dropped;
            return;
        }
        ++started;
        startOffset[i] = frame;
        LiteralGrain& g = grains[i];
        g = {};
        g.active = true;
        g.readOffset = sample->offset;
        g.amplitude = level;
        g.phaseIncrement = rate / sampleRate;
        g.readPhase = std::min(std::abs(double{position}), 1.0);
        const double first = g.readPhase * static_cast<double>(sample->size);
        g.origin = first < 0x1p20 ? 0 : std::floor(first);
        if (const GrainTapSet* set = GrainTapSet::of(quality))
            g.taps = set->forRate(g.phaseIncrement * static_cast<float>(sample->size));
        g.envelopeIncrement = length > 0 ? std::min((1.0f / length) / sampleRate, 1.0f) : 1.0f;
        const auto L = static_cast<float>(1.0 - double{width} + double{spread});
        const float R = 1.0f - spread;
        gainL[i] = L * (1.0f - panA) + R * (1.0f - panB);
        gainR[i] = R * panA + R * panB;
    }

    void render(int frames, float* outL, float* outR) {
        const FlushDenormals flush;
        for (int n = 0; n < frames; ++n) {
            phasorPhase += double{phasorIncrement};
            phases[n] = static_cast<float>(phasorPhase) - phasorIncrement;
            if (phasorPhase >= 1)
                phasorPhase -= 1;
            else if (phasorPhase < 0)
                phasorPhase += 1;
        }
        for (int n = 0; n < frames; ++n) {
            scanPosition = std::min(phases[n] * scanSpan + scanStart, 1.0f);
            counter += 1;
            if (counter >= interval) {
                startGrain(n);
                counter = 0;
            }
        }
        for (std::size_t i = 0; i < grains.size(); ++i) {
            if (!grains[i].active) continue;
            std::fill_n(scratch.begin(), frames, 0.0f);
            const int at = startOffset[i];
            grains[i].render(*sample, *window, scratch.data(), frames - at);
            for (int n = 0; n < frames; ++n) {
                mixL[at + n] = std::fma(scratch[n], gainL[i], mixL[at + n]);
                mixR[at + n] = std::fma(scratch[n], gainR[i], mixR[at + n]);
            }
            startOffset[i] = 0;
        }
        for (int n = 0; n < frames; ++n) {
            outL[n] = mixL[n];
            outR[n] = mixR[n];
            mixL[n] = mixR[n] = 0;
        }
    }
};

} // namespace zephyra
