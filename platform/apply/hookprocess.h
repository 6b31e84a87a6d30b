// SPDX-License-Identifier: MIT
/// Running a hook to its end, or to the end of its time.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <chrono>

namespace tessaro {

/// Runs @p hook, with @p section and @p trigger as its arguments, in a process group of its own, and ends the whole
/// group when it runs past @p limit. Its standard input is empty, its output goes to standard error.
///
/// Returns its exit status as text, "timeout", "signal 11" or "cannot be executed: ..."; "0" is success.
QString runHook(const QByteArray &hook, const QString &section, const QString &trigger, std::chrono::seconds limit);

} // namespace tessaro
