// HeardLog and HeardInstance: an instance whose log goes into a list.
#pragma once

#include "platform/instance.h"

namespace zephyra {

/// Must outlive the instance that it hears.
struct HeardLog {
    std::vector<std::string> lines; ///< to be read while nothing else writes one

    void hear(Instance& instance) {
        instance.log.setSink([this](std::string_view line) { lines.emplace_back(line); });
    }
};

struct HeardInstance : HeardLog, Instance {
    HeardInstance() { hear(*this); }
};

} // namespace zephyra
