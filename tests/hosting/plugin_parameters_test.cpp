// What hosts show of the parameters, keep automation by, and read from what people type.

#include "hosting/plugin_parameters.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

const PluginParameter& of(ControlId id) {
    return pluginParameters()[static_cast<std::size_t>(id)];
}

// Presets and sessions of hosts depend on every character.
TEST(PluginParameters, AreFrozen) {
    std::ostringstream text;
    std::set<std::string> shortNames;
    for (const PluginParameter& parameter : pluginParameters()) {
        text << static_cast<int>(parameter.id) << ' ' << parameter.symbol << " in "
             << parameter.group->symbol << ": " << parameter.minimum << " to " << parameter.maximum
             << ", " << parameter.defaultValue << (*parameter.unit ? " " : "") << parameter.unit
             << (parameter.isSwitch ? ", switch" : "")
             << (parameter.isExponential ? ", exponential" : "") << '\n';
        EXPECT_LE(std::strlen(parameter.shortName), 8u);
        EXPECT_TRUE(shortNames.insert(parameter.shortName).second) << parameter.shortName;
    }
    EXPECT_EQ(text.str(), readText(ZEPHYRA_SOURCE_DIR "/tests/saved_files/host_parameters.txt"));
}

TEST(PluginParameters, StandAnywhereInAHostsSlider) {
    for (const PluginParameter& parameter : pluginParameters()) {
        SCOPED_TRACE(parameter.name);
        const auto linear = [&](float at) { return linearFromNormalized(parameter, at); };
        for (const float low : {0.0f, -1.0f, NAN}) EXPECT_EQ(linear(low), parameter.minimum);
        for (const float high : {1.0f, 2.0f}) EXPECT_EQ(linear(high), parameter.maximum);
        EXPECT_EQ(normalizedFromLinear(parameter, NAN), 0.0f);
        EXPECT_EQ(normalizedFromLinear(parameter, parameter.minimum), 0.0f);
        EXPECT_EQ(normalizedFromLinear(parameter, parameter.maximum * 2), 1.0f);
        if (!parameter.isSwitch) {
            EXPECT_NEAR(normalizedFromLinear(parameter, linear(0.3f)), 0.3f, 1e-6f);
        }
    }
    EXPECT_EQ(linearFromNormalized(of(ControlId::freeze), 0.49f), 0.0f);
    EXPECT_EQ(linearFromNormalized(of(ControlId::freeze), 0.5f), 1.0f);
}

TEST(ParameterText, IsShortAndReadsBackFromAllOverTheRange) {
    for (const PluginParameter& parameter : pluginParameters())
        for (int step = 0; step <= 1000; ++step) {
            const float linear = linearFromNormalized(parameter, static_cast<float>(step) / 1000);
            const std::string text = parameterText(parameter, linear);
            const auto read = parameterFromText(parameter, text);
            ASSERT_TRUE(read) << parameter.name << ": " << text;
            EXPECT_LE(text.size(), 9u) << parameter.name << ": " << text;
            EXPECT_EQ(parameterText(parameter, *read), text); // within a digit, and it stays there
        }
    EXPECT_EQ(parameterText(of(ControlId::amplitude), NAN), "0 %");
}

TEST(ParameterText, TakesWhatPeopleTypeAndShowsIt) {
    using enum ControlId;
    // "typed=shown", typed "~" in front where a digit is lost.
    const std::pair<ControlId, std::vector<std::string>> cases[] = {
        {length, {"0.25 s=250 ms", "1.5s=1.5 s", "~999.94=999.9 ms", "~999.96 ms=1 s"}},
        {leftDelay, {"300ms=300 ms", "4.5=4.5 s"}},
        {jittering, {" 0.125 =0.125 ms", "0=0 ms"}},
        {ringModulationFrequency, {"1.2K=1.2 kHz", "1,25 khz=1.25 kHz"}},
        {density, {"82,5=82.5 Hz"}},
        {pitch, {"-7 semitones=-7 st", "+1 oct=12 st", "~-0.001=0 st"}},
        {rndPitch, {"50 ct=0.5 st"}},
        {scanning, {"-25%=-0.25 x"}},
        {amplitude, {"~-6 dB=50.1 %", "0.125=12.5 %", "50=50 %", "1=100 %"}},
        {leftGain, {"34.1=34.1 %"}},
        {dryWet, {"70=70 %"}},
        {scrubbingWave, {"33.3 percent=33.3 %"}},
        {pan, {"-0.305=30.5 L", "R20=20 R", "20 % right=20 R", "left=100 L", "0=C", "centre=C"}},
        {echoSwitch, {"ON=On"}},
        {freeze, {"0.0=Off"}},
        {live, {"true=On"}},
        {playStop, {"no=Off"}}};
    for (const auto& [id, texts] : cases)
        for (const std::string& text : texts) {
            const bool isRounded = text[0] == '~';
            const std::size_t sign = text.find('=');
            const std::string shown = text.substr(sign + 1);
            const auto linear = parameterFromText(of(id), text.substr(isRounded, sign - isRounded));
            ASSERT_TRUE(linear) << text;
            EXPECT_EQ(parameterText(of(id), *linear), shown) << text;
            EXPECT_TRUE(isRounded || parameterFromText(of(id), shown) == linear) << text;
        }
    const std::pair<ControlId, const char*> wrong[] = {
        {density, ""},       {density, " "},       {density, "500"},  {density, "nan"},
        {density, "1,000"},  {length, "1,5,5"},    {length, "80 Hz"}, {pan, "50%"},
        {pan, "L150"},       {pan, "L-5"},         {pan, "LR"},       {width, "101"},
        {width, "-1"},       {leftGain, "1"},      {leftGain, "99"},  {pitch, "50"},
        {echoSwitch, "0.5"}, {echoSwitch, "loud"}, {dryWet, "150"}};
    for (const auto& [id, typed] : wrong) EXPECT_FALSE(parameterFromText(of(id), typed)) << typed;
}

} // namespace
} // namespace zephyra
