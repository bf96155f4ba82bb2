#include "modulation/midi_manager.h"

#include "modulation/midi_conflicts.h"
#include "platform/audio_unit/midi_notices.h"
#include "platform/text/message_text.h"

#include <any>

namespace zephyra {

namespace {

bool isChannelMessage(const MidiMessage& message) {
    const auto& [status, first, second] = message.bytes;
    return status >= 0x80 && status < 0xF0 && first < 0x80 && second < 0x80;
}

/// Which of the notes from first on it is; nothing outside them.
std::optional<int> indexOfNote(int note, std::optional<int> first, int count) {
    if (!first || note < *first || note >= *first + count) return std::nullopt;
    return note - *first;
}

} // namespace

MidiManager::MidiManager(Instance& instance, ControlManager& controls)
    : instance_(instance), controls_(controls),
      shows_(instance.notifications.addObserver(midi_notice::kShowManager,
                                                [this](const std::any&) { show(); })),
      closes_(instance.notifications.addObserver(midi_notice::kCloseManager,
                                                 [this](const std::any&) { close(); })) {}

MidiManager::~MidiManager() {
    instance_.notifications.removeObserver(shows_);
    instance_.notifications.removeObserver(closes_);
}

void MidiManager::show() {
    shown_ = true;
}

void MidiManager::close() {
    shown_ = false;
    stopLearning();
}

void MidiManager::startAnew() {
    const auto followers = followers_; // what they move may bind and unbind
    for (const auto& follower : followers) follower->startAnew();
    values_ = {};
}

bool MidiManager::receive(const MidiMessage& message) {
    if (!isChannelMessage(message)) return false;
    values_.keep(message);
    return learnFineHalf(message) || learnFrom(message) || move(message) || navigate(message);
}

// --- Learning ---

bool MidiManager::learn(Control& control) {
    if (!isKnown(control) || !movesByMidi(control)) {
        instance_.log.write("MIDI cannot move " + controls_.displayName(control) +
                            "; it moves knobs, toggles, buttons and scans that can be assigned");
        return false;
    }
    learning_ = &control;
    fresh_.reset();
    return true;
}

void MidiManager::stopLearning() {
    learning_ = nullptr;
    fresh_.reset();
}

bool MidiManager::learnFrom(const MidiMessage& message) {
    std::optional<MidiTrigger> trigger = learning_ ? triggerOf(message) : std::nullopt;
    if (!trigger) return false;
    Control& control = *learning_;
    stopLearning();
    if (learnsChannel) trigger->channel = message.channel();
    MidiBinding binding{.trigger = *trigger, .control = &control};
    // Velocities come from nowhere: they would hardly ever pass where the control stands.
    if (trigger->source == MidiSource::note) binding.takeover = MidiTakeover::jump;
    if (!bind(binding)) return true;
    watchFrom(*trigger, control, message);
    if (trigger->source == MidiSource::controller && trigger->number < MidiValues::kFineHalf)
        fresh_ = Fresh{*trigger, &control, message.channel()};
    return true;
}

bool MidiManager::learnFineHalf(const MidiMessage& message) {
    if (!fresh_ || message.kind() != MidiKind::controller || message.channel() != fresh_->channel)
        return false;
    const Fresh fresh = *fresh_;
    fresh_.reset();
    const auto coarse = find(fresh.trigger, *fresh.control);
    if (!coarse || message.data1() != fresh.trigger.number + MidiValues::kFineHalf) return false;
    MidiBinding binding = bindings_[*coarse];
    binding.trigger.source = MidiSource::controller14;
    if (!bind(binding)) return true;
    unbind(*coarse);
    watchFrom(binding.trigger, *binding.control, message);
    return true;
}

void MidiManager::watchFrom(const MidiTrigger& trigger, const Control& control,
                            const MidiMessage& message) {
    const auto index = find(trigger, control);
    const auto value = values_.value(trigger, message);
    if (index && value) followers_[*index]->watch(*value);
}

// --- Bindings ---

bool MidiManager::isKnown(const Control& control) const {
    for (std::size_t i = 0; const Control* const known = controls_.getParameterID(i); ++i)
        if (known == &control) return true;
    return false;
}

std::optional<std::size_t> MidiManager::find(const MidiTrigger& trigger,
                                             const Control& control) const {
    for (std::size_t i = 0; i < bindings_.size(); ++i)
        if (bindings_[i].control == &control && bindings_[i].trigger == trigger) return i;
    return std::nullopt;
}

bool MidiManager::bind(const MidiBinding& binding) {
    if (const auto checked = checkBinding(binding); !checked) {
        instance_.log.write("MIDI binding refused: " + checked.message());
        return false;
    }
    Control& control = *binding.control;
    if (!isKnown(control)) {
        instance_.log.write("MIDI binding refused: " + assignmentName(control) +
                            " cannot be assigned");
        return false;
    }
    if (bindings_.size() >= kMostBindings && !find(binding.trigger, control)) {
        instance_.log.write("MIDI binding refused: there are " + std::to_string(kMostBindings) +
                            " already");
        return false;
    }
    assignToMidi(control);
    place(binding);
    showBindings(control);
    return true;
}

// Before something is bound: whoever hears of it may unbind what was there.
void MidiManager::assignToMidi(Control& control) {
    if (controls_.typeOf(control) != AssignmentType::midi)
        controls_.assign(control, AssignmentType::midi);
}

void MidiManager::place(const MidiBinding& binding) {
    ++changes_;
    auto follower = std::make_shared<MidiFollower>(binding);
    if (const auto found = find(binding.trigger, *binding.control)) {
        bindings_[*found] = binding;
        followers_[*found] = std::move(follower);
        return;
    }
    bindings_.push_back(binding);
    followers_.push_back(std::move(follower));
}

void MidiManager::setFallback(const MidiBinding& binding) {
    if (!checkBinding(binding)) return;
    fallbackTrigger_ = binding.trigger;
    fallback_ = std::make_shared<MidiFollower>(binding);
}

void MidiManager::unbind(std::size_t index) {
    if (index >= bindings_.size()) return;
    Control& control = *bindings_[index].control;
    remove(index);
    showBindings(control);
}

void MidiManager::remove(std::size_t index) {
    const auto at = static_cast<std::ptrdiff_t>(index);
    bindings_.erase(bindings_.begin() + at);
    followers_.erase(followers_.begin() + at);
    ++changes_;
}

void MidiManager::unbind(const Control& control) {
    if (learning_ == &control) stopLearning();
    Control* bound = nullptr;
    for (std::size_t i = bindings_.size(); i-- > 0;)
        if (bindings_[i].control == &control) {
            bound = bindings_[i].control;
            remove(i);
        }
    if (bound) showBindings(*bound);
}

void MidiManager::unbindAll() {
    while (!bindings_.empty()) unbind(*bindings_.back().control);
}

std::vector<std::string> MidiManager::triggersOf(const Control& control) const {
    std::vector<std::string> triggers;
    for (const MidiBinding& binding : bindings_)
        if (binding.control == &control) triggers.push_back(triggerText(binding.trigger));
    return triggers;
}

void MidiManager::describe(Control& control) {
    const auto triggers = triggersOf(control);
    if (!triggers.empty()) controls_.record(control, AssignmentType::midi, spokenList(triggers));
}

// In the control manager's table. A control that others drive by now is theirs.
void MidiManager::showBindings(Control& control) {
    if (controls_.typeOf(control) != AssignmentType::midi) return;
    if (triggersOf(control).empty())
        controls_.record(control, AssignmentType::none, kAssignments[0].title);
    describe(control);
}

std::vector<std::string> MidiManager::conflicts() const {
    return midiConflicts(bindings_, navigation_, controls_);
}

bool MidiManager::waitsForSoftTakeover(std::size_t index) const {
    return index < followers_.size() && followers_[index]->waits();
}

// --- What messages do ---

/// Whether message is bound to something.
bool MidiManager::move(const MidiMessage& message) {
    bool bound = false;
    const std::uint64_t changes = changes_;
    for (std::size_t i = 0; changes_ == changes && i < bindings_.size(); ++i)
        if (const auto value = values_.value(bindings_[i].trigger, message)) {
            bound = true;
            const std::shared_ptr<MidiFollower> follower = followers_[i];
            follower->take(*value);
        }
    if (bound || !fallback_) return bound;
    const auto value = values_.value(fallbackTrigger_, message);
    const std::shared_ptr<MidiFollower> fallback = fallback_;
    if (value) fallback->take(*value);
    return value.has_value();
}

void MidiManager::carryBend(const Control& played, int channel) {
    const int wheel = channel != 0 ? channel : values_.lastBent();
    const auto carry = [&](const MidiTrigger& trigger, MidiFollower& follower) {
        if (follower.bends(played))
            follower.carry(values_.bend(trigger.channel != 0 ? trigger.channel : wheel));
    };
    bool bound = false;
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
        const MidiTrigger& trigger = bindings_[i].trigger;
        bound |= trigger.source == MidiSource::pitchBend &&
                 (trigger.channel == 0 || trigger.channel == wheel);
        carry(trigger, *followers_[i]);
    }
    if (!bound && fallback_) carry(fallbackTrigger_, *fallback_);
}

