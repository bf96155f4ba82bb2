// write_turtle RESOURCES LIBRARY BUNDLE [WINDOW]: writes the Turtle files of the bundle, a folder
// that exists, for a library of that file name; with a window, which it is told by any word.
#include "platform/files/whole_file.h"
#include "plugin/lv2/turtle/plugin_turtle.h"
#include "plugin/lv2/turtle/preset_turtle.h"
#include "plugin/lv2/turtle/turtle.h"
#include "plugin/lv2/window_names.h"

#include <cstdio>
#include <span>

namespace zephyra {

namespace {

namespace fs = std::filesystem;

Result<void> write(const fs::path& path, const std::string& text) {
    return replaceFile(path, std::as_bytes(std::span(text)));
}

struct Bundle {
    fs::path resources;
    std::string library;
    fs::path folder;
    bool hasWindow;
};

/// Writes the files of one plug-in, and adds to the manifest.
Result<void> writePlugin(PluginKind kind, const Bundle& bundle, std::string& manifest) {
    const std::string file = lv2TurtleFile(kind);
    const auto written = write(bundle.folder / file, pluginTurtle(kind));
    if (!written) return written;
    TurtleNode plugin(turtleIri(lv2Uri(kind)));
    plugin.add("a", "lv2:Plugin")
        .add("lv2:binary", turtleIri(bundle.library))
        .add("rdfs:seeAlso", turtleIri(file));
    if (bundle.hasWindow) plugin.add("ui:ui", turtleIri(kLv2WindowUri));
    manifest += plugin.text();
    const auto presets = presetTurtles(kind, bundle.resources);
    if (!presets) return Failure{presets.message()};
    for (const PresetTurtle& preset : presets.value()) {
        if (const auto done = write(bundle.folder / preset.file, preset.text); !done) return done;
        manifest += TurtleNode(turtleIri(preset.iri))
                        .add("a", "pset:Preset")
                        .add("lv2:appliesTo", turtleIri(lv2Uri(kind)))
                        .add("rdfs:seeAlso", turtleIri(preset.file))
                        .text();
    }
    return {};
}

std::string windowTurtle() {
    return TurtleNode(turtleIri(kLv2WindowUri))
        .add("a", "ui:X11UI")
        .add("lv2:binary", turtleIri(kLv2WindowLibrary))
        .add("lv2:requiredFeature",
             "ui:idleInterface , ui:parent , <http://lv2plug.in/ns/ext/instance-access>")
        .add("lv2:optionalFeature",
             "ui:resize , ui:touch , <http://lv2plug.in/ns/ext/options#options> , "
             "<http://lv2plug.in/ns/ext/urid#map>")
        .add("<http://lv2plug.in/ns/ext/options#supportedOption>", "ui:scaleFactor")
        .add("lv2:extensionData", "ui:idleInterface , ui:resize")
        .text();
}

Result<void> writeBundle(const Bundle& bundle) {
    std::string manifest = turtlePrefixes({{"lv2", "http://lv2plug.in/ns/lv2core#"},
                                           {"pset", "http://lv2plug.in/ns/ext/presets#"},
                                           {"rdfs", "http://www.w3.org/2000/01/rdf-schema#"},
                                           {"ui", "http://lv2plug.in/ns/extensions/ui#"}});
    for (const PluginKind kind : {PluginKind::effect, PluginKind::instrument})
        if (const auto done = writePlugin(kind, bundle, manifest); !done) return done;
    if (bundle.hasWindow) manifest += windowTurtle();
    return write(bundle.folder / "manifest.ttl", manifest);
}

} // namespace

} // namespace zephyra

int main(int count, char** words) {
    if (count != 4 && count != 5) {
        std::fputs("write_turtle takes the folder of the banks, the library's file name, the "
                   "bundle and a word if it has a window\n",
                   stderr);
        return 2;
    }
    const auto done = zephyra::writeBundle(
        {.resources = words[1], .library = words[2], .folder = words[3], .hasWindow = count == 5});
    if (done) return 0;
    std::fprintf(stderr, "write_turtle: %s\n", done.message().c_str());
    return 1;
}
