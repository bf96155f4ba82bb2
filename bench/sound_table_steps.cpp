#include "bench/sound_steps.h"
#include "bench/sound_tables.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace zephyra {

namespace {

constexpr SoundKind kKinds[] = {SoundKind::sine, SoundKind::noise, SoundKind::speech};

struct Row {
    std::string name;
    std::array<double, std::size(kKinds)> ratios{};
    bool movesEchoTime = false;

    double worst() const { return *std::max_element(ratios.begin(), ratios.end()); }
};

Row measure(const SoundChange& change, SoundSetup setup) {
    Row row{.name = change.name, .movesEchoTime = change.movesEchoTime};
    for (std::size_t k = 0; k < std::size(kKinds); ++k)
        for (const std::uint32_t block : {64u, 480u}) {
            setup.kind = kKinds[k];
            setup.blockFrames = block;
            row.ratios[k] = std::max(row.ratios[k], worstRatio(change, setup));
        }
    return row;
}

void print(const Row& row) {
    const bool clean = row.worst() <= kCleanRatio;
    std::printf("| %s |", row.name.c_str());
    for (const double ratio : row.ratios) std::printf(" %.2f |", ratio);
    if (row.movesEchoTime)
        std::printf(" | %.2f |\n", row.worst());
    else
        std::printf(" %s | |\n", clean ? "" : "**above**");
}

} // namespace

void printSteps(const SoundSetup& setup) {
    std::vector<Row> rows;
    for (const SoundChange& change : soundChanges()) rows.push_back(measure(change, setup));
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& a, const Row& b) { return a.worst() > b.worst(); });
    std::printf("| change | sine | noise | speech | above %.1f | echo glide |\n"
                "|---|---|---|---|---|---|\n",
                kCleanRatio);
    for (const Row& row : rows) print(row);
    const auto above = std::count_if(rows.begin(), rows.end(), [](const Row& row) {
        return !row.movesEchoTime && row.worst() > kCleanRatio;
    });
    std::printf("\n%td of %zu above %.1f\n\n", above, rows.size(), kCleanRatio);
}

} // namespace zephyra
