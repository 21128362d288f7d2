// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/memory.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "calendar/events.h"
#include "calendar/store.h"
#include "tests/unit/temporary_folder.h"

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

/// Returns how many buffers are the system's own while a large one is in use, beyond those before. It is
/// larger than whatever hole other tests have left in the heap, and never touched.
std::size_t OwnMappingsOfALargeBuffer() {
    const std::size_t before = mallinfo2().hblks;
    void* buffer = std::malloc(256 * kMebibyte);
    const std::size_t own = mallinfo2().hblks - before;
    std::free(buffer);
    return own;
}

/// Returns whether the system was asked for large pages at an address: the flag "hg" of its mapping.
bool AsksForLargePages(const void* address) {
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::ifstream maps("/proc/self/smaps");
    bool inside = false;
    for (std::string line; std::getline(maps, line);) {
        std::istringstream words(line);
        std::uintptr_t first = 0;
        std::uintptr_t end = 0;
        char dash = 0;
        if (words >> std::hex >> first >> dash >> end && dash == '-')
            inside = first <= wanted && wanted < end;
        if (inside && line.starts_with("VmFlags:")) return line.find(" hg") != std::string::npos;
    }
    return false;
}

/// Allocates many nodes of 600 bytes; they are freed with what is returned.
std::vector<std::unique_ptr<char[]>> Nodes(std::size_t count) {
    std::vector<std::unique_ptr<char[]>> nodes(count);
    for (auto& node : nodes) node = std::make_unique<char[]>(600);
    return nodes;
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
        malloc_trim(0);
    }
};

TEST_F(FreedMemory, OfALargeBufferGoesBackAlsoAfterManyLargeBuffers) {
    ReturnFreedMemory();

    for (int buffers = 0; buffers < 5; ++buffers) EXPECT_EQ(OwnMappingsOfALargeBuffer(), 1U);
}

TEST_F(FreedMemory, OfABufferOfAQuarterOfAMebibyteGoesBackToo) {
    std::vector<std::unique_ptr<char[]>> fillers;
    ReturnFreedMemory();

    const std::size_t before = mallinfo2().hblks;
    for (int buffers = 0; buffers < 200; ++buffers)
        fillers.push_back(std::make_unique<char[]>(kMebibyte / 4));

    EXPECT_GE(mallinfo2().hblks, before + 100);
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

TEST_F(FreedMemory, PreparedLargePagesLieUnderWhatIsAllocatedNext) {
    if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) GTEST_SKIP() << "no large pages";

    PrepareLargePages(64 * kMebibyte);
    const auto nodes = Nodes(100'000);  // 60 MB; the first may lie in what earlier tests have freed

    EXPECT_TRUE(AsksForLargePages(nodes.back().get()));
}

TEST_F(FreedMemory, PreparedLargePagesAreNoMemoryInUseAndNoneIsAddedForWhatIsAllocatedNext) {
    const std::size_t in_use = mallinfo2().uordblks;

    PrepareLargePages(64 * kMebibyte);

    EXPECT_EQ(mallinfo2().uordblks, in_use);
    const std::size_t heap = mallinfo2().arena;
    const auto nodes = Nodes(50'000);
    EXPECT_EQ(mallinfo2().arena, heap);
}

TEST_F(FreedMemory, StaysAfterLargePagesWerePreparedUntilItIsReturned) {
    PrepareLargePages(4 * kMebibyte);
    EXPECT_EQ(OwnMappingsOfALargeBuffer(), 0U);

    ReturnFreedMemory();
    malloc_trim(0);  // or the buffer would lie in what is kept

    EXPECT_EQ(OwnMappingsOfALargeBuffer(), 1U);
}

TEST_F(FreedMemory, GoesBackAsBeforeWhereLargePagesAreNotWorthIt) {
    ReturnFreedMemory();

    for (const std::size_t bytes : {std::size_t{0}, 4 * kMebibyte - 1}) {
        PrepareLargePages(bytes);

        EXPECT_EQ(OwnMappingsOfALargeBuffer(), 1U) << bytes;
    }
}

TEST_F(FreedMemory, GoesOnWhereSoMuchCannotBePrepared) {
    PrepareLargePages(SIZE_MAX / 2);

    EXPECT_EQ(Nodes(10).size(), 10U);
}

}  // namespace
