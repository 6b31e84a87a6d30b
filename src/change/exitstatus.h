// SPDX-License-Identifier: MIT
/// What `quendar-change` ends with.
#pragma once

namespace quendar::exitstatus {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int differs = 2;    ///< something is to be done, or does not come back
constexpr int putBack = 3;    ///< the change, or all of it but for some parts
constexpr int otherOpen = 4;  ///< another change is
constexpr int unfinished = 5; ///< something was changed, and is not put back yet
constexpr int wrongUsage = 64;

} // namespace quendar::exitstatus
