// Hosts that are killed while their plug-ins play and save presets: what a user was told is saved
// stands in its bank, whoever else was at it, and nothing else is lost.

#include "hosting/plugin_instance.h"
#include "tests/library/bank_fixture.h"

#include <poll.h>
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

HostedInstance::Prepare in(const Folders& folders) {
    return [&folders](Instance& fresh) {
        fresh.folders = folders;
        fresh.log.setSink([](std::string_view) {});
        fresh.random.seed(7); // which presets keep
        fresh.clock.fix(7);
    };
}

/// An instance and its user, who saves as new, overwrites and renames without end. What is begun
/// and what is done goes to a pipe, a line each.
class Saver {
public:
    Saver(const Folders& folders, int number, int pipe)
        : plugin(PluginKind::effect, in(folders)), made_(number), pipe_(pipe) {
        EXPECT_TRUE(plugin.prepare({48000, 256}).ok());
        const auto main = held();
        presets().setCurrentSelectedBankName(kBank);
    }

    void turn() {
        plugin.system().instance.runLoop.runPosted();
        const auto main = held();
        AlertCenter& alerts = plugin.system().instance.alerts;
        const bool asks = alerts.current() && alerts.current()->textField;
        if (asks) alerts.answer("Save", wanted_.name);
        if (!asks && alerts.current()) std::abort();
        if (!begun_ && !presets().getSelectedBankDictionary()) return presets().viewWillAppear();
        if (!begun_) return begin();
        if (!isDone()) return;
        tell("ends", wanted_);
        begin();
    }

    PluginInstance plugin;

private:
    RunLoop::Scope held() { return RunLoop::Scope(plugin.system().instance.runLoop); }
    QuickPresetsManager& presets() { return plugin.system().view.presets; }
    void tell(const char* what, const Version& version) {
        std::ostringstream line;
        line << what << ' ' << preset_ << ' ' << version.name << ' ' << version.number << '\n';
        if (::write(pipe_, line.view().data(), line.view().size()) < 0) std::abort();
    }

    void begin() {
        begun_ = true;
        const int step = turns_++ % 3;
        if (step != 2) wanted_.number = ++made_;
        if (step == 0) preset_ = made_;
        if (step != 1) wanted_.name = (step == 0 ? "New-" : "Renamed-") + std::to_string(preset_);
        tell("begins", wanted_);
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

    int made_, pipe_, preset_ = 0, turns_ = 0;
    bool begun_ = false;
    Version wanted_;
};

/// A host with so many instances, which one thread renders. It never ends by itself.
int host(const Folders& folders, int number, int instances, int pipe) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::vector<std::unique_ptr<Saver>> savers;
    for (int i = 0; i < instances; ++i)
        savers.push_back(std::make_unique<Saver>(folders, number + 200 * i, pipe));
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

/// What its user knows of a preset.
struct Told {
    std::vector<Version> versions; ///< the one that is saved, and one that may be
    bool isSaved = false;
};

/// A host in a process of its own.
class DyingHost {
public:
    DyingHost(const Folders& folders, int number, int instances) {
        EXPECT_EQ(::pipe(pipe_), 0);
        child_ = inChild([&] { return host(folders, number, instances, pipe_[1]); });
        ::close(pipe_[1]);
    }
    ~DyingHost() { ::close(pipe_[0]); }

    /// Waits until it has told so much.
    void tells(std::ptrdiff_t lines) {
        pollfd told{pipe_[0], POLLIN, 0};
        while (std::ranges::count(told_, '\n') < lines) {
            ASSERT_EQ(::poll(&told, 1, 20000), 1) << "the host hangs";
            ASSERT_TRUE(read()) << "the host has ended";
        }
    }
    /// What it told until then, by preset.
    std::map<int, Told> kill() {
        ::kill(child_, SIGKILL);
        int status = 0;
        ::waitpid(child_, &status, 0);
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        while (read()) {
        }
        std::map<int, Told> presets;
        std::istringstream lines(told_);
        Version version;
        int preset = 0;
        for (std::string what; lines >> what >> preset >> version.name >> version.number;) {
            Told& told = presets[preset];
            if (what == "ends") told = {{}, true};
            told.versions.push_back(version);
        }
        return presets;
    }

private:
    bool read() {
        char block[4096];
        const ssize_t size = ::read(pipe_[0], block, sizeof block);
        if (size > 0) told_.append(block, static_cast<std::size_t>(size));
        return size > 0;
    }

