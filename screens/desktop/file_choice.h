// FileChoice: the system's picker for sounds and banks.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace zephyra {

/// One picker at a time; a window may close while it is open. Message thread.
class FileChoice {
public:
    enum class What { sounds, soundsAndBanks };
    /// none: nothing was picked.
    using Picked = std::function<void(const std::optional<std::filesystem::path>& file)>;

    /// Begins in the folder of the last one. Nothing happens while another one is open.
    void ask(const juce::String& title, What what, Picked picked);
    bool isOpen() const noexcept { return chooser_ != nullptr; }

private:
    std::unique_ptr<juce::FileChooser> chooser_;
    juce::File folder_;
};

} // namespace zephyra
