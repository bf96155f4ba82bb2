// EditHistory: undo and redo of what a player does.
#pragma once

#include "main_view/edit_watch.h"
#include "platform/lists/property_list.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace zephyra {

/// What an edit is of, besides its name.
enum class EditKind : std::uint8_t {
    change,  ///< controls, the sound, what moves them
    preset,  ///< a preset took the place of all of that
    compare, ///< the other one of A and B plays
};

/// An edit is what differs in the state between its beginning and its end, and was not moved by
/// somebody else meanwhile. Taking it back restores that and leaves the rest alone; what plays
/// plays on. A preset that is loaded, also as a host's program, is an edit with its name; another
/// state of a host's forgets all of them. Sounds are named, not kept, but for one that no file
/// holds, whose bytes states share. A first sound cannot be taken back: there is none to return to.
/// While a sound that a hand chose is still being read it is the latest edit, and taking it back is
/// not to read it. MAIN; outlives windows.
class EditHistory {
public:
    static constexpr std::size_t kMost = 100;   ///< entries; the oldest go
    static constexpr double kTickLength = 0.02; ///< seconds; a wheel's tick is no longer
    static constexpr double kTicksJoin = 1.0;   ///< seconds, from one tick's end to the next one's

    /// view outlives this; its controls are there.
    explicit EditHistory(AudioUnitViewController& view) : view_(view), watch_(view) {}

    /// A hand begins and ends something that people know by this name. Inside another edit both
    /// belong to that one. Nothing changed makes no entry. An edit of numbers alone that ends as it
    /// begins (a wheel's tick, an arrow key) joins the one before if that was such a one of the
    /// same name a moment ago. An end without a beginning is ignored.
    void beginEdit(const std::string& name, EditKind kind = EditKind::change);
    void endEdit();
    /// Ends what is still open, as a window does that closes.
    void endEveryEdit();
    /// The edit under way takes in everything that differs, whoever moved it: a preset does.
    void takeWhole() { takesWhole_ = true; }

    /// False while an edit is under way.
    bool canUndo() const { return depth_ == 0 && (readsChosen() || !done_.empty()); }
    bool canRedo() const { return depth_ == 0 && !undone_.empty(); }
    /// Of the edit that is next, once none is under way; empty for none.
    std::string undoName() const;
    std::string redoName() const { return undone_.empty() ? std::string() : undone_.back().name; }
    /// Of the edit that undoName names; change for none.
    EditKind undoKind() const {
        return readsChosen() || done_.empty() ? EditKind::change : done_.back().kind;
    }
    /// False, and nothing changed, when there is nothing, or a hand is still at something.
    bool undo();
    bool redo();
    /// Forgets every edit; one that is under way begins anew.
    void clear();
    /// How often the names above changed, for screens to compare.
    std::uint64_t changes() const { return changes_; }

    /// A sound that a hand chose is read later: its edit is complete once it is there. Called now
    /// and then.
    void settle();

    EditWatch& watch() { return watch_; }

private:
    /// What differs, as it was and as it became.
    struct Entry {
        std::string name;
        EditKind kind = EditKind::change;
        PropertyDictionary before, after;
        double ended = 0.0;
        bool isTick = false;
    };
    /// A sound that is being read.
    struct Awaited {
        std::string name;
        EditKind kind;
        PropertyDictionary before;
    };

    std::set<std::string> changedSince(const PropertyDictionary& before) const;
    std::set<std::string> soundChangedSince(const PropertyDictionary& before) const;
    Entry entryOf(const PropertyDictionary& before, const std::set<std::string>& keys) const;
    static bool isEmpty(const Entry& entry) { return entry.before.empty() && entry.after.empty(); }
    void close();
    void add(Entry entry);
    bool joins(const Entry& entry) const;
    void join(Entry entry);
    void restore(const PropertyDictionary& part);
    /// A preset's sound has its name in the preset's edit already.
    bool readsChosen() const { return awaited_ && awaited_->kind == EditKind::change; }
    void cancelSound();

    AudioUnitViewController& view_;
    EditWatch watch_;
    std::deque<Entry> done_;
    std::vector<Entry> undone_;
    int depth_ = 0;
    std::string name_; // of the edit under way, as are these
    EditKind kind_ = EditKind::change;
    PropertyDictionary before_;
    double began_ = 0.0;
    std::uint64_t loads_ = 0; // asked for when it began
    bool takesWhole_ = false;
    std::optional<Awaited> awaited_;
    std::uint64_t changes_ = 0;
};

} // namespace zephyra
