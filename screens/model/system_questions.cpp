#include "screens/model/system_questions.h"

namespace zephyra {

SystemQuestions::SystemQuestions(ScreenSource& source) : source_(source) {
    source_.add(*this);
}

SystemQuestions::~SystemQuestions() {
    source_.remove(*this);
}

void SystemQuestions::read(AudioUnitViewController& view, const FrameTime&) {
    Instance& instance = view.instance();
    const Alert* const current = instance.alerts.current();
    const auto* const request = instance.documents.current();
    asksForFile_ = request && request->kind == DocumentRequest::Kind::importCopies;
    if (!current) {
        alert_.reset();
        return;
    }
    ShownAlert shown = shownAlert(*current);
    if (alert_ == shown) return;
    alert_ = std::move(shown);
    destroys_.clear();
    for (const AlertAction& action : current->actions) destroys_.push_back(action.destructive);
}

} // namespace zephyra
