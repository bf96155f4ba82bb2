// PropertyPath: where in a property list a value stands, as "Pad[3].x".
#pragma once

#include "platform/text/result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Grows and shrinks while a tree is walked; every enter has its leave. Any thread but RENDER.
class PropertyPath {
public:
    void enterKey(std::string_view key);
    void enterIndex(std::size_t index);
    void leave();

    /// "PATH: reason", or the reason alone at the top. One line, whatever bytes the keys have; of a
    /// long path only the beginning.
    Failure failure(const std::string& reason) const;

private:
    std::string text_;
    std::vector<std::size_t> lengths_; ///< of text_ before each enter
};

} // namespace zephyra
