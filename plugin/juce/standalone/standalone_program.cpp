#include "plugin/juce/standalone/standalone_program.h"

#include "hosting/plugin_names.h"
#include "platform/files/file_calls.h"
#include "plugin/juce/standalone/display.h"
#include "plugin/standalone/document_opening.h"
#include "screens/draw/brush.h"

#include <cstdio>
#include <span>
#include <utility>

namespace zephyra {

namespace {

constexpr int kLooksPerSecond = 20;
constexpr double kSavePeriod = 10.0; // seconds; what a killed program loses at most
constexpr double kReadsAtEnd = 2.0;  // seconds that a sound may still take to be read

constexpr const char* kDeviceKey = "AudioDevice"; // as JUCE describes it
constexpr const char* kToldKey = "FeedbackTold";
constexpr const char* kWindowKey = "Window"; // position and size, as JUCE describes them

double now() {
    return juce::Time::getMillisecondCounterHiRes() * 0.001;
}

} // namespace

class StandaloneProgram::Window final : public juce::DocumentWindow {
public:
    Window(ZephyraProcessor& processor, StandaloneAudio& audio, std::function<void()> quit)
        : DocumentWindow(kEffectNames.name, brush::colour(palette::kGround), allButtons),
          quit_(std::move(quit)), view_(new StandaloneView(processor, audio)) {
        setUsingNativeTitleBar(true);
        setResizable(true, false);
        setContentOwned(view_, true);
        centreWithSize(getWidth(), getHeight());
    }
    StandaloneView& view() { return *view_; }
    void closeButtonPressed() override { quit_(); }

private:
    std::function<void()> quit_;
    StandaloneView* view_; // the window owns it
};

StandaloneProgram::StandaloneProgram(const StandaloneArguments& arguments,
                                     std::function<void()> quit)
    : quit_(std::move(quit)) {
    const UserFolders folders = userFolders();
    openSettings(folders.config);
    if (const auto opened = session_.open(folders.state); !opened) say(opened.message());
    restoreSession(arguments.fresh);
    audio_ = std::make_unique<StandaloneAudio>(processor_.plugin(), setting(kDeviceKey),
                                               arguments.audio);
    audio_->setChoiceListener(
        [this] { settings_.setValue(kDeviceKey, PropertyValue(audio_->choice())); });
    if (arguments.headless)
        answerAlerts();
    else
        openWindow();
    for (const auto& file : arguments.files) open(file);
    if (arguments.plays)
        processor_.plugin().setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1);
    nextSave_ = now() + kSavePeriod;
    timerCallback();
    startTimerHz(kLooksPerSecond);
}

StandaloneProgram::~StandaloneProgram() {
    stopTimer();
    finishReading();
    save(); // first: a sound server that hangs does not let go of the device
    if (window_)
        settings_.setValue(kWindowKey,
                           PropertyValue(window_->getWindowStateAsString().toStdString()));
    window_.reset();
    audio_.reset();
}

// --- What is remembered ---

void StandaloneProgram::openSettings(const std::filesystem::path& folder) {
    if (folder.empty() || file_calls::makeFolders(folder)) return; // then it is forgotten
    settings_ =
        UserDefaults(folder / "standalone.plist", processor_.plugin().system().instance.log);
}

std::string StandaloneProgram::setting(const char* key) const {
    const PropertyValue* const value = settings_.value(key);
    const auto* const text = value ? value->as<std::string>() : nullptr;
    return text ? *text : "";
}

void StandaloneProgram::restoreSession(bool fresh) {
    const auto keepAs = [this](const char* word) {
        if (const auto kept = session_.setAside(word); !kept) say(kept.message());
    };
    if (fresh) return keepAs("previous");
    const auto bytes = session_.read();
    if (!bytes) {
        say(bytes.message());
        return keepAs("unreadable");
    }
    if (!bytes.value()) return;
    if (const auto restored = processor_.plugin().setState(*bytes.value()); !restored) {
        say(session_.path().string() + ": " + restored.message());
        keepAs("unreadable");
    }
}

/// A sound that was asked for just before the end belongs to the session.
void StandaloneProgram::finishReading() {
    HostedInstance& system = processor_.plugin().system();
    const auto isReading = [&system] {
        const RunLoop::Scope main(system.instance.runLoop);
        return system.view.sampleLoader.isLoading();
    };
    for (const double until = now() + kReadsAtEnd; isReading() && now() < until;)
        juce::Thread::sleep(10);
}

void StandaloneProgram::save() {
    if (const auto saved = session_.save(processor_.plugin().state()); !saved)
        sayOnce(saved.message());
    nextSave_ = now() + kSavePeriod;
}

// --- What is shown ---

void StandaloneProgram::openWindow() {
    window_ = std::make_unique<Window>(processor_, *audio_, quit_);
    window_->view().onTold = [this] { settings_.setValue(kToldKey, PropertyValue(true)); };
    if (const auto position = setting(kWindowKey); !position.empty())
        window_->restoreWindowStateFromString(position);
    window_->setVisible(true);
    whenDisplayBreaks([this] {
        say("the display is gone");
        save();
    });
}

void StandaloneProgram::report(const std::string& line) {
    std::fprintf(stderr, "%s: %s\n", kStandaloneProgram, line.c_str());
}

void StandaloneProgram::say(const std::string& line) {
    report(line);
    if (window_) window_->view().say(line);
}

void StandaloneProgram::sayOnce(const std::string& problem) {
    if (std::exchange(lastProblem_, problem) != problem) say(problem);
}

void StandaloneProgram::open(const std::filesystem::path& file) {
    const auto opened = openDocument(processor_.plugin(), file);
    say(opened ? opened.value() : opened.message());
    nextSave_ = now() + 1.0;
}

/// Nobody is there to answer: what is said goes to standard error, and nothing is chosen.
void StandaloneProgram::answerAlerts() {
    AlertCenter& alerts = processor_.plugin().system().instance.alerts;
    const RunLoop::Scope main(processor_.plugin().system().instance.runLoop);
    alerts.setObserver([&alerts] {
        const Alert* const alert = alerts.current();
        if (!alert) return;
        const std::string line = alert->message.empty() ? alert->title : alert->message;
        report(line);
        for (const char* const title : {"Cancel", "Ok", "OK"})
            if (alerts.answer(title)) return;
        alerts.answer(alert->actions.size() - 1);
    });
}

LiveNotice StandaloneProgram::notice() {
    const auto live = static_cast<AUParameterAddress>(ControlId::live);
    return liveNotice({.isLive = processor_.plugin().parameter(live) > 0.5f,
                       .hasDevice = audio_->isRunning(),
                       .hasInput = audio_->hasInput(),
                       .wasTold = settings_.value(kToldKey) != nullptr});
}

void StandaloneProgram::timerCallback() {
    if (audio_->look()) report(audio_->status()); // the window shows it anyway
    const LiveNotice told = notice();
    if (window_)
        window_->view().refresh(told);
    else if (std::exchange(lastNotice_, told.line) != told.line && !told.line.empty())
        report(told.line);
    if (now() >= nextSave_) save();
}

} // namespace zephyra
