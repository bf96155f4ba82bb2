// The system's alerts as dialogs of the window.
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
#include "tests/support/testing.h"

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {
namespace {

struct Alerts : testing::Test {
    template <typename Hand>
    void asMain(Hand&& hand) {
        screen.context().source.asMain(
            [&](AudioUnitViewController& view) { hand(view.instance().alerts); });
    }
    void present(const std::string& title) {
        asMain([&](AlertCenter& alerts) {
            alerts.present(
                {.title = title,
                 .message = "",
                 .actions = {{.title = "Cancel",
                              .chosen = [this, title](auto&) { answers += title + " c "; }},
                             {.title = "Remove",
                              .chosen = [this, title](auto&) { answers += title + " r "; },
                              .destructive = true}}});
        });
    }
    void frame() { screen.frame(now += 0.02); }
    void press(const juce::String& title) {
        for (juce::Component* const child : screen.getChildren())
            if (auto* const dialog = dynamic_cast<AlertDialog*>(child))
                for (juce::Component* const one : dialog->getChildren())
                    if (auto* const button = dynamic_cast<ScreenButton*>(one))
                        if (button->getTitle() == title) button->press();
    }
    static void handleMessages() {
        while (juce::dispatchNextMessageOnSystemQueue(true)) {
        }
    }

    const juce::ScopedJuceInitialiser_GUI gui;
    PluginInstance plugin{PluginKind::instrument};
    ZephyraScreen screen{plugin};
    std::string answers;
    double now = 0.0;
};

TEST_F(Alerts, DialogAnswersOnlyTheAlertThatItShows) {
    present("first");
    present("second");
    frame();
    press("Remove");
    asMain([](AlertCenter& alerts) { alerts.answer("Cancel"); }); // another window was faster
    frame();
    handleMessages();
    EXPECT_EQ(answers, "first c ");
    press("Remove");
    press("Cancel"); // it is answered once
    handleMessages();
    frame();
    EXPECT_EQ(answers, "first c second r ");
    asMain([](AlertCenter& alerts) { EXPECT_EQ(alerts.current(), nullptr); });
}

} // namespace
} // namespace zephyra
