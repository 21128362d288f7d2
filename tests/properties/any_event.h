// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Events made up by rapidcheck.
#pragma once

#include <rapidcheck.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "calendar/events.h"

/// Returns events of any kind within some days, so that many have the same time.
inline rc::Gen<Event> EventOfAFewDays() {
    return rc::gen::exec([] {
        Event event;
        event.kind = *rc::gen::inRange(0, 4);  // one of them unknown
        event.date = {*rc::gen::inRange(14, 18), *rc::gen::inRange(5, 7), *rc::gen::inRange(2012, 2014)};
        event.time = {*rc::gen::inRange(9, 11), 15 * *rc::gen::inRange(0, 2)};
        event.wday = *rc::gen::inRange(0, 7);
        event.repeat = *rc::gen::inRange(0, 3);
        return event;
    });
}

/// Returns events any bytes of which may be anything.
inline rc::Gen<Event> EventOfAnyBytes() {
    return rc::gen::exec([] {
        Event event;
        auto* bytes = reinterpret_cast<std::uint8_t*>(&event);
        const auto part = *rc::gen::container<std::vector<std::uint8_t>>(rc::gen::arbitrary<std::uint8_t>());
        const auto start = *rc::gen::inRange<std::size_t>(0, sizeof event);
        std::copy_n(part.begin(), std::min(part.size(), sizeof event - start), bytes + start);
        event.kind = *rc::gen::oneOf(rc::gen::inRange(0, 4), rc::gen::arbitrary<std::int32_t>());
        event.date.day = *rc::gen::arbitrary<std::int32_t>();
        event.wday = *rc::gen::arbitrary<std::int32_t>();
        return event;
    });
}
