// SPDX-License-Identifier: MIT
/// What is shown while sections are applied.
#pragma once

#include <QtCore/QString>

#include <chrono>

namespace quendar {

/// On standard error: one line that is written over on a terminal, otherwise a line for each section.
class Progress {
public:
    Progress();

    void show(int number, int count, const QString &section, std::chrono::seconds elapsed);

    /// Takes the line away.
    void clear() const;

private:
    const bool isOnTerminal;
    int lastNumber = 0;
};

} // namespace quendar
