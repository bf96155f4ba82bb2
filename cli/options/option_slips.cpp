#include "cli/options/option_slips.h"

#include "audiounit/control_names.h"
#include "audiounit/control_text.h"
#include "cli/options/control_options.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace zephyra {

namespace {

/// Options of other programs, without their hyphens. right: what ours are called; "@" stands for
/// the value.
struct Slip {
    std::string_view words, right;
    std::string_view value = ""; ///< where none was typed
};

constexpr auto kSlips = std::to_array<Slip>({
    {"out outfile outputfile file dest", "write -o @", "OUT"},
    {"i in input infile source", "INPUT stands alone: zephyra render @", "bird.wav"},
    {"outdir outputdir outputdirectory outputfolder outfolder dir",
     "write --out-dir @ for many renders, -o for one", "DIR"},
    {"t time duration dur l len length",
     "write --seconds @ for the length of OUT, --set Length=@ for that of the grains (in ms)",
     "30"},
    {"d", "write --set Density=@ for the grains a second, --seconds @ for the length of OUT", "30"},
    {"r ar sr samplerate samplingrate fs hz", "write --rate @", "48000"},
    {"s", "write --seed @ to repeat a render, --seconds @ for its length", "7"},
    {"random randomseed rngseed rand rnd", "write --seed @", "7"},
    {"bpm", "write --tempo @", "120"},
    {"signature timesignature timesig", "write --meter @", "4/4"},
    {"f fmt filetype container codec", "write --type @", "wav"},
    {"b bits bitdepth bitspersample depth", "16 bits are written; write --float for 32-bit floats"},
    {"c ac channels mono stereo", "OUT is always stereo; leave it out"},
    {"buffer buffersize blocksize bufsize framesperbuffer", "write --block @", "512"},
    {"window windowing win env grainenvelope", "write --envelope @", "Gaussian"},
    {"p img image png plot draw pic graph spectrogram waveform", "write --picture @", "OUT.png"},
    {"y force overwrite", "OUT is replaced without a question; leave it out"},
    {"q silent", "write --quiet"},
    {"v verbose debug loglevel", "the summary tells all; write --json for every number of it"},
    {"version", "write zephyra --version alone"},
    {"list listpresets presets listbanks banks", "write zephyra banks"},
    {"listenvelopes envelopes windows", "write zephyra envelopes"},
    {"listcontrols controls parameters params", "write zephyra help render, which lists them"},
    {"patch program", "write --bank BANK --preset @", "PRESET"},
    {"param parameter control ctl option setting", "write --set @", "NAME=VALUE"},
    {"automation auto envelopefile", "write --automate @", "FILE.csv"},
    {"notes midifile smf", "write --midi @", "FILE.mid"},
    {"cc midilearn map", "write --learn @ with --midi FILE.mid", "cc:1=Density"},
    {"mod modulate modulation sine", "write --lfo @", "Density:hz=0.1"},
    {"loadstate session", "write --state @", "FILE"},
    {"save", "write --save-state @, or --save-bank BANK --save-preset NAME", "FILE"},
    {"j jobs threads parallel cpus", "--out-dir runs several renders at a time by itself"},
    {"fx effect effects insert", "write --as effect"},
    {"instrument synth sampler", "write --as instrument"},
    {"wet dry mix drymix wetmix", "write --drywet @ with --as effect", "70"},
    {"hold", "write --freeze"},
    {"begin from ss trim offset skip",
     "write --start F, a fraction of INPUT from 0 to 1, as in 0.25"},
    {"to stop until", "write --end F, a fraction of INPUT from 0 to 1, as in 0.75"},
    {"fade fades", "write --fade-in @ and --fade-out @", "2"},
    {"fadein fi", "write --fade-in @", "2"},
    {"fadeout fo", "write --fade-out @", "2"},
    {"loop repeat loops cycles", "the scan goes round by itself; write --seconds for the length",
     ""},
    {"stretch timestretch slow", "write --set Scanning=0.5 for half the speed and twice --seconds"},
    {"octave octaves oct", "write --set Pitch=@oct", "1"},
    {"cents cent", "write --set Pitch=@ct", "50"},
    {"reverse backwards backward", "write --set Scanning=-1, which scans backwards"},
    {"grain overlap",
     "write --set Length=MS for the length of a grain, --set Density=HZ for how many a second"},
    {"reverb verb room", "there is an echo: write --set \"Echo Switch=on\""},
    {"norm normalise normalization loudnorm",
     "write --set Normalize=@, from 0 to 1, for what grains are cut from", "1"},
    {"sync", "write --scan-sync 2,4 or --echo-sync 1/4,1/8", ""},
    {"library libraryfolder folder presetfolder", "write --shared-folder @", "DIR"},
});

std::string filledIn(std::string_view right, std::string_view value) {
    std::string text;
    for (const char c : right) c == '@' ? text += value : text += c;
    return text;
}

/// As a shell takes it for one word.
std::string oneWord(const std::string& word) {
    return word.find(' ') == std::string::npos ? word : '"' + word + '"';
}

/// For a control's name as an option: "--density 100". A value that it cannot have, which may
/// count otherwise elsewhere, is left out.
std::optional<std::string> settingFor(std::string_view name, std::string_view value) {
    const std::vector<ControlId> controls = matchControl(name, settableControls()).controls;
    const bool fits = std::ranges::any_of(
        controls, [&](ControlId id) { return static_cast<bool>(parseControlValue(id, value)); });
    const std::string to = "=" + std::string(fits ? value : "VALUE");
    std::vector<std::string> settings;
    for (const ControlId id : controls)
        settings.push_back("--set " + oneWord(controlRange(id).name + to));
    if (settings.empty()) return std::nullopt;
    const ControlRange& first = controlRange(controls.front());
    return "write " + spokenList(settings, "or") +
           (fits ? "" : "; " + std::string(first.name) + " takes " + rangeText(first));
}

/// The same for one that is a slip or two away, and nearer than any option.
std::optional<std::string> settingLike(const std::string& name, std::string_view value,
                                       const CLI::App& render) {
    std::vector<std::string_view> names;
    for (const ControlId id : settableControls()) names.emplace_back(controlRange(id).name);
    const std::string nearest = plainName(nearestName(name, names));
    const std::size_t slips = editDistance(name, nearest);
    if (slips * 3 > name.size()) return std::nullopt;
    for (const CLI::Option* option : render.get_options())
        if (editDistance(name, plainName(option->get_name())) <= slips) return std::nullopt;
    return settingFor(nearest, value);
}

bool isRead(std::string_view option, const std::string& text) {
    if (option == "--set") return static_cast<bool>(parseSetting(text));
    if (option == "--at") return static_cast<bool>(parseTimedSetting(text, kDefaultTempo));
    if (option == "--lfo") return static_cast<bool>(parseLfo(text));
    return option == "--learn" && parseLearn(text);
}

/// Tries what may have stood between words: the one value that option reads, if any.
std::optional<std::string> joined(std::string_view option, const std::string& begun,
                                  std::span<const std::string> words) {
    if (words.empty()) return isRead(option, begun) ? std::optional(begun) : std::nullopt;
    for (const char* between : {"", "=", ":"})
        if (auto one = joined(option, begun + between + words.front(), words.subspan(1)))
            return one;
    return std::nullopt;
}

/// "--set Density 100", "--at 4 Pitch=7", "--set Left Delay=0.3": one value in two or three words.
std::optional<std::string> joinedValue(std::span<const std::string> words) {
    for (const std::size_t count : {2u, 3u}) {
        if (words.size() <= count) break;
        if (const auto value = joined(words[0], words[1], words.subspan(2, count - 1)))
            return "write " + words[0] + " " + oneWord(*value);
    }
    return std::nullopt;
}

/// "-seed": what is longer than a letter has two hyphens.
std::optional<std::string> secondHyphen(const std::string& word, const CLI::App& render) {
    const std::string name = "-" + word.substr(0, word.find('='));
    if (!name.starts_with("--") || !render.get_option_no_throw(name)) return std::nullopt;
    return word + " lacks a hyphen; write " + name;
}

/// "--set Seconds=3": an option of its own, and no control.
std::optional<std::string> ownOption(std::span<const std::string> words, const CLI::App& render) {
    if (words.size() < 2 || words[0] != "--set") return std::nullopt;
    const std::size_t sign = words[1].find('=');
    const std::string name = words[1].substr(0, sign), option = "--" + plainName(name);
    if (sign == std::string::npos || !matchControl(name, settableControls()).controls.empty() ||
        !render.get_option_no_throw(option))
        return std::nullopt;
    return inQuotes(name) + " is no control; write " + option + " " +
           oneWord(words[1].substr(sign + 1));
}

/// "--gain -6 dB": a number and its unit in two words.
std::optional<std::string> brokenQuantity(std::span<const std::string> words) {
    if (words.size() < 3 || !words[0].starts_with('-') || !parseNumber(words[1])) return {};
    const std::string whole = words[1] + " " + words[2];
    const bool isRead =
        std::ranges::any_of(std::array{"dB", "s", "Hz", "x", "bpm", "b"},
                            [&](auto unit) { return parseIn(unit, whole).has_value(); });
    return isRead ? std::optional("write " + words[0] + " " + oneWord(whole)) : std::nullopt;
}

/// "speed 0.5": a control's name as if it were an effect's, before it a word that wants no value.
std::optional<std::string> bareSetting(std::span<const std::string> words, const CLI::App& render) {
    if (words.size() < 3 || words[1].find_first_of("-./") != std::string::npos) return std::nullopt;
    const CLI::Option* const option = render.get_option_no_throw(words[0]);
    if (option && option->get_expected_min() > 0) return std::nullopt;
    const std::vector<ControlId> controls = matchControl(words[1], settableControls()).controls;
    if (controls.empty() || !parseControlValue(controls.front(), words[2])) return std::nullopt;
    return inQuotes(words[1]) + " stands alone; " + *settingFor(words[1], words[2]);
}

} // namespace

std::optional<std::string> rightOption(std::string_view option, std::string_view value,
                                       const CLI::App& render) {
    const std::string said = "there is no option " + inQuotes(option) + "; ";
    const std::string plain = plainName(option);
    for (const Slip& slip : kSlips)
        if (hasWord(slip.words, plain))
            return said + filledIn(slip.right, value.empty() ? slip.value : value);
    auto setting = settingFor(plain, value);
    if (!setting) setting = settingLike(plain, value, render);
    return setting ? std::optional(said + *setting) : std::nullopt;
}

std::optional<std::string> rightForm(std::span<const std::string> words, const CLI::App& render) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (auto said = secondHyphen(words[i], render)) return said;
        if (auto said = joinedValue(words.subspan(i))) return said;
        if (auto said = ownOption(words.subspan(i), render)) return said;
        if (auto said = brokenQuantity(words.subspan(i))) return said;
        if (auto said = bareSetting(words.subspan(i), render)) return said;
    }
    return std::nullopt;
}

} // namespace zephyra
