// The effects of mokGranulatorSF: behind the mix, faded when they are switched, and at rest.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/granular_stream.h"
#include "platform/silence.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr float kQuiet = 0x1p-26f;      // -156 dB, far below the last bit of 24
constexpr float kLongestFade = 1 << 20; // frames; keeps a wild rate's within whole numbers

/// Calls each(n, g) with the gain of each frame.
template <typename Each>
void withGains(const StageFade& fade, int frames, Each each) ZEPHYRA_NONBLOCKING {
    for (int n = 0; n < frames; ++n) each(n, fade.gain(n));
}

} // namespace

/// What enters a line is the output and less, so that after a line's length of quiet nothing above
/// it is left, and no change of times or gains (below 1) brings it back.
void mokGranulatorSF::countQuiet(int frames, StereoSpan echoes) ZEPHYRA_NONBLOCKING {
    const auto count = static_cast<std::uint32_t>(frames);
    const bool isQuiet =
        isBelow(echoes.left, count, kQuiet) && isBelow(echoes.right, count, kQuiet);
    quietEchoes_ = isQuiet ? quietEchoes_ + frames : 0;
}

bool mokGranulatorSF::effectsRest() const ZEPHYRA_NONBLOCKING {
    if (rendered_ != anewAt_ && !(echoFade_.isAt(echoOn) && ringFade_.isAt(ringOn))) return false;
    if (echoOn && (quietEchoes_ < delay_stereo_forward::kLineFrames ||
                   !delay_stereo_forward::isSettled(echo)))
        return false;
    return !ringOn || RM::isSettled(ringModulator);
}

void mokGranulatorSF::pass(int frames) ZEPHYRA_NONBLOCKING {
    if (ringOn) RM::pass(ringModulator, frames);
    if (!granularOn) return restSwitchedOff();
    scanPhasor.pass(frames);
    scanPhase = scanPhasor.latest();
    nextScanPhase_ = scanPhasor.next();
}

void mokGranulatorSF::emptyEcho() ZEPHYRA_NONBLOCKING {
    delay_stereo_forward::forget(echo);
    quietEchoes_ = delay_stereo_forward::kLineFrames;
}

/// Takes the switches as they are, and says how many of the next frames pass before one of the
/// fades that follow has ended.
int mokGranulatorSF::takeSwitches(int frames) ZEPHYRA_NONBLOCKING {
    const bool echoes = echoOn, rings = ringOn;
    if (echoFade_.isAt(echoes) && ringFade_.isAt(rings)) return frames;
    if (rendered_ == anewAt_) {
        if (echoFade_.sounds() && !echoes) emptyEcho();
        echoFade_.jump(echoes);
        ringFade_.jump(rings);
    }
    const int length = static_cast<int>(std::clamp(sampleRate * kStageFade, 1.0f, kLongestFade));
    echoFade_.take(echoes, length);
    ringFade_.take(rings, length);
    return ringFade_.within(echoFade_.within(frames));
}

/// An echo that fades, from the mix to where it goes; out is free. It is fed and heard by the same
/// gain, so that its repeats begin without a step, too.
std::int32_t mokGranulatorSF::fadeEcho(int frames, StereoSpan out,
                                       StereoSpan to) ZEPHYRA_NONBLOCKING {
    const StereoSpan mix{mixL, mixR};
    withGains(echoFade_, frames, [=](int n, float gain) {
        out.left[n] = gain * mix.left[n];
        out.right[n] = gain * mix.right[n];
    });
    const std::int32_t error =
        delay_stereo_forward::perform(echo, out.left, out.right, out.left, out.right, frames);
    countQuiet(frames, out);
    withGains(echoFade_, frames, [=](int n, float gain) {
        const float left = mix.left[n], right = mix.right[n];
        to.left[n] = left + gain * (out.left[n] - gain * left);
        to.right[n] = right + gain * (out.right[n] - gain * right);
    });
    echoFade_.pass(frames);
    if (echoFade_.isAt(false)) emptyEcho();
    return error;
}

/// Blends the ring modulation in out with the mix.
void mokGranulatorSF::fadeRing(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING {
    const StereoSpan mix{mixL, mixR};
    withGains(ringFade_, frames, [=](int n, float gain) {
        out.left[n] = mix.left[n] + gain * (out.left[n] - mix.left[n]);
        out.right[n] = mix.right[n] + gain * (out.right[n] - mix.right[n]);
    });
    ringFade_.pass(frames);
}

void mokGranulatorSF::applyEffects(int frames, StereoSpan out) ZEPHYRA_NONBLOCKING {
    const bool echoes = echoFade_.sounds(), rings = ringFade_.sounds();
    std::int32_t error = kModuleNoError; // of the last effect, which writes to the output itself
    if (echoes) {
        const StereoSpan to = rings ? StereoSpan{mixL, mixR} : out;
        if (echoFade_.isMoving()) {
            error = fadeEcho(frames, out, to);
        } else {
            error = delay_stereo_forward::perform(echo, mixL, mixR, to.left, to.right, frames);
            countQuiet(frames, to);
        }
    }
    if (rings) {
        error = RM::perform(ringModulator, mixL, mixR, out.left, out.right, frames);
        if (ringFade_.isMoving()) fadeRing(frames, out);
    }
    if ((echoes || rings) && error == kModuleNoError) return;
    std::copy_n(mixL, frames, out.left);
    std::copy_n(mixR, frames, out.right);
}

} // namespace zephyra
