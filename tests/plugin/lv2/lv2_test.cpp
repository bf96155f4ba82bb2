// The built LV2 plug-ins in a small host, through lilv as other hosts load them.
#include "hosting/plugin_parameters.h"
#include "platform/text/text_numbers.h"
#include "plugin/lv2/ports.h"
#include "tests/plugin/lv2/lv2_host.h"
#include "tests/support/block_partition.h"
#include "tests/support/test_sounds.h"

namespace zephyra {

namespace {

class Lv2 : public testing::Test {
protected:
    Lv2() {
        ::setenv("ZEPHYRA_SHARED_FOLDER", folder_.path().c_str(), 1);
        ::setenv("ZEPHYRA_RESOURCE_FOLDER", ZEPHYRA_SOURCE_DIR "/resources", 1);
    }

private:
    const TemporaryFolder folder_;
};

constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument};
const std::vector<std::uint8_t> kNoteOn = {0x90, 60, 100}, kNoteOff = {0x80, 60, 0};

double linear(ControlId id, float displayed) {
    return linearFromDisplayed(controlRange(id), displayed);
}

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
    alone.render(48000);
    alone.port("density") = 100; // the saved one, but long after
    alone.render(64);
    EXPECT_NEAR(alone.inState("Density_0"), density, 1e-4);

    // What automation brings right after a restore is meant.
    alone.restore(moved);
    alone.port("density") = 200;
    alone.render(64);
    EXPECT_NEAR(alone.inState("Density_0"), linear(ControlId::density, 200), 1e-4);
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
                host.position(0, {{"beatsPerMinute", 100.0f + static_cast<float>(seed)},
                                  {"bar", std::int64_t{seed}},
                                  {"barBeat", 0.0f},
                                  {"speed", 1.0f}});
                host.render(static_cast<std::uint32_t>(frames));
                host.render(0);
            }
            EXPECT_GT(peakOf(host.heard), 0.01f);
            EXPECT_LT(peakOf(host.heard), 100.0f);
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
    host.port("free_wheeling") = 1;
    host.port("dry_wet") = 100;
    host.port("play_stop") = 0;
    for (const bool loud : {false, true}) {
        if (loud) host.loadPreset("Bell Jar (Glass Weather)", false);
        for (int i = 0; i < 50; ++i) host.render(1024);
        EXPECT_EQ(peakOf(std::span(host.heard).last(5000)) > 0.001f, loud);
    }
}

TEST_F(Lv2, AStateSavedBeforeTheNextBlockHoldsThePortsThatItCameWith) {
    Lv2Host saved(PluginKind::effect), loaded(PluginKind::effect);
    saved.port("width") = 0.75f;
    saved.render(64);
    const auto properties = saved.properties();
    EXPECT_EQ(loaded.restoreProperties(properties), LV2_STATE_SUCCESS);
    EXPECT_EQ(loaded.properties().at("urn:zephyra:ports"), properties.at("urn:zephyra:ports"));
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

TEST_F(Lv2, ANoteBehindAPositionActsAtItsOwnFrame) {
    Lv2Host whole(PluginKind::instrument), parts(PluginKind::instrument);
    const auto state = whole.properties();
    for (Lv2Host* const host : {&whole, &parts}) {
        host->port("free_wheeling") = 1;
        ASSERT_EQ(host->restoreProperties(state), LV2_STATE_SUCCESS);
    }
    whole.position(256, {{"beatsPerMinute", 90.0f}});
    whole.midi(300, kNoteOn);
    whole.render(8192);
    parts.render(256);
    parts.position(0, {{"beatsPerMinute", 90.0f}});
    parts.midi(44, kNoteOn);
    parts.render(8192 - 256);
    EXPECT_GT(peakOf(whole.heard), 0.01f);
    EXPECT_TRUE(std::equal(whole.heard.begin() + 256, whole.heard.begin() + 8192,
                           parts.heard.begin() + 512));
}

TEST_F(Lv2, ASideWithOneChannelConnectedIsMono) {
    Lv2Host both(PluginKind::instrument), one(PluginKind::instrument);
    const auto state = both.properties();
    one.connectMono();
    for (Lv2Host* host : {&both, &one}) {
        host->port("free_wheeling") = 1;
        ASSERT_EQ(host->restoreProperties(state), LV2_STATE_SUCCESS);
        host->midi(0, kNoteOn);
        host->render(40000);
    }
    ASSERT_EQ(one.heard.size(), 40000u);
    EXPECT_GT(peakOf(one.heard), 0.01f);
    for (std::size_t i = 0; i < 40000; ++i)
        ASSERT_EQ(one.heard[i], (both.heard[i] + both.heard[40000 + i]) / 2) << i;
    // An effect's input goes there too, while it is not enabled.
    Lv2Host effect(PluginKind::effect);
    effect.connectMono();
    effect.port("free_wheeling") = 1;
    effect.port("enabled") = 0;
    effect.render(4096);
    for (std::size_t n = 2000; n < 4096; ++n) // behind its fade
        ASSERT_EQ(effect.heard[n], effect.input(0)[n]) << n;
}

} // namespace

} // namespace zephyra
