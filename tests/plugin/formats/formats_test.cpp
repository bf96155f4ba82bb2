// The same blocks, events, MIDI, tempo and state, offline: VST3, LV2 and `zephyra render` give the
// same bytes. VST3 carries notes; controllers, pressure and bend come as JUCE's parameters for
// them, one value a block, before the notes of the same frame, and program changes as an event that
// is meant for output and that few hosts but JUCE's send.
#include "hosting/plugin_parameters.h"
#include "platform/sound/float_file_writer.h"
#include "tests/cli/program.h"
#include "tests/plugin/lv2/lv2_host.h"
#include "tests/plugin/vst3/vst3_plugin.h"

#include <charconv>

namespace zephyra {
namespace {

using enum ControlId;

constexpr int kBlocks = 150;

/// The shortest text that reads back.
template <typename Number>
std::string textOf(Number value) {
    char text[40];
    return {text, std::to_chars(text, std::end(text), value).ptr};
}

/// A parameter from a block's start on. The value is one that each of the ways there can tell
/// exactly: 0..1 as a float, in displayed units, and as text.
struct Change {
    int block;
    ControlId id;
    float normalized;

    const PluginParameter& facts() const {
        return pluginParameters()[static_cast<std::size_t>(id)];
    }
    float linear() const { return linearFromNormalized(facts(), normalized); }
    float displayed() const { return displayedFromLinear(controlRange(id), linear()); }
    bool isExact() const { return linearFromDisplayed(controlRange(id), displayed()) == linear(); }
};

/// The nearest value at or above that is exact.
Change changeTo(int block, ControlId id, float normalized) {
    Change change{block, id, normalized};
    while (!change.isExact() && change.normalized < 1.0f) change.normalized += 1.0f / 64;
    return change;
}

/// What comes at a block's start.
struct Message {
    int block;
    std::array<std::uint8_t, 3> bytes;
    std::size_t length() const { return (bytes[0] & 0xE0) == 0xC0 ? 2 : 3; }
};

struct Row {
    const char* name;
    PluginKind kind;
    double rate;
    int frames;            ///< of a block
    const char* options;   ///< that make the state
    bool programs = false; ///< whether program changes are heard
};

struct FormatsTest : ProgramTest, testing::WithParamInterface<Row> {
    const Row& row = GetParam();
    const std::vector<Change> changes = {
        changeTo(0, width, 0.75f),      changeTo(7, pitch, 0.25f),
        changeTo(20, density, 0.5f),    changeTo(20, jittering, 0.25f),
        changeTo(33, scanning, 0.75f),  changeTo(60, length, 0.25f),
        changeTo(61, echoSwitch, 1.0f), changeTo(90, pan, 0.25f),
        changeTo(100, rndPitch, 0.5f)};
    // No note ends what Play Stop began.
    const std::vector<Message> messages = {
        {3, {0x90, 65, 100}}, {26, {0xE0, 3, 0x50}}, {26, {0x90, 62, 50}},  {40, {0x80, 65, 0}},
        {55, {0xB0, 21, 90}}, {64, {0x80, 62, 0}},   {79, {0xB0, 0, 1}},    {80, {0xC0, 2, 0}},
        {95, {0xB0, 21, 20}}, {98, {0xD0, 99, 0}},   {110, {0xE0, 0, 0x40}}};
    const double tempo = 125.0;
    std::vector<float> input[2]; ///< what the LV2 host plays to an effect
    std::size_t frames() const { return static_cast<std::size_t>(kBlocks * row.frames); }

    void SetUp() override {
        std::uint32_t noise = 1;
        for (std::size_t i = 0; i < frames(); ++i)
            for (auto& channel : input)
                channel.push_back(
                    static_cast<float>((noise = noise * 1664525u + 1013904223u) >> 8) * 0x1p-24f -
                    0.5f);
    }

    void writeInput() const {
        const float* const channels[] = {input[0].data(), input[1].data()};
        FloatFileWriter file;
        ASSERT_TRUE(file.open(folder / "noise.wav", row.rate, 2) &&
                    file.write(channels, static_cast<std::uint32_t>(frames())) && file.close());
    }

