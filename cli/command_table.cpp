#include "cli/command_table.h"

#include "audiounit/control_text.h"
#include "cli/terminal/usage_text.h"
#include "platform/text/text_numbers.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <string>

namespace zephyra {

namespace {

constexpr const char* kPresetExamples =
    "BANK and PRESET are names as `zephyra banks` lists them, in any case; a PRESET\n"
    "may also be its number in the list ('#3' when one is called 3) or its key, and\n"
    "'*' stands for all.\n\n"
    "Examples:\n"
    "  zephyra preset show \"Bird Machines\" \"Night Owl\"\n"
    "  zephyra preset copy \"Bird Machines\" '*' Mine\n"
    "  zephyra preset export Mine -o mine.zephyra\n"
    "  zephyra preset import mine.zephyra --as \"Night Birds\"\n"
    "  zephyra preset rename Mine \"Night Owl\" Dusk\n"
    "  zephyra preset move Mine Dusk 1\n"
    "  zephyra preset delete Mine 2 --yes\n";

constexpr std::array kUsualOptions = {"--output", "--seconds", "--set",      "--at",
                                      "--bank",   "--preset",  "--envelope", "--picture",
                                      "--live",   "--seed",    "--help"};

constexpr std::array kSections = {
    "Sound",       "Live input and effects", "Tempo and host", "Motion",
    "Output file", "Presets and states",     "Many renders",   "Printing"};

constexpr const char* kRenderExamples =
    "Times are seconds, or as in 500ms, 1:30 and 8b (beats of --tempo); values may\n"
    "have units: 1.5kHz, 300ms, +7st, 50%, -12 dB. -- ends the options, before names\n"
    "that begin with -. `zephyra help density` tells what a control does, and\n"
    "`zephyra help motion` prints one section.\n\n"
    "Examples:\n"
    "  zephyra bird.wav -o cloud.wav --seconds 30 --set Density=120 --set Pitch=-5\n"
    "  zephyra bird.wav --seconds 10 --at 4:Pitch=-12 --at \"8:Echo Switch=on\"\n"
    "  zephyra bird.wav --seconds 10 --seed 7 --picture cloud.png --envelope Gaussian\n"
    "  zephyra bird.wav -o haze.caf --live --set Length=80 --set Jittering=60\n"
    "  zephyra bird.wav --tempo 96 --seconds 16b --echo-sync 1/8,1/8D --fade-out 2\n"
    "  zephyra bird.wav --lfo Density:hz=0.1 --lfo Pan:shape=v,hz=0.5,min=20%,max=80%\n"
    "  zephyra --preset \"Night Owl\" --seconds 20 -o owl.wav\n"
    "  zephyra bird.wav --bank \"Pulse Garden\" --preset '*' --out-dir garden\n";

/// The default without its unit, which the range tells.
std::string plainValueText(const ControlRange& range) {
    return range.kind == ControlKind::continuous || range.kind == ControlKind::whole
               ? formatNumber(range.defaultValue)
               : valueText(range, range.defaultValue);
}

/// The controls with their ranges and defaults, as a table.
std::string controlTable() {
    std::string table =
        "Controls for --set and --at (case, spaces and punctuation do not matter):\n";
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        table += "  " + padded(range.name, 28) + padded(rangeText(range), 24) +
                 plainValueText(range) + "\n";
    }
    return table;
}

constexpr const char* kYesToCopy = "Change your copy of a factory bank";
constexpr const char* kYes = "Do it, though something is lost";

/// A word of the command line without an option's name.
template <typename Value>
CLI::Option* word(CLI::App& command, const char* name, Value& value, const char* help) {
    return command.add_option(name, value, help)->option_text(" ");
}

template <typename Value>
void option(CLI::App& command, const char* name, Value& value, const char* placeholder,
            const char* help) {
    command.add_option(name, value, help)->option_text(placeholder)->expected(1);
}

} // namespace

CommandTable::CommandTable(CLI::App& app) {
    declareRender(app);
    declareFacts(app);
    declareBanks(app);
    declarePreset(app);
    declareSamples(app);
    declareFolders(app);
    for (CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; }))
        command->group("Commands");
}

