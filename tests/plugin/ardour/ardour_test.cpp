// Ardour loads, automates, saves, reopens and exports both plug-ins in both formats; an export has
// the bytes of `zephyra render`.
#include "tests/cli/program.h"
#include "tests/support/other_program.h"

namespace zephyra {
namespace {

struct Row {
    const char *format, *name;
};

constexpr std::size_t kFrames = 192'000, kAutomated[] = {30'960, 49'392, 77'040};

/// A home of its own for Ardour, with the plug-ins, a float format to export in, and a session.
struct ArdourTest : ProgramTest, testing::WithParamInterface<Row> {
    void SetUp() override {
        if (outputOf("command -v ardour7-lua").empty())
            GTEST_SKIP() << "Ardour is not installed: it loads no plug-in here";
        const fs::path home = folder / "home", exports = home / ".config/ardour7/export";
        fs::create_directories(exports);
        fs::create_directories(home / ".vst3");
        fs::create_directories(home / "lv2");
        fs::create_directory_symlink(ZEPHYRA_BINARY_DIR "/plugin/lv2/zephyra.lv2",
                                     home / "lv2/zephyra.lv2");
        for (const char* file : {"float.format", "float.preset"})
            fs::copy(fs::path(ZEPHYRA_SOURCE_DIR "/tests/plugin/ardour") / file, exports);
        const fs::path bundle =
            ZEPHYRA_BINARY_DIR "/plugin/VST3/" + std::string(GetParam().name) + ".vst3";
        if (std::string(GetParam().format) == "VST3") {
            if (!fs::exists(bundle)) GTEST_SKIP() << "the VST3 plug-ins are not built";
            // What is no older than Ardour's note of it counts as unknown.
            outputOf("cp -r " + quoted(bundle) + " " + quoted(home / ".vst3") + " && find " +
                     quoted(home / ".vst3") + " -exec touch -d yesterday {} +");
            outputOf(
                inHome("LD_LIBRARY_PATH=/usr/lib/ardour7 /usr/lib/ardour7/ardour-vst3-scanner -f " +
                       quoted(home / ".vst3" / bundle.filename())));
        }
    }

