#include "platform/lists/property_field.h"
#include "platform/lists/property_list_scan.h"
#include "platform/lists/property_path.h"
#include "platform/lists/xml_text.h"

#include <algorithm>

namespace zephyra {

namespace {

/// Takes a document element by element. Only what all readers of XML understand alike gets through.
/// Operations that answer false have noted the failure.
class XmlScan {
public:
    XmlScan(std::string_view text, const PropertyListLimits& limits)
        : text_(text), limits_(limits) {}

    Result<PropertyListScan> run() {
        if (prolog() && body() && epilog()) return std::move(scan_);
        return failure_;
    }

private:
    struct Container {
        bool isDictionary;
        bool hasKey = false; ///< a key waits for its value
        std::size_t items = 0;
    };
    struct Tag {
        std::string_view name;
        bool isClosed; ///< <name/>
    };

    bool fail(const std::string& reason);
    bool damaged(const std::string& reason);
    bool takeComment();
    bool skipBlankAndComments();
    bool declaration();
    bool documentType();
    bool prolog();
    bool body();
    bool epilog();
    bool tag(Tag& tag);
    bool closeTag(std::string_view name);
    bool closeTagIsMissing(std::string_view name);
    bool element();
    bool key(const Tag& tag);
    bool value(const Tag& tag);
    bool leaf(const Tag& tag);
    bool field(const Tag& tag);
    bool leaveContainer();
    bool valueDone();
    bool textContent(std::string_view name, std::string* raw);
    bool textPiece(std::string_view piece);
    template <typename Value>
    bool keep(const Result<Value>& number);

