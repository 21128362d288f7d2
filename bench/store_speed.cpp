// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// How fast the store is: loading compared with reading the same bytes by plain calls from a warm cache,
// saving with writing and flushing them.
//
// Prints one line a measurement, the median of the ratios of pairs that take turns. Works in a new folder in
// the current directory, so that it measures the disk there. Exits with 1 where a ratio is above its limit.
//
// usage: store_speed [PAIRS]
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/event_mix.h"
#include "bench/stopwatch.h"
#include "bench/table.h"
#include "calendar/events.h"
#include "calendar/store.h"

namespace {

constexpr double kLoadLimit = 3;
constexpr double kSaveLimit = 1.5;
constexpr char kStore[] = "database.bin";

[[noreturn]] void Fail(const char* what) {
    std::perror(what);
    std::exit(2);
}

// ---- The plain calls ----

/// Reads the store's records one by one into one buffer.
void ReadPlainly() {
    char buffer[572];
    std::FILE* file = std::fopen(kStore, "rb");
    if (file == nullptr || std::fread(buffer, 4, 1, file) != 1) Fail(kStore);
    while (std::fread(buffer, sizeof buffer, 1, file) == 1) {
        asm volatile("" : : "r"(static_cast<const char*>(buffer)) : "memory");  // the bytes count as used
    }
    std::fclose(file);
}

/// Writes the bytes to a file and flushes it.
void WritePlainly(const std::string& bytes) {
    const int file = open("plain.bin", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) Fail("plain.bin");
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t n = write(file, bytes.data() + written, bytes.size() - written);
        if (n < 0) Fail("plain.bin");
        written += static_cast<std::size_t>(n);
    }
    if (fsync(file) != 0 || close(file) != 0) Fail("plain.bin");
}

// ---- The pairs ----

/// Runs two steps by turns and prints their line. `prepare` runs before each pair, outside the time.
template <typename Prepare, typename Measured, typename Compared>
bool Compare(const std::string& what, int pairs, double limit, const Prepare& prepare,
             const Measured& measured, const Compared& compared) {
    std::vector<double> ours, plain, ratios;
    for (int i = 0; i < pairs; ++i) {
        prepare();
        ours.push_back(bench::Milliseconds(measured));
        plain.push_back(bench::Milliseconds(compared));
        ratios.push_back(ours.back() / plain.back());
    }
    return bench::PrintRow(what.c_str(), bench::Median(ours), bench::Median(plain), bench::Median(ratios),
                           limit);
}

/// Measures a store of so many events. Returns whether all is within the limits.
bool CompareStore(int count, const std::string& name, int pairs) {
    const std::string bytes = bench::MixedStore(count, 3);
    std::ofstream(kStore, std::ios::binary) << bytes;
    ReadPlainly();
    bool good = Compare(
        "loading " + name + " events", pairs, kLoadLimit,
        [] {
            events.clear();
            malloc_trim(0);
        },
        LoadEvents, ReadPlainly);
    if (events.size() != static_cast<std::size_t>(count)) Fail("the events were not loaded");
    good &= Compare(
        "saving " + name + " events", pairs, kSaveLimit, [] {}, SaveEvents, [&] { WritePlainly(bytes); });
    if (std::filesystem::file_size(kStore) != bytes.size()) Fail("the events were not saved");
    return good;
}

/// Makes a folder in the current directory the current one.
std::string EnterNewFolder() {
    std::string folder = std::filesystem::current_path().string() + "/store_speed-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr || chdir(folder.c_str()) != 0) Fail(folder.c_str());
    return folder;
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = std::max(argc > 1 ? std::atoi(argv[1]) : 31, 1);
    const std::string folder = EnterNewFolder();
    bool good = CompareStore(10'000, "10,000", pairs);
    good &= CompareStore(100'000, "100,000", pairs);
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    return good ? 0 : 1;
}
