#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// Writes XML straight into one string, laid out as pugixml's indented save
// lays it out (one space a level, "<a />" for an empty element, an element
// with only text on one line), without building a document first.
class XmlWriter {
public:
    // Starts with the declaration; reserve is the expected length.
    explicit XmlWriter(std::size_t reserve);

    // Opens a child of the open element (or the root); name is kept until
    // the element is closed, so it is a literal.
    void open(std::string_view name);
    // Attributes of the element just opened, before its children or text.
    void attribute(std::string_view name, std::string_view value);
    void attribute(std::string_view name, std::int64_t value);
    // The element's only content: text, escaped as XML needs.
    void text(std::string_view text);
    // The element's only content, to append to: for text that needs no
    // escaping, such as digits, commas and base64.
    std::string& plainText();
    // Closes the innermost open element.
    void close();

    // The document, once every element is closed.
    std::string take();

private:
    enum class Content { none, children, text };
    struct Open {
        std::string_view name;
        Content content;
    };

    void indent();
    void startText();

    std::string out_;
    std::vector<Open> open_;
};

} // namespace marvek
