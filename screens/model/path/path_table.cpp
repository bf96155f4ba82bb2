#include "screens/model/path/path_table.h"

#include <array>

namespace zephyra {

namespace {

using enum PathCellKind;
using enum PathRow;
using enum PathWhen;
using enum Section;
using Id = ControlId;

// clang-format off
constexpr std::array kCells{
    PathCell{envelope, Id::envelope, grains, 0, big, always, 0, 1, "", ""},
    PathCell{knob, Id::density, grains, 1, big, always, 0, 1, "Density", "Density"},
    PathCell{knob, Id::length, grains, 2, big, always, 0, 1, "Length", "Length"},
    PathCell{voices, Id::envelope, grains, 0, spread, always, 0, 1, "", ""},
    PathCell{knob, Id::rndDensity, grains, 1, spread, always, 0, 1, "Rnd Density", "Rnd Dens"},
    PathCell{knob, Id::rndLength, grains, 2, spread, always, 0, 1, "Rnd Length", "Rnd Len"},
    PathCell{knob, Id::pitch, pitch, 3, big, always, 0, 1, "Pitch", "Pitch"},
    PathCell{knob, Id::rndPitch, pitch, 3, spread, always, 0, 1, "Rnd Pitch", "Rnd Pitch"},
    PathCell{knob, Id::width, space, 4, big, always, 0, 1, "Width", "Width"},
    PathCell{knob, Id::pan, space, 4, spread, always, 0, 1, "Pan", "Pan"},
    PathCell{knob, Id::scanning, scan, 5, big, scanFree, 0, 1, "Scanning", "Scanning"},
    PathCell{knob, Id::measures, scan, 5, big, scanSynced, 0, 2, "Measures", "Meas"},
    PathCell{knob, Id::quarters, scan, 5, big, scanSynced, 1, 2, "Quarters", "Quart"},
    PathCell{knob, Id::jittering, scan, 5, spread, always, 0, 1, "Jittering", "Jittering"},
    PathCell{knob, Id::leftDelay, echo, 6, big, echoFree, 0, 1, "Left Delay", "Delay L"},
    PathCell{knob, Id::rightDelay, echo, 7, big, echoFree, 0, 1, "Right Delay", "Delay R"},
    PathCell{knob, Id::leftSubdivision, echo, 6, big, echoSynced, 0, 1, "Left Delay", "Delay L"},
    PathCell{knob, Id::rightSubdivision, echo, 7, big, echoSynced, 0, 1, "Right Delay", "Delay R"},
    PathCell{knob, Id::leftGain, echo, 6, spread, always, 0, 1, "Left Gain", "Gain L"},
    PathCell{knob, Id::rightGain, echo, 7, spread, always, 0, 1, "Right Gain", "Gain R"},
    PathCell{knob, Id::ringModulationFrequency, ring, 8, big, always, 0, 1, "Frequency", "Freq"},
    PathCell{knob, Id::ringModulationAmount, ring, 8, spread, always, 0, 1, "Amount", "Amount"},
    PathCell{knob, Id::amplitude, output, 9, big, always, 0, 1, "Amplitude", "Amplitude"},
    PathCell{knob, Id::dryWet, output, 10, big, always, 0, 1, "Dry/Wet", "Dry/Wet"},
    PathCell{knob, Id::normalize, output, 9, spread, always, 0, 1, "Normalize", "Normalize"},
    PathCell{keep, Id::envelope, output, 10, spread, always, 0, 1, "", ""},
};

constexpr std::array<PathSection, kSections> kTitles{{
    {grains, "Grains", false, false, {}, {}},
    {pitch, "Pitch", false, false, {}, {}},
    {space, "Space", false, false, {}, {}},
    {scan, "Scan", false, true, {}, Id::scanSync},
    {echo, "Echo", true, true, Id::echoSwitch, Id::echoSync},
    {ring, "Ring", true, false, Id::ringModulationSwitch, {}},
    {output, "Output", false, false, {}, {}},
}};
// clang-format on

} // namespace

std::span<const PathCell> pathCells() noexcept {
    return kCells;
}

std::span<const PathSection, kSections> pathSections() noexcept {
    return kTitles;
}

bool isThere(const PathCell& cell, PathSync sync) noexcept {
    switch (cell.when) {
    case scanFree:
        return !sync.scan;
    case scanSynced:
        return sync.scan;
    case echoFree:
        return !sync.echo;
    case echoSynced:
        return sync.echo;
    case always:
        break;
    }
    return true;
}

} // namespace zephyra
