// SPDX-License-Identifier: MIT
/// What `quendar-change` ends with.
#pragma once

namespace quendar::exitstatus {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int differs = 2; ///< something is to be done, or does not come back
constexpr int wrongUsage = 64;

} // namespace quendar::exitstatus
