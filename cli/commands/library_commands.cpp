#include "cli/commands/library_commands.h"

#include <CLI/App.hpp>

namespace zephyra {

namespace {

constexpr const char* kExamples =
    "BANK and PRESET are names as `zephyra banks` lists them, in any case; a PRESET may also be\n"
    "its number in the list ('#3' when one is called 3) or its key, and '*' stands for all.\n\n"
    "Examples:\n"
    "  zephyra preset show \"Bird Machines\" \"Night Owl\"\n"
    "  zephyra preset copy \"Bird Machines\" '*' Mine\n"
    "  zephyra preset export Mine -o mine.zephyra\n"
    "  zephyra preset import mine.zephyra --as \"Night Birds\"\n"
    "  zephyra preset rename Mine \"Night Owl\" Dusk\n"
    "  zephyra preset move Mine Dusk 1\n"
    "  zephyra preset delete Mine 2 --yes\n";

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

LibraryCommands::LibraryCommands(CLI::App& app) {
    declareBanks(app);
    declarePreset(app);
    declareSamples(app);

    where_ = app.add_subcommand("where", "Print the folders in use");
    where_->add_flag("--json", whereJson_, "Print them as JSON");
    where_->footer("--shared-folder names the first, else $ZEPHYRA_SHARED_FOLDER, else "
                   "$XDG_DATA_HOME/zephyra;\n$ZEPHYRA_RESOURCE_FOLDER the second.\n");

    check_ = app.add_subcommand("check", "Say what is wrong with a bank's file, at which key");
    word(*check_, "FILE", checkRequest_.file, "A bank's file")->required();
    check_->add_flag("--repair", checkRequest_.repair,
                     "Write a mended copy beside it; the file stays as it is");
    check_->add_flag("--json", checkRequest_.json, "Print it as JSON");
    check_->footer("Example:\n  zephyra check mine.zephyra --repair\n");
}

void LibraryCommands::declareBanks(CLI::App& app) {
    banks_ = app.add_subcommand("banks", "List the banks of presets, or the presets of a bank");
    word(*banks_, "BANK", banksRequest_.bank, "A bank's name");
    option(*banks_, "--search", banksRequest_.search, "TEXT",
           "List the presets and banks whose names have TEXT in them");
    banks_->add_flag("--json", banksRequest_.json, "Print them as JSON");
    banks_->footer("Examples:\n  zephyra banks\n  zephyra banks \"Bird Machines\"\n"
                   "  zephyra banks --search owl\n");
}

void LibraryCommands::declarePreset(CLI::App& app) {
    CLI::App* const preset = app.add_subcommand("preset", "Show, change, export, import presets");
    preset->require_subcommand(1);
    preset->footer(kExamples);
    show_ = preset->add_subcommand("show", "Print every value of a preset");
    word(*show_, "BANK", showRequest_.bank, "A bank's name")->required();
    word(*show_, "PRESET", showRequest_.preset, "A preset's name or number")->required();
    show_->add_flag("--json", showRequest_.json, "Print it as JSON");
    declarePresetFiles(*preset);
    declarePresetChanges(*preset);
}

void LibraryCommands::declarePresetFiles(CLI::App& preset) {
    export_ = preset.add_subcommand("export", "Write a bank, or a preset of it, with its sounds");
    word(*export_, "BANK", exportRequest_.bank, "A bank's name")->required();
    word(*export_, "PRESET", exportRequest_.preset, "One preset instead of all");
    option(*export_, "-o,--output", exportRequest_.output, "FILE.zephyra",
           "Where to; else named after the preset or the bank, in the current folder");
    export_->add_flag("--yes", exportRequest_.yes, "Replace a file of that name");

    importPresets_ = preset.add_subcommand("import", "Take over banks from files");
    word(*importPresets_, "FILE", importRequest_.files, "Banks' files")->required();
    option(*importPresets_, "--bank", importRequest_.bank, "BANK",
           "Add the presets to this bank, which is made when missing");
    option(*importPresets_, "--as", importRequest_.name, "NAME", "Call the new bank so");
    importPresets_->add_flag("--yes", importRequest_.yes, "Replace a bank of that name");
}

void LibraryCommands::declarePresetChanges(CLI::App& preset) {
    rename_ = preset.add_subcommand("rename", "Rename a bank, or a preset of it");
    rename_->add_option("BANK [PRESET] NEW", renameNames_, "The bank or preset, and its new name")
        ->required()
        ->expected(2, 3)
        ->option_text(" ");

    delete_ = preset.add_subcommand("delete", "Delete a bank, or a preset of it");
    word(*delete_, "BANK", deleteRequest_.bank, "A bank's name")->required();
    word(*delete_, "PRESET", deleteRequest_.preset, "A preset instead of the bank");
    delete_->add_flag("--yes", deleteRequest_.yes, kYes);

    copy_ = preset.add_subcommand("copy", "Copy a preset into a bank, which is made when missing");
    word(*copy_, "BANK", copyRequest_.bank, "A bank's name")->required();
    word(*copy_, "PRESET", copyRequest_.preset, "A preset's name or number, '*' for all")
        ->required();
    word(*copy_, "TO-BANK", copyRequest_.target, "The bank that gets it")->required();

    move_ = preset.add_subcommand("move", "Move a preset within its bank, or to another");
    word(*move_, "BANK", moveRequest_.bank, "A bank's name")->required();
    word(*move_, "PRESET", moveRequest_.preset, "A preset's name or number")->required();
    word(*move_, "POSITION", moveRequest_.position, "Its new number in the list");
    option(*move_, "--to", moveRequest_.target, "BANK", "The bank that gets it instead");
}

void LibraryCommands::declareSamples(CLI::App& app) {
    samples_ = app.add_subcommand("samples", "List the samples, or import sound files");
    samples_->require_subcommand(0, 1);
    samples_->add_flag("--json", samplesJson_, "Print them as JSON");
    import_ = samples_->add_subcommand("import", "Copy sound files into the shared folder");
    word(*import_, "FILE", sampleRequest_.files, "Sound files")->required();
    option(*import_, "--as", sampleRequest_.name, "NAME", "Call the copy so");
    import_->add_flag("--yes", sampleRequest_.yes, "Replace a sample of that name");
    for (CLI::App* const command : {samples_, import_})
        command->footer("Examples:\n  zephyra samples\n  zephyra samples import bird.wav\n"
                        "  zephyra samples import take3.wav --as bird --yes\n");
}

ExitCode LibraryCommands::run() const {
    if (banks_->parsed()) return runBanks(banksRequest_);
    if (import_->parsed()) return runSampleImport(sampleRequest_);
    if (samples_->parsed()) return runSamples(samplesJson_ ? SamplesForm::json : SamplesForm::text);
    if (where_->parsed()) return runWhere(whereJson_ ? WhereForm::json : WhereForm::text);
    if (check_->parsed()) return runCheck(checkRequest_);
    return runPreset();
}

ExitCode LibraryCommands::runPreset() const {
    if (show_->parsed()) return runPresetShow(showRequest_);
    if (export_->parsed()) return runPresetExport(exportRequest_);
    if (importPresets_->parsed()) return runPresetImport(importRequest_);
    if (rename_->parsed()) return rename();
    if (delete_->parsed()) return runPresetDelete(deleteRequest_);
    if (copy_->parsed()) return runPresetCopy(copyRequest_);
    return runPresetMove(moveRequest_);
}

ExitCode LibraryCommands::rename() const {
    RenameRequest request{renameNames_.front(), {}, renameNames_.back()};
    if (renameNames_.size() == 3) request.preset = renameNames_[1];
    return runPresetRename(request);
}

} // namespace zephyra
