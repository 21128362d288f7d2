// The notices of due events.
#pragma once

/// How many events are due, as the last frame of the character screen counted them.
extern int n_notify;

/// At least one event is due. Read one frame later by the owl.
extern bool new_notify;
