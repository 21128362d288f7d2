// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Index: arrows, buttons of the band, date and time, text fields, EventEditor.
#include "calendar/editor.h"

#include <GL/gl.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string>

#include "app/input.h"
#include "app/panel.h"
#include "app/state.h"
#include "app/textures.h"
#include "calendar/events.h"
#include "calendar/notices.h"
#include "calendar/store.h"
#include "engine/text.h"

bool force_back_hm = false;
int edit_tf = kNoField;
CaretState caret;

namespace {

constexpr float kTextSize = 10;
constexpr float kCaretSeconds = 0.5F;  ///< so long the caret is visible, and so long it is not

// What can be typed into the fields; their records have more bytes.
constexpr std::size_t kLongestName = 17;
constexpr std::size_t kLongestDescription = 345;

constexpr ButtonPlace kConfirmButton = {476.62F, 436.5F, 20.5F, 20};
constexpr ButtonPlace kNameArea = {120, 220, 92, 15};
constexpr ButtonPlace kDescriptionArea = {256, 108, 225, 87};

/// What the editor works out once a frame. The mode is the screen at the frame's start, whatever is clicked
/// meanwhile.
struct EditorFrame {
    ListedEvent& event;
    bool editable;   ///< the editor; otherwise the view
    double minutes;  ///< to due

