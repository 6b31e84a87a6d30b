// SPDX-License-Identifier: MIT
/// What is shown while sections are applied.
#pragma once

#include "trial/trial.h"

namespace quendar {

/// On standard error: one line that is written over on a terminal, otherwise a line for each section. What cannot be
/// written at once is dropped: whoever does not read must not hold the change.
class ShownProgress : public TrialObserver {
public:
    ShownProgress();

    void applying(int number, int count, const QString &section, std::chrono::seconds elapsed) override;
    void applied() override;

private:
    const bool isOnTerminal;
    int lastNumber = 0;
};

} // namespace quendar
