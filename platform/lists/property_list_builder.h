// PropertyListBuilder: puts a property list together in the order in which its values stand.
#pragma once

#include "platform/lists/property_list.h"
#include "platform/lists/property_path.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Every value is begun, then either added or opened and closed; in a dictionary its key comes
/// first. Operations that answer false have noted the failure, after which only failure() may be
/// called. Any thread but RENDER.
class PropertyListBuilder {
public:
    explicit PropertyListBuilder(const PropertyListLimits& limits) : limits_(limits) {}

    /// Refuses one value more than the limit.
    bool beginValue();
    /// An array or dictionary, empty; refuses one level more than the limit.
    bool open(PropertyValue container);
    void close();
    void add(PropertyValue value);
    /// Only in a dictionary; of a key that is there already the last value counts.
    void enterKey(std::string key);

    bool isOpen() const noexcept { return !open_.empty(); } ///< an array or dictionary is
    /// The innermost open dictionary; null when none is open, or an array within it is.
    const PropertyDictionary* dictionary() const noexcept;
    /// A key waits for its value.
    bool hasKey() const noexcept { return isOpen() && open_.back().hasKey; }
    bool isDone() const noexcept { return isDone_; } ///< the top's value is there as a whole

    /// Notes "PATH: reason", of the value or dictionary at hand; false.
    bool fail(const std::string& reason);
    const Failure& failure() const noexcept { return failure_; }
    PropertyValue take() { return std::move(top_); } ///< once, when isDone()

private:
    struct Container {
        PropertyValue value;
        std::string key; ///< of the value that comes next, in a dictionary
        bool hasKey = false;
    };

    PropertyListLimits limits_;
    PropertyPath path_;
    std::size_t values_ = 0;
    std::vector<Container> open_;
    PropertyValue top_;
    bool isDone_ = false;
    Failure failure_;
};

} // namespace zephyra
