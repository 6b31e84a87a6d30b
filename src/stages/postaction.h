// SPDX-License-Identifier: MIT
/// The post-action that the apply side asks for.
#pragma once

#include "report/warning.h"

#include <QtCore/QString>

namespace quendar {

/// The file in which the apply side leaves one line, fields separated by ":", the first the action's kind and the last
/// its command line. Everybody may write to its folder, so whatever stands at its name may be somebody else's.
class PostActionFile {
public:
    /// Puts a new, empty file there. Where that fails, whatever is found there later is not trusted.
    void replace();

    /// The line; empty when there is none or no file. It counts only in a regular file that belongs to root or to this
    /// user and that nobody else can write; for any other, a warning.
    QString read(const WarningSink &warn) const;

    /// Removes the file, if it is there.
    void remove() const;

private:
    bool isOwn = false;
};

/// The command line that @p line asks for; empty when nothing is to be run.
QString postActionCommand(const QString &line, bool noReboot, bool hasDisplay);

/// Whether that is, once started, a restart of the device.
bool isRestart(const QString &line, const QString &command);

/// What a process inherits of this one's standard streams.
enum class Streams { Inherited, None };

/// Starts @p command, unless it is empty, as a process of its own and does not wait for it.
void startPostAction(const QString &command, Streams streams = Streams::Inherited);

} // namespace quendar
