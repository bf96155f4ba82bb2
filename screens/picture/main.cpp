// zephyra-screen-picture FILE.png [WIDTHxHEIGHT [ZOOM [PROGRAM [SECONDS]]]]: the window as it looks
// after the factory's preset of that number has played so long. No display is needed.
#include "screens/zephyra_screen.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {
namespace {

constexpr double kRate = 48000.0;
constexpr std::uint32_t kBlock = 480;
constexpr double kFrame = 1.0 / 60.0;
constexpr PluginTransport kTransport{.tempo = 96.0, .numerator = 4.0, .moving = true};

// Plays as a bounce does, so that the same picture comes out every time, with a frame each 60th.
void play(PluginInstance& plugin, ZephyraScreen& screen, double seconds) {
    std::vector<float> left(kBlock), right(kBlock);
    double shown = 0.0;
    screen.frame(0.0);
    for (double now = 0.0; now < seconds; now += kBlock / kRate) {
        PluginBlock block;
        block.output[0] = left.data();
        block.output[1] = right.data();
        block.frames = kBlock;
        block.transport = kTransport;
        plugin.renderOffline(block);
        for (; shown < now; shown += kFrame) screen.frame(shown);
    }
}

int run(const std::vector<std::string>& arguments) {
    const auto argument = [&](std::size_t i, const char* otherwise) {
        return i < arguments.size() ? arguments[i] : std::string(otherwise);
    };
    int width = 0, height = 0;
    if (arguments.empty() ||
        std::sscanf(argument(1, "1100x700").c_str(), "%dx%d", &width, &height) != 2) {
        std::fputs("usage: zephyra-screen-picture FILE.png [WIDTHxHEIGHT [ZOOM [PROGRAM "
                   "[SECONDS]]]]\n",
                   stderr);
        return 2;
    }
    const juce::ScopedJuceInitialiser_GUI gui;
    PluginInstance plugin(PluginKind::instrument);
    plugin.prepare({.sampleRate = kRate, .mostFrames = kBlock});
    if (arguments.size() > 3) plugin.setProgram(std::stoul(arguments[3]));
    plugin.setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
    ScreenSettings settings;
    settings.zoom = std::strtod(argument(2, "1").c_str(), nullptr);
    ZephyraScreen screen(plugin, settings);
    screen.setSize(width, height);
    play(plugin, screen, std::strtod(argument(4, "3").c_str(), nullptr));
    const juce::Image picture = screen.createComponentSnapshot(screen.getLocalBounds());
    juce::File file(juce::String::fromUTF8(std::filesystem::absolute(arguments[0]).c_str()));
    file.deleteFile();
    juce::FileOutputStream stream(file);
    return stream.openedOk() && juce::PNGImageFormat().writeImageToStream(picture, stream) ? 0 : 1;
}

} // namespace
} // namespace zephyra

int main(int count, char** arguments) {
    return zephyra::run({arguments + 1, arguments + count});
}
