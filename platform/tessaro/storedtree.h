// SPDX-License-Identifier: MIT
/// The committed tree, read at the cost of memory.
#pragma once

#include "tessaro/directory.h"
#include "tessaro/store.h"

#include <unordered_map>

/// Keeps every directory that was read, with its keys' texts, for as long as the file bears the stamp it was read
/// under. Throws what `Store` throws.
class StoredTree {
public:
    explicit StoredTree(const std::string &file) : store(file) {}

    /// What others have committed before is seen from here on, but by a walk that goes on.
    void beginCall() { looked = false; }

    /// The node at @p path; null when there is none, or no such path can be. Good until the next call. It begins a walk
    /// through the node's directory.
    const Node *find(const QString &path);

    /// The next node of the walk, if that is the one at @p path, as it was when the walk began; otherwise what `find`
    /// finds.
    const Node *findNext(const QString &path);

    /// The node of the walk that was found last, if that is the one at @p path; otherwise what `findNext` finds.
    const Node *findAgain(const QString &path);

    /// The nodes of @p directory; none where there is no such directory. It begins a walk through them. All below the
    /// directory is read with it, since who lists one goes on to those in it.
    Listing children(const QString &directory);

    /// A change of the tree, all or nothing: undone when it is destroyed without having been committed.
    class Change {
    public:
        explicit Change(StoredTree &changed);
        ~Change();
        Change(const Change &) = delete;
        Change &operator=(const Change &) = delete;

        /// Removes the node at @p path and all below it.
        void remove(const QString &path);

        /// Puts @p node at @p path, and directories above it where they are missing; writes only what differs.
        void put(const QString &path, const Node &node);

        void commit();

    private:
        StoredTree &tree;
        SQLite::Transaction transaction;
        QString present; ///< a directory that is there: most often the next node is put into it too
        bool wrote = false;
    };

private:
    using Directories = std::unordered_map<QString, Directory>;
    enum Extent { DirectoryAlone, AllBelow };

    const Node *known(const QString &path);
    Directory &directory(const QString &path, Extent extent);
    void read(const QString &path, Extent extent);
    Directories stored(const QString &path, Extent extent);
    void beginWalk();
    void look();
    void dropOutdated();
    void clear();
    void forget(const QString &path);

    Store store;
    Directories directories;                                ///< true while the file bears `stamp`
    std::pair<const QString, Directory> *current = nullptr; ///< the one that was looked into last
    Directory *walked = nullptr;                            ///< through which a walk goes
    Store::Stamp stamp = 0;
    bool looked = false;   ///< whether `stamp` has been compared with the file's in this call
    bool changing = false; ///< a `Change` keeps the directories in step with what it writes, and everybody else out
};
