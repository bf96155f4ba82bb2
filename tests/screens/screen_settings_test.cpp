// What is remembered of windows.
#include "screens/model/screen_settings_store.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(ScreenSettingsStore, RemembersWhatWasChosenAndFallsBackValueByValue) {
    UserDefaults defaults;
    ScreenSettingsStore store(defaults);
    EXPECT_EQ(store.read(), ScreenSettings());
    ScreenSettings chosen;
    chosen.zoom = 1.25;
    chosen.showsScope = false;
    chosen.reducedMotion = true;
    chosen.knobStyle = 2;
    store.write(chosen, {});
    EXPECT_EQ(ScreenSettingsStore(defaults).read(), chosen);

    defaults.setValue(
        "Screen",
        PropertyDictionary{
            {"Zoom", 9.0}, {"KnobStyle", 4}, {"Meter", "off"}, {"Scope", false}, {"Later", 3}});
    EXPECT_EQ(store.read(), (ScreenSettings{.showsScope = false}));
    store.write(chosen, store.read());
    EXPECT_EQ(store.read(), chosen);
    ScreenSettings others = chosen, own = chosen; // two windows
    others.knobStyle = 1;
    own.zoom = 2.0;
    store.write(others, chosen);
    store.write(own, chosen);
    ScreenSettings third = chosen;
    third.showsMeter = false;
    store.write(third, chosen);
    own.knobStyle = 1;
    own.showsMeter = false;
    EXPECT_EQ(store.read(), own);
    store.write(others, chosen);
    EXPECT_EQ(store.read(), own);
    const auto* const kept = defaults.value("Screen")->as<PropertyDictionary>();
    EXPECT_TRUE(kept->at("Later") == PropertyValue(3)); // of a newer program
    const PropertyValue* const before = defaults.value("Screen");
    store.write(chosen, chosen);
    EXPECT_EQ(defaults.value("Screen"), before);
    defaults.setValue("Screen", "damaged");
    EXPECT_EQ(store.read(), ScreenSettings());
}

} // namespace
} // namespace zephyra
