#include "engine/grain_window.h"

#include "platform/random_source.h"

#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

constexpr double kPi = std::numbers::pi;

/// a0 - a1·cos(t) + a2·cos(2t) - a3·cos(3t) with t = 2π n / N: the family of cosine windows.
struct CosineTerms {
    float a0, a1, a2, a3;
};

constexpr CosineTerms kHanning{0.5f, 0.5f, 0.0f, 0.0f};
constexpr CosineTerms kHamming{0.54f, 0.46f, 0.0f, 0.0f};
constexpr CosineTerms kBlackman{0.42f, 0.5f, 0.08f, 0.0f};
constexpr CosineTerms kBlackmanHarris{0.35875f, 0.48829f, 0.14128f, 0.01168f};
constexpr CosineTerms kNuttall{0.3635819f, 0.4891775f, 0.1365995f, 0.0106411f};

double cosineWindow(const CosineTerms& terms, double n, double size) noexcept {
    double value = double{terms.a0} - double{terms.a1} * std::cos(2.0 * kPi * n / size);
    if (terms.a2 != 0.0f) value = value + double{terms.a2} * std::cos(4.0 * kPi * n / size);
    if (terms.a3 != 0.0f) value = value - double{terms.a3} * std::cos(6.0 * kPi * n / size);
    return value;
}

double sinc(double x) noexcept {
    return x == 0.0 ? 1.0 : std::sin(x) / x;
}

} // namespace

mokWindow::mokWindow(const unsigned long& points, int shape) : mokBuffer(points) {
    switch (shape) {
    case kWindowBarlett:
        genBarlett();
        break;
    case kWindowHanning:
        genHanning();
        break;
    case kWindowHamming:
        genHamming();
        break;
    case kWindowBlackman:
        genBlackman();
        break;
    case kWindowBlackmanHarris:
        genBlackmanHarris();
        break;
    case kWindowBarlettHanning:
        genBarlettHanning();
        break;
    case kWindowNuttall:
        genNuttall();
        break;
    case kWindowSync:
        genSync(kSyncPeak);
        break;
    case kWindowRectangular:
        genRectangular();
        break;
    default:
        genGaussian();
        break;
    }
}

template <typename Shape>
void mokWindow::fill(Shape shape) noexcept {
    for (std::uint64_t n = 0; n < size; ++n) data[n] = static_cast<float>(shape(n));
    writeGuardPoint();
}

void mokWindow::genBarlett() noexcept {
    const double half = static_cast<double>(size) * 0.5;
    fill([&](std::uint64_t index) {
        const auto n = static_cast<double>(index);
        return (n <= half ? n : static_cast<double>(size) - n) / half;
    });
}

void mokWindow::genGaussian() noexcept {
    constexpr double kE = 2.718281828459; // the constant that saved sounds were made with
    const double step = 12.0 / static_cast<double>(size);
    double x = -6.0;
    fill([&](std::uint64_t n) {
        if (n == size / 2) x = 0.0; // the second half starts anew, free of summed rounding
        const double value = std::pow(kE, -(x * x) / 2.0);
        x += step;
        return value;
    });
}

void mokWindow::genHanning() noexcept {
    fill([&](std::uint64_t n) {
        return cosineWindow(kHanning, static_cast<double>(n), static_cast<double>(size));
    });
}

void mokWindow::genHamming() noexcept {
    fill([&](std::uint64_t n) {
        return cosineWindow(kHamming, static_cast<double>(n), static_cast<double>(size));
    });
}

void mokWindow::genBlackman() noexcept {
    fill([&](std::uint64_t n) {
        return cosineWindow(kBlackman, static_cast<double>(n), static_cast<double>(size));
    });
}

void mokWindow::genBlackmanHarris() noexcept {
    fill([&](std::uint64_t n) {
        return cosineWindow(kBlackmanHarris, static_cast<double>(n), static_cast<double>(size));
    });
}

void mokWindow::genBarlettHanning() noexcept {
    fill([](std::uint64_t) { return 0.48f; });
}

void mokWindow::genNuttall() noexcept {
    fill([&](std::uint64_t n) {
        return cosineWindow(kNuttall, static_cast<double>(n), static_cast<double>(size));
    });
}

void mokWindow::genSync(float peak) noexcept {
    const double step = 2.0 * kPi / static_cast<double>(size);
    double x = -kPi;
    fill([&](std::uint64_t n) {
        if (n == size / 2) { // the centre; the falling half starts one step after it
            x = step;
            return 1.0;
        }
        const double value = double{peak} * std::sin(x) / x;
        x += step;
        return value;
    });
}

void mokWindow::genRectangular() noexcept {
    fill([](std::uint64_t) { return 1.0; });
}

void mokWindow::genSine() noexcept {
    fill([&](std::uint64_t n) {
        return std::sin(2.0 * kPi * static_cast<double>(n) / static_cast<double>(size));
    });
}

void mokWindow::genPulse() noexcept {
    fill([&](std::uint64_t n) {
        return sinc(static_cast<double>(n) / static_cast<double>(size) * (6.0 * kPi));
    });
}

void mokWindow::genPulse2() noexcept {
    const std::uint64_t half = size / 2;
    if (size % 2) data[size - 1] = 0.0f; // an odd table has one point that no side of the pulse has
    for (std::uint64_t k = 0; k < half; ++k) {
        const double x = static_cast<double>(k) / static_cast<double>(half) * (4.0 * kPi);
        data[half + k] = data[half - 1 - k] = static_cast<float>(sinc(x));
    }
    writeGuardPoint();
}

void mokWindow::genRandom(RandomSource& random) {
    for (std::uint64_t n = 0; n < size; ++n)
        data[n] = static_cast<float>(2.0 * (random.next32() * 0x1p-32) - 1.0);
    writeGuardPoint();
}

void mokWindow::genBlackmanMok() noexcept {
    fill([&](std::uint64_t n) {
        const double blackman =
            cosineWindow(kBlackman, static_cast<double>(n), static_cast<double>(size));
        return 0.5 * blackman + 0.5;
    });
}

float mokWindow::energy() const noexcept {
    double sum = 0.0;
    for (std::uint64_t n = 0; n < size; ++n) { // of straight lines from point to point
        const double a = double{data[n]}, b = double{data[n + 1]};
        sum += a * a + a * b + b * b;
    }
    return static_cast<float>(sum / (3.0 * static_cast<double>(size)));
}

} // namespace zephyra
