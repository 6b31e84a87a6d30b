// SPDX-License-Identifier: MIT
/// A registry client that commits nothing until it is told to.
#pragma once

#include "planning/changeset.h"

#include <tessaroclient.h>

#include <QtCore/QStringList>

#include <set>

namespace quendar {

/// Takes the calls of an import as any client does, but leaves everything pending: a commit is only remembered. So who
/// writes through it and reads again sees the registry as an import would leave it, nobody else sees anything, and when
/// it is destroyed nothing has happened. What differs by then is a `ChangeSet`.
///
/// It cannot work on a registry library that does not keep pending changes as the interface demands. What it notices of
/// that, it throws as Error. A registry that fails to list, or refuses a change for no reason that can be seen, is a
/// TessaroError: an import might go on after it, but a plan of that would be another one each time.
class PlanningClient : public TessaroClient {
public:
    /// The text that stands at @p path already is neither set nor remembered.
    int set(const QString &path, const QString &value, const _RegEntryParam &param) override;

    int commit(const QString &path) override;

    /// Nothing is applied: always refused.
    int requestApply(const QString &section, const QString &trigger) override;

    int create(const QString &path, const _RegEntryType &type) override;
    int del(const QString &path) override;

    /// The paths at which something was made, in this order.
    const QStringList &creations() const { return created; }

    /// Drops what no commit has covered, so that only what an import would leave is seen, and returns what that has
    /// changed. Nothing is to be changed afterwards.
    const ChangeSet &settle();

    /// Commits what `settle` has left, as one. Throws TessaroError when it does not go through.
    void carryOut();

private:
    void note(const QString &path, const Node &before, const Node &after);
    void coverMissingAbove(const QString &path);
    void requireFresh(const QString &path);

    ChangeSet changes;             // all that is pending
    ChangeSet committed;           // what stood at the last commit that covered it
    std::set<QString> uncommitted; // paths that were changed since
    QStringList created;
};

} // namespace quendar
