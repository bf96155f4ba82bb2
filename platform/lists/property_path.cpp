#include "platform/lists/property_path.h"

namespace zephyra {

namespace {

constexpr std::size_t kMostShown = 200; // bytes of a path in a message

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0) == 0x80;
}

} // namespace

void PropertyPath::enterKey(std::string_view key) {
    lengths_.push_back(text_.size());
    if (text_.size() > kMostShown) return;
    if (!text_.empty()) text_ += '.';
    for (const char byte : key.substr(0, kMostShown + 1)) {
        const bool isControl = static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
        text_ += isControl ? '?' : byte;
    }
}

void PropertyPath::enterIndex(std::size_t index) {
    lengths_.push_back(text_.size());
    text_ += '[' + std::to_string(index) + ']';
}

void PropertyPath::leave() {
    text_.resize(lengths_.back());
    lengths_.pop_back();
}

Failure PropertyPath::failure(const std::string& reason) const {
    if (text_.empty()) return Failure{reason};
    if (text_.size() <= kMostShown) return Failure{text_ + ": " + reason};
    std::size_t end = kMostShown;
    while (end > 0 && isContinuation(text_[end])) --end;
    return Failure{text_.substr(0, end) + "...: " + reason};
}

} // namespace zephyra
