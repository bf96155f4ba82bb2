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

PropertyDictionary remembered(const PropertyValue* value) {
    const auto* const dictionary = value ? value->as<PropertyDictionary>() : nullptr;
    return dictionary ? *dictionary : PropertyDictionary();
}

/// What differs from known, by key.
PropertyDictionary differences(const ScreenSettings& settings, const ScreenSettings& known) {
    PropertyDictionary chosen;
    if (settings.zoom != known.zoom) chosen.emplace(kZoom, settings.zoom);
    if (settings.knobStyle != known.knobStyle)
        chosen.emplace(kKnobStyle, static_cast<std::int64_t>(settings.knobStyle));
    for (const Switch& one : kSwitches)
        if (settings.*one.field != known.*one.field) chosen.emplace(one.key, settings.*one.field);
    return chosen;
}

} // namespace

ScreenSettings ScreenSettingsStore::read() const {
    const PropertyDictionary kept = remembered(defaults_.value(kKey));
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
    const PropertyDictionary chosen = differences(settings, known);
    if (chosen.empty()) return;
    defaults_.change([chosen](PropertyDictionary& values) {
        PropertyDictionary now = chosen;
        const auto found = values.find(kKey);
        now.merge(remembered(found == values.end() ? nullptr : &found->second));
        values.insert_or_assign(kKey, std::move(now));
    });
}

} // namespace zephyra
