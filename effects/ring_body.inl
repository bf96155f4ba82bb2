// The ring modulator's block loop, included inside an anonymous namespace after vector_lanes.inl.
//
// The phase is a serial chain of additions whose roundings must be kept. The chain alone is serial:
// all that follows from the phases is computed side by side.

/// One step of the phase as it is defined. A phase of exactly 1 stays.
inline double nextPhase(double phase, double increment) {
    phase += increment;
    if (phase > 1 || phase < 0) phase -= __builtin_floor(phase);
    return phase;
}

/// The phases of the next samples; the last of them is left in phase.
inline Doubles nextPhases(double& phase, double increment) {
    double phases[kLanes];
    double last = phase;
    for (double& each : phases) each = last += increment;
    // They go one way: with the last one in range, all are.
    if (!(last >= 0 && last <= 1)) {
        last = phase;
        for (double& each : phases) each = last = nextPhase(last, increment);
    }
    phase = last;
    return together(phases);
}

/// The cosine at each phase: of its first 32 bits behind the point, 14 choose the table point and
/// 18 the place behind that.
inline Doubles cosineAt(const double* table, Doubles phase) {
    const Longs bits = fractionBits(phase);
    const Doubles place = wholeToDoubles(bits & 0x3FFFF);
    Doubles here, behind;
    lookUp(table, bits, 18, here, behind);
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

    /// kLanes samples.
    void lanes() {
        ringLanes(block, done, cosineAt(block.table, nextPhases(phase, block.increment)),
                  amounts());
        done += kLanes;
    }
};

template <bool glides>
inline void ringLoop(RingBlock& block) {
    const OnePole amount{block.smoothed, block.target, RM::kDryWetSmoothing};
    RingWalk<glides> walk{block, block.phase, amount};
    while (block.frames - walk.done >= kLanes) walk.lanes();
    while (walk.done < block.frames) walk.sample();
    block.phase = walk.phase;
    block.smoothed = walk.amount.value;
}

void ringBody(RingBlock& block) ZEPHYRA_NONBLOCKING {
    const bool atRest = OnePole{block.smoothed, block.target, RM::kDryWetSmoothing}.atRest();
    atRest ? ringLoop<false>(block) : ringLoop<true>(block);
}
