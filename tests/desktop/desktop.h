// SPDX-FileCopyrightText: 2026 The Ulmaro Assistant developers
// SPDX-License-Identifier: MIT

// A desktop for tests: an X server of its own with a window manager, and the real program on it.
//
// A test reads like someone at the desk:
//
//   Desktop desktop;
//   Program program(desktop, {});
//   desktop.MovePointer({10, 10});
//   program.WaitForFrames(2);
//   const Image image = program.Look();
//
// The program runs in a private folder with links to its data files, so a test may take files away or spoil
// them. Everything that cannot be done stops the test with a message.
#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/folder.h"
#include "tests/desktop/image.h"
#include "tests/desktop/probe.h"
#include "tests/desktop/process.h"
#include "tests/desktop/session.h"

namespace desktop {

/// A point of the screen in pixels, origin at the top left.
struct ScreenPoint {
    int x = 0;
    int y = 0;
};

/// A rectangle of the screen in pixels, origin at the top left.
struct ScreenRect {
    int x = 0, y = 0, width = 0, height = 0;
};

/// An X server (1280 x 1024) with a window manager, and the hands on its mouse and keyboard.
class Desktop {
  public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 1024;

    /// Starts both on a free display and waits until they are ready. The pointer stands in the bottom right
    /// corner; as a Wayland session the pointer cannot be moved.
    explicit Desktop(WindowManager manager = WindowManager::kOpenbox);
    ~Desktop() = default;
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    /// Returns the test's own connection.
    Display* Connection() const { return connection_; }

    /// Returns the display's name, such as ":7".
    const std::string& Name() const { return session_.ClientEnvironment().at("DISPLAY"); }

    /// Returns the variables that a client's environment needs to connect.
    const std::map<std::string, std::string>& ClientEnvironment() const {
        return session_.ClientEnvironment();
    }

    /// Starts the desktop's message bus, unless it runs.
    void StartBus() { session_.StartBus(); }

    /// Returns the message bus; it must run.
    Process& Bus() { return session_.Bus(); }

    /// Returns what manages the windows.
    WindowManager Manager() const { return manager_; }

    /// Returns whether the window manager has more than one desktop.
    bool HasSeveralDesktops() const;

    /// Returns a window's property of 32-bit numbers; none where it has no such property.
    std::vector<unsigned long> Property(Window window, const char* name) const;

    /// Sends the window manager a message about a window.
    void AskRoot(Window window, const char* message, long first = 0, long second = 0);

    /// Puts the pointer on a point of the screen.
    void MovePointer(ScreenPoint point);

    /// Moves the pointer over a window at that place for a moment, and back into the corner.
    void TouchWindow(const ScreenRect& place);

    /// Presses or releases a mouse button (1 is the left one) where the pointer stands. The window manager,
    /// which sees a press first, has passed it on then.
    void Button(unsigned int button, bool down);

    /// Presses or releases a key such as XK_Left. It goes to the window that has the focus.
    void Key(KeySym key, bool down);

    /// Types a text (Latin-1), all its keys at once, faster than any hand. A character that no key has gets a
    /// spare key.
    void TypeText(const std::string& text);

    /// Types keys such as XK_dead_grave in the same way.
    void TypeKeys(const std::vector<KeySym>& keys);

    /// Returns the topmost window with that title; None where there is none.
    Window FindWindow(const std::string& title) const;

    /// Covers a part of the screen with a plain window above all others, until Uncover().
    void Cover(const ScreenRect& part);
    void Uncover();

    /// Covers the screen with an ordinary maximised window that the window manager takes care of, until
    /// Uncover().
    void CoverByMaximisedWindow();

    /// Waits until the window manager, if there is one, has done all that it had to do before.
    void AwaitWindowManager();

  private:
    KeyCode SpareKey(KeySym key);

    Session session_;
    WindowManager manager_;
    Display* connection_;
    Window cover_ = None;
    Window question_ = None;  ///< never shown; what AwaitWindowManager() asks about
};

/// How the program's monotonic clock goes.
enum class Clock {
    kRuns,    ///< with real time
    kInHand,  ///< only by LetTimePass(), from the very start; frames then wait for no refresh
};

/// Returns the file that is run: what the environment variable ULMARO_DESKTOP_PROGRAM names, such as a
/// program with sanitizers, or the one of this build.
std::string ProgramUnderTest();

/// What the program starts with.
struct Start {
    Clock clock = Clock::kRuns;
    bool all_files = true;                      ///< every data file is there; else the folder starts empty
    std::map<std::string, std::string> spoilt;  ///< files that hold these bytes instead
    std::vector<std::string> missing;           ///< files that are not there
    std::vector<std::string> pipes;             ///< files that are named pipes instead
    std::map<std::string, std::string> environment;  ///< added to the environment
    std::vector<std::string> preload;                ///< libraries loaded ahead
    std::vector<std::string> options;                ///< on the command line
    bool wait_for_sight = true;   ///< the window is expected to be shown at once; else only to be there
    bool wait_for_window = true;  ///< the program is expected to show its window and frames
    std::string program = ProgramUnderTest();             ///< the file that is run
    std::int64_t longest_step = kLongestStepNanoseconds;  ///< of a clock in hand, ns
    double patience = 1;  ///< how many times as long as usual its window, frames and events are waited for
    bool pixels_on_demand = false;  ///< frames of a clock in hand have pixels for Look() only (probe.h)
    double breath = 0;              ///< seconds that the program sleeps in each frame
};

/// The real program in its window.
class Program {
  public:
    static constexpr char kTitle[] = "Ulmaro Assistant";

