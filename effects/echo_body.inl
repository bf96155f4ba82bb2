// The echo's block loop, included inside an anonymous namespace after vector_lanes.inl.
//
// At rest the delay is constant, so the read position r = (write index + size) - delay climbs by
// exactly 1 as long as its rounding is the same: a block falls into runs with one fraction and
// contiguous reads and writes that do not meet. While something glides, the serial steps of times
// and feedbacks are worked out first for a register's samples.
//
// Lines that were just forgotten still hold what is not to be heard. Until the longest read stays
// within what was written since, the block is walked sample by sample.

constexpr std::int64_t kEchoMask = kEchoLineSize - 1;
struct ReadPosition {
    std::int64_t index; // not yet wrapped
    double fraction;
};

inline double clampedDelay(double time) {
    // Before the first write after a clear 0 would do as lower end too: the line is silent then.
    return time < 1                                 ? 1
           : time > delay_stereo_forward::kMaxDelay ? delay_stereo_forward::kMaxDelay
                                                    : time;
}

inline ReadPosition readPosition(std::int64_t writeIndex, double delay) {
    const double position = static_cast<double>(writeIndex + kEchoLineSize) - delay;
    const auto index = static_cast<std::int64_t>(position);
    return {index, position - static_cast<double>(index)};
}

inline std::int64_t smaller(std::int64_t a, std::int64_t b) {
    return a < b ? a : b;
}

/// One channel of a block, walked from sample to sample.
struct EchoChannel {
    double* line;
    std::int64_t writeIndex;
    const float* in;
    float* out;
};

/// One sample as the echo is defined; everything else here must give its bits.
inline void echoSample(EchoChannel& channel, double before, double after, double fraction,
                       double feedback) {
    const double delayed = before + fraction * (after - before);
    const double dry = *channel.in++;
    channel.line[channel.writeIndex] = finiteOrZero(dry + delayed * feedback);
    channel.writeIndex = (channel.writeIndex + 1) & kEchoMask;
    *channel.out++ = static_cast<float>(dry + delayed);
}

/// The same from full lines.
inline void echoSample(EchoChannel& channel, double delay, double feedback) {
    const ReadPosition at = readPosition(channel.writeIndex, delay);
    echoSample(channel, channel.line[at.index & kEchoMask],
               channel.line[(at.index + 1) & kEchoMask], at.fraction, feedback);
}

/// The same from lines that hold what was written last and nothing else.
inline void echoSampleOf(std::int64_t written, EchoChannel& channel, double delay,
                         double feedback) {
    const ReadPosition at = readPosition(channel.writeIndex, delay);
    const std::int64_t oldest = channel.writeIndex + kEchoLineSize - written;
    const double before = at.index < oldest ? 0 : channel.line[at.index & kEchoMask];
    const double after = at.index + 1 < oldest ? 0 : channel.line[(at.index + 1) & kEchoMask];
    echoSample(channel, before, after, at.fraction, feedback);
}

/// How many samples from here on share the fraction and read and write apart and without a wrap.
/// The read's wrap lies at a power of two, the only one at which the position's rounding changes:
/// at lower ones the delay is above 2^17, on a grid at least as coarse, and the position is exact.
inline std::int64_t runLength(std::int64_t writeIndex, std::int64_t readIndex) {
    const std::int64_t distance = writeIndex + kEchoLineSize - readIndex;
    const std::int64_t untilReadWraps = kEchoMask - (readIndex & kEchoMask);
    const std::int64_t untilWriteWraps = kEchoLineSize - writeIndex;
    return smaller(distance - 1, smaller(untilReadWraps, untilWriteWraps));
}

/// A channel's run, to be walked by a multiple of kLanes samples.
struct EchoRun {
    const double* read;
    double* write;
    const float* in;
    float* out;
    Doubles fraction, gain;

    EchoRun(const EchoChannel& channel, ReadPosition at, double feedback)
        : read(channel.line + (at.index & kEchoMask)), write(channel.line + channel.writeIndex),
          in(channel.in), out(channel.out), fraction(splat(at.fraction)), gain(splat(feedback)) {}

