#include "screens/desktop/file_choice.h"

#include "platform/sound/sound_file.h"
#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

namespace {

juce::String patternsOf(FileChoice::What what) {
    juce::StringArray patterns;
    for (const std::string_view extension : kSoundFileExtensions)
        patterns.add("*." + brush::text(std::string(extension)));
    if (what == FileChoice::What::soundsAndBanks) patterns.add("*.zephyra");
    return patterns.joinIntoString(";");
}

} // namespace

void FileChoice::ask(const juce::String& title, What what, Picked picked) {
    if (chooser_) return;
    chooser_ = std::make_unique<juce::FileChooser>(title, folder_, patternsOf(what));
    using Flags = juce::FileBrowserComponent::FileChooserFlags;
    chooser_->launchAsync(Flags::openMode | Flags::canSelectFiles,
                          [this, picked = std::move(picked)](const juce::FileChooser& chooser) {
                              const juce::File file = chooser.getResult();
                              // The chooser goes after its own call, and nobody uses this one any
                              // more.
                              std::shared_ptr<juce::FileChooser> ended(chooser_.release());
                              juce::MessageManager::callAsync([ended] {});
                              if (file == juce::File()) return picked({});
                              folder_ = file.getParentDirectory();
                              picked(std::filesystem::path(file.getFullPathName().toStdString()));
                          });
}

} // namespace zephyra
