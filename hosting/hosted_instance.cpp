#include "hosting/hosted_instance.h"

#include "platform/audio_unit/audio_unit_status.h"

#include <new>

namespace zephyra {

namespace {

std::unique_ptr<MyAudioUnit> makeUnit(FourCharCode type, Instance& instance) {
    OSStatus error = audio_unit_status::noError;
    auto unit = MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                        instance, error);
    if (error == audio_unit_status::invalidValue)
        unit = MyAudioUnit::initWithComponentDescription_options_error(
            {.componentType = component_type::effect}, instance, error);
    if (!unit) throw std::bad_alloc();
    return unit;
}

} // namespace

Instance& HostedInstance::prepared(const Prepare& prepare) {
    if (prepare) prepare(instance);
    return instance;
}

HostedInstance::HostedInstance(FourCharCode type, const Prepare& prepare)
    : unit(makeUnit(type, prepared(prepare))), view(instance),
      inlet(instance, [this](const MidiMessage& message) {
          if (!view.receiveMidi(message) && unbound) unbound(message);
      }) {}

} // namespace zephyra
