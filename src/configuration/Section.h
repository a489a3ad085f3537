#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

namespace marvek {

class Section;
// Sections are shared by reference: a caller that reads a section by reference
// and changes it changes the store.
using SectionPtr = std::shared_ptr<Section>;

// A configuration value. The parser makes only the first four kinds; callers may
// also store the last four, which the writer writes as numbers (a Boolean as -1
// or 0) and which therefore read back as 32-bit integers or floats.
using Value = std::variant<std::int32_t, float, std::string, SectionPtr, bool, std::int16_t, double,
                           std::uint8_t>;

// A keyed dictionary of values: keys are compared exactly (case-sensitive) and
// kept in insertion order, which is the order the writer emits them in.
class Section {
public:
    using Entry = std::pair<std::string, Value>;
    using const_iterator = std::vector<Entry>::const_iterator;

    std::size_t count() const noexcept { return entries_.size(); }
    bool empty() const noexcept { return entries_.empty(); }
    bool exists(const std::string& key) const { return index_.contains(key); }

    // The value stored at key, or nullptr.
    const Value* find(const std::string& key) const;
    Value* find(const std::string& key);

    // Adds a new key at the end; throws DuplicateKeyError if key is present.
    void add(std::string key, Value value);
    // Replaces the value of key in place, or adds key at the end.
    void set(std::string key, Value value);
    // Removes key; false if it was absent.
    bool remove(const std::string& key);
    void clear() noexcept;

    const_iterator begin() const noexcept { return entries_.begin(); }
    const_iterator end() const noexcept { return entries_.end(); }

private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t> index_;
};

} // namespace marvek
