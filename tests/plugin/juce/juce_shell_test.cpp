// What JUCE's wrappers get to see of the shell: parameters, buses, blocks, and what a host is told.

#include "plugin/juce/host_news.h"
#include "plugin/juce/zephyra_parameter.h"
#include "plugin/juce/zephyra_processor.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {
namespace {

/// A processor in folders of its own, whose listener writes down what a host is told.
struct Hosted : HeardLog, private juce::AudioProcessorListener {
    explicit Hosted(PluginKind kind = PluginKind::effect)
        : processor(kind, [this](Instance& instance) {
              hear(instance);
              instance.folders = {.shared = folder / "shared",
                                  .resources = ZEPHYRA_SOURCE_DIR "/resources"};
          }) {
        processor.addListener(this);
    }
    ~Hosted() override { processor.removeListener(this); }

    std::vector<std::string> heard() {
        while (juce::dispatchNextMessageOnSystemQueue(true)) {
        }
        return std::exchange(told, {});
    }
    ZephyraParameter& parameter(ControlId id) {
        return parameterAt(processor, static_cast<AUParameterAddress>(id));
    }

    const TemporaryFolder folder{quickFolder()};
    ZephyraProcessor processor;
    std::vector<std::string> told;

private:
    void audioProcessorParameterChanged(juce::AudioProcessor*, int index, float value) override {
        told.push_back(std::to_string(index) + "=" + juce::String(value, 2).toStdString());
    }
    void audioProcessorParameterChangeGestureBegin(juce::AudioProcessor*, int index) override {
        told.push_back("touch " + std::to_string(index));
    }
    void audioProcessorParameterChangeGestureEnd(juce::AudioProcessor*, int index) override {
        told.push_back("release " + std::to_string(index));
    }
    void audioProcessorChanged(juce::AudioProcessor*, const ChangeDetails& details) override {
        if (details.programChanged) told.push_back("program");
    }
};

class JuceShell : public ::testing::Test {
    juce::ScopedJuceInitialiser_GUI juce_; // makes this the message thread
};

TEST_F(JuceShell, KeepsAValueThroughItsTextOrAWordThatIsNone) {
    Hosted host;
    for (auto* const each : host.processor.getParameters()) {
        auto& parameter = *static_cast<ZephyraParameter*>(each);
        EXPECT_EQ(parameter.getNumSteps() == 2, parameter.isBoolean());
        for (const float value : {0.0f, parameter.getDefaultValue(), 1.0f}) {
            parameter.setValue(value);
            parameter.setValue(NAN);
            EXPECT_EQ(parameter.getValue(), value) << parameter.name;
            EXPECT_NEAR(parameter.getValueForText(parameter.getText(value, 64)), value, 0.002f)
                << parameter.name;
            EXPECT_EQ(parameter.getValueForText("none of its values"), value);
        }
    }
}

TEST_F(JuceShell, TellsTheHostOfGesturesWithoutSettingThemOnceMore) {
    Hosted host;
    HostNews news(host.processor);
    const auto post = [&](ControlId id, AUParameterAutomationEventType type, float linear) {
        news.postGesture({0, static_cast<AUParameterAddress>(id), linear, type});
    };
    using enum AUParameterAutomationEventType;
    const float before = host.parameter(ControlId::pan).getValue();
    post(ControlId::pan, touch, 0.0f);
    post(ControlId::freeze, touch, 1.0f);
    for (const float pan : {0.1f, 0.2f, 1.0f}) post(ControlId::pan, value, pan);
    post(ControlId::pan, release, -1.0f);
    news.postGesture({0, kParameterCount, 1.0f, value});
    EXPECT_THAT(host.heard(), ElementsAre("touch 2", "2=0.50", "touch 22", "22=1.00", "2=1.00",
                                          "2=0.00", "release 2"));
    EXPECT_EQ(host.parameter(ControlId::pan).getValue(), before);

    {
        HostNews gone(host.processor);
        gone.postGesture({0, 2, 0.0f, value});
    }
    EXPECT_THAT(host.heard(), ElementsAre()); // its message came after it
}

TEST_F(JuceShell, TellsTheHostWhatAProgramChangedAndNothingOfAState) {
    Hosted host;
    juce::MemoryBlock state;
    host.processor.getStateInformation(state);
    host.parameter(ControlId::pan).setValue(0.25f);
    host.processor.setCurrentProgram(7);
    host.processor.setCurrentProgram(-1);
    host.processor.setCurrentProgram(48);
    const auto told = host.heard();
    EXPECT_EQ(host.processor.getCurrentProgram(), 7);
    EXPECT_EQ(told.back(), "program");
    EXPECT_GT(told.size(), 4u);
    for (const ControlId id : {ControlId::density, ControlId::length, ControlId::pitch}) {
        const std::string line = std::to_string(static_cast<int>(id)) + "=" +
                                 juce::String(host.parameter(id).getValue(), 2).toStdString();
        EXPECT_EQ(std::ranges::count(told, line), 1) << line;
    }
    EXPECT_LT(told.size(), kParameterCount); // those that stayed are not told

    host.processor.setStateInformation(state.getData(), static_cast<int>(state.getSize()));
    EXPECT_THAT(host.heard(), ElementsAre()); // a host asks for itself after that
    host.processor.setCurrentProgram(7);
    const auto again = host.heard(); // from where the state stood
    EXPECT_EQ(std::ranges::count(told, "2=0.50"), 1);
    EXPECT_EQ(std::ranges::count(again, "2=0.50"), 0);
    EXPECT_EQ(again.back(), "program");
    EXPECT_GT(again.size(), 4u);
}

TEST_F(JuceShell, RefusesAStateWithAnAlert) {
    Hosted host;
    host.parameter(ControlId::density).setValue(0.75f);
    const std::string no = "no state";
    host.processor.setStateInformation(no.data(), static_cast<int>(no.size()));
    EXPECT_EQ(host.parameter(ControlId::density).getValue(), 0.75f);
    Instance& instance = host.processor.plugin().system().instance;
    const RunLoop::Scope main(instance.runLoop);
    ASSERT_TRUE(instance.alerts.current());
    EXPECT_THAT(instance.alerts.current()->message, HasSubstr("The state is not restored: "));
    EXPECT_EQ(std::ranges::count(host.lines, instance.alerts.current()->message), 1);
}

} // namespace
} // namespace zephyra
