#include "effects/dsp_runtime.h"

#include "platform/large_pages.h"
#include "platform/text/log.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace zephyra {

void* sysmem_newptr(std::size_t size) noexcept {
    if (size == 0 || size % kLargePage != 0) return std::malloc(size);
    void* memory = std::aligned_alloc(kLargePage, size);
    if (memory) preferLargePages(memory, size);
    return memory;
}

void* sysmem_resizeptr(void* pointer, std::size_t size) noexcept {
    return std::realloc(pointer, size);
}

void sysmem_freeptr(void* pointer) noexcept {
    std::free(pointer);
}

void set_zero64(double* array, std::int64_t count) ZEPHYRA_NONBLOCKING {
    for (std::int64_t n = 0; n < count; ++n) array[n] = 0;
}

void genlib_report_error(const char* text, Log* log) noexcept {
    if (log)
        log->write(text);
    else
        Log().write(text);
}

void genlib_report_message(const char* text) noexcept {
    std::puts(text);
    std::fflush(stdout);
}

void genlib_reset_complete(void*) ZEPHYRA_NONBLOCKING {}

double gen_msp_pow(double base, double exponent) ZEPHYRA_NONBLOCKING {
    // The math library computes powers in registers and tables of its own.
    ZEPHYRA_TRUST_NONBLOCKING_BEGIN
    return std::pow(base, exponent);
    ZEPHYRA_TRUST_NONBLOCKING_END
}

DataReference* genlib_obtain_reference_from_string(const char*) noexcept {
    return nullptr;
}

DataStoreEntry* genlib_obtain_data_from_reference(DataReference*) noexcept {
    void* memory = sysmem_newptr(sizeof(DataStoreEntry));
    return memory ? new (memory) DataStoreEntry : nullptr;
}

bool genlib_data_getinfo(const DataStoreEntry* entry, DataStoreInfo* info) noexcept {
    *info = {entry->frames, entry->channels, entry->data};
    return true;
}

std::int64_t genlib_data_getcursor(const DataStoreEntry* entry) noexcept {
    return static_cast<std::int64_t>(entry->cursor);
}

void genlib_data_setcursor(DataStoreEntry* entry, std::int64_t cursor) noexcept {
    entry->cursor = static_cast<double>(cursor);
}

void genlib_data_release(DataStoreEntry* entry) noexcept {
    sysmem_freeptr(entry->data);
    entry->data = nullptr;
    entry->frames = 0;
    entry->channels = 0;
}

namespace {

struct Dimensions {
    std::int64_t frames;
    std::int64_t channels;
};

Dimensions constrained(std::int64_t frames, std::int64_t channels) noexcept {
    frames = std::max<std::int64_t>(frames, 1);
    channels = std::clamp<std::int64_t>(channels, 1, kDataStoreLimit);
    if (frames > kDataStoreLimit / channels) { // as frames * channels > limit, without overflow
        genlib_report_message("warning: constraining [data] to < 256MB");
        frames = kDataStoreLimit / channels;
    }
    return {frames, channels};
}

/// Allocates for the wanted dimensions or, as a fallback, for smaller ones that it then stores
/// there.
double* allocateOrShrink(Dimensions& wanted, Log* log) noexcept {
    constexpr std::int64_t kFallbackFrames = 512;
    constexpr std::int64_t kLastFallbackFrames = 4;
    for (;;) {
        const auto count = static_cast<std::size_t>(wanted.frames * wanted.channels);
        if (void* data = sysmem_newptr(count * sizeof(double))) return static_cast<double*>(data);
        genlib_report_error("allocating [data]: out of memory", log);
        if (wanted.frames == kLastFallbackFrames && wanted.channels == 1) return nullptr;
        wanted = {wanted.frames > kFallbackFrames ? kFallbackFrames : kLastFallbackFrames, 1};
    }
}

void copyOverlap(const DataStoreEntry& from, double* to, Dimensions toSize) noexcept {
    const std::int64_t frames = std::min(from.frames, toSize.frames);
    const std::int64_t channels = std::min(from.channels, toSize.channels);
    for (std::int64_t frame = 0; frame < frames; ++frame)
        std::copy_n(from.data + frame * from.channels, channels, to + frame * toSize.channels);
}

} // namespace

void genlib_data_resize(DataStoreEntry* entry, std::int64_t frames,
                        std::int64_t channels) noexcept {
    Dimensions wanted = constrained(frames, channels);
    const std::int64_t count = wanted.frames * wanted.channels;
    if (entry->data && entry->frames * entry->channels == count) {
        entry->frames = wanted.frames;
        entry->channels = wanted.channels;
        set_zero64(entry->data, count);
        return;
    }
    double* data = allocateOrShrink(wanted, entry->log);
    if (!data) return;
    set_zero64(data, wanted.frames * wanted.channels);
    copyOverlap(*entry, data, wanted);
    sysmem_freeptr(entry->data);
    entry->data = data;
    entry->frames = wanted.frames;
    entry->channels = wanted.channels;
}

} // namespace zephyra