void CommandTable::declareRender(CLI::App& app) {
    CLI::App& render =
        *app.add_subcommand("render", "Render a sound file to a granular stereo file");
    const auto options = std::make_shared<RenderOptions>();
    const auto reader = std::make_shared<OptionReader>(render);
    declareRenderOptions(render, *reader, *options);
    render.formatter(std::make_shared<SectionHelp>(
        SectionHelp::Plan{{kUsualOptions.begin(), kUsualOptions.end()},
                          controlTable(),
                          {kSections.begin(), kSections.end()}}));
    render.footer(kRenderExamples);
    rows_.push_back(
        {&render,
         [options, &app, &render](const CommandContext& context) {
             options->typed = {context.program, typedOptions(app), typedOptions(render)};
             return runRender(context, *options);
         },
         [reader] { return reader->complaint(); }});
}

/// What can be known without a render.
void CommandTable::declareFacts(CLI::App& app) {
    CLI::App& info = *app.add_subcommand("info", "Print a sound file's format, length, loudness");
    auto& infoRequest = add(info, runInfo);
    word(info, "FILE", infoRequest.file, "A sound file, - for standard input")->required();
    info.add_flag("--json", infoRequest.json, "Print it as JSON");
    info.footer("Example:\n  zephyra info bird.wav\n");

    CLI::App& envelopes = *app.add_subcommand("envelopes", "Print the menu of grain envelopes");
    envelopes.add_option("--picture", add(envelopes, runEnvelopes).picture, "Draw them")
        ->option_text("OUT.png");
    envelopes.footer("Example:\n  zephyra envelopes --picture envelopes.png\n");

    CLI::App& parameters =
        *app.add_subcommand("parameters", "Print the parameters that a host sees");
    parameters.add_flag("--json", add(parameters, runParameters).json, "Print them as JSON");
    parameters.footer(
        "Their names and identifiers stand in a file for `zephyra render --automate`.\n");
}

void CommandTable::declareBanks(CLI::App& app) {
    CLI::App& banks = *app.add_subcommand("banks", "List the banks, or the presets of a bank");
    auto& banksRequest = add(banks, runBanks);
    word(banks, "BANK", banksRequest.bank, "A bank's name");
    option(banks, "--search", banksRequest.search, "TEXT",
           "List the presets and banks whose names have TEXT in them");
    banks.add_flag("--json", banksRequest.json, "Print them as JSON");
    banks.footer("Examples:\n  zephyra banks\n  zephyra banks \"Bird Machines\"\n"
                 "  zephyra banks --search owl\n");
}

void CommandTable::declarePreset(CLI::App& app) {
    CLI::App* const preset = app.add_subcommand("preset", "Show, change, export, import presets");
    preset->require_subcommand(1);
    preset->footer(kPresetExamples);
    CLI::App& show = *preset->add_subcommand("show", "Print every value of a preset");
    auto& showRequest = add(show, runPresetShow);
    word(show, "BANK", showRequest.bank, "A bank's name")->required();
    word(show, "PRESET", showRequest.preset, "A preset's name or number")->required();
    show.add_flag("--json", showRequest.json, "Print it as JSON");
    declarePresetFiles(*preset);
    declarePresetChanges(*preset);
}

void CommandTable::declarePresetFiles(CLI::App& preset) {
    CLI::App& exporting =
        *preset.add_subcommand("export", "Write a bank, or a preset of it, with its sounds");
    auto& exportRequest = add(exporting, runPresetExport);
    word(exporting, "BANK", exportRequest.bank, "A bank's name")->required();
    word(exporting, "PRESET", exportRequest.preset, "One preset instead of all");
    option(exporting, "-o,--output", exportRequest.output, "FILE.zephyra",
           "Where to; else named after the preset or the bank, in the current folder");
    exporting.add_flag("--yes", exportRequest.yes, "Replace a file of that name");

    CLI::App& importing = *preset.add_subcommand("import", "Take over banks from files");
    auto& importRequest = add(importing, runPresetImport);
    word(importing, "FILE", importRequest.files, "Banks' files")->required();
    option(importing, "--bank", importRequest.bank, "BANK",
           "Add the presets to this bank, which is made when missing");
    option(importing, "--as", importRequest.name, "NAME", "Call the new bank so");
    importing.add_flag("--yes", importRequest.yes,
                       "Replace a bank of that name, or change your copy of a factory bank");
}

