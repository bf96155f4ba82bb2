// Bank: a bank of presets as its file holds it, and the file's reading and writing.
#pragma once

#include "platform/files/file_stamp.h"
#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace zephyra {

/// Snapshot records by snapshot key; see bank_edits.h for what is in them.
using Bank = PropertyDictionary;
/// One version of a bank, which never changes and may be shared by threads.
using BankContent = std::shared_ptr<const Bank>;

inline constexpr std::string_view kBankExtension = "zephyra";

/// What is refused before parsing: room for thousands of presets, none for a file that is made to
/// exhaust memory.
inline constexpr PropertyListLimits kBankLimits{
    .bytes = std::size_t{128} << 20, .depth = 32, .values = std::size_t{4} << 20};

struct BankOnDisk {
    Bank bank;
    FileStamp stamp;
};

/// Reads a bank whose every record is a dictionary. Fails with one line that names the file and,
/// where there is one, the key. MAIN or WORKER.
Result<BankOnDisk> readBank(const std::filesystem::path& path);

/// The same of bytes; name stands for the file in messages.
Result<Bank> readBank(std::span<const std::byte> bytes, const std::string& name);

/// Fails with the reason why no file can hold this: readBank would refuse it. MAIN or WORKER.
Result<void> canBeWritten(const Bank& bank);

/// Replaces the file, completely or not at all, and lets backups have it. Fails, too, for what
/// cannot be written. MAIN or WORKER.
Result<void> writeBank(const std::filesystem::path& path, const Bank& bank);

/// The same where nothing stands yet; false, and nothing changed, when the name is taken.
Result<bool> createBank(const std::filesystem::path& path, const Bank& bank);

} // namespace zephyra
