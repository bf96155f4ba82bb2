// StateFinding: something in a saved state that could not be taken as it stands.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

/// What holds in the place of a value that could not be taken.
enum class StandIn {
    asBefore,   ///< what was there before the state came
    usual,      ///< what holds where the key is missing
    nothing,    ///< it is left out, with everything that hangs on it
    whatIsThere ///< as much of the value as there is
};

/// Plain data.
struct StateFinding {
    std::string path; ///< the key's, as "Sample_0.Path"; empty where no single one is at fault
    std::string text; ///< what is wrong, and what would be right
    StandIn standIn = StandIn::asBefore;
    bool operator==(const StateFinding&) const = default;
};

/// In the order in which the state was read.
using StateFindings = std::vector<StateFinding>;

/// "PATH: text", or the text alone. Any thread.
std::string lineOf(const StateFinding& finding);

/// Adds that so many entries of a list, what they are as "binding(s)", say anew what others before
/// them said, and that the last ones hold; nothing for 0. Any thread.
void complainOfTwice(StateFindings& findings, std::size_t count, const std::string& what);

/// Puts more behind findings. Any thread.
void append(StateFindings& findings, StateFindings more);

} // namespace zephyra
