// HostedUnit: an instance of the system behind an offline host, ready to be listened to.
#pragma once

#include "hosting/hosted_instance.h"
#include "hosting/offline_host.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {

struct HostedUnit : HeardLog, HostedInstance {
    explicit HostedUnit(FourCharCode type)
        : HostedInstance(type, [this](Instance& fresh) { hear(fresh); }) {
        instance.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
        connect();
    }
    /// Ready to render noise, without fades.
    HostedUnit& ready(std::uint32_t blockFrames = 512) {
        stream.loadSound(noiseSample(30000, 44100));
        stream.setSeed(7);
        view._fadeInTime.setValue(0);
        EXPECT_EQ(host.start({44100, blockFrames}), audio_unit_status::noError);
        return *this;
    }
    /// Adds frames of output to heard, left before right; noise comes in.
    void render(std::uint32_t frames) {
        const auto input = noiseSample(frames, 44100);
        heard.resize(heard.size() + std::size_t{2} * frames);
        float* const right = heard.data() + heard.size() - frames;
        EXPECT_EQ(host.render({frames, input->getPtr(), input->getPtr(), right - frames, right}),
                  audio_unit_status::noError);
    }
    void queue(ControlId id, float value) {
        host.queueParameter(static_cast<AUParameterAddress>(id), value);
    }
    /// As a host does that counts beats in 4/4.
    void report(double tempo) {
        host.reportContext(true);
        host.reportTransport(true);
        host.setMeter(4);
        host.setTempo(tempo);
    }
    /// For the unit and for the view.
    void midi(std::vector<std::uint8_t> bytes) {
        host.setMidiInlet(&inlet);
        host.queueMidi(bytes.data(), static_cast<std::uint16_t>(bytes.size()));
    }
    AUParameter& parameter(ControlId id) {
        return *view.parameters._paramChildrens[static_cast<std::size_t>(id)];
    }

    MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
    OfflineHost host{*unit, instance};
    std::vector<float> heard;
};

} // namespace zephyra
