#include "rendering/render_seed.h"

#include "controls/state_keys.h"
#include "platform/lists/property_reader.h"

#include <algorithm>
#include <limits>

namespace zephyra {

std::uint32_t clockSeed(const Clock& clock) {
    return std::max<std::uint32_t>(clock.seconds(), 1);
}

std::optional<std::uint32_t> stateSeed(const PropertyDictionary& state) {
    const auto seed = PropertyReader(state).whole(ofStream(state_key::kSeed));
    if (!seed || *seed < 1 || *seed > std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    return static_cast<std::uint32_t>(*seed);
}

std::optional<std::uint32_t> settledSeed(const RenderRequest& request, const Clock& clock) {
    if (request.seed) return request.seed;
    if (!request.host.state) return clockSeed(clock);
    const auto state = readPropertyListFile(*request.host.state); // nothing is taken from a pipe
    if (!state) return std::nullopt;
    return stateSeed(state.value()).value_or(clockSeed(clock));
}

} // namespace zephyra
