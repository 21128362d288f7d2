// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Loads, changes and saves the store in the current folder as the program does, by the words of its command
// line, one after the other:
//
//   load       LoadEvents
//   events N   the list becomes the N events that workshop.h calls version N
//   add N      version N's events come after those of the list
//   save       SaveEvents
//   retry N    RetrySave, as N frames that are a second apart
//   watch      from here on the preloaded library (failing_calls.h) counts system calls and spoils one
//   release    it stops; the number of calls and the name of the spoilt one go to standard output, as a line
//   memory     the number of allocations goes to standard output, as a line
//   calls      the calls that it has counted go to standard output, each as a line
//   tell       the events' fields go to standard output, an event a line, the texts in hexadecimal
//   copy NAME  the store is copied to the file NAME as it is now; where there is none, neither is a copy
//   wait       a line goes to standard output, then one is awaited on standard input
//   shuttle    loads, checks that the list is version 3 or 40 whole, makes it the other, saves, and so on for
//              ever; a line goes to standard output before the first save
//   repeat N   saves version N for ever; a line goes to standard output before the first save
//
// Exits with 3 where "shuttle" loads anything else.
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "calendar/events.h"
#include "calendar/store.h"
#include "tests/store/failing_calls.h"
#include "tests/store/workshop.h"

// Null without the library.
__attribute__((weak)) void WatchCalls();
__attribute__((weak)) int ReleaseCalls();
__attribute__((weak)) int AllocationsMade();
__attribute__((weak)) const char* SpoiltCall();
__attribute__((weak)) const char* CallsMade();

namespace {

void AddEvents(int version) {
    for (int i = 0; i < version; ++i) {
        const std::string record = store::RecordBytes(version, i);
        Event& event = events.emplace_back();
        std::copy_n(record.data(), sizeof event, reinterpret_cast<char*>(&event));
    }
}

void SetEvents(int version) {
    events.clear();
    AddEvents(version);
}

void Retry(int frames) {
    static std::uint64_t now = 0;
    for (int i = 0; i < frames; ++i) RetrySave(now += 1'000'000'000);
}

/// Returns whether the list is a version, to the last byte.
bool IsVersion(int version) {
    int i = 0;
    for (const Event& event : events) {
        if (std::memcmp(&event, store::RecordBytes(version, i++).data(), sizeof event) != 0) return false;
    }
    return i == version;
}

void Say(const std::string& line) {
    const std::string text = line + "\n";
    if (write(STDOUT_FILENO, text.data(), text.size()) < 0) std::exit(4);
}

[[noreturn]] void Shuttle() {
    for (bool first = true;; first = false) {
        LoadEvents();
        const int version = IsVersion(3) ? 3 : 40;
        if (!IsVersion(version)) std::exit(3);
        SetEvents(43 - version);
        if (first) Say("shuttling");
        SaveEvents();
    }
}

[[noreturn]] void Repeat(int version) {
    SetEvents(version);
    Say("repeating");
    while (true) SaveEvents();
}

void Wait() {
    Say("waiting");
    char c = 0;
    while (read(STDIN_FILENO, &c, 1) == 1 && c != '\n') continue;
}

void Watch() {
    if (WatchCalls != nullptr) WatchCalls();
}

void Release() {
    if (ReleaseCalls != nullptr) Say(std::to_string(ReleaseCalls()) + " " + SpoiltCall());
}

void Memory() {
    if (AllocationsMade != nullptr) Say(std::to_string(AllocationsMade()));
}

void Calls() {
    if (CallsMade != nullptr) Say(CallsMade());
}

std::string Hexadecimal(const char* bytes, int count) {
    std::string digits;
    for (int i = 0; i < count; ++i) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x",
                      static_cast<unsigned int>(static_cast<unsigned char>(bytes[i])));
        digits += pair;
    }
    return digits;
}

void Tell() {
    for (const Event& event : events) {
        char numbers[200];
        std::snprintf(numbers, sizeof numbers, " %d %d %d %d %d %d %d %d %.9g %d %d %d %d", event.date.day,
                      event.date.month, event.date.year, event.time.hour, event.time.minute, event.wday,
                      event.kind, event.repeat, static_cast<double>(event.elapsed), event.warned_60,
                      event.warned_30, event.done, event.filler);
        Say(Hexadecimal(event.name, kNameBytes) + " " + Hexadecimal(event.description, kDescriptionBytes) +
            numbers);
    }
}

void Copy(const std::string& name) {
    std::error_code none;
    std::filesystem::copy_file("database.bin", name, std::filesystem::copy_options::overwrite_existing, none);
}

const std::string_view kWordsWithArgument[] = {"events", "add", "retry", "copy", "repeat"};

/// Obeys a word; returns whether it knows it. `argument` is the word that follows.
bool Obey(const std::string& word, const std::string& argument) {
    if (word == "load")
        LoadEvents();
    else if (word == "events")
        SetEvents(std::atoi(argument.c_str()));
    else if (word == "add")
        AddEvents(std::atoi(argument.c_str()));
    else if (word == "save")
        SaveEvents();
    else if (word == "retry")
        Retry(std::atoi(argument.c_str()));
    else if (word == "watch")
        Watch();
    else if (word == "release")
        Release();
    else if (word == "memory")
        Memory();
    else if (word == "calls")
        Calls();
    else if (word == "tell")
        Tell();
    else if (word == "copy")
        Copy(argument);
    else if (word == "wait")
        Wait();
    else if (word == "shuttle")
        Shuttle();
    else if (word == "repeat")
        Repeat(std::atoi(argument.c_str()));
    else
        return false;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        const bool takes_argument = std::ranges::count(kWordsWithArgument, word) > 0;
        if (takes_argument && ++i == argc) return 2;
        if (!Obey(word, takes_argument ? argv[i] : "")) return 2;
    }
    return 0;
}
