// The built LV2 plug-ins in a small host, through lilv as other hosts load them.
#include "hosting/plugin_parameters.h"
#include "platform/sound/float_file_writer.h"
#include "platform/text/text_numbers.h"
#include "plugin/lv2/ports.h"
#include "tests/plugin/lv2/lv2_host.h"
#include "tests/support/block_partition.h"
#include "tests/support/test_sounds.h"

namespace zephyra {

namespace {

/// The user's folder of every instance in this program.
const TemporaryFolder& sharedFolder() {
    static const TemporaryFolder folder;
    static const bool once = [] {
        ::setenv("ZEPHYRA_SHARED_FOLDER", folder.path().c_str(), 1);
        ::setenv("ZEPHYRA_RESOURCE_FOLDER", ZEPHYRA_SOURCE_DIR "/resources", 1);
        return true;
    }();
    static_cast<void>(once);
    return folder;
}

class Lv2 : public testing::Test {
protected:
    Lv2() { sharedFolder(); }
};

constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument};
const std::vector<std::uint8_t> kNoteOn = {0x90, 60, 100}, kNoteOff = {0x80, 60, 0};

double linear(ControlId id, float displayed) {
    return linearFromDisplayed(controlRange(id), displayed);
}

/// The same way to play for an instance of ours and through the host, by its words alone.
struct Part {
    std::uint32_t frames;
    std::optional<float> density = {};
    std::vector<std::pair<std::uint32_t, std::vector<std::uint8_t>>> midi = {};
    std::optional<double> tempo = {}; // with a bar's position and the transport rolling
    double beats = 0.0;
};

TEST_F(Lv2, PortsStayAsSessionsKnowThem) {
    std::ostringstream text;
    for (const PluginKind kind : kKinds) {
        const LilvPlugin* const plugin = lv2Plugin(kind);
        text << lilv_node_as_uri(lilv_plugin_get_uri(plugin)) << '\n';
        for (std::uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
            const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
            text << i << ' ' << lilv_node_as_string(lilv_port_get_symbol(plugin, port));
            LilvNode* range[3] = {};
            lilv_port_get_range(plugin, port, &range[0], &range[1], &range[2]);
            for (LilvNode* node : range) {
                if (node) text << ' ' << formatNumber(lilv_node_as_float(node));
                lilv_node_free(node);
            }
            text << '\n';
        }
    }
    EXPECT_EQ(text.str(), readText(ZEPHYRA_SOURCE_DIR "/tests/saved_files/lv2_ports.txt"));
}

TEST_F(Lv2, PortsBeginWithWhatAFreshInstanceStandsAt) {
    for (const PluginKind kind : kKinds) {
        PluginInstance fresh(kind);
        fresh.system().instance.runLoop.runPosted();
        for (const PluginParameter& parameter : pluginParameters()) {
            const auto address = static_cast<AUParameterAddress>(parameter.id);
            if (parameter.id == ControlId::scrubbingWave) continue;
            EXPECT_EQ(portValue(parameter, fresh.parameter(address)), portDefault(kind, parameter))
                << parameter.symbol;
        }
    }
}

TEST_F(Lv2, AFreshEffectPlaysItsInputAndAnInstrumentWaitsForANote) {
    for (const PluginKind kind : kKinds) {
        Lv2Host host(kind);
        host.port("free_wheeling") = 1;
        host.port("dry_wet") = 100;
        for (int i = 0; i < 20; ++i) host.render(2048);
        const bool isEffect = kind == PluginKind::effect;
        EXPECT_EQ(peakOf(host.heard) > 0.01f, isEffect);
        host.heard.clear();
        host.midi(0, isEffect ? kNoteOff : kNoteOn);
        for (int i = 0; i < 20; ++i) host.render(2048);
        EXPECT_GT(peakOf(host.heard), 0.01f);
        EXPECT_LT(peakOf(host.heard), 100.0f);
    }
}

TEST_F(Lv2, APortActsWhenItChangesAndNeverWhileItStands) {
    const double density = linear(ControlId::density, 100);
    Lv2Host host(PluginKind::effect);
    host.port("free_wheeling") = 1;
    host.port("density") = 100; // before the first block
    host.render(64);
    EXPECT_NEAR(host.inState("Density_0"), density, 1e-4);
    const std::string saved = host.save();

    // What somebody else moves stays, while the port stands.
    auto other = host.properties();
    std::string& bytes = other["urn:zephyra:state"];
    const std::size_t at = bytes.find("<real>", bytes.find("<key>Density_0</key>"));
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, bytes.find("</real>", at) - at, "<real>300");
    ASSERT_EQ(host.restoreProperties(other), LV2_STATE_SUCCESS);
    for (int i = 0; i < 4; ++i) host.render(512);
    EXPECT_EQ(host.inState("Density_0"), 300);
    const std::string moved = host.save(); // whose port stands at 100

