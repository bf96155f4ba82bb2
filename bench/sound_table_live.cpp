#include "bench/sound_steps.h"
#include "bench/sound_tables.h"

#include <cstdio>

namespace zephyra {

namespace {

/// In half a minute, in which what LIVE remembers has come round.
double largest(const SoundSetup& setup, const std::shared_ptr<const mokSample>& sound,
               const std::shared_ptr<const mokSample>& comesIn, float semitones,
               float milliseconds) {
    SoundPlayer player(setup, sound, comesIn);
    player.setEven();
    player.set(ControlId::pitch, semitones);
    player.set(ControlId::length, milliseconds);
    player.play(30.0);
    return largestStep(player, player.framesOf(3.0), player.played());
}

} // namespace

void printLive(const SoundSetup& setup) {
    constexpr float kLengths[] = {20.0f, 85.0f, 500.0f};
    const std::shared_ptr<const mokSample> tone = sineSound(60.0, 48000.0f, 400.0);
    std::printf("| LIVE | 20 ms | 85 ms | 500 ms |\n|---|---|---|---|\n");
    for (const float semitones : {-12.0f, 0.0f, 7.0f, 12.0f}) {
        std::printf("| %+.0f semitones |", double{semitones});
        for (const float length : kLengths)
            std::printf(" %.2f |", largest(setup, nullptr, tone, semitones, length) /
                                       largest(setup, tone, nullptr, semitones, length));
        std::printf("\n");
    }
    std::printf("\n");
}

} // namespace zephyra
