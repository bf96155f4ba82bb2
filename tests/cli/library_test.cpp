// What the commands about banks, presets, samples and folders do with real folders.

#include "cli/commands/commands.h"
#include "cli/terminal/interrupt.h"
#include "library/bank_edits.h"
#include "platform/files/file_calls.h"
#include "stream/kept_sound.h"
#include "tests/cli/program.h"

#include <csignal>
#include <unistd.h>

namespace zephyra {
namespace {

using namespace testing;

PropertyDictionary preset(const std::string& name, double density = 200.25) {
    return {{kSnapshotTags, name}, {"Density_0", density}};
}

/// A user's folder and a factory's, and the program that works in them.
struct Library : ProgramTest {
    Library() {
        environment = "SOURCE_DATE_EPOCH=3000000000 TZ=HERE-10:30 ZEPHYRA_RESOURCE_FOLDER=factory";
        fs::create_directory(shared());
        fs::create_directory(factory());
        put(shared() / "Clouds.zephyra",
            {{"0 - a", preset("Haze")}, {"1 - b", preset("Rain")}, {"2 - c", preset("rain")}});
        put(factory() / "Drones.zephyra", {{"0 - a", preset("Deep")}});
    }

    fs::path shared() const { return folder / "shared"; }
    fs::path factory() const { return folder / "factory"; }
    static void put(const fs::path& file, const Bank& bank) { ASSERT_TRUE(writeBank(file, bank)); }
    static Bank bankIn(const fs::path& file) { return readBank(file).value().bank; }
    /// The display names, in the order of the list.
    std::vector<std::string> names(const std::string& bank) const {
        const Bank content = bankIn(shared() / (bank + ".zephyra"));
        std::vector<std::string> names;
        for (const std::string& key : sortedKeys(content))
            names.push_back(snapshotTag(content, key).value_or("?"));
        return names;
    }
    /// Of a run that must end well.
    std::string out(const std::string& arguments) const {
        const ProgramRun ran = run(arguments);
        EXPECT_EQ(ran.code, 0) << arguments << ": " << ran.err;
        return ran.out;
    }
};

TEST_F(Library, WhatIsWrongStandsInOneLineAndChangesNothing) {
    writeText(folder / "sound.wav", "");
    writeText(folder / "broken.zephyra", "no bank");
    for (const char* const file : {"..zephyra", "odd\n.zephyra"}) put(folder / file, {});
    writeText(shared() / "tone.wav", "tone");
    const std::tuple<const char*, int, const char*> cases[] = {
        {"--shared-folder d bnks", 2, "there is no command \"bnks\"; the nearest is banks"},
        {"preset", 2, "preset needs what to do: show, export, import, rename, delete, copy or"},
        {"preset copy Clouds", 2, "preset copy needs PRESET and TO-BANK"},
        {"banks --search ''", 2, "--search takes a part of a name"},
        {"preset delete Clouds", 2, "would delete \"Clouds\" with 3 presets for good; add --yes"},
        {"preset delete Drones --yes", 1, "came with the program"},
        {"preset rename Clouds Haze Rain", 1, "has a preset \"Rain\" already"},
        {"preset move Clouds Haze", 2, "a position or --to BANK"},
        {"preset move Clouds Haze 4", 2, "a number from 1 to 3"},
        {"preset move Clouds Haze --to clouds", 2, "the preset's own bank"},
        {"preset rename Clouds Haze a/b", 2, "no preset can be called \"a/b\""},
        {"preset copy Clouds Haze a/b", 1, "no bank can be called \"a/b\""},
        {"preset export Clouds -o out.wav", 2, "ends in .zephyra"},
        {"preset export Clouds -o shared/x.zephyra", 2, "among the banks in use"},
        {"preset export Clouds -o broken.zephyra", 1, "broken.zephyra is there already"},
        {"preset import sound.wav", 1, "name a file that ends in .zephyra"},
        {"preset import broken.zephyra", 1, "broken.zephyra"},
        {"preset import shared/Clouds.zephyra", 1, "there already; choose another name with --as"},
        {"preset import ..zephyra", 1, "no bank can be called \"..zephyra\"; a name is UTF-8"},
        {"preset import 'odd\n.zephyra'", 1, "choose another name with --as"},
        {"render in.wav -o out.wav --save-bank 'a\\xFF' --save-preset P", 2, "can be called"},
        {"samples import broken.zephyra", 1, "ends in one of raw, wav"},
        {"samples import in.wav --as 'tone '", 1, "a sample \"tone.wav\" is there already"},
        {"samples import in.wav --as x/tone", 1, "no sample can be called \"x/tone\""},
        {"samples import in.wav --as ''", 1, "no sample can be called \"\"; a name is UTF-8"},
        {"samples import in.wav --as ' .wav'", 1, "choose another with --as"},
        {"check none.zephyra", 1, "none.zephyra"},
    };
    const std::string before = readText(shared() / "Clouds.zephyra");
    for (const auto& [arguments, code, said] : cases) {
        expectRefused(arguments, code, said);
        EXPECT_TRUE(readText(shared() / "Clouds.zephyra") == before) << arguments;
        EXPECT_EQ(readText(shared() / "tone.wav"), "tone") << arguments;
    }
}

TEST_F(Library, ListsBanksAndPresetsAndFindsThemByNameAndLeavesFoldersAlone) {
    put(shared() / "Storm.zephyra",
        {{"0 - a",
          {PropertyDictionary{{kSnapshotTags, "Big\nrain"},
                              {"LIVE_0", true},
                              {"Sample_0", PropertyDictionary{{"Path", "/a/b.wav"}}}}}}});
    writeText(shared() / "Bad.zephyra", "no bank");
    for (const auto& place : {shared() / "Clouds", factory() / "Drones"})
        writeText(place.string() + ".about", "hums\nand more");
    const std::string all = out("banks");
    EXPECT_THAT(all, HasSubstr("Clouds  user     3 presets  no sound\n"));
    EXPECT_THAT(all, HasSubstr("Drones  factory  1 preset   hums; no sound\n"));
    EXPECT_THAT(all, HasSubstr("Bad     user     cannot be read: neither"));
    EXPECT_THAT(out("banks clouds"), HasSubstr("2  Rain  no sound\n"));

    const auto found = json::parse(out("banks --search RAIN --json"));
    ASSERT_EQ(found.size(), 3u); // two of Clouds, one of Storm
    EXPECT_EQ(found[2]["name"], "Big\nrain");
    EXPECT_THAT(out("banks --search big"), HasSubstr("Storm  1  Big?rain\n"));
    EXPECT_THAT(out("banks storm"), HasSubstr("live input"));
    const auto banks = json::parse(out("banks --json"));
    EXPECT_EQ(banks[2]["purpose"], "hums") << "of a factory bank, Drones";
    EXPECT_FALSE(banks[1].contains("purpose"));
    EXPECT_EQ(banks[3]["live"], 1);
    EXPECT_EQ(json::parse(out("banks storm --json"))["presets"][0]["tempo"], false);

    // half way from 0.5 to 400 Hz on a knob that bends by the third power: 0.5 + 399.5 / 8
    EXPECT_THAT(out("preset show clouds haze"), HasSubstr("Density  50.4375 Hz\n"));
    EXPECT_EQ(json::parse(out("preset show clouds '#1' --json"))["record"]["Density_0"], 200.25);
    EXPECT_THAT(out("banks --shared-folder none"), HasSubstr("Drones"));
    EXPECT_THAT(out("--shared-folder none where"), HasSubstr("--shared-folder, does not exist"));
    EXPECT_FALSE(fs::exists(folder / "none"));
}

TEST_F(Library, AnExportHoldsNoPlaceOfThisComputerAndFailsForASoundThatItLacks) {
    writeWav(folder / "tone.wav", tone(2000));
    const std::string away = (folder / "tone.wav").string();
    fs::create_directory(shared() / "deep");
    fs::copy(away, shared() / "deep/tone.wav");
    const PropertyDictionary damaged{{"FLAC", PropertyData(PropertyData::Bytes(100))}};
    const PropertyDictionary eleven = keptSound(std::vector<float>(66000), 100).value(); // minutes
    const std::pair<const char*, PropertyDictionary> samples[] = {
        {"/Up/Here", {{"Path", away}, {"RelativePath", away}, {"New", PropertyArray{away, "1/8"}}}},
        {"Mended", {{"Path", (shared() / "deep/tone.wav").string()}, {"Audio", damaged}}},
        {"Gone", {{"Path", "C:\\Kim\\gone.wav"}, {"RelativePath", "a/gone.wav"}}},
        {"Lost", {{"Path", "/lost.wav"}, {"Audio", damaged}}},
        {"Other", {{"Path", away}, {"ContentHash", "-"}, {"Audio", damaged}}},
        {"Long", {{"Path", "/lost.wav"}, {"Audio", eleven}}},
        {"None", {{"New", "/lone"}, {"RelativePath", "../../Kim/up.wav"}}}};
    Bank given;
    for (const auto& [name, sample] : samples)
        given[name] = PropertyDictionary{
            {kSnapshotTags, name}, {"Sample_0", sample}, {"New", "file://" + away}};
    put(shared() / "Clouds.zephyra", given);

    const ProgramRun ran = run("preset export Clouds -o away.zephyra");
    EXPECT_EQ(std::tuple(ran.code, ran.out), std::tuple(1, "away.zephyra holds 7 presets\n"));
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 3) << ran.err;
    for (const std::string& said :
         {"Other\" goes without its sound: its copy is damaged, and " + away,
          std::string("\"Gone\" goes without its sound: C:\\Kim\\gone.wav is missing"),
          std::string("\"Lost\" goes without its sound: the copy of /lost.wav that goes along is")})
        EXPECT_THAT(ran.err, HasSubstr(said));
    EXPECT_THAT(run("render -o o.wav --bank Clouds --preset Lost").err,
                HasSubstr("the sound of preset \"Lost\" is damaged: the copy of /lost.wav"));

