// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The fixture for tests of the calendar: an empty list of events whose file is in a folder of its own, a
// window in which a pixel is a canvas unit, and Wednesday, 16 May 2012, 10:30 in the morning.
//
// How to use it:
//
//     AddAppointment("dentista", 17, 5, 2012, 9, 0);
//     menu_case_id = kListScreen;
//     ClickAt(441, 436);                              // one frame with a click; or Frame()
//     EXPECT_EQ(ButtonsDrawn(button_add).size(), 1U);
//     ExpectPrinted({"aggiungi", 372, 436.5, true});
//     EXPECT_EQ(StoredNames(), (std::vector<std::string>{"dentista"}));   // what is in the file
#pragma once

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <iterator>
#include <list>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "app/typing.h"
#include "calendar/editor.h"
#include "calendar/events.h"
#include "calendar/list.h"
#include "calendar/store.h"
#include "engine/local_time.h"
#include "tests/unit/app_fixture.h"
#include "tests/unit/colors.h"
#include "tests/unit/text_reader.h"

/// A text where it must stand, canvas units; the calendar's size is 10 throughout.
struct ExpectedText {
    std::string text;
    double x = 0;  ///< the left end, or the middle
    double y = 0;
    bool centred = false;
    fakes::Rgba color = kWhite;
};

/// Says whether a line is printed as expected.
inline bool IsPrintedAs(const PrintedLine& line, const ExpectedText& expected) {
    const auto near = [](double a, double b) { return std::abs(a - b) < 0.01; };
    return line.text == expected.text && near(expected.centred ? line.centre_x : line.x, expected.x) &&
           near(line.y, expected.y) && near(line.size, 10) && line.color == expected.color;
}

/// Returns the rectangle of a button, from its centre and half its width and height.
inline fakes::Rect Around(double x, double y, double w, double h) {
    return {x - w, y - h, x + w, y + h};
}

/// Puts a text into a field of an event, without a NUL if it is as long as the field.
template <int kBytes>
void SetText(char (&field)[kBytes], const std::string& text) {
    std::fill(std::begin(field), std::end(field), '\0');
    std::copy_n(text.begin(), std::min<std::size_t>(text.size(), kBytes), field);
}

inline Event MakeEvent(EventKind kind, const std::string& name) {
    Event event;
    event.kind = kind;
    SetText(event.name, name);
    return event;
}

inline Event MakeAppointment(const std::string& name, int day, int month, int year, int hour, int minute) {
    Event event = MakeEvent(kAppointment, name);
    event.date.day = day;
    event.date.month = month;
    event.date.year = year;
    event.time.hour = hour;
    event.time.minute = minute;
    return event;
}

/// Returns an event of every week, whose stored date is the day it was made on.
inline Event MakeWeekly(const std::string& name, int wday, int hour, int minute) {
    Event event = MakeEvent(kWeekly, name);
    event.wday = wday;
    event.time.hour = hour;
    event.time.minute = minute;
    return event;
}

inline Event MakeReminder(const std::string& name, int repeat, float elapsed) {
    Event event = MakeEvent(kReminder, name);
    event.repeat = repeat;
    event.elapsed = elapsed;
    return event;
}

/// Returns the names of events, in order.
inline std::vector<std::string> NamesOf(const std::list<ListedEvent>& list) {
    std::vector<std::string> names;
    for (const Event& event : list) names.push_back(NameOf(event));
    return names;
}

/// Returns the records of the file "database.bin"; the test fails where its length does not fit.
inline std::vector<Event> StoredEvents() {
    const std::string bytes = ReadFile("database.bin");
    std::int32_t count = -1;
    if (bytes.size() >= sizeof count) std::memcpy(&count, bytes.data(), sizeof count);
    if (count < 0 || bytes.size() != sizeof count + static_cast<std::size_t>(count) * sizeof(Event)) {
        ADD_FAILURE() << "database.bin has " << bytes.size() << " bytes and the count " << count;
        return {};
    }
    std::vector<Event> stored(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < stored.size(); ++i) {
        std::memcpy(static_cast<void*>(&stored[i]), bytes.data() + sizeof count + i * sizeof(Event),
                    sizeof(Event));
    }
    return stored;
}

