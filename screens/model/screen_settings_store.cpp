#include "screens/model/screen_settings_store.h"

#include "platform/lists/property_reader.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kKey = "Screen";
constexpr const char* kZoom = "Zoom";

struct Switch {
    const char* key;
    bool ScreenSettings::*field;
};
constexpr Switch kSwitches[] = {{"Meter", &ScreenSettings::showsMeter},
                                {"Scope", &ScreenSettings::showsScope},
                                {"Spectrum", &ScreenSettings::showsSpectrum},
                                {"ReducedMotion", &ScreenSettings::reducedMotion}};

PropertyDictionary remembered(const UserDefaults& defaults) {
    const PropertyValue* const value = defaults.value(kKey);
    const auto* const dictionary = value ? value->as<PropertyDictionary>() : nullptr;
    return dictionary ? *dictionary : PropertyDictionary();
}

} // namespace

ScreenSettings ScreenSettingsStore::read() const {
    const PropertyDictionary kept = remembered(defaults_);
    PropertyReader reader(kept);
    ScreenSettings settings;
    const double zoom = reader.real(kZoom).value_or(settings.zoom);
    if (zoom >= ScreenLayout::kLeastZoom && zoom <= ScreenLayout::kMostZoom) settings.zoom = zoom;
    for (const Switch& one : kSwitches)
        settings.*one.field = reader.boolean(one.key).value_or(settings.*one.field);
    return settings;
}

void ScreenSettingsStore::write(const ScreenSettings& settings) {
    PropertyDictionary kept = remembered(defaults_);
    const PropertyDictionary before = kept;
    kept.insert_or_assign(kZoom, settings.zoom);
    for (const Switch& one : kSwitches) kept.insert_or_assign(one.key, settings.*one.field);
    if (kept != before) defaults_.setValue(kKey, std::move(kept));
}

} // namespace zephyra
