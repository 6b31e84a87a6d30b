// SPDX-License-Identifier: MIT
/// What differs between two states of the registry.
#pragma once

#include "planning/node.h"

#include <QtCore/QMap>

namespace quendar {

/// What stood at a path, and what stands there afterwards; the two differ.
struct Change {
    Node before;
    Node after;
};

/// The paths that differ. It is net: what is changed twice is one change, what is changed back is none.
class ChangeSet {
public:
    /// Notes that @p path, at which @p before stood so far, now holds @p after.
    void record(const QString &path, const Node &before, const Node &after);

    /// In the order of the paths.
    const QMap<QString, Change> &byPath() const { return changes; }

private:
    QMap<QString, Change> changes;
};

} // namespace quendar
