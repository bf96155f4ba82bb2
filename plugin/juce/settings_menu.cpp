#include "plugin/juce/settings_menu.h"

namespace zephyra {

namespace {

/// Adds what sets one field to one value.
template <typename Field>
void addChoice(juce::PopupMenu& menu, const char* text, PluginInstance& plugin,
               juce::Component& button, Field PluginSettings::*field, Field value) {
    const bool ticked = plugin.settings().*field == value;
    menu.addItem(text, true, ticked,
                 [&plugin, field, value, alive = juce::Component::SafePointer(&button)] {
                     if (!alive) return;
                     PluginSettings chosen = plugin.settings();
                     chosen.*field = value;
                     plugin.setSettings(chosen);
                 });
}

} // namespace

void showSettingsMenu(PluginInstance& plugin, juce::Component& button, float zoom,
                      const std::function<void(float)>& zoomChosen) {
    juce::PopupMenu menu;
    if (plugin.isInstrument()) {
        menu.addSectionHeader("When the last key is up");
        addChoice(menu, "Fade out", plugin, button, &PluginSettings::notesEnd, NotesEnd::fade);
        addChoice(menu, "Go on", plugin, button, &PluginSettings::notesEnd, NotesEnd::goOn);
    }
    menu.addSectionHeader("When the host's transport starts");
    addChoice(menu, "Start anew in bounces", plugin, button, &PluginSettings::startAnew,
              StartAnew::inBounces);
    addChoice(menu, "Start anew always", plugin, button, &PluginSettings::startAnew,
              StartAnew::always);
    addChoice(menu, "Never start anew", plugin, button, &PluginSettings::startAnew,
              StartAnew::never);
    menu.addSectionHeader("Program changes from MIDI");
    addChoice(menu, "Ignore", plugin, button, &PluginSettings::followsPrograms, false);
    addChoice(menu, "Follow", plugin, button, &PluginSettings::followsPrograms, true);
    menu.addSectionHeader("Size of the window");
    for (const int percent : {100, 125, 150, 200, 300}) {
        const float factor = static_cast<float>(percent) / 100.0f;
        menu.addItem(juce::String(percent) + " %", true, juce::approximatelyEqual(factor, zoom),
                     [factor, zoomChosen] { zoomChosen(factor); });
    }
    menu.showMenuAsync(juce::PopupMenu::Options().withTargetComponent(button));
}

} // namespace zephyra
