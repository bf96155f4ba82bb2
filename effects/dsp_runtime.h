// DataStoreEntry and the small runtime of the DSP modules: memory, reports, data store, power.
#pragma once

#include "platform/threads/realtime.h"

#include <cstddef>
#include <cstdint>

namespace zephyra {

class Log;

/// Allocates size bytes, not cleared; null when there is no memory. A multiple of kLargePage, such
/// as a line of the echo, lies on large pages where the system has them. MAIN or OFF.
void* sysmem_newptr(std::size_t size) noexcept;
/// Resizes an allocation and keeps its contents; null (pointer stays valid) on failure. MAIN or
/// OFF.
void* sysmem_resizeptr(void* pointer, std::size_t size) noexcept;
/// Frees what the two above gave; null is fine. MAIN or OFF.
void sysmem_freeptr(void* pointer) noexcept;

/// Sets count doubles to 0; does nothing for a count below 1. Any thread.
void set_zero64(double* array, std::int64_t count) ZEPHYRA_NONBLOCKING;

/// Writes one line to log, or to standard error where there is none. MAIN or OFF.
void genlib_report_error(const char* text, Log* log = nullptr) noexcept;
/// Writes one line to standard output. MAIN or OFF.
void genlib_report_message(const char* text) noexcept;
/// A module has finished its reset: nothing follows from it. Any thread.
void genlib_reset_complete(void* module) ZEPHYRA_NONBLOCKING;

/// base to the power of exponent, in double. Any thread, RENDER included.
double gen_msp_pow(double base, double exponent) ZEPHYRA_NONBLOCKING;

/// The most doubles that one data store entry holds (256 MB).
inline constexpr std::int64_t kDataStoreLimit = 33554432;

/// A block of doubles, frames rows of channels values each, and a cursor for its user.
struct DataStoreEntry {
    std::int64_t frames = 0;
    std::int64_t channels = 0;
    double* data = nullptr; ///< frames * channels values
    double cursor = 0;
    Log* log = nullptr; ///< hears what goes wrong; null: standard error
};

/// What an entry answers about itself.
struct DataStoreInfo {
    std::int64_t frames = 0;
    std::int64_t channels = 0;
    double* data = nullptr; ///< still the entry's own
};

/// A named data store. Names are not shared between modules, so there is never one.
struct DataReference;

/// Always null: names are not shared. Any thread.
DataReference* genlib_obtain_reference_from_string(const char* name) noexcept;
/// A new entry without data, whatever the reference; null when there is no memory. The caller ends
/// it with genlib_data_release and sysmem_freeptr. MAIN or OFF.
DataStoreEntry* genlib_obtain_data_from_reference(DataReference* reference) noexcept;
/// Copies dimensions and data pointer into info; always true. Any thread.
bool genlib_data_getinfo(const DataStoreEntry* entry, DataStoreInfo* info) noexcept;
/// The cursor, truncated to a whole number. Any thread.
std::int64_t genlib_data_getcursor(const DataStoreEntry* entry) noexcept;
/// Sets the cursor. Any thread, one at a time.
void genlib_data_setcursor(DataStoreEntry* entry, std::int64_t cursor) noexcept;
/// Frees the data, clears the pointer and the dimensions; the entry itself stays. MAIN or OFF.
void genlib_data_release(DataStoreEntry* entry) noexcept;

/// Gives the entry frames * channels values: the overlap with the old contents is kept and the rest
/// is 0, but a request of exactly the present byte size zeroes everything. Numbers below 1 count as
/// 1; a request above kDataStoreLimit loses frames and is reported. When memory is short one
/// channel of 512 frames, then of 4, takes its place; when not even that is there the entry stays
/// as it was. MAIN or OFF.
void genlib_data_resize(DataStoreEntry* entry, std::int64_t frames, std::int64_t channels) noexcept;

} // namespace zephyra
