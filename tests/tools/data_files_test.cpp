// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The manifest of data files and what the build makes of it.
#include "tests/tools/data_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

const fs::path kAssets = fs::path(ULMARO_DATA_FILES).parent_path();

}  // namespace

TEST(DataFiles, AreAllBaked) {
    ASSERT_FALSE(DataFilesFrom("").empty()) << "no manifest";
    for (const DataFile& file : DataFilesFrom("")) {
        std::error_code error;
        const auto bytes = fs::file_size(fs::path(ULMARO_DATA) / file.name, error);
        EXPECT_FALSE(error) << file.name << ": " << error.message();
        EXPECT_GT(bytes, 0U) << file.name;
    }
}

TEST(DataFiles, AreListedOnce) {
    std::set<std::string> names;
    for (const DataFile& file : DataFilesFrom("")) EXPECT_TRUE(names.insert(file.name).second) << file.name;
}

// Somebody draws a picture or writes a score, and forgets its line.
TEST(DataFiles, UseEverySource) {
    std::set<fs::path> used;
    for (const DataFile& file : DataFilesFrom("")) used.insert(file.source);
    int sources = 0;

    for (const char* folder : {"pictures", "effects", "sounds"}) {
        for (const auto& entry : fs::directory_iterator(kAssets / folder)) {
            const fs::path source = entry.path().lexically_relative(kAssets);
            // What all effects or all sounds share has no line of its own.
            if (source == "effects/particles.svg" || source == "sounds/owl.orc") continue;
            EXPECT_TRUE(used.contains(source)) << source << " has no line in the manifest";
            ++sources;
        }
    }

    EXPECT_GT(sources, 0);
}
