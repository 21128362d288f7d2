// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The manifest of data files, assets/data_files.txt, as tests read it: what the program finds in its folder.
// Tests that look at every file of a kind take their names from here, so that a new file is tested too.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

/// A line of the manifest.
struct DataFile {
    std::string name;    ///< the file in the data folder
    std::string source;  ///< what it is baked from, below assets/
    std::string recipe;  ///< the rest of the line: what else its kind needs
};

/// Returns the manifest's files whose source has that ending, such as ".sco", in the manifest's order; with
/// "" all of them. A manifest that cannot be read gives none.
inline std::vector<DataFile> DataFilesFrom(const std::string& ending) {
    std::vector<DataFile> files;
    std::ifstream manifest(ULMARO_DATA_FILES);
    for (std::string line; std::getline(manifest, line);) {
        if (line.starts_with('#')) continue;
        std::istringstream words(line);
        DataFile file;
        if (!(words >> file.name >> file.source) || !file.source.ends_with(ending)) continue;
        std::getline(words >> std::ws, file.recipe);
        files.push_back(file);
    }
    return files;
}

/// Returns only the names of those files.
inline std::vector<std::string> NamesFrom(const std::string& ending) {
    std::vector<std::string> names;
    for (const DataFile& file : DataFilesFrom(ending)) names.push_back(file.name);
    return names;
}
