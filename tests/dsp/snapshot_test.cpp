#include "SnapshotExchange.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

// Two writers count, each in its own word, and every change also rewrites
// the rest of the value from the two counts, while a reader copies it. A copy
// that raced a refill of its slot would not fit its counts; a value that was
// never published, or an older one, would set a count back. Long values make
// such races likely within the run.
TEST(SnapshotExchange, ReadersSeeOnlyWholePublishedValuesInOrder) {
    using Value = std::array<std::uint32_t, 512>;
    auto sealed = [](Value& v) {
        for (std::size_t i = 2; i < v.size(); ++i) v[i] = v[0] * 31u + v[1] + i;
    };
    Value initial{};
    sealed(initial);
    SnapshotExchange<Value> exchange(initial);
    std::atomic<bool> stop{false};
    auto writer = [&](int counter) {
        while (!stop) exchange.update([&](Value& v) { ++v[counter], sealed(v); });
    };
    std::thread a(writer, 0), b(writer, 1);
    int faults = 0;
    Value last = initial;
    for (int read = 0; read < 100000; ++read) {
        Value v = exchange.load();
        const Value seen = v;
        sealed(v);
        faults += v != seen || seen[0] < last[0] || seen[1] < last[1];
        last = seen;
    }
    stop = true;
    a.join();
    b.join();
    EXPECT_EQ(faults, 0);
}
