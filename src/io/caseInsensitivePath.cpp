#include "io/caseInsensitivePath.h"

#include "io/textHelpers.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

bool equalIgnoringCase(const std::string& a, const std::string& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

std::vector<std::string> splitParts(const std::string& relative) {
    std::vector<std::string> parts;
    std::string part;
    for (const char c : relative) {
        if (c == '/' || c == '\\') {
            if (!part.empty()) {
                parts.push_back(std::move(part));
            }
            part.clear();
        } else {
            part += c;
        }
    }
    if (!part.empty()) {
        parts.push_back(std::move(part));
    }
    return parts;
}

// The entry of folder named like part; the smallest such name when several
// differ only in case, so that the choice does not depend on listing order.
std::optional<fs::path> findEntry(const fs::path& folder, const std::string& part) {
    std::error_code error;
    if (fs::exists(folder / part, error)) {
        return folder / part;
    }
    std::optional<std::string> best;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        const std::string name = it->path().filename().string();
        if (equalIgnoringCase(name, part) && (!best || name < *best)) {
            best = name;
        }
    }
    if (!best) {
        return std::nullopt;
    }
    return folder / *best;
}

} // namespace

std::optional<fs::path> findIgnoringCase(const fs::path& folder, const fs::path& relative) {
    const std::vector<std::string> parts = splitParts(relative.string());
    if (parts.empty()) {
        return std::nullopt;
    }
    fs::path found = folder;
    for (const std::string& part : parts) {
        const auto entry = findEntry(found, part);
        if (!entry) {
            return std::nullopt;
        }
        found = *entry;
    }
    return found;
}

} // namespace marvek
