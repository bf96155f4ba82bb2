#include "screens/picture/picture_state.h"

#include "library/preset_dialogs.h"

#include <algorithm>
#include <array>
#include <string>

namespace zephyra {

namespace {

using enum ControlId;

void clickOn(PictureScene& scene, std::string_view title) {
    if (const juce::Component* const part = scene.findTitled(title))
        scene.window().click(scene.middleOf(*part));
}

void turnOn(PictureScene& scene, ControlId id) {
    scene.plugin().setParameter(static_cast<AUParameterAddress>(id), 1.0f);
}

void start(PictureScene& scene, double seconds) {
    scene.play(seconds);
}

void play(PictureScene& scene, double seconds) {
    turnOn(scene, playStop);
    scene.play(seconds);
}

void goLive(PictureScene& scene, double seconds) {
    turnOn(scene, live);
    play(scene, seconds);
}

/// With Scan Sync, Play waits for the host's next bar.
void arm(PictureScene& scene, double seconds) {
    scene.asMain([](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.setDisplayed(scanSync, 1.0f);
    });
    scene.standAt(1.0);
    scene.play(seconds);
}

/// By an LFO, a controller, and fingers that are not there yet; and one waits for its controller.
void moveKnobs(PictureScene& scene, double seconds) {
    for (const ControlId id : {echoSwitch, ringModulationSwitch}) turnOn(scene, id);
    KnobHand& hand = scene.find<PathArea>()->hand();
    hand.assign(pitch, AssignmentType::lfo);
    hand.assign(jittering, AssignmentType::secondFinger);
    hand.assign(width, AssignmentType::scrubY);
    hand.learnMidi(density);
    for (const std::uint8_t level :
         std::array<std::uint8_t, 2>{40, 90}) { // the first is learned, the second picks up
        const std::uint8_t controller[] = {0xB0, 1, level};
        scene.plugin().queueMidi(controller, std::size(controller));
        scene.play(0.1);
    }
    hand.learnMidi(amplitude);
    play(scene, seconds);
}

void ask(PictureScene& scene, const Alert& alert) {
    scene.asMain([&](AudioUnitViewController& view) { view.instance().alerts.present(alert); });
    scene.frames(2);
}

void warn(PictureScene& scene, double seconds) {
    play(scene, seconds);
    ask(scene, overwriteDialog("Night Birds", {}));
}

void askForName(PictureScene& scene, double seconds) {
    play(scene, seconds);
    ask(scene, renameDialog("Bank", "Field Recordings", {}, {}));
}

void type(PictureScene& scene, double seconds) {
    play(scene, seconds);
    scene.window().click(scene.numberOf(density));
    for (const char digit : {'1', '2', '0'}) scene.window().key(juce::KeyPress(digit, {}, digit));
    scene.frames(2);
}

void openMenu(PictureScene& scene, double seconds) {
    play(scene, seconds);
    clickOn(scene, "Preset");
    scene.frames(2);
}

void openSettings(PictureScene& scene, double seconds) {
    play(scene, seconds);
    clickOn(scene, "Settings");
    scene.frames(2);
}

void lose(PictureScene& scene, double seconds, const char* path) {
    scene.play(seconds);
    scene.asMain([path](AudioUnitViewController& view) {
        SampleReference lost;
        lost.path = path;
        view.sampleLoader.loadReference(lost, SoundUse::play);
    });
    scene.play(0.1);
}

void loseSound(PictureScene& scene, double seconds) {
    lose(scene, seconds, "/nowhere/Lost Bells.wav");
    scene.window().key(juce::KeyPress(juce::KeyPress::returnKey)); // the alert's Ok
    PictureWindow::settle();
    scene.frames(2);
}

/// Neither typeface nor direction of which is the window's own; accents that stand apart.
void loseForeignSound(PictureScene& scene, double seconds) {
    lose(scene, seconds, "/nowhere/Ёж 夜の鳥 שלום עולם السلام Zoe\u0308 ☃.wav");
}

constexpr auto kInstrument = PluginKind::instrument, kStandalone = PluginKind::standalone;

constexpr PictureState kStates[] = {
    {"start", "as it opens", kInstrument, 0.1, start},
    {"playing", "a sound plays", kInstrument, 3.0, play},
    {"live", "LIVE is on, plucked notes come in", kStandalone, 3.0, goLive},
    {"armed", "Play waits for the host's next bar", kInstrument, 0.65, arm},
    {"moved", "knobs are moved by an LFO, a controller and fingers", kInstrument, 2.0, moveKnobs},
    {"dialog", "an alert with a button that removes something", kInstrument, 1.0, warn},
    {"name", "an alert that asks for a name", kInstrument, 1.0, askForName},
    {"typing", "a value is being typed", kInstrument, 1.0, type},
    {"menu", "the menu of presets is open", kInstrument, 1.0, openMenu},
    {"settings", "the settings are open", kInstrument, 1.0, openSettings},
    {"missing", "the sound's file is missing", kInstrument, 0.1, loseSound},
    {"names", "a file's name is in many scripts", kInstrument, 0.1, loseForeignSound},
};

} // namespace

std::span<const PictureState> pictureStates() {
    return kStates;
}

const PictureState* pictureState(std::string_view name) {
    const auto* const found = std::ranges::find(kStates, name, &PictureState::name);
    return found == std::end(kStates) ? nullptr : found;
}

std::string pictureStateNames() {
    std::string names;
    for (const PictureState& state : kStates)
        names.append(names.empty() ? "" : ", ").append(state.name);
    return names;
}

} // namespace zephyra
