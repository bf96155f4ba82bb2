#include "cli/help_topic.h"

#include "audiounit/control_meaning.h"
#include "audiounit/control_names.h"
#include "audiounit/control_text.h"
#include "cli/terminal/usage_text.h"
#include "platform/text/names.h"

#include <algorithm>

namespace zephyra {

namespace {

std::string controlHelp(ControlId id) {
    const ControlRange& range = controlRange(id);
    const std::string name = range.name;
    const char* const quote = name.find_first_of(" /") == std::string::npos ? "" : "\"";
    return name + ": " + rangeText(range) + ", default " + valueText(range, range.defaultValue) +
           "\n  " + controlMeaning(id) + "\n  --set " + quote + name + "=VALUE" + quote +
           ", or from a time on --at " + quote + "TIME:" + name + "=VALUE" + quote + "\n";
}

bool isCalled(const CLI::Option* option, const std::string& plain) {
    return std::ranges::any_of(option->get_lnames(),
                               [&](const auto& name) { return plainName(name) == plain; }) ||
           std::ranges::count(option->get_snames(), plain) > 0;
}

} // namespace

std::string helpOnTopic(const CLI::App& render, std::string_view topic) {
    const auto* const help = dynamic_cast<const SectionHelp*>(render.get_formatter().get());
    const std::string plain = plainName(topic);
    if (!help || plain.empty()) return "";
    std::string text;
    for (const CLI::Option* option : render.get_options())
        if (isCalled(option, plain)) text += help->make_option(option, false);
    if (topic.starts_with('-')) return text; // no control
    if (const std::string section = help->section(render, topic); !section.empty())
        return section.substr(1); // without the empty line
    for (const ControlId id : matchControl(topic, settableControls()).controls)
        text += (text.empty() ? "" : "\n") + controlHelp(id);
    return text;
}

} // namespace zephyra
