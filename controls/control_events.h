// ControlEvents: what can happen to a control, as bits that go together.
#pragma once

#include <cstdint>

namespace zephyra {

using ControlEvents = std::uint32_t;

namespace control_event {
inline constexpr ControlEvents touchDown = 1u << 0;
inline constexpr ControlEvents touchUpInside = 1u << 6;  ///< 64: what a button answers to
inline constexpr ControlEvents touchUpOutside = 1u << 7; ///< the finger left the control before
inline constexpr ControlEvents touchCancel = 1u << 8;
inline constexpr ControlEvents valueChanged = 1u << 12;
/// Every event there is: random and reset gestures send it.
inline constexpr ControlEvents all = 0xFFFFFFFF;
} // namespace control_event

} // namespace zephyra
