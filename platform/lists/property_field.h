// property_field: how numbers, dates, data and text stand in a property list.
#pragma once

#include "platform/lists/property_list.h"

#include <cstdint>
#include <string>
#include <string_view>

// Free of the locale, which a host may change under a plug-in. A Failure's message is a reason that
// does not name the key. Any thread but RENDER.
namespace zephyra::property_field {

/// Decimal digits with at most one sign, within 64 bits.
Result<std::int64_t> parseWhole(std::string_view text);

/// A plain decimal number, rounded to the nearest double.
Result<double> parseReal(std::string_view text);
/// The real itself; fails for one that is not finite.
Result<double> finiteReal(double real);
/// The shortest text that parseReal takes back to the same bits.
Result<std::string> formatReal(double real);

/// "YYYY-MM-DDTHH:MM:SSZ", years 1 to 9999.
Result<PropertyDate> parseDate(std::string_view text);
Result<std::string> formatDate(PropertyDate date);
/// The date to the whole second below; fails outside years 1 to 9999.
Result<PropertyDate> wholeSeconds(double seconds);

/// What is written in base64, with white space anywhere and the padding in place.
Result<PropertyData> parseBase64(std::string_view text);
/// In lines of 76 digits.
std::string formatBase64(const PropertyData& data);

/// UTF-8 of characters that XML can hold: no control characters other than tab, line feed and
/// carriage return, no U+FFFE and U+FFFF.
Result<void> checkText(std::string_view text);
bool isTextCharacter(char32_t character) noexcept;
void appendUtf8(char32_t character, std::string& text);

} // namespace zephyra::property_field
