#include "configuration/clsConfiguration.h"

#include "io/atomicWrite.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <span>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

namespace marvek {
namespace {

// Deeper nesting than any real file has; the limit keeps the recursive parser,
// writer and copier (and the destructor chain) off the end of the stack, and
// stops the writer on a section that contains itself.
constexpr int maximumDepth = 256;

[[noreturn]] void throwSyntaxError(std::string description) {
    throw ConfigurationError(ConfigurationError::syntaxErrorNumber, std::move(description));
}

[[noreturn]] void throwTypeMismatch(std::string_view text) {
    throw ConfigurationError(ConfigurationError::typeMismatchNumber,
                             "Type mismatch (\"" + std::string(text) + "\")");
}

[[noreturn]] void throwOverflow(std::string_view text) {
    throw ConfigurationError(ConfigurationError::overflowNumber,
                             "Overflow (\"" + std::string(text) + "\")");
}

void checkDepth(int depth) {
    if (depth > maximumDepth) {
        throwSyntaxError("Sections are nested too deeply.");
    }
}

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexDigit(char c) {
    if (isDigit(c)) {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

// A decimal integer or "&H" hexadecimal (up to 32 bits, so &HFFFFFFFF is -1),
// optionally after a "-", with blanks around it.
std::int32_t parseInteger(std::string_view original) {
    std::string_view text = trimBlanks(original);
    const bool negative = !text.empty() && text.front() == '-';
    if (negative) {
        text.remove_prefix(1);
    }
    constexpr std::int64_t tooLarge = std::int64_t{1} << 32;
    std::int64_t magnitude = 0;
    if (text.size() >= 2 && text[0] == '&' && (text[1] == 'H' || text[1] == 'h')) {
        text.remove_prefix(2);
        if (text.empty()) {
            throwTypeMismatch(original);
        }
        for (const char c : text) {
            const int digit = hexDigit(c);
            if (digit < 0) {
                throwTypeMismatch(original);
            }
            magnitude = std::min(magnitude * 16 + digit, tooLarge);
        }
        if (magnitude >= tooLarge) {
            throwOverflow(original);
        }
        magnitude = static_cast<std::int32_t>(static_cast<std::uint32_t>(magnitude));
    } else {
        if (text.empty()) {
            throwTypeMismatch(original);
        }
        for (const char c : text) {
            if (!isDigit(c)) {
                throwTypeMismatch(original);
            }
            magnitude = std::min(magnitude * 10 + (c - '0'), tooLarge);
        }
    }
    const std::int64_t value = negative ? -magnitude : magnitude;
    if (value < std::numeric_limits<std::int32_t>::min() ||
        value > std::numeric_limits<std::int32_t>::max()) {
        throwOverflow(original);
    }
    return static_cast<std::int32_t>(value);
}

// A decimal number with one "." or "," as its decimal point, an optional "-"
// before it, an optional exponent and blanks around it. Rounds to nearest even;
// a value too small for a float becomes zero, one too large is an overflow.
float parseFloat(std::string_view original) {
    const std::string_view text = trimBlanks(original);
    std::string normalized;
    std::size_t at = 0;
    if (at < text.size() && text[at] == '-') {
        normalized += text[at++];
    }
    bool digits = false;
    bool point = false;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (isDigit(c)) {
            digits = true;
            normalized += c;
        } else if ((c == '.' || c == ',') && !point) {
            point = true;
            normalized += '.';
        } else {
            break;
        }
    }
    if (!digits) {
        throwTypeMismatch(original);
    }
    bool negativeExponent = false;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        normalized += text[at++];
        if (at < text.size() && (text[at] == '+' || text[at] == '-')) {
            negativeExponent = text[at] == '-';
            normalized += text[at++];
        }
        const std::size_t exponentStart = at;
        while (at < text.size() && isDigit(text[at])) {
            normalized += text[at++];
        }
        if (at == exponentStart) {
            throwTypeMismatch(original);
        }
    }
    if (at != text.size()) {
        throwTypeMismatch(original);
    }
    const char* begin = normalized.data();
    const char* end = begin + normalized.size();
    float value = 0;
    const auto result = std::from_chars(begin, end, value);
    if (result.ec == std::errc{} && result.ptr == end) {
        return value;
    }
    if (result.ec != std::errc::result_out_of_range) {
        throwTypeMismatch(original);
    }
    // Out of a float's range: too large, or so small that it rounds to zero.
    double wide = 0;
    const auto retry = std::from_chars(begin, end, wide);
    const bool underflow = retry.ec == std::errc{} ? std::fabs(wide) < 1 : negativeExponent;
    if (!underflow) {
        throwOverflow(original);
    }
    return normalized.front() == '-' ? -0.0f : 0.0f;
}

// A number is a float when its text holds a decimal point ("." or ","),
// otherwise a 32-bit integer.
Value convertNumber(std::string_view text) {
    if (text.find_first_of(".,") != std::string_view::npos) {
        return parseFloat(text);
    }
    return parseInteger(text);
}

bool beginsNumber(char c) {
    return isDigit(c) || c == '&' || c == '-' || c == ',' || c == '.' || c == 'e' || c == 'E';
}

void checkKey(std::string_view key) {
    if (trimBlanks(key).find(' ') != std::string_view::npos) {
        throwSyntaxError("Spaces not allowed in key names.");
    }
}

// The shortest text that reads back as the same value, always with a "." so
// that the reader takes it for a float again (3 is written "3.0").
template <typename Float> std::string floatText(Float value) {
    if (!std::isfinite(value) ||
        std::fabs(static_cast<double>(value)) > std::numeric_limits<float>::max()) {
        throw ConfigurationError(ConfigurationError::overflowNumber,
                                 "Overflow (a number that a configuration cannot hold)");
    }
    std::array<char, 64> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    std::string text(buffer.data(), result.ptr);
    if (text.find('.') == std::string::npos) {
        const auto exponent = text.find('e');
        text.insert(exponent == std::string::npos ? text.size() : exponent, ".0");
    }
    return text;
}

std::string numberText(const Value& value) {
    return std::visit(
        [](const auto& number) -> std::string {
            using Type = std::decay_t<decltype(number)>;
            if constexpr (std::is_same_v<Type, bool>) {
                return number ? "-1" : "0";
            } else if constexpr (std::is_floating_point_v<Type>) {
                return floatText(number);
            } else if constexpr (std::is_integral_v<Type>) {
                return std::to_string(static_cast<std::int32_t>(number));
            } else {
                return {}; // strings and sections are written by writeSection
            }
        },
        value);
}

} // namespace

clsConfiguration::clsConfiguration() : root_(std::make_shared<Section>()) {}

void clsConfiguration::InputConfiguration(std::string_view text) {
    std::string cleaned;
    cleaned.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(cleaned),
                 [](char c) { return c != '\r' && c != '\t'; });
    currentLine_ = 1;
    std::size_t position = 0;
    try {
        root_ = parseSection(cleaned, position, 0);
    } catch (ConfigurationError& error) {
        error.setLine(currentLine_);
        throw;
    }
}

