#include "platform/notification_center.h"

#include <utility>
#include <vector>

namespace zephyra {

NotificationCenter::Token NotificationCenter::addObserver(std::string name, Observer observer) {
    entries_.emplace(nextToken_, Entry{std::move(name), std::move(observer)});
    return nextToken_++;
}

void NotificationCenter::removeObserver(Token token) {
    entries_.erase(token);
}

void NotificationCenter::post(std::string_view name, const std::any& object) {
    std::vector<Token> tokens;
    for (const auto& [token, entry] : entries_)
        if (entry.name == name) tokens.push_back(token);
    for (Token token : tokens) {
        const auto found = entries_.find(token);
        if (found == entries_.end()) continue;            // removed by an observer called before it
        const Observer observer = found->second.observer; // stays alive if it removes itself
        observer(object);
    }
}

} // namespace zephyra
