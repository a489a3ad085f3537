#pragma once

#include "configuration/ConfigurationError.h"
#include "configuration/Section.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace marvek {

// One configuration: a tree of sections read from and written to the program's
// configuration language (keys, "=" values, ";" terminators, nested "{ }"
// sections, "//" and "/* */" comments). Text is Latin-1, one character per byte.
//
// Errors of the language are ConfigurationError (DuplicateKeyError for a key
// given twice in one section); files that cannot be read or written are
// FileError. A failed parse leaves the root as it was.
class clsConfiguration {
public:
    clsConfiguration();
    clsConfiguration(const clsConfiguration&) = delete;
    clsConfiguration& operator=(const clsConfiguration&) = delete;

    // The parser's line counter: 1 at the start of a parse, 0 before any.
    // After a failed parse it tells how far the parser got.
    std::int32_t CurrentScanLine() const noexcept { return currentLine_; }

    // Replaces the root with the tree parsed from text.
    void InputConfiguration(std::string_view text);
    // Reads the whole file as raw bytes and parses it; a ConfigurationError
    // from the parse also names the file.
    void LoadConfiguration(const std::filesystem::path& path);
    void NewConfiguration();
    // The whole tree as text. pretty indents by TABs and puts blanks around "="
    // and empty lines around sections.
    std::string OutputConfiguration(std::string_view lineEnd, bool pretty) const;
    // The value at a root key, or defaultValue as given when the key is absent.
    // A stored section comes back itself when byReference, otherwise as a deep copy.
    Value ReadSetting(const std::string& key, Value defaultValue, bool byReference) const;
    void RemoveSetting(const std::string& key);
    // The live root when byReference, otherwise a deep copy.
    SectionPtr Root(bool byReference) const;
    void SaveConfiguration(const std::filesystem::path& path, std::string_view lineEnd,
                           bool pretty) const;
    // Stores value at a root key. On an existing key a section is stored as it
    // is when byReference and as a deep copy otherwise; a new key always stores
    // the value as given.
    void WriteSetting(const std::string& key, Value value, bool byReference);

private:
    SectionPtr parseSection(const std::string& text, std::size_t& position, int depth);
    void skipComment(const std::string& text, std::size_t& position);
    static void writeSection(const Section& section, int depth, std::string_view lineEnd,
                             bool pretty, std::string& out);
    static SectionPtr cloneSection(const Section& section, int depth);
    static std::string escapeValue(std::string_view text);

    SectionPtr root_;
    std::int32_t currentLine_ = 0;
};

} // namespace marvek
