// Lv2Port: the ports of both plug-ins, by index and symbol.
#pragma once

#include "hosting/plugin_instance.h"
#include "hosting/plugin_parameters.h"

#include <cstddef>
#include <cstdint>

namespace zephyra {

/// Hosts keep ports by symbol, and some by index: none ever changes. The first ones are the
/// parameters, their index being the address.
enum class Lv2Port : std::uint32_t {
    enabled = kParameterCount,
    freeWheeling,
    events,
    outLeft,
    outRight,
    inLeft, ///< from here on an effect's alone
    inRight,
};

constexpr std::uint32_t lv2PortCount(PluginKind kind) noexcept {
    return static_cast<std::uint32_t>(kind == PluginKind::effect ? Lv2Port::inRight
                                                                 : Lv2Port::outRight) +
           1;
}

/// Bytes of events in a block that a host ought to have room for.
inline constexpr std::uint32_t kLv2EventBytes = 16384;

/// What a state keeps in a host's session: the bytes of PluginInstance::state(), and what the ports
/// stood at, in the order of the addresses.
inline constexpr const char* kLv2StateUri = "urn:zephyra:state";
inline constexpr const char* kLv2PortsUri = "urn:zephyra:ports";

/// What a parameter's port of a fresh instance stands at; of the scan's place, which moves by
/// itself, it says nothing. Any thread.
float portDefault(PluginKind kind, const PluginParameter& parameter) noexcept;

/// The value of a parameter's port, which is displayed, for a linear one: of the displayed values
/// that mean it the shortest. Any thread but RENDER.
float portValue(const PluginParameter& parameter, float linear);

/// The linear value that a port's means; a switch is on above 0. Any thread.
float linearFromPort(const PluginParameter& parameter, float value) noexcept;

} // namespace zephyra
