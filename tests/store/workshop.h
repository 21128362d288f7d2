// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Where the store is put to the test: folders of their own, the worker (worker.cpp) and the bytes that it
// should leave.
//
// A version is a list whose length tells it: version N has N events, each with texts that say N.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace store {

constexpr std::size_t kRecordBytes = 572;

/// Returns the bytes of an event of a version: a record as the file has it, every field set. Reminders have
/// waited 10800 seconds, as they have once loaded.
inline std::string RecordBytes(int version, int index) {
    std::string record(kRecordBytes, '\0');
    const auto put_text = [&record](std::size_t offset, const std::string& text) {
        record.replace(offset, text.size(), text);
    };
    const auto put_number = [&record](std::size_t offset, std::uint32_t number) {
        for (int byte = 0; byte < 4; ++byte) record[offset++] = static_cast<char>(number >> (8 * byte));
    };
    constexpr std::uint32_t kFloat10800 = 0x4628C000;
    const auto n = static_cast<std::uint32_t>(index);
    put_text(0, "evento " + std::to_string(index) + " di " + std::to_string(version));
    put_text(20, std::string(511, static_cast<char>('a' + (version + index) % 26)));
    put_number(532, n % 31 + 1);
    put_number(536, n % 12 + 1);
    put_number(540, 2000 + n);
    put_number(544, n % 24);
    put_number(548, n % 60);
    put_number(552, n % 7);
    put_number(556, n % 3);
    put_number(560, n % 4);
    put_number(564, kFloat10800);
    record[568] = static_cast<char>(index & 1);
    record[569] = static_cast<char>(index >> 1 & 1);
    record[570] = static_cast<char>(index >> 2 & 1);
    return record;
}

/// Returns the whole file of a version.
std::string FileBytes(int version);

/// Where a folder is to lie.
enum class Place {
    kDisk,    ///< in the temporary folder
    kMemory,  ///< in a file system in memory, if there is one: quick, because a flush has nothing to wait for
};

/// A folder of its own; it goes with the object.
class Folder {
  public:
    explicit Folder(Place place = Place::kDisk);
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    /// Returns the path of the folder, or of a file in it.
    const std::string& Path() const { return path_; }
    std::string Path(const std::string& file) const { return path_ + "/" + file; }

    /// Puts a file with these bytes there.
    void Write(const std::string& file, const std::string& bytes) const;

    /// Returns a file's bytes; nothing where there is no file.
    std::optional<std::string> Read(const std::string& file) const;

    /// Returns the names in the folder, in order.
    std::vector<std::string> Names() const;

    /// Removes all that is in the folder.
    void Empty() const;

  private:
    std::string path_;
};

/// How a worker ended and what it said.
struct End {
    int status = 0;  ///< as waitpid has it
    std::string out, error;

    /// Returns whether it came to the end of its words.
    bool Well() const { return status == 0; }

    /// Returns the status with which it exited; -1 where it did not.
    int ExitStatus() const;

    /// Returns whether a kill ended it.
    bool Killed() const;
};

/// A running worker.
class Worker {
  public:
    struct Start {
        std::map<std::string, std::string> environment = {};  ///< added to the test's own
        std::function<void()> before = [] {};  ///< runs in the child, in its folder, ahead of the worker
    };

    /// Starts a worker in a folder, with these words.
    Worker(const Folder& folder, const std::string& words, const Start& start);
    Worker(const Folder& folder, const std::string& words) : Worker(folder, words, Start()) {}
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Reads a line of the worker's standard output; empty at its end.
    std::string Line();

    /// Lets a waiting worker go on.
    void GoOn() const;

    /// Kills the worker.
    void Kill() const;

    /// Waits for the worker's end.
    End WaitForEnd();

  private:
    pid_t id_ = -1;
    int in_ = -1, out_ = -1, error_ = -1;  ///< the test's ends of the pipes
};

/// Runs a worker to its end.
End RunWorker(const Folder& folder, const std::string& words, const Worker::Start& start = {});

/// Returns the lines of a text in which there is `part`.
std::string LinesWith(const std::string& part, const std::string& text);

/// Words of the lines that a worker says: that the file is damaged, that it is kept, that it cannot be read,
/// that a save failed.
constexpr char kDamagedLine[] = "e' danneggiato";
constexpr char kKeptLine[] = "e' conservato";
constexpr char kUnreadLine[] = "non riesco a leggere gli eventi";
constexpr char kFailedLine[] = "non riesco a salvare gli eventi";

/// Returns whether a text is the one line, in Italian, that a failed save prints. `reason` is what it must
/// end with, if given.
bool IsOneComplaint(const std::string& text, const std::string& reason = "");

}  // namespace store
