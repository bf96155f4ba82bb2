// LiveExport: the command that keeps, restores or clears what live input captured.
#pragma once

#include "platform/threads/worker.h"
#include "stream/stream_controller.h"

#include <filesystem>
#include <memory>

namespace zephyra {

/// MAIN.
class LiveExport {
public:
    /// Both must outlive this.
    LiveExport(Instance& instance, MOK_SCRUB_GRANULATOR& stream);

    /// Presents the choice "Save", "Restore Last Sample", "Clear", "Cancel".
    void saveData(Control* sender = nullptr);

    /// Writes the current sound as it plays now as a 16-bit mono WAVE into the shared folder, under
    /// the next free numbered name, on WORKER: of a live sound what was heard, oldest first. Posts
    /// "fillTableWithFilesName" when it stands there; a failure becomes an alert. Nothing but a log
    /// line while the last save is still being written.
    void save();

    /// Where the last successful save went; empty before.
    const std::filesystem::path& lastSaved() const { return lastSaved_; }
    bool isSaving() const { return worker_.busy(); }

private:
    Instance& instance_;
    MOK_SCRUB_GRANULATOR& stream_;
    std::filesystem::path lastSaved_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // an alert may outlive us
    Worker worker_;
};

} // namespace zephyra
