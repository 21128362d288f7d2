// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A second calendar of about a hundred lines, without drawing, buttons or files, and the real one beside it:
// list, editor and store together. Whatever is clicked and typed in whatever order, both have the same events
// in the same order, on the screen and on the disk.
#include <algorithm>
#include <cstring>
#include <list>
#include <ostream>
#include <string>
#include <vector>

#include "calendar/store.h"
#include "tests/unit/calendar_fixture.h"
// After GoogleTest.
#include <rapidcheck/gtest.h>
#include <rapidcheck/state.h>

namespace {

// ---- The model ----

constexpr int kRows = 12;
constexpr int kNobody = -1;

/// An arrow's place on the canvas and what it does.
struct Step {
    const char* name;
    int kinds;  ///< bit k: shown for kind k
    double x, y;
    void (*apply)(Event&);
};

const Step kSteps[] = {
    {"weekday up", 1 << kWeekly, 150, 410, [](Event& e) { e.wday = (e.wday + 1) % 7; }},
    {"weekday down", 1 << kWeekly, 150, 362, [](Event& e) { e.wday = (e.wday + 6) % 7; }},
    {"day up", 1 << kAppointment, 105, 410, [](Event& e) { e.date.day = e.date.day % 31 + 1; }},
    {"day down", 1 << kAppointment, 105, 362, [](Event& e) { e.date.day = (e.date.day + 29) % 31 + 1; }},
    {"month up", 1 << kAppointment, 150, 410,
     [](Event& e) { e.date.month = e.date.month >= 12 ? 1 : e.date.month + 1; }},
    {"month down", 1 << kAppointment, 150, 362,
     [](Event& e) { e.date.month = (e.date.month + 29) % 31 + 1; }},
    {"year up", 1 << kAppointment, 210, 410, [](Event& e) { ++e.date.year; }},
    {"year down", 1 << kAppointment, 210, 362,
     [](Event& e) { e.date.year = std::max(e.date.year - 1, 1900); }},
    {"hour up", 1 << kAppointment | 1 << kWeekly, 105, 314,
     [](Event& e) { e.time.hour = (e.time.hour + 1) % 24; }},
    {"hour down", 1 << kAppointment | 1 << kWeekly, 105, 266,
     [](Event& e) { e.time.hour = (e.time.hour + 23) % 24; }},
    {"minute up", 1 << kAppointment | 1 << kWeekly, 150, 314,
     [](Event& e) { e.time.minute = (e.time.minute + 1) % 60; }},
    {"minute down", 1 << kAppointment | 1 << kWeekly, 150, 266,
     [](Event& e) { e.time.minute = (e.time.minute + 59) % 60; }},
    {"repeat up", 1 << kReminder, 215, 365, [](Event& e) { e.repeat = (e.repeat + 1) % 3; }},
    {"repeat down", 1 << kReminder, 215, 315, [](Event& e) { e.repeat = (e.repeat + 2) % 3; }},
};

struct Entry {
    int id;
    Event event;
};

struct Model {
    std::vector<Entry> list;
    std::vector<Event> stored;
    int edited = kNobody;  ///< the id of the event in the editor; without one the list is open
    int scroll = 0;        ///< events above the first row
    int made = 0;

