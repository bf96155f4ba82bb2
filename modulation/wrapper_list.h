// WrapperList: the routings (bonds) of one modulation source, one per control, in the order of
// assignment.
#pragma once

#include "controls/widget_wrapper.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace zephyra {

/// What a moved control tells its targets may add and remove bonds, also the one that moved it.
/// MAIN.
template <typename Wrapper>
class WrapperList {
public:
    /// Null when the control has none.
    Wrapper* find(const Control* control) const {
        const auto found = place(control);
        return found == wrappers_.end() ? nullptr : found->get();
    }

    /// Appends; a bond of the same control goes first.
    void add(std::shared_ptr<Wrapper> wrapper) {
        remove(wrapper->obj());
        wrappers_.push_back(std::move(wrapper));
    }

    void remove(const Control* control) {
        const auto found = place(control);
        if (found == wrappers_.end()) return;
        const auto gone = *found; // ends when the list is whole again
        wrappers_.erase(found);
    }

    void clear() { const auto gone = std::exchange(wrappers_, {}); }
    std::size_t size() const noexcept { return wrappers_.size(); }
    Wrapper& at(std::size_t index) const { return *wrappers_[index]; }

    /// Calls visit for each that was there at the beginning and still is.
    template <typename Visit>
    void forEach(const Visit& visit) const {
        const auto present = wrappers_; // keeps those alive that go meanwhile
        for (const auto& wrapper : present)
            if (std::find(wrappers_.begin(), wrappers_.end(), wrapper) != wrappers_.end())
                visit(*wrapper);
    }

private:
    auto place(const Control* control) const {
        return std::find_if(wrappers_.begin(), wrappers_.end(),
                            [&](const auto& wrapper) { return wrapper->obj() == control; });
    }

    std::vector<std::shared_ptr<Wrapper>> wrappers_;
};

} // namespace zephyra
