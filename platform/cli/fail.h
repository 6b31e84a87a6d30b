// SPDX-License-Identifier: MIT
/// Giving a command up.
#pragma once

#include <QtCore/QString>

#include <stdexcept>

namespace tessaro {

/// Throws the message that the command ends with.
[[noreturn]] inline void fail(const QString &why) {
    throw std::runtime_error(why.toStdString());
}

} // namespace tessaro
