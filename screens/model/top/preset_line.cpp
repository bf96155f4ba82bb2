#include "screens/model/top/preset_line.h"

#include <utility>

namespace zephyra {

namespace {

using Store = QuickPresetsManager;

std::string known(std::string name) {
    return name == Store::kNone ? std::string() : name;
}

std::string withoutExtension(const std::string& file) {
    const auto dot = file.rfind('.');
    return dot == std::string::npos || dot == 0 ? file : file.substr(0, dot);
}

} // namespace

std::string PresetShown::line() const {
    if (name.empty()) return bank;
    return isChanged ? bank + ", changed" : bank;
}

PresetLine::PresetLine(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

PresetLine::~PresetLine() {
    context_.source.remove(*this);
}

void PresetLine::next() {
    context_.source.asMain([](AudioUnitViewController& view) { view.presets.nextSnap(); });
}

void PresetLine::previous() {
    context_.source.asMain([](AudioUnitViewController& view) { view.presets.previousSnap(); });
}

void PresetLine::choose(int table, std::size_t row) {
    context_.source.asMain([&](AudioUnitViewController& view) {
        if (table == Store::kBanksTable && row < view.presets.getListOfBank().size())
            awaitedBank_ = view.presets.getListOfBank()[row].name;
        view.presets.tableView_didSelectRowAtIndexPath(table, row);
    });
}

std::vector<MenuRow> PresetLine::menu() {
    std::vector<MenuRow> rows;
    context_.source.asMain([&](AudioUnitViewController& view) {
        for (const int table : {Store::kPresetsTable, Store::kBanksTable}) {
            const LibraryTable& from = view.presets.table(table);
            if (from.sections.empty()) continue;
            if (!rows.empty()) rows.push_back({});
            const auto& listed = from.sections.front().rows;
            for (std::size_t row = 0; row < listed.size(); ++row)
                rows.push_back({.text = table == Store::kBanksTable
                                            ? withoutExtension(listed[row].title)
                                            : listed[row].title,
                                .chosen = [this, table, row] { choose(table, row); },
                                .isTicked = from.selected && from.selected->row == row});
        }
    });
    return rows;
}

bool PresetLine::takesMenu() {
    return std::exchange(menuIsDue_, false);
}

void PresetLine::read(AudioUnitViewController& view, const FrameTime&) {
    const Store& store = view.presets;
    std::string key = known(store.getCurrentSelectedSnapID());
    std::string bank = known(store.getCurrentSelectedBankName());
    if (!awaitedBank_.empty() && awaitedBank_ == bank && store.getSelectedBankDictionary()) {
        awaitedBank_.clear();
        menuIsDue_ = true;
    }
    if (key != key_) {
        key_ = std::move(key);
        bankFile_ = bank;
        editsAtChoice_ = edits_;
    }
    PresetShown shown;
    // While another bank is looked through, what plays is still the preset of the one before.
    if (bank == bankFile_ && !key_.empty())
        shown.name = known(store.getSnapshotName());
    else
        shown.name = shown_.name;
    shown.bank = withoutExtension(bankFile_.empty() ? bank : bankFile_);
    shown.isChanged = !key_.empty() && edits_ != editsAtChoice_;
    if (view.sampleLoader.isLoading()) shown.loading = view.sampleLoader.progress();
    shown_ = std::move(shown);
}

} // namespace zephyra
