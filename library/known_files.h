// KnownFiles: what was read of banks and sounds, handed on so that nothing is read twice.
#pragma once

#include "library/bank_cache.h"
#include "platform/sound/file_facts.h"

#include <memory>

namespace zephyra {

/// Cheap to copy: all copies share what they know. Never null. banks belongs to one MAIN thread,
/// whatever number of instances share it there.
struct KnownFiles {
    std::shared_ptr<BankCache> banks = std::make_shared<BankCache>();
    std::shared_ptr<FileFacts> sounds = std::make_shared<FileFacts>();
};

} // namespace zephyra