    std::string inHome(const std::string& command) const {
        return "cd " + quoted(folder.path()) +
               " && env DISPLAY=:9999 HOME=" + quoted(folder / "home") +
               " ZEPHYRA_SHARED_FOLDER=" + quoted(folder / "shared") +
               " LV2_PATH=" + quoted(folder / "home/lv2") + ":/usr/lib/lv2 " + command;
    }
    /// What session.lua says; "done" ends what it did.
    std::string ardour(const std::string& arguments) const {
        return outputOf(inHome("timeout 120 ardour7-lua " ZEPHYRA_SOURCE_DIR
                               "/tests/plugin/ardour/session.lua " +
                               arguments + " </dev/null 2>&1"));
    }
    void make() const {
        const fs::path session = folder / "s";
        EXPECT_THAT(ardour("make " + quoted(session) + " " + GetParam().format + " '" +
                           GetParam().name + "'"),
                    HasSubstr("done"));
        for (const char* kind : {"audiofiles", "midifiles"})
            fs::create_directories(session / "interchange/s" / kind);
        fs::copy(folder / "notes.mid", session / "interchange/s/midifiles");
        fs::copy(folder / "in.wav", session / "interchange/s/audiofiles");
    }
    /// The samples of an export, in a process of its own.
    std::string bounced(const std::string& name) const {
        std::string said; // again, when Ardour has died of itself; see session.lua
        for (int i = 0; i < 3 && said.find("done") == said.npos; ++i)
            said = ardour("bounce " + quoted(folder / "s") + " " + name + " 0 " +
                          std::to_string(kFrames));
        EXPECT_THAT(said, HasSubstr("done"));
        return samples(folder / "s" / (name + ".wav"));
    }
    /// What the command makes of the state that Ardour saved, and of what Ardour plays to it.
    std::string byCommand() {
        outputOf("cd " + quoted(folder / "s/plugins") +
                 " && cat */state1/state.ttl | tr -d '\\n' | "
                 "sed 's/.*urn:zephyra:state>[^\"]*\"*//; s/\".*//' | base64 -d > " +
                 quoted(folder / "state"));
        writeText(folder / "a.csv", "0.645,Pitch,12,step\n1.605,Pitch,-12,step\n"
                                    "1.029,Width,1,step\n");
        writeText(folder / "r.wav",
                  rendered(ZEPHYRA_SOURCE_DIR
                           "/resources/Zephyra_Sample08.mp3 --state state "
                           "--automate a.csv --midi notes.mid --tempo 125 --meter 3/4 "
                           "--transport play --cut --float --block 512 --rate 48000 --seconds 4"));
        return samples(folder / "r.wav");
    }
    /// What stands behind the header, which has a date.
    static std::string samples(const fs::path& file) {
        const std::string all = readText(file);
        const auto data = all.find("data");
        return data == all.npos ? "" : all.substr(data + 8, kFrames * 8);
    }
    static std::vector<float> floats(const std::string& samples) {
        std::vector<float> values(samples.size() / 4);
        std::memcpy(values.data(), samples.data(), 4 * values.size());
        return values;
    }
    /// Of what is not finite, a lot.
    static float peak(const std::string& samples) {
        float most = 0.0f;
        for (const float value : floats(samples))
            most = std::max(most, std::isfinite(value) ? std::abs(value) : 1e9f);
        return most;
    }
};

/// Two notes, in ticks of 1/1920 quarter.
std::string twoNotes() {
    const std::string events(
        "\0\x90\x3c\x64\x9e\0\x80\x3c\x40\0\x90\x40\x64\x9e\0\x80\x40\x40\0\xff\x2f\0", 22);
    return std::string("MThd\0\0\0\6\0\0\0\1\7\x80MTrk\0\0\0", 21) +
           static_cast<char>(events.size()) + events;
}

TEST_P(ArdourTest, SoundsTheSameInEachBounceOfASavedSession) {
    writeText(folder / "notes.mid", twoNotes());
    outputOf("sox -n -r 48000 -c 2 -b 16 " + quoted(folder / "in.wav") +
             " synth 4 pluck A3 pluck C4 gain -6");
    make();
    const std::string first = bounced("a");
    EXPECT_EQ(first.size(), kFrames * 8);
    EXPECT_GT(peak(first), 0.01f);
    EXPECT_LT(peak(first), 4.0f);
    EXPECT_EQ(bounced("b") == first, true) << "the second bounce differs";
    if (std::string(GetParam().format) + GetParam().name != "LV2Zephyra Instrument") return;
    // Alone on a track whose transport it hears. Ardour may take automation a block off, so the
    // quarter of a second behind it is left out.
    const auto exported = floats(first), command = floats(byCommand());
    ASSERT_EQ(command.size(), exported.size());
    float worst = 0.0f;
    for (std::size_t frame = 0, next = 0; frame < kFrames; frame = next + 12'512) {
        next = kFrames;
        for (const std::size_t point : kAutomated)
            if (point >= frame + 512) next = std::min(next, point - 512);
        for (std::size_t i = 2 * frame; i < 2 * next; ++i)
            worst = std::max(worst, std::abs(exported[i] - command[i]));
    }
    EXPECT_LT(worst, 1e-6f);
}

INSTANTIATE_TEST_SUITE_P(Plugins, ArdourTest,
                         testing::Values(Row{"LV2", "Zephyra"}, Row{"LV2", "Zephyra Instrument"},
                                         Row{"VST3", "Zephyra"}, Row{"VST3", "Zephyra Instrument"}),
                         [](const auto& one) {
                             return one.param.format +
                                    std::string(std::string_view(one.param.name).ends_with("t")
                                                    ? "Instrument"
                                                    : "Effect");
                         });

} // namespace
} // namespace zephyra
