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

inline bool operator==(const Change &first, const Change &second) {
    return first.before == second.before && first.after == second.after;
}

/// The paths that differ. It is net: what is changed twice is one change, what is changed back is none.
class ChangeSet {
public:
    /// Notes that @p path, at which @p before stood so far, now holds @p after.
    void record(const QString &path, const Node &before, const Node &after);

    /// Takes over what @p other notes of @p path, be it nothing.
    void copy(const QString &path, const ChangeSet &other);

    /// Whether what stands at @p path did not stand there before.
    bool makes(const QString &path) const;

    /// In the order of the paths: a directory before what is in it.
    const QMap<QString, Change> &byPath() const { return changes; }

private:
    QMap<QString, Change> changes;
};

} // namespace quendar
