// SPDX-License-Identifier: MIT
/// What went wrong without ending a command.
#pragma once

#include <QtCore/QString>

#include <functional>

namespace quendar {

/// One thing that was not done. What its kind does not name is empty or 0.
struct Warning {
    enum Kind {
        NotSet,            ///< no entry stands at `path` to take `value`
        SessionNotCreated, ///< the commit of the new session at `path` failed with `status`
        SessionNotDeleted, ///< the commit of its deletion failed with `status`
        PrinterNotCreated, ///< the new printer at `path` did not take `value` as its name
        PrinterNotDeleted, ///< the commit of its deletion failed with `status`
        PostActionIgnored, ///< the file at `path` may be somebody else's
    };

    Kind kind;
    QString path;
    QString value;
    int status = 0;
};

/// Takes each warning as it arises.
using WarningSink = std::function<void(const Warning &)>;

/// The line that a user reads: literal items as they are, texts in double quotes, numbers in decimal, a blank after
/// each of them.
QString lineOf(const Warning &warning);

/// Hands the line to Qt's message handler, which prints it on standard error.
void printWarning(const Warning &warning);

} // namespace quendar
