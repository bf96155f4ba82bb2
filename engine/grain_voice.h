// mokGrain: one grain voice, which reads a source through an envelope and ends by itself.
#pragma once

#include "engine/grain_taps.h"
#include "engine/grain_window.h"
#include "engine/sample_buffer.h"
#include "engine/wave_table.h"

#include <cstdint>
#include <memory>

namespace zephyra {

/// What a grain reads during one block: a snapshot of its source and its envelope, so that neither
/// changes within the block. Built by grainTables().
struct GrainTables {
    const float* source;
    std::uint64_t sourceSize;    ///< frames
    std::uint64_t sourceModulus; ///< read indices are taken modulo this; size - 4, at least 1
    const float* envelope;
    std::uint64_t envelopeSize; ///< points
    bool isIndexable; ///< positions in both fit 32 bits, and an index wraps a few times at most
    bool ready;       ///< the source may be read
};

/// A snapshot of both tables. RENDER.
GrainTables grainTables(const mokBuffer& source, const mokBuffer& envelope) ZEPHYRA_NONBLOCKING;

/// One voice of the pool. Start it, then set its parameters (start() zeroes the read phase), then
/// render block by block until active is clear. Everything but the construction is RENDER; the
/// fields are read by the stream that owns the pool.
class mokGrain {
public:
    static constexpr float kFirstFrequency = 440.0f; ///< Hz, until parameters are set
    static constexpr float kFirstLength = 85.0f;     ///< seconds, until parameters are set
    static constexpr double kNearFrames = 0x1p20;    ///< positions up to here are counted from 0

    /// source and envelope are not owned; a null source becomes an own 4096-point sine, a null
    /// envelope an own 4096-point Hanning. sampleRate in Hz. MAIN.
    mokGrain(const mokBuffer* source, const mokBuffer* envelope, float sampleRate,
             std::uint32_t seed);
    ~mokGrain();
    mokGrain(const mokGrain&) = delete;
    mokGrain& operator=(const mokGrain&) = delete;

    /// amplitude: gain. frequency: Hz at which the whole source would be traversed once. position:
    /// fraction of the source; a negative one is mirrored, and 1 is the most. length: seconds; one
    /// that is not above 0 ends at its first sample. A value that is not finite, or whose increment
    /// would not be, leaves its field as it was.
    void setParameters(const float& amplitude, const float& frequency, const double& position,
                       const float& length) ZEPHYRA_NONBLOCKING;

    /// Counts positions from the frame where the grain stands, in a source of size frames, so that
    /// they are as fine far into it as near its beginning; from 0 up to kNearFrames, and backwards.
    /// The grain never falls behind it: a wrap takes it back to 0.
    void placeOrigin(std::uint64_t size) ZEPHYRA_NONBLOCKING;

    /// Reads the source through the low-pass that suits the grain's rate; null, as after start():
    /// linearly. To be called after setParameters(), while nothing has sounded.
    void setTaps(const GrainTapSet* set) ZEPHYRA_NONBLOCKING;

    /// Starts a grain that is not sounding, at phase 0 of source and envelope; a sounding one is
    /// left alone.
    void start() ZEPHYRA_NONBLOCKING;

    /// Renders up to count samples. A grain that ends writes zeros for the rest of the call; a
    /// source that is not ready leaves the rest of out unwritten.
    void Processing(float* out, int count) ZEPHYRA_NONBLOCKING;

    /// Hz; recomputes both increments. One that is not above 0 or not finite is ignored. OFF.
    void setSampleRate(float rate) noexcept;

    /// Lowers _actives, never below 0. RENDER.
    static void lowerActives(std::int32_t by) ZEPHYRA_NONBLOCKING;

    /// Sounding grains of the process, roughly: several RENDER threads count without
    /// read-modify-write and lose steps. A grain that ends lowers it by the samples that its call
    /// had left, not by one, so that lost steps do not add up: it comes back to 0.
    static Relaxed<std::int32_t> _actives;

    // The fields are in the order of the record that the stream walks.
    std::uint32_t seed;        ///< as given at construction; read by nothing
    bool ownsSource = false;   ///< the grain made its own source table
    bool ownsEnvelope = false; ///< the grain made its own envelope
    bool active = false;       ///< sounding
    const mokBuffer* source;
    const mokBuffer* envelope;
    double readPhase = 0.0;       ///< position in the source, 0..1
    float phaseIncrement;         ///< frequency / sampleRate
    float sampleRate;             ///< Hz
    float spare = 0.0f;           ///< read by nothing
    float envelopePhase = 0.0f;   ///< 0..1
    float envelopeIncrement;      ///< 1 / length / sampleRate
    float amplitude = 0.5f;       ///< gain
    float length = 85.0f;         ///< seconds
    float frequency = 440.0f;     ///< Hz
    std::uint64_t readOffset = 0; ///< frames added to every read index, from the source at start()
    std::int64_t origin = 0;      ///< whole frames that positions are counted from
    const GrainTaps* taps = nullptr; ///< what the source is read through; null: linearly

    /// How many coming samples advance both phases by constant exact steps without a wrap; see
    /// engine/grain_mix.inl. Cleared whenever phases, increments or tables change.
    struct StraightRun {
        std::int64_t left = 0;     ///< samples
        float envelopeStep = 0.0f; ///< exact step of envelopePhase
        std::int64_t readBase = 0; ///< frames added to a truncated read position to get its index
    } straight;

private:
    std::unique_ptr<mokWave> ownSource_;
    std::unique_ptr<mokWindow> ownEnvelope_;
};

} // namespace zephyra
