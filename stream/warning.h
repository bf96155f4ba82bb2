// presentWarning: a failure told to the user in one line.
#pragma once

#include "platform/instance.h"

#include <string>
#include <utility>

namespace zephyra {

/// An alert "Warning" with the action "Ok". MAIN.
inline void presentWarning(Instance& instance, std::string message) {
    instance.alerts.present(
        {.title = "Warning", .message = std::move(message), .actions = {{"Ok"}}});
}

} // namespace zephyra
