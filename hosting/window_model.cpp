#include "hosting/window_model.h"

#include "hosting/plugin_instance.h"
#include "library/bank_name.h"

#include <algorithm>

namespace zephyra {

namespace {

bool isBank(const std::filesystem::path& file) {
    return bankNameOf(file.filename().string()).has_value();
}

} // namespace

ShownAlert shownAlert(const Alert& alert) {
    ShownAlert shown{.title = alert.title, .message = alert.message, .buttons = {}, .typed = {}};
    for (const AlertAction& action : alert.actions) shown.buttons.push_back(action.title);
    if (alert.textField) shown.typed = alert.textField->text;
    return shown;
}

void WindowModel::answer(const ShownAlert& shown, std::size_t button, const std::string& typed) {
    Instance& instance = plugin_.system().instance;
    const RunLoop::Scope main(instance.runLoop);
    const Alert* const current = instance.alerts.current();
    if (!current || shownAlert(*current) != shown) return;
    if (!shown.typed || button != 0) banksBefore_.reset(); // it came to nothing, or is put off
    instance.alerts.answer(button, typed);
}

void WindowModel::load(const std::filesystem::path& file) {
    if (!isBank(file)) return plugin_.loadSample(file);
    HostedInstance& system = plugin_.system();
    const RunLoop::Scope main(system.instance.runLoop);
    newBank_.clear();
    banksBefore_.emplace();
    for (const auto& bank : system.view.presets.getListOfBank()) banksBefore_->push_back(bank.name);
    system.view.presets.documentPicker_proc_didPickDocumentAtURL(file);
}

void WindowModel::followImport() {
    if (!banksBefore_ && newBank_.empty()) return;
    HostedInstance& system = plugin_.system();
    const RunLoop::TryScope main(system.instance.runLoop);
    if (!main) return;
    if (banksBefore_) chooseNewBank(system.view.presets);
    if (!newBank_.empty()) chooseItsFirstPreset(system.view.presets);
}

void WindowModel::chooseNewBank(QuickPresetsManager& store) {
    const auto& banks = store.getListOfBank();
    for (std::size_t row = 0; row < banks.size(); ++row) {
        if (std::ranges::find(*banksBefore_, banks[row].name) != banksBefore_->end()) continue;
        banksBefore_.reset();
        newBank_ = banks[row].name;
        return store.tableView_didSelectRowAtIndexPath(QuickPresetsManager::kBanksTable, row);
    }
}

/// Once the bank is read.
void WindowModel::chooseItsFirstPreset(QuickPresetsManager& store) {
    if (store.getCurrentSelectedBankName() != newBank_ || !store.getSelectedBankDictionary())
        return;
    newBank_.clear();
    store.tableView_didSelectRowAtIndexPath(QuickPresetsManager::kPresetsTable, 0);
}

void WindowModel::locate(const std::filesystem::path& file) {
    HostedInstance& system = plugin_.system();
    const RunLoop::Scope main(system.instance.runLoop);
    system.view.sampleLoader.locateMissing(file);
}

void WindowModel::pickFile(const std::filesystem::path& file) {
    Instance& instance = plugin_.system().instance;
    const RunLoop::Scope main(instance.runLoop);
    instance.documents.pick({file});
}

void WindowModel::dismissFile() {
    Instance& instance = plugin_.system().instance;
    const RunLoop::Scope main(instance.runLoop);
    instance.documents.dismiss();
}

} // namespace zephyra
