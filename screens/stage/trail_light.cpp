#include "screens/stage/trail_light.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kGlowSeconds = 0.7;             // of the red
constexpr int kFadeSteps = 20;                   // of the white
constexpr double kMostWhite = 80, kMostRed = 44; // of 256
constexpr std::int16_t kWhite = 245;
constexpr std::size_t kBytes = sizeof(Pixel);

/// As it was at the last tick; what is newer has its whole light.
double shownAge(const StageScene& scene, const ScanTrail::Step& step) {
    return std::max(0.0, step.age - scene.trailTick.since());
}

// Bytes alias everything, and only without that many are lit at once.
void redden(std::uint8_t* __restrict row, std::size_t count, const std::int16_t* __restrict red,
            const std::int16_t* __restrict tint) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto from = static_cast<std::int16_t>(row[i]);
        const auto more = static_cast<std::int16_t>((tint[i] - from) * red[i]);
        row[i] = static_cast<std::uint8_t>(from + (more >> 8));
    }
}

void whiten(std::uint8_t* __restrict row, std::size_t count, std::int16_t y,
            const std::int16_t* __restrict white, const std::int16_t* __restrict top,
            const std::int16_t* __restrict bottom) {
    for (std::size_t i = 0; i < count; ++i) {
        const auto from = static_cast<std::int16_t>(row[i]);
        const auto isOn = static_cast<std::int16_t>((y >= top[i]) & (y < bottom[i]));
        const auto more = static_cast<std::int16_t>((kWhite - from) * white[i] * isOn);
        row[i] = static_cast<std::uint8_t>(from + (more >> 8));
    }
}

} // namespace

void TrailLight::light(int x, int white, int red, const WaveExtent& at) {
    const std::size_t first = kBytes * static_cast<std::size_t>(x);
    for (std::size_t i = first; i < first + kBytes; ++i) {
        if (i != first + juce::PixelARGB::indexA)
            white_[i] = std::max(white_[i], static_cast<std::int16_t>(white));
        red_[i] = std::max(red_[i], static_cast<std::int16_t>(red));
        top_[i] = static_cast<std::int16_t>(at.top);
        bottom_[i] = static_cast<std::int16_t>(at.bottom);
    }
}

void TrailLight::place(const StageScene& scene, std::span<const WaveExtent> extents,
                       const Hear& hear) {
    const std::size_t bytes = kBytes * extents.size();
    for (auto* const of : {&white_, &red_, &top_, &bottom_}) of->assign(bytes, 0);
    if (redTint_.size() != bytes) {
        const Pixel red = Tint(palette::kAccent).pixel();
        redTint_.resize(bytes);
        for (std::size_t i = 0; i < bytes; ++i)
            redTint_[i] = static_cast<std::int16_t>(red >> 8 * (i % kBytes) & 0xff);
    }
    left_ = redLeft_ = static_cast<int>(extents.size());
    right_ = redRight_ = 0;
    whiteTop_ = scene.height();
    whiteBottom_ = 0;
    for (std::size_t i = 0; i < scene.trail.size(); ++i) {
        const ScanTrail::Step step = scene.trail[i];
        const double a = scene.x(step.from), b = scene.x(step.to);
        const int left = static_cast<int>(std::max(0.0, std::min(a, b)));
        const int right = static_cast<int>(std::min(std::max(a, b) + 1.0, 1.0 * scene.width()));
        if (left >= right) continue;
        const double age = shownAge(scene, step);
        const double shown = std::floor(age / ScanTrail::kSeconds * kFadeSteps) / kFadeSteps;
        const double rest = 1.0 - shown, glow = std::max(0.0, 1.0 - age / kGlowSeconds);
        const int white = static_cast<int>(kMostWhite * rest * rest);
        const int red = static_cast<int>(kMostRed * glow * glow);
        float top = static_cast<float>(scene.height()), bottom = 0.0f;
        for (int x = left; x < right; ++x) {
            const WaveExtent& at = extents[static_cast<std::size_t>(x)];
            light(x, white, red, at);
            top = std::min(top, at.top);
            bottom = std::max(bottom, at.bottom);
        }
        left_ = std::min(left_, left);
        right_ = std::max(right_, right);
        whiteTop_ = std::min(whiteTop_, static_cast<int>(top));
        whiteBottom_ = std::max(whiteBottom_, static_cast<int>(bottom) + 1);
        if (red > 0) {
            redLeft_ = std::min(redLeft_, left);
            redRight_ = std::max(redRight_, right);
        }
        Box box{left - 1, 0, right - left + 2, scene.height()};
        if (red == 0) {
            box.y = static_cast<int>(top);
            box.height = static_cast<int>(bottom) - box.y + 1;
        }
        hear(step.id, static_cast<std::uint64_t>(white << 8 | red), box);
    }
}

void TrailLight::draw(const Pixels& pixels) const {
    const Box& clip = pixels.clip();
    const auto forRows = [&](int left, int right, int top, int bottom, const auto& row) {
        left = std::max(clip.x, left);
        right = std::min(clip.right(), right);
        if (left >= right) return;
        const std::size_t first = kBytes * static_cast<std::size_t>(left);
        const std::size_t count = kBytes * static_cast<std::size_t>(right - left);
        for (int y = std::max(clip.y, top); y < std::min(clip.bottom(), bottom); ++y)
            row(reinterpret_cast<std::uint8_t*>(pixels.row(y) + left), first, count, y);
    };
    forRows(redLeft_, redRight_, clip.y, clip.bottom(),
            [&](std::uint8_t* row, std::size_t first, std::size_t count, int) {
                redden(row, count, &red_[first], &redTint_[first]);
            });
    forRows(left_, right_, whiteTop_, whiteBottom_,
            [&](std::uint8_t* row, std::size_t first, std::size_t count, int y) {
                whiten(row, count, static_cast<std::int16_t>(y), &white_[first], &top_[first],
                       &bottom_[first]);
            });
}

} // namespace zephyra
