// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The screen's refreshes, counted by the least client that there is: it asks the X server for the next one,
// again and again, and does nothing else.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

namespace bench {

/// Counts from its construction on, in a thread and on a connection of its own.
class Refreshes {
  public:
    /// Stops the benchmark where the server does not tell of refreshes (X Present extension).
    explicit Refreshes(const std::string& display);
    ~Refreshes();
    Refreshes(const Refreshes&) = delete;
    Refreshes& operator=(const Refreshes&) = delete;

    /// Returns how many have come so far.
    std::uint64_t Count() const { return count_; }

  private:
    void Ask();
    void CountThem(const std::stop_token& stop);

    xcb_connection_t* connection_;
    xcb_window_t window_ = 0;
    std::uint64_t last_ = 0;  ///< the number that the server gave the last one
    std::atomic<std::uint64_t> count_ = 0;
    std::jthread thread_;
};

}  // namespace bench
