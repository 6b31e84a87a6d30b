// SPDX-License-Identifier: MIT
/// What the registry's operations return.
#pragma once

namespace tessaro {

enum Status {
    Success = 0,
    NotFound = 1,     ///< nothing stands at the path
    WrongKind = 2,    ///< a directory where a key is needed or the reverse, a malformed path, or no valid text
    Unavailable = 3,  ///< the registry cannot be opened or read
    CommitFailed = 4, ///< nothing was written; what was pending still is
    ApplyRefused = 5  ///< the apply service was not started
};

} // namespace tessaro
