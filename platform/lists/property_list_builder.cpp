#include "platform/lists/property_list_builder.h"

#include "platform/lists/property_list_limits.h"

#include <utility>

namespace zephyra {

bool PropertyListBuilder::beginValue() {
    if (const auto count = checkCount(++values_, limits_); !count) {
        failure_ = Failure{count.message()}; // of the list, not of the value that it ends at
        return false;
    }
    if (!isOpen()) return true;
    if (const auto* const array = open_.back().value.as<PropertyArray>())
        path_.enterIndex(array->size());
    return true;
}

bool PropertyListBuilder::open(PropertyValue container) {
    if (const auto nesting = checkNesting(open_.size() + 1, limits_); !nesting)
        return fail(nesting.message());
    open_.push_back({std::move(container), {}});
    return true;
}

void PropertyListBuilder::close() {
    PropertyValue whole = std::move(open_.back().value);
    open_.pop_back();
    add(std::move(whole));
}

void PropertyListBuilder::add(PropertyValue value) {
    if (!isOpen()) {
        top_ = std::move(value);
        isDone_ = true;
        return;
    }
    Container& inside = open_.back();
    if (auto* const array = inside.value.as<PropertyArray>())
        array->push_back(std::move(value));
    else if (auto* const dictionary = inside.value.as<PropertyDictionary>())
        dictionary->insert_or_assign(std::move(inside.key), std::move(value));
    inside.hasKey = false;
    path_.leave();
}

void PropertyListBuilder::enterKey(std::string key) {
    path_.enterKey(key);
    open_.back().key = std::move(key);
    open_.back().hasKey = true;
}

const PropertyDictionary* PropertyListBuilder::dictionary() const noexcept {
    return isOpen() ? open_.back().value.as<PropertyDictionary>() : nullptr;
}

bool PropertyListBuilder::fail(const std::string& reason) {
    failure_ = path_.failure(reason);
    return false;
}

} // namespace zephyra
