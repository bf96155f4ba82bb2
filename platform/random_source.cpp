#include "platform/random_source.h"

#include <mutex>
#include <random>
#include <utility>

namespace zephyra {

namespace {

std::mutex& sourceMutex() {
    static std::mutex mutex;
    return mutex;
}

RandomSource& source() {
    static RandomSource current;
    return current;
}

} // namespace

std::uint32_t systemRandom32() {
    const std::lock_guard lock(sourceMutex());
    if (source()) return source()();
    static std::random_device device;
    return device();
}

RandomSource setRandomSource(RandomSource next) {
    const std::lock_guard lock(sourceMutex());
    return std::exchange(source(), std::move(next));
}

} // namespace zephyra
