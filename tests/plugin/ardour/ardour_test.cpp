// Ardour loads, automates, saves, reopens and exports both plug-ins in both formats, through a
// change of tempo and meter; each export is what `zephyra render` makes.
#include "tests/cli/program.h"
#include "tests/support/other_program.h"

namespace zephyra {
namespace {

using namespace std::string_view_literals;

struct Row {
    const char *format, *name;
    bool isVst3() const { return std::string_view(format) == "VST3"; }
    bool isInstrument() const { return std::string_view(name).ends_with("t"); }
};

constexpr std::size_t kFrames = 192'000;

/// An event of a MIDI file so many ticks, below 16384, after the one before.
std::string after(int ticks, std::string_view event) {
    const char wait[] = {static_cast<char>(0x80 | ticks >> 7), static_cast<char>(ticks & 0x7F)};
    return std::string(wait, 2).append(event);
}

/// The session's tempos and meters, and what it plays, in ticks of 1/1920 quarter.
std::string music(bool withNotes) {
    std::string notes[] = {after(0, "\x90\x3c\x64") + after(960, "\x80\x3c\x40") +
                               after(960, "\x90\x40\x64") + after(960, "\x80\x40\x40"),
                           after(7680, "\x90\x43\x64") + after(960, "\x80\x43\x40")};
    if (!withNotes) notes[0] = after(2880, "\xff\1\0"sv), notes[1] = "";
    const std::string events =
        after(0, "\xff\x51\3\3\xa9\x80") + after(0, "\xff\x58\4\2\2\x18\x08") + notes[0] +
        after(8640, "\xff\x51\3\7\x53\0"sv) + after(0, "\xff\x58\4\3\2\x18\x08") + notes[1] +
        after(0, "\xff\x2f\0"sv);
    return std::string("MThd\0\0\0\6\0\0\0\1\7\x80MTrk\0\0\0", 21) +
           static_cast<char>(events.size()) + events;
}

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
        if (GetParam().isVst3()) {
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
    /// The state that Ardour saved.
    std::string state() const {
        const char* const text = GetParam().isVst3()
                                     ? "s.ardour | tr -d '\n' | sed 's/.*<chunk>//; s/<.*//"
                                     : "plugins/*/state1/state.ttl | tr -d '\n' | "
                                       "sed 's/.*urn:zephyra:state>[^\"]*\"*//; s/\".*//";
        const std::string all =
            outputOf("cd " + quoted(folder / "s") + " && cat " + text + "' | base64 -d");
        const auto begin = all.find("<?xml"), end = all.find("</plist>");
        return end == all.npos ? "" : all.substr(begin, end + 8 - begin);
    }
    /// What the command makes of it, and of what Ardour plays to it. An effect gets no notes.
    std::string byCommand() {
        writeText(folder / "state", state());
        writeText(folder / "music.mid", music(GetParam().isInstrument()));
        // At the start of the block that holds each point, or of the next one.
        writeText(folder / "a.csv",
                  GetParam().isVst3() ? "1.76,Play Stop,0\n1.8773,Play Stop,1\n3.296,Width,1\n"
                                      : "1.7706,Play Stop,0\n1.888,Play Stop,1\n3.3066,Width,1\n");
        const std::string sound = ZEPHYRA_SOURCE_DIR "/resources/Zephyra_Sample08.mp3";
        writeText(
            folder / "r.wav",
            rendered((GetParam().isInstrument() ? sound : "in.wav --as effect --sample " + sound) +
                     " --state state --automate a.csv --midi music.mid --midi-tempo "
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
    /// From a frame to another. Of what is not finite, a lot.
    static float peak(const std::string& samples, std::size_t from = 0, std::size_t to = kFrames) {
        float most = 0.0f;
        for (const float value : floats(samples.substr(8 * from, 8 * (to - from))))
            most = std::max(most, std::isfinite(value) ? std::abs(value) : 1e9f);
        return most;
    }
};

TEST_P(ArdourTest, SoundsLikeTheCommandInEachBounceOfASavedSession) {
    writeText(folder / "notes.mid", music(true));
    outputOf("sox -n -r 48000 -c 2 -b 16 " + quoted(folder / "in.wav") +
             " synth 4 pluck A3 pluck C4 gain -6");
    make();
    const std::string first = bounced("a");
    ASSERT_EQ(first.size(), kFrames * 8);
    EXPECT_GT(peak(first), 0.01f);
    EXPECT_LT(peak(first), 4.0f);
    EXPECT_EQ(bounced("b") == first, true) << "the second bounce differs";
    const auto exported = floats(first), command = floats(byCommand());
    EXPECT_EQ(std::ranges::mismatch(exported, command).in1 - exported.begin(), 2 * kFrames);
    // What was stopped and then armed comes in on beat 9, a bar of 3/4, at the tempo of before it.
    if (!GetParam().isInstrument()) return;
    EXPECT_EQ(peak(first, 98'700, 138'240), 0.0f);
    EXPECT_GT(peak(first, 138'240, 144'000), 0.01f);
}

INSTANTIATE_TEST_SUITE_P(Plugins, ArdourTest,
                         testing::Values(Row{"LV2", "Zephyra"}, Row{"LV2", "Zephyra Instrument"},
                                         Row{"VST3", "Zephyra"}, Row{"VST3", "Zephyra Instrument"}),
                         [](const auto& one) {
                             return one.param.format +
                                    std::string(one.param.isInstrument() ? "Instrument" : "Effect");
                         });

} // namespace
} // namespace zephyra