    bool Dated() const { return event.kind == kAppointment || event.kind == kWeekly; }
    /// Returns the vertical offset of date and time, canvas units.
    float Offset() const { return editable ? 25 : -20; }
    /// Returns the field that shows a caret and takes characters: none in the view.
    int Focus() const { return editable ? edit_tf : kNoField; }
};

// ---- Arrows ----

/// An adjustable number of an event with its pair of arrows.
struct Adjustment {
    int kinds;  ///< bit k: shown for kind k
    std::int32_t& (*field)(Event&);
    float x, up_y, down_y;             ///< the arrows' centres, canvas units; the offset comes on top
    std::int32_t last, after_last;     ///< raised beyond `last`, it becomes `after_last`
    std::int32_t first, before_first;  ///< lowered beyond `first`, it becomes `before_first`
};

constexpr int kForAppointment = 1 << kAppointment;
constexpr int kForWeekly = 1 << kWeekly;
constexpr std::int32_t kNoLimit = std::numeric_limits<std::int32_t>::max();

constexpr Adjustment kAdjustments[] = {
    {kForWeekly, [](Event& e) -> std::int32_t& { return e.wday; }, 150, 385, 337, 6, 0, 0, 6},
    {kForAppointment, [](Event& e) -> std::int32_t& { return e.date.day; }, 105, 385, 337, 31, 1, 1, 31},
    // Deliberate: down from January leads to 31, not 12.
    {kForAppointment, [](Event& e) -> std::int32_t& { return e.date.month; }, 150, 385, 337, 12, 1, 1, 31},
    {kForAppointment, [](Event& e) -> std::int32_t& { return e.date.year; }, 210, 385, 337, kNoLimit,
     kNoLimit, 1900, 1900},
    {kForAppointment | kForWeekly, [](Event& e) -> std::int32_t& { return e.time.hour; }, 105, 289, 241, 23,
     0, 0, 23},
    {kForAppointment | kForWeekly, [](Event& e) -> std::int32_t& { return e.time.minute; }, 150, 289, 241, 59,
     0, 0, 59},
};

constexpr float kArrowHalf = 15;  ///< half the edge of an arrow, canvas units

/// Shows an arrow that changes a number; returns whether it is clicked.
bool ShowStepArrow(unsigned int texture, float x, float y) {
    return ShowButton({x, y, kArrowHalf, kArrowHalf}, texture);
}

void ShowAdjustments(const EditorFrame& frame) {
    const int kind = 1 << frame.event.kind;
    for (const Adjustment& a : kAdjustments) {
        if ((a.kinds & kind) == 0) continue;
        std::int32_t& value = a.field(frame.event);
        if (ShowStepArrow(button_arrow_u, a.x, a.up_y + frame.Offset())) {
            value = value < a.last ? value + 1 : a.after_last;
            AnnounceAgain(frame.event);
        }
        if (ShowStepArrow(button_arrow_d, a.x, a.down_y + frame.Offset())) {
            value = value > a.first ? value - 1 : a.before_first;
            AnnounceAgain(frame.event);
        }
    }
}

// ---- Notices and the buttons of the band ----

/// In the view, marks what the user has now been told; in the editor, takes back announcements of an event
/// moved later.
void UpdateNotices(const EditorFrame& frame) {
    if (frame.editable) {
        TakeBack(frame.event, frame.minutes);
    } else {
        MarkTold(frame.event, frame.minutes);
    }
}

void ShowKindTabs(const EditorFrame& frame) {
    for (int kind = kAppointment; kind <= kReminder; ++kind) {
        const Button tab = ButtonAt(kTabs[kind], button[frame.event.kind == kind ? kChecked : kUnchecked]);
        tab.Display(frame.editable);
        if (frame.editable && tab.isClicked()) frame.event.kind = kind;
    }
}

void ShowConfirmButton(const EditorFrame& frame) {
    if (!frame.editable) return;
    if (ShowButton(kConfirmButton, button_check)) {
        ConfirmReminder(frame.event);
        SaveEvents();
        menu_case_id = force_back_hm ? kOwlScreen : kListScreen;
        force_back_hm = false;
    }
    glPrintText(402, 436.5F, kTextSize, true, "conferma");
}

/// Returns whether closing the screen removes the event: the editor deletes it, and the view discards an
/// appointment that has come.
bool ClosingRemoves(const EditorFrame& frame) {
    return frame.editable || (frame.minutes <= 0 && frame.event.kind != kWeekly);
}

/// Closes the screen for good when its button is clicked; returns whether it was.
bool ShowCloseButton(const EditorFrame& frame) {
    if (!ShowButton(kCloseButton, frame.editable ? button_trash : button_check)) return false;
    if (ClosingRemoves(frame)) {
        events.remove_if([&](const Event& event) { return &event == &frame.event; });
    }
    edit_event = nullptr;
    menu_case_id = frame.editable ? kListScreen : kOwlScreen;
    single_touch = false;  // not for the next screen
    SaveEvents();
    return true;
}

void PrintKindLabels(const EditorFrame& frame) {
    struct Label {
        float x;
        const char* text;
    };
    constexpr Label kLabels[] = {{80, "appuntamento"}, {243.5F, "settimanale"}, {391.5F, "promemoria"}};
    for (int kind = kAppointment; kind <= kReminder; ++kind) {
        if (frame.event.kind == kind) glColor4f(0, 1, 0, 1);
        glPrintText(kLabels[kind].x, 477, kTextSize, true, "%s", kLabels[kind].text);
        glColor4f(1, 1, 1, 1);
    }
}

// ---- Date and time ----

/// Shows a reminder's period; the view shows nothing of it.
void ShowRepeat(const EditorFrame& frame) {
    if (!frame.editable || frame.event.kind != kReminder) return;
    std::int32_t& repeat = frame.event.repeat;
    if (const Repeat* row = RepeatOf(frame.event)) {
        glPrintText(17, 330, kTextSize, false, "Ricordamelo %s", row->period);
    }
    if (ShowStepArrow(button_arrow_u, 215, 365)) repeat = repeat < kLastRepeat ? repeat + 1 : 0;
    if (ShowStepArrow(button_arrow_d, 215, 315)) repeat = repeat > 0 ? repeat - 1 : kLastRepeat;
}

/// Prints the date.
/// Deliberate: the view says "Oggi" by the stored day number alone, for weekly events too.
void PrintDate(const EditorFrame& frame) {
    const Event& event = frame.event;
    const float y = 350 + frame.Offset();
    const bool today = !frame.editable && event.date.day == frame_time.tm_mday;
    if (event.kind == kWeekly) {
        if (today) {
            glPrintText(17, y, kTextSize, false, "Data: Oggi");
        } else {
            glPrintText(17, y, kTextSize, false, "Data: ogni %s", GetWdayStr(event.wday));
        }
    } else if (today) {
        glPrintText(17, y, kTextSize, false, "Data:  Oggi");
    } else {
        glPrintText(17, y, kTextSize, false, "Data:  %d / %d / %d", event.date.day, event.date.month,
                    event.date.year);
    }
}

/// Prints the time, or in the view of the last hour how many minutes are left.
void PrintTime(const EditorFrame& frame) {
    const Time& time = frame.event.time;
    if (!frame.editable && frame.minutes > 0 && frame.minutes <= 60) {
        glPrintText(20, 280, kTextSize, false, "Ora:  tra %.0lf minuti", frame.minutes);
        return;
    }
    glPrintText(20, 280, kTextSize, false, "Ora:   %d : %d (%s)", time.hour, time.minute,
                time.hour >= 12 ? "pm" : "am");
}

void ShowDateAndTime(const EditorFrame& frame) {
    if (!frame.Dated()) return;
    PrintDate(frame);
    PrintTime(frame);
    if (frame.editable) ShowAdjustments(frame);
}

// ---- Text fields ----

void BlinkCaret() {
    caret.ecte += global_time;
    if (caret.ecte <= kCaretSeconds) return;
    caret.ecte = 0;
    caret.ec = !caret.ec;
}

void ChooseFocus(const EditorFrame& frame) {
    if (!single_touch) return;
    edit_tf = kNoField;
    if (!frame.editable) return;
    if (ButtonAt(kNameArea, 0).isClicked()) edit_tf = kNameField;
    if (ButtonAt(kDescriptionArea, 0).isClicked()) edit_tf = kDescriptionField;
}

/// Returns the caret of a field: NUL, which prints nothing, while it does not show.
char Caret(const EditorFrame& frame, int field) {
    return caret.ec && frame.Focus() == field ? '|' : '\0';
}

void PrintName(const EditorFrame& frame) {
    std::string name = NameOf(frame.event);
    if (name.empty() && frame.Focus() != kNameField) name = "evento senza nome";
    glPrintText(28, 210, kTextSize, false, "%s%c", name.c_str(), Caret(frame, kNameField));
}

void PrintDescription(const EditorFrame& frame) {
    std::string description = DescriptionOf(frame.event);
    if (description.empty() && frame.Focus() != kDescriptionField) description = "nessuna descrizione";
    glPrintTextBox(28, 170, kTextSize, 43, "%s%c", description.c_str(), Caret(frame, kDescriptionField));
}

/// Applies this frame's keys to a text, in the order of their codes: 127 removes the last character, 0 to 2
/// do nothing, others are appended while the text is shorter than `longest`.
void ApplyKeys(std::string& text, std::size_t longest) {
    constexpr int kErase = 127;
    for (int key = 0; key < static_cast<int>(std::size(key_state)); ++key) {
        if (!key_state[key]) continue;
        if (key == kErase) {
            if (!text.empty()) text.pop_back();
        } else if (key > 2 && text.size() < longest) {
            text.push_back(static_cast<char>(key));
        }
    }
}

/// Types this frame's keys into a field that holds that text. A field that nothing is typed into keeps all
/// its bytes, also those behind its text.
template <int kBytes>
void TypeInto(char (&field)[kBytes], const std::string& before, std::size_t longest) {
    std::string text = before;
    ApplyKeys(text, longest);
    if (text == before) return;
    std::fill(std::begin(field), std::end(field), '\0');
    std::copy_n(text.begin(), std::min<std::size_t>(text.size(), kBytes), field);
}

/// Returns how many characters a field that takes so many has room for behind its text.
int RoomBehind(const std::string& text, std::size_t longest) {
    return text.size() < longest ? static_cast<int>(longest - text.size()) : 0;
}

void TypeIntoFocus(const EditorFrame& frame) {
    if (!frame.editable) return;
    Event& event = frame.event;
    if (edit_tf == kNameField) TypeInto(event.name, NameOf(event), kLongestName);
    if (edit_tf == kDescriptionField) TypeInto(event.description, DescriptionOf(event), kLongestDescription);
}

}  // namespace

int EditorRoom() {
    if (menu_case_id != kEditorScreen || edit_tf == kNoField) return kNoFocus;
    if (edit_event == nullptr) return 0;
    return edit_tf == kNameField ? RoomBehind(NameOf(*edit_event), kLongestName)
                                 : RoomBehind(DescriptionOf(*edit_event), kLongestDescription);
}

bool EventEditor() {
    if (edit_event == nullptr) return true;
    const EditorFrame frame = {*edit_event, menu_case_id == kEditorScreen,
                               MinutesToDue(*edit_event, frame_time)};

    UpdateNotices(frame);
    ShowKindTabs(frame);
    ShowConfirmButton(frame);
    if (ShowCloseButton(frame)) return false;
    PrintKindLabels(frame);
    ShowRepeat(frame);
    ShowDateAndTime(frame);
    BlinkCaret();
    ChooseFocus(frame);
    PrintName(frame);
    PrintDescription(frame);
    TypeIntoFocus(frame);
    return true;
}
