#pragma once

#include <stdexcept>
#include <string>

namespace marvek {

// A special definition that cannot be used: a missing "Specials" section, a
// key whose value does not convert, an ID outside the level format's 0 to 63,
// a sprite rectangle outside the sheet. The message names the file and, where
// there is one, the special.
class SpecialDefinitionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace marvek
