#include "plugin/lv2/turtle/preset_turtle.h"

#include "platform/lists/property_field.h"
#include "platform/lists/property_list.h"
#include "plugin/lv2/ports.h"
#include "plugin/lv2/turtle/plugin_turtle.h"
#include "plugin/lv2/turtle/turtle.h"

#include <cstring>
#include <memory>
#include <set>
#include <span>
#include <utility>

namespace zephyra {

namespace {

const std::vector<TurtlePrefix> kPrefixes = {
    {"atom", "http://lv2plug.in/ns/ext/atom#"},
    {"lv2", "http://lv2plug.in/ns/lv2core#"},
    {"pset", "http://lv2plug.in/ns/ext/presets#"},
    {"rdf", "http://www.w3.org/1999/02/22-rdf-syntax-ns#"},
    {"rdfs", "http://www.w3.org/2000/01/rdf-schema#"},
    {"state", "http://lv2plug.in/ns/ext/state#"},
    {"xsd", "http://www.w3.org/2001/XMLSchema#"},
};

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}

/// "Dawn Chorus (Bird Machines)" as "dawn_chorus_bird_machines".
std::string plainName(std::string_view name) {
    std::string plain;
    for (char c : name) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (isPlain(c))
            plain += c;
        else if (!plain.empty() && plain.back() != '_')
            plain += '_';
    }
    if (plain.ends_with('_')) plain.pop_back();
    return plain;
}

/// "Bird Machines" of "Dawn Chorus (Bird Machines)".
std::string bankOf(const std::string& name) {
    const std::size_t begin = name.rfind('(');
    return begin == std::string::npos ? "" : name.substr(begin + 1, name.size() - begin - 2);
}

std::string bankIri(const std::string& name) {
    return turtleIri("urn:zephyra:bank:" + plainName(bankOf(name)));
}

TurtleNode bankNode(const std::string& name) {
    return TurtleNode(bankIri(name))
        .add("a", "pset:Bank")
        .add("rdfs:label", turtleText(bankOf(name)));
}

std::string base64(const std::string& bytes) {
    PropertyData::Bytes data(bytes.size());
    std::memcpy(data.data(), bytes.data(), bytes.size());
    std::string text = property_field::formatBase64(std::move(data));
    std::erase_if(text, [](char c) { return c == '\n' || c == '\t'; });
    return turtleText(text) + "^^xsd:base64Binary";
}

TurtleNode portVector(const std::vector<float>& values) {
    std::string list = "(";
    for (const float value : values) list += " \"" + turtleNumber(value) + "\"^^xsd:float";
    return TurtleNode()
        .add("a", "atom:Vector")
        .add("atom:childType", "atom:Float")
        .add("rdf:value", list + " )");
}

/// The instance's state with a sound of the resources called by its name alone, as it is on every
/// machine.
Result<PropertyDictionary> portableState(PluginInstance& instance,
                                         const std::filesystem::path& resources) {
    const std::string bytes = instance.state();
    auto list = readPropertyList(std::as_bytes(std::span(bytes)));
    auto* const state = list ? list.value().as<PropertyDictionary>() : nullptr;
    if (!state) return Failure{"the state of an instance cannot be read"};
    for (auto& [key, value] : *state) {
        auto* const sample = value.as<PropertyDictionary>();
        if (!sample || !sample->contains("Path")) continue;
        const auto* const path = sample->at("Path").as<std::string>();
        if (!path || std::filesystem::path(*path).parent_path() != resources) continue;
        const std::string name = std::filesystem::path(*path).filename().string();
        (*sample)["Path"] = (*sample)["RelativePath"] = name;
    }
    return std::move(*state);
}

TurtleNode presetNode(const std::string& iri, const std::string& name, PluginInstance& instance,
                      const std::string& bytes) {
    TurtleNode preset(turtleIri(iri));
    preset.add("a", "pset:Preset")
        .add("lv2:appliesTo", turtleIri(lv2Uri(instance.kind())))
        .add("rdfs:label", turtleText(name))
        .add("pset:bank", bankIri(name));
    std::vector<float> values;
    for (const PluginParameter& parameter : pluginParameters()) {
        // The scan's place is the state's alone: it moves by itself.
        const bool isScan = parameter.id == ControlId::scrubbingWave;
        values.push_back(isScan ? portDefault(instance.kind(), parameter)
                                : portValue(parameter, instance.parameter(values.size())));
        if (isScan) continue;
        preset.add("lv2:port", TurtleNode()
                                   .add("lv2:symbol", turtleText(parameter.symbol))
                                   .add("pset:value", turtleNumber(values.back())));
    }
    return preset.add("state:state", TurtleNode()
                                         .add(turtleIri(kLv2StateUri), base64(bytes))
                                         .add(turtleIri(kLv2PortsUri), portVector(values)));
}

/// An instance on these resources alone, in which no time passes and chance repeats.
std::unique_ptr<PluginInstance> repeatableInstance(PluginKind kind,
                                                   const std::filesystem::path& resources) {
    return std::make_unique<PluginInstance>(kind, [&](Instance& instance) {
        instance.folders = {.shared = resources / "no user", .resources = resources};
        instance.log.setSink([](std::string_view) {}); // each choice writes a line
        instance.clock.fix(0);
        instance.random.seed(0);
        instance.runLoop.setClock(RunLoop::Clock::sample);
    });
}

} // namespace

Result<std::vector<PresetTurtle>> presetTurtles(PluginKind kind,
                                                const std::filesystem::path& resources) {
    const auto names = repeatableInstance(kind, resources)->programs();
    if (names.empty()) return Failure{resources.string() + " holds no bank"};
    std::vector<PresetTurtle> presets;
    std::set<std::string> known;
    for (std::size_t number = 0; number < names.size(); ++number) {
        const std::string plain = plainName(names[number].name);
        if (!known.insert(plain).second)
            return Failure{"two presets are called " + names[number].name};
        const auto instance = repeatableInstance(kind, resources);
        instance->setProgram(number);
        instance->system().instance.runLoop.finishWork();
        const auto state = portableState(*instance, resources);
        if (!state) return Failure{names[number].name + ": " + state.message()};
        const auto bytes = writePropertyList(state.value());
        if (!bytes) return Failure{names[number].name + ": " + bytes.message()};
        const std::string iri = std::string(lv2Uri(kind)) + ":preset:" + plain;
        const TurtleNode node = presetNode(iri, names[number].name, *instance, bytes.value());
        presets.push_back(
            {.iri = iri,
             .file = (kind == PluginKind::effect ? "effect_" : "instrument_") + plain + ".ttl",
             .text =
                 turtlePrefixes(kPrefixes) + bankNode(names[number].name).text() + node.text()});
    }
    return presets;
}

} // namespace zephyra
