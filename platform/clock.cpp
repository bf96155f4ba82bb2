#include "platform/clock.h"

#include <atomic>
#include <ctime>

namespace zephyra {

namespace {
std::atomic<SecondsSource> secondsSource{nullptr};
}

std::uint32_t currentSeconds() noexcept {
    if (const SecondsSource source = secondsSource.load()) return source();
    return static_cast<std::uint32_t>(std::time(nullptr));
}

SecondsSource setSecondsSource(SecondsSource source) noexcept {
    return secondsSource.exchange(source);
}

} // namespace zephyra
