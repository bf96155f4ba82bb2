#include "plugin/lv2/turtle/turtle.h"

#include "platform/text/text_numbers.h"

namespace zephyra {

std::string turtleText(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        if (c == '\n')
            quoted += "\\n";
        else
            quoted += c;
    }
    return quoted + '"';
}

std::string turtleNumber(float value) {
    const std::string text = formatNumber(value);
    if (text.find('e') != std::string::npos) return formatFixed(value, 12);
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string turtleIri(std::string_view iri) {
    return '<' + std::string(iri) + '>';
}

std::string turtlePrefixes(const std::vector<TurtlePrefix>& prefixes) {
    std::string text;
    for (const auto& [prefix, iri] : prefixes)
        text += "@prefix " + std::string(prefix) + ": " + turtleIri(iri) + " .\n";
    return text + '\n';
}

TurtleNode& TurtleNode::add(std::string_view property, std::string_view value) {
    if (!lines_.empty()) lines_ += " ;\n";
    lines_ += "    ";
    lines_ += property;
    lines_ += ' ';
    // What is nested stands further in.
    for (const char c : value) {
        lines_ += c;
        if (c == '\n') lines_ += "    ";
    }
    return *this;
}

TurtleNode& TurtleNode::add(std::string_view property, const TurtleNode& blank) {
    return add(property, blank.text());
}

TurtleNode& TurtleNode::add(std::string_view property, const std::vector<std::string>& values) {
    std::string list;
    for (const std::string& value : values) list += (list.empty() ? "" : " , ") + value;
    return list.empty() ? *this : add(property, list);
}

std::string TurtleNode::text() const {
    return subject_.empty() ? "[\n" + lines_ + "\n]" : subject_ + "\n" + lines_ + " .\n\n";
}

} // namespace zephyra
