// Writes property lists as XML. libplist is not used for it: its dates end in 2069, its reals
// follow the locale, and it leaves carriage returns as they are, which readers of XML take for line
// feeds.

#include "platform/lists/property_field.h"
#include "platform/lists/property_list_scan.h"
#include "platform/lists/property_path.h"

namespace zephyra {

namespace {

/// Operations that answer false have noted the failure.
class XmlWriter {
public:
    Result<std::string> run(const PropertyValue& top) {
        xml_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
        if (!value(top)) return failure_;
        xml_ += "</plist>\n";
        return std::move(xml_);
    }

private:
    bool value(const PropertyValue& value) {
        return std::visit([this](const auto& held) { return write(held); }, value.variant());
    }
    bool write(const std::string& text);
    bool write(std::int64_t number) { return line("integer", std::to_string(number)); }
    bool write(double real) { return line("real", property_field::formatReal(real)); }
    bool write(bool flag) { return indented(flag ? "<true/>" : "<false/>"); }
    bool write(PropertyDate date) { return line("date", property_field::formatDate(date)); }
    bool write(const PropertyData& data);
    bool write(const PropertyArray& array);
    bool write(const PropertyDictionary& dictionary);

    bool indented(std::string_view text);
    bool line(std::string_view name, const Result<std::string>& text);
    bool textLine(std::string_view name, std::string_view text);
    bool open(std::string_view tag);
    bool close(std::string_view tag);
    bool fail(const std::string& reason);

    std::string xml_;
    std::size_t depth_ = 0;
    PropertyPath path_;
    Failure failure_;
};

std::string escaped(std::string_view text) {
    std::string xml;
    for (const char byte : text) {
        if (byte == '&')
            xml += "&amp;";
        else if (byte == '<')
            xml += "&lt;";
        else if (byte == '>')
            xml += "&gt;";
        else if (byte == '\r')
            xml += "&#13;";
        else
            xml += byte;
    }
    return xml;
}

std::string base64(const PropertyData& data) {
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t bytesPerLine = 57; // 76 digits
    std::string text;
    for (std::size_t at = 0; at < data.size(); at += 3) {
        if (at > 0 && at % bytesPerLine == 0) text += '\n';
        const std::size_t left = data.size() - at;
        std::uint32_t three = 0;
        for (std::size_t i = 0; i < 3; ++i)
            three = three << 8 | (i < left ? std::to_integer<std::uint32_t>(data[at + i]) : 0);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= left ? digits[three >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

bool XmlWriter::fail(const std::string& reason) {
    failure_ = path_.failure(reason);
    return false;
}

bool XmlWriter::indented(std::string_view text) {
    xml_.append(depth_, '\t').append(text) += '\n';
    return true;
}

bool XmlWriter::line(std::string_view name, const Result<std::string>& text) {
    if (!text) return fail(text.message());
    const std::string tag(name);
    return indented("<" + tag + ">" + text.value() + "</" + tag + ">");
}

bool XmlWriter::textLine(std::string_view name, std::string_view text) {
    if (const auto checked = property_field::checkText(text); !checked)
        return fail(checked.message());
    return line(name, escaped(text));
}

bool XmlWriter::write(const std::string& text) {
    return textLine("string", text);
}

bool XmlWriter::write(const PropertyData& data) {
    return line("data", base64(data));
}

bool XmlWriter::open(std::string_view tag) {
    if (const auto nesting = checkNesting(depth_ + 1, {}); !nesting) return fail(nesting.message());
    indented(tag);
    ++depth_;
    return true;
}

bool XmlWriter::close(std::string_view tag) {
    --depth_;
    return indented(tag);
}

bool XmlWriter::write(const PropertyArray& array) {
    if (!open("<array>")) return false;
    for (std::size_t i = 0; i < array.size(); ++i) {
        path_.enterIndex(i);
        if (!value(array[i])) return false;
        path_.leave();
    }
    return close("</array>");
}

bool XmlWriter::write(const PropertyDictionary& dictionary) {
    if (!open("<dict>")) return false;
    for (const auto& [key, held] : dictionary) {
        path_.enterKey(key);
        if (!textLine("key", key) || !value(held)) return false;
        path_.leave();
    }
    return close("</dict>");
}

} // namespace

Result<std::string> writePropertyList(const PropertyValue& value) {
    return XmlWriter().run(value);
}

} // namespace zephyra
