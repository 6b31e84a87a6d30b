// SPDX-License-Identifier: MIT
/// One at a time.
#pragma once

#include "trial/descriptor.h"

#include <QtCore/QString>

#include <chrono>
#include <optional>

namespace quendar {

/// A lock on a file, which is made where it is missing, until this object is gone, or its process, or the last one that
/// was handed its descriptor.
class FileLock {
public:
    /// Waits as long as it takes. Throws Error when the file cannot be opened.
    static FileLock waitedFor(const QString &path);

    /// Nothing when somebody else has it all the time of @p limit. Throws likewise.
    static std::optional<FileLock> tried(const QString &path, std::chrono::milliseconds limit);

    /// Whether somebody has it. Throws likewise.
    static bool isHeld(const QString &path);

    int descriptor() const { return file.number(); }

private:
    explicit FileLock(Descriptor &&locked) : file(std::move(locked)) {}

    Descriptor file;
};

} // namespace quendar
