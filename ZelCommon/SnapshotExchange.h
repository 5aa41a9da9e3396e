#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <type_traits>

// A value that several threads change and read at once, without locks and
// without allocation: every change is made on a private copy of the newest
// value and published whole, so a reader always sees one complete value that
// some order of the changes produced.
//
// The value lives in a small pool of slots. A writer copies the newest slot,
// applies its change, fills a free slot and swings the head to it; a writer
// that loses that race to another drops its work and starts again from the
// newer value, so no change is lost and none waits for another thread. A
// reader copies the head's slot and checks that it is still the head and
// that nobody refilled it meanwhile (its version is unchanged), else copies
// again.
//
// The words are atomics, copied one by one, so that a copy racing a refill is
// a defined read of stale words that the version check then throws away.
// They are 64 bits wide: every change and every block copies a whole value,
// in half the loads and stores that 32-bit words would take.
template <typename T, int kSlots = 8> class SnapshotExchange {
    using Word = std::uint64_t;
    static_assert(std::is_trivially_copyable<T>::value, "snapshots are copied word by word");
    static_assert(sizeof(T) % sizeof(Word) == 0, "snapshots are whole 64-bit words (pad them)");

public:
    explicit SnapshotExchange(const T& initial) {
        store(slots[0], initial);
        slots[0].busy.store(true, std::memory_order_relaxed);
        head.store(0, std::memory_order_release);
    }
    SnapshotExchange(const SnapshotExchange&) = delete;
    SnapshotExchange& operator=(const SnapshotExchange&) = delete;

    T load() const {
        T value;
        for (;;) {
            const std::uint64_t h = head.load(std::memory_order_acquire);
            // Still the head afterwards: the copy is the published value, not
            // a refill by a writer that lost its race.
            if (copyOut(slots[index(h)], value) && head.load(std::memory_order_acquire) == h)
                return value;
        }
    }

    // change(T&) is applied to a copy of the newest value, perhaps more than
    // once if another writer publishes first: it must depend only on the
    // value it is given.
    template <typename Change> T update(Change&& change) {
        for (;;) {
            std::uint64_t h = head.load(std::memory_order_acquire);
            T value;
            if (!copyOut(slots[index(h)], value)) continue;
            change(value);
            Slot& fresh = claimFreeSlot(h);
            store(fresh, value);
            const std::uint64_t next = ((h >> 8) + 1) << 8 | slotNumber(fresh);
            if (head.compare_exchange_strong(h, next, std::memory_order_acq_rel)) {
                slots[index(h)].busy.store(false, std::memory_order_release);
                return value;
            }
            fresh.busy.store(false, std::memory_order_release);
        }
    }

private:
    static constexpr int kWords = sizeof(T) / sizeof(Word);

    struct Slot {
        std::atomic<std::uint32_t> version{0}; // odd while being filled
        std::atomic<bool> busy{false};         // the head's, or being filled
        std::array<std::atomic<Word>, kWords> words{};
    };

    static int index(std::uint64_t h) { return static_cast<int>(h & 0xff); }
    std::uint64_t slotNumber(const Slot& slot) const {
        return static_cast<std::uint64_t>(&slot - slots.data());
    }

    // At most one slot per writer plus the head are busy, so with more slots
    // than threads that write at once the search ends. It starts after the
    // head, where a lone writer finds a free slot at once, and looks before
    // it locks, as a failed exchange costs as much as one that succeeds.
    Slot& claimFreeSlot(std::uint64_t h) {
        for (int i = (index(h) + 1) % kSlots;; i = (i + 1) % kSlots) {
            if (slots[i].busy.load(std::memory_order_relaxed)) continue;
            bool expected = false;
            if (slots[i].busy.compare_exchange_strong(expected, true, std::memory_order_acquire))
                return slots[i];
        }
    }

    // Word by word straight between the value and the slot: a staging array
    // copied whole would read wide what was just written narrow, which the
    // processor cannot forward from its store buffer and stalls on.
    static void store(Slot& slot, const T& value) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
        const std::uint32_t v = slot.version.load(std::memory_order_relaxed);
        slot.version.store(v + 1, std::memory_order_relaxed);
        // Release: a reader that sees any new word also sees the odd version.
        for (int i = 0; i < kWords; ++i) {
            Word word;
            std::memcpy(&word, bytes + i * sizeof word, sizeof word);
            slot.words[i].store(word, std::memory_order_release);
        }
        slot.version.store(v + 2, std::memory_order_release);
    }

    // On false, value holds stale words and must be copied again.
    static bool copyOut(const Slot& slot, T& value) {
        const std::uint32_t before = slot.version.load(std::memory_order_acquire);
        if (before & 1u) return false;
        auto* bytes = reinterpret_cast<unsigned char*>(&value);
        for (int i = 0; i < kWords; ++i) {
            const Word word = slot.words[i].load(std::memory_order_acquire);
            std::memcpy(bytes + i * sizeof word, &word, sizeof word);
        }
        return slot.version.load(std::memory_order_relaxed) == before;
    }

    std::array<Slot, kSlots> slots;
    std::atomic<std::uint64_t> head{0};
};
