// makeRecordCheck: finds what is wrong inside a preset by loading it.
#pragma once

#include "library/bank_check.h"
#include "platform/files/folders.h"

namespace zephyra {

/// Restores each record into a system of its own and collects what that has to say, whichever were
/// checked before. folders is where samples are looked for; one that is in order is read once for
/// all records that name it. MAIN.
RecordCheck makeRecordCheck(const Folders& folders);

} // namespace zephyra