    const std::string text = readText(folder / "away.zephyra");
    for (const std::string& place :
         {folder.path().string(), std::string("Kim"), std::string("/lost")})
        EXPECT_EQ(text.find(place), text.npos) << place;
    for (const char* kept : {"/Up/Here", "1/8", "/lone", "a/gone.wav", "deep/tone.wav"})
        EXPECT_THAT(text, HasSubstr(kept));
    fs::remove(away); // as nobody else has it
    out("preset import away.zephyra --as Here --shared-folder elsewhere");
    for (const char* name : {"/Up/Here", "Mended"})
        out("render -o o.wav --seconds 0.1 --shared-folder elsewhere --bank Here --preset " +
            std::string(name));
}

TEST_F(Library, PresetsAreCopiedMovedRenamedAndDeletedUnderNewKeys) {
    out("preset copy Drones deep Clouds");
    EXPECT_THAT(names("Clouds"), ElementsAre("Haze", "Rain", "rain", "Deep"));
    EXPECT_TRUE(bankIn(shared() / "Clouds.zephyra").contains("3 - 24.01.2065 | 15:50:00"));
    EXPECT_THAT(out("preset copy Clouds Haze clouds"), HasSubstr("\"Haze 2\" is in \"Clouds\""));
    out("preset move Clouds 'haze 2' 2");
    EXPECT_THAT(names("Clouds"), ElementsAre("Haze", "Haze 2", "Rain", "rain", "Deep"));
    out("preset rename Clouds 4 Drizzle");
    out("preset move Clouds Drizzle --to New");
    EXPECT_THAT(names("Clouds"), ElementsAre("Haze", "Haze 2", "Rain", "Deep"));
    EXPECT_THAT(names("New"), ElementsAre("Drizzle"));
    // A built-in sample that cannot be copied does not keep anybody from making room.
    fs::create_directory(factory() / "Blackbird.mp3");
    out("preset delete Clouds Rain --yes");
    EXPECT_THAT(names("Clouds"), ElementsAre("Haze", "Haze 2", "Deep"));
    out("preset rename new Newer");
    out("preset delete Newer --yes");
    EXPECT_THAT(out("banks"), Not(HasSubstr("New")));
    out("preset copy Clouds '*' Drones --yes"); // saving into a factory's bank makes the user's own
    EXPECT_THAT(names("Drones"), ElementsAre("Deep", "Haze", "Haze 2", "Deep 2"));
    for (int i = 0; i < 2; ++i) out("preset copy Drones '*' Drones");
    out("preset copy Drones '*' Copy"); // of 16, whose keys would be sorted as text
    EXPECT_EQ(names("Copy"), names("Drones"));
    EXPECT_THAT(names("Copy")[15], "Deep 2 2 2");
}

TEST_F(Library, AFactoryBankBecomesTheUsersOwnOnlyWithYesAndIsAskedForOnce) {
    put(factory() / "Éole.zephyra", {{"0 - a", preset("Wind")}});
    for (const char* const alike : {"clouds.zephyra", "CLOUDS.zephyra"})
        put(factory() / alike, {{"0 - a", preset("Mist")}});
    put(folder / "Drones.zephyra", {{"0 - a", preset("Given")}});
    const std::string save = "render in.wav --seconds 0.1 -o o.wav --save-preset P --save-bank ";
    writeText(folder / "o.wav", "");
    const std::string eole = "'E\u0301OLE' ";
    const std::pair<std::string, const char*> cases[] = {
        {save + "Drones", "\"Drones\" is a factory bank; choose another name with --save-bank, or"},
        {save + eole, "\"Éole\" is a factory bank; choose another name with --save-bank, or add"},
        {"preset copy Clouds Haze drones",
         "\"Drones\" is a factory bank; name another bank, or add"},
        {"preset move Clouds Haze --to " + eole, "\"Éole\" is a factory bank; name another bank"},
        {"preset import Drones.zephyra",
         "\"Drones\" is a factory bank; choose another name with --as"},
        {"preset import Drones.zephyra --bank " + eole, "\"Éole\" is a factory bank; name another"},
        {"preset rename Clouds drones", "\"Drones\" is a factory bank; choose another name, or"},
    };
    const auto banks = [this] { return json::parse(out("banks --json")); };
    const auto before = banks();
    for (const auto& [arguments, said] : cases) expectRefused(arguments, 2, said);
    EXPECT_EQ(banks(), before);

    out(save + "Clouds"); // the user's
    EXPECT_THAT(names("Clouds"), ElementsAre("Haze", "Rain", "rain", "P"));
    out(save + eole + "--yes");
    out("render in.wav --seconds 0.1 --save-preset Q --save-bank " + eole); // the user's by now
    out("preset copy Clouds Haze " + eole);
    EXPECT_THAT(names("Éole"), ElementsAre("Wind", "P", "Q", "Haze"));
    out("preset import Drones.zephyra --yes");
    EXPECT_THAT(names("Drones"), ElementsAre("Given"));
    out("preset import Drones.zephyra --as drones"); // nothing of the factory's shows any more
    out("preset rename Drones Mine");
    out("preset rename Mine Drones --yes");
    out("preset move Clouds Rain --to Drones");
    EXPECT_THAT(names("Drones"), ElementsAre("Given", "Rain"));
}

TEST_F(Library, NamesThatBeginWithADashStandBehindTwo) {
    out("render in.wav --seconds 0.1 -o -o.wav --save-bank -bank --save-preset -p");
    EXPECT_THAT(out("banks -- -bank"), HasSubstr("1  -p  "));
    out("preset copy -- -bank -p Clouds");
    out("preset move Clouds --to -bank -- Haze");
    out("preset rename Clouds -- -p -q"); // CLI11 leaves a command whose words are all there
    out("preset rename Clouds Rain -- -r");
    EXPECT_THAT(names("Clouds"), ElementsAre("-r", "rain", "-q"));
    EXPECT_THAT(names("-bank"), ElementsAre("-p", "Haze"));
    out("preset export -- -bank");
    EXPECT_THAT(run("preset import none.zephyra -- -bank.zephyra").err, HasSubstr("none.zephyra"));
    EXPECT_EQ(out("samples import in.wav -- -o.wav"), "in.wav is there\n-o.wav is there\n");
    out("render in.wav --seconds 0.1 --out-dir . --type au -- -o.wav");
    expectRefused("banks -bank", 2, "(names that begin with - go last, behind --)");
    expectRefused("preset rename Clouds a b -- c", 2, "needs BANK [PRESET] NEW");
    expectRefused("preset show -- -bank 9", 1, "`zephyra banks -- \"-bank\"` lists all");
    put(factory() / "-D.zephyra", {});
    for (const char* arguments : {"info -- -o.wav", "preset show -- -bank -p",
                                  "preset --shared-folder shared copy Clouds -- 1 -n",
                                  "check -- ./-bank.zephyra", "preset delete --yes -- -bank"})
        out(arguments);
    expectRefused("preset rename -- -D x", 1, "`zephyra preset copy -- \"-D\" '*' NEW`");
}

TEST_F(Library, ABankThatWasExportedIsTheSameOnAnotherMachineAndBringsItsSound) {
    writeWav(folder / "tone.wav", tone(2000));
    EXPECT_EQ(out("samples import tone.wav"), "tone.wav is there\n");
    EXPECT_THAT(out("samples"), HasSubstr("tone.wav"));
    PropertyDictionary played = preset("Played");
    played["Sample_0"] = PropertyDictionary{{"Path", "tone.wav"}, {"RelativePath", "tone.wav"}};
    put(shared() / "Clouds.zephyra", {{"0 - a", played}, {"1 - b", preset("Silent")}});

    EXPECT_EQ(out("preset export Clouds -o away.zephyra"), "away.zephyra holds 2 presets\n");
    const std::string elsewhere = " --shared-folder " + (folder / "elsewhere").string();
    out("preset import away.zephyra --as Here" + elsewhere);
    Bank arrived = bankIn(folder / "elsewhere/Here.zephyra");
    EXPECT_EQ(recordOf(arrived, "0 - a")->at("Sample_0").as<PropertyDictionary>()->erase("Audio"),
              1u);
    EXPECT_TRUE(arrived == bankIn(shared() / "Clouds.zephyra"));
    EXPECT_EQ(out("check elsewhere/Here.zephyra" + elsewhere), "2 presets, nothing wrong\n");

    EXPECT_EQ(run("samples import tone.wav").code, 1);
    EXPECT_EQ(out("samples import tone.wav --as bell"), "bell.wav is there\n");
    writeText(folder / "tone.wav", "other");
    out("samples import tone.wav --yes");
    EXPECT_TRUE(readText(shared() / "tone.wav") == "other");
}

TEST_F(Library, AnImportGoesOnAfterWhatItCannotTakeAndSaysAtTheEndHowManyItTook) {
    fs::create_directories(folder / "loops/sub.wav");
    for (const char* const name : {"loops/b.wav", "loops/a.raw", "loops/._a.raw", "loops/note.txt"})
        writeText(folder / name, name);
    const std::string clouds = " shared/Clouds.zephyra", more = " sound.zephyra";
    put(folder / "sound.zephyra", {{"0 - a", preset("One")}});
    const std::tuple<std::string, int, std::string, std::string> cases[] = {
        {"samples import loops", 0, "a.raw is there\nb.wav is there\n",
         "zephyra: loops: 1 file that is no sample was left out\n"
         "zephyra: loops: 1 folder in it was left out; name such a folder itself to import what it "
         "holds\n"},
        {"samples import none.wav in.wav loops/b.wav loops/note.txt", 1, "in.wav is there\n",
         "zephyra: none.wav cannot be read: there is no such file\n"
         "zephyra: a sample \"b.wav\" is there already; choose another name with --as, or add "
         "--yes to replace it\n"
         "zephyra: loops/note.txt: this is no sample; name a file whose name ends in one of raw, "
         "wav, aif, aiff, aifc, caf, mp3, m4a\n"
         "zephyra: 1 of 4 was imported\n"},
        {"samples import loops/sub.wav in.wav", 1, "",
         "zephyra: loops/sub.wav holds no sample; name a folder of sound files\n"},
        {"samples import loops --as x", 2, "",
         "zephyra: --as names one sample; import one file with it\n"},
        {"preset import none.zephyra" + more + clouds, 1, "\"sound\" is there, with 1 preset\n",
         "zephyra: none.zephyra cannot be read: there is no such file\n"
         "zephyra: a bank \"Clouds\" is there already; choose another name with --as, or add --yes "
         "to replace it\n"
         "zephyra: 1 of 3 was imported\n"},
    };
    for (const auto& [arguments, code, printed, said] : cases) {
        const ProgramRun ran = run(arguments);
        EXPECT_EQ(ran.code, code) << arguments;
        EXPECT_EQ(std::tuple(ran.out, ran.err), std::tuple(printed, said));
    }
    EXPECT_EQ(readText(shared() / "a.raw"), "loops/a.raw");
}

TEST_F(Library, ABankWhoseFileHasAnOddNameIsShownSoThatItCanBeTyped) {
    put(shared() / "b\xff.zephyra", {{"0 - a", preset("Odd")}});
    put(shared() / "b\\xFF.zephyra", {{"0 - a", preset("v\\x41")}});
    EXPECT_THAT(
        out("banks"),
        HasSubstr(
            "b\\x5CxFF  user     1 preset   no sound\nb\\xFF     user     1 preset   no sound\n"));
    EXPECT_EQ(out("preset copy Clouds Haze 'b\\xff'"), "\"Haze\" is in \"b\\xFF\"\n");
    const std::string save = "render in.wav --seconds 0.1 --set Density=50 --save-bank 'b\\xFF' ";
    out(save + "--save-preset More --bank 'b\\xFF' --preset Odd -o o.wav --save-state o.state");
    EXPECT_THAT(readText(folder / "o.state"), HasSubstr("b\\xFF.zephyra"));
    EXPECT_EQ(out("preset export 'b\\xFF'"), "b\\xFF.zephyra holds 3 presets\n");
    EXPECT_THAT(run("preset import 'b\\xFF.zephyra'").err, HasSubstr("\"b\\x5CxFF\" is there"));
    out("preset import 'shared/b\xff.zephyra' --bank Into");
    out("preset rename 'b\\xFF' Renamed");
    EXPECT_THAT(names("Renamed"), ElementsAre("Odd", "Haze", "More"));
    EXPECT_EQ(names("Into"), names("Renamed"));
}

TEST_F(Library, ASampleIsImportedUnderTheNameThatItThenHasByOneAtATime) {
    writeText(folder / "my%20tone.wav", "percent");
    EXPECT_EQ(out("samples import my%20tone.wav"), "my tone.wav is there\n");
    EXPECT_EQ(out("samples import in.wav --as ' my tone.wav ' --yes"), "my tone.wav is there\n");
    EXPECT_TRUE(readText(shared() / "my tone.wav") == readText(folder / "in.wav"));
    writeText(shared() / "odd\xff\n.raw", "");
    EXPECT_THAT(out("samples"), HasSubstr("odd\\xFF\\x0A.raw       shared"));
    EXPECT_THAT(out("samples --json"), HasSubstr("\"name\": \"odd\\\\xFF\\\\x0A.raw\""));

    run("samples import in.wav --as Same && mkdir won$i & done; wait",
        "for i in 0 1 2 3 4 5 6 7; do");
    int won = 0;
    for (const char i : std::string("01234567")) won += fs::remove(folder / "won" += i);
    EXPECT_EQ(won, 1);
}

TEST_F(Library, WhatIsStoppedSaysSoAndNeverThatNothingIsWrong) {
    put(shared() / "Bad.zephyra", {{"0 - a", PropertyDictionary{}}});
    const CommandContext context{.folders = {shared(), factory()}};
    const std::string clouds = "shared/Clouds.zephyra", bad = "shared/Bad.zephyra";
    const auto check = [&](auto... asked) { return [=] { return runCheck(context, {asked...}); }; };
    const SampleImportRequest samples{{"in.wav", "b.wav"}, {}, false};
    const PresetImportRequest presets{{clouds}, {}, {}, true};
    const std::tuple<std::function<ExitCode()>, std::string, const char*> cases[] = {
        {check(clouds), clouds, ""},
        {check(clouds, false, true), clouds, "[],\n  \"interrupted\": true\n}\n"},
        {check(bad, true), bad, "a string SnapshotTags is needed\n"},
        {[&] { return runSampleImport(context, samples); },
         "in.wav was not imported; 0 of 2 were imported", ""},
        {[&] { return runPresetImport(context, presets); }, clouds, ""}};
    for (const auto& [command, named, end] : cases) {
        const pid_t child = ::fork();
        if (child == 0) {
            fs::current_path(folder.path());
            if (!std::freopen("out", "w", stdout) || !std::freopen("err", "w", stderr)) ::_exit(9);
            watchInterrupts();
            std::raise(SIGINT);
            std::exit(static_cast<int>(command()));
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(WEXITSTATUS(status), 130);
        EXPECT_THAT(readText(folder / "err"), HasSubstr("interrupted; " + named));
        EXPECT_THAT(readText(folder / "out"), AllOf(EndsWith(end), Not(HasSubstr("nothing"))));
        EXPECT_FALSE(fs::exists(shared() / "Bad (mended).zephyra"));
    }
}

TEST_F(Library, CheckNamesWhatIsWrongAtItsKeyAndMendsACopyOnly) {
    PropertyDictionary wrong = preset("Wrong");
    wrong["Pan_0"] = "left";
    wrong["Sample_0"] = PropertyDictionary{{"Path", "/gone/bird.wav"}};
    put(shared() / "Bad.zephyra", {{"0 - a", preset("Fine")}, {"1 - b", wrong}});
    const ProgramRun checked = run("check shared/Bad.zephyra");
    EXPECT_EQ(checked.code, 1);
    EXPECT_THAT(checked.out, HasSubstr("1 - b.Pan_0: a value of type string"));
    EXPECT_THAT(checked.out, HasSubstr("1 - b.Sample_0: "));
    EXPECT_THAT(checked.out, HasSubstr("/gone/bird.wav"));
    EXPECT_THAT(checked.out, Not(HasSubstr("0 - a")));

    const std::string whole = readText(shared() / "Bad.zephyra");
    const std::string cut = whole.substr(0, whole.find("Wrong"));
    writeText(shared() / "Bad.zephyra", cut);
    EXPECT_THAT(run("check shared/Bad.zephyra").err, HasSubstr("--repair writes"));
    EXPECT_THAT(out("check shared/Bad.zephyra --repair"), HasSubstr("1 could not be saved"));
    EXPECT_THAT(names("Bad (mended)"), ElementsAre("Fine"));
    EXPECT_EQ(out("check 'shared/Bad (mended).zephyra'"), "1 preset, nothing wrong\n");
    EXPECT_TRUE(readText(shared() / "Bad.zephyra") == cut);
    EXPECT_THAT(run("check shared/Bad.zephyra --repair").err, HasSubstr("is there already"));

    writeText(shared() / "Bad.zephyra", whole); // what a repair drops is what cannot be used
    fs::remove(shared() / "Bad (mended).zephyra");
    out("check shared/Bad.zephyra --repair");
    Bank mended = bankIn(shared() / "Bad (mended).zephyra");
    const std::string longest = std::string(247, 'x') + ".zephyra";
    writeText(shared() / longest, whole);
    EXPECT_THAT(out("check shared/" + longest + " --repair"), HasSubstr("xx (mended).zephyra"));
    EXPECT_FALSE(recordOf(mended, "1 - b")->contains("Pan_0"));
    EXPECT_TRUE(recordOf(mended, "1 - b")->contains("Sample_0"));
}

/// The program that has the file open; -1 when none comes to that. A shell that is about to run it
/// holds what this process has open, too.
pid_t programThatOpened(const fs::path& file) {
    std::error_code ignored; // processes end, and some are others'
    for (int tries = 0; tries < 2000; ++tries) {
        for (const std::string& pid : file_calls::list("/proc", ignored)) {
            const auto process = fs::path("/proc") / pid;
            if (fs::read_symlink(process / "exe", ignored).filename() != "zephyra") continue;
            for (const std::string& open : file_calls::list(process / "fd", ignored))
                if (fs::read_symlink(process / "fd" / open, ignored) == file)
                    return std::atoi(pid.c_str());
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return -1;
}

TEST_F(Library, WaitsForAnotherProgramAndMeetsNothingThatItMovedNorGoesOnWhenTheUserStops) {
    const Bank before = bankIn(shared() / "Clouds.zephyra");
    const Bank theirs = renumberedBank(before, {"1 - b", "0 - a", "2 - c"});
    const std::pair<const char*, const char*> cases[] = {
        {"preset delete Clouds Haze --yes", "\"Haze\" stands elsewhere"},
        {"preset move Clouds 3 1", "\"Haze\" stands elsewhere"},
        {"preset delete Clouds --yes", "\"Clouds\" has been changed by another program"},
        {"samples import in.wav --as Taken", "is there already"},
    };
    writeText(shared() / "Taken.wav", "");
    for (const auto& [arguments, said] : cases)
        for (const bool isStopped : {true, false}) {
            SCOPED_TRACE(arguments);
            put(shared() / "Clouds.zephyra", before);
            FileLock lock;
            ASSERT_FALSE(lock.lock(shared() / BankFolder::kLockName));
            ProgramRun ran;
            std::thread program([&, words = arguments] { ran = run(words); });
            const pid_t waiting = programThatOpened(shared() / BankFolder::kLockName);
            put(shared() / "Clouds.zephyra", theirs);
            if (isStopped && waiting > 0)
                ::kill(waiting, SIGINT);
            else
                lock.unlock();
            program.join();
            EXPECT_EQ(ran.code, isStopped ? 130 : 1);
            EXPECT_THAT(ran.err,
                        HasSubstr(isStopped ? "interrupted while another program held" : said));
            EXPECT_TRUE(bankIn(shared() / "Clouds.zephyra") == theirs);
        }
}

} // namespace
} // namespace zephyra
