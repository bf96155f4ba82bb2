#include "cli/commands/commands.h"

#include "cli/terminal/command_clock.h"
#include "cli/terminal/interrupt.h"
#include "library/bank_edits.h"
#include "library/preset_edits.h"
#include "platform/clock.h"
#include "platform/files/file_name.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"
#include "presets/factory_banks.h"
#include "presets/picked_presets.h"
#include "presets/preset_adding.h"

#include <algorithm>
#include <cstddef>

namespace zephyra {

namespace {

ExitCode fail(const std::string& message) {
    return endWith(failureOrInterrupt(), message);
}

ExitCode done(const std::string& message) {
    return printOut(onOneLine(message) + "\n");
}

std::string nameOf(const Bank& bank, const std::string& key) {
    return inQuotes(snapshotTag(bank, key).value_or(kUnnamed));
}

/// The presets, in a bank that may be changed.
Result<PickedPresets> pickOwnPresets(BankFolder& banks, const std::string& bank,
                                     const std::string& preset) {
    auto picked = pickPresets(banks, bank, preset);
    if (!picked) return picked;
    if (const auto users = checkIsUsersBank(banks, picked.value().bank); !users)
        return Failure{users.message()};
    return picked;
}

Failure nameIsTaken(const std::string& bank, const std::string& name) {
    return {quotedBank(bank) + " has a preset " + inQuotes(name) + " already; choose another name"};
}

// --- rename ---

ExitCode renameBank(BankFolder& banks, const RenameRequest& request) {
    const auto bank = findBank(banks, request.bank);
    if (!bank) return fail(bank.message());
    if (const auto users = checkIsUsersBank(banks, bank.value()); !users)
        return fail(users.message());
    const auto name = newBankName(request.name);
    if (!name) return endWith(ExitCode::wrongUsage, name.message());
    if (!request.yes)
        if (const auto free = checkIsNotTheFactorys(
                banks, name.value(), "choose another name, or add --yes to call yours so");
            !free)
            return endWith(ExitCode::wrongUsage, free.message());
    const auto renamed = banks.rename(bank.value(), name.value());
    if (!renamed) return fail(renamed.message());
    if (!renamed.value() && !banks.isInSharedFolder(bank.value()))
        return fail(quotedBank(bank.value()) + " has been renamed or deleted by another program");
    if (!renamed.value())
        return fail("a bank " + quotedBank(name.value()) +
                    " is there already; choose another name");
    return done(quotedBank(bank.value()) + " is " + quotedBank(name.value()) + " now");
}

ExitCode renamePreset(BankFolder& banks, const RenameRequest& request) {
    const auto picked = pickOwnPresets(banks, request.bank, *request.preset);
    if (!picked) return fail(picked.message());
    const auto& [name, content, keys] = picked.value();
    if (hasSnapshotNamed(*content, request.name))
        return fail(nameIsTaken(name, request.name).message);
    const BankFolder::Changed changed =
        banks.change(name, renamingPreset(content, keys.front(), request.name));
    if (!changed.problem.empty()) return fail(changed.problem);
    if (!changed.applied) return fail(nameIsTaken(name, request.name).message);
    return done(nameOf(*content, keys.front()) + " is " + inQuotes(request.name) + " now");
}

// --- delete ---

ExitCode notWithoutYes(const std::string& what) {
    return endWith(ExitCode::wrongUsage, "this would delete " + what + " for good; add --yes");
}

ExitCode deleteBank(BankFolder& banks, const DeleteRequest& request) {
    const auto bank = findBank(banks, request.bank);
    if (!bank) return fail(bank.message());
    if (const auto users = checkIsUsersBank(banks, bank.value()); !users)
        return fail(users.message());
    const auto seen = banks.read(bank.value());
    const std::string what =
        quotedBank(bank.value()) +
        (seen ? " with " + counted(seen.value()->size(), "preset")
              : ", which cannot be read (`zephyra check` may find presets in it),");
    if (!request.yes) return notWithoutYes(what);
    const auto removed = banks.remove(bank.value(), seen ? seen.value() : nullptr);
    if (!removed) return fail(removed.message());
    if (!removed.value()) return fail(quotedBank(bank.value()) + " was deleted already");
    return done("deleted " + what);
}

ExitCode deletePresets(BankFolder& banks, const DeleteRequest& request) {
    const auto picked = pickOwnPresets(banks, request.bank, *request.preset);
    if (!picked) return fail(picked.message());
    const auto& [name, content, keys] = picked.value();
    const std::string what =
        keys.size() == 1 ? nameOf(*content, keys.front()) + " of " + quotedBank(name)
                         : "all " + counted(keys.size(), "preset") + " of " + quotedBank(name);
    if (keys.empty()) return done(quotedBank(name) + " holds no preset");
    if (!request.yes) return notWithoutYes(what);
    const auto changed = banks.change(name, deletingPresets(content, keys));
    if (!changed.problem.empty()) return fail(changed.problem);
    return done("deleted " + what);
}

// --- copy and move ---

std::vector<PropertyDictionary> recordsOf(const PickedPresets& picked) {
    std::vector<PropertyDictionary> records;
    for (const std::string& key : picked.keys) records.push_back(*recordOf(*picked.content, key));
    return records;
}

ExitCode copyPresets(BankFolder& banks, const PickedPresets& picked, const std::string& target,
                     bool yes) {
    if (!yes)
        if (const auto own = checkIsNotTheFactorys(banks, target, kCopyOfFactorys); !own)
            return endWith(ExitCode::wrongUsage, own.message());
    const auto added =
        addPresets(banks, target, recordsOf(picked), currentDateAndTime(commandClock()));
    if (!added) return fail(added.message());
    return printOut(addedText(target, added.value()));
}

/// In this order, so that nothing is lost when the second half fails.
ExitCode moveToBank(BankFolder& banks, const MoveRequest& request) {
    const auto picked = pickOwnPresets(banks, request.bank, request.preset);
    if (!picked) return fail(picked.message());
    const auto target = findOrNameBank(banks, *request.target);
    if (!target) return fail(target.message());
    const auto& [name, content, keys] = picked.value();
    if (target.value() == name)
        return endWith(ExitCode::wrongUsage,
                       "--to names the preset's own bank; write a position to move it there");
    if (const ExitCode code = copyPresets(banks, picked.value(), target.value(), request.yes);
        code != ExitCode::success)
        return code;
    // What somebody changed meanwhile was not copied like that.
    const auto changed = banks.change(name, deletingPresets(content, keys));
    if (!changed.problem.empty())
        return fail(quotedBank(name) + " keeps what was copied: " + changed.problem);
    return ExitCode::success;
}

ExitCode moveWithinBank(BankFolder& banks, const MoveRequest& request) {
    if (request.preset == "*")
        return endWith(ExitCode::wrongUsage, "one preset can stand at a position; name one");
    const auto picked = pickOwnPresets(banks, request.bank, request.preset);
    if (!picked) return fail(picked.message());
    const auto& [name, content, keys] = picked.value();
    const auto position = parseWhole(*request.position);
    if (!position || *position == 0 || *position > content->size())
        return endWith(ExitCode::wrongUsage, "a position in " + quotedBank(name) +
                                                 " is a number from 1 to " +
                                                 std::to_string(content->size()) + ", not " +
                                                 inQuotes(*request.position));
    std::vector<std::string> order = sortedKeys(*content);
    std::erase(order, keys.front());
    order.insert(order.begin() + static_cast<std::ptrdiff_t>(*position - 1), keys.front());
    const auto changed = banks.change(name, orderingPresets(content, std::move(order)));
    if (!changed.problem.empty()) return fail(changed.problem);
    return done(nameOf(*content, keys.front()) + " is number " + std::to_string(*position) +
                " of " + quotedBank(name) + " now");
}

/// What run makes of the folders in use.
template <typename Request>
ExitCode withBanks(const CommandContext& context, ExitCode (*run)(BankFolder&, const Request&),
                   const Request& request) {
    const Folders& folders = context.folders;
    if (const auto ready = readySharedFolder(folders); !ready) return fail(ready.message());
    BankFolder banks(folders);
    banks.setLockWait({.goesOn = goesOn});
    return run(banks, request);
}

ExitCode copyToBank(BankFolder& banks, const CopyRequest& request) {
    const auto picked = pickPresets(banks, request.bank, request.preset);
    if (!picked) return fail(picked.message());
    const auto target = findOrNameBank(banks, request.target);
    if (!target) return fail(target.message());
    return copyPresets(banks, picked.value(), target.value(), request.yes);
}

} // namespace

ExitCode runPresetRename(const CommandContext& context, const RenameRequest& request) {
    if (request.name.empty())
        return endWith(ExitCode::wrongUsage, "the new name is empty; write one");
    if (request.preset == "*")
        return endWith(ExitCode::wrongUsage, "one preset can have the new name; name one");
    if (request.preset && !isFileName(request.name))
        return endWith(ExitCode::wrongUsage,
                       "no preset can be called " + inQuotes(request.name) +
                           "; a name has at most 255 bytes, no / and no control characters, and is "
                           "neither \".\" nor \"..\"");
    return withBanks(context, request.preset ? renamePreset : renameBank, request);
}

ExitCode runPresetDelete(const CommandContext& context, const DeleteRequest& request) {
    return withBanks(context, request.preset ? deletePresets : deleteBank, request);
}

ExitCode runPresetCopy(const CommandContext& context, const CopyRequest& request) {
    return withBanks(context, copyToBank, request);
}

ExitCode runPresetMove(const CommandContext& context, const MoveRequest& request) {
    if (request.position.has_value() == request.target.has_value())
        return endWith(ExitCode::wrongUsage,
                       "preset move needs a position or --to BANK, one of the two");
    return withBanks(context, request.target ? moveToBank : moveWithinBank, request);
}

} // namespace zephyra
