// printSteps, printEnds, ...: the tables of sound_figures, on standard output in Markdown.
#pragma once

#include "bench/sound_player.h"

namespace zephyra {

// setup: what is played is chosen by each table; its state holds for all. MAIN.

/// Every change, over each sound, in blocks of 64 and 480 frames; the worst first.
void printSteps(const SoundSetup& setup);
/// How a start and a stop sound, by the length of grains.
void printEnds(const SoundSetup& setup);
/// How far LIVE's sound jumps while nobody touches it, against a file with the same tone.
void printLive(const SoundSetup& setup);
/// How much density and length move the level, by envelope.
void printLevels(const SoundSetup& setup);
/// What reading a tone adds to it, by place in the file and pitch.
void printQuality(const SoundSetup& setup);
/// What becomes of a sound that is not centred.
void printDc(const SoundSetup& setup);
/// How far onsets lie from the beat that an LFO follows.
void printBeat(const SoundSetup& setup);

} // namespace zephyra
