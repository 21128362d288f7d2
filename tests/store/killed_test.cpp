// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A worker that saves and saves, killed at any moment: the file is always one complete version.
#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <thread>

#include "tests/store/workshop.h"

namespace store {
namespace {

constexpr int kKills = 600;

/// A kill comes at most so long after the first save has begun: some saves later.
constexpr int kLongestLifeMicroseconds = 5000;

/// What the kills left behind, counted.
struct Findings {
    int short_versions = 0, long_versions = 0;  ///< the file is version 3, version 40
    int others = 0;                             ///< the file is anything else
    int leftovers = 0;                          ///< a new file had been begun: the kill hit a save
    int deaths = 0;                             ///< the worker was indeed killed

    void Look(const Folder& folder) {
        const auto file = folder.Read("database.bin");
        if (file == FileBytes(3))
            ++short_versions;
        else if (file == FileBytes(40))
            ++long_versions;
        else
            ++others;
        if (folder.Read("database.bin.new")) ++leftovers;
    }
};

/// Starts a worker on what the last kill left, lets it save for a random time and kills it.
void KillOneWorker(const Folder& folder, std::mt19937& random, Findings& findings) {
    std::uniform_int_distribution<int> life(0, kLongestLifeMicroseconds);
    Worker worker(folder, "shuttle");
    worker.Line();
    std::this_thread::sleep_for(std::chrono::microseconds(life(random)));
    worker.Kill();
    if (worker.WaitForEnd().Killed()) ++findings.deaths;
    findings.Look(folder);
}

TEST(Killed, At600RandomMomentsOfSavesTheFileIsAlwaysOneOfTheTwoVersions) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    std::mt19937 random(20120516);
    Findings findings;

    for (int i = 0; i < kKills && findings.others == 0; ++i) KillOneWorker(folder, random, findings);

    EXPECT_EQ(findings.others, 0);
    EXPECT_EQ(findings.deaths, kKills) << "a worker loaded something else than a whole version";
    // The kills came in the middle of saves, and before and after the replacement.
    EXPECT_GT(findings.leftovers, kKills / 20);
    EXPECT_GT(findings.short_versions, kKills / 20);
    EXPECT_GT(findings.long_versions, kKills / 20);
}

TEST(Killed, WhatAKilledSaveLeftIsClearedAwayByTheNextSave) {
    Folder folder;
    folder.Write("database.bin", FileBytes(3));
    folder.Write("database.bin.new", FileBytes(40).substr(0, 5000));

    const End end = RunWorker(folder, "load events 40 save");

    EXPECT_TRUE(end.Well());
    EXPECT_EQ(end.error, "");
    EXPECT_EQ(folder.Read("database.bin"), FileBytes(40));
    EXPECT_EQ(folder.Names(), std::vector<std::string>{"database.bin"});
}

TEST(Killed, WhatAKilledSaveLeftIsNeverLoaded) {
    Folder folder;
    folder.Write("database.bin.new", FileBytes(40));

    RunWorker(folder, "load save");

    EXPECT_EQ(folder.Read("database.bin"), std::string(4, '\0'));
}

}  // namespace
}  // namespace store
