// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The stores that the benchmarks load, as bytes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <string>

namespace bench {

constexpr std::size_t kRecord = 572;  ///< bytes of an event

/// Puts a 32-bit number into a record, little-endian as the machine.
inline void Put(char* record, std::size_t offset, std::int32_t number) {
    std::memcpy(record + offset, &number, sizeof number);
}

/// Returns the bytes of "database.bin" with `count` events in the order that the program saves them in:
/// `reminders` hourly reminders, then appointments and weekly events of the next years, half a day of the
/// ones and half of the others by turns. All have texts; none of the weekly events is today's.
inline std::string MixedStore(int count, int reminders) {
    constexpr int kHalfHours = 48;  // of a day, one event each
    const std::time_t now = std::time(nullptr);
    const std::tm today = *std::localtime(&now);
    std::string store(4 + static_cast<std::size_t>(count) * kRecord, '\0');
    Put(store.data(), 0, count);
    for (int i = 0; i < count; ++i) {
        char* record = store.data() + 4 + static_cast<std::size_t>(i) * kRecord;
        const int day = i / kHalfHours;
        const int month = day / 2;
        std::snprintf(record, 20, "evento %d", i);
        std::snprintf(record + 20, 512, "Il numero %d di %d eventi, con una descrizione.", i, count);
        Put(record, 532, 15);
        Put(record, 536, 1 + month % 12);
        Put(record, 540, today.tm_year + 1901 + month / 12);
        Put(record, 544, i % kHalfHours / 2);
        Put(record, 548, i % 2 * 30);
        Put(record, 552, (today.tm_wday + 2) % 7);
        Put(record, 556, i < reminders ? 2 : day % 2);
    }
    return store;
}

/// Returns the bytes of "database.bin" with `count` appointments of random dates from next year on, 20 years
/// long, in no order; always the same ones. None of them is due.
inline std::string RandomStore(int count) {
    std::string store = MixedStore(count, 0);
    std::mt19937 random(13);
    const auto choose = [&](int highest) { return static_cast<std::int32_t>(random() % (highest + 1)); };
    const std::time_t now = std::time(nullptr);
    const int next_year = std::localtime(&now)->tm_year + 1901;
    for (std::size_t at = 4; at < store.size(); at += kRecord) {
        char* record = store.data() + at;
        Put(record, 532, 1 + choose(30));
        Put(record, 536, 1 + choose(11));
        Put(record, 540, next_year + choose(19));
        Put(record, 544, choose(23));
        Put(record, 548, choose(59));
        Put(record, 556, 0);
    }
    return store;
}

}  // namespace bench
