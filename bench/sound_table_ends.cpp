#include "bench/sound_measures.h"
#include "bench/sound_steps.h"
#include "bench/sound_tables.h"

#include <algorithm>
#include <cstdio>

namespace zephyra {

namespace {

/// The cut that ends a stop comes at a crest of the sine.
constexpr double kFadeOut = 0.25, kPlays = 10.0006, kListens = 0.02;

std::span<const float> stretch(const SoundPlayer& player, std::size_t end) {
    const std::size_t frames = player.framesOf(kListens);
    return std::span(player.left).subspan(end - frames, frames);
}

/// The frame behind the last that is heard.
std::size_t heardUntil(const SoundPlayer& player) {
    std::size_t end = player.left.size();
    while (end > 0 && player.left[end - 1] == 0.0f && player.right[end - 1] == 0.0f) --end;
    return end;
}

void printLength(const SoundSetup& setup, float milliseconds) {
    SoundPlayer player(setup, soundOf(setup.kind));
    player.setEven();
    player.set(ControlId::length, milliseconds);
    player.set(ControlId::fadeOut, float{kFadeOut});
    player.play(kPlays);
    const std::size_t stopped = player.played();
    const std::size_t fromStart = player.framesOf(1.0);
    const double before =
        rms(std::span(player.left).subspan(stopped - 4 * fromStart, 4 * fromStart));
    const double still = largestStep(player, fromStart, stopped);
    player.set(ControlId::playStop, 0.0f);
    player.play(4.0);
    const std::size_t faded = stopped + player.framesOf(kFadeOut + 0.017), // and a tick
        end = std::max(heardUntil(player), faded);
    std::printf("| %.0f ms | %.2f | %.1f | %.1f | %.0f ms | %.2f |\n", double{milliseconds},
                largestStep(player, 0, player.framesOf(0.1)) / still,
                decibels(rms(stretch(player, faded)) / before),
                decibels(rms(stretch(player, end)) / before),
                1000.0 * static_cast<double>(end - stopped) / setup.rate,
                largestStep(player, stopped, player.played()) / still);
}

} // namespace

void printEnds(const SoundSetup& setup) {
    std::printf(
        "| length | step at the start | level when the fade ends, dB | level of the last "
        "%.0f ms, dB | heard after the stop | step at the stop |\n|---|---|---|---|---|---|\n",
        1000.0 * kListens);
    for (const float length : {20.0f, 85.0f, 250.0f, 500.0f, 1000.0f, 2000.0f})
        printLength(setup, length);
    std::printf("\n");
}

} // namespace zephyra
