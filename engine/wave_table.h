// mokWave: a table filled with one period of an oscillator shape.
#pragma once

#include "engine/sample_buffer.h"

namespace zephyra {

/// Codes that the sizing constructor of mokWave takes; any other code gives the sine.
enum WAVESHAPE : int {
    kWaveSine = 1,
    kWaveCosine = 2,
    kWaveSaw = 3,
    kWaveSquare = 4,
    kWaveTriangle = 5,
    kWaveSigmoid = 7,
    kWaveDoubleSigmoid = 8,
};

/// One period of N = size points; a grain without a source plays a sine of these. All operations
/// are MAIN, before RENDER sees the table.
class mokWave : public mokBuffer {
public:
    static constexpr unsigned long kPoints = 4096;

    /// size points (0 becomes 10) of the given shape code.
    mokWave(const unsigned long& size, int shape);
    virtual ~mokWave() = default;

    void genSine() noexcept;          ///< sin(2π n / N)
    void genCosine() noexcept;        ///< cos(2π n / N)
    void genSaw() noexcept;           ///< 2 n / N - 1, rising
    void genSquare() noexcept;        ///< 1 in the first half, -1 in the second
    void genTriangle() noexcept;      ///< from -1 up to +1 in the middle and back
    void genSigmoid() noexcept;       ///< -cos(π n / N): a half-cosine rise from -1 to 1
    void genDoubleSigmoid() noexcept; ///< cos(π n / (N/2)) / 2, less 0.5 in the first half and plus
                                      ///< 0.5 in the second

private:
    template <typename Shape>
    void fill(Shape shape) noexcept;
};

} // namespace zephyra
