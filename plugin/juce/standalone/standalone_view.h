// StandaloneView: what is in the standalone program's window.
#pragma once

#include "plugin/juce/standalone/standalone_audio.h"
#include "plugin/juce/zephyra_processor.h"
#include "plugin/standalone/live_notice.h"

#include <juce_audio_utils/juce_audio_utils.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace zephyra {

/// The transport and the devices above the plug-in's editor, keys to play below it, and a line that
/// says how things stand. Space plays and stops; files may be dropped. Message thread.
class StandaloneView final : public juce::Component,
                             public juce::FileDragAndDropTarget,
                             juce::MidiKeyboardState::Listener {
public:
    /// Both must outlive it.
    StandaloneView(ZephyraProcessor& processor, StandaloneAudio& audio);
    ~StandaloneView() override;

    std::function<void(const std::filesystem::path&)> onOpen; ///< a file was dropped
    std::function<void()> onTold;                             ///< the notice was confirmed

    /// Shows what is played and by what; several times a second.
    void refresh(const LiveNotice& notice);
    /// Of what was just done; until the next one.
    void say(const std::string& line);

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    bool keyPressed(const juce::KeyPress& key) override;
    bool isInterestedInFileDrag(const juce::StringArray&) override { return true; }
    void filesDropped(const juce::StringArray& files, int, int) override;

private:
    void addButton(juce::TextButton& button, std::function<void()> clicked);
    void toggle(ControlId id);
    bool isLit(ControlId id) const;
    void handleNoteOn(juce::MidiKeyboardState*, int channel, int note, float velocity) override;
    void handleNoteOff(juce::MidiKeyboardState*, int channel, int note, float velocity) override;

    ZephyraProcessor& processor_;
    StandaloneAudio& audio_;
    juce::TextButton play_{"Play"}, live_{"LIVE"}, previous_{"<"}, next_{">"}, devices_{"Audio..."},
        told_{"I know"};
    juce::Label notice_, status_;
    std::unique_ptr<juce::AudioProcessorEditor> editor_;
    juce::MidiKeyboardState keys_;
    juce::MidiKeyboardComponent keyboard_{keys_, juce::MidiKeyboardComponent::horizontalKeyboard};
    std::string said_;
};

} // namespace zephyra
