#include "cli/terminal/progress_bar.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace zephyra {

namespace {

constexpr int kBarWidth = 32; // characters; the whole line stays within 80 columns
constexpr std::chrono::milliseconds kQuietStart{150}; // a job that ends before needs no bar
constexpr std::chrono::milliseconds kRedraw{80};
constexpr double kLeastShareToJudge = 0.005;
constexpr double kLongestShown = 359999.0; // seconds: 99:59:59

} // namespace

std::string progressLine(std::string_view task, double share, double elapsed) {
    share = std::clamp(share, 0.0, 1.0);
    const int filled = static_cast<int>(share * kBarWidth);
    std::string line(task);
    line += " [" + std::string(static_cast<std::size_t>(filled), '#') +
            std::string(static_cast<std::size_t>(kBarWidth - filled), '.') + "]";
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3d %%", static_cast<int>(share * 100));
    line += percent;
    if (share >= kLeastShareToJudge) {
        const double left = std::min(elapsed * (1 - share) / share, kLongestShown);
        line += "  " + formatClock(static_cast<long long>(std::ceil(left))) + " left";
    }
    return line;
}

ProgressBar::ProgressBar(std::string task, Shown shown)
    : task_(std::move(task)), enabled_(shown == Shown::onTerminal && ::isatty(STDERR_FILENO) == 1),
      start_(Clock::now()), lastDrawn_(start_) {}

void ProgressBar::update(double share) {
    if (!enabled_) return;
    const Clock::time_point now = Clock::now();
    if (share < std::exchange(share_, share)) start_ = now;
    if (now - start_ < kQuietStart || now - lastDrawn_ < kRedraw) return;
    lastDrawn_ = now;
    drawn_ = true;
    const std::chrono::duration<double> elapsed = now - start_;
    std::fprintf(stderr, "\r\033[K%s", progressLine(task_, share, elapsed.count()).c_str());
    std::fflush(stderr);
}

void ProgressBar::clear() {
    if (!std::exchange(drawn_, false)) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
}

} // namespace zephyra
