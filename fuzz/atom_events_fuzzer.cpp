// An LV2 host's events, whatever their bytes: each that is read lies in the host's memory, in
// order.
#include "fuzz/require.h"
#include "plugin/lv2/atom_events.h"
#include "plugin/lv2/transport.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

/// Each type the number of its place in Lv2Uris, so that the fuzzer finds them.
LV2_URID mapType(LV2_URID_Map_Handle known, const char*) {
    return ++*static_cast<LV2_URID*>(known);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace zephyra;
    LV2_URID known = 0;
    const LV2_URID_Map map{&known, mapType};
    const Lv2Uris uris(map);

    LV2_Atom_Sequence head{};
    head.atom = {static_cast<std::uint32_t>(sizeof head.body + size), uris.atomSequence};
    std::vector<std::uint8_t> memory(sizeof head + size);
    std::memcpy(memory.data(), &head, sizeof head);
    if (size > 0) std::memcpy(memory.data() + sizeof head, bytes, size);

    AtomEvents events(reinterpret_cast<const LV2_Atom_Sequence*>(memory.data()), uris);
    Lv2Transport transport(48000);
    std::uint32_t last = 0;
    while (const auto event = events.next()) {
        require(event->frame >= last);
        last = event->frame;
        if (event->midi) {
            require(event->midi >= memory.data() + sizeof head && event->midiLength > 0);
            require(event->midi + event->midiLength <= memory.data() + memory.size());
            continue;
        }
        const PluginTransport told = transport.read(event->position);
        require(!told.tempo || *told.tempo > 0);
        require(!told.numerator || *told.numerator > 0);
        require(!told.denominator || *told.denominator > 0);
        require(!told.beats || std::isfinite(*told.beats));
    }
    return 0;
}
