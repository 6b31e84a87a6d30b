// SPDX-License-Identifier: MIT
/// Time that no wall clock is needed for.
#pragma once

#include <QtCore/QString>

#include <chrono>

namespace quendar {

/// A moment on the clock that begins with the device's start and goes on while it is suspended.
struct BootMoment {
    QString boot; ///< the id of the start; another after each restart
    std::chrono::milliseconds time{};

    static BootMoment now();
};

} // namespace quendar
