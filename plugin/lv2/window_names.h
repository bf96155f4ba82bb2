// kLv2WindowUri, kLv2WindowLibrary: what the LV2 window is known by.
#pragma once

namespace zephyra {

/// Hosts remember which window a player chose.
inline constexpr const char* kLv2WindowUri = "urn:zephyra:window";
inline constexpr const char* kLv2WindowLibrary = "zephyra_window.so";

} // namespace zephyra
