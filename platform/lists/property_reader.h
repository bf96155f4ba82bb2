// PropertyReader: takes typed values out of a dictionary, and tells what could not be taken.
#pragma once

#include "platform/lists/property_list.h"
#include "platform/lists/state_finding.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace zephyra {

/// Reads one dictionary and remembers which keys it was asked for. A key that is missing answers
/// nothing; one of the wrong type answers nothing and becomes a finding that names key, type found
/// and type wanted. Reals are also taken from whole numbers, booleans from the whole numbers 0 and
/// 1. Any thread but RENDER; the dictionary must outlive it.
class PropertyReader {
public:
    /// For who wants no more than the values: findings are its own.
    explicit PropertyReader(const PropertyDictionary& dictionary);
    /// Adds to findings, which must outlive it. where: the path of the dictionary, empty at the
    /// top. standIn: what its owner puts in the place of a value that it does not get.
    PropertyReader(const PropertyDictionary& dictionary, StateFindings& findings,
                   std::string where = {}, StandIn standIn = StandIn::asBefore);
    PropertyReader(const PropertyReader&) = delete;
    PropertyReader& operator=(const PropertyReader&) = delete;

    std::optional<double> real(std::string_view key); ///< finite
    std::optional<std::int64_t> whole(std::string_view key);
    std::optional<bool> boolean(std::string_view key);
    std::optional<std::string> text(std::string_view key);
    const PropertyData* data(std::string_view key);             ///< null for none
    const PropertyArray* array(std::string_view key);           ///< null for none
    const PropertyDictionary* dictionary(std::string_view key); ///< null for none

    /// Whether the key is there, of whatever type; that does not ask for it.
    bool has(std::string_view key) const { return dictionary_.contains(key); }
    /// Where key stands, as "Pad.x".
    std::string path(std::string_view key) const;
    /// Adds a finding of the caller's about key.
    void complain(std::string_view key, std::string text, StandIn standIn);
    StateFindings& findings() { return findings_; }

    /// The entries that were never asked for: what a newer program wrote and an older one hands
    /// back.
    PropertyDictionary unknown() const;

private:
    template <typename Type>
    const Type* find(std::string_view key, const char* wanted);
    const PropertyValue* value(std::string_view key);
    void refuse(std::string_view key, const PropertyValue& found, const char* wanted);

    const PropertyDictionary& dictionary_;
    StateFindings own_;
    StateFindings& findings_;
    std::string where_;
    StandIn standIn_;
    std::set<std::string, std::less<>> asked_;
};

} // namespace zephyra
