// savePreset: makes a preset of a render's start.
#pragma once

#include "library/bank_folder.h"
#include "platform/clock.h"
#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <string>

namespace zephyra {

/// A preset that is to be made of what a render starts from.
struct SavedPreset {
    std::string bank; ///< file name
    std::string name;
    bool replaces = false; ///< one of that name, or a factory bank by the user's copy of it
};

/// Whether the preset could be saved as things stand, before hours go into the sound that comes
/// with it. A failure is a wrong usage: the bank came with the program, has a preset of that name,
/// or cannot be read. MAIN.
Result<void> checkPresetSaving(BankFolder& banks, const SavedPreset& saved);

/// Adds snapshot to the bank, which is made when missing, under the name; made now. One that has
/// the name already is overwritten or, unless saved.replaces, kept; then it fails. MAIN.
Result<void> savePreset(BankFolder& banks, const SavedPreset& saved,
                        const PropertyDictionary& snapshot, const DateAndTime& now);

} // namespace zephyra
