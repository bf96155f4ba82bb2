#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

const std::string kName = "Bank.zephyra";

/// Where a bank stands before it is saved into.
enum class Start { nowhere, shared, factory };
constexpr Start kStarts[] = {Start::nowhere, Start::shared, Start::factory};

/// New folders with the bank "0 - old" where start says.
struct Place {
    explicit Place(Start start, const fs::path& parent = quickFolder()) : top(parent) {
        if (start == Start::nowhere) return; // the folder is missing, too
        const fs::path folder = start == Start::shared ? shared : resources;
        fs::create_directories(folder);
        EXPECT_TRUE(writeBank(folder / kName, {{"0 - old", named("Old")}}));
        before = {"0 - old"};
    }

    fs::path bank() const { return shared / kName; }
    /// The keys that stand on disk; the test fails for a bank that is not whole.
    std::set<std::string> onDisk() const {
        const bool isUsers = fs::exists(bank());
        std::set<std::string> keys;
        if (!isUsers && before.empty()) return keys;
        const auto read = readBank(isUsers ? bank() : resources / kName);
        EXPECT_TRUE(read) << read.message();
        if (!read) return keys;
        for (const auto& entry : read.value().bank) keys.insert(entry.first);
        return keys;
    }
    std::set<std::string> with(std::initializer_list<std::string> added) const {
        std::set<std::string> keys = before;
        keys.insert(added);
        return keys;
    }

    TemporaryFolder top;
    fs::path shared = top / "data" / "zephyra", resources = top / "resources";
    Folders folders{shared, resources};
    std::set<std::string> before;
};

/// The calls by which a preset is saved.
int pointsOfSave(Start start) {
    const Place place(start);
    int points = 0;
    const GateScope gate([&points](FileCall, const fs::path&) { return ++points, 0; });
    EXPECT_EQ(BankFolder(place.folders).change(kName, adding("1 - new")).problem, "");
    return points;
}

/// Saves while call number `point` fails, and all after it where the trouble lasts.
void saveWith(int point, int error, bool lasts, Start start) {
    const Place place(start);
    BankFolder banks(place.folders);
    BankFolder::Changed changed;
    {
        int call = 0;
        const GateScope gate([&](FileCall, const fs::path&) {
            return ++call == point || (lasts && call > point) ? error : 0;
        });
        changed = banks.change(kName, adding("1 - new"));
    }
    ASSERT_TRUE(changed.applied && changed.content && changed.content->contains("1 - new"));
    const auto onDisk = place.onDisk();
    const bool isNew = onDisk == place.with({"1 - new"});
    EXPECT_TRUE(isNew || onDisk == place.before);
    EXPECT_EQ(changed.problem.empty(), isNew) << changed.problem;
    EXPECT_EQ(must(banks.read(kName))->size(), place.before.size() + 1);
    EXPECT_EQ(banks.change(kName, adding("2 - later")).problem, "");
    EXPECT_EQ(place.onDisk(), place.with({"1 - new", "2 - later"}));
}

TEST(BankCrash, ASaveThatFailsAtAnyFileCallLeavesTheOldOrTheNewBankAndLosesNothing) {
    for (const Start start : kStarts) {
        const int ofThis = pointsOfSave(start);
        EXPECT_GT(ofThis, 15);
        for (int i = 0; i < 6 * ofThis && !HasFatalFailure(); ++i) {
            const int point = 1 + i / 6,
                      error = std::array{ENOSPC, EACCES, EIO}[static_cast<std::size_t>(i % 3)];
            SCOPED_TRACE(testing::Message() << "start " << static_cast<int>(start) << ", point "
                                            << point << ", case " << i % 6);
            saveWith(point, error, i % 6 > 2, start);
        }
    }
}

TEST(BankCrash, AProcessThatDiesAtAnyFileCallLeavesTheOldOrTheNewBankAndTheLockFree) {
    for (const Start start : kStarts) {
        const int points = pointsOfSave(start);
        for (int point = 1; point <= points; ++point) {
            SCOPED_TRACE(testing::Message()
                         << "start " << static_cast<int>(start) << ", point " << point);
            const Place place(start);
            const int code = exitCodeWhenDyingAt(point, [&] {
                BankFolder(place.folders).change(kName, adding("1 - new"));
                return 0;
            });
            ASSERT_EQ(code, kDied);
            const auto onDisk = place.onDisk();
            EXPECT_TRUE(onDisk == place.before || onDisk == place.with({"1 - new"}));
            EXPECT_EQ(BankFolder(place.folders).change(kName, adding("2 - later")).problem, "");
            EXPECT_EQ(place.onDisk().size(), onDisk.size() + 1);
        }
    }
}

} // namespace
} // namespace zephyra
