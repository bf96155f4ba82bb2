// StandaloneProgram: the standalone program from its start to its end.
#pragma once

#include "platform/user_defaults.h"
#include "plugin/juce/standalone/standalone_audio.h"
#include "plugin/juce/standalone/standalone_view.h"
#include "plugin/juce/zephyra_processor.h"
#include "plugin/standalone/live_notice.h"
#include "plugin/standalone/session_file.h"
#include "plugin/standalone/standalone_arguments.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace zephyra {

/// Goes on with the last session, opens what was asked for, looks after device and session, and
/// saves at its end. Message thread.
class StandaloneProgram final : juce::Timer {
public:
    /// quit: asked to end the program, which then destroys this.
    StandaloneProgram(const StandaloneArguments& arguments, std::function<void()> quit);
    ~StandaloneProgram() override;

    /// What would be lost.
    void save();

private:
    class Window;

    void finishReading();
    void restoreSession(bool fresh);
    void openSettings(const std::filesystem::path& folder);
    void openWindow();
    void open(const std::filesystem::path& file);
    static void report(const std::string& line);
    void say(const std::string& line);
    void sayOnce(const std::string& problem);
    std::string setting(const char* key) const;
    LiveNotice notice();
    void answerAlerts();
    void timerCallback() override;

    std::function<void()> quit_;
    ZephyraProcessor processor_{PluginKind::standalone};
    UserDefaults settings_;
    SessionFile session_;
    std::unique_ptr<StandaloneAudio> audio_;
    std::unique_ptr<Window> window_;
    std::string lastProblem_, lastNotice_;
    double nextSave_ = 0.0;
};

} // namespace zephyra
