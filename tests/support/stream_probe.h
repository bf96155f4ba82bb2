// StreamProbe and PhasorProbe: the engine's fields, for tests only.
#pragma once

#include "engine/granular_stream.h"

namespace zephyra {

struct PhasorProbe {
    static double phase(const mokPhasor& p) { return p.phase; }
    static float increment(const mokPhasor& p) { return p.increment; }
    static float frequency(const mokPhasor& p) { return p.frequency; }
};

struct StreamProbe {
    /// Every float setting that RENDER reads, by name of its field.
    struct Fields {
        float level, width, panA, panB, panRestA, panRestB, grainLength, density, playbackRate;
        float rndLength, rndDensity, rndPitch, jitter, scanSpan, scanStart, scanEnd, speed;
        float scanFrequency, scanIncrement;
        bool operator==(const Fields&) const = default;
    };

    static Fields fields(const mokGranulatorSF& s) {
        const float frequency = PhasorProbe::frequency(s.scanPhasor);
        const float increment = PhasorProbe::increment(s.scanPhasor);
        return {s.level,      s.width,       s.panA,    s.panB,         s.panRestA,
                s.panRestB,   s.grainLength, s.density, s.playbackRate, s.rndLength,
                s.rndDensity, s.rndPitch,    s.jitter,  s.scanSpan,     s.scanStart,
                s.scanEnd,    s.speed,       frequency, increment};
    }
    static const GrainTapSet* taps(const mokGranulatorSF& s) { return s.taps_.load(); }
    static std::uint32_t seed(const mokGranulatorSF& s) { return s.randomSeed; }
    static const mokPhasor& phasor(const mokGranulatorSF& s) { return s.scanPhasor; }
    static const mokSample* sample(const mokGranulatorSF& s) { return s.sample.load(); }
    static const mokWindow* window(const mokGranulatorSF& s) { return s.window.load(); }
    static const mokGrain& grain(const mokGranulatorSF& s, std::size_t i) { return *s.grains[i]; }
    /// Bytes from the left mix to the right one.
    static std::ptrdiff_t mixDistance(const mokGranulatorSF& s) { return (s.mixR - s.mixL) * 4; }
    static float gainL(const mokGranulatorSF& s, std::size_t i) { return s.grainGainL[i]; }
    static float gainR(const mokGranulatorSF& s, std::size_t i) { return s.grainGainR[i]; }
};

} // namespace zephyra
