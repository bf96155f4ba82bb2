#include "platform/text/log.h"

#include <cstdio>

namespace zephyra {

void Log::write(std::string_view line) {
    const std::lock_guard lock(mutex_);
    if (sink_)
        sink_(line);
    else // in one call, so that the lines of several logs do not mix
        std::fprintf(stderr, "%.*s\n", static_cast<int>(line.size()), line.data());
}

void Log::setSink(LogSink sink) {
    const std::lock_guard lock(mutex_);
    sink_ = std::move(sink);
}

} // namespace zephyra
