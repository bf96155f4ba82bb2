// A batch as command lines: what shells make of them, and that they give what the batch gives.

#include "cli/terminal/shell_line.h"
#include "platform/files/folder_entries.h"
#include "tests/cli/program.h"

namespace zephyra {
namespace {

using namespace testing;

TEST(ShellLine, GivesAShellEveryByteOfEveryWordOnOneLine) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) all += static_cast<char>(byte);
    const ShellCommand command = {"printf", "%s\\n", all,    "",      "\n", "a\n\n",  "--",
                                  "=x",     "~",     "it's", "$HOME", "#1", "${nl%.}"};
    const std::string line = shellLine({{"true"}, command});
    EXPECT_EQ(std::ranges::count_if(line, [](unsigned char c) { return c < 0x20 || c == 0x7F; }),
              0);
    std::string expected;
    for (std::size_t i = 2; i < command.size(); ++i) expected += command[i] + "\n";
    const TemporaryFolder folder;
    writeText(folder / "line", line);
    for (const char* shell : {"sh", "bash"}) {
        const std::string run = std::string(shell) + " '" + (folder / "line").string() + "' >'" +
                                (folder / "out").string() + "'";
        EXPECT_EQ(std::system(run.c_str()), 0);
        EXPECT_TRUE(readText(folder / "out") == expected) << line;
    }
    EXPECT_EQ(shellLine({{"false"}, {"a=b", "a=b", "=b", "x/y_0"}}),
              "false && 'a=b' a=b '=b' x/y_0");
}

struct DryRun : ProgramTest {
    /// What `zephyra --shared-folder=shared render` with the options prints, a line each.
    std::vector<std::string> linesOf(const std::string& options, int code = 0) {
        const auto before = folder.entries();
        const ProgramRun ended = run("--shared-folder=shared render --dry-run " + options);
        EXPECT_EQ(ended.code, code) << ended.err;
        EXPECT_EQ(folder.entries(), before);
        errors = ended.err;
        std::vector<std::string> lines;
        std::istringstream text(ended.out);
        for (std::string line; std::getline(text, line);) lines.push_back(line);
        return lines;
    }
    /// Each in a shell of its own, the last one first.
    void runBackwards(const std::vector<std::string>& lines) const {
        for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
            writeText(folder / "line", *line);
            EXPECT_EQ(run("--version; sh line").code, 0) << *line;
        }
    }
    std::map<std::string, std::string> filesIn(const fs::path& name) const {
        std::map<std::string, std::string> files;
        for (const std::string& file : folderEntries(folder / name))
            files[file] = readText(folder / name / file);
        return files;
    }

    std::string errors;
};

TEST_F(DryRun, ItsLinesGiveTheSoundsAndPicturesOfTheBatchWhateverNamesHold) {
    fs::copy(folder / "in.wav", folder / "-odd '$x\n\xff.wav");
    for (const char* const preset : {"-p", "'#1'", "'it'\\''s \"$HOME\"'"})
        rendered("in.wav --seconds 0.1 --set Density=90 --save-bank B --save-preset " +
                 std::string(preset));
    const std::string options = "--bank=b --preset '*' --seconds 0.2 --set Density=60 --quiet "
                                "--set 'Rnd Pitch=7' --at 0.1:Pan=1 --float --out-dir '-o x' "
                                "in.wav -- '-odd '\\''$x\n\xff.wav'";
    const auto lines = linesOf(options);
    ASSERT_EQ(lines.size(), 6u);
    std::string seed = lines[0].substr(lines[0].find("--seed"));
    seed.resize(seed.find("-o"));
    runBackwards(lines);
    auto made = filesIn("-o x");
    EXPECT_EQ(made.size(), 12u);
    fs::remove_all(folder / "-o x");
    EXPECT_EQ(run("--shared-folder=shared render " + seed + options).code, 0);
    made["contact-sheet.png"] = readText(folder / "-o x/contact-sheet.png");
    EXPECT_TRUE(made == filesIn("-o x"));
}

TEST_F(DryRun, ARenderThatCannotBeIsToldOfAndTheOthersStand) {
    for (const char* const preset : {"Clouds", "Ears --as effect"})
        rendered("in.wav --seconds 0.1 --save-bank B --save-preset " + std::string(preset));
    fs::create_directory(folder / "out");
    const auto lines = linesOf("--bank B --preset '*' --out-dir out --seed 9", 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0], ZEPHYRA_BINARY_DIR "/cli/zephyra render --shared-folder shared --bank B "
                                           "--preset Clouds --seed 9 -o out/Clouds.wav --picture "
                                           "out/Clouds.png");
    EXPECT_EQ(errors, "zephyra: Ears: preset \"Ears\" listens to live input; name INPUT, a sound "
                      "file to feed it\n");
    EXPECT_THAT(linesOf("--preset clouds --seed 9"),
                ElementsAre(HasSubstr(" --bank B.zephyra --preset Clouds --seed 9 ")));
    for (const auto& [options, code, said] :
         std::initializer_list<std::tuple<const char*, int, const char*>>{
             {"--bank B --preset Ears --out-dir out", 2, "listens to live input"},
             {"--bank B --preset Ears", 2, "listens to live input"},
             {"in.wav --out-dir in.wav", 1, "cannot be made (it is no folder)"},
             {"in.wav --save-bank B --save-preset Ears", 2, "has a preset \"Ears\" already"}})
        expectRefused("render --dry-run " + std::string(options), code, said);
}

TEST_F(DryRun, OneRenderIsOneLineWithTheSeedThatItTakes) {
    rendered("in.wav --seconds 0.1 --seed 77 --save-state a.state");
    environment = "SOURCE_DATE_EPOCH=3000000000";
    const std::pair<const char*, const char*> cases[] = {
        {"in.wav --json",
         " in.wav --shared-folder shared --json --seed 3000000000 -o in-grains.wav"},
        {"--state a.state in.wav -o x.aif", " --state a.state --seed 77 -o x.aif"},
        {"in.wav --live=false", " --live=false --seed 3000000000 -o in-grains.wav"},
        {"--state none -o x -- -i", " render --shared-folder shared --state none -o x -- -i"},
        {"in.wav --picture p.png --seed 5", " --seed 5 -o in-grains.wav --picture p.png"}};
    for (const auto& [options, end] : cases)
        EXPECT_THAT(linesOf(options), ElementsAre(EndsWith(end)));
    fs::create_symlink(ZEPHYRA_BINARY_DIR "/cli/zephyra", folder / "zeph");
    run("--version; ./zeph render in.wav --dry-run >here; PATH=. zeph render in.wav --dry-run "
        ">found");
    EXPECT_THAT(readText(folder / "here"), StartsWith((folder / "zeph render").string()));
    EXPECT_THAT(readText(folder / "found"), StartsWith("zeph render"));
    EXPECT_THAT(run("render in.wav --out-dir out --state a.state --json").out,
                HasSubstr("\"seed\": 77"));
}

} // namespace
} // namespace zephyra
