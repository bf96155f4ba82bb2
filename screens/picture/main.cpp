// zephyra-screen-picture: the window in a state, as a PNG. No display is needed.
#include "platform/text/text_numbers.h"
#include "screens/picture/picture_state.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {
namespace {

struct Wanted {
    std::string file;
    PictureScene::Size size{1100, 700};
    std::optional<unsigned long> program; ///< of the factory's presets
    std::optional<double> seconds;
    const PictureState* state = pictureState("playing");
};

std::string help() {
    std::string text = "usage: zephyra-screen-picture FILE.png [WIDTHxHEIGHT [ZOOM [PROGRAM "
                       "[SECONDS]]]] [--state NAME]\n"
                       "Draws the window (1100x700 at a zoom of 1), with the factory's preset of "
                       "that number, after so many seconds, in a state:\n";
    for (const PictureState& state : pictureStates()) {
        text.append("  ").append(state.name).append(12 - state.name.size(), ' ');
        text.append(state.what).append(state.name == "playing" ? " (without --state)\n" : "\n");
    }
    return text;
}

/// Says on standard error what would be right.
std::nullopt_t refuse(const std::string& problem) {
    std::fprintf(stderr, "zephyra-screen-picture: %s\n", problem.c_str());
    return std::nullopt;
}

std::optional<double> number(const std::string& text, double least, double most) {
    const auto value = parseNumber(text);
    return value && *value >= least && *value <= most ? value : std::nullopt;
}

bool take(Wanted& wanted, std::size_t place, const std::string& text) {
    constexpr double kMostProgram = 9999, kMostSeconds = 600;
    char behind = 0;
    if (place == 0) return wanted.file = text, !text.empty();
    if (place == 1)
        return std::sscanf(text.c_str(), "%dx%d%c", &wanted.size.width, &wanted.size.height,
                           &behind) == 2 &&
               wanted.size.width > 0 && wanted.size.height > 0 &&
               std::max(wanted.size.width, wanted.size.height) <= 16384;
    const auto value = place == 2 ? number(text, ScreenLayout::kLeastZoom, ScreenLayout::kMostZoom)
                                  : number(text, 0.0, place == 3 ? kMostProgram : kMostSeconds);
    if (!value) return false;
    if (place == 2) wanted.size.zoom = *value;
    if (place == 3) wanted.program = static_cast<unsigned long>(*value);
    if (place == 4) wanted.seconds = *value;
    return place <= 4;
}

std::optional<Wanted> parse(const std::vector<std::string>& arguments) {
    constexpr const char* kRight[] = {"a FILE.png", "WIDTHxHEIGHT, as 1100x700",
                                      "a ZOOM of 0.75 to 2.5", "a PROGRAM's number",
                                      "SECONDS, up to 600"};
    Wanted wanted;
    std::size_t place = 0;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& text = arguments[i];
        if (text == "--state") {
            const std::string name = i + 1 < arguments.size() ? arguments[++i] : "";
            wanted.state = pictureState(name);
            if (!wanted.state)
                return refuse("--state takes " + pictureStateNames() + ", not \"" + name + '"');
        } else if (text.starts_with("--"))
            return refuse("there is no " + text + "; --state NAME and --help are there");
        else if (place >= std::size(kRight))
            return refuse("\"" + text + "\" is one argument too many");
        else if (!take(wanted, place, text))
            return refuse("\"" + text + "\" is not " + kRight[place]);
        else
            ++place;
    }
    if (place == 0) return refuse("give a FILE.png; --help says more");
    return wanted;
}

int draw(const Wanted& wanted) {
    const juce::ScopedJuceInitialiser_GUI gui;
    PluginInstance plugin(wanted.state->kind);
    plugin.prepare({.sampleRate = PictureScene::kRate, .mostFrames = PictureScene::kBlock});
    if (wanted.program) plugin.setProgram(*wanted.program);
    PictureScene scene(plugin, wanted.size);
    wanted.state->bring(scene, wanted.seconds.value_or(wanted.state->seconds));
    const juce::Image picture = scene.window().picture();
    juce::File file(juce::String::fromUTF8(std::filesystem::absolute(wanted.file).c_str()));
    file.deleteFile();
    juce::FileOutputStream stream(file);
    if (stream.openedOk() && juce::PNGImageFormat().writeImageToStream(picture, stream)) return 0;
    refuse(wanted.file + " cannot be written");
    return 1;
}

int run(const std::vector<std::string>& arguments) {
    if (std::ranges::find(arguments, "--help") != arguments.end()) {
        std::fputs(help().c_str(), stdout);
        return 0;
    }
    const auto wanted = parse(arguments);
    return wanted ? draw(*wanted) : 2;
}

} // namespace
} // namespace zephyra

int main(int count, char** arguments) {
    setenv("DISPLAY", ":none", 1); // one that is there must not show, or end, anything of this
    return zephyra::run({arguments + 1, arguments + count});
}