    /// With a tick a frame.
    void writeMidi() const {
        std::string events;
        std::uint32_t told = 0;
        for (const Message& message : messages) {
            const auto frame = static_cast<std::uint32_t>(message.block * row.frames);
            const std::uint32_t delta = frame - std::exchange(told, frame);
            for (const int shift : {14, 7, 0})
                events += static_cast<char>((delta >> shift & 127u) | (shift ? 128u : 0u));
            events.append(reinterpret_cast<const char*>(message.bytes.data()), message.length());
        }
        events += std::string("\0\xFF\x2F\0", 4);
        const auto word = [](std::size_t value) {
            return std::string{static_cast<char>(value >> 8), static_cast<char>(value & 255u)};
        };
        const auto quarter = static_cast<std::size_t>(std::lround(row.rate * 60 / tempo));
        writeText(folder / "m.mid", std::string("MThd\0\0\0\6\0\0\0\1", 12) + word(quarter) +
                                        std::string("MTrk\0\0", 6) + word(events.size()) + events);
    }

    std::vector<float> byCommand() {
        std::string lines;
        for (const Change& change : changes)
            lines += textOf(change.block * row.frames / row.rate) + "," + change.facts().name +
                     "," + textOf(change.displayed()) + ",step\n";
        writeText(folder / "a.csv", lines);
        const bool isEffect = row.kind == PluginKind::effect;
        const std::string bytes = rendered(
            std::string(isEffect ? "noise.wav --as music-effect" : "in.wav") +
            " --state s --automate a.csv --midi m.mid --tempo 125 " +
            (row.programs ? "--programs " : "") + "--transport play --cut --float --block " +
            std::to_string(row.frames) + " --rate " + std::to_string(static_cast<int>(row.rate)) +
            " --seconds " + textOf(static_cast<double>(frames()) / row.rate));
        const auto data = bytes.find("data");
        std::vector<float> sound(2 * frames());
        EXPECT_GE(bytes.size(), data + 8 + 4 * sound.size());
        if (data != bytes.npos && bytes.size() >= data + 8 + 4 * sound.size())
            std::memcpy(sound.data(), bytes.data() + data + 8, 4 * sound.size());
        return sound;
    }

    std::vector<float> byVst3() {
        Vst3Plugin plugin(row.kind);
        plugin.start(row.rate, row.frames, true);
        plugin.setState(readText(folder / "s"));
        std::vector<float> sound;
        for (int block = 0; block < kBlocks; ++block) {
            if (block == 0) plugin.parameter(static_cast<int>(playStop)).setValue(1.0f);
            for (const Change& change : changes)
                if (change.block == block)
                    plugin.parameter(static_cast<int>(change.id)).setValue(change.normalized);
            plugin.transport = {.tempo = tempo,
                                .numerator = 4,
                                .denominator = 4,
                                .beats = block * row.frames / row.rate * tempo / 60,
                                .moving = true};
            const auto first = static_cast<std::ptrdiff_t>(block) * row.frames;
            std::vector<float> left(input[0].begin() + first,
                                    input[0].begin() + first + row.frames),
                right(input[1].begin() + first, input[1].begin() + first + row.frames);
            juce::MidiBuffer midi;
            for (const Message& message : messages)
                if (message.block == block)
                    midi.addEvent(message.bytes.data(), static_cast<int>(message.length()), 0);
            plugin.play(left.data(), right.data(), row.frames, midi);
            for (std::size_t i = 0; i < left.size(); ++i)
                sound.insert(sound.end(), {left[i], right[i]});
        }
        return sound;
    }

