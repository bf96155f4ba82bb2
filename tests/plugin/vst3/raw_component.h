// RawComponent: a VST3 plug-in's own component, called without a host's layers around it.
#pragma once

#include "hosting/plugin_instance.h"

#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <pluginterfaces/vst/ivstevents.h>
#include <pluginterfaces/vst/ivstparameterchanges.h>

#include <vector>

namespace zephyra {

namespace vst = Steinberg::Vst;

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor" // interfaces of VST3 have none

/// What outlives its users' references.
template <typename Interface>
struct Unowned : Interface {
    Steinberg::tresult PLUGIN_API queryInterface(const Steinberg::TUID, void** found) override {
        *found = nullptr;
        return Steinberg::kNoInterface;
    }
    Steinberg::uint32 PLUGIN_API addRef() override { return 1; }
    Steinberg::uint32 PLUGIN_API release() override { return 1; }
};

/// One value at a block's start.
struct OneValue final : Unowned<vst::IParamValueQueue> {
    vst::ParamID PLUGIN_API getParameterId() override { return id; }
    Steinberg::int32 PLUGIN_API getPointCount() override { return 1; }
    Steinberg::tresult PLUGIN_API getPoint(Steinberg::int32, Steinberg::int32& frame,
                                           vst::ParamValue& normalized) override {
        frame = 0;
        normalized = value;
        return Steinberg::kResultOk;
    }
    Steinberg::tresult PLUGIN_API addPoint(Steinberg::int32, vst::ParamValue,
                                           Steinberg::int32&) override {
        return Steinberg::kResultFalse;
    }
    vst::ParamID id = 0;
    double value = 0.0;
};

struct BlockValues final : Unowned<vst::IParameterChanges> {
    Steinberg::int32 PLUGIN_API getParameterCount() override {
        return static_cast<Steinberg::int32>(all.size());
    }
    vst::IParamValueQueue* PLUGIN_API getParameterData(Steinberg::int32 index) override {
        return &all[static_cast<std::size_t>(index)];
    }
    vst::IParamValueQueue* PLUGIN_API addParameterData(const vst::ParamID&,
                                                       Steinberg::int32&) override {
        return nullptr;
    }
    std::vector<OneValue> all;
};

struct BlockNotes final : Unowned<vst::IEventList> {
    Steinberg::int32 PLUGIN_API getEventCount() override {
        return static_cast<Steinberg::int32>(all.size());
    }
    Steinberg::tresult PLUGIN_API getEvent(Steinberg::int32 index, vst::Event& event) override {
        event = all[static_cast<std::size_t>(index)];
        return Steinberg::kResultOk;
    }
    Steinberg::tresult PLUGIN_API addEvent(vst::Event&) override { return Steinberg::kResultFalse; }
    std::vector<vst::Event> all;
};

#pragma GCC diagnostic pop

/// Made from the factory of the library, which stays loaded; as hosts do it, on any thread.
class RawComponent {
public:
    /// Active at 48 kHz; not ok() when a step was refused.
    explicit RawComponent(PluginKind kind, int mostFrames = 512);
    ~RawComponent();
    RawComponent(const RawComponent&) = delete;
    RawComponent& operator=(const RawComponent&) = delete;

    bool ok() const { return ok_; }
    /// A block of what stands in the buffers, with values and notes. Neither allocates nor locks
    /// itself.
    void play(int frames);

    BlockValues values; ///< of the next block
    BlockNotes notes;
    std::vector<float> left, right; ///< mostFrames each

private:
    vst::IComponent* component_ = nullptr;
    vst::IAudioProcessor* processor_ = nullptr;
    const bool hasInput_;
    bool ok_ = false;
};

} // namespace zephyra
