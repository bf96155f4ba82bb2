#include "cli/commands/commands.h"

#include "cli/commands/import_run.h"
#include "cli/terminal/command_clock.h"
#include "cli/terminal/interrupt.h"
#include "library/bank_edits.h"
#include "platform/clock.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "presets/factory_banks.h"
#include "presets/picked_presets.h"
#include "presets/preset_adding.h"

#include <filesystem>
#include <memory>

namespace zephyra {

namespace {

struct ReadFile {
    std::string name; ///< of the bank that it is to be; empty when another gets its presets
    BankCache::Content content;
};

/// What the bank in file is to be called.
Result<std::string> ownName(const PresetImportRequest& request, const std::filesystem::path& file) {
    return newBankName(request.name.value_or(typedFromBytes(file.filename().string())));
}

Result<ReadFile> readFile(const PresetImportRequest& request, const std::filesystem::path& file) {
    const std::string fileName = file.filename().string();
    if (extensionOf(fileName) != kBankExtension)
        return Failure{shownFile(file) +
                       " is no bank of presets; name a file that ends in .zephyra"};
    auto read = readBank(file);
    if (!read) return Failure{read.message()};
    auto content = std::make_shared<const Bank>(std::move(read.value().bank));
    if (request.bank) return ReadFile{{}, std::move(content)};
    auto name = ownName(request, file);
    if (name) return ReadFile{std::move(name.value()), std::move(content)};
    return Failure{name.message() + (request.name ? "" : "; choose another name with --as")};
}

Failure nameIsTaken(const std::string& name) {
    return {"a bank " + quotedBank(name) +
            " is there already; choose another name with --as, or add --yes to replace it"};
}

Result<std::string> importFile(BankFolder& banks, const PresetImportRequest& request,
                               const ReadFile& file) {
    if (!request.bank) {
        const auto added = addWholeBank(banks, file.name, file.content,
                                        request.yes ? IfTaken::replace : IfTaken::refuse);
        if (!added) return Failure{added.message()};
        if (!added.value()) return nameIsTaken(file.name);
        return onOneLine(quotedBank(file.name)) + " is there, with " +
               counted(file.content->size(), "preset") + "\n";
    }
    const auto target = findOrNameBank(banks, *request.bank);
    if (!target) return target;
    std::vector<PropertyDictionary> records;
    for (const std::string& key : sortedKeys(*file.content))
        records.push_back(*recordOf(*file.content, key));
    const auto added =
        addPresets(banks, target.value(), records, currentDateAndTime(commandClock()));
    if (!added) return Failure{added.message()};
    return addedText(target.value(), added.value());
}

Result<void> checkRequest(const PresetImportRequest& request) {
    if (request.name && request.bank)
        return Failure{"--as names a new bank, --bank one that gets the presets; leave one out"};
    if (request.name && request.files.size() > 1)
        return Failure{"--as names one bank; import one file with it"};
    return {};
}

/// Whether none of the factory's banks becomes the user's without a yes.
Result<void> checkFactoryBanks(BankFolder& banks, const PresetImportRequest& request) {
    if (request.yes) return {};
    if (request.bank) {
        const auto target = findOrNameBank(banks, *request.bank);
        return target ? checkIsNotTheFactorys(banks, target.value(), kCopyOfFactorys)
                      : Result<void>(); // what it is instead is told where it is changed
    }
    for (const std::string& file : request.files) {
        const auto name = ownName(request, file);
        if (!name) continue; // told where the file is read
        if (auto free = checkIsNotTheFactorys(
                banks, name.value(),
                "choose another name with --as, or add --yes to call yours so");
            !free)
            return free;
    }
    return {};
}

} // namespace

ExitCode runPresetImport(const CommandContext& context, const PresetImportRequest& request) {
    if (const auto fits = checkRequest(request); !fits)
        return endWith(ExitCode::wrongUsage, fits.message());
    const Folders& folders = context.folders;
    BankFolder banks(folders);
    banks.setLockWait({.goesOn = goesOn});
    if (const auto free = checkFactoryBanks(banks, request); !free)
        return endWith(ExitCode::wrongUsage, free.message());
    bool isReady = false; // a folder is made for what can be read alone
    return importAll(request.files, [&](const std::string& name, const auto&) {
        const auto file = readFile(request, name);
        if (!file) return Result<std::string>(Failure{file.message()});
        if (const auto ready = isReady ? Result<void>() : readySharedFolder(folders); !ready)
            return Result<std::string>(Failure{ready.message()});
        isReady = true;
        return importFile(banks, request, file.value());
    });
}

} // namespace zephyra