void CommandTable::declarePresetChanges(CLI::App& preset) {
    CLI::App& renaming = *preset.add_subcommand("rename", "Rename a bank, or a preset of it");
    auto& renameRequest = add(renaming, runPresetRename);
    const auto rename = [&renameRequest](const std::vector<std::string>& names) {
        renameRequest.bank = names.front();
        renameRequest.name = names.back();
        if (names.size() == 3) renameRequest.preset = names[1];
    };
    renaming
        .add_option_function<std::vector<std::string>>("BANK [PRESET] NEW", rename,
                                                       "The bank or preset, and its new name")
        ->required()
        ->expected(2, 3)
        ->option_text(" ");
    renaming.add_flag("--yes", renameRequest.yes, "Give a bank the name of a factory bank");

    CLI::App& deleting = *preset.add_subcommand("delete", "Delete a bank, or a preset of it");
    auto& deleteRequest = add(deleting, runPresetDelete);
    word(deleting, "BANK", deleteRequest.bank, "A bank's name")->required();
    word(deleting, "PRESET", deleteRequest.preset, "A preset instead of the bank");
    deleting.add_flag("--yes", deleteRequest.yes, kYes);

    CLI::App& copying =
        *preset.add_subcommand("copy", "Copy a preset into a bank, an old or a new one");
    auto& copyRequest = add(copying, runPresetCopy);
    word(copying, "BANK", copyRequest.bank, "A bank's name")->required();
    word(copying, "PRESET", copyRequest.preset, "A preset's name or number, '*' for all")
        ->required();
    word(copying, "TO-BANK", copyRequest.target, "The bank that gets it")->required();

    copying.add_flag("--yes", copyRequest.yes, kYesToCopy);

    CLI::App& moving =
        *preset.add_subcommand("move", "Move a preset within its bank, or to another");
    auto& moveRequest = add(moving, runPresetMove);
    word(moving, "BANK", moveRequest.bank, "A bank's name")->required();
    word(moving, "PRESET", moveRequest.preset, "A preset's name or number")->required();
    word(moving, "POSITION", moveRequest.position, "Its new number in the list");
    option(moving, "--to", moveRequest.target, "BANK", "The bank that gets it instead");
    moving.add_flag("--yes", moveRequest.yes, kYesToCopy);
}

void CommandTable::declareSamples(CLI::App& app) {
    CLI::App& samples = *app.add_subcommand("samples", "List the samples, or import sound files");
    samples.require_subcommand(0, 1);
    samples.add_flag("--json", add(samples, runSamples).json, "Print them as JSON");
    CLI::App& importing =
        *samples.add_subcommand("import", "Copy sound files into the shared folder");
    auto& importRequest = add(importing, runSampleImport);
    word(importing, "FILE", importRequest.files, "Sound files")->required();
    option(importing, "--as", importRequest.name, "NAME", "Call the copy so");
    importing.add_flag("--yes", importRequest.yes, "Replace a sample of that name");
    for (CLI::App* const command : {&samples, &importing})
        command->footer("Examples:\n  zephyra samples\n  zephyra samples import bird.wav\n"
                        "  zephyra samples import take3.wav --as bird --yes\n");
}

void CommandTable::declareFolders(CLI::App& app) {
    CLI::App& where = *app.add_subcommand("where", "Print the folders in use");
    where.add_flag("--json", add(where, runWhere).json, "Print them as JSON");
    where.footer("--shared-folder names the first, else $ZEPHYRA_SHARED_FOLDER, else\n"
                 "$XDG_DATA_HOME/zephyra; $ZEPHYRA_RESOURCE_FOLDER the second.\n");

    CLI::App& check = *app.add_subcommand("check", "Say what is wrong with a bank's file");
    auto& checkRequest = add(check, runCheck);
    word(check, "FILE", checkRequest.file, "A bank's file, or the name of a bank")->required();
    check.add_flag("--repair", checkRequest.repair,
                   "Write a mended copy beside it; the file stays as it is");
    check.add_flag("--json", checkRequest.json, "Print it as JSON");
    check.footer("Example:\n  zephyra check mine.zephyra --repair\n");
}

const CommandTable::Row* CommandTable::named() const {
    const auto row = std::ranges::find_if(rows_, [](const Row& one) {
        return one.named->parsed() && one.named->get_subcommands().empty();
    });
    return row == rows_.end() ? nullptr : &*row;
}

Complaint CommandTable::complaint() const {
    const Row* const row = named();
    return row && row->complaint ? row->complaint() : Complaint();
}

ExitCode CommandTable::run(const CommandContext& context) const {
    const Row* const row = named();
    return row ? row->command(context) : ExitCode::wrongUsage; // the parser wants one to be named
}

} // namespace zephyra
