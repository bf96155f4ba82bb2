// Sends arbitrary bytes as MIDI events while controls learn, are bound, touched and let go.
// Whatever comes, messages are whole, however the bytes are cut; controls stay in their ranges; and
// what is saved comes back.

#include "fuzz/byte_reader.h"
#include "fuzz/require.h"
#include "hosting/midi_inlet.h"
#include "modulation/midi_manager.h"
#include "tests/support/fake_scan.h"
#include "tests/support/heard_instance.h"

#include <array>
#include <cstdint>
#include <vector>

namespace zephyra {
namespace {

struct Source final : ControlManagerDataSource {
    std::vector<Control*> getWidgetsObjForControlManager() override {
        return {&knob, &steps, &toggle, &button, &scan};
    }
    std::vector<std::string> getWidgetsObjNamesForControlManager() override {
        return {"Knob", "Steps", "Toggle", "Button", "Scan"};
    }
    std::vector<int> getWidgetsObjColorsForControlManager() override { return {0, 0, 0, 0, 0}; }
    std::vector<ScrubReference*> getScrubReference() override { return {}; }

    MOK_KNOB knob{"_knob"};
    MokKnobEnum steps{"_steps", {"a", "b", "c"}};
    Toggle toggle{"_toggle"};
    Button button{"_button"};
    FakeScan scan{"_0"};
};

bool isWhole(const MidiMessage& message) {
    const auto& [status, first, second] = message.bytes;
    const bool one =
        message.kind() == MidiKind::program || message.kind() == MidiKind::channelPressure;
    return status >= 0x80 && status < 0xF0 && first < 0x80 && second < 0x80 &&
           (!one || second == 0);
}

class Attack {
public:
    explicit Attack(std::span<const std::byte> bytes) : reader_(bytes) {
        controls_.initialize();
        source_.knob.setRange(-3.0f, 40.0f);
        // One that changes the bindings while it is moved, as a preset does.
        source_.toggle.addTarget(this, "restore", control_event::valueChanged,
                                 [this](Control&) { midi_.restoreState(kept_); });
    }

    void run() {
        while (!reader_.empty()) {
            step();
            instance_.runLoop.runPosted();
            require(source_.knob.value() >= -3.0f && source_.knob.value() <= 40.0f);
            require(source_.steps.index() >= 0 && source_.steps.index() < 3);
            require(source_.scan.position >= 0.0f && source_.scan.position <= 1.0f);
        }
        for (const std::string& line : midi_.conflicts()) require(isOneLine(line));
        const PropertyDictionary state = midi_.getState();
        midi_.restoreState(state);
        require(midi_.getState() == state);
    }

private:
    Control& control() { return *controls_.getParameterID(reader_.below(5)); }
    float fraction() { return static_cast<float>(reader_.byte()) / 250.0f; } // may be too much

    void step() {
        switch (reader_.below(10)) {
        case 0:
            midi_.learnsChannel = reader_.below(2) == 1;
            midi_.learn(control());
            return;
        case 1:
            return bind();
        case 2:
            return midi_.unbind(reader_.below(4));
        case 3:
            return source_.knob.setValueNorm(fraction());
        case 4:
            midi_.setNavigation({.channel = static_cast<int>(reader_.below(18)),
                                 .firstPresetNote = reader_.byte(),
                                 .presetNotes = reader_.byte()});
            return;
        case 5:
            kept_ = midi_.getState();
            return;
        case 6:
            controls_.assign(control(), static_cast<AssignmentType>(reader_.below(7)));
            return;
        default:
            return send();
        }
    }

    void bind() {
        midi_.bind({.trigger = {static_cast<MidiSource>(reader_.below(6)), reader_.byte() % 130,
                                static_cast<int>(reader_.below(18))},
                    .control = &control(),
                    .min = fraction(),
                    .max = fraction(),
                    .curve = 10.0f * fraction(),
                    .takeOver = static_cast<MidiTakeOver>(reader_.below(3)),
                    .relative = reader_.below(2) == 1});
    }

    /// One event, once as it is and once cut into two.
    void send() {
        std::vector<std::uint8_t> bytes(reader_.below(24));
        for (std::uint8_t& byte : bytes) byte = reader_.byte();
        const std::size_t cut = reader_.below(bytes.size() + 1);
        whole_.clear();
        inlet_.push(bytes.data(), bytes.size());
        instance_.runLoop.runPosted();
        const std::vector<MidiMessage> whole = whole_;
        whole_.clear();
        inlet_.push(bytes.data(), cut);
        instance_.runLoop.runPosted();
        const std::size_t begun = whole_.size();
        require(begun <= whole.size() && std::equal(whole_.begin(), whole_.end(), whole.begin()));
        inlet_.push(bytes.data() + cut, bytes.size() - cut);
        instance_.runLoop.runPosted();
        require(whole_.size() <= whole.size()); // no status, no message
    }

    void take(const MidiMessage& message) {
        require(isWhole(message));
        whole_.push_back(message);
        midi_.receive(message);
    }

    ByteReader reader_;
    HeardInstance instance_;
    Source source_;
    ControlManager controls_{instance_, source_};
    MidiManager midi_{instance_, controls_};
    std::vector<MidiMessage> whole_;
    PropertyDictionary kept_;
    MidiInlet inlet_{instance_, [this](const MidiMessage& message) { take(message); }};
};

} // namespace
} // namespace zephyra

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    zephyra::Attack(std::as_bytes(std::span(data, size))).run();
    return 0;
}
