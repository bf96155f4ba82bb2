// The VST3 plug-ins as hosts and validators drive them: rates, blocks, values, states, programs.
#include "hosting/plugin_parameters.h"
#include "tests/plugin/vst3/vst3_plugin.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using enum ControlId;

constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument};

juce::MidiBuffer midi(const std::vector<std::uint8_t>& bytes, int frame = 0) {
    juce::MidiBuffer buffer;
    buffer.addEvent(juce::MidiMessage(bytes.data(), static_cast<int>(bytes.size())), frame);
    return buffer;
}

int idOf(ControlId id) {
    return static_cast<int>(id);
}

/// Plays so many blocks; the largest value that came out.
float played(Vst3Plugin& plugin, int blocks, int frames) {
    float most = 0.0f;
    for (int i = 0; i < blocks; ++i) {
        plugin.play(frames);
        most = std::max(most, plugin.peak());
    }
    return most;
}

/// What the host believes of the parameters, but for those that move by themselves: where the scan
/// stands, and the buttons.
std::vector<float> values(const Vst3Plugin& plugin) {
    std::vector<float> all;
    for (int id = idOf(amplitude); id < idOf(playStop); ++id)
        all.push_back(plugin.parameter(id).getValue());
    return all;
}

testing::Matcher<const std::vector<float>&> near(const std::vector<float>& wanted) {
    return testing::Pointwise(testing::FloatNear(1e-5f), wanted);
}

TEST(Vst3, SoundsAtEveryRateAndBlockLengthWithoutAValueThatIsNoSound) {
    for (const PluginKind kind : kKinds) {
        Vst3Plugin plugin(kind);
        for (const double rate : {22050.0, 44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0})
            for (const int frames : {16, 64, 99, 512, 1024, 4096}) {
                SCOPED_TRACE(testing::Message() << rate << " Hz, " << frames);
                plugin.start(rate, frames, true); // in real time it would take as long as it plays
                plugin.play(0, midi({0x90, 60, 100}));
                float most =
                    played(plugin, std::max(2, static_cast<int>(0.15 * rate) / frames), frames);
                for (const int other : {2 * frames, 1, 8192})
                    most = std::max(most, played(plugin, 1, other));
                EXPECT_GT(most, 0.001f);
                EXPECT_LT(most, 4.0f);
            }
    }
}

TEST(Vst3, HasTheParametersByNumberWithNamesAndTextsBothWays) {
    Vst3Plugin plugin(PluginKind::effect);
    for (const PluginParameter& facts : pluginParameters()) {
        auto& parameter = plugin.parameter(idOf(facts.id));
        EXPECT_EQ(dynamic_cast<juce::HostedAudioProcessorParameter&>(parameter).getParameterID(),
                  juce::String(idOf(facts.id)));
        EXPECT_EQ(parameter.getName(100).toStdString(), facts.name);
        EXPECT_TRUE(parameter.isAutomatable());
        for (const float value : {0.0f, 0.1f, 0.25f, 0.5f, 0.9f, 1.0f}) {
            const auto text = parameter.getText(value, 100);
            const std::string whole = parameterText(facts, linearFromNormalized(facts, value));
            EXPECT_THAT(whole, StartsWith(text.toStdString()));
            EXPECT_EQ(parameter.getText(parameter.getValueForText(whole), 100), text) << facts.name;
        }
    }
}

TEST(Vst3, KeepsAndRestoresAStateWhateverHappenedInBetween) {
    for (const PluginKind kind : kKinds) {
        Vst3Plugin plugin(kind);
        std::mt19937 random(9);
        const auto scramble = [&] {
            for (const PluginParameter& facts : pluginParameters())
                if (facts.id < playStop)
                    plugin.parameter(idOf(facts.id))
                        .setValue(
                            static_cast<float>(facts.isSwitch ? random() % 2 : random() % 101) /
                            (facts.isSwitch ? 1.0f : 100.0f));
            const auto wanted = values(plugin);
            played(plugin, 8, 512);
            pumpMessages(100);
            return wanted;
        };
        plugin.start(48000, 512);
        const auto before = scramble();
        juce::MemoryBlock session;
        plugin->getStateInformation(session);
        const auto isBefore = [&] { return testing::Matches(near(before))(values(plugin)); };
        scramble();
        EXPECT_FALSE(isBefore());
        plugin->setStateInformation(session.getData(), static_cast<int>(session.getSize()));
        EXPECT_TRUE(plugin.playUntil(isBefore)) << testing::PrintToString(values(plugin));
        plugin.setState("nonsense");
        plugin.setState(plugin.state().substr(0, 2000));
        played(plugin, 8, 512);
        pumpMessages(100);
        EXPECT_THAT(values(plugin), near(before));
    }
}

