// SPDX-License-Identifier: MIT
/// What can be seen of a change while it goes on.
#pragma once

#include "planning/importplan.h"
#include "trial/changerecord.h"

#include <chrono>

namespace quendar {

/// Is told how a change goes on.
class TrialObserver {
public:
    virtual ~TrialObserver() = default;

    /// What is going to be done. Another plan may follow, where somebody else has written meanwhile.
    virtual void planned(const ImportPlan & /*plan*/) {}

    /// From now on the change is not lost, whatever happens. Nothing is written to the registry yet; what this throws
    /// ends the change.
    virtual void begun(const ChangeRecord & /*record*/) {}

    /// Section number @p number of @p count, named @p section, is being applied since @p elapsed.
    virtual void applying(int /*number*/, int /*count*/, const QString & /*section*/,
                          std::chrono::seconds /*elapsed*/) {}

    /// No section is being applied any more.
    virtual void applied() {}
};

} // namespace quendar
