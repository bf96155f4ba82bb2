// HostNews: what JUCE's host is told on its message thread: gestures, and all values at once.
#pragma once

#include "platform/audio_unit/audio_unit_parameters.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

namespace zephyra {

/// A value that is followed by another of the same parameter before the host was told is left out.
/// Made and destroyed with its processor.
class HostNews {
public:
    explicit HostNews(juce::AudioProcessor& processor);
    /// Whoever is being told is told to the end first.
    ~HostNews();
    HostNews(const HostNews&) = delete;
    HostNews& operator=(const HostNews&) = delete;

    /// What a hand does to a control. Any thread but RENDER.
    void postGesture(const AUParameterAutomationEvent& event);
    /// A program or a state stands: the values that the host does not know, and the program's
    /// number. Any thread but RENDER.
    void postAll();

private:
    struct Queue;
    void postMessage();

    std::shared_ptr<Queue> queue_; // messages under way keep it
};

} // namespace zephyra
