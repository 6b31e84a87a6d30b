// SPDX-License-Identifier: MIT
/// A command that goes on without its caller.
#pragma once

#include "trial/descriptor.h"

namespace quendar {

/// From its making on, all is done by a process in a session of its own, while the caller's waits.
class Detachment {
public:
    /// Returns in the new process only; the caller's ends as that one does, or by `letCallerGo`. Throws Error.
    Detachment();

    /// Ends the caller's process with status 0, and lets go of the streams.
    void letCallerGo();

    bool isCallerGone() const { return !caller.isOpen(); }

private:
    Descriptor caller;
};

} // namespace quendar
