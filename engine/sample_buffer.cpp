#include "engine/sample_buffer.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>
#include <new>

namespace zephyra {

namespace {
constexpr unsigned long kEmptyBufferFrames = 10; // what a request for no frames gets
}

std::unique_ptr<float[]> mokBuffer::allocateFrames(std::uint64_t size) {
    constexpr std::uint64_t most = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(float);
    constexpr std::uint64_t behind = kGuardPoints + kReadAhead;
    if (size > most - behind) throw std::bad_alloc();
    return std::make_unique<float[]>(static_cast<std::size_t>(size + behind)); // zeroed
}

mokBuffer::mokBuffer(const unsigned long& frames)
    : size(frames == 0 ? kEmptyBufferFrames : frames), data(allocateFrames(size)),
      guardCount(kGuardPoints),
      guardRatio(1.0f + static_cast<float>(guardCount) / static_cast<float>(size)), offset(0),
      ready(true) {}

void mokBuffer::writeGuardPoint() noexcept {
    for (std::uint64_t k = 0; k < kGuardPoints; ++k) data[size + k] = data[k % size];
}

void mokBuffer::clear() noexcept {
    std::fill_n(data.get(), size, 0.0f);
    writeGuardPoint();
}

float mokBuffer::getPeak() const noexcept {
    float peak = 0.0f;
    for (std::uint64_t n = 0; n < size; ++n) peak = std::max(peak, std::abs(data[n]));
    return peak;
}

void mokBuffer::rescale(const float& gain) noexcept {
    if (!std::isfinite(gain)) return;
    for (std::uint64_t n = 0; n < size; ++n) data[n] *= gain;
    writeGuardPoint();
}

mokSample::mokSample() : mokBuffer(0) {}

mokSample::mokSample(std::uint64_t frames, float rate) : mokBuffer(0) {
    allocate(frames, rate);
}

bool mokSample::allocate(std::uint64_t frames, float rate) noexcept {
    ready = false;
    const std::uint64_t newSize = std::max(frames, kSmallestFrames);
    try {
        data = allocateFrames(newSize);
    } catch (const std::bad_alloc& failure) {
        std::cerr << "bad_alloc caught: " << failure.what() << std::endl;
        ready = true;
        return false;
    }
    if (std::isfinite(rate)) sampleRate = rate;
    bitsPerSample = 16;
    // The request itself, not the size it was raised to; a request for nothing has no ratio.
    guardRatio =
        static_cast<float>(guardCount) / static_cast<float>(frames ? frames : newSize) + 1.0f;
    size = newSize;
    writeGuardPoint();
    offset = 0;
    ready = true;
    return true;
}

} // namespace zephyra
