// snapshotKey and its kin: what is done to the records of one bank, without any file.
#pragma once

#include "library/bank_file.h"
#include "platform/clock.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

inline constexpr const char* kSnapshotTags = "SnapshotTags"; ///< a record's display name
inline constexpr const char* kUnnamed = "<unnamed>";

/// "3 - 15.11.2026 | 13:48:53". Any thread.
std::string snapshotKey(std::size_t count, const DateAndTime& now);

/// The keys in the order in which people see them: compared as text without regard to case, and by
/// bytes where that makes no difference. MAIN or WORKER.
std::vector<std::string> sortedKeys(const Bank& bank);
void sortKeys(std::vector<std::string>& keys);

/// "SnapshotTags" of a record that is a dictionary with such a string, else nothing. MAIN or
/// WORKER.
std::optional<std::string> snapshotTag(const PropertyValue& record);
/// Of that key in bank; nothing, too, for a key that is not there.
std::optional<std::string> snapshotTag(const Bank& bank, std::string_view key);

/// Whether a record carries this display name. MAIN or WORKER.
bool hasSnapshotNamed(const Bank& bank, std::string_view name);

/// The record of key; null for none, or one that is no dictionary. MAIN.
PropertyDictionary* recordOf(Bank& bank, std::string_view key);
const PropertyDictionary* recordOf(const Bank& bank, std::string_view key);

/// Every record under a new key "%.3f - rest", in the order of keys: the number is the
/// single-precision place times 0.001, the rest what follows the first "-" and a blank in the old
/// key (all of it without "-"). Records that keys does not name come last. MAIN or WORKER.
Bank renumberedBank(Bank bank, std::vector<std::string> keys);

} // namespace zephyra
