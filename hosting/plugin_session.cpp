#include "hosting/plugin_session.h"

#include "controls/state_keys.h"
#include "platform/lists/property_reader.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"

#include <array>
#include <string>
#include <utility>

namespace zephyra {

namespace {

using namespace state_key;

constexpr std::array<std::pair<NotesEnd, const char*>, 2> kEnds = {
    {{NotesEnd::fade, "fade"}, {NotesEnd::goOn, "goOn"}}};
constexpr std::array<std::pair<StartAnew, const char*>, 3> kStarts = {
    {{StartAnew::inBounces, "inBounces"},
     {StartAnew::always, "always"},
     {StartAnew::never, "never"}}};
constexpr std::array<std::pair<NotesBegin, const char*>, 2> kBegins = {
    {{NotesBegin::start, "start"}, {NotesBegin::tune, "tune"}}};

template <typename Names, typename Value>
const char* nameOf(const Names& names, Value value) {
    for (const auto& [one, name] : names)
        if (one == value) return name;
    return names.front().second;
}

/// Leaves value as it is, after a finding, for a name that none has.
template <typename Names, typename Value>
void readNamed(PropertyReader& reader, const char* key, const Names& names, Value& value) {
    const auto text = reader.text(key);
    if (!text) return;
    for (const auto& [one, name] : names)
        if (*text == name) {
            value = one;
            return;
        }
    reader.complain(key, onOneLine(inQuotes(*text)) + " is not known", StandIn::usual);
}

/// The two numbers that a point parts.
Result<void> checkVersion(const PropertyDictionary& state) {
    const auto found = state.find(kStateVersion);
    if (found == state.end()) return {};
    const auto* const text = found->second.as<std::string>();
    const std::size_t point = text ? text->find('.') : std::string::npos;
    const auto number = [&](std::size_t begin, std::size_t count) {
        return parseWhole(std::string_view(*text).substr(begin, count));
    };
    if (point == std::string::npos || !number(0, point) || !number(point + 1, text->npos))
        return Failure{std::string("the state's ") + kStateVersion + " is " +
                       (text ? onOneLine(inQuotes(*text))
                             : std::string("no text, but a ") + found->second.typeName()) +
                       "; it must be like \"1.0\""};
    if (*number(0, point) > kStateMajor)
        return Failure{"the state is of version " + *text +
                       ", of a newer program; this one reads " + std::to_string(kStateMajor) +
                       ".x and older ones"};
    return {};
}

} // namespace

void addSession(PropertyDictionary& state, const PluginSession& session) {
    state.insert_or_assign(kStateVersion,
                           std::to_string(kStateMajor) + "." + std::to_string(kStateMinor));
    state.insert_or_assign(kNotesEnd, nameOf(kEnds, session.settings.notesEnd));
    state.insert_or_assign(kStartAnew, nameOf(kStarts, session.settings.startAnew));
    state.insert_or_assign(kFollowsPrograms, session.settings.followsPrograms);
    // Only what is not usual: states of older programs stay as they were.
    const PluginSettings usual;
    if (session.settings.notesBegin != usual.notesBegin)
        state.insert_or_assign(kNotesBegin, nameOf(kBegins, session.settings.notesBegin));
    if (session.settings.embedSeconds != usual.embedSeconds)
        state.insert_or_assign(kEmbedSeconds, session.settings.embedSeconds);
    if (session.program)
        state.insert_or_assign(kProgram, static_cast<std::int64_t>(*session.program));
}

Result<PluginSession> takeSession(PropertyDictionary& state, StateFindings& findings) {
    if (const auto checked = checkVersion(state); !checked) return Failure{checked.message()};
    PluginSession session;
    PropertyReader reader(state, findings, {}, StandIn::usual);
    readNamed(reader, kNotesEnd, kEnds, session.settings.notesEnd);
    readNamed(reader, kStartAnew, kStarts, session.settings.startAnew);
    session.settings.followsPrograms = reader.boolean(kFollowsPrograms).value_or(false);
    readNamed(reader, kNotesBegin, kBegins, session.settings.notesBegin);
    if (const auto seconds = reader.real(kEmbedSeconds)) {
        if (*seconds >= 0.0)
            session.settings.embedSeconds = *seconds;
        else
            reader.complain(kEmbedSeconds, "must be 0 seconds or more", StandIn::usual);
    }
    if (const auto program = reader.whole(kProgram); program && *program >= 0)
        session.program = static_cast<std::size_t>(*program);
    for (const char* const key : {kStateVersion, kNotesEnd, kStartAnew, kFollowsPrograms,
                                  kNotesBegin, kEmbedSeconds, kProgram})
        state.erase(key);
    return session;
}

} // namespace zephyra
