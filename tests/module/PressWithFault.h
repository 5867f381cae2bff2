#pragma once

#include "tests/module/FailingNew.h"
#include "tests/module/FakeHost.h"

namespace ozm::test {

/// Presses a button with the n-th allocation of the C++ runtime failing; true when it needed fewer. The step
/// that the dialog names stands in `host.nextStep`, not gone to yet.
inline bool PressWithFault(FakeHost& host, int button, long n) {
    host.nextStep = -1;
    failingNew = n;
    host.Dialog().Press(button);
    const bool through = failingNew > 0;
    failingNew = 0;
    return through;
}

} // namespace ozm::test
