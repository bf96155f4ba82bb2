// SystemQuestions: what the system asks the player right now, as a window shows it.
#pragma once

#include "hosting/window_model.h"
#include "screens/model/screen_source.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// Message thread.
class SystemQuestions final : public ScreenPart {
public:
    explicit SystemQuestions(ScreenSource& source);
    ~SystemQuestions() override;

    void read(AudioUnitViewController& view, const FrameTime& time) override;

    /// The alert to be answered, by WindowModel::answer; none most of the time.
    const std::optional<ShownAlert>& alert() const noexcept { return alert_; }
    /// Which of its buttons remove something.
    const std::vector<bool>& destroys() const noexcept { return destroys_; }

    /// Whether a file is asked for, until WindowModel::pickFile or dismissFile.
    bool asksForFile() const noexcept { return asksForFile_; }

private:
    ScreenSource& source_;
    std::optional<ShownAlert> alert_;
    std::vector<bool> destroys_;
    bool asksForFile_ = false;
};

} // namespace zephyra
