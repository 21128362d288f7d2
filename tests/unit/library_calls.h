// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// Functions of the C library that a test takes in hand, replaced at link time. They do their work unless a
// test says otherwise.
#pragma once

#include <climits>
#include <string>
#include <vector>

/// Lets calls of one function fail, while it exists: close (which closes all the same), fcntl (where it
/// duplicates a descriptor), fchown, fdopen, flock, fstat, fsync, link, lstat, open, read, rename, unlink or
/// write.
class FailingCall {
  public:
    /// The calls from number `first` on fail with an errno, so many `times`. With the errno 0 they return 0
    /// and do nothing: a read is at the end of its file.
    FailingCall(std::string name, int error, int first = 1, int times = INT_MAX);
    FailingCall(const FailingCall&) = delete;
    FailingCall& operator=(const FailingCall&) = delete;
    ~FailingCall();

    /// Returns how many calls there were, failed ones and others.
    int Calls() const { return calls_; }

    /// Counts a call of the function `name`; returns whether it fails, and sets errno then. For the functions
    /// themselves.
    bool Takes(const std::string& name);

  private:
    std::string name_;
    int error_;
    int first_;
    int times_;
    int calls_ = 0;
};

/// Lets stat() tell of another file than the one it is asked about, while it exists.
class StandIn {
  public:
    StandIn(std::string path, std::string other);
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
    ~StandIn();
};

/// Notes what TZ is at each call of tzset(), while it exists.
class ZonesSet {
  public:
    ZonesSet();
    ZonesSet(const ZonesSet&) = delete;
    ZonesSet& operator=(const ZonesSet&) = delete;
    ~ZonesSet();

    /// What TZ was; "unset" where it was not set.
    const std::vector<std::string>& Names() const { return names_; }

    /// For tzset() itself.
    void Note();

  private:
    std::vector<std::string> names_;
};
