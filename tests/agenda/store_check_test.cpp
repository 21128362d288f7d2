// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "agenda/store_check.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/agenda/helpers.h"

namespace {

std::string Store(std::int32_t count, const std::vector<Event>& records) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &count, 4);
    for (const Event& event : records) bytes += BytesOf(event);
    return bytes;
}

std::vector<std::string> Findings(const std::string& bytes) {
    std::int64_t records = -1;
    return CheckStore(bytes, records);
}

TEST(StoreCheck, FindsNothingInGoodOrder) {
    std::int64_t records = -1;
    EXPECT_TRUE(
        CheckStore(Store(3, {Appointment("a", {2026, 1, 1}, 1, 1), Weekly("b", 6, 23, 59), Reminder("c", 2)}),
                   records)
            .empty());
    EXPECT_EQ(records, 3);
    EXPECT_TRUE(Findings(Store(0, {})).empty());
}

TEST(StoreCheck, SeesAFileThatIsTooShortOrTooLong) {
    const Event good = Appointment("a", {2026, 1, 1}, 1, 1);
    EXPECT_EQ(Findings("\1"),
              (std::vector<std::string>{"il file e' troppo corto: manca il numero degli eventi"}));
    EXPECT_EQ(Findings(Store(2, {good})),
              (std::vector<std::string>{"il file dice di avere 2 eventi e ne ha 1"}));
    EXPECT_EQ(Findings(Store(-1, {good})),
              (std::vector<std::string>{"il file dice di avere -1 eventi e ne ha 1"}));
    EXPECT_EQ(
        Findings(Store(1, {good}) + "xyz"),
        (std::vector<std::string>{"il file dice di avere 1 eventi e ne ha 1, piu' un pezzo di 3 byte"}));
}

TEST(StoreCheck, NamesTheRecordAndWhatIsWrongWithIt) {
    struct Damage {
        Event event;
        std::function<void(Event&)> inflict;
        std::string found;
    };
    const Event appointment = Appointment("a", {2026, 1, 1}, 1, 1);
    const Event weekly = Weekly("a", 1, 1, 1);
    const Event reminder = Reminder("a", 0);
    const std::vector<Damage> damages = {
        {appointment, [](Event& e) { e.date.day = 32; }, "la data 32/1/2026 non esiste"},
        {appointment, [](Event& e) { e.time.hour = 24; }, "l'ora 24:1 non esiste"},
        {appointment, [](Event& e) { e.kind = 9; }, "il tipo e' 9"},
        {appointment, [](Event& e) { e.done = 2; }, "un segno di avviso e' 2"},
        {appointment, [](Event& e) { e.warned_60 = 255; }, "un segno di avviso e' 255"},
        {appointment, [](Event& e) { e.description[0] = '\x80'; },
         "la descrizione ha caratteri che il gufo non scrive"},
        {weekly, [](Event& e) { e.wday = 7; }, "il giorno della settimana e' 7"},
        {weekly, [](Event& e) { e.time.minute = -1; }, "l'ora 1:-1 non esiste"},
        {reminder, [](Event& e) { e.repeat = 3; }, "la ripetizione e' 3"},
        {reminder, [](Event& e) { e.elapsed = std::numeric_limits<float>::quiet_NaN(); },
         "il tempo trascorso non e' un numero di secondi"},
    };
    for (const Damage& damage : damages) {
        Event damaged = damage.event;
        damage.inflict(damaged);
        EXPECT_EQ(Findings(Store(2, {damage.event, damaged})),
                  (std::vector<std::string>{"evento 2 (\"a\"): " + damage.found}));
    }
    Event nameless = appointment;
    SetField(nameless.name, "\x01");
    EXPECT_EQ(Findings(Store(1, {nameless}))[0],
              "evento 1 (\"?\"): il nome ha caratteri che il gufo non scrive");
}

}  // namespace
