#include "platform/lists/state_finding.h"

#include <iterator>

namespace zephyra {

std::string lineOf(const StateFinding& finding) {
    return finding.path.empty() ? finding.text : finding.path + ": " + finding.text;
}

void append(StateFindings& findings, StateFindings more) {
    findings.insert(findings.end(), std::make_move_iterator(more.begin()),
                    std::make_move_iterator(more.end()));
}

} // namespace zephyra
