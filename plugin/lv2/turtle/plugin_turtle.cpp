#include "plugin/lv2/turtle/plugin_turtle.h"

#include "hosting/plugin_names.h"
#include "plugin/lv2/ports.h"
#include "plugin/lv2/turtle/turtle.h"

#include <algorithm>
#include <set>
#include <string_view>

namespace zephyra {

namespace {

constexpr const char* kEffectComment =
    "Cuts what it hears, or a sound file, into grains and scatters them: live input, freezing, "
    "scanning, pitch, echo and ring modulation. Plays its input at once; MIDI notes transpose it.";
constexpr const char* kInstrumentComment =
    "Plays a sound file in grains from MIDI notes: scanning, pitch, echo and ring modulation. "
    "Starts at the first note or at Play.";

/// A new one for every release that changes ports or their meaning; even numbers are releases.
constexpr const char *kMinorVersion = "2", *kMicroVersion = "0";

struct Point {
    ControlId id;
    float value;
    const char* label;
};

constexpr Point kPoints[] = {
    {ControlId::scrubbingWave, 0.0f, "Start"}, {ControlId::scrubbingWave, 1.0f, "End"},
    {ControlId::pan, -1.0f, "Left"},           {ControlId::pan, 0.0f, "Centre"},
    {ControlId::pan, 1.0f, "Right"},           {ControlId::dryWet, 0.0f, "Input"},
    {ControlId::dryWet, 50.0f, "Both"},        {ControlId::dryWet, 100.0f, "Grains"},
    {ControlId::scanning, -1.0f, "Backwards"}, {ControlId::scanning, 0.0f, "Still"},
    {ControlId::scanning, 1.0f, "Forwards"},
};

std::string unitOf(std::string_view unit) {
    if (unit == "Hz") return "unit:hz";
    if (unit == "ms") return "unit:ms";
    if (unit == "s") return "unit:s";
    if (unit == "st") return "unit:semitone12TET";
    if (unit == "%") return "unit:pc";
    if (unit == "x") return "unit:coef";
    return {};
}

std::string groupUri(PluginKind kind, const char* symbol) {
    return turtleIri(std::string(lv2Uri(kind)) + ":group:" + symbol);
}

TurtleNode scalePoint(const char* label, float value) {
    return TurtleNode().add("rdfs:label", turtleText(label)).add("rdf:value", turtleNumber(value));
}

TurtleNode port(const std::vector<std::string>& types, std::uint32_t index, const char* symbol,
                const char* name) {
    return TurtleNode()
        .add("a", types)
        .add("lv2:index", std::to_string(index))
        .add("lv2:symbol", turtleText(symbol))
        .add("lv2:name", turtleText(name));
}

TurtleNode port(const std::vector<std::string>& types, Lv2Port number, const char* symbol,
                const char* name) {
    return port(types, static_cast<std::uint32_t>(number), symbol, name);
}

const std::vector<std::string> kControlInput = {"lv2:InputPort", "lv2:ControlPort"};

void addRange(TurtleNode& node, float minimum, float maximum, float value) {
    node.add("lv2:default", turtleNumber(value))
        .add("lv2:minimum", turtleNumber(minimum))
        .add("lv2:maximum", turtleNumber(maximum));
}

void addSwitch(TurtleNode& node, const char* off, const char* on) {
    node.add("lv2:scalePoint", scalePoint(off, 0.0f)).add("lv2:scalePoint", scalePoint(on, 1.0f));
}

TurtleNode parameterPort(PluginKind kind, const PluginParameter& parameter) {
    const auto address = static_cast<std::uint32_t>(parameter.id);
    TurtleNode node = port(kControlInput, address, parameter.symbol, parameter.name);
    node.add("lv2:shortName", turtleText(parameter.shortName))
        .add("rdfs:comment", turtleText(parameter.meaning))
        .add("pg:group", groupUri(kind, parameter.group->symbol));
    addRange(node, parameter.minimum, parameter.maximum, portDefault(kind, parameter));
    if (const std::string unit = unitOf(parameter.unit); !unit.empty()) node.add("unit:unit", unit);
    // A logarithm needs a lower end above 0.
    if (parameter.isExponential && parameter.minimum > 0.0f)
        node.add("lv2:portProperty", "pprops:logarithmic");
    if (parameter.isSwitch) {
        node.add("lv2:portProperty", "lv2:toggled , lv2:integer");
        addSwitch(node, "Off", "On");
    }
    for (const Point& point : kPoints)
        if (point.id == parameter.id)
            node.add("lv2:scalePoint", scalePoint(point.label, point.value));
    return node;
}

TurtleNode enabledPort() {
    TurtleNode node = port(kControlInput, Lv2Port::enabled, "enabled", "Enabled");
    addRange(node, 0.0f, 1.0f, 1.0f);
    node.add("lv2:designation", "lv2:enabled")
        .add("rdfs:comment", turtleText("Off, the input passes unchanged."))
        .add("lv2:portProperty", "lv2:toggled , lv2:integer , lv2:connectionOptional");
    addSwitch(node, "Bypassed", "Enabled");
    return node;
}

TurtleNode freeWheelingPort() {
    TurtleNode node = port(kControlInput, Lv2Port::freeWheeling, "free_wheeling", "Free-Wheeling");
    addRange(node, 0.0f, 1.0f, 0.0f);
    node.add("lv2:designation", "lv2:freeWheeling")
        .add("rdfs:comment",
             turtleText("On while the host renders faster or slower than real time."))
        .add("lv2:portProperty",
             "lv2:toggled , lv2:integer , lv2:connectionOptional , pprops:notOnGUI");
    return node;
}

TurtleNode eventPort() {
    return port({"lv2:InputPort", "atom:AtomPort"}, Lv2Port::events, "events", "Events")
        .add("atom:bufferType", "atom:Sequence")
        .add("atom:supports", "midi:MidiEvent , time:Position")
        .add("lv2:designation", "lv2:control")
        .add("lv2:portProperty", "lv2:connectionOptional")
        .add("rsz:minimumSize", std::to_string(kLv2EventBytes));
}

/// The right one of a side may be left out: the side is mono then.
TurtleNode audioPort(PluginKind kind, Lv2Port number, const char* symbol, const char* name) {
    const bool isInput = number >= Lv2Port::inLeft;
    const bool isLeft = number == Lv2Port::inLeft || number == Lv2Port::outLeft;
    TurtleNode node =
        port({isInput ? "lv2:InputPort" : "lv2:OutputPort", "lv2:AudioPort"}, number, symbol, name);
    node.add("lv2:designation", isLeft ? "pg:left" : "pg:right")
        .add("pg:group", groupUri(kind, isInput ? "in" : "out"));
    if (!isLeft) node.add("lv2:portProperty", "lv2:connectionOptional");
    return node;
}

std::string group(PluginKind kind, const PluginParameterGroup& group, const char* types) {
    return TurtleNode(groupUri(kind, group.symbol))
        .add("a", types)
        .add("lv2:symbol", turtleText(group.symbol))
        .add("lv2:name", turtleText(group.name))
        .text();
}

std::string groups(PluginKind kind) {
    std::string text = group(kind, {"out", "Output"}, "pg:StereoGroup , pg:OutputGroup");
    if (kind == PluginKind::effect)
        text += group(kind, {"in", "Input"}, "pg:StereoGroup , pg:InputGroup");
    std::set<std::string_view> written;
    for (const PluginParameter& parameter : pluginParameters())
        if (written.insert(parameter.group->symbol).second)
            text += group(kind, *parameter.group, "param:ControlGroup , pg:InputGroup");
    return text;
}

/// What the states hold.
std::string stateProperties() {
    const auto property = [](const char* uri, const char* type, const char* label,
                             const char* comment) {
        return TurtleNode(turtleIri(uri))
            .add("a", std::string("rdf:Property , ") + type)
            .add("rdfs:label", turtleText(label))
            .add("rdfs:comment", turtleText(comment))
            .text();
    };
    return property(kLv2StateUri, "owl:DatatypeProperty", "state",
                    "Everything that a session keeps, as a property list.") +
           property(kLv2PortsUri, "owl:ObjectProperty", "ports",
                    "What the parameters' ports stood at when the state was saved.");
}

TurtleNode project() {
    return TurtleNode()
        .add("a", "doap:Project")
        .add("doap:name", turtleText("Zephyra"))
        .add("doap:maintainer",
             TurtleNode().add("a", "foaf:Person").add("foaf:name", turtleText(kManufacturer)));
}

TurtleNode description(PluginKind kind) {
    const bool isEffect = kind == PluginKind::effect;
    TurtleNode plugin(turtleIri(lv2Uri(kind)));
    plugin
        .add("a",
             isEffect ? "lv2:Plugin , lv2:ModulatorPlugin" : "lv2:Plugin , lv2:InstrumentPlugin")
        .add("doap:name", turtleText((isEffect ? kEffectNames : kInstrumentNames).name))
        .add("doap:license", "<https://www.gnu.org/licenses/gpl-3.0.html>")
        .add("lv2:project", project())
        .add("lv2:minorVersion", kMinorVersion)
        .add("lv2:microVersion", kMicroVersion)
        .add("rdfs:comment", turtleText(isEffect ? kEffectComment : kInstrumentComment))
        .add("lv2:requiredFeature", "urid:map")
        .add("lv2:optionalFeature",
             "lv2:hardRTCapable , opts:options , log:log , state:threadSafeRestore")
        .add("lv2:extensionData", "state:interface")
        .add("opts:supportedOption", "bufsz:maxBlockLength , bufsz:nominalBlockLength")
        .add("pg:mainOutput", groupUri(kind, "out"));
    if (isEffect) plugin.add("pg:mainInput", groupUri(kind, "in"));
    return plugin;
}

const std::vector<TurtlePrefix> kPrefixes = {
    {"atom", "http://lv2plug.in/ns/ext/atom#"},
    {"bufsz", "http://lv2plug.in/ns/ext/buf-size#"},
    {"doap", "http://usefulinc.com/ns/doap#"},
    {"foaf", "http://xmlns.com/foaf/0.1/"},
    {"log", "http://lv2plug.in/ns/ext/log#"},
    {"lv2", "http://lv2plug.in/ns/lv2core#"},
    {"midi", "http://lv2plug.in/ns/ext/midi#"},
    {"opts", "http://lv2plug.in/ns/ext/options#"},
    {"owl", "http://www.w3.org/2002/07/owl#"},
    {"param", "http://lv2plug.in/ns/ext/parameters#"},
    {"pg", "http://lv2plug.in/ns/ext/port-groups#"},
    {"pprops", "http://lv2plug.in/ns/ext/port-props#"},
    {"rdf", "http://www.w3.org/1999/02/22-rdf-syntax-ns#"},
    {"rdfs", "http://www.w3.org/2000/01/rdf-schema#"},
    {"rsz", "http://lv2plug.in/ns/ext/resize-port#"},
    {"state", "http://lv2plug.in/ns/ext/state#"},
    {"time", "http://lv2plug.in/ns/ext/time#"},
    {"unit", "http://lv2plug.in/ns/extensions/units#"},
    {"urid", "http://lv2plug.in/ns/ext/urid#"},
};

} // namespace

const char* lv2Uri(PluginKind kind) {
    return (kind == PluginKind::effect ? kEffectNames : kInstrumentNames).lv2Uri;
}

std::string lv2TurtleFile(PluginKind kind) {
    return kind == PluginKind::effect ? "effect.ttl" : "instrument.ttl";
}

std::string pluginTurtle(PluginKind kind) {
    TurtleNode plugin = description(kind);
    for (const PluginParameter& parameter : pluginParameters())
        plugin.add("lv2:port", parameterPort(kind, parameter));
    plugin.add("lv2:port", enabledPort())
        .add("lv2:port", freeWheelingPort())
        .add("lv2:port", eventPort())
        .add("lv2:port", audioPort(kind, Lv2Port::outLeft, "out_left", "Left Output"))
        .add("lv2:port", audioPort(kind, Lv2Port::outRight, "out_right", "Right Output"));
    if (kind == PluginKind::effect)
        plugin.add("lv2:port", audioPort(kind, Lv2Port::inLeft, "in_left", "Left Input"))
            .add("lv2:port", audioPort(kind, Lv2Port::inRight, "in_right", "Right Input"));
    return turtlePrefixes(kPrefixes) + stateProperties() + groups(kind) + plugin.text();
}

} // namespace zephyra
