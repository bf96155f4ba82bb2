#include "plugin/juce/zephyra_processor.h"

#include "hosting/plugin_names.h"
#include "plugin/juce/make_processor.h"
#include "plugin/juce/screen_editor.h"
#include "plugin/juce/zephyra_parameter.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>

namespace zephyra {

namespace {

PluginTransport transportOf(const juce::AudioProcessor& processor) {
    PluginTransport transport;
    const auto* playHead = processor.getPlayHead();
    const auto position = playHead ? playHead->getPosition() : juce::nullopt;
    if (!position) return transport;
    if (const auto tempo = position->getBpm()) transport.tempo = *tempo;
    if (const auto meter = position->getTimeSignature()) {
        transport.numerator = meter->numerator;
        transport.denominator = meter->denominator;
    }
    if (const auto beats = position->getPpqPosition()) transport.beats = *beats;
    transport.moving = position->getIsPlaying();
    return transport;
}

} // namespace

ZephyraProcessor::BusesProperties ZephyraProcessor::buses(PluginKind kind) {
    const auto stereo = juce::AudioChannelSet::stereo();
    const auto out = BusesProperties().withOutput("Output", stereo);
    return kind == PluginKind::instrument ? out : out.withInput("Input", stereo);
}

ZephyraProcessor::ZephyraProcessor(PluginKind kind, const HostedInstance::Prepare& prepare)
    : AudioProcessor(buses(kind)), plugin_(kind, prepare),
      gestures_(plugin_.system(),
                [this](const AUParameterAutomationEvent& event) { news_.postGesture(event); }) {
    addParameters(*this, plugin_);
}

const juce::String ZephyraProcessor::getName() const {
    const bool isEffect = plugin_.kind() == PluginKind::effect;
    return (isEffect ? kEffectNames : kInstrumentNames).name;
}

bool ZephyraProcessor::isBusesLayoutSupported(const BusesLayout& layouts) const {
    const auto mono = juce::AudioChannelSet::mono(), stereo = juce::AudioChannelSet::stereo();
    const auto in = layouts.getMainInputChannelSet(), out = layouts.getMainOutputChannelSet();
    if (out != mono && out != stereo) return false;
    if (getBusCount(true) == 0) return true;
    return in == mono || (in == stereo && out == stereo);
}

void ZephyraProcessor::prepareToPlay(double sampleRate, int mostFrames) {
    const auto frames = static_cast<std::uint32_t>(std::max(mostFrames, 1));
    const auto prepared = plugin_.prepare({.sampleRate = sampleRate, .mostFrames = frames});
    if (!prepared) plugin_.system().instance.log.write(prepared.message());
}

void ZephyraProcessor::processBlock(juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midi) {
    plugin_.setBypass(false);
    render(buffer, midi);
}

void ZephyraProcessor::processBlockBypassed(juce::AudioBuffer<float>& buffer,
                                            juce::MidiBuffer& midi) {
    plugin_.setBypass(true);
    render(buffer, midi);
}

void ZephyraProcessor::render(juce::AudioBuffer<float>& buffer, const juce::MidiBuffer& midi) {
    for (const auto message : midi)
        plugin_.queueMidi(message.data, static_cast<std::size_t>(message.numBytes),
                          static_cast<std::uint32_t>(std::max(message.samplePosition, 0)));

    const int inputs = std::min(getTotalNumInputChannels(), buffer.getNumChannels());
    const int outputs = std::min(getTotalNumOutputChannels(), buffer.getNumChannels());
    PluginBlock block;
    block.frames = static_cast<std::uint32_t>(buffer.getNumSamples());
    for (int c = 0; c < std::min(inputs, 2); ++c) block.input[c] = buffer.getReadPointer(c);
    for (int c = 0; c < std::min(outputs, 2); ++c) block.output[c] = buffer.getWritePointer(c);
    block.transport = transportOf(*this);
    if (isNonRealtime())
        plugin_.renderOffline(block);
    else
        plugin_.render(block);
}

int ZephyraProcessor::getNumPrograms() {
    return static_cast<int>(plugin_.programs().size());
}

int ZephyraProcessor::getCurrentProgram() {
    return static_cast<int>(plugin_.currentProgram());
}

void ZephyraProcessor::setCurrentProgram(int number) {
    if (number < 0) return;
    plugin_.setProgram(static_cast<std::size_t>(number));
    news_.postAll();
}

const juce::String ZephyraProcessor::getProgramName(int number) {
    const auto& all = plugin_.programs();
    const bool isThere = number >= 0 && static_cast<std::size_t>(number) < all.size();
    if (!isThere) return {};
    return juce::String::fromUTF8(all[static_cast<std::size_t>(number)].name.c_str());
}

void ZephyraProcessor::getStateInformation(juce::MemoryBlock& state) {
    const std::string bytes = plugin_.state();
    state.replaceAll(bytes.data(), bytes.size());
}

void ZephyraProcessor::setStateInformation(const void* state, int bytes) {
    if (!state || bytes <= 0) return;
    const auto restored =
        plugin_.setState({static_cast<const std::byte*>(state), static_cast<std::size_t>(bytes)});
    if (restored) {
        for (AUParameterAddress i = 0; i < kParameterCount; ++i)
            parameterAt(*this, i).countAsTold(); // a host reads them after this
        return;
    }
    Instance& instance = plugin_.system().instance;
    const std::string problem = "The state is not restored: " + restored.message();
    instance.log.write(problem);
    const RunLoop::Scope main(instance.runLoop);
    presentWarning(instance.alerts, problem);
}

juce::AudioProcessorEditor* ZephyraProcessor::createEditor() {
    return new ScreenEditor(*this);
}

juce::AudioProcessor* makeEffect() {
    return new ZephyraProcessor(PluginKind::effect);
}

juce::AudioProcessor* makeInstrument() {
    return new ZephyraProcessor(PluginKind::instrument);
}

} // namespace zephyra
