// The sheet of settings as a component: drawn whole, walked by keys, told to assistive technology.
#include "screens/draw/brush.h"
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
#include "tests/support/testing.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <vector>

namespace zephyra {
namespace {

struct Window : testing::Test {
    explicit Window(PluginKind kind = PluginKind::instrument) : plugin(kind) {
        screen.context().devices = {
            .open = [] {},
            .audio = [] { return std::string("JACK, 48000 Hz, 256 frames"); },
            .midi = [] { return std::string("Keys, Pads"); }};
        screen.context().openSettings();
        screen.frame(0.0);
    }
    SettingsSheet* open() {
        for (juce::Component* const child : screen.getChildren())
            if (auto* const found = dynamic_cast<SettingsSheet*>(child)) return found;
        return nullptr;
    }
    SettingsSheet& sheet() { return *open(); }
    void keep(const std::string& name) {
        const auto folder = std::filesystem::path(ZEPHYRA_BINARY_DIR) / "pictures";
        std::filesystem::create_directories(folder);
        const juce::File file((folder / name).string());
        file.deleteFile();
        juce::FileOutputStream stream(file);
        juce::PNGImageFormat().writeImageToStream(
            screen.createComponentSnapshot(screen.getLocalBounds()), stream);
    }

    const juce::ScopedJuceInitialiser_GUI gui;
    PluginInstance plugin;
    ZephyraScreen screen{plugin};
};

/// Every row of the sheet, wherever it lies in it.
std::vector<SettingRowView*> rowsOf(juce::Component& in) {
    std::vector<SettingRowView*> rows;
    for (juce::Component* const child : in.getChildren()) {
        if (auto* const row = dynamic_cast<SettingRowView*>(child)) rows.push_back(row);
        for (SettingRowView* const row : rowsOf(*child)) rows.push_back(row);
    }
    return rows;
}

TEST_F(Window, SheetStandsWholeInWindowsOfEverySize) {
    const struct {
        int width, height;
        double zoom;
    } sizes[] = {{800, 520, 1.0},   {1100, 700, 1.0}, {2200, 1400, 2.0},
                 {3840, 2160, 1.0}, {600, 390, 0.75}, {2000, 1300, 2.5}};
    for (const auto& size : sizes) {
        screen.context().settings.zoom = size.zoom;
        screen.setSize(size.width, size.height);
        screen.frame(0.1);
        const ScreenLayout layout = layOut(size.width, size.height, size.zoom);
        SettingsModel model(screen.context());
        const SheetBoxes boxes = sheetBoxes(layout, model.rows());
        EXPECT_GE(boxes.panel.x, 0);
        EXPECT_GE(boxes.panel.y, 0);
        EXPECT_LE(boxes.help.bottom(), boxes.panel.bottom());
        EXPECT_GT(boxes.list.height, layout.px(200)) << "room for rows";
        const auto width = [&](double units, const char* text) {
            return brush::medium(units * layout.scale).getStringWidth(juce::String::fromUTF8(text));
        };
        for (std::size_t i = 0; i < boxes.rows.size(); ++i) {
            const SettingEntry& entry = *model.rows()[i].entry;
            const SettingRowBoxes row = settingRowBoxes(boxes.rows[i], entry.kind, layout.scale);
            EXPECT_LE(width(13, entry.name), row.name.width) << entry.name;
            for (std::size_t j = 0; j < entry.choices.size() && entry.kind == SettingKind::choice;
                 ++j)
                EXPECT_LE(width(12, entry.choices[j]),
                          choiceBox(row.control, j, entry.choices.size()).width)
                    << entry.choices[j];
            EXPECT_LE(brush::regular(12 * layout.scale).getStringWidth(brush::text(helpOf(entry))) *
                          11 / 10,
                      2 * boxes.help.width)
                << helpOf(entry);
        }
        keep("settings-" + std::to_string(size.width) + ".png");
    }
}

TEST_F(Window, KeysWalkRoundTheSheetAndChangeItsRows) {
    screen.setSize(800, 520);
    const auto rows = rowsOf(sheet());
    ASSERT_EQ(rows.size(), kSettings);
    using Key = juce::KeyPress;
    for (std::size_t i = 1; i < kSettings; ++i) {
        EXPECT_TRUE(sheet().keyPressed(Key(i % 2 == 0 ? Key::tabKey : Key::downKey)));
        const auto seen = rows[i]->getParentComponent()->getParentComponent();
        EXPECT_TRUE(
            seen->getLocalBounds().contains(seen->getLocalArea(rows[i], rows[i]->getLocalBounds())))
            << rows[i]->getTitle();
    }
    keep("settings-end.png");
    EXPECT_TRUE(rows[4]->keyPressed(Key(Key::endKey)));
    EXPECT_EQ(plugin.settings().startAnew, StartAnew::never);
    EXPECT_TRUE(rows[5]->keyPressed(Key(Key::spaceKey)));
    EXPECT_TRUE(plugin.settings().followsPrograms);
    EXPECT_TRUE(screen.keyPressed(Key('+', juce::ModifierKeys::ctrlModifier, 0)));
    EXPECT_EQ(screen.settings().zoom, 1.25);
    const auto access = rows[0]->createAccessibilityHandler();
    ASSERT_TRUE(access && access->getValueInterface());
    access->getValueInterface()->setValue(1.0);
    screen.frame(0.15);
    EXPECT_EQ(access->getValueInterface()->getCurrentValueAsString(), "10.0 s");
    access->getValueInterface()->setValueAsString("2 s");
    screen.frame(0.2);
    EXPECT_EQ(access->getValueInterface()->getCurrentValueAsString(), "2.00 s");
}

TEST_F(Window, EverythingThatIsReachedHasATitleAndAHelpOfItsOwn) {
    std::map<juce::String, juce::String> helps;
    int count = 0;
    const std::function<void(juce::Component&)> look = [&](juce::Component& in) {
        for (juce::Component* const child : in.getChildren()) {
            look(*child);
            if (!child->getWantsKeyboardFocus() || dynamic_cast<juce::Viewport*>(child)) continue;
            ++count;
            const juce::String help = child->getHelpText();
            EXPECT_TRUE(child->getTitle().isNotEmpty()) << help;
            EXPECT_TRUE(help.isNotEmpty()) << child->getTitle();
            EXPECT_TRUE(helps.emplace(help, child->getTitle()).second)
                << child->getTitle() << " has that of " << helps[help] << ": " << help;
        }
    };
    look(screen);
    EXPECT_GT(count, 60);
}

TEST_F(Window, TheKeyboardFollowsTheSignal) {
    const auto all = juce::KeyboardFocusTraverser().getAllComponents(&screen);
    std::vector<juce::String> titles;
    for (const juce::Component* const one : all) titles.push_back(one->getTitle());
    std::size_t at = 0;
    for (const char* const title :
         {"Play", "Settings", "Scan", "Region start", "Region end", "Density", "Pitch", "Width",
          "Scan Sync", "Scanning", "Echo Switch", "Left Delay", "Ring Modulation Switch",
          "Amplitude", "Level meter", "Spectrum", "Scope"}) {
        const auto found =
            std::find(titles.begin() + static_cast<std::ptrdiff_t>(at), titles.end(), title);
        ASSERT_NE(found, titles.end()) << title << " comes too early, or never";
        at = static_cast<std::size_t>(found - titles.begin());
    }
}

} // namespace
} // namespace zephyra
