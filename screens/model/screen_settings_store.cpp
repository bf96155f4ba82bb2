#include "screens/model/screen_settings_store.h"

#include "controls/knob.h"
#include "platform/lists/property_reader.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kKey = "Screen";
constexpr const char* kZoom = "Zoom";
constexpr const char* kKnobStyle = "KnobStyle";

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
    const auto style = reader.whole(kKnobStyle).value_or(settings.knobStyle);
    if (style >= kRotary && style <= kDiagonal) settings.knobStyle = static_cast<int>(style);
    for (const Switch& one : kSwitches)
        settings.*one.field = reader.boolean(one.key).value_or(settings.*one.field);
    return settings;
}

void ScreenSettingsStore::write(const ScreenSettings& settings, const ScreenSettings& known) {
    PropertyDictionary kept = remembered(defaults_);
    const PropertyDictionary before = kept;
    if (settings.zoom != known.zoom) kept.insert_or_assign(kZoom, settings.zoom);
    if (settings.knobStyle != known.knobStyle)
        kept.insert_or_assign(kKnobStyle, static_cast<std::int64_t>(settings.knobStyle));
    for (const Switch& one : kSwitches)
        if (settings.*one.field != known.*one.field)
            kept.insert_or_assign(one.key, settings.*one.field);
    if (kept != before) defaults_.setValue(kKey, std::move(kept));
}

} // namespace zephyra
