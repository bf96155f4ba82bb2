// sound_figures: how cleanly it sounds. Steps at every change, ends, levels, the noise of reading,
// DC and onsets on the beat, as the tables of docs/sound.md.
//
//   sound_figures [steps] [ends] [live] [levels] [quality] [dc] [beat] [KEY=VALUE]...
//
// Without a table's name all of them. A key is one of a state's: with it every instance begins.

#include "bench/sound_tables.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace zephyra;

constexpr std::pair<const char*, void (*)(const SoundSetup&)> kTables[] = {
    {"steps", printSteps},     {"ends", printEnds}, {"live", printLive}, {"levels", printLevels},
    {"quality", printQuality}, {"dc", printDc},     {"beat", printBeat}};

PropertyValue valueOf(std::string_view text) {
    if (text == "true" || text == "false") return text == "true";
    if (const auto whole = parseWhole(text)) return static_cast<std::int64_t>(*whole);
    if (const auto number = parseNumber(text)) return *number;
    return text;
}

} // namespace

int main(int count, char** arguments) {
    SoundSetup setup;
    std::vector<void (*)(const SoundSetup&)> asked;
    for (int n = 1; n < count; ++n) {
        const std::string_view word = arguments[n];
        const auto table = std::find_if(std::begin(kTables), std::end(kTables),
                                        [&](const auto& each) { return word == each.first; });
        if (const auto equals = word.find('='); equals != word.npos) {
            setup.state.insert_or_assign(std::string(word.substr(0, equals)),
                                         valueOf(word.substr(equals + 1)));
        } else if (table != std::end(kTables)) {
            asked.push_back(table->second);
        } else {
            std::fprintf(stderr,
                         "%s: steps, ends, live, levels, quality, dc, beat or KEY=VALUE of a "
                         "state was expected\n",
                         arguments[n]);
            return 2;
        }
    }
    if (asked.empty())
        for (const auto& [name, print] : kTables) asked.push_back(print);
    for (const auto print : asked) print(setup);
}
