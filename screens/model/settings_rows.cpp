#include "screens/model/settings_rows.h"

#include <array>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr std::array kZooms{75, 100, 125, 150, 200, 250}; // percent

void addWindow(ScreenContext& context, std::vector<MenuRow>& rows) {
    for (const int percent : kZooms)
        rows.push_back({.text = "Zoom " + std::to_string(percent) + " %",
                        .chosen =
                            [&context, percent] {
                                context.settings.zoom = percent / 100.0;
                                context.settingsChanged();
                            },
                        .isTicked = std::lround(context.settings.zoom * 100.0) == percent});
    rows.push_back({});
    const auto addSwitch = [&](const char* text, bool ScreenSettings::*field) {
        rows.push_back({.text = text,
                        .chosen =
                            [&context, field] {
                                context.settings.*field = !(context.settings.*field);
                                context.settingsChanged();
                            },
                        .isTicked = context.settings.*field});
    };
    addSwitch("Show the level meter", &ScreenSettings::showsMeter);
    addSwitch("Show the spectrum", &ScreenSettings::showsSpectrum);
    addSwitch("Show the scope", &ScreenSettings::showsScope);
    addSwitch("Reduced motion", &ScreenSettings::reducedMotion);
}

void addKnobs(ScreenContext& context, std::vector<MenuRow>& rows) {
    static constexpr std::array kStyles{"Turn knobs round", "Turn knobs sideways",
                                        "Turn knobs up and down", "Turn knobs either way"};
    const int now = context.source.asMain([](AudioUnitViewController& view) {
        return view.control(ControlId::density)
                   ? view._GRANULATOR_STREAM.controls.knob(ControlId::density)->_interactionStyle
                   : 0;
    });
    for (std::size_t style = 0; style < kStyles.size(); ++style)
        rows.push_back({.text = kStyles[style],
                        .chosen =
                            [&context, style] {
                                context.source.asMain([style](AudioUnitViewController& view) {
                                    view.instance().notifications.post(
                                        MOK_KNOB::kInteractionStyleNotice, static_cast<int>(style));
                                });
                            },
                        .isTicked = now == static_cast<int>(style)});
}

template <typename Field>
void addChoice(ScreenContext& context, std::vector<MenuRow>& rows, const char* text,
               Field PluginSettings::*field, Field value) {
    PluginInstance& plugin = context.source.plugin();
    rows.push_back({.text = text,
                    .chosen =
                        [&plugin, field, value] {
                            PluginSettings chosen = plugin.settings();
                            chosen.*field = value;
                            plugin.setSettings(chosen);
                        },
                    .isTicked = plugin.settings().*field == value});
}

void addInstance(ScreenContext& context, std::vector<MenuRow>& rows) {
    if (context.source.plugin().isInstrument()) {
        addChoice(context, rows, "The last key up fades out", &PluginSettings::notesEnd,
                  NotesEnd::fade);
        addChoice(context, rows, "The last key up lets it go on", &PluginSettings::notesEnd,
                  NotesEnd::goOn);
        rows.push_back({});
    }
    addChoice(context, rows, "Start anew in bounces", &PluginSettings::startAnew,
              StartAnew::inBounces);
    addChoice(context, rows, "Start anew at each transport start", &PluginSettings::startAnew,
              StartAnew::always);
    addChoice(context, rows, "Never start anew", &PluginSettings::startAnew, StartAnew::never);
    rows.push_back({});
    addChoice(context, rows, "Ignore MIDI program changes", &PluginSettings::followsPrograms,
              false);
    addChoice(context, rows, "Follow MIDI program changes", &PluginSettings::followsPrograms, true);
}

} // namespace

double nextZoom(double zoom, bool larger) {
    if (larger) {
        for (const int percent : kZooms)
            if (percent / 100.0 > zoom + 1e-9) return percent / 100.0;
        return kZooms.back() / 100.0;
    }
    for (auto percent = kZooms.rbegin(); percent != kZooms.rend(); ++percent)
        if (*percent / 100.0 < zoom - 1e-9) return *percent / 100.0;
    return kZooms.front() / 100.0;
}

std::vector<MenuRow> settingsRows(ScreenContext& context) {
    std::vector<MenuRow> rows;
    addWindow(context, rows);
    rows.push_back({});
    addKnobs(context, rows);
    rows.push_back({});
    addInstance(context, rows);
    return rows;
}

} // namespace zephyra
