// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The owl's folder, as the launcher (packaging/ulmaro-assistant) finds, makes and locks it: who holds the
// lock may change the events, and an owl holds it for as long as it runs.
#pragma once

#include <string>

#include "engine/open_file.h"

/// The store's file in the folder.
inline constexpr char kStoreFile[] = "database.bin";

/// Finds the folder by XDG_DATA_HOME or HOME; it need not exist. Returns why there is none, in Italian; empty
/// where `folder` is set.
std::string FindFolder(std::string& folder);

/// Makes the folder, private to the user, unless it is there. Returns 0, or an errno.
int MakeFolder(const std::string& folder);

/// What came of trying to lock the folder.
enum class Locking { kLocked, kTaken, kFailed };

/// Locks the folder until `lock` is closed; never waits.
Locking LockFolder(const std::string& folder, OpenFile& lock);
