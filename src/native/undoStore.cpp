#include "native/undoStore.h"

#include "native/marvek.h"

#include <algorithm>
#include <limits>
#include <new>

namespace marvek {

void UndoStore::setMaximum(std::size_t maximum) {
    maximum_ = maximum;
    for (History* history : {&undo_, &redo_}) {
        while (history->size() > maximum_) {
            history->pop_front();
        }
    }
}

void UndoStore::clear() noexcept {
    undo_.clear();
    redo_.clear();
}

void UndoStore::add(const void* cells, std::size_t size) {
    if (cells == nullptr || size == 0) {
        return;
    }
    const auto* bytes = static_cast<const std::uint8_t*>(cells);
    Snapshot snapshot;
    if (maximum_ > 0 && undo_.size() >= maximum_) {
        // The oldest snapshot gives way anyway: its memory takes the new one,
        // so a full history allocates nothing per step.
        snapshot = std::move(undo_.front());
        undo_.pop_front();
    }
    snapshot.assign(bytes, bytes + size);
    redo_.clear();
    push(undo_, std::move(snapshot));
}

bool UndoStore::undo(void* cells) {
    return restore(undo_, redo_, cells);
}

bool UndoStore::redo(void* cells) {
    return restore(redo_, undo_, cells);
}

bool UndoStore::undo(void* cells, std::size_t size) {
    return fits(undo_, size) && restore(undo_, redo_, cells);
}

bool UndoStore::redo(void* cells, std::size_t size) {
    return fits(redo_, size) && restore(redo_, undo_, cells);
}

bool UndoStore::fits(const History& from, std::size_t size) noexcept {
    return !from.empty() && from.back().size() == size;
}

bool UndoStore::restore(History& from, History& to, void* cells) {
    if (cells == nullptr || from.empty()) {
        return false;
    }
    Snapshot& newest = from.back();
    // Swapping the bytes turns the snapshot into a record of what cells held.
    auto* bytes = static_cast<std::uint8_t*>(cells);
    std::swap_ranges(newest.begin(), newest.end(), bytes);
    Snapshot previous = std::move(newest);
    from.pop_back();
    push(to, std::move(previous));
    return true;
}

void UndoStore::push(History& history, Snapshot snapshot) {
    if (maximum_ == 0) {
        return;
    }
    if (history.size() >= maximum_) {
        history.pop_front();
    }
    history.push_back(std::move(snapshot));
}

namespace {

UndoStore& store() noexcept {
    static UndoStore instance;
    return instance;
}

std::int32_t countAsInt(std::size_t count) noexcept {
    return static_cast<std::int32_t>(
        std::min<std::size_t>(count, std::numeric_limits<std::int32_t>::max()));
}

} // namespace

} // namespace marvek

using namespace marvek;

extern "C" {

void undoInit(void) {
    store().clear();
}

void undoSetMax(int32_t maximum) {
    store().setMaximum(static_cast<std::size_t>(std::max(maximum, 0)));
}

void undoAdd(const void* cells, size_t size) {
    try {
        store().add(cells, size);
    } catch (const std::bad_alloc&) {
        // Out of memory: the edit goes ahead without an undo step.
    }
}

void undoDoUndo(void* cells) {
    try {
        store().undo(cells);
    } catch (const std::bad_alloc&) {
        // The cells are restored; only the redo step is lost.
    }
}

void undoDoRedo(void* cells) {
    try {
        store().redo(cells);
    } catch (const std::bad_alloc&) {
        // The cells are restored; only the undo step is lost.
    }
}

int32_t undoCount(void) {
    return countAsInt(store().undoCount());
}

int32_t redoCount(void) {
    return countAsInt(store().redoCount());
}

void undoDestroy(void) {
    store().clear();
}

} // extern "C"
