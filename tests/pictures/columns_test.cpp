// The columns that sounds are reduced to: waveforms, spectra, and the scales that they need.

#include "pictures/spectrum_columns.h"
#include "pictures/waveform_columns.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <utility>
#include <vector>

namespace zephyra {
namespace {

TEST(WaveformColumns, EveryFrameFallsOnItsColumn) {
    WaveformColumns columns(6, 3);
    const float samples[] = {1, -2, 0, 4, 5, 5, 99}; // the last is beyond the length
    columns.add(samples, 4);
    columns.add(samples + 4, 3);
    const auto seen = columns.columns();
    EXPECT_EQ(seen[0].low, -2);
    EXPECT_EQ(seen[0].high, 1);
    EXPECT_EQ(seen[1].low, 0);
    EXPECT_EQ(seen[1].high, 4);
    EXPECT_EQ(seen[2].rms(), 5);

    WaveformColumns sparse(2, 4);
    sparse.add(samples, 2);
    EXPECT_EQ(sparse.columns()[1].high, 1) << "an empty column shows its predecessor";
    EXPECT_EQ(sparse.columns()[3].low, -2);
    EXPECT_EQ(largestLevel(seen), 5);
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
            EXPECT_NEAR(spectrum.decibels(5, strongest), 0.0,
                        1.5); // between bins up to 1.4 dB less
            const double at =
                std::log(hertz / SpectrumColumns::kLowestFrequency) /
                std::log(spectrum.highestFrequency() / SpectrumColumns::kLowestFrequency) * 200;
            EXPECT_NEAR(static_cast<double>(strongest) + 0.5, at, hertz < 500 ? 3 : 1.5);
            EXPECT_LT(spectrum.decibels(15, strongest), -150) << "silence follows";
            EXPECT_EQ(levelRange(spectrum).high, 0) << "up from just below to the next ten";
            EXPECT_EQ(levelRange(spectrum).low, -80);
        }
}

} // namespace
} // namespace zephyra
