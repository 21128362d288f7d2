#include "tests/fakes/desktop.h"

#include "tests/fakes/log.h"

namespace fakes {

Desktop& desktop() {
    static Desktop model;
    return model;
}

void ResetDesktop() {
    desktop() = Desktop();
}

}  // namespace fakes

ScreenPoint GlobalPointer() {
    fakes::Record("GlobalPointer");
    ++fakes::desktop().pointer_calls;
    return fakes::desktop().pointer;
}

std::uint64_t MonotonicNanoseconds() {
    fakes::Record("MonotonicNanoseconds");
    ++fakes::desktop().clock_calls;
    return fakes::desktop().nanoseconds;
}

void OpenWebAddress(const char* address) {
    fakes::Record("OpenWebAddress", {}, address);
    fakes::desktop().opened.emplace_back(address);
}

void ResetMouse() {
    fakes::Record("ResetMouse");
    ++fakes::desktop().mouse_resets;
}

void SetSwapInterval(int refreshes) {
    fakes::Record("SetSwapInterval", {refreshes});
    fakes::desktop().swap_intervals.push_back(refreshes);
}
