#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace marvek {

// Owns objects behind 32-bit handles. A handle carries its slot and the slot's
// generation, so a handle that outlived its object never reaches the object
// that later reuses the slot. Handles are always positive; 0 is never issued.
template <typename T> class HandleTable {
public:
    std::int32_t add(std::unique_ptr<T> object) {
        std::uint32_t slot;
        if (freeSlots_.empty()) {
            if (entries_.size() >= maxSlots) {
                return 0;
            }
            slot = static_cast<std::uint32_t>(entries_.size());
            entries_.emplace_back();
        } else {
            slot = freeSlots_.back();
            freeSlots_.pop_back();
        }
        entries_[slot].object = std::move(object);
        return makeHandle(slot, entries_[slot].generation);
    }

    T* find(std::int32_t handle) const noexcept {
        const std::size_t index = indexOf(handle);
        return index == notFound ? nullptr : entries_[index].object.get();
    }

    // Returns the object so that the caller decides when it dies.
    std::unique_ptr<T> remove(std::int32_t handle) noexcept {
        const std::size_t index = indexOf(handle);
        if (index == notFound) {
            return nullptr;
        }
        Entry& entry = entries_[index];
        entry.generation = (entry.generation + 1) & generationMask;
        freeSlots_.push_back(static_cast<std::uint32_t>(index));
        return std::move(entry.object);
    }

private:
    static constexpr int slotBits = 20;
    static constexpr std::uint32_t slotMask = (1u << slotBits) - 1;
    static constexpr std::uint32_t generationMask = 0x7FF; // keeps the sign bit clear
    static constexpr std::size_t maxSlots = slotMask;      // slot + 1 must fit the slot bits

    struct Entry {
        std::unique_ptr<T> object;
        std::uint32_t generation = 0;
    };

    static std::int32_t makeHandle(std::uint32_t slot, std::uint32_t generation) noexcept {
        return static_cast<std::int32_t>((generation << slotBits) | (slot + 1));
    }

    static constexpr std::size_t notFound = static_cast<std::size_t>(-1);

    std::size_t indexOf(std::int32_t handle) const noexcept {
        if (handle <= 0) {
            return notFound;
        }
        const auto bits = static_cast<std::uint32_t>(handle);
        const std::uint32_t slotPlusOne = bits & slotMask;
        if (slotPlusOne == 0 || slotPlusOne > entries_.size()) {
            return notFound;
        }
        const Entry& entry = entries_[slotPlusOne - 1];
        if (entry.object == nullptr || entry.generation != (bits >> slotBits)) {
            return notFound;
        }
        return slotPlusOne - 1;
    }

    std::vector<Entry> entries_;
    std::vector<std::uint32_t> freeSlots_;
};

} // namespace marvek
