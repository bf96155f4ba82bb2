// Opens arbitrary bytes as a bank of presets. Whatever comes, opening ends with one line or a bank;
// what can be opened is listed, renumbered and written without losing a record, and what cannot is
// mended into a bank that can, or not at all.

#include "fuzz/require.h"
#include "library/bank_cache.h"
#include "library/bank_check.h"
#include "library/bank_edits.h"

namespace zephyra {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20;

void requireReadable(const Bank& bank) {
    const auto xml = writePropertyList(bank);
    require(xml.ok());
    const auto again = readBank(std::as_bytes(std::span(xml.value())), "written");
    require(again.ok() && again.value() == bank);
}

void tryBank(const Bank& bank) {
    const auto keys = sortedKeys(bank);
    require(keys.size() == bank.size());
    require(summarize(bank).snapshots.size() == bank.size());
    const Bank renumbered = renumberedBank(bank, keys);
    require(renumbered.size() == bank.size());
    // Beyond ten thousand the numbers have another digit and text no longer sorts them.
    const auto order = sortedKeys(renumbered);
    for (std::size_t n = 0; n < keys.size() && keys.size() < 10000; ++n)
        require(renumbered.at(order[n]) == bank.at(keys[n]));
    requireReadable(bank);
}

} // namespace
} // namespace zephyra

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zephyra;
    if (size > kMostBytes) return 0;
    const auto bytes = std::as_bytes(std::span(data, size));
    const auto bank = readBank(bytes, "bank.zephyra");
    const CheckedBank checked = checkBank({bytes.begin(), bytes.end()});
    bool fatal = false;
    for (const BankFinding& finding : checked.findings) {
        require(isOneLine(finding.text));
        fatal = fatal || finding.fatal;
    }
    require(bank.ok() != fatal);
    if (bank)
        tryBank(bank.value());
    else
        require(isOneLine(bank.message()));
    if (const auto& mended = checked.mended) {
        require(!bank || mended->bank.size() == bank.value().size());
        requireReadable(mended->bank);
    }
    return 0;
}
