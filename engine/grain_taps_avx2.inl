// Eight reads through taps, with AVX2. Included by grain_lanes_avx2.inl.

/// Eight reads at positions of any order in double precision, of which single precision would leave
/// too little of the fraction. Each sums as grain_step::throughTaps does, up to the folding of its
/// eight sums, which is done for all reads at once.
struct TapReads {
    const float* first;
    const GrainTaps* taps;
    __m256i index, row;
    __m256 between;

    TapReads(const StraightMix& run, __m256d low, __m256d high) ZEPHYRA_NONBLOCKING
        : first(run.source + 1 - run.taps->reach()),
          taps(run.taps) {
        const __m128i lowIndex = _mm256_cvttpd_epi32(low), highIndex = _mm256_cvttpd_epi32(high);
        const __m128 lowPart = _mm256_cvtpd_ps(_mm256_sub_pd(low, _mm256_cvtepi32_pd(lowIndex)));
        const __m128 highPart = _mm256_cvtpd_ps(_mm256_sub_pd(high, _mm256_cvtepi32_pd(highIndex)));
        const __m256 phase = _mm256_mul_ps(_mm256_set_m128(highPart, lowPart),
                                           _mm256_set1_ps(static_cast<float>(taps->phases)));
        index = _mm256_set_m128i(highIndex, lowIndex);
        const __m256i phaseIndex = _mm256_cvttps_epi32(phase);
        between = _mm256_sub_ps(phase, _mm256_cvtepi32_ps(phaseIndex));
        row = _mm256_mullo_epi32(phaseIndex, _mm256_set1_epi32(taps->groups));
    }

    __m256 value() const ZEPHYRA_NONBLOCKING {
        alignas(32) std::int32_t i[8], r[8];
        alignas(32) float b[8];
        _mm256_store_si256(reinterpret_cast<__m256i*>(i), index);
        _mm256_store_si256(reinterpret_cast<__m256i*>(r), row);
        _mm256_store_ps(b, between);
        __m256 sum[8];
        for (int n = 0; n < 8; ++n)
            sum[n] = sumsOf(first + i[n], taps->rows.data() + r[n], _mm256_broadcast_ss(b + n));
        return folded(sum);
    }

private:
    __m256 sumsOf(const float* frames, const TapGroup* group,
                  __m256 part) const ZEPHYRA_NONBLOCKING {
        __m256 sum = _mm256_setzero_ps();
        for (const TapGroup* const end = group + taps->groups; group != end; ++group) {
            const __m256 tap = _mm256_add_ps(_mm256_load_ps(group->taps),
                                             _mm256_mul_ps(_mm256_load_ps(group->slopes), part));
            sum = _mm256_add_ps(sum, _mm256_mul_ps(_mm256_loadu_ps(frames), tap));
            frames += TapGroup::kTaps;
        }
        return sum;
    }

    /// Of each of eight vectors ((0 + 1) + (2 + 3)) + ((4 + 5) + (6 + 7)).
    static __m256 folded(const __m256 (&sum)[8]) ZEPHYRA_NONBLOCKING {
        const __m256 quarters =
            _mm256_hadd_ps(_mm256_hadd_ps(sum[0], sum[1]), _mm256_hadd_ps(sum[2], sum[3]));
        const __m256 others =
            _mm256_hadd_ps(_mm256_hadd_ps(sum[4], sum[5]), _mm256_hadd_ps(sum[6], sum[7]));
        return _mm256_add_ps(_mm256_permute2f128_ps(quarters, others, 0x20),
                             _mm256_permute2f128_ps(quarters, others, 0x31));
    }
};
