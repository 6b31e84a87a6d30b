// SPDX-License-Identifier: MIT
/// The committed tree, kept in memory.
#pragma once

#include "tessaro/store.h"

#include <map>

namespace tessaro {

/// A copy of the registry's file. It is filled directory by directory, as they are asked for, dropped when others have
/// committed, and kept in step with what its own `Change` writes. Throws what `Store` throws.
class CommittedTree {
public:
    explicit CommittedTree(const std::string &file) : store(file) {}

    /// Drops the copy if others have committed since it was read. One call of a client refreshes it once.
    void refresh();

    /// The node at @p path; null when there is none, or no such path can be. Good until the next look-up or change.
    const Node *find(const QString &path);

    /// The nodes of the directory at @p path, in the order of their paths; none where there is no such directory. All
    /// below it is read in the same transaction, since who lists a directory goes on to those in it. Good until the
    /// next look-up or change.
    const std::vector<Entry> &list(const QString &path);

    /// A transaction that changes the file and the copy. Undone when it is destroyed without having been committed.
    class Change {
    public:
        explicit Change(CommittedTree &changed);
        ~Change();
        Change(const Change &) = delete;
        Change &operator=(const Change &) = delete;

        /// Removes the node at @p path and all below it.
        void remove(const QString &path);

        /// Puts @p node at @p path, and directories above it where they are missing; writes only what differs.
        void put(const QString &path, const Node &node);

        void commit();

    private:
        CommittedTree &tree;
        SQLite::Transaction transaction;
        bool wrote = false;
    };

private:
    using Directory = std::pair<const QString, std::vector<Entry>>; ///< its path, and its nodes in their order
    enum Extent { DirectoryAlone, AllBelow };

    /// The directory at @p path. If it is not in the copy yet, @p extent is read.
    Directory &directory(const QString &path, Extent extent);
    void read(const QString &path, Extent extent);
    void add(const QString &path, std::vector<Entry> nodes, Extent extent);
    void drop();

    Store store;
    std::map<QString, std::vector<Entry>> directories; ///< as they are while the file bears `stamp`
    Directory *recent = nullptr; ///< the one that was looked into last: most often it is the next one, too
    Store::Stamp stamp;
    bool changing = false; ///< whether there is a `Change`, in whose transaction nobody else commits
};

} // namespace tessaro
