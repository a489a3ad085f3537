#pragma once

#include "configuration/Section.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace marvek {

// Conversions of configuration values for the special keys, which may come
// as numbers or as text. Values that do not convert throw
// std::invalid_argument, numbers too large for the result std::out_of_range;
// the caller adds which file and key it was.

// A whole number: integers as they are, floats and decimal text rounded half
// to even; text may have blanks around it, a sign, "." or "," as the decimal
// point, or the "&H" hexadecimal prefix.
std::int32_t toWholeNumber(std::string_view text);
std::int32_t toWholeNumber(const Value& value);

// Text as written; numbers in their usual decimal form.
std::string toText(const Value& value);

std::string_view trimBlanks(std::string_view text);

} // namespace marvek
