// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// The X server and the window manager of a desktop for tests, each with folders and a message bus of its own,
// so that neither settings nor services of the user reach in or are reached.
#pragma once

#include <X11/Xlib.h>

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "tests/desktop/folder.h"
#include "tests/desktop/process.h"

namespace desktop {

/// What manages the windows.
enum class WindowManager {
    kOpenbox,
    kOpenboxPicom,   ///< with a compositor of another maker
    kXfwm4,          ///< with its own compositor
    kMutter,         ///< on an X server; it always composites
    kMutterWayland,  ///< as a Wayland session without a screen; X clients get XWayland
    kKwin,           ///< on an X server, with its own compositor
    kNone,
};

constexpr WindowManager kWindowManagers[] = {WindowManager::kOpenbox,       WindowManager::kOpenboxPicom,
                                             WindowManager::kXfwm4,         WindowManager::kMutter,
                                             WindowManager::kMutterWayland, WindowManager::kKwin,
                                             WindowManager::kNone};

/// Returns a name that fits into the name of a test.
std::string NameOf(WindowManager manager);

std::ostream& operator<<(std::ostream& out, WindowManager manager);

/// A running X server (1280 x 1024) with a window manager that is ready.
class Session {
  public:
    /// Starts both on a free display; stops the test where one does not start.
    explicit Session(WindowManager manager);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the message bus, unless it runs. On it is nobody but who connects: it starts no services.
    void StartBus();

    /// Returns the message bus; it must run.
    Process& Bus() { return *bus_; }

    /// Returns a connection to the server, closed with the session.
    Display* Connection() const { return connection_; }

    /// Returns the variables that a client's environment needs to connect, to the message bus too where there
    /// is one.
    const std::map<std::string, std::string>& ClientEnvironment() const { return client_environment_; }

  private:
    void StartServer();
    void StartManager(const std::vector<std::string>& words);
    void StartWaylandSession();
    void Connect();
    void AwaitManager(bool composites);

    Folder folder_;
    std::map<std::string, std::string> client_environment_;
    std::map<std::string, std::string> environment_;  ///< of the processes below
    std::optional<Process> server_;
    std::optional<Process> bus_;
    std::vector<std::unique_ptr<Process>> managers_;
    Display* connection_ = nullptr;
};

}  // namespace desktop
