#include "bench/sound_changes.h"

#include "engine/envelope_menu.h"

#include <span>
#include <string_view>
#include <utility>

namespace zephyra {

namespace {

using Changes = std::vector<SoundChange>;
using Player = SoundPlayer;

/// What has to be on for the control to be heard.
void arrangeFor(ControlId id, Player& player) {
    const ControlGroup group = controlRange(id).group;
    const bool isSubdivision =
        id == ControlId::leftSubdivision || id == ControlId::rightSubdivision;
    if (group == ControlGroup::echo && id != ControlId::echoSwitch)
        player.set(ControlId::echoSwitch, 1.0f);
    if (group == ControlGroup::ring && id != ControlId::ringModulationSwitch)
        player.set(ControlId::ringModulationSwitch, 1.0f);
    if (isSubdivision) player.set(ControlId::echoSync, 1.0f);
    if (id == ControlId::measures || id == ControlId::quarters)
        player.set(ControlId::scanSync, 1.0f);
}

void move(Player& player, ControlId id, float displayed) {
    if (id == ControlId::envelope)
        return player.byHand([&](HostedInstance& system) {
            system.stream().pickEnvelope(static_cast<std::size_t>(displayed));
        });
    player.set(id, displayed);
}

bool movesEchoTime(ControlId id) {
    switch (id) {
    case ControlId::leftDelay:
    case ControlId::rightDelay:
    case ControlId::echoSync:
    case ControlId::leftSubdivision:
    case ControlId::rightSubdivision:
        return true;
    default:
        return false;
    }
}

void addControl(Changes& all, const ControlRange& range) {
    const ControlId id = range.id;
    const bool isSwitch = range.kind == ControlKind::switching;
    const auto add = [&](const char* way, float from, float to) {
        all.push_back({std::string(range.name) + way,
                       [id, from](Player& player) {
                           arrangeFor(id, player);
                           // A stop is heard from the play that a new player begins with.
                           if (id != ControlId::playStop || from == 0.0f) move(player, id, from);
                           if (id == ControlId::leftGain || id == ControlId::rightGain)
                               player.play(30.0); // so long the loudest echo rises
                       },
                       [id, to](Player& player) { move(player, id, to); }, movesEchoTime(id)});
    };
    add(isSwitch ? " on" : " up", range.minimum, range.maximum);
    add(isSwitch ? " off" : " down", range.maximum, range.minimum);
}

/// A switch that was on for a while before it went off, on again.
void addAgain(Changes& all, const char* name, ControlId id) {
    all.push_back({name,
                   [id](Player& player) {
                       player.set(id, 1.0f);
                       player.play(5.0);
                       player.set(id, 0.0f);
                   },
                   [id](Player& player) { player.set(id, 1.0f); }});
}

void addEnvelopes(Changes& all) {
    for (std::size_t n = 0; n < kEnvelopeMenu.size(); ++n) {
        if (n == kDefaultEnvelope) continue;
        const auto name = std::string_view(kEnvelopeMenu[n]).substr(sizeof "Grain Envelope:");
        all.push_back({"envelope picked: " + std::string(name), {}, [n](Player& player) {
                           move(player, ControlId::envelope, float(n));
                       }});
    }
}

void addSounds(Changes& all) {
    all.push_back({"sound loaded", {}, [](Player& player) {
                       player.byHand([&](HostedInstance& system) {
                           system.stream().loadSound(soundOf(player.setup().kind, 1));
                       });
                   }});
    for (const std::size_t number : {0, 5, 11}) // with samples of their own
        all.push_back({"preset chosen: number " + std::to_string(number),
                       {},
                       [number](Player& player) { player.setProgram(number); }});
    all.push_back({"state restored", [](Player& player) { player.set(ControlId::pitch, 7.0f); },
                   [](Player& player) {
                       SoundPlayer other(player.setup(), soundOf(player.setup().kind, 1));
                       other.setEven();
                       other.set(ControlId::echoSwitch, 1.0f);
                       other.byHand([](HostedInstance& system) {
                           system.stream().pickEnvelope(kEnvelopeMenu.size() - 2);
                           system.stream().setRegion(0.2f, 0.8f);
                       });
                       const std::string state = other.state();
                       (void)player.setState(std::as_bytes(std::span(state)));
                   }});
}

void addScan(Changes& all) {
    const auto region = [](float start, float end) {
        return [=](Player& player) {
            player.byHand([&](HostedInstance& system) { system.stream().setRegion(start, end); });
        };
    };
    all.push_back({"region moved", region(0.0f, 0.3f), region(0.6f, 0.9f)});
    all.push_back({"region made short", {}, region(0.4f, 0.41f)});
    all.push_back({"region turned round", region(0.2f, 0.8f), region(0.8f, 0.2f)});
    all.push_back({"rewind", {}, [](Player& player) {
                       player.byHand([](HostedInstance& system) { system.stream().ui_rewind(); });
                   }});
}

void addHost(Changes& all) {
    const auto synced = [](Player& player) { player.set(ControlId::scanSync, 1.0f); };
    const auto tells = [](PluginTransport news) {
        return [news](Player& player) { player.news = news; };
    };
    all.push_back({"host loops back", synced, tells({.beats = 0.0, .moving = true})});
    all.push_back({"host stops", synced, tells({.moving = false})});
    all.push_back({"host starts a bounce",
                   [=](Player& player) {
                       synced(player);
                       player.news.moving = false;
                   },
                   tells({.beats = 0.0, .moving = true})});
    all.push_back({"tempo, scan synced", synced, tells({.tempo = 90.0})});
    all.push_back({"tempo, echo synced",
                   [](Player& player) {
                       player.set(ControlId::echoSwitch, 1.0f);
                       player.set(ControlId::echoSync, 1.0f);
                   },
                   tells({.tempo = 90.0}), true});
    all.push_back({"bypass on", {}, [](Player& player) { player.setBypass(true); }});
    all.push_back({"bypass off", [](Player& player) { player.setBypass(true); },
                   [](Player& player) { player.setBypass(false); }});
    all.push_back({"prepared again", {}, [](Player& player) {
                       (void)player.prepare({player.setup().rate, player.setup().blockFrames});
                   }});
    all.push_back({"prepared again, with echo",
                   [](Player& player) { player.set(ControlId::echoSwitch, 1.0f); },
                   [](Player& player) {
                       (void)player.prepare({player.setup().rate, player.setup().blockFrames});
                   }});
    all.push_back({"note", {}, [](Player& player) {
                       constexpr std::uint8_t kNote[] = {0x90, 67, 100};
                       player.queueMidi(kNote, sizeof kNote);
                   }});
}

void addTransport(Changes& all) {
    const auto fadeOut = [](float seconds) {
        return [=](Player& player) { player.set(ControlId::fadeOut, seconds); };
    };
    const auto stop = [](Player& player) { player.set(ControlId::playStop, 0.0f); };
    all.push_back({"stop without a fade", fadeOut(0.0f), stop});
    all.push_back({"stop of long grains",
                   [](Player& player) { player.set(ControlId::length, 2000.0f); }, stop});
    all.push_back({"stop and start at once", {}, [=](Player& player) {
                       stop(player);
                       player.play(0.1);
                       player.set(ControlId::playStop, 1.0f);
                   }});
    all.push_back({"LIVE cleared", [](Player& player) { player.set(ControlId::live, 1.0f); },
                   [](Player& player) {
                       player.byHand(
                           [](HostedInstance& system) { system.stream().ui_liveClear(); });
                   }});
    all.push_back({"LIVE frozen", [](Player& player) { player.set(ControlId::live, 1.0f); },
                   [](Player& player) { player.set(ControlId::freeze, 1.0f); }});
}

} // namespace

std::vector<SoundChange> soundChanges() {
    Changes all{{"(nothing)", {}, [](Player&) {}}};
    for (const ControlRange& range : controlRanges()) addControl(all, range);
    addAgain(all, "Echo Switch on again", ControlId::echoSwitch);
    addAgain(all, "Ring Modulation Switch on again", ControlId::ringModulationSwitch);
    addEnvelopes(all);
    addSounds(all);
    addScan(all);
    addHost(all);
    addTransport(all);
    return all;
}

} // namespace zephyra
