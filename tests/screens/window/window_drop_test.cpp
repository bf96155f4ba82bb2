// Files that are dropped on the window.
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

TEST_F(Hands, DropASoundAndWhatIsNone) {
    int asked = 0;
    scene.screen().context().loadFile = [&] { ++asked; };
    window.click(middle("Sound"));
    EXPECT_EQ(asked, 1);
    const fs::path bird = fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Blackbird.mp3";
    ASSERT_TRUE(window.drop({"# a bird", "localhost" + file(bird)[0]}, stageAt(0.5, 0.5)));
    scene.play(0.1);
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(sound(), bird);
    window.key(Key(' ', {}, ' '));
    EXPECT_GT(scene.play(0.5), 0.01f);

    const fs::path text = held.folder / "shopping.wav";
    writeText(text, "milk");
    window.drop(file(text), stageAt(0.5, 0.5));
    scene.play(0.1);
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->message.find('\n'), std::string::npos);
    EXPECT_THAT(alert()->message, testing::HasSubstr("shopping.wav"));
    EXPECT_EQ(sound(), bird);
    EXPECT_GT(scene.play(0.3), 0.01f); // the old one plays on

    // While it asks, the window takes no more, and no keys.
    ASSERT_NE(scene.find<AlertDialog>(), nullptr);
    window.drop(file(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Zephyra_Sample08.mp3"),
                stageAt(0.5, 0.5));
    type(" ");
    window.click(middle("Play"));
    scene.play(0.1);
    EXPECT_EQ(sound(), bird);
    EXPECT_EQ(value(playStop), 1.0f);
    press(Key::returnKey);
    scene.frames(2);
    EXPECT_EQ(scene.find<AlertDialog>(), nullptr);
    EXPECT_EQ(alert(), nullptr);
    type(" ");
    scene.play(kFewBlocks);
    EXPECT_EQ(value(playStop), 0.0f);
}

TEST_F(Hands, DropABankWhoseFirstPresetIsThenChosen) {
    const fs::path birds = held.folder / "My Birds.zephyra";
    fs::copy_file(fs::path(ZEPHYRA_SOURCE_DIR) / "resources/Bird Machines.zephyra", birds);
    const auto& presets = plugin.system().view.presets;
    const auto dropAndType = [&](const std::string& name, int key) {
        ASSERT_TRUE(window.drop(file(birds), at(width)));
        scene.play(0.1);
        if (alert()) {
            type(name);
            press(key);
            scene.play(0.1);
        }
        EXPECT_EQ(alert(), nullptr);
    };
    dropAndType("", 0);
    EXPECT_EQ(presets.getCurrentSelectedBankName(), "My Birds.zephyra");
    EXPECT_EQ(presets.getSnapshotName(), "Dawn Chorus");
    dropAndType("Owls", Key::escapeKey);
    EXPECT_EQ(presets.getCurrentSelectedBankName(), "My Birds.zephyra");
    dropAndType("Owls", Key::returnKey);
    EXPECT_EQ(presets.getCurrentSelectedBankName(), "Owls.zephyra");
}

} // namespace
} // namespace zephyra
