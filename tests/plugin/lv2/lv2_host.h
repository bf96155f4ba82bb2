// Lv2Host: loads the built LV2 plug-ins the way hosts do, through lilv, and hears what they play.
#pragma once

#include "hosting/plugin_instance.h"
#include "tests/support/testing.h"

#include <lilv/lilv.h>
#include <lv2/atom/forge.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <mutex>
#include <variant>

namespace zephyra {

/// Types by number; of a whole test program, as hosts have it.
class Lv2Types {
public:
    static LV2_URID of(const std::string& uri);
    static const char* uri(LV2_URID type);
    static LV2_URID_Map* map();
    static LV2_URID_Unmap* unmap();
};

/// What is known of a plug-in before it is loaded; the bundle is read once a program.
LilvWorld* lv2World();
const LilvPlugin* lv2Plugin(PluginKind kind);
/// The presets' nodes by label.
std::map<std::string, const LilvNode*> lv2Presets(PluginKind kind);

/// An object's property as some host writes it.
using Lv2Number = std::variant<float, double, std::int32_t, std::int64_t>;
using Lv2Position = std::vector<std::pair<const char*, Lv2Number>>;

class Lv2Host {
public:
    /// longest: what is announced of a block's length; 0 for nothing. Activated.
    explicit Lv2Host(PluginKind kind, double rate = 48000, std::int32_t longest = 8192);
    ~Lv2Host();
    Lv2Host(const Lv2Host&) = delete;

    /// The value of a control port; the defaults at first.
    float& port(const std::string& symbol);
    /// What acts in the next block.
    void midi(std::uint32_t frame, std::vector<std::uint8_t> bytes);
    void position(std::uint32_t frame, const Lv2Position& properties);

    /// Adds a block to heard, left before right; an effect hears a noise that goes on.
    void render(std::uint32_t frames);
    /// What an effect heard in the last block.
    const float* input(int channel) const { return input_[channel].data(); }
    /// Leaves an input's or output's right channel unconnected.
    void connectMono();

    /// The state as a session file's text.
    std::string save();
    /// With or without the ports' values, which many hosts set themselves.
    void restore(const std::string& text, bool withPorts = true);
    void loadPreset(const std::string& label, bool withPorts = true);
    /// What the plug-in hands to its host, by key.
    std::map<std::string, std::string> properties();
    LV2_State_Status restoreProperties(const std::map<std::string, std::string>& properties);
    /// A number of the state, NaN where it says nothing.
    double inState(const std::string& key);

    std::vector<float> heard;
    std::vector<std::string> log;
    std::vector<std::string> calls; ///< what RENDER must not do, a line a block that did
    LilvInstance* instance = nullptr;

private:
    void apply(LilvState* state, bool withPorts);
    void beginEvents();

    const LilvPlugin* plugin_;
    std::map<std::string, std::uint32_t> symbols_;
    std::vector<float> ports_;
    std::int32_t longest_;
    LV2_Log_Log logging_;
    std::vector<std::uint8_t> events_;
    LV2_Atom_Forge forge_;
    LV2_Atom_Forge_Frame sequence_;
    bool began_ = false, mono_ = false;
    std::uint32_t noise_ = 1;
    std::vector<float> input_[2], output_[2];
};

/// The louder channel's greatest value from `begin` on, counted over all that was heard.
inline float peakOf(std::span<const float> heard) {
    float peak = 0;
    for (const float value : heard)
        peak = std::max(peak, std::isfinite(value) ? std::abs(value) : 1e9f);
    return peak;
}

} // namespace zephyra
