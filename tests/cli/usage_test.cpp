// What the program says to wrong usage and to files it cannot read or write.

#include "tests/cli/program.h"

namespace zephyra {
namespace {

using Usage = ProgramTest;

TEST_F(Usage, WhatIsWrongAndWhatWouldBeRightStandsInOneLine) {
    writeText(folder / "text.wav", "no sound at all, and long enough to look at");
    fs::create_directory(folder / "folder.wav");
    const std::tuple<const char*, int, const char*> cases[] = {
        {"--shared-folder s", 2,
         "a command is missing: render, info, envelopes, parameters, banks"},
        {"--foo", 2, "there is no option \"--foo\""},
        {"envelopes in.wav", 2, "only options"},
        {"info", 2, "needs the name of a sound file"},
        {"render in.wav --seed", 2, "--seed needs a value"},
        {"render in.wav --seed 1 --seed 2", 2, "--seed can only be given once"},
        {"render in.wav --set Densty=50", 2, "nearest is \"Density\""},
        {"render in.wav --set Density=401", 2, "Density takes 0.5 to 400 Hz, not \"401\""},
        {"render in.wav --set Density", 2, "write NAME=VALUE"},
        {"render in.wav --at 0:live=1", 2, "add --as effect"},
        {"render in.wav --set 'subdiv left=1/9'", 2, "takes 1/1D to 1/128"},
        {"render in.wav --as guitar", 2, "instrument, effect or music-effect"},
        {"render in.wav --as instrument --live", 2, "leave it out"},
        {"render in.wav --sample in.wav", 2, "add --as effect"},
        {"render in.wav --drywet 50", 2, "add --as effect"},
        {"render in.wav --tempo 0", 2, "from 1 to 999"},
        {"render in.wav --meter 3/5", 2, "as in 4/4 or 6/8"},
        {"render in.wav --scan-sync 0,4", 2, "MEASURES,QUARTERS"},
        {"render in.wav --echo-sync 1/4", 2, "as in 1/4,1/8T"},
        {"render in.wav --transport rewind", 2, "play or stop"},
        {"render in.wav --fade-out 11", 2, "seconds from 0 to 10"},
        {"render in.wav --automate none.csv", 1, "none.csv does not exist"},
        {"render in.wav --automate text.wav", 1, "text.wav, line 1"},
        {"render in.wav --midi text.wav", 1, "is no MIDI file"},
        {"render in.wav --save-state none/s", 1, "none/s"},
        {"render in.wav --lfo EchoSwitch", 2, "not Echo Switch"},
        {"render in.wav --lfo Pan:shap=sine", 2, "nearest is \"shape\""},
        {"render in.wav --lfo Pan:hz=25", 2, "hz takes Hz from 0.016 to 24, not \"25\""},
        {"render in.wav --lfo Pan:hz=1,hz=2", 2, "hz is given twice"},
        {"render in.wav --lfo Pan:hz", 2, "write hz=VALUE"},
        {"render in.wav --lfo Pan:hz=1,link=1/4", 2, "leave one out"},
        {"render in.wav --lfo Pan:mult=2", 2, "add link=NOTE"},
        {"render in.wav --lfo Pan:link=1/9", 2, "note values 1/1D to 1/128"},
        {"render in.wav --lfo Pan --lfo pan:hz=2", 2, "Pan has an LFO already"},
        {"render in.wav --learn cc:1=Pan", 2, "add --midi FILE.mid"},
        {"render in.wav --programs", 2, "add --midi FILE.mid"},
        {"render in.wav --midi-tempo", 2, "add --midi FILE.mid"},
        {"render in.wav --midi m --lfo Pan --learn cc:1=Pan", 2, "the one or the other"},
        {"render in.wav --midi m --learn bend=Pan --learn bend=Pan", 2, "learned that already"},
        {"render in.wav --midi m --learn cc:120=Pan", 2, "a number from 0 to 119"},
        {"render in.wav --midi m --learn knob:1=Pan", 2, "no MIDI source \"knob:1\""},
        {"render in.wav --midi m --learn cc:1=Pan,channel=17", 2, "1 to 16, or any"},
        {"render in.wav --midi m --learn cc:1=Pan,relative=yes", 2, "is for a bend"},
        {"render in.wav --midi m --learn cc:1=live", 2, "add --as effect"},
        {"render in.wav --lfo Pan=hz=1", 2, "before a colon"},
        {"render in.wav --lfo 'Pa\n'", 2, "--lfo Pa?"},
        {"render in.wav --lfo Pan Width:hz=2", 2, "write --lfo, --learn or --at before it"},
        {"render in.wav --lfo 'Scrubbing Wave' --scrub m", 2, "the scan follows the one or"},
        {"render in.wav --scrub none.csv", 1, "--scrub: none.csv does not exist"},
        {"render in.wav --scrub text.wav", 1, "text.wav, line 1: a position is"},
        {"render in.wav --state text.wav", 1, "--state: "},
        {"render in.wav --seconds 1 --record-scrub none/t.csv", 1, "none/t.csv"},
        {"render in.wav --picture none/p.png", 1, "none/p.png"},
        {"render in.wav --seconds 1 --record-scrub in.wav", 2, "would replace INPUT"},
        {"render in.wav --seconds 1 --scrub text.wav --record-scrub ./text.wav", 2,
         "would replace --scrub"},
        {"render in.wav --seconds 0.045 --record-scrub t.csv", 2, "0.045 s only"},
        {"render in.wav --at Pitch=7", 2, "write TIME:NAME=VALUE"},
        {"render in.wav --at 1:Pitch=7", 2, "comes after the end at 0.500 s"},
        {"render in.wav --seconds 2 --at 2:Pitch=7", 2, "comes after the end"},
        {"render in.wav --seconds 0", 2, "seconds above 0"},
        {"render in.wav --rate 7999", 2, "Hz from 8000 to 384000"},
        {"render in.wav --block 0", 2, "from 1 to 65536"},
        {"render in.wav --seed 0", 2, "1 to 4294967295"},
        {"render in.wav --envelope Hannin", 2, "nearest is \"Hanning\""},
        {"render in.wav --start 1.1", 2, "from 0 to 1"},
        {"render in.wav -o out.mp3", 2, "aifc, caf, au, sd2, m4a, flac or ogg, or --type"},
        {"render in.wav -o out.f32", 2, "; --raw writes samples without a header"},
        {"render in.wav --raw --format wav", 2, "--raw and --type both say"},
        {"render in.wav -o - --type sd2", 2, "needs a second file"},
        {"render in.wav --float -o out.flac", 2, "--float is for WAV only, not FLAC"},
        {"render in.wav --gain -6bB", 2, "takes auto, or decibels from -120 to 60"},
        {"render in.wav -o /dev/full", 1, "cannot write /dev/full: the disk is full"},
        {"render in.wav -o ./in.wav", 2, "would replace INPUT"},
        {"render in.wav --picture p.jpg", 2, "ends in .png"},
        {"render in.wav -o p.png --type wav --picture p.png", 2, "choose another"},
        {"render in.wav --save-state ./in.wav", 2, "--save-state would replace INPUT"},
        {"render in.wav --seconds 1 --save-state s --record-scrub ./s", 2,
         "--record-scrub would replace --save-state"},
        {"render in.wav -o shared/B.zephyra --type wav --save-bank B --save-preset P", 2,
         "OUT would replace --save-bank"},
        {"render in.wav -o text.wav --as effect --sample text.wav", 2, "would replace --sample"},
        {"render in.wav -o text.wav --state text.wav", 2, "would replace --state"},
        {"render in.wav --live --sample in.wav", 2, "leave one out"},
        {"render in.wav --fade-out 1", 2, "which is 0.500 s"},
        {"render in.wav --live --rate 48000", 2, "own 44100 Hz"},
        {"render in.wav --bank B", 2, "--bank needs --preset"},
        {"render in.wav --preset '*'", 2, "--preset '*' needs --bank"},
        {"render in.wav --preset 3", 1, "a number needs --bank"},
        {"render in.wav --preset 'Nite Owl'", 1, "nearest is \"Night Owl\""},
        {"render in.wav --bank none --preset P --rate 1", 2, "Hz from 8000"},
        {"render in.wav --bank B --preset '*'", 2, "add --out-dir DIR"},
        {"render in.wav --bank B --preset P --state text.wav", 2, "leave one out"},
        {"render in.wav --save-bank B", 2, "--save-bank needs --save-preset"},
        {"render in.wav --save-preset P", 2, "--save-preset needs --save-bank"},
        {"render in.wav --save-bank B --save-preset a/b", 2, "--save-preset takes a name that"},
        {"render in.wav --yes", 2, "leave it out"},
        {"render in.wav --out-dir o --picture p.png", 2, "--picture names one file"},
        {"render --out-dir o", 2, "needs something to render"},
        {"render in.wav text.wav --out-dir text.wav", 1, "text.wav cannot be made"},
        {"render in.wav text.wav --out-dir .", 2, "would replace INPUT"},
        {"render ''", 2, "INPUT is empty"},
        {"render none.wav", 1, "none.wav"},
        {"render text.wav", 1, "text.wav"},
        {"render in.wav -o none/out.wav", 1, "none/out.wav"},
        {"render in.wav -o folder.wav", 1, "as in folder.wav/out.wav"},
        {"info in.wav >/dev/full", 1, "standard output"},
    };
    for (const auto& [arguments, code, said] : cases) expectRefused(arguments, code, said);
}

TEST_F(Usage, HelpAnswersAWord) {
    const std::pair<const char*, const char*> topics[] = {
        {"Rnd Pitch", "--set \"Rnd Pitch=VALUE\""},
        {"speed", "Scanning: -4 to 4 x, default 1 x\n  The speed of the scan"},
        {"--lfo", "An LFO on a control"},
        {"motion", "Motion:\n  --lfo"},
        {"render seed", "--seed N"},
        {"-o", "--output OUT"},
    };
    for (const auto& [topic, said] : topics)
        EXPECT_THAT(run("help " + std::string(topic)).out, HasSubstr(said)) << topic;
    for (const char* words : {"-V", "-v"}) EXPECT_THAT(run(words).out, HasSubstr("zephyra "));
    EXPECT_THAT(run("-help").out, HasSubstr("Commands:"));
}

} // namespace
} // namespace zephyra
