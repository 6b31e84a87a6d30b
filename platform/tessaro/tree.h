// SPDX-License-Identifier: MIT
/// The registry as one client sees and changes it.
#pragma once

#include "tessaro/pendingchanges.h"
#include "tessaro/status.h"
#include "tessaro/storedtree.h"

/// The rules of the tree over the committed nodes and the client's pending changes. A failing status leaves everything
/// as it was; a registry that cannot be read or written throws `SQLite::Exception`.
///
/// What others commit is seen by the next call. But where `contains`, `set` and `list` go through the nodes of one
/// directory, in their order, they see these nodes, though not what is in them, as they were at the first of the calls.
class Tree {
public:
    explicit Tree(const std::string &file) : stored(file) {}

    /// Begins a call of a client: what others have committed is looked for at most once in it.
    void beginCall() { stored.beginCall(); }

    Status contains(const QString &path);
    Status get(const QString &path, QString &value);

    /// A directory's nodes by path, or a key's text as the one entry.
    Status list(const QString &path, Listing &entries);

    Status create(const QString &path);
    Status set(const QString &path, const QString &value);
    Status del(const QString &path);

    /// Makes what is pending at and below @p path durable, in one transaction. A pending node whose directories are
    /// gone meanwhile brings them back, filled from their templates, and one of another kind gives way to it: the last
    /// commit wins.
    Status commit(const QString &path);

    /// Drops what is pending at and below @p path, all of it when it is empty.
    Status rollback(const QString &path);

    /// Whether @p value is the committed text of the key at @p path.
    bool isCommitted(const QString &path, const QString &value);

private:
    using LookUp = const Node *(StoredTree::*)(const QString &path);

    const Node *find(const QString &path, LookUp lookUp = &StoredTree::find);
    Listing children(const QString &directory);
    bool isNewAndEmpty(const QString &path);
    void fill(const QString &directory, const QString &source);
    void refill(const QString &path);

    StoredTree stored;
    PendingChanges pending;
};
