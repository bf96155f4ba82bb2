// TurtleNode and its kin: text in the language that LV2 hosts read, without the locale.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

/// "text" in quotation marks, with what needs it escaped.
std::string turtleText(std::string_view text);

/// A decimal number, with a point: hosts set ports by no other.
std::string turtleNumber(float value);

/// <iri>; what may not stand in one is not checked.
std::string turtleIri(std::string_view iri);

/// A prefix a file begins with.
using TurtlePrefix = std::pair<const char*, const char*>;
std::string turtlePrefixes(const std::vector<TurtlePrefix>& prefixes);

/// The statements about one subject: properties and values in their order. Nested in another's
/// value it has no subject: a blank node.
class TurtleNode {
public:
    explicit TurtleNode(std::string subject = {}) : subject_(std::move(subject)) {}

    /// value in Turtle already.
    TurtleNode& add(std::string_view property, std::string_view value);
    TurtleNode& add(std::string_view property, const TurtleNode& blank);
    /// Several values of one property; nothing without one.
    TurtleNode& add(std::string_view property, const std::vector<std::string>& values);

    /// With its subject a statement of its own, else "[ ... ]".
    std::string text() const;

private:
    std::string subject_, lines_;
};

} // namespace zephyra
