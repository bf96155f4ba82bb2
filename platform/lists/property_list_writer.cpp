// Writes property lists as XML. Carriage returns become references, since readers of XML take them
// for line feeds.

#include "platform/lists/property_field.h"
#include "platform/lists/property_list_limits.h"
#include "platform/lists/property_path.h"

namespace zephyra {

namespace {

/// Operations that answer false have noted the failure.
class XmlWriter {
public:
    explicit XmlWriter(const PropertyListLimits& limits) : limits_(limits) {}

    Result<std::string> run(const PropertyValue& top) {
        xml_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n";
        if (!value(top)) return failure_;
        xml_ += "</plist>\n";
        return std::move(xml_);
    }

private:
    bool value(const PropertyValue& value);
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

    PropertyListLimits limits_;
    std::string xml_;
    std::size_t depth_ = 0;
    std::size_t values_ = 0;
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

bool XmlWriter::fail(const std::string& reason) {
    failure_ = path_.failure(reason);
    return false;
}

bool XmlWriter::value(const PropertyValue& value) {
    if (const auto count = checkCount(++values_, limits_); !count) {
        failure_ = Failure{count.message()};
        return false;
    }
    return std::visit([this](const auto& held) { return write(held); }, value.variant());
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
    return line("data", property_field::formatBase64(data));
}

bool XmlWriter::open(std::string_view tag) {
    if (const auto nesting = checkNesting(depth_ + 1, limits_); !nesting)
        return fail(nesting.message());
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

Result<std::string> writePropertyList(const PropertyValue& value,
                                      const PropertyListLimits& limits) {
    return XmlWriter(limits).run(value);
}

} // namespace zephyra
