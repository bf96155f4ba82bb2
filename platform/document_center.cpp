#include "platform/document_center.h"

#include <algorithm>
#include <utility>

namespace zephyra {

void DocumentCenter::present(DocumentRequest request) {
    const auto same = std::ranges::find(waiting_, request.kind, &DocumentRequest::kind);
    if (same != waiting_.end())
        *same = std::move(request);
    else
        waiting_.push_back(std::move(request));
    tellObserver();
}

bool DocumentCenter::pick(const std::vector<std::filesystem::path>& documents) {
    if (waiting_.empty()) return false;
    const DocumentRequest answered = std::move(waiting_.front()); // may present another
    waiting_.pop_front();
    if (answered.picked) answered.picked(documents);
    tellObserver();
    return true;
}

bool DocumentCenter::dismiss() {
    if (waiting_.empty()) return false;
    waiting_.pop_front();
    tellObserver();
    return true;
}

void DocumentCenter::tellObserver() {
    const auto observer = observer_; // stays alive if it replaces itself
    if (observer) observer();
}

} // namespace zephyra
