// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The event editor, and the same screen as a read-only view of a due event.
#pragma once

/// The editor, opened on a reminder from its notice, returns straight to the owl. Set by app/notifications,
/// taken by the editor's confirm button.
extern bool force_back_hm;

/// The values of edit_tf.
enum Field { kNoField = 0, kNameField = 1, kDescriptionField = 2 };

/// The text field that has the focus, one of Field. Written by the editor.
extern int edit_tf;

/// The blinking caret of the field that has the focus.
struct CaretState {
    bool ec = false;  ///< it is visible
    float ecte = 0;   ///< seconds since that last changed
};

/// Written by the editor; tests set it.
extern CaretState caret;

/// What EditorRoom() returns where no field has the focus.
constexpr int kNoFocus = -1;

/// Returns how many more characters the field that has the focus takes; kNoFocus where characters that are
/// typed now go into none.
int EditorRoom();

/// Draws the editor (kEditorScreen) or the view (kViewScreen) of `edit_event` and does what is clicked or
/// typed; one frame of the screen. Nothing without an event. Returns false where the frame must be drawn
/// again at once from the top, because the screen was closed and the next one is to be shown without a frame
/// of delay.
bool EventEditor();
