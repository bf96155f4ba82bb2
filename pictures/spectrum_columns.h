// SpectrumColumns: a stereo signal reduced to one spectrum on a logarithmic frequency scale per
// column of a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace zephyra {

/// Made for a signal whose length is known, then fed in order, then finished. Takes memory for the
/// columns only. Each column is the mean power of up to kMostSpectra Hann-windowed spectra of both
/// channels, spread over its time. MAIN.
class SpectrumColumns {
public:
    static constexpr std::size_t kMostSpectra = 8;
    static constexpr double kLowestFrequency =
        30.0; // Hz; below it a spectrum shows only its window
    static constexpr double kHighestFrequency = 20000.0; // Hz; nothing is heard above
    static constexpr float kSilenceDecibels = -200.0f;

    /// frames, columns and rows of at least 1; sampleRate in Hz.
    SpectrumColumns(std::uint64_t frames, double sampleRate, std::size_t columns, std::size_t rows);
    ~SpectrumColumns();
    SpectrumColumns(const SpectrumColumns&) = delete;
    SpectrumColumns& operator=(const SpectrumColumns&) = delete;

    void add(const float* left, const float* right, std::size_t count);
    /// Completes the columns whose windows reach beyond the signal's end.
    void finish();

    std::size_t columns() const noexcept { return columns_; }
    std::size_t rows() const noexcept { return rows_; }
    /// Hz: the highest frequency shown.
    double highestFrequency() const noexcept { return highest_; }
    /// Decibels relative to a sine of full scale in both channels; row 0 is the lowest frequency.
    float decibels(std::size_t column, std::size_t row) const noexcept;

private:
    class Transform;

    /// The frame in whose middle spectrum number `index` stands.
    std::uint64_t centre(std::uint64_t index) const noexcept;
    void push(float left, float right);
    void takeSpectrum();
    float rowPower(std::size_t row) const;

    std::uint64_t frames_;
    double sampleRate_;
    std::size_t columns_, rows_;
    double highest_;
    std::uint64_t spectraPerColumn_;
    std::uint64_t nextSpectrum_ = 0;
    std::uint64_t seen_ = 0; ///< frames pushed, the silence after the end included
    std::unique_ptr<Transform> transform_;
    std::vector<float> power_; ///< columns_ · rows_, linear
};

/// The decibels that a spectrum's colours go from and to.
struct LevelRange {
    double low, high;
};

/// 80 dB up to the loudest place of spectrum, rounded up to tens.
LevelRange levelRange(const SpectrumColumns& spectrum);

} // namespace zephyra
