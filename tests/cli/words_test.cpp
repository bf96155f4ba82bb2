// What people type from habit: a sound alone, other programs' options, units and times, and pleas
// for help.

#include "cli/arguments.h"
#include "tests/cli/program.h"

#include <CLI/App.hpp>
#include <regex>

namespace zephyra {
namespace {

struct TypedWords : ProgramTest {
    TypedWords() : ProgramTest(4410) {}
    /// The bytes that the words write to out.wav.
    std::string written(const std::string& words) const {
        fs::remove(folder / "out.wav");
        const ProgramRun ended = run(words);
        EXPECT_EQ(ended.code, 0) << words << "\n" << ended.err;
        return readText(folder / "out.wav");
    }
};

TEST_F(TypedWords, ASoundIsRenderedWithoutTheCommandsName) {
    for (const char* name : {"noext", "help", "-odd.wav"}) writeWav(folder / name, tone(4410));
    const std::string one = written("render in.wav -o out.wav --seed 7");
    for (const char* words :
         {"-o out.wav --seed 7 in.wav", "noext --seed 7 -o out.wav", "-o out.wav --seed 7 -- noext",
          "-o out.wav --quiet --seed 7 render in.wav", "--seed 7 -o out.wav -- -odd.wav"})
        EXPECT_TRUE(written(words) == one) << words;
    for (const char* words : {"-- -odd.wav", "render help", "--json banks",
                              "--bank 'Bird Machines' --preset 'Night Owl' --seconds 0.1 -o o.wav",
                              "--shared-folder shared where"})
        EXPECT_EQ(run(words).code, 0) << words;
    EXPECT_TRUE(fs::exists(folder / "-odd-grains.wav") && fs::exists(folder / "help-grains.wav"));
}

TEST_F(TypedWords, ANearMissIsToldTheRightForm) {
    writeText(folder / "-odd.wav", "");
    writeWav(folder / "two words.wav", tone(4410));
    const std::tuple<const char*, int, const char*> cases[] = {
        {"rendr", 2, "the nearest is render"},
        {"none.wav", 1, "none.wav does not exist"},
        {"render", 2, "as in zephyra render bird.wav"},
        {"in.wav out.wav", 2, "to write it, write -o out.wav"},
        {"in.wav 30", 2, "as in --seconds 30"},
        {"two words.wav -o out.wav", 2, "\"two words.wav\" is one name; put it between quotes"},
        {"in.wav speed 0.5", 2, "\"speed\" stands alone; write --set Scanning=0.5"},
        {"in.wav speed x", 2, "\"speed\" is one file too many"},
        {"-odd.wav", 2, "write -- before it, or ./-odd.wav"},
        {"in.wav Density=100", 2, "write --set before each NAME=VALUE"},
        {"in.wav --set Density 100", 2, "write --set Density=100"},
        {"in.wav --set Pan = 1", 2, "write --set Pan=1"},
        {"in.wav --at 4 Pitch=7", 2, "write --at 4:Pitch=7"},
        {"in.wav --lfo Density hz=2", 2, "write --lfo Density:hz=2"},
        {"in.wav --midi m --learn cc:1 Pan", 2, "write --learn cc:1=Pan"},
        {"in.wav -output x.wav", 2, "write --output"},
        {"in.wav --density 100", 2, "no option \"--density\"; write --set Density=100"},
        {"in.wav --densty=4", 2, "write --set Density=4"},
        {"in.wav --delay 0.3", 2, "write --set \"Left Delay=0.3\" or --set \"Right Delay=0.3\""},
        {"in.wav --volume -3dB", 2, "write --set Amplitude=-3dB"},
        {"in.wav --stretch 2", 2, "write --set Scanning=0.5 for half the speed"},
        {"in.wav --octave -1", 2, "write --set Pitch=-1oct"},
        {"in.wav --set Seconds=3", 2, "\"Seconds\" is no control; write --seconds 3"},
        {"in.wav --gain -6 dB", 2, "write --gain \"-6 dB\""},
        {"samples in.wav", 2, "the nearest is import"},
        {"in.wav --grain 50", 2, "write --set Length=MS"},
        {"in.wav --lfo Pan:sine,hz=2", 2, "\"sine\" is a shape; write shape=sine"},
        {"presets", 2, "zephyra banks lists them"},
        {"preset list", 2, "zephyra banks BANK lists them"},
        {"banks bird", 1, "the nearest is \"Bird Machines\""},
        {"banks 'night owl'", 1, "\"Bird Machines\" has a preset of that name"},
        {"help --nonsense", 2, "there are render, info,"},
        {"in.wav --length 30", 2, "write --seconds 30 for the length of OUT, --set Length=30"},
        {"in.wav -t 30", 2, "write --seconds 30"},
        {"in.wav --outfile x.wav", 2, "write -o x.wav"},
        {"in.wav --reverb", 2, "Echo Switch=on"},
        {"in.wav --fade-inn 2", 2, "nearest is --fade-in"},
        {"--seconds x -- -odd.wav", 2, "--seconds takes"},
        {"in.wav -c 2", 2, "always stereo"},
        {"-i in.wav", 2, "zephyra render in.wav"},
        {"in.wav --set window=hann", 2, "--envelope NAME"},
        {"in.wav --envelope bartlett", 2, "it is called Barlett"},
        {"in.wav --lfo Pan:shape=triangle", 2, "it is called v"},
        {"in.wav --lfo Pan:rate=2", 2, "it is called hz"},
        {"in.wav --midi m --learn pitchbend=Pan", 2, "it is called bend"},
        {"in.wav --json=foo", 2, "--json takes no value"},
        {"in.wav --at 4", 2, "\"4\" is no setting at a time"},
        {"in.wav --at 1:30:Pitch=7", 2, "--at 90:Pitch=7 semitones comes after"},
        {"help render nonsense", 2, "there are Sound, Live input and effects,"},
    };
    for (const auto& [arguments, code, said] : cases) expectRefused(arguments, code, said);
}

TEST_F(TypedWords, UnitsAndTimesSayTheSameAsNumbers) {
    const std::tuple<const char*, const char*> cases[] = {
        {"--seconds 0:00.2", "--seconds 0.2"},
        {"--seconds 2b --tempo 600", "--tempo 600 --seconds 0.2"}, // in either order
        {"--at 0.5b:Pitch=+7st --tempo 600", "--tempo 600 --at 0.05:Pitch=7"},
        {"--set 'Density=0.1 kHz'", "--set Density=100"},
        {"--set 'Amplitude=-20 dB'", "--set Amplitude=0.1"},
        {"--rate 48k", "--rate 48000"},
        {"--start 25% --end 75%", "--start 0.25 --end 0.75"},
        {"--as effect --drywet 70%", "--as effect --drywet 70"},
        {"--fade-in 50ms --fade-out '0.05 s'", "--fade-in 0.05 --fade-out 0.05"},
        {"--lfo Pan:hz=5Hz,min=20%", "--lfo Pan:hz=5,min=0.2"},
    };
    for (const auto& [units, numbers] : cases) {
        const std::string with = written("in.wav -o out.wav --seed 7 " + std::string(units));
        EXPECT_TRUE(with == written("in.wav -o out.wav --seed 7 " + std::string(numbers))) << units;
        EXPECT_FALSE(with == written("in.wav -o out.wav --seed 7 --set Pan=0.5")) << units;
    }
}

TEST(Arguments, AnOptionThatMayStandAloneTakesATimeThatFollowsIt) {
    CLI::App app;
    CLI::App* const render = app.add_subcommand("render");
    render->add_option("INPUT");
    render->add_option("--seed")->expected(1);
    render->add_option("--freeze")->option_text("[TIME]")->expected(0);
    using Words = std::vector<std::string>;
    const std::pair<Words, Words> cases[] = {
        {{"render", "--freeze", "4", "a"}, {"render", "--freeze=4", "a"}},
        {{"--freeze", "1:30", "a"}, {"render", "--freeze=1:30", "a"}},
        {{"--freeze", "a.wav"}, {"render", "--freeze", "a.wav"}},
        {{"a.wav", "--freeze"}, {"render", "a.wav", "--freeze"}},
        {{"a.wav", "--", "--freeze", "4"}, {"render", "--", "a.wav", "--freeze", "4"}},
        {{"a.wav", "--seed", "--", "b", "--", "-c"},
         {"render", "--seed", "--", "--", "a.wav", "b", "-c"}},
        {{"--seed", "render", "a"}, {"render", "--seed", "render", "a"}},
    };
    for (const auto& [typed, completed] : cases)
        EXPECT_EQ(completeArguments(typed, app), completed);
}

TEST_F(TypedWords, HelpIsGivenHoweverItIsAskedFor) {
    const std::tuple<const char*, const char*> cases[] = {
        {"--help", "Commands:\n  render"},
        {"help", "Commands:"},
        {"help render", "Usage: zephyra render [OPTIONS] [INPUT...]"},
        {"render help", "Usage: zephyra render"},
        {"render --help", "Ring Modulation Frequency"},
        {"in.wav --help", "Usage: zephyra render"},
        {"help preset export", "Usage: zephyra preset export [OPTIONS] BANK [PRESET]"},
        {"preset help", "Usage: zephyra preset"},
        {"-help", "Commands:"},
        {"help 'Rnd Pitch'", "--set \"Rnd Pitch=VALUE\""},
        {"help speed", "Scanning: -4 to 4 x, default 1 x\n  The speed of the scan"},
        {"help --lfo", "An LFO on a control"},
        {"help motion", "Motion:\n  --lfo"},
        {"help render seed", "--seed N"},
        {"help -o", "--output OUT"},
        {"version", "zephyra "},
        {"-V", "zephyra "},
        {"-v", "zephyra "},
    };
    for (const auto& [arguments, said] : cases) {
        const ProgramRun help = run(arguments);
        EXPECT_EQ(help.code, 0) << arguments;
        EXPECT_THAT(help.out, HasSubstr(said)) << arguments;
        std::istringstream lines(help.out);
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
    }
    const ProgramRun alone = run("");
    EXPECT_EQ(std::tuple(alone.code, alone.out, alone.err), std::tuple(2, "", run("--help").out));
    EXPECT_EQ(run("banks help").code, 1) << "a bank may be called so";
}

TEST_F(TypedWords, TheExamplesOfTheHelpWork) {
    writeWav(folder / "bird.wav", tone(44100));
    const std::string help = run("--help").out + run("help render").out;
    const std::regex example("\n  zephyra ([^\n]*)");
    std::size_t count = 0;
    for (std::sregex_iterator found(help.begin(), help.end(), example), end; found != end;
         ++found) {
        const ProgramRun ended = run((*found)[1].str());
        EXPECT_EQ(ended.code, 0) << (*found)[1] << "\n" << ended.err;
        ++count;
    }
    EXPECT_GE(count, 13u);
}

TEST_F(TypedWords, CommandsThatNeedNoBankSayNothingOfThem) {
    fs::create_directory(folder / "shared");
    writeText(folder / "shared" / "broken.zephyra", "no bank");
    for (const char* arguments : {"parameters", "envelopes", "info in.wav"})
        EXPECT_EQ(run(arguments).err, "") << arguments;
}

} // namespace
} // namespace zephyra
