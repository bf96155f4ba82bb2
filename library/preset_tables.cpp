#include "library/preset_tables.h"

#include "library/bank_edits.h"
#include "platform/files/folder_entries.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kRenameImage = "704-compose.png";
constexpr const char* kLockImage = "744-locked.png";
constexpr float kHighlightAlpha = 0.25f;

TableRow row(std::string_view title, std::string detail = {}) {
    return {.title = std::string(title), .detail = std::move(detail), .font = TableFont::bold};
}

TableRow renameableRow(std::string_view title) {
    TableRow renameable = row(title);
    renameable.renameImage = kRenameImage;
    return renameable;
}

} // namespace

LibraryTable emptyBanksTable() {
    return {.sections = {{"Banks"}}, .highlight = {0.0f, 0.0f, 1.0f, kHighlightAlpha}};
}

LibraryTable emptyPresetsTable() {
    return {.sections = {{"Presets"}}, .highlight = {1.0f, 0.0f, 0.0f, kHighlightAlpha}};
}

std::vector<TableRow> bankRows(const std::vector<ListedBank>& banks) {
    std::vector<TableRow> rows;
    rows.reserve(banks.size());
    for (const ListedBank& bank : banks) {
        rows.push_back(renameableRow(stemOf(bank.name)));
        if (!bank.isFactory()) continue;
        rows.back().font = TableFont::italic;
        rows.back().image = kLockImage;
        rows.back().renameImage = {};
    }
    return rows;
}

std::vector<TableRow> presetRows(const BankSummary& bank) {
    std::vector<TableRow> rows;
    rows.reserve(bank.snapshots.size());
    for (const BankSummary::Snapshot& snapshot : bank.snapshots)
        rows.push_back(renameableRow(snapshot.tag));
    return rows;
}

std::vector<TableRow> foundBankRows(const std::vector<FoundPreset>& found) {
    std::vector<TableRow> rows;
    rows.reserve(found.size());
    for (const FoundPreset& preset : found) rows.push_back(row(stemOf(preset[0])));
    return rows;
}

std::vector<TableRow> foundPresetRows(const std::vector<FoundPreset>& found) {
    std::vector<TableRow> rows;
    rows.reserve(found.size());
    for (const FoundPreset& preset : found) rows.push_back(row(preset[1], preset[2]));
    return rows;
}

void showRows(LibraryTable& table, std::vector<TableRow> rows) {
    if (table.sections.front().rows == rows) return;
    table.sections.front().rows = std::move(rows);
    table.selected.reset();
    ++table.reloads;
}

} // namespace zephyra
