#include "configuration/Section.h"

#include "configuration/ConfigurationError.h"

namespace marvek {

const Value* Section::find(const std::string& key) const {
    const auto found = index_.find(key);
    return found == index_.end() ? nullptr : &entries_[found->second].second;
}

Value* Section::find(const std::string& key) {
    const auto found = index_.find(key);
    return found == index_.end() ? nullptr : &entries_[found->second].second;
}

void Section::add(std::string key, Value value) {
    if (index_.contains(key)) {
        throw DuplicateKeyError(key);
    }
    index_.emplace(key, entries_.size());
    entries_.emplace_back(std::move(key), std::move(value));
}

void Section::set(std::string key, Value value) {
    if (Value* stored = find(key)) {
        *stored = std::move(value);
    } else {
        add(std::move(key), std::move(value));
    }
}

bool Section::remove(const std::string& key) {
    const auto found = index_.find(key);
    if (found == index_.end()) {
        return false;
    }
    const std::size_t position = found->second;
    index_.erase(found);
    entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(position));
    for (auto& [name, slot] : index_) {
        if (slot > position) {
            --slot;
        }
    }
    return true;
}

void Section::clear() noexcept {
    entries_.clear();
    index_.clear();
}

} // namespace marvek
