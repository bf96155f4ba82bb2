#include "cli/program_options.h"

#include "cli/terminal/usage_text.h"

#include <memory>

namespace zephyra {

namespace {

constexpr const char* kExamples =
    "`zephyra bird.wav` is `zephyra render bird.wav`, and `zephyra help render` tells\n"
    "all about it; `zephyra help banks` tells about another command, `zephyra help\n"
    "pitch` about a control or an option.\n\n"
    "Examples:\n"
    "  zephyra bird.wav\n"
    "  zephyra bird.wav -o cloud.wav --seconds 30 --set Density=120 --set Pitch=-5\n"
    "  zephyra bird.wav -o haze.wav --live --picture haze.png\n"
    "  zephyra banks --search owl\n"
    "  zephyra --preset \"Night Owl\" --seconds 20 -o owl.wav\n";

} // namespace

ProgramOptions::ProgramOptions() {
    app.formatter(std::make_shared<HelpText>());
    app.set_help_flag("-h,--help", "Print this help");
    app.name("zephyra");
    app.set_version_flag("--version", "zephyra " ZEPHYRA_VERSION, "Print the version");
    app.footer(kExamples);
    app.require_subcommand(1);
    commands.emplace(app);
    offerSharedFolder(app);
    app.get_subcommand("render")->get_option("--shared-folder")->group("Presets and states");
}

/// Before and after the command's name alike.
void ProgramOptions::offerSharedFolder(CLI::App& command) {
    command.add_option("--shared-folder", sharedFolder, "Keep banks and samples there")
        ->option_text("DIR")
        ->expected(1);
    for (CLI::App* inner : command.get_subcommands([](const CLI::App*) { return true; }))
        offerSharedFolder(*inner);
}

} // namespace zephyra
