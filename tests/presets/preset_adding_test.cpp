// What a bank becomes when presets, or a whole one, come from somewhere else.

#include "presets/preset_adding.h"

#include "tests/library/bank_fixture.h"

#include <chrono>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zephyra {
namespace {

using testing::ElementsAre;

const DateAndTime kNow{"15.11.2026", "13:48:53"};

class PresetAdding : public BankFixture {
protected:
    std::vector<std::string> add(const std::vector<PropertyDictionary>& records) {
        return addPresets(banks_, "B.zephyra", records, kNow).value();
    }
    BankFolder banks_{folders_};
};

TEST_F(PresetAdding, ANameThatIsTakenGetsTheFirstFreeNumberBehindABlank) {
    EXPECT_THAT(add({named("Haze 2"), named("Haze 2"), named("Haze 2 3"), named("Haze 2")}),
                ElementsAre("Haze 2", "Haze 2 2", "Haze 2 3", "Haze 2 4"));
    EXPECT_THAT(add({named("Haze"), named("Haze"), named("Haze"), named("Haze 2 2")}),
                ElementsAre("Haze", "Haze 3", "Haze 4", "Haze 2 2 2"));
    EXPECT_THAT(add({PropertyDictionary{}, named(kUnnamed), named(kUnnamed)}),
                ElementsAre(kUnnamed, kUnnamed, kUnnamed));
}

TEST_F(PresetAdding, AKeyThatIsTakenStaysAndAFreeOneIsTaken) {
    const auto key = [](std::size_t count) { return snapshotKey(count, kNow); };
    banks_.change("B.zephyra", [&](Bank& bank) {
        for (const std::size_t count : {3, 4, 6}) bank.emplace(key(count), named("Old"));
        return true;
    });
    add({named("New")});
    add({named("New")});
    const auto bank = banks_.read("B.zephyra").value();
    EXPECT_THAT(sortedKeys(*bank), ElementsAre(key(3), key(4), key(5), key(6), key(7)));
    EXPECT_EQ(snapshotTag(*bank, key(6)), "Old");
}

TEST_F(PresetAdding, ThousandsOfOneNameAndOfTakenKeysAreAddedInOneGo) {
    constexpr std::size_t count = 20'000;
    const auto start = std::chrono::steady_clock::now();
    banks_.change("B.zephyra", [](Bank& bank) {
        for (std::size_t i = 0; i < count; ++i)
            bank.emplace(snapshotKey(count + i, kNow), named("Haze"));
        return true;
    });
    EXPECT_EQ(add(std::vector(count, named("Haze"))).back(), "Haze " + std::to_string(count + 1));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(PresetAdding, ABankStandsWholeOrNotAtAllWhereverTheProcessDies) {
    const auto content = std::make_shared<const Bank>(Bank{{"0 - a", named("A")}});
    const auto old = Bank{{"0 - b", named("B")}};
    for (const IfTaken ifTaken : {IfTaken::refuse, IfTaken::replace}) {
        const bool replaces = ifTaken == IfTaken::replace;
        int code = 9;
        for (int point = 1; code == 9; ++point) {
            SCOPED_TRACE(testing::Message() << "replaces: " << replaces << ", point " << point);
            const TemporaryFolder shared;
            const Folders folders{shared.path(), {}};
            const auto file = shared / "B.zephyra";
            ASSERT_TRUE(!replaces || writeBank(file, old));
            const pid_t child = ::fork();
            if (child == 0) {
                int calls = 0;
                setFileCallGate([&](FileCall, const std::filesystem::path&) {
                    if (++calls == point) ::_exit(9);
                    return 0;
                });
                BankFolder banks(folders);
                ::_exit(addWholeBank(banks, "B.zephyra", content, ifTaken).ok() ? 0 : 1);
            }
            ASSERT_EQ(::waitpid(child, &code, 0), child);
            code = WEXITSTATUS(code);
            if (replaces || std::filesystem::exists(file)) {
                const auto onDisk = readBank(file);
                ASSERT_TRUE(onDisk) << onDisk.message();
                const Bank& bank = onDisk.value().bank;
                EXPECT_TRUE(bank == *content || (replaces && bank == old));
            }
        }
        EXPECT_EQ(code, 0);
    }
}

TEST_F(PresetAdding, ABankThatIsThereIsKeptUnlessItIsToBeReplaced) {
    const auto first = std::make_shared<const Bank>(Bank{{"0 - a", named("A")}});
    const auto second = std::make_shared<const Bank>(Bank{{"0 - b", named("B")}});
    const auto add = [&](const auto& content, IfTaken ifTaken) {
        return addWholeBank(banks_, "B.zephyra", content, ifTaken).value();
    };
    EXPECT_TRUE(add(first, IfTaken::refuse));
    EXPECT_FALSE(add(second, IfTaken::refuse));
    EXPECT_TRUE(*banks_.read("B.zephyra").value() == *first);
    EXPECT_TRUE(add(second, IfTaken::replace));
    EXPECT_TRUE(*banks_.read("B.zephyra").value() == *second);
}

} // namespace
} // namespace zephyra
