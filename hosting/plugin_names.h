// PluginNames and its kin: what hosts and desktops know the programs by, for ever.
#pragma once

namespace zephyra {

/// Sessions find a plug-in by these: none ever changes.
struct PluginNames {
    const char* name; ///< "Zephyra"
    const char* lv2Uri;
    const char* vst3Code; ///< four characters
};

inline constexpr PluginNames kEffectNames = {"Zephyra", "urn:zephyra:effect", "Zphe"};
inline constexpr PluginNames kInstrumentNames = {"Zephyra Instrument", "urn:zephyra:instrument",
                                                 "Zphi"};
inline constexpr const char* kManufacturer = "Zephyra";
inline constexpr const char* kManufacturerCode = "Zphy";
inline constexpr const char* kDesktopIdentifier = "org.zephyra.Zephyra";

} // namespace zephyra
