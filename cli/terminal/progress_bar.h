// ProgressBar: how far a long job is, and how long it will still take, on a terminal.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace zephyra {

/// One line on standard error that is drawn over itself a few times a second and removed on
/// destruction. Draws nothing while disabled, and nothing for jobs that are done at once. MAIN.
class ProgressBar {
public:
    enum class Shown { onTerminal, never };

    /// Shown::onTerminal draws only where standard error is a terminal.
    ProgressBar(std::string task, Shown shown);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { clear(); }

    /// share of the job that is done, 0 to 1; clamped. One that falls begins another job.
    void update(double share);

    /// Removes the line, so that others can be written.
    void clear();

private:
    using Clock = std::chrono::steady_clock;

    std::string task_;
    bool enabled_;
    bool drawn_ = false;
    double share_ = 0;
    Clock::time_point start_, lastDrawn_;
};

/// The line that a ProgressBar draws, without its line start: task, bar, per cent and, once there
/// is something to judge by, the time left. share is 0 to 1, elapsed in seconds.
std::string progressLine(std::string_view task, double share, double elapsed);

} // namespace zephyra
