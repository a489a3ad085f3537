#pragma once

// One fuzz input as a command line: an argument a line. A NUL ends an
// argument too, since no real argument holds one.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace marvek::fuzz {

inline std::vector<std::string> argumentsOf(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> arguments;
    std::string current;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n' || data[i] == '\0') {
            arguments.push_back(current);
            current.clear();
        } else {
            current += static_cast<char>(data[i]);
        }
    }
    if (!current.empty()) {
        arguments.push_back(current);
    }
    return arguments;
}

} // namespace marvek::fuzz