    std::vector<float> byLv2() {
        Lv2Host host(row.kind, row.rate, row.frames);
        host.port("free_wheeling") = 1;
        EXPECT_EQ(host.restoreProperties({{"urn:zephyra:state", readText(folder / "s")}}),
                  LV2_STATE_SUCCESS);
        for (int block = 0; block < kBlocks; ++block) {
            if (block == 0) {
                host.port("play_stop") = 1;
                host.position(0, {{"beatsPerMinute", static_cast<float>(tempo)},
                                  {"speed", 1.0f},
                                  {"barBeat", 0.0f},
                                  {"bar", std::int64_t{0}},
                                  {"beatsPerBar", 4.0f},
                                  {"beatUnit", std::int32_t{4}}});
            }
            for (const Change& change : changes)
                if (change.block == block) host.port(change.facts().symbol) = change.displayed();
            for (const Message& message : messages)
                if (message.block == block)
                    host.midi(0, {message.bytes.begin(), message.bytes.begin() + message.length()});
            host.render(static_cast<std::uint32_t>(row.frames));
        }
        std::vector<float> sound;
        const auto size = static_cast<std::size_t>(row.frames);
        for (std::size_t block = 0; block < kBlocks; ++block)
            for (std::size_t i = 0; i < size; ++i)
                sound.insert(sound.end(), {host.heard[2 * block * size + i],
                                           host.heard[(2 * block + 1) * size + i]});
        return sound;
    }
};

/// Where two sounds part, and how far.
std::string difference(const std::vector<float>& a, const std::vector<float>& b) {
    if (a.size() != b.size()) return textOf(a.size()) + " and " + textOf(b.size()) + " samples";
    float most = 0.0f;
    std::optional<std::size_t> first;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::bit_cast<std::uint32_t>(a[i]) == std::bit_cast<std::uint32_t>(b[i])) continue;
        if (!first) first = i;
        most = std::max(most, std::abs(a[i] - b[i]));
    }
    return first ? "differ from frame " + textOf(*first / 2) + " on, by up to " + textOf(most) : "";
}

TEST_P(FormatsTest, GiveTheSameBytes) {
    for (const Change& change : changes) EXPECT_TRUE(change.isExact()) << change.facts().name;
    writeInput();
    writeMidi();
    rendered(std::string("in.wav --seconds 0.3 --seed 7 --save-state s ") + row.options);
    const auto command = byCommand();
    { // A host saves its session, and the sound's file goes.
        Vst3Plugin plugin(row.kind);
        plugin.start(row.rate, row.frames, true);
        plugin.setState(readText(folder / "s"));
        plugin.play(0);
        std::string state = plugin.state();
        if (row.programs) {
            const std::string off = "<key>FollowsPrograms</key>\n\t<false/>";
            ASSERT_THAT(state, HasSubstr(off));
            state.replace(state.find(off), off.size(), "<key>FollowsPrograms</key><true/>");
        }
        writeText(folder / "s", state);
        fs::remove(folder / "in.wav");
        fs::remove_all(std::getenv("ZEPHYRA_SHARED_FOLDER"));
    }
    EXPECT_GT(*std::max_element(command.begin(), command.end()), 0.05f);
    EXPECT_EQ(difference(command, byLv2()), "") << "LV2";
    EXPECT_EQ(difference(command, byVst3()), "") << "VST3";
}

#define LEARNED " --midi m.mid --learn 'cc:21=Rnd Density' --learn pressure=Width"
constexpr Row kRows[] = {
    {"Instrument", PluginKind::instrument, 48000, 512, LEARNED},
    {"InstrumentOfPrograms", PluginKind::instrument, 48000, 512, LEARNED, true},
    {"InstrumentOfMotion", PluginKind::instrument, 44100, 256,
     "--lfo Density:hz=3 --lfo Pan:link=1/8 --echo-sync 1/8,1/8T --set \"Rnd Pitch=5\" --tempo "
     "125 --learn bend='Left Gain'" LEARNED},
    {"Effect", PluginKind::effect, 48000, 512, "--as music-effect --set Length=120" LEARNED}};

INSTANTIATE_TEST_SUITE_P(All, FormatsTest, testing::ValuesIn(kRows),
                         [](const auto& one) { return std::string(one.param.name); });

} // namespace
} // namespace zephyra
