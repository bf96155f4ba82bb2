#include "plugin/lv2/ports.h"

#include "platform/text/text_numbers.h"

namespace zephyra {

float portDefault(PluginKind kind, const PluginParameter& parameter) noexcept {
    if (kind == PluginKind::effect) {
        // It plays what it hears, where it hears it.
        if (parameter.id == ControlId::live || parameter.id == ControlId::playStop) return 1.0f;
        if (parameter.id == ControlId::scanning) return 0.0f;
    }
    return parameter.defaultValue;
}

float portValue(const PluginParameter& parameter, float linear) {
    const auto isIt = [&](float value) { return linearFromPort(parameter, value) == linear; };
    if (isIt(parameter.defaultValue)) return parameter.defaultValue;
    const float displayed = displayedFromLinear(controlRange(parameter.id), linear);
    const auto rounded = parseNumber(formatShort(displayed));
    return rounded && isIt(static_cast<float>(*rounded)) ? static_cast<float>(*rounded) : displayed;
}

float linearFromPort(const PluginParameter& parameter, float value) noexcept {
    if (parameter.isSwitch) return value > 0.0f ? 1.0f : 0.0f;
    return linearFromDisplayed(controlRange(parameter.id), value);
}

} // namespace zephyra
