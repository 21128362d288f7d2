// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "engine/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/unit/library_calls.h"
#include "tests/unit/temporary_folder.h"

namespace {

class FileTest : public testing::Test {
  protected:
    TemporaryFolder folder_;
};

/// Returns a stream's bytes.
std::string BytesOf(std::FILE* file) {
    std::string bytes(100, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    return bytes;
}

TEST_F(FileTest, ARegularFileIsRead) {
    WriteFile("file", std::string("a\r\n\0b", 5));

    const File file = OpenRegularFile("file");

    ASSERT_NE(file, nullptr);
    EXPECT_EQ(BytesOf(file.get()), std::string("a\r\n\0b", 5));
}

TEST_F(FileTest, ARegularFileBehindALinkIsRead) {
    WriteFile("file", "abc");
    std::filesystem::create_symlink("file", "link");

    const File file = OpenRegularFile("link");

    ASSERT_NE(file, nullptr);
    EXPECT_EQ(BytesOf(file.get()), "abc");
}

TEST_F(FileTest, WhatIsMissingOrNoRegularFileIsNull) {
    std::filesystem::create_directory("folder");
    std::filesystem::create_symlink("nowhere", "dangling");

    for (const char* path : {"missing", "", "folder", "dangling", "/dev/zero", "/dev/null"}) {
        EXPECT_EQ(OpenRegularFile(path), nullptr) << path;
    }
}

TEST_F(FileTest, ANamedPipeIsNullAndNotWaitedFor) {
    ASSERT_EQ(mkfifo("pipe", S_IRUSR | S_IWUSR), 0);

    EXPECT_EXIT(
        {
            alarm(20);  // ends a process that waits
            std::exit(OpenRegularFile("pipe") == nullptr ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(FileTest, IsNotInheritedByOtherPrograms) {
    WriteFile("file", "abc");

    const File file = OpenRegularFile("file");

    ASSERT_NE(file, nullptr);
    EXPECT_NE(fcntl(fileno(file.get()), F_GETFD) & FD_CLOEXEC, 0);
}

/// Returns how many files this process has open.
std::ptrdiff_t OpenFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return std::distance(begin(files), end(files));
}

TEST_F(FileTest, LeavesNothingOpenWhateverThePathLeadsTo) {
    WriteFile("file", "abc");
    ASSERT_EQ(mkfifo("pipe", S_IRUSR | S_IWUSR), 0);
    const auto before = OpenFiles();

    for (const char* path : {"file", "missing", "pipe", ".", "/dev/null"}) {
        OpenRegularFile(path);
        EXPECT_EQ(OpenFiles(), before) << path;
    }
}

TEST_F(FileTest, ACallThatFailsIsNullAndLeavesNothingOpen) {
    WriteFile("file", "abc");
    const auto before = OpenFiles();

    for (const char* call : {"fstat", "fcntl", "fdopen"}) {
        const FailingCall failing(call, EMFILE);
        EXPECT_EQ(OpenRegularFile("file"), nullptr) << call;
        EXPECT_EQ(failing.Calls(), 1) << call;
        EXPECT_EQ(OpenFiles(), before) << call;
    }
}

}  // namespace