    XmlText text_;
    PropertyListLimits limits_;
    PropertyListScan scan_;
    PropertyPath path_;
    std::vector<Container> open_;
    bool hasTop_ = false;
    Failure failure_;
};

bool XmlScan::fail(const std::string& reason) {
    failure_ = path_.failure(reason);
    return false;
}

bool XmlScan::damaged(const std::string& reason) {
    return fail("the XML is damaged in line " + std::to_string(text_.line()) + ": " + reason);
}

bool XmlScan::takeComment() {
    const bool isShort = text_.startsWith(">") || text_.startsWith("->"); // <!-->, <!--->
    return (!isShort && text_.takeUntil("-->")) || damaged("a comment does not end");
}

bool XmlScan::skipBlankAndComments() {
    do text_.takeBlanks();
    while (text_.take("<!--") ? takeComment() : false);
    return failure_.message.empty();
}

bool XmlScan::declaration() {
    const auto declared = text_.takeUntil("?>");
    if (!declared) return damaged("the declaration does not end");
    const std::string lower = xml_text::inLowerCase(*declared);
    if (lower.find("encoding") == std::string::npos) return true;
    for (const char* known : {"\"utf-8\"", "'utf-8'", "\"us-ascii\"", "'us-ascii'"})
        if (lower.find(known) != std::string::npos) return true;
    return fail("the XML is in an encoding that is not read here; UTF-8 is needed");
}

bool XmlScan::documentType() {
    const auto type = text_.takeUntil(">");
    if (!type) return damaged("the document type does not end");
    if (type->find_first_of("[<") == std::string_view::npos) return true;
    return fail("the XML declares entities of its own; remove them from its DOCTYPE");
}

bool XmlScan::prolog() {
    text_.take("\xef\xbb\xbf");
    if (text_.take("<?xml") && !declaration()) return false;
    if (!skipBlankAndComments()) return false;
    if (text_.take("<!DOCTYPE") && !(documentType() && skipBlankAndComments())) return false;
    if (!text_.take("<plist"))
        return fail("neither an XML nor a binary property list; one is needed");
    const auto attributes = text_.takeUntil(">");
    const bool isPlain = attributes &&
                         (attributes->empty() || xml_text::isBlank(attributes->front())) &&
                         attributes->find_first_of("</") == std::string_view::npos;
    return isPlain || damaged("<plist version=\"1.0\"> with one value is needed");
}

bool XmlScan::body() {
    while (!hasTop_ || !open_.empty())
        if (!skipBlankAndComments() || !element()) return false;
    return skipBlankAndComments() &&
           (text_.take("</plist") || damaged("one value and </plist> are needed")) &&
           closeTag("plist");
}

bool XmlScan::epilog() {
    return skipBlankAndComments() && (text_.isAtEnd() || damaged("something follows </plist>"));
}

/// The rest of a tag after <.
bool XmlScan::tag(Tag& tag) {
    tag.name = text_.takeLetters();
    text_.takeBlanks();
    tag.isClosed = text_.take("/");
    return (!tag.name.empty() && text_.take(">")) ||
           damaged("a tag of plain form is needed, like <real>");
}

/// The rest of a tag after its name.
bool XmlScan::closeTag(std::string_view name) {
    text_.takeBlanks();
    return text_.take(">") || closeTagIsMissing(name);
}

bool XmlScan::closeTagIsMissing(std::string_view name) {
    return damaged(std::string("an end is needed of the element ").append(name));
}

bool XmlScan::element() {
    if (text_.take("</")) return leaveContainer();
    if (!text_.take("<")) return damaged("a tag is needed");
    Tag next{};
    if (!tag(next)) return false;
    if (open_.empty()) return value(next);
    Container& inside = open_.back();
    if (!inside.isDictionary) {
        path_.enterIndex(inside.items++);
        return value(next);
    }
    if ((next.name == "key") == inside.hasKey)
        return damaged(inside.hasKey ? "a key has no value" : "a value in a dictionary has no key");
    return inside.hasKey ? value(next) : key(next);
}

bool XmlScan::key(const Tag& tag) {
    std::string raw;
    if (!tag.isClosed && !textContent("key", &raw)) return false;
    path_.enterKey(raw);
    open_.back().hasKey = true;
    return true;
}

bool XmlScan::value(const Tag& tag) {
    if (const auto count = checkCount(++scan_.values, limits_); !count) {
        failure_ = Failure{count.message()};
        return false;
    }
    if (tag.name != "dict" && tag.name != "array") return leaf(tag) && valueDone();
    if (const auto nesting = checkNesting(open_.size() + 1, limits_); !nesting)
        return fail(nesting.message());
    if (tag.isClosed) return valueDone();
    open_.push_back({tag.name == "dict"});
    return true;
}

bool XmlScan::leaf(const Tag& tag) {
    if (tag.name == "string") return tag.isClosed || textContent("string", nullptr);
    if (tag.name == "true" || tag.name == "false") {
        if (tag.isClosed || (text_.take("</") && text_.take(tag.name) && closeTag(tag.name)))
            return true;
        return damaged("<true/> or <false/> with nothing in it is needed");
    }
    return field(tag);
}

/// A value of plain text.
bool XmlScan::field(const Tag& tag) {
    const auto isOneOf = {"integer", "real", "date", "data"};
    if (std::find(isOneOf.begin(), isOneOf.end(), tag.name) == isOneOf.end())
        return damaged("a property list has no element of this name: " +
                       std::string(tag.name.substr(0, 40)));
    const auto content = tag.isClosed ? std::string_view() : text_.takeUntil("<");
    if (!content ||
        (!tag.isClosed && !(text_.take("/") && text_.take(tag.name) && closeTag(tag.name))))
        return closeTagIsMissing(tag.name);
    const std::string_view text = xml_text::withoutBlanksAround(*content);
    if (tag.name == "integer") return keep(property_field::parseWhole(text));
    if (tag.name == "real") return keep(property_field::parseReal(text));
    if (tag.name == "date") return keep(property_field::parseDate(text));
    const auto data = property_field::checkBase64(text);
    return data.ok() || fail(data.message());
}

template <typename Value>
bool XmlScan::keep(const Result<Value>& number) {
    if (!number) return fail(number.message());
    scan_.numbers.emplace_back(number.value());
    return true;
}

bool XmlScan::leaveContainer() {
    if (open_.empty()) return damaged("a value is needed");
    if (open_.back().hasKey) return damaged("a key has no value");
    const char* const name = open_.back().isDictionary ? "dict" : "array";
    if (!text_.take(name)) return closeTagIsMissing(name);
    open_.pop_back();
    return closeTag(name) && valueDone();
}

bool XmlScan::valueDone() {
    if (open_.empty()) {
        hasTop_ = true;
        return true;
    }
    open_.back().hasKey = false;
    path_.leave();
    return true;
}

/// raw: where to put the text with its references as they stand, or null.
bool XmlScan::textContent(std::string_view name, std::string* raw) {
    for (;;) {
        const auto piece = text_.takeCharacters();
        if (!piece) return closeTagIsMissing(name);
        if (!textPiece(*piece)) return false;
        if (raw) *raw += *piece;
        if (text_.take("<!--")) {
            if (!takeComment()) return false;
        } else if (text_.take("<![CDATA[")) {
            const auto verbatim = text_.takeUntil("]]>");
            if (!verbatim) return damaged("a CDATA section does not end");
            if (const auto text = property_field::checkText(*verbatim); !text)
                return fail(text.message());
            if (raw) *raw += *verbatim;
        } else {
            const bool isEnd = text_.take("</") && text_.take(name);
            return isEnd ? closeTag(name) : closeTagIsMissing(name);
        }
    }
}

bool XmlScan::textPiece(std::string_view piece) {
    if (const auto text = property_field::checkText(piece); !text) return fail(text.message());
    return xml_text::hasOnlyKnownReferences(piece) ||
           damaged("a & that begins no known reference; write &amp; for it");
}

} // namespace

Result<PropertyListScan> scanXmlPropertyList(std::string_view text,
                                             const PropertyListLimits& limits) {
    if (text.find('\0') != std::string_view::npos)
        return Failure{"the XML holds a zero byte; it must be plain UTF-8"};
    return XmlScan(text, limits).run();
}

} // namespace zephyra
