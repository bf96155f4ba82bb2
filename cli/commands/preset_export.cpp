#include "cli/commands/commands.h"

#include "cli/terminal/interrupt.h"
#include "library/bank_edits.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "presets/picked_presets.h"
#include "presets/record_places.h"
#include "presets/sound_embedding.h"

#include <filesystem>
#include <system_error>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// Called as the bank is, unless other computers might not take the name.
std::string portableFile(const std::string& bank) {
    const std::string file = bankFileName(bank);
    return isFileName(file) ? file : bank;
}

/// Where the bank goes. Fails for what is no bank's name.
Result<fs::path> targetOf(const PresetExportRequest& request, const PickedPresets& picked) {
    if (request.output) {
        const fs::path path = *request.output;
        if (extensionOf(path.filename().string()) == kBankExtension) return path;
        return Failure{"-o takes a file that ends in .zephyra, not " + inQuotes(*request.output)};
    }
    if (!request.preset || picked.keys.size() != 1) return fs::path(portableFile(picked.bank));
    const std::string name = snapshotTag(*picked.content, picked.keys.front()).value_or(kUnnamed);
    const auto bank = newBankName(typedFromBytes(name));
    if (bank) return fs::path(bankFileName(bank.value()));
    return Failure{"no file can be called " + inQuotes(name) + "; name one with -o"};
}

/// Its banks are the store's, and keep their sounds as files.
bool isInside(const fs::path& target, const fs::path& folder) {
    std::error_code ignored;
    const fs::path parent = fs::absolute(target, ignored).parent_path();
    return fs::equivalent(parent, folder, ignored);
}

Bank bankToGo(const PickedPresets& picked, const Folders& folders, SoundEmbedding& sounds) {
    Bank bank;
    for (const std::string& key : picked.keys) {
        if (interrupted()) break;
        PropertyDictionary record = *recordOf(*picked.content, key);
        sounds.embed(record, snapshotTag(record).value_or(kUnnamed));
        forgetPlaces(record, folders);
        bank.insert_or_assign(key, std::move(record));
    }
    return bank;
}

Result<void> write(const fs::path& target, const Bank& bank, bool replaces) {
    if (replaces) return writeBank(target, bank);
    const auto created = createBank(target, bank);
    if (!created) return Failure{created.message()};
    if (created.value()) return {};
    return Failure{target.string() +
                   " is there already; choose another name with -o, or add --yes to replace it"};
}

} // namespace

ExitCode runPresetExport(const CommandContext& context, const PresetExportRequest& request) {
    const Folders& folders = context.folders;
    BankFolder banks(folders);
    const auto picked = pickPresets(banks, request.bank, request.preset.value_or("*"));
    if (!picked) return endWith(ExitCode::failure, picked.message());
    const auto target = targetOf(request, picked.value());
    if (!target) return endWith(ExitCode::wrongUsage, target.message());
    if (isInside(target.value(), folders.shared))
        return endWith(ExitCode::wrongUsage, target.value().string() +
                                                 " would stand among the banks in use; choose "
                                                 "another folder with -o, or `preset copy`");
    SoundEmbedding sounds(folders, goesOn);
    const Bank bank = bankToGo(picked.value(), folders, sounds);
    if (interrupted())
        return endWith(ExitCode::failure,
                       "interrupted; " + target.value().string() + " was not written");
    if (const auto written = write(target.value(), bank, request.yes); !written)
        return endWith(ExitCode::failure, written.message());

    std::string text = target.value().string() + " holds " + counted(bank.size(), "preset");
    // The bank is of use for all that it holds; that it lacks something is a failure all the same.
    ExitCode code = printOut(onOneLine(text) + "\n");
    for (const std::string& note : sounds.notes()) code = endWith(ExitCode::failure, note);
    return code;
}

} // namespace zephyra
