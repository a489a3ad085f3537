#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marvek {

// The low bytes of the first four characters as one value, the first in the
// least significant byte ("IMP!" gives 0x21504D49); missing characters count
// as 0.
std::int32_t stringToLong(std::string_view text);

// Everything before the last path separator ("/" or "\"); a path without one
// is returned whole.
std::string stripFile(std::string_view path);

// The text without trailing NULs; a text made only of NULs, or empty, is
// returned unchanged.
std::string stripNull(std::string_view text);

// text followed by the first character of pad up to length characters; a
// text already that long is returned unchanged, never cut.
std::string padRight(std::string_view text, std::int32_t length, std::string_view pad);

// ASCII letters lowered; other bytes, UTF-8 included, kept as they are.
char lowerAscii(char c);
std::string lowerAscii(std::string_view text);
// True when text ends in suffix, which is given in lower case, ignoring the
// case of ASCII letters.
bool endsWithIgnoringCase(std::string_view text, std::string_view lowerSuffix);

} // namespace marvek
