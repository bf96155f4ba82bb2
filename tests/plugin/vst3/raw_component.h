// RawComponent: a VST3 plug-in's own component, called without a host's layers around it.
#pragma once

#include "tests/plugin/vst3/vst3_plugin.h"

#include <dlfcn.h>
#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>

namespace zephyra {

namespace vst = Steinberg::Vst;

/// Made from the factory of the library, which stays loaded; as hosts do it, on any thread.
class RawComponent {
public:
    /// Active at 48 kHz; silent for ever when a step was refused.
    explicit RawComponent(PluginKind kind) : hasInput_(kind == PluginKind::effect) {
        Steinberg::IPluginFactory* const factory = factoryOf(kind);
        Steinberg::PClassInfo info;
        for (int i = 0; factory && i < factory->countClasses() && !component_; ++i)
            if (factory->getClassInfo(i, &info);
                std::strcmp(info.category, kVstAudioEffectClass) == 0)
                factory->createInstance(info.cid, vst::IComponent::iid,
                                        reinterpret_cast<void**>(&component_));
        if (!component_ || component_->initialize(nullptr) != Steinberg::kResultOk) return;
        component_->queryInterface(vst::IAudioProcessor::iid,
                                   reinterpret_cast<void**>(&processor_));
        vst::ProcessSetup setup{vst::kRealtime, vst::kSample32, kFrames, 48000.0};
        if (hasInput_) component_->activateBus(vst::kAudio, vst::kInput, 0, true);
        component_->activateBus(vst::kAudio, vst::kOutput, 0, true);
        ok_ = processor_ && processor_->setupProcessing(setup) == Steinberg::kResultOk &&
              component_->setActive(true) == Steinberg::kResultOk;
    }
    ~RawComponent() {
        if (ok_) component_->setActive(false);
        if (processor_) processor_->release();
        if (!component_) return;
        component_->terminate();
        component_->release();
    }
    RawComponent(const RawComponent&) = delete;
    RawComponent& operator=(const RawComponent&) = delete;

    static constexpr int kFrames = 512;
    bool ok() const { return ok_; }
    /// A block of what stands in both channels.
    void play(float* left, float* right) {
        float* channels[] = {left, right};
        vst::AudioBusBuffers bus;
        bus.numChannels = 2;
        bus.channelBuffers32 = channels;
        vst::ProcessData data;
        data.symbolicSampleSize = vst::kSample32;
        data.numSamples = kFrames;
        data.numInputs = hasInput_ ? 1 : 0;
        data.numOutputs = 1;
        data.inputs = data.outputs = &bus;
        processor_->process(data);
    }

private:
    /// Entered once: the library keeps what it began until the program ends.
    static Steinberg::IPluginFactory* factoryOf(PluginKind kind) {
        static Steinberg::IPluginFactory* const all[] = {load(PluginKind::effect),
                                                         load(PluginKind::instrument)};
        return all[kind == PluginKind::instrument ? 1 : 0];
    }
    static Steinberg::IPluginFactory* load(PluginKind kind) {
        const juce::File bundle = vst3Bundle(kind);
        const std::string library =
            "Contents/x86_64-linux/" + bundle.getFileNameWithoutExtension().toStdString() + ".so";
        void* const handle = ::dlopen(bundle.getChildFile(library).getFullPathName().toRawUTF8(),
                                      RTLD_NOW | RTLD_LOCAL);
        if (!handle) return nullptr;
        const auto enter = reinterpret_cast<bool (*)(void*)>(::dlsym(handle, "ModuleEntry"));
        const auto factory =
            reinterpret_cast<Steinberg::IPluginFactory* (*)()>(::dlsym(handle, "GetPluginFactory"));
        return enter(handle) ? factory() : nullptr;
    }

    vst::IComponent* component_ = nullptr;
    vst::IAudioProcessor* processor_ = nullptr;
    const bool hasInput_;
    bool ok_ = false;
};

} // namespace zephyra
