#include "configuration/ConfigurationError.h"

#include <utility>

namespace marvek {

ConfigurationError::ConfigurationError(std::int32_t number, std::string description)
    : number_(number), description_(std::move(description)) {
    updateMessage();
}

void ConfigurationError::setLine(std::int32_t line) {
    line_ = line;
    updateMessage();
}

void ConfigurationError::setFile(const std::filesystem::path& file) {
    file_ = file;
    updateMessage();
}

void ConfigurationError::setLineNamedInDescription() {
    lineNamedInDescription_ = true;
    updateMessage();
}

std::string ConfigurationError::located() const {
    if (lineNamedInDescription_ || (line_ <= 0 && file_.empty())) {
        return description_;
    }
    return "line " + std::to_string(line_) + ": " + description_;
}

std::string ConfigurationError::messageFor(const std::filesystem::path& file) const {
    if (file.empty()) {
        return located();
    }
    return file.string() + (lineNamedInDescription_ ? ": " : ", ") + located();
}

void ConfigurationError::updateMessage() {
    message_ = messageFor(file_);
}

DuplicateKeyError::DuplicateKeyError(const std::string& key)
    : ConfigurationError(duplicateKeyNumber,
                         "This key is already associated with an element of this collection (\"" +
                             key + "\")"),
      key_(key) {}

} // namespace marvek
