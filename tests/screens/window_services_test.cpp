// What the window does itself: keys and alerts, without a window.
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
                {{U'+', true, true}, Shortcut::zoomIn},
                {{U',', true}, Shortcut::settings},
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
};

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
