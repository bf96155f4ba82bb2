// What the keys of the window do.
#include "screens/model/shortcuts.h"
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

} // namespace
} // namespace zephyra
