// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// What sorting 100,000 events of random dates takes, compared with std::sort on as many prepared pairs of a
// stamp and an index: the least that any sort of them does by comparing.
//
// Prints a line: milliseconds of both and the median of the ratios of pairs that take turns. The events are
// made anew for each pair, in the order in which a store is read. Exits with 1 where the limit is missed.
//
// usage: sort_speed [PAIRS]
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "bench/event_mix.h"
#include "bench/stopwatch.h"
#include "bench/table.h"
#include "calendar/events.h"
#include "engine/date_key.h"

namespace {

constexpr int kEvents = 100'000;
constexpr double kLimit = 1.5;

using Stamped = std::pair<double, std::uint32_t>;

/// Fills `events` with events of random dates.
void MakeEvents() {
    const std::string store = bench::RandomStore(kEvents);
    events.clear();
    for (std::size_t at = 4; at < store.size(); at += sizeof(Event)) {
        std::memcpy(static_cast<void*>(static_cast<Event*>(&events.emplace_back())), store.data() + at,
                    sizeof(Event));
    }
}

std::vector<Stamped> PreparedPairs() {
    std::vector<Stamped> pairs;
    for (const Event& event : events) {
        const double stamp =
            ConvertDAM(event.date.day, event.date.month, event.date.year, event.time.hour, event.time.minute);
        pairs.emplace_back(stamp, static_cast<std::uint32_t>(pairs.size()));
    }
    return pairs;
}

}  // namespace

int main(int argc, char** argv) {
    const int pairs = std::max(argc > 1 ? std::atoi(argv[1]) : 31, 1);
    std::vector<double> ours, plain, ratios;
    for (int i = 0; i < pairs; ++i) {
        MakeEvents();
        std::vector<Stamped> prepared = PreparedPairs();
        ours.push_back(bench::Milliseconds(SortEvents));
        plain.push_back(bench::Milliseconds([&] { std::sort(prepared.begin(), prepared.end()); }));
        ratios.push_back(ours.back() / plain.back());
    }
    return bench::PrintRow("sorting 100,000 events : std::sort of prepared stamps", bench::Median(ours),
                           bench::Median(plain), bench::Median(ratios), kLimit)
               ? 0
               : 1;
}
