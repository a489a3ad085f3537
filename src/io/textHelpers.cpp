#include "io/textHelpers.h"

#include <algorithm>

namespace marvek {

std::int32_t stringToLong(std::string_view text) {
    std::uint32_t value = 0;
    const std::size_t count = std::min<std::size_t>(text.size(), 4);
    for (std::size_t i = 0; i < count; ++i) {
        value |= std::uint32_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return static_cast<std::int32_t>(value);
}

std::string stripFile(std::string_view path) {
    const std::size_t separator = path.find_last_of("/\\");
    return std::string(separator == std::string_view::npos ? path : path.substr(0, separator));
}

std::string stripNull(std::string_view text) {
    const std::size_t last = text.find_last_not_of('\0');
    return std::string(last == std::string_view::npos ? text : text.substr(0, last + 1));
}

std::string padRight(std::string_view text, std::int32_t length, std::string_view pad) {
    std::string result(text);
    if (!pad.empty() && length > 0 && result.size() < static_cast<std::size_t>(length)) {
        result.resize(static_cast<std::size_t>(length), pad.front());
    }
    return result;
}

char lowerAscii(char c) {
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowerAscii(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return lowerAscii(c); });
    return lower;
}

bool endsWithIgnoringCase(std::string_view text, std::string_view lowerSuffix) {
    return text.size() >= lowerSuffix.size() &&
           std::ranges::equal(text.substr(text.size() - lowerSuffix.size()), lowerSuffix,
                              [](char a, char b) { return lowerAscii(a) == b; });
}

} // namespace marvek
