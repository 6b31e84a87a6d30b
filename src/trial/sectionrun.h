// SPDX-License-Identifier: MIT
/// The applies of a change.
#pragma once

#include "stages/postaction.h"
#include "trial/filelock.h"
#include "trial/storedchange.h"
#include "trial/trialobserver.h"

namespace quendar {

/// Has sections applied one by one, and keeps in the record what comes of each.
class SectionRun {
public:
    enum class AtFailure { Stop, GoOn };

    /// All must live longer than this object. From now on, what asks for a post-action is heard.
    SectionRun(StoredChange &stored, const FileLock &held, TrialObserver &watcher);

    /// The results are appended to @p results, which is the record's. Throws Error where that cannot be stored, unless
    /// it goes on at any failure.
    void apply(const QStringList &sections, QVector<SectionResult> &results, AtFailure atFailure);

    /// What the apply side has asked for since; nothing where it has not.
    std::optional<ChangeRecord::PostAction> takePostAction() const;

private:
    StoredChange &change;
    const FileLock &lock;
    TrialObserver &observer;
    PostActionFile postAction;
};

/// Removes what a killed process, or a registry that was full, has left of the sections that were applied.
void withdrawApplies(const ChangeRecord &record);

} // namespace quendar
