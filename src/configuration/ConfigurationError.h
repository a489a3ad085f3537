#pragma once

#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>

namespace marvek {

// An error of the configuration store: a syntax error of the configuration
// language, a number that does not convert, a duplicate key. It carries the
// platform's error number, the description, the parser's line counter when it
// was raised (0 outside a parse) and, when it came from LoadConfiguration, the
// file, so that what() reads "file, line N: description", or "file:
// description" when the description names its line itself.
class ConfigurationError : public std::exception {
public:
    // The numbers of the original runtime, so that callers can tell errors apart.
    static constexpr std::int32_t syntaxErrorNumber = -2147221504; // 0x80040000
    static constexpr std::int32_t invalidArgumentNumber = 5;
    static constexpr std::int32_t overflowNumber = 6;
    static constexpr std::int32_t typeMismatchNumber = 13;
    static constexpr std::int32_t duplicateKeyNumber = 457;

    ConfigurationError(std::int32_t number, std::string description);

    std::int32_t number() const noexcept { return number_; }
    const std::string& description() const noexcept { return description_; }
    std::int32_t line() const noexcept { return line_; }
    // Empty unless the error came from loading a file.
    const std::filesystem::path& file() const noexcept { return file_; }

    void setLine(std::int32_t line);
    void setFile(const std::filesystem::path& file);
    // The description names the line at fault, which may differ from the
    // counter's, so the message names no other.
    void setLineNamedInDescription();
    // The message without the file: "line N: description" or the description.
    std::string located() const;
    // what() as it reads for the given file, for callers that know the file
    // when the error does not.
    std::string messageFor(const std::filesystem::path& file) const;

    const char* what() const noexcept override { return message_.c_str(); }

private:
    void updateMessage();

    std::int32_t number_;
    std::string description_;
    std::int32_t line_ = 0;
    std::filesystem::path file_;
    bool lineNamedInDescription_ = false;
    std::string message_;
};

// Adding a key that a section already holds.
class DuplicateKeyError : public ConfigurationError {
public:
    explicit DuplicateKeyError(const std::string& key);

    const std::string& key() const noexcept { return key_; }

private:
    std::string key_;
};

} // namespace marvek
