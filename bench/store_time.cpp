// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/store_time.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>

#include "bench/stopwatch.h"
#include "calendar/events.h"
#include "calendar/store.h"

namespace bench {

double LoadMilliseconds(int events_expected) {
    events.clear();
    malloc_trim(0);
    const double time = Milliseconds(LoadEvents);
    if (events.size() == static_cast<std::size_t>(events_expected)) return time;
    std::fprintf(stderr, "the events were not loaded\n");
    std::exit(2);
}

double SaveMilliseconds() {
    return Milliseconds([] {
        if (SaveEvents()) return;
        std::fprintf(stderr, "the events were not saved\n");
        std::exit(2);
    });
}

}  // namespace bench
