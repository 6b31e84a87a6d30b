// SPDX-License-Identifier: MIT
/// A change, put back.
#pragma once

#include "planning/changeset.h"

#include <QtCore/QStringList>

namespace quendar {

/// What becomes of a path at which something stands that is neither from before nor of the change.
enum class Conflicts { LeftAlone, Overwritten };

struct Restoration {
    ChangeSet changes;      ///< those of the change that are to be put back
    QStringList conflicts;  ///< the paths that are left alone
    bool isAnythingChanged; ///< whether something stands as the change has left it
};

/// What is to be put back of @p changes, by what @p client sees. A path that stands as the change has left it is; one
/// that stands as before needs nothing; at any other, somebody has written since. A directory that the change made is
/// put back only when nothing of others is in it, and what it deleted only while its directory is there. Throws
/// TessaroError when the registry fails.
Restoration restorationOf(const ChangeSet &changes, TessaroClient &client, Conflicts conflicts);

/// Writes @p side of each of @p changes, pending in @p client. A directory that is made for it has nothing else in it.
/// Throws TessaroError when the registry fails or refuses.
void writeSide(TessaroClient &client, const ChangeSet &changes, Node Change::*side);

} // namespace quendar
