// Hosts that are killed while their plug-ins play and save presets: what a user was told is saved
// stands in its bank, whoever else was at it, and nothing else is lost.

#include "hosting/plugin_instance.h"
#include "tests/library/bank_fixture.h"

#include <sys/prctl.h>

namespace zephyra {
namespace {

const std::string kBank = "Bank.zephyra", kOther = "Other.zephyra";

/// How a preset is at one time: its name, and the number that was set on Width.
struct Version {
    std::string name;
    int number = 0;
    float width() const { return static_cast<float>(number) / 1024.0f; }
    bool isOf(const PropertyDictionary& record) const {
        return snapshotTag(record) == name && record.at("Width_0") == PropertyValue(width());
    }
};

/// An instance and its user, who saves as new, overwrites and renames without end. What is begun
/// and what is done goes into a book, a line each.
class Saver {
public:
    Saver(const Folders& folders, int number, std::ofstream& book)
        : plugin(PluginKind::effect,
                 [&folders](Instance& fresh) {
                     fresh.folders = folders;
                     fresh.log.setSink([](std::string_view) {});
                 }),
          made_(number), book_(book) {
        EXPECT_TRUE(plugin.prepare({48000, 256}).ok());
        const auto main = held();
        presets().setCurrentSelectedBankName(kBank);
    }

    void turn() {
        plugin.system().instance.runLoop.runPosted();
        const auto main = held();
        AlertCenter& alerts = plugin.system().instance.alerts;
        if (alerts.current()) {
            if (!alerts.current()->textField) std::abort(); // a problem
            alerts.answer("Save", wanted_.name);
        }
        if (!begun_ && !presets().getSelectedBankDictionary()) return presets().viewWillAppear();
        if (begun_ && !isDone()) return;
        if (begun_) tell("ends");
        begin();
    }

    PluginInstance plugin;

private:
    RunLoop::Scope held() { return RunLoop::Scope(plugin.system().instance.runLoop); }
    QuickPresetsManager& presets() { return plugin.system().view.presets; }
    void tell(const char* what) {
        book_ << what << ' ' << preset_ << ' ' << wanted_.name << ' ' << wanted_.number
              << std::endl;
    }

    void begin() {
        begun_ = true;
        const int step = turns_++ % 3;
        if (step != 2) wanted_.number = ++made_;
        if (step == 0) preset_ = made_;
        if (step != 1) wanted_.name = (step == 0 ? "New-" : "Renamed-") + std::to_string(preset_);
        tell("begins");
        plugin.setParameter(static_cast<AUParameterAddress>(ControlId::width), wanted_.width());
        plugin.system().instance.runLoop.runPosted();
        if (step == 0) presets().saveSnapAs();
        if (step == 1) presets().performSnapOverwrite();
        if (step == 2) presets().renameCurrentSnapshot(wanted_.name);
    }

    /// As the tables show it, once nothing of it waits for the disk.
    bool isDone() {
        const Bank* const bank = presets().getSelectedBankDictionary();
        const auto* const record =
            bank ? recordOf(*bank, presets().getCurrentSelectedSnapID()) : nullptr;
        return record && wanted_.isOf(*record) && !presets().bankFolder().isInMemory(kBank);
    }

