// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The double of a server of notices, org.freedesktop.Notifications, on a message bus.
//
// It works only while Serve() is called: left alone it is a server that hangs.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

struct sd_bus;
struct sd_bus_message;

namespace desktop {

/// A notice as a program has sent it.
struct SentNotice {
    std::uint32_t number = 0;    ///< that it got
    std::uint32_t replaced = 0;  ///< the number that it was to take the place of; 0: none
    std::string program, icon, title, text;
    std::vector<std::string> actions;
    std::map<std::string, std::string> hints;  ///< texts, and numbers in decimal digits
    std::int32_t timeout = -1;                 ///< milliseconds; 0: it stays
};

class NoticeServer {
  public:
    /// Takes the name of the server on that bus; stops the test where it cannot.
    explicit NoticeServer(const std::string& bus_address);
    ~NoticeServer();
    NoticeServer(const NoticeServer&) = delete;
    NoticeServer& operator=(const NoticeServer&) = delete;

    /// Takes in and answers what has come.
    void Serve();

    /// Waits until something has come that is not taken in yet; returns whether it has within `seconds`.
    bool AwaitUnread(double seconds = 5);

    /// Serves until that many notices have come; returns whether they have within `seconds`.
    bool AwaitNotices(std::size_t count, double seconds = 5);

    /// Serves until no notice is shown; returns whether that is so within `seconds`.
    bool AwaitNone(double seconds = 5);

    /// Serves for so many seconds.
    void ServeFor(double seconds);

    /// Returns all notices so far, in order.
    const std::vector<SentNotice>& Notices() const { return notices_; }

    /// Returns the number of the notice that is shown; 0: none is.
    std::uint32_t Shown() const { return shown_; }

    /// Does what servers do when the user clicks the notice: tells of it and takes the notice away.
    void Click();

  private:
    int Take(sd_bus_message* message);
    int Notify(sd_bus_message* message);
    int Close(sd_bus_message* message);
    void TellClosed(std::uint32_t reason);

    sd_bus* bus_ = nullptr;
    std::vector<SentNotice> notices_;
    std::uint32_t shown_ = 0;
    std::uint32_t last_ = 100;  ///< the last number given
};

}  // namespace desktop
