#include "resources/make_samples/room.h"

#include <array>
#include <cmath>

namespace zephyra {

namespace {

constexpr std::size_t kLines = 8;

/// Seconds, for size 1. In frames at 44100 Hz they share no small factor, so echoes do not pile up.
constexpr std::array<double, kLines> kDelays = {0.02971, 0.03319, 0.03707, 0.04133,
                                                0.04621, 0.05153, 0.05749, 0.06421};

/// A delay that loses high end and level on every pass.
class Line {
public:
    Line(double delay, const Room& room)
        : memory_(frames(delay * room.size) + 1), keep_(room.brightness),
          gain_(fromDecibels(-60.0 * delay * room.size / room.decay)) {}

    double read() {
        smooth_ += keep_ * (memory_[place_] - smooth_);
        return gain_ * smooth_;
    }
    void write(double in) {
        memory_[place_] = in;
        place_ = (place_ + 1) % memory_.size();
    }

private:
    Signal memory_;
    double keep_, gain_;
    double smooth_ = 0.0;
    std::size_t place_ = 0;
};

/// The orthogonal Hadamard matrix as three rounds of sums and differences: energy is spread over
/// all lines and neither grows nor shrinks.
void spread(std::array<double, kLines>& values) {
    for (std::size_t step = 1; step < kLines; step *= 2)
        for (std::size_t i = 0; i < kLines; ++i)
            if ((i & step) == 0) {
                const double a = values[i];
                const double b = values[i + step];
                values[i] = a + b;
                values[i + step] = a - b;
            }
    for (double& value : values) value /= std::sqrt(static_cast<double>(kLines));
}

} // namespace

void addRoom(Signal& sound, const Room& room) {
    std::vector<Line> lines;
    for (const double delay : kDelays) lines.emplace_back(delay, room);
    const double wet = fromDecibels(room.wetDecibels);
    const Signal dry = sound;
    const std::size_t late = frames(room.preDelay);
    std::array<double, kLines> values;
    for (std::size_t i = late; i < sound.size(); ++i) {
        double sum = 0.0;
        for (std::size_t n = 0; n < kLines; ++n) {
            values[n] = lines[n].read();
            sum += n % 2 == 0 ? values[n] : -values[n];
        }
        spread(values);
        for (std::size_t n = 0; n < kLines; ++n) lines[n].write(dry[i - late] + values[n]);
        sound[i] += wet * sum;
    }
}

} // namespace zephyra
