// The ring modulator's block loop, included inside an anonymous namespace after vector_lanes.inl.
//
// The phase is a serial chain of additions whose roundings must be kept. Between two powers of two
// its rounding grid is the same, so each addition moves it by the same exact step, and the phases
// of a run are the first one plus whole multiples of that step, themselves exact.

/// One step of the phase as it is defined. A phase of exactly 1 stays.
inline double nextPhase(double phase, double increment) {
    phase += increment;
    if (phase > 1 || phase < 0) phase -= __builtin_floor(phase);
    return phase;
}

/// A phase and the exact step that leads to each of the next samples' phases.
struct PhaseRun {
    double step;
    std::int64_t samples;
};

/// How far the steps from phase on are alike; 0 samples when that cannot be told.
inline PhaseRun phaseRun(double phase, double increment, std::int64_t most) {
    constexpr double kShortestRun = 16; // samples between powers of two that are worth a run
    std::uint64_t bits;
    __builtin_memcpy(&bits, &phase, sizeof bits);
    bits &= 0x7FF0000000000000; // the power of two at or below phase
    double floor;
    __builtin_memcpy(&floor, &bits, sizeof floor);
    if (kShortestRun * __builtin_fabs(increment) > floor) return {0, 0};

    const double second = phase + increment;
    const double step = second - phase;
    // A tie between two grid points goes either way until it has landed on an even one.
    if ((second + increment) - second != step) return {0, 0};
    if (step == 0) return {0, most};
    const double ceiling = 2 * floor < 1 ? 2 * floor : 1;
    // One less than fits, for the division's own rounding.
    const double samples = (step > 0 ? ceiling - phase : floor - phase) / step - 1;
    if (!(samples >= 1)) return {0, 0};
    return {step, samples < static_cast<double>(most) ? static_cast<std::int64_t>(samples) : most};
}

/// The cosine at each phase: of its first 32 bits behind the point, 14 choose the table point and
/// 18 the place behind that.
inline Doubles cosineAt(const double* table, Doubles phase) {
    constexpr double kGrid = 1.5 * (1 << 20); // doubles around it are 2^-32 apart
    constexpr double kIntegers = 0x1p52;      // doubles around it are 1 apart
    const Doubles rounded = phase + kGrid;
    // Where the sum was rounded up, one grid point less: -1 is a comparison's true.
    const Longs bits = bitsOf(rounded) + (rounded - kGrid > phase);
    const Doubles place = doublesOf((bits & 0x3FFFF) | bitsOf(splat(kIntegers))) - kIntegers;
    Doubles here, behind;
    lookUp(table, (bits >> 18) & (RM::kTableSize - 1), here, behind);
    return here + (place * RM::kPhaseFraction) * (behind - here);
}

inline void ringLanes(const RingBlock& block, std::int64_t at, Doubles cosine, Doubles amount) {
    for (int side = 0; side < 2; ++side) {
        const Doubles dry = load(block.in[side] + at);
        store(block.out[side] + at, dry + amount * (cosine * dry - dry));
    }
}

/// The block, walked from sample to sample; the amount glides or rests.
template <bool glides>
struct RingWalk {
    const RingBlock block;
    double phase;
    OnePole amount;
    std::int64_t done = 0;

    void sample() {
        phase = nextPhase(phase, block.increment);
        if (glides) amount.next();
        const double cosine = cosineAt(block.table, splat(phase))[0];
        for (int side = 0; side < 2; ++side) {
            const double dry = block.in[side][done];
            block.out[side][done] = static_cast<float>(dry + amount.value * (cosine * dry - dry));
        }
        ++done;
    }

    Doubles amounts() {
        Doubles values = splat(amount.value);
        if (glides)
            for (int lane = 0; lane < kLanes; ++lane) values[lane] = amount.next();
        return values;
    }

    /// kLanes samples through the serial chain.
    void lanes() {
        double phases[kLanes];
        for (double& each : phases) each = phase = nextPhase(phase, block.increment);
        ringLanes(block, done, cosineAt(block.table, together(phases)), amounts());
        done += kLanes;
    }

    /// A multiple of kLanes samples whose phases are a step apart.
    void run(double step, std::int64_t samples) {
        Doubles phases = phase + countUp() * step;
        for (const std::int64_t end = done + samples; done < end; done += kLanes) {
            ringLanes(block, done, cosineAt(block.table, phases), amounts());
            phases += kLanes * step;
        }
        phase += static_cast<double>(samples) * step;
    }
};

template <bool glides>
inline void ringLoop(RingBlock& block) {
    const OnePole amount{block.smoothed, block.target, RM::kDryWetSmoothing};
    RingWalk<glides> walk{block, block.phase, amount};
    while (block.frames - walk.done >= kLanes) {
        walk.lanes();
        const PhaseRun run = phaseRun(walk.phase, block.increment, block.frames - walk.done);
        walk.run(run.step, run.samples - run.samples % kLanes);
    }
    while (walk.done < block.frames) walk.sample();
    block.phase = walk.phase;
    block.smoothed = walk.amount.value;
}

/// Asks for the table points of the block's beginning all at once: the grains have used the nearest
/// cache since the last block, and a run finds each point only when it needs it.
inline void fetchTable(const RingBlock& block) {
    constexpr std::int64_t kMost = 128; // samples; later points come while these are worked on
    auto at = static_cast<std::uint32_t>(static_cast<std::int64_t>(block.phase * 0x1p32));
    const auto step = static_cast<std::uint32_t>(
        static_cast<std::int64_t>((block.increment - __builtin_floor(block.increment)) * 0x1p32));
    const std::int64_t count = smaller(block.frames, kMost);
    for (std::int64_t n = 0; n < count; ++n) {
        at += step;
        __builtin_prefetch(block.table + (at >> 18));
    }
}

void ringBody(RingBlock& block) ZEPHYRA_NONBLOCKING {
    const bool atRest = OnePole{block.smoothed, block.target, RM::kDryWetSmoothing}.atRest();
    fetchTable(block);
    atRest ? ringLoop<false>(block) : ringLoop<true>(block);
}
