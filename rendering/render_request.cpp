#include "rendering/render_request.h"

#include <algorithm>

namespace zephyra {

FourCharCode RenderRequest::componentType() const {
    if (host.type) return *host.type;
    return live || (preset && preset->live) ? component_type::effect : component_type::instrument;
}

bool RenderRequest::isEffectOfPreset() const {
    return !host.type && !live && preset && preset->live;
}

void insertByTime(std::vector<TimedSetting>& settings, const TimedSetting& setting) {
    settings.insert(std::ranges::upper_bound(settings, setting.seconds, {}, &TimedSetting::seconds),
                    setting);
}

bool MotionRequest::hasLfo(ControlId control) const {
    return std::ranges::find(lfos, control, &LfoRequest::control) != lfos.end();
}

bool MotionRequest::followsTempo() const {
    return std::ranges::any_of(lfos, [](const LfoRequest& lfo) { return lfo.link.has_value(); });
}

bool canHaveLfo(ControlId control) {
    return controlRange(control).kind == ControlKind::continuous && control != ControlId::fadeIn &&
           control != ControlId::fadeOut;
}

} // namespace zephyra