    /// The kLanes samples from the run's nth on.
    void lanes(std::int64_t n) const {
        const Doubles before = load(read + n);
        const Doubles delayed = before + fraction * (load(read + n + 1) - before);
        const Doubles dry = load(in + n);
        store(write + n, finiteOrZero(dry + delayed * gain));
        store(out + n, dry + delayed);
    }
};

inline void advance(EchoChannel& channel, std::int64_t run) {
    channel.in += run;
    channel.out += run;
    channel.writeIndex = (channel.writeIndex + run) & kEchoMask;
}

/// One channel, run by run.
inline void echoInRuns(EchoChannel& channel, double delay, double feedback, std::int64_t frames) {
    while (frames > 0) {
        const ReadPosition at = readPosition(channel.writeIndex, delay);
        const std::int64_t possible = smaller(runLength(channel.writeIndex, at.index), frames);
        const std::int64_t run = possible - possible % kLanes;
        const EchoRun walk(channel, at, feedback);
        for (std::int64_t n = 0; n < run; n += kLanes) walk.lanes(n);
        advance(channel, run);
        const std::int64_t singles = smaller(frames - run, kLanes - 1);
        for (std::int64_t n = 0; n < singles; ++n) echoSample(channel, delay, feedback);
        frames -= run + singles;
    }
}

inline void echoAtRest(EchoChannel& left, EchoChannel& right, const EchoBlock& block) {
    const double delayL = clampedDelay(block.smoothed[0]), feedbackL = block.smoothed[2];
    const double delayR = clampedDelay(block.smoothed[1]), feedbackR = block.smoothed[3];
    const ReadPosition atL = readPosition(left.writeIndex, delayL);
    const ReadPosition atR = readPosition(right.writeIndex, delayR);
    const std::int64_t possible =
        smaller(runLength(left.writeIndex, atL.index), runLength(right.writeIndex, atR.index));
    // Usually one run is as long as the block: then both channels go side by side.
    const std::int64_t lanes = block.frames - block.frames % kLanes;
    const std::int64_t shared = lanes > 0 && possible >= lanes ? lanes : 0;
    const EchoRun walkL(left, atL, feedbackL), walkR(right, atR, feedbackR);
    for (std::int64_t n = 0; n < shared; n += kLanes) {
        walkL.lanes(n);
        walkR.lanes(n);
    }
    advance(left, shared);
    advance(right, shared);
    echoInRuns(left, delayL, feedbackL, block.frames - shared);
    echoInRuns(right, delayR, feedbackR, block.frames - shared);
}

/// kLanes samples, each with its own delay and feedback.
inline void echoLanes(EchoChannel& channel, Doubles time, Doubles feedback) {
    using delay_stereo_forward::kMaxDelay;
    const Doubles atLeast = time < 1.0 ? splat(1) : time;
    const Doubles delay = atLeast > kMaxDelay ? splat(kMaxDelay) : atLeast;
    Doubles writeAt = splat(static_cast<double>(channel.writeIndex + kEchoLineSize));
    for (int lane = 0; lane < kLanes; ++lane) writeAt[lane] += lane;
    const Doubles position = writeAt - delay;
    const Ints index = truncated(position);
    const Longs wrapped = __builtin_convertvector(index, Longs) & kEchoMask;

    // A glide runs one way, so its ends bound it: reads stay clear of these samples' writes.
    const bool apart = delay[0] > kLanes + 1 && delay[kLanes - 1] > kLanes + 1;
    const bool wraps = channel.writeIndex > kEchoLineSize - kLanes || any(wrapped == kEchoMask);
    if (wraps || !apart) {
        for (int lane = 0; lane < kLanes; ++lane) echoSample(channel, delay[lane], feedback[lane]);
        return;
    }
    Doubles before, after;
    lookUp(channel.line, wrapped, 0, before, after);
    const Doubles delayed = before + (position - toDoubles(index)) * (after - before);
    const Doubles dry = load(channel.in);
    store(channel.line + channel.writeIndex, finiteOrZero(dry + delayed * feedback));
    store(channel.out, dry + delayed);
    channel.in += kLanes;
    channel.out += kLanes;
    channel.writeIndex = (channel.writeIndex + kLanes) & kEchoMask;
}

