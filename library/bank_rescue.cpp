#include "library/bank_rescue.h"

#include <algorithm>
#include <map>
#include <span>
#include <string>
#include <utility>

namespace zephyra {

namespace {

constexpr std::size_t kNowhere = std::string_view::npos;

/// How far a line's first tag is indented; nowhere for one that does not begin its line.
std::size_t indentAt(std::string_view text, std::size_t at) {
    constexpr std::size_t most = 64; // of other programs' indents, too
    for (std::size_t indent = 0; indent < most && indent < at; ++indent) {
        const char before = text[at - indent - 1];
        if (before == '\n' || before == '\r') return indent;
        if (before != ' ' && before != '\t') return kNowhere;
    }
    return kNowhere;
}

/// How far the keys of the outermost dictionary are indented: as far as the first one, or as the
/// least indented one where the beginning is lost. Nowhere when that does not tell them from
/// others.
std::size_t indentOfPresets(std::string_view text) {
    const std::size_t first = text.find("<key>");
    if (first == kNowhere) return kNowhere;
    const std::string_view before = text.substr(0, first);
    const std::size_t top = before.find("<dict>");
    const bool isBeginningWhole = before.find("<plist") < top && top == before.rfind("<dict>");
    std::size_t least = kNowhere, most = 0;
    for (std::size_t at = first; at != kNowhere; at = text.find("<key>", at + 1)) {
        const std::size_t indent = indentAt(text, at);
        if (indent == kNowhere) continue;
        least = std::min(least, indent);
        most = std::max(most, indent);
    }
    const std::size_t indent = isBeginningWhole ? indentAt(text, first) : least;
    return indent < most ? indent : kNowhere;
}

/// What the keys and values in a piece of XML say; empty, and problem says why, for damaged ones.
PropertyDictionary parsed(std::string_view entries, std::string& problem) {
    std::string text = "<plist version=\"1.0\"><dict>";
    text.append(entries).append("</dict></plist>");
    auto value = readPropertyList(std::as_bytes(std::span(text)), kBankLimits);
    if (value) return std::move(*value.value().as<PropertyDictionary>());
    problem = value.message();
    return {};
}

/// Goes through the tags once. Which of them belong to a preset is counted from its key on, so that
/// damage in one does not reach the next.
class Rescue {
public:
    explicit Rescue(std::string_view text) : text_(text), indent_(indentOfPresets(text)) {}

    RescuedBank run() {
        for (std::size_t at = text_.find('<'); at != kNowhere; at = text_.find('<', at))
            at = takeTag(at);
        lose("its end is missing");
        return std::move(rescued_);
    }

private:
    std::size_t takeTag(std::size_t at);
    std::size_t takeVerbatim(std::size_t at);
    bool isPresetKey(std::size_t at) const;
    void begin(std::size_t at);
    void open(bool isDictionary);
    void close(std::size_t end);
    void keep(std::size_t end);
    void lose(const std::string& reason);
    void note(const std::string& key, std::string text);
    std::string keyText() const;

    std::string_view text_;
    std::size_t indent_;
    std::size_t depth_ = 0;             // of the dictionaries and arrays that are open
    std::size_t keyAt_ = kNowhere;      // of the preset that has begun
    std::string kept_;                  // key of the preset that has just ended
    bool isOpen_ = false;               // its dictionary has begun, too
    bool hasVerbatimEnds_ = true;       // looking for one in vain is done once
    std::map<std::string, int> copies_; // of keys that stand there more than once
    RescuedBank rescued_;
};

/// Past the tag that begins there, or past its < when it is none.
std::size_t Rescue::takeTag(std::size_t at) {
    constexpr std::size_t longest = 24;
    if (text_.substr(at).starts_with("<!")) return takeVerbatim(at);
    const std::string_view near = text_.substr(at, longest);
    const std::size_t last = near.find('>');
    if (last == kNowhere) return at + 1;
    std::string name(near.substr(1, last - 1));
    std::erase_if(name, [](char byte) { return byte == ' ' || byte == '\t' || byte == '\n'; });
    const std::size_t end = at + last + 1;
    if (name == "key" && isPresetKey(at)) {
        begin(at);
        return end;
    }
    if (!kept_.empty() && !name.starts_with('/')) {
        note(kept_, "the preset is damaged: it ends before all of its values");
        kept_.clear();
    }
    if (name == "dict" || name == "array")
        open(name == "dict");
    else if (name == "/dict" || name == "/array")
        close(end);
    else if (name == "dict/" && depth_ == 1 && !isOpen_)
        keep(end);
    return end;
}

/// Past a comment or a CDATA section, in which tags mean nothing.
std::size_t Rescue::takeVerbatim(std::size_t at) {
    const bool isComment = text_.substr(at).starts_with("<!--");
    if (!isComment && !text_.substr(at).starts_with("<![CDATA[")) return at + 2;
    const std::string_view mark = isComment ? "-->" : "]]>";
    const std::size_t end = hasVerbatimEnds_ ? text_.find(mark, at) : kNowhere;
    hasVerbatimEnds_ = end != kNowhere;
    return end == kNowhere ? at + 2 : end + mark.size();
}

bool Rescue::isPresetKey(std::size_t at) const {
    return indent_ == kNowhere ? depth_ == 1 : indentAt(text_, at) == indent_;
}

void Rescue::begin(std::size_t at) {
    lose("its end is missing");
    keyAt_ = at;
    kept_.clear();
    isOpen_ = false;
    depth_ = 1;
}

void Rescue::open(bool isDictionary) {
    if (depth_++ == 1 && isDictionary) isOpen_ = keyAt_ != kNowhere;
}

void Rescue::close(std::size_t end) {
    if (depth_ <= 1) return; // one too many
    if (--depth_ == 1 && isOpen_) keep(end);
}

/// The preset that has begun ends there.
void Rescue::keep(std::size_t end) {
    if (keyAt_ == kNowhere) return;
    std::string problem = "it is no dictionary";
    PropertyDictionary entries = parsed(text_.substr(keyAt_, end - keyAt_), problem);
    if (entries.size() != 1 || !entries.begin()->second.as<PropertyDictionary>())
        return lose(problem);
    std::string key = entries.begin()->first;
    for (const std::string first = key; rescued_.bank.contains(key);)
        key = first + " (" + std::to_string(++copies_.try_emplace(first, 1).first->second) + ")";
    kept_ = key;
    rescued_.bank.emplace(std::move(key), std::move(entries.begin()->second));
    keyAt_ = kNowhere;
    isOpen_ = false;
}

/// Notes the preset that has begun, if one has, as damaged.
void Rescue::lose(const std::string& reason) {
    if (keyAt_ == kNowhere) return;
    ++rescued_.lost;
    note(keyText(), "the preset is damaged and lost, lines counted from its key: " + reason);
    keyAt_ = kNowhere;
    isOpen_ = false;
}

void Rescue::note(const std::string& key, std::string text) {
    if (rescued_.damaged.size() < kMostFindings)
        rescued_.damaged.push_back({key, std::move(text), true});
}

std::string Rescue::keyText() const {
    constexpr std::size_t longest = 300;
    const std::string_view rest = text_.substr(keyAt_ + 5, longest);
    const std::string raw(rest.substr(0, rest.find('<')));
    std::string ignored;
    const PropertyDictionary entry = parsed("<key>" + raw + "</key><true/>", ignored);
    return entry.empty() ? raw : entry.begin()->first;
}

} // namespace

RescuedBank rescuedBank(std::string_view text) {
    return Rescue(text).run();
}

} // namespace zephyra
