// write_turtle RESOURCES LIBRARY BUNDLE: writes the Turtle files of the bundle, a folder that
// exists, for a library of that file name.
#include "platform/files/whole_file.h"
#include "plugin/lv2/turtle/plugin_turtle.h"
#include "plugin/lv2/turtle/preset_turtle.h"
#include "plugin/lv2/turtle/turtle.h"

#include <cstdio>
#include <span>

namespace zephyra {

namespace {

namespace fs = std::filesystem;

Result<void> write(const fs::path& path, const std::string& text) {
    return replaceFile(path, std::as_bytes(std::span(text)));
}

/// Writes the files of one plug-in, and adds to the manifest.
Result<void> writePlugin(PluginKind kind, const fs::path& resources, const std::string& library,
                         const fs::path& bundle, std::string& manifest) {
    const std::string file = lv2TurtleFile(kind);
    const auto written = write(bundle / file, pluginTurtle(kind));
    if (!written) return written;
    manifest += TurtleNode(turtleIri(lv2Uri(kind)))
                    .add("a", "lv2:Plugin")
                    .add("lv2:binary", turtleIri(library))
                    .add("rdfs:seeAlso", turtleIri(file))
                    .text();
    const auto presets = presetTurtles(kind, resources);
    if (!presets) return Failure{presets.message()};
    for (const PresetTurtle& preset : presets.value()) {
        if (const auto done = write(bundle / preset.file, preset.text); !done) return done;
        manifest += TurtleNode(turtleIri(preset.iri))
                        .add("a", "pset:Preset")
                        .add("lv2:appliesTo", turtleIri(lv2Uri(kind)))
                        .add("rdfs:seeAlso", turtleIri(preset.file))
                        .text();
    }
    return {};
}

Result<void> writeBundle(const fs::path& resources, const std::string& library,
                         const fs::path& bundle) {
    std::string manifest = turtlePrefixes({{"lv2", "http://lv2plug.in/ns/lv2core#"},
                                           {"pset", "http://lv2plug.in/ns/ext/presets#"},
                                           {"rdfs", "http://www.w3.org/2000/01/rdf-schema#"}});
    for (const PluginKind kind : {PluginKind::effect, PluginKind::instrument})
        if (const auto done = writePlugin(kind, resources, library, bundle, manifest); !done)
            return done;
    return write(bundle / "manifest.ttl", manifest);
}

} // namespace

} // namespace zephyra

int main(int count, char** words) {
    if (count != 4) {
        std::fputs("write_turtle takes the folder of the banks, the library's file name and the "
                   "bundle\n",
                   stderr);
        return 2;
    }
    const auto done = zephyra::writeBundle(words[1], words[2], words[3]);
    if (done) return 0;
    std::fprintf(stderr, "write_turtle: %s\n", done.message().c_str());
    return 1;
}
