#include "hosting/window_model.h"

#include "hosting/plugin_instance.h"
#include "library/bank_name.h"

#include <algorithm>

namespace zephyra {

namespace {

template <typename Table>
ShownList shownList(const Table& table) {
    ShownList shown;
    if (table.sections.empty()) return shown;
    for (const auto& row : table.sections.front().rows) shown.rows.push_back(row.title);
    if (table.selected && table.selected->row < shown.rows.size())
        shown.chosen = table.selected->row;
    return shown;
}

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

WindowContents WindowModel::contents() {
    HostedInstance& system = plugin_.system();
    const RunLoop::Scope main(system.instance.runLoop);
    followImport();

    WindowContents now;
    const SampleLoader& loader = system.view.sampleLoader;
    now.missing = loader.missing();
    if (now.missing.empty()) now.sound = system.stream().sampleReference().path;
    now.isLive = system.stream().isLive();
    now.isCaptured = !now.isLive && system.stream().waveForm().isLiveCurrent();
    if (loader.isLoading()) now.loading = loader.progress();
    if (const Alert* const alert = system.instance.alerts.current()) now.alert = shownAlert(*alert);
    const auto* const request = system.instance.documents.current();
    now.asksForFile = request && request->kind == DocumentRequest::Kind::importCopies;
    using Store = QuickPresetsManager;
    now.banks = shownList(system.view.presets.table(Store::kBanksTable));
    now.presets = shownList(system.view.presets.table(Store::kPresetsTable));
    return now;
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
    const RunLoop::Scope main(plugin_.system().instance.runLoop);
    const auto& banks = plugin_.system().view.presets.getListOfBank();
    for (std::size_t row = 0; row < banks.size(); ++row) {
        if (std::ranges::find(*banksBefore_, banks[row].name) != banksBefore_->end()) continue;
        banksBefore_.reset();
        return chooseBank(row);
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

void WindowModel::chooseBank(std::size_t row) {
    chooseRow(QuickPresetsManager::kBanksTable, row);
}

void WindowModel::choosePreset(std::size_t row) {
    chooseRow(QuickPresetsManager::kPresetsTable, row);
}

void WindowModel::chooseRow(int table, std::size_t row) {
    HostedInstance& system = plugin_.system();
    const RunLoop::Scope main(system.instance.runLoop);
    system.view.presets.tableView_didSelectRowAtIndexPath(table, row);
}

} // namespace zephyra
