#include "tests/plugin/lv2/lv2_host.h"

#include "hosting/plugin_names.h"
#include "platform/lists/property_list.h"
#include "tests/support/render_guard.h"

#include <cstdarg>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/midi/midi.h>
#include <lv2/time/time.h>

namespace zephyra {

namespace {

struct Types {
    std::mutex mutex;
    std::map<std::string, LV2_URID> numbers;
    std::map<LV2_URID, std::string> uris;
};

Types& types() {
    static Types all;
    return all;
}

LV2_URID mapType(LV2_URID_Map_Handle, const char* uri) {
    return Lv2Types::of(uri);
}

const char* unmapType(LV2_URID_Unmap_Handle, LV2_URID type) {
    return Lv2Types::uri(type);
}

int addLine(LV2_Log_Handle handle, LV2_URID, const char* format, va_list values) {
    char line[2000];
    std::vsnprintf(line, sizeof line, format, values);
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    static_cast<Lv2Host*>(handle)->log.emplace_back(line);
    return 0;
}

int addLineOf(LV2_Log_Handle handle, LV2_URID type, const char* format, ...) {
    va_list values;
    va_start(values, format);
    addLine(handle, type, format, values);
    va_end(values);
    return 0;
}

using Properties = std::map<std::string, std::string>;

LV2_State_Status store(LV2_State_Handle handle, std::uint32_t key, const void* value,
                       std::size_t size, std::uint32_t, std::uint32_t flags) {
    EXPECT_EQ(flags, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
    (*static_cast<Properties*>(handle))[Lv2Types::uri(key)] = {static_cast<const char*>(value),
                                                               size};
    return LV2_STATE_SUCCESS;
}

const void* retrieve(LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                     std::uint32_t* type, std::uint32_t* flags) {
    const auto& all = *static_cast<const Properties*>(handle);
    const auto found = all.find(Lv2Types::uri(key));
    if (found == all.end()) return nullptr;
    *size = found->second.size();
    *type = Lv2Types::of(found->first.ends_with("ports") ? LV2_ATOM__Vector : LV2_ATOM__Chunk);
    *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
    return found->second.data();
}

const LV2_State_Interface& stateOf(const Lv2Host& host) {
    return *static_cast<const LV2_State_Interface*>(
        lilv_instance_get_extension_data(host.instance, LV2_STATE__interface));
}

} // namespace

LV2_URID Lv2Types::of(const std::string& uri) {
    const std::lock_guard lock(types().mutex);
    const auto [at, isNew] =
        types().numbers.try_emplace(uri, static_cast<LV2_URID>(types().numbers.size() + 1));
    if (isNew) types().uris[at->second] = uri;
    return at->second;
}

const char* Lv2Types::uri(LV2_URID type) {
    const std::lock_guard lock(types().mutex);
    return types().uris.at(type).c_str();
}

LV2_URID_Map* Lv2Types::map() {
    static LV2_URID_Map map{nullptr, mapType};
    return &map;
}

LV2_URID_Unmap* Lv2Types::unmap() {
    static LV2_URID_Unmap unmap{nullptr, unmapType};
    return &unmap;
}

LilvWorld* lv2World() {
    static LilvWorld* const world = [] {
        LilvWorld* const made = lilv_world_new();
        LilvNode* const bundle = lilv_new_file_uri(made, nullptr, ZEPHYRA_LV2_BUNDLE "/");
        lilv_world_load_bundle(made, bundle);
        lilv_node_free(bundle);
        return made;
    }();
    return world;
}

const LilvPlugin* lv2Plugin(PluginKind kind) {
    const auto& names = kind == PluginKind::effect ? kEffectNames : kInstrumentNames;
    LilvNode* const uri = lilv_new_uri(lv2World(), names.lv2Uri);
    const LilvPlugin* const plugin =
        lilv_plugins_get_by_uri(lilv_world_get_all_plugins(lv2World()), uri);
    lilv_node_free(uri);
    return plugin;
}

std::map<std::string, const LilvNode*> lv2Presets(PluginKind kind) {
    static std::map<PluginKind, std::map<std::string, const LilvNode*>> known;
    auto& presets = known[kind];
    if (!presets.empty()) return presets;
    LilvWorld* const world = lv2World();
    LilvNode* const type = lilv_new_uri(world, "http://lv2plug.in/ns/ext/presets#Preset");
    LilvNode* const label = lilv_new_uri(world, LILV_NS_RDFS "label");
    const LilvNodes* const nodes = lilv_plugin_get_related(lv2Plugin(kind), type);
    LILV_FOREACH(nodes, at, nodes) {
        const LilvNode* const preset = lilv_nodes_get(nodes, at);
        lilv_world_load_resource(world, preset);
        LilvNode* const name = lilv_world_get(world, preset, label, nullptr);
        presets[lilv_node_as_string(name)] = preset;
        lilv_node_free(name);
    }
    return presets;
}

Lv2Host::Lv2Host(PluginKind kind, double rate, std::int32_t longest)
    : plugin_(lv2Plugin(kind)), longest_(longest), logging_{this, addLineOf, addLine} {
    const LV2_Options_Option options[] = {{LV2_OPTIONS_INSTANCE, 0,
                                           Lv2Types::of(LV2_BUF_SIZE__maxBlockLength),
                                           sizeof longest_, Lv2Types::of(LV2_ATOM__Int), &longest_},
                                          {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    LV2_Feature map{LV2_URID__map, Lv2Types::map()}, logs{LV2_LOG__log, &logging_},
        announced{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)};
    const LV2_Feature* features[] = {&map, &logs, longest ? &announced : nullptr, nullptr};
    instance = lilv_plugin_instantiate(plugin_, rate, features);
    ports_.resize(lilv_plugin_get_num_ports(plugin_));
    lilv_plugin_get_port_ranges_float(plugin_, nullptr, nullptr, ports_.data());
    for (std::uint32_t i = 0; i < ports_.size(); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin_, i);
        const std::string symbol = lilv_node_as_string(lilv_port_get_symbol(plugin_, port));
        symbols_[symbol] = i;
        if (!std::isnan(ports_[i])) lilv_instance_connect_port(instance, i, &ports_[i]);
    }
    lv2_atom_forge_init(&forge_, Lv2Types::map());
    lilv_instance_activate(instance);
}

Lv2Host::~Lv2Host() {
    lilv_instance_deactivate(instance);
    lilv_instance_free(instance);
}

float& Lv2Host::port(const std::string& symbol) {
    return ports_.at(symbols_.at(symbol));
}

void Lv2Host::beginEvents() {
    if (began_) return;
    began_ = true;
    events_.assign(1 << 16, 0);
    lv2_atom_forge_set_buffer(&forge_, events_.data(), events_.size());
    lv2_atom_forge_sequence_head(&forge_, &sequence_, 0);
}

void Lv2Host::midi(std::uint32_t frame, std::vector<std::uint8_t> bytes) {
    beginEvents();
    lv2_atom_forge_frame_time(&forge_, frame);
    lv2_atom_forge_atom(&forge_, static_cast<std::uint32_t>(bytes.size()),
                        Lv2Types::of(LV2_MIDI__MidiEvent));
    lv2_atom_forge_write(&forge_, bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

void Lv2Host::position(std::uint32_t frame, const Lv2Position& properties) {
    beginEvents();
    lv2_atom_forge_frame_time(&forge_, frame);
    LV2_Atom_Forge_Frame object;
    lv2_atom_forge_object(&forge_, &object, 0, Lv2Types::of(LV2_TIME__Position));
    for (const auto& [name, number] : properties) {
        lv2_atom_forge_key(&forge_, Lv2Types::of(std::string(LV2_TIME_PREFIX) + name));
        if (const auto* f = std::get_if<float>(&number)) lv2_atom_forge_float(&forge_, *f);
        if (const auto* d = std::get_if<double>(&number)) lv2_atom_forge_double(&forge_, *d);
        if (const auto* i = std::get_if<std::int32_t>(&number)) lv2_atom_forge_int(&forge_, *i);
        if (const auto* l = std::get_if<std::int64_t>(&number)) lv2_atom_forge_long(&forge_, *l);
    }
    lv2_atom_forge_pop(&forge_, &object);
}

void Lv2Host::render(std::uint32_t frames) {
    if (events_.empty()) beginEvents();
    if (std::exchange(began_, false)) lv2_atom_forge_pop(&forge_, &sequence_);
    lilv_instance_connect_port(instance, symbols_.at("events"), events_.data());
    const char* const names[2][2] = {{"in_left", "in_right"}, {"out_left", "out_right"}};
    for (int channel = 0; channel < (mono_ ? 1 : 2); ++channel) {
        output_[channel].assign(frames + 1, 0.0f);
        input_[channel].resize(frames + 1);
        lilv_instance_connect_port(instance, symbols_.at(names[1][channel]),
                                   output_[channel].data());
        if (symbols_.contains(names[0][channel]))
            lilv_instance_connect_port(instance, symbols_.at(names[0][channel]),
                                       input_[channel].data());
    }
    for (std::uint32_t i = 0; i < frames; ++i)
        for (auto& channel : input_)
            if (i < channel.size())
                channel[i] =
                    static_cast<float>((noise_ = noise_ * 1664525u + 1013904223u) >> 8) * 0x1p-24f -
                    0.5f;
    {
        std::optional<RenderGuard> guard;
        if (port("free_wheeling") == 0.0f) guard.emplace(); // else it may wait
        lilv_instance_run(instance, frames);
    }
    if (const std::string made = RenderGuard::report(); !made.empty()) calls.push_back(made);
    events_.clear();
    for (int channel = 0; channel < (mono_ ? 1 : 2); ++channel)
        heard.insert(heard.end(), output_[channel].begin(), output_[channel].end() - 1);
}

void Lv2Host::connectMono() {
    mono_ = true;
    for (const char* symbol : {"in_right", "out_right"})
        if (symbols_.contains(symbol))
            lilv_instance_connect_port(instance, symbols_.at(symbol), nullptr);
}

std::string Lv2Host::save() {
    const auto value = [](const char* symbol, void* host, std::uint32_t* size,
                          std::uint32_t* type) -> const void* {
        *size = sizeof(float);
        *type = Lv2Types::of(LV2_ATOM__Float);
        return &static_cast<Lv2Host*>(host)->port(symbol);
    };
    LilvState* const state = lilv_state_new_from_instance(
        plugin_, instance, Lv2Types::map(), nullptr, nullptr, nullptr, nullptr, value, this,
        LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr);
    char* const text = lilv_state_to_string(lv2World(), Lv2Types::map(), Lv2Types::unmap(), state,
                                            "urn:zephyra:saved", nullptr);
    std::string saved = text;
    lilv_free(text);
    lilv_state_free(state);
    return saved;
}

void Lv2Host::apply(LilvState* state, bool withPorts) {
    const auto set = [](const char* symbol, void* host, const void* value, std::uint32_t,
                        std::uint32_t type) {
        if (type != Lv2Types::of(LV2_ATOM__Float)) return; // as some hosts do
        std::memcpy(&static_cast<Lv2Host*>(host)->port(symbol), value, sizeof(float));
    };
    lilv_state_restore(state, instance, withPorts ? +set : nullptr, this, 0, nullptr);
    lilv_state_free(state);
}

void Lv2Host::restore(const std::string& text, bool withPorts) {
    apply(lilv_state_new_from_string(lv2World(), Lv2Types::map(), text.c_str()), withPorts);
}

void Lv2Host::loadPreset(const std::string& label, bool withPorts) {
    const bool isEffect = symbols_.contains("in_left");
    const auto presets = lv2Presets(isEffect ? PluginKind::effect : PluginKind::instrument);
    apply(lilv_state_new_from_world(lv2World(), Lv2Types::map(), presets.at(label)), withPorts);
}

std::map<std::string, std::string> Lv2Host::properties() {
    Properties all;
    EXPECT_EQ(stateOf(*this).save(lilv_instance_get_handle(instance), store, &all, 0, nullptr),
              LV2_STATE_SUCCESS);
    return all;
}

LV2_State_Status Lv2Host::restoreProperties(const std::map<std::string, std::string>& properties) {
    auto all = properties;
    return stateOf(*this).restore(lilv_instance_get_handle(instance), retrieve, &all, 0, nullptr);
}

double Lv2Host::inState(const std::string& key) {
    const std::string bytes = properties()["urn:zephyra:state"];
    const auto list = readPropertyList(std::as_bytes(std::span(bytes)));
    const auto* const root = list ? list.value().as<PropertyDictionary>() : nullptr;
    if (!root || !root->contains(key)) return std::nan("");
    const PropertyValue& value = root->at(key);
    if (const auto* real = value.as<double>()) return *real;
    if (const auto* whole = value.as<std::int64_t>()) return static_cast<double>(*whole);
    if (const auto* flag = value.as<bool>()) return *flag;
    return std::nan("");
}

} // namespace zephyra
