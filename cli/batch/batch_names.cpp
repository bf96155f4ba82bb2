#include "cli/batch/batch_names.h"

#include "platform/files/file_name.h"
#include "platform/text/names.h"

#include <cstddef>

namespace zephyra {

namespace {

constexpr std::size_t kMostExtensionBytes = 8; // the dot, and what is written or drawn
constexpr std::size_t kMostCountBytes = 8;     // " 1234567"
constexpr std::size_t kMostStemBytes = kMostFileNameBytes - kMostExtensionBytes - kMostCountBytes;

std::string nameFor(std::string text) {
    for (char& c : text)
        if (c == '/' || static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '_';
    if (text.size() > kMostStemBytes) {
        std::size_t end = kMostStemBytes;
        while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
        text.resize(end); // between two characters
    }
    const bool hidden = text.empty() || text[0] == '.'; // or a step up
    return hidden ? "_" + text : text;
}

} // namespace

void BatchNames::reserve(std::string_view stem) {
    taken_.insert(foldCase(stem));
}

std::string BatchNames::take(const std::optional<std::string>& input,
                             const std::optional<std::string>& preset) {
    const std::string name =
        nameFor(input && preset ? *input + " - " + *preset : input.value_or(preset.value_or("")));
    std::string free = name;
    for (std::size_t& last = lastCounts_.try_emplace(foldCase(name), 1).first->second;
         !taken_.insert(foldCase(free)).second;)
        free = name + " " + std::to_string(++last);
    return free;
}

} // namespace zephyra
