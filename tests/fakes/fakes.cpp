#include "tests/fakes/fakes.h"

namespace fakes {

void Reset() {
    ResetGl();
    ResetGlut();
    ResetAl();
    ResetWorld();
    ResetDesktop();
    ClearLog();
}

}  // namespace fakes
