// Each row of the settings: what a hand chooses reaches instance or window, and comes back from it.
#include "screens/model/settings/settings_model.h"
#include "tests/screens/read_frame.h"
#include "tests/support/testing.h"

#include <set>

namespace zephyra {
namespace {

using enum SettingId;

struct Sheet : testing::Test {
    PluginInstance plugin{PluginKind::instrument};
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    int changes = 0, edits = 0, opened = 0;

    Sheet() {
        context.settingsChanged = [this] { ++changes; };
        context.beginEdit = [this](auto&) { ++edits; };
        context.devices = {.open = [this] { ++opened; },
                           .audio = [] { return std::string("JACK, 48000 Hz"); },
                           .midi = [] { return std::string("Keys"); }};
    }
    static std::size_t at(const SettingsModel& model, SettingId id) {
        for (std::size_t i = 0; i < model.rows().size(); ++i)
            if (model.rows()[i].entry->id == id) return i;
        return model.rows().size();
    }
    const SettingRow& now(SettingsModel& model, SettingId id) {
        readFrameOf(source);
        return model.rows().at(at(model, id));
    }
    float linear(ControlId id) {
        return source.asMain([id](AudioUnitViewController& view) {
            return dynamic_cast<MOK_KNOB&>(*view.control(id)).value();
        });
    }
};

TEST_F(Sheet, EveryChoiceIsKeptByWhoeverItBelongsTo) {
    SettingsModel model(context);
    for (std::size_t row = 0; row < model.rows().size(); ++row) {
        const SettingEntry& entry = *model.rows()[row].entry;
        const std::size_t count = entry.choices.size(), before = model.rows()[row].chosen;
        if (count == 0) continue;
        EXPECT_LT(before, count) << entry.name;
        const auto plugins = plugin.settings();
        const bool steady = plugin.system().stream().isLevelSteady();
        const auto windows = context.settings;
        const std::size_t other = (before + 1) % count;
        model.choose(row, other);
        EXPECT_EQ(now(model, entry.id).value, entry.choices[other]);
        EXPECT_EQ(plugin.settings() != plugins ||
                      plugin.system().stream().isLevelSteady() != steady,
                  entry.group == SettingGroup::instance)
            << entry.name;
        EXPECT_EQ(context.settings != windows, entry.group == SettingGroup::windows) << entry.name;
        model.choose(row, count); // is none
        EXPECT_EQ(now(model, entry.id).chosen, other);
        model.stepToEnd(row, true, 0.0);
        model.step(row, 1, Fineness::coarse, 0.0);
        EXPECT_EQ(now(model, entry.id).chosen, count - 1);
        model.put(row, -3.0, 0.0);
        EXPECT_EQ(now(model, entry.id).chosen, 0u);
        model.put(row, static_cast<double>(count), 0.0);
        EXPECT_EQ(now(model, entry.id).chosen, count - 1);
        model.press(row); // and round again
        EXPECT_EQ(now(model, entry.id).chosen, 0u);
        EXPECT_FALSE(model.type(row, "no such thing").ok());
        EXPECT_TRUE(model.type(row, entry.choices[other]).ok());
        EXPECT_EQ(now(model, entry.id).chosen, other) << entry.name;
    }
    EXPECT_GT(changes, 0);
    EXPECT_EQ(linear(ControlId::fadeIn), 0.05f) << "an own one";
}

TEST_F(Sheet, FollowsWhatOthersChange) {
    SettingsModel model(context);
    plugin.setSettings({.startAnew = StartAnew::never, .embedSeconds = 42.0});
    context.settings.zoom = 1.1; // of no choice
    EXPECT_EQ(now(model, startAnew).value, "Never");
    EXPECT_EQ(now(model, embedding).chosen, SettingEntry::kOther);
    EXPECT_EQ(now(model, zoom).value, "other");
    model.step(at(model, zoom), 1, Fineness::coarse, 0.0);
    EXPECT_EQ(context.settings.zoom, 0.75);
    context.settings.zoom = 1.1;
    EXPECT_EQ(now(model, zoom).value, "other");
    model.step(at(model, zoom), -1, Fineness::coarse, 0.0);
    EXPECT_EQ(context.settings.zoom, 2.5);
    context.settings.zoom = 1.1;
    EXPECT_EQ(now(model, zoom).value, "other");
    model.press(at(model, zoom));
    EXPECT_EQ(context.settings.zoom, 0.75);
    changes = 0;
    model.choose(at(model, zoom), 0); // as it is
    EXPECT_EQ(changes, 0);
    source.asMain([](AudioUnitViewController& view) {
        dynamic_cast<MOK_KNOB&>(*view.control(ControlId::fadeOut)).setValue(2.5f);
    });
    EXPECT_EQ(now(model, fadeOut).value, "2.50 s");
    EXPECT_FLOAT_EQ(now(model, fadeOut).share, 0.5f);
}

TEST_F(Sheet, FadesAreTypedSteppedAndSlid) {
    SettingsModel model(context);
    const std::size_t row = at(model, fadeIn);
    EXPECT_TRUE(model.type(row, "1.5 s").ok());
    EXPECT_EQ(linear(ControlId::fadeIn), 1.5f);
    EXPECT_TRUE(model.type(row, "300 ms").ok());
    EXPECT_NEAR(linear(ControlId::fadeIn), 0.3f, 1e-6f);
    for (const char* const wrong : {"soon", "11 s", "-1", ""})
        EXPECT_FALSE(model.type(row, wrong).ok()) << wrong;
    EXPECT_NEAR(linear(ControlId::fadeIn), 0.3f, 1e-6f);
    edits = 0;
    for (const float share : {0.1f, 0.5f, 2.0f}) model.slide(row, share, 1.0);
    EXPECT_EQ(linear(ControlId::fadeIn), 10.0f);
    model.step(row, -1, Fineness::coarse, 1.1);
    EXPECT_LT(linear(ControlId::fadeIn), 10.0f);
    EXPECT_EQ(edits, 1) << "one drag";
    model.frame(9.0);
    model.slide(row, std::nanf(""), 9.1);
    model.put(row, std::nan(""), 9.1);
    EXPECT_EQ(edits, 1);
    model.put(row, 0.5, 9.2);
    EXPECT_EQ(linear(ControlId::fadeIn), 2.5f);
    model.reset(row);
    EXPECT_EQ(linear(ControlId::fadeIn), 0.05f);
}

TEST_F(Sheet, ShowsOnlyWhatIsThere) {
    const auto names = [](ScreenContext& of) {
        std::set<std::string> found;
        const SettingsModel model(of);
        for (const SettingRow& row : model.rows()) found.insert(row.entry->name);
        return found;
    };
    EXPECT_EQ(names(context).size(), kSettings);
    PluginInstance effect(PluginKind::effect);
    ScreenSource effects(effect);
    ScreenContext plain{.source = effects};
    EXPECT_EQ(names(plain).size(), kSettings - 4);
    SettingsModel model(context);
    EXPECT_EQ(now(model, audio).value, "JACK, 48000 Hz");
    model.press(at(model, audio));
    model.press(at(model, midi));
    model.press(99);
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(model.type(at(model, audio), "JACK").message(),
              "Audio takes no text; press it to choose");
    EXPECT_FALSE(model.type(at(model, midi), "all").ok());
}

TEST_F(Sheet, ZoomsStepThroughWhatIsOffered) {
    double from = 0.75;
    for (const double next : {1.0, 1.25, 1.5, 2.0, 2.5, 2.5})
        EXPECT_EQ(from = nextZoom(from, true), next);
    EXPECT_EQ(nextZoom(1.1, false), 1.0);
    EXPECT_EQ(nextZoom(0.75, false), 0.75);
}

} // namespace
} // namespace zephyra
