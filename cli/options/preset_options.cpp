#include "cli/options/render_options.h"
#include "library/bank_file.h"
#include "library/bank_name.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "presets/preset_names.h"

namespace zephyra {

namespace {

constexpr const char* kRightName =
    "a name that a file can have: at most 255 bytes, without / and control characters";

Complaint checkFileName(const std::string& name, const char* option, const std::string& typed) {
    if (isFileName(name)) return {};
    return wrongValue(option, typed, kRightName);
}

template <typename Value>
Value& made(std::optional<Value>& value) {
    return value ? *value : value.emplace();
}

Complaint checkPlayed(const OptionReader& reader, const RenderOptions& options) {
    if (!options.played) return {};
    if (!reader.isGiven("--preset"))
        return Failure{
            "--bank needs --preset PRESET; '*' stands for all, see `zephyra banks BANK`"};
    if (options.played->preset != kAllPresets) return {};
    if (!options.played->bank) return Failure{"--preset '*' needs --bank BANK"};
    if (options.outDir) return {};
    return Failure{"--preset '*' renders every preset of the bank; add --out-dir DIR"};
}

Complaint checkSaved(const OptionReader& reader, const RenderOptions& options) {
    if (!options.request.savedPreset) return {};
    const bool hasBank = reader.isGiven("--save-bank"), hasName = reader.isGiven("--save-preset");
    if (hasBank && !hasName)
        return Failure{"--save-bank needs --save-preset PRESET, the new preset's name"};
    if (hasName && !hasBank) return Failure{"--save-preset needs --save-bank BANK"};
    if (!hasBank) return Failure{"--yes lets --save-preset replace a preset; leave it out"};
    if (!options.outDir) return {};
    return Failure{"--save-preset saves one preset; leave it out with --out-dir"};
}

} // namespace

void declarePresetOptions(OptionReader& reader, RenderOptions& options) {
    reader.beginGroup("Presets and states");
    std::optional<SavedPreset>& saved = options.request.savedPreset;
    reader.add("--bank", "BANK", "A bank of presets, see `zephyra banks`",
               [&options](const char*, const std::string& text) -> Complaint {
                   made(options.played).bank = text;
                   return {};
               });
    reader.add(
        "--preset", "PRESET",
        "Start from this preset: its name, or its number in the bank's list. A name that only one "
        "bank has needs no --bank. INPUT takes the place of its sample; other options come on top. "
        "One with LIVE on is an effect",
        [&options](const char*, const std::string& text) -> Complaint {
            made(options.played).preset = text;
            return {};
        });
    reader.add("--save-bank", "BANK", "Where to save a preset; made when missing",
               [&saved](const char* option, const std::string& text) -> Complaint {
                   std::string& name = made(saved).bank = text;
                   if (extensionOf(name) != kBankExtension && !name.empty())
                       name.append(".").append(kBankExtension);
                   if (isBankName(name)) return {};
                   return wrongValue(option, text, kRightName);
               });
    reader.add(
        "--save-preset", "NAME",
        "Save a preset of what the render starts from: sample, every control as --set and the "
        "like have left it, LFOs, learned controllers, take. What comes later, as --at, "
        "--automate and --midi, is no part of it",
        [&saved](const char* option, const std::string& text) {
            return checkFileName(made(saved).name = text, option, text);
        });
    reader.addFlag(
        "--yes",
        "Let --save-preset replace a preset of that name, or change your copy of a factory bank",
        [&saved] { made(saved).replaces = true; });
    HostRequest& host = options.request.host;
    reader.add("--state", "FILE", "Start from what --save-state saved", pathInto(host.state));
    reader.add("--save-state", "FILE",
               "Save how all stands at the end: sound, controls, what moves them",
               pathInto(host.saveState));
    reader.beginGroup("Many renders");
    reader.add("--out-dir", "DIR",
               "Render every INPUT with every preset that is asked for ('*' for all of the bank), "
               "several at a time, into this folder, with a picture each and a contact sheet",
               [&options](const char* option, const std::string& text) -> Complaint {
                   options.outDir = text;
                   if (!text.empty()) return {};
                   return wrongValue(option, text, "a folder's name");
               });
    reader.addFlag(
        "--dry-run",
        "Render nothing, and print each render as a command line, for `sh`, `parallel` or the jobs "
        "of a cluster. Run where this was, they give the same sounds and pictures",
        options.dryRun);
    reader.addCheck([&reader, &options] { return checkPlayed(reader, options); });
    reader.addCheck([&reader, &options] { return checkSaved(reader, options); });
}

} // namespace zephyra