/// Whether message chose something.
bool MidiManager::navigate(const MidiMessage& message) {
    const Navigation wanted = navigation_; // what is chosen may bring another one
    if (wanted.channel != 0 && wanted.channel != message.channel()) return false;
    const auto choose = [this](const char* notice, std::optional<int> index) {
        if (index) instance_.notifications.post(notice, std::any(*index));
        return index.has_value();
    };
    const int number = message.data1();
    if (message.kind() == MidiKind::program)
        return followsPrograms && wanted.programsSelectPresets &&
               choose(midi_notice::kSelectPreset, number);
    if (message.kind() == MidiKind::controller && number == 0)
        return followsPrograms && wanted.bankSelectsBanks &&
               choose(midi_notice::kSelectBank, message.data2());
    if (message.kind() != MidiKind::noteOn || message.data2() == 0) return false;
    const bool bank = choose(midi_notice::kSelectBank,
                             indexOfNote(number, wanted.firstBankNote, wanted.bankNotes));
    const bool preset = choose(midi_notice::kSelectPreset,
                               indexOfNote(number, wanted.firstPresetNote, wanted.presetNotes));
    return bank || preset;
}

Result<void> MidiManager::checkNavigation(const Navigation& navigation) {
    const auto isNote = [](std::optional<int> note) {
        return !note || (*note >= 0 && *note < 128);
    };
    const auto isCount = [](int notes) { return notes >= 1 && notes <= 128; };
    if (navigation.channel < 0 || navigation.channel > 16 || !isNote(navigation.firstPresetNote) ||
        !isNote(navigation.firstBankNote) || !isCount(navigation.presetNotes) ||
        !isCount(navigation.bankNotes))
        return Failure{"MIDI navigation refused: it needs a channel 1 to 16 (or 0 for any), first "
                       "notes 0 to 127 and 1 to 128 notes"};
    return {};
}

bool MidiManager::setNavigation(const Navigation& navigation) {
    if (const auto checked = checkNavigation(navigation); !checked) {
        instance_.log.write(checked.message());
        return false;
    }
    navigation_ = navigation;
    return true;
}

} // namespace zephyra
