#include "specials/specialValues.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <type_traits>

namespace marvek {
namespace {

[[noreturn]] void throwNotWhole(std::string_view text) {
    throw std::invalid_argument("\"" + std::string(text) + "\" is not a whole number");
}

std::int32_t roundToInt32(double value) {
    // Conversions round half to even: the default floating-point rounding mode.
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<std::int32_t>::min() &&
          rounded <= std::numeric_limits<std::int32_t>::max())) {
        throw std::out_of_range(std::to_string(value) + " is outside the 32-bit range");
    }
    return static_cast<std::int32_t>(rounded);
}

// "&H" numbers are 32-bit patterns, so &HFFFFFFFF is -1.
std::int32_t parseHex(std::string_view digits, std::string_view original) {
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    if (digits.empty() || end != digits.data() + digits.size() || error != std::errc{}) {
        throwNotWhole(original);
    }
    return static_cast<std::int32_t>(value);
}

std::int32_t parseDecimal(std::string_view text, std::string_view original) {
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
    }
    std::string normal(text);
    for (char& c : normal) {
        c = (c == ',') ? '.' : c;
    }
    double value = 0;
    const char* last = normal.data() + normal.size();
    const auto [end, error] = std::from_chars(normal.data(), last, value, std::chars_format::fixed);
    if (normal.empty() || end != last || error != std::errc{} || !std::isfinite(value)) {
        throwNotWhole(original);
    }
    return roundToInt32(value);
}

} // namespace

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::int32_t toWholeNumber(std::string_view text) {
    const std::string_view trimmed = trimBlanks(text);
    if (trimmed.size() >= 2 && trimmed[0] == '&' && (trimmed[1] == 'H' || trimmed[1] == 'h')) {
        return parseHex(trimmed.substr(2), text);
    }
    return parseDecimal(trimmed, text);
}

std::int32_t toWholeNumber(const Value& value) {
    return std::visit(
        [](const auto& held) -> std::int32_t {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>) {
                return toWholeNumber(std::string_view(held));
            } else if constexpr (std::is_same_v<Held, SectionPtr>) {
                throw std::invalid_argument("a section is not a whole number");
            } else if constexpr (std::is_same_v<Held, bool>) {
                return held ? -1 : 0;
            } else if constexpr (std::is_floating_point_v<Held>) {
                return roundToInt32(static_cast<double>(held));
            } else {
                return static_cast<std::int32_t>(held);
            }
        },
        value);
}

std::string toText(const Value& value) {
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, std::string>) {
                return held;
            } else if constexpr (std::is_same_v<Held, SectionPtr>) {
                throw std::invalid_argument("a section is not text");
            } else if constexpr (std::is_same_v<Held, bool>) {
                return held ? "True" : "False";
            } else if constexpr (std::is_floating_point_v<Held>) {
                char buffer[32];
                const auto result = std::to_chars(buffer, buffer + sizeof buffer, held);
                return std::string(buffer, result.ptr);
            } else {
                return std::to_string(static_cast<std::int32_t>(held));
            }
        },
        value);
}

} // namespace marvek
