// Sessions, desktops and package managers find Zephyra by these names; parameters are frozen by
// plugin_parameters_test.cpp. What is installed under them is compared by tests/plugin/install.
#include "hosting/plugin_names.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Names, AreTheOnesThatSessionsAndDesktopsKept) {
    std::ostringstream text;
    for (const PluginNames& plugin : {kEffectNames, kInstrumentNames})
        text << "plug-in: " << plugin.name << "\nlv2: " << plugin.lv2Uri
             << "\nvst3: " << kManufacturerCode << ' ' << plugin.vst3Code << '\n';
    text << "manufacturer: " << kManufacturer << "\ndesktop: " << kDesktopIdentifier
         << "\npackage: zephyra\n"; // CPack's
    EXPECT_EQ(text.str(), readText(ZEPHYRA_SOURCE_DIR "/tests/saved_files/names.txt"));
}

} // namespace
} // namespace zephyra
