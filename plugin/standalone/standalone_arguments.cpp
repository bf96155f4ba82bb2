#include "plugin/standalone/standalone_arguments.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace zephyra {

namespace {

constexpr const char* kWhatItDoes =
    "Opens a window that plays Zephyra through JACK or ALSA, with notes from MIDI. It begins where "
    "it ended last, with the FILEs opened on top: a sound file is played from then on, a bank "
    "(.zephyra) joins yours and its first preset is chosen.";

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

} // namespace

std::variant<StandaloneArguments, StandaloneAnswer>
parseStandaloneArguments(int count, const char* const* words) {
    StandaloneArguments given;
    std::vector<std::string> files;
    CLI::App app{kWhatItDoes, kStandaloneProgram};
    app.set_help_flag("-h,--help", "Print this help");
    app.set_version_flag("--version", std::string(kStandaloneProgram) + " " + ZEPHYRA_VERSION,
                         "Print the version");
    app.add_flag("--fresh", given.fresh, "Begin anew; what was there is kept beside the session");
    app.add_flag("--play", given.plays, "Play at once");
    app.add_flag("--headless", given.headless, "Play without a window until SIGTERM or Ctrl-C");
    app.add_flag("--check", given.check, "Say whether there are a display and sound, and end");
    app.add_option("--audio", given.audio, "Sound through jack or alsa, whatever was chosen last")
        ->option_text("SYSTEM")
        ->check(CLI::IsMember({"jack", "alsa"}));
    app.add_option("FILE", files, "Sound files and banks to open")->option_text("...");
    try {
        app.parse(count, words);
    } catch (const CLI::CallForHelp&) {
        return StandaloneAnswer{app.help(), 0};
    } catch (const CLI::CallForVersion& version) {
        return StandaloneAnswer{std::string(version.what()) + "\n", 0};
    } catch (const CLI::ParseError& wrong) {
        return StandaloneAnswer{
            firstLine(wrong.what()) + "; see " + kStandaloneProgram + " --help\n", 2};
    }
    std::ranges::copy(files, std::back_inserter(given.files));
    return given;
}

} // namespace zephyra
