// ChosenSample: plays what was chosen in the sample library.
#pragma once

#include "library/quick_sample_manager.h"
#include "platform/files/folders.h"
#include "stream/sample_loader.h"

namespace zephyra {

/// MAIN.
class ChosenSample final : public QuickSampleManagerDelegate {
public:
    /// Both must outlive this.
    ChosenSample(const Folders& folders, SampleLoader& loader)
        : folders_(folders), loader_(loader) {}

    // QuickSampleManagerDelegate
    /// One that is missing, as a built-in sample whose copy was deleted, is taken from those that
    /// came with the program, if it is among them.
    void LoadSampleDelegate(const std::filesystem::path& file) override;

private:
    const Folders& folders_;
    SampleLoader& loader_;
};

} // namespace zephyra
