// instance_cost: what a plug-in's instance takes to be loaded, in time and memory, one and 32 of
// them.
//
// Loaded is what a host waits for: made and prepared, with the factory's banks and a user's folder
// that is empty; the demonstration sample of an instrument is read behind its back. Time is the
// median of processes of their own, each of which loads its first instance. Memory is what the
// process holds more, as the heap and as resident pages.

#include "bench/median.h"
#include "hosting/plugin_instance.h"
#include "tests/support/temporary_folder.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zephyra {
namespace {

constexpr double kMostMilliseconds = 50.0, kMebibyte = 1024.0 * 1024.0;
constexpr int kProcesses = 21, kMany = 32;

struct Loaded {
    Loaded(PluginKind kind, const std::filesystem::path& shared, const char* resources)
        : instance(kind, [&](Instance& fresh) {
              fresh.log.setSink([](std::string_view) {});
              fresh.folders.shared = shared;
              fresh.folders.resources = resources;
          }) {
        if (!instance.prepare({48000, 512})) std::abort();
    }
    PluginInstance instance;
};

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// In a process of its own, as a host's scanner or a fresh session would have it.
double firstLoad(PluginKind kind, const std::filesystem::path& shared, const char* resources) {
    int ends[2];
    if (pipe(ends) != 0) std::abort();
    if (fork() == 0) {
        const double began = now();
        const Loaded loaded(kind, shared, resources);
        const double took = now() - began;
        _exit(write(ends[1], &took, sizeof took) == sizeof took ? 0 : 1);
    }
    double took = 0;
    close(ends[1]);
    if (read(ends[0], &took, sizeof took) != sizeof took) std::abort();
    close(ends[0]);
    wait(nullptr);
    return took;
}

double heapBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

double residentBytes() {
    double all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void time(PluginKind kind, const char* name, const std::filesystem::path& shared,
          const char* resources) {
    std::vector<double> times;
    for (int n = 0; n < kProcesses; ++n) times.push_back(firstLoad(kind, shared, resources));
    const double took = 1000.0 * median(times);
    std::printf("to load %-32s %7.2f ms    must %5.1f   %s\n", name, took, kMostMilliseconds,
                took <= kMostMilliseconds ? "met" : "MISSED");
}

void memory(PluginKind kind, const char* name, const std::filesystem::path& shared) {
    const double heap = heapBytes(), resident = residentBytes();
    std::vector<std::unique_ptr<Loaded>> all;
    for (int n = 0; n < kMany; ++n) {
        all.push_back(std::make_unique<Loaded>(kind, shared, ZEPHYRA_SOURCE_DIR "/resources"));
        all.back()->instance.system().instance.runLoop.finishWork();
        if (n == 0 || n + 1 == kMany)
            std::printf("%2d %-37s %7.2f MiB of heap, %7.2f resident\n", n + 1, name,
                        (heapBytes() - heap) / kMebibyte, (residentBytes() - resident) / kMebibyte);
    }
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const TemporaryFolder folder;
    constexpr const char* kResources = ZEPHYRA_SOURCE_DIR "/resources";
    time(PluginKind::effect, "an effect", folder.path(), kResources);
    time(PluginKind::instrument, "an instrument without its sample", folder.path(), "/nonexistent");
    time(PluginKind::instrument, "an instrument", folder.path(), kResources);
    memory(PluginKind::effect, "effect(s)", folder.path());
    memory(PluginKind::instrument, "instrument(s)", folder.path());
}
