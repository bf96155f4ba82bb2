// settledSeed and its kin: which seed a render takes.
#pragma once

#include "platform/clock.h"
#include "platform/lists/property_list.h"
#include "rendering/render_request.h"

#include <cstdint>
#include <optional>

namespace zephyra {

/// From 1 up. Any thread.
std::uint32_t clockSeed(const Clock& clock);

/// The seed that a saved state brings; none where it has none, or one that nothing can start from.
/// Any thread.
std::optional<std::uint32_t> stateSeed(const PropertyDictionary& state);

/// The seed that a render of request takes, so that others can take the same: the one asked for,
/// else its state's, else the clock's. None where the state can be read only once or not at all,
/// and the render itself has to see. MAIN.
std::optional<std::uint32_t> settledSeed(const RenderRequest& request, const Clock& clock);

} // namespace zephyra
