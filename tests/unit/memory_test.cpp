// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/memory.h"

#include <malloc.h>

#include <cstddef>
#include <cstdlib>

#include "calendar/events.h"
#include "calendar/store.h"
#include "tests/unit/temporary_folder.h"

namespace {

/// Returns how many buffers are the system's own while a large one is in use, beyond those before.
std::size_t OwnMappingsOfALargeBuffer() {
    const std::size_t before = mallinfo2().hblks;
    void* buffer = std::malloc(3 << 20);
    const std::size_t own = mallinfo2().hblks - before;
    std::free(buffer);
    return own;
}

/// The C library's allocator; the sanitizers bring one of their own.
class FreedMemory : public testing::Test {
  protected:
    void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizer's allocator";
#endif
    }
    void TearDown() override {
        ReturnFreedMemory();
    }
};

TEST_F(FreedMemory, OfALargeBufferGoesBackAlsoAfterManyLargeBuffers) {
    ReturnFreedMemory();

    for (int buffers = 0; buffers < 5; ++buffers) EXPECT_EQ(OwnMappingsOfALargeBuffer(), 1U);
}

TEST_F(FreedMemory, StaysOnDemand) {
    KeepFreedMemory();

    EXPECT_EQ(OwnMappingsOfALargeBuffer(), 0U);
}

TEST_F(FreedMemory, GoesBackAgainAfterManyEventsWereLoaded) {
    const TemporaryFolder folder;
    events.assign(10'000, Event());
    SaveEvents();
    ReturnFreedMemory();

    LoadEvents();

    EXPECT_EQ(events.size(), 10'000U);
    EXPECT_EQ(OwnMappingsOfALargeBuffer(), 1U);
    events.clear();
}

}  // namespace
