// Many programs with one folder of banks: what each was told, against what stands there in the end.

#include "library/preset_edits.h"
#include "platform/text/message_text.h"
#include "presets/preset_adding.h"
#include "presets/preset_saving.h"
#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

const std::vector<std::string> kNames = {"A.zephyra", "B.zephyra", "C.zephyra"};

/// A preset as it was at one time, which nobody else ever makes: its name and a number.
std::string versionOf(const PropertyDictionary& record) {
    return inQuotes(snapshotTag(record).value_or("?")) + *record.at("Number").as<std::string>();
}

std::vector<std::string> versionsIn(const Bank& bank) {
    std::vector<std::string> versions;
    for (const auto& entry : bank)
        versions.push_back(versionOf(*entry.second.as<PropertyDictionary>()));
    return versions;
}

/// One program among others. It writes down what it made and what it took away, as it was told.
class Player {
public:
    Player(const Folders& folders, int number, const fs::path& book)
        : banks_(folders), number_(number), random_(static_cast<std::uint32_t>(number)),
          book_(book) {
        banks_.setLockWait({.seconds = 60.0}); // of a machine under load
    }

    void play(int turns) {
        for (int turn = 0; turn < turns; ++turn) {
            const std::string& bank = kNames[below(kNames.size())];
            const auto seen = banks_.read(bank);
            if (below(4) == 0) ::usleep(static_cast<unsigned>(below(3000))); // the user thinks
            change(bank, seen ? seen.value() : std::make_shared<const Bank>());
        }
    }

private:
    std::size_t below(std::size_t count) { return random_() % count; }
    std::string fresh() { return std::to_string(number_ * 1'000'000 + ++made_); }
    void wrote(const char* what, const std::string& version) {
        book_ << what << ' ' << version << '\n' << std::flush;
    }
    void tookAll(const std::vector<std::string>& versions) {
        for (const std::string& version : versions) wrote("-", version);
    }

    /// True when it stands on disk.
    bool made(const std::string& bank, const BankChange& change) {
        const auto changed = banks_.change(bank, change);
        return changed.applied && changed.problem.empty();
    }

    void change(const std::string& bank, const BankContent& seen) {
        const std::size_t kind = below(20);
        if (kind < 7 || seen->empty()) return save(bank);
        std::vector<std::string> keys = sortedKeys(*seen);
        const std::string key = keys[below(keys.size())];
        const PropertyDictionary& record = *recordOf(*seen, key);
        const std::string value = fresh();
        if (kind < 10)
            return alter(bank, record, "Number", value,
                         overwritingPreset(seen, key, {{"Number", value}}));
        if (kind < 12)
            return alter(bank, record, kSnapshotTags, value, renamingPreset(seen, key, value));
        if (kind < 14) {
            if (made(bank, deletingPresets(seen, {key}))) wrote("-", versionOf(record));
        } else if (kind < 17) {
            std::ranges::shuffle(keys, random_);
            made(bank, orderingPresets(seen, keys));
        } else if (kind == 17) {
            if (made(bank, deletingPresets(seen, keys))) tookAll(versionsIn(*seen));
        } else if (kind == 18) {
            const auto removed = banks_.remove(bank, seen);
            if (removed && removed.value()) tookAll(versionsIn(*seen));
        } else {
            static_cast<void>(banks_.rename(bank, kNames[below(kNames.size())]));
        }
    }

    /// As a render saves one, or as several are imported.
    void save(const std::string& bank) {
        const DateAndTime sameSecond = {"22.11.2026", "12:00:00"};
        const std::string number = fresh();
        if (below(2) == 0) {
            if (savePreset(banks_, {bank, number}, {{"Number", number}}, sameSecond))
                wrote("+", versionOf({{kSnapshotTags, number}, {"Number", number}}));
            return;
        }
        const std::vector<PropertyDictionary> records = {
            {{kSnapshotTags, "Copy"}, {"Number", number}},
            {{kSnapshotTags, "Copy"}, {"Number", fresh()}}};
        const auto names = addPresets(banks_, bank, records, sameSecond);
        if (!names) return;
        for (std::size_t n = 0; n < records.size(); ++n)
            wrote("+", versionOf({{kSnapshotTags, names.value()[n]},
                                  {"Number", records[n].at("Number")}}));
    }

    /// By a change that gives the record another value.
    void alter(const std::string& bank, PropertyDictionary record, const char* key,
               const std::string& value, const BankChange& change) {
        if (!made(bank, change)) return;
        wrote("-", versionOf(record));
        record.insert_or_assign(key, value);
        wrote("+", versionOf(record));
    }

    BankFolder banks_;
    int number_, made_ = 0;
    std::mt19937 random_;
    std::ofstream book_;
};

/// What stands there after that many programs, each with that many turns, against their books.
void playTogether(int players, int turns, int seed) {
    const TemporaryFolder top(quickFolder());
    const Folders folders{top / "shared", top / "none"};
    fs::create_directories(folders.shared);
    std::vector<pid_t> children;
    for (int n = 0; n < players; ++n) {
        children.push_back(inChild([&] {
            Player(folders, seed * 100 + n, top / ("book " + std::to_string(n))).play(turns);
            return 0;
        }));
    }
    for (const pid_t child : children) ASSERT_EQ(exitCode(child), 0);
    std::multiset<std::string> told, taken, stands;
    for (int n = 0; n < players; ++n) {
        std::ifstream book(top / ("book " + std::to_string(n)));
        for (std::string line; std::getline(book, line);)
            (line[0] == '+' ? told : taken).insert(line.substr(2));
    }
    for (const std::string& name : kNames)
        if (const auto bank = readBank(folders.shared / name))
            for (const std::string& version : versionsIn(bank.value().bank)) stands.insert(version);
    std::multiset<std::string> right;
    std::ranges::set_difference(told, taken, std::inserter(right, right.end()));
    EXPECT_EQ(stands, right) << "seed " << seed;
    EXPECT_TRUE(std::ranges::includes(told, taken)) << "taken twice, seed " << seed;
    EXPECT_GT(taken.size(), static_cast<std::size_t>(turns)) << "nobody took anything away";
}

/// More with ZEPHYRA_RACE_ROUNDS.
TEST(BankRace, NothingThatWasToldSavedIsLostAndNothingElseIsDeleted) {
    const char* const wanted = std::getenv("ZEPHYRA_RACE_ROUNDS");
    const int rounds = wanted ? std::atoi(wanted) : 1;
    for (int seed = 1; seed <= rounds; ++seed)
        for (const int players : {2, 5, 10}) {
            playTogether(players, 300, seed);
            if (testing::Test::HasFailure()) return;
        }
}

} // namespace
} // namespace zephyra
