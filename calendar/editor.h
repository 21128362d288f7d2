// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The event editor, and the same screen as a read-only view of a due event.
#pragma once

/// The editor, opened on a reminder from its notice, returns straight to the owl. Set by the notices, taken
/// by the editor's confirm button.
extern bool force_back_hm;

/// The text field that has the focus: 0 none, 1 the name, 2 the description. Written by the editor.
extern int edit_tf;

/// Draws the editor (menu_case_id 1) or the view (2) of `edit_event` and does what is clicked or typed; one
/// frame of the screen. Nothing without an event. Returns false where the frame must be drawn again at once
/// from the top, because the screen was closed and the next one is to be shown without a frame of delay.
bool EventEditor();
