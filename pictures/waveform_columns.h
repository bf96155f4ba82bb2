// WaveformColumns: a signal of any length reduced to one lowest, highest and mean level per column.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zephyra {

/// Made for a signal whose length is known, then fed in order; what comes beyond is ignored. Takes
/// memory for the columns only. MAIN.
class WaveformColumns {
public:
    struct Column {
        float low = 0, high = 0;
        double squares = 0;
        std::uint64_t frames = 0;

        /// Takes in what another one saw.
        void add(const Column& other) noexcept;
        /// Root mean square; 0 for a column without frames.
        double rms() const noexcept;
        /// Beyond full scale, which 16 bits cannot hold.
        bool tooLoud() const noexcept { return high > 1.0f || low < -1.0f; }
    };

    /// frames and columns of at least 1.
    WaveformColumns(std::uint64_t frames, std::size_t columns);

    void add(const float* samples, std::size_t count);

    /// The columns; one on which no frame falls shows its predecessor.
    std::vector<Column> columns() const;

private:
    std::uint64_t frames_;
    std::uint64_t seen_ = 0;
    std::vector<Column> columns_;
};

/// The same signal on fewer columns, at least 1; as it is where they are not more.
std::vector<WaveformColumns::Column> thinned(const std::vector<WaveformColumns::Column>& columns,
                                             std::size_t wanted);

/// The largest magnitude that columns show.
double largestLevel(const std::vector<WaveformColumns::Column>& columns);

/// The magnitude that reaches the edge of a lane: full scale, a power of two less for a quieter
/// peak (down to 1/16), or peak itself where it is too loud.
double waveformScale(double peak);

} // namespace zephyra