    /// Starts the program and, unless told otherwise, waits for its window and its first frames.
    Program(Desktop& desktop, const Start& start);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    Process& Child() { return *process_; }
    Folder& Files() { return files_; }
    Window Handle() const { return window_; }

    /// Returns what the program wrote on standard output and standard error so far, without what Mesa says of
    /// a clock in hand's environment.
    std::string Said() const;

    // ---- Looking ----

    /// Returns where the client area is on the screen.
    ScreenRect Place() const;

    /// Returns what the client area shows. It must be wholly on the screen, shown and not covered.
    Image Look() const;

    /// Returns the number of frames so far, seen or not, and of those that were swapped into the window.
    std::uint64_t Frames() const { return probe_->frames; }
    std::uint64_t Swaps() const { return probe_->swaps; }

    /// Returns how often the program has opened the sound of a notice.
    std::uint64_t Notices() const { return probe_->notices; }

    /// Returns the number of answers that the program has awaited from the X server so far.
    std::uint64_t RoundTrips() const { return probe_->round_trips; }

    /// Waits for that many frames and returns how many answers each of them awaited.
    double RoundTripsPerFrame(std::uint64_t count);

    /// Waits until that many more frames were drawn.
    void WaitForFrames(std::uint64_t count, double seconds = 20);

    /// Watches for some seconds and returns the frames drawn per second.
    double FramesPerSecond(double seconds) const;

    // ---- Time ----

    /// Returns the program's monotonic clock, seconds since its start.
    double ClockSeconds() const { return static_cast<double>(probe_->clock) / 1e9; }

    /// Lets the program's clock run with real time, or takes it in hand.
    void SetClock(Clock clock) { probe_->clock_in_hand = clock == Clock::kInHand; }

    /// Moves a clock in hand by some seconds, at most Start::longest_step each frame, and waits until the
    /// window shows the last.
    void LetTimePass(double seconds);

    /// Lets the program's clock jump ahead in the middle of the next frame, after it was drawn and before it
    /// is shown, as when the machine sleeps; does not wait.
    void JumpClock(double seconds) { probe_->to_jump += static_cast<std::int64_t>(seconds * 1e9); }

    /// Lets a clock in hand go on as LetTimePass() does, without waiting for it.
    void BeginToPass(double seconds) { probe_->to_pass += static_cast<std::int64_t>(seconds * 1e9); }

    /// Lets the program draw this random number and no other, 0 .. RAND_MAX. Only for moments: it waits for
    /// another pose than the owl's until it draws one.
    void LoadDice(int number);

    /// Lets the program draw its own random numbers again.
    void ReleaseDice();

    // ---- Touching ----

    /// Returns how many seconds were lost so far in frames so long that they advance no timer, as on a busy
    /// machine.
    double StalledSeconds() const;

    /// Waits until the program has read all events that were sent to it so far.
    void AwaitEvents();

    /// Puts the pointer on a canvas point of the window and waits until a frame has seen it there.
    void MovePointer(CanvasPoint point);

    /// Clicks a canvas point: pointer there, button held for some frames, released.
    void Click(CanvasPoint point, unsigned int button = 1);

    /// Clicks as above without regard to the last click: Click() leaves so much time that both are no double
    /// click.
    void ClickAtOnce(CanvasPoint point, unsigned int button = 1);

    /// Types a key such as XK_Left: held for some frames, released.
    void Type(KeySym key);

    /// Types a text (Latin-1), all its keys at once, and waits until the frames have taken it: one character
    /// each.
    void TypeText(const std::string& text);

    /// Types keys such as XK_dead_grave in the same way.
    void TypeKeys(const std::vector<KeySym>& keys);

    /// Moves and resizes the client area and waits until a frame has that size.
    void Resize(const ScreenRect& place);

    /// Minimises the window, or shows it again, and waits until the window manager has done it.
    void Minimise();
    void Restore();

    /// Asks the window manager to show the window and give it the focus, as a dock does; does not wait.
    void Activate();

    /// Puts the window on another desktop, or back on the first one (0), and waits until it is there.
    void MoveToDesktop(unsigned int number);

    /// Returns whether the window can be on the screen: mapped and not minimised.
    bool Shown() const;

    /// Returns whether the window manager says that the window is minimised.
    bool IsMinimised() const;

    /// Closes the window as the button in its title bar does.
    void Close();

    // ---- Ending and starting again ----

    /// Ends the program by force, with no warning.
    void Kill();

    /// Starts the program again, in the folder that it has left behind; it must have ended.
    void StartAgain();

  private:
    void OpenProbe();
    void StartProcess();
    void AwaitPixels() const;

    /// Waits as WaitUntil() does, while the program draws its frames without a rest.
    bool WaitInHaste(const std::function<bool()>& condition, double seconds);

    Desktop& desktop_;
    Start start_;
    Folder files_;   ///< the program's working folder: its data files and nothing else
    Folder output_;  ///< what it said, and the probe's file
    Probe* probe_ = nullptr;
    long marks_ = 0;         ///< sent so far
    double last_click_ = 0;  ///< when Click() ended last, by Now()
    std::optional<Process> process_;
    Window window_ = None;
};

}  // namespace desktop
