#include "bench/sound_tables.h"
#include "pictures/hann_spectrum.h"

#include <cmath>
#include <cstdio>
#include <numbers>

namespace zephyra {

namespace {

constexpr std::size_t kFrames = 131072; // of a spectrum
constexpr double kBeside = 1000.0;      // Hz; further than that from its line a tone ends

struct Power {
    double line, rest;
};

/// What lies within kBeside of hertz, and the rest of what is heard.
Power powerOf(const SoundPlayer& player, double hertz) {
    HannSpectrum spectrum(kFrames);
    const auto last = [](const std::vector<float>& side) {
        return HannSpectrum::Stretch{std::span(side).last(kFrames)};
    };
    spectrum.run(last(player.left), last(player.right));
    Power power{0.0, 0.0};
    const double bin = player.setup().rate / double{kFrames};
    for (std::size_t n = 0; n < spectrum.power().size(); ++n) {
        const double at = static_cast<double>(n) * bin;
        if (at < 20.0 || at > 20000.0) continue;
        (std::abs(at - hertz) <= kBeside ? power.line : power.rest) += double{spectrum.power()[n]};
    }
    return power;
}

struct Row {
    const char* name;
    double fileSeconds, fileRate, hostRate;
    float place; ///< where in the file it is played, a fraction of it
    double hertz;
    float semitones;
};

Power read(const SoundSetup& asked, const Row& row, float semitones,
           const std::shared_ptr<const mokSample>& sound) {
    SoundSetup setup = asked;
    setup.rate = row.hostRate;
    SoundPlayer player(setup, sound);
    player.setEven();
    player.set(ControlId::pitch, semitones);
    player.play(0.1); // a start begins at the sound's
    player.byHand(
        [&](HostedInstance& system) { system.stream().setScrubNormalizedValue(row.place); });
    player.play(4.0);
    return powerOf(player, row.hertz * std::exp2(double{semitones} / 12.0));
}

} // namespace

void printQuality(const SoundSetup& setup) {
    constexpr Row kRows[] = {
        {"10 min, file's rate, before 2^24", 600, 44100, 44100, 0.5f, 3000, 0},
        {"10 min, file's rate, behind 2^24", 600, 44100, 44100, 0.9f, 3000, 0},
        {"10 min of 44.1 kHz at 48, before 2^24", 600, 44100, 48000, 0.5f, 3000, 0},
        {"10 min of 44.1 kHz at 48, behind 2^24", 600, 44100, 48000, 0.9f, 3000, 0},
        {"10 min, +7, before 2^24", 600, 44100, 44100, 0.5f, 3000, 7},
        {"10 min, +7, behind 2^24", 600, 44100, 44100, 0.9f, 3000, 7},
        {"60 s, file's rate", 60, 44100, 44100, 0.9f, 3000, 0},
        {"60 s of 44.1 kHz at 48", 60, 44100, 48000, 0.9f, 3000, 0},
        {"60 s, +7", 60, 44100, 44100, 0.9f, 3000, 7},
        {"60 s, -12", 60, 44100, 44100, 0.9f, 3000, -12},
        {"60 s, +24", 60, 44100, 44100, 0.9f, 3000, 24},
        {"10 s, +7", 10, 44100, 44100, 0.2f, 3000, 7},
        {"60 s, 8 kHz, +24: what folds down", 60, 44100, 44100, 0.9f, 8000, 24},
    };
    std::printf("| a tone of 3 kHz | noise, dB |\n|---|---|\n");
    std::shared_ptr<const mokSample> sound;
    double seconds = 0.0, hertz = 0.0;
    for (const Row& row : kRows) {
        if (row.fileSeconds != seconds || row.hertz != hertz)
            sound = sineSound(seconds = row.fileSeconds, static_cast<float>(row.fileRate),
                              hertz = row.hertz);
        const Power power = read(setup, row, row.semitones, sound);
        const bool folds = row.hertz * std::exp2(double{row.semitones} / 12.0) > row.hostRate / 2.0;
        const double noise = folds ? (power.line + power.rest) / read(setup, row, 0.0f, sound).line
                                   : power.rest / power.line;
        std::printf("| %s | %.1f |\n", row.name, 10.0 * std::log10(noise));
    }
    std::printf("\n");
}

} // namespace zephyra
