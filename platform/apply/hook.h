// SPDX-License-Identifier: MIT
/// The executable that makes a section's settings take effect.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace tessaro {

/// The hook's file: the executable named after the section, the last component of @p section, in the folder of hooks,
/// or the one named `default` there. Empty when there is neither.
QByteArray hookFor(const QString &section);

} // namespace tessaro