    for (const auto& [value, expected] : std::vector<std::pair<float, double>>{
             {NAN, 300}, {INFINITY, 300}, {1e9f, 400}, {-5, 0.5}, {100, density}}) {
        host.port("density") = value;
        host.render(64);
        EXPECT_NEAR(host.inState("Density_0"), expected, 1e-4) << value;
    }

    // A fresh one that is given the session: the port comes back to where it was, and says nothing.
    Lv2Host again(PluginKind::effect);
    again.port("free_wheeling") = 1;
    again.restore(moved);
    EXPECT_EQ(again.port("density"), 100);
    again.render(64);
    EXPECT_EQ(again.inState("Density_0"), 300);
    again.render(48000);
    again.port("density") = 50;
    again.render(64);
    again.port("density") = 100; // long after, it is a hand's
    again.render(64);
    EXPECT_NEAR(again.inState("Density_0"), density, 1e-4);

    // So does one whose host sets no ports.
    Lv2Host alone(PluginKind::effect);
    alone.port("free_wheeling") = 1;
    alone.restore(moved, false);
    alone.render(64);
    EXPECT_EQ(alone.inState("Density_0"), 300);

    // What automation brings right after a restore is meant.
    alone.restore(moved);
    alone.port("density") = 200;
    alone.render(64);
    EXPECT_NEAR(alone.inState("Density_0"), linear(ControlId::density, 200), 1e-4);
}

TEST_F(Lv2, OfflineBlocksEqualAnInstancesOwnBytes) {
    for (const PluginKind kind : kKinds)
        for (std::uint32_t seed = 1; seed <= 3; ++seed) {
            PluginInstance fresh(kind);
            const std::string state = fresh.state();

            std::mt19937 random(seed);
            std::vector<Part> parts;
            double beats = -4;
            for (const std::int32_t frames : randomPartition(60000, 8192, seed)) {
                Part part{.frames = static_cast<std::uint32_t>(frames)};
                if (random() % 4 == 0) part.density = static_cast<float>(1 + random() % 300);
                if (random() % 3 == 0)
                    part.midi = {{random() % part.frames, kNoteOn},
                                 {part.frames - 1, {0xB0, 64, 127}},
                                 {part.frames - 1, {0xF0, 1, 2, 3, 4, 0xF7}}};
                // In every block, once, or never.
                if (seed == 1 || (seed == 2 && parts.empty())) part.tempo = 97, part.beats = beats;
                beats += frames / 48000.0 * 97 / 60;
                parts.push_back(part);
                if (random() % 3 == 0) parts.push_back({.frames = 0});
            }

            Lv2Host host(kind, 48000, 1024);
            host.port("free_wheeling") = 1;
            ASSERT_EQ(host.restoreProperties({{"urn:zephyra:state", state}}), LV2_STATE_SUCCESS);
            PluginInstance own(kind);
            ASSERT_TRUE(own.prepare({.sampleRate = 48000, .mostFrames = 1024}));
            ASSERT_TRUE(own.setState(std::as_bytes(std::span(state))));

            std::vector<float> expected;
            std::uint32_t noise = 1;
            for (const Part& part : parts) {
                std::vector<float> in[2], out[2];
                for (auto& channel : in) channel.resize(part.frames + 1);
                for (auto& channel : out) channel.resize(part.frames + 1);
                for (std::uint32_t i = 0; i < part.frames; ++i)
                    for (auto& channel : in)
                        channel[i] =
                            static_cast<float>((noise = noise * 1664525u + 1013904223u) >> 8) *
                                0x1p-24f -
                            0.5f;
                PluginBlock block{.frames = part.frames, .output = {out[0].data(), out[1].data()}};
                if (kind == PluginKind::effect)
                    block.input[0] = in[0].data(), block.input[1] = in[1].data();
                if (part.tempo) {
                    block.transport = {.tempo = part.tempo,
                                       .numerator = 6,
                                       .denominator = 8,
                                       .beats = part.beats,
                                       .moving = true};
                    // Six eighths: three quarters a bar.
                    const double bar = std::floor(part.beats / 3);
                    host.position(0, {{"bar", static_cast<std::int64_t>(bar)},
                                      {"barBeat", (part.beats - 3 * bar) * 2},
                                      {"beatsPerBar", 6.0f},
                                      {"beatUnit", std::int32_t{8}},
                                      {"beatsPerMinute", *part.tempo},
                                      {"speed", 1.0f}});
                }
                if (part.density) {
                    host.port("density") = *part.density;
                    own.queueParameter(
                        static_cast<AUParameterAddress>(ControlId::density),
                        linearFromDisplayed(controlRange(ControlId::density), *part.density));
                }
                for (const auto& [frame, bytes] : part.midi) {
                    host.midi(frame, bytes);
                    own.queueMidi(bytes.data(), bytes.size(), frame);
                }
                own.renderOffline(block);
                host.render(part.frames);
                for (const auto& channel : out)
                    expected.insert(expected.end(), channel.begin(), channel.end() - 1);
            }
            ASSERT_EQ(host.heard.size(), expected.size());
            const auto differ = std::ranges::mismatch(host.heard, expected);
            EXPECT_EQ(differ.in1, host.heard.end())
                << seed << " at " << differ.in1 - host.heard.begin();
            EXPECT_GT(peakOf(host.heard), 0.01f) << seed;
        }
}

