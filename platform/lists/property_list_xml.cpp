// Reads the XML form, straight into values. Only what all readers of XML understand alike gets
// through.

#include "platform/lists/property_field.h"
#include "platform/lists/property_list_builder.h"
#include "platform/lists/property_list_forms.h"
#include "platform/lists/xml_parser.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zephyra {

namespace {

/// What an element that is no array and no dictionary holds.
enum class Content { nothing, text, field };

struct Leaf {
    std::string_view name;
    Content content;
};

constexpr Leaf kKey{"key", Content::text};
constexpr std::array kLeaves = {Leaf{"string", Content::text},  Leaf{"integer", Content::field},
                                Leaf{"real", Content::field},   Leaf{"date", Content::field},
                                Leaf{"data", Content::field},   Leaf{"true", Content::nothing},
                                Leaf{"false", Content::nothing}};

bool isLetter(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

std::string_view withoutBlanksAround(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\r";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) + 1 - first);
}

class XmlReader : private XmlEvents {
public:
    XmlReader(std::string_view text, const PropertyListLimits& limits)
        : parser_(text, *this), list_(limits) {}

    Result<PropertyValue> run() {
        if (parser_.parse()) return list_.take();
        return list_.failure();
    }

private:
    bool begin(std::string_view element, bool hasAttributes) override;
    bool end() override;
    bool characters(std::string_view text, bool isReference) override;
    bool beginVerbatim() override;
    bool comment() override;
    std::string_view openElement() const override;
    bool fail(const std::string& reason) override { return list_.fail(reason); }

    bool outOfPlace();
    bool beginValue(std::string_view element);
    bool endLeaf(const Leaf& leaf);
    bool endKey();
    template <typename Value>
    bool add(Result<Value> value);

    XmlParser parser_;
    PropertyListBuilder list_;
    const Leaf* leaf_ = nullptr; ///< that is open
    std::string content_;        ///< of it, so far
};

bool XmlReader::begin(std::string_view element, bool hasAttributes) {
    if (leaf_ || list_.isDone()) return outOfPlace();
    if (hasAttributes || !std::all_of(element.begin(), element.end(), isLetter))
        return parser_.damaged("a tag of plain form is needed, like <real>");
    content_.clear();
    if (!list_.dictionary()) return beginValue(element);
    if ((element == kKey.name) == list_.hasKey())
        return parser_.damaged(list_.hasKey() ? "a key has no value"
                                              : "a value in a dictionary has no key");
    if (list_.hasKey()) return beginValue(element);
    leaf_ = &kKey;
    return true;
}

bool XmlReader::beginValue(std::string_view element) {
    if (!list_.beginValue()) return false;
    if (element == "dict") return list_.open(PropertyDictionary());
    if (element == "array") return list_.open(PropertyArray());
    for (const Leaf& leaf : kLeaves)
        if (leaf.name == element) leaf_ = &leaf;
    return leaf_ || parser_.damaged("a property list has no element of this name: " +
                                    std::string(element.substr(0, 40)));
}

bool XmlReader::end() {
    if (leaf_) return endLeaf(*std::exchange(leaf_, nullptr));
    if (!list_.isOpen()) return list_.isDone() || parser_.damaged("a value is needed");
    if (list_.hasKey()) return parser_.damaged("a key has no value");
    list_.close();
    return true;
}

bool XmlReader::endLeaf(const Leaf& leaf) {
    if (&leaf == &kKey) return endKey();
    if (leaf.name == "string") return add(Result(std::move(content_)));
    if (leaf.content == Content::nothing) return add(Result(leaf.name == "true"));
    const std::string_view field = withoutBlanksAround(content_);
    if (leaf.name == "integer") return add(property_field::parseWhole(field));
    if (leaf.name == "real") return add(property_field::parseReal(field));
    if (leaf.name == "date") return add(property_field::parseDate(field));
    return add(property_field::parseBase64(field));
}

bool XmlReader::endKey() {
    const bool isNew = !list_.dictionary()->contains(content_);
    list_.enterKey(std::move(content_));
    return isNew || parser_.damaged("the key stands there twice; every key must stand in its "
                                    "dictionary once");
}

template <typename Value>
bool XmlReader::add(Result<Value> value) {
    if (!value) return fail("in " + parser_.line() + " " + value.message());
    list_.add(std::move(value.value()));
    return true;
}

bool XmlReader::characters(std::string_view text, bool isReference) {
    const bool isContent = leaf_ && (leaf_->content == Content::text ||
                                     (leaf_->content == Content::field && !isReference));
    if (isContent)
        content_ += text;
    else if (leaf_ || isReference || !withoutBlanksAround(text).empty())
        return outOfPlace();
    return true;
}

bool XmlReader::beginVerbatim() {
    return (leaf_ && leaf_->content == Content::text) || outOfPlace();
}

bool XmlReader::comment() {
    return !leaf_ || leaf_->content == Content::text || outOfPlace();
}

/// Something stands where only something else may.
bool XmlReader::outOfPlace() {
    if (leaf_ && leaf_->content == Content::nothing)
        return parser_.damaged("<true/> or <false/> with nothing in it is needed");
    if (leaf_)
        return parser_.damaged("an end is needed of the element " + std::string(leaf_->name));
    return parser_.damaged(list_.isDone() ? "one value and </plist> are needed"
                                          : "a tag is needed");
}

std::string_view XmlReader::openElement() const {
    if (leaf_) return leaf_->name;
    return list_.dictionary() ? "dict" : list_.isOpen() ? "array" : "plist";
}

} // namespace

Result<PropertyValue> readXmlPropertyList(std::string_view text, const PropertyListLimits& limits) {
    return XmlReader(text, limits).run();
}

} // namespace zephyra
