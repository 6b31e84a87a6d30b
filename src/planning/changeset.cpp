// SPDX-License-Identifier: MIT
#include "planning/changeset.h"

namespace quendar {

void ChangeSet::record(const QString &path, const Node &before, const Node &after) {
    const auto known = changes.find(path);
    const Node original = known == changes.end() ? before : known->before;
    if (original != after)
        changes.insert(path, {original, after});
    else if (known != changes.end())
        changes.erase(known);
}

void ChangeSet::copy(const QString &path, const ChangeSet &other) {
    const auto change = other.changes.constFind(path);
    if (change == other.changes.cend())
        changes.remove(path);
    else
        changes.insert(path, *change);
}

bool ChangeSet::makes(const QString &path) const {
    const auto change = changes.constFind(path);
    return change != changes.cend() && change->before.isAbsent();
}

} // namespace quendar
