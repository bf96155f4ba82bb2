// Resonator: a band-pass with one peak of gain 1, which turns noise into breath at a pitch.
#pragma once

namespace zephyra {

/// Two poles, zeros at 0 and at half the rate: the constant-peak-gain band-pass of R.
/// Bristow-Johnson's audio EQ cookbook.
class Resonator {
public:
    /// hz between 0 and half of kSampleRate; quality is hz over the bandwidth in Hz, above 0.
    Resonator(double hz, double quality);

    /// Takes one sample in and gives one out.
    double operator()(double in);

private:
    double gain_, feedback1_, feedback2_;
    double in1_ = 0.0, in2_ = 0.0, out1_ = 0.0, out2_ = 0.0;
};

} // namespace zephyra
