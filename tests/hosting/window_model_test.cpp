// What a plain window shows and does: sounds that are missing, banks, alerts.

#include "hosting/window_model.h"

#include "hosting/plugin_instance.h"
#include "platform/shared_folder_notices.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

const fs::path kResources = fs::path(ZEPHYRA_SOURCE_DIR) / "resources";

class WindowModelTest : public ::testing::Test {
protected:
    /// read(system) as MAIN, once all that was asked for is done.
    template <typename Read>
    auto settled(const Read& read) {
        HostedInstance& system = plugin.system();
        system.instance.runLoop.finishWork();
        const RunLoop::Scope main(system.instance.runLoop);
        model.followImport();
        return read(system);
    }
    std::string missing() {
        return settled([](auto& system) { return system.view.sampleLoader.missing(); });
    }
    std::string sound() {
        return settled([](auto& system) { return system.stream().sampleReference().path; });
    }
    bool asksForFile() {
        return settled([](auto& system) { return system.instance.documents.current() != nullptr; });
    }
    ShownAlert alert() {
        return settled([](auto& system) {
            const Alert* const current = system.instance.alerts.current();
            EXPECT_TRUE(current);
            return current ? shownAlert(*current) : ShownAlert();
        });
    }
    std::string chosenBank() {
        return settled(
            [](auto& system) { return system.view.presets.getCurrentSelectedBankName(); });
    }
    /// Presses the button of that name on the alert that stands.
    void press(const std::string& button) {
        const ShownAlert shown = alert();
        const auto at = std::ranges::find(shown.buttons, button) - shown.buttons.begin();
        model.answer(shown, static_cast<std::size_t>(at));
    }

    const TemporaryFolder folder{quickFolder()};
    HeardLog log;
    PluginInstance plugin{PluginKind::effect, [this](Instance& instance) {
                              log.hear(instance);
                              instance.folders = {.shared = folder / "shared",
                                                  .resources = kResources};
                              instance.fileFacts = std::make_shared<FileFacts>();
                          }};
    WindowModel model{plugin};
};

TEST_F(WindowModelTest, LocatesASoundThatAStateMissesUntilAnotherIsAskedFor) {
    const fs::path found = kResources / "Blackbird.mp3", away = folder / "away.wav";
    const std::string named = must(writePropertyList(
        PropertyDictionary{{"Sample_0", PropertyDictionary{{"Path", away.string()}}}}));
    const auto miss = [&] {
        ASSERT_TRUE(plugin.setState(std::as_bytes(std::span(named))));
        EXPECT_EQ(missing(), away.string());
        EXPECT_THAT(alert().message, HasSubstr(away.string()));
    };

    miss();
    press("Ok"); // it can still be located
    model.locate(found);
    EXPECT_EQ(sound(), found.string());
    EXPECT_EQ(missing(), "");
    EXPECT_FALSE(asksForFile());

    miss();
    press("Locate");
    EXPECT_TRUE(asksForFile());
    model.dismissFile();
    EXPECT_FALSE(asksForFile());
    model.locate(folder / "nowhere.wav");
    press("Locate"); // that is not there either
    model.pickFile(found);
    EXPECT_EQ(sound(), found.string());

    miss();
    model.load(kResources / "Zephyra_Sample08.mp3");
    EXPECT_EQ(missing(), "");
    model.locate(found);
    EXPECT_EQ(sound(), (kResources / "Zephyra_Sample08.mp3").string());
}

TEST_F(WindowModelTest, ChoosesABankThatItLoadsAndItsFirstPresetOnce) {
    const auto copyOf = [this](const char* name) {
        fs::copy_file(kResources / "Bird Machines.zephyra", folder / name);
        return folder / name;
    };
    model.load(copyOf("My Birds.zephyra"));
    chosenBank(); // it is copied, then chosen, then read
    EXPECT_THAT(chosenBank(), HasSubstr("My Birds"));
    chosenBank();
    EXPECT_EQ(settled([](auto& system) { return system.view.edits.undoName(); }), "Dawn Chorus");
    const std::string other = settled([](auto& system) {
        auto& store = system.view.presets;
        store.tableView_didSelectRowAtIndexPath(QuickPresetsManager::kBanksTable, 0);
        return store.getListOfBank()[0].name;
    });
    EXPECT_EQ(chosenBank(), other); // nothing came to choose again

    model.load(folder / "My Birds.zephyra");
    press("Cancel");
    fs::rename(copyOf("Later.zephyra"), folder / "shared" / "Later.zephyra");
    settled([](auto& system) {
        system.instance.sharedFolder.post(shared_folder_notice::kBanks);
        return 0;
    });
    chosenBank();
    EXPECT_EQ(chosenBank(), other); // which nobody loaded
}

} // namespace
} // namespace zephyra
