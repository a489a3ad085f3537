#include "maps/xmlWriter.h"

#include <array>
#include <charconv>
#include <stdexcept>

namespace marvek {
namespace {

enum class Context { text, attribute };

// What must be escaped, as pugixml escapes it: & and < always, > in text,
// " in an attribute, and control characters (in text all but tab and line
// ends) as character references.
bool needsEscape(unsigned char c, Context context) {
    switch (c) {
    case '&':
    case '<':
        return true;
    case '>':
        return context == Context::text;
    case '"':
        return context == Context::attribute;
    case '\t':
    case '\n':
    case '\r':
        return context == Context::attribute;
    default:
        return c < 32;
    }
}

void appendEscaped(std::string& out, std::string_view text, Context context) {
    // Values were handed to pugixml as C strings, which end at a NUL.
    text = text.substr(0, text.find('\0'));
    std::size_t plain = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (!needsEscape(c, context)) {
            continue;
        }
        out.append(text, plain, i - plain);
        plain = i + 1;
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += "&#";
            out += static_cast<char>('0' + c / 10);
            out += static_cast<char>('0' + c % 10);
            out += ';';
        }
    }
    out.append(text, plain);
}

} // namespace

XmlWriter::XmlWriter(std::size_t reserve) {
    out_.reserve(reserve);
    out_ = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

void XmlWriter::indent() {
    out_.append(open_.size(), ' ');
}

void XmlWriter::open(std::string_view name) {
    if (!open_.empty()) {
        Open& parent = open_.back();
        if (parent.content == Content::text) {
            throw std::logic_error("an XML element holds either text or children");
        }
        if (parent.content == Content::none) {
            out_ += ">\n";
            parent.content = Content::children;
        }
    }
    indent();
    out_ += '<';
    out_ += name;
    open_.push_back({name, Content::none});
}

void XmlWriter::attribute(std::string_view name, std::string_view value) {
    out_ += ' ';
    out_ += name;
    out_ += "=\"";
    appendEscaped(out_, value, Context::attribute);
    out_ += '"';
}

void XmlWriter::attribute(std::string_view name, std::int64_t value) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    attribute(name, std::string_view(digits.data(), end));
}

void XmlWriter::startText() {
    Open& element = open_.back();
    if (element.content != Content::text) {
        if (element.content != Content::none) {
            throw std::logic_error("an XML element holds either text or children");
        }
        out_ += '>';
        element.content = Content::text;
    }
}

void XmlWriter::text(std::string_view text) {
    startText();
    appendEscaped(out_, text, Context::text);
}

std::string& XmlWriter::plainText() {
    startText();
    return out_;
}

void XmlWriter::close() {
    const Open element = open_.back();
    open_.pop_back();
    switch (element.content) {
    case Content::none:
        out_ += " />\n";
        return;
    case Content::children:
        indent();
        break;
    case Content::text:
        break;
    }
    out_ += "</";
    out_ += element.name;
    out_ += ">\n";
}

std::string XmlWriter::take() {
    if (!open_.empty()) {
        throw std::logic_error("an XML element is still open");
    }
    return std::move(out_);
}

} // namespace marvek