TEST_F(Lv2, BlocksOfAnySizeAndClockSoundFiniteAndAllocateNothing) {
    for (const PluginKind kind : kKinds)
        for (const std::int32_t announced : {0, 64}) {
            Lv2Host host(kind, 44100, announced);
            host.midi(0, kNoteOn);
            host.render(512);
            std::uint32_t seed = 0;
            for (const std::int32_t frames : randomPartition(60000, 8192, 5)) {
                host.port("free_wheeling") = ++seed % 8 == 0;
                host.port("enabled") = seed % 16 != 3;
                host.port("pitch") = static_cast<float>(seed % 24);
                host.midi(static_cast<std::uint32_t>(frames / 2), kNoteOn);
                host.position(0, {{"beatsPerMinute", 120.0f}, {"speed", 1.0f}});
                host.render(static_cast<std::uint32_t>(frames));
                host.render(0);
            }
            EXPECT_GT(peakOf(host.heard), 0.01f);
            EXPECT_LT(peakOf(host.heard), 100.0f);
        }
}

TEST_F(Lv2, RealTimeBlocksNeitherAllocateNorLock) {
    for (const PluginKind kind : kKinds) {
        Lv2Host host(kind);
        for (int i = 0; i < 200; ++i) {
            host.port("density") = static_cast<float>(i + 1);
            host.midi(3, kNoteOn);
            host.position(7, {{"beatsPerMinute", 100.0 + i},
                              {"bar", std::int64_t{i}},
                              {"barBeat", 0.0f},
                              {"speed", 1.0f}});
            host.render(i % 10 == 0 ? 5000 : 256);
        }
        EXPECT_THAT(host.calls, ElementsAre());
    }
}

TEST_F(Lv2, EveryFactoryPresetBringsItsWholeStateAndPorts) {
    for (const PluginKind kind : kKinds) {
        EXPECT_EQ(lv2Presets(kind).size(), 48u);
        Lv2Host host(kind);
        host.port("free_wheeling") = 1;
        PluginInstance own(kind, [](Instance& instance) {
            instance.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
            instance.log.setSink([](std::string_view) {});
            instance.runLoop.setClock(RunLoop::Clock::sample); // so that no LFO moves
        });
        const auto programs = own.programs();
        for (std::size_t number = 0; number < programs.size(); ++number) {
            SCOPED_TRACE(programs[number].name);
            host.loadPreset(programs[number].name);
            own.setProgram(number);
            own.system().instance.runLoop.finishWork();
            for (const PluginParameter& parameter : pluginParameters().subspan(1)) {
                const auto address = static_cast<AUParameterAddress>(parameter.id);
                EXPECT_EQ(host.port(parameter.symbol), portValue(parameter, own.parameter(address)))
                    << parameter.symbol;
            }
            host.heard.clear();
            host.midi(0, kNoteOn);
            for (int i = 0; i < 12; ++i) host.render(2048);
            EXPECT_LT(peakOf(host.heard), 100.0f);
            EXPECT_GT(peakOf(host.heard), 1e-4f) << int(kind);
            host.midi(0, kNoteOff);
            host.render(0);
        }
        EXPECT_THAT(host.log, Not(Contains(HasSubstr("not"))));
    }
}

