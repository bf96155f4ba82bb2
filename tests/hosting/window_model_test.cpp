// What a plain window shows and does: sounds that are missing, banks, alerts.

#include "hosting/window_model.h"

#include "hosting/plugin_instance.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

const fs::path kResources = fs::path(ZEPHYRA_SOURCE_DIR) / "resources";

class WindowModelTest : public ::testing::Test {
protected:
    WindowContents settled() {
        plugin.system().instance.runLoop.finishWork();
        return model.contents();
    }
    static PropertyDictionary dictionary(const std::string& list) {
        return *readPropertyList(std::as_bytes(std::span(list))).value().as<PropertyDictionary>();
    }
    /// Presses the button of that name on the alert that stands.
    void press(const std::string& button) {
        const ShownAlert alert = settled().alert.value();
        const auto at = std::ranges::find(alert.buttons, button) - alert.buttons.begin();
        model.answer(alert, static_cast<std::size_t>(at));
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
    const fs::path found = kResources / "Blackbird.mp3", missing = folder / "away.wav";
    PropertyDictionary state = dictionary(plugin.state());
    state["Sample_0"] = PropertyDictionary{{"Path", missing.string()}};
    const std::string named = writePropertyList(state).value();
    const auto miss = [&] {
        ASSERT_TRUE(plugin.setState(std::as_bytes(std::span(named))));
        const WindowContents now = settled();
        EXPECT_EQ(now.missing, missing.string());
        EXPECT_EQ(now.sound, "");
        EXPECT_THAT(now.alert.value().message, HasSubstr(missing.string()));
    };

    miss();
    press("Ok"); // it can still be located
    model.locate(found);
    EXPECT_EQ(settled().sound, found.string());
    EXPECT_EQ(settled().missing, "");
    EXPECT_FALSE(settled().asksForFile);

    miss();
    press("Locate");
    EXPECT_TRUE(settled().asksForFile);
    model.dismissFile();
    EXPECT_FALSE(settled().asksForFile);
    model.locate(folder / "nowhere.wav");
    press("Locate"); // that is not there either
    model.pickFile(found);
    EXPECT_EQ(settled().sound, found.string());

    miss();
    model.load(kResources / "Zephyra_Sample08.mp3");
    EXPECT_EQ(settled().missing, "");
    model.locate(found);
    EXPECT_EQ(settled().sound, (kResources / "Zephyra_Sample08.mp3").string());
}

TEST_F(WindowModelTest, TellsWhereGrainsAreCutFrom) {
    const auto tells = [&](bool live, bool captured) {
        const WindowContents now = settled();
        EXPECT_EQ(std::pair(now.isLive, now.isCaptured), std::pair(live, captured));
    };
    const auto address = static_cast<AUParameterAddress>(ControlId::live);
    tells(true, false); // as an effect begins
    plugin.setParameter(address, 0.0f);
    tells(false, true);
    model.load(kResources / "Blackbird.mp3");
    tells(false, false);
}

TEST_F(WindowModelTest, ChoosesABankThatItLoadsAndItsPresets) {
    EXPECT_EQ(settled().presets.rows.size(), 0u);
    const std::size_t before = settled().banks.rows.size();
    fs::copy_file(kResources / "Bird Machines.zephyra", folder / "My Birds.zephyra");
    model.load(folder / "My Birds.zephyra");
    settled(); // it is copied, then chosen, then read
    WindowContents now = settled();
    EXPECT_EQ(now.banks.rows.size(), before + 1);
    EXPECT_EQ(now.banks.rows.at(now.banks.chosen.value()), "My Birds");
    EXPECT_GT(now.presets.rows.size(), 1u);
    EXPECT_FALSE(now.presets.chosen);

    model.choosePreset(1);
    now = settled();
    EXPECT_EQ(now.presets.chosen, 1u);
    EXPECT_NE(now.sound, "");
    const std::string chosen = now.banks.rows[0];
    model.chooseBank(0);
    model.chooseBank(99);
    now = settled();
    EXPECT_EQ(now.banks.rows.at(now.banks.chosen.value()), chosen); // nothing came to choose again
}

TEST_F(WindowModelTest, AnswersOnlyTheAlertThatWasShown) {
    model.load(folder / "one.wav");
    const ShownAlert first = settled().alert.value();
    model.load(folder / "two.wav");
    settled();
    model.answer(first, 7); // no such button
    EXPECT_EQ(settled().alert, first);
    model.answer(first, 0);
    const ShownAlert second = settled().alert.value();
    EXPECT_THAT(second.message, HasSubstr("two.wav"));
    model.answer(first, 0);
    EXPECT_EQ(settled().alert, second);
    model.answer(second, 0);
    EXPECT_EQ(settled().alert, std::nullopt);
}

} // namespace
} // namespace zephyra
