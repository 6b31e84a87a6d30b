// SPDX-License-Identifier: MIT
/// The registry as one client sees and changes it.
#pragma once

#include "tessaro/committedtree.h"
#include "tessaro/pendingchanges.h"
#include "tessaro/status.h"

#include <optional>

namespace tessaro {

/// Holds the rules of the tree: its nodes are the committed ones, with the client's pending changes laid over them. A
/// failing status leaves everything as it was; a registry that cannot be read or written throws `SQLite::Exception`.
class Tree {
public:
    explicit Tree(const std::string &file) : committed(file) {}

    /// Begins a call of a client, which sees what others have committed before.
    void beginCall() { committed.refresh(); }

    Status contains(const QString &path);
    Status get(const QString &path, QString &value);

    /// A directory's nodes by path, or a key's text as the one entry.
    Status list(const QString &path, Listing &entries);

    Status create(const QString &path);
    Status set(const QString &path, const QString &value);
    Status del(const QString &path);

    /// Makes what is pending at and below @p path durable, in one transaction. It replaces what others have committed
    /// there meanwhile, and brings back the directories that they have removed above, filled from their templates: the
    /// last commit wins.
    Status commit(const QString &path);

    /// Drops what is pending at and below @p path, all of it when it is empty.
    Status rollback(const QString &path);

    /// Whether @p value is the committed text of the key at @p path.
    bool isCommitted(const QString &path, const QString &value);

private:
    const Node *find(const QString &path);
    Listing children(const QString &directory);
    bool isNewAndEmpty(const QString &path);
    void fill(const QString &directory, const QString &source);
    std::optional<PendingChanges> refill(const QString &path);

    CommittedTree committed;
    PendingChanges pending;
};

} // namespace tessaro
