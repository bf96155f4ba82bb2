// helpOnTopic: what the help says about one control, option or section of `render`.
#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace zephyra {

/// For a control's name or what other instruments call it, an option with or without its hyphens,
/// or what a section begins with; empty for what is none of them. MAIN.
std::string helpOnTopic(const CLI::App& render, std::string_view topic);

} // namespace zephyra
