#include "platform/lists/xml_parser.h"

#include "platform/lists/property_field.h"

#include <algorithm>
#include <expat.h>
#include <new>

namespace zephyra {

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
/// Of one tag, comment or declaration, each of which expat takes only as a whole; it may wait with
/// a try until it has twice as much.
constexpr std::size_t kMostHeldBytes = std::size_t{256} << 10;

constexpr const char* kNoList = "neither an XML nor a binary property list; one is needed";
constexpr const char* kReference = "a & that begins no known reference; write &amp; for it";

} // namespace

void XmlParser::Freer::operator()(XML_ParserStruct* parser) const noexcept {
    XML_ParserFree(parser);
}

/// Hands an event on; after a failure expat still has one or two, which do not count.
template <auto Member, typename... Arguments>
void XmlParser::call(void* self, Arguments... arguments) noexcept {
    auto& parser = *static_cast<XmlParser*>(self);
    if (parser.hasFailed_) return;
    try {
        parser.hasFailed_ = !(parser.*Member)(arguments...);
    } catch (const std::bad_alloc&) { // expat is C, through which nothing is thrown
        parser.hasFailed_ = parser.isOutOfMemory_ = true;
    }
    if (parser.hasFailed_) XML_StopParser(parser.parser_.get(), XML_FALSE);
}

XmlParser::XmlParser(std::string_view text, XmlEvents& events)
    : text_(text), events_(events), parser_(XML_ParserCreate("UTF-8")) {
    XML_Parser parser = parser_.get();
    if (!parser) throw std::bad_alloc();
    XML_SetUserData(parser, this);
    XML_SetXmlDeclHandler(parser, call<&XmlParser::declaration>);
    XML_SetStartDoctypeDeclHandler(parser, call<&XmlParser::documentType>);
    XML_SetElementHandler(parser, call<&XmlParser::begin>, call<&XmlParser::end>);
    XML_SetCharacterDataHandler(parser, call<&XmlParser::characters>);
    XML_SetStartCdataSectionHandler(parser, call<&XmlParser::beginVerbatim>);
    XML_SetCommentHandler(parser, call<&XmlParser::comment>);
    XML_SetSkippedEntityHandler(parser, call<&XmlParser::unknownReference>);
    XML_SetProcessingInstructionHandler(parser, call<&XmlParser::instruction>);
}

/// In pieces, so that expat never holds much of what it has not handed on: a single tag can ask for
/// many times its length.
bool XmlParser::parse() {
    // As UTF-16 has, which expat takes whatever encoding it is told.
    if (text_.find('\0') != std::string_view::npos)
        return events_.fail("the XML holds a zero byte; it must be plain UTF-8");
    for (std::size_t given = 0, taken = 0;;) {
        const std::string_view piece = text_.substr(given, kPieceBytes);
        given += piece.size();
        const bool isLast = given == text_.size();
        if (XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), isLast) !=
            XML_STATUS_OK)
            return malformed();
        if (isLast) return true;
        // Negative while expat waits with another try.
        const auto index = XML_GetCurrentByteIndex(parser_.get());
        if (index >= 0) taken = static_cast<std::size_t>(index);
        if (given - taken > kMostHeldBytes)
            return damaged("a tag or comment is too long; use a shorter one");
    }
}

std::string XmlParser::line() const {
    return "line " + std::to_string(XML_GetCurrentLineNumber(parser_.get()));
}

std::size_t XmlParser::position() const {
    return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser_.get()));
}

bool XmlParser::damaged(const std::string& reason) {
    return events_.fail("the XML is damaged in " + line() + ": " + reason);
}

/// Says why expat has stopped; false.
bool XmlParser::malformed() {
    const XML_Error error = XML_GetErrorCode(parser_.get());
    if (isOutOfMemory_ || error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
    if (hasFailed_) return false;
    if (!hasRoot_) return malformedBeginning();
    if (depth_ == 0) return damaged("something follows </plist>");
    switch (error) {
    case XML_ERROR_INVALID_TOKEN:
    case XML_ERROR_PARTIAL_CHAR:
        return malformedToken();
    case XML_ERROR_UNDEFINED_ENTITY:
    case XML_ERROR_BAD_CHAR_REF:
        return damaged(kReference);
    case XML_ERROR_TAG_MISMATCH:
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
        return damaged("an end is needed of the element " + std::string(events_.openElement()));
    default:
        return damaged(XML_ErrorString(error));
    }
}

bool XmlParser::malformedBeginning() {
    const XML_Error error = XML_GetErrorCode(parser_.get());
    std::string_view text = text_;
    if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (!text.starts_with('<') || error == XML_ERROR_NO_ELEMENTS) return events_.fail(kNoList);
    return damaged(std::string(XML_ErrorString(error)) +
                   "; a list begins like <?xml version=\"1.0\"?><plist version=\"1.0\">");
}

/// Tells from what stands around the byte at which expat has stopped what is wrong with it.
bool XmlParser::malformedToken() {
    const std::string_view before = text_.substr(0, position());
    const std::string_view rest = text_.substr(before.size());
    const auto text = property_field::checkText(rest.substr(0, rest.find_first_of("<&")));
    if (!text) return events_.fail("in " + line() + " " + text.message());
    const std::size_t comment = std::min(before.rfind("<!--"), before.size());
    if (comment < before.size() && before.find("-->", comment + 4) == std::string_view::npos)
        return damaged("a comment holds --; only its end may");
    const std::size_t mark = before.find_last_of("<&>"); // there is one: that of <plist>
    if (before[mark] == '<') return damaged("a tag of plain form is needed, like <real>");
    return damaged(before[mark] == '&' ? kReference : "text holds ]]>; write ]]&gt; for it");
}

bool XmlParser::declaration(const char*, const char* encoding, int) {
    std::string lower(encoding ? encoding : "utf-8");
    for (char& byte : lower)
        if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte + 32);
    return lower == "utf-8" || lower == "us-ascii" ||
           events_.fail("the XML is in an encoding that is not read here; UTF-8 is needed");
}

bool XmlParser::documentType(const char* name, const char*, const char*, int hasSubset) {
    if (hasSubset)
        return events_.fail("the XML declares entities of its own; remove them from its DOCTYPE");
    return std::string_view(name) == "plist" ||
           damaged("the DOCTYPE is that of another kind of document; remove it");
}

bool XmlParser::begin(const char* name, const char** attributes) {
    ++depth_;
    if (hasRoot_) return events_.begin(name, attributes[0] != nullptr);
    hasRoot_ = std::string_view(name) == "plist";
    return hasRoot_ || events_.fail(kNoList);
}

bool XmlParser::end(const char*) {
    --depth_;
    return events_.end();
}

bool XmlParser::characters(const char* text, int bytes) {
    const bool isReference = text_[position()] == '&'; // or in a CDATA section, where none is
    return events_.characters({text, static_cast<std::size_t>(bytes)}, isReference);
}

bool XmlParser::beginVerbatim() {
    return events_.beginVerbatim();
}

bool XmlParser::comment(const char*) {
    return depth_ == 0 || events_.comment();
}

/// Of an entity that the DOCTYPE's file, which is not read, might declare.
bool XmlParser::unknownReference(const char*, int) {
    return damaged(kReference);
}

bool XmlParser::instruction(const char*, const char*) {
    return damaged("a property list has no processing instructions");
}

} // namespace zephyra
