// Doubles: as many doubles as one register holds, each computed as it would be alone.
//
// Included inside an anonymous namespace by files that are compiled for different instruction sets.
// Nothing here or in its users may call an inline function of the standard library: the linker
// keeps one copy of such a function, which would then run on processors that lack its instructions.

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

/// 1, 2, ... kLanes.
inline Doubles countUp() {
    constexpr double count[] = {1, 2, 3, 4};
    return together(count);
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

/// The values at each index and behind it.
inline void lookUp(const double* table, Longs index, Doubles& here, Doubles& behind) {
#if defined(__AVX2__)
    const auto pairs = [&](int low, int high) {
        return _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(table + index[low])),
                                    _mm_loadu_pd(table + index[high]), 1);
    };
    const Doubles even = pairs(0, 2);
    const Doubles odd = pairs(1, 3);
    here = _mm256_unpacklo_pd(even, odd);
    behind = _mm256_unpackhi_pd(even, odd);
#else
    for (int lane = 0; lane < kLanes; ++lane) {
        here[lane] = table[index[lane]];
        behind[lane] = table[index[lane] + 1];
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

/// Zero in place of NaN and infinities.
inline Doubles finiteOrZero(Doubles values) {
    // What is not finite differs from itself by a NaN.
    const Doubles difference = values - values;
    return doublesOf(bitsOf(values) & (difference == difference));
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