TEST(Vst3, RefusesLayoutsOtherThanMonoAndStereoAndSoundsInThese) {
    const auto mono = juce::AudioChannelSet::mono(), stereo = juce::AudioChannelSet::stereo(),
               none = juce::AudioChannelSet::disabled(),
               surround = juce::AudioChannelSet::create5point1();
    const std::tuple<PluginKind, juce::AudioChannelSet, juce::AudioChannelSet, bool> rows[] = {
        {PluginKind::effect, stereo, stereo, true},
        {PluginKind::effect, mono, stereo, true},
        {PluginKind::effect, mono, mono, true},
        {PluginKind::effect, surround, surround, false},
        {PluginKind::effect, stereo, surround, false},
        {PluginKind::instrument, none, stereo, true},
        {PluginKind::instrument, none, mono, true},
        {PluginKind::instrument, none, surround, false}};
    for (const auto& [kind, in, out, taken] : rows) {
        SCOPED_TRACE(in.getDescription().toStdString() + " to " +
                     out.getDescription().toStdString());
        Vst3Plugin plugin(kind);
        juce::AudioProcessor::BusesLayout layout;
        if (kind == PluginKind::effect) layout.inputBuses.add(in);
        layout.outputBuses.add(out);
        EXPECT_EQ(plugin->setBusesLayout(layout), taken);
        if (!taken) continue;
        plugin.start(48000, 512, true);
        float most = 0.0f;
        for (int i = 0; i < 60; ++i) {
            juce::AudioBuffer<float> block(std::max(in.size(), out.size()), 512);
            for (int c = 0; c < block.getNumChannels(); ++c)
                std::fill_n(block.getWritePointer(c), 512, i % 2 ? 0.3f : -0.3f);
            auto notes = midi({0x90, 60, 100});
            plugin->processBlock(block, notes);
            for (int c = 0; c < out.size(); ++c)
                most = std::max(most, block.getMagnitude(c, 0, 512));
        }
        EXPECT_GT(most, 0.01f);
        EXPECT_LT(most, 4.0f);
    }
}

TEST(Vst3, OffersTheFactorysPresetsAsPrograms) {
    PluginInstance own(PluginKind::instrument);
    Vst3Plugin plugin(PluginKind::instrument);
    plugin.start(48000, 512);
    ASSERT_EQ(plugin->getNumPrograms(), 48);
    for (const int number : {1, 20, 47}) {
        const auto program = static_cast<std::size_t>(number);
        EXPECT_EQ(plugin->getProgramName(number).toStdString(), own.programs()[program].name);
        own.setProgram(program);
        const float wanted =
            normalizedFromLinear(pluginParameters()[static_cast<std::size_t>(length)],
                                 own.parameter(static_cast<AUParameterAddress>(length)));
        plugin->setCurrentProgram(number);
        EXPECT_TRUE(plugin.playUntil([&] {
            return std::abs(plugin.parameter(idOf(length)).getValue() - wanted) < 1e-5f;
        })) << number;
    }
}

TEST(Vst3, PassesTheInputOnWhileBypassedAndTellsItsTail) {
    Vst3Plugin plugin(PluginKind::effect);
    plugin.start(48000, 512);
    EXPECT_TRUE(plugin.playUntil([&] { return plugin.peak() > 0.1f; }));
    auto* const bypass = plugin->getBypassParameter();
    ASSERT_TRUE(bypass);
    bypass->setValue(1.0f);
    played(plugin, 100, 512);                                             // its fade
    std::vector<float> left(200'000, 0.25f), right(left.size(), -0.125f); // more than announced
    juce::MidiBuffer none;
    plugin.play(left.data(), right.data(), 200'000, none);
    EXPECT_THAT(left, Each(0.25f));
    EXPECT_THAT(right, Each(-0.125f));
    bypass->setValue(0.0f);
    EXPECT_EQ(plugin->getLatencySamples(), 0);
    const double dry = plugin->getTailLengthSeconds();
    plugin.parameter(idOf(echoSwitch)).setValue(1.0f);
    plugin.parameter(idOf(leftGain)).setValue(0.9f);
    EXPECT_TRUE(plugin.playUntil([&] { return plugin->getTailLengthSeconds() > dry + 3.0; }))
        << plugin->getTailLengthSeconds();
}

} // namespace
} // namespace zephyra
