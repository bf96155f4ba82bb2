// The columns that sounds are reduced to: waveforms, spectra, and the scales that they need, with
// their labels.

#include "pictures/axis_ticks.h"
#include "pictures/spectrum_columns.h"
#include "pictures/waveform_columns.h"
#include "platform/text/text_numbers.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(WaveformColumns, EveryFrameFallsOnItsColumn) {
    WaveformColumns columns(6, 3);
    const float samples[] = {1, -2, 0, 4, 5, 5, 99}; // the last is beyond the length
    columns.add(samples, 4);
    columns.add(samples + 4, 3);
    const auto seen = columns.columns();
    EXPECT_EQ(std::tuple(seen[0].low, seen[0].high), std::tuple(-2, 1));
    EXPECT_EQ(std::tuple(seen[1].low, seen[1].high), std::tuple(0, 4));
    EXPECT_EQ(seen[2].rms(), 5);
    EXPECT_EQ(seen[2].low, 5) << "what was never seen, zero, is no extreme";
    const auto two = thinned(seen, 2);
    EXPECT_EQ(std::tuple(two[0].low, two[0].high, two[0].frames), std::tuple(-2, 4, 4u));
    EXPECT_EQ(two[1].rms(), 5);
    EXPECT_EQ(thinned({{1, 2, 5, 2}, {}}, 1)[0].low, 1) << "of what is empty as well";
    EXPECT_EQ(thinned(seen, 4).size(), 3u);

    WaveformColumns sparse(2, 4);
    sparse.add(samples, 2);
    EXPECT_EQ(sparse.columns()[1].high, 1) << "an empty column shows its predecessor";
    EXPECT_EQ(std::tuple(sparse.columns()[3].low, largestLevel(seen)), std::tuple(-2, 5));
    EXPECT_EQ(largestLevel({seen[0]}), 2) << "below";
    EXPECT_TRUE(seen[0].tooLoud()) << "below";
    EXPECT_TRUE(seen[1].tooLoud()) << "above";
    EXPECT_FALSE(sparse.columns()[1].tooLoud()) << "full scale is not too loud";
    for (const auto& [peak, scale] :
         {std::pair(0.0, 0.0625), {0.07, 0.125}, {0.6, 1.0}, {3.5, 3.5}})
        EXPECT_EQ(waveformScale(peak), scale) << peak;
}

TEST(SpectrumColumns, ASineOfFullScaleShowsAtZeroDecibelsInItsRowWhileItLasts) {
    for (const double rate : {44100.0, 96000.0})
        for (const double hertz : {200.0, 1000.0, 8000.0}) {
            SCOPED_TRACE(hertz);
            const auto frames = static_cast<std::size_t>(rate);
            std::vector<float> sine(frames);
            for (std::size_t n = 0; n < frames / 2; ++n)
                sine[n] = static_cast<float>(
                    std::sin(2 * std::numbers::pi * hertz * static_cast<double>(n) / rate));
            SpectrumColumns spectrum(frames, rate, 20, 200);
            spectrum.add(sine.data(), sine.data(), 1000);
            spectrum.add(sine.data() + 1000, sine.data() + 1000, frames - 1000);
            spectrum.finish();

            std::size_t strongest = 0;
            for (std::size_t row = 0; row < 200; ++row)
                if (spectrum.decibels(5, row) > spectrum.decibels(5, strongest)) strongest = row;
            // Between bins up to 1.4 dB less.
            EXPECT_NEAR(spectrum.decibels(5, strongest), 0.0, 1.5);
            const double at =
                std::log(hertz / SpectrumColumns::kLowestFrequency) /
                std::log(spectrum.highestFrequency() / SpectrumColumns::kLowestFrequency) * 200;
            EXPECT_NEAR(static_cast<double>(strongest) + 0.5, at, hertz < 500 ? 3 : 1.5);
            EXPECT_LT(spectrum.decibels(15, strongest), -150) << "silence follows";
            EXPECT_EQ(levelRange(spectrum).high, 0) << "up from just below to the next ten";
            EXPECT_EQ(levelRange(spectrum).low, -80);
        }
}

TEST(AxisTicks, TicksStandAtRoundPlaces) {
    const auto labels = [](const std::vector<Tick>& ticks) {
        std::string text;
        for (const Tick& tick : ticks) text += tick.label + "@" + formatFixed(tick.at, 2) + " ";
        return text;
    };
    EXPECT_EQ(labels(roundTicks(-1, 1, 4)), "-1.0@0.00 -0.5@0.25 0.0@0.50 0.5@0.75 1.0@1.00 ");
    EXPECT_EQ(labels(timeTicks(5, 5)), "0@0.00 1@0.20 2@0.40 3@0.60 4@0.80 5@1.00 ");
    EXPECT_EQ(labels(timeTicks(120, 4)), "0:00@0.00 0:30@0.25 1:00@0.50 1:30@0.75 2:00@1.00 ");
    EXPECT_EQ(labels(frequencyTicks(100, 1000)), "100@0.00 200@0.30 500@0.70 1k@1.00 ");
    EXPECT_EQ(labels(pitchTicks(24)), "-24@0.00 -12@0.25 0@0.50 12@0.75 24@1.00 ");
    EXPECT_EQ(labels(levelTicks(0.5)), // full scale and -6 dB lie beyond, -24 dB is too near
              "-\u221E@0.50 -12@0.75 @0.25 @0.56 @0.44 ");
    EXPECT_EQ(timeTicks(1e-3, 10).size(), 11u);
}

} // namespace
} // namespace zephyra
