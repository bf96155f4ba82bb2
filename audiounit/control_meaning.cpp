#include "audiounit/control_meaning.h"

namespace zephyra {

const char* controlMeaning(ControlId id) noexcept {
    using enum ControlId;
    switch (id) {
    case scrubbingWave:
        return "Where the scan stands, 0 being the start of the sound and 1 its end.";
    case amplitude:
        return "The level of the grains; many at once add up to more.";
    case pan:
        return "Where the grains are heard: -1 is left, 1 is right.";
    case dryWet:
        return "An effect's mix: 0 is the input alone, 50 both, 100 the grains alone.";
    case width:
        return "How far chance spreads the grains to the left and right.";
    case density:
        return "How many grains start in a second.";
    case rndDensity:
        return "How unevenly they start: 0 is a clock, 1 up to half as often or more.";
    case length:
        return "How long a grain is.";
    case rndLength:
        return "How much lengths differ: at 1 by up to half, shorter or longer.";
    case pitch:
        return "Transposes the grains; the scan keeps its speed.";
    case rndPitch:
        return "Transposes each grain by chance, by up to half of this up or down.";
    case scanning:
        return "The speed of the scan: 1 is the sound's own, 0 stands still, -1 goes back.";
    case jittering:
        return "How far from the scan a grain may be cut, earlier or later.";
    case echoSwitch:
        return "Switches the echo on; it rings on after the last grain.";
    case leftDelay:
        return "The time after which the left echo returns.";
    case rightDelay:
        return "The time after which the right echo returns.";
    case leftGain:
        return "How much of the left echo returns each time; more is longer.";
    case rightGain:
        return "How much of the right echo returns each time; more is longer.";
    case ringModulationSwitch:
        return "Switches the ring modulator on.";
    case ringModulationFrequency:
        return "Of the ring modulator; high ones sound like bells.";
    case ringModulationAmount:
        return "How much the ring modulator takes the place of the plain sound.";
    case playStop:
        return "Starts the grains with a fade in, or stops them with a fade out.";
    case freeze:
        return "Holds the scan, and of live input what has been heard.";
    case live:
        return "Cuts an effect's grains from what it hears instead of from a file.";
    case normalize:
        return "The peak that a sound is brought to before grains are cut from it.";
    case scanSync:
        return "Scans the whole sound in so many measures and quarters of the tempo.";
    case measures:
        return "How many measures a synced scan takes.";
    case quarters:
        return "How many quarters a measure of a synced scan has.";
    case echoSync:
        return "Takes the echo times from the note values of Subdiv Left and Right.";
    case leftSubdivision:
        return "The left echo's time as a note value, where Echo Sync is on.";
    case rightSubdivision:
        return "The right echo's time as a note value, where Echo Sync is on.";
    case fadeIn:
        return "How long the grains take to come when they are started.";
    case fadeOut:
        return "How long the grains take to go when they are stopped.";
    case envelope:
        return "The shape in which each grain comes and goes.";
    }
    return "";
}

} // namespace zephyra
