#include "main_view/edit_history.h"

#include "controls/state_keys.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

bool isOfNumbers(const PropertyDictionary& part) {
    return std::ranges::all_of(part, [](const auto& entry) {
        return entry.second.template as<double>() || entry.second.template as<std::int64_t>();
    });
}

} // namespace

void EditHistory::beginEdit(const std::string& name, EditKind kind) {
    if (depth_++ > 0) return;
    settle();
    name_ = name;
    kind_ = kind;
    before_ = view_.editState();
    began_ = view_.secondsNow();
    loads_ = view_.sampleLoader.requests();
    takesWhole_ = false;
    watch_.begin();
    ++changes_;
}

void EditHistory::endEdit() {
    if (depth_ == 0 || --depth_ > 0) return;
    close();
}

void EditHistory::endEveryEdit() {
    if (std::exchange(depth_, 0) > 0) close();
}

void EditHistory::close() {
    Entry entry = entryOf(before_, changedSince(before_));
    entry.name = name_;
    entry.kind = kind_;
    entry.ended = view_.secondsNow();
    entry.isTick = entry.ended - began_ <= kTickLength && isOfNumbers(entry.before) &&
                   isOfNumbers(entry.after);
    const SampleLoader& loader = view_.sampleLoader;
    if (loader.requests() != loads_) awaited_.reset(); // another one takes its place
    if (loader.requests() != loads_ && loader.isLoading() && soundChangedSince(before_).empty())
        awaited_ = Awaited{name_, kind_, std::move(before_)};
    before_.clear();
    if (!isEmpty(entry)) add(std::move(entry));
    ++changes_;
}

EditHistory::Entry EditHistory::entryOf(const PropertyDictionary& before,
                                        const std::set<std::string>& keys) const {
    const PropertyDictionary after = view_.editState();
    return {.name = {}, .before = view_.partOf(before, keys), .after = view_.partOf(after, keys)};
}

std::set<std::string> EditHistory::changedSince(const PropertyDictionary& before) const {
    const std::string sample = ofStream(state_key::kSample);
    const bool leavesSound = awaited_ || !before.contains(sample);
    return view_.changedKeys(before, view_.editState(), [&](const std::string& key) {
        return (!takesWhole_ && watch_.isOthers(key)) || (leavesSound && key == sample);
    });
}

/// The sound alone, and LIVE, which a sound that is loaded ends.
std::set<std::string> EditHistory::soundChangedSince(const PropertyDictionary& before) const {
    const std::string sample = ofStream(state_key::kSample);
    std::set<std::string> keys;
    if (!before.contains(sample)) return keys;
    const auto changed = view_.changedKeys(before, view_.editState());
    if (!changed.contains(sample)) return keys;
    for (const std::string& key :
         {sample, ofStream(controlRange(ControlId::live).channel), std::string(edit_key::kSource)})
        if (changed.contains(key)) keys.insert(key);
    return keys;
}

void EditHistory::settle() {
    if (!awaited_ || view_.sampleLoader.isLoading()) return;
    const Awaited awaited = std::move(*awaited_);
    awaited_.reset();
    Entry entry = entryOf(awaited.before, soundChangedSince(awaited.before));
    entry.name = awaited.name;
    entry.kind = awaited.kind;
    if (!isEmpty(entry)) add(std::move(entry));
    ++changes_;
}

bool EditHistory::joins(const Entry& entry) const {
    if (!entry.isTick || done_.empty() || !undone_.empty()) return false;
    const Entry& last = done_.back();
    return last.isTick && last.name == entry.name && entry.ended - last.ended < kTicksJoin;
}

void EditHistory::join(Entry entry) {
    Entry& last = done_.back();
    last.before.merge(entry.before); // what was there first stays
    entry.after.merge(last.after);
    last.after = std::move(entry.after);
    last.ended = entry.ended;
}

void EditHistory::add(Entry entry) {
    ++changes_;
    if (joins(entry)) return join(std::move(entry));
    undone_.clear();
    done_.push_back(std::move(entry));
    if (done_.size() > kMost) done_.pop_front();
}

/// A sound that part brings takes the place of one that is still being read: that is no edit then.
void EditHistory::restore(const PropertyDictionary& part) {
    ++changes_;
    if (part.contains(ofStream(state_key::kSample))) awaited_.reset();
    view_.restorePart(part);
}

std::string EditHistory::undoName() const {
    if (readsChosen()) return awaited_->name;
    return done_.empty() ? std::string() : done_.back().name;
}

/// The one that plays stays.
void EditHistory::cancelSound() {
    ++changes_;
    awaited_.reset();
    view_.sampleLoader.cancel();
}

bool EditHistory::undo() {
    settle();
    if (!canUndo()) return false;
    if (readsChosen()) {
        cancelSound();
        return true;
    }
    undone_.push_back(std::move(done_.back()));
    done_.pop_back();
    restore(undone_.back().before);
    return true;
}

bool EditHistory::redo() {
    settle();
    if (!canRedo()) return false;
    done_.push_back(std::move(undone_.back()));
    undone_.pop_back();
    restore(done_.back().after);
    return true;
}

void EditHistory::clear() {
    done_.clear();
    undone_.clear();
    awaited_.reset();
    if (depth_ > 0) before_ = view_.editState();
    ++changes_;
}

} // namespace zephyra
