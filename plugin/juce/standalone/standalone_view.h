// StandaloneView: what is in the standalone program's window.
#pragma once

#include "plugin/juce/standalone/standalone_audio.h"
#include "plugin/juce/zephyra_processor.h"
#include "plugin/standalone/live_notice.h"
#include "screens/model/screen_context.h"

#include <juce_audio_utils/juce_audio_utils.h>

#include <functional>
#include <memory>
#include <string>

namespace zephyra {

/// The plug-in's screen, keys to play below it, and a line that says how things stand. Message
/// thread.
class StandaloneView final : public juce::Component, juce::MidiKeyboardState::Listener {
public:
    /// Both must outlive it.
    StandaloneView(ZephyraProcessor& processor, StandaloneAudio& audio);
    ~StandaloneView() override;

    std::function<void()> onTold; ///< the notice was confirmed

    /// Shows what is played and by what; several times a second.
    void refresh(const LiveNotice& notice);
    /// Of what was just done; until the next one.
    void say(const std::string& line);

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    void childBoundsChanged(juce::Component* child) override;

private:
    /// Octaves are named in letters that grow with the zoom.
    class Keys final : public juce::MidiKeyboardComponent {
    public:
        using MidiKeyboardComponent::MidiKeyboardComponent;
        float letters = 12.0f; ///< pixels

    private:
        juce::String getWhiteNoteText(int) override { return {}; } // JUCE's are 12 pixels at most
        void drawWhiteNote(int note, juce::Graphics& graphics, juce::Rectangle<float> key,
                           bool isDown, bool isOver, juce::Colour line, juce::Colour text) override;
    };

    int px(double units) const;
    void limitWindow();
    void takeKeyboard();
    void offerDevices(ScreenContext& context);
    void addButton(juce::TextButton& button, std::function<void()> clicked);
    void handleNoteOn(juce::MidiKeyboardState*, int channel, int note, float velocity) override;
    void handleNoteOff(juce::MidiKeyboardState*, int channel, int note, float velocity) override;

    StandaloneAudio& audio_;
    juce::TextButton devices_{"Audio... (Ctrl+D)"}, told_{"I know (Esc)"};
    juce::Label notice_, status_;
    std::unique_ptr<juce::AudioProcessorEditor> editor_;
    juce::MidiKeyboardState keys_;
    Keys keyboard_{keys_, juce::MidiKeyboardComponent::horizontalKeyboard};
    std::string said_;
    bool laysOut_ = false;
    juce::Point<int> least_; // the window's size, pixels
};

} // namespace zephyra