    int pipe_[2];
    pid_t child_;
    std::string told_;
};

/// What killed hosts left, as the next instance meets it. MAIN.
struct Survivor {
    explicit Survivor(const Folders& folders) : plugin(PluginKind::effect, in(folders)) {
        EXPECT_TRUE(plugin.prepare({48000, 256}).ok());
        float none[1];
        plugin.renderOffline({.frames = 0, .output = {none, none}}); // it reads at once from now on
    }
    Bank open(const std::string& name) {
        presets().setCurrentSelectedBankName(name);
        presets().readBankFromDisk();
        const Bank* const bank = presets().getSelectedBankDictionary();
        EXPECT_TRUE(bank) << name;
        return bank ? *bank : Bank();
    }
    /// What the plug-in keeps in a preset of that version, but for where the scan is.
    PropertyDictionary record(const Version& version) {
        plugin.setParameter(static_cast<AUParameterAddress>(ControlId::width), version.width());
        plugin.system().instance.runLoop.runPosted();
        PropertyDictionary record = plugin.system().view.snapshotState();
        record.insert_or_assign(kSnapshotTags, version.name);
        record.erase("ScanPosition_0");
        return record;
    }
    /// Each preset once, in a version that was told; whether one that was only begun is there is
    /// left open.
    void expect(const Bank& first, const std::map<int, Told>& told) {
        Bank bank = open(kBank);
        for (const auto& [key, record] : first) {
            EXPECT_TRUE(bank.contains(key) && bank.at(key) == record) << key;
            bank.erase(key);
        }
        for (const auto& [preset, one] : told) {
            const auto found = std::ranges::find_if(bank, [&](const auto& entry) {
                auto there = *entry.second.template as<PropertyDictionary>();
                there.erase("ScanPosition_0");
                return std::ranges::any_of(one.versions, [&](const Version& version) {
                    return version.isOf(there) && there == record(version);
                });
            });
            EXPECT_TRUE(found != bank.end() || !one.isSaved) << preset;
            if (found != bank.end()) bank.erase(found);
        }
        EXPECT_EQ(bank, Bank());
    }
    QuickPresetsManager& presets() { return plugin.system().view.presets; }
    PluginInstance plugin;
};

TEST(DyingHosts, LoseNoPresetThatWasSavedAndKeepNobodyFromSaving) {
    const struct {
        int hosts, instances;
        bool isFactorys; ///< the bank, which the first save copies
    } rows[] = {{1, 1, false}, {1, 2, true}, {2, 1, true}, {2, 2, false}};
    int saved = 0, open = 0;
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

        std::map<int, Told> told;
        std::vector<std::unique_ptr<DyingHost>> hosts;
        for (int i = 0; i < row.hosts; ++i)
            hosts.push_back(std::make_unique<DyingHost>(folders, 400 * i, row.instances));
        for (const auto& host : hosts) host->tells(1);
        for (const auto& host : hosts) { // the other one goes on for a while
            host->tells(1 + random() % 12);
            ::usleep(static_cast<unsigned>(random() % 8000));
            told.merge(host->kill());
        }

        Survivor survivor(folders);
        const RunLoop::Scope main(survivor.plugin.system().instance.runLoop);
        EXPECT_EQ(survivor.open(kOther), first);
        survivor.expect(first, told);
        survivor.presets().saveSnap();
        EXPECT_FALSE(survivor.presets().bankFolder().isInMemory(kBank)) << "not written";
        for (const auto& entry : fs::directory_iterator(folders.shared))
            EXPECT_THAT(entry.path().filename(), AnyOf(kBank, kOther, BankFolder::kLockName,
                                                       StartsWith(".zephyra-unfinished-")));
        for (const auto& [preset, one] : told) {
            saved += one.isSaved;
            open += one.versions.size() > one.isSaved;
        }
    }
    EXPECT_GT(saved, 40);
    EXPECT_GT(open, 10);
}

} // namespace
} // namespace zephyra
