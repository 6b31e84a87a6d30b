/// The committed tree, read at the cost of memory.
#pragma once

#include "store.h"

#include <optional>
#include <unordered_map>

/// Keeps every directory that was listed, with its keys' texts, for as long as the file bears the stamp it was read
/// under. Throws what `Store` throws.
class StoredTree {
public:
    explicit StoredTree(const std::string &file) : store(file) {}

    std::optional<Node> find(const QString &path);

    /// The nodes of @p directory; none where there is no such directory.
    Listing children(const QString &directory) { return entries(directory); }

    /// A change of the tree, all or nothing: undone when it is destroyed without having been committed.
    class Change {
    public:
        explicit Change(StoredTree &changed);
        ~Change();
        Change(const Change &) = delete;
        Change &operator=(const Change &) = delete;

        /// Removes the node at @p path and all below it.
        void remove(const QString &path);

        /// Puts @p nodes into @p directory, which is made when it is missing; writes only what differs.
        void put(const QString &directory, const Listing &nodes);

        void commit();

    private:
        void put(const QString &directory, const QString &name, const Node &node);
        void makeDirectory(const QString &path);

        StoredTree &tree;
        SQLite::Transaction transaction;
        bool wrote = false;
    };

private:
    Listing &entries(const QString &directory);
    void dropOutdated();

    Store store;
    std::unordered_map<QString, Listing> cached; ///< true while the file bears `stamp`
    Store::Stamp stamp = 0;
    bool changing = false; ///< a `Change` keeps `cached` in step with what it writes, and everybody else out
};
