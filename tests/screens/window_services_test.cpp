// What the window does itself: keys, settings, alerts, without a window.
#include "screens/model/settings_rows.h"
#include "screens/model/shortcuts.h"
#include "screens/model/system_questions.h"
#include "tests/screens/read_frame.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Shortcuts, LeaveToTheHostWhatIsNotTheirs) {
    const struct {
        KeyStroke stroke;
        std::optional<Shortcut> does;
    } rows[] = {{{U' '}, Shortcut::playStop},
                {{U'z', true}, Shortcut::undo},
                {{U'z', true, true}, Shortcut::redo},
                {{U'y', true}, Shortcut::redo},
                {{U'=', true}, Shortcut::zoomIn},
                {{U'f'}, Shortcut::freeze},
                {{U'f', true}, {}},
                {{U'f', false, true}, {}},
                {{U' ', false, false, true}, {}},
                {{U'q'}, {}}};
    for (const auto& row : rows)
        EXPECT_EQ(shortcutOf(row.stroke), row.does) << static_cast<unsigned>(row.stroke.key);
}

struct Window : testing::Test {
    PluginInstance plugin{PluginKind::instrument};
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    int changes = 0;

    MenuRow row(const std::string& text) {
        context.settingsChanged = [this] { ++changes; };
        for (MenuRow& one : settingsRows(context))
            if (one.text == text) return one;
        return {};
    }
};

TEST_F(Window, SettingsTickWhatHoldsAndSetWhatIsChosen) {
    EXPECT_TRUE(row("Zoom 100 %").isTicked);
    row("Zoom 150 %").chosen();
    EXPECT_TRUE(row("Zoom 150 %").isTicked);
    row("Reduced motion").chosen();
    EXPECT_TRUE(context.settings.reducedMotion);
    EXPECT_EQ(changes, 2);
    row("Never start anew").chosen();
    EXPECT_EQ(plugin.settings().startAnew, StartAnew::never);
    row("Turn knobs up and down").chosen();
    EXPECT_TRUE(row("Turn knobs up and down").isTicked);
    double zoom = 0.75;
    for (const double next : {1.0, 1.25, 1.5, 2.0, 2.5, 2.5})
        EXPECT_EQ(zoom = nextZoom(zoom, true), next);
    EXPECT_EQ(nextZoom(1.1, false), 1.0);
    EXPECT_EQ(nextZoom(0.75, false), 0.75);
}

TEST_F(Window, AnswersOnlyTheAlertThatItShows) {
    SystemQuestions questions(source);
    std::string answers;
    const auto present = [&](const std::string& title) {
        source.asMain([&](AudioUnitViewController& view) {
            view.instance().alerts.present(
                {.title = title,
                 .message = "",
                 .actions = {{.title = "Cancel", .chosen = [&](auto&) { answers += "c"; }},
                             {.title = "Remove",
                              .chosen = [&](auto& typed) { answers += "r" + typed; },
                              .destructive = true}},
                 .textField = AlertTextField{.placeholder = "", .text = "name"}});
        });
    };
    present("first");
    present("second");
    readFrameOf(source);
    ASSERT_TRUE(questions.alert());
    EXPECT_EQ(questions.alert()->title, "first");
    EXPECT_EQ(questions.destroys(), (std::vector<bool>{false, true}));
    questions.answer(1, "typed");
    questions.answer(0, ""); // the window has not seen the second one yet
    EXPECT_EQ(answers, "rtyped");
    readFrameOf(source);
    EXPECT_EQ(questions.alert()->title, "second");
    questions.answer(0, "");
    readFrameOf(source);
    EXPECT_FALSE(questions.alert());
    EXPECT_EQ(answers, "rtypedc");
}

} // namespace
} // namespace zephyra
