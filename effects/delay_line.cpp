#include "effects/delay_line.h"

#include <algorithm>
#include <bit>

namespace zephyra {

void setUpDelayLine(DelayLine& line, const char* name, std::int64_t requestedLength,
                    Log* log) noexcept {
    if (line.entry) {
        clearDelayLine(line);
        return;
    }
    line.maxDelay = requestedLength;
    DataReference* reference = genlib_obtain_reference_from_string(name);
    line.entry = genlib_obtain_data_from_reference(reference);
    if (!line.entry) {
        genlib_report_error("failed to acquire data", log);
        return;
    }
    line.entry->log = log;
    const auto atLeast = std::clamp<std::int64_t>(requestedLength, 2, kDataStoreLimit);
    line.size = static_cast<std::int64_t>(std::bit_ceil(static_cast<std::uint64_t>(atLeast)));
    line.mask = line.size - 1;
    genlib_data_resize(line.entry, line.size, 1);
    DataStoreInfo info;
    if (!genlib_data_getinfo(line.entry, &info)) {
        genlib_report_error("failed to acquire data info", log);
        return;
    }
    if (info.frames != line.size) {
        genlib_report_error("delay memory size error", log);
        return;
    }
    line.memory = info.data;
    line.writeIndex = genlib_data_getcursor(line.entry) & line.mask;
}

void clearDelayLine(DelayLine& line) noexcept {
    if (line.usable()) set_zero64(line.memory, line.size);
    line.writeIndex = 0;
}

void releaseDelayLine(DelayLine& line) noexcept {
    if (line.entry) {
        genlib_data_release(line.entry);
        sysmem_freeptr(line.entry);
    }
    line = {};
}

} // namespace zephyra
