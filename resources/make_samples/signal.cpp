#include "resources/make_samples/signal.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

double fromDecibels(double decibels) {
    return std::pow(10.0, decibels / 20.0);
}

void mixInto(Signal& sound, const Signal& part, double start) {
    const std::size_t first = frames(start);
    for (std::size_t i = 0; i < part.size() && first + i < sound.size(); ++i)
        sound[first + i] += part[i];
}

void fadeEdges(Signal& sound, double in, double out) {
    const auto halfCosine = [](double position) {
        return 0.5 - 0.5 * std::cos(std::numbers::pi * position);
    };
    const std::size_t rise = std::min(frames(in), sound.size());
    for (std::size_t i = 0; i < rise; ++i)
        sound[i] *= halfCosine(static_cast<double>(i) / static_cast<double>(rise));
    const std::size_t fall = std::min(frames(out), sound.size());
    for (std::size_t i = 0; i < fall; ++i)
        sound[sound.size() - 1 - i] *=
            halfCosine(static_cast<double>(i) / static_cast<double>(fall));
}

void normalise(Signal& sound, double peakDecibels) {
    double peak = 0.0;
    for (const double sample : sound) peak = std::max(peak, std::abs(sample));
    if (peak == 0.0) return;
    const double gain = fromDecibels(peakDecibels) / peak;
    for (double& sample : sound) sample *= gain;
}

} // namespace zephyra
