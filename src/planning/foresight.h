// SPDX-License-Identifier: MIT
/// Whether what a plan says can be believed.
#pragma once

#include "planning/changeset.h"
#include "report/error.h"

namespace quendar {

/// Why there is no plan: "impossible to plan: REASON: PATH".
Error impossibleToPlan(const QString &reason, const QString &path);

/// Somebody else has written at @p path what a plan is about. Another plan may do.
class ChangedMeanwhile : public Error {
public:
    explicit ChangedMeanwhile(const QString &path);
};

/// Looks at each path of @p changes, which are pending in @p planner, through it and through a client of its own.
/// Throws Error where the registry's library hides pending changes from their client or shows them to others, and
/// ChangedMeanwhile where somebody else has changed a setting since @p view was read.
void requireForesight(TessaroClient &planner, const ChangeSet &changes, const QByteArray &view);

/// Looks at each path of @p changes through a client of its own. Throws ChangedMeanwhile where it does not stand as
/// before.
void requireUntouched(const ChangeSet &changes);

/// The same as the first of @p dropped, which @p planner has rolled back: all stands as before.
void requireDropped(TessaroClient &planner, const ChangeSet &dropped);

/// Throws Error where something stands at @p path, which was said not to be there.
void requireUnknown(TessaroClient &planner, const QString &path);

} // namespace quendar
