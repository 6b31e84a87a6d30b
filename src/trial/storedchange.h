// SPDX-License-Identifier: MIT
/// The record of a change, and its way to the disk.
#pragma once

#include "trial/statefolder.h"

namespace quendar {

/// The record of the change that is open or was last, as this process knows it. To be used by who has the lock.
class StoredChange {
public:
    /// Reads it, and removes what a process that was killed has left half-written. Throws Error for what cannot be
    /// used.
    explicit StoredChange(const StateFolder &stateFolder);

    explicit operator bool() const { return record.has_value(); }
    ChangeRecord *operator->() { return &*record; }
    const ChangeRecord *operator->() const { return &*record; }
    const std::optional<ChangeRecord> &value() const { return record; }

    /// Has another one in its place, or none; nothing is stored by that.
    void replace(const std::optional<ChangeRecord> &other) { record = other; }

    /// Puts the record on the disk, and the time that has gone by with it. Throws Error.
    void store();

    /// The same, where all can be done without it, and is done again if this process ends before it is stored. Whether
    /// it is.
    bool storeIfPossible();

    /// Notes that the change is being put back, or was; where not even a name can be changed, it is all the same. Then
    /// the next command puts it back once more: a guard would have its sections applied for ever.
    void noteReverting();
    void noteReverted();

    /// Stores that the change is not open any more, but @p state. Throws Error; it is open still then.
    void end(ChangeState state);

    /// Keeps its journal, or removes it. What cannot be done now, the next command does.
    void tidyUp() const;

    const StateFolder &folder;

private:
    void markIfPossible() const;

    std::optional<ChangeRecord> record;
};

} // namespace quendar
