#include "screens/model/meter/meter_model.h"

namespace zephyra {

bool MeterModel::advance(const FrameTime& time) {
    OutputLevels& levels = context_.source.plugin().monitor().levels;
    const bool wanted = context_.settings.showsMeter;
    if (wanted == isOn()) return wanted && meter_.advance(levels, time);
    watcher_.reset();
    meter_ = {};
    if (wanted) watcher_.emplace(levels.watchers);
    return true;
}

std::vector<MenuRow> displayMenu(ScreenContext& context) {
    const auto row = [&context](const char* text, bool ScreenSettings::*shows) {
        return MenuRow{.text = text,
                       .chosen =
                           [&context, shows] {
                               context.settings.*shows = !(context.settings.*shows);
                               if (context.settingsChanged) context.settingsChanged();
                           },
                       .isTicked = context.settings.*shows};
    };
    return {row("Level meter", &ScreenSettings::showsMeter),
            row("Scope", &ScreenSettings::showsScope),
            row("Spectrum", &ScreenSettings::showsSpectrum)};
}

} // namespace zephyra
