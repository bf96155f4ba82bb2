#include "stream/grain_watch.h"

#include <utility>

namespace zephyra {

GrainWatch::~GrainWatch() {
    engine_.setTrace(nullptr);
}

void GrainWatch::add(Watcher& watcher) {
    handOut(); // what started before is not the new one's
    watchers_.push_back(&watcher);
    if (trace_) return;
    trace_ = std::make_shared<GrainTrace>();
    engine_.setTrace(trace_.get());
}

void GrainWatch::remove(Watcher& watcher) {
    std::erase(watchers_, &watcher);
    if (!watchers_.empty()) return;
    engine_.setTrace(nullptr);
    retirement_.retire(std::exchange(trace_, nullptr));
}

void GrainWatch::handOut() {
    if (!trace_) return;
    for (GrainRecord grain; trace_->take(grain);)
        for (Watcher* const watcher : watchers_) {
            if (watcher->waiting_.size() == Watcher::kMost) watcher->waiting_.pop_front();
            watcher->waiting_.push_back(grain);
        }
}

GrainWatch::Watcher::Watcher(GrainWatch& watch) : watch_(watch) {
    watch_.add(*this);
}

GrainWatch::Watcher::~Watcher() {
    watch_.remove(*this);
}

bool GrainWatch::Watcher::take(GrainRecord& grain) {
    if (waiting_.empty()) watch_.handOut();
    if (waiting_.empty()) return false;
    grain = waiting_.front();
    waiting_.pop_front();
    return true;
}

} // namespace zephyra
