// bankRows and its kin: the rows of the preset store's two tables.
#pragma once

#include "library/bank_folder.h"
#include "library/library_table.h"
#include "library/preset_search.h"

#include <string>
#include <vector>

namespace zephyra {

/// Of the sort and edit buttons while they are on. Any thread.
inline constexpr TableColour kToolTint = {0.988f, 0.212f, 0.114f};

/// The banks table ("Banks", blue) or the presets table ("Presets", red), without rows. MAIN.
LibraryTable emptyBanksTable();
LibraryTable emptyPresetsTable();

/// A factory bank has a lock, all others a rename button. MAIN.
std::vector<TableRow> bankRows(const std::vector<ListedBank>& banks);

/// Display names of a bank's presets. MAIN.
std::vector<TableRow> presetRows(const BankSummary& bank);

/// What both tables show of search results. MAIN or WORKER.
std::vector<TableRow> foundBankRows(const std::vector<FoundPreset>& found);
std::vector<TableRow> foundPresetRows(const std::vector<FoundPreset>& found);

/// Puts rows in the place of the table's; nothing happens when they are the same. MAIN.
void showRows(LibraryTable& table, std::vector<TableRow> rows);

} // namespace zephyra
