// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Preloaded into the program: the X server seems to have no Present extension, which tells of refreshes.
#include <dlfcn.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstring>

extern "C" const xcb_query_extension_reply_t* xcb_get_extension_data(xcb_connection_t* connection,
                                                                     xcb_extension_t* extension) {
    static const auto next =
        reinterpret_cast<decltype(&xcb_get_extension_data)>(dlsym(RTLD_NEXT, "xcb_get_extension_data"));
    return std::strcmp(extension->name, "Present") == 0 ? nullptr : next(connection, extension);
}
