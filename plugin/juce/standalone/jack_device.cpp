#include "plugin/juce/standalone/jack_device.h"

#include "hosting/plugin_names.h"
#include "plugin/standalone/jack_client.h"

#include <string>

namespace zephyra {

namespace {

class JackDevice final : public juce::AudioIODevice, JackClient::Player {
public:
    explicit JackDevice(StandalonePlayer& player)
        : AudioIODevice(JackDeviceType::kName, JackDeviceType::kName), player_(player) {
        auto joined = JackClient::open(kEffectNames.name, *this);
        if (joined)
            client_ = std::move(joined.value());
        else
            error_ = joined.message();
    }
    ~JackDevice() override { close(); }

    DeviceHealth health() const {
        return {.isLost = !client_ || client_->isLost() || error_.isNotEmpty(),
                .hasInput = client_ && client_->hasInput()};
    }

    juce::StringArray getOutputChannelNames() override { return {"left", "right"}; }
    juce::StringArray getInputChannelNames() override { return {"left", "right"}; }
    juce::Array<double> getAvailableSampleRates() override {
        return client_ ? juce::Array<double>(client_->sampleRate()) : juce::Array<double>();
    }
    juce::Array<int> getAvailableBufferSizes() override {
        return client_ ? juce::Array<int>(getDefaultBufferSize()) : juce::Array<int>();
    }
    int getDefaultBufferSize() override {
        return client_ ? static_cast<int>(client_->blockFrames()) : 0;
    }

    juce::String open(const juce::BigInteger&, const juce::BigInteger&, double, int) override {
        isOpen_ = client_ != nullptr;
        return error_;
    }
    void close() override {
        stop();
        isOpen_ = false;
    }
    bool isOpen() override { return isOpen_; }
    void start(juce::AudioIODeviceCallback* callback) override {
        stop();
        if (!isOpen_ || !callback) return;
        callback->audioDeviceAboutToStart(this);
        callback_ = callback;
        if (const auto started = client_->start(); !started) error_ = started.message();
    }
    void stop() override {
        if (!callback_) return;
        client_->stop();
        std::exchange(callback_, nullptr)->audioDeviceStopped();
    }
    bool isPlaying() override { return callback_ != nullptr; }

    juce::String getLastError() override { return error_; }
    int getCurrentBufferSizeSamples() override { return getDefaultBufferSize(); }
    double getCurrentSampleRate() override { return client_ ? client_->sampleRate() : 0.0; }
    int getCurrentBitDepth() override { return 32; }
    juce::BigInteger getActiveOutputChannels() const override { return bothChannels(); }
    juce::BigInteger getActiveInputChannels() const override { return bothChannels(); }
    int getOutputLatencyInSamples() override { return 0; }
    int getInputLatencyInSamples() override { return 0; }
    int getXRunCount() const noexcept override { return client_ ? client_->underruns() : 0; }

private:
    static juce::BigInteger bothChannels() { return juce::BigInteger(3); }

    void jackMidi(const std::uint8_t* bytes, std::size_t length,
                  std::uint32_t frame) ZEPHYRA_NONBLOCKING override {
        player_.queueMidi(bytes, length, frame);
    }
    void jackBlock(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                   const PluginTransport& transport) ZEPHYRA_NONBLOCKING override {
        player_.setTransport(transport);
        callback_->audioDeviceIOCallbackWithContext(inputs, 2, outputs, 2, static_cast<int>(frames),
                                                    {});
    }

    StandalonePlayer& player_;
    juce::String error_;
    bool isOpen_ = false;
    juce::AudioIODeviceCallback* callback_ = nullptr; // changed while the client is stopped
    std::unique_ptr<JackClient> client_;              // last: it plays until it is gone
};

} // namespace

std::unique_ptr<JackDeviceType> JackDeviceType::make(StandalonePlayer& player) {
    if (!JackLibrary::find()) return nullptr;
    return std::unique_ptr<JackDeviceType>(new JackDeviceType(player));
}

int JackDeviceType::getIndexOfDevice(juce::AudioIODevice* device, bool) const {
    return dynamic_cast<JackDevice*>(device) ? 0 : -1;
}

juce::AudioIODevice* JackDeviceType::createDevice(const juce::String&, const juce::String&) {
    return new JackDevice(player_);
}

DeviceHealth healthOf(const juce::AudioIODevice& device) {
    const auto* const jack = dynamic_cast<const JackDevice*>(&device);
    return jack ? jack->health() : DeviceHealth{};
}

} // namespace zephyra
