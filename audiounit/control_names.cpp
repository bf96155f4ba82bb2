#include "audiounit/control_names.h"

#include "platform/text/names.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <utility>

namespace zephyra {

namespace {

using enum ControlId;

/// Other words for a control, in their plain form. A word in several rows may mean any of them.
struct ControlWords {
    ControlId control;
    std::string_view words;
};

constexpr auto kOtherWords = std::to_array<ControlWords>({
    {scrubbingWave, "position pos playhead location scan wave offset"},
    {amplitude, "volume vol gain level loudness velocity"},
    {pan, "panning panorama balance"},
    {dryWet, "mix dry blend balance drywetmix effectmix"},
    {width, "spread stereo stereowidth stereospread"},
    {density, "rate grain grains overlap grainrate graindensity grainspersecond frequency freq "
              "grainfrequency"},
    {rndDensity, "irregularity densityspread"},
    {length, "size grain overlap grainsize grainlength duration grainduration graintime"},
    {rndLength, "sizespread rndsize rndgrainsize rndduration"},
    {pitch, "transpose transposition semitones semitone tune tuning pitchshift note octave cents"},
    {rndPitch, "detune pitchspread pitchjitter rndtranspose rndtune"},
    {scanning, "speed reverse backwards stretch timestretch playbackspeed playbackrate playspeed "
               "scanspeed scan"},
    {jittering, "spray scatter positionjitter rndposition rndstart"},
    {echoSwitch, "echo echoon delayon"},
    {leftDelay, "echo delay delaytime echotime echodelay leftecho"},
    {rightDelay, "echo delay delaytime echotime echodelay rightecho"},
    {leftGain, "echo feedback echogain delaygain echolevel regeneration leftecho leftfeedback"},
    {rightGain, "echo feedback echogain delaygain echolevel regeneration rightecho rightfeedback"},
    {ringModulationSwitch, "rm"},
    {ringModulationFrequency, "rm frequency freq ringrate ringpitch rmfreq rmfrequency"},
    {ringModulationAmount, "rm ringdepth ringmix ringlevel rmamount amount depth"},
    {playStop, "stop start transport"},
    {freeze, "hold pause"},
    {live, "input liveinput mic microphone"},
    {normalize, "normalise normalisation normalization"},
    {measures, "bars"},
    {quarters, "beats"},
    {leftSubdivision, "subdivision division leftsubdivision"},
    {rightSubdivision, "subdivision division rightsubdivision"},
    {fadeIn, "attack"},
    {fadeOut, "release"},
});

/// "Rnd" is what the controls are called; people also write it out.
std::string shortened(std::string plain) {
    if (plain.starts_with("random")) plain.replace(0, 6, "rnd");
    return plain;
}

std::vector<std::string> plainWords(std::string_view name) {
    std::vector<std::string> words;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find_first_of(" /"), name.size());
        words.push_back(plainName(name.substr(0, end)));
        name.remove_prefix(std::min(end + 1, name.size()));
    }
    return words;
}

/// Whether beginnings of words, of two letters at least, make up typed; words may be left out.
bool isMadeOf(std::string_view typed, std::span<const std::string> words) {
    if (typed.empty()) return true;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto [same, ignored] = std::ranges::mismatch(words[i], typed);
        for (std::ptrdiff_t length = same - words[i].begin(); length >= 2; --length)
            if (isMadeOf(typed.substr(static_cast<std::size_t>(length)), words.subspan(i + 1)))
                return true;
    }
    return false;
}

template <typename Fits>
std::vector<ControlId> allThat(std::span<const ControlId> known, Fits fits) {
    std::vector<ControlId> controls;
    std::ranges::copy_if(known, std::back_inserter(controls), fits);
    return controls;
}

ControlMatch certainIfOne(std::vector<ControlId> controls) {
    const bool one = controls.size() == 1;
    return {std::move(controls), one};
}

} // namespace

ControlMatch matchControl(std::string_view name, std::span<const ControlId> known) {
    const std::string typed = shortened(plainName(name));
    const auto plain = [](ControlId id) { return plainName(controlRange(id).name); };
    auto named = allThat(known, [&](ControlId id) { return plain(id) == typed; });
    if (!named.empty()) return certainIfOne(std::move(named));
    auto meant = allThat(known, [&](ControlId id) {
        return std::ranges::any_of(kOtherWords, [&](const ControlWords& row) {
            return row.control == id && hasWord(row.words, typed);
        });
    });
    if (!meant.empty()) return {std::move(meant), false};
    if (typed.size() < 3) return {{}, false};
    auto begun = allThat(known, [&](ControlId id) { return plain(id).starts_with(typed); });
    if (!begun.empty()) return certainIfOne(std::move(begun));
    return certainIfOne(allThat(
        known, [&](ControlId id) { return isMadeOf(typed, plainWords(controlRange(id).name)); }));
}

} // namespace zephyra
