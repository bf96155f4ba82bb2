// NotificationCenter: named notices inside one instance of the system.
#pragma once

#include <any>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace zephyra {

/// Delivers named notices to observers, in the order in which they were added, before post()
/// returns. An observer may add and remove observers while it is called. MAIN.
class NotificationCenter {
public:
    using Observer = std::function<void(const std::any& object)>;
    using Token = std::uint64_t;

    /// Calls observer at every later post of name, until the returned token is removed.
    Token addObserver(std::string name, Observer observer);

    /// Unknown tokens are ignored.
    void removeObserver(Token token);

    /// Calls the observers of name with object; a name without observers does nothing.
    void post(std::string_view name, const std::any& object = {});

private:
    struct Entry {
        std::string name;
        Observer observer;
    };
    std::map<Token, Entry> entries_; // in order of addition, since tokens only grow
    Token nextToken_ = 1;
};

} // namespace zephyra
