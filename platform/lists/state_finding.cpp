#include "platform/lists/state_finding.h"

#include <iterator>

namespace zephyra {

std::string lineOf(const StateFinding& finding) {
    return finding.path.empty() ? finding.text : finding.path + ": " + finding.text;
}

void complainOfTwice(StateFindings& findings, std::size_t count, const std::string& what) {
    if (count == 0) return;
    findings.push_back(
        {{},
         std::to_string(count) + " " + what + " stand there twice; the last of each holds",
         StandIn::nothing});
}

void append(StateFindings& findings, StateFindings more) {
    findings.insert(findings.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
}

} // namespace zephyra
