// XmlParser: tells the elements of a property list's XML, in the order in which they stand.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct XML_ParserStruct; // expat's

namespace zephyra {

/// Whom the parser tells. An operation that answers false ends the parsing; it has noted why.
class XmlEvents {
public:
    virtual ~XmlEvents() = default;

    virtual bool begin(std::string_view element, bool hasAttributes) = 0; ///< after <plist>
    virtual bool end() = 0;                                               ///< also of </plist>
    /// A piece of text, of any length; isReference: it is written as &...;.
    virtual bool characters(std::string_view text, bool isReference) = 0;
    virtual bool beginVerbatim() = 0; ///< a CDATA section, whose text comes next
    virtual bool comment() = 0;

    virtual std::string_view openElement() const = 0; ///< the innermost one's name
    virtual bool fail(const std::string& reason) = 0; ///< notes a reason of the parser's; false
};

/// Expat, told to be strict: UTF-8 alone, no entities but XML's own five, no DOCTYPE but that of
/// property lists, of which nothing is fetched, no processing instructions, no tag or comment much
/// beyond 100 KB. Any thread but RENDER.
class XmlParser {
public:
    /// text must outlive it, as events must. Throws std::bad_alloc.
    XmlParser(std::string_view text, XmlEvents& events);

    /// Once; false when an operation of the events has answered that. Throws std::bad_alloc.
    bool parse();
    /// "line 5", of the event that is being told.
    std::string line() const;
    /// Notes that the XML is damaged in this line; false.
    bool damaged(const std::string& reason);

private:
    struct Freer {
        void operator()(XML_ParserStruct* parser) const noexcept;
    };

    template <auto Member, typename... Arguments>
    static void call(void* self, Arguments... arguments) noexcept;

    std::size_t position() const;
    bool malformed();
    bool malformedBeginning();
    bool malformedToken();

    bool declaration(const char* version, const char* encoding, int standalone);
    bool documentType(const char* name, const char* system, const char* publicId, int hasSubset);
    bool begin(const char* name, const char** attributes);
    bool end(const char* name);
    bool characters(const char* text, int bytes);
    bool beginVerbatim();
    bool comment(const char* text);
    bool unknownReference(const char* name, int isParameter);
    bool instruction(const char* target, const char* data);

    std::string_view text_;
    XmlEvents& events_;
    std::unique_ptr<XML_ParserStruct, Freer> parser_;
    std::size_t depth_ = 0;
    bool hasRoot_ = false;
    bool hasFailed_ = false;
    bool isOutOfMemory_ = false;
};

} // namespace zephyra
