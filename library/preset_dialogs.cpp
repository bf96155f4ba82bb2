#include "library/preset_dialogs.h"

#include "library/bank_edits.h"
#include "platform/files/folder_entries.h"

#include <utility>

namespace zephyra {

namespace {

AlertAction button(const std::string& title) {
    return {.title = title};
}

AlertAction action(const std::string& title, std::function<void()> chosen) {
    return {.title = title,
            .chosen = [chosen = std::move(chosen)](const std::string&) { chosen(); }};
}

AlertAction destructive(const std::string& title, std::function<void()> chosen) {
    AlertAction removing = action(title, std::move(chosen));
    removing.destructive = true;
    return removing;
}

} // namespace

Alert warning(const std::string& message, const std::string& title) {
    return {.title = "Warning", .message = message, .actions = {button(title)}};
}

Alert savePresetDialog(const std::string& bank, TypedText save, TypedText saveInBank,
                       std::function<void()> overwrite) {
    Alert dialog{.title = "Save Preset in",
                 .message = bank,
                 .actions = {{.title = "Save", .chosen = std::move(save)},
                             {.title = "Save in a Bank", .chosen = std::move(saveInBank)},
                             button("Cancel")},
                 .textField = AlertTextField{.placeholder = kUnnamed,
                                             .text = {},
                                             .centred = true,
                                             .autoCorrects = false,
                                             .autoCapitalises = false,
                                             .returnKey = "Done"}};
    if (overwrite) dialog.actions.push_back(action("Overwrite Preset", std::move(overwrite)));
    return dialog;
}

Alert selectBankDialog(const std::string& typed, const std::vector<ListedBank>& banks,
                       const std::function<void(const std::string& bank)>& chosen) {
    Alert dialog{.title = "Select a Bank to Save",
                 .message = typed.empty() ? kUnnamed : typed,
                 .actions = {}};
    for (const ListedBank& bank : banks)
        dialog.actions.push_back(
            action(std::string(stemOf(bank.name)), [chosen, name = bank.name] { chosen(name); }));
    dialog.actions.push_back(button("Cancel"));
    return dialog;
}

Alert overwriteDialog(const std::string& preset, std::function<void()> yes) {
    return {.title = "Overwrite",
            .message = "This operation will replace the " + preset +
                       "'s contents, do you want to proceed?",
            .actions = {destructive("YES", std::move(yes)), button("NO")}};
}

Alert renameDialog(const std::string& kind, const std::string& name, TypedText ok,
                   std::function<void()> cancel) {
    return {
        .title = "Rename " + kind,
        .message = {},
        .actions = {{.title = "OK", .chosen = std::move(ok)}, action("Cancel", std::move(cancel))},
        .textField = AlertTextField{.placeholder = {}, .text = name, .showsClearButton = true}};
}

Alert deleteAllDialog(const std::string& bank, std::function<void()> yes) {
    return {.title = "Warning!",
            .message = "Do you want to delete all snapshots in '" + bank + "'?",
            .actions = {destructive("YES", std::move(yes)), button("NO")}};
}

Alert replaceBankDialog(const std::string& problem, std::function<void()> replace) {
    return {.title = "Warning",
            .message = problem + "\nIf you replace it, the file is kept under another name, and "
                                 "the bank begins anew with what you save.",
            .actions = {destructive("Replace", std::move(replace)), button("Cancel")}};
}

} // namespace zephyra