    Entry& Edited() {
        return *std::find_if(list.begin(), list.end(), [&](const Entry& e) { return e.id == edited; });
    }
    void Sort() {
        const auto stamp = [](const Entry& e) {
            int ahead = e.event.kind == kWeekly ? e.event.wday - 3 : 0;  // from Wednesday on
            // A weekday that has gone by, as the program has it: a day before its next.
            if (ahead < 0) ahead += 6;
            const double days =
                (e.event.date.year * 12.0 + e.event.date.month) * 31 + e.event.date.day + ahead;
            return e.event.kind == kReminder ? -1
                                             : (days * 24 + e.event.time.hour) * 60 + e.event.time.minute;
        };
        const auto earlier = [&](const Entry& a, const Entry& b) { return stamp(a) < stamp(b); };
        if (std::is_sorted(list.begin(), list.end(), earlier)) return;
        // Reminders come first, in the opposite order of before.
        std::stable_sort(list.begin(), list.end(), earlier);
        const auto dated =
            std::find_if(list.begin(), list.end(), [](const Entry& e) { return e.event.kind != kReminder; });
        std::reverse(list.begin(), dated);
    }
    void Save() {
        stored.clear();
        for (const Entry& e : list) stored.push_back(e.event);
    }
    void Clamp() { scroll = std::max(std::min(scroll, static_cast<int>(list.size()) - kRows), 0); }
    /// What a frame of the list does beside what is clicked.
    void ShowList() {
        Clamp();
        Sort();
    }
    void Add() {
        list.push_back({made++, Event()});
        edited = list.back().id;
        ShowList();
    }
    void Open(int row) {
        Clamp();
        const auto place = static_cast<std::size_t>(scroll + row);
        if (place < list.size()) edited = list[place].id;
        Sort();
    }
    void Scroll(int by) {
        ShowList();
        scroll = std::max(scroll + by, 0);
        Clamp();
    }
    void Confirm() {
        Edited().event.elapsed = 0;
        Save();
        edited = kNobody;
        ShowList();
    }
    void Delete() {
        std::erase_if(list, [&](const Entry& e) { return e.id == edited; });
        Save();
        edited = kNobody;
        ShowList();
    }
    void StartAgain() {
        list.clear();
        for (const Event& event : stored) list.push_back({made++, event});
        for (Entry& e : list) {
            if (e.event.kind == kReminder) e.event.elapsed = 10800;
        }
        edited = kNobody;
        ShowList();
    }
};

// ---- The program ----

/// The program's own calendar, in this process, worked by clicks and keys.
class Calendar : public CalendarTest {
  public:
    void TestBody() override {}
    void Begin() {
        std::filesystem::remove("database.bin");
        LoadEvents();
        event_list = ListState();
        edit_tf = kNoField;
        ForgetStrokes();
        menu_case_id = kListScreen;
        Frame();
    }
    static void Click(double x, double y) {
        ClickAt(x, y);
        // Three frames in all: events that change places in each would be back after two.
        Frame();
        Frame();
    }
    static void TypeInto(double x, double y, const std::string& text) {
        ClickAt(x, y);
        Type(text);
    }
    static void StartAgain() {
        LoadEvents();
        menu_case_id = kListScreen;
        edit_tf = kNoField;
        Frame();
    }
};

void Compare(const Model& model) {
    RC_ASSERT(menu_case_id == (model.edited == kNobody ? kListScreen : kEditorScreen));
    RC_ASSERT(event_list.swap == model.scroll);
    RC_ASSERT(events.size() == model.list.size());
    auto shown = events.begin();
    for (const Entry& e : model.list) RC_ASSERT(SameBytes(*shown++, e.event));
    if (model.stored.empty() && !std::filesystem::exists("database.bin")) return;
    const std::vector<Event> stored = StoredEvents();
    RC_ASSERT(stored.size() == model.stored.size());
    for (std::size_t i = 0; i < stored.size(); ++i) RC_ASSERT(SameBytes(stored[i], model.stored[i]));
}

// ---- What the user does ----

using Command = rc::state::Command<Model, Calendar>;

/// Something that is done to both.
struct Action : Command {
    void run(const Model& before, Calendar& calendar) const override {
        Model after = before;
        apply(after);
        Do(calendar);
        Compare(after);
    }
    virtual void Do(Calendar& calendar) const = 0;
};

/// Something that the list offers, or the editor.
struct OnList : Action {
    void checkPreconditions(const Model& model) const override { RC_PRE(model.edited == kNobody); }
};
struct OnEditor : Action {
    void checkPreconditions(const Model& model) const override { RC_PRE(model.edited != kNobody); }
};

struct AddEvent : OnList {
    void apply(Model& model) const override { model.Add(); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(447, 436); }
    void show(std::ostream& out) const override { out << "add"; }
};

struct OpenRow : OnList {
    int row = *rc::gen::inRange(0, kRows);
    void apply(Model& model) const override { model.Open(row); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(241, 390 - 32 * row); }
    void show(std::ostream& out) const override { out << "open row " << row; }
};

struct ScrollBy : OnList {
    bool up = *rc::gen::arbitrary<bool>();
    void apply(Model& model) const override { model.Scroll(up ? -1 : 1); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(485, up ? 389 : 40); }
    void show(std::ostream& out) const override { out << "scroll " << (up ? "up" : "down"); }
};

struct ConfirmEvent : OnEditor {
    void apply(Model& model) const override { model.Confirm(); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(476, 436); }
    void show(std::ostream& out) const override { out << "confirm"; }
};

struct DeleteEvent : OnEditor {
    void apply(Model& model) const override { model.Delete(); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(485, 486); }
    void show(std::ostream& out) const override { out << "delete"; }
};

struct ChooseKind : OnEditor {
    int kind = *rc::gen::inRange(0, 3);
    void apply(Model& model) const override { model.Edited().event.kind = kind; }
    void Do(Calendar& /*calendar*/) const override {
        constexpr double kX[] = {87, 243, 391};
        Calendar::Click(kX[kind], 486);
    }
    void show(std::ostream& out) const override { out << "choose kind " << kind; }
};

struct ClickArrow : OnEditor {
    const Step& step = kSteps[*rc::gen::inRange<std::size_t>(0, std::size(kSteps))];
    void checkPreconditions(const Model& model) const override {
        OnEditor::checkPreconditions(model);
        Model copy = model;
        RC_PRE((step.kinds & 1 << copy.Edited().event.kind) != 0);
    }
    void apply(Model& model) const override { step.apply(model.Edited().event); }
    void Do(Calendar& /*calendar*/) const override { Calendar::Click(step.x, step.y); }
    void show(std::ostream& out) const override { out << step.name; }
};

struct TypeText : OnEditor {
    bool name = *rc::gen::arbitrary<bool>();
    std::string text = *rc::gen::container<std::string>(rc::gen::inRange<char>(' ', '~' + 1));
    void apply(Model& model) const override {
        Event& event = model.Edited().event;
        char* field = name ? event.name : event.description;
        const std::size_t longest = name ? 17 : 345;
        const std::size_t length = std::strlen(field);
        std::copy_n(text.begin(), std::min(text.size(), longest - length), field + length);
    }
    void Do(Calendar& /*calendar*/) const override {
        Calendar::TypeInto(name ? 120 : 256, name ? 220 : 108, text);
    }
    void show(std::ostream& out) const override {
        out << "type " << (name ? "name " : "description ") << text;
    }
};

/// The program is ended and started again: what is not saved is lost.
struct RunAgain : Action {
    void apply(Model& model) const override { model.StartAgain(); }
    void Do(Calendar& /*calendar*/) const override { Calendar::StartAgain(); }
    void show(std::ostream& out) const override { out << "start again"; }
};

TEST_F(Calendar, HasTheEventsOfTheModelWhateverIsClickedAndTyped) {
    rc::detail::checkGTest([this] {
        Begin();
        using rc::state::gen::execOneOfWithArgs;
        rc::state::check(Model(), *this, [](const Model& model) {
            return model.edited == kNobody
                       ? execOneOfWithArgs<AddEvent, AddEvent, AddEvent, OpenRow, ScrollBy, RunAgain>()()
                       : execOneOfWithArgs<ClickArrow, ClickArrow, ClickArrow, ChooseKind, TypeText,
                                           ConfirmEvent, ConfirmEvent, DeleteEvent, RunAgain>()();
        });
    });
}

}  // namespace