/// Left and right time, left and right feedback: the order of EchoBlock.
constexpr int kSmoothed = 4;
constexpr double kCoefficients[kSmoothed] = {
    delay_stereo_forward::kTimeSmoothing, delay_stereo_forward::kTimeSmoothing,
    delay_stereo_forward::kFeedbackSmoothing, delay_stereo_forward::kFeedbackSmoothing};

/// The smoothed ones are stepped side by side for kLanes samples, then turned into one register
/// each.
inline void echoGliding(EchoChannel& left, EchoChannel& right, EchoBlock& block) {
    constexpr int kParts = kSmoothed / kLanes;
    Doubles value[kParts], target[kParts], coefficient[kParts];
    for (int part = 0; part < kParts; ++part) {
        value[part] = load(block.smoothed + part * kLanes);
        target[part] = load(block.target + part * kLanes);
        coefficient[part] = load(kCoefficients + part * kLanes);
    }
    std::int64_t frames = block.frames;
    for (; frames >= kLanes; frames -= kLanes) {
        Doubles ahead[kSmoothed];
        for (int part = 0; part < kParts; ++part) {
            for (int lane = 0; lane < kLanes; ++lane)
                ahead[part * kLanes + lane] = value[part] +=
                    coefficient[part] * (target[part] - value[part]);
            transpose(ahead + part * kLanes);
        }
        echoLanes(left, ahead[0], ahead[2]);
        echoLanes(right, ahead[1], ahead[3]);
    }
    for (; frames > 0; --frames) {
        for (int part = 0; part < kParts; ++part) {
            value[part] += coefficient[part] * (target[part] - value[part]);
            store(block.smoothed + part * kLanes, value[part]);
        }
        echoSample(left, clampedDelay(block.smoothed[0]), block.smoothed[2]);
        echoSample(right, clampedDelay(block.smoothed[1]), block.smoothed[3]);
    }
    for (int part = 0; part < kParts; ++part) store(block.smoothed + part * kLanes, value[part]);
}

/// Whether the block may read further back than was written. A glide runs one way, so its ends
/// bound it; two more frames for the fraction and for what is rounded.
inline bool readsBeyond(const EchoBlock& block) {
    const auto reach = static_cast<double>(block.written - 2);
    for (int side = 0; side < 2; ++side)
        if (clampedDelay(block.smoothed[side]) > reach || clampedDelay(block.target[side]) > reach)
            return true;
    return false;
}

inline void echoFilling(EchoChannel& left, EchoChannel& right, EchoBlock& block) {
    for (std::int64_t n = 0; n < block.frames; ++n) {
        for (int i = 0; i < kSmoothed; ++i) {
            OnePole value{block.smoothed[i], block.target[i], kCoefficients[i]};
            block.smoothed[i] = value.next();
        }
        const std::int64_t written = smaller(block.written + n, kEchoLineSize);
        echoSampleOf(written, left, clampedDelay(block.smoothed[0]), block.smoothed[2]);
        echoSampleOf(written, right, clampedDelay(block.smoothed[1]), block.smoothed[3]);
    }
}

void echoBody(EchoBlock& block) ZEPHYRA_NONBLOCKING {
    EchoChannel left{block.line[0], block.writeIndex[0], block.in[0], block.out[0]};
    EchoChannel right{block.line[1], block.writeIndex[1], block.in[1], block.out[1]};
    bool atRest = true;
    for (int n = 0; n < kSmoothed; ++n)
        atRest = atRest && OnePole{block.smoothed[n], block.target[n], kCoefficients[n]}.atRest();
    const bool fills = block.written < kEchoLineSize;
    if (fills && readsBeyond(block)) {
        echoFilling(left, right, block);
    } else {
        atRest ? echoAtRest(left, right, block) : echoGliding(left, right, block);
    }
    if (fills && block.frames > 0)
        block.written = smaller(block.written + block.frames, kEchoLineSize);
    block.writeIndex[0] = left.writeIndex;
    block.writeIndex[1] = right.writeIndex;
}
