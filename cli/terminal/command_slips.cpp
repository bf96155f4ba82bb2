#include "cli/terminal/command_slips.h"

#include "platform/text/names.h"

#include <array>
#include <string>

namespace zephyra {

namespace {

struct CommandSlip {
    std::string_view command; ///< of which words are no commands
    std::string_view words, right;
};

constexpr auto kSlips = std::to_array<CommandSlip>({
    {"", "presets list ls bank browse library", "zephyra banks lists them"},
    {"", "show print", "write zephyra preset show BANK PRESET"},
    {"", "export rename delete copy move", "it follows preset, as in zephyra preset copy"},
    {"", "import add",
     "write zephyra samples import FILE for a sound, zephyra preset import FILE for a bank"},
    {"", "sample sounds", "write zephyra samples"},
    {"", "controls control params options settings formats types lfo shapes manual man usage",
     "zephyra help render tells about them"},
    {"", "envelope window windows", "write zephyra envelopes"},
    {"", "play preview listen live record",
     "zephyra writes files, as in zephyra bird.wav -o cloud.wav"},
    {"", "convert process granulate make run batch", "write zephyra bird.wav -o cloud.wav"},
    {"", "stat stats probe identify", "write zephyra info FILE"},
    {"", "verify validate lint repair fix", "write zephyra check FILE"},
    {"", "folder folders path paths dirs config", "write zephyra where"},
    {"preset", "list ls all", "zephyra banks BANK lists them"},
    {"preset", "play render load use", "write zephyra --bank BANK --preset PRESET"},
    {"preset", "save add new create", "write zephyra SOUND --save-bank BANK --save-preset NAME"},
    {"preset", "remove rm", "write zephyra preset delete"},
    {"samples", "list ls all", "zephyra samples lists them"},
    {"samples", "add copy load", "write zephyra samples import FILE"},
});

} // namespace

std::optional<std::string_view> rightCommand(std::string_view command, std::string_view word) {
    const std::string plain = plainName(word);
    for (const CommandSlip& slip : kSlips)
        if (slip.command == command && !plain.empty() && hasWord(slip.words, plain))
            return slip.right;
    return std::nullopt;
}

} // namespace zephyra
