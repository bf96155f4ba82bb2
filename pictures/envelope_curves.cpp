#include "pictures/envelope_curves.h"

#include "engine/envelope_menu.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace zephyra {

Result<std::vector<EnvelopeCurve>> envelopeCurves(RandomSource& random) {
    constexpr std::string_view kPrefix = "Grain Envelope: ";
    std::vector<EnvelopeCurve> curves;
    for (std::size_t i = 0; i < kEnvelopeMenu.size(); ++i) {
        const std::shared_ptr<mokWindow> window = makeEnvelope(i, random);
        if (!window) return Failure{"memory is too short for the envelopes; free some"};
        const float* const points = window->getPtr();
        curves.push_back({std::string(std::string_view(kEnvelopeMenu[i]).substr(kPrefix.size())),
                          {points, points + window->size}});
    }
    return curves;
}

} // namespace zephyra
