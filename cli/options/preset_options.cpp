#include "cli/options/preset_options.h"

#include "cli/options/complaint.h"
#include "library/bank_file.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"

#include <CLI/App.hpp>

namespace zephyra {

namespace {

constexpr const char* kRightName =
    "a name that a file can have: at most 255 bytes, without / and control characters";

/// Two options of which neither goes alone.
Complaint checkPair(const char* first, const std::optional<std::string>& a, const char* second,
                    const std::optional<std::string>& b, const char* what) {
    if (a && !b) return Failure{std::string(first) + " needs " + second + " " + what};
    if (b && !a) return Failure{std::string(second) + " needs " + first + " BANK"};
    return {};
}

Complaint readPlayed(const TypedPresetOptions& typed, PresetOptions& options) {
    if (const auto wrong = checkPair("--bank", typed.bank, "--preset", typed.preset,
                                     "PRESET; '*' stands for all, see `zephyra banks BANK`"))
        return wrong;
    if (!typed.bank) return {};
    if (*typed.preset == kAllPresets && !typed.outDir)
        return Failure{"--preset '*' renders every preset of the bank; add --out-dir DIR"};
    options.played = {*typed.bank, *typed.preset};
    return {};
}

Complaint readSaved(const TypedPresetOptions& typed, PresetOptions& options) {
    if (const auto wrong = checkPair("--save-bank", typed.saveBank, "--save-preset",
                                     typed.savePreset, "PRESET, the new preset's name"))
        return wrong;
    if (!typed.saveBank) {
        if (typed.yes) return Failure{"--yes lets --save-preset replace a preset; leave it out"};
        return {};
    }
    SavedPreset saved{.bank = *typed.saveBank, .name = *typed.savePreset, .replaces = typed.yes};
    if (extensionOf(saved.bank) != kBankExtension && !saved.bank.empty())
        saved.bank.append(".").append(kBankExtension);
    if (!isFileName(saved.bank)) return wrongValue("--save-bank", *typed.saveBank, kRightName);
    if (!isFileName(saved.name)) return wrongValue("--save-preset", *typed.savePreset, kRightName);
    options.saved = saved;
    return {};
}

Complaint readOutDir(const TypedPresetOptions& typed, PresetOptions& options) {
    if (!typed.outDir) return {};
    if (typed.outDir->empty()) return wrongValue("--out-dir", "", "a folder's name");
    options.outDir = *typed.outDir;
    if (!options.saved) return {};
    return Failure{"--save-preset saves one preset; leave it out with --out-dir"};
}

} // namespace

void declarePresetOptions(CLI::App& command, TypedPresetOptions& typed) {
    const auto option = [&command](const char* name, auto& value, const char* placeholder,
                                   const char* help) {
        command.add_option(name, value, help)
            ->option_text(placeholder)
            ->expected(1)
            ->group("Presets");
    };
    option("--bank", typed.bank, "BANK", "A bank of presets, see `zephyra banks`");
    option("--preset", typed.preset, "PRESET",
           "Start from this preset of the bank: its name, or its number in the list. INPUT takes "
           "the place of its sample; other options come on top. One with LIVE on is an effect");
    option("--save-bank", typed.saveBank, "BANK", "Where to save a preset; made when missing");
    option("--save-preset", typed.savePreset, "NAME",
           "Save a preset of what the render starts from: sample, every control as --set and the "
           "like have left it, LFOs, learned controllers, take. What comes later, as --at, "
           "--automate and --midi, is no part of it");
    command.add_flag("--yes", typed.yes, "Let --save-preset replace a preset of that name")
        ->group("Presets");
    option("--out-dir", typed.outDir, "DIR",
           "Render every INPUT with every preset that is asked for ('*' for all of the bank), "
           "several at a time, into this folder, with a picture each and a contact sheet");
}

Result<PresetOptions> checkPresetOptions(const TypedPresetOptions& typed) {
    PresetOptions options;
    for (const auto step : {readPlayed, readSaved, readOutDir})
        if (auto wrong = step(typed, options)) return std::move(*wrong);
    return options;
}

} // namespace zephyra