void clsConfiguration::LoadConfiguration(const std::filesystem::path& path) {
    const auto bytes = readWholeFile(path);
    try {
        InputConfiguration(std::string(bytes.begin(), bytes.end()));
    } catch (ConfigurationError& error) {
        error.setFile(path);
        throw;
    }
}

void clsConfiguration::NewConfiguration() {
    currentLine_ = 1;
    root_ = std::make_shared<Section>();
}

std::string clsConfiguration::OutputConfiguration(std::string_view lineEnd, bool pretty) const {
    std::string out;
    writeSection(*root_, 0, lineEnd, pretty, out);
    return out;
}

Value clsConfiguration::ReadSetting(const std::string& key, Value defaultValue,
                                    bool byReference) const {
    const Value* stored = root_->find(key);
    if (stored == nullptr) {
        return defaultValue;
    }
    const auto* section = std::get_if<SectionPtr>(stored);
    if (section != nullptr && *section && !byReference) {
        return cloneSection(**section, 1);
    }
    return *stored;
}

void clsConfiguration::RemoveSetting(const std::string& key) {
    root_->remove(key);
}

SectionPtr clsConfiguration::Root(bool byReference) const {
    return byReference ? root_ : cloneSection(*root_, 0);
}

void clsConfiguration::SaveConfiguration(const std::filesystem::path& path,
                                         std::string_view lineEnd, bool pretty) const {
    const std::string text = OutputConfiguration(lineEnd, pretty);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    writeFileAtomically(path, std::span(bytes, text.size()));
}

void clsConfiguration::WriteSetting(const std::string& key, Value value, bool byReference) {
    Value* stored = root_->find(key);
    if (stored == nullptr) {
        // Deliberate asymmetry: a new key keeps the caller's own section even without byReference.
        root_->add(key, std::move(value));
        return;
    }
    const auto* section = std::get_if<SectionPtr>(&value);
    if (section != nullptr && *section && !byReference) {
        value = cloneSection(**section, 1);
    }
    *stored = std::move(value);
}

