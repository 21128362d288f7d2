// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/wall_time.h"

#include <charconv>
#include <chrono>
#include <ctime>
#include <string_view>
#include <vector>

namespace {

constexpr std::int64_t kSecondsOfDay = 86'400;

std::chrono::sys_days SysDays(const Day& day) {
    return std::chrono::year(static_cast<int>(day.year)) / day.month / day.day;
}

/// Reads numbers of at most so many digits each that stand between separators. Returns whether the text is
/// that.
bool ReadNumbers(std::string_view text, char separator, const std::vector<int>& digits,
                 std::vector<int>& numbers) {
    numbers.clear();
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const bool last = i + 1 == digits.size();
        const std::string_view part = text.substr(0, last ? text.size() : text.find(separator));
        int number = 0;
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
        const bool sign = !part.empty() && part.front() == '-';
        if (error != std::errc() || end != part.data() + part.size() || sign) return false;
        if (std::ssize(part) > digits[i]) return false;
        numbers.push_back(number);
        if (!last && part.size() == text.size()) return false;  // no separator
        if (!last) text.remove_prefix(part.size() + 1);
    }
    return true;
}

}  // namespace

bool IsDay(const Day& day) {
    // The library keeps a day and a month in a byte each: larger ones would wrap.
    if (day.year < 1 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1 || day.day > 31)
        return false;
    const auto year = std::chrono::year(static_cast<int>(day.year));
    return (year / day.month / day.day).ok();
}

bool IsTime(int hour, int minute) {
    return hour >= 0 && hour <= 23 && minute >= 0 && minute <= 59;
}

std::int64_t DaysSince1970(const Day& day) {
    return SysDays(day).time_since_epoch().count();
}

Day DayAfter1970(std::int64_t days) {
    const std::chrono::year_month_day date{std::chrono::sys_days(std::chrono::days(days))};
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
            static_cast<int>(static_cast<unsigned>(date.day()))};
}

int WeekdayOf(const Day& day) {
    return static_cast<int>(std::chrono::weekday(SysDays(day)).c_encoding());
}

std::int64_t SecondsSince1970(const WallTime& time) {
    return DaysSince1970(time.day) * kSecondsOfDay + time.hour * std::int64_t{3600} +
           time.minute * std::int64_t{60};
}

WallTime TimeAfter1970(std::int64_t seconds) {
    std::int64_t days = seconds / kSecondsOfDay;
    if (seconds % kSecondsOfDay < 0) --days;
    const auto of_day = static_cast<int>(seconds - days * kSecondsOfDay);
    return {DayAfter1970(days), of_day / 3600, of_day / 60 % 60};
}

WallTime LocalWallTime(std::int64_t seconds) {
    const std::time_t moment = seconds;
    std::tm local = {};
    localtime_r(&moment, &local);
    return {
        {local.tm_year + std::int64_t{1900}, local.tm_mon + 1, local.tm_mday}, local.tm_hour, local.tm_min};
}

bool ReadDay(const std::string& text, Day& day) {
    std::vector<int> numbers;
    if (ReadNumbers(text, '-', {4, 2, 2}, numbers)) {
        day = {numbers[0], numbers[1], numbers[2]};
    } else if (ReadNumbers(text, '/', {2, 2, 4}, numbers)) {
        day = {numbers[2], numbers[1], numbers[0]};
    } else {
        return false;
    }
    return IsDay(day);
}

bool ReadTime(const std::string& text, int& hour, int& minute) {
    std::vector<int> numbers;
    if (ReadNumbers(text, ':', {2}, numbers)) numbers.push_back(0);
    if (numbers.size() != 2 && !ReadNumbers(text, ':', {2, 2}, numbers)) return false;
    hour = numbers[0];
    minute = numbers[1];
    return IsTime(hour, minute);
}
