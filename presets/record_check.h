// makeRecordCheck: finds what is wrong inside a preset by loading it.
#pragma once

#include "library/bank_check.h"
#include "platform/files/folders.h"

#include <functional>

namespace zephyra {

enum class SampleFiles {
    lookFor, ///< a sample that cannot be found, or read, is a finding
    ignore,  ///< the preset stands for itself
};

/// Restores each record into a system of its own and collects what that has to say. folders is
/// where samples are looked for. Once goOn answers false, nothing more is found. MAIN.
RecordCheck makeRecordCheck(const Folders& folders, SampleFiles samples,
                            std::function<bool()> goOn);

} // namespace zephyra
