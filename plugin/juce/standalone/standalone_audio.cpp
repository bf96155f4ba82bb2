#include "plugin/juce/standalone/standalone_audio.h"

#include "plugin/juce/standalone/jack_device.h"

#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kAlsa = "ALSA";
constexpr int kChannels = 2;

constexpr const char* kType = "deviceType";
constexpr const char* kInput = "audioInputDeviceName";
constexpr const char* kOutput = "audioOutputDeviceName";

double now() {
    return juce::Time::getMillisecondCounterHiRes() * 0.001;
}

std::unique_ptr<juce::XmlElement> setupOf(const juce::String& type, const juce::String& input,
                                          const juce::String& output) {
    auto setup = std::make_unique<juce::XmlElement>("DEVICESETUP");
    setup->setAttribute(kType, type);
    if (input.isNotEmpty()) setup->setAttribute(kInput, input);
    setup->setAttribute(kOutput, output);
    return setup;
}

} // namespace

StandaloneAudio::StandaloneAudio(PluginInstance& instance, const std::string& chosen,
                                 const std::string& system)
    : player_(instance), choice_(chosen), system_(system) {
    addAudioCallback(&player_);
    addChangeListener(this);
}

StandaloneAudio::~StandaloneAudio() {
    delete settings_.getComponent();
    removeChangeListener(this);
    closeAudioDevice();
    removeAudioCallback(&player_);
}

void StandaloneAudio::createAudioDeviceTypes(juce::OwnedArray<juce::AudioIODeviceType>& types) {
    if (auto jack = JackDeviceType::make(player_)) types.add(jack.release());
    if (auto* const alsa = juce::AudioIODeviceType::createAudioIODeviceType_ALSA()) types.add(alsa);
}

/// JUCE looks for ALSA's cards once in a type's life.
void StandaloneAudio::findNewCards() {
    for (auto* const type : getAvailableDeviceTypes())
        if (type->getTypeName() == kAlsa) {
            removeAudioDeviceType(type);
            addAudioDeviceType(std::unique_ptr<juce::AudioIODeviceType>(
                juce::AudioIODeviceType::createAudioIODeviceType_ALSA()));
            getAvailableDeviceTypes().getLast()->scanForDevices();
            return;
        }
}

// --- What is opened ---

void StandaloneAudio::addDefault(std::vector<Setup>& setups, const char* typeName) {
    for (auto* const type : getAvailableDeviceTypes()) {
        if (type->getTypeName() != typeName) continue;
        const auto nameOf = [type](bool isInput) {
            return type->getDeviceNames(isInput)[type->getDefaultDeviceIndex(isInput)];
        };
        if (nameOf(false).isNotEmpty())
            setups.push_back(setupOf(typeName, nameOf(true), nameOf(false)));
    }
}

/// In the order of trying. A card without its microphone still plays.
std::vector<StandaloneAudio::Setup> StandaloneAudio::wanted() {
    std::vector<Setup> setups;
    const auto chosen = juce::parseXML(choice_);
    const bool isForced = !system_.empty();
    const auto fits = [&](const juce::XmlElement& setup) {
        return !isForced || setup.getStringAttribute(kType).equalsIgnoreCase(system_.c_str());
    };
    if (chosen && fits(*chosen))
        setups.push_back(std::make_unique<juce::XmlElement>(*chosen));
    else if (lastGood_)
        setups.push_back(std::make_unique<juce::XmlElement>(*lastGood_));
    else {
        if (!isForced || system_ == "jack") addDefault(setups, JackDeviceType::kName);
        if (!isForced || system_ == "alsa") addDefault(setups, kAlsa);
    }
    for (std::size_t i = 0, count = setups.size(); i < count; ++i)
        if (setups[i]->getStringAttribute(kType) == kAlsa && setups[i]->hasAttribute(kInput))
            setups.push_back(setupOf(kAlsa, {}, setups[i]->getStringAttribute(kOutput)));
    return setups;
}

bool StandaloneAudio::tryOne(const juce::XmlElement& setup) {
    problem_ = initialise(kChannels, kChannels, &setup, false).toStdString();
    if (!isRunning()) return false;
    if (healthOf(*getCurrentAudioDevice()).isLost) {
        closeAudioDevice();
        return false;
    }
    lastGood_ = std::make_unique<juce::XmlElement>(setup);
    lost_.clear();
    return true;
}

void StandaloneAudio::tryAll() {
    const double began = now();
    findNewCards();
    for (const Setup& setup : wanted())
        if (tryOne(*setup)) break;
    watch_.opened(began, now());
}

// --- What becomes of it ---

DeviceWatch::Signs StandaloneAudio::signs() const {
    auto* const device = getCurrentAudioDevice();
    if (!device) return {};
    const bool isJack = device->getTypeName() == JackDeviceType::kName;
    return {.isOpen = true,
            .hasFailed = healthOf(*device).isLost, // JUCE's ALSA calls an underrun a failure, too
            .mayPause = isJack,
            .blocks = player_.blocks()};
}

bool StandaloneAudio::look() {
    const double time = now();
    switch (watch_.look(time, signs())) {
    case DeviceWatch::Step::nothing:
        break;
    case DeviceWatch::Step::close:
        lost_ = getCurrentAudioDevice()->getTypeName().toStdString();
        closeAudioDevice();
        break;
    case DeviceWatch::Step::open:
        if (!settings_ || !lost_.empty()) tryAll(); // else a person is choosing
        break;
    }
    if (time >= nextMidiLook_) {
        midi_.refresh();
        nextMidiLook_ = time + DeviceWatch::kBetweenTries;
    }
    return std::exchange(shown_, status()) != shown_;
}

bool StandaloneAudio::hasInput() const {
    auto* const device = getCurrentAudioDevice();
    return device && !device->getActiveInputChannels().isZero() && healthOf(*device).hasInput;
}

std::string StandaloneAudio::status() const {
    if (auto* const device = getCurrentAudioDevice()) {
        if (!player_.problem().empty()) return player_.problem();
        const juce::String type = device->getTypeName(), name = device->getName();
        return (type + (name == type ? "" : ": " + name) + ", " +
                juce::String(std::lround(device->getCurrentSampleRate())) + " Hz, " +
                juce::String(device->getCurrentBufferSizeSamples()) + " frames")
            .toStdString();
    }
    if (!lost_.empty()) return "No sound: " + lost_ + " is gone and is waited for";
    return "No sound: no device yet; start a JACK server, connect a sound card, or choose under "
           "Audio";
}

// --- What a person chooses ---

void StandaloneAudio::changeListenerCallback(juce::ChangeBroadcaster*) {
    if (!settings_) return; // opened by itself
    const auto chosen = createStateXml();
    if (!chosen || !isRunning()) return;
    choice_ = chosen->toString(juce::XmlElement::TextFormat().singleLine()).toStdString();
    lost_.clear();
    if (listener_) listener_();
}

void StandaloneAudio::showSettings(juce::Component& besides) {
    if (settings_) return settings_->toFront(true);
    std::unique_ptr<juce::Component> selector(new juce::AudioDeviceSelectorComponent(
        *this, 0, kChannels, 1, kChannels, false, false, true, false));
    selector->setSize(480, 360);
    juce::DialogWindow::LaunchOptions options;
    options.content.setOwned(selector.release());
    options.dialogTitle = "Audio";
    options.componentToCentreAround = &besides;
    options.dialogBackgroundColour = besides.findColour(juce::ResizableWindow::backgroundColourId);
    options.useNativeTitleBar = true;
    options.resizable = false;
    settings_ = options.launchAsync();
}

} // namespace zephyra
