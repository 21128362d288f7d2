// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/record.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace {

/// The numbers that are kept, in the order of the property.
struct Kept {
    std::int32_t day, month, year, hour, minute, wday, repeat;
    std::int32_t warned_60, warned_30, done;
    std::int32_t unnamed;
    std::int32_t name_before, name_after;  ///< blanks at the ends of the texts
    std::int32_t description_before, description_after;
};

constexpr std::int32_t Kept::*kOrder[] = {
    &Kept::day,
    &Kept::month,
    &Kept::year,
    &Kept::hour,
    &Kept::minute,
    &Kept::wday,
    &Kept::repeat,
    &Kept::warned_60,
    &Kept::warned_30,
    &Kept::done,
    &Kept::unnamed,
    &Kept::name_before,
    &Kept::name_after,
    &Kept::description_before,
    &Kept::description_after,
};

std::int32_t BlanksBefore(const std::string& text) {
    return static_cast<std::int32_t>(std::min(text.find_first_not_of(' '), text.size()));
}

/// Returns the blanks behind a text; none for one that is all blank, whose blanks stand before.
std::int32_t BlanksAfter(const std::string& text) {
    const std::size_t last = text.find_last_not_of(' ');
    return last == std::string::npos ? 0 : static_cast<std::int32_t>(text.size() - 1 - last);
}

bool ReadKept(const std::string& text, Kept& kept) {
    const char* at = text.data();
    const char* const end = text.data() + text.size();
    for (const auto field : kOrder) {
        if (at != end && *at == ' ' && field != kOrder[0]) ++at;
        const auto [next, error] = std::from_chars(at, end, kept.*field);
        if (error != std::errc()) return false;
        at = next;
    }
    return at == end;
}

/// Says whether the event still takes place when it did.
bool TakesPlaceAsKept(const Event& event, const Kept& kept) {
    const bool same_time = event.time.hour == kept.hour && event.time.minute == kept.minute;
    switch (event.kind) {
        case kAppointment:
            return same_time && event.date.day == kept.day && event.date.month == kept.month &&
                   event.date.year == kept.year;
        case kWeekly:
            return same_time && event.wday == kept.wday;
        default:
            return event.repeat == kept.repeat;
    }
}

/// Gives a text its blanks back, where it fits into so many bytes with them.
std::string WithBlanks(const std::string& text, std::int32_t before, std::int32_t after, std::int32_t bytes) {
    if (before < 0 || after < 0 || before > bytes || after > bytes) return text;
    if (std::ssize(text) + before + after > bytes) return text;
    return std::string(static_cast<std::size_t>(before), ' ') + text +
           std::string(static_cast<std::size_t>(after), ' ');
}

}  // namespace

std::string IdentityOf(const Event& event) {
    std::string identity = std::to_string(event.kind) + '|';
    const auto add = [&](std::int32_t number) { identity += std::to_string(number) + '|'; };
    if (event.kind == kReminder) {
        add(event.repeat);
    } else {
        if (event.kind == kWeekly) add(event.wday);
        if (event.kind != kWeekly) {
            add(event.date.day);
            add(event.date.month);
            add(event.date.year);
        }
        add(event.time.hour);
        add(event.time.minute);
    }
    return identity + NameOf(event) + '\0' + DescriptionOf(event);
}

std::string WithoutBlanks(const std::string& text) {
    const auto before = static_cast<std::size_t>(BlanksBefore(text));
    return text.substr(before, text.size() - before - static_cast<std::size_t>(BlanksAfter(text)));
}

std::string KeptOf(const Event& event) {
    const std::string name = NameOf(event);
    const std::string description = DescriptionOf(event);
    const Kept kept = {event.date.day,
                       event.date.month,
                       event.date.year,
                       event.time.hour,
                       event.time.minute,
                       event.wday,
                       event.repeat,
                       event.warned_60,
                       event.warned_30,
                       event.done,
                       WithoutBlanks(name).empty() ? 1 : 0,
                       BlanksBefore(name),
                       BlanksAfter(name),
                       BlanksBefore(description),
                       BlanksAfter(description)};
    std::string text;
    for (const auto field : kOrder) text += (text.empty() ? "" : " ") + std::to_string(kept.*field);
    return text;
}

void Restore(const std::string& text, Event& event) {
    Kept kept = {};
    if (!ReadKept(text, kept) || !TakesPlaceAsKept(event, kept)) return;
    event.date = {kept.day, kept.month, kept.year};
    event.time = {kept.hour, kept.minute};
    event.wday = kept.wday;
    event.repeat = kept.repeat;
    event.warned_60 = static_cast<std::uint8_t>(kept.warned_60);
    event.warned_30 = static_cast<std::uint8_t>(kept.warned_30);
    event.done = static_cast<std::uint8_t>(kept.done);
    const std::string name = NameOf(event);
    const bool unnamed = kept.unnamed != 0 && name == kUnnamed;
    SetField(event.name, WithBlanks(unnamed ? "" : name, kept.name_before, kept.name_after, kNameBytes));
    SetField(event.description, WithBlanks(DescriptionOf(event), kept.description_before,
                                           kept.description_after, kDescriptionBytes));
}
