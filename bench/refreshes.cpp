// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

#include "bench/refreshes.h"

#include <poll.h>
#include <xcb/present.h>

#include <cstdlib>
#include <memory>

#include "tests/desktop/process.h"

namespace bench {

namespace {

constexpr int kPatienceMilliseconds = 100;  ///< between looks whether to stop

}  // namespace

Refreshes::Refreshes(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
    const auto* present = xcb_get_extension_data(connection_, &xcb_present_id);
    if (xcb_connection_has_error(connection_) != 0 || present == nullptr || present->present == 0) {
        desktop::Fail("the X server does not tell of refreshes");
    }
    window_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    xcb_present_query_version(connection_, 1, 0);
    xcb_present_select_input(connection_, xcb_generate_id(connection_), window_,
                             XCB_PRESENT_EVENT_MASK_COMPLETE_NOTIFY);
    thread_ = std::jthread([this](const std::stop_token& stop) { CountThem(stop); });
}

Refreshes::~Refreshes() {
    thread_.request_stop();
    thread_.join();
    xcb_disconnect(connection_);
}

void Refreshes::Ask() {
    xcb_present_notify_msc(connection_, window_, 0, last_ + 1, 0, 0);
    xcb_flush(connection_);
}

void Refreshes::CountThem(const std::stop_token& stop) {
    Ask();
    while (!stop.stop_requested()) {
        pollfd connection = {xcb_get_file_descriptor(connection_), POLLIN, 0};
        poll(&connection, 1, kPatienceMilliseconds);
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> owned(event, &std::free);
            if ((event->response_type & 0x7F) != XCB_GE_GENERIC) continue;
            last_ = reinterpret_cast<const xcb_present_complete_notify_event_t*>(event)->msc;
            ++count_;
            Ask();
        }
    }
}

}  // namespace bench
