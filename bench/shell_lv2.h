// Lv2Shell: the LV2 plug-in as a host calls it, with every port connected and the music in each
// block.
#pragma once

#include "bench/shell_work.h"
#include "plugin/lv2/lv2_plugin.h"

#include <array>
#include <lv2/atom/forge.h>
#include <lv2/time/time.h>
#include <map>
#include <string>

namespace zephyra {

/// Numbers types as hosts do.
struct Lv2Map {
    std::map<std::string, LV2_URID> known;
    LV2_URID_Map map{this, [](LV2_URID_Map_Handle self, const char* uri) {
                         auto& all = static_cast<Lv2Map*>(self)->known;
                         return all.try_emplace(uri, all.size() + 1).first->second;
                     }};
    LV2_Feature feature{LV2_URID__map, &map};
    const LV2_Feature* features[2] = {&feature, nullptr};
};

/// The instance's folders are the user's.
struct Lv2Shell {
    static constexpr const char* kName = "LV2";

    Lv2Shell(PluginKind kind, ShellMemory& memory, const HostedInstance::Prepare&)
        : shell(kind, double{BenchWork::kRate}, HostFeatures(types.features)) {
        for (std::uint32_t n = 0; n < kParameterCount; ++n) {
            ports[n] = portValue(pluginParameters()[n], plugin().parameter(n));
            shell.connect(n, &ports[n]);
        }
        connect(Lv2Port::enabled, &on);
        connect(Lv2Port::freeWheeling, &off);
        connect(Lv2Port::events, events);
        connect(Lv2Port::outLeft, memory.output.left.data());
        connect(Lv2Port::outRight, memory.output.right.data());
        connect(Lv2Port::inLeft, memory.input.left.data());
        connect(Lv2Port::inRight, memory.input.right.data());
        forgePosition();
        shell.activate();
    }
    void connect(Lv2Port port, void* data) {
        shell.connect(static_cast<std::uint32_t>(port), data);
    }
    void forgePosition() {
        LV2_Atom_Forge forge;
        LV2_Atom_Forge_Frame sequence, object;
        lv2_atom_forge_init(&forge, &types.map);
        lv2_atom_forge_set_buffer(&forge, events, sizeof events);
        const auto key = [&](const char* uri) {
            lv2_atom_forge_key(&forge, types.map.map(&types, uri));
        };
        lv2_atom_forge_sequence_head(&forge, &sequence, 0);
        lv2_atom_forge_frame_time(&forge, 0);
        lv2_atom_forge_object(&forge, &object, 0, types.map.map(&types, LV2_TIME__Position));
        key(LV2_TIME__beatsPerMinute), lv2_atom_forge_float(&forge, 120);
        key(LV2_TIME__beatsPerBar), lv2_atom_forge_float(&forge, 4);
        key(LV2_TIME__beatUnit), lv2_atom_forge_int(&forge, 4);
        key(LV2_TIME__speed), lv2_atom_forge_float(&forge, 1);
        lv2_atom_forge_pop(&forge, &object);
        lv2_atom_forge_pop(&forge, &sequence);
    }
    void render(int frames) { shell.run(static_cast<std::uint32_t>(frames)); }
    PluginInstance& plugin() { return shell.instance(); }

    Lv2Map types;
    std::array<float, kParameterCount> ports{};
    float on = 1, off = 0;
    alignas(8) std::uint8_t events[4096] = {};
    Lv2Plugin shell;
};

} // namespace zephyra
