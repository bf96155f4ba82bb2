// Log: what one instance of the system reports, a line at a time.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace zephyra {

using LogSink = std::function<void(std::string_view)>;

/// Each object has a sink of its own: standard error until another one is set. Lines of several
/// threads do not mix.
class Log {
public:
    Log() = default;
    explicit Log(LogSink sink) : sink_(std::move(sink)) {}
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    /// line has no line end of its own. MAIN or WORKER, never RENDER.
    void write(std::string_view line);

    /// Sends lines to sink from now on, on whatever thread writes one; an empty one brings standard
    /// error back. A sink must not write to the log that it serves. Any thread but RENDER.
    void setSink(LogSink sink);

private:
    std::mutex mutex_; // held while the sink hears a line
    LogSink sink_;
};

} // namespace zephyra
