// makeEnvelope: the menu of grain envelopes, by position and by name.
#pragma once

#include "engine/grain_window.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace zephyra {

/// The menu's entries as users read them, in the menu's order, which saved settings count by.
inline constexpr std::array<const char*, 12> kEnvelopeMenu = {
    "Grain Envelope: Gaussian",   "Grain Envelope: Blackman-Harris",
    "Grain Envelope: Hanning",    "Grain Envelope: Barlett",
    "Grain Envelope: Sync",       "Grain Envelope: Hamming",
    "Grain Envelope: Mok",        "Grain Envelope: Rectangular",
    "Grain Envelope: Pulse 1",    "Grain Envelope: Pulse 2",
    "Grain Envelope: Sinusoidal", "Grain Envelope: Random"};

/// The entry a stream starts with: Hanning.
inline constexpr std::size_t kDefaultEnvelope = 2;

inline constexpr std::size_t kRandomEnvelope = kEnvelopeMenu.size() - 1;

/// A new window of mokWindow::kPoints points for the entry at menuIndex; Random draws anew
/// each time. Null for an index beyond the menu and when memory is short. MAIN.
std::shared_ptr<mokWindow> makeEnvelope(std::size_t menuIndex, RandomSource& random);

/// The entry that name means, whatever its case, spaces and hyphens, with or without
/// "Grain Envelope: "; nothing for an unknown name. Any thread but RENDER.
std::optional<std::size_t> findEnvelope(std::string_view name);

} // namespace zephyra