    int made_, preset_ = 0, turns_ = 0;
    bool begun_ = false;
    Version wanted_;
    std::ofstream& book_;
};

/// A host with so many instances, which one thread renders. It never ends by itself.
int host(const Folders& folders, int number, int instances, const fs::path& file) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::ofstream book(file);
    std::vector<std::unique_ptr<Saver>> savers;
    for (int i = 0; i < instances; ++i)
        savers.push_back(std::make_unique<Saver>(folders, number + 200 * i, book));
    std::thread([&savers] {
        for (std::vector<float> left(256, 0.1f), right = left;;) {
            for (auto& saver : savers)
                saver->plugin.render({.frames = 256,
                                      .input = {left.data(), left.data()},
                                      .output = {left.data(), right.data()}});
            ::usleep(1000);
        }
    }).detach();
    for (;;)
        for (auto& saver : savers) saver->turn();
}

/// What a user knows of a preset.
struct Told {
    std::vector<Version> versions; ///< the one that is saved, and one that may be
    bool isSaved = false;
};

/// What a book says, by preset.
std::map<int, Told> toldIn(const fs::path& book) {
    std::map<int, Told> presets;
    std::istringstream lines(readText(book));
    Version version;
    int preset = 0;
    for (std::string what; lines >> what >> preset >> version.name >> version.number;) {
        Told& told = presets[preset];
        if (what == "ends") told = {{}, true};
        told.versions.push_back(version);
    }
    return presets;
}

/// Each preset once, in a version that was told; whether one that was only begun is there is left
/// open.
void expectTold(Bank bank, const Bank& first, const std::map<int, Told>& told) {
    for (const auto& [key, record] : first) {
        EXPECT_TRUE(bank.contains(key) && bank.at(key) == record) << key;
        bank.erase(key);
    }
    for (const auto& [preset, one] : told) {
        const auto found = std::ranges::find_if(bank, [&](const auto& entry) {
            const auto& there = *entry.second.template as<PropertyDictionary>();
            return std::ranges::any_of(one.versions,
                                       [&](const Version& each) { return each.isOf(there); });
        });
        EXPECT_TRUE(found != bank.end() || !one.isSaved) << preset;
        if (found != bank.end()) bank.erase(found);
    }
    EXPECT_EQ(bank, Bank());
}

TEST(DyingHosts, LoseNoPresetThatWasSavedAndKeepNobodyFromSaving) {
    const struct {
        int hosts, instances;
        bool isFactorys; ///< the bank, which the first save copies
    } rows[] = {{1, 1, false}, {1, 2, true}, {2, 1, true}, {2, 2, false}};
    std::ptrdiff_t saved = 0;
    for (int round = 0; round < 32 && !HasFailure(); ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        const auto& row = rows[round % 4];
        std::mt19937 random(static_cast<std::uint32_t>(round));
        const TemporaryFolder top(quickFolder());
        const Folders folders{top / "shared", top / "resources"};
        const Bank first = {{"0 - old", named("Old")}, {"1 - old", named("Older")}};
        for (const fs::path& folder : {folders.shared, folders.resources})
            fs::create_directories(folder);
        ASSERT_TRUE(
            writeBank((row.isFactorys ? folders.resources : folders.shared) / kBank, first));
        ASSERT_TRUE(writeBank(folders.shared / kOther, first));

        const auto book = [&top](int i) { return top / std::to_string(i); };
        std::vector<pid_t> hosts;
        for (int i = 0; i < row.hosts; ++i)
            hosts.push_back(
                inChild([&] { return host(folders, 400 * i, row.instances, book(i)); }));
        std::map<int, Told> told;
        for (int i = 0; i < row.hosts; ++i) { // the other one goes on for a while
            const auto lines = static_cast<std::ptrdiff_t>(1 + random() % 12);
            EXPECT_TRUE(
                comesTrue([&] { return std::ranges::count(readText(book(i)), '\n') >= lines; }));
            ::usleep(static_cast<unsigned>(random() % 8000));
            ::kill(hosts[static_cast<std::size_t>(i)], SIGKILL);
            EXPECT_EQ(exitCode(hosts[static_cast<std::size_t>(i)]), -1) << "ended by itself";
            told.merge(toldIn(book(i)));
        }

        BankFolder survivor(folders);
        EXPECT_EQ(*must(survivor.read(kOther)), first);
        expectTold(*must(survivor.read(kBank)), first, told);
        EXPECT_EQ(survivor.change(kBank, adding("9 - later")).problem, "");
        for (const auto& entry : fs::directory_iterator(folders.shared))
            EXPECT_THAT(entry.path().filename(), AnyOf(kBank, kOther, BankFolder::kLockName,
                                                       StartsWith(".zephyra-unfinished-")));
        saved += std::ranges::count_if(told, [](const auto& one) { return one.second.isSaved; });
    }
    EXPECT_GT(saved, 40);
}

} // namespace
} // namespace zephyra
