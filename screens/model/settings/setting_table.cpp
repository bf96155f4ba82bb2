#include "screens/model/settings/setting_table.h"

#include "controls/knob.h"

#include <cmath>

namespace zephyra {

namespace {

using enum SettingGroup;
using enum SettingKind;

constexpr const char* kOnOff[] = {"Off", "On"};
constexpr const char* kNoteOn[] = {"Starts and tunes", "Only tunes"};
constexpr const char* kNoteOff[] = {"Fades out", "Plays on"};
constexpr const char* kStartAnew[] = {"In bounces", "Always", "Never"};
constexpr const char* kEmbedding[] = {"None", "10 s", "1 min", "5 min", "10 min"};
constexpr const char* kZoomNames[] = {"75 %", "100 %", "125 %", "150 %", "200 %", "250 %"};
constexpr const char* kStyles[] = {"Round", "Sideways", "Up, down", "Either"};

constexpr std::array kEmbedSeconds{0.0, 10.0, 60.0, 300.0, 600.0};
constexpr std::array kBegins{NotesBegin::start, NotesBegin::tune};
constexpr std::array kEnds{NotesEnd::fade, NotesEnd::goOn};
constexpr std::array kStarts{StartAnew::inBounces, StartAnew::always, StartAnew::never};
constexpr std::array kFollows{false, true};

template <typename Values, typename Value>
std::size_t placeOf(const Values& values, const Value& value) {
    for (std::size_t i = 0; i < values.size(); ++i)
        if (values[i] == value) return i;
    return SettingEntry::kOther;
}

template <auto field, const auto& values>
std::size_t readPlugin(ScreenContext& context) {
    return placeOf(values, context.source.plugin().settings().*field);
}

template <auto field, const auto& values>
void choosePlugin(ScreenContext& context, std::size_t choice) {
    PluginInstance& plugin = context.source.plugin();
    PluginSettings chosen = plugin.settings();
    chosen.*field = values[choice];
    plugin.setSettings(chosen);
}

template <bool ScreenSettings::*field>
std::size_t readSwitch(ScreenContext& context) {
    return context.settings.*field ? 1 : 0;
}

void changed(ScreenContext& context) {
    if (context.settingsChanged) context.settingsChanged();
}

template <bool ScreenSettings::*field>
void chooseSwitch(ScreenContext& context, std::size_t choice) {
    context.settings.*field = choice == 1;
    changed(context);
}

std::size_t readZoom(ScreenContext& context) {
    return placeOf(kZooms, static_cast<int>(std::lround(context.settings.zoom * 100.0)));
}

void chooseZoom(ScreenContext& context, std::size_t choice) {
    context.settings.zoom = kZooms[choice] / 100.0;
    changed(context);
}

std::size_t readStyle(ScreenContext& context) {
    return static_cast<std::size_t>(context.settings.knobStyle);
}

void chooseStyle(ScreenContext& context, std::size_t choice) {
    context.settings.knobStyle = static_cast<int>(choice);
    handKnobStyle(context);
    changed(context);
}

std::size_t readSteadyLevel(ScreenContext& context) {
    return context.source.plugin().system().stream().isLevelSteady() ? 1 : 0;
}

void chooseSteadyLevel(ScreenContext& context, std::size_t choice) {
    const ScreenEdit edit(context, "Steady level");
    context.source.asMain([&](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.setSteadyLevel(choice == 1);
    });
}

constexpr SettingEntry fade(SettingId id, const char* name, ControlId control) {
    return {.id = id, .group = instance, .kind = amount, .name = name, .control = control};
}

template <auto field, const auto& values>
constexpr SettingEntry ofPlugin(SettingId id, SettingKind kind, const char* name, HelpId help,
                                std::span<const char* const> choices, bool instruments = false) {
    return {.id = id,
            .group = instance,
            .kind = kind,
            .name = name,
            .help = help,
            .choices = choices,
            .read = readPlugin<field, values>,
            .choose = choosePlugin<field, values>,
            .onlyInstruments = instruments};
}

template <bool ScreenSettings::*field>
constexpr SettingEntry ofWindows(SettingId id, const char* name, HelpId help) {
    return {.id = id,
            .group = windows,
            .kind = toggle,
            .name = name,
            .help = help,
            .choices = kOnOff,
            .read = readSwitch<field>,
            .choose = chooseSwitch<field>};
}

using P = PluginSettings;
using S = ScreenSettings;
using enum SettingId;

// clang-format off
constexpr std::array<SettingEntry, kSettings> kEntries{{
    fade(fadeIn, "Fade in", ControlId::fadeIn),
    fade(fadeOut, "Fade out", ControlId::fadeOut),
    ofPlugin<&P::notesBegin, kBegins>(noteOn, choice, "Key down", HelpId::noteOn, kNoteOn, true),
    ofPlugin<&P::notesEnd, kEnds>(noteOff, choice, "Last key up", HelpId::noteOff, kNoteOff, true),
    ofPlugin<&P::startAnew, kStarts>(startAnew, choice, "Start anew", HelpId::startAnew, kStartAnew),
    ofPlugin<&P::followsPrograms, kFollows>(programs, toggle, "Program changes", HelpId::programs, kOnOff),
    ofPlugin<&P::embedSeconds, kEmbedSeconds>(embedding, choice, "Sounds kept inside", HelpId::embedding, kEmbedding),
    {.id = steadyLevel, .group = instance, .kind = toggle, .name = "Steady level",
     .help = HelpId::steadyLevel, .choices = kOnOff, .read = readSteadyLevel,
     .choose = chooseSteadyLevel},
    {.id = zoom, .group = windows, .kind = choice, .name = "Zoom", .help = HelpId::zoom,
     .choices = kZoomNames, .read = readZoom, .choose = chooseZoom},
    {.id = knobStyle, .group = windows, .kind = choice, .name = "Knobs turn", .help = HelpId::knobStyle,
     .choices = kStyles, .read = readStyle, .choose = chooseStyle},
    ofWindows<&S::showsMeter>(level, "Level meter", HelpId::levelSwitch),
    ofWindows<&S::showsSpectrum>(spectrum, "Spectrum", HelpId::spectrumSwitch),
    ofWindows<&S::showsScope>(scope, "Scope", HelpId::scopeSwitch),
    ofWindows<&S::reducedMotion>(motion, "Reduced motion", HelpId::reducedMotion),
    {.id = audio, .group = program, .kind = action, .name = "Audio", .help = HelpId::audioDevices},
    {.id = midi, .group = program, .kind = fact, .name = "MIDI inputs", .help = HelpId::midiDevices},
}};
// clang-format on

constexpr std::array<SettingGroupTitle, kSettingGroups> kTitles{
    {{"This instance", "saved with the session"},
     {"All windows", "remembered on this computer"},
     {"This program", "remembered on this computer"}}};

} // namespace

std::string helpOf(const SettingEntry& entry) {
    return entry.kind == SettingKind::amount ? helpText(entry.control) : helpText(entry.help);
}

const SettingGroupTitle& titleOf(SettingGroup group) noexcept {
    return kTitles[static_cast<std::size_t>(group)];
}

std::span<const SettingEntry, kSettings> settingEntries() noexcept {
    return kEntries;
}

double nextZoom(double zoom, bool larger) {
    if (larger) {
        for (const int percent : kZooms)
            if (percent / 100.0 > zoom + 1e-9) return percent / 100.0;
        return kZooms.back() / 100.0;
    }
    for (auto percent = kZooms.rbegin(); percent != kZooms.rend(); ++percent)
        if (*percent / 100.0 < zoom - 1e-9) return *percent / 100.0;
    return kZooms.front() / 100.0;
}

void handKnobStyle(ScreenContext& context) {
    const int style = context.settings.knobStyle;
    context.source.asMain([style](AudioUnitViewController& view) {
        view.instance().notifications.post(MOK_KNOB::kInteractionStyleNotice, style);
    });
}

} // namespace zephyra
