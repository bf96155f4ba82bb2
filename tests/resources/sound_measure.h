// SoundMeasure: what an ear would say of a stereo sound, in numbers.
#pragma once

#include "pictures/spectrum_columns.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

namespace zephyra {

/// Of two channels of equal length; levels in dB of full scale.
class SoundMeasure {
public:
    static constexpr std::size_t kBands = 24;

    SoundMeasure(std::span<const float> left, std::span<const float> right, double sampleRate) {
        double sum = 0.0, quiet = 0.0;
        std::size_t quietFrames = 0;
        const auto step = static_cast<std::size_t>(kStepSeconds * sampleRate);
        for (std::size_t n = 0; n < left.size(); ++n) {
            const double power = (double{left[n]} * left[n] + double{right[n]} * right[n]) / 2;
            peak = std::max({peak, std::fabs(double{left[n]}), std::fabs(double{right[n]})});
            sum += power;
            quiet += power;
            if ((n + 1) % step != 0) continue;
            quietFrames = quiet / static_cast<double>(step) < kSilentPower ? quietFrames + step : 0;
            longestSilence =
                std::max(longestSilence, static_cast<double>(quietFrames) / sampleRate);
            quiet = 0.0;
        }
        rms = 10 * std::log10(sum / static_cast<double>(left.size()) + 1e-12);
        measureBands(left, right, sampleRate);
    }

    double rms = 0.0, peak = 0.0; ///< peak: 1 is full scale
    double longestSilence = 0.0;  ///< seconds below -60 dB

    /// How differently two sounds are coloured and move, whatever their loudness: the root mean
    /// square over bands of the differences in level and in how much that level moves, in dB.
    double distanceTo(const SoundMeasure& other) const {
        double sum = 0.0;
        for (std::size_t band = 0; band < kBands; ++band)
            sum += std::pow(level_[band] - other.level_[band], 2) +
                   std::pow(movement_[band] - other.movement_[band], 2);
        return std::sqrt(sum / kBands);
    }

private:
    static constexpr double kStepSeconds = 0.05, kSilentPower = 1e-6;
    static constexpr float kInaudible = 50.0f; // dB below the loudest band's loudest moment

    void measureBands(std::span<const float> left, std::span<const float> right, double rate) {
        const auto columns =
            static_cast<std::size_t>(static_cast<double>(left.size()) / rate / 0.05);
        SpectrumColumns spectra(left.size(), rate, columns, kBands);
        spectra.add(left.data(), right.data(), left.size());
        spectra.finish();
        float loudest = SpectrumColumns::kSilenceDecibels;
        for (std::size_t column = 0; column < columns; ++column)
            for (std::size_t band = 0; band < kBands; ++band)
                loudest = std::max(loudest, spectra.decibels(column, band));
        for (std::size_t band = 0; band < kBands; ++band) {
            double sum = 0.0, squares = 0.0;
            for (std::size_t column = 0; column < columns; ++column) {
                const double above =
                    std::max(spectra.decibels(column, band) - loudest, -kInaudible);
                sum += above;
                squares += above * above;
            }
            const auto count = static_cast<double>(columns);
            level_[band] = sum / count;
            movement_[band] = std::sqrt(std::max(squares / count - std::pow(sum / count, 2), 0.0));
        }
    }

    std::array<double, kBands> level_{}, movement_{};
};

} // namespace zephyra