/// Returns the names in the file "database.bin".
inline std::vector<std::string> StoredNames() {
    std::vector<std::string> names;
    for (const Event& event : StoredEvents()) names.push_back(NameOf(event));
    return names;
}

/// Says whether nothing has been saved in this test's folder.
inline bool NothingIsSaved() {
    return !std::filesystem::exists("database.bin");
}

/// Compares two events byte for byte, the filler left out.
inline bool SameBytes(const Event& a, const Event& b) {
    return std::memcmp(&a, &b, sizeof(Event) - 1) == 0;
}

/// Returns events of every kind in which one number after another, and all of them, are the lowest and the
/// highest there are.
inline std::vector<Event> EventsOfExtremes() {
    std::vector<Event> extremes;
    const std::int32_t kinds[] = {kAppointment, kWeekly, kReminder, 3, INT_MIN, INT_MAX};
    for (const std::int32_t kind : kinds) {
        for (const int number : {INT_MIN, INT_MAX}) {
            Event all;
            all.kind = kind;
            std::int32_t Date::*const date[] = {&Date::day, &Date::month, &Date::year};
            std::int32_t Time::*const time[] = {&Time::hour, &Time::minute};
            for (const auto field : date) {
                Event one;
                one.kind = kind;
                one.date.*field = all.date.*field = number;
                extremes.push_back(one);
            }
            for (const auto field : time) {
                Event one;
                one.kind = kind;
                one.time.*field = all.time.*field = number;
                extremes.push_back(one);
            }
            Event one;
            one.kind = kind;
            one.wday = all.wday = number;
            all.repeat = number;
            extremes.push_back(one);
            extremes.push_back(all);
        }
    }
    return extremes;
}

/// Returns an event whose numbers are chosen at random from few, so that many are equal: of any kind, known
/// or not, around 16 May 2012.
inline Event RandomEvent(std::mt19937& random, const std::string& name) {
    const auto choose = [&](int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(random);
    };
    Event event = MakeAppointment(name, choose(14, 18), choose(5, 6), choose(2012, 2013), choose(9, 11),
                                  15 * choose(0, 3));
    event.kind = choose(-1, 4);
    event.wday = choose(-1, 7);
    event.repeat = choose(-1, 3);
    event.elapsed = static_cast<float>(3600 * choose(0, 3));
    event.warned_60 = static_cast<std::uint8_t>(choose(0, 1));
    event.warned_30 = static_cast<std::uint8_t>(choose(0, 1));
    event.done = static_cast<std::uint8_t>(choose(0, 1));
    return event;
}

class CalendarTest : public AppTest {
  protected:
    void SetUp() override {
        AppTest::SetUp();
        fakes::glut().get[GLUT_WINDOW_WIDTH] = fakes::glut().get[GLUT_WINDOW_HEIGHT] = 512;
        ForgetWindowMetrics();
        LoadEvents();  // of an empty folder
        SetNow(2012, 5, 16, 10, 30);
        PointAway();
        StartAnew();
    }

    /// Sets the local time, for the frame as well.
    static void SetNow(int year, int month, int day, int hour, int minute, int second = 0) {
        fakes::SetLocalTime(year, month, day, hour, minute, second);
        frame_time = LocalTime();
    }

    static ListedEvent& Add(const Event& event) { return events.emplace_back(event); }
    static ListedEvent& AddAppointment(const std::string& name, int day, int month, int year, int hour,
                                       int minute) {
        return Add(MakeAppointment(name, day, month, year, hour, minute));
    }
    static ListedEvent& AddWeekly(const std::string& name, int wday, int hour, int minute) {
        return Add(MakeWeekly(name, wday, hour, minute));
    }
    static ListedEvent& AddReminder(const std::string& name, int repeat, float elapsed) {
        return Add(MakeReminder(name, repeat, elapsed));
    }

