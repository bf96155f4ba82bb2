// The banks that the fuzzer starts from, each named by what it is: what opening, checking and
// mending them gives.
#include "library/bank_check.h"
#include "platform/files/whole_file.h"

#include <cstddef>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <string>

namespace zephyra {
namespace {

struct KeptBank {
    const char* file;
    int presets;          // once opened; -1: it cannot be
    std::size_t findings; // all of them
    int mended;           // presets in the mended copy; -1: there is none
    std::size_t lost = 0;
};

constexpr KeptBank kKept[] = {
    {"three-presets.zephyra", 3, 0, 3},
    {"three-presets-binary.zephyra", 3, 0, 3},
    {"other-scripts.zephyra", 3, 0, 3},
    {"empty-bank.zephyra", 0, 0, 0},
    {"no-bytes.zephyra", -1, 1, -1},
    {"a-sound.zephyra", -1, 1, -1},
    {"an-array.zephyra", -1, 1, -1},
    {"record-is-text.zephyra", -1, 1, 1, 1},
    {"no-tag.zephyra", 1, 1, 1},
    {"tag-is-number.zephyra", 1, 1, 1},
    {"same-tags.zephyra", 2, 1, 2},
    {"key-without-dash.zephyra", 1, 1, 1},
    {"cut-in-second.zephyra", -1, 3, 1, 1},
    {"cut-at-end.zephyra", -1, 2, 3},
    {"damaged-in-second.zephyra", -1, 3, 2, 1},
    {"cut-binary.zephyra", -1, 1, -1},
    {"deep.zephyra", -1, 2, -1},
    {"deep-tags.zephyra", -1, 2, -1},
};

const std::filesystem::path kCorpus = ZEPHYRA_SOURCE_DIR "/fuzz/corpus/bank";

TEST(BankCorpus, IsOpenedCheckedAndMendedAsEachNameSays) {
    for (const KeptBank& kept : kKept) {
        SCOPED_TRACE(kept.file);
        const auto file = readWholeFile(kCorpus / kept.file, kBankLimits.bytes);
        ASSERT_TRUE(file.ok());
        const auto bank = readBank(file.value().bytes, kept.file);
        EXPECT_EQ(bank ? static_cast<int>(bank.value().size()) : -1, kept.presets);
        const auto findings = checkBank(file.value().bytes);
        EXPECT_EQ(findings.size(), kept.findings);

        const auto mended = mendBank(file.value().bytes);
        EXPECT_EQ(mended ? static_cast<int>(mended->bank.size()) : -1, kept.mended);
        if (mended) {
            EXPECT_EQ(mended->lost, kept.lost);
        }
    }
}

TEST(BankCorpus, IsCompletelyListedHere) {
    std::set<std::string> listed;
    for (const KeptBank& kept : kKept) listed.insert(kept.file);
    for (const auto& entry : std::filesystem::directory_iterator(kCorpus))
        EXPECT_TRUE(listed.contains(entry.path().filename().string())) << entry.path();
}

} // namespace
} // namespace zephyra
