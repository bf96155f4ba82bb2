// shell_cost: what a block costs through each shell over the audio unit alone, and at rest, as
// ratios in one run.
//
// The same instance renders through its shell and, by the render block alone, inside it, turn by
// turn: two instances would differ by some per cent through nothing but where their memory lies.
// Hosts tell of the music in every block. Ratios are the medians of the rounds'.

#include "bench/median.h"
#include "bench/shell_work.h"
#include "bench/thread_time.h"
#include "tests/support/temporary_folder.h"
#ifdef ZEPHYRA_BENCH_LV2
#include "bench/shell_lv2.h"
#endif
#ifdef ZEPHYRA_BENCH_JUCE
#include "bench/shell_juce.h"
#endif

#include <cstdio>
#include <thread>
#include <vector>

namespace zephyra {
namespace {

constexpr int kRounds = 121;
constexpr int kFrames = 3 * 4096;

/// What every format stands on.
struct BareShell {
    static constexpr const char* kName = "PluginInstance";

    BareShell(PluginKind kind, ShellMemory& host, const HostedInstance::Prepare& prepare)
        : instance(kind, prepare), memory(host) {
        if (!instance.prepare({BenchWork::kRate, ShellMemory::kMostFrames})) std::abort();
    }
    void render(int frames) {
        const bool hears = instance.kind() == PluginKind::effect;
        PluginBlock block;
        block.frames = static_cast<std::uint32_t>(frames);
        if (hears) block.input[0] = memory.input.left.data();
        if (hears) block.input[1] = memory.input.right.data();
        block.output[0] = memory.output.left.data();
        block.output[1] = memory.output.right.data();
        block.transport.tempo = 120;
        block.transport.numerator = block.transport.denominator = 4;
        block.transport.moving = true;
        instance.render(block);
    }
    PluginInstance& plugin() { return instance; }

    PluginInstance instance;
    ShellMemory& memory;
};

void plain(Instance& fresh) {
    fresh.log.setSink([](std::string_view) {});
    fresh.folders.resources = "/nonexistent";
}

template <typename Render>
double nanosecondsOf(int block, const Render& render) {
    const FlushDenormals flush; // as on a host's audio thread
    const double before = threadNanoseconds();
    for (int done = 0; done < kFrames; done += block) render(block);
    return threadNanoseconds() - before;
}

template <typename Shell>
void compare(const BenchWork& work, PluginKind kind, const char* kindName, int block, double must) {
    ShellMemory memory;
    Shell shell(kind, memory, plain);
    workHard(shell.plugin(), work);
    BareUnit unit(shell.plugin(), memory);
    std::vector<double> alone, through;
    for (int round = 0; round < kRounds; ++round) {
        alone.push_back(nanosecondsOf(block, [&](int frames) { unit.render(frames); }));
        through.push_back(nanosecondsOf(block, [&](int frames) { shell.render(frames); }));
    }
    const double over = 100.0 * (medianRatio(through, alone) - 1.0);
    std::printf("%-15s %-10s over its unit's %6.0f ns a block at %-4d %6.2f%%   must %5.1f   %s\n",
                Shell::kName, kindName, median(alone) * block / kFrames, block, over, must,
                over <= must ? "met" : "MISSED");
}

/// A block in which nothing sounds over one in which all does.
void compareRest(const BenchWork& work, PluginKind kind, const char* kindName, int block,
                 double must) {
    ShellMemory memory;
    BareShell shell(kind, memory, plain);
    std::vector<double> sounding, resting;
    workHard(shell.plugin(), work);
    for (int round = 0; round < kRounds; ++round)
        sounding.push_back(nanosecondsOf(block, [&](int frames) { shell.render(frames); }));
    {
        const RunLoop::Scope main(shell.plugin().system().instance.runLoop);
        shell.plugin().system().stream().engine().granularOn = false;
    }
    std::fill(memory.input.left.begin(), memory.input.left.end(), 0.0f);
    std::fill(memory.input.right.begin(), memory.input.right.end(), 0.0f);
    for (int round = 0; round < 600; ++round) // echo and live buffer run out
        nanosecondsOf(block, [&](int frames) { shell.render(frames); });
    if (!shell.plugin().system().unit->rests()) std::printf("does not rest   ");
    for (int round = 0; round < kRounds; ++round)
        resting.push_back(nanosecondsOf(block, [&](int frames) { shell.render(frames); }));
    const double share = 100.0 * medianRatio(resting, sounding);
    std::printf("%-15s %-10s at rest %12.0f ns a block at %-4d %6.2f%%   must %5.1f   %s\n",
                BareShell::kName, kindName, median(resting) * block / kFrames, block, share, must,
                share <= must ? "met" : "MISSED");
}

template <typename Shell>
void compareAll(const BenchWork& work) {
    for (const int block : {512, 64}) {
        compare<Shell>(work, PluginKind::instrument, "instrument", block, block == 512 ? 5 : 15);
        compare<Shell>(work, PluginKind::effect, "effect", block, block == 512 ? 5 : 15);
    }
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const TemporaryFolder home; // what a shell finds there is the user's
    setenv("HOME", home.path().c_str(), 1);
    setenv("XDG_DATA_HOME", home.path().c_str(), 1);
    const BenchWork work;
    compareAll<BareShell>(work);
#ifdef ZEPHYRA_BENCH_LV2
    compareAll<Lv2Shell>(work);
#endif
#ifdef ZEPHYRA_BENCH_JUCE
    compareAll<JuceShell>(work);
#endif
    for (const int block : {512, 64}) {
        compareRest(work, PluginKind::instrument, "instrument", block, block == 512 ? 3 : 8);
        compareRest(work, PluginKind::effect, "effect", block, block == 512 ? 3 : 8);
    }
}
