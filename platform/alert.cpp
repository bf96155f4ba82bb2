#include "platform/alert.h"

#include <algorithm>

namespace zephyra {

void AlertCenter::present(Alert alert) {
    // Nobody needs to be told the same twice at once, and what nobody answers must not pile up.
    const auto same = [&alert](const Alert& other) {
        return !alert.textField && other.title == alert.title && other.message == alert.message;
    };
    if (std::any_of(waiting_.begin(), waiting_.end(), same)) return;
    waiting_.push_back(std::move(alert));
    tellObserver();
}

bool AlertCenter::answer(std::size_t action, const std::string& text) {
    if (waiting_.empty() || action >= waiting_.front().actions.size()) return false;
    const Alert answered = std::move(waiting_.front()); // the action may present another
    waiting_.pop_front();
    if (const auto& chosen = answered.actions[action].chosen)
        chosen(answered.textField ? text : std::string());
    tellObserver();
    return true;
}

bool AlertCenter::answer(const std::string& title, const std::string& text) {
    if (waiting_.empty()) return false;
    const auto& actions = waiting_.front().actions;
    const auto found = std::find_if(actions.begin(), actions.end(), [&](const AlertAction& action) {
        return action.title == title;
    });
    return answer(static_cast<std::size_t>(found - actions.begin()), text);
}

void AlertCenter::tellObserver() {
    const auto observer = observer_; // stays alive if it replaces itself
    if (observer) observer();
}

void presentWarning(AlertCenter& alerts, std::string message) {
    alerts.present({.title = "Warning", .message = std::move(message), .actions = {{"Ok"}}});
}

} // namespace zephyra
