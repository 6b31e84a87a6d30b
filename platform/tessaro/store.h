// SPDX-License-Identifier: MIT
/// The registry's file.
#pragma once

#include "tessaro/node.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct sqlite3_file;

namespace tessaro {

/// An SQLite database with one row per node,
///
///     directory                  | name  | value
///     ---------------------------+-------+------------------------
///                                | root  | NULL (a directory)
///     root                       | view  | NULL
///     root/view                  | title | Hello (a key's text)
///
/// Knows SQL and nothing of the tree's rules: it does not ask whether a node's directory exists. Whatever fails throws
/// `SQLite::Exception`. Another process's lock is waited for, up to a limit.
class Store {
public:
    /// Tells whether others have committed.
    struct Stamp {
        bool isOfLog = false; ///< somebody has switched the file to SQLite's WAL mode

        /// With a rollback journal grows by 1 with each commit that changes something, with a log by others' commits.
        std::uint32_t number = 0;

        void countOwnCommit() { number += isOfLog ? 0 : 1; }
        bool operator!=(const Stamp &other) const { return isOfLog != other.isOfLog || number != other.number; }
    };

    /// Opens the registry at @p path, only for reading where the system allows no more; never creates it.
    explicit Store(const std::string &path);

    /// Makes the file at @p file, which is empty, a registry without a node.
    static void format(const std::string &file);

    /// The stamp that the file bears now. What a transaction read while the file bore the same one is still true.
    Stamp stamp();

    /// The nodes of @p directory with the keys' texts; none where there is no such directory. A row that can be none
    /// throws: its path would be another node's.
    std::vector<Entry> list(const QString &directory);

    void put(const QString &path, const Node &node);

    /// Removes the node at @p path and all below it; whether there was anything.
    bool remove(const QString &path);

    /// Removes every node.
    void clear();

    /// Begins a transaction, which is rolled back when it is destroyed without having been committed. While it lives,
    /// nobody else writes. Throws where the file has been removed or replaced since it was opened, which reads do not
    /// notice.
    SQLite::Transaction write();

    /// Begins a transaction in which all reads see the state that the first of them sees.
    SQLite::Transaction read() { return SQLite::Transaction(database); }

private:
    using LazyStatement = std::optional<SQLite::Statement>;

    SQLite::Statement &prepared(LazyStatement &statement, const char *sql);

    SQLite::Database database;
    sqlite3_file *file;
    SQLite::Statement lister;
    LazyStatement putter; ///< many a client never writes
    LazyStatement remover;
    LazyStatement versionReader;
};

} // namespace tessaro
