#include "platform/text/log.h"

#include <cstdio>

namespace zephyra {

namespace {

std::mutex& logMutex() {
    static std::mutex mutex;
    return mutex;
}

LogSink& logSink() {
    static LogSink sink;
    return sink;
}

} // namespace

void Log::write(std::string_view line) {
    const std::lock_guard lock(mutex_);
    if (sink_)
        sink_(line);
    else
        logLine(line);
}

void Log::setSink(LogSink sink) {
    const std::lock_guard lock(mutex_);
    sink_ = std::move(sink);
}

void logLine(std::string_view line) {
    const std::lock_guard lock(logMutex());
    if (logSink())
        logSink()(line);
    else
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
}

LogSink setLogSink(LogSink sink) {
    const std::lock_guard lock(logMutex());
    return std::exchange(logSink(), std::move(sink));
}

} // namespace zephyra
