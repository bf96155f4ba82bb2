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

/// Of "Name (Bank)", as hosts are told.
std::pair<std::string, std::string> nameAndBank(const std::string& program) {
    const auto bracket = program.rfind(" (");
    if (bracket == std::string::npos) return {program, {}};
    return {program.substr(0, bracket), program.substr(bracket + 2, program.size() - bracket - 3)};
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

void PresetLine::step(int by) {
    PluginInstance& plugin = context_.source.plugin();
    if (chooser_ == Chooser::store)
        return context_.source.asMain([by](AudioUnitViewController& view) {
            by > 0 ? view.presets.nextSnap() : view.presets.previousSnap();
        });
    const std::size_t count = plugin.programs().size();
    if (count == 0) return;
    const std::size_t before = program_.value_or(by > 0 ? count - 1 : 0);
    plugin.setProgram((before + count + static_cast<std::size_t>(by)) % count);
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
        addRows(view.presets.table(Store::kPresetsTable), Store::kPresetsTable, rows);
        if (rows.empty() && chooser_ == Chooser::host) addPrograms(rows);
        if (!rows.empty()) rows.push_back({});
        addRows(view.presets.table(Store::kBanksTable), Store::kBanksTable, rows);
    });
    return rows;
}

void PresetLine::addRows(const LibraryTable& from, int table, std::vector<MenuRow>& rows) {
    if (from.sections.empty()) return;
    const auto& listed = from.sections.front().rows;
    for (std::size_t row = 0; row < listed.size(); ++row)
        rows.push_back({.text = table == Store::kBanksTable ? withoutExtension(listed[row].title)
                                                            : listed[row].title,
                        .chosen = [this, table, row] { choose(table, row); },
                        .isTicked = from.selected && from.selected->row == row});
}

/// Those of the bank that the host's program is of.
void PresetLine::addPrograms(std::vector<MenuRow>& rows) {
    PluginInstance& plugin = context_.source.plugin();
    const auto& programs = plugin.programs();
    for (std::size_t i = 0; i < programs.size(); ++i)
        if (const auto [name, bank] = nameAndBank(programs[i].name); bank == shown_.bank)
            rows.push_back({.text = name,
                            .chosen = [&plugin, i] { plugin.setProgram(i); },
                            .isTicked = program_ == i});
}

bool PresetLine::takesMenu() {
    return std::exchange(menuIsDue_, false);
}

void PresetLine::followHost() {
    const auto [name, bank] = nameAndBank(context_.source.plugin().programs()[*program_].name);
    shown_.name = name;
    shown_.bank = bank;
}

void PresetLine::followStore(AudioUnitViewController& view) {
    const Store& store = view.presets;
    // While another bank is looked through, what plays is still the preset of the one before.
    if (known(store.getCurrentSelectedBankName()) != bankFile_) return;
    if (const std::string name = known(store.getSnapshotName()); !name.empty()) shown_.name = name;
    shown_.bank = withoutExtension(bankFile_);
}

/// The preset itself is an edit, complete once its sound is there; to compare is none of its own.
void PresetLine::followEdits(const EditHistory& edits, bool isChosen) {
    const std::string latest = edits.undoName();
    const bool isItself = edits.undoKind() == EditKind::preset && latest == shown_.name;
    if (chooser_ == Chooser::nobody || isChosen || shown_.loading || latest.empty() || isItself) {
        edits_ = edits.changes();
        shown_.isChanged = false;
    } else if (edits.changes() != edits_ && edits.undoKind() != EditKind::compare) {
        shown_.isChanged = true;
    }
}

void PresetLine::read(AudioUnitViewController& view, const FrameTime&) {
    const Store& store = view.presets;
    std::string key = known(store.getCurrentSelectedSnapID());
    const std::string bank = known(store.getCurrentSelectedBankName());
    if (!awaitedBank_.empty() && awaitedBank_ == bank && store.getSelectedBankDictionary()) {
        awaitedBank_.clear();
        menuIsDue_ = true;
    }
    const auto program = context_.source.plugin().chosenProgram();
    if (program != program_ && program) chooser_ = Chooser::host;
    if (key != key_ && !key.empty()) chooser_ = Chooser::store;
    const bool isChosen = program != program_ || key != key_;
    if (isChosen) {
        bankFile_ = bank;
        program_ = program;
        key_ = std::move(key);
    }
    if (chooser_ == Chooser::host && program_) followHost();
    if (chooser_ == Chooser::store) followStore(view);
    shown_.loading.reset();
    if (view.sampleLoader.isLoading()) shown_.loading = view.sampleLoader.progress();
    followEdits(view.edits, isChosen);
}

} // namespace zephyra
