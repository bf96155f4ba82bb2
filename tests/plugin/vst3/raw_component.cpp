#include "tests/plugin/vst3/raw_component.h"

#include "tests/plugin/vst3/vst3_plugin.h"

#include <dlfcn.h>
#include <pluginterfaces/base/ipluginbase.h>

namespace zephyra {

using namespace Steinberg;

namespace {

/// Loaded once; the library keeps what it began until the program ends.
IPluginFactory* factoryOf(PluginKind kind) {
    const auto load = [](PluginKind which) -> IPluginFactory* {
        const juce::File bundle = vst3Bundle(which);
        const juce::File library = bundle.getChildFile("Contents/x86_64-linux")
                                       .getChildFile(bundle.getFileNameWithoutExtension() + ".so");
        void* const handle = ::dlopen(library.getFullPathName().toRawUTF8(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) return nullptr;
        const auto enter = reinterpret_cast<bool (*)(void*)>(::dlsym(handle, "ModuleEntry"));
        const auto factory =
            reinterpret_cast<IPluginFactory*(PLUGIN_API*)()>(::dlsym(handle, "GetPluginFactory"));
        return enter && factory && enter(handle) ? factory() : nullptr;
    };
    static IPluginFactory* const all[] = {load(PluginKind::effect), load(PluginKind::instrument)};
    return all[kind == PluginKind::instrument ? 1 : 0];
}

} // namespace

RawComponent::RawComponent(PluginKind kind, int mostFrames)
    : left(static_cast<std::size_t>(mostFrames)), right(left),
      hasInput_(kind == PluginKind::effect) {
    IPluginFactory* const factory = factoryOf(kind);
    if (!factory) return;
    for (int32 i = 0; i < factory->countClasses() && !component_; ++i) {
        PClassInfo info;
        factory->getClassInfo(i, &info);
        if (std::strcmp(info.category, kVstAudioEffectClass) == 0)
            factory->createInstance(info.cid, vst::IComponent::iid,
                                    reinterpret_cast<void**>(&component_));
    }
    if (!component_ || component_->initialize(nullptr) != kResultOk) return;
    component_->queryInterface(vst::IAudioProcessor::iid, reinterpret_cast<void**>(&processor_));
    vst::ProcessSetup setup{vst::kRealtime, vst::kSample32, mostFrames, 48000.0};
    for (const auto type : {vst::kAudio, vst::kEvent})
        for (const auto direction : {vst::kInput, vst::kOutput})
            if (component_->getBusCount(type, direction) > 0)
                component_->activateBus(type, direction, 0, true);
    ok_ = processor_ && processor_->setupProcessing(setup) == kResultOk &&
          component_->setActive(true) == kResultOk;
    if (processor_) processor_->setProcessing(true);
}

RawComponent::~RawComponent() {
    if (processor_) {
        processor_->setProcessing(false);
        component_->setActive(false);
        processor_->release();
    }
    if (component_) {
        component_->terminate();
        component_->release();
    }
}

void RawComponent::play(int frames) {
    float* channels[] = {left.data(), right.data()};
    vst::AudioBusBuffers in, out;
    in.numChannels = out.numChannels = 2;
    in.channelBuffers32 = out.channelBuffers32 = channels;
    vst::ProcessContext context{};
    context.state = vst::ProcessContext::kPlaying | vst::ProcessContext::kTempoValid;
    context.sampleRate = 48000.0;
    context.tempo = 120.0;
    vst::ProcessData data;
    data.processMode = vst::kRealtime;
    data.symbolicSampleSize = vst::kSample32;
    data.numSamples = frames;
    data.numInputs = hasInput_ ? 1 : 0;
    data.numOutputs = 1;
    data.inputs = hasInput_ ? &in : nullptr;
    data.outputs = &out;
    data.inputParameterChanges = &values;
    data.inputEvents = &notes;
    data.processContext = &context;
    processor_->process(data);
}

} // namespace zephyra
