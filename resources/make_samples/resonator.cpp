#include "resources/make_samples/resonator.h"

#include "resources/make_samples/signal.h"

#include <cmath>
#include <utility>

namespace zephyra {

Resonator::Resonator(double hz, double quality) {
    const double angle = kTwoPi * hz / kSampleRate;
    const double alpha = std::sin(angle) / (2.0 * quality);
    gain_ = alpha / (1.0 + alpha);
    feedback1_ = 2.0 * std::cos(angle) / (1.0 + alpha);
    feedback2_ = (alpha - 1.0) / (1.0 + alpha);
}

double Resonator::operator()(double in) {
    const double out = gain_ * (in - in2_) + feedback1_ * out1_ + feedback2_ * out2_;
    in2_ = std::exchange(in1_, in);
    out2_ = std::exchange(out1_, out);
    return out;
}

} // namespace zephyra
