// SPDX-License-Identifier: MIT
#include "planning/foresight.h"

#include "registry/childrencache.h"
#include "registry/viewkey.h"
#include "registry/viewpaths.h"
#include "stages/exportsettings.h"

namespace quendar {

namespace {

/// Looks at what directories list, each of which is read once.
class Listings {
public:
    explicit Listings(TessaroClient &owner) : client(owner) {}

    bool contain(const QString &path) { return readChildren(client, cache, parentIn(path).toString()).contains(path); }

private:
    TessaroClient &client;
    ChildrenCache cache;
};

void requireUnseen(TessaroClient &other, const QString &path, const Change &change) {
    const Node seen = readNode(other, path);
    if (seen == change.before)
        return;
    if (seen == change.after)
        throw impossibleToPlan(QStringLiteral("the registry has committed what is pending, or another import runs"),
                               path);
    throw ChangedMeanwhile(path);
}

void requirePending(TessaroClient &planner, const ChangeSet &changes) {
    Listings listings(planner);
    TessaroClient other;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change) {
        const QString &path = change.key();
        requireUnseen(other, path, *change);
        if (readNode(planner, path) != change->after || listings.contain(path) == change->after.isAbsent())
            throw impossibleToPlan(QStringLiteral("the registry does not show what is pending"), path);
    }
}

} // namespace

Error impossibleToPlan(const QString &reason, const QString &path) {
    return Error(QStringLiteral("impossible to plan: ") + reason + QStringLiteral(": ") + path);
}

ChangedMeanwhile::ChangedMeanwhile(const QString &path)
    : Error(impossibleToPlan(QStringLiteral("it is being changed by somebody else"), path)) {}

void requireForesight(TessaroClient &planner, const ChangeSet &changes, const QByteArray &view) {
    requirePending(planner, changes);
    if (readView() != view)
        throw ChangedMeanwhile(viewRoot());
}

void requireUntouched(const ChangeSet &changes) {
    TessaroClient other;
    for (auto change = changes.byPath().cbegin(); change != changes.byPath().cend(); ++change)
        if (readNode(other, change.key()) != change->before)
            throw ChangedMeanwhile(change.key());
}

void requireDropped(TessaroClient &planner, const ChangeSet &dropped) {
    TessaroClient other;
    for (auto change = dropped.byPath().cbegin(); change != dropped.byPath().cend(); ++change) {
        requireUnseen(other, change.key(), *change);
        if (readNode(planner, change.key()) != change->before)
            throw impossibleToPlan(QStringLiteral("the registry keeps what was rolled back"), change.key());
    }
}

void requireUnknown(TessaroClient &planner, const QString &path) {
    if (!readNode(planner, path).isAbsent())
        throw impossibleToPlan(QStringLiteral("the registry does not say the same twice"), path);
}

} // namespace quendar
