// Eight samples of a straight run side by side, with AVX2 and FMA. Included by the level's source
// file inside its namespaces.

/// The two neighbours that a linear interpolation reads.
struct Pair {
    __m256 first, second;
};

inline __m256 interpolate(const Pair& pair, __m256 fraction) ZEPHYRA_NONBLOCKING {
    return _mm256_add_ps(pair.first,
                         _mm256_mul_ps(_mm256_sub_ps(pair.second, pair.first), fraction));
}

/// Eight interpolated reads at rising positions that span at most 16 entries: the window they lie
/// in is loaded whole and permuted, without a load per sample. Reads up to 16 entries past the
/// first.
struct WindowReads {
    const float* window;
    __m256i place; ///< 0..15 in the window
    __m256 fraction;

    WindowReads(const float* table, __m256 position) ZEPHYRA_NONBLOCKING {
        const __m256i index = _mm256_cvttps_epi32(position);
        const __m128i first = _mm256_castsi256_si128(index);
        window = table + _mm_cvtsi128_si32(first);
        place = _mm256_sub_epi32(index, _mm256_broadcastd_epi32(first));
        fraction = _mm256_sub_ps(position, _mm256_cvtepi32_ps(index));
    }

    __m256 value() const ZEPHYRA_NONBLOCKING {
        return interpolate({pick(window), pick(window + 1)}, fraction);
    }

private:
    __m256 pick(const float* from) const ZEPHYRA_NONBLOCKING {
        const __m256 upperHalf =
            _mm256_castsi256_ps(_mm256_cmpgt_epi32(place, _mm256_set1_epi32(7)));
        return _mm256_blendv_ps(_mm256_permutevar8x32_ps(_mm256_loadu_ps(from), place),
                                _mm256_permutevar8x32_ps(_mm256_loadu_ps(from + 8), place),
                                upperHalf);
    }
};

/// Eight interpolated reads at positions of any order: one 64-bit load each, which is about twice
/// as fast as a gather instruction on the processors at hand.
struct ScatteredReads {
    const float* table;
    __m256i index;
    __m256 fraction;

    ScatteredReads(const float* from, __m256 position) ZEPHYRA_NONBLOCKING : table(from) {
        index = _mm256_cvttps_epi32(position);
        fraction = _mm256_sub_ps(position, _mm256_cvtepi32_ps(index));
    }

    __m256 value() const ZEPHYRA_NONBLOCKING {
        alignas(32) std::int32_t i[8];
        _mm256_store_si256(reinterpret_cast<__m256i*>(i), index);
        const __m256 even = fourFrames(i[0], i[1], i[4], i[5]);
        const __m256 odd = fourFrames(i[2], i[3], i[6], i[7]);
        return interpolate({_mm256_shuffle_ps(even, odd, 0x88), _mm256_shuffle_ps(even, odd, 0xdd)},
                           fraction);
    }

private:
    __m128 twoFrames(std::int32_t a, std::int32_t b) const ZEPHYRA_NONBLOCKING {
        const auto* first = reinterpret_cast<const __m128i*>(table + a);
        const auto* second = reinterpret_cast<const __m64*>(table + b);
        return _mm_loadh_pi(_mm_castsi128_ps(_mm_loadl_epi64(first)), second);
    }
    __m256 fourFrames(std::int32_t a, std::int32_t b, std::int32_t c,
                      std::int32_t d) const ZEPHYRA_NONBLOCKING {
        return _mm256_insertf128_ps(_mm256_castps128_ps256(twoFrames(a, b)), twoFrames(c, d), 1);
    }
};

#include "engine/grain_taps_avx2.inl"

/// Whether positions are counted from 0 or lose an origin first.
enum class Positions { fromZero, fromOrigin };

