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
    if (current && shownAlert(*current) == shown) instance.alerts.answer(button, typed);
}

void WindowModel::load(const std::filesystem::path& file) {
    if (!isBank(file)) return plugin_.loadSample(file);
    HostedInstance& system = plugin_.system();
    const RunLoop::Scope main(system.instance.runLoop);
    banksBefore_.emplace();
    for (const auto& bank : system.view.presets.getListOfBank()) banksBefore_->push_back(bank.name);
    system.view.presets.documentPicker_proc_didPickDocumentAtURL(file);
}

void WindowModel::followImport() {
    if (!banksBefore_) return;
    HostedInstance& system = plugin_.system();
    const RunLoop::TryScope main(system.instance.runLoop);
    if (!main) return;
    const auto& banks = system.view.presets.getListOfBank();
    for (std::size_t row = 0; row < banks.size(); ++row) {
        if (std::ranges::find(*banksBefore_, banks[row].name) != banksBefore_->end()) continue;
        banksBefore_.reset();
        using Store = QuickPresetsManager;
        return system.view.presets.tableView_didSelectRowAtIndexPath(Store::kBanksTable, row);
    }
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