TEST_F(Lv2, APresetWithoutItsPortsActsWhereverThePortsStand) {
    Lv2Host host(PluginKind::effect);
    host.port("dry_wet") = 100;
    host.port("play_stop") = 0;
    const auto loudness = [&] {
        host.heard.clear();
        for (int i = 0; i < 200; ++i) {
            host.render(256);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return peakOf(std::span(host.heard).last(5000));
    };
    EXPECT_LT(loudness(), 0.001f);
    host.loadPreset("Bell Jar (Glass Weather)", false);
    EXPECT_GT(loudness(), 0.01f);
}

TEST_F(Lv2, ASessionSoundsTheSameAfterItsSampleIsGone) {
    const fs::path file = sharedFolder() / "chirp.wav";
    const auto noise = noiseSample(30000, 44100);
    const float* const channel = noise->getPtr();
    FloatFileWriter writer;
    ASSERT_TRUE(writer.open(file, 44100, 1) && writer.write(&channel, 30000) && writer.close());
    std::string saved;
    {
        PluginInstance maker(PluginKind::instrument);
        maker.loadSample(file);
        maker.system().instance.runLoop.finishWork();
        Lv2Host host(PluginKind::instrument);
        host.port("free_wheeling") = 1;
        ASSERT_EQ(host.restoreProperties({{"urn:zephyra:state", maker.state()}}),
                  LV2_STATE_SUCCESS);
        host.render(64);
        saved = host.save();
    }
    const auto play = [&] {
        Lv2Host host(PluginKind::instrument);
        host.port("free_wheeling") = 1;
        host.restore(saved);
        host.midi(0, kNoteOn);
        for (int i = 0; i < 20; ++i) host.render(1024);
        return host.heard;
    };
    const auto with = play();
    EXPECT_GT(peakOf(with), 0.01f);
    fs::remove(file);
    const auto without = play();
    float worst = 0;
    for (std::size_t i = 0; i < with.size(); ++i)
        worst = std::max(worst, std::abs(with[i] - without[i]));
    EXPECT_LT(worst, 0.001f);
}

TEST_F(Lv2, ABrokenStateIsRefusedWithAMessageAndChangesNothing) {
    Lv2Host host(PluginKind::effect);
    host.port("density") = 100;
    host.render(64);
    const double density = host.inState("Density_0");
    for (const char* broken : {"x", "<plist", ""}) {
        host.log.clear();
        EXPECT_NE(host.restoreProperties({{"urn:zephyra:state", broken}}), LV2_STATE_SUCCESS);
        EXPECT_THAT(host.log, Contains(HasSubstr("The state is not restored"))) << broken;
    }
    EXPECT_EQ(host.restoreProperties({}), LV2_STATE_ERR_NO_PROPERTY);
    EXPECT_EQ(host.inState("Density_0"), density);
}

TEST_F(Lv2, ThirtyTwoInstancesPlayTogether) {
    std::vector<std::unique_ptr<Lv2Host>> hosts;
    for (int i = 0; i < 32; ++i) hosts.push_back(std::make_unique<Lv2Host>(kKinds[i % 2]));
    std::vector<std::thread> threads;
    for (auto& host : hosts)
        threads.emplace_back([&host] {
            // MAIN of all of them has one thread, on however busy a machine.
            host->midi(0, kNoteOn);
            for (int i = 0; i < 5000 && peakOf(host->heard) < 0.001f; ++i) {
                host->heard.clear();
                host->render(512);
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (auto& host : hosts) EXPECT_GT(peakOf(host->heard), 0.001f);
}

TEST_F(Lv2, ASideWithOneChannelConnectedIsMono) {
    for (const PluginKind kind : kKinds) {
        Lv2Host both(kind), one(kind);
        const auto state = both.properties();
        for (Lv2Host* host : {&both, &one}) {
            host->port("free_wheeling") = 1;
            ASSERT_EQ(host->restoreProperties(state), LV2_STATE_SUCCESS);
        }
        one.connectMono();
        for (Lv2Host* host : {&both, &one}) {
            host->midi(0, kNoteOn);
            host->render(40000);
        }
        ASSERT_EQ(one.heard.size(), 40000u);
        EXPECT_GT(peakOf(one.heard), 0.01f);
        if (kind == PluginKind::effect) continue; // whose input differs
        for (std::size_t i = 0; i < 40000; ++i)
            ASSERT_EQ(one.heard[i], (both.heard[i] + both.heard[40000 + i]) / 2) << i;
    }
}

} // namespace

} // namespace zephyra
