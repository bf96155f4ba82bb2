// library_cost: what the preset store takes for a large collection, and what it keeps in memory.
//
// One bank of 2,000 presets of 2 KiB and 200 banks of 40. Every figure is the slowest of several
// tries after the first read, the wait for the run loop included. Behind them stands how long a
// host's other instances are held up at a stretch, with a bank of 5,000 presets.

#include "library/bank_edits.h"
#include "library/quick_presets_manager.h"
#include "tests/support/heard_instance.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <malloc.h>
#include <string>

namespace zephyra {
namespace {

constexpr std::size_t kPresets = 2000, kBanks = 200, kPresetsOfEach = 40;
constexpr std::size_t kTextBytes = 400; // what is missing to 2 KiB
constexpr std::size_t kPresetsOfHuge = 5000;
constexpr double kMostMilliseconds = 100.0;
constexpr double kMostStretch = 2.0;   // milliseconds, of MAIN in a host
constexpr double kMostTimesFile = 4.0; // memory over the bytes of all files
constexpr int kTries = 11;

/// A preset of about 2 KiB of XML.
PropertyDictionary preset(std::size_t n) {
    PropertyDictionary record = {{kSnapshotTags, "Preset " + std::to_string(n)}};
    for (int control = 0; control < 30; ++control)
        record.emplace("Control" + std::to_string(control) + "_0", 0.1 * control);
    record.emplace("Notes", std::string(kTextBytes, 'x'));
    return record;
}

void makeBank(const std::filesystem::path& folder, const std::string& name, std::size_t presets) {
    Bank bank;
    for (std::size_t n = 0; n < presets; ++n)
        bank.emplace(snapshotKey(n, {"21.11.2026", "12:00:00"}), preset(n));
    if (const auto written = writeBank(folder / (name + ".zephyra"), bank); !written) {
        std::fprintf(stderr, "%s\n", written.message().c_str());
        std::exit(1);
    }
}

struct Loads : QuickPresetsManagerDelegate {
    PropertyDictionary getState() override { return preset(0); }
    void restoreStateProc(const PropertyDictionary&) override { ++loads; }
    std::size_t loads = 0;
};

double heapBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

double milliseconds(const std::function<void()>& work) {
    const auto began = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - began)
        .count();
}

double slowest(const std::function<void()>& work) {
    work(); // the first read
    double most = 0.0;
    for (int n = 0; n < kTries; ++n) most = std::max(most, milliseconds(work));
    return most;
}

bool allMet = true;

void row(const char* what, double measured, const char* unit, double must) {
    allMet = allMet && measured <= must;
    std::printf("%-52s %8.2f %s   must %5.1f   %s\n", what, measured, unit, must,
                measured <= must ? "met" : "MISSED");
}

double bytesIn(const std::filesystem::path& folder) {
    double bytes = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        if (entry.is_regular_file()) bytes += static_cast<double>(entry.file_size());
    return bytes;
}

void measure(const std::filesystem::path& folder) {
    makeBank(folder, "Large", kPresets);
    for (std::size_t n = 0; n < kBanks; ++n)
        makeBank(folder, "Bank " + std::to_string(n), kPresetsOfEach);

    HeardInstance instance;
    instance.folders = {folder, folder / "none"};
    Loads delegate;
    const double before = heapBytes();
    QuickPresetsManager store(instance, &delegate);
    const auto settle = [&instance] {
        instance.runLoop.runPosted();
        instance.runLoop.runPosted();
    };
    std::printf("%-52s %8.2f ms\n", "first search, which reads every bank",
                milliseconds([&] { store.searchBarSearchButtonClicked("preset 77"); }));
    row("to search 201 banks", slowest([&] { store.searchBarSearchButtonClicked("preset 77"); }),
        "ms", kMostMilliseconds);
    row("to search for what is in every name",
        slowest([&] { store.searchBarSearchButtonClicked("e"); }), "ms", kMostMilliseconds);
    store.searchBarSearchButtonClicked("");
    settle();
    row("to list the banks", slowest([&] { store.fillTableWithBankName(); }), "ms",
        kMostMilliseconds);

    store.setCurrentSelectedBankName("Large.zephyra");
    row("to select the large bank", slowest([&] { store.refreshBankSelection(); }), "ms",
        kMostMilliseconds);
    store.selectSnapFromIndex(0);
    settle();
    row("to step to the next of 2,000 presets and load it", slowest([&] {
            store.nextSnap();
            settle();
        }),
        "ms", kMostMilliseconds);
    row("to step back", slowest([&] {
            store.previousSnap();
            settle();
        }),
        "ms", kMostMilliseconds);
    row("to step between banks", slowest([&] {
            store.selectBankFromIndex(0);
            store.selectSnapFromIndex(0);
            store.previousSnap();
            settle();
        }),
        "ms", kMostMilliseconds);
    row("to load one at random", slowest([&] {
            store.selectRandomSnap();
            settle();
        }),
        "ms", kMostMilliseconds);
    std::printf("%zu presets were loaded\n", delegate.loads);

    store.setCurrentSelectedBankName("Large.zephyra");
    store.refreshBankSelection();
    row("memory over the files' bytes, the large bank selected",
        (heapBytes() - before) / bytesIn(folder), "x ", kMostTimesFile);
    std::printf("%-52s %8.2f ms\n", "to save into the large bank, which writes 4 MB", slowest([&] {
                    store.saveSnap();
                    settle();
                }));
}

/// The longest that MAIN was busy with work, and with what followed, at a stretch.
double longestStretch(RunLoop& loop, const std::function<void()>& work) {
    double most = milliseconds(work);
    for (int chained = 0; chained < 6; ++chained) {
        loop.waitForWork();
        most = std::max(most, milliseconds([&] { loop.runPosted(); }));
    }
    return most;
}

void measureStretches(const std::filesystem::path& folder) {
    makeBank(folder, "Huge", kPresetsOfHuge);
    HeardInstance instance;
    instance.folders = {folder, folder / "none"};
    Loads delegate;
    QuickPresetsManager store(instance, &delegate);
    instance.runLoop.tryAdvanceByWall(0); // paced from now on
    const auto stretch = [&](const char* what, const std::function<void()>& work) {
        row(what, longestStretch(instance.runLoop, work), "ms", kMostStretch);
    };
    stretch("in a host: to select a bank of 5,000, not read yet", [&] {
        store.setCurrentSelectedBankName("Huge.zephyra");
        store.refreshBankSelection();
    });
    stretch("in a host: to save into it", [&] { store.saveSnap(); });
    stretch("in a host: to save into it again", [&] { store.saveSnap(); });
    stretch("in a host: to move a preset", [&] {
        store.tableView_moveRowAtIndexPath_toIndexPath(QuickPresetsManager::kPresetsTable, 7, 9);
    });
    stretch("in a host: to delete a preset", [&] {
        store.tableView_commitDeleteForRowAtIndexPath(QuickPresetsManager::kPresetsTable, 7);
    });
    stretch("in a host: to step to another bank", [&] { store.selectBankFromIndex(0); });
    stretch("in a host: to load one at random", [&] { store.selectRandomSnap(); });
    stretch("in a host: to search 202 banks",
            [&] { store.searchBarSearchButtonClicked("preset 77"); });
    stretch("in a host: to search for what is in every name",
            [&] { store.searchBarSearchButtonClicked("e"); });
    stretch("in a host: to end the search", [&] { store.searchBarSearchButtonClicked(""); });
    stretch("in a host: to list the banks", [&] { store.fillTableWithBankName(); });
}

} // namespace
} // namespace zephyra

int main() {
    namespace fs = std::filesystem;
    std::string name = (fs::temp_directory_path() / "zephyra-bench-XXXXXX").string();
    if (!::mkdtemp(name.data())) return 1;
    zephyra::measure(name);
    zephyra::measureStretches(name);
    std::error_code ignored;
    fs::remove_all(name, ignored);
    return zephyra::allMet ? 0 : 1;
}
