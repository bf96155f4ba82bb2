#include "plugin/juce/host_news.h"

#include "hosting/gesture_queue.h"
#include "plugin/juce/zephyra_parameter.h"

#include <mutex>
#include <utility>
#include <vector>

namespace zephyra {

struct HostNews::Queue {
    std::mutex mutex; // guards what follows, down to posted; a leaf
    GestureQueue gestures;
    bool all = false, posted = false;
    // Recursive: a host may unload the plug-in in answer to a gesture.
    std::recursive_mutex telling; // guards processor
    juce::AudioProcessor* processor;

    void deliver();
    void tell(const AUParameterAutomationEvent& event) const;
    void tellAll() const;
};

void HostNews::Queue::deliver() {
    const std::lock_guard told(telling);
    std::vector<AUParameterAutomationEvent> taken;
    bool takenAll = false;
    {
        const std::lock_guard lock(mutex);
        taken = gestures.take();
        takenAll = std::exchange(all, false);
        posted = false;
    }
    for (const auto& event : taken)
        if (processor) tell(event);
    if (takenAll) tellAll();
}

void HostNews::Queue::tell(const AUParameterAutomationEvent& event) const {
    if (event.address >= kParameterCount) return;
    ZephyraParameter& parameter = parameterAt(*processor, event.address);
    using Type = AUParameterAutomationEventType;
    if (event.eventType == Type::touch) parameter.beginChangeGesture();
    parameter.tell(normalizedFromLinear(pluginParameters()[event.address], event.value));
    if (event.eventType == Type::release) parameter.endChangeGesture();
}

void HostNews::Queue::tellAll() const {
    for (AUParameterAddress i = 0; processor && i < kParameterCount; ++i)
        parameterAt(*processor, i).tellIfUnknown();
    if (processor)
        processor->updateHostDisplay(
            juce::AudioProcessorListener::ChangeDetails().withProgramChanged(true));
}

HostNews::HostNews(juce::AudioProcessor& processor) : queue_(std::make_shared<Queue>()) {
    queue_->processor = &processor;
}

HostNews::~HostNews() {
    const std::lock_guard told(queue_->telling);
    queue_->processor = nullptr;
}

void HostNews::postGesture(const AUParameterAutomationEvent& event) {
    const std::lock_guard lock(queue_->mutex);
    queue_->gestures.add(event);
    postMessage();
}

void HostNews::postAll() {
    const std::lock_guard lock(queue_->mutex);
    queue_->all = true;
    postMessage();
}

/// With the queue's mutex.
void HostNews::postMessage() {
    if (!std::exchange(queue_->posted, true))
        juce::MessageManager::callAsync([queue = queue_] { queue->deliver(); });
}

} // namespace zephyra
