#include "library/bank_file.h"

#include "platform/files/backup_flag.h"
#include "platform/files/whole_file.h"
#include "platform/lists/property_path.h"
#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

namespace {

Result<void> checkRecords(const Bank& bank) {
    for (const auto& [key, record] : bank) {
        if (record.as<PropertyDictionary>()) continue;
        PropertyPath path;
        path.enterKey(key);
        return path.failure(std::string("a preset of type ") + record.typeName() +
                            "; a dictionary is needed");
    }
    return {};
}

/// The bytes of a bank that readBank takes back: what could not be read again is not written.
Result<std::string> bankText(const Bank& bank) {
    if (const auto checked = checkRecords(bank); !checked) return Failure{checked.message()};
    auto text = writePropertyList(bank, kBankLimits);
    if (!text) return text;
    if (text.value().size() > kBankLimits.bytes)
        return Failure{"a bank of " + std::to_string(text.value().size()) +
                       " bytes is too large; " + std::to_string(kBankLimits.bytes) +
                       " are kept at most"};
    return text;
}

Failure failure(const std::filesystem::path& path, const std::string& reason) {
    return Failure{shownFile(path) + " cannot be written: " + reason};
}

} // namespace

Result<Bank> readBank(std::span<const std::byte> bytes, const std::string& name) {
    const auto refused = [&name](const std::string& reason) {
        return Failure{name + " cannot be read: " + reason};
    };
    auto value = readPropertyList(bytes, kBankLimits);
    if (!value) return refused(value.message());
    auto* const bank = value.value().as<PropertyDictionary>();
    if (!bank)
        return refused(std::string("at its top is a value of type ") + value.value().typeName() +
                       "; a dictionary of presets is needed");
    if (const auto checked = checkRecords(*bank); !checked) return refused(checked.message());
    return std::move(*bank);
}

Result<BankOnDisk> readBank(const std::filesystem::path& path) {
    const auto whole = readWholeFile(path, kBankLimits.bytes);
    if (!whole) return Failure{whole.message()};
    auto bank = readBank(whole.value().bytes, shownFile(path));
    if (!bank) return Failure{bank.message()};
    return BankOnDisk{std::move(bank.value()), whole.value().stamp};
}

Result<void> canBeWritten(const Bank& bank) {
    const auto text = bankText(bank);
    return text ? Result<void>() : Failure{text.message()};
}

Result<void> writeBank(const std::filesystem::path& path, const Bank& bank) {
    const auto text = bankText(bank);
    if (!text) return failure(path, text.message());
    const auto written = replaceFile(path, std::as_bytes(std::span(text.value())));
    // Where nothing can be marked, everything is backed up.
    if (written) static_cast<void>(skipBackupiCloudForItemAtURL_skip(path, false));
    return written;
}

Result<bool> createBank(const std::filesystem::path& path, const Bank& bank) {
    const auto text = bankText(bank);
    if (!text) return failure(path, text.message());
    const auto created = createFile(path, std::as_bytes(std::span(text.value())));
    if (created && created.value())
        static_cast<void>(skipBackupiCloudForItemAtURL_skip(path, false));
    return created;
}

} // namespace zephyra
