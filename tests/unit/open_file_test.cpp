// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/open_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>

#include "tests/unit/library_calls.h"
#include "tests/unit/limit_process.h"
#include "tests/unit/temporary_folder.h"

namespace {

/// Tests in a folder of their own, which is empty and the current one.
class OpenFileTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
};

/// Returns whether a descriptor is open.
bool IsOpen(int descriptor) {
    return fcntl(descriptor, F_GETFD) >= 0;
}

TEST_F(OpenFileTest, NoFileIsOpenAtFirst) {
    OpenFile file;

    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(file.Close(), 0);
}

TEST_F(OpenFileTest, ClosesTheOneBeforeAndTheLastByItself) {
    WriteFile("file", "abc");
    int last = -1;
    {
        OpenFile file;
        ASSERT_EQ(file.Open("file", O_RDONLY), 0);
        const int first = file.Descriptor();
        ASSERT_EQ(file.Open("file", O_RDONLY), 0);
        last = file.Descriptor();
        EXPECT_EQ(last, first) << "which is free again";
        EXPECT_TRUE(file.IsOpen());
        EXPECT_NE(file.Open("missing", O_RDONLY), 0);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(IsOpen(last));
        ASSERT_EQ(file.Open("file", O_RDONLY), 0);
        last = file.Descriptor();
    }
    EXPECT_FALSE(IsOpen(last));
}

TEST_F(OpenFileTest, ADescriptorOfZeroIsAFileLikeAnyOther) {
    WriteFile("file", "abc");

    EXPECT_EXIT(
        {
            close(STDIN_FILENO);
            OpenFile file;
            if (file.Open("file", O_RDONLY) != 0 || file.Descriptor() != 0 || !file.IsOpen()) std::exit(1);
            std::exit(file.Close() == 0 && !IsOpen(0) ? 0 : 2);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(OpenFileTest, ReadsUntilTheEndOrTheErrorAndSaysHowMuchCame) {
    WriteFile("file", "abcdef");
    OpenFile file;
    ASSERT_EQ(file.Open("file", O_RDONLY), 0);
    std::string bytes(10, '-');

    ReadResult result = file.Read(bytes.data(), 4);
    EXPECT_EQ(result.bytes, 4);
    EXPECT_EQ(result.error, 0);
    EXPECT_EQ(bytes, "abcd------");
    result = file.Read(bytes.data(), 10);
    EXPECT_EQ(result.bytes, 2) << "the file ends";
    EXPECT_EQ(result.error, 0);
    EXPECT_EQ(bytes, "efcd------");

    const FailingCall failing("read", EIO);
    result = file.Read(bytes.data(), 10);
    EXPECT_EQ(result.bytes, 0);
    EXPECT_EQ(result.error, EIO);
}

TEST_F(OpenFileTest, ACallThatASignalInterruptsIsRepeated) {
    WriteFile("file", "abc");
    OpenFile file;
    ASSERT_EQ(file.Open("file", O_RDONLY), 0);
    const FailingCall reading("read", EINTR, 1, 2);
    const FailingCall flushing("fsync", EINTR, 1, 1);
    char bytes[3] = {};

    EXPECT_EQ(file.Read(bytes, 3).bytes, 3);
    EXPECT_EQ(reading.Calls(), 3);
    EXPECT_EQ(file.Flush(), 0);
    EXPECT_EQ(flushing.Calls(), 2);
}

TEST_F(OpenFileTest, WritesAllItCanAndTellsTheErrorThatStoppedIt) {
    OpenFile file;
    ASSERT_EQ(file.Open("file", O_WRONLY | O_CREAT, 0600), 0);
    EXPECT_EQ(file.Write("", 0), 0);
    EXPECT_EQ(file.Write("abc", 3), 0);
    {
        const FileSizeLimit limit(5);
        EXPECT_EQ(file.Write("defg", 4), EFBIG);
    }

    EXPECT_EQ(ReadFile("file"), "abcde");
}

TEST_F(OpenFileTest, WhatIsNotOpenCanBeNeitherReadNorWrittenNorLookedAt) {
    const OpenFile file;
    struct stat status {};
    char byte = 0;

    EXPECT_EQ(file.Status(status), EBADF);
    EXPECT_EQ(file.Read(&byte, 1).error, EBADF);
    EXPECT_EQ(file.Write(&byte, 1), EBADF);
    EXPECT_EQ(file.Flush(), EBADF);
}

TEST_F(OpenFileTest, CloseTellsAnErrorButNoInterruptionAndNeverRepeats) {
    WriteFile("file", "abc");
    for (const auto& [error, told] : {std::pair{EIO, EIO}, std::pair{EINTR, 0}}) {
        OpenFile file;
        ASSERT_EQ(file.Open("file", O_RDONLY), 0);
        const int descriptor = file.Descriptor();
        const FailingCall closing("close", error);

        EXPECT_EQ(file.Close(), told);

        EXPECT_EQ(closing.Calls(), 1);
        EXPECT_FALSE(file.IsOpen());
        EXPECT_FALSE(IsOpen(descriptor)) << "closed all the same";
    }
}

}  // namespace
