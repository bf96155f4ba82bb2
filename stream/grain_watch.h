// GrainWatch: hands every grain that starts to all who watch a stream.
#pragma once

#include "engine/granular_stream.h"
#include "platform/threads/render_cycle.h"

#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

namespace zephyra {

/// The engine's trace, attached while somebody watches, also in the middle of a render; free of
/// cost while nobody does. Everything is MAIN. It outlives its watchers.
class GrainWatch {
public:
    /// engine outlives this; cycle counts the calls that render it.
    GrainWatch(mokGranulatorSF& engine, const RenderCycle& cycle)
        : engine_(engine), retirement_(cycle) {}
    /// OFF.
    ~GrainWatch();
    GrainWatch(const GrainWatch&) = delete;
    GrainWatch& operator=(const GrainWatch&) = delete;

    /// One who watches from construction to destruction, as a window does. MAIN.
    class Watcher {
    public:
        /// Grains that wait for a watcher at most; beyond, the oldest go.
        static constexpr std::size_t kMost = GrainTrace::kCapacity;

        explicit Watcher(GrainWatch& watch);
        ~Watcher();
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;

        /// Moves the oldest grain that was scheduled since into grain; false when there is none.
        bool take(GrainRecord& grain);

    private:
        friend GrainWatch;
        GrainWatch& watch_;
        std::deque<GrainRecord> waiting_;
    };

    /// Frees what a render call could still see when the last watcher left.
    void collect() { retirement_.collect(); }
    /// How many such objects wait.
    std::size_t waitingObjects() const noexcept { return retirement_.waiting(); }

private:
    void add(Watcher& watcher);
    void remove(Watcher& watcher);
    void handOut();

    mokGranulatorSF& engine_;
    Retirement retirement_;
    std::shared_ptr<GrainTrace> trace_; // null while nobody watches
    std::vector<Watcher*> watchers_;
};

} // namespace zephyra
