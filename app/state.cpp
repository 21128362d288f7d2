// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "app/state.h"

int menu_case_id = kOwlScreen;
float global_time = 0;
std::tm frame_time = {};
bool enable_sfx = true;
int n_notify = 0;
bool new_notify = false;