SectionPtr clsConfiguration::parseSection(const std::string& text, std::size_t& position,
                                          int depth) {
    checkDepth(depth);
    auto section = std::make_shared<Section>();
    std::string key;
    std::string value;
    bool inAssignment = false;
    bool inNumber = false;
    bool inString = false;
    bool escape = false;
    while (position < text.size()) {
        const char c = text[position++];
        if (inNumber) {
            if (c == ';') {
                section->add(std::string(trimBlanks(key)), convertNumber(value));
                key.clear();
                value.clear();
                inNumber = false;
                inAssignment = false;
            } else if (c == '\n') {
                ++currentLine_;
            } else {
                value += c;
            }
        } else if (!inString && !inAssignment) {
            switch (c) {
            case '{': {
                checkKey(key);
                std::string name(trimBlanks(key));
                auto child = parseSection(text, position, depth + 1);
                section->add(std::move(name), std::move(child));
                key.clear();
                break;
            }
            case '}':
                return section;
            case '=':
                checkKey(key);
                inAssignment = true;
                break;
            case ';':
                section->add(std::string(trimBlanks(key)), std::int32_t{0});
                key.clear();
                value.clear();
                break;
            case '\n':
                // The blank makes a key broken over two lines fail the blank test,
                // while a key on the line before its "{" is still trimmed to itself.
                ++currentLine_;
                key += ' ';
                break;
            case '/':
                skipComment(text, position);
                break;
            default:
                key += c;
            }
        } else if (!inString) {
            if (c == '"') {
                inString = true;
            } else if (beginsNumber(c)) {
                inNumber = true;
                --position;
            } else if (c == '\n') {
                ++currentLine_;
            } else if (c == ';') {
                // Only leaves the assignment: after "a = ;" the key text "a" stays
                // and becomes the front of the next key.
                inAssignment = false;
            } else if (c != ' ') {
                // One line before the counter: the usual cause is a string without
                // its ";", noticed only on the next line.
                ConfigurationError error(ConfigurationError::syntaxErrorNumber,
                                         "Invalid assignment on line " +
                                             std::to_string(currentLine_ - 1) +
                                             ". Forgot an assignment terminator?");
                error.setLineNamedInDescription();
                throw error;
            }
        } else if (escape) {
            escape = false;
            switch (c) {
            case 'n':
                value += '\n';
                break;
            case 'r':
                value += '\r';
                break;
            case 't':
                value += '\t';
                break;
            default:
                if (isDigit(c)) {
                    // A three-digit character code; the parse takes all three characters.
                    const std::string_view code = std::string_view(text).substr(position - 1, 3);
                    position = std::min(position + 2, text.size());
                    const std::int32_t number = parseInteger(code);
                    if (number > 255) {
                        throw ConfigurationError(ConfigurationError::invalidArgumentNumber,
                                                 "Invalid procedure call or argument (\"\\" +
                                                     std::string(code) + "\")");
                    }
                    value += static_cast<char>(number);
                } else {
                    value += c; // also the escaped quote and backslash
                }
            }
        } else if (c == '\\') {
            escape = true;
        } else if (c == '"') {
            section->add(std::string(trimBlanks(key)), std::move(value));
            key.clear();
            value.clear();
            inString = false;
        } else if (c == '\n') {
            ++currentLine_;
        } else {
            value += c;
        }
    }
    return section;
}

// position is just past a "/" read where a key may stand.
void clsConfiguration::skipComment(const std::string& text, std::size_t& position) {
    const std::size_t slash = position - 1;
    if (text.compare(slash, 2, "//") == 0) {
        const auto lineFeed = text.find('\n', slash);
        if (lineFeed == std::string::npos) {
            position = text.size();
        } else {
            ++currentLine_;
            position = lineFeed + 1;
        }
    } else if (text.compare(slash, 2, "/*") == 0) {
        // The search starts at the "/" itself, so "/*/" is a complete comment.
        const auto close = text.find("*/", slash);
        if (close == std::string::npos) {
            position = text.size();
        } else {
            currentLine_ += static_cast<std::int32_t>(
                std::count(text.begin() + static_cast<std::ptrdiff_t>(slash),
                           text.begin() + static_cast<std::ptrdiff_t>(close), '\n'));
            position = close + 2;
        }
    }
    // A lone "/" is dropped.
}

void clsConfiguration::writeSection(const Section& section, int depth, std::string_view lineEnd,
                                    bool pretty, std::string& out) {
    checkDepth(depth);
    const std::string indent = pretty ? std::string(static_cast<std::size_t>(depth), '\t') : "";
    const std::string_view separator = pretty ? " " : "";
    const auto line = [&](std::string_view text) {
        out.append(indent).append(text).append(lineEnd);
    };
    const auto assignment = [&](const std::string& key, const std::string& valueText) {
        out.append(indent).append(key).append(separator).append("=").append(separator);
        out.append(valueText).append(";").append(lineEnd);
    };
    for (const auto& [key, value] : section) {
        if (const auto* child = std::get_if<SectionPtr>(&value)) {
            if (pretty) {
                line("");
            }
            line(key);
            line("{");
            if (*child) {
                writeSection(**child, depth + 1, lineEnd, pretty, out);
            }
            line("}");
            if (pretty) {
                line("");
            }
        } else if (const auto* text = std::get_if<std::string>(&value)) {
            // Appended: GCC 12 at -O3 warns falsely (-Wrestrict) about a literal
            // added to a temporary string.
            std::string quoted = "\"";
            quoted += escapeValue(*text);
            quoted += '"';
            assignment(key, quoted);
        } else {
            assignment(key, numberText(value));
        }
    }
}

SectionPtr clsConfiguration::cloneSection(const Section& section, int depth) {
    checkDepth(depth);
    auto copy = std::make_shared<Section>();
    for (const auto& [key, value] : section) {
        const auto* child = std::get_if<SectionPtr>(&value);
        if (child != nullptr && *child) {
            copy->add(key, cloneSection(**child, depth + 1));
        } else {
            copy->add(key, value);
        }
    }
    return copy;
}

std::string clsConfiguration::escapeValue(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '\\':
            escaped += "\\\\";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        case '\t':
            escaped += "\\t";
            break;
        case '"':
            escaped += "\\\"";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

} // namespace marvek
