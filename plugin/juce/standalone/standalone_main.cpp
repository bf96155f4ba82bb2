// The standalone program: its command line, its signals, and JUCE's message loop around it.
#include "plugin/juce/standalone/display.h"
#include "plugin/juce/standalone/standalone_program.h"
#include "plugin/standalone/standalone_arguments.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <variant>

namespace zephyra {

namespace {

volatile std::sig_atomic_t endAsked = 0;

/// The second one ends the program at once.
void watchSignals() {
    struct sigaction action {};
    action.sa_handler = [](int) { endAsked = 1; };
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int number : std::array{SIGINT, SIGTERM, SIGHUP})
        ::sigaction(number, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // of a server that went away
}

class StandaloneApplication final : public juce::JUCEApplicationBase, juce::Timer {
public:
    explicit StandaloneApplication(StandaloneArguments arguments)
        : arguments_(std::move(arguments)) {}

    const juce::String getApplicationName() override { return "Zephyra"; }
    const juce::String getApplicationVersion() override { return ZEPHYRA_VERSION; }
    bool moreThanOneInstanceAllowed() override { return true; }
    void initialise(const juce::String&) override {
        watchSignals(); // in the place of JUCE's
        program_ = std::make_unique<StandaloneProgram>(arguments_, [] { quit(); });
        startTimerHz(10);
    }
    void shutdown() override { program_.reset(); }
    void systemRequestedQuit() override { quit(); }
    void anotherInstanceStarted(const juce::String&) override {}
    void suspended() override {}
    void resumed() override {}
    void unhandledException(const std::exception*, const juce::String&, int) override {}

private:
    void timerCallback() override {
        if (endAsked) quit();
    }

    const StandaloneArguments arguments_;
    std::unique_ptr<StandaloneProgram> program_;
};

StandaloneArguments started;

juce::JUCEApplicationBase* makeApplication() {
    return new StandaloneApplication(started);
}

int answer(const std::string& line) {
    std::fprintf(stderr, "%s\n", line.c_str());
    return EXIT_FAILURE;
}

/// Opens the device for a moment, as the program would.
int checkSound() {
    const juce::ScopedJuceInitialiser_GUI juce;
    PluginInstance instance(PluginKind::standalone);
    StandaloneAudio audio(instance, "", started.audio);
    audio.look();
    return audio.isRunning() ? EXIT_SUCCESS : answer("There is no sound card");
}

int run(int count, const char** words) {
    auto parsed = parseStandaloneArguments(count, words);
    if (const auto* const answer = std::get_if<StandaloneAnswer>(&parsed)) {
        std::fputs(answer->text.c_str(), answer->exitCode == 0 ? stdout : stderr);
        return answer->exitCode;
    }
    started = std::get<StandaloneArguments>(std::move(parsed));
    if (!started.headless && !displayIsThere()) {
        const std::string name = displayName();
        const std::string line = "here is no display" + (name.empty() ? "" : " " + name);
        if (started.check) return answer("T" + line);
        return answer(std::string(kStandaloneProgram) + ": t" + line +
                      "; --headless plays without one");
    }
    if (started.check) return checkSound();
    juce::JUCEApplicationBase::createInstance = &makeApplication;
    return juce::JUCEApplicationBase::main(count, words);
}

} // namespace

} // namespace zephyra

int main(int count, char** words) {
    return zephyra::run(count, const_cast<const char**>(words));
}
