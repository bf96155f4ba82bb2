#include "screens/model/help_texts.h"

#include "audiounit/control_meaning.h"
#include "audiounit/control_text.h"

#include <array>

namespace zephyra {

namespace {

using enum HelpId;
constexpr auto kLast = static_cast<std::size_t>(keyboard);

// clang-format off
constexpr std::array<HelpText, kLast + 1> kTexts{{
    {play, "Play: fades in by the fade-in time", Shortcut::playStop},
    {playSynced, "Play: starts at the host's next bar", Shortcut::playStop},
    {playArmed, "Starts at the host's next bar; press to wait no more", Shortcut::playStop},
    {stop, "Stop: fades out by the fade-out time", Shortcut::playStop},
    {rewind, "Rewind the scan to the region's start", Shortcut::rewind},
    {rewindSynced, "Rewind the scan to the region's start; hold to wait for the next bar", Shortcut::rewind},
    {rewindArmed, "Rewinds at the host's next bar; press to rewind now", Shortcut::rewind},
    {freeze, "Freeze the scan where it stands, and live sound as it was heard", Shortcut::freeze},
    {frozen, "Frozen: the scan stands, and so does live sound", Shortcut::freeze},
    {live, "LIVE: cut grains from the last seconds of the input", Shortcut::live},
    {liveOn, "LIVE: grains are cut from the input; press to stay with what was heard", Shortcut::live},
    {liveUnavailable, "LIVE has no input in an instrument: load Zephyra as an effect"},
    {liveClear, "Clear: forget what LIVE has heard"},
    {previousPreset, "The preset before this one; before the first comes the last of the bank before"},
    {nextPreset, "The preset behind this one; behind the last comes the first of the next bank"},
    {preset, "Preset @: press for all presets and banks, arrow keys step"},
    {sound, "The sound that grains are cut from; press, or drop a file, to load another", Shortcut::load},
    {soundNamed, "@: press, or drop a file, to load another", Shortcut::load},
    {soundLive, "@: press to go back to the file, or to load another", Shortcut::load},
    {soundMissing, "@ was not found; Locate chooses another"},
    {locate, "Choose the file that takes the missing sound's place"},
    {randomise, "Randomise all controls that are not locked by @ of their range; right-click for another amount"},
    {undo, "Undo @", Shortcut::undo},
    {undoNothing, "Nothing to undo"},
    {redo, "Redo @", Shortcut::redo},
    {redoNothing, "Nothing to redo"},
    {playA, "Play A, and keep what was set as B"},
    {playsA, "A plays"},
    {playB, "Play B, and keep what was set as A"},
    {playsB, "B plays"},
    {tempo, "Tempo, @ beats per minute: tap it, drag it or turn the wheel, 20 to 999"},
    {hostTempo, "Tempo of the host, @ beats per minute"},
    {bar, "Bar and beat of the host"},
    {barNow, "@ of the host's music"},
    {settings, "Settings: fades, knobs, zoom, meters, sounds in sessions", Shortcut::settings},
    {scan, "Drag to scrub, and hold to stay; the wheel zooms, Shift-drag moves what is shown, a double click shows all"},
    {regionStart, "Where in the sound the scan begins, in seconds"},
    {regionEnd, "Where in the sound the scan ends, in seconds"},
    {locateOnStage, "Choose the file that plays in place of the missing sound"},
    {soundOnStage, "Load another sound; a file that is dropped does it, too", Shortcut::load},
    {missing, "@ is missing"},
    {meter, "Level of the output: rms light, peak dark, its highest above; click to reset, right-click to switch displays"},
    {spectrum, "Spectrum of the output, 30 Hz to 20 kHz in decibels; click to switch on and off"},
    {scope, "Scope: the last 40 ms of the output, enlarged while it is quiet; click to switch on and off"},
    {voices, "The grains that sound now, of 24 at most, in the colours of their pitch"},
    {keepLive, "Keeps what LIVE heard last as a sound file in the shared folder"},
    {envelopes, "The shapes of grains: arrows mark one, Enter takes it"},
    {value, "Type a value in any of the control's units; Enter takes it, Escape does not"},
    {presetsDrawer, "Presets: search, try and choose them, bank by bank"},
    {samplesDrawer, "Samples: the sound files at hand, to try and choose"},
    {modulationDrawer, "Modulation: what moves which knob, by LFO, MIDI or hand"},
    {takesDrawer, "Takes: record the way of the scan, and play it again"},
    {keysDrawer, "Keys: play the pitch"},
    {padDrawer, "Pad: play pitch and density with one finger"},
    {cpu, "Share of its time that rendering takes; at 100 % the sound breaks up"},
    {dropped, "Grains that found no free voice; click to count from 0 again"},
    {closeSettings, "Close the settings; Escape does, too"},
    {settingsKeys, "Tab or up and down go from row to row, left and right change it, Escape closes"},
    {noteOn, "What a key does: it starts the sound and sets its pitch, or only sets the pitch"},
    {noteOff, "What the last key does when it goes up: the sound it began fades out, or plays on"},
    {startAnew, "When the host starts: scan, chance and LFOs begin where the session has them"},
    {programs, "Whether MIDI program changes and bank selects choose presets"},
    {embedding, "Sounds up to this length are kept inside the session, for when their file is gone"},
    {steadyLevel, "Keeps the sound as loud whatever the grains' density, length, envelope and width"},
    {zoom, "How large everything is, 75 to 250 %", Shortcut::zoomIn, Shortcut::zoomOut},
    {knobStyle, "How a drag turns a knob: round its centre, sideways, up and down, or either way"},
    {levelSwitch, "Shows the level of the output; off, it costs nothing"},
    {spectrumSwitch, "Shows the spectrum of the output; off, it costs nothing"},
    {scopeSwitch, "Shows the wave of the output; off, it costs nothing"},
    {reducedMotion, "Stops what moves for decoration: trails, fading lines, blinking"},
    {audioDevices, "The sound device that plays; choose another, its rate and its block"},
    {midiDevices, "Every MIDI input of the system is heard, as it comes and goes"},
    {audioButton, "Choose the sound device, its rate and its block"},
    {keyboard, "Keys that play the pitch, by mouse or finger"},
}};
// clang-format on

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < kTexts.size(); ++i)
        if (static_cast<std::size_t>(kTexts[i].id) != i) return false;
    return true;
}
static_assert(isInOrder());

} // namespace

std::span<const HelpText> helpTexts() noexcept {
    return kTexts;
}

std::string helpText(HelpId id, const std::string& told) {
    const HelpText& row = kTexts[static_cast<std::size_t>(id)];
    std::string text = row.sentence;
    if (const std::size_t at = text.find('@'); at != std::string::npos) text.replace(at, 1, told);
    if (!row.shortcut) return text;
    text += std::string(" (") + keysOf(*row.shortcut);
    if (row.opposite) text += std::string(", ") + keysOf(*row.opposite);
    return text + ")";
}

std::string helpText(ControlId id) {
    const ControlRange& range = controlRange(id);
    std::string text = std::string(range.name) + ": " + controlMeaning(id);
    if (text.front() >= 'a' && text.front() <= 'z') text.front() -= 'a' - 'A'; // "envelope"
    const bool hasNumbers = range.kind != ControlKind::switching && id != ControlId::envelope;
    return hasNumbers ? text + " " + rangeText(range) + "." : text;
}

} // namespace zephyra
