// Doubles: as many doubles as one register holds, each computed as it would be alone.
//
// Included inside an anonymous namespace by files that are compiled for different instruction sets.
// Nothing here or in its users may call an inline function of the standard library: the linker
// keeps one copy of such a function, which would then run on processors that lack its instructions.
//
// Registers of 512 bits are left alone: the processor slows down for them, and with it the grains
// between two blocks.

#if defined(__AVX2__)
constexpr int kLanes = 4;
#else
constexpr int kLanes = 2; // SSE2, NEON
#endif
using Doubles = double __attribute__((vector_size(8 * kLanes)));
using Longs = std::int64_t __attribute__((vector_size(8 * kLanes)));
using Floats = float __attribute__((vector_size(4 * kLanes)));
using Ints = std::int32_t __attribute__((vector_size(4 * kLanes)));

inline Doubles splat(double value) {
    return value - Doubles{};
}

/// kLanes values from a scalar chain. Put together in registers: a vector read from just stored
/// scalars waits until they have reached the cache.
inline Doubles together(const double* values) {
#if defined(__AVX2__)
    return _mm256_setr_pd(values[0], values[1], values[2], values[3]);
#else
    return Doubles{values[0], values[1]};
#endif
}

inline Doubles load(const double* from) {
    Doubles values;
    __builtin_memcpy(&values, from, sizeof values);
    return values;
}

inline void store(double* to, Doubles values) {
    __builtin_memcpy(to, &values, sizeof values);
}

// With AVX2 the conversions are spelt out: g++ 12 takes the generic ones apart.

inline Doubles load(const float* from) {
#if defined(__AVX2__)
    return _mm256_cvtps_pd(_mm_loadu_ps(from));
#else
    Floats values;
    __builtin_memcpy(&values, from, sizeof values);
    return __builtin_convertvector(values, Doubles);
#endif
}

inline void store(float* to, Doubles values) {
#if defined(__AVX2__)
    _mm_storeu_ps(to, _mm256_cvtpd_ps(values));
#else
    const Floats rounded = __builtin_convertvector(values, Floats);
    __builtin_memcpy(to, &rounded, sizeof rounded);
#endif
}

/// Towards zero; the values must fit.
inline Ints truncated(Doubles values) {
#if defined(__AVX2__)
    return reinterpret_cast<Ints>(_mm256_cvttpd_epi32(values));
#else
    return __builtin_convertvector(values, Ints);
#endif
}

inline Doubles toDoubles(Ints values) {
#if defined(__AVX2__)
    return _mm256_cvtepi32_pd(reinterpret_cast<__m128i>(values));
#else
    return __builtin_convertvector(values, Doubles);
#endif
}

/// The values at each index and behind it. An index is the low 32 bits of a lane without the
/// lowest `shift` of them.
inline void lookUp(const double* table, Longs bits, int shift, Doubles& here, Doubles& behind) {
#if defined(__AVX2__)
    // Taken through memory: shuffles would keep the units busy that compute.
    alignas(32) std::uint32_t words[2 * kLanes];
    _mm256_store_si256(reinterpret_cast<__m256i*>(words), reinterpret_cast<__m256i>(bits));
    __asm__("" : "+m"(words)); // or the compiler makes shuffles of it after all
    const auto pairs = [&](int low, int high) {
        const __m128d first = _mm_loadu_pd(table + (words[2 * low] >> shift));
        return _mm256_insertf128_pd(_mm256_castpd128_pd256(first),
                                    _mm_loadu_pd(table + (words[2 * high] >> shift)), 1);
    };
    const Doubles even = pairs(0, 2);
    const Doubles odd = pairs(1, 3);
    here = _mm256_unpacklo_pd(even, odd);
    behind = _mm256_unpackhi_pd(even, odd);
#else
    for (int lane = 0; lane < kLanes; ++lane) {
        const double* const at = table + (static_cast<std::uint32_t>(bits[lane]) >> shift);
        here[lane] = at[0];
        behind[lane] = at[1];
    }
#endif
}

/// Whether a comparison holds in any lane.
inline bool any(Longs comparison) {
#if defined(__AVX2__)
    return !_mm256_testz_si256(reinterpret_cast<__m256i>(comparison),
                               reinterpret_cast<__m256i>(comparison));
#else
    return (comparison[0] | comparison[1]) != 0;
#endif
}

/// Rows of a square become its columns.
inline void transpose(Doubles* rows) {
#if defined(__AVX2__)
    const __m256d a = _mm256_unpacklo_pd(rows[0], rows[1]);
    const __m256d b = _mm256_unpackhi_pd(rows[0], rows[1]);
    const __m256d c = _mm256_unpacklo_pd(rows[2], rows[3]);
    const __m256d d = _mm256_unpackhi_pd(rows[2], rows[3]);
    rows[0] = _mm256_permute2f128_pd(a, c, 0x20);
    rows[1] = _mm256_permute2f128_pd(b, d, 0x20);
    rows[2] = _mm256_permute2f128_pd(a, c, 0x31);
    rows[3] = _mm256_permute2f128_pd(b, d, 0x31);
#else
    const Doubles first{rows[0][0], rows[1][0]};
    rows[1] = Doubles{rows[0][1], rows[1][1]};
    rows[0] = first;
#endif
}

inline Longs bitsOf(Doubles values) {
    return reinterpret_cast<Longs>(values);
}
inline Doubles doublesOf(Longs bits) {
    return reinterpret_cast<Doubles>(bits);
}

/// A fraction's first 32 bits behind the point, with more bits above them where the processor
/// cannot convert to whole numbers of 64 bits. The value is 0 to 1.
inline Longs fractionBits(Doubles value) {
#if defined(__AVX512DQ__)
    return reinterpret_cast<Longs>(_mm256_cvttpd_epi64(value * 0x1p32));
#else
    constexpr double kGrid = 1.5 * (1 << 20); // doubles around it are 2^-32 apart
    const Doubles rounded = value + kGrid;
    // Where the sum was rounded up, one grid point less: -1 is a comparison's true.
    return bitsOf(rounded) + (rounded - kGrid > value);
#endif
}

/// Whole numbers of 0 to 2^52 - 1.
inline Doubles wholeToDoubles(Longs values) {
#if defined(__AVX512DQ__)
    return _mm256_cvtepi64_pd(reinterpret_cast<__m256i>(values));
#else
    constexpr double kIntegers = 0x1p52; // doubles from here on are 1 apart
    return doublesOf(values | bitsOf(splat(kIntegers))) - kIntegers;
#endif
}

/// Zero in place of NaN and infinities.
inline Doubles finiteOrZero(Doubles values) {
#if defined(__AVX512DQ__)
    // Four bits a kind of value: 8 puts zero for NaNs (0, 1) and infinities (4, 5), 0 keeps.
    constexpr std::int64_t kZeroForNanAndInfinity = 0x00880088;
    return _mm256_fixupimm_pd(values, values, _mm256_set1_epi64x(kZeroForNanAndInfinity), 0);
#else
    // What is not finite differs from itself by a NaN.
    const Doubles difference = values - values;
    return doublesOf(bitsOf(values) & (difference == difference));
#endif
}

inline double finiteOrZero(double value) {
    return __builtin_isfinite(value) ? value : 0;
}

/// One-pole smoothing: a value on its way to its target.
struct OnePole {
    double value;
    double target;
    double coefficient;

    double next() { return value += coefficient * (target - value); }
    /// Whether a step is too small to change the value; it then is for good.
    bool atRest() const { return value + coefficient * (target - value) == value; }
};
