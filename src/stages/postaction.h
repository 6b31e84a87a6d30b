// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QString>

/// The post-action that the apply side asks for: one line in a file which anyone may write to, fields separated by
/// ":", the first its kind and the last its command line.
class PostAction {
public:
    /// Puts a new, empty file in the place of whatever stands there. Where that fails, the file is not trusted later.
    PostAction();

    /// Starts the command that was asked for meanwhile, does not wait for it, and removes the file. The line counts
    /// only in a regular file that belongs to root or to this user and that nobody else can write; in any other, a
    /// warning takes the action's place.
    void run(bool noReboot) const;

private:
    bool isFresh;
};

/// The command line that @p line asks for; empty when nothing is to be run.
QString postActionCommand(const QString &line, bool noReboot, bool hasDisplay);