/// The reads are placed one turn of the loop before the tables are read: otherwise the long way
/// from a phase to a sample fills the processor's queues before the next turn can overlap with it.
template <Positions kPositions, typename SourceReads, typename EnvelopeReads>
[[gnu::always_inline]] inline void mixLanes(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    const __m256 ramp = _mm256_setr_ps(1, 2, 3, 4, 5, 6, 7, 8);
    const __m256 envelopeStep = _mm256_set1_ps(run.envelopeStep);
    __m256 envelopePhase =
        _mm256_add_ps(_mm256_set1_ps(run.envelopePhase), _mm256_mul_ps(ramp, envelopeStep));
    const __m256 envelopeStride = _mm256_mul_ps(_mm256_set1_ps(8.0f), envelopeStep);

    const __m256d readStep = _mm256_set1_pd(run.readStep);
    const __m256d readPhase = _mm256_set1_pd(run.readPhase);
    __m256d readLow = _mm256_add_pd(readPhase, _mm256_mul_pd(_mm256_setr_pd(1, 2, 3, 4), readStep));
    __m256d readHigh =
        _mm256_add_pd(readPhase, _mm256_mul_pd(_mm256_setr_pd(5, 6, 7, 8), readStep));
    const __m256d readStride = _mm256_mul_pd(_mm256_set1_pd(8.0), readStep);

    const __m256d sourceSize = _mm256_set1_pd(run.sourceSize);
    const __m256d origin = _mm256_set1_pd(run.origin);
    const __m256 envelopeSize = _mm256_set1_ps(run.envelopeSize);
    const __m256 amplitude = _mm256_set1_ps(run.amplitude);
    const __m256 gainL = _mm256_set1_ps(run.gainL);
    const __m256 gainR = _mm256_set1_ps(run.gainR);

    const auto counted = [&](__m256d position) {
        return kPositions == Positions::fromZero ? position : _mm256_sub_pd(position, origin);
    };
    const auto placeSource = [&]() {
        const __m256d high = counted(_mm256_mul_pd(readHigh, sourceSize));
        const __m256d low = counted(_mm256_mul_pd(readLow, sourceSize));
        readLow = _mm256_add_pd(readLow, readStride);
        readHigh = _mm256_add_pd(readHigh, readStride);
        if constexpr (std::is_same_v<SourceReads, TapReads>)
            return TapReads(run, low, high);
        else
            return SourceReads(run.source,
                               _mm256_set_m128(_mm256_cvtpd_ps(high), _mm256_cvtpd_ps(low)));
    };
    const auto placeEnvelope = [&]() {
        const EnvelopeReads reads(run.envelope, _mm256_mul_ps(envelopePhase, envelopeSize));
        envelopePhase = _mm256_add_ps(envelopePhase, envelopeStride);
        return reads;
    };

    const auto mix = [&](const SourceReads& source, const EnvelopeReads& envelope, int n) {
        const __m256 sample =
            _mm256_mul_ps(amplitude, _mm256_mul_ps(source.value(), envelope.value()));
        float* const left = run.left + n;
        float* const right = run.right + n;
        _mm256_storeu_ps(left, _mm256_fmadd_ps(sample, gainL, _mm256_loadu_ps(left)));
        _mm256_storeu_ps(right, _mm256_fmadd_ps(sample, gainR, _mm256_loadu_ps(right)));
    };

    // Two turns a loop, so that "next" becomes "now" without a copy.
    SourceReads source = placeSource();
    EnvelopeReads envelope = placeEnvelope();
    for (int n = 0;; n += 8) {
        const SourceReads nextSource = placeSource();
        const EnvelopeReads nextEnvelope = placeEnvelope();
        mix(source, envelope, n);
        if ((n += 8) >= run.count) break;
        source = placeSource();
        envelope = placeEnvelope();
        mix(nextSource, nextEnvelope, n);
        if (n + 8 >= run.count) break;
    }
}

/// Whether eight rising positions in a table of size entries, advance apart, fit a window of 16:
/// they span seven steps and the rounding of single precision, and less than one for the
/// truncation.
inline bool fitsWindow(double advance, double size) ZEPHYRA_NONBLOCKING {
    constexpr double kWindowSpan = 14.0;
    return 7.0 * advance + positionRounding(size) < kWindowSpan;
}

inline bool fitsEnvelopeWindow(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    const double size = double{run.envelopeSize};
    return fitsWindow(double{run.envelopeStep} * size, size);
}

template <Positions kPositions>
[[gnu::always_inline]] inline void mixLinear(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    const bool sourceWindow =
        run.readStep >= 0.0 && fitsWindow(run.readStep * run.sourceSize, run.sourceSize);
    const bool envelopeWindow = fitsEnvelopeWindow(run);
    if (sourceWindow && envelopeWindow)
        mixLanes<kPositions, WindowReads, WindowReads>(run);
    else if (sourceWindow)
        mixLanes<kPositions, WindowReads, ScatteredReads>(run);
    else if (envelopeWindow)
        mixLanes<kPositions, ScatteredReads, WindowReads>(run);
    else
        mixLanes<kPositions, ScatteredReads, ScatteredReads>(run);
}

[[gnu::always_inline]] inline void Lanes::mixStraight(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    mixLinear<Positions::fromZero>(run);
}

void Lanes::mixRare(const StraightMix& run) ZEPHYRA_NONBLOCKING {
    if (!run.taps)
        mixLinear<Positions::fromOrigin>(run);
    else if (fitsEnvelopeWindow(run))
        mixLanes<Positions::fromOrigin, TapReads, WindowReads>(run);
    else
        mixLanes<Positions::fromOrigin, TapReads, ScatteredReads>(run);
}
