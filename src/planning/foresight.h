// SPDX-License-Identifier: MIT
/// Whether what a plan says can be believed.
#pragma once

#include "planning/changeset.h"

namespace quendar {

/// Looks at each path of @p changes, which are pending in @p planner, through it and through a client of its own.
/// Throws Error where the registry's library hides pending changes from their client or shows them to others, and where
/// somebody else has changed such a path since.
void requireForesight(TessaroClient &planner, const ChangeSet &changes);

/// The same of @p dropped, which @p planner has rolled back: all stands as before.
void requireDropped(TessaroClient &planner, const ChangeSet &dropped);

/// Throws Error where something stands at @p path, which was said not to be there.
void requireUnknown(TessaroClient &planner, const QString &path);

} // namespace quendar
