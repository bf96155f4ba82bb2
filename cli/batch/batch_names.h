// BatchNames: file names for the renders of a batch, none of which is another's.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace zephyra {

/// Any thread, one at a time.
class BatchNames {
public:
    /// No render gets this name.
    void reserve(std::string_view stem);

    /// The name, without extension, for the render of an input and a preset, at least one of which
    /// is given: "input - preset", or the one. What no file name may hold becomes "_"; one that is
    /// too long is cut; one that was given before, in whatever case, gets " 2", " 3" ... at its
    /// end.
    std::string take(const std::optional<std::string>& input,
                     const std::optional<std::string>& preset);

private:
    std::set<std::string> taken_;                   // folded
    std::map<std::string, std::size_t> lastCounts_; // by the folded name: those up to it are taken
};

} // namespace zephyra
