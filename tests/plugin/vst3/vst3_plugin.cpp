#include "tests/plugin/vst3/vst3_plugin.h"

#include "hosting/plugin_names.h"
#include "tests/support/testing.h"

#include <dlfcn.h>
#include <pluginterfaces/vst/ivstcomponent.h>
#include <public.sdk/source/common/memorystream.h>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
} // namespace juce

namespace zephyra {

namespace {

/// As every host's window toolkit does: JUCE's own requests are not always answered without a
/// window manager.
void outliveErrorsOfX() {
    void* const x = ::dlopen("libX11.so.6", RTLD_NOW);
    using Handler = int (*)(void*, void*);
    if (auto* const set =
            x ? reinterpret_cast<Handler (*)(Handler)>(::dlsym(x, "XSetErrorHandler")) : nullptr)
        set([](void*, void*) { return 0; });
}

/// JUCE lives from the first test to the last, on the thread that runs them; users' files are left
/// alone.
struct JuceEnvironment : testing::Environment {
    void SetUp() override {
        ::setenv("ZEPHYRA_SHARED_FOLDER", (folder_ / "shared").c_str(), 1);
        ::setenv("HOME", folder_.path().c_str(), 1);
        ::setenv("DISPLAY", ":9999", 1); // without the name JUCE takes the first display there is
        outliveErrorsOfX();
        juce_.emplace();
    }
    void TearDown() override { juce_.reset(); }

    TemporaryFolder folder_;
    std::optional<juce::ScopedJuceInitialiser_GUI> juce_;
};
const auto* const environment = testing::AddGlobalTestEnvironment(new JuceEnvironment);

Steinberg::Vst::IComponent* componentOf(juce::AudioPluginInstance& instance) {
    struct Visitor : juce::ExtensionsVisitor {
        void visitVST3Client(const VST3Client& client) override {
            component = client.getIComponentPtr();
        }
        Steinberg::Vst::IComponent* component = nullptr;
    } visitor;
    instance.getExtensions(visitor);
    return visitor.component;
}

} // namespace

juce::File vst3Bundle(PluginKind kind) {
    const std::string name =
        kind == PluginKind::instrument ? kInstrumentNames.name : kEffectNames.name;
    return juce::File(ZEPHYRA_BINARY_DIR "/plugin/VST3/" + name + ".vst3");
}

void pumpMessages(int milliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    do {
        while (juce::dispatchNextMessageOnSystemQueue(true)) {
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    } while (std::chrono::steady_clock::now() < end);
}

struct Vst3Plugin::Clock : juce::AudioPlayHead {
    explicit Clock(const PluginTransport& from) : told(from) {}
    juce::Optional<PositionInfo> getPosition() const override {
        if (!told.tempo) return {};
        PositionInfo info;
        info.setBpm(*told.tempo);
        if (told.numerator)
            info.setTimeSignature(TimeSignature{static_cast<int>(*told.numerator),
                                                static_cast<int>(told.denominator.value_or(4))});
        if (told.beats) info.setPpqPosition(*told.beats);
        info.setIsPlaying(told.moving.value_or(false));
        info.setTimeInSamples(0);
        return info;
    }
    const PluginTransport& told;
};

Vst3Plugin::Vst3Plugin(PluginKind kind) : clock_(std::make_unique<Clock>(transport)) {
    juce::VST3PluginFormat format;
    juce::OwnedArray<juce::PluginDescription> found;
    format.findAllTypesForFile(found, vst3Bundle(kind).getFullPathName());
    EXPECT_EQ(found.size(), 1) << vst3Bundle(kind).getFullPathName();
    if (found.isEmpty()) return;
    juce::String error;
    instance_ = format.createInstanceFromDescription(*found[0], 48000, 512, error);
    EXPECT_TRUE(instance_) << error;
    if (!instance_) return;
    instance_->setPlayHead(clock_.get());
    for (auto* parameter : instance_->getParameters())
        if (byId_.size() < kParameterCount) byId_.push_back(parameter);
}

Vst3Plugin::~Vst3Plugin() {
    if (instance_) instance_->releaseResources();
}

void Vst3Plugin::start(double sampleRate, int mostFrames, bool offline) {
    instance_->setNonRealtime(offline);
    instance_->prepareToPlay(sampleRate, mostFrames);
}

void Vst3Plugin::play(float* left, float* right, int frames, juce::MidiBuffer& midi) {
    float* channels[] = {left, right};
    juce::AudioBuffer<float> block(channels, 2, frames);
    instance_->processBlock(block, midi);
}

void Vst3Plugin::play(int frames, juce::MidiBuffer midi) {
    for (auto& channel : heard) {
        channel.resize(static_cast<std::size_t>(frames));
        for (float& sample : channel) {
            noise_ = noise_ * 1664525u + 1013904223u;
            sample = static_cast<float>(noise_ >> 8) / 33554432.0f - 0.25f;
        }
    }
    play(heard[0].data(), heard[1].data(), frames, midi);
}

bool Vst3Plugin::playUntil(const std::function<bool()>& isTrue) {
    for (int i = 0; i < 500 && !isTrue(); ++i) {
        pumpMessages(10);
        play(480);
    }
    return isTrue();
}

float Vst3Plugin::peak() const {
    float most = 0.0f;
    for (const auto& channel : heard)
        for (const float sample : channel) {
            const bool isGood = sample == 0.0f || std::isnormal(sample);
            most =
                isGood ? std::max(most, std::abs(sample)) : std::numeric_limits<float>::infinity();
            if (!isGood) return most;
        }
    return most;
}

std::string Vst3Plugin::state() const {
    Steinberg::MemoryStream stream;
    componentOf(*instance_)->getState(&stream);
    const std::string all =
        juce::String::fromUTF8(stream.getData(), static_cast<int>(stream.getSize())).toStdString();
    const auto end = all.find("</plist>"); // JUCE puts bytes of its own behind
    return end == all.npos ? std::string() : all.substr(0, end) + "</plist>\n";
}

void Vst3Plugin::setState(const std::string& bytes) const {
    juce::XmlElement session("VST3PluginState");
    session.createNewChildElement("IComponent")
        ->addTextElement(juce::MemoryBlock(bytes.data(), bytes.size()).toBase64Encoding());
    juce::MemoryBlock kept;
    juce::AudioProcessor::copyXmlToBinary(session, kept);
    instance_->setStateInformation(kept.getData(), static_cast<int>(kept.getSize()));
}

} // namespace zephyra