    /// Adds as many appointments of the coming days, named "01", "02" ... in the order of their dates.
    static void AddAppointments(int count) {
        for (int i = 1; i <= count; ++i) {
            const std::string name = (i < 10 ? "0" : "") + std::to_string(i);
            AddAppointment(name, 17 + i % 10, 5 + i / 10, 2012, 9, 0);
        }
    }

    // ---- Pointer and frames ----

    static void PointAt(double x, double y) { mouse(static_cast<int>(x), static_cast<int>(512 - y)); }

    /// Puts the pointer where no screen has anything.
    static void PointAway() { PointAt(506, 506); }

    /// Draws a frame of the program `seconds` after the last. Only what it shows is in the list of primitives
    /// afterwards, also when it was drawn again from the top.
    static void Frame(float seconds = 0) {
        fakes::ClearLog();
        fakes::gl().primitives.clear();
        global_time = seconds;
        display();
        EXPECT_EQ(fakes::gl().modelview.size(), 1U) << "the frame must leave the model-view stack as it was";
        EXPECT_EQ(fakes::gl().projection.size(), 1U) << "the frame must leave the projection stack as it was";
        const std::size_t cleared = fakes::IndexOf("glClear", fakes::Count("glClear") - 1);
        std::erase_if(fakes::gl().primitives,
                      [&](const fakes::Primitive& drawn) { return drawn.log_index < cleared; });
    }

    /// Draws a frame with a click at a canvas point, one that is no part of a double click.
    static void ClickAt(double x, double y) {
        double_click = DoubleClickState();
        PointAt(x, y);
        mouse_event(GLUT_LEFT_BUTTON, GLUT_DOWN, 0, 0);
        Frame();
        PointAway();
    }

    /// Types a text as the window system reports it, and draws frames until all of it has arrived.
    static void Type(const std::string& text) {
        for (const char c : text) TypeCharacter(static_cast<unsigned char>(c), 0, 0);
        for (std::size_t i = 0; i <= 2 * text.size(); ++i) Frame();
    }

    // ---- What is drawn ----

    /// Returns the rectangles drawn with a texture, in order.
    static std::vector<fakes::Rect> ButtonsDrawn(unsigned int texture) {
        std::vector<fakes::Rect> places;
        for (const fakes::Primitive& drawn : fakes::gl().DrawnWith(texture)) {
            places.push_back(fakes::Bounds(drawn));
        }
        return places;
    }

    /// Returns the colours of what is drawn with a texture, in order.
    static std::vector<fakes::Rgba> Colours(unsigned int texture) {
        std::vector<fakes::Rgba> colours;
        for (const fakes::Primitive& drawn : fakes::gl().DrawnWith(texture)) colours.push_back(drawn.color);
        return colours;
    }

    static bool IsPrinted(const std::string& text) {
        const std::vector<std::string> words = Words(PrintedText());
        return std::find(words.begin(), words.end(), text) != words.end();
    }

    /// Expects that a text is printed once, as it must be.
    static void ExpectPrinted(const ExpectedText& expected) {
        std::vector<PrintedLine> lines = PrintedText();
        const auto matches = std::count_if(
            lines.begin(), lines.end(), [&](const PrintedLine& line) { return IsPrintedAs(line, expected); });
        EXPECT_EQ(matches, 1) << '"' << expected.text << "\" at " << expected.x << ", " << expected.y
                              << "; there is " << testing::PrintToString(lines);
    }

    /// Returns the screen at the end of the frame, one of Screen, by the picture that it is drawn on:
    /// kOwlScreen without one, -2 without anything.
    static int ScreenShown() {
        const std::vector<fakes::Primitive>& drawn = fakes::gl().primitives;
        if (drawn.empty()) return -2;
        const auto* panel = std::find(std::begin(GUI), std::end(GUI), drawn[0].texture);
        return panel == std::end(GUI) ? kOwlScreen : static_cast<int>(panel - std::begin(GUI));
    }

  private:
    /// Forgets what the preparations have drawn.
    static void StartAnew() {
        fakes::gl().primitives.clear();
        fakes::ClearLog();
        glColor4f(1, 1, 1, 1);
        fakes::world().rand_calls = 0;
    }
};
