// mokWindow: a table filled with one grain envelope.
#pragma once

#include "engine/sample_buffer.h"

namespace zephyra {

class RandomSource;

/// Codes that the sizing constructor of mokWindow takes; any other code gives the Gaussian.
enum WINDOWS : int {
    kWindowBarlett = 1,
    kWindowGaussian = 2,
    kWindowHanning = 3,
    kWindowHamming = 4,
    kWindowBlackman = 5,
    kWindowBlackmanHarris = 6,
    kWindowBarlettHanning = 7,
    kWindowNuttall = 8,
    kWindowSync = 9,
    kWindowRectangular = 10,
};

/// A grain envelope of N = size points, swept once over a grain's length. Every generator fills the
/// table in double precision with coefficients of single precision, and then the guard points. A
/// window that RENDER can see is never regenerated: a new one takes its place. All operations are
/// MAIN, before RENDER sees the window.
class mokWindow : public mokBuffer {
public:
    /// The table length of the engine's and every grain's own windows.
    static constexpr unsigned long kPoints = 4096;
    /// The peak of genSync that the Sync shape code and the envelope menu use.
    static constexpr float kSyncPeak = 0.75f;

    /// size points (0 becomes 10) of the given shape code.
    mokWindow(const unsigned long& size, int shape);
    virtual ~mokWindow() = default;

    void genBarlett() noexcept;        ///< triangle, 0 at the start, 1 at N/2
    void genGaussian() noexcept;       ///< exp(-x²/2), x from -6 to 6
    void genHanning() noexcept;        ///< raised cosine
    void genHamming() noexcept;        ///< raised cosine on a pedestal of 0.08
    void genBlackman() noexcept;       ///< three cosine terms
    void genBlackmanHarris() noexcept; ///< four cosine terms
    void genBarlettHanning() noexcept; ///< 0.48 everywhere: flat on purpose, without a taper
    void genNuttall() noexcept;        ///< four cosine terms
    void genSync(float peak) noexcept; ///< peak · sin(x)/x over -π..π, with exactly 1 at the centre
    void genRectangular() noexcept;    ///< 1 everywhere
    void genSine() noexcept;           ///< one period of a sine: the second half is negative
    void genPulse() noexcept;          ///< sin(x)/x over 0..6π: loud at the start
    void genPulse2() noexcept;         ///< sin(x)/x over 0..4π, mirrored about the centre
    void genRandom(RandomSource& random); ///< noise in -1..1
    void genBlackmanMok() noexcept;       ///< Blackman lifted to 0.5..1

    /// Mean square of what grains read, which is straight lines between the points. MAIN.
    float energy() const noexcept;

private:
    template <typename Shape>
    void fill(Shape shape) noexcept; ///< table[n] = shape(n), then the guard
};

} // namespace zephyra
