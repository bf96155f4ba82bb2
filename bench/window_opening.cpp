// window_opening [TIMES]: opens and closes the window as the standalone program shows it, on the
// display in DISPLAY: milliseconds to the first paint, and what the process holds more at the end.
// Of plug-ins: tests/plugin/lv2_window/window_host.
#include "bench/median.h"
#include "screens/desktop/x11_display.h"
#include "screens/remembered_screen.h"
#include "tests/support/process_use.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
} // namespace juce

namespace zephyra {
namespace {

constexpr int kSettles = 20; // openings, until JUCE has all letters

void handleMessages() {
    while (juce::dispatchNextMessageOnSystemQueue(true)) {
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

/// Milliseconds to the first paint.
double open(PluginInstance& plugin) {
    const auto start = std::chrono::steady_clock::now();
    juce::DocumentWindow window("Zephyra", juce::Colours::black, 0);
    window.setUsingNativeTitleBar(true);
    const ZephyraScreen* screen = nullptr;
    {
        auto made = makeRememberedScreen(plugin);
        screen = made.get();
        window.setContentOwned(made.release(), true);
    }
    window.setTopLeftPosition(0, 0);
    window.setVisible(true);
    while (screen->paints() == 0) handleMessages();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    return took.count();
}

void run(int times) {
    PluginInstance plugin(PluginKind::instrument);
    plugin.prepare({.sampleRate = 48000.0, .mostFrames = 512});
    x11::dropOwnErrors();
    std::vector<double> all;
    ProcessUse before;
    for (int i = 0; i < kSettles + times; ++i) {
        if (i == kSettles) before = ProcessUse::now();
        all.push_back(open(plugin));
        handleMessages();
    }
    const ProcessUse grown = ProcessUse::now() - before;
    std::printf("the first one painted after %.0f ms, then %.0f, at most %.0f\n", all.front(),
                median(all), *std::ranges::max_element(all));
    std::printf(
        "%d openings: %ld files, %ld threads, %ld bytes of heap and %ld kB of memory more\n", times,
        grown.files, grown.threads, grown.heap, grown.resident / 1024);
}

} // namespace
} // namespace zephyra

int main(int count, char** arguments) {
    if (!std::getenv("DISPLAY")) return std::fputs("no DISPLAY\n", stderr), 2;
    const juce::ScopedJuceInitialiser_GUI gui;
    zephyra::run(count > 1 ? std::atoi(arguments[1]) : 50);
}
