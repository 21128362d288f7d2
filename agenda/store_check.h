// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What is damaged in a store, record by record. The store's own reader takes what it can and goes on; this
// looks at every number and changes nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Returns what is wrong with the bytes of a store file, in Italian, one finding a line; nothing where it is
/// in good order. `records` is set to how many whole records there are.
std::vector<std::string> CheckStore(std::string_view bytes, std::int64_t& records);
