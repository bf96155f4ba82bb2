// DelayLine: a circular buffer of doubles whose size is a power of two, kept in a data store entry.
#pragma once

#include "effects/dsp_runtime.h"
#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra {

/// Set up once with setUpDelayLine, ended with releaseDelayLine. The module that owns the line
/// reads and writes memory itself; no index may leave 0..mask.
struct DelayLine {
    DataStoreEntry* entry = nullptr;
    double* memory = nullptr; ///< size values; null while unusable
    std::int64_t size = 0;    ///< the power of two at or above maxDelay
    std::int64_t mask = 0;    ///< size - 1
    std::int64_t maxDelay = 0;
    std::int64_t writeIndex = 0; ///< 0..mask, where the next value goes

    /// False when memory was short: the line must then not be read or written.
    bool usable() const ZEPHYRA_NONBLOCKING { return memory != nullptr; }
};

/// Gives a new line room for at least requestedLength samples (below 2 counts as 2); problems are
/// reported with the line's name kept out, as the texts are fixed, and leave it unusable. A line
/// that is already set up is only cleared. log: null, or it outlives the line. MAIN or OFF.
void setUpDelayLine(DelayLine& line, const char* name, std::int64_t requestedLength,
                    Log* log) noexcept;

/// Zeroes the contents and the write index. OFF.
void clearDelayLine(DelayLine& line) noexcept;

/// Frees the memory; the line is as new. OFF.
void releaseDelayLine(DelayLine& line) noexcept;

} // namespace zephyra
