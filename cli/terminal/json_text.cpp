#include "cli/terminal/json_text.h"

#include "platform/text/characters.h"
#include "platform/text/odd_bytes.h"

#include <nlohmann/json.hpp>
#include <string_view>

namespace zephyra {

namespace {

using Json = nlohmann::ordered_json;

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const Character next = firstCharacter(text);
        if (next.code < 0) return false;
        text.remove_prefix(next.bytes);
    }
    return true;
}

void showOddBytes(Json& json) {
    if (auto* const text = json.get_ptr<std::string*>()) {
        if (!isUtf8(*text)) *text = typedFromBytes(*text);
    } else if (json.is_structured()) {
        for (Json& inner : json) showOddBytes(inner);
    }
}

} // namespace

std::string textOfJson(Json json) {
    showOddBytes(json);
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"; // of keys
}

} // namespace zephyra
